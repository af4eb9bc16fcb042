#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "core/format.hpp"
#include "core/message.hpp"

namespace ztdecode {

// The one sink that all texts are written to: a string that grows and keeps its room when it is emptied.
//
// Texts are C strings to those who read them. Where bytes of a message are copied into a piece of text, a
// zero byte ends that piece: put a Text::Piece around it. What is written to the piece behind the zero byte
// is dropped at its end.
class Text {
  public:
    Text() = default;
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    Text(Text&&) = default;
    Text& operator=(Text&&) = default;
    ~Text() = default;

    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    const char* data() const noexcept { return bytes_.get(); }
    std::string_view view() const noexcept { return {bytes_.get(), size_}; }
    const char* c_str() {
        *room(1) = '\0';
        return bytes_.get();
    }
    std::string_view from(std::size_t begin) const noexcept { return view().substr(begin); }

    void clear() noexcept { cut(0); }
    // Keeps the first n characters, n <= size().
    void cut(std::size_t n) noexcept {
        size_ = n;
        if (zero_at_ >= n) zero_at_ = none;
    }

    // Drops the first n characters, n <= size(), between pieces only.
    void remove_first(std::size_t n) noexcept {
        size_ -= n;
        zero_at_ = none;
        if (size_ > 0) std::memmove(bytes_.get(), bytes_.get() + n, size_);
    }

    void add(std::string_view s) {
        if (s.empty()) return;
        copy_characters(room(s.size()), s);
        size_ += s.size();
    }

    template <Words T>
    void add(const T& words) {
        written_to(words.write(room(words.bound())));
    }

    // One character as it stands; a zero ends the piece.
    void put(std::uint8_t c) {
        *room(1) = static_cast<char>(c);
        if (c == 0 && zero_at_ == none) zero_at_ = size_;
        ++size_;
    }

    // Writes a format with its arguments: integers, string_views and characters that are not zero.
    template <class Format, class... Args>
    void print(const Format& format, const Args&... args) {
        written_to(write_format(room(format_bound(format, args...)), format, args...));
    }

    // "%.2x" and "%.2X" of one byte.
    void hex(std::uint8_t byte) { two_digits(byte, lower_case_digits); }
    void HEX(std::uint8_t byte) { two_digits(byte, upper_case_digits); }

    // Bytes first ... first+n-1 of the message, or of an item of one, as the characters that `as` makes of
    // them; a zero ends the piece.
    template <class Bytes, class As>
    void copy_as(const Bytes& bytes, std::size_t first, std::size_t n, As as) {
        char* at = room(n);
        for (std::size_t k = 0; k < n; ++k, ++size_) {
            const std::uint8_t c = as(bytes[first + k]);
            at[k] = static_cast<char>(c);
            if (c == 0 && zero_at_ == none) zero_at_ = size_;
        }
    }
    // The same as they stand.
    template <class Bytes>
    void copy(const Bytes& bytes, std::size_t first, std::size_t n) {
        copy_as(bytes, first, n, [](std::uint8_t c) { return c; });
    }
    // The same up to the first zero byte, as "%s" shows them: what is written next follows there.
    void copy_string(const Message& m, std::size_t first, std::size_t n) {
        for (std::size_t k = 0; k < n && m[first + k] != 0; ++k) put(m[first + k]);
    }

    // A piece of text that is a C string of its own: from `begin_piece` to `end_piece`, which gets what the
    // other gave.
    std::size_t begin_piece() noexcept { return std::exchange(zero_at_, none); }
    void end_piece(std::size_t outer) noexcept {
        if (zero_at_ < size_) size_ = zero_at_;
        zero_at_ = outer;
    }
    class Piece {
      public:
        explicit Piece(Text& text) noexcept : text_(text), outer_(text.begin_piece()) {}
        Piece(const Piece&) = delete;
        Piece& operator=(const Piece&) = delete;
        ~Piece() { text_.end_piece(outer_); }

      private:
        Text& text_;
        std::size_t outer_;
    };

    // Room for n characters behind the text, and the text's new end in it.
    char* room(std::size_t n) {
        if (capacity_ - size_ < n) grow(n);
        return bytes_.get() + size_;
    }
    void written_to(const char* end) noexcept { size_ = static_cast<std::size_t>(end - bytes_.get()); }

  private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    [[gnu::cold]] void grow(std::size_t n);

    void two_digits(std::uint8_t byte, const char* digits) {
        char* at = room(2);
        at[0] = digits[byte >> 4];
        at[1] = digits[byte & 15];
        size_ += 2;
    }

    struct Freed {
        void operator()(char* p) const noexcept { std::free(p); }  // NOLINT: memory that realloc gave
    };
    std::unique_ptr<char, Freed> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
    std::size_t zero_at_ = none;
};

}  // namespace ztdecode
