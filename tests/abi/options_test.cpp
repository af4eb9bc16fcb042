#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "support/support.hpp"
#include "ztdecode.h"

namespace {

MessageRecord record(std::string_view hex) {
    MessageRecord r = {};
    const auto data = ztdecode::testing::bytes(hex);
    r.length = static_cast<std::uint32_t>(data.size());
    std::memcpy(r.data, data.data(), data.size());
    return r;
}

std::string text(const char* (*decoder)(MessageRecord*), std::string_view hex) {
    MessageRecord r = record(hex);
    return decoder(&r);
}

std::vector<MessageRecord> parts;

const char* note(MessageRecord* part) {
    parts.push_back(*part);
    return "noted";
}

const char* nothing(MessageRecord* /*part*/) { return nullptr; }

// Splits every part again as if it were a super message, but not inside that.
const char* split_again(MessageRecord* part) { return subSuper(part, note); }

const char* split_forever(MessageRecord* part) { return subSuper(part, split_forever); }

TEST(AbiModules, DecodersReadTheirRecord) {
    EXPECT_EQ(text(decode_z, "04 2a 01"), "off hook");
    EXPECT_EQ(text(decode_z_out, "02 2a 24"), "enable dtmf");
    EXPECT_EQ(text(decode_mpc, "04 10 20"), "I'm here");
    EXPECT_EQ(text(decode_mpc_out, "02 10 20"), "are you there?");
    EXPECT_EQ(text(decode_eak, "04 23 20 07"), "key pushed: 07");
    EXPECT_EQ(text(decode_eak_out, "02 23 39"), "lcd contrast");
    EXPECT_EQ(text(decode_ks, "04 4a 70"), "read EEPROM response");
    EXPECT_EQ(text(decode_ks_out, "02 4a 68"), "read EEPROM");
    EXPECT_EQ(text(decode_v24, "04 02 2e"), "display ack");
    EXPECT_EQ(text(decode_v24_out, "02 02 2b"), "flow control");
    EXPECT_EQ(text(decode_s0, "04 0b 24"), "loss of power");
    EXPECT_EQ(text(decode_s0_out, "02 0b 24"), "send test pattern");
}

TEST(AbiModules, EachDecoderHasABufferOfItsOwn) {
    MessageRecord to_module = record("02 2a 0e");
    MessageRecord to_system = record("04 2a 02");
    const char* first = decode_z_out(&to_module);
    const char* second = decode_z(&to_system);
    EXPECT_STREQ(first, "version inquiry");
    EXPECT_STREQ(second, "on hook");
}

TEST(AbiModules, DecodersReadBehindTheLengthWhatTheRecordHolds) {
    MessageRecord r = record("04 23 20 c1");
    r.length = 3;
    EXPECT_STREQ(decode_eak(&r), "key pushed: c1");
    r.length = 1;
    EXPECT_STREQ(decode_eak(&r), "key pushed: c1");
    r.length = 100000;
    EXPECT_STREQ(decode_eak(&r), "key pushed: c1");
}

TEST(AbiModules, DecodersLeaveTheRecordAsItIs) {
    MessageRecord r = record("04 10 0b 05 26 04 2a 01 02 01 20");
    r.route = 7;
    r.status = 2;
    r.reserved = 0x1234;
    const MessageRecord before = r;
    decode_mpc(&r);
    EXPECT_EQ(std::memcmp(&r, &before, sizeof r), 0);
}

TEST(AbiModules, NoRecordIsAnEmptyText) {
    EXPECT_STREQ(decode_s0(nullptr), "");
    EXPECT_STREQ(subSuper(nullptr, decode_z), "");
    MessageRecord r = record("04 2a 0b 00");
    EXPECT_STREQ(subSuper(&r, nullptr), "");
}

TEST(AbiSubSuper, TakesTheDecodersOfThisLibrary) {
    MessageRecord r = record("04 2a 0b 02 01 05 01 03");
    EXPECT_STREQ(subSuper(&r, decode_z_out), "super message\n\t\t- ?? <01>\n\t\t- software reset\n");
    EXPECT_STREQ(subSuper(&r, decode_z), "super message\n\t\t- off hook\n\t\t- digit dialed '3'\n");
    EXPECT_STREQ(subSuper(&r, decode_v24), "super message\n\t\t- ??\n\t\t- ??\n");
}

TEST(AbiSubSuper, HandsRecordsToTheHostsDecoder) {
    MessageRecord r = record("04 2a 0b 02 01 05 01 03");
    r.direction = 1;
    r.route = 3;
    r.reserved = 0x2A00;
    r.data[5119] = 0x77;
    parts.clear();
    EXPECT_STREQ(subSuper(&r, note), "super message\n\t\t- noted\n\t\t- noted\n");
    ASSERT_EQ(parts.size(), 2U);
    const auto first = ztdecode::testing::bytes("0b 02 01 05 01 03 03 03 00");
    const auto second = ztdecode::testing::bytes("05 01 03 03 05 01 03 03 00");
    EXPECT_EQ(parts[0].length, 4U);
    EXPECT_EQ(std::memcmp(parts[0].data, first.data(), first.size()), 0);
    EXPECT_EQ(parts[1].length, 3U);
    EXPECT_EQ(std::memcmp(parts[1].data, second.data(), second.size()), 0);
    for (const MessageRecord& part : parts) {
        EXPECT_EQ(part.direction, 1U);
        EXPECT_EQ(part.route, 3U);
        EXPECT_EQ(part.reserved, 0x2A00);
        EXPECT_EQ(part.data[5119], 0x77);
    }
}

TEST(AbiSubSuper, AsksTheHostForEveryPartOfAnEmptyCopy) {
    MessageRecord r = record("02 2a 0b 05 03");
    parts.clear();
    const std::string result = subSuper(&r, note);
    EXPECT_EQ(parts.size(), 22U);
    EXPECT_EQ(result.size(), std::strlen("super message\n") + 22 * std::strlen("\t\t- noted\n"));
    for (std::size_t i = 1; i < parts.size(); ++i) {
        EXPECT_EQ(parts[i].length, 13U);
        EXPECT_EQ(parts[i].data[0], 0x2A);
        EXPECT_EQ(parts[i].data[2], 0x05);
    }
}

TEST(AbiSubSuper, NoTextFromTheHostIsAnEmptyOne) {
    MessageRecord r = record("04 2a 0b 01 05 01 03");
    EXPECT_STREQ(subSuper(&r, nothing), "super message\n\t\t- \n\t\t- \n");
}

TEST(AbiSubSuper, HostMaySplitTheParts) {
    // Parts of "0b 03 0b 01 00": the inner text stands in place of the outer one, and once more.
    MessageRecord r = record("02 10 0b 03 0b 01 00 03 0b 01 00");
    parts.clear();
    EXPECT_STREQ(subSuper(&r, split_again), "super message\n\t\t- noted\nsuper message\n\t\t- noted\n\n");
    EXPECT_EQ(parts.size(), 2U);
    EXPECT_STREQ(subSuper(&r, decode_ks_out), "super message\n\t\t- nop\nsuper message\n\t\t- nop\n\n");
}

TEST(AbiSubSuper, HostThatSplitsForeverComesBack) {
    MessageRecord r = record("02 10 0b 01 00");
    const std::string result = subSuper(&r, split_forever);
    EXPECT_EQ(result.substr(0, 14), "super message\n");
}

TEST(AbiSubSuper, LongerRecordThanThereIsCountsAsFull) {
    // 5119 bytes behind the first count as 255; empty parts lead down to 2.
    MessageRecord r = record("02 2a 0b");
    r.length = 1000000;
    std::string expected = "super message\n";
    for (int i = 0; i < 253; ++i) expected += "\t\t- nop\n";
    EXPECT_EQ(subSuper(&r, decode_z_out), expected);
    EXPECT_EQ(decode_z_out(&r), expected);
}

}  // namespace
