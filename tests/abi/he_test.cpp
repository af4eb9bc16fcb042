#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstring>
#include <string>

#include "support/support.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

MessageRecord record_of(std::string_view hex, std::uint32_t direction = from_dhs) {
    const auto data = bytes(hex);
    MessageRecord record{};
    record.length = static_cast<std::uint32_t>(data.size());
    std::copy(data.begin(), data.end(), record.data);
    record.direction = direction;
    return record;
}

std::string name_of(int id) {
    char* name = ::apId(id);
    std::string copy = name;
    free(name);
    return copy;
}

TEST(AbiHe, ToSystem) {
    MessageRecord record = record_of("50 02 fa", to_dhs);
    record.status = 7;
    EXPECT_STREQ(::he2dhs(&record), "appli management: create appli communication assistant");
    EXPECT_EQ(record.status, 1U);

    record = record_of("08", to_dhs);
    EXPECT_STREQ(::he2dhs(&record), "???");
    EXPECT_EQ(record.status, 2U);
}

TEST(AbiHe, FromSystem) {
    MessageRecord record = record_of("55 01 03 02");
    record.status = 7;
    EXPECT_STREQ(::dhs2he(&record), "text editor: peek field  winId=03 objId=02");
    EXPECT_EQ(record.status, 1U);

    record = record_of("01");
    EXPECT_STREQ(::dhs2he(&record), "???");
    EXPECT_EQ(record.status, 2U);
}

TEST(AbiHe, RecordStaysAsItIs) {
    MessageRecord record = record_of("50 02 fa", to_dhs);
    record.route = 5;
    record.reserved = 0x1234;
    MessageRecord before = record;
    ::he2dhs(&record);
    before.status = 1;
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
}

TEST(AbiHe, TextsAreInBuffersOfTheirOwn) {
    MessageRecord record = record_of("02", to_dhs);
    const char* to_system = ::he2dhs(&record);
    record = record_of("00");
    const char* from_system = ::dhs2he(&record);
    EXPECT_STREQ(to_system, "on hook");
    EXPECT_STREQ(from_system, "nop");
}

TEST(AbiHe, BytesBehindTheLengthAreTheRecords) {
    MessageRecord record = record_of("50 06 04");
    record.length = 2;
    EXPECT_STREQ(::dhs2he(&record), "refresh window winId=04");

    record = record_of("53 0b 01 02 00 02 48 69");
    record.length = 6;
    EXPECT_STREQ(::dhs2he(&record), "append static text field winId=01 objId=02");
}

// The last window command is remembered whichever way it came in.
TEST(AbiHe, UnknownWindowCommandsGoOnFromTheLastOne) {
    MessageRecord record = record_of("50 04 03");
    EXPECT_STREQ(::dhs2he(&record), "move window: winId=03");
    char* text = ::decode(record_of("05 00 00 50 09"));
    EXPECT_STREQ(text, "\t- [HE: firmware -> firmware]\t- move window: winId=03???");
    free(text);
    record = record_of("50 09");
    EXPECT_STREQ(::dhs2he(&record), "move window: winId=03??????");

    text = ::decode(record_of("05 00 00 50 06 04"));
    EXPECT_STREQ(text, "\t- [HE: firmware -> firmware]\t- refresh window winId=04");
    free(text);
    EXPECT_STREQ(::dhs2he(&record), "refresh window winId=04???");
}

TEST(AbiHe, NoRecord) {
    EXPECT_STREQ(::he2dhs(nullptr), "");
    EXPECT_STREQ(::dhs2he(nullptr), "");
}

TEST(AbiHe, ApplicationNames) {
    EXPECT_EQ(name_of(0), " firmware");
    EXPECT_EQ(name_of(250), " communication assistant");
    EXPECT_EQ(name_of(255), " default");
    EXPECT_EQ(name_of(5), " 05");
    EXPECT_EQ(name_of(247), " f7");
    EXPECT_EQ(name_of(256), " 100");
    EXPECT_EQ(name_of(-1), " ffffffff");
}

// A host may write its own name into the block.
TEST(AbiHe, ApplicationNamesHaveRoom) {
    char* name = ::apId(0);
    std::memset(name, 'x', 29);
    name[29] = '\0';
    EXPECT_EQ(std::strlen(name), 29U);
    free(name);
}

}  // namespace
}  // namespace ztdecode::testing
