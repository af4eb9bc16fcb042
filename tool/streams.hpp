#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.hpp"
#include "decode/readers.hpp"
#include "tool/control.hpp"

namespace ztdecode::tool {

// Writes all of it: 0, or the errno of what could not be written.
int write_whole(int descriptor, std::string_view words) noexcept;

// Text on its way to a file descriptor. Decoders write straight into `text`; it goes out when enough has come
// together.
class Output {
  public:
    // `escapes`: what would act on a terminal is shown as an escape.
    Output(int descriptor, bool escapes) noexcept : descriptor_(descriptor), escapes_(escapes) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    virtual ~Output() = default;

    Text text;

    bool escapes() const noexcept { return escapes_; }
    // Words that are somebody else's: of a trace, or of a message.
    void add_foreign(std::string_view words) {
        if (escapes_) {
            add_escaped(words, text);
        } else {
            text.add(words);
        }
    }
    void add_name(std::string_view file) {
        if (escapes_) {
            add_escaped_name(file, text);
        } else {
            text.add(file);
        }
    }

    void flush();
    // Gives the memory of what has gone out back as well.
    void flush_and_release() {
        flush();
        text = Text();
    }
    // All goes out; the first n characters stay in `text` as well, for those who count from them.
    void flush_keeping(std::size_t n);
    // Whole pages go out, the rest stays: a file takes those with less work than pieces of pages.
    void flush_when_full() {
        forget_kept();
        if (text.size() >= enough) send_first(text.size() - (sent_ + text.size()) % page);
    }
    // 0, or the errno of the first write that failed; nothing is written any more then.
    int error() const noexcept { return error_; }

  protected:
    // The text's way out.
    virtual void send(std::string_view words) { write(words); }

    int descriptor() const noexcept { return descriptor_; }
    void write(std::string_view words) { fail(write_whole(descriptor_, words)); }
    void fail(int error) noexcept { error_ = error; }

  private:
    static constexpr std::size_t page = 4096;
    static constexpr std::size_t enough = std::size_t{256} * 1024;

    void send_first(std::size_t n);
    void forget_kept() noexcept {
        if (kept_ > 0) text.remove_first(kept_);
        kept_ = 0;
    }

    int descriptor_;
    bool escapes_;
    int error_ = 0;
    std::size_t sent_ = 0;
    std::size_t kept_ = 0;  // characters at the front of `text` that have gone out
};

// Lines or blocks of a file descriptor, read as they come.
class Input {
  public:
    explicit Input(int descriptor);

    // The next line, without its newline, which stands behind it (a zero where the file has none); valid
    // until the next call. A line that is longer than `longest_line` comes in several pieces.
    struct Next {
        Line line;
        bool newline;  // the line ended in one
        bool piece;    // of a longer line; the last piece of it as well
    };
    bool next(Next& next, Output& out);

    // The next n bytes, fewer at the end; valid until the next call.
    std::span<const std::uint8_t> block(std::size_t n, Output& out);

    int error() const noexcept { return error_; }
    std::uint64_t bytes_read() const noexcept { return bytes_read_; }

    static constexpr std::size_t longest_line = std::size_t{1} << 20;

  private:
    bool fill(Output& out);

    int descriptor_;
    bool regular_;  // a file: reading never waits, so there is no need to show what is ready first
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t searched_ = 0;  // bytes from begin_ on that hold no newline
    bool in_long_line_ = false;
    bool at_end_ = false;
    int error_ = 0;
    std::uint64_t bytes_read_ = 0;
};

}  // namespace ztdecode::tool
