#include "tool/report/ndjson.hpp"

#include <rapidjson/writer.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ztdecode::tool {

namespace {

// The output as RapidJSON's writer wants it.
struct Stream {
    using Ch = char;  // NOLINT(readability-identifier-naming): RapidJSON's
    Text& out;

    void Put(char c) {  // NOLINT(readability-identifier-naming): RapidJSON's
        char* const at = out.room(1);
        *at = c;
        out.written_to(at + 1);
    }
    void Flush() {}  // NOLINT(readability-identifier-naming): RapidJSON's
};

// RapidJSON looks for these beside the stream.
void PutReserve(Stream& stream, std::size_t n) {
    stream.out.room(n);
}  // NOLINT(readability-identifier-naming)
void PutUnsafe(Stream& stream, char c) { stream.Put(c); }  // NOLINT(readability-identifier-naming)

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

std::size_t ascii_length(std::string_view s) {
    std::size_t n = 0;
    while (n < s.size() && static_cast<unsigned char>(s[n]) < 0x80) ++n;
    return n;
}

// How many bytes of the beginning are one character in UTF-8: 0 when they are none.
std::size_t character_length(std::string_view s) {
    const auto byte = [s](std::size_t k) { return k < s.size() ? static_cast<unsigned char>(s[k]) : 0U; };
    const auto follows = [&](std::size_t k, unsigned least = 0x80, unsigned most = 0xBF) {
        return byte(k) >= least && byte(k) <= most;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return follows(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const unsigned least = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned most = lead == 0xED ? 0x9F : 0xBF;
        return follows(1, least, most) && follows(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const unsigned least = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned most = lead == 0xF4 ? 0x8F : 0xBF;
        return follows(1, least, most) && follows(2) && follows(3) ? 4 : 0;
    }
    return 0;
}

// Bytes that are no UTF-8 become U+FFFD, one each.
std::string utf8(std::string_view s) {
    std::string result;
    while (!s.empty()) {
        const std::size_t n = character_length(s);
        result += n == 0 ? replacement : s.substr(0, n);
        s.remove_prefix(std::max<std::size_t>(n, 1));
    }
    return result;
}

std::string_view name_of(Kind kind) {
    switch (kind) {
        case Kind::number:
            return "number";
        case Kind::word:
            return "word";
        case Kind::address:
            return "address";
        case Kind::text:
            return "text";
        case Kind::version:
            return "version";
        case Kind::flag:
            return "flag";
        case Kind::bytes:
            return "bytes";
    }
    return "number";
}

std::string_view name_of(Sensitivity sensitivity) {
    switch (sensitivity) {
        case Sensitivity::none:
            break;
        case Sensitivity::call_number:
            return "call_number";
        case Sensitivity::person:
            return "person";
        case Sensitivity::network_address:
            return "network_address";
        case Sensitivity::hardware_address:
            return "hardware_address";
        case Sensitivity::secret:
            return "secret";
    }
    return "none";
}

// Only its digits: "0x2a", " 2e 2f".
std::string digits_of(std::string_view hexadecimal) {
    std::string digits;
    for (std::size_t k = 0; k < hexadecimal.size(); ++k) {
        const char c = hexadecimal[k];
        if (c == '0' && k + 1 < hexadecimal.size() && hexadecimal[k + 1] == 'x') {
            ++k;
        } else if (hex_digit(c) < 16) {
            digits += static_cast<char>(c >= 'A' && c <= 'F' ? c - 'A' + 'a' : c);
        }
    }
    return digits;
}

template <class Writer>
class Object {
  public:
    explicit Object(Text& out) : stream_{out}, writer_(stream_) {}

    void line(std::string_view kind, const Place& place) {
        writer_.StartObject();
        add("kind", kind);
        add("file", place.file);
        key("line");
        writer_.Uint64(place.line);
    }
    void end() {
        writer_.EndObject();
        stream_.Put('\n');
    }

    void message(const Place& place, const Record& record, std::size_t index, bool words) {
        const Record::Part& part = record.part(index);
        const NotedMessage& noted = *part.noted;
        line("message", place);
        add_or_null("columns", place.columns, place.has_columns);
        key("time");
        writer_.Null();
        add("direction", noted.direction == from_dhs ? "from" : "to");
        add_or_null("link", noted.link, !noted.link.empty());
        add_or_null("message", noted.name, !noted.name.empty());
        key("code");
        if (noted.code != NotedMessage::no_code) {
            writer_.Uint(noted.code);
        } else {
            writer_.Null();
        }
        switch (part.decoded) {
            case Decoded::decoded:
                add("status", "decoded");
                break;
            case Decoded::unknown:
                add("status", "unknown");
                break;
            case Decoded::refused:
                add("status", "refused");
                add("reason", "unknown_class");
                break;
        }
        key("length");
        writer_.Uint(noted.length);
        bytes(part.bytes);
        add("text", record.text(part));
        fields(record, part);
        key("unknown");
        writer_.Uint(part.unknown);
        key("missing");
        writer_.Uint(part.missing);
        if (!noted.segments.empty()) {
            key("segments");
            writer_.StartArray();
            for (const std::uint64_t segment : noted.segments) writer_.Uint64(segment);
            writer_.EndArray();
        }
        if (words) {
            words_of(record, part);
            details(record, part);
        }
        key("parts");
        writer_.StartArray();
        for (const std::uint32_t carried : record.carried(part)) {
            message(place, record, carried, words);
            writer_.EndObject();
        }
        writer_.EndArray();
    }

    void add(std::string_view name, std::string_view value) {
        key(name);
        string(value);
    }
    void add(std::string_view name, std::uint64_t value) {
        key(name);
        writer_.Uint64(value);
    }

  private:
    void key(std::string_view name) {
        writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
    }
    void string(std::string_view value) {
        if (ascii_length(value) != value.size()) {
            const std::string valid = utf8(value);
            writer_.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
        } else {
            writer_.String(value.data() == nullptr ? "" : value.data(),
                           static_cast<rapidjson::SizeType>(value.size()));
        }
    }
    void add_or_null(std::string_view name, std::string_view value, bool there_is_one) {
        key(name);
        if (there_is_one) {
            string(value);
        } else {
            writer_.Null();
        }
    }

    void bytes(std::span<const std::uint8_t> bytes) {
        hexadecimal_.clear();
        for (const std::uint8_t byte : bytes) {
            hexadecimal_ += lower_case_digits[byte >> 4];
            hexadecimal_ += lower_case_digits[byte & 15];
        }
        add("bytes", hexadecimal_);
    }

    void value(const Record& record, const NotedValue& v) {
        const std::string_view shown = record.shown(v);
        switch (v.meaning.kind) {
            case Kind::number:
                if (v.meaning.tenths != 0) {
                    const std::int64_t n = v.meaning.number;
                    const std::string tenths = (n < 0 ? "-" : "") + std::to_string((n < 0 ? -n : n) / 10) +
                                               "." + std::to_string((n < 0 ? -n : n) % 10);
                    writer_.RawValue(tenths.data(), tenths.size(), rapidjson::kNumberType);
                } else {
                    writer_.Int64(v.meaning.number);
                }
                break;
            case Kind::flag:
                writer_.Bool(v.meaning.number != 0);
                break;
            case Kind::bytes:
                string(digits_of(shown));
                break;
            case Kind::word:
                string(without_punctuation(shown));
                break;
            case Kind::address:
            case Kind::text:
            case Kind::version:
                string(shown);
                break;
        }
    }

    // A name that stands several times has an array.
    void fields(const Record& record, const Record::Part& part) {
        key("fields");
        writer_.StartObject();
        const auto values = record.values(part);
        order_.assign(values.begin(), values.end());
        by_name(record);
        for (std::size_t k = 0; k < order_.size();) {
            const std::string_view name = record.value(order_[k]).name;
            std::size_t end = k + 1;
            while (end < order_.size() && record.value(order_[end]).name == name) ++end;
            key(name);
            if (end - k > 1) writer_.StartArray();
            for (std::size_t i = k; i < end; ++i) value(record, record.value(order_[i]));
            if (end - k > 1) writer_.EndArray();
            k = end;
        }
        writer_.EndObject();
    }

    // The values of a name behind its first one, the names in the order of the text.
    void by_name(const Record& record) {
        const auto name = [&](std::uint32_t k) { return record.value(k).name; };
        bool repeats = false;
        if (order_.size() <= 16) {
            for (std::size_t i = 0; i < order_.size() && !repeats; ++i) {
                for (std::size_t k = 0; k < i && !repeats; ++k) repeats = name(order_[i]) == name(order_[k]);
            }
        } else {
            repeats = true;
        }
        if (!repeats) return;
        std::stable_sort(order_.begin(), order_.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return name(a) < name(b); });
        // Where the first of each name stands decides.
        first_.clear();
        for (std::size_t k = 0; k < order_.size(); ++k) {
            const bool same = k > 0 && name(order_[k]) == name(order_[k - 1]);
            first_.push_back({same ? first_.back().first : order_[k], order_[k]});
        }
        std::stable_sort(first_.begin(), first_.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        for (std::size_t k = 0; k < order_.size(); ++k) order_[k] = first_[k].second;
    }

    // Offsets in the bytes of the message, where they are its bytes.
    void ranges(const Record& record, const Record::Part& part, std::span<const ByteRange> ranges,
                std::uint32_t message) {
        key("bytes");
        writer_.StartArray();
        const NotedMessage& of = record.trail().messages()[message];
        for (const ByteRange& r : ranges) {
            if (!same_source(record, part, of) || r.first < part.noted->origin) continue;
            writer_.StartArray();
            writer_.Uint(r.first - part.noted->origin);
            writer_.Uint(r.last - part.noted->origin);
            writer_.EndArray();
        }
        writer_.EndArray();
    }
    // Whether offsets in the one count in the same bytes as in the other.
    static bool same_source(const Record& record, const Record::Part& part, const NotedMessage& of) {
        const auto source = [&](const NotedMessage* m) {
            while (m->bytes.empty() && m->carrier != NotedMessage::no_message)
                m = &record.trail().messages()[m->carrier];
            return m;
        };
        return source(part.noted) == source(&of);
    }

    void words_of(const Record& record, const Record::Part& part) {
        key("words");
        writer_.StartArray();
        for (const Stretch& s : record.stretches(part)) {
            const std::uint32_t end = std::min(s.end, part.end);
            writer_.StartObject();
            add("text", record.text(part).substr(s.begin - part.begin, end - s.begin));
            add("begin", s.begin - part.begin);
            add("end", end - part.begin);
            ranges(record, part, record.trail().bytes_of(s), s.message);
            if (s.value != Stretch::no_value && s.value < record.trail().values().size()) {
                add("field", record.value(s.value).name);
            }
            if (s.missing) {
                key("missing");
                writer_.Bool(true);
            }
            writer_.EndObject();
        }
        writer_.EndArray();
    }

    void details(const Record& record, const Record::Part& part) {
        key("fields_detail");
        writer_.StartArray();
        for (const std::uint32_t index : record.values(part)) {
            const NotedValue& v = record.value(index);
            writer_.StartObject();
            add("name", v.name);
            add("kind", name_of(v.meaning.kind));
            key("value");
            value(record, v);
            add_or_null("unit", v.field->unit, !v.field->unit.empty());
            key("code");
            if (v.meaning.kind == Kind::word) {
                writer_.Int64(v.meaning.number);
            } else {
                writer_.Null();
            }
            key("known");
            writer_.Bool(v.meaning.known);
            key("missing");
            writer_.Bool(v.missing);
            add("sensitivity", name_of(v.field->sensitivity));
            add("begin", std::max(v.begin, part.begin) - part.begin);
            add("end", std::max(v.end, part.begin) - part.begin);
            ranges(record, part, record.trail().bytes_of(v), v.message);
            writer_.EndObject();
        }
        writer_.EndArray();
    }

    Stream stream_;
    Writer writer_;
    std::string hexadecimal_;
    std::vector<std::uint32_t> order_;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> first_;
};

using Utf8 = Object<rapidjson::Writer<Stream>>;
using Ascii = Object<rapidjson::Writer<Stream, rapidjson::UTF8<>, rapidjson::ASCII<>>>;

template <class Write>
void object(bool ascii, Text& out, Write write) {
    if (ascii) {
        Ascii o(out);
        write(o);
        o.end();
    } else {
        Utf8 o(out);
        write(o);
        o.end();
    }
}

}  // namespace

void NdjsonReport::message(const Place& place, const Trail& trail, std::string_view text, const Message& m,
                           Outcome outcome, std::uint64_t padded) {
    record_.take(trail, text, m, outcome);
    object(ascii_, out_, [&](auto& o) {
        o.message(place, record_, 0, words_);
        if (padded > 0) o.add("padded", padded);
    });
}

void NdjsonReport::refused(const Place& place, const Refusal& refusal, std::string_view content) {
    object(ascii_, out_, [&](auto& o) {
        o.line("refused", place);
        o.add("column", refusal.column + 1);
        o.add("reason", name_of(refusal.reason));
        o.add("expected", refusal.expected);
        o.add("found", refusal.found);
        o.add("content", content);
    });
}

void NdjsonReport::other(const Place& place, std::string_view content) {
    object(ascii_, out_, [&](auto& o) {
        o.line("other", place);
        o.add("content", content);
    });
}

void NdjsonReport::trace(const Place& place, std::string_view content) {
    object(ascii_, out_, [&](auto& o) {
        o.line("trace", place);
        o.add("content", content);
    });
}

}  // namespace ztdecode::tool
