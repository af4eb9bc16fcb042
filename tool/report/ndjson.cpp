#include "tool/report/ndjson.hpp"

#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "core/data.hpp"
#include "decode/line_texts.hpp"
#include "tool/output/control.hpp"
#include "tool/output/utf8.hpp"

namespace ztdecode::tool {

namespace {

// Characters that stand in a JSON string as they are: ASCII but control characters, quotes and backslashes.
consteval std::array<bool, 256> plain_characters() {
    std::array<bool, 256> plain{};
    for (std::size_t c = 0x20; c < 0x7F; ++c) plain[c] = c != '"' && c != '\\';
    return plain;
}
constexpr auto plain = plain_characters();

std::uint32_t code_point(std::string_view character) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(character[k]); };
    std::uint32_t code = byte(0);
    if (character.size() > 1) code &= 0xFFU >> (character.size() + 1);
    for (std::size_t k = 1; k < character.size(); ++k) code = code << 6 | (byte(k) & 0x3FU);
    return code;
}

// What stands behind a backslash for these characters; 0 for the others.
consteval std::array<char, 256> short_escapes() {
    std::array<char, 256> escapes{};
    escapes['"'] = '"';
    escapes['\\'] = '\\';
    escapes['\n'] = 'n';
    escapes['\t'] = 't';
    return escapes;
}
constexpr auto escapes = short_escapes();

constexpr std::size_t longest_escape = 6;  // of one byte

// A character that is neither plain nor has a short escape. Control characters beyond ASCII are escaped, too:
// there are terminals that act on them. Gives the end.
char* write_escape(char* at, std::string_view character, bool ascii) {
    const std::uint32_t code = code_point(character);
    if (code >= 0xA0 && !ascii) return copy_characters(at, character);
    if (code < 0x10000) return write_format(at, "\\u{-:04x}"_cf, code);
    const std::uint32_t rest = code - 0x10000;
    return write_format(at, "\\u{-:04x}\\u{-:04x}"_cf, 0xD800 | rest >> 10, 0xDC00 | (rest & 0x3FF));
}

// Whether eight characters stand in a JSON string as they are.
bool all_plain(std::uint64_t characters) {
    constexpr std::uint64_t each = 0x0101010101010101;
    const auto has = [](std::uint64_t c) { return (c - each) & ~c & 0x80 * each; };  // a zero byte
    const std::uint64_t below_blank = (characters - 0x20 * each) & ~characters;
    const std::uint64_t del_or_beyond = characters | (characters + each);
    return ((below_blank | del_or_beyond | has(characters ^ '"' * each) | has(characters ^ '\\' * each)) &
            0x80 * each) == 0;
}

// The string with its escapes, without its quotes; bytes that are no UTF-8 become U+FFFD, one each. Stops a
// little behind `stop`. There is room for `longest_escape` characters a byte. Gives the end.
char* write_characters(char* at, const char*& from, const char* stop, const char* end, bool ascii) {
    while (from < stop) {
        if (std::uint64_t eight = 0; static_cast<std::size_t>(end - from) >= sizeof eight) {
            std::memcpy(&eight, from, sizeof eight);
            if (all_plain(eight)) {
                std::memcpy(at, &eight, sizeof eight);
                from += sizeof eight;
                at += sizeof eight;
                continue;
            }
        }
        while (from != end && plain[static_cast<unsigned char>(*from)]) *at++ = *from++;
        if (from == end) break;
        if (const char escape = escapes[static_cast<unsigned char>(*from)]; escape != 0) {
            *at++ = '\\';
            *at++ = escape;
            ++from;
            continue;
        }
        const std::string_view rest(from, static_cast<std::size_t>(end - from));
        const std::size_t n = character_length(rest);
        at = write_escape(at, n == 0 ? replacement : rest.substr(0, n), ascii);
        from += std::max<std::size_t>(n, 1);
    }
    return at;
}

// What stands in the formats below.
struct Plain {
    static Meaning meaning() noexcept { return {}; }
};

// A short string, or null.
struct QuotedOrNull : Plain {
    QuotedOrNull(std::string_view s, bool there_is_one, bool to_ascii)
        : text(s), is(there_is_one), ascii(to_ascii) {}

    std::string_view text;
    bool is;
    bool ascii;

    std::size_t bound() const noexcept { return longest_escape * text.size() + 4; }
    char* write(char* at) const {
        if (!is) return copy_characters(at, "null");
        *at++ = '"';
        const char* from = text.data();
        const char* const end = from + text.size();
        at = write_characters(at, from, end, end, ascii);
        *at++ = '"';
        return at;
    }
};

// The columns of a line: a string, a number where they are digits and it is wanted, or null.
struct ColumnsOrNull : QuotedOrNull {
    ColumnsOrNull(const CapturedMessage& place, bool as_number, bool to_ascii)
        : QuotedOrNull(place.columns, place.has_columns, to_ascii),
          number(as_number && place.has_columns &&
                 std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {}

    bool number;

    char* write(char* at) const {
        if (!number) return QuotedOrNull::write(at);
        const std::size_t first = text.find_first_not_of('0');
        return copy_characters(at, first == std::string_view::npos ? "0" : text.substr(first));
    }
};

// A name of our own, which needs no escapes; null where there is none.
struct OwnName : Plain {
    explicit OwnName(std::string_view n) : name(n) {}

    std::string_view name;

    std::size_t bound() const noexcept { return name.size() + 4; }
    char* write(char* at) const {
        if (name.empty()) return copy_characters(at, "null");
        *at = '"';
        at = copy_characters(at + 1, name);
        *at = '"';
        return at + 1;
    }
};

struct Code : Plain {
    explicit Code(std::uint32_t c) : code(c) {}

    std::uint32_t code;

    std::size_t bound() const noexcept { return 10; }
    char* write(char* at) const {
        return code == NotedMessage::no_code ? copy_characters(at, "null") : write_format(at, "{-}"_cf, code);
    }
};

consteval std::array<std::array<char, 2>, 256> digits_of_bytes() {
    std::array<std::array<char, 2>, 256> digits{};
    for (std::size_t byte = 0; byte < 256; ++byte)
        digits[byte] = {lower_case_digits[byte >> 4], lower_case_digits[byte & 15]};
    return digits;
}
constexpr auto two_digits = digits_of_bytes();

struct Hexadecimal : Plain {
    explicit Hexadecimal(std::span<const std::uint8_t> b) : bytes(b) {}

    std::span<const std::uint8_t> bytes;

    std::size_t bound() const noexcept { return 2 * bytes.size(); }
    char* write(char* at) const {
        for (const std::uint8_t byte : bytes) {
            std::memcpy(at, two_digits[byte].data(), 2);
            at += 2;
        }
        return at;
    }
};

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

}  // namespace

void add_json_string(std::string_view s, bool ascii, Text& out) {
    constexpr std::size_t most_at_once = 4096;
    constexpr std::size_t a_little = 16;
    const char* from = s.data();
    const char* const end = from + s.size();
    out.add("\"");
    while (from != end) {
        const std::size_t n = std::min<std::size_t>(static_cast<std::size_t>(end - from), most_at_once);
        char* const at = out.room(longest_escape * (n + a_little));
        out.written_to(write_characters(at, from, from + n, end, ascii));
    }
    out.add("\"");
}

// RapidJSON's writer knows where a comma stands and what has to be closed. Strings and numbers go out in
// whole pieces; what is the same in every object goes out at once with the key behind it.
class NdjsonReport::Writer : private rapidjson::Writer<Stream> {
    using Base = rapidjson::Writer<Stream>;

  public:
    Writer(bool ascii, bool column_numbers, Text& out)
        : out_(out), ascii_(ascii), column_numbers_(column_numbers), stream_{out} {
        Reset(stream_);
    }

    void begin(std::string_view kind_and_file, std::uint64_t line) {
        StartObject();
        key(kind_and_file);
        number(line);
    }
    void end() {
        EndObject();
        out_.add("\n");
        Reset(stream_);
    }
    void only_fields(const Record& record, const Record::Part& part) {
        Reset(stream_);
        fields(record, part);
    }

    // `words`: the keys in their quotes, after others with their values.
    void key(std::string_view words) {
        Prefix(rapidjson::kStringType);
        out_.add(words);
    }
    void add(std::string_view key_words, std::string_view value) {
        key(key_words);
        string(value);
    }
    void add(std::string_view key_words, std::uint64_t value) {
        key(key_words);
        number(value);
    }
    void message(std::string_view kind_and_file, const CapturedMessage& place, const Record& record,
                 std::size_t index, bool words) {
        const Record::Part& part = record.part(index);
        const NotedMessage& noted = *part.noted;
        StartObject();
        Prefix(rapidjson::kStringType);
        out_.print(
            "{-}:{-},\"columns\":{-},\"time\":{-},\"direction\":\"{-}\",\"link\":{-},\"message\":{-},"
            "\"code\":{-},\"status\":\"{-}\",\"length\":{-},\"bytes\":\"{-}\",\"text\":"_cf,
            kind_and_file, place.number, ColumnsOrNull{place, column_numbers_, ascii_},
            QuotedOrNull{place.time, !place.time.empty(), ascii_},
            std::string_view(noted.direction == from_dhs ? "from" : "to"), OwnName{noted.link},
            OwnName{noted.name}, Code{noted.code}, status(part.decoded), noted.length,
            Hexadecimal{part.bytes});
        add_json_string(record.text(part), ascii_, out_);
        out_.add(",\"fields\"");
        fields(record, part);
        if (part.unknown == 0 && part.missing == 0 && noted.segments.empty() && !words) {
            if (part.carried == 0) {
                count_member();
                out_.add(R"("unknown":0,"missing":0,"parts":[])");
                return;
            }
            key(R"("unknown":0,"missing":0,"parts")");
            parts(kind_and_file, place, record, part, words);
            return;
        }
        add("\"unknown\"", part.unknown);
        add("\"missing\"", part.missing);
        if (!noted.segments.empty()) segments(noted);
        if (words) {
            words_of(record, part);
            details(record, part);
        }
        key("\"parts\"");
        parts(kind_and_file, place, record, part, words);
    }

  private:
    void parts(std::string_view kind_and_file, const CapturedMessage& place, const Record& record,
               const Record::Part& part, bool words) {
        StartArray();
        for (const std::uint32_t carried : record.carried(part)) {
            message(kind_and_file, place, record, carried, words);
            EndObject();
        }
        EndArray();
    }
    void string(std::string_view value) {
        Prefix(rapidjson::kStringType);
        add_json_string(value, ascii_, out_);
    }
    static std::string_view status(Decoded decoded) {
        return decoded == Decoded::refused ? R"(refused","reason":"unknown_class)" : data::name_of(decoded);
    }

    void name(std::string_view value) {
        Prefix(value.empty() ? rapidjson::kNullType : rapidjson::kStringType);
        out_.add(OwnName{value});
    }

    void segments(const NotedMessage& noted) {
        key("\"segments\"");
        StartArray();
        for (const std::uint64_t segment : noted.segments) number(segment);
        EndArray();
    }

    void number(std::uint64_t n) {
        Prefix(rapidjson::kNumberType);
        out_.print("{-}"_cf, n);
    }
    void signed_number(std::int64_t n) {
        Prefix(rapidjson::kNumberType);
        out_.print("{-}"_cf, n);
    }
    // A member is written next, past the writer, which counts its name and its value.
    void count_member() {
        auto* const level = level_stack_.template Top<Level>();
        if (level->valueCount > 0) out_.add(",");
        level->valueCount += 2;
    }
    void begin_member(std::string_view name) {
        count_member();
        out_.print("{-}:"_cf, OwnName{name});
    }

    void value(const Record& record, const NotedValue& v) {
        Prefix(rapidjson::kStringType);
        add_value(record, v);
    }
    void add_value(const Record& record, const NotedValue& v) {
        const std::string_view shown = record.shown(v);
        char* const room = out_.room(data::room_for_value(v.meaning, shown));
        const std::string_view words = data::value(v.meaning, shown, room);
        switch (v.meaning.kind) {
            case Kind::number:
                out_.written_to(room + words.size());
                break;
            case Kind::flag:
                out_.add(words);
                break;
            case Kind::bytes:
                out_.print("\"{-}\""_cf, std::string(words));
                break;
            case Kind::word:
            case Kind::address:
            case Kind::text:
            case Kind::version:
                add_json_string(words, ascii_, out_);
                break;
        }
    }

    // A name that stands several times has an array.
    void fields(const Record& record, const Record::Part& part) {
        StartObject();
        order(record, part);
        for (std::size_t k = 0; k < order_.size();) {
            const std::string_view name = record.value(order_[k]).name;
            std::size_t end = k + 1;
            while (end < order_.size() && record.value(order_[end]).field == record.value(order_[k]).field)
                ++end;
            if (end - k == 1) {
                begin_member(name);
                add_value(record, record.value(order_[k]));
            } else {
                key("");
                out_.add(OwnName{name});
                StartArray();
                for (std::size_t i = k; i < end; ++i) value(record, record.value(order_[i]));
                EndArray();
            }
            k = end;
        }
        EndObject();
    }

    // The values of a name behind its first one, the names in the order of the text.
    void order(const Record& record, const Record::Part& part) {
        constexpr std::size_t few = 16;
        const auto values = record.values(part);
        order_.assign(values.begin(), values.end());
        const auto name = [&](std::uint32_t k) { return record.value(k).name; };
        const auto field = [&](std::uint32_t k) { return record.value(k).field; };
        bool repeats = order_.size() > few;
        for (std::size_t i = 1; i < order_.size() && !repeats; ++i) {
            for (std::size_t k = 0; k < i && !repeats; ++k) repeats = field(order_[i]) == field(order_[k]);
        }
        if (!repeats) return;
        std::stable_sort(order_.begin(), order_.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return name(a) < name(b); });
        // Where the first of each name stands decides.
        first_.clear();
        for (std::size_t k = 0; k < order_.size(); ++k) {
            const bool same = k > 0 && name(order_[k]) == name(order_[k - 1]);
            first_.emplace_back(same ? first_.back().first : order_[k], order_[k]);
        }
        std::stable_sort(first_.begin(), first_.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        for (std::size_t k = 0; k < order_.size(); ++k) order_[k] = first_[k].second;
    }

    // Offsets in the bytes of the message, where they are its bytes.
    void ranges(const Record& record, const Record::Part& part, std::span<const ByteRange> ranges,
                std::uint32_t message) {
        key("\"bytes\"");
        StartArray();
        const NotedMessage& of = record.trail().messages()[message];
        const std::uint32_t origin = part.noted->origin;
        for (const ByteRange& r : ranges) {
            if (!record.same_source(part, of) || r.first < origin || r.last - origin >= part.bytes.size())
                continue;
            StartArray();
            number(r.first - origin);
            number(r.last - origin);
            EndArray();
        }
        EndArray();
    }
    void words_of(const Record& record, const Record::Part& part) {
        key("\"words\"");
        StartArray();
        for (const Stretch& s : record.stretches(part)) {
            const std::uint32_t end = std::min(s.end, part.end);
            StartObject();
            add("\"text\"", record.text(part).substr(s.begin - part.begin, end - s.begin));
            add("\"begin\"", s.begin - part.begin);
            add("\"end\"", end - part.begin);
            ranges(record, part, record.trail().bytes_of(s), s.message);
            if (s.value != Stretch::no_value && s.value < record.trail().values().size()) {
                key("\"field\"");
                name(record.value(s.value).name);
            }
            if (s.missing) {
                key("\"missing\"");
                Bool(true);
            }
            EndObject();
        }
        EndArray();
    }

    void details(const Record& record, const Record::Part& part) {
        key("\"fields_detail\"");
        StartArray();
        for (const std::uint32_t index : record.values(part)) {
            const NotedValue& v = record.value(index);
            StartObject();
            key("\"name\"");
            name(v.name);
            key("\"kind\"");
            name(data::name_of(v.meaning.kind));
            key("\"value\"");
            value(record, v);
            key("\"unit\"");
            name(v.field->unit);
            key("\"code\"");
            if (v.meaning.kind == Kind::word) {
                signed_number(v.meaning.number);
            } else {
                Null();
            }
            key("\"known\"");
            Bool(v.meaning.known);
            key("\"missing\"");
            Bool(v.missing);
            key("\"sensitivity\"");
            name(data::name_of(v.field->sensitivity));
            const auto [begin, end] = Record::stand(part, v);
            add("\"begin\"", begin);
            add("\"end\"", end);
            ranges(record, part, record.trail().bytes_of(v), v.message);
            EndObject();
        }
        EndArray();
    }

    Text& out_;
    bool ascii_;
    bool column_numbers_;
    Stream stream_;
    std::vector<std::uint32_t> order_;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> first_;
};

NdjsonReport::NdjsonReport(std::string_view file, const Options& options, Output& out)
    : options_(options),
      out_(out),
      writer_(std::make_unique<Writer>(out.escapes(), options.column_numbers, out.text)) {
    Text name;
    add_json_string(file, out.escapes(), name);
    const auto keys = [&](std::string_view kind) {
        return formatted("\"kind\":\"{-}\",\"file\":{-},\"line\""_cf, kind, name.view());
    };
    message_ = keys("message");
    refused_ = keys("refused");
    other_ = keys("other");
    trace_ = keys("trace");
}

NdjsonReport::~NdjsonReport() = default;

FieldsAsJson::FieldsAsJson() : writer_(std::make_unique<NdjsonReport::Writer>(false, false, text_)) {}

FieldsAsJson::~FieldsAsJson() = default;

std::string_view FieldsAsJson::of(const Record& record, const Record::Part& part) {
    text_.clear();
    writer_->only_fields(record, part);
    return text_.view();
}

std::optional<Trail::What> NdjsonReport::notes() const {
    return options_.words ? Trail::What::words : Trail::What::values;
}

void NdjsonReport::content(std::string_view kind, std::uint64_t number, std::string_view words) {
    writer_->begin(kind, number);
    writer_->add("\"content\"", words);
    writer_->end();
}

void NdjsonReport::other(std::uint64_t number, std::string_view line, bool /*newline*/) {
    content(other_, number, line);
}

void NdjsonReport::begin_line(Line /*line*/) {
    said_ = false;
    begin_ = out_.text.size();
}

void NdjsonReport::begin_bytes(std::span<const std::uint8_t> /*bytes*/) { begin_line({}); }

Text& NdjsonReport::begin_message(const CapturedMessage& /*captured*/) {
    decoded_.clear();
    begin_ = out_.text.size();
    return decoded_;
}

void NdjsonReport::trace(std::uint64_t number, std::string_view words) { content(trace_, number, words); }

void NdjsonReport::message(const Said& said) {
    said_ = true;
    if (options_.only_texts && said.text.empty()) return;
    record_.take(said.trail, said.text, *said.captured.message, said.outcome);
    writer_->message(message_, said.captured, record_, 0, options_.words);
    if (said.captured.padded > 0) {
        writer_->add("\"padded\"", said.captured.padded);
    }
    if (!said.captured.prefix.empty()) writer_->add("\"prefix\"", said.captured.prefix);
    if (said.captured.left_over > 0) writer_->add("\"left_over\"", said.captured.left_over);
    if (said.captured.cut_short > 0) writer_->add("\"cut_short\"", said.captured.cut_short);
    writer_->end();
}

void NdjsonReport::unfinished(const Said& said, Text& why) {
    message(said);
    add_uncoloured(said.text, why);
}

void NdjsonReport::refused(std::uint64_t number, Line line, const Refusal& refusal) {
    said_ = true;
    writer_->begin(refused_, number);
    writer_->add("\"column\"", refusal.column + 1);
    writer_->add("\"reason\"", ztdecode::name_of(refusal.reason));
    writer_->add("\"expected\"", refusal.expected);
    writer_->add("\"found\"", refusal.found);
    writer_->add("\"content\"", {line.text, line.length});
    writer_->end();
}

// Every line is an object, or several.
void NdjsonReport::end_line(std::uint64_t number, Line line) {
    if (!said_) other(number, {line.text, line.length}, true);
}

bool NdjsonReport::let_out(std::size_t besides) {
    constexpr std::size_t most_held = std::size_t{1} << 20;
    if (out_.text.size() + besides < most_held) return false;
    out_.flush();
    begin_ = 0;
    return true;
}

void NdjsonReport::no_memory() {
    out_.text.cut(begin_);
    out_.flush_and_release();
    writer_ = std::make_unique<Writer>(out_.escapes(), options_.column_numbers, out_.text);
    decoded_ = Text();
    record_ = Record();
}

}  // namespace ztdecode::tool
