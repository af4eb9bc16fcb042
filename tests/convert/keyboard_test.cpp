#include "convert/keyboard.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace ztdecode::testing {
namespace {

std::string key(const std::string& text) {
    std::vector<char> writable(text.begin(), text.end());
    writable.push_back('\0');
    return Convert_kb_To_key(writable.data()).data();
}

struct Row {
    const char* text;
    const char* expected;
};

template <std::size_t N>
void expect_keys(const Row (&rows)[N]) {
    for (const Row& row : rows) EXPECT_EQ(key(row.text), row.expected) << row.text;
}

TEST(Keyboard, SingleKeys) {
    const Row rows[] = {
        {"0", "0 short"},  {"1", "1 short"},  {"2", "2 short"},  {"3", "3 short"},  {"4", "4 short"},
        {"5", "5 short"},  {"6", "6 short"},  {"7", "7 short"},  {"8", "8 short"},  {"9", "9 short"},
        {"*", "10 short"}, {"#", "11 short"}, {"R", "12 short"}, {"B", "13 short"}, {"M", "14 short"},
        {"F", "15 short"}, {"U", "16 short"}, {"-", "17 short"}, {"+", "18 short"}, {"H", "19 short"},
        {"o", "20 short"}, {"l", "21 short"}, {"r", "22 short"}, {"d", "23 short"}, {"u", "24 short"},
        {"m", "25 short"}, {"h", "26 short"}, {"D", "27 short"},
    };
    expect_keys(rows);
}

TEST(Keyboard, NoOtherSingleKeys) {
    const std::string keys = "0123456789*#RBMFU-+HolrdumhD";
    for (int c = 1; c < 256; ++c) {
        const char character = static_cast<char>(c);
        if (keys.find(character) != std::string::npos || character == ' ' || character == '\t') continue;
        EXPECT_EQ(key(std::string(1, character)), " short") << c;
    }
}

TEST(Keyboard, LongPress) {
    const Row rows[] = {
        {"5l", "5 long"},      {"ll", "21 long"},   {"#l", "11 long"},         {"zl", " long"},
        {"5L", "5 short"},     {"5 l", " short"},   {"pl 3", "31 long"},       {"sl 4", "38 long"},
        {"xl e", "48 long"},   {"al q", "61 long"}, {"al Q", "61 shift long"}, {"plus 3", "31 long"},
        {"p1 3l", "31 short"},
    };
    expect_keys(rows);
}

// Only the first character of a word counts, whatever else it holds.
TEST(Keyboard, LongWords) {
    const Row rows[] = {
        {"5\n", "5 short"}, {"7up", "7 short"}, {"prog 2nd", "30 short"}, {"soft 9\r\n", "43 short"}};
    expect_keys(rows);
    EXPECT_EQ(key("8" + std::string(5000, 'x')), "8 short");
    EXPECT_EQ(key("a" + std::string(5000, 'x') + " n" + std::string(5000, 'y')), "76 short");
}

TEST(Keyboard, Hook) {
    const Row rows[] = {
        {"hook on", " onhook "},   {"hook off", " offhook "},
        {"HOOK on", " onhook "},   {"Hook offhook", " offhook "},
        {"hook on\n", " onhook "}, {"hook once", " onhook "},
        {"hook up", " "},          {"hook ON", " "},
        {"hook of", " "},          {"hook", "26 short"},
        {"hooks on", " short"},    {"hoo on", " short"},
    };
    expect_keys(rows);
}

TEST(Keyboard, ProgrammableAndSoftKeys) {
    const Row rows[] = {
        {"p 0", "28 short"}, {"p 1", "29 short"}, {"p 2", "30 short"}, {"p 3", "31 short"},
        {"p 4", "32 short"}, {"p 5", "33 short"}, {"p 6", " short"},   {"p 9", " short"},
        {"p a", " short"},   {"P 1", " short"},   {"s 0", "34 short"}, {"s 1", "35 short"},
        {"s 2", "36 short"}, {"s 3", "37 short"}, {"s 4", "38 short"}, {"s 5", "39 short"},
        {"s 6", "40 short"}, {"s 7", "41 short"}, {"s 8", "42 short"}, {"s 9", "43 short"},
        {"s a", " short"},   {"S 1", " short"},
    };
    expect_keys(rows);
}

TEST(Keyboard, SpecialKeys) {
    const Row rows[] = {
        {"x f", "44 short"}, {"x h", "45 short"}, {"x a", "46 short"}, {"x s", "47 short"},
        {"x e", "48 short"}, {"x v", "49 short"}, {"x b", "50 short"}, {"x l", "79 short"},
        {"x F", " short"},   {"x 1", " short"},   {"X f", " short"},
    };
    expect_keys(rows);
}

TEST(Keyboard, Letters) {
    const std::string azerty = "azertyuiopqsdfghjklmwxcvbn";
    for (std::size_t k = 0; k < azerty.size(); ++k) {
        const std::string code = std::to_string(51 + k);
        const char letter = azerty[k];
        const char capital = static_cast<char>(letter - 'a' + 'A');
        EXPECT_EQ(key(std::string("a ") + letter), code + " short");
        EXPECT_EQ(key(std::string("a ") + capital), code + " shift short");
        EXPECT_EQ(key(std::string("al ") + capital), code + " shift long");
    }
    const Row rows[] = {{"a a", "51 short"}, {"a q", "61 short"}, {"a m", "70 short"},
                        {"a w", "71 short"}, {"a n", "76 short"}, {"a Q", "61 shift short"},
                        {"A q", " short"}};
    expect_keys(rows);
}

// Control characters are special keys. A tab or a blank cannot be named: words end there.
TEST(Keyboard, ControlCharacters) {
    const Row rows[] = {
        {"a \x13", "44 short"}, {"a \x01", "46 short"}, {"a \x0D", "48 short"}, {"a \x03", "49 short"},
        {"a \x08", "50 short"}, {"a \xA5", "79 short"}, {"a \x02", " short"},   {"a 1", " short"},
        {"a \t", " short"},     {"a  ", " short"},      {"a \xE9", " short"},   {"a [", " short"},
        {"a @", " short"},
    };
    expect_keys(rows);
}

TEST(Keyboard, Words) {
    const Row rows[] = {
        {"", " short"},          {" ", " short"},          {"\t \t", " short"},       {"  5  ", "5 short"},
        {"\t5", "5 short"},      {" p \t 3 ", "31 short"}, {"p 3 x", " short"},       {"pl 3 x y", " long"},
        {"p 3 x y z", " short"}, {"l l l", " short"},      {"hook on now", " short"}, {"y 5", " short"},
    };
    expect_keys(rows);
}

TEST(Keyboard, SplitsInPlace) {
    char text[] = "a Q";
    EXPECT_STREQ(Convert_kb_To_key(text).data(), "61 shift short");
    EXPECT_STREQ(text, "a");
    EXPECT_STREQ(text + 2, "Q");
}

}  // namespace
}  // namespace ztdecode::testing
