#include "core/going_away.hpp"
#include "digital/options/module.hpp"

// Data adapter modules ("V24" and "V24 synchrone"). byte 2: opcode, then its parameters.

namespace ztdecode {

namespace {

constexpr auto states = names({{0, "idle"},
                               {1, "command"},
                               {3, "start connection"},
                               {4, "not used"},
                               {5, "not used"},
                               {6, "connected"}},
                              "???");

// byte 3: state
void change_state(Session& /*session*/, const Message& m, Text& out) {
    out.print("change state: {}"_cf, states[m[3]]);
}

constexpr auto commands = opcodes({{0x00, "nop"},
                                   {0x03, "software reset"},
                                   {0x07, "loopback ON"},
                                   {0x08, "loopback OFF"},
                                   {0x0C, "segment message"},
                                   {0x0E, "version+state inquiry"},
                                   {0x10, "change segment size"},
                                   {0x20, "channel affectation"},
                                   {0x21, change_state},
                                   {0x25, "display string"},
                                   {0x26, "flush output"},
                                   {0x27, "EIA state change"},
                                   {0x28, "call parameter"},
                                   {0x29, "watch for wakeup char"},
                                   {0x2A, "configure UART"},
                                   {0x2B, "flow control"},
                                   {0x2C, "configure output"},
                                   {0x2D, "configure input"},
                                   {0x2E, "configure transparent EIA pins"},
                                   {0x2F, "V120 parameters"},
                                   {0x30, "send and clear error counters"},
                                   {0x31, "graceful disconnect"},
                                   {0x32, "discard user input"},
                                   {0x34, "output EIA"},
                                   {0x35, "user data loopback"},
                                   {0x36, "send break to local user"},
                                   {0x37, "report remote event"},
                                   {0x39, "terminating char"},
                                   {0x3A, "distant user loopback"}});

// bytes 4, 5: version
void version_response(Session& /*session*/, const Message& m, Text& out) {
    out.print("version response, {}"_cf, soft_version(m, 4));
}

void wake_up_event(Session& /*session*/, const Message& m, Text& out) {
    out.print("wake up event, baud= {}"_cf, m[3]);
}

void literal_string_error(Session& /*session*/, const Message& m, Text& out) {
    out.print("literal string error {}"_cf, m[3]);
}

constexpr auto timers = names({{30, "resynchronization"}, {100, "startup"}}, "??");

void timer_expired(Session& /*session*/, const Message& m, Text& out) {
    out.print("timer expired: {}"_cf, timers[m[3]]);
}

constexpr auto line_modes = names({{0, "asynchrone"}, {6, "synchrone"}}, "???");

// byte 4: line mode   byte 8: bit 0 V14, bit 1 V110, bit 2 V120, bit 3 HDLC; two sets of them have a name
// when asynchronous
void adaptation(const Message& m, Text& out) {
    const std::uint8_t flags = m[8];
    out.add(line_modes[m[4]]);
    if ((flags & 1) != 0) out.add(" V14");
    if ((flags & 2) != 0) out.add(" V110");
    if ((flags & 4) != 0) out.add(" V120");
    if (flags == 3 && m[4] == 0) {
        out.add(" (A1)");
    } else if (flags == 6 && m[4] == 0) {
        out.add(" (A2)");
    } else if ((flags & 8) != 0) {
        out.add(" HDLC transparent");
    }
}

// byte 3: 0 hard   bytes 4, 8: adaptation   bytes 5, 6: version   byte 7: selftest
void reset_form(Session& /*session*/, const Message& m, Text& out) {
    out.print("reset {} V24 "_cf, m[3] == 0 ? "hard" : "soft");
    adaptation(m, out);
    out.print(" {}, selftest: {}"_cf, soft_version(m, 5), m[7] != 0 ? "BAD" : "OK");
}

void wrong_state(Session& /*session*/, const Message& m, Text& out) {
    out.print("illegal command {:02x} in current state"_cf, m[4]);
}

constexpr auto reports = opcodes({{0x00, reset_form},
                                  {0x01, reset_form},
                                  {0x02, illegal_command},
                                  {0x06, "segment failure"},
                                  {0x07, wrong_state},
                                  {0x81, reset_form}});

// byte 3: kind
void reset_report(Session& session, const Message& m, Text& out) {
    if (!reports.write(m[3], session, m, out)) out.add("reset ??");
}

constexpr auto answers = opcodes({{0x00, "nop ack"},
                                  {0x06, "loopback ON ack"},
                                  {0x07, "loopback OFF ack"},
                                  {0x0C, "segment message"},
                                  {0x0E, version_response},
                                  {0x1F, reset_report},
                                  {0x21, wake_up_event},
                                  {0x22, "literal token/word received"},
                                  {0x23, literal_string_error},
                                  {0x25, "connection confirmed"},
                                  {0x26, "disconnect sequence detected"},
                                  {0x28, "suspend complete"},
                                  {0x29, "EIA change detected"},
                                  {0x2B, "inactivity timeout"},
                                  {0x2C, "error counters"},
                                  {0x2D, timer_expired},
                                  {0x2E, "display ack"},
                                  {0x2F, "output to user buffer empty"},
                                  {0x30, "V120 protocol error"},
                                  {0x31, "remote EIA change"}});

}  // namespace

void decode_v24_out(Session& session, const Message& m, Text& out) {
    if (!commands.write(module_opcode(m), session, m, out)) out.add("cmd ???");
}

void decode_v24(Session& session, const Message& m, Text& out) {
    if (!answers.write(module_opcode(m), session, m, out)) out.add("??");
}

}  // namespace ztdecode

void ztdecode::v24::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_v24_out, d); }
void ztdecode::v24::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_v24, d); }
