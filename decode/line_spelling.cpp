#include "decode/line_spelling.hpp"

#include <algorithm>

#include "decode/readers.hpp"

namespace ztdecode {

namespace {

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
bool hex(char c) { return hex_digit(c) < 16; }
char at_or_zero(std::string_view line, std::size_t at) { return at < line.size() ? line[at] : '\0'; }

std::size_t skip_blanks(std::string_view line, std::size_t at) {
    while (at < line.size() && blank(line[at])) ++at;
    return at;
}

std::size_t word_end(std::string_view line, std::size_t at) {
    while (at < line.size() && !blank(line[at])) ++at;
    return at;
}

bool is_hex_mark(std::string_view word) {
    return word.size() >= 4 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
}

// "hh" or "0xhh"
bool is_byte(std::string_view word) {
    if (is_hex_mark(word)) word.remove_prefix(2);
    return word.size() == 2 && hex(word[0]) && hex(word[1]);
}

// Whether the readers would read it otherwise than it is meant.
bool is_unusual(std::string_view line) {
    if (line.empty() || blank(line[0]) || line[0] == 'Z' || line.starts_with(byte_order_mark)) return true;
    const char column = at_or_zero(line, 6);
    if ((column == 's' || column == 'r') && blank(at_or_zero(line, 7))) return true;
    if (at_or_zero(line, 1) == 'T') return true;
    const std::size_t begin = column == 'S' || column == 'R' ? 7 : 0;
    for (std::size_t k = begin; k < line.size(); ++k) {
        const char c = line[k];
        if (c == '\t' || c == 'x' || c == 'X') return true;
        if (c == ' ' && at_or_zero(line, k + 1) == ' ') return true;
    }
    return false;
}

}  // namespace

bool SpelledLine::take(std::string_view line) {
    while (!line.empty() && blank(line.back())) line.remove_suffix(1);
    if (!is_unusual(line)) return false;
    end_ = line.size();
    const std::size_t begin = line.starts_with(byte_order_mark) ? byte_order_mark.size() : 0;
    const std::size_t first = skip_blanks(line, begin);
    return take_column(line, begin, true) || take_tag(line, first) || take_column(line, first, false) ||
           take_fields(line, first, 2);
}

void SpelledLine::add(char c, std::size_t column) {
    text_ += c;
    columns_.push_back(column);
}

bool SpelledLine::take_tag(std::string_view line, std::size_t at) {
    const auto is = [&](std::size_t k, char small) { return (at_or_zero(line, at + k) | 0x20) == small; };
    if (!is(0, 'z') || !is(1, 't') || !blank(at_or_zero(line, at + 2))) return false;
    text_.clear();
    columns_.clear();
    add('z', at);
    add('t', at + 1);
    add(' ', at + 2);
    return take_fields(line, at + 2, 0);
}

// A small letter is a column only behind a number.
bool SpelledLine::take_column(std::string_view line, std::size_t at, bool any_characters) {
    const char way = at_or_zero(line, at + 6);
    const bool small = way == 's' || way == 'r';
    if ((!small && way != 'S' && way != 'R') || !blank(at_or_zero(line, at + 7))) return false;
    const std::string_view six = line.substr(at, 6);
    if ((small || !any_characters) && !std::all_of(six.begin(), six.end(), hex)) return false;
    const std::size_t first = skip_blanks(line, at + 7);
    if (!is_byte(line.substr(first, word_end(line, first) - first))) return false;
    text_.clear();
    columns_.clear();
    for (std::size_t k = 0; k < 6; ++k) add(six[k], at + k);
    add(way == 's' || way == 'S' ? 'S' : 'R', at + 6);
    add(' ', at + 7);
    return take_fields(line, at + 7, 0);
}

// Every word that is left, a blank between two of them; the first `least` of them have to be bytes, and
// nothing stands in front of those.
bool SpelledLine::take_fields(std::string_view line, std::size_t at, std::size_t least) {
    if (least > 0) {
        text_.clear();
        columns_.clear();
    }
    std::size_t words = 0;
    for (at = skip_blanks(line, at); at < line.size(); at = skip_blanks(line, at), ++words) {
        const std::size_t end = word_end(line, at);
        const std::string_view word = line.substr(at, end - at);
        if (words < least && !is_byte(word)) return false;
        if (words > 0) add(' ', at - 1);
        for (std::size_t k = is_byte(word) && is_hex_mark(word) ? 2 : 0; k < word.size(); ++k)
            add(word[k], at + k);
        at = end;
    }
    return words >= least;
}

}  // namespace ztdecode
