#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "decode/readers.hpp"
#include "tool/input/source.hpp"

namespace ztdecode::tool {

// Whole lines that were taken out of an input at once.
struct Lines {
    std::vector<char> bytes;  // room for one character behind the last line
    std::size_t size = 0;
    std::uint64_t count = 0;
    bool end_in_returns = false;   // carriage returns end them, too
    std::uint64_t bytes_read = 0;  // of the input
};

// Lines or blocks of a source, read as they come.
class Input {
  public:
    // `before_waiting` is called where reading may wait for what is not there yet; false: there is no need
    // to.
    Input(Source& source, std::function<bool()> before_waiting);
    // Some of those lines once more, from one that begins there up to one that ends there; they stay as long.
    Input(Lines& lines, std::size_t begin, std::size_t end) noexcept;

    // The next line, without its newline, which stands behind it (a zero where the file has none); valid
    // until the next call. Where the first line ends in a carriage return alone, all do. A line that is
    // longer than `longest_line` comes in several pieces.
    struct Next {
        Line line;
        bool newline;  // the line ended in one
        bool piece;    // of a longer line; the last piece of it as well
    };
    bool next(Next& next);

    // Takes out the next whole lines, some `most` bytes of them, but at least one; of a source that may wait
    // those that are there. False where there is none, or where they have to be taken one by one.
    bool take(std::size_t most, Lines& lines);

    // The next n bytes, fewer at the end; valid until the next call.
    std::span<const std::uint8_t> block(std::size_t n);

    // What is wrong with the source, empty when nothing is.
    const std::string& error() const noexcept { return source_->error(); }
    std::uint64_t bytes_read() const noexcept { return bytes_read_; }

    static constexpr std::size_t longest_line = std::size_t{1} << 20;

  private:
    bool fill();
    std::size_t whole_lines(std::size_t most) const;
    bool ends_line(char c) const noexcept { return c == '\n' || (ends_in_returns_ && c == '\r'); }
    void learn_line_end(const char* from, std::size_t present);
    const char* line_end(const char* from, const char* end) const;

    Source* source_ = nullptr;
    bool may_wait_ = false;
    std::function<bool()> before_waiting_;
    std::vector<char> buffer_;
    char* text_ = nullptr;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t searched_ = 0;      // bytes from begin_ on that hold no newline
    bool ends_in_returns_ = false;  // carriage returns end lines, too
    bool learnt_ = false;           // that it does
    bool in_long_line_ = false;
    bool at_end_ = false;
    std::uint64_t bytes_read_ = 0;
};

}  // namespace ztdecode::tool
