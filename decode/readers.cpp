#include "decode/readers.hpp"

#include <algorithm>
#include <cstdlib>

namespace ztdecode {

namespace {

constexpr std::uint8_t no_digit = 16;  // a bit that no digit's value has

consteval std::array<std::uint8_t, 256> digit_values() {
    std::array<std::uint8_t, 256> values{};
    values.fill(no_digit);
    for (std::uint8_t d = 0; d < 10; ++d) values[static_cast<std::size_t>('0' + d)] = d;
    for (std::uint8_t d = 0; d < 6; ++d) {
        values[static_cast<std::size_t>('a' + d)] = static_cast<std::uint8_t>(10 + d);
        values[static_cast<std::size_t>('A' + d)] = static_cast<std::uint8_t>(10 + d);
    }
    return values;
}
constexpr auto digits = digit_values();

// What a character is worth as a digit of a field; above 0xff where it is none.
consteval std::array<std::uint16_t, 256> field_digits(unsigned worth) {
    std::array<std::uint16_t, 256> values{};
    for (std::size_t c = 0; c < values.size(); ++c) values[c] = static_cast<std::uint16_t>(digits[c] * worth);
    for (std::uint16_t& v : values) v = v == no_digit * worth ? 0x100 : v;
    return values;
}
constexpr auto first_digits = field_digits(16);
constexpr auto second_digits = field_digits(1);

// Digits and the blanks between them.
consteval std::array<bool, 256> field_characters() {
    std::array<bool, 256> characters{};
    for (std::size_t c = 0; c < characters.size(); ++c) characters[c] = c == ' ' || digits[c] != no_digit;
    return characters;
}
constexpr auto in_fields = field_characters();

constexpr std::int64_t very_large = 0x7FFFFFFF;
constexpr std::int64_t not_hex = -1;

Line from_column(Line line, std::size_t column) { return {line.text + column, line.length - column}; }

char character(Line line, std::size_t column) { return column < line.length ? line.text[column] : '\0'; }

// A field: two hexadecimal digits, and every further digit behind them counts as well. Values above 31 bits
// are very large; the low byte of one above 63 bits is 0xff, as strtol has it, which stops at its largest
// number.
struct HexField {
    std::int64_t value;
    std::uint8_t low;
};

// The row of digits that a long field was met in last. Every third digit of a row starts a field that reaches
// to its end; fields are asked for from left to right, and so each row is gone through once.
class DigitRow {
  public:
    HexField from(Line line, std::size_t at) {
        if (at >= end_) find(line, at);
        std::uint64_t value = 0;
        for (std::size_t k = end_ - std::min(end_ - at, most_digits); k < end_; ++k) {
            value = value << 4 | hex_digit(line.text[k]);
        }
        if (at < too_large_ || value >> 63 != 0) return {very_large, 0xFF};
        return {std::min(static_cast<std::int64_t>(value), very_large), static_cast<std::uint8_t>(value)};
    }

  private:
    static constexpr std::size_t most_digits = 16;  // of 64 bits

    void find(Line line, std::size_t at) {
        for (end_ = at; hex_digit(line.text[end_]) != no_digit;) ++end_;
        too_large_ = end_ - std::min(end_ - at, most_digits);
        while (too_large_ > at && line.text[too_large_ - 1] == '0') --too_large_;
    }

    std::size_t end_ = 0;
    std::size_t too_large_ =
        0;  // a field that starts before this has a digit that counts and stands too far left
};

// No digit stands behind the line: the zero at its end stops the look at the next column.
inline HexField hex_pair(Line line, std::size_t at, DigitRow& row) {
    if (at >= line.length) return {not_hex, 0xFF};
    const char* column = line.text + at;
    const unsigned high = hex_digit(column[0]);
    const unsigned low = hex_digit(column[1]);
    if (((high | low) & no_digit) != 0) return {not_hex, 0xFF};
    if (hex_digit(column[2]) != no_digit) return row.from(line, at);
    const unsigned value = high << 4 | low;
    return {value, static_cast<std::uint8_t>(value)};
}

// A number column as strtol reads it in base 16: white space, sign and "0x" in front are fine, nothing is 0.
std::int64_t number(Line line, std::size_t column) {
    if (column >= line.length) return 0;
    DigitRow row;
    const std::int64_t pair = hex_pair(line, column, row).value;
    if (pair != not_hex) return pair;
    return std::min<std::int64_t>(std::strtoll(line.text + column, nullptr, 16), very_large);
}

ReadResult refuse(Text& out, std::size_t begin, std::string_view why) {
    out.cut(begin);
    out.add(why);
    return ReadResult::refused;
}

// The column behind the last field, looked for from this column on; the zero behind the line ends the search.
std::size_t end_of_fields(Line line, std::size_t column) {
    while (in_fields[static_cast<std::uint8_t>(line.text[column])]) ++column;
    return column;
}

// What the first two fields and the column behind the last one make of an S/R line.
SpztBody body_with(std::int64_t n, std::int64_t high, std::size_t end) {
    const auto last = static_cast<std::int64_t>(end);
    if (last < 3 * n + 10) return SpztBody::too_short;
    const bool room_for_two = last >= 100 || 3 * (n + 256 * high) + 13 <= last;
    return room_for_two ? SpztBody::two_length_bytes : SpztBody::one_length_byte;
}

bool has_sr_column(Line text) { return character(text, 6) == 'S' || character(text, 6) == 'R'; }

Outcome decode_with(LineReader::Decode decoder, void* context, Session& session, Message& m, Text& out) {
    return decoder == nullptr ? decode(session, m, out) : decoder(context, session, m, out);
}

}  // namespace

std::uint8_t hex_digit(char c) noexcept { return digits[static_cast<std::uint8_t>(c)]; }

ReadResult LineReader::decode_record(std::size_t first, std::uint64_t length, std::uint32_t direction,
                                     Text& out) {
    const auto n = static_cast<std::size_t>(std::min<std::uint64_t>(length, message_capacity));
    Message m(record_.data() + first, n, behind_ == Behind::zeros ? n : message_capacity);
    m.direction = direction;
    return decode_with(decode_, context_, session_, m, out) == Outcome::decoded ? ReadResult::decoded
                                                                                : ReadResult::unknown_class;
}

// Reads up to n fields into the record, as long as they are two digits and a blank, or end the line behind
// their two digits, as nearly all are. Gives their number.
std::size_t LineReader::read_plain_fields(Line line, std::size_t column, std::size_t n) {
    const std::size_t present = column < line.length ? (line.length - column + 1) / 3 : 0;
    n = std::min(n, present);
    const char* const end = line.text + line.length;
    const char* field = line.text + column;
    for (std::size_t i = 0; i < n; ++i, field += 3) {
        const unsigned value = first_digits[static_cast<std::uint8_t>(field[0])] |
                               second_digits[static_cast<std::uint8_t>(field[1])];
        if (value > 0xFF || (field[2] != ' ' && field + 2 != end)) return i;
        record_[i] = static_cast<std::uint8_t>(value);
    }
    return n;
}

// The first n bytes of the record become those of this line.
void LineReader::about_to_read(std::size_t n) noexcept {
    if (behind_ == Behind::zeros || n <= changed_) return;
    std::copy(record_.begin() + changed_, record_.begin() + n, before_.begin() + changed_);
    changed_ = n;
}

void LineReader::forget_line() noexcept {
    std::copy_n(before_.begin(), changed_, record_.begin());
    changed_ = 0;
}

// "LL B0 B1 ... Bn". 255 bytes are accepted though the refusal speaks of 256.
ReadResult LineReader::line(Line text, std::uint32_t direction, Text& out) {
    const std::size_t begin = out.size();
    changed_ = 0;
    if (text.length < 2) return refuse(out, begin, "line: really too short");
    DigitRow row;
    const std::int64_t n = hex_pair(text, 0, row).value;
    if (n == not_hex || n == 0) return refuse(out, begin, "line does not start with length byte");
    if (n > 255) return refuse(out, begin, "line: longueur > 256");
    const auto count = static_cast<std::size_t>(n);
    if (text.length < 3 * count + 2) {
        out.print("line too short: expected: {}, real: {}"_cf, 3 * n + 2, text.length);
        return ReadResult::refused;
    }
    about_to_read(count);
    for (std::size_t i = read_plain_fields(text, 3, count); i < count; ++i) {
        const HexField byte = hex_pair(text, 3 + 3 * i, row);
        if (byte.value == not_hex) return refuse(out, begin, "line1: ill formed hex value");
        record_[i] = byte.low;
    }
    return decode_record(0, count, direction, out);
}

// "LL HH B0 B1 ... Bn", and more of them behind a separator. A line that ends too early is filled up with
// 0xff.
ReadResult LineReader::line_lng2(Line text, std::uint32_t direction, Text& out) {
    const std::size_t begin = out.size();
    const std::size_t total = text.length;
    changed_ = 0;
    if (total < 5) return refuse(out, begin, "line_lng2: line really too short");
    if (total == 5) return ReadResult::decoded;
    DigitRow row;
    for (std::size_t at = 0;;) {
        const std::int64_t low = hex_pair(text, at, row).value;
        const std::int64_t high = hex_pair(text, at + 3, row).value;
        if (low == not_hex || high == not_hex) return ReadResult::decoded;
        const std::int64_t n = low + 256 * high;
        if (n == 0) return refuse(out, begin, "line does not start with 2 length bytes");
        const auto count = static_cast<std::uint64_t>(n);
        if (total < 3 * count + 5) {
            out.cut(begin);
            out.print("line too short: expected: {}, real: {}, padded with 0xff\n\n"_cf, 3 * n + 5, total);
        }
        const auto kept = static_cast<std::size_t>(std::min<std::uint64_t>(count, message_capacity));
        about_to_read(kept);
        for (std::size_t i = read_plain_fields(text, at + 6, kept); i < kept; ++i) {
            record_[i] = hex_pair(text, at + 6 + 3 * i, row).low;
        }
        const ReadResult result = decode_record(0, count, direction, out);
        if (result != ReadResult::decoded) return result;
        if (at + 3 * count + 6 + 5 >= total) return ReadResult::decoded;
        at += static_cast<std::size_t>(3 * count + 6);
        out.add("\n");
    }
}

// A second field of 00 is the high length byte, any other one the first byte of the message, unless the line
// is longer than a one-byte length can say.
bool has_two_length_bytes(Line body) {
    const std::int64_t high = number(body, 3);
    return (high == 0 && body.length >= 6) || (high > 0 && body.length >= 766);
}

ReadResult LineReader::line_any_length(Line text, std::uint32_t direction, Text& out) {
    return has_two_length_bytes(text) ? line_lng2(text, direction, out) : line(text, direction, out);
}

ReadResult LineReader::line_tzt(Line text, std::uint32_t direction, Text& out) {
    const std::string_view all(text.text, text.length);
    changed_ = 0;
    if (!all.starts_with("zt ")) {
        const Text::Piece whole(out);
        out.add(" err: awaiting 'zt ', received '");
        for (std::size_t k = 0; k < 3; ++k) out.put(static_cast<std::uint8_t>(character(text, k)));
        out.add("'");
        return ReadResult::refused;
    }
    return line_any_length(from_column(text, 3), direction, out);
}

// "xxxxxxS LL ...": where the hexadecimal part ends decides whether there is room for two length bytes.
SpztBody spzt_body(Line text) {
    if (!has_sr_column(text)) return SpztBody::no_sr_column;
    const std::int64_t n = number(text, 8);
    const std::int64_t high = number(text, 11);
    return body_with(n, high, text.length >= 14 ? end_of_fields(text, 13) : 13);
}

Line spzt_line(Line text) { return text.length < 8 ? Line{"", 0} : from_column(text, 8); }

std::uint32_t spzt_direction(Line text) { return text.text[6] == 'S' ? from_dhs : to_dhs; }

void refuse_spzt(Line text, Text& out) {
    out.add(has_sr_column(text) ? "-> line too short" : "-> not in spzt format: msg[6] should be S or R");
}

// A line as it is nearly always written, one message in plain fields up to its end, is read in one go.
// Nothing is done with any other one.
std::optional<ReadResult> LineReader::decode_plain_spzt(Line text, Text& out) {
    if (behind_ != Behind::zeros || text.length < 14 || (text.length - 7) % 3 != 0) return std::nullopt;
    const std::size_t fields = (text.length - 7) / 3;
    if (fields > record_.size() || !has_sr_column(text)) return std::nullopt;
    if (read_plain_fields(text, 8, fields) != fields) return std::nullopt;
    const SpztBody body = body_with(record_[0], record_[1], text.length);
    const bool two = body == SpztBody::two_length_bytes;
    const std::size_t count = record_[0] + (two ? 256U * record_[1] : 0U);
    const std::size_t first = two ? 2 : 1;
    if (body == SpztBody::too_short || count == 0 || first + count != fields) return std::nullopt;
    return decode_record(first, count, spzt_direction(text), out);
}

ReadResult LineReader::line_spzt(Line text, Text& out) {
    if (const auto result = decode_plain_spzt(text, out)) return *result;
    switch (spzt_body(text)) {
        case SpztBody::one_length_byte:
            return line(spzt_line(text), spzt_direction(text), out);
        case SpztBody::two_length_bytes:
            return line_lng2(spzt_line(text), spzt_direction(text), out);
        default:
            refuse_spzt(text, out);
            return ReadResult::refused;
    }
}

ReadResult LineReader::line_spzt_lng2(Line text, Text& out) {
    if (!has_sr_column(text)) {
        refuse_spzt(text, out);
        return ReadResult::refused;
    }
    return line_lng2(spzt_line(text), spzt_direction(text), out);
}

ReadResult decode_bin_lng2(Session& session, std::span<const std::uint8_t> bytes, std::uint32_t direction,
                           Text& out) {
    auto byte = [bytes](std::size_t k) { return k < bytes.size() ? bytes[k] : std::uint8_t{0}; };
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = byte(at) + 256U * byte(at + 1);
        at += 2;
        const std::span<const std::uint8_t> rest = bytes.subspan(std::min(at, bytes.size()));
        Message m(rest.data(), length, std::min(length, rest.size()));
        m.direction = direction;
        const std::size_t begin = out.size();
        if (decode(session, m, out) != Outcome::decoded) return ReadResult::unknown_class;
        if (!out.from(begin).ends_with('\n')) out.add("\n");
        at += length;
    }
    return ReadResult::decoded;
}

}  // namespace ztdecode
