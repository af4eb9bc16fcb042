#include "tool/redact/stand_ins.hpp"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/support.hpp"

namespace ztdecode::tool {

namespace {

std::vector<std::uint8_t> bytes_of(std::string_view words) { return {words.begin(), words.end()}; }

const StandIns& stand_ins() {
    static const StandIns made(bytes_of("a key for tests, and for nothing else"));
    return made;
}

std::string text(std::string_view words, unsigned attempt = 0) {
    std::vector<std::uint8_t> bytes = bytes_of(words);
    stand_ins().text(bytes, attempt);
    return {bytes.begin(), bytes.end()};
}

std::string number(unsigned n) {
    std::string digits = std::to_string(n);
    return std::string(4 - digits.size(), '0') + digits;
}

char class_of(char c) {
    if (c >= '0' && c <= '9') return '0';
    if (c >= 'a' && c <= 'z') return 'a';
    return c >= 'A' && c <= 'Z' ? 'A' : c;
}

TEST(StandIns, NumbersStayApartAndBeginAlikeWhereTheyDid) {
    std::set<std::string> seen;
    for (unsigned n = 0; n < 10000; ++n) {
        const std::string stand_in = text(number(n));
        ASSERT_EQ(stand_in.size(), 4U);
        for (std::size_t k = 0; k < 4; ++k) ASSERT_NE(stand_in[k], number(n)[k]) << n;
        ASSERT_EQ(stand_in.substr(0, 3), text(number(n / 10 * 10)).substr(0, 3)) << n;
        seen.insert(stand_in);
    }
    EXPECT_EQ(seen.size(), 10000U);
}

TEST(StandIns, ANumberIsTheSameInEveryForm) {
    const std::string whole = text("4711");
    std::string typed;
    std::string codes;
    for (std::size_t k = 0; k < 4; ++k) {
        const std::string before = std::string("4711").substr(0, k);
        auto character = static_cast<std::uint8_t>("4711"[k]);
        stand_ins().typed(character, before, 0);
        typed += static_cast<char>(character);
        auto code = static_cast<std::uint8_t>("4711"[k] - '0');
        stand_ins().typed(code, before, 0);
        codes += static_cast<char>('0' + code);
    }
    EXPECT_EQ(typed, whole);
    EXPECT_EQ(codes, whole);
    std::vector<std::uint8_t> halves = {0x47, 0x11};
    stand_ins().half_bytes(halves, 0);
    EXPECT_EQ(halves[0], (whole[0] - '0') << 4 | (whole[1] - '0'));
    EXPECT_EQ(halves[1], (whole[2] - '0') << 4 | (whole[3] - '0'));
    EXPECT_EQ(text("call 4711!").substr(5, 4), whole);
    EXPECT_EQ(text(std::string_view("4\0007\0001\0001\0", 8)),
              (std::string{whole[0], 0, whole[1], 0, whole[2], 0, whole[3], 0}));
    EXPECT_EQ(text(std::string_view("\0004\0007\0001\0001", 8)),
              (std::string{0, whole[0], 0, whole[1], 0, whole[2], 0, whole[3]}));
}

TEST(StandIns, HalfBytesThatAreNoDigitsStay) {
    std::vector<std::uint8_t> halves = {0x4F, 0xFF};
    stand_ins().half_bytes(halves, 0);
    EXPECT_EQ(halves[0] & 0x0F, 0x0F);
    EXPECT_NE(halves[0] >> 4, 4);
    EXPECT_EQ(halves[1], 0xFF);
}

TEST(StandIns, WordsKeepTheirClasses) {
    const std::string_view words = "Reception 4711, Mme DUPONT-Martin: ?";
    const std::string stand_in = text(words);
    ASSERT_EQ(stand_in.size(), words.size());
    for (std::size_t k = 0; k < words.size(); ++k) EXPECT_EQ(class_of(stand_in[k]), class_of(words[k])) << k;
    EXPECT_EQ(text("Reception"), stand_in.substr(0, 9));
    EXPECT_NE(text("Receptiom").substr(0, 8), stand_in.substr(0, 8));
    EXPECT_NE(text("Reception", 1), text("Reception"));
}

TEST(StandIns, ShortWordsStayApart) {
    std::set<std::string> ones;
    std::set<std::string> twos;
    for (char a = 'a'; a <= 'z'; ++a) {
        EXPECT_NE(text({&a, 1}), std::string(1, a));
        ones.insert(text({&a, 1}));
        for (char b = 'a'; b <= 'z'; ++b) {
            const std::string word = {a, b};
            EXPECT_NE(text(word), word);
            twos.insert(text(word));
        }
    }
    EXPECT_EQ(ones.size(), 26U);
    EXPECT_GE(twos.size(), 26U * 26U - 2);  // one that would stand for itself is taken out of the row
}

TEST(StandIns, CharactersBeyondAsciiKeepTheirLengths) {
    const std::string stand_in = text(
        "L\xC3\xA9"
        "a \xC4\xA0 \xE1\x88\xB4");
    ASSERT_EQ(stand_in.size(), 11U);
    EXPECT_EQ(stand_in[1], '\xC3');
    EXPECT_NE(stand_in.substr(1, 2), "\xC3\xA9");
    EXPECT_EQ(stand_in[5], '\xC4');
    EXPECT_EQ(stand_in.substr(8, 2), "\xE1\x88");
    EXPECT_NE(stand_in[10], '\xB4');
    // A key of the terminal's own.
    EXPECT_EQ(text("\xEE\x84\x93"), "\xEE\x84\x93");
    // No UTF-8: the row of the character set that it stands in.
    const std::string latin = text("caf\xE9");
    EXPECT_NE(latin[3], '\xE9');
    EXPECT_EQ(latin[3] & '\xF0', '\xE0');
}

TEST(StandIns, ControlCodesStayControlCodesAndEndsOfLinesWhatTheyAre) {
    const std::string_view words("\x04\x1B\n\0\r\t\x02", 7);
    const std::string stand_in = text(words);
    ASSERT_EQ(stand_in.size(), words.size());
    for (const std::size_t k : {0U, 6U}) {
        EXPECT_NE(stand_in[k], words[k]);
        EXPECT_TRUE(stand_in[k] >= 0x01 && stand_in[k] < 0x09) << k;
    }
    EXPECT_NE(stand_in[1], '\x1B');
    EXPECT_TRUE(stand_in[1] >= 0x0E && stand_in[1] < 0x20);
    EXPECT_EQ(stand_in.substr(2, 4), words.substr(2, 4));
}

TEST(StandIns, AnAddressIsTheSameInBytesAndInWords) {
    std::vector<std::uint8_t> address = {10, 0, 0, 25};
    stand_ins().address(address, 0);
    std::string words;
    for (const std::uint8_t byte : address) words += (words.empty() ? "" : ".") + std::to_string(byte);
    EXPECT_EQ(words.size(), 9U);
    EXPECT_NE(words, "10.0.0.25");
    EXPECT_EQ(text("10.0.0.25"), words);
    EXPECT_EQ(text("http://10.0.0.25/x").substr(7, 9), words);
    std::vector<std::uint8_t> near = {10, 0, 0, 26};
    stand_ins().address(near, 0);
    EXPECT_EQ(near[2], address[2]);
    EXPECT_NE(near[3], address[3]);
}

TEST(StandIns, WhatTellsNothingStays) {
    for (const std::vector<std::uint8_t>& mask : {std::vector<std::uint8_t>{255, 255, 255, 0},
                                                  {0, 0, 0, 0},
                                                  {255, 255, 255, 255},
                                                  {255, 255, 240, 0}}) {
        std::vector<std::uint8_t> stand_in = mask;
        stand_ins().address(stand_in, 0);
        EXPECT_EQ(stand_in, mask);
    }
    std::vector<std::uint8_t> no_mask = {255, 0, 255, 0};
    stand_ins().address(no_mask, 0);
    EXPECT_NE(no_mask, (std::vector<std::uint8_t>{255, 0, 255, 0}));
    std::vector<std::uint8_t> not_set(6, 0);
    stand_ins().bytes(not_set, 0);
    EXPECT_EQ(not_set, std::vector<std::uint8_t>(6, 0));
}

TEST(StandIns, SecretsLookAlike) {
    const auto blank = [](std::string_view words) {
        std::vector<std::uint8_t> bytes = bytes_of(words);
        StandIns::blank_text(bytes, 0);
        return std::string(bytes.begin(), bytes.end());
    };
    EXPECT_EQ(blank("1234"), "xxxx");
    EXPECT_EQ(blank("xxxx"), "yyyy");
    EXPECT_EQ(blank("a\u00a7\u20ac \x01"), "xxxxxxxx");
    EXPECT_EQ(blank(std::string_view("p\0w\0", 4)), std::string_view("x\0x\0", 4));
}

TEST(StandIns, AnotherKeyMakesOthers) {
    const StandIns other(bytes_of("another key for tests"));
    std::vector<std::uint8_t> bytes = bytes_of("Reception 4711");
    other.text(bytes, 0);
    EXPECT_NE(std::string(bytes.begin(), bytes.end()), text("Reception 4711"));
}

}  // namespace

}  // namespace ztdecode::tool
