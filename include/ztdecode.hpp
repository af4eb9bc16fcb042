// libztdecode for C++20, over ztdecode_session.h and nothing else: what that header says of sessions,
// threads, memory and bounds holds here. Link the same shared object.
//
// A Session owns; everything else is a view into it, cheap to copy, and lives as long as the C header says:
// records until the session's next call, lines until its next line. Strings are std::string_view, ranges of
// fields, words, parts and segments are random-access ranges, the messages of a line an input range.
//
// Errors are exceptions, since none of them is met in a sound program but one: zt::Error for an argument or
// an option that the library does not take, std::bad_alloc for want of memory, which leaves the session as it
// was. A line that is refused is no error: its Line says why.
//
//     zt::Session session;
//     session.feed("081211S 03 21 04 03");
//     for (const zt::Record record : session.messages()) {
//         std::cout << record.text() << '\n';
//         for (const zt::Field field : record.fields())
//             std::cout << field.name() << " = " << field.value() << '\n';
//     }
#ifndef ZTDECODE_HPP
#define ZTDECODE_HPP

#include <ztdecode_session.h>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <ranges>
#include <span>
#include <stdexcept>
#include <string_view>

namespace zt {

// The numbers are those of the C interface.
enum class Direction : int { from_system = ZT_FROM_SYSTEM, to_system = ZT_TO_SYSTEM };
enum class Layout : int {
    recognised = ZT_LAYOUT_AUTO,
    line = ZT_LAYOUT_LINE,
    lng2 = ZT_LAYOUT_LNG2,
    zt = ZT_LAYOUT_ZT,
    spzt = ZT_LAYOUT_SPZT,
    spzt_lng2 = ZT_LAYOUT_SPZT_LNG2,
};
enum class Detail : int { fields = ZT_FIELDS, words = ZT_WORDS };
enum class Outcome : int {
    decoded = ZT_DECODED,
    unknown_message = ZT_UNKNOWN_MESSAGE,
    unknown_class = ZT_UNKNOWN_CLASS,
    left_out = ZT_LEFT_OUT,
};
enum class Kind : int {
    number = ZT_NUMBER,
    word = ZT_WORD,
    address = ZT_ADDRESS,
    text = ZT_TEXT,
    version = ZT_VERSION_NUMBER,
    flag = ZT_FLAG,
    bytes = ZT_BYTES,
};
enum class Sensitivity : int {
    nothing = ZT_TELLS_NOTHING,
    call_number = ZT_CALL_NUMBER,
    person = ZT_PERSON,
    network_address = ZT_NETWORK_ADDRESS,
    hardware_address = ZT_HARDWARE_ADDRESS,
    secret = ZT_SECRET,
};
enum class LineKind : int {
    blank = ZT_LINE_BLANK,
    comment = ZT_LINE_COMMENT,
    other = ZT_LINE_OTHER,
    messages = ZT_LINE_MESSAGES,
    refused = ZT_LINE_REFUSED,
};
enum class Refusal : int {
    none = ZT_NOT_REFUSED,
    no_length = ZT_REFUSED_NO_LENGTH,
    too_long = ZT_REFUSED_TOO_LONG,
    too_short = ZT_REFUSED_TOO_SHORT,
    no_hexadecimal = ZT_REFUSED_NO_HEXADECIMAL,
    no_tag = ZT_REFUSED_NO_TAG,
    no_direction = ZT_REFUSED_NO_DIRECTION,
};

// Their names; empty for a value that the running library does not have.
namespace detail {
inline std::string_view view(const char* text) { return text != nullptr ? text : std::string_view(); }
inline std::string_view view(const zt_string& s) { return {s.data, s.size}; }
}  // namespace detail
inline std::string_view name_of(Outcome outcome) {
    return detail::view(zt_outcome_name(static_cast<zt_outcome>(outcome)));
}
inline std::string_view name_of(Kind kind) { return detail::view(zt_kind_name(static_cast<zt_kind>(kind))); }
inline std::string_view name_of(Sensitivity sensitivity) {
    return detail::view(zt_sensitivity_name(static_cast<zt_sensitivity>(sensitivity)));
}
inline std::string_view name_of(Refusal refusal) {
    return detail::view(zt_refusal_name(static_cast<zt_refusal>(refusal)));
}

// Of the library that is running.
inline std::string_view version() { return zt_version(); }

class Error : public std::runtime_error {
  public:
    explicit Error(zt_status status) : std::runtime_error(zt_status_text(status)), status_(status) {}
    zt_status status() const noexcept { return status_; }

  private:
    zt_status status_;
};

struct Options {
    bool color = false;
    bool audio_only = false;
    bool debug = false;
    bool pad = false;
    Detail detail = Detail::fields;
    Layout layout = Layout::recognised;
    Direction direction = Direction::from_system;
};

using ByteRange = zt_range;

// What `at` finds of a record, one by one, as `View`s.
template <class View, auto at>
class Items {
  public:
    class iterator {
      public:
        using iterator_concept = std::random_access_iterator_tag;
        using iterator_category = std::input_iterator_tag;  // it gives views by value
        using value_type = View;
        using difference_type = std::ptrdiff_t;

        iterator() = default;
        iterator(const zt_record* record, difference_type index) : record_(record), index_(index) {}

        View operator*() const { return View(at(record_, static_cast<std::size_t>(index_))); }
        View operator[](difference_type n) const { return *(*this + n); }
        iterator& operator+=(difference_type n) {
            index_ += n;
            return *this;
        }
        iterator& operator-=(difference_type n) { return *this += -n; }
        iterator& operator++() { return *this += 1; }
        iterator& operator--() { return *this -= 1; }
        iterator operator++(int) {
            const iterator before = *this;
            ++*this;
            return before;
        }
        iterator operator--(int) {
            const iterator before = *this;
            --*this;
            return before;
        }
        friend iterator operator+(iterator it, difference_type n) { return it += n; }
        friend iterator operator+(difference_type n, iterator it) { return it += n; }
        friend iterator operator-(iterator it, difference_type n) { return it -= n; }
        friend difference_type operator-(const iterator& a, const iterator& b) { return a.index_ - b.index_; }
        friend bool operator==(const iterator& a, const iterator& b) { return a.index_ == b.index_; }
        friend auto operator<=>(const iterator& a, const iterator& b) { return a.index_ <=> b.index_; }

      private:
        const zt_record* record_ = nullptr;
        difference_type index_ = 0;
    };

    Items(const zt_record* record, std::size_t size) : record_(record), size_(size) {}

    iterator begin() const { return {record_, 0}; }
    iterator end() const { return {record_, static_cast<std::ptrdiff_t>(size_)}; }
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    View operator[](std::size_t index) const { return begin()[static_cast<std::ptrdiff_t>(index)]; }

  private:
    const zt_record* record_;
    std::size_t size_;
};

class Field {
  public:
    explicit Field(const zt_field* field) : field_(field) {}

    std::string_view name() const { return detail::view(field_->name); }
    std::string_view unit() const { return detail::view(field_->unit); }
    std::string_view value() const { return detail::view(field_->value); }
    std::string_view shown() const { return detail::view(field_->shown); }
    Kind kind() const { return static_cast<Kind>(field_->kind); }
    Sensitivity sensitivity() const { return static_cast<Sensitivity>(field_->sensitivity); }
    // Of a number; of a flag 0 or 1.
    std::optional<double> number() const {
        if (kind() != Kind::number && kind() != Kind::flag) return std::nullopt;
        return static_cast<double>(field_->number) / field_->divisor;
    }
    // Of a word.
    std::optional<std::int64_t> code() const {
        if (kind() != Kind::word) return std::nullopt;
        return field_->number;
    }
    bool known() const { return field_->known != 0; }
    bool missing() const { return field_->missing != 0; }
    std::size_t begin_in_text() const { return field_->begin; }
    std::size_t end_in_text() const { return field_->end; }
    std::span<const ByteRange> bytes() const { return {field_->bytes.data, field_->bytes.size}; }

  private:
    const zt_field* field_;
};

class Word {
  public:
    explicit Word(const zt_word* word) : word_(word) {}

    std::string_view text() const { return detail::view(word_->text); }
    // The name of the value that it is, or nothing.
    std::string_view field() const { return detail::view(word_->field); }
    std::span<const ByteRange> bytes() const { return {word_->bytes.data, word_->bytes.size}; }
    std::size_t begin_in_text() const { return word_->begin; }
    std::size_t end_in_text() const { return word_->end; }
    bool missing() const { return word_->missing != 0; }

  private:
    const zt_word* word_;
};

class Record {
  public:
    explicit Record(const zt_record* record) : record_(record) {}

    std::string_view text() const { return detail::view(record_->text); }
    std::string_view link() const { return detail::view(record_->link); }
    std::string_view message() const { return detail::view(record_->message); }
    Direction direction() const { return static_cast<Direction>(record_->direction); }
    Outcome outcome() const { return static_cast<Outcome>(record_->outcome); }
    std::optional<std::uint32_t> code() const {
        if (record_->code < 0) return std::nullopt;
        return static_cast<std::uint32_t>(record_->code);
    }
    std::uint32_t length() const { return record_->length; }
    std::uint32_t unknown() const { return record_->unknown; }
    std::uint32_t missing() const { return record_->missing; }
    std::uint64_t padded() const { return record_->padded; }
    std::uint64_t left_over() const { return record_->left_over; }
    std::uint64_t place() const { return record_->place; }
    std::span<const std::uint8_t> bytes() const { return {record_->bytes.data, record_->bytes.size}; }
    std::string_view trace() const { return detail::view(record_->trace); }
    std::string_view complaints() const { return detail::view(record_->complaints); }

    using Fields = Items<Field, zt_field_at>;
    using Words = Items<Word, zt_word_at>;
    using Parts = Items<Record, zt_part_at>;
    using Segments = Items<std::uint64_t, zt_segment_at>;
    Fields fields() const { return {record_, record_->fields}; }
    Words words() const { return {record_, record_->words}; }
    Parts parts() const { return {record_, record_->parts}; }
    Segments segments() const { return {record_, record_->segments}; }

    // The first field of this name.
    std::optional<Field> find(std::string_view name) const {
        for (const Field field : fields()) {
            if (field.name() == name) return field;
        }
        return std::nullopt;
    }

  private:
    const zt_record* record_;
};

class Line {
  public:
    explicit Line(const zt_line* line) : line_(line) {}

    LineKind kind() const { return static_cast<LineKind>(line_->kind); }
    Layout layout() const { return static_cast<Layout>(line_->layout); }
    std::string_view content() const { return detail::view(line_->content); }
    std::string_view columns() const { return detail::view(line_->columns); }
    std::uint64_t place() const { return line_->place; }
    // Known when the messages have been gone through.
    Refusal refusal() const { return static_cast<Refusal>(line_->refusal); }
    std::uint64_t column() const { return line_->column; }
    std::uint64_t expected() const { return line_->expected; }
    std::uint64_t found() const { return line_->found; }
    std::string_view reason() const { return detail::view(line_->reason); }
    std::string_view prefix() const { return detail::view(line_->prefix); }
    std::string_view time() const { return detail::view(line_->time); }
    std::string_view terminal() const { return detail::view(line_->terminal); }

  private:
    const zt_line* line_;
};

class Session {
  public:
    explicit Session(const Options& options = {}) {
        const zt_options given = as_c(options);
        zt_session* session = nullptr;
        check(zt_session_create(&given, &session));
        session_.reset(session);
    }

    void set(const Options& options) {
        const zt_options given = as_c(options);
        check(zt_session_set_options(session_.get(), &given));
    }

    Record decode(std::span<const std::uint8_t> bytes, Direction direction) {
        const zt_record* record = nullptr;
        check(zt_decode(session_.get(), bytes.data(), bytes.size(), static_cast<zt_direction>(direction),
                        &record));
        return Record(record);
    }

    Line feed(std::string_view text) {
        const zt_line* line = nullptr;
        check(zt_feed_line(session_.get(), text.data(), text.size(), &line));
        return Line(line);
    }

    // The next message of the line; nothing behind the last one, and where the line is refused.
    std::optional<Record> next() {
        const zt_record* record = nullptr;
        const zt_status status = zt_next_message(session_.get(), &record);
        if (status == ZT_DONE || status == ZT_REFUSED) return std::nullopt;
        check(status);
        return Record(record);
    }

    // Those that the line has still got. Each is decoded when the loop comes to it.
    class Messages {
      public:
        class iterator {
          public:
            using iterator_concept = std::input_iterator_tag;
            using value_type = Record;
            using difference_type = std::ptrdiff_t;

            explicit iterator(Session& session) : session_(&session), record_(session.next()) {}
            Record operator*() const { return *record_; }
            iterator& operator++() {
                record_ = session_->next();
                return *this;
            }
            void operator++(int) { ++*this; }
            friend bool operator==(const iterator& it, std::default_sentinel_t /*end*/) {
                return !it.record_.has_value();
            }

          private:
            Session* session_;
            std::optional<Record> record_;
        };

        explicit Messages(Session& session) : session_(&session) {}
        iterator begin() const { return iterator(*session_); }
        static std::default_sentinel_t end() { return {}; }

      private:
        Session* session_;
    };
    Messages messages() { return Messages(*this); }

    // For what this header does not have; owned by the object.
    zt_session* get() const noexcept { return session_.get(); }

  private:
    static void check(zt_status status) {
        if (status == ZT_NO_MEMORY) throw std::bad_alloc();
        if (status != ZT_OK) throw Error(status);
    }
    static zt_options as_c(const Options& options) {
        zt_options c = ZT_OPTIONS_INIT;
        c.flags = (options.color ? ZT_COLOR : 0U) | (options.audio_only ? ZT_AUDIO_ONLY : 0U) |
                  (options.debug ? ZT_DEBUG : 0U) | (options.pad ? ZT_PAD : 0U);
        c.detail = static_cast<zt_detail>(options.detail);
        c.layout = static_cast<zt_layout>(options.layout);
        c.direction = static_cast<zt_direction>(options.direction);
        return c;
    }

    struct Destroyed {
        void operator()(zt_session* session) const noexcept { zt_session_destroy(session); }
    };
    std::unique_ptr<zt_session, Destroyed> session_;
};

}  // namespace zt

// Iterators stay good without the range that they are of.
template <class View, auto at>
inline constexpr bool std::ranges::enable_borrowed_range<zt::Items<View, at>> = true;

#endif
