#include "convert/flex.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <string>

#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

// A line in a buffer of its own.
std::string to_flex(const std::string& line) {
    FlexBuffer buffer;
    return TOFLEX_Convert(line.c_str(), buffer) == FlexLine::other ? "(other)" : buffer.text();
}

std::string from_flex(const std::string& line) {
    FlexBuffer buffer;
    FROMFLEX_Convert(line.c_str(), buffer);
    return buffer.text();
}

TEST(FlexTable, Rows) {
    ASSERT_EQ(std::size(FLEX_ASCII_TABLE), 65U);
    ASSERT_EQ(sizeof FLEX_ASCII_TABLE, 65U * 4U);
    const struct {
        char character;
        const char* code;
    } rows[] = {
        {' ', "20"},
        {'\n', "\n"},
        {'\r', "\r"},
        // the digits
        {'0', "30"},
        {'1', "31"},
        {'2', "32"},
        {'3', "33"},
        {'4', "34"},
        {'5', "35"},
        {'6', "36"},
        {'7', "37"},
        {'8', "38"},
        {'9', "39"},
        // the capitals
        {'A', "41"},
        {'B', "42"},
        {'C', "43"},
        {'D', "44"},
        {'E', "45"},
        {'F', "46"},
        {'G', "47"},
        {'H', "48"},
        {'I', "49"},
        {'J', "4A"},
        {'K', "4B"},
        {'L', "4C"},
        {'M', "4D"},
        {'N', "4E"},
        {'O', "4F"},
        {'P', "50"},
        {'Q', "51"},
        {'R', "52"},
        {'S', "53"},
        {'T', "54"},
        {'U', "55"},
        {'V', "56"},
        {'W', "57"},
        {'X', "58"},
        {'Y', "59"},
        {'Z', "5A"},
        // the small letters
        {'a', "61"},
        {'b', "62"},
        {'c', "63"},
        {'d', "64"},
        {'e', "65"},
        {'f', "66"},
        {'g', "67"},
        {'h', "68"},
        {'i', "69"},
        {'j', "6A"},
        {'k', "6B"},
        {'l', "6C"},
        {'m', "6D"},
        {'n', "6E"},
        {'o', "6F"},
        {'p', "70"},
        {'q', "71"},
        {'r', "72"},
        {'s', "73"},
        {'t', "74"},
        {'u', "75"},
        {'v', "76"},
        {'w', "77"},
        {'x', "78"},
        {'y', "79"},
        {'z', "7A"},
    };
    ASSERT_EQ(std::size(rows), 65U);
    for (std::size_t i = 0; i < 65; ++i) {
        EXPECT_EQ(FLEX_ASCII_TABLE[i].character, rows[i].character) << i;
        EXPECT_STREQ(FLEX_ASCII_TABLE[i].code, rows[i].code) << i;
        EXPECT_STREQ(FLEX_GetAsciiCode(rows[i].character), rows[i].code) << i;
    }
    const char first[] = {' ', '2', '0', '\0', '\n', '\n', '\0', '\0'};
    EXPECT_EQ(std::memcmp(FLEX_ASCII_TABLE, first, sizeof first), 0);
}

TEST(FlexTable, EveryOtherCharacterIsABlank) {
    for (int c = 0; c < 256; ++c) {
        const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (letter || (c >= '0' && c <= '9') || c == '\n' || c == '\r') continue;
        EXPECT_STREQ(FLEX_GetAsciiCode(static_cast<char>(c)), "20") << c;
    }
}

TEST(ToFlex, Commands) {
    EXPECT_EQ(to_flex("id\n"), "zt 0x03 0x18 0x69 0x64\r");
    EXPECT_EQ(to_flex("d abc\n"), "zt 0x06 0x18 0x64 0x20 0x61 0x62 0x63\r");
    EXPECT_EQ(to_flex("d A-B\n"), "zt 0x06 0x18 0x64 0x20 0x41 0x20 0x42\r");
    EXPECT_EQ(to_flex("identity 9\n"), "zt 0x0B 0x18 0x69 0x64 0x65 0x6E 0x74 0x69 0x74 0x79 0x20 0x39\r");
    EXPECT_EQ(to_flex("phonemodel xyz\n"),
              "zt 0x0F 0x18 0x70 0x68 0x6F 0x6E 0x65 0x6D 0x6F 0x64 0x65 0x6C 0x20 0x78 0x79 0x7A\r");
    EXPECT_EQ(to_flex("phonemodel"), "zt 0x0A 0x18 0x70 0x68 0x6F 0x6E 0x65 0x6D 0x6F 0x64 0x65\r");
}

// The last character is taken for the line end, whatever it is.
TEST(ToFlex, CommandWithoutLineEnd) {
    EXPECT_EQ(to_flex("id"), "zt 0x02 0x18 0x69\r");
    EXPECT_EQ(to_flex("d "), "zt 0x02 0x18 0x64\r");
    EXPECT_EQ(to_flex("idX"), "zt 0x03 0x18 0x69 0x64\r");
}

// A line end inside is a code of one character, and the text ends behind it.
TEST(ToFlex, LineEndInsideACommand) {
    EXPECT_EQ(to_flex("id\r\n"), "zt 0x04 0x18 0x69 0x64 0x\r");
    EXPECT_EQ(to_flex("d a\nb\n"), "zt 0x06 0x18 0x64 0x20 0x61 0x\n");
}

TEST(ToFlex, EveryCharacterOfACommand) {
    for (int c = 1; c < 256; ++c) {
        if (c == '\n' || c == '\r') continue;
        const std::string line = std::string("id") + static_cast<char>(c) + "\n";
        EXPECT_EQ(to_flex(line),
                  std::string("zt 0x04 0x18 0x69 0x64 0x") + FLEX_GetAsciiCode(static_cast<char>(c)) + "\r");
    }
}

// Lines of bytes: characters 6, 7 and 8 are left out. The others are copied with the zero behind the last
// one, and the return is put behind that: it is seen only where the zero is one of the three.
TEST(ToFlex, Bytes) {
    EXPECT_EQ(to_flex("zt 12\n"), "zt 0x12\n\r");
    EXPECT_EQ(to_flex("zt 1\n"), "zt 0x1\n");
    EXPECT_EQ(to_flex("zt 12 34 56\n"), "zt 0x12 0x56\n");
    EXPECT_EQ(to_flex("zt 12 34 56 78 9A"), "zt 0x12 0x56 0x78 0x9A");
    EXPECT_EQ(to_flex("zt 12 3"), "zt 0x12 \r");
    EXPECT_EQ(to_flex("zt 12 34"), "zt 0x12 \r");
    EXPECT_EQ(to_flex("zt ab"), "zt 0xab");
    EXPECT_EQ(to_flex("zt abc"), "zt 0xabc\r");
    EXPECT_EQ(to_flex("zt FF 00 gg 1g g1\n"), "zt 0xFF gg 0x1g g1\n");
    EXPECT_EQ(to_flex("zt  1\n"), "zt  0x1\n\r");
    EXPECT_EQ(to_flex("zt "), "zt ");
}

TEST(ToFlex, OtherLines) {
    for (const char* line : {"hello\n", "", "d", "dx\n", "i d\n", "ID\n", "D x\n", "zt", "zt\t12\n",
                             " zt 12\n", "ZT 12\n", "phonemode\n", "Phonemodel\n", "\n"}) {
        EXPECT_EQ(to_flex(line), "(other)") << line;
    }
}

TEST(ToFlex, KindsOfLines) {
    FlexBuffer buffer;
    EXPECT_EQ(TOFLEX_Convert("id\n", buffer), FlexLine::command);
    EXPECT_EQ(TOFLEX_Convert("zt 12\n", buffer), FlexLine::bytes);
    EXPECT_STREQ(buffer.text(), "zt 0x12\n\r");
    EXPECT_EQ(TOFLEX_Convert("other\n", buffer), FlexLine::other);
    EXPECT_STREQ(buffer.text(), "");  // emptied all the same
}

TEST(ToFlex, NothingOfAnEarlierResultShows) {
    FlexBuffer buffer;
    TOFLEX_Convert("d abcdefghij\n", buffer);
    TOFLEX_Convert("id\n", buffer);
    EXPECT_STREQ(buffer.text(), "zt 0x03 0x18 0x69 0x64\r");
    TOFLEX_Convert("zt 12\n", buffer);
    EXPECT_STREQ(buffer.text(), "zt 0x12\n\r");
    // What stands behind a line end inside a command is not seen and not emptied either.
    TOFLEX_Convert("id\nabcdefg\n", buffer);
    EXPECT_STREQ(buffer.text(), "zt 0x0B 0x18 0x69 0x64 0x\n");
    TOFLEX_Convert("id\n", buffer);
    EXPECT_STREQ(buffer.text(), "zt 0x03 0x18 0x69 0x64\r");
    TOFLEX_Convert("id12\n\n", buffer);
    EXPECT_STREQ(buffer.text(), "zt 0x06 0x18 0x69 0x64 0x31 0x32 0x\n");
}

// Commands of 256 characters and more: the length takes more digits, the characters keep their places.
TEST(ToFlex, LongCommands) {
    const auto codes = [](std::size_t n) {
        std::string text;
        for (std::size_t k = 0; k < n; ++k) text += " 0x61";
        return text;
    };
    const auto command = [](std::size_t length) { return "id" + std::string(length - 3, 'a') + "\n"; };
    EXPECT_EQ(to_flex(command(255)), "zt 0xFF 0x18 0x69 0x64" + codes(252) + "\r");
    EXPECT_EQ(to_flex(command(256)), "zt 0x100 0x1 0x69 0x64" + codes(253) + "\r");
    EXPECT_EQ(to_flex(command(4095)), "zt 0xFFF 0x1 0x69 0x64" + codes(4092) + "\r");
    EXPECT_EQ(to_flex(command(4096)), "zt 0x1000 0x 0x69 0x64" + codes(4093) + "\r");
    EXPECT_EQ(to_flex(command(0x10000)), "zt 0x10000 0 0x69 0x64" + codes(0xFFFD) + "\r");
}

TEST(ToFlex, LongLinesOfBytes) {
    std::string line = "zt 12 00";
    std::string expected = "zt 0x12";
    for (int k = 0; k < 3000; ++k) {
        line += " AB";
        expected += " 0xAB";
    }
    EXPECT_EQ(to_flex(line), expected);
}

TEST(FromFlex, Values) {
    EXPECT_EQ(from_flex("ZT 0x1 0x2A"), "zt3 : R 01 2A ");
    EXPECT_EQ(from_flex("ZT 0x1 0x2A\r\n"), "zt3 : R 01 2A ");
    EXPECT_EQ(from_flex("xx ZT 0x3 0x18 0x69 0x64\r"), "zt3 : R 03 18 69 64 ");
    EXPECT_EQ(from_flex("ZT 0x12 0x34 0x5"), "zt3 : R 12 34 05 ");
    EXPECT_EQ(from_flex("ZT 0xab 0xCd\n0x12"), "zt3 : R ab Cd ");
}

// The text ends where the reading of the line ended.
TEST(FromFlex, TextIsCutWhereTheReadingEnded) {
    EXPECT_EQ(from_flex("ZT 0x"), "zt3 :");
    EXPECT_EQ(from_flex("ZT 0x\n"), "zt3 :");
    EXPECT_EQ(from_flex("ZT 0x1"), "zt3 : R 0");
    EXPECT_EQ(from_flex("ZT 0x12"), "zt3 : R 12");
    EXPECT_EQ(from_flex("ZT 0x1 0x2"), "zt3 : R 01 02");
}

TEST(FromFlex, LineWithoutValuesIsCopied) {
    EXPECT_EQ(from_flex("no such thing\n"), "no such thing\n");
    EXPECT_EQ(from_flex(""), "");
    EXPECT_EQ(from_flex("ZT 12"), "ZT 12");
    EXPECT_EQ(from_flex("zt 0x12"), "zt 0x12");
    EXPECT_EQ(from_flex("ZT  0x12"), "ZT  0x12");
}

// Only the first "ZT 0x" counts, and what stands behind the line end is not looked at.
TEST(FromFlex, Place) {
    EXPECT_EQ(from_flex("12:00:01 ZT 0x3 0x18\n"), "zt3 : R 03 18 ");
    EXPECT_EQ(from_flex("first\nZT 0x3 0x18\nZT 0x55"), "zt3 : R 03 18 ");
}

// A value that no "0x" introduces ends the text.
TEST(FromFlex, ValueWithoutIntroduction) {
    EXPECT_EQ(from_flex("ZT 0x12 0x34 56 0x78"), "zt3 : R 12 34 ");
    EXPECT_EQ(from_flex("ZT 0x12 3456"), "zt3 : R 12");
    EXPECT_EQ(from_flex("ZT 0x123 0x45"), "zt3 : R 12");
    EXPECT_EQ(from_flex("ZT 0x12  0x34"), "zt3 : R 12");
}

// A character that is no digit is a value of one digit.
TEST(FromFlex, OddCharacters) {
    EXPECT_EQ(from_flex("ZT 0xg 0x2A"), "zt3 : R 0g 2A ");
    EXPECT_EQ(from_flex("ZT 0x1g0x2A"), "zt3 : R 01 2A ");
}

// A result does not empty what stands behind it: where a text ends behind its last value, what an earlier,
// longer result left there shows.
TEST(FromFlex, EarlierResultShows) {
    FlexBuffer buffer;
    FROMFLEX_Convert("ZT 0xA1 0xB2 0xC3 0xD4 0xE5 0xF6", buffer);
    EXPECT_STREQ(buffer.text(), "zt3 : R A1 B2 C3 D4 E5 F6 ");
    // Six values end the reading at 35; four of them at 25, with 20 characters written.
    FROMFLEX_Convert("ZT 0x11 0x22 0x33 0x44", buffer);
    EXPECT_STREQ(buffer.text(), "zt3 : R 11 22 33 44 E5 F6");
    FROMFLEX_Convert("ZT 0x1 0x2", buffer);
    EXPECT_STREQ(buffer.text(), "zt3 : R 01 02");
    // Three values are written up to 17, and the reading ends at 19.
    FROMFLEX_Convert("ZT 0x7 0x88 0x99\r", buffer);
    EXPECT_STREQ(buffer.text(), "zt3 : R 07 88 99 44");
    // A copied line leaves its characters, too.
    FROMFLEX_Convert("nothing to convert, but a long line\n", buffer);
    EXPECT_STREQ(buffer.text(), "nothing to convert, but a long line\n");
    FROMFLEX_Convert("ZT 0x11 0x22 0x33 0x44", buffer);
    EXPECT_STREQ(buffer.text(), "zt3 : R 11 22 33 44 but a");
}

TEST(FromFlex, LongLines) {
    std::string line = "ZT 0x5";
    std::string expected = "zt3 : R 05 ";
    for (int k = 0; k < 3000; ++k) {
        line += " 0xAB";
        expected += "AB ";
    }
    EXPECT_EQ(from_flex(line), expected);
    const std::string plain(10000, 'p');
    EXPECT_EQ(from_flex(plain), plain);
}

}  // namespace
}  // namespace ztdecode::testing
