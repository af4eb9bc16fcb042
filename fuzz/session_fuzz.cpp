// The session interface: lines and messages in any order, under any options.
//
// The input is records (fuzzing.hpp); the lowest bits of a record's way say what is done with its bytes: fed
// as a line, decoded, or taken for options. Two sessions get the same, one of them recording words: what they
// say is the same. All that can be reached from a record is gone through, and lies where it has to.

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzzing.hpp"
#include "ztdecode_session.h"

namespace {

using ztdecode::fuzz::expect;

enum : std::uint8_t { way_line = 0, way_decode = 1, way_options = 2, bits_of_way = 3 };

std::string_view view(const zt_string& s) {
    expect(s.data != nullptr, "a string has a place");
    return {s.data, s.size};
}

// Reads every byte: a sanitizer sees one that is not there.
void read(std::string_view s) {
    unsigned sum = 0;
    for (const char c : s) sum += static_cast<unsigned char>(c);
    expect(sum <= 255 * s.size(), "characters are bytes");
}

void walk_ranges(const zt_ranges& ranges, const zt_record& record) {
    for (std::size_t k = 0; k < ranges.size; ++k) {
        const zt_range& range = ranges.data[k];
        expect(range.first <= range.last && range.last < record.bytes.size, "a range lies in the message");
        expect(k == 0 || ranges.data[k - 1].last < range.first, "ranges ascend");
    }
}

void walk_fields(const zt_record& record) {
    std::uint32_t unknown = 0;
    for (std::size_t k = 0; k < record.fields; ++k) {
        const zt_field& field = *zt_field_at(&record, k);
        read(view(field.value));
        read(view(field.unit));
        expect(!view(field.name).empty(), "a field has a name");
        expect(field.begin <= field.end && field.end <= record.text.size, "a field stands in the text");
        expect(view(record.text).substr(field.begin, field.end - field.begin) == view(field.shown),
               "a field shows what stands there");
        expect(zt_kind_name(field.kind) != nullptr, "a kind has a name");
        expect(zt_sensitivity_name(field.sensitivity) != nullptr, "a sensitivity has a name");
        expect(field.divisor == 1 || field.divisor == 10, "a number is whole or in tenths");
        walk_ranges(field.bytes, record);
        unknown += field.known == 0 ? 1 : 0;
    }
    expect(unknown == record.unknown, "unknown fields are counted");
    expect(zt_field_at(&record, record.fields) == nullptr, "fields end");
    const zt_field* const first = zt_field_at(&record, 0);
    const std::string name(first != nullptr ? view(first->name) : "none");
    expect(zt_find_field(&record, name.c_str()) == first, "a field is found by its name");
}

void walk_words(const zt_record& record, bool coloured) {
    std::size_t at = 0;
    for (std::size_t k = 0; k < record.words; ++k) {
        const zt_word& word = *zt_word_at(&record, k);
        expect(coloured ? word.begin >= at : word.begin == at, "words stand one behind the other");
        expect(word.begin < word.end && word.end <= record.text.size, "a word stands in the text");
        expect(view(record.text).substr(word.begin, word.end - word.begin) == view(word.text),
               "a word is what stands there");
        read(view(word.field));
        walk_ranges(word.bytes, record);
        at = word.end;
    }
    expect(record.words == 0 || coloured || at == record.text.size, "words are the whole text");
    expect(zt_word_at(&record, record.words) == nullptr, "words end");
}

void walk(const zt_record& record, bool coloured, unsigned depth = 0) {
    expect(depth < 8, "parts are no deeper");
    expect(view(record.text).find('\0') == std::string_view::npos, "a text has no zero");
    expect(zt_outcome_name(record.outcome) != nullptr, "an outcome has a name");
    expect(record.bytes.size <= record.length, "a message has no more bytes than it says");
    unsigned sum = 0;
    for (std::size_t k = 0; k < record.bytes.size; ++k) sum += record.bytes.data[k];
    expect(sum <= 255 * record.bytes.size, "bytes are bytes");
    read(view(record.link));
    read(view(record.message));
    read(view(record.trace));
    read(view(record.complaints));
    for (std::size_t k = 0; k < record.segments; ++k) {
        expect(zt_segment_at(&record, k) != 0 && zt_segment_at(&record, k) <= record.place,
               "segments came before");
    }
    walk_fields(record);
    walk_words(record, coloured);
    for (std::size_t k = 0; k < record.parts; ++k) {
        const zt_record* const part = zt_part_at(&record, k);
        expect(part != nullptr, "a part is there");
        expect(coloured || view(record.text).find(view(part->text)) != std::string_view::npos,
               "a part's text stands in its carrier's");
        walk(*part, coloured, depth + 1);
    }
    expect(zt_part_at(&record, record.parts) == nullptr, "parts end");
}

class Sessions {
  public:
    Sessions() {
        expect(zt_session_create(nullptr, &one_) == ZT_OK, "a session is made");
        expect(zt_session_create(nullptr, &other_) == ZT_OK, "a session is made");
        set(ZT_OPTIONS_INIT);
    }
    Sessions(const Sessions&) = delete;
    Sessions& operator=(const Sessions&) = delete;
    ~Sessions() {
        zt_session_destroy(one_);
        zt_session_destroy(other_);
    }

    // The size is that of the bytes, which have to be there; of options that are refused nothing changes.
    void take_options(const std::vector<std::uint8_t>& bytes) {
        std::vector<std::uint64_t> room(bytes.size() / sizeof(std::uint64_t) + 4);  // aligned as options are
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::uint8_t*>(room.data()));
        zt_options options;
        std::memcpy(&options, room.data(), sizeof options);
        options.size = bytes.size();
        std::memcpy(room.data(), &options, sizeof options);
        if (zt_session_set_options(one_, reinterpret_cast<const zt_options*>(room.data())) == ZT_OK)
            set(options);
    }

    void decode(std::uint8_t way, const std::vector<std::uint8_t>& bytes) {
        const auto direction = static_cast<zt_direction>(way < 0xF8 ? way >> 2 & 1 : way);
        const zt_record* one = nullptr;
        const zt_record* other = nullptr;
        const zt_status status = zt_decode(one_, bytes.data(), bytes.size(), direction, &one);
        expect(zt_decode(other_, bytes.data(), bytes.size(), direction, &other) == status,
               "both sessions end alike");
        expect((status == ZT_OK) == (direction <= ZT_TO_SYSTEM), "a direction is one of two");
        if (status == ZT_OK) look_at(*one, *other);
    }

    void feed(const std::vector<std::uint8_t>& bytes, bool to_its_end) {
        const auto* const text = reinterpret_cast<const char*>(bytes.data());
        const zt_line* one = nullptr;
        const zt_line* other = nullptr;
        expect(zt_feed_line(one_, text, bytes.size(), &one) == ZT_OK, "a line is taken");
        expect(zt_feed_line(other_, text, bytes.size(), &other) == ZT_OK, "a line is taken");
        zt_status status = ZT_OK;
        for (bool first = true; status == ZT_OK && (first || to_its_end) && !account_.used_up();
             first = false) {
            const zt_record* record = nullptr;
            const zt_record* worded = nullptr;
            status = zt_next_message(one_, &record);
            expect(zt_next_message(other_, &worded) == status, "both sessions end alike");
            expect(status == ZT_OK || status == ZT_DONE || status == ZT_REFUSED, "no other end");
            expect(!first || (status == ZT_OK) == (one->kind == ZT_LINE_MESSAGES), "messages were announced");
            if (status == ZT_OK) look_at(*record, *worded);
        }
        expect((status == ZT_REFUSED) <= (one->refusal != ZT_NOT_REFUSED), "a refusal has its reason");
        expect(one->kind == other->kind && one->refusal == other->refusal, "both lines are alike");
        read(view(one->columns));
        read(view(one->reason));
        expect(zt_refusal_name(one->refusal) != nullptr, "a refusal has a name");
        expect(view(one->content).size() <= bytes.size(), "the content is of the line");
    }

    bool used_up() const { return account_.used_up(); }

  private:
    // The other session has the same options but for the words.
    void set(zt_options options) {
        coloured_ = (options.flags & ZT_COLOR) != 0;
        options.size = sizeof options;
        options.detail = ZT_WORDS;
        expect(zt_session_set_options(other_, &options) == ZT_OK, "the other session takes them as well");
    }

    void look_at(const zt_record& one, const zt_record& other) {
        walk(one, coloured_);
        walk(other, coloured_);
        expect(view(one.text) == view(other.text), "both sessions write the same text");
        expect(one.parts == other.parts && one.outcome == other.outcome, "both records are alike");
        expect(view(one.complaints) == view(other.complaints), "both complain alike");
        ztdecode::fuzz::Cost cost;
        cost.text = one.text.size;
        cost.output = one.trace.size;
        cost.complaints = one.complaints.size;
        ztdecode::fuzz::expect_bounded(cost, one.length);
        account_.add(cost);
    }

    zt_session* one_ = nullptr;
    zt_session* other_ = nullptr;
    bool coloured_ = false;
    ztdecode::fuzz::Account account_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ztdecode::fuzz::Records records(data, size);
    Sessions sessions;
    while (const auto record = records.next()) {
        if (sessions.used_up()) break;
        switch (record->way & bits_of_way) {
            case way_decode:
                sessions.decode(record->way, record->bytes);
                break;
            case way_options:
                sessions.take_options(record->bytes);
                break;
            default:
                sessions.feed(record->bytes, (record->way & 4) == 0);
                break;
        }
    }
    return 0;
}
