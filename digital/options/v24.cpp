#include "core/phrase.hpp"
#include "digital/options/module.hpp"

// Data adapter modules ("V24" and "V24 synchrone"). byte 2: opcode, then its parameters.

namespace ztdecode::v24 {

namespace {

constexpr auto states = names({{0, "idle"},
                               {1, "command"},
                               {3, "start connection"},
                               {4, "not used"},
                               {5, "not used"},
                               {6, "connected"}},
                              "???");

// byte 3: state
void change_state(Decoding& d) { d.print("change state: {adapter_state}"_cf, states[d[3]]); }

constexpr auto commands = opcodes({{0x00, "nop", "nop"},
                                   {0x03, "software_reset", "software reset"},
                                   {0x07, "loop_back_on", "loopback ON"},
                                   {0x08, "loop_back_off", "loopback OFF"},
                                   {0x0C, "segment", "segment message"},
                                   {0x0E, "version_and_state_inquiry", "version+state inquiry"},
                                   {0x10, "change_segment_size", "change segment size"},
                                   {0x20, "channel_affectation", "channel affectation"},
                                   {0x21, "change_state", change_state},
                                   {0x25, "display_string", "display string"},
                                   {0x26, "flush_output", "flush output"},
                                   {0x27, "eia_state_change", "EIA state change"},
                                   {0x28, "call_parameter", "call parameter"},
                                   {0x29, "watch_for_wakeup_character", "watch for wakeup char"},
                                   {0x2A, "configure_uart", "configure UART"},
                                   {0x2B, "flow_control", "flow control"},
                                   {0x2C, "configure_output", "configure output"},
                                   {0x2D, "configure_input", "configure input"},
                                   {0x2E, "configure_transparent_eia_pins", "configure transparent EIA pins"},
                                   {0x2F, "v120_parameters", "V120 parameters"},
                                   {0x30, "send_and_clear_error_counters", "send and clear error counters"},
                                   {0x31, "graceful_disconnect", "graceful disconnect"},
                                   {0x32, "discard_user_input", "discard user input"},
                                   {0x34, "output_eia", "output EIA"},
                                   {0x35, "user_data_loop_back", "user data loopback"},
                                   {0x36, "send_break_to_local_user", "send break to local user"},
                                   {0x37, "report_remote_event", "report remote event"},
                                   {0x39, "terminating_character", "terminating char"},
                                   {0x3A, "distant_user_loop_back", "distant user loopback"}},
                                  "cmd ???");

// bytes 4, 5: version
void version_response(Decoding& d) {
    d.print("version response,  soft={software_version}"_cf, version_at(d, 4));
}

void wake_up_event(Decoding& d) { d.print("wake up event, baud= {baud_rate}"_cf, d[3]); }

void literal_string_error(Decoding& d) { d.print("literal string error {string_error}"_cf, d[3]); }

constexpr auto timers = names({{30, "resynchronization"}, {100, "startup"}}, "??");

void timer_expired(Decoding& d) { d.print("timer expired: {timer}"_cf, timers[d[3]]); }

constexpr auto transmissions = names({{0, "asynchrone"}, {6, "synchrone"}}, "???");

constexpr auto adaptations = names({{1, " V14"}, {2, " V110"}, {4, " V120"}, {8, " HDLC transparent"}}, "");

void adaptation(Decoding& d, unsigned bit) {
    const Decoding::Scope scope(d);
    if (d.on(d[8] & bit) != 0) d.value("adaptation", adaptations[d[8] & bit]);
}

// byte 4: transmission   byte 8: bit 0 V14, bit 1 V110, bit 2 V120, bit 3 HDLC; two sets of them have a name
// when asynchronous
void adaptation(Decoding& d) {
    constexpr std::uint8_t v14_v110 = 3;
    constexpr std::uint8_t v110_v120 = 6;
    d.value("transmission", transmissions[d[4]]);
    for (const unsigned bit : {1U, 2U, 4U, 8U}) adaptation(d, bit);
    if (d[4].number == 0 && (d[8].number == v14_v110 || d[8].number == v110_v120)) {
        const Decoding::Scope scope(d);
        d.on(d[4]);
        d.on(d[8]);
        add_phrase(d, "line_mode", either(d[8] == v14_v110, " (A1)", " (A2)"), " (", ")");
    }
}

// byte 3: 0 hard   bytes 4, 8: adaptation   bytes 5, 6: version   byte 7: selftest
void reset(Decoding& d) {
    d.print("reset {reset_kind} V24 "_cf, modules::hard_or_soft(d[3]));
    adaptation(d);
    d.print("  soft={software_version}, selftest: {self_test}"_cf, version_at(d, 5),
            either(d[7] != 0, "BAD", "OK"));
}

void wrong_state(Decoding& d) { d.print("illegal command {command:02x} in current state"_cf, d[4]); }

constexpr auto reports = opcodes({{0x00, "reset", reset},
                                  {0x01, "reset", reset},
                                  {0x02, "illegal_command", modules::illegal_command},
                                  {0x06, "segment_failure", "segment failure"},
                                  {0x07, "wrong_state", wrong_state},
                                  {0x81, "reset", reset}},
                                 "reset ??");

// byte 3: kind
void report(Decoding& d) { reports.write(d, d[3]); }

constexpr auto answers = opcodes({{0x00, "nop_ack", "nop ack"},
                                  {0x06, "loop_back_on_ack", "loopback ON ack"},
                                  {0x07, "loop_back_off_ack", "loopback OFF ack"},
                                  {0x0C, "segment", "segment message"},
                                  {0x0E, "version_response", version_response},
                                  {0x1F, "report", report},
                                  {0x21, "wake_up_event", wake_up_event},
                                  {0x22, "literal_received", "literal token/word received"},
                                  {0x23, "literal_string_error", literal_string_error},
                                  {0x25, "connection_confirmed", "connection confirmed"},
                                  {0x26, "disconnect_sequence_detected", "disconnect sequence detected"},
                                  {0x28, "suspend_complete", "suspend complete"},
                                  {0x29, "eia_change_detected", "EIA change detected"},
                                  {0x2B, "inactivity_timeout", "inactivity timeout"},
                                  {0x2C, "error_counters", "error counters"},
                                  {0x2D, "timer_expired", timer_expired},
                                  {0x2E, "display_ack", "display ack"},
                                  {0x2F, "output_buffer_empty", "output to user buffer empty"},
                                  {0x30, "v120_protocol_error", "V120 protocol error"},
                                  {0x31, "remote_eia_change", "remote EIA change"}},
                                 "??");

}  // namespace

void from_system(Decoding& d) { commands.write(d, modules::opcode(d)); }

void to_system(Decoding& d) { answers.write(d, modules::opcode(d)); }

}  // namespace ztdecode::v24
