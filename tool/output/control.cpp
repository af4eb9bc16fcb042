#include "tool/output/control.hpp"

#include <algorithm>
#include <array>
#include <vector>

namespace ztdecode::tool {

namespace {

// Printable and never part of an escape.
consteval std::array<bool, 256> plain_characters() {
    std::array<bool, 256> plain{};
    for (std::size_t c = ' '; c < 0x7F; ++c) plain[c] = c != '\\' && c != '"';
    return plain;
}
constexpr auto plain = plain_characters();

struct Character {
    std::size_t size;  // bytes
    char32_t code;
    bool utf8;  // no: a byte that is part of no character
};

constexpr bool continues(std::string_view words, std::size_t k) {
    return k < words.size() && (static_cast<unsigned char>(words[k]) & 0xC0) == 0x80;
}

// Of words that are not empty. A character in more bytes than it needs is none, and so is half a pair of
// UTF-16.
Character first_character(std::string_view words) {
    constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(words[0]);
    const Character stray = {1, lead, false};
    if (lead < 0x80) return {1, lead, true};
    if (lead < 0xC0 || lead >= 0xF8) return stray;
    const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = lead & (0xFFU >> (size + 1));
    for (std::size_t k = 1; k < size; ++k) {
        if (!continues(words, k)) return stray;
        code = code << 6 | (static_cast<unsigned char>(words[k]) & 0x3F);
    }
    const bool none = code < least[size] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000);
    return none ? stray : Character{size, code, true};
}

struct Range {
    char32_t first;
    char32_t last;
};

constexpr auto acting = std::to_array<Range>({
    {0x00, 0x1F},
    {0x7F, 0x9F},
    {0x61C, 0x61C},    // Arabic letter mark
    {0x200E, 0x200F},  // left-to-right and right-to-left mark
    {0x2028, 0x202E},  // line and paragraph separator, embeddings and overrides
    {0x2066, 0x206F},  // isolates, deprecated switches
    {0xFEFF, 0xFEFF},  // byte order mark
});

bool acts(char32_t code) {
    return std::any_of(acting.begin(), acting.end(),
                       [code](Range r) { return r.first <= code && code <= r.last; });
}

void add_escape(Character c, Text& to) {
    if (c.utf8 && c.code >= 0x80) {
        to.print("\\u{-:04x}"_cf, static_cast<std::uint32_t>(c.code));
    } else {
        to.add("\\x");
        to.hex(static_cast<std::uint8_t>(c.code));
    }
}

// `special` gives what stands for a character of ASCII, or nothing where that goes by the general rule.
template <class Special>
void add_with(Special special, std::string_view words, Text& to) {
    while (!words.empty()) {
        const auto end = std::find_if_not(words.begin(), words.end(),
                                          [](char c) { return plain[static_cast<unsigned char>(c)]; });
        const auto n = static_cast<std::size_t>(end - words.begin());
        to.add(words.substr(0, n));
        words.remove_prefix(n);
        if (words.empty()) return;
        const Character c = first_character(words);
        const std::string_view instead = special(words);
        if (!instead.empty()) {
            to.add(instead);
        } else if (!c.utf8 || acts(c.code)) {
            add_escape(c, to);
        } else {
            to.add(words.substr(0, c.size));
        }
        words.remove_prefix(c.size);
    }
}

// A backslash that would be taken for the beginning of an escape.
std::string_view backslash(std::string_view words) {
    const bool like_an_escape = words.size() > 1 && (words[1] == 'x' || words[1] == 'u');
    return words[0] == '\\' && like_an_escape ? "\\x5c" : "";
}

std::string_view of_text(std::string_view words) {
    if (words[0] == '\n') return "\n";
    if (words[0] == '\t') return "\t";
    return backslash(words);
}

std::string_view of_quoted(std::string_view words) {
    switch (words[0]) {
        case '\n':
            return "\\n";
        case '\t':
            return "\\t";
        case '\r':
            return "\\r";
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        default:
            return "";
    }
}

// A decoded text in parts: the characters between two codes, and the code behind them without its zero.
template <class OnCharacters, class OnCode>
void take_apart(std::string_view text, OnCharacters on_characters, OnCode on_code) {
    while (!text.empty()) {
        const std::string_view characters = text.substr(0, text.find('\0'));
        if (!characters.empty()) on_characters(characters);
        text.remove_prefix(characters.size());
        if (text.empty()) return;
        const std::string_view code = text.substr(1, text.find('m'));
        on_code(code);
        text.remove_prefix(1 + code.size());
    }
}

void add_code(std::string_view code, Text& to) {
    to.add("\033");
    to.add(code);
}

constexpr std::string_view end_of_colour = "[0m";

// Writes lines, each with the codes of its own colour.
class ColouredLines {
  public:
    explicit ColouredLines(Text& to) : to_(to) {}

    void code(std::string_view code) {
        if (code != end_of_colour) {
            open_.push_back(code);
        } else if (!open_.empty()) {
            open_.pop_back();
        }
    }

    void characters(std::string_view characters) {
        while (!characters.empty()) {
            const std::string_view line = characters.substr(0, characters.find('\n'));
            if (!line.empty()) switch_to(open_.empty() ? std::string_view() : open_.back());
            add_escaped(line, to_);
            characters.remove_prefix(line.size());
            if (characters.empty()) return;
            switch_to({});
            to_.add("\n");
            characters.remove_prefix(1);
        }
    }

    void end() { switch_to({}); }

  private:
    void switch_to(std::string_view colour) {
        if (colour == shown_) return;
        if (!shown_.empty()) add_code(end_of_colour, to_);
        if (!colour.empty()) add_code(colour, to_);
        shown_ = colour;
    }

    Text& to_;
    std::vector<std::string_view> open_;  // colours inside each other
    std::string_view shown_;
};

}  // namespace

void add_escaped(std::string_view words, Text& to) { add_with(of_text, words, to); }

void add_quoted(std::string_view words, Text& to) {
    to.add("\"");
    add_with(of_quoted, words, to);
    to.add("\"");
}

void add_escaped_name(std::string_view name, Text& to) { add_with(backslash, name, to); }

bool has_characters(std::string_view text) {
    bool found = false;
    take_apart(
        text, [&found](std::string_view) { found = true; }, [](std::string_view) {});
    return found;
}

void add_coloured(std::string_view text, Text& to) {
    take_apart(
        text, [&to](std::string_view characters) { to.add(characters); },
        [&to](std::string_view code) { add_code(code, to); });
}

void add_coloured_escaped(std::string_view text, Text& to) {
    ColouredLines lines(to);
    take_apart(
        text, [&lines](std::string_view characters) { lines.characters(characters); },
        [&lines](std::string_view code) { lines.code(code); });
    lines.end();
}

void add_uncoloured(std::string_view text, Text& to) {
    take_apart(
        text, [&to](std::string_view characters) { to.add(characters); }, [](std::string_view) {});
}

}  // namespace ztdecode::tool
