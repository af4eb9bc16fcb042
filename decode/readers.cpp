#include "decode/readers.hpp"

#include <algorithm>
#include <cstdlib>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

constexpr std::int64_t not_hex = -1;

Line from_column(Line line, std::size_t column) { return {line.text + column, line.length - column}; }

char character(Line line, std::size_t column) { return column < line.length ? line.text[column] : '\0'; }

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
    return std::min<std::int64_t>(std::strtoll(line.text + column, nullptr, 16), very_large_field);
}

// The column behind the last field, looked for from this column on.
std::size_t end_of_fields(Line line, std::size_t column) {
    while (column < line.length && in_fields[static_cast<std::uint8_t>(line.text[column])]) ++column;
    return column;
}

// What the first two fields and the column behind the last one make of an S/R line.
SpztBody body_with(std::int64_t n, std::int64_t high, std::size_t end) {
    const auto last = static_cast<std::int64_t>(end);
    if (last < 3 * n + 10) return SpztBody::too_short;
    const bool room_for_two = last >= 100 || 3 * (n + 256 * high) + 13 <= last;
    return room_for_two ? SpztBody::two_length_bytes : SpztBody::one_length_byte;
}

// So many fields, or beginnings of one, stand from this column on.
std::uint64_t fields_behind(Line line, std::size_t column) {
    return column < line.length ? (line.length - column + 1) / 3 : 0;
}

constexpr std::size_t spzt_body_column = 8;
constexpr std::string_view tag = "zt ";

}  // namespace

std::uint8_t hex_digit(char c) noexcept { return digits[static_cast<std::uint8_t>(c)]; }

HexField DigitRow::from(Line line, std::size_t at) {
    if (at >= end_) find(line, at);
    std::uint64_t value = 0;
    for (std::size_t k = end_ - std::min(end_ - at, most_digits); k < end_; ++k) {
        value = value << 4 | hex_digit(line.text[k]);
    }
    if (at < too_large_ || value >> 63 != 0) return {very_large_field, 0xFF};
    return {std::min(static_cast<std::int64_t>(value), very_large_field), static_cast<std::uint8_t>(value)};
}

void DigitRow::find(Line line, std::size_t at) {
    for (end_ = at; hex_digit(line.text[end_]) != no_digit;) ++end_;
    too_large_ = end_ - std::min(end_ - at, most_digits);
    while (too_large_ > at && line.text[too_large_ - 1] == '0') --too_large_;
}

bool has_sr_column(Line text) { return character(text, 6) == 'S' || character(text, 6) == 'R'; }

// "xxxxxxS LL ...": where the hexadecimal part ends decides whether there is room for two length bytes.
SpztBody spzt_body(Line text) {
    if (!has_sr_column(text)) return SpztBody::no_sr_column;
    const std::int64_t n = number(text, 8);
    const std::int64_t high = number(text, 11);
    return body_with(n, high, text.length >= 14 ? end_of_fields(text, 13) : 13);
}

Line spzt_line(Line text) {
    return text.length < spzt_body_column ? Line{"", 0} : from_column(text, spzt_body_column);
}

std::uint32_t spzt_direction(Line text) { return text.text[6] == 'S' ? from_dhs : to_dhs; }

inline const Message* LineReader::message(std::size_t first, std::uint64_t length) noexcept {
    const auto n = static_cast<std::size_t>(std::min<std::uint64_t>(length, message_capacity));
    message_ = Message(record_.data() + first, n, behind_ == Behind::zeros ? n : message_capacity);
    message_.direction = direction_;
    return &message_;
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

const Message* LineReader::refuse(Refusal::Reason reason, std::size_t column, std::uint64_t expected,
                                  std::uint64_t found) noexcept {
    refusal_ = {reason, skipped_ + column, expected, found, body_.length};
    state_ = State::nothing;
    return nullptr;
}

void LineReader::begin_body(Line text, bool two_length_bytes, std::uint32_t direction) noexcept {
    body_ = text;
    direction_ = direction;
    state_ = two_length_bytes ? State::line_lng2 : State::line;
}

void LineReader::begin(Line text, LineLayout layout, std::uint32_t direction) noexcept {
    refusal_ = {};
    place_ = {};
    goes_on_ = padded_ = false;
    changed_ = skipped_ = at_ = 0;
    body_ = text;
    row_ = {};
    switch (layout) {
        case LineLayout::line:
            begin_body(text, false, direction);
            break;
        case LineLayout::line_lng2:
            begin_body(text, true, direction);
            break;
        case LineLayout::line_any_length:
            begin_body(text, has_two_length_bytes(text), direction);
            break;
        case LineLayout::tagged:
            if (!std::string_view(text.text, text.length).starts_with(tag)) {
                refuse(Refusal::Reason::no_tag, 0);
                break;
            }
            skipped_ = tag.size();
            text = from_column(text, tag.size());
            begin_body(text, has_two_length_bytes(text), direction);
            break;
        case LineLayout::spzt:
        case LineLayout::spzt_lng2:
            if (!has_sr_column(text)) {
                refuse(Refusal::Reason::no_sr_column, 6);
                break;
            }
            direction_ = spzt_direction(text);
            if (const SpztBody body =
                    layout == LineLayout::spzt ? spzt_body(text) : SpztBody::two_length_bytes;
                body == SpztBody::too_short) {
                refuse(Refusal::Reason::sr_too_short, std::min(text.length, spzt_body_column),
                       static_cast<std::uint64_t>(number(text, spzt_body_column)), fields_behind(text, 11));
            } else {
                skipped_ = std::min(text.length, spzt_body_column);
                begin_body(spzt_line(text), body == SpztBody::two_length_bytes, direction_);
            }
            break;
    }
}

const Message* LineReader::plain_spzt(Line text) noexcept {
    if (behind_ != Behind::zeros || text.length < 13 || (text.length - 7) % 3 != 0) return nullptr;
    const std::size_t fields = (text.length - 7) / 3;
    if (fields > record_.size() || text.text[7] != ' ' || !has_sr_column(text)) return nullptr;
    if (!read_only_plain_fields(text.text + spzt_body_column, fields)) return nullptr;
    const SpztBody body = body_with(record_[0], record_[1], text.length);
    const bool two = body == SpztBody::two_length_bytes;
    const std::size_t count = record_[0] + (two ? 256U * record_[1] : 0U);
    const std::size_t first = two ? 2 : 1;
    if (body == SpztBody::too_short || count == 0 || first + count != fields) return nullptr;
    refusal_.reason = Refusal::Reason::none;
    goes_on_ = padded_ = false;
    direction_ = spzt_direction(text);
    return message(first, count);
}

#ifdef __SSE2__
// Five fields with the blanks in front of them; the first of the 16 characters is anybody's:
// "S 02 21 04 03 ff". Whether they are that; what they are worth is written to `to` in any case.
bool read_five(const char* characters, std::uint8_t* to) noexcept {
    const auto all = [](int value) { return _mm_set1_epi8(static_cast<char>(value)); };
    const auto at_most = [&](__m128i v, int most) { return _mm_cmpeq_epi8(_mm_min_epu8(v, all(most)), v); };
    const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(characters));  // NOLINT: any alignment
    const __m128i number = _mm_sub_epi8(c, all('0'));
    const __m128i letter = _mm_sub_epi8(_mm_or_si128(c, all(0x20)), all('a'));
    const __m128i is_letter = at_most(letter, 5);
    const __m128i is_digit = _mm_or_si128(at_most(number, 9), is_letter);
    const __m128i digit = _mm_add_epi8(_mm_and_si128(c, all(0x0F)), _mm_and_si128(is_letter, all(9)));
    const __m128i byte = _mm_or_si128(_mm_slli_epi16(digit, 4), _mm_srli_si128(digit, 1));
    std::array<std::uint8_t, 16> bytes{};
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes.data()), byte);  // NOLINT: any alignment
    for (std::size_t k = 0; k < 5; ++k) to[k] = bytes[2 + 3 * k];
    constexpr int digits_at = 0b1101101101101100;
    constexpr int blanks_at = 0b0010010010010010;
    const int digits_met = _mm_movemask_epi8(is_digit);
    const int blanks_met = _mm_movemask_epi8(_mm_cmpeq_epi8(c, all(' ')));
    return ((digits_met & digits_at) | (blanks_met & blanks_at)) == (digits_at | blanks_at);
}
#endif

// Reads n fields, a blank in front of each of them. What is wrong with one shows behind the last one, which
// costs less than a look at each.
inline bool LineReader::read_only_plain_fields(const char* field, std::size_t n) noexcept {
#ifdef __SSE2__
    if (n >= 5) {
        // Some of the last five may be read twice.
        bool right = read_five(field + 3 * (n - 5) - 2, record_.data() + (n - 5));
        for (std::size_t i = 0; i + 5 < n; i += 5) right &= read_five(field + 3 * i - 2, record_.data() + i);
        return right;
    }
#endif
    unsigned wrong = 0;
    for (std::size_t i = 0; i < n; ++i, field += 3) {
        const unsigned value = first_digits[static_cast<std::uint8_t>(field[0])] |
                               second_digits[static_cast<std::uint8_t>(field[1])];
        record_[i] = static_cast<std::uint8_t>(value);
        wrong |= value | static_cast<unsigned>(field[-1] ^ ' ') << 8;
    }
    return wrong <= 0xFF;
}

const Message* LineReader::next() {
    switch (state_) {
        case State::line:
            return next_line();
        case State::line_lng2:
            return next_lng2();
        default:
            return nullptr;
    }
}

// "LL B0 B1 ... Bn". 255 bytes are accepted though the refusal speaks of 256.
const Message* LineReader::next_line() {
    const Line text = body_;
    state_ = State::nothing;
    place_ = {skipped_, 1, 0};
    if (text.length < 2) return refuse(Refusal::Reason::really_too_short, 0);
    const std::int64_t n = hex_pair(text, 0, row_).value;
    if (n == not_hex || n == 0) return refuse(Refusal::Reason::no_length_byte, 0);
    if (n > 255) return refuse(Refusal::Reason::length_above_256, 0);
    const auto count = static_cast<std::size_t>(n);
    place_.bytes = count;
    if (text.length < 3 * count + 2)
        return refuse(Refusal::Reason::too_short, text.length, count, fields_behind(text, 3));
    about_to_read(count);
    for (std::size_t i = read_plain_fields(text, 3, count); i < count; ++i) {
        const HexField byte = hex_pair(text, 3 + 3 * i, row_);
        if (byte.value == not_hex) return refuse(Refusal::Reason::no_hexadecimal, 3 + 3 * i);
        record_[i] = byte.low;
    }
    return message(0, count);
}

// "LL HH B0 B1 ... Bn", and more of them behind a separator. A line that ends too early is filled up with
// 0xff.
const Message* LineReader::next_lng2() {
    const Line text = body_;
    const std::size_t total = text.length;
    const bool first = !goes_on_;
    goes_on_ = padded_ = false;
    place_ = {skipped_ + at_, 2, 0};
    if (first && total < 5) return refuse(Refusal::Reason::really_too_short_lng2, 0);
    if (first && total == 5) {
        state_ = State::nothing;
        return nullptr;
    }
    const std::int64_t low = hex_pair(text, at_, row_).value;
    const std::int64_t high = hex_pair(text, at_ + 3, row_).value;
    if (low == not_hex || high == not_hex) {
        state_ = State::nothing;
        return nullptr;
    }
    const std::int64_t n = low + 256 * high;
    if (n == 0) return refuse(Refusal::Reason::no_two_length_bytes, at_);
    const auto count = static_cast<std::uint64_t>(n);
    place_.bytes = count;
    padded_ = total < 3 * count + 5;
    if (padded_) {
        refusal_ = {Refusal::Reason::none, skipped_ + total, count, fields_behind(text, at_ + 6), total};
    }
    const auto kept = static_cast<std::size_t>(std::min<std::uint64_t>(count, message_capacity));
    about_to_read(kept);
    for (std::size_t i = read_plain_fields(text, at_ + 6, kept); i < kept; ++i) {
        record_[i] = hex_pair(text, at_ + 6 + 3 * i, row_).low;
    }
    goes_on_ = at_ + 3 * count + 6 + 5 < total;
    if (goes_on_) {
        at_ += static_cast<std::size_t>(3 * count + 6);
    } else {
        state_ = State::nothing;
    }
    return message(0, count);
}

// A second field of 00 is the high length byte, any other one the first byte of the message, unless the line
// is longer than a one-byte length can say.
bool has_two_length_bytes(Line body) {
    const std::int64_t high = number(body, 3);
    return (high == 0 && body.length >= 6) || (high > 0 && body.length >= 766);
}

}  // namespace ztdecode
