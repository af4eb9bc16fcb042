#include "core/trail.hpp"

#include <algorithm>
#include <iterator>
#include <new>

#include "core/message.hpp"
#include "core/text.hpp"

namespace ztdecode {

NotedMessage::NotedMessage(const Message& m) noexcept
    : origin(m.origin()), length(m.length()), view(&m), direction(m.direction) {}

// Decoding is not expected to fail for a note.
template <class Note>
void Trail::note(Note write) noexcept {
    try {
        write();
    } catch (const std::bad_alloc&) {
        without_memory_ = true;
    }
}

std::uint32_t Trail::now() const noexcept {
    return text_->size() > origin_ ? static_cast<std::uint32_t>(text_->size() - origin_) : 0;
}

void Trail::start(const Text& text, const Message& m) {
    text_ = &text;
    without_memory_ = false;
    origin_ = text.size();
    seen_ = 0;
    tested_.clear();
    outer_first_tested_.clear();
    first_tested_ = 0;
    tested_changed_ = true;
    stretches_.clear();
    values_.clear();
    messages_.clear();
    ranges_.clear();
    walked_.clear();
    put_by_.clear();
    message_ = NotedMessage::no_message;
    begin_message(m, false);
}

void Trail::finish() {
    look();
    messages_.front().end = now();
    if (without_memory_) throw std::bad_alloc();
}

void Trail::begin_message(const Message& m, bool reassembled) {
    const std::uint32_t carrier = message_;
    NotedMessage& next = messages_.emplace_back(m);
    message_ = static_cast<std::uint32_t>(messages_.size() - 1);
    next.carrier = carrier;
    next.begin = next.end = now();
    if (carrier != NotedMessage::no_message && words_too_) {
        look_at_tested();
        next.first_tested = literal_first_range_;
        next.tested = literal_ranges_;
    }
    if (carrier == NotedMessage::no_message || reassembled) {
        next.source_length = m.length();
        next.reassembled = reassembled;
    } else {
        next.source_length = messages_[carrier].source_length;
        next.reassembled = messages_[carrier].reassembled;
    }
    // (Behind the bytes that lie in a row a record shows what was left there, which stood elsewhere before.)
    const std::uint32_t left = next.source_length > m.origin() ? next.source_length - m.origin() : 0;
    next.there = std::min(static_cast<std::uint32_t>(m.bytes().size()), left);
    view_ = &m;
    there_ = next.there;
    if (!words_too_) seen_ = next.begin;
}

void Trail::enter_message(const Message& m) noexcept {
    look();
    note([&] {
        outer_first_tested_.push_back(first_tested_);
        begin_message(m, false);
        first_tested_ = tested_.size();
        tested_changed_ = true;
    });
}

void Trail::enter_reassembled(const Message& m, std::span<const std::uint64_t> segments) noexcept {
    look();
    note([&] {
        outer_first_tested_.push_back(first_tested_);
        begin_message(m, true);
        first_tested_ = tested_.size();
        tested_changed_ = true;
        NotedMessage& entered = messages_[message_];
        entered.segments.assign(segments.begin(), segments.end());
        entered.bytes.resize(m.length());
        for (std::uint32_t k = 0; k < m.length(); ++k) entered.bytes[k] = m[k];
    });
}

void Trail::leave_message() noexcept {
    look();
    if (without_memory_ || outer_first_tested_.empty()) return;
    messages_[message_].end = now();
    message_ = messages_[message_].carrier;
    view_ = messages_[message_].view;
    there_ = messages_[message_].there;
    tested_.resize(std::min(tested_.size(), first_tested_));
    first_tested_ = outer_first_tested_.back();
    outer_first_tested_.pop_back();
    tested_changed_ = true;
}

void Trail::link(std::string_view name, std::uint32_t direction) noexcept {
    if (without_memory_) return;
    messages_[message_].link = name;
    messages_[message_].direction = direction;
}

void Trail::name(std::string_view name, std::uint32_t code) noexcept {
    if (without_memory_) return;
    NotedMessage& m = messages_[message_];
    if (!name.empty()) m.name = name;
    if (m.code == NotedMessage::no_code) m.code = code;
}

// (A place is looked at by halves: the processor has to wait for both together where they were written
// apart.)
inline Trail::Tested Trail::located(const Message& m, const Place& bytes) {
    if (bytes.count == 0) return {{0, 0}, false, false};
    if (!all_there(m, bytes)) return located_in_part(m, bytes);
    return {{m.origin() + bytes.first, m.origin() + bytes.first + bytes.count - 1}, true, false};
}

// Offsets beyond the message are noted as missing.
Trail::Tested Trail::located_in_part(const Message& m, const Place& bytes) {
    NotedMessage& noted = messages_[message_];
    const std::uint32_t left = noted.source_length > m.origin() ? noted.source_length - m.origin() : 0;
    // (Behind the bytes that lie in a row a record shows what was left there, which stood elsewhere before.)
    const std::uint32_t length = std::min(static_cast<std::uint32_t>(m.bytes().size()), left);
    const std::uint32_t end = bytes.first + bytes.count;
    const bool missing = end > length;
    if (missing) {
        const ByteRange range{std::max(bytes.first, length) + m.origin() - std::min(noted.origin, m.origin()),
                              end - 1};
        if (noted.missing.size() < most_stretches)
            noted.missing.push_back({range.first, std::max(range.first, range.last)});
    }
    if (bytes.first >= length) return {{0, 0}, false, missing};
    return {{m.origin() + bytes.first, m.origin() + std::min(end, length) - 1}, true, missing};
}

void Trail::test(const Message& m, Place bytes) noexcept {
    if (values_too_ && (words_too_ || !all_there(m, bytes))) note_test(m, bytes);
}

void Trail::note_test(const Message& m, Place bytes) noexcept {
    look();
    note([&] {
        tested_.push_back(located(m, bytes));
        tested_changed_ = true;
        if (tables != nullptr) {
            const Tested& at = tested_.back();
            tables->push_back({{}, 0, false, at.some, at.bytes, message_});
        }
    });
}

void Trail::walk(const Message& m, Place bytes) noexcept {
    test(m, bytes);
    if (!words_too_) return;
    note([&] {
        const Tested& at = tested_.back();
        if (at.some) walked_.push_back({at.bytes, now(), messages_[message_].reassembled});
    });
}

void Trail::put_by(const Message& m, Place bytes) noexcept {
    if (!words_too_) return;
    const auto own = static_cast<std::uint32_t>(m.bytes().size());
    const Place there = {bytes.first, std::min(bytes.count, own - std::min(own, bytes.first))};
    note([&] {
        const Tested at = located(m, there);
        if (at.some && !messages_[message_].reassembled) put_by_.push_back(at.bytes);
    });
}

void Trail::asked(const Message& m, const TableRows& rows, std::uint32_t code, bool known,
                  Place bytes) noexcept {
    if (tables == nullptr) return;
    note([&] {
        const Tested at = located(m, bytes);
        tables->push_back({rows, code, known, at.some, at.bytes, message_});
    });
}

void Trail::end_scope(std::size_t scope) noexcept {
    if (tested_.size() <= scope) return;
    look();
    tested_.resize(scope);
    tested_changed_ = true;
}

void Trail::look() noexcept {
    if (words_too_) look_at_words();
}

void Trail::look_at_words() noexcept {
    note([&] {
        const std::uint32_t end = now();
        if (end < seen_) cut_to(end);
        if (end > seen_) add_literal(end);
    });
}

void Trail::look_at_cut() noexcept {
    const std::uint32_t end = now();
    if (end < seen_) cut_to(end);
}

void Trail::pass_over() noexcept { seen_ = now(); }

void Trail::cut_to(std::uint32_t end) noexcept {
    while (!stretches_.empty() && stretches_.back().end > end) {
        if (stretches_.back().begin < end) {
            stretches_.back().end = end;
            break;
        }
        stretches_.pop_back();
    }
    while (!values_.empty() && values_.back().end > end) {
        if (values_.back().begin < end) {
            values_.back().end = end;
            break;
        }
        values_.pop_back();
    }
    std::size_t k = messages_.size() - 1;
    for (; k > 0 && messages_[k].begin > end; --k) messages_[k].begin = messages_[k].end = end;
    for (auto m = static_cast<std::uint32_t>(k); m != NotedMessage::no_message; m = messages_[m].carrier) {
        messages_[m].end = std::min(messages_[m].end, end);
    }
    for (auto w = walked_.rbegin(); w != walked_.rend() && w->begin > end; ++w) w->begin = end;
    seen_ = end;
}

// The bytes that were tested, in order and joined.
void Trail::look_at_tested() {
    if (!tested_changed_) return;
    tested_changed_ = false;
    literal_first_range_ = static_cast<std::uint32_t>(ranges_.size());
    literal_missing_ = false;
    for (std::size_t k = first_tested_; k < tested_.size(); ++k) {
        literal_missing_ = literal_missing_ || tested_[k].missing;
        if (tested_[k].some) ranges_.push_back(tested_[k].bytes);
    }
    const auto first = ranges_.begin() + static_cast<std::ptrdiff_t>(literal_first_range_);
    std::sort(first, ranges_.end(), [](auto a, auto b) { return a.first < b.first; });
    auto joined = first;
    for (auto r = first; r != ranges_.end(); ++r) {
        if (r != first && r->first <= joined->last + 1) {
            joined->last = std::max(joined->last, r->last);
        } else {
            if (r != first) ++joined;
            *joined = *r;
        }
    }
    if (first != ranges_.end()) ranges_.erase(joined + 1, ranges_.end());
    literal_ranges_ = static_cast<std::uint32_t>(ranges_.size()) - literal_first_range_;
}

void Trail::add_literal(std::uint32_t end) {
    look_at_tested();
    Stretch s;
    s.begin = seen_;
    s.end = end;
    s.first_range = s.first_tested = literal_first_range_;
    s.ranges = s.tested = literal_ranges_;
    s.missing = literal_missing_;
    add_stretch(s);
}

// Plain words behind plain words are one stretch where the same bytes chose them.
void Trail::add_stretch(Stretch s) {
    seen_ = s.end;
    s.message = message_;
    if (!stretches_.empty()) {
        Stretch& last = stretches_.back();
        const auto its = bytes_of(last);
        const auto these = bytes_of(s);
        const bool same = last.value == Stretch::no_value && s.value == Stretch::no_value &&
                          last.end == s.begin && last.message == s.message && last.missing == s.missing &&
                          std::equal(its.begin(), its.end(), these.begin(), these.end());
        if (same || stretches_.size() > most_stretches) {
            last.end = s.end;
            return;
        }
    }
    if (s.begin < s.end) stretches_.push_back(s);
}

// The bytes that a value was read from. (They are written where they stay, here and below: the processor has
// to wait for a copy of what was written in small pieces.)
inline void Trail::add_range(const Tested& at, Stretch& s) {
    s.missing = at.missing;
    s.first_range = static_cast<std::uint32_t>(ranges_.size());
    s.ranges = at.some ? 1 : 0;
    if (!at.some) return;
    ByteRange& range = ranges_.emplace_back();
    range.first = at.bytes.first;
    range.last = at.bytes.last;
}

inline void Trail::add_value(std::string_view name, const Field* field, const Meaning& meaning,
                             const Stretch& s) {
    NotedValue& v = values_.emplace_back();
    v.name = name;
    v.field = field;
    v.meaning = meaning;
    v.begin = s.begin;
    v.end = s.end;
    v.first_range = s.first_range;
    v.ranges = s.ranges;
    v.message = message_;
    v.missing = s.missing;
}

void Trail::value(const Message& m, std::string_view name, const Field* field, const Meaning& meaning,
                  std::size_t begin, std::size_t end) noexcept {
    note([&] {
        Stretch s;
        s.begin = static_cast<std::uint32_t>(begin - origin_);
        s.end = static_cast<std::uint32_t>(end - origin_);
        if (s.begin < seen_) cut_to(s.begin);
        const Tested at = located(m, meaning.place);
        if (!words_too_) {
            add_range(at, s);
            if (values_.size() < most_stretches) add_value(name, field, meaning, s);
            seen_ = s.end;
            return;
        }
        if (s.begin > seen_) add_literal(s.begin);
        look_at_tested();
        s.first_tested = literal_first_range_;
        s.tested = literal_ranges_;
        add_range(at, s);
        if (stretches_.size() < most_stretches) {
            s.value = static_cast<std::uint32_t>(values_.size());
            add_value(name, field, meaning, s);
        }
        add_stretch(s);
    });
}

void Trail::words(const Message& m, Place bytes, std::size_t begin, std::size_t end) noexcept {
    if (!words_too_) {
        test(m, bytes);
        return;
    }
    note([&] {
        const auto from = static_cast<std::uint32_t>(begin - origin_);
        if (from < seen_) cut_to(from);
        if (from > seen_) add_literal(from);
        tested_.push_back(located(m, bytes));
        tested_changed_ = true;
        if (end > begin) add_literal(static_cast<std::uint32_t>(end - origin_));
        tested_.pop_back();
        tested_changed_ = true;
    });
}

Trail::Notes Trail::notes(std::size_t begin, std::size_t end) noexcept {
    look();
    Notes notes;
    const auto from = static_cast<std::uint32_t>(begin - origin_);
    const auto to = static_cast<std::uint32_t>(end - origin_);
    const auto inside = [from, to](auto noted) {
        noted.begin = std::max(noted.begin, from) - from;
        noted.end = std::min(noted.end, to) - from;
        return noted;
    };
    note([&] {
        notes.size_ = to - from;
        const auto stretch = std::partition_point(stretches_.begin(), stretches_.end(),
                                                  [from](auto& s) { return s.end <= from; });
        const auto stretches_end =
            std::partition_point(stretch, stretches_.end(), [to](auto& s) { return s.begin < to; });
        notes.stretches_.reserve(static_cast<std::size_t>(stretches_end - stretch));
        std::transform(stretch, stretches_end, std::back_inserter(notes.stretches_), inside);
        const auto value =
            std::partition_point(values_.begin(), values_.end(), [from](auto& v) { return v.begin < from; });
        notes.first_value_ = static_cast<std::uint32_t>(value - values_.begin());
        const auto values_end =
            std::partition_point(value, values_.end(), [to](auto& v) { return v.end <= to; });
        notes.values_.reserve(static_cast<std::size_t>(values_end - value));
        std::transform(value, values_end, std::back_inserter(notes.values_), inside);
        const auto message = std::partition_point(messages_.begin(), messages_.end(),
                                                  [from](auto& m) { return m.begin < from; });
        for (auto m = message; m != messages_.end() && m->begin < to; ++m) {
            if (m->end > to) continue;
            const auto number = static_cast<std::uint32_t>(m - messages_.begin());
            notes.messages_.push_back({number, m->begin - from, m->end - from});
        }
    });
    return notes;
}

void Trail::put(const Notes& notes, std::size_t begin) noexcept {
    note([&] {
        const auto at = static_cast<std::uint32_t>(begin - origin_);
        if (at < seen_) cut_to(at);
        if (at > seen_) add_literal(at);
        const auto first_value = static_cast<std::uint32_t>(values_.size());
        const auto put_values = [&](std::size_t n) {
            for (std::size_t k = values_.size() - first_value; k < n; ++k) {
                NotedValue v = notes.values_[k];
                v.begin += at;
                v.end += at;
                values_.push_back(v);
            }
        };
        for (Stretch s : notes.stretches_) {
            s.begin += at;
            s.end += at;
            const std::uint32_t value = s.value - notes.first_value_;
            s.value = Stretch::no_value;
            if (stretches_.size() > most_stretches) {
                stretches_.back().end = s.end;
                continue;
            }
            if (value < notes.values_.size() && stretches_.size() < most_stretches) {
                put_values(value + 1);
                s.value = first_value + value;
            }
            stretches_.push_back(s);
        }
        if (stretches_.size() < most_stretches) put_values(notes.values_.size());
        for (const Notes::Span& m : notes.messages_) {
            messages_[m.message].begin = at + m.begin;
            messages_[m.message].end = at + m.end;
        }
        seen_ = at + notes.size_;
    });
}

std::vector<ByteRange> Trail::unused() const {
    if (messages_.empty()) return {};
    const std::uint32_t length = messages_.front().length;
    std::vector<bool> used(length, false);
    const auto use = [&](ByteRange r) {
        for (std::uint32_t k = r.first; k <= r.last && k < length; ++k) used[k] = true;
    };
    for (const Stretch& s : stretches_) {
        if (messages_[s.message].reassembled) continue;
        for (const ByteRange& r : bytes_of(s)) use(r);
    }
    for (const NotedValue& v : values_) {
        if (messages_[v.message].reassembled) continue;
        for (const ByteRange& r : bytes_of(v)) use(r);
    }
    for (const ByteRange& r : put_by_) use(r);
    std::vector<ByteRange> result;
    for (std::uint32_t k = 0; k < length; ++k) {
        if (used[k]) continue;
        if (!result.empty() && result.back().last + 1 == k) {
            result.back().last = k;
        } else {
            result.push_back({k, k});
        }
    }
    return result;
}

}  // namespace ztdecode
