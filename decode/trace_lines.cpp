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

bool has_digits(Line line, std::size_t at) {
    return at + 2 <= line.length && hex(line.text[at]) && hex(line.text[at + 1]);
}

bool in_word(char c) { return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); }

// Two digits, and behind them nothing that goes on with the word.
bool is_byte(Line line, std::size_t at) {
    return has_digits(line, at) && (at + 2 == line.length || !in_word(line.text[at + 2]));
}

// How many bytes stand one behind the other from this column on, up to n.
std::size_t bytes_from(Line line, std::size_t column, std::uint64_t n) {
    std::size_t count = 0;
    while (count < n && is_byte(line, column + 3 * count)) ++count;
    return count;
}

Line from_column(Line line, std::size_t column) { return {line.text + column, line.length - column}; }

std::uint64_t words_from(Line line, std::size_t column) {
    std::uint64_t words = 0;
    bool in_word = false;
    for (; column < line.length; ++column) {
        const bool starts = !blank(line.text[column]) && !in_word;
        words += starts ? 1 : 0;
        in_word = !blank(line.text[column]);
    }
    return words;
}

}  // namespace

LineKind recognise(Line line) {
    if (line.length >= 3 && std::memcmp(line.text, "zt ", 3) == 0) return LineKind::tagged;
    if (spzt(line)) return LineKind::spzt;
    if (field(line, 0) && field(line, 3)) return LineKind::bare;
    return LineKind::none;
}

TraceReader::TraceReader(std::optional<LineLayout> layout, std::uint32_t direction,
                         MissingBytes missing) noexcept
    : layout_(layout),
      direction_(direction),
      missing_(missing),
      plain_lines_(!layout || layout == LineLayout::spzt) {}

LineVerdict without_message(Line line) noexcept {
    const char* const end = line.text + line.length;
    const bool marked = std::string_view(line.text, line.length).starts_with(byte_order_mark);
    const char* const first = std::find_if_not(line.text + (marked ? byte_order_mark.size() : 0), end, blank);
    if (first == end) return LineVerdict::blank;
    return *first == '#' ? LineVerdict::comment : LineVerdict::no_trace_line;
}

LineVerdict TraceReader::begin(Line line, std::uint64_t number) {
    if (const LineVerdict verdict = without_message(line); verdict != LineVerdict::no_trace_line)
        return verdict;
    const std::optional<LineLayout> layout = layout_ ? layout_ : layout_of(find_line(line));
    if (!layout) return LineVerdict::no_trace_line;
    if (layout_) find_line(line);
    captured_ = {.number = number,
                 .has_columns = has_column(*layout) && has_sr_column(line_),
                 .prefix = prefix_.text,
                 .time = prefix_.time,
                 .terminal = prefix_.terminal};
    if (captured_.has_columns) captured_.columns = {line_.text, 6};
    if (captured_.has_columns && columns_are_time_) captured_.time = captured_.columns;
    line_layout_ = *layout;
    reader_.begin(line_, *layout, prefix_.direction.value_or(direction_));
    given_ = false;
    refusal_ = {};
    return LineVerdict::trace_line;
}

// Of the layout that is asked for, if one is.
LineKind TraceReader::wanted(LineKind kind) const noexcept {
    if (!layout_) return kind;
    const LineKind asked = has_column(*layout_)             ? LineKind::spzt
                           : *layout_ == LineLayout::tagged ? LineKind::tagged
                                                            : LineKind::bare;
    return kind == asked ? kind : LineKind::none;
}

// Sets what is read of the line: all of it, what stands behind a prefix, or one of them in the usual
// spelling.
LineKind TraceReader::find_line(Line line) {
    whole_line_ = line_ = without_trailing_blanks(line);
    is_spelled_ = false;
    prefix_ = {};
    if (finder_ != nullptr) return find_behind_prefix(line_);
    if (const LineKind kind = spell(line_, 0); kind != LineKind::none) return kind;
    const LineKind kind = wanted(recognise(line_));
    return kind != LineKind::none ? kind : find_behind_prefix(line_);
}

LineKind TraceReader::spell(Line line, std::size_t from) {
    const std::string_view rest(line.text + from, line.length - from);
    if (!spelled_.take(rest)) return LineKind::none;
    const Line usual{spelled_.text().data(), spelled_.text().size()};
    const LineKind kind = wanted(recognise(usual));
    if (kind == LineKind::none) return kind;
    is_spelled_ = true;
    line_ = usual;
    return kind;
}

// Words of a log that look like bytes are none of a message unless they are one: "08:42:01 10 20 calls".
LineKind TraceReader::find_behind_prefix(Line line) {
    constexpr int most_pieces = 16;  // each of them is a look at the rest of the line
    LinePrefix prefix;
    for (int k = 0; k < most_pieces && find_prefix(line, prefix); ++k) {
        const Line rest = from_column(line, prefix.length);
        LineKind kind = spell(line, prefix.length);
        if (kind == LineKind::none) {
            line_ = rest;
            kind = wanted(recognise(rest));
        }
        const std::uint64_t words = kind == LineKind::bare ? words_from(line_, 0) : 0;
        if (kind != LineKind::none && bytes_from(line_, 0, words) == words) {
            prefix_ = prefix;
            return kind;
        }
        if (finder_ != nullptr) break;
    }
    line_ = line;
    is_spelled_ = false;
    return finder_ != nullptr ? wanted(recognise(line_)) : LineKind::none;
}

// Each call adds a piece to the prefix.
bool TraceReader::find_prefix(Line line, LinePrefix& prefix) const {
    const std::string_view words(line.text, line.length);
    const std::size_t mark = words.starts_with(byte_order_mark) ? byte_order_mark.size() : 0;
    if (finder_ != nullptr) {
        if (!finder_->find(words.substr(mark), prefix)) return false;
        prefix.length += mark;
        return true;
    }
    std::size_t at = std::max(prefix.length, mark);
    while (at < words.size() && blank(words[at])) ++at;
    PrefixPiece piece;
    if (!find_prefix_piece(words.substr(at), piece)) return false;
    if (prefix.time.empty()) prefix.time = piece.time;
    const std::size_t end = at + piece.length;
    if (piece.time.size() < piece.length - (words[at] == '[' ? 2 : 0)) {
        const std::size_t begin = at + (words[at] == '[' ? 0 : piece.time.size());
        prefix.terminal = words.substr(begin, end - begin);
        while (!prefix.terminal.empty() && blank(prefix.terminal.front())) prefix.terminal.remove_prefix(1);
    }
    const std::size_t begin =
        prefix.length == 0 ? at : static_cast<std::size_t>(prefix.text.data() - words.data());
    prefix.length = end;
    while (prefix.length < words.size() &&
           (blank(words[prefix.length]) || words[prefix.length] == ':' || words[prefix.length] == '|' ||
            words[prefix.length] == ',' || words[prefix.length] == ';'))
        ++prefix.length;
    prefix.text = words.substr(begin, end - begin);
    return true;
}

void TraceReader::begin_plain(Line line, std::uint64_t number, const Message& m) noexcept {
    whole_line_ = line_ = line;
    is_spelled_ = false;
    prefix_ = {};
    line_layout_ = LineLayout::spzt;
    captured_ = {
        .message = &m, .number = number, .columns = {line.text, 6}, .has_columns = true, .column = 8};
    if (columns_are_time_) captured_.time = captured_.columns;
    refusal_ = {};
}

bool TraceReader::next() {
    captured_.message = reader_.next();
    if (captured_.message != nullptr && missing_ == MissingBytes::refused && !message_is_whole()) {
        captured_.message = nullptr;
    } else if (captured_.message == nullptr) {
        refuse_what_is_missing();
    }
    if (captured_.message == nullptr) return false;
    given_ = true;
    captured_.goes_on = reader_.goes_on();
    captured_.shortage = reader_.padded() ? &reader_.refusal() : nullptr;
    captured_.padded = bytes_lacking();
    captured_.column = reader_.place().column;
    look_behind_message();
    return true;
}

// Refuses the line where a byte is missing, or something else stands in its place.
bool TraceReader::message_is_whole() {
    const LineReader::Place& place = reader_.place();
    const std::uint64_t fields = place.length_bytes + place.bytes;
    const std::uint64_t found = bytes_from(line_, place.column, fields);
    if (found == fields) return true;
    const std::uint64_t bytes = found < place.length_bytes ? 0 : found - place.length_bytes;
    const auto column = static_cast<std::size_t>(place.column + 3 * found);
    const bool ends = column + 2 > line_.length;
    refusal_ = {.reason = ends ? Refusal::Reason::too_short : Refusal::Reason::no_hexadecimal,
                .column = ends ? line_.length : column,
                .expected = place.bytes,
                .found = bytes,
                .length = line_.length};
    if (found < place.length_bytes) refusal_.reason = Refusal::Reason::no_length_byte;
    return false;
}

LineLayout TraceReader::layout() const noexcept {
    if (line_layout_ != LineLayout::line_any_length) return line_layout_;
    return has_two_length_bytes(line_) ? LineLayout::line_lng2 : LineLayout::line;
}

// Fields that a line of two length bytes ends before.
std::uint64_t TraceReader::bytes_lacking() const noexcept {
    const LineReader::Place& place = reader_.place();
    const std::uint64_t fields = place.length_bytes + place.bytes;
    const std::uint64_t present = (line_.length - std::min(place.column, line_.length) + 1) / 3;
    return fields - std::min(fields, present);
}

void TraceReader::look_behind_message() {
    const LineReader::Place& place = reader_.place();
    const auto end = static_cast<std::size_t>(place.column + 3 * (place.length_bytes + place.bytes) - 1);
    captured_.left_over = 0;
    captured_.left_over_column = end;
    if (end >= line_.length) return;
    const bool another = reader_.goes_on() && is_byte(line_, end + 1) && is_byte(line_, end + 4);
    if (another) return;
    captured_.left_over = words_from(line_, end);
    while (captured_.left_over_column < line_.length && blank(line_.text[captured_.left_over_column]))
        ++captured_.left_over_column;
}

// No line ends without a verdict: one that gave nothing at all is refused, too. What stands in the place of a
// byte is worth more words than how many are missing.
void TraceReader::refuse_what_is_missing() {
    refusal_ = reader_.refusal();
    if (!refusal_ && !given_) {
        const std::size_t column = reader_.place().column;
        const bool length = is_byte(line_, column) && is_byte(line_, column + 3);
        refusal_ = {.reason = length ? Refusal::Reason::too_short : Refusal::Reason::no_two_length_bytes,
                    .column = length ? line_.length : column,
                    .expected = length ? hex_digit(line_.text[column]) * 16U +
                                             hex_digit(line_.text[column + 1]) +
                                             4096U * hex_digit(line_.text[column + 3]) +
                                             256U * hex_digit(line_.text[column + 4])
                                       : 0U,
                    .length = line_.length};
        if (length && refusal_.expected == 0) refusal_.reason = Refusal::Reason::no_two_length_bytes;
    }
    const bool in_column = refusal_.reason == Refusal::Reason::sr_too_short;
    if (!in_column && refusal_.reason != Refusal::Reason::too_short) return;
    const std::size_t first = in_column ? 11 : reader_.place().column + 3 * reader_.place().length_bytes;
    const std::size_t found = bytes_from(line_, first, refusal_.expected);
    const std::size_t column = first + 3 * found;
    if (found < refusal_.expected && column + 2 <= line_.length) {
        refusal_.reason = Refusal::Reason::no_hexadecimal;
        refusal_.column = column;
    }
}

}  // namespace ztdecode
