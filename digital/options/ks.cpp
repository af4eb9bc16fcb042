#include "core/going_away.hpp"
#include "digital/options/keys.hpp"
#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Key system modules. byte 2: opcode, then its parameters.

namespace ztdecode {

namespace {

void super_message(Session& session, const Message& m, Text& out) {
    sub_super(session, m, decode_ks_out, out);
}

// byte 3: what to do; its word stands right behind "test"
constexpr auto test_steps = names({{1, "start"}, {2, "end"}}, "");

void production_test(Session& /*session*/, const Message& m, Text& out) {
    out.print("production test{}"_cf, test_steps[m[3]]);
}

constexpr auto commands = opcodes({{0x00, "nop"},
                                   {0x01, production_test},
                                   {0x03, "software reset"},
                                   {0x0B, super_message},
                                   {0x0E, "version and status inquiry"},
                                   {0x21, "LED command"},
                                   {0x41, key_release_config},
                                   {0x68, "read EEPROM"},
                                   {0x69, "write EEPROM"}});

// bytes 4, 5: version   byte 7: stack
void version_response(Session& /*session*/, const Message& m, Text& out) {
    out.print("version response, {}, stack max: {:02x}"_cf, soft_version(m, 4), m[7]);
}

// byte 3: 0 hard   bytes 5, 6: version   byte 7: reason   byte 8: stack
void reset_form(Session& /*session*/, const Message& m, Text& out) {
    out.print("reset {} {}, raison: {:02x}, stack max: {:02x}"_cf, m[3] == 0 ? "hard ks" : "soft ks",
              soft_version(m, 5), m[7], m[8]);
}

constexpr auto reports =
    opcodes({{0x00, reset_form}, {0x01, reset_form}, {0x02, illegal_command}, {0x81, reset_form}});

// byte 3: kind
void reset_report(Session& session, const Message& m, Text& out) {
    if (!reports.write(m[3], session, m, out)) out.add("reset ??");
}

void write_eeprom_response(Session& /*session*/, const Message& m, Text& out) {
    out.print("write EEPROM response {}"_cf, m[3] != 0 ? "bad" : "ok");
}

constexpr auto answers = opcodes({{0x00, "nop ack"},
                                  {0x0E, version_response},
                                  {0x1F, reset_report},
                                  {0x20, key_pushed},
                                  {0x29, special_key_status},
                                  {0x2A, key_released},
                                  {0x70, "read EEPROM response"},
                                  {0x71, write_eeprom_response}});

}  // namespace

void decode_ks_out(Session& session, const Message& m, Text& out) {
    if (!commands.write(module_opcode(m), session, m, out)) out.add("ks ??");
}

void decode_ks(Session& session, const Message& m, Text& out) {
    if (!answers.write(module_opcode(m), session, m, out)) out.add("??");
}

}  // namespace ztdecode

void ztdecode::ks::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_ks_out, d); }
void ztdecode::ks::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_ks, d); }
