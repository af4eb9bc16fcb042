#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "core/session.hpp"

// Readers of trace lines: they find the messages in one of the layouts, and say what is wrong with a line.
// They decode nothing.

namespace ztdecode {

// A line of text: characters, and behind the last one something that is no hexadecimal digit and no blank (a
// zero, a line end).
struct Line {
    const char* text;
    std::size_t length;
};

// How a line is written. `line_any_length`: a body behind no tag, with one or two length bytes by the rule of
// the tagged lines.
enum class LineLayout { line, line_lng2, line_any_length, tagged, spzt, spzt_lng2 };

// Why a line is refused.
struct Refusal {
    enum class Reason : std::uint8_t {
        none,
        no_length_byte,
        no_two_length_bytes,
        length_above_256,
        really_too_short,
        really_too_short_lng2,
        too_short,  // for the length: expected and found
        no_hexadecimal,
        no_tag,
        no_sr_column,
        sr_too_short,
        file_ends,  // inside the message
        no_memory,  // said by those who decode
    };

    Reason reason = Reason::none;
    std::size_t column = 0;      // where it went wrong, from 0 on
    std::uint64_t expected = 0;  // bytes of the message, as far as the line says
    std::uint64_t found = 0;     // bytes that the line has room for
    std::size_t length = 0;      // of the part of the line that holds them

    explicit operator bool() const noexcept { return reason != Reason::none; }
};

// A field: two hexadecimal digits, and every further digit behind them counts as well. Values above 31 bits
// are very large; the low byte of one above 63 bits is 0xff, as strtol has it, which stops at its largest
// number.
struct HexField {
    std::int64_t value;
    std::uint8_t low;
};
inline constexpr std::int64_t very_large_field = 0x7FFFFFFF;

// The row of digits that a long field was met in last. Every third digit of a row starts a field that reaches
// to its end; fields are asked for from left to right, and so each row is gone through once.
class DigitRow {
  public:
    HexField from(Line line, std::size_t at);

  private:
    static constexpr std::size_t most_digits = 16;  // of 64 bits

    void find(Line line, std::size_t at);

    std::size_t end_ = 0;
    std::size_t too_large_ =
        0;  // a field that starts before this has a digit that counts and stands too far left
};

class LineReader {
  public:
    // What stands behind the bytes of a message: what earlier lines left in the record, or zeros.
    enum class Behind { earlier_lines, zeros };

    explicit LineReader(Behind behind) noexcept : behind_(behind) {}

    // Begins with a line, which stays as it is until it is done. `direction`: of layouts that do not say it.
    void begin(Line text, LineLayout layout, std::uint32_t direction) noexcept;
    // The message of an S/R line as it is nearly always written: one message in plain fields up to the line's
    // end. Null for any other line; then nothing is done with it.
    const Message* plain_spzt(Line text) noexcept;
    // The next message of it, null behind the last one; valid until the next call.
    const Message* next();
    // Of the message that `next` gave last: others may stand behind it.
    bool goes_on() const noexcept { return goes_on_; }
    // The line ended too early for it, and it was filled up with 0xff.
    bool padded() const noexcept { return padded_; }
    // Behind the last message: whether the line is refused, and for a padded message its figures.
    const Refusal& refusal() const noexcept { return refusal_; }
    // Where the message stands that `next` looked for last; not of one that `plain_spzt` gave.
    struct Place {
        std::size_t column = 0;  // of its length
        std::size_t length_bytes = 0;
        std::uint64_t bytes = 0;  // as its length says
    };
    const Place& place() const noexcept { return place_; }

    // What the last line left in the record is taken back.
    void forget_line() noexcept;

  private:
    enum class State { nothing, line, line_lng2 };

    void begin_body(Line text, bool two_length_bytes, std::uint32_t direction) noexcept;
    const Message* refuse(Refusal::Reason reason, std::size_t column, std::uint64_t expected = 0,
                          std::uint64_t found = 0) noexcept;
    const Message* next_line();
    const Message* next_lng2();
    const Message* message(std::size_t first, std::uint64_t length) noexcept;
    void about_to_read(std::size_t n) noexcept;
    bool read_only_plain_fields(const char* field, std::size_t n) noexcept;
    std::size_t read_plain_fields(Line line, std::size_t column, std::size_t n);

    Behind behind_;
    State state_ = State::nothing;
    bool goes_on_ = false;
    bool padded_ = false;
    std::uint32_t direction_ = 0;
    Line body_{"", 0};
    std::size_t skipped_ = 0;  // characters in front of the body
    std::size_t at_ = 0;       // in the body
    DigitRow row_;
    Place place_;
    Refusal refusal_;
    Message message_{{}};
    std::array<std::uint8_t, message_capacity + 2> record_{};  // with its two length bytes at the most
    std::array<std::uint8_t, message_capacity> before_;  // where earlier lines show: what the line changed
    std::size_t changed_ = 0;                            // so many bytes
};

// Whether two bytes stand at the front of a body without tag: its length, by the rule of `line_tzt`.
bool has_two_length_bytes(Line body);

// What a line of the S/R layout holds behind its column.
enum class SpztBody { one_length_byte, two_length_bytes, no_sr_column, too_short };
SpztBody spzt_body(Line text);
bool has_sr_column(Line text);
// For a line that has the column: its body, and what the column says.
Line spzt_line(Line text);
std::uint32_t spzt_direction(Line text);

// Value of a hexadecimal digit, 16 for any other character.
std::uint8_t hex_digit(char c) noexcept;

}  // namespace ztdecode
