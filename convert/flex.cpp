#include "convert/flex.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "ztdecode.h"

static_assert(sizeof(ztdecode_flex_row) == 4);

// Characters without a row count as blanks; a line end stands for itself.
constexpr ztdecode_flex_row FLEX_ASCII_TABLE[] = {
    {' ', "20"}, {'\n', "\n"}, {'\r', "\r"}, {'0', "30"}, {'1', "31"}, {'2', "32"}, {'3', "33"}, {'4', "34"},
    {'5', "35"}, {'6', "36"},  {'7', "37"},  {'8', "38"}, {'9', "39"}, {'A', "41"}, {'B', "42"}, {'C', "43"},
    {'D', "44"}, {'E', "45"},  {'F', "46"},  {'G', "47"}, {'H', "48"}, {'I', "49"}, {'J', "4A"}, {'K', "4B"},
    {'L', "4C"}, {'M', "4D"},  {'N', "4E"},  {'O', "4F"}, {'P', "50"}, {'Q', "51"}, {'R', "52"}, {'S', "53"},
    {'T', "54"}, {'U', "55"},  {'V', "56"},  {'W', "57"}, {'X', "58"}, {'Y', "59"}, {'Z', "5A"}, {'a', "61"},
    {'b', "62"}, {'c', "63"},  {'d', "64"},  {'e', "65"}, {'f', "66"}, {'g', "67"}, {'h', "68"}, {'i', "69"},
    {'j', "6A"}, {'k', "6B"},  {'l', "6C"},  {'m', "6D"}, {'n', "6E"}, {'o', "6F"}, {'p', "70"}, {'q', "71"},
    {'r', "72"}, {'s', "73"},  {'t', "74"},  {'u', "75"}, {'v', "76"}, {'w', "77"}, {'x', "78"}, {'y', "79"},
    {'z', "7A"},
};

namespace ztdecode {

namespace {

// Hexadecimal digits of the "C" locale, whatever locale the host has set.
bool is_hex_digit(char c) noexcept {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool begins_with(const char* text, const char* word) noexcept {
    return std::strncmp(text, word, std::strlen(word)) == 0;
}

// "zt 0xLL 0x18", then " 0xCC" for each character but the last, which is the line end. The characters have
// fixed places: where the line is so long that LL takes three digits, the first of them covers the end of
// "0x18". A newline or return among them is its own code, one character long, whose end ends the text.
void convert_command(const char* line, FlexBuffer& buffer) {
    constexpr std::size_t first_character = 12;
    constexpr std::size_t width = 5;
    const std::size_t length = std::strlen(line);
    char head[48];
    std::snprintf(head, sizeof head, "zt 0x%02zX 0x18", length);
    buffer.put(0, head);
    std::size_t at = first_character;
    for (std::size_t k = 0; k + 1 < length; ++k, at += width) {
        const char* code = FLEX_GetAsciiCode(line[k]);
        buffer.put(at, " 0x");
        buffer.put(at + 3, code[0]);
        buffer.put(at + 4, code[1]);
    }
    buffer.put(at, '\r');
    buffer.put(at + 1, '\0');
}

// "zt 12 ..." with "0x" before every value. The zero behind the line is copied with its characters, unless it
// is one of the three that are left out; the return stands behind it, so it is seen only then.
void convert_bytes(const char* line, FlexBuffer& buffer) {
    const std::size_t length = std::strlen(line);
    std::size_t at = buffer.put(0, "zt ");
    for (std::size_t i = 2; i < length; ++i) {
        if (i >= 5 && i <= 7) continue;
        if (line[i] == ' ' && is_hex_digit(line[i + 1])) at = buffer.put(at, "0x");
        buffer.put(at++, line[i + 1]);
    }
    buffer.put(at, '\r');
    buffer.put(at + 1, '\0');
}

}  // namespace

std::size_t FlexBuffer::put(std::size_t at, const char* text) {
    for (; *text != '\0'; ++text) put(at++, *text);
    return at;
}

void FlexBuffer::clear_text() noexcept { std::fill_n(bytes_.begin(), std::strlen(bytes_.c_str()), '\0'); }

const char* FLEX_GetAsciiCode(char c) noexcept {
    const auto* row = std::find_if(std::begin(FLEX_ASCII_TABLE), std::end(FLEX_ASCII_TABLE),
                                   [c](const ztdecode_flex_row& r) { return r.character == c; });
    return row != std::end(FLEX_ASCII_TABLE) ? row->code : FLEX_ASCII_TABLE[0].code;
}

FlexLine TOFLEX_Convert(const char* line, FlexBuffer& buffer) {
    buffer.clear_text();
    if (begins_with(line, "d ") || begins_with(line, "id") || begins_with(line, "phonemodel")) {
        convert_command(line, buffer);
        return FlexLine::command;
    }
    if (begins_with(line, "zt ")) {
        convert_bytes(line, buffer);
        return FlexLine::bytes;
    }
    return FlexLine::other;
}

void FROMFLEX_Convert(const char* line, FlexBuffer& buffer) {
    std::size_t at = buffer.put(0, "zt3 : R ");
    const char* values = std::strstr(line, "ZT 0x");
    if (values == nullptr) {
        buffer.put(buffer.put(0, line), '\0');
        return;
    }
    const std::size_t end = std::strcspn(values, "\r\n");
    std::size_t i = 5;
    while (i < end && values[i - 1] == 'x') {
        const bool two_digits = is_hex_digit(values[i]) && is_hex_digit(values[i + 1]);
        buffer.put(at, two_digits ? values[i] : '0');
        buffer.put(at + 1, two_digits ? values[i + 1] : values[i]);
        buffer.put(at + 2, ' ');
        at += 3;
        i += two_digits ? 2 : 1;
        i += 3;  // the blank and the "0x" of the next value
    }
    // The text ends where the reading ended: beyond what was written there is what an earlier result left.
    buffer.put(i, '\0');
}

}  // namespace ztdecode
