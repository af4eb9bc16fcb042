#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "core/format.hpp"
#include "core/message.hpp"
#include "core/session.hpp"
#include "core/text.hpp"
#include "core/trail.hpp"
#include "core/values.hpp"

namespace ztdecode {

// What a decoder gets, and the only thing it gets: the message, the session's memory, the text to write to,
// and the place for what it finds out besides.
//
// Bytes are counted from the beginning of the message, or of the item of it that is being decoded; what
// stands behind the end reads as `Message` says. Values carry where they come from: print them as they are,
// under their field's name. What a byte decides, it decides through `on`, `add_if`, `either` and `flag`; then
// whoever asks (`Session::trail`) gets each word with its bytes. A number taken out of a value in any other
// way leaves no trace.
class Decoding {
  public:
    Decoding(Session& session, const Message& m, Text& out) noexcept
        : session_(session), message_(m), out_(out), trail_(session.trail), length_{m.length()} {}
    // A message that the carrier's message carries.
    Decoding(Decoding& carrier, const Message& m) noexcept : Decoding(carrier.session_, m, carrier.out_) {
        if (trail_ != nullptr) [[unlikely]]
            trail_->enter_message(m);
        carried_ = true;
    }
    // One that was put together from segments, which stood at these places of the trace.
    Decoding(Decoding& carrier, const Message& m, std::span<const std::uint64_t> segments) noexcept
        : Decoding(carrier.session_, m, carrier.out_) {
        if (trail_ != nullptr) [[unlikely]]
            trail_->enter_reassembled(m, segments);
        carried_ = true;
    }
    Decoding(const Decoding&) = delete;
    Decoding& operator=(const Decoding&) = delete;
    ~Decoding() {
        if (trail_ != nullptr && carried_) [[unlikely]]
            trail_->leave_message();
    }

    Session& session() noexcept { return session_; }
    const Session& session() const noexcept { return session_; }
    const Message& message() const noexcept { return message_; }
    Text& out() noexcept { return out_; }
    Trail* trail() const noexcept { return trail_; }
    std::uint32_t direction() const noexcept { return message_.direction; }

    // --- reading

    std::uint32_t length() const noexcept { return length_.number; }
    // The same as a value: the bytes that say it, where an item's length was given with them.
    const Number& stated_length() const noexcept { return length_; }
    Byte operator[](std::size_t k) const noexcept { return {message_[first_ + k], place(k, 1)}; }
    // Big-endian numbers from byte k on.
    Number u16(std::size_t k) const noexcept { return {message_.u16(first_ + k), place(k, 2)}; }
    Number u24(std::size_t k) const noexcept {
        return {message_.u16(first_ + k) * 256U + message_[first_ + k + 2], place(k, 3)};
    }
    Number u32(std::size_t k) const noexcept { return {message_.u32(first_ + k), place(k, 4)}; }
    // Low byte first.
    Number low16(std::size_t k) const noexcept {
        return {message_[first_ + k] + 256U * message_[first_ + k + 1], place(k, 2)};
    }
    Condition bit(std::size_t k, unsigned n) const noexcept { return (*this)[k].bit(n); }

    // What led here: the opcode, the item's id.
    Number code() const noexcept { return code_; }

    // --- deciding

    // The number or the answer, for a decision about all that is written from here to the end of the decoder.
    template <std::integral T>
    T on(const Value<T>& value) noexcept {
        if (trail_ != nullptr) [[unlikely]]
            trail_->test(message_, value.place);
        return value.number;
    }
    bool on(const Condition& condition) noexcept {
        if (trail_ != nullptr) [[unlikely]]
            trail_->test(message_, condition.place);
        return condition.holds;
    }
    // The number, where it says how the others stand: a length, a count.
    template <std::integral T>
    T walk(const Value<T>& value) noexcept {
        if (trail_ != nullptr) [[unlikely]]
            trail_->walk(message_, value.place);
        return value.number;
    }

    // What is decided while it lives counts no longer than it.
    class Scope {
      public:
        explicit Scope(Decoding& d) noexcept
            : trail_(d.trail_), scope_(trail_ != nullptr ? trail_->scope() : 0) {}
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() {
            if (trail_ != nullptr) [[unlikely]]
                trail_->end_scope(scope_);
        }

      private:
        Trail* trail_;
        std::size_t scope_;
    };

    // While it lives, byte 0 is byte `first` and so many bytes are the message's: an item of a list.
    class Window {
      public:
        Window(Decoding& d, std::uint32_t first, std::uint32_t length) noexcept
            : Window(d, first, Number{length}) {}
        Window(Decoding& d, std::uint32_t first, const Number& length) noexcept
            : d_(d), first_(d.first_), length_(d.length_) {
            d.first_ += first;
            d.length_ = length;
        }
        Window(const Window&) = delete;
        Window& operator=(const Window&) = delete;
        ~Window() {
            d_.first_ = first_;
            d_.length_ = length_;
        }

      private:
        Decoding& d_;
        std::uint32_t first_;
        Number length_;
    };

    // --- writing

    // Words that stand for nothing but what was decided so far.
    void add(std::string_view words) { out_.add(words); }

    template <class F, class... Args>
    void print(const F& format, const Args&... args) {
        char* const begin = out_.room(format_bound(format, args...));
        Ends<F> ends;
        out_.written_to(write_format(begin, format, ends, args...));
        if constexpr (F::count != 0) {
            if (trail_ != nullptr) [[unlikely]]
                note_each<F>(std::index_sequence_for<Args...>(), ends, args...);
        }
    }

    // Words that this condition alone decides on.
    void add_if(const Condition& condition, std::string_view words) {
        if (condition.holds) add_word({words, 0, true, condition.place});
    }
    // Words that this code alone decides on, and that are no value.
    void add_word(const Word& word) {
        const std::size_t begin = out_.size();
        out_.add(word.text);
        if (trail_ != nullptr) [[unlikely]]
            trail_->words(message_, word.place, begin, out_.size());
    }

    // One value.
    template <class T>
    void value(FieldName field, const T& value) {
        const std::size_t begin = out_.size();
        char* const at = out_.room(format_detail::bound(value));
        out_.written_to(format_detail::write_value<format_detail::Shape{}>(at, value));
        if (trail_ != nullptr) [[unlikely]]
            note(field, meaning_of(value), begin);
    }
    // The same, written by `write`.
    template <class Write>
    void value(FieldName field, const Meaning& meaning, Write write) {
        const std::size_t begin = out_.size();
        write();
        if (trail_ != nullptr) [[unlikely]]
            note(field, meaning, begin);
    }

    // Bytes first ... first+n-1 as the characters that `as` makes of them; a zero ends the piece of text that
    // they stand in.
    template <class As>
    void text_as(FieldName field, std::size_t first, std::size_t n, As as) {
        const std::size_t begin = out_.size();
        out_.copy_as(*this, first, n, [&as](Byte c) { return as(c.number); });
        if (trail_ != nullptr) [[unlikely]]
            note_text(field, first, n, begin);
    }
    // The same as they stand.
    void text(FieldName field, std::size_t first, std::size_t n) {
        text_as(field, first, n, [](std::uint8_t c) { return c; });
    }
    // The same up to the first zero byte, as "%s" shows them: what is written next follows there.
    void text_to_zero(FieldName field, std::size_t first, std::size_t most);

    enum class Before : std::uint8_t { nothing, blank };
    // Each of these bytes as two digits, with a blank in front of it or nothing.
    void hex(FieldName field, std::size_t first, std::size_t n, Before before = Before::nothing);
    void HEX(FieldName field, std::size_t first, std::size_t n, Before before = Before::nothing);
    // The same without anything in front; bytes that are not too many are one number.
    void hex_number(FieldName field, std::size_t first, std::size_t n);

    // A piece of text that is a C string of its own: it ends at a zero byte. The trail takes note of the
    // words before they are cut, and of the cut when it is done.
    class Piece {
      public:
        explicit Piece(Decoding& d) noexcept : d_(d), outer_(d.out_.begin_piece()) {}
        Piece(const Piece&) = delete;
        Piece& operator=(const Piece&) = delete;
        ~Piece() {
            if (d_.trail_ != nullptr) [[unlikely]]
                d_.trail_->look();
            d_.out_.end_piece(outer_);
            if (d_.trail_ != nullptr) [[unlikely]]
                d_.trail_->look_at_cut();
        }

      private:
        Decoding& d_;
        std::size_t outer_;
    };

    // Keeps the first n characters of the text.
    void cut(std::size_t n) noexcept {
        if (trail_ != nullptr) [[unlikely]]
            trail_->look();
        out_.cut(n);
        if (trail_ != nullptr) [[unlikely]]
            trail_->look_at_cut();
    }

    // --- tables

    // While it lives, this code is what led here.
    class LedHere {
      public:
        LedHere(Decoding& d, const Number& code) noexcept : d_(d), outer_(d.code_) {
            // One by one: the processor has to wait for a pair of numbers that it wrote apart.
            d.code_.number = code.number;
            d.code_.place.first = code.place.first;
            d.code_.place.count = code.place.count;
        }
        LedHere(const LedHere&) = delete;
        LedHere& operator=(const LedHere&) = delete;
        ~LedHere() { d_.code_ = outer_; }

      private:
        Decoding& d_;
        Number outer_;
    };

    // Does what a table's row says: `run` with its code and its field for as long, all its words by this
    // code. `ask` tells the trail which table it is.
    template <class Run, class Ask>
    void row(const Number code, FieldName field, Run run, Ask ask) {
        const LedHere led_here(*this, code);
        if (trail_ == nullptr) [[likely]] {
            run();
        } else {
            ask(*trail_);
            observed_row(field, run);
        }
    }
    // What `write` writes stands for a code that no table knows.
    template <class Write>
    void unknown(const Number& code, Write write) {
        value("unknown_code", {Kind::number, false, 0, code.number, code.place}, write);
    }
    // The message is this one.
    void name(std::string_view name, const Number& code) noexcept {
        if (trail_ != nullptr) [[unlikely]]
            trail_->name(name, code.number);
    }
    void link(std::string_view name) noexcept {
        if (trail_ != nullptr) [[unlikely]]
            trail_->link(name, message_.direction);
    }

    // --- what a decoder finds out besides

    std::uint32_t route = route_digital;
    Status status = Status::none;
    std::uint8_t option_type = 0;  // of the module that is being decoded

  private:
    Place place(std::size_t k, std::uint32_t count) const noexcept {
        return {first_ + static_cast<std::uint32_t>(k), count};
    }

    template <class Run>
    [[gnu::noinline, gnu::cold]] void observed_row(FieldName field, Run run) {
        const FieldName outer_field = row_field_;
        const Scope scope(*this);
        trail_->test(message_, code_.place);
        row_field_ = field;
        run();
        row_field_ = outer_field;
    }

    // (Inlined, or values that nobody asks about would need memory for their notes.)
    template <class F, class... Args, std::size_t... i>
    [[gnu::always_inline]] void note_each(std::index_sequence<i...> /*of the arguments*/, const Ends<F>& ends,
                                          const Args&... args) {
        (note_between(F::parsed.placeholders[i].field, meaning_of(args), ends[2 * i], ends[2 * i + 1]), ...);
    }
    [[gnu::cold]] void note_between(FieldName field, const Meaning& meaning, const char* begin,
                                    const char* end) noexcept;
    [[gnu::cold]] void note(FieldName field, const Meaning& meaning, std::size_t begin) noexcept;
    [[gnu::cold]] void note_text(FieldName field, std::size_t first, std::size_t n,
                                 std::size_t begin) noexcept;
    void write_hex(std::size_t first, std::size_t n, bool blanks, const char* digits);
    Meaning number_or_bytes(std::size_t first, std::size_t n) const noexcept;

    Session& session_;
    const Message& message_;
    Text& out_;
    Trail* const trail_;
    std::uint32_t first_ = 0;
    Number length_;
    bool carried_ = false;
    Number code_{};
    FieldName row_field_ = row_field;
};

}  // namespace ztdecode
