#include "core/record.hpp"

#include <algorithm>
#include <numeric>

namespace ztdecode {

namespace {

// Bytes first ... of a captured message that a carried one has.
std::span<const std::uint8_t> part_of(std::span<const std::uint8_t> bytes, std::uint32_t first,
                                      std::uint32_t n) {
    const std::size_t from = std::min<std::size_t>(first, bytes.size());
    return bytes.subspan(from, std::min<std::size_t>(n, bytes.size() - from));
}

std::uint32_t count(std::vector<ByteRange> ranges) {
    std::sort(ranges.begin(), ranges.end(), [](auto a, auto b) { return a.first < b.first; });
    std::uint32_t count = 0;
    std::uint64_t next = 0;
    for (const ByteRange& r : ranges) {
        const std::uint64_t first = std::max<std::uint64_t>(r.first, next);
        if (first > r.last) continue;
        count += static_cast<std::uint32_t>(r.last - first + 1);
        next = std::uint64_t{r.last} + 1;
    }
    return count;
}

}  // namespace

void Record::take(const Trail& trail, std::string_view text, const Message& m, Outcome outcome) {
    trail_ = &trail;
    text_ = text;
    if (trail.messages().size() == 1) {
        take_single(m, outcome);
    } else {
        take_messages(m, outcome);
        take_values();
    }
    take_stretches();
}

// Most messages carry no other one: all values are theirs.
void Record::take_single(const Message& m, Outcome outcome) {
    const NotedMessage& noted = trail_->messages().front();
    const auto values = static_cast<std::uint32_t>(trail_->values().size());
    parts_.resize(1);
    Part& part = parts_.front();
    part = Part();
    part.noted = &noted;
    part.end = static_cast<std::uint32_t>(text_.size());
    part.bytes = m.bytes();
    part.values = values;
    for (auto k = static_cast<std::uint32_t>(values_.size()); k < values; ++k) values_.push_back(k);
    if (!in_order_) std::iota(values_.begin(), values_.end(), 0U);
    in_order_ = true;
    for (const NotedValue& v : trail_->values()) part.unknown += v.meaning.known ? 0 : 1;
    if (!noted.missing.empty()) part.missing = count(noted.missing);
    part.decoded = outcome == Outcome::unknown_class        ? Decoded::refused
                   : noted.name.empty() && noted.length > 0 ? Decoded::unknown
                                                            : Decoded::decoded;
}

void Record::take_messages(const Message& m, Outcome outcome) {
    const auto& messages = trail_->messages();
    parts_.clear();
    part_of_.clear();
    depth_.clear();
    for (std::uint32_t k = 0; k < messages.size(); ++k) {
        const NotedMessage& noted = messages[k];
        const bool captured = noted.carrier == NotedMessage::no_message;
        const std::uint32_t carrier = captured ? 0 : part_of_[noted.carrier];
        if (!captured && depth_[carrier] + 1 >= deepest) {
            part_of_.push_back(carrier);
            parts_[carrier].missing += count(noted.missing);
            continue;
        }
        Part part;
        part.noted = &noted;
        part.carrier = carrier;
        part.end = std::min<std::uint32_t>(noted.end, static_cast<std::uint32_t>(text_.size()));
        part.begin = std::min(noted.begin, part.end);
        if (captured) {
            part.bytes = m.bytes();
        } else if (!noted.bytes.empty()) {
            part.bytes = noted.bytes;
        } else {
            // The nearest message around it that has bytes of its own.
            const NotedMessage* source = &noted;
            while (source->carrier != NotedMessage::no_message && source->bytes.empty()) {
                source = &messages[source->carrier];
            }
            const std::span<const std::uint8_t> bytes =
                source->bytes.empty() ? m.bytes() : std::span<const std::uint8_t>(source->bytes);
            part.bytes = part_of(bytes, noted.origin, noted.length);
        }
        part.missing = count(noted.missing);
        part.decoded = noted.name.empty() && noted.length > 0 ? Decoded::unknown : Decoded::decoded;
        if (outcome == Outcome::unknown_class && part.end == text_.size()) part.decoded = Decoded::refused;
        part_of_.push_back(static_cast<std::uint32_t>(parts_.size()));
        depth_.push_back(captured ? 0 : depth_[carrier] + 1);
        parts_.push_back(part);
    }
    carried_.clear();
    for (std::uint32_t k = 1; k < parts_.size(); ++k) ++parts_[parts_[k].carrier].carried;
    std::uint32_t first = 0;
    for (Part& part : parts_) {
        part.first_carried = first;
        first += part.carried;
        part.carried = 0;
    }
    carried_.resize(first);
    for (std::uint32_t k = 1; k < parts_.size(); ++k) {
        Part& carrier = parts_[parts_[k].carrier];
        carried_[carrier.first_carried + carrier.carried++] = k;
    }
}

void Record::take_values() {
    const auto& values = trail_->values();
    in_order_ = false;
    for (const NotedValue& v : values) {
        Part& part = parts_[part_of_[v.message]];
        ++part.values;
        if (!v.meaning.known) ++part.unknown;
    }
    std::uint32_t first = 0;
    for (Part& part : parts_) {
        part.first_value = first;
        first += part.values;
        part.values = 0;
    }
    values_.resize(values.size());
    for (std::uint32_t k = 0; k < values.size(); ++k) {
        Part& part = parts_[part_of_[values[k].message]];
        values_[part.first_value + part.values++] = k;
    }
}

void Record::take_stretches() {
    const auto& stretches = trail_->stretches();
    if (stretches.empty()) return;
    const auto from = [&](std::uint32_t begin) {
        return static_cast<std::uint32_t>(
            std::lower_bound(stretches.begin(), stretches.end(), begin,
                             [](const Stretch& s, std::uint32_t at) { return s.begin < at; }) -
            stretches.begin());
    };
    for (Part& part : parts_) {
        part.first_stretch = from(part.begin);
        part.stretches = std::max(from(part.end), part.first_stretch) - part.first_stretch;
    }
}

bool Record::same_source(const Part& part, const NotedMessage& message) const noexcept {
    const auto source = [this](const NotedMessage* m) {
        while (m->bytes.empty() && m->carrier != NotedMessage::no_message)
            m = &trail_->messages()[m->carrier];
        return m;
    };
    return part.noted == &message || source(part.noted) == source(&message);
}

std::string_view without_punctuation(std::string_view word) noexcept {
    constexpr std::string_view around = " \t\n,:=";
    const std::size_t first = word.find_first_not_of(around);
    if (first == std::string_view::npos) return {};
    return word.substr(first, word.find_last_not_of(around) - first + 1);
}

}  // namespace ztdecode
