#include "object/segments.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

using namespace object;

class Segments : public ::testing::Test {
  protected:
    bool take(const char* hex) { return take_segment(segments, message(bytes(hex))); }
    bool take_old(const char* hex) { return take_segment_of_old(segments, message(bytes(hex))); }
    bool take(const std::vector<std::uint8_t>& data) { return take_segment(segments, message(data)); }

    void expect(const char* hex) {
        EXPECT_EQ(segments.bytes, bytes(hex));
        EXPECT_EQ(segments.filled, bytes(hex).size());
    }

    ObjectSegments segments;

  private:
    const Message& message(const std::vector<std::uint8_t>& data) {
        data_ = data;
        message_ = Message::without_record(data_);
        return message_;
    }

    std::vector<std::uint8_t> data_;
    Message message_ = Message::without_record({});
};

TEST_F(Segments, LengthIsTwoNumbersInARow) {
    const struct {
        const char* hex;
        std::uint32_t length;
    } rows[] = {
        {"00 00", 0x00},  {"0a 00", 0x0A},   {"12 00", 0x12},   {"ff 00", 0xFF},
        {"05 01", 0x15},  {"00 01", 0x10},   {"10 01", 0x110},  {"0f 0f", 0xFF},
        {"05 10", 0x105}, {"10 10", 0x1010}, {"ff ff", 0xFFFF},
    };
    for (const auto& row : rows) {
        const auto data = bytes(row.hex);
        EXPECT_EQ(segment_length(Message(data)), row.length) << row.hex;
    }
}

TEST_F(Segments, TwoSegments) {
    EXPECT_FALSE(take("06 00 0c 81 01 02 03 04"));
    expect("02 01 03 04");  // the first two bytes change places
    EXPECT_TRUE(take("05 00 0c 00 05 06 07"));
    expect("02 01 03 04 05 06 07");
    EXPECT_EQ(segments.last_command_text, " 02 01 03 04 05 06 07");
}

TEST_F(Segments, ThreeSegments) {
    EXPECT_FALSE(take("06 00 0c 82 01 02 03 04"));
    EXPECT_FALSE(take("06 00 0c 01 11 12 13 14"));
    EXPECT_EQ(segments.last_command_text, "");
    EXPECT_TRUE(take("04 00 0c 00 21 22"));
    expect("02 01 03 04 11 12 13 14 21 22");
    EXPECT_EQ(segments.last_command_text, " 02 01 03 04 11 12 13 14 21 22");
}

TEST_F(Segments, MiddleSegmentsCountAsLongAsTheFirst) {
    take("06 00 0c 82 01 02 03 04");
    EXPECT_FALSE(take("04 00 0c 01 11 12"));
    expect("02 01 03 04 11 12 00 00");
    EXPECT_FALSE(take("08 00 0c 01 21 22 23 24 25 26"));
    expect("02 01 03 04 11 12 00 00 21 22 23 24");
    EXPECT_TRUE(take("03 00 0c 00 31"));
    expect("02 01 03 04 11 12 00 00 21 22 23 24 31");
}

TEST_F(Segments, BytesOfTheFrameBehindItsLengthCount) {
    take("06 00 0c 82 01 02 03 04");
    take("04 00 0c 01 11 12 13 14 15");
    expect("02 01 03 04 11 12 13 14");
}

TEST_F(Segments, LastSegmentWithoutPayload) {
    take("06 00 0c 81 01 02 03 04");
    EXPECT_TRUE(take("02 00 0c 00 99"));
    expect("02 01 03 04");
    EXPECT_EQ(segments.last_command_text, " 02 01 03 04");
    EXPECT_TRUE(segments.expects_first);
}

TEST_F(Segments, ShortFirstSegments) {
    // Two bytes are always taken.
    take("04 00 0c 81 01 02 03");
    expect("02 01");
    EXPECT_EQ(segments.payload, 2U);
    for (const char* hex :
         {"03 00 0c 81 01 02 03", "02 00 0c 81 01 02 03", "01 00 0c 81 01 02 03", "00 00 0c 81 01 02 03"}) {
        segments = ObjectSegments();
        take(hex);
        expect("02 01");
    }
    segments = ObjectSegments();
    take("00 00 0c 81");
    expect("00 00");
    EXPECT_EQ(segments.payload, 0U);
    EXPECT_FALSE(take("06 00 0c 01 01 02 03 04"));  // counts as long as the first: not at all
    expect("00 00");
    EXPECT_TRUE(take("03 00 0c 00 31"));
    expect("00 00 31");
}

TEST_F(Segments, AnySegmentIsTheFirstWhileOneIsExpected) {
    EXPECT_FALSE(take("06 00 0c 00 01 02 03 04"));
    expect("02 01 03 04");
    EXPECT_TRUE(take("03 00 0c 00 05"));
    expect("02 01 03 04 05");
}

TEST_F(Segments, FirstSegmentInsideASeriesIsAMiddleOne) {
    take("06 00 0c 81 01 02 03 04");
    EXPECT_FALSE(take("06 00 0c 81 11 12 13 14"));
    expect("02 01 03 04 11 12 13 14");
}

TEST_F(Segments, NextSeriesLiesBehindOneThatNobodyFreed) {
    take("06 00 0c 81 01 02 03 04");
    take("03 00 0c 00 05");
    expect("02 01 03 04 05");
    // Five bytes count; the new payload of four does not reach further than the two behind them.
    EXPECT_FALSE(take("06 00 0c 81 11 12 13 14"));
    expect("00 00 00 00 00 12 11");
    take("02 00 0c 00");
    // A longer payload fills up to its own length.
    EXPECT_FALSE(take("0d 00 0c 81 21 22 23 24 25 26 27 28 29 2a 2b"));
    expect("00 00 00 00 00 00 00 22 21 23 24");
}

TEST_F(Segments, FreedSeries) {
    take("06 00 0c 81 01 02 03 04");
    take("03 00 0c 00 05");
    forget_series(segments);
    expect("");
    EXPECT_EQ(segments.last_command_text, " 02 01 03 04 05");
    forget_command_text(segments);
    EXPECT_EQ(segments.last_command_text, "");
    take("05 00 0c 81 11 12 13");
    expect("12 11 13");
}

TEST_F(Segments, SavedTextStaysWhenNothingIsGathered) {
    take("06 00 0c 81 01 02 03 04");
    keep_command_text(segments);
    EXPECT_EQ(segments.last_command_text, " 02 01 03 04");
    forget_series(segments);
    keep_command_text(segments);
    EXPECT_EQ(segments.last_command_text, " 02 01 03 04");
}

TEST_F(Segments, OldSeries) {
    EXPECT_FALSE(take_old("06 00 0c 82 01 02 03 04"));
    expect("01 02 03 04");
    EXPECT_FALSE(take_old("04 00 0c 01 11 12"));
    expect("01 02 03 04 11 12 00 00");
    EXPECT_TRUE(take_old("04 00 0c 00 21 22"));
    expect("00 02 03 04 11 12 00 00 21 22");
    EXPECT_EQ(segments.last_command_text, " 00 02 03 04 11 12 00 00 21 22");
    // The next one begins anew, freed or not.
    EXPECT_FALSE(take_old("05 00 0c 81 31 32 33"));
    expect("31 32 33");
}

TEST_F(Segments, OldSeriesOfNothing) {
    EXPECT_FALSE(take_old("02 00 0c 81 01 02"));
    expect("");
    EXPECT_TRUE(take_old("02 00 0c 00 01 02"));
    expect("");
    EXPECT_EQ(segments.last_command_text, "");
}

TEST_F(Segments, ASeriesWithoutAnEndKeepsItsFirstBytes) {
    auto first = bytes("ff ff 0c ff");
    first.resize(4 + 0xFFFD, 0xAB);
    take(first);
    EXPECT_EQ(segments.filled, 0xFFFDU);
    for (int i = 0; i < 100; ++i) EXPECT_FALSE(take("02 00 0c 01"));
    EXPECT_EQ(segments.filled, 101U * 0xFFFDU);
    EXPECT_EQ(segments.bytes.size(), 131072U);
    EXPECT_EQ(segments.bytes[0xFFFC], 0xAB);
    EXPECT_EQ(segments.bytes[0xFFFD], 0);
    EXPECT_TRUE(take("03 00 0c 00 01"));
    EXPECT_EQ(segments.filled, 101U * 0xFFFDU + 1);
    EXPECT_EQ(segments.last_command_text.size(), 3U * 131072U);
}

// Every order of a few segments of every kind: nothing but what was brought is ever there.
TEST_F(Segments, AnyOrder) {
    const char* const kinds[] = {"06 00 0c 82 01 02 03 04",
                                 "04 00 0c 01 11 12",
                                 "02 00 0c 00",
                                 "05 00 0c 00 21 22 23",
                                 "00 00 0c 80",
                                 "05 01 0c 83 31",
                                 ""};
    for (unsigned order = 0; order < 7 * 7 * 7 * 7; ++order) {
        segments = ObjectSegments();
        for (unsigned rest = order, k = 0; k < 4; rest /= 7, ++k) {
            const bool whole = (order & 1) != 0 ? take_old(kinds[rest % 7]) : take(kinds[rest % 7]);
            EXPECT_LE(segments.bytes.size(), segments.filled);
            EXPECT_TRUE(!whole || segments.expects_first);
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
