#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "core/session.hpp"

// Readers of trace lines and binary buffers: they find the messages in one of the layouts and decode them.

namespace ztdecode {

enum class ReadResult {
    decoded,
    refused,        // the text says why; nothing of it is a decoded message
    unknown_class,  // decoded up to an object-protocol message of an unknown class
};

// A line of text: characters, and a zero behind the last one.
struct Line {
    const char* text;
    std::size_t length;
};

class LineReader {
  public:
    // What stands behind the bytes of a message: what earlier lines left in the record, or zeros.
    enum class Behind { earlier_lines, zeros };
    // Decodes one message behind what the text holds.
    using Decode = Outcome (*)(void* context, Session& session, Message& m, Text& out);

    explicit LineReader(Session& session, Behind behind) noexcept : session_(session), behind_(behind) {}
    // Lets somebody else see each message on its way to the decoder.
    LineReader(Session& session, Behind behind, Decode decode, void* context) noexcept
        : session_(session), behind_(behind), decode_(decode), context_(context) {}

    // Each writes behind what `out` holds.
    ReadResult line(Line text, std::uint32_t direction, Text& out);
    ReadResult line_lng2(Line text, std::uint32_t direction, Text& out);
    ReadResult line_tzt(Line text, std::uint32_t direction, Text& out);
    ReadResult line_spzt(Line text, Text& out);
    ReadResult line_spzt_lng2(Line text, Text& out);

    // A body behind no tag, with one or two length bytes by the rule of `line_tzt`.
    ReadResult line_any_length(Line text, std::uint32_t direction, Text& out);

    // What the last line left in the record is taken back.
    void forget_line() noexcept;

  private:
    void about_to_read(std::size_t n) noexcept;
    std::size_t read_plain_fields(Line line, std::size_t column, std::size_t n);
    std::optional<ReadResult> decode_plain_spzt(Line text, Text& out);
    // The message that starts at this byte of the record.
    ReadResult decode_record(std::size_t first, std::uint64_t length, std::uint32_t direction, Text& out);

    Session& session_;
    Behind behind_;
    Decode decode_ = nullptr;
    void* context_ = nullptr;
    std::array<std::uint8_t, message_capacity + 2> record_{};  // with its two length bytes at the most
    std::array<std::uint8_t, message_capacity> before_;  // where earlier lines show: what the line changed
    std::size_t changed_ = 0;                            // so many bytes
};

// Whether two bytes stand at the front of a body without tag: its length, by the rule of `line_tzt`.
bool has_two_length_bytes(Line body);

// What a line of the S/R layout holds behind its column.
enum class SpztBody { one_length_byte, two_length_bytes, no_sr_column, too_short };
SpztBody spzt_body(Line text);
// For a line that has the column: its body, and what the column says.
Line spzt_line(Line text);
std::uint32_t spzt_direction(Line text);
// Why the line is refused.
void refuse_spzt(Line text, Text& out);

// Messages behind two length bytes each, one behind the other; every text ends in a newline.
ReadResult decode_bin_lng2(Session& session, std::span<const std::uint8_t> bytes, std::uint32_t direction,
                           Text& out);

// Value of a hexadecimal digit, 16 for any other character.
std::uint8_t hex_digit(char c) noexcept;

}  // namespace ztdecode
