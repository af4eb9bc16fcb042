#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "core/fields.hpp"
#include "core/values.hpp"

namespace ztdecode {

class Message;
class Text;
struct Item;
struct Opcode;

// A run of message bytes: offsets first ... last in the message as it was captured (or in the reassembled
// one).
struct ByteRange {
    std::uint32_t first;
    std::uint32_t last;
    bool operator==(const ByteRange&) const = default;
};

// A piece of the text. One that shows a value has the bytes that the value was read from; any other one those
// that were looked at to choose its words.
struct Stretch {
    static constexpr std::uint32_t no_value = 0xFFFFFFFF;

    std::uint32_t begin = 0;  // offsets in the text
    std::uint32_t end = 0;
    std::uint32_t first_range = 0;  // of its bytes, ascending and apart from each other
    std::uint32_t ranges = 0;
    std::uint32_t first_tested = 0;  // of the bytes that were looked at before it was written
    std::uint32_t tested = 0;
    std::uint32_t value = no_value;
    std::uint32_t message = 0;
    bool missing = false;  // a byte was asked for that the message does not have
};

// A value that stands in the text.
struct NotedValue {
    std::string_view name;  // a field's, which lives for ever
    const Field* field = nullptr;
    Meaning meaning{};
    std::uint32_t begin = 0;  // offsets in the text
    std::uint32_t end = 0;
    std::uint32_t first_range = 0;
    std::uint32_t ranges = 0;
    std::uint32_t message = 0;
    bool missing = false;
};

// The captured message, or one that another one carries.
struct NotedMessage {
    static constexpr std::uint32_t no_message = 0xFFFFFFFF;
    static constexpr std::uint32_t no_code = 0xFFFFFFFF;

    explicit NotedMessage(const Message& m) noexcept;

    std::uint32_t carrier = no_message;
    std::uint32_t begin = 0;  // of its text
    std::uint32_t end = 0;
    std::uint32_t origin = 0;  // where its bytes begin in the captured one, or in the reassembled one
    std::uint32_t length = 0;
    std::uint32_t source_length = 0;  // of the captured or reassembled one
    const Message* view = nullptr;    // on it, while it is decoded
    std::uint32_t there = 0;          // bytes of it that are in the captured one, from its first one on
    std::uint32_t direction = 0;
    std::string_view link{};
    std::string_view name{};  // none: its code is unknown
    std::uint32_t code = no_code;
    std::uint32_t first_tested = 0;  // of the carrier's bytes that were looked at before it was decoded
    std::uint32_t tested = 0;
    bool reassembled = false;               // it, or a carrier of it, was put together from segments
    std::vector<std::uint8_t> bytes{};      // of one that was put together here
    std::vector<std::uint64_t> segments{};  // where they stood in the trace: `Trail::place` of each
    std::vector<ByteRange> missing{};       // offsets in itself
};

// The rows of a table, of one kind or the other.
struct TableRows {
    const Opcode* opcodes = nullptr;
    const Item* items = nullptr;
    std::size_t count = 0;
    std::string_view other{};  // the name of every other code's message, where it has one
};

// A table that was asked for a code, or, without rows, bytes that were tested besides.
struct AskedTable {
    TableRows rows;
    std::uint32_t code;
    bool known;       // it has a row for the code
    bool some;        // the code was read from a byte of the message,
    ByteRange bytes;  // from these
    std::uint32_t message;
};

// Notes of one message's decoding, for whoever asks for them: every value with its name, its meaning and its
// bytes, and for all other words the bytes that were looked at to choose them.
//
// Values are noted as they are written. What stands between two of them belongs to the bytes tested so far:
// `test` and the end of a scope look how far the text has come, so plain words cost nothing.
//
// What decoders call is cold: the code around such calls stands apart from what runs when nobody asks.
class Trail {
  public:
    // What a text has behind so many stretches is one stretch, and its values are not noted.
    static constexpr std::size_t most_stretches = 65536;

    // What is noted: which messages there are, their values as well, or every word.
    enum class What : std::uint8_t { messages, values, words };
    explicit Trail(What what = What::words) noexcept
        : values_too_(what != What::messages), words_too_(what == What::words) {}

    // Where the captured message stands in its trace (its line); said before it is decoded.
    std::uint64_t place = 0;

    // Where the tables go that were asked, and bytes that were tested besides, for who wants to know what
    // there is: null for everybody else.
    std::vector<AskedTable>* tables = nullptr;

    // Starts anew for the message whose text is written to `text` from its present end on.
    void start(const Text& text, const Message& m);
    // Closes the last stretch; std::bad_alloc is thrown when there was no memory for a note. Offsets count
    // from where the text stood at `start`.
    void finish();

    // What is decoded from here on is a message that the present one carries, until `leave_message`.
    [[gnu::cold]] void enter_message(const Message& m) noexcept;
    [[gnu::cold]] void enter_reassembled(const Message& m, std::span<const std::uint64_t> segments) noexcept;
    [[gnu::cold]] void leave_message() noexcept;
    // The present message, as far as it is known by now.
    [[gnu::cold]] void link(std::string_view name, std::uint32_t direction) noexcept;
    [[gnu::cold]] void name(std::string_view name, std::uint32_t code) noexcept;

    // Bytes that decide what is written next. They count until the scope ends in which they were tested.
    [[gnu::cold]] void test(const Message& m, Place bytes) noexcept;
    // Bytes that say where the others stand.
    [[gnu::cold]] void walk(const Message& m, Place bytes) noexcept;
    // Bytes that are put by for a message that is put together from segments.
    [[gnu::cold]] void put_by(const Message& m, Place bytes) noexcept;
    [[gnu::cold]] void asked(const Message& m, const TableRows& rows, std::uint32_t code, bool known,
                             Place bytes) noexcept;
    std::size_t scope() const noexcept { return tested_.size(); }
    [[gnu::cold]] void end_scope(std::size_t scope) noexcept;

    bool takes_values() const noexcept { return values_too_; }
    // The text was written from `begin` to `end`, which is all that is noted without values.
    void wrote(std::size_t begin, std::size_t end) noexcept {
        if (begin - origin_ < seen_) cut_to(static_cast<std::uint32_t>(begin - origin_));
        seen_ = static_cast<std::uint32_t>(end - origin_);
    }
    // A value that was written from `begin` to `end` of the text.
    void value(const Message& m, std::string_view name, const Field* field, const Meaning& meaning,
               std::size_t begin, std::size_t end) noexcept;
    // Plain words, chosen by these bytes.
    [[gnu::cold]] void words(const Message& m, Place bytes, std::size_t begin, std::size_t end) noexcept;

    // Takes note of all plain words so far: to be called before the text is cut.
    [[gnu::cold]] void look() noexcept;
    // The text was cut.
    [[gnu::cold]] void look_at_cut() noexcept;
    // What was written since `look` is no part of the text: the codes of a colour.
    void pass_over() noexcept;

    // Notes of a piece of the text, for one that is written elsewhere, or once more: offsets in it count from
    // where the piece began.
    class Notes {
        friend class Trail;
        struct Span {
            std::uint32_t message;
            std::uint32_t begin;
            std::uint32_t end;
        };
        std::uint32_t size_ = 0;
        std::uint32_t first_value_ = 0;
        std::vector<Stretch> stretches_;
        std::vector<NotedValue> values_;
        std::vector<Span> messages_;
    };
    // Those of the text from `begin` to `end`, to be asked for before the text is cut.
    Notes notes(std::size_t begin, std::size_t end) noexcept;
    // The piece stands at `begin` now, where the text ended before. Messages whose text is in it are those
    // that stand there from now on.
    void put(const Notes& notes, std::size_t begin) noexcept;

    const std::vector<Stretch>& stretches() const noexcept { return stretches_; }
    const std::vector<NotedValue>& values() const noexcept { return values_; }
    const std::vector<NotedMessage>& messages() const noexcept { return messages_; }
    std::span<const ByteRange> bytes_of(const Stretch& s) const noexcept {
        return {ranges_.data() + s.first_range, s.ranges};
    }
    std::span<const ByteRange> tested_for(const Stretch& s) const noexcept {
        return {ranges_.data() + s.first_tested, s.tested};
    }
    std::span<const ByteRange> tested_for(const NotedMessage& m) const noexcept {
        return {ranges_.data() + m.first_tested, m.tested};
    }
    std::span<const ByteRange> bytes_of(const NotedValue& v) const noexcept {
        return {ranges_.data() + v.first_range, v.ranges};
    }
    // Runs of bytes of the captured message that were put by, in their order.
    const std::vector<ByteRange>& put_by() const noexcept { return put_by_; }
    // The runs of bytes of the captured message that no stretch names and that were not put by.
    std::vector<ByteRange> unused() const;

    struct Walked {
        ByteRange bytes;
        std::uint32_t begin;  // in the text: all behind it may stand elsewhere when these bytes change
        bool reassembled;
    };
    const std::vector<Walked>& walked() const noexcept { return walked_; }

  private:
    struct Tested {
        ByteRange bytes;
        bool some;     // some of the bytes are in the message
        bool missing;  // some are not
    };

    template <class Note>
    void note(Note write) noexcept;
    void look_at_words() noexcept;
    void note_test(const Message& m, Place bytes) noexcept;
    bool all_there(const Message& m, const Place& bytes) const noexcept {
        return &m == view_ && std::size_t{bytes.first} + bytes.count <= there_;
    }
    Tested located(const Message& m, const Place& bytes);
    Tested located_in_part(const Message& m, const Place& bytes);
    void begin_message(const Message& m, bool reassembled);
    void look_at_tested();
    void add_literal(std::uint32_t end);
    void add_stretch(Stretch s);
    void add_range(const Tested& at, Stretch& s);
    void add_value(std::string_view name, const Field* field, const Meaning& meaning, const Stretch& s);
    void cut_to(std::uint32_t end) noexcept;
    std::uint32_t now() const noexcept;

    bool values_too_;
    bool words_too_;
    const Text* text_ = nullptr;
    bool without_memory_ = false;
    std::size_t origin_ = 0;
    std::uint32_t seen_ = 0;  // of the text
    std::uint32_t message_ = 0;
    const Message* view_ = nullptr;  // on the present message, as it was entered
    std::uint32_t there_ = 0;        // of the present message
    std::size_t first_tested_ = 0;   // of the present message
    bool tested_changed_ = true;     // since the last literal
    std::uint32_t literal_first_range_ = 0;
    std::uint32_t literal_ranges_ = 0;
    bool literal_missing_ = false;
    std::vector<Tested> tested_;
    std::vector<std::size_t> outer_first_tested_;
    std::vector<Stretch> stretches_;
    std::vector<NotedValue> values_;
    std::vector<NotedMessage> messages_;
    std::vector<ByteRange> ranges_;
    std::vector<Walked> walked_;
    std::vector<ByteRange> put_by_;
};

}  // namespace ztdecode
