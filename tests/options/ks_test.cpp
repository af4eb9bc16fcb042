#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(DecodeKsOut, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(ks::from_system,
                   {{0x00, "nop"},
                    {0x01, "production teststart"},
                    {0x03, "software reset"},
                    {0x0B, "super message\n\t\t- nop\n"},
                    {0x0E, "version and status inquiry"},
                    {0x21, "LED command"},
                    {0x41, "key release config = on"},
                    {0x68, "read EEPROM"},
                    {0x69, "write EEPROM"}},
                   [](unsigned) { return std::string("ks ??"); });
}

TEST(DecodeKsOut, ProductionTestRunsTogetherWithItsStep) {
    expect_values(ks::from_system, "02 4a 01 00", 3, {{1, "production teststart"}, {2, "production testend"}},
                  "production test");
}

TEST(DecodeKsOut, KeyReleaseIsOnForAnyOtherValueThan0) {
    expect_values(ks::from_system, "02 4a 41 00", 3, {{0, "key release config = off"}},
                  "key release config = on");
}

TEST(DecodeKs, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(ks::to_system,
                   {{0x00, "nop ack"},
                    {0x0E, "version response,  soft=0.00, stack max: 00"},
                    {0x1F, "reset soft ks  soft=0.00, raison: 00, stack max: 00"},
                    {0x20, "key pushed: 01"},
                    {0x29, "special key status: control released, shift pushed"},
                    {0x2A, "key released: 01"},
                    {0x70, "read EEPROM response"},
                    {0x71, "write EEPROM response bad"}},
                   [](unsigned) { return std::string("??"); });
}

TEST(DecodeKs, DoesNotSplitSuperMessages) {
    expect_texts(ks::to_system, {{"04 4a 0b 02 01 05 01 03", "??"}, {"04 4a 8b 01 00", "??"}});
}

TEST(DecodeKs, VersionStandsOneByteEarlierThanInTheReset) {
    expect_texts(ks::to_system,
                 {{"04 4a 0e 03 04 05 06 07 08", "version response,  soft=4.05, stack max: 07"},
                  {"04 4a 0e 00 30 39 00 ff", "version response,  soft=1.23.45, stack max: ff"},
                  {"04 4a 1f 00 04 05 06 07 08", "reset hard ks  soft=5.06, raison: 07, stack max: 08"}});
}

TEST(DecodeKs, KeysAreTwoDigits) {
    expect_texts(ks::to_system, {{"04 4a 20 05", "key pushed: 05"},
                                 {"04 4a 20 fe", "key pushed: fe"},
                                 {"04 4a 2a 0a", "key released: 0a"},
                                 {"04 4a aa ff", "key released: ff"}});
}

TEST(DecodeKs, SpecialKeysAreBits) {
    expect_texts(ks::to_system, {{"04 4a 29 00", "special key status: control released, shift released"},
                                 {"04 4a 29 01", "special key status: control released, shift pushed"},
                                 {"04 4a 29 02", "special key status: control pushed, shift released"},
                                 {"04 4a 29 03", "special key status: control pushed, shift pushed"},
                                 {"04 4a 29 fc", "special key status: control released, shift released"}});
}

TEST(DecodeKs, WritingIsBadForAnyOtherValueThan0) {
    expect_values(ks::to_system, "04 4a 71 00", 3, {{0, "write EEPROM response ok"}},
                  "write EEPROM response bad");
}

TEST(DecodeKs, NamesEveryReport) {
    expect_values(ks::to_system, "04 4a 1f 00 ab 02 0c f0 1e", 3,
                  {{0x00, "reset hard ks  soft=2.12, raison: f0, stack max: 1e"},
                   {0x01, "reset soft ks  soft=2.12, raison: f0, stack max: 1e"},
                   {0x81, "reset soft ks  soft=2.12, raison: f0, stack max: 1e"},
                   {0x02, "illegal command ab"}},
                  "reset ??");
}

}  // namespace
}  // namespace ztdecode::testing
