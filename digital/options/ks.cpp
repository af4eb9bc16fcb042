#include "core/phrase.hpp"
#include "digital/options/keys.hpp"
#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Key system modules. byte 2: opcode, then its parameters.

namespace ztdecode::ks {

namespace {

// byte 3: what to do; its word stands right behind "test"
constexpr auto test_steps = names({{1, "start"}, {2, "end"}}, "");

void production_test(Decoding& d) { d.print("production test{test}"_cf, test_steps[d[3]]); }

constexpr auto commands =
    opcodes({{0x00, "nop", "nop"},
             {0x01, "production_test", production_test},
             {0x03, "software_reset", "software reset"},
             {0x0B, "super_message", [](Decoding& d) { modules::super_message(d, from_system); }},
             {0x0E, "version_and_status_inquiry", "version and status inquiry"},
             {0x21, "led", "LED command"},
             {0x41, "key_release", modules::key_release},
             {0x68, "read_eeprom", "read EEPROM"},
             {0x69, "write_eeprom", "write EEPROM"}},
            "ks ??");

// bytes 4, 5: version   byte 7: stack
void version_response(Decoding& d) {
    d.print("version response,  soft={software_version}, stack max: {stack_maximum:02x}"_cf, version_at(d, 4),
            d[7]);
}

// byte 3: 0 hard   bytes 5, 6: version   byte 7: reason   byte 8: stack
void reset(Decoding& d) {
    d.add("reset ");
    add_phrase(d, "reset_kind", either(d[3] == 0, "hard ks", "soft ks"), "", " ks");
    d.print("  soft={software_version}, raison: {reset_reason:02x}, stack max: {stack_maximum:02x}"_cf,
            version_at(d, 5), d[7], d[8]);
}

constexpr auto reports = opcodes({{0x00, "reset", reset},
                                  {0x01, "reset", reset},
                                  {0x02, "illegal_command", modules::illegal_command},
                                  {0x81, "reset", reset}},
                                 "reset ??");

// byte 3: kind
void report(Decoding& d) { reports.write(d, d[3]); }

void write_eeprom_response(Decoding& d) {
    d.print("write EEPROM response {eeprom_written}"_cf, flag(d[3] == 0, "ok", "bad"));
}

constexpr auto answers = opcodes({{0x00, "nop_ack", "nop ack"},
                                  {0x0E, "version_response", version_response},
                                  {0x1F, "report", report},
                                  {0x20, "key_pushed", modules::key_pushed},
                                  {0x29, "special_key_status", modules::special_key_status},
                                  {0x2A, "key_released", modules::key_released},
                                  {0x70, "read_eeprom_response", "read EEPROM response"},
                                  {0x71, "write_eeprom_response", write_eeprom_response}},
                                 "??");

}  // namespace

void from_system(Decoding& d) { commands.write(d, modules::opcode(d)); }

void to_system(Decoding& d) { answers.write(d, modules::opcode(d)); }

}  // namespace ztdecode::ks
