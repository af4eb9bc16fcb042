#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tool/output/control.hpp"

// What would act on a terminal, escaped.

namespace ztdecode::tool {

namespace {

using Add = void (*)(std::string_view, Text&);

std::string with(Add add, std::string_view words) {
    Text text;
    add(words, text);
    return std::string(text.view());
}

TEST(Control, EveryByteOfItsOwn) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const bool stays = c == '\n' || c == '\t' || (byte >= 0x20 && byte < 0x7F);
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(byte));
        EXPECT_EQ(with(add_escaped, {&c, 1}), stays ? std::string(1, c) : escape) << byte;
    }
}

std::string utf8(unsigned code) {
    if (code < 0x800) return {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
    return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
}

TEST(Control, EveryCharacterOfTwoAndThreeBytes) {
    for (unsigned code = 0x80; code < 0x10000; ++code) {
        if (code >= 0xD800 && code < 0xE000) continue;
        const bool stays = code >= 0xA0 && code != 0x61C && code != 0x200E && code != 0x200F &&
                           !(code >= 0x2028 && code <= 0x202E) && !(code >= 0x2066 && code <= 0x206F) &&
                           code != 0xFEFF;
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", code);
        EXPECT_EQ(with(add_escaped, utf8(code)), stays ? utf8(code) : escape) << code;
    }
}

TEST(Control, BytesThatAreNoUtf8) {
    EXPECT_EQ(with(add_escaped, "\xC0\x9B"), "\\xc0\\x9b");                    // ESC in two bytes
    EXPECT_EQ(with(add_escaped, "\xE0\x82\x9B"), "\\xe0\\x82\\x9b");           // U+009B in three
    EXPECT_EQ(with(add_escaped, "\xED\xA0\x80"), "\\xed\\xa0\\x80");           // half a pair
    EXPECT_EQ(with(add_escaped, "\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");  // above the last one
    EXPECT_EQ(with(add_escaped, "\xF8\x88\x80\x80\x80"), "\\xf8\\x88\\x80\\x80\\x80");
    EXPECT_EQ(with(add_escaped, "a\xE2\x80"), "a\\xe2\\x80");  // cut
    EXPECT_EQ(with(add_escaped, "\xE2\x1B[m"), "\\xe2\\x1b[m");
    EXPECT_EQ(with(add_escaped, "\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
}

TEST(Control, NothingElseLooksLikeAnEscape) {
    EXPECT_EQ(with(add_escaped, "\\x1b \\u202e"), "\\x5cx1b \\x5cu202e");
    EXPECT_EQ(with(add_escaped, "\\\\x1b"), "\\\\x5cx1b");
    EXPECT_EQ(with(add_escaped, "a\\b\\"), "a\\b\\");
    EXPECT_EQ(with(add_escaped, "\\\x1b"), "\\\\x1b");
}

TEST(Control, NamesStayInTheirLine) { EXPECT_EQ(with(add_escaped_name, "a\n\tb\\x"), "a\\x0a\\x09b\\x5cx"); }

TEST(Control, QuotedWordsStayInTheirLine) {
    EXPECT_EQ(with(add_quoted, "a\n\t\r\"\\x\x1b\xE2\x80\xAE"), "\"a\\n\\t\\r\\\"\\\\x\\x1b\\u202e\"");
}

using namespace std::string_view_literals;

constexpr auto nested = "\0[0;32mone \0[0;31mtwo\nthree\0[0m four\0[0m\n"sv;

TEST(Control, Colours) {
    EXPECT_EQ(with(add_coloured, nested), "\033[0;32mone \033[0;31mtwo\nthree\033[0m four\033[0m\n");
    EXPECT_EQ(with(add_uncoloured, nested), "one two\nthree four\n");
    EXPECT_TRUE(has_characters(nested));
    EXPECT_FALSE(has_characters("\0[0;32m\0[0m"sv));
}

TEST(Control, EveryLineInItsColourAndTheOuterOneComesBack) {
    EXPECT_EQ(with(add_coloured_escaped, nested),
              "\033[0;32mone \033[0m\033[0;31mtwo\033[0m\n"
              "\033[0;31mthree\033[0m\033[0;32m four\033[0m\n");
    EXPECT_EQ(with(add_coloured_escaped, "\0[0;32m\0[0m"sv), "");
    EXPECT_EQ(with(add_coloured_escaped, "\0[0;32ma\033[0mb"sv), "\033[0;32ma\\x1b[0mb\033[0m");
}

}  // namespace

}  // namespace ztdecode::tool
