#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

std::string unknown(unsigned /*byte*/) { return "??"; }

TEST(DecodeMpcOut, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(mpc::from_system,
                   {{0x00, "nop"},
                    {0x0B, "super message\n\t\t- nop\n"},
                    {0x0C, "segment message suite, reste 1 messages"},
                    {0x0E, "version inquiry"},
                    {0x11, "ABC-A"},
                    {0x12, "TAPI"},
                    {0x1F, "bad message"},
                    {0x20, "are you there?"},
                    {0x21, "pabx type"},
                    {0x22, "terminal type"},
                    {0x60, "local message"},
                    {0x61, "system trace header"},
                    {0x62, "vta trace header"},
                    {0x63, "system to option trace header"},
                    {0x64, "option to system trace header"}},
                   unknown);
}

TEST(DecodeMpcOut, SegmentsShowBit7AndTheRest) {
    expect_texts(mpc::from_system, {{"02 10 0c 85", "segment message debut, reste 5 messages"},
                                    {"02 10 0c 05", "segment message suite, reste 5 messages"},
                                    {"02 10 0c 80", "segment message debut, reste 0 messages"},
                                    {"02 10 0c 00", "segment message suite, reste 0 messages"},
                                    {"02 10 8c ff", "segment message debut, reste 127 messages"},
                                    {"02 10 0c 7f", "segment message suite, reste 127 messages"}});
}

TEST(DecodeMpc, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(mpc::to_system,
                   {{0x00, "nop ack"},
                    {0x0B, "super message\n\t\t- nop ack\n"},
                    {0x0C, "segment message "},
                    {0x0E, "version response"},
                    {0x11, "ABC-A"},
                    {0x12, "TAPI"},
                    {0x1F, "reset soft mpc  soft=0.00"},
                    {0x20, "I'm here"},
                    {0x21, "connection detected"},
                    {0x22, "disconnection detected"},
                    {0x23, "enable trace mode"},
                    {0x24, "disable trace mode"},
                    {0x25, "VTA general state inquiry"},
                    {0x26, "VTA emulation: handset off hook"},
                    {0x27, "anomalie soft 1"}},
                   unknown);
}

TEST(DecodeMpc, NamesEveryReport) {
    expect_values(mpc::to_system, "04 10 1f 00 04 05 06", 3,
                  {{0x00, "reset hard mpc  soft=5.06"},
                   {0x01, "reset soft mpc  soft=5.06"},
                   {0x81, "reset soft mpc  soft=5.06"},
                   {0x02, "illegal command"}},
                  "reset ??");
}

TEST(DecodeMpc, AnomaliesAreNumbers) {
    expect_texts(mpc::to_system, {{"04 10 27 00", "anomalie soft 0"}, {"04 10 a7 fe", "anomalie soft 254"}});
}

TEST(DecodeMpc, EmulatedSetSaysWhatASetSays) {
    expect_texts(mpc::to_system, {{"04 10 26 03 0b", "VTA emulation: digit dialed '#'"},
                                  {"04 10 a6 83 0a", "VTA emulation: digit dialed '*'"},
                                  {"04 10 26 01", "VTA emulation: handset off hook"},
                                  {"04 10 26 1f 02 ab", "VTA emulation: illegal command received: ab"},
                                  {"04 10 26 50 07", "VTA emulation: download protocol checksum ack"},
                                  {"04 10 26 04 2a 01", "VTA emulation: [opt Z adr 2] off hook"},
                                  {"04 10 26 04 1b 20 0c", "VTA emulation: [opt aom adr 3] key pushed: 0c"},
                                  {"04 10 26 04 10 20", "VTA emulation: [opt mac/pc adr 0] I'm here"},
                                  // A set that speaks an unknown opcode has an empty text.
                                  {"04 10 26 2c", "VTA emulation: "}});
}

TEST(DecodeMpc, EmulationOfNothingKeepsItsLabel) {
    TestSession d;
    EXPECT_EQ(d.with(mpc::to_system, "04 10 26"), "VTA emulation: ");
    EXPECT_EQ(d.error, "");
}

TEST(DecodeMpc, EmulatedMessageIsReadInTheSameDirectionEitherWay) {
    TestSession d;
    EXPECT_EQ(d.with(mpc::to_system, "04 10 26 22", from_dhs), "VTA emulation: I'm here");
    EXPECT_EQ(d.with(mpc::to_system, "04 10 26 22", to_dhs), "VTA emulation: I'm here");
}

TEST(DecodeMpc, EmulatedSetTeachesTheTypeOfItsModules) {
    TestSession d;
    EXPECT_EQ(d.with(mpc::to_system, "04 10 26 04 2d 01"), "VTA emulation: [opt Z adr 5] off hook");
    EXPECT_EQ(*d.session().digital.modules.types[5], 5);
    // Bytes 5 to 7 of the set's message, which has five, are those of the carrying one: 00 03 04.
    EXPECT_EQ(
        d.with(mpc::to_system, "04 10 26 1f 01 00 03 04"),
        "VTA emulation: reset soft, set-03 alpha, soft=3.04, vta type=1, info1=4, info2=0, hard cfg=00, dec");
    EXPECT_EQ(*d.session().digital.modules.types[5], 31);
}

TEST(DecodeMpc, EmulationInsideEmulationKeepsBothLabels) {
    expect_texts(
        mpc::to_system,
        {{"04 10 26 04 11 26 03 05", "VTA emulation: [opt mac/pc adr 1] VTA emulation: digit dialed '5'"},
         {"04 10 26 04 11 26 04 12 26 04 29 02",
          "VTA emulation: [opt mac/pc adr 1] VTA emulation: [opt mac/pc adr 2] VTA emulation: "
          "[opt Z adr 1] on hook"},
         {"04 10 26 04 11 26", "VTA emulation: [opt mac/pc adr 1] VTA emulation: "}});
}

// The type of the label is the one before the message, also when the message that it comes from stands
// inside.
TEST(DecodeMpc, EmulationInsideEmulationRemembersInOrder) {
    TestSession d;
    d.session().change(d.session().digital.modules.types[3]) = 5;
    EXPECT_EQ(d.with(mpc::to_system, "04 10 26 04 13 26 04 fb 00"),
              "VTA emulation: [opt mac/pc adr 3] VTA emulation: [opt mac/pc adr 3] subdev message");
    EXPECT_EQ(*d.session().digital.modules.types[3], 31);
}

// Dropping three bytes leaves those behind the message's end where they stood.
TEST(DecodeMpc, EmulatedMessageReadsBehindItsEndWhatTheRecordHolds) {
    const auto data = bytes("04 10 26 03 07 01 02");
    TestSession d;
    for (const auto& [length, text] :
         {std::pair<std::size_t, std::string_view>{5, "digit dialed '7'"}, {4, "digit dialed invalid"}}) {
        const Message m(data.data(), length, data.size());
        Text out;
        decode_message(mpc::to_system, d, m, out);
        // The copy of the short message is "03", then "10" of the carrier's own second byte.
        EXPECT_EQ(out.view(), "VTA emulation: " + std::string(text));
    }
}

TEST(DecodeMpc, ShortMessageHasNothingToEmulate) {
    const auto data = bytes("04 10 26 03 07");
    TestSession d;
    const Message m(data.data(), 2, data.size());
    Text out;
    decode_message(mpc::to_system, d, m, out);
    EXPECT_EQ(out.view(), "VTA emulation: ");
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 3, disponible: 2\n");
}

TEST(DecodeMpc, EmulationsFillTheLongestMessage) {
    std::vector<std::uint8_t> data;
    std::string expected;
    while (data.size() + 3 <= message_capacity) {
        data.insert(data.end(), {0x04, 0x10, 0x26});
        expected += expected.empty() ? "VTA emulation: " : "[opt mac/pc adr 0] VTA emulation: ";
    }
    data.insert(data.end(), {0x01, 0x00});
    ASSERT_EQ(data.size(), message_capacity);
    TestSession d;
    d.session().change(d.session().digital.modules.types[0]) = 2;
    Text out;
    decode_message(mpc::to_system, d, Message(data), out);
    EXPECT_EQ(out.view(), expected + "handset off hook");
    EXPECT_FALSE(d.session().carrying.emulation.open);
}

// Each carried message inside the one that carries it.
TEST(DecodeMpc, EmulatedMessagesCarryEachOther) {
    const auto data = bytes("04 10 26 04 11 26 04 2a 03 07");
    TestSession d;
    Trail trail;
    d.session().trail = &trail;
    Text out;
    const Message m(data);
    trail.start(out, m);
    decode_message(mpc::to_system, d, m, out);
    trail.finish();
    ASSERT_EQ(out.view(), "VTA emulation: [opt mac/pc adr 1] VTA emulation: [opt Z adr 2] digit dialed '7'");
    std::string found;
    for (const NotedMessage& noted : trail.messages()) {
        found += formatted("{-}+{-} {-}-{-} {-}\n"_cf, noted.origin, noted.length, noted.begin, noted.end,
                           noted.name);
    }
    EXPECT_EQ(found,
              "0+10 0-79 set_emulation\n"
              "3+7 15-79 set_emulation\n"
              "6+4 49-79 digit_dialled\n");
    EXPECT_EQ(trail.messages()[1].carrier, 0U);
    EXPECT_EQ(trail.messages()[2].carrier, 1U);
    ASSERT_FALSE(trail.values().empty());
    const NotedValue& digit = trail.values().back();
    EXPECT_EQ(digit.name, "digit");
    EXPECT_EQ(digit.message, 2U);
    ASSERT_EQ(trail.bytes_of(digit).size(), 1U);
    EXPECT_EQ(trail.bytes_of(digit)[0], (ByteRange{9, 9}));
}

}  // namespace
}  // namespace ztdecode::testing
