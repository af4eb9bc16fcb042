#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(DecodeZOut, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(z::from_system,
                   {{0x00, "nop"},
                    {0x03, "software reset"},
                    {0x0B, "super message\n\t\t- nop\n"},
                    {0x0E, "version inquiry"},
                    {0x24, "enable dtmf"},
                    {0x25, "disable dtmf"},
                    {0x26, "terminal type"},
                    {0x29, "voice mode actif"},
                    {0x3E, "define ringing cadence"},
                    {0x49, "AB timings"},
                    {0x4A, "audio padded path: unknown param"}},
                   [](unsigned byte) { return formatted("?? <{-:02x}>"_cf, byte); });
}

TEST(DecodeZOut, ShowsTheWholeByteOfAnUnknownOpcode) {
    expect_texts(z::from_system,
                 {{"02 2a 8e", "version inquiry"}, {"02 2a 50", "?? <50>"}, {"02 2a d0", "?? <d0>"}});
}

TEST(DecodeZOut, NamesVoiceModes) {
    expect_values(z::from_system, "02 2a 29 00", 3,
                  {{0, "voice mode idle"}, {1, "voice mode actif"}, {6, "voice mode ringing"}},
                  "voice mode unknown");
}

TEST(DecodeZOut, NamesTheAnalogGain) {
    expect_values(z::from_system, "02 2a 4a 00", 3, {{0, "audio padded path: analog gain"}},
                  "audio padded path: unknown param");
}

TEST(DecodeZ, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(z::to_system,
                   {{0x00, "nop ack"},
                    {0x01, "off hook"},
                    {0x02, "on hook"},
                    {0x03, "digit dialed '1'"},
                    {0x0E, "version response"},
                    {0x1F, "reset soft z  soft=0.00, selftest=00, off hook, hard=00"}},
                   [](unsigned byte) { return formatted("z ?? <{-:02x}>"_cf, byte); });
}

TEST(DecodeZ, DigitsAreNumbers) {
    expect_texts(z::to_system, {{"04 2a 03 00", "digit dialed '0'"},
                                {"04 2a 03 0a", "digit dialed '10'"},
                                {"04 2a 03 ff", "digit dialed '255'"}});
}

TEST(DecodeZ, DoesNotSplitSuperMessages) {
    expect_texts(z::to_system, {{"04 2a 0b 02 01 05 01 03", "z ?? <0b>"}, {"04 2a 8b 01 00", "z ?? <8b>"}});
}

TEST(DecodeZ, NamesEveryReport) {
    expect_values(z::to_system, "04 2a 1f 00 04 05 06 07 08 09", 3,
                  {{0x00, "reset hard z  soft=5.06, selftest=07, on hook, hard=09"},
                   {0x01, "reset soft z  soft=5.06, selftest=07, on hook, hard=09"},
                   {0x81, "reset soft z  soft=5.06, selftest=07, on hook, hard=09"},
                   {0x02, "illegal command"},
                   {0x03, "illegal param"},
                   {0x04, "illegal length"},
                   {0x10, "not implemented yet"},
                   {0x11, "error host 1"},
                   {0x12, "error host 2"}},
                  "reset ??");
}

TEST(DecodeZ, ResetHasEachFieldInItsPlace) {
    expect_texts(
        z::to_system,
        {{"04 2a 1f 00 ff 01 12 ab 00 fe", "reset hard z  soft=1.18, selftest=ab, off hook, hard=fe"},
         {"04 2a 9f 81 ff 30 39 00 ff 00", "reset soft z  soft=1.23.45, selftest=00, on hook, hard=00"},
         {"04 2a 1f 80 00 01 12", "reset ??"}});
}

}  // namespace
}  // namespace ztdecode::testing
