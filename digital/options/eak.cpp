#include "digital/options/keys.hpp"
#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Key extension modules ("aom" and "eak"). byte 2: opcode, then its parameters.

namespace ztdecode::eak {

namespace {

constexpr std::uint8_t type_aom = 3;

constexpr auto commands =
    opcodes({{0x00, "nop", "nop"},
             {0x03, "software_reset", "software reset"},
             {0x0B, "super_message", [](Decoding& d) { modules::super_message(d, from_system); }},
             {0x0E, "version_inquiry", "version inquiry"},
             {0x0F, "status_inquiry", "status inquiry"},
             {0x39, "lcd_contrast", "lcd contrast"},
             {0x41, "key_release", modules::key_release},
             {0x46, "all_icons_off", "all icons off"},
             {0x47, "icons", "icon command"}},
            "eak ??");

// bytes 4, 5: version   byte 7: number of keys. The reset report has both one byte further on.
void version_response(Decoding& d) {
    d.print("version response,  soft={software_version}, nb touches: {keys}"_cf, version_at(d, 4), d[7]);
}

// byte 3: whether released keys are reported
void status_response(Decoding& d) {
    d.print("status response: key released= {key_release}"_cf, modules::on_or_off(d[3]));
}

// byte 3: 0 hard   byte 4: module type   bytes 5, 6: version   byte 8: number of keys
void reset(Decoding& d) {
    d.print("reset {reset_kind} {module_type}  soft={software_version}, nb touches: {keys}"_cf,
            modules::hard_or_soft(d[3]), either(d[4] == type_aom, "aom", "eak"), version_at(d, 5), d[8]);
}

constexpr auto reports = opcodes({{0x00, "reset", reset},
                                  {0x01, "reset", reset},
                                  {0x02, "illegal_command", modules::illegal_command},
                                  {0x81, "reset", reset}},
                                 "reset ??");

// byte 3: kind
void report(Decoding& d) { reports.write(d, d[3]); }

constexpr auto answers = opcodes({{0x00, "nop_ack", "nop ack"},
                                  {0x0E, "version_response", version_response},
                                  {0x0F, "status_response", status_response},
                                  {0x1F, "report", report},
                                  {0x20, "key_pushed", modules::key_pushed},
                                  {0x29, "special_key_status", modules::special_key_status},
                                  {0x2A, "key_released", modules::key_released}},
                                 "??");

}  // namespace

void from_system(Decoding& d) { commands.write(d, modules::opcode(d)); }

void to_system(Decoding& d) { answers.write(d, modules::opcode(d)); }

}  // namespace ztdecode::eak
