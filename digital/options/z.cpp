#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Analog line module. byte 2: opcode, then its parameters.

namespace ztdecode::z {

namespace {

constexpr auto voice_modes = names({{0, "idle"}, {1, "actif"}, {6, "ringing"}}, "unknown");

constexpr auto padded_paths = names({{0, "analog gain"}}, "unknown param");

// byte 3: mode
void voice_mode(Decoding& d) { d.print("voice mode {voice_mode}"_cf, voice_modes[d[3]]); }

// byte 3: which path
void audio_padded_path(Decoding& d) { d.print("audio padded path: {padded_path}"_cf, padded_paths[d[3]]); }

void unknown_command(Decoding& d) { d.print("?? <{-:02x}>"_cf, d[2]); }

constexpr auto commands =
    opcodes({{0x00, "nop", "nop"},
             {0x03, "software_reset", "software reset"},
             {0x0B, "super_message", [](Decoding& d) { modules::super_message(d, from_system); }},
             {0x0E, "version_inquiry", "version inquiry"},
             {0x24, "enable_dtmf", "enable dtmf"},
             {0x25, "disable_dtmf", "disable dtmf"},
             {0x26, "terminal_type", "terminal type"},
             {0x29, "voice_mode", voice_mode},
             {0x3E, "ringing_cadence", "define ringing cadence"},
             {0x49, "ab_timings", "AB timings"},
             {0x4A, "audio_padded_path", audio_padded_path}},
            unknown_command);

// byte 3: the digit as a number, 10 and above included
void digit_dialled(Decoding& d) { d.print("digit dialed '{digit}'"_cf, d[3]); }

// byte 3: 0 hard   bytes 5, 6: version   byte 7: selftest   byte 8: hook   byte 9: hardware
void reset(Decoding& d) {
    d.print(
        "reset {reset_kind} z  soft={software_version}, selftest={self_test:02x}, {hook}, hard={hardware_version:02x}"_cf,
        modules::hard_or_soft(d[3]), version_at(d, 5), d[7], either(d[8] != 0, "on hook", "off hook"), d[9]);
}

constexpr auto reports = opcodes({{0x00, "reset", reset},
                                  {0x01, "reset", reset},
                                  {0x02, "illegal_command", "illegal command"},
                                  {0x03, "illegal_parameter", "illegal param"},
                                  {0x04, "illegal_length", "illegal length"},
                                  {0x10, "not_implemented", "not implemented yet"},
                                  {0x11, "host_error_1", "error host 1"},
                                  {0x12, "host_error_2", "error host 2"},
                                  {0x81, "reset", reset}},
                                 "reset ??");

// byte 3: kind
void report(Decoding& d) { reports.write(d, d[3]); }

void unknown_answer(Decoding& d) { d.print("z ?? <{-:02x}>"_cf, d[2]); }

constexpr auto answers = opcodes({{0x00, "nop_ack", "nop ack"},
                                  {0x01, "off_hook", "off hook"},
                                  {0x02, "on_hook", "on hook"},
                                  {0x03, "digit_dialled", digit_dialled},
                                  {0x0E, "version_response", "version response"},
                                  {0x1F, "report", report}},
                                 unknown_answer);

}  // namespace

void from_system(Decoding& d) { commands.write(d, modules::opcode(d)); }

void to_system(Decoding& d) { answers.write(d, modules::opcode(d)); }

}  // namespace ztdecode::z
