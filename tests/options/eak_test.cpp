#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(DecodeEakOut, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(eak::from_system,
                   {{0x00, "nop"},
                    {0x03, "software reset"},
                    {0x0B, "super message\n\t\t- nop\n"},
                    {0x0E, "version inquiry"},
                    {0x0F, "status inquiry"},
                    {0x39, "lcd contrast"},
                    {0x41, "key release config = on"},
                    {0x46, "all icons off"},
                    {0x47, "icon command"}},
                   [](unsigned) { return std::string("eak ??"); });
}

TEST(DecodeEakOut, KeyReleaseIsOnForAnyOtherValueThan0) {
    expect_values(eak::from_system, "02 23 41 00", 3, {{0, "key release config = off"}},
                  "key release config = on");
}

TEST(DecodeEak, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(eak::to_system,
                   {{0x00, "nop ack"},
                    {0x0E, "version response,  soft=0.00, nb touches: 0"},
                    {0x0F, "status response: key released= on"},
                    {0x1F, "reset soft eak  soft=0.00, nb touches: 0"},
                    {0x20, "key pushed: 01"},
                    {0x29, "special key status: control released, shift pushed"},
                    {0x2A, "key released: 01"}},
                   [](unsigned) { return std::string("??"); });
}

TEST(DecodeEak, DoesNotSplitSuperMessages) {
    expect_texts(eak::to_system, {{"04 23 0b 02 01 05 01 03", "??"}, {"04 23 8b 01 00", "??"}});
}

TEST(DecodeEak, VersionStandsOneByteEarlierThanInTheReset) {
    expect_texts(eak::to_system,
                 {{"04 23 0e 03 04 05 06 07 08", "version response,  soft=4.05, nb touches: 7"},
                  {"04 23 0e 00 30 39 00 ff", "version response,  soft=1.23.45, nb touches: 255"},
                  {"04 23 1f 00 04 05 06 07 08", "reset hard eak  soft=5.06, nb touches: 8"}});
}

TEST(DecodeEak, StatusIsOnForAnyOtherValueThan0) {
    expect_values(eak::to_system, "04 23 0f 00", 3, {{0, "status response: key released= off"}},
                  "status response: key released= on");
}

TEST(DecodeEak, KeysAreTwoDigits) {
    expect_texts(eak::to_system, {{"04 23 20 05", "key pushed: 05"},
                                  {"04 23 20 fe", "key pushed: fe"},
                                  {"04 23 2a 0a", "key released: 0a"},
                                  {"04 23 aa ff", "key released: ff"}});
}

TEST(DecodeEak, SpecialKeysAreBits) {
    expect_texts(eak::to_system, {{"04 23 29 00", "special key status: control released, shift released"},
                                  {"04 23 29 01", "special key status: control released, shift pushed"},
                                  {"04 23 29 02", "special key status: control pushed, shift released"},
                                  {"04 23 29 03", "special key status: control pushed, shift pushed"},
                                  {"04 23 29 fc", "special key status: control released, shift released"}});
}

TEST(DecodeEak, NamesEveryReport) {
    expect_values(eak::to_system, "04 23 1f 00 03 05 06 07 08", 3,
                  {{0x00, "reset hard aom  soft=5.06, nb touches: 8"},
                   {0x01, "reset soft aom  soft=5.06, nb touches: 8"},
                   {0x81, "reset soft aom  soft=5.06, nb touches: 8"},
                   {0x02, "illegal command 03"}},
                  "reset ??");
}

TEST(DecodeEak, ResetNamesTheModuleByItsType) {
    expect_values(eak::to_system, "04 23 1f 01 00 02 c8 00 3c", 4,
                  {{3, "reset soft aom  soft=2.200, nb touches: 60"}},
                  "reset soft eak  soft=2.200, nb touches: 60");
}

}  // namespace
}  // namespace ztdecode::testing
