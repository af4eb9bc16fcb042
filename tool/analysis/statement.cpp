#include "tool/analysis/statement.hpp"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/data.hpp"
#include "decode/line_texts.hpp"
#include "tool/report/verdicts.hpp"

namespace ztdecode::tool {

namespace {

constexpr auto usual_names = std::to_array<std::string_view>({
    "call_duration",
    "call_end_date",
    "day",
    "local_ssrc",
    "m",
    "month",
    "packets_received",
    "packets_sent",
    "remote_ssrc",
    "s",
    "sid_received",
    "sid_sent",
    "total_silence",
    "year",
});

constexpr char no_decoding = 3;  // instead of what became of the message: its line is refused

// A term begins with what is the same in all of them; two strings follow, or one, or a number.
struct Head {
    Term::Is is;
    std::uint8_t depth;
    Kind kind;
    std::uint8_t tenths;
    std::uint16_t field;       // or how long the first of the two strings is
    std::uint16_t incomplete;  // a byte of the value is missing
    std::uint32_t size;        // of what follows
};
static_assert(sizeof(Head) == 12);

template <class T>
char* put(char* at, const T& value) {
    std::memcpy(at, &value, sizeof value);
    return at + sizeof value;
}

template <class T>
T take(const char* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

constexpr bool is_number(Kind kind) { return kind == Kind::number || kind == Kind::flag; }

void add_message(std::uint8_t depth, std::string_view link, std::string_view name, Text& to) {
    const auto size = static_cast<std::uint32_t>(link.size() + name.size());
    const Head head{
        Term::Is::message, depth, Kind::text, 0, static_cast<std::uint16_t>(link.size()), 0, size};
    char* const at = put(to.room(sizeof head + size), head);
    to.written_to(copy_characters(copy_characters(at, link), name));
}

void add_string(Term::Is is, std::uint8_t depth, std::string_view words, Text& to) {
    const Head head{is, depth, Kind::text, 0, 0, 0, static_cast<std::uint32_t>(words.size())};
    to.written_to(copy_characters(put(to.room(sizeof head + words.size()), head), words));
}

void add_number(Term::Is is, std::uint8_t depth, std::int64_t number, Text& to) {
    const Head head{is, depth, Kind::number, 0, 0, 0, sizeof number};
    to.written_to(put(put(to.room(sizeof head + sizeof number), head), number));
}

void add_value(std::uint8_t depth, const Record& record, const NotedValue& value, Text& to) {
    const Meaning& meaning = value.meaning;
    Head head{Term::Is::value,
              depth,
              meaning.kind,
              meaning.tenths,
              static_cast<std::uint16_t>(IgnoredFields::index(*value.field)),
              value.missing,
              sizeof meaning.number};
    if (is_number(meaning.kind)) {
        to.written_to(put(put(to.room(sizeof head + sizeof meaning.number), head), meaning.number));
        return;
    }
    const std::string_view shown = record.shown(value);
    const std::string_view words = meaning.kind == Kind::word ? without_punctuation(shown) : shown;
    head.size = static_cast<std::uint32_t>(words.size());
    to.written_to(copy_characters(put(to.room(sizeof head + words.size()), head), words));
}

// What a date has as its hour is called like the height of other objects.
bool is_date(const Record& record, const Record::Part& part) {
    const auto values = record.values(part);
    return std::any_of(values.begin(), values.end(), [&](std::uint32_t k) {
        const NotedValue& v = record.value(k);
        return v.name == "class" && without_punctuation(record.shown(v)) == "date";
    });
}

}  // namespace

std::span<const std::string_view> IgnoredFields::usual() noexcept { return usual_names; }

bool IgnoredFields::add(std::string_view name) noexcept {
    const auto* const found = std::find_if(std::begin(all_fields), std::end(all_fields),
                                           [&](const Field& field) { return field.name == name; });
    if (found == std::end(all_fields)) return false;
    ignored_.set(index(*found));
    return true;
}

void IgnoredFields::add_usual() noexcept {
    for (const std::string_view name : usual_names) add(name);
    hours_ = true;
}

std::string_view Term::value(std::string& room) const {
    room.resize(data::room_for_value(meaning, words));
    return data::value(meaning, words, room.data());
}

bool Statement::refused_line() const noexcept { return meaning[1] == no_decoding; }

bool Terms::next(Term& term) noexcept {
    if (rest_.empty()) return false;
    const Head head = take<Head>(rest_.data());
    const std::string_view content = rest_.substr(sizeof head, head.size);
    term = Term();
    term.is = head.is;
    term.depth = head.depth;
    term.meaning.kind = head.kind;
    term.meaning.tenths = head.tenths;
    term.words = content;
    term.whole = rest_.substr(0, sizeof head + head.size);
    if (head.is == Term::Is::message) {
        term.name = content.substr(0, head.field);
        term.words = content.substr(head.field);
        names_[head.depth] = term.words;
    } else if (is_number(head.kind)) {
        term.meaning.number = take<std::int64_t>(content.data());
        term.words = {};
    }
    term.of = names_[head.depth];
    term.incomplete = head.incomplete != 0;
    switch (head.is) {
        case Term::Is::message:
            break;
        case Term::Is::value:
            term.field = &all_fields[head.field];
            term.name = term.field->name;
            break;
        case Term::Is::words:
            term.name = "words";
            break;
        case Term::Is::missing:
            term.name = "missing";
            break;
        case Term::Is::bytes:
            term.name = "bytes";
            break;
        case Term::Is::refusal:
            term.name = "reason";
            break;
    }
    rest_.remove_prefix(term.whole.size());
    return true;
}

void Statements::clear() noexcept {
    places_.clear();
    meanings_.clear();
}

void Statements::add(const std::string& file, const CapturedMessage& captured, const Record& record,
                     const IgnoredFields& ignored) {
    places_.push_back({&file, captured.number, meanings_.size(), 0});
    const Record::Part& whole = record.part(0);
    const char status = static_cast<char>(whole.decoded);
    meanings_.written_to(put(put(meanings_.room(2), static_cast<char>(whole.noted->direction)), status));
    add_part(record, whole, 0, ignored);
    add_words(record);
    places_.back().text = meanings_.size();
    meanings_.add(record.text(whole));
}

// Texts have words that are no values, and differ in those too: what a led does, say. Texts that modules
// write over each other have values that stand elsewhere by now.
void Statements::add_words(const Record& record) {
    const std::string_view text = record.text(record.part(0));
    Head head{Term::Is::words, 0, Kind::text, 0, 0, 0, 0};
    char* const start = meanings_.room(sizeof head + text.size() + record.trail().values().size());
    char* to = start + sizeof head;
    std::size_t at = 0;
    for (const NotedValue& value : record.trail().values()) {
        if (value.begin < at || value.end > text.size()) continue;
        to = copy_characters(to, text.substr(at, value.begin - at));
        *to++ = Statement::value_mark;
        at = value.end;
    }
    to = copy_characters(to, text.substr(at));
    head.size = static_cast<std::uint32_t>(to - (start + sizeof head));
    put(start, head);
    meanings_.written_to(to);
}

void Statements::add_part(const Record& record, const Record::Part& part, std::uint8_t depth,
                          const IgnoredFields& ignored) {
    add_message(depth, part.noted->link, part.noted->name, meanings_);
    const bool date = ignored.has_hours() && is_date(record, part);
    for (const std::uint32_t index : record.values(part)) {
        const NotedValue& value = record.value(index);
        if (ignored.has(*value.field) || (date && value.name == "h")) continue;
        add_value(depth, record, value, meanings_);
    }
    if (part.decoded == Decoded::unknown) {
        std::string digits;
        for (const std::uint8_t byte : part.bytes) {
            digits += lower_case_digits[byte >> 4];
            digits += lower_case_digits[byte & 15];
        }
        add_string(Term::Is::bytes, depth, digits, meanings_);
    }
    if (part.missing > 0) add_number(Term::Is::missing, depth, part.missing, meanings_);
    for (const std::uint32_t carried : record.carried(part))
        add_part(record, record.part(carried), static_cast<std::uint8_t>(depth + 1), ignored);
}

void Statements::add(const std::string& file, std::uint64_t line, const Refusal& refusal) {
    places_.push_back({&file, line, meanings_.size(), 0});
    meanings_.written_to(put(put(meanings_.room(2), '\0'), no_decoding));
    add_message(0, {}, "refused line", meanings_);
    add_string(Term::Is::refusal, 0, ztdecode::name_of(refusal.reason), meanings_);
    places_.back().text = meanings_.size();
    describe(refusal, {"", 0}, meanings_);
}

Statement Statements::operator[](std::size_t k) const noexcept {
    const Place& place = places_[k];
    const std::size_t end = k + 1 < places_.size() ? places_[k + 1].begin : meanings_.size();
    const std::string_view all = meanings_.view();
    return {all.substr(place.begin, place.text - place.begin), all.substr(place.text, end - place.text),
            place.file, place.line};
}

}  // namespace ztdecode::tool
