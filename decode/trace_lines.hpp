#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "decode/line_prefix.hpp"
#include "decode/line_spelling.hpp"
#include "decode/readers.hpp"

// Traces that are written as text: which of their lines are trace lines, and the messages that those hold.

namespace ztdecode {

// Of which layout a line has the looks.
enum class LineKind { none, bare, tagged, spzt };
LineKind recognise(Line line);

// What a line of a trace is. Whether a trace line is refused shows when its messages are read.
enum class LineVerdict { trace_line, no_trace_line, blank, comment };
// Of a line that is neither blank nor a comment: no_trace_line, whatever layout it has.
LineVerdict without_message(Line line) noexcept;

// One message as it stands in its trace.
struct CapturedMessage {
    const Message* message = nullptr;
    std::uint64_t number = 0;     // of the line, or of the message in a binary file
    std::string_view columns{};   // what stands in front of it
    bool has_columns = false;     // in this layout something does
    std::string_view prefix{};    // what a log wrote in front of that
    std::string_view time{};      // in the prefix, or in the columns; empty when none is known
    std::string_view terminal{};  // that the prefix names
    bool goes_on = false;         // others may stand behind it in its line
    // Its line ends too early, and it was filled up: the figures; null for any other one.
    const Refusal* shortage = nullptr;
    std::uint64_t padded = 0;          // bytes that its line lacks, and that were filled up
    std::size_t column = 0;            // of its length, from 0 on
    std::uint64_t left_over = 0;       // words behind it that the length does not count,
    std::size_t left_over_column = 0;  // from here on
    std::uint64_t cut_short = 0;       // bytes that its file ends before
};

// What becomes of a line whose message lacks bytes, or has something else in their place: it is refused, or
// they are taken as 0xff.
enum class MissingBytes { refused, padded };

// Takes the lines of a trace one by one and gives their messages. Decodes nothing.
class TraceReader {
  public:
    // Without a layout each line is read as it looks. `direction`: of layouts that do not say it.
    TraceReader(std::optional<LineLayout> layout, std::uint32_t direction,
                MissingBytes missing = MissingBytes::refused) noexcept;

    // Who finds what logs write in front of lines: null, or it stays as long as this.
    void use(const PrefixFinder* finder) noexcept { finder_ = finder; }
    // The columns in front of S and R are a time.
    void columns_are_time() noexcept { columns_are_time_ = true; }

    // Begins with a line, which stays as it is until it is done.
    LineVerdict begin(Line line, std::uint64_t number);
    // Nearly all lines of a trace are S/R lines of one message and nothing else, which need no second look:
    // the message of such a line, null for any other one.
    const Message* plain(Line line) noexcept {
        return plain_lines_ && may_be_plain(line) ? reader_.plain_spzt(line) : nullptr;
    }
    // Such a line for those who ask for more than its message.
    void begin_plain(Line line, std::uint64_t number, const Message& m) noexcept;
    // The next message of the trace line, false behind the last one; valid until the next call.
    bool next();
    const CapturedMessage& captured() const noexcept { return captured_; }
    // Where in the line it stands, as it is read.
    const LineReader::Place& place() const noexcept { return reader_.place(); }
    // Behind the last message: why the line is refused, if it is.
    const Refusal& refusal() const noexcept { return refusal_; }
    // How it is written.
    LineLayout layout() const noexcept;
    // The trace line as it is read, without the blanks at its end: not always as it came, and without what a
    // log wrote in front of it.
    Line line() const noexcept { return line_; }
    // As it came, without the blanks at its end; and where a column of the other stood in it.
    Line whole_line() const noexcept { return whole_line_; }
    std::size_t whole_column(std::size_t column) const noexcept {
        return prefix_.length + (is_spelled_ ? spelled_.column(column) : column);
    }

  private:
    // No other layout begins like one that does not begin with the first character of a tag.
    static bool may_be_plain(Line line) noexcept {
        if (line.length == 0) return false;
        const char c = line.text[0];
        return c != 'z' && c != '#' && c != ' ' && c != '\t' && c != '\r';
    }

    LineKind find_line(Line line);
    LineKind find_behind_prefix(Line line);
    LineKind spell(Line line, std::size_t from);
    bool find_prefix(Line line, LinePrefix& prefix) const;
    LineKind wanted(LineKind kind) const noexcept;
    bool message_is_whole();
    std::uint64_t bytes_lacking() const noexcept;
    void look_behind_message();
    void refuse_what_is_missing();

    std::optional<LineLayout> layout_;
    std::uint32_t direction_;
    MissingBytes missing_;
    bool plain_lines_;
    LineLayout line_layout_ = LineLayout::spzt;
    bool given_ = false;  // a message of the line
    Refusal refusal_;
    LineReader reader_{LineReader::Behind::zeros};
    Line line_{"", 0};
    Line whole_line_{"", 0};
    const PrefixFinder* finder_ = nullptr;
    bool columns_are_time_ = false;
    bool is_spelled_ = false;
    LinePrefix prefix_;
    SpelledLine spelled_;
    CapturedMessage captured_;
};

}  // namespace ztdecode
