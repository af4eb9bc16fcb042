#include "core/going_away.hpp"
#include "digital/options/keys.hpp"
#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Key extension modules ("aom" and "eak"). byte 2: opcode, then its parameters.

namespace ztdecode {

namespace {

constexpr std::uint8_t type_aom = 3;

void super_message(Session& session, const Message& m, Text& out) {
    sub_super(session, m, decode_eak_out, out);
}

constexpr auto commands = opcodes({{0x00, "nop"},
                                   {0x03, "software reset"},
                                   {0x0B, super_message},
                                   {0x0E, "version inquiry"},
                                   {0x0F, "status inquiry"},
                                   {0x39, "lcd contrast"},
                                   {0x41, key_release_config},
                                   {0x46, "all icons off"},
                                   {0x47, "icon command"}});

// bytes 4, 5: version   byte 7: number of keys. The reset report has both one byte further on.
void version_response(Session& /*session*/, const Message& m, Text& out) {
    out.print("version response, {}, nb touches: {}"_cf, soft_version(m, 4), m[7]);
}

// byte 3: whether released keys are reported
void status_response(Session& /*session*/, const Message& m, Text& out) {
    out.print("status response: key released= {}"_cf, on_or_off(m[3]));
}

// byte 3: 0 hard   byte 4: module type   bytes 5, 6: version   byte 8: number of keys
void reset_form(Session& /*session*/, const Message& m, Text& out) {
    out.print("reset {} {} {}, nb touches: {}"_cf, m[3] == 0 ? "hard" : "soft",
              m[4] == type_aom ? "aom" : "eak", soft_version(m, 5), m[8]);
}

constexpr auto reports =
    opcodes({{0x00, reset_form}, {0x01, reset_form}, {0x02, illegal_command}, {0x81, reset_form}});

// byte 3: kind
void reset_report(Session& session, const Message& m, Text& out) {
    if (!reports.write(m[3], session, m, out)) out.add("reset ??");
}

constexpr auto answers = opcodes({{0x00, "nop ack"},
                                  {0x0E, version_response},
                                  {0x0F, status_response},
                                  {0x1F, reset_report},
                                  {0x20, key_pushed},
                                  {0x29, special_key_status},
                                  {0x2A, key_released}});

}  // namespace

void decode_eak_out(Session& session, const Message& m, Text& out) {
    if (!commands.write(module_opcode(m), session, m, out)) out.add("eak ??");
}

void decode_eak(Session& session, const Message& m, Text& out) {
    if (!answers.write(module_opcode(m), session, m, out)) out.add("??");
}

}  // namespace ztdecode

void ztdecode::eak::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_eak_out, d); }
void ztdecode::eak::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_eak, d); }
