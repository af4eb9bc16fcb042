#pragma once

#include <cstddef>
#include <limits>
#include <string_view>

#include "core/text.hpp"
#include "tool/output/control.hpp"

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

    virtual void flush();
    // What stands behind all that was written so far, without a copy.
    void pass(std::string_view words) {
        flush();
        if (!words.empty() && error_ == 0) send(words);
        sent_ += words.size();
    }
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
        if (text.size() >= enough_) send_first(text.size() - (sent_ + text.size()) % page);
    }
    // 0, or the errno of the first write that failed; nothing is written any more then.
    int error() const noexcept { return error_; }

  protected:
    // The text's way out.
    virtual void send(std::string_view words) { write(words); }

    // All that is written stays in `text`.
    void hold_all() noexcept { enough_ = std::numeric_limits<std::size_t>::max(); }
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
    std::size_t enough_ = enough;
    std::size_t sent_ = 0;
    std::size_t kept_ = 0;  // characters at the front of `text` that have gone out
};

}  // namespace ztdecode::tool
