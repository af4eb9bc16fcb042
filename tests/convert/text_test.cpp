#include "convert/text.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <string>
#include <string_view>

namespace ztdecode::testing {
namespace {

TEST(GenericStrCmp, Rows) {
    const struct {
        std::string_view pattern;
        std::string_view text;
        unsigned limit;
        bool matches;
    } rows[] = {
        {"AB*D\n", "ABCD", 0, true},
        {"AB*D\n", "ABC", 0, false},
        {"abc", "abc", 0, true},
        {"abc", "abcdef", 0, true},
        {"abc", "ab", 0, false},
        {"abd", "abc", 0, false},
        {"abc", "ABC", 0, false},
        // "*" on either side stands for one character
        {"a*", "ab", 0, true},
        {"a*", "a", 0, false},
        {"abc", "a*c", 0, true},
        {"***", "xyz", 0, true},
        {"xyz", "***", 0, true},
        {"a*c", "abd", 0, false},
        // nothing to compare
        {"", "", 0, true},
        {"", "x", 0, true},
        {"\n", "", 0, true},
        {"\n", "x", 0, true},
        // the limit
        {"abc", "abX", 2, true},
        {"abc", "ab", 2, true},
        {"abc", "aXc", 2, false},
        {"abc", "a", 2, false},
        {"abc", "abc", 3, true},
        {"abc", "abcd", 9, true},
        {"abc", "ab", 9, false},
        {"abc", "abc", UINT_MAX, true},
        // a newline at the end of the pattern takes off one character, even where the limit took it off
        // before
        {"abc\n", "abc", 4, true},
        {"abc\n", "abX", 3, true},
        {"abc\n", "aXX", 3, false},
        {"abc\n", "", 1, true},
        {"abc\n\n", "abc", 0, false},
        {"abc\n\n", "abc\n", 0, true},
        {"abc\n", "abc\n", 0, true},
        {"a\nc", "a\nc", 0, true},
        {"a\nc", "abc", 0, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(bGenericStrCmp(row.pattern, row.text, row.limit), row.matches)
            << row.pattern << "|" << row.text << "|" << row.limit;
    }
}

TEST(GenericStrCmp, LongTexts) {
    const std::string pattern(100000, 'a');
    EXPECT_TRUE(bGenericStrCmp(pattern, pattern + "b", 0));
    EXPECT_FALSE(bGenericStrCmp(pattern + "c", pattern + "b", 0));
    EXPECT_TRUE(bGenericStrCmp(pattern + "c", pattern + "b", 100000));
}

TEST(HexDigit, EveryCharacter) {
    for (int c = 0; c < 256; ++c) {
        int expected = 0;
        if (c >= '0' && c <= '9') expected = c - '0';
        if (std::isxdigit(c) != 0 && c > '9') expected = std::toupper(c) - 'A' + 10;
        EXPECT_EQ(hexdigint(static_cast<char>(c)), expected) << c;
    }
    EXPECT_EQ(hexdigint('0'), 0);
    EXPECT_EQ(hexdigint('9'), 9);
    EXPECT_EQ(hexdigint('a'), 10);
    EXPECT_EQ(hexdigint('F'), 15);
    EXPECT_EQ(hexdigint('G'), 0);
    EXPECT_EQ(hexdigint('g'), 0);
}

TEST(HexToInt, Rows) {
    const struct {
        std::string_view text;
        int count;
        int value;
    } rows[] = {
        {"1G", 2, 16},
        {"ff", 2, 255},
        {"FF", 2, 255},
        {"7fffff", 4, 32767},
        {"0a1", 3, 161},
        {"15", 2, 0x15},
        {"12", 0, 0},
        {"12", -1, 0},
        {"12", INT_MIN, 0},
        {"12", 1, 1},
        {"", 0, 0},
        {"x1y2", 4, 0x0102},
        {" 1", 2, 1},
        {"7fffffff", 8, 0x7FFFFFFF},
        {"ffffffff", 8, -1},
        {"123456789", 9, 0x23456789},
        // what the text lacks counts as 0
        {"1", 3, 256},
        {"", 5, 0},
        {"1", 8, 0x10000000},
        {"1", 9, 0},
        {"1", INT_MAX, 0},
    };
    for (const auto& row : rows) EXPECT_EQ(hextoint(row.text, row.count), row.value) << row.text << row.count;
}

static_assert(hextoint("105", 3) == 0x105);

}  // namespace
}  // namespace ztdecode::testing
