#include "api/records.hpp"

#include <algorithm>

#include "core/data.hpp"

namespace ztdecode::api {

namespace {

zt_outcome outcome_of(const Record::Part& part, bool audio_only) {
    const bool on_no_link = part.noted->link.empty() && part.noted->name.empty();
    if (audio_only && on_no_link && part.noted->length > 0) return ZT_LEFT_OUT;
    switch (part.decoded) {
        case Decoded::decoded:
            break;
        case Decoded::unknown:
            return ZT_UNKNOWN_MESSAGE;
        case Decoded::refused:
            return ZT_UNKNOWN_CLASS;
    }
    return ZT_DECODED;
}

// The interface has the numbers that they have here.
template <class Inside, class Outside>
constexpr bool same(Inside inside, Outside outside) {
    return static_cast<int>(inside) == static_cast<int>(outside);
}
static_assert(same(Kind::number, ZT_NUMBER) && same(Kind::word, ZT_WORD) && same(Kind::address, ZT_ADDRESS) &&
              same(Kind::text, ZT_TEXT) && same(Kind::version, ZT_VERSION_NUMBER) &&
              same(Kind::flag, ZT_FLAG) && same(Kind::bytes, ZT_BYTES));
static_assert(same(Sensitivity::none, ZT_TELLS_NOTHING) && same(Sensitivity::call_number, ZT_CALL_NUMBER) &&
              same(Sensitivity::person, ZT_PERSON) &&
              same(Sensitivity::network_address, ZT_NETWORK_ADDRESS) &&
              same(Sensitivity::hardware_address, ZT_HARDWARE_ADDRESS) &&
              same(Sensitivity::secret, ZT_SECRET));

bool has_number(Kind kind) { return kind == Kind::number || kind == Kind::flag || kind == Kind::word; }

}  // namespace

zt_string as_string(std::string_view s) noexcept { return {s.data() != nullptr ? s.data() : "", s.size()}; }

HostRecord& Records::make(const Record& record, bool words, bool audio_only) {
    make_room(record, words);
    for (std::size_t k = 0; k < record.size(); ++k) {
        const Record::Part& part = record.part(k);
        HostRecord& made = records_.emplace_back(host_record(record, part, audio_only));
        add_fields(record, part, made);
        if (words) add_words(record, part, made);
        add_parts(record, part, made);
    }
    return records_.front();
}

// All that is needed, so that nothing moves while pointers to it are handed out.
void Records::make_room(const Record& record, bool words) {
    std::size_t fields = 0;
    std::size_t words_there = 0;
    std::size_t ranges = 0;
    std::size_t parts = 0;
    std::size_t values = 0;
    for (std::size_t k = 0; k < record.size(); ++k) {
        const Record::Part& part = record.part(k);
        fields += part.values;
        parts += part.carried;
        for (const std::uint32_t index : record.values(part)) {
            const NotedValue& v = record.value(index);
            ranges += v.ranges;
            values += data::room_for_value(v.meaning, record.shown(v));
        }
        if (!words) continue;
        words_there += part.stretches;
        for (const Stretch& s : record.stretches(part)) ranges += s.ranges;
    }
    records_.clear();
    fields_.clear();
    words_.clear();
    ranges_.clear();
    parts_.clear();
    records_.reserve(record.size());
    fields_.reserve(fields);
    words_.reserve(words_there);
    ranges_.reserve(ranges);
    parts_.reserve(parts);
    values_.resize(std::max(values, values_.size()));
    values_end_ = values_.data();

    const std::vector<NotedMessage>& messages = record.trail().messages();
    first_noted_ = messages.data();
    sources_.resize(messages.size());
    for (std::uint32_t k = 0; k < messages.size(); ++k) {
        const bool own = !messages[k].bytes.empty() || messages[k].carrier == NotedMessage::no_message;
        sources_[k] = own ? k : sources_[messages[k].carrier];
    }
}

HostRecord Records::host_record(const Record& record, const Record::Part& part, bool audio_only) {
    const NotedMessage& noted = *part.noted;
    HostRecord made{};
    made.text = as_string(record.text(part));
    made.link = as_string(noted.link);
    made.message = as_string(noted.name);
    made.direction = noted.direction == from_dhs ? ZT_FROM_SYSTEM : ZT_TO_SYSTEM;
    made.outcome = outcome_of(part, audio_only);
    made.code = noted.code == NotedMessage::no_code ? -1 : std::int64_t{noted.code};
    made.length = noted.length;
    made.unknown = part.unknown;
    made.missing = part.missing;
    made.segments = static_cast<std::uint32_t>(noted.segments.size());
    made.first_segment = noted.segments.data();
    if (!part.bytes.empty()) made.bytes = {part.bytes.data(), part.bytes.size()};
    made.place = record.trail().place;
    made.trace = made.complaints = as_string({});
    return made;
}

void Records::add_fields(const Record& record, const Record::Part& part, HostRecord& to) {
    to.first_field = fields_.data() + fields_.size();
    to.fields = part.values;
    for (const std::uint32_t index : record.values(part)) {
        const NotedValue& v = record.value(index);
        const Meaning& meaning = v.meaning;
        const auto [begin, end] = Record::stand(part, v);
        const std::string_view shown = record.text(part).substr(begin, end - begin);
        const std::string_view value = data::value(meaning, shown, values_end_);
        values_end_ += data::room_for_value(meaning, shown);
        zt_field field{};
        field.name = as_string(v.name);
        field.unit = as_string(v.field->unit);
        field.value = as_string(value);
        field.shown = as_string(shown);
        field.kind = static_cast<zt_kind>(meaning.kind);
        field.sensitivity = static_cast<zt_sensitivity>(v.field->sensitivity);
        if (has_number(meaning.kind)) field.number = meaning.number;
        field.divisor = meaning.tenths == 0 ? 1 : 10;
        field.known = meaning.known ? 1 : 0;
        field.missing = v.missing ? 1 : 0;
        field.begin = begin;
        field.end = end;
        field.bytes = add_ranges(record.trail().bytes_of(v), part, first_noted_ + v.message);
        fields_.push_back(field);
    }
}

void Records::add_words(const Record& record, const Record::Part& part, HostRecord& to) {
    const std::vector<NotedValue>& values = record.trail().values();
    to.first_word = words_.data() + words_.size();
    to.words = part.stretches;
    for (const Stretch& s : record.stretches(part)) {
        const std::uint32_t end = std::min(s.end, part.end);
        zt_word word{};
        word.text = as_string(record.text(part).substr(s.begin - part.begin, end - s.begin));
        word.field = as_string(s.value < values.size() ? values[s.value].name : std::string_view());
        word.bytes = add_ranges(record.trail().bytes_of(s), part, first_noted_ + s.message);
        word.begin = s.begin - part.begin;
        word.end = end - part.begin;
        word.missing = s.missing ? 1 : 0;
        words_.push_back(word);
    }
}

void Records::add_parts(const Record& record, const Record::Part& part, HostRecord& to) {
    to.first_part = parts_.data() + parts_.size();
    to.parts = part.carried;
    for (const std::uint32_t carried : record.carried(part)) parts_.push_back(records_.data() + carried);
}

const NotedMessage* Records::source_of(const NotedMessage* noted) const noexcept {
    return first_noted_ + sources_[static_cast<std::size_t>(noted - first_noted_)];
}

// Offsets in the bytes of the part, where they are its bytes.
zt_ranges Records::add_ranges(std::span<const ByteRange> ranges, const Record::Part& part,
                              const NotedMessage* of) {
    const std::size_t first = ranges_.size();
    const std::uint32_t origin = part.noted->origin;
    if (source_of(part.noted) != source_of(of)) return {};
    for (const ByteRange& r : ranges) {
        if (r.first < origin || r.last - origin >= part.bytes.size()) continue;
        ranges_.push_back({r.first - origin, r.last - origin});
    }
    if (ranges_.size() == first) return {};
    return {ranges_.data() + first, ranges_.size() - first};
}

}  // namespace ztdecode::api
