#include "tool/report/page_rows.hpp"

#include <algorithm>
#include <array>
#include <concepts>
#include <utility>

#include "core/data.hpp"

namespace ztdecode::tool {

namespace {

std::string_view characters(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};  // NOLINT: bytes as characters
}

// A short text that is made of a few bytes, to be compared with what is shown.
class Made {
  public:
    void add(char c) { text_[size_++] = c; }
    void add_decimal(std::uint32_t n) {
        if (n >= 10) add_decimal(n / 10);
        add(static_cast<char>('0' + n % 10));
    }
    bool operator==(std::string_view shown) const { return shown == std::string_view(text_.data(), size_); }

  private:
    std::array<char, 24> text_{};
    std::size_t size_ = 0;
};

Made decimal(std::uint32_t n) {
    Made made;
    made.add_decimal(n);
    return made;
}

Made digits(std::uint8_t byte, const char* of) {
    Made made;
    made.add(of[byte >> 4]);
    made.add(of[byte & 15]);
    return made;
}

Made dotted(std::span<const std::uint8_t> bytes) {
    Made made;
    for (std::size_t k = 0; k < bytes.size(); ++k) {
        if (k > 0) made.add('.');
        made.add_decimal(bytes[k]);
    }
    return made;
}

std::string_view without(std::string_view number, std::string_view front) {
    return number.starts_with(front) ? number.substr(front.size()) : number;
}

bool is_hexadecimal_of(std::string_view shown, std::int64_t number) {
    constexpr std::size_t most_digits = 12;
    const std::string_view hexadecimal = without(without_punctuation(shown), "0x");
    if (hexadecimal.empty() || hexadecimal.size() > most_digits) return false;
    std::int64_t n = 0;
    for (const char c : hexadecimal) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                 : -1;
        if (digit < 0) return false;
        n = n * 16 + digit;
    }
    return n == number;
}

bool is_word(const Meaning& meaning) { return meaning.kind == Kind::word || meaning.kind == Kind::flag; }

bool is_number(std::string_view words) {
    return words.size() == 6 && std::ranges::all_of(words, [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t number_of(std::string_view decimal_digits) {
    std::int64_t n = 0;
    for (const char c : decimal_digits) n = n * 10 + (c - '0');
    return n;
}

// A length in what has so many bytes: one that reaches to the end is the same for all messages.
std::uint64_t up_to_end(std::size_t begin, std::size_t end, std::size_t size) {
    return end == size ? 0 : 1 + (end - begin);
}

// What is the case, the first one as the lowest bit.
template <std::same_as<bool>... Bits>
std::uint64_t flags(Bits... bits) {
    std::uint64_t all = 0;
    std::uint64_t bit = 1;
    ((all |= bits ? bit : 0, bit <<= 1), ...);
    return all;
}

// How a field's value follows from the word that shows it.
enum class Form : unsigned char { as_shown, hexadecimal, stored, flag, digits, hidden_word };

Form form_of(const Meaning& meaning, std::string_view shown, std::string_view said, bool has_word) {
    if (!has_word) return meaning.kind == Kind::word ? Form::hidden_word : Form::stored;
    if (meaning.kind == Kind::flag) return Form::flag;
    if (meaning.kind == Kind::bytes) return Form::digits;
    if (said == without_punctuation(shown)) return Form::as_shown;
    const bool whole = meaning.kind == Kind::number && meaning.tenths == 0;
    return whole && is_hexadecimal_of(shown, meaning.number) ? Form::hexadecimal : Form::stored;
}

}  // namespace

std::size_t PageRows::bytes() const noexcept {
    return shapes_.size() + dictionary_.size() + message_bytes_.size() + values_.size() + places_.size();
}

// Either the whole row is there, or nothing of it.
template <class Write>
void PageRows::add_row(std::uint32_t kind, std::uint64_t line, Write write) {
    const std::array columns = {&shape_of_, &kinds_, &lines_, &places_, &lengths_, &message_bytes_, &values_};
    std::array<std::size_t, columns.size()> sizes{};
    std::ranges::transform(columns, sizes.begin(), [](const PageBytes* c) { return c->size(); });
    try {
        shape_.cut(0);
        shape_.number(kind);
        write();
        const auto [known, fresh] =
            known_shapes_.try_emplace(std::string(shape_.view()), known_shapes_.size());
        if (fresh) shapes_.words(shape_.view());
        shape_of_.number(known->second);
        kinds_.number(kind);
        lines_.signed_number(static_cast<std::int64_t>(line - (rows_ == 0 ? line : line_)));
    } catch (...) {
        for (std::size_t k = 0; k < columns.size(); ++k) columns[k]->cut(sizes[k]);
        closed_ = true;
        throw;
    }
    if (rows_ == 0) first_line_ = line;
    line_ = line;
    ++rows_;
}

void PageRows::message(std::uint32_t kind, const CapturedMessage& captured, const Record& record) {
    add_row(kind, captured.number, [&] {
        shape_.number(static_cast<std::uint64_t>(Row::message));
        place(captured);
        const auto bytes = record.part(0).bytes;
        lengths_.number(bytes.size());
        message_bytes_.raw(characters(bytes));
        find_sources(record);
        words(record);
        fields(record);
        parts(captured, record);
    });
}

void PageRows::refused(std::uint32_t kind, std::uint64_t line, std::string_view content, std::size_t column,
                       std::string_view why) {
    add_row(kind, line, [&] {
        shape_.number(static_cast<std::uint64_t>(Row::refused));
        values_.words(content);
        values_.number(column);
        values_.words(why);
    });
}

void PageRows::other(std::uint32_t kind, std::uint64_t line, std::string_view content) {
    add_row(kind, line, [&] {
        shape_.number(static_cast<std::uint64_t>(Row::other));
        values_.words(content);
    });
}

// The columns in front of a message mostly count up. 0: there are none, 1: words, 2: the difference to the
// last number. Then what a log wrote in front, and the time.
void PageRows::place(const CapturedMessage& captured) {
    if (!captured.has_columns) {
        places_.number(0);
    } else if (is_number(captured.columns)) {
        const std::int64_t number = number_of(captured.columns);
        places_.number(2);
        places_.signed_number(number - number_);
        number_ = number;
    } else {
        places_.number(1);
        places_.words(captured.columns);
    }
    behind(captured.prefix, prefix_);
    behind(captured.time, time_);
}

// Words that mostly begin like the last ones: how many characters they have in common, and what stands
// behind.
void PageRows::behind(std::string_view words, std::string& before) {
    const auto [mine, theirs] = std::ranges::mismatch(words, before);
    const auto common = static_cast<std::size_t>(mine - words.begin());
    places_.number(common);
    places_.words(words.substr(common));
    before = words;
}

void PageRows::find_sources(const Record& record) {
    const auto& messages = record.trail().messages();
    sources_.assign(messages.size(), 0);
    if (messages.size() == 1) return;
    for (std::size_t k = 1; k < messages.size(); ++k) {
        const NotedMessage* source = &messages[k];
        while (source->bytes.empty() && source->carrier != NotedMessage::no_message)
            source = &messages[source->carrier];
        for (std::uint32_t p = 1; p < record.size(); ++p) {
            if (record.part(p).noted == source) sources_[k] = p;
        }
        // Offsets that count in bytes which no part has lead nowhere.
        const bool lost = sources_[k] == 0 && source->carrier != NotedMessage::no_message;
        if (lost) sources_[k] = NotedMessage::no_message;
    }
}

void PageRows::words(const Record& record) {
    const auto stretches = record.stretches(record.part(0));
    word_of_.assign(record.trail().values().size(), 0);
    shape_.number(stretches.size());
    for (std::uint32_t k = 0; k < stretches.size(); ++k) word(record, k, stretches[k]);
}

void PageRows::word(const Record& record, std::uint32_t index, const Stretch& stretch) {
    const auto& values = record.trail().values();
    const bool shows = stretch.value != Stretch::no_value && stretch.value < values.size();
    const std::uint32_t source = sources_[stretch.message];
    const bool has_bytes = source != NotedMessage::no_message;
    const auto own = has_bytes ? record.part(source).bytes : std::span<const std::uint8_t>();
    const auto bytes = has_bytes ? record.trail().bytes_of(stretch) : std::span<const ByteRange>();
    const bool known = shows && values[stretch.value].meaning.known;
    shape_.number(flags(shows, stretch.missing, source != 0 && has_bytes, known));
    if (source != 0 && has_bytes) shape_.number(source);
    ranges(bytes, own.size());
    const Record::Part& whole = record.part(0);
    const std::uint32_t end = std::min(stretch.end, whole.end);
    const std::string_view shown =
        record.text(whole).substr(stretch.begin - whole.begin, end - stretch.begin);
    if (shows) {
        word_of_[stretch.value] = index + 1;
        value(values[stretch.value], shown, bytes_of(bytes, own));
    } else {
        shape_.words(shown);
    }
}

void PageRows::ranges(std::span<const ByteRange> ranges, std::size_t length) {
    shape_.number(ranges.size());
    for (const ByteRange& r : ranges) {
        shape_.number(r.first);
        shape_.number(up_to_end(r.first, std::size_t{r.last} + 1, length));
    }
}

std::span<const std::uint8_t> PageRows::bytes_of(std::span<const ByteRange> ranges,
                                                 std::span<const std::uint8_t> source) {
    if (ranges.size() == 1 && ranges[0].last < source.size())
        return source.subspan(ranges[0].first, ranges[0].last - ranges[0].first + 1);
    gathered_.clear();
    for (const ByteRange& r : ranges) {
        if (r.last >= source.size()) return {};
        gathered_.insert(gathered_.end(), source.begin() + r.first, source.begin() + r.last + 1);
    }
    return gathered_;
}

// Most values say what their bytes say, one way or another: of those only the way is kept.
void PageRows::value(const NotedValue& value, std::string_view shown, std::span<const std::uint8_t> from) {
    Rule rule = Rule::stored;
    const std::size_t n = from.size();
    if (is_word(value.meaning)) {
        rule = Rule::word;
    } else if (n > 0 && shown == characters(from)) {
        rule = Rule::same_bytes;
    } else if (n == 1) {
        rule = decimal(from[0]) == shown                      ? Rule::decimal
               : digits(from[0], "0123456789abcdef") == shown ? Rule::hex
               : digits(from[0], "0123456789ABCDEF") == shown ? Rule::upper_hex
                                                              : Rule::stored;
    } else if (n == 2) {
        rule = decimal(from[0] * 256U + from[1]) == shown   ? Rule::big
               : decimal(from[1] * 256U + from[0]) == shown ? Rule::little
                                                            : Rule::stored;
    } else if (n == 4 && dotted(from) == shown) {
        rule = Rule::dotted;
    }
    shape_.number(static_cast<std::uint64_t>(rule));
    if (rule == Rule::stored) values_.words(shown);
    if (rule == Rule::word) values_.number(dictionary_word(shown, value.meaning));
}

// A word of a table stands once, with its code and whether the table knows it.
std::uint64_t PageRows::dictionary_word(std::string_view shown, const Meaning& meaning) {
    PageBytes entry;
    entry.words(shown);
    entry.signed_number(meaning.number);
    entry.number(meaning.known ? 1 : 0);
    const auto [known, fresh] = known_words_.try_emplace(std::string(entry.view()), known_words_.size());
    if (fresh) dictionary_.raw(entry.view());
    return known->second;
}

void PageRows::fields(const Record& record) {
    std::size_t count = 0;
    for (std::size_t k = 0; k < record.size(); ++k) count += record.values(record.part(k)).size();
    shape_.number(count);
    for (std::uint32_t k = 0; k < record.size(); ++k) {
        for (const std::uint32_t index : record.values(record.part(k))) field(record, k, index);
    }
}

void PageRows::field(const Record& record, std::uint32_t part, std::uint32_t index) {
    const NotedValue& value = record.value(index);
    const auto name = static_cast<std::size_t>(value.field - std::begin(all_fields));
    used_fields_[name] = true;
    const std::string_view shown = record.shown(value);
    room_.resize(data::room_for_value(value.meaning, shown));
    const std::string_view said = data::value(value.meaning, shown, room_.data());
    const Form form = form_of(value.meaning, shown, said, word_of_[index] != 0);
    shape_.number(part);
    shape_.number(name);
    shape_.number(static_cast<std::uint64_t>(value.meaning.kind));
    shape_.number(flags(value.meaning.known, value.missing));
    shape_.number(word_of_[index]);
    shape_.number(static_cast<std::uint64_t>(form));
    if (form == Form::stored) values_.words(said);
    if (form == Form::hidden_word) values_.number(dictionary_word(said, value.meaning));
}

void PageRows::parts(const CapturedMessage& captured, const Record& record) {
    shape_.number(captured.left_over);
    shape_.number(captured.cut_short);
    shape_.number(captured.shortage != nullptr ? captured.shortage->expected - captured.shortage->found : 0);
    shape_.number(record.size());
    for (std::uint32_t k = 0; k < record.size(); ++k) part(record, k);
}

void PageRows::part(const Record& record, std::uint32_t k) {
    const Record::Part& part = record.part(k);
    const NotedMessage& noted = *part.noted;
    shape_.number(noted.code == NotedMessage::no_code ? 0 : std::uint64_t{noted.code} + 1);
    shape_.number(part.unknown);
    shape_.number(part.missing);
    if (k == 0) return;  // The rest is known of its kind.
    shape_.number(part.carrier);
    shape_.words(noted.link);
    shape_.words(noted.name);
    shape_.number(noted.direction);
    shape_.number(static_cast<std::uint64_t>(part.decoded));
    shape_.number(part.first_stretch - record.part(0).first_stretch);
    shape_.number(part.stretches);
    const bool own = !noted.bytes.empty() || (!noted.segments.empty() && part.bytes.empty());
    shape_.number(own ? 1 : 0);
    if (own) {
        values_.words(characters(part.bytes));
        values_.number(noted.segments.size());
        for (const std::uint64_t segment : noted.segments) values_.number(segment);
        return;
    }
    // Where its bytes stand in those of its source: a part of a part is a part of the whole.
    const auto index = static_cast<std::size_t>(&noted - record.trail().messages().data());
    const std::uint32_t source = sources_[index] == NotedMessage::no_message ? 0 : sources_[index];
    shape_.number(source);
    shape_.number(noted.origin);
    shape_.number(
        up_to_end(noted.origin, noted.origin + part.bytes.size(), record.part(source).bytes.size()));
}

void PageRows::write(PageBytes& out) const {
    out.number(rows_);
    out.number(first_line_);
    for (const PageBytes* column :
         {&shapes_, &dictionary_, &shape_of_, &lines_, &places_, &lengths_, &message_bytes_, &values_})
        out.words(column->view());
}

}  // namespace ztdecode::tool
