#include "tool/redact/hidden_values.hpp"

#include <algorithm>
#include <array>

namespace ztdecode::tool {

namespace {

// Shows bytes that other values have said already.
bool is_copy(const Field& field) {
    return field.name == "item_text" || field.name == "part_bytes" || field.name == "repeated_text";
}

bool is_typed(const Field& field) {
    return field.name == "digit" || field.name == "key_text" || field.name == "key";
}

// Of HE sets a key's code may be the character that it types.
std::optional<Hidden> kind_of_value(const NotedValue& value, std::string_view link) {
    if (value.field == nullptr) return std::nullopt;
    const std::int64_t code = value.meaning.number;
    const auto byte = static_cast<std::uint8_t>(code & 0xFF);
    const bool types = link == "he" && value.field->name == "key" && value.meaning.kind == Kind::number &&
                       code == byte && all_letters({&byte, 1});
    return types ? Hidden::number : kind_of(value.field->sensitivity);
}

Edit::Form form_of(const NotedValue& value, Hidden kind, std::span<const std::uint8_t> bytes) {
    const bool is_text = value.meaning.kind == Kind::text;
    // Bytes that are characters are shown as such, too.
    if (kind == Hidden::secret)
        return is_text || all_printable(bytes) ? Edit::Form::blank_text : Edit::Form::blank;
    const bool characters = is_text || (kind != Hidden::hardware_address && all_letters(bytes));
    if (is_typed(*value.field) && bytes.size() == 1) return Edit::Form::typed;
    const bool address =
        value.meaning.kind == Kind::address || (kind == Hidden::address && value.meaning.kind != Kind::text);
    if (address && (bytes.size() == 4 || bytes.size() == 16)) return Edit::Form::address;
    if (characters) return Edit::Form::text;
    return kind == Hidden::number ? Edit::Form::half_bytes : Edit::Form::bytes;
}

void add_number(std::uint64_t number, std::string& words) {
    words.append(std::to_string(number)).push_back(' ');
}

void add_words(std::string_view more, std::string& words) { words.append(more).push_back('\n'); }

constexpr Hidden unread_kind(bool unknown) { return unknown ? Hidden::unknown : Hidden::unread; }

}  // namespace

unsigned Edit::attempts() const noexcept {
    constexpr unsigned few = 12;
    constexpr unsigned many = 40;
    if (form == Form::blank && spots.size() > 1) return 3;
    return spots.size() == 1 ? many : few;
}

void Edit::apply(std::vector<HiddenMessage>& messages, const StandIns& stand_ins, unsigned attempt) const {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(spots.size());
    for (const Spot& spot : spots) bytes.push_back(messages[spot.message].before[spot.offset]);
    switch (form) {
        case Form::text:
            stand_ins.text(bytes, attempt);
            break;
        case Form::typed:
            stand_ins.typed(bytes[0], before, attempt);
            break;
        case Form::half_bytes:
            stand_ins.half_bytes(bytes, attempt);
            break;
        case Form::address:
            stand_ins.address(bytes, attempt);
            break;
        case Form::bytes:
            stand_ins.bytes(bytes, attempt);
            break;
        case Form::blank_text:
            StandIns::blank_text(bytes, attempt);
            break;
        case Form::blank:
            StandIns::blank(bytes, attempt);
            break;
    }
    for (std::size_t k = 0; k < spots.size(); ++k)
        messages[spots[k].message].bytes[spots[k].offset] = bytes[k];
}

void Edit::take_back(std::vector<HiddenMessage>& messages) const {
    for (const Spot& spot : spots) {
        HiddenMessage& m = messages[spot.message];
        m.bytes[spot.offset] = m.before[spot.offset];
    }
}

std::string Typing::before(const std::string& who, char character) {
    constexpr std::uint64_t longest_pause = 200;  // messages
    constexpr std::size_t longest = 32;
    constexpr std::size_t most = 4096;
    if (rows_.size() >= most && rows_.find(who) == rows_.end()) rows_.clear();
    Row& row = rows_[who];
    if (messages_ - row.last > longest_pause || row.typed.size() >= longest) row.typed.clear();
    row.last = messages_;
    std::string before = row.typed;
    row.typed.push_back(character);
    return before;
}

HiddenValues::HiddenValues(const Trail& trail, std::vector<HiddenMessage>& messages, const Kept& kept,
                           Typing& typing, std::vector<Edit>& edits)
    : trail_(trail), messages_(messages), kept_(kept), typing_(typing), edits_(edits) {}

void HiddenValues::find() {
    typing_.message();
    make_sources();
    for (const NotedValue& value : trail_.values()) claim(value);
    mark_hidden();
    for (Source& source : sources_) hide_unread(source);
    listen_for_ends();
}

void HiddenValues::make_sources() {
    const auto& noted = trail_.messages();
    const auto last = static_cast<std::uint32_t>(messages_.size() - 1);
    for (std::uint32_t k = 0; k < noted.size(); ++k) {
        if (k > 0 && noted[k].bytes.empty()) continue;
        Source source;
        source.message = k;
        const std::size_t size = k == 0 ? messages_.back().before.size() : noted[k].bytes.size();
        source.claimed.resize(size);
        source.used.resize(size);
        source.there.assign(size, k == 0);
        source.spots.resize(size);
        if (k == 0) {
            for (std::uint32_t at = 0; at < size; ++at) source.spots[at] = {last, at};
        } else {
            map_segments(source, noted[k]);
        }
        sources_.push_back(std::move(source));
    }
    const auto use = [this](std::uint32_t message, std::span<const ByteRange> ranges) {
        Source& source = source_of(message);
        for (const ByteRange& range : ranges) {
            for (std::size_t at = range.first; at <= range.last && at < source.used.size(); ++at)
                source.used[at] = true;
        }
    };
    for (const Stretch& s : trail_.stretches()) use(s.message, trail_.bytes_of(s));
    for (const NotedValue& v : trail_.values()) use(v.message, trail_.bytes_of(v));
    use(0, trail_.put_by());
}

HiddenValues::Source& HiddenValues::source_of(std::uint32_t message) {
    const auto& noted = trail_.messages();
    while (message > 0 && noted[message].bytes.empty()) message = noted[message].carrier;
    const auto found = std::find_if(sources_.begin(), sources_.end(),
                                    [message](const Source& s) { return s.message == message; });
    return found == sources_.end() ? sources_.front() : *found;
}

// The segments' bytes one behind the other are the message, or the beginning of it.
void HiddenValues::map_segments(Source& source, const NotedMessage& whole) {
    std::vector<Spot> gathered;
    std::vector<std::size_t> begins;
    for (std::uint32_t k = 0; k < messages_.size(); ++k) {
        const HiddenMessage& m = messages_[k];
        if (std::find(whole.segments.begin(), whole.segments.end(), m.place) == whole.segments.end())
            continue;
        for (const ByteRange& range : m.put_by) {
            begins.push_back(gathered.size());
            for (std::uint32_t at = range.first; at <= range.last; ++at) gathered.push_back({k, at});
        }
    }
    for (const std::size_t begin : begins) {
        const std::size_t n = std::min(gathered.size() - begin, whole.bytes.size());
        bool same = true;
        for (std::size_t at = 0; at < n && same; ++at) {
            const Spot& spot = gathered[begin + at];
            same = messages_[spot.message].before[spot.offset] == whole.bytes[at];
        }
        if (!same) continue;
        for (std::size_t at = 0; at < n; ++at) {
            source.spots[at] = gathered[begin + at];
            source.there[at] = true;
            messages_.back().since = std::min(messages_.back().since, gathered[begin + at].message);
        }
        // What they say is known now, but for bytes that the length does not count.
        for (std::size_t at = 0; at < n; ++at) {
            const Spot& spot = gathered[begin + at];
            std::vector<ByteRange>& ranges = messages_[spot.message].put_by;
            std::vector<ByteRange> left;
            for (const ByteRange& r : ranges) {
                if (spot.offset < r.first || spot.offset > r.last) {
                    left.push_back(r);
                    continue;
                }
                if (spot.offset > r.first) left.push_back({r.first, spot.offset - 1});
                if (spot.offset < r.last) left.push_back({spot.offset + 1, r.last});
            }
            ranges = std::move(left);
        }
        return;
    }
}

void HiddenValues::claim(const NotedValue& value) {
    if (value.field == nullptr || is_copy(*value.field)) return;
    const auto kind = kind_of_value(value, trail_.messages()[value.message].link);
    if (!kind || kept_[*kind]) return;
    Source& source = source_of(value.message);
    Edit edit{*kind, Edit::Form::bytes, {}};
    std::vector<std::uint8_t> bytes;
    for (const ByteRange& range : trail_.bytes_of(value)) {
        for (std::size_t at = range.first; at <= range.last && at < source.spots.size(); ++at) {
            if (source.claimed[at] || !source.there[at]) continue;
            source.claimed[at] = true;
            const Spot spot = source.spots[at];
            edit.spots.push_back(spot);
            bytes.push_back(messages_[spot.message].before[spot.offset]);
        }
    }
    if (edit.spots.empty()) return;
    edit.form = form_of(value, *kind, bytes);
    edit.link = trail_.messages()[value.message].link;
    edit.name = trail_.messages()[value.message].name;
    if (edit.form == Edit::Form::typed) {
        const auto character = static_cast<char>(bytes[0] < 10 ? '0' + bytes[0] : bytes[0]);
        edit.before = typing_.before(typist(value.message), character);
    }
    edits_.push_back(std::move(edit));
}

// Also what shows bytes that are hidden, whatever it is called.
void HiddenValues::mark_hidden() {
    std::vector<bool>& hidden = messages_.back().hidden;
    hidden.assign(trail_.values().size(), false);
    for (std::size_t k = 0; k < hidden.size(); ++k) {
        const NotedValue& value = trail_.values()[k];
        const Source& source = source_of(value.message);
        const auto ranges = trail_.bytes_of(value);
        for (const ByteRange& range : ranges) {
            for (std::size_t at = range.first; at <= range.last && at < source.claimed.size(); ++at)
                hidden[k] = hidden[k] || source.claimed[at];
        }
        const auto kind = value.field == nullptr ? std::nullopt : kind_of(value.field->sensitivity);
        if (value.field != nullptr &&
            (value.field->name == "repeated_text" || value.field->name == "part_bytes"))
            hidden[k] = true;
        if (ranges.empty() && kind && !kept_[*kind]) hidden[k] = true;
    }
}

bool HiddenValues::is_unknown(const Source& source, std::uint32_t offset) const {
    const auto& noted = trail_.messages();
    for (std::uint32_t k = 0; k < noted.size(); ++k) {
        const NotedMessage& m = noted[k];
        if (!m.name.empty() || offset < m.origin || offset >= m.origin + m.length) continue;
        std::uint32_t at = k;
        while (at > 0 && noted[at].bytes.empty()) at = noted[at].carrier;
        if (at == source.message) return true;
    }
    return false;
}

void HiddenValues::hide_unread(Source& source) {
    const NotedMessage& noted = trail_.messages()[source.message];
    const auto size = static_cast<std::uint32_t>(source.used.size());
    Edit edit{Hidden::unread, Edit::Form::blank, {}, {}, noted.link, noted.name};
    const auto done = [&] {
        if (!edit.spots.empty()) edits_.push_back(edit);
        edit.spots.clear();
    };
    for (std::uint32_t at = 0; at < size; ++at) {
        if (source.used[at] || source.claimed[at] || !source.there[at]) {
            done();
            continue;
        }
        const Hidden kind = unread_kind(is_unknown(source, at));
        if (kind != edit.kind) done();
        edit.kind = kind;
        if (kind == Hidden::unread || !kept_[kind]) edit.spots.push_back(source.spots[at]);
    }
    done();
}

// By the messages that carry it, and the numbers in them: of the module, of the set behind the hub.
std::string HiddenValues::typist(std::uint32_t message) const {
    constexpr int most_levels = 8;
    const auto& noted = trail_.messages();
    std::string who;
    add_number(reinterpret_cast<std::uintptr_t>(messages_.back().session), who);
    for (int level = 0; level < most_levels; ++level) {
        add_words(noted[message].link, who);
        add_number(noted[message].direction, who);
        for (const NotedValue& v : trail_.values()) {
            const bool tells = v.message == message && v.field != nullptr && !kind_of(v.field->sensitivity) &&
                               v.field->name != "key";
            if (tells && v.meaning.kind == Kind::number)
                add_number(static_cast<std::uint64_t>(v.meaning.number), who);
        }
        if (message == 0) break;
        message = noted[message].carrier;
    }
    return who;
}

// A number is dialled to its end when the handset is lifted or laid down.
void HiddenValues::listen_for_ends() {
    const auto& noted = trail_.messages();
    for (std::uint32_t k = 0; k < noted.size(); ++k) {
        if (noted[k].name.find("hook") != std::string_view::npos) typing_.ends(typist(k));
    }
}

std::string what_is_said(const Record& record, Outcome outcome, std::string_view text,
                         const std::vector<bool>& hidden) {
    const Trail& trail = record.trail();
    std::string said;
    add_number(static_cast<std::uint64_t>(outcome), said);
    for (std::size_t k = 0; k < record.size(); ++k) {
        const Record::Part& part = record.part(k);
        add_words(part.noted->link, said);
        add_words(part.noted->name, said);
        const std::array<std::uint64_t, 7> numbers = {
            part.carrier,          part.noted->code,
            part.noted->direction, static_cast<std::uint64_t>(part.decoded),
            part.bytes.size(),     part.unknown,
            part.missing};
        for (const std::uint64_t number : numbers) add_number(number, said);
        for (const std::uint64_t segment : part.noted->segments) add_number(segment, said);
    }
    said.push_back('\n');
    std::vector<ByteRange> cut;
    for (std::size_t k = 0; k < trail.values().size(); ++k) {
        const NotedValue& value = trail.values()[k];
        add_words(value.name, said);
        if (k < hidden.size() && hidden[k]) {
            if (value.end > value.begin) cut.push_back({value.begin, value.end});
            continue;
        }
        add_number(value.meaning.known ? 1 : 0, said);
        add_words(record.shown(value), said);
    }
    std::sort(cut.begin(), cut.end(), [](auto a, auto b) { return a.first < b.first; });
    std::size_t at = 0;
    for (const ByteRange& range : cut) {
        const std::size_t begin = std::min<std::size_t>(range.first, text.size());
        if (begin > at) said.append(text.substr(at, begin - at));
        said.push_back('\0');
        at = std::max<std::size_t>(at, range.last);
    }
    if (at < text.size()) said.append(text.substr(at));
    return said;
}

std::vector<ByteRange> bytes_of_segments(const Trail& trail) {
    const std::vector<ByteRange>& put_by = trail.put_by();
    std::vector<ByteRange> bytes;
    for (std::size_t k = 0; k < put_by.size(); ++k) {
        const bool goes_on = k + 1 < put_by.size() && put_by[k + 1].first == put_by[k].last + 1;
        const bool is_length = put_by[k].last - put_by[k].first == 1 && goes_on;
        if (!is_length) bytes.push_back(put_by[k]);
    }
    return bytes;
}

void hide_put_by(std::vector<HiddenMessage>& messages, std::vector<Edit>& edits) {
    for (std::uint32_t k = 0; k < messages.size(); ++k) {
        for (const ByteRange& range : messages[k].put_by) {
            Edit edit{Hidden::unread, Edit::Form::blank, {}, {}, messages[k].link, messages[k].name};
            for (std::uint32_t at = range.first; at <= range.last; ++at) edit.spots.push_back({k, at});
            edits.push_back(std::move(edit));
        }
    }
}

}  // namespace ztdecode::tool
