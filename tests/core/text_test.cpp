#include "core/text.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

using namespace std::string_literals;

TEST(Text, StartsEmpty) {
    Text out;
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(out.size(), 0U);
    EXPECT_EQ(out.view(), "");
    EXPECT_STREQ(out.c_str(), "");
    EXPECT_TRUE(out.empty());
}

TEST(Text, Writes) {
    Text out;
    out.add("a");
    out.add("");
    out.put('b');
    out.put(0xE9);
    out.hex(0x0A);
    out.hex(0xFF);
    out.HEX(0x0A);
    out.HEX(0xC0);
    EXPECT_EQ(out.view(),
              "ab\xe9"
              "0aff0AC0");
    EXPECT_FALSE(out.empty());
    EXPECT_STREQ(out.c_str(),
                 "ab\xe9"
                 "0aff0AC0");
    EXPECT_EQ(out.from(3), "0aff0AC0");
    EXPECT_EQ(out.from(out.size()), "");
}

TEST(Text, Prints) {
    Text out;
    const std::uint8_t byte = 0xA7;
    const std::int8_t small = -3;
    out.print("{:02x} {:02X} {:x} {} {}|"_cf, byte, byte, std::uint8_t{7}, byte, small);
    out.print("{:06x} {}|"_cf, 0x123U, 4294967295U);
    out.print("{:<15}|{}|{{}}|{}"_cf, std::string_view("ab"), std::string_view(), "literal");
    EXPECT_EQ(out.view(),
              "a7 A7 7 167 -3|"
              "000123 4294967295|"
              "ab             ||{}|literal");
}

TEST(Text, GrowsByEveryWayOfWriting) {
    Text out;
    std::string expected;
    const std::string word(37, 'w');
    while (expected.size() < 70000) {
        out.put('p');
        out.add(word);
        out.hex(0x5A);
        out.print("<{}:{}>"_cf, 1234567890, std::string_view(word));
        expected += "p" + word + "5a<1234567890:" + word + ">";
        ASSERT_EQ(out.size(), expected.size());
    }
    EXPECT_EQ(out.view(), expected);
    EXPECT_EQ(out.c_str(), expected);
}

TEST(Text, GrowsAtOnce) {
    Text out;
    const std::string large(1000000, 'x');
    out.add("a");
    out.add(large);
    out.print("{}"_cf, std::string_view(large));
    EXPECT_EQ(out.view(), "a" + large + large);
}

// The room ends at 4096 characters first, then at twice as many: fill it to every size around.
TEST(Text, FillsItsRoomExactly) {
    for (const std::size_t room : {4096U, 8192U}) {
        for (std::size_t size = room - 30; size <= room + 2; ++size) {
            Text out;
            std::string expected(size, 'x');
            out.add(expected);
            EXPECT_EQ(out.c_str(), expected);
            out.hex(0x12);
            out.print("{:08x}"_cf, 0xFFU);
            out.put('y');
            EXPECT_EQ(out.c_str(), expected + "12000000ffy");
        }
    }
}

TEST(Text, ClearedAndCutTextsGoOn) {
    Text out;
    out.add("first");
    out.clear();
    EXPECT_TRUE(out.empty());
    EXPECT_STREQ(out.c_str(), "");
    out.add("second");
    out.cut(3);
    EXPECT_EQ(out.view(), "sec");
    out.add("!");
    EXPECT_STREQ(out.c_str(), "sec!");
    out.cut(out.size());
    EXPECT_EQ(out.view(), "sec!");
}

TEST(Text, WithoutItsFirstCharacters) {
    Text out;
    out.add("some words");
    out.remove_first(0);
    EXPECT_EQ(out.view(), "some words");
    out.remove_first(2);
    EXPECT_STREQ(out.c_str(), "me words");
    out.add("!");
    out.remove_first(out.size());
    EXPECT_STREQ(out.c_str(), "");
    out.put(0);
    out.remove_first(1);
    {
        const Text::Piece piece(out);
        out.add("ab");
    }
    EXPECT_EQ(out.view(), "ab");
}

TEST(Text, MovedTextsKeepTheirCharacters) {
    Text out;
    out.add("some words");
    Text other(std::move(out));
    EXPECT_EQ(other.view(), "some words");
    other.add(" more");
    EXPECT_STREQ(other.c_str(), "some words more");
}

TEST(Text, WithoutAPieceAZeroIsACharacter) {
    Text out;
    out.add("a");
    out.put(0);
    out.add("b");
    EXPECT_EQ(out.view(), "a\0b"s);
}

TEST(TextPiece, EndsAtItsFirstZero) {
    Text out;
    out.add("before ");
    {
        const Text::Piece piece(out);
        out.add("\"ab");
        out.put(0);
        out.put('c');
        out.put(0);
        out.add("d\"");
    }
    out.add(" behind");
    EXPECT_EQ(out.view(), "before \"ab behind");
}

TEST(TextPiece, WithoutAZeroStaysWhole) {
    Text out;
    {
        const Text::Piece piece(out);
        out.add("whole");
    }
    { const Text::Piece empty(out); }
    out.add(" text");
    EXPECT_EQ(out.view(), "whole text");
}

TEST(TextPiece, AZeroAtItsBeginningLeavesNothing) {
    Text out;
    out.add("a");
    {
        const Text::Piece piece(out);
        out.put(0);
        out.add("b");
    }
    EXPECT_EQ(out.view(), "a");
}

TEST(TextPiece, AnInnerOneEndsItselfAlone) {
    Text out;
    {
        const Text::Piece outer(out);
        out.add("a");
        {
            const Text::Piece inner(out);
            out.add("b");
            out.put(0);
            out.add("c");
        }
        out.add("d");
    }
    EXPECT_EQ(out.view(), "abd");
}

TEST(TextPiece, AnOuterOneEndsWhereItsOwnZeroIs) {
    Text out;
    {
        const Text::Piece outer(out);
        out.add("a");
        out.put(0);
        {
            const Text::Piece inner(out);
            out.add("b");
            out.put(0);
        }
        out.add("c");
    }
    EXPECT_EQ(out.view(), "a");
}

TEST(TextPiece, AZeroOutsideDoesNotCount) {
    Text out;
    out.put(0);
    {
        const Text::Piece piece(out);
        out.add("ab");
    }
    EXPECT_EQ(out.view(), "\0ab"s);
}

TEST(TextPiece, AZeroThatWasCutAwayDoesNotCount) {
    Text out;
    {
        const Text::Piece piece(out);
        out.add("ab");
        out.put(0);
        out.cut(2);
        out.add("cdef");
    }
    EXPECT_EQ(out.view(), "abcdef");
    out.clear();
    {
        const Text::Piece piece(out);
        out.add("ab");
        out.put(0);
        out.clear();
        out.add("cdef");
    }
    EXPECT_EQ(out.view(), "cdef");
}

TEST(Text, CopiesBytesOfAMessage) {
    const auto data = bytes("41 e9 00 42 43");
    const Message m(data);
    Text out;
    out.copy(m, 0, 5);
    EXPECT_EQ(out.view(), "A\xe9\0BC"s);
    out.clear();
    {
        const Text::Piece piece(out);
        out.copy(m, 0, 5);
        out.add("\"");
    }
    EXPECT_EQ(out.view(), "A\xe9");
    out.clear();
    out.copy_string(m, 0, 5);
    out.add("\"");
    EXPECT_EQ(out.view(), "A\xe9\"");
    out.clear();
    out.copy_string(m, 3, 2);
    out.copy_string(m, 3, 10);  // behind the end stands a zero
    out.copy_string(m, 2, 3);
    EXPECT_EQ(out.view(), "BCBC");
    out.clear();
    out.copy(m, 3, 0);
    EXPECT_TRUE(out.empty());
}

// The texts are those of the C library for the arithmetic in full: half a step count, sign last, in single
// precision.
TEST(HalfDecibels, EveryByte) {
    for (int byte = 0; byte < 256; ++byte) {
        const int steps = (byte & 0x80) == 0 ? byte : 256 - byte;
        double gain = steps * 0.5;
        if ((byte & 0x80) != 0) gain = -gain;
        const auto single = static_cast<float>(gain);
        char expected[16];
        std::snprintf(expected, sizeof expected, "%.1f", static_cast<double>(single));
        EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{static_cast<std::uint8_t>(byte)})), expected)
            << byte;
    }
}

TEST(HalfDecibels, Examples) {
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0x00})), "0.0");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0x01})), "0.5");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0x0C})), "6.0");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0x7F})), "63.5");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0x80})), "-64.0");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0x81})), "-63.5");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0xF3})), "-6.5");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0xFA})), "-3.0");
    EXPECT_EQ(formatted("{-}"_cf, half_decibels(Byte{0xFF})), "-0.5");
}

}  // namespace
}  // namespace ztdecode::testing
