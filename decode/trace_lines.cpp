#include "decode/trace_lines.hpp"

#include <algorithm>
#include <cstring>

namespace ztdecode {

namespace {

bool hex(char c) { return hex_digit(c) < 16; }

bool ends_field(Line line, std::size_t at) {
    return at >= line.length || line.text[at] == ' ' || line.text[at] == '\r' || line.text[at] == '\t';
}

// "hh" and the end of the field at this column.
bool field(Line line, std::size_t at) {
    return at + 2 <= line.length && hex(line.text[at]) && hex(line.text[at + 1]) && ends_field(line, at + 2);
}

// Any six characters, S or R, a blank, and the first field. Where the six are a number, the column alone
// tells: a line that goes wrong behind it is a trace line still, and its reader says what is wrong.
bool spzt(Line line) {
    if (line.length < 8 || (line.text[6] != 'S' && line.text[6] != 'R') || line.text[7] != ' ') return false;
    if (field(line, 8)) return true;
    for (std::size_t k = 0; k < 6; ++k) {
        if (!hex(line.text[k])) return false;
    }
    return true;
}

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// What the line readers get: nothing behind the last field.
Line without_trailing_blanks(Line line) {
    while (line.length > 0 && blank(line.text[line.length - 1])) --line.length;
    return line;
}

std::optional<LineLayout> layout_of(LineKind kind) {
    switch (kind) {
        case LineKind::bare:
            return LineLayout::line_any_length;
        case LineKind::tagged:
            return LineLayout::tagged;
        case LineKind::spzt:
            return LineLayout::spzt;
        case LineKind::none:
            break;
    }
    return std::nullopt;
}

bool has_column(LineLayout layout) { return layout == LineLayout::spzt || layout == LineLayout::spzt_lng2; }

}  // namespace

LineKind recognise(Line line) {
    if (line.length >= 3 && std::memcmp(line.text, "zt ", 3) == 0) return LineKind::tagged;
    if (spzt(line)) return LineKind::spzt;
    if (field(line, 0) && field(line, 3)) return LineKind::bare;
    return LineKind::none;
}

TraceReader::TraceReader(std::optional<LineLayout> layout, std::uint32_t direction) noexcept
    : layout_(layout), direction_(direction), plain_lines_(!layout || layout == LineLayout::spzt) {}

LineVerdict TraceReader::begin(Line line, std::uint64_t number) noexcept {
    const char* const end = line.text + line.length;
    const char* const first = std::find_if_not(line.text, end, blank);
    if (first == end) return LineVerdict::blank;
    if (*first == '#') return LineVerdict::comment;
    const std::optional<LineLayout> layout = layout_ ? layout_ : layout_of(recognise(line));
    if (!layout) return LineVerdict::no_trace_line;
    line_ = without_trailing_blanks(line);
    captured_ = {.number = number, .has_columns = has_column(*layout) && has_sr_column(line_)};
    if (captured_.has_columns) captured_.columns = {line.text, 6};
    reader_.begin(line_, *layout, direction_);
    return LineVerdict::trace_line;
}

void TraceReader::begin_plain(Line line, std::uint64_t number, const Message& m) noexcept {
    line_ = line;
    captured_ = {.message = &m, .number = number, .columns = {line.text, 6}, .has_columns = true};
}

bool TraceReader::next() {
    captured_.message = reader_.next();
    captured_.goes_on = reader_.goes_on();
    captured_.shortage = reader_.padded() ? &refusal() : nullptr;
    return captured_.message != nullptr;
}

}  // namespace ztdecode
