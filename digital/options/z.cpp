#include "core/going_away.hpp"
#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Analog line module. byte 2: opcode, then its parameters.

namespace ztdecode {

namespace {

constexpr auto voice_modes = names({{0, "idle"}, {1, "actif"}, {6, "ringing"}}, "unknown");

void super_message(Session& session, const Message& m, Text& out) {
    sub_super(session, m, decode_z_out, out);
}

// byte 3: mode
void voice_mode(Session& /*session*/, const Message& m, Text& out) {
    out.print("voice mode {}"_cf, voice_modes[m[3]]);
}

// byte 3: 0 the analog gain
void audio_padded_path(Session& /*session*/, const Message& m, Text& out) {
    out.print("audio padded path: {}"_cf, m[3] == 0 ? "analog gain" : "unknown param");
}

constexpr auto commands = opcodes({{0x00, "nop"},
                                   {0x03, "software reset"},
                                   {0x0B, super_message},
                                   {0x0E, "version inquiry"},
                                   {0x24, "enable dtmf"},
                                   {0x25, "disable dtmf"},
                                   {0x26, "terminal type"},
                                   {0x29, voice_mode},
                                   {0x3E, "define ringing cadence"},
                                   {0x49, "AB timings"},
                                   {0x4A, audio_padded_path}});

// byte 3: the digit as a number, 10 and above included
void digit_dialed(Session& /*session*/, const Message& m, Text& out) {
    out.print("digit dialed '{}'"_cf, m[3]);
}

// byte 3: 0 hard   bytes 5, 6: version   byte 7: selftest   byte 8: hook   byte 9: hardware
void reset_form(Session& /*session*/, const Message& m, Text& out) {
    out.print("reset {} z {}, selftest={:02x}, {}, hard={:02x}"_cf, m[3] == 0 ? "hard" : "soft",
              soft_version(m, 5), m[7], m[8] != 0 ? "on hook" : "off hook", m[9]);
}

constexpr auto reports = opcodes({{0x00, reset_form},
                                  {0x01, reset_form},
                                  {0x02, "illegal command"},
                                  {0x03, "illegal param"},
                                  {0x04, "illegal length"},
                                  {0x10, "not implemented yet"},
                                  {0x11, "error host 1"},
                                  {0x12, "error host 2"},
                                  {0x81, reset_form}});

// byte 3: kind
void reset_report(Session& session, const Message& m, Text& out) {
    if (!reports.write(m[3], session, m, out)) out.add("reset ??");
}

constexpr auto answers = opcodes({{0x00, "nop ack"},
                                  {0x01, "off hook"},
                                  {0x02, "on hook"},
                                  {0x03, digit_dialed},
                                  {0x0E, "version response"},
                                  {0x1F, reset_report}});

}  // namespace

void decode_z_out(Session& session, const Message& m, Text& out) {
    if (!commands.write(module_opcode(m), session, m, out)) out.print("?? <{:02x}>"_cf, m[2]);
}

void decode_z(Session& session, const Message& m, Text& out) {
    if (!answers.write(module_opcode(m), session, m, out)) out.print("z ?? <{:02x}>"_cf, m[2]);
}

}  // namespace ztdecode

void ztdecode::z::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_z_out, d); }
void ztdecode::z::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_z, d); }
