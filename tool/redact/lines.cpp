#include "tool/redact/lines.hpp"

#include <algorithm>

namespace ztdecode::tool {

namespace {

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_hex(char c) { return hex_digit(c) < 16; }

Line line_of(std::string_view words) { return {words.data(), words.size()}; }

void add_number(std::uint64_t number, std::string& words) {
    words.append(std::to_string(number)).push_back(' ');
}

// Letters that are no digit of a number: then the columns are words.
bool has_words(std::string_view columns) {
    return std::any_of(columns.begin(), columns.end(),
                       [](char c) { return (is_letter(c) && !is_hex(c)) || (c & '\x80') != 0; });
}

void replace_all(std::string& words, std::size_t begin, std::size_t end, const StandIns& stand_ins,
                 unsigned attempt) {
    std::vector<std::uint8_t> bytes(words.begin() + static_cast<std::ptrdiff_t>(begin),
                                    words.begin() + static_cast<std::ptrdiff_t>(end));
    stand_ins.text(bytes, attempt);
    std::copy(bytes.begin(), bytes.end(), words.begin() + static_cast<std::ptrdiff_t>(begin));
}

// But for the words that are kept.
void replace(std::string& words, std::size_t begin, std::size_t end, const StandIns& stand_ins,
             const Kept& kept, unsigned attempt) {
    for (std::size_t at = begin; at < end;) {
        std::size_t word = at;
        while (word < end && !is_letter(words[word]) && !is_digit(words[word])) ++word;
        std::size_t behind = word;
        while (behind < end && (is_letter(words[behind]) || is_digit(words[behind]))) ++behind;
        if (behind > word && kept.keeps(std::string_view(words).substr(word, behind - word))) {
            replace_all(words, begin, word, stand_ins, attempt);
            begin = behind;
        }
        at = behind;
    }
    if (begin < end) replace_all(words, begin, end, stand_ins, attempt);
}

}  // namespace

LineVerdict RedactedLine::read(TraceReader& reader, std::string_view line, std::uint64_t number) {
    text_.assign(line);
    number_ = number;
    messages_.clear();
    columns_.clear();
    refusal_ = {};
    left_over_ = left_over_column_ = 0;
    time_begin_ = time_end_ = 0;
    shape_.clear();
    front_ = text_;
    usual_.clear();
    verdict_ = reader.begin(line_of(text_), number);
    add_number(static_cast<std::uint64_t>(verdict_), shape_);
    if (verdict_ != LineVerdict::trace_line) return verdict_;
    usual_.assign(reader.line().text, reader.line().length);
    for (std::size_t k = 0; k < usual_.size(); ++k) columns_.push_back(reader.whole_column(k));
    has_columns_ = reader.captured().has_columns;
    const std::string_view time = reader.captured().time;
    if (!time.empty() && time.data() >= text_.data() && time.data() < text_.data() + text_.size()) {
        time_begin_ = static_cast<std::size_t>(time.data() - text_.data());
        time_end_ = time_begin_ + time.size();
    }
    shape_.append(time).push_back('\n');
    add_number(has_columns_ ? 1 : 0, shape_);
    while (reader.next()) {
        const CapturedMessage& captured = reader.captured();
        const auto bytes = captured.message->bytes();
        Message m;
        m.bytes.assign(bytes.begin(), bytes.end());
        m.direction = captured.message->direction;
        m.column = reader.place().column + 3 * reader.place().length_bytes;
        m.announced = reader.place().bytes;
        for (const std::uint64_t fact :
             {std::uint64_t{m.direction}, std::uint64_t{m.column}, m.announced, captured.left_over,
              std::uint64_t{captured.left_over_column}, std::uint64_t{captured.shortage != nullptr}})
            add_number(fact, shape_);
        if (captured.left_over > 0) {
            left_over_ = captured.left_over;
            left_over_column_ = captured.left_over_column;
        }
        messages_.push_back(std::move(m));
    }
    refusal_ = reader.refusal();
    for (const std::uint64_t fact :
         {static_cast<std::uint64_t>(refusal_.reason), std::uint64_t{refusal_.column}, refusal_.expected,
          refusal_.found, std::uint64_t{refusal_.length}})
        add_number(fact, shape_);
    capitals_ = std::any_of(usual_.begin() + static_cast<std::ptrdiff_t>(std::min(body(), usual_.size())),
                            usual_.end(), [](char c) { return c >= 'A' && c <= 'F'; });
    return verdict_;
}

std::size_t RedactedLine::body() const noexcept {
    if (has_columns_) return 8;
    return usual_.starts_with("zt ") ? 3 : 0;
}

std::size_t RedactedLine::end_of_messages() const noexcept {
    if (messages_.empty()) return body();
    const Message& last = messages_.back();
    return std::min<std::size_t>(usual_.size(), last.column + static_cast<std::size_t>(3 * last.announced));
}

// The character of the line that is read there, which may not be the one that came.
void RedactedLine::put(std::size_t column, char c, std::string& line) const {
    if (column >= columns_.size() || columns_[column] >= line.size()) return;
    char& at = line[columns_[column]];
    if ((at | 0x20) != (usual_[column] | 0x20)) return;
    at = c;
}

void RedactedLine::hide_front(const StandIns& stand_ins, const Kept& kept, unsigned attempt) {
    front_ = text_;
    prefix_hidden_ = 0;
    if (kept[Hidden::prefix]) return;
    const std::size_t begin = columns_.empty() ? 0 : columns_.front();
    const bool timed = time_end_ > time_begin_ && time_end_ <= begin;
    replace(front_, 0, timed ? time_begin_ : begin, stand_ins, kept, attempt);
    if (timed) replace(front_, time_end_, begin, stand_ins, kept, attempt);
    if (has_columns_ && time_end_ <= begin && has_words({usual_.data(), 6}) && columns_[5] == begin + 5)
        replace(front_, begin, begin + 6, stand_ins, kept, attempt);
    for (std::size_t k = 0; k < front_.size(); ++k) prefix_hidden_ += front_[k] != text_[k] ? 1 : 0;
}

// Digits of bytes become zeros, other words all the same.
void RedactedLine::hide_rest(std::size_t column) {
    rest_hidden_ = 0;
    for (; column < usual_.size(); ++column) {
        const char c = usual_[column];
        if (!is_digit(c) && !is_letter(c) && (c & '\x80') == 0) continue;
        put(column, is_hex(c) ? '0' : 'x', front_);
        ++rest_hidden_;
    }
}

bool RedactedLine::stands(TraceReader& reader) const {
    std::vector<const std::vector<std::uint8_t>*> bytes;
    for (const Message& m : messages_) bytes.push_back(&m.bytes);
    return reads_alike(reader, with(bytes), bytes);
}

bool RedactedLine::hide_surroundings(TraceReader& reader, const StandIns& stand_ins, const Kept& kept) {
    constexpr unsigned attempts = 4;
    unsigned attempt = 0;
    for (;; ++attempt) {
        if (attempt == attempts) return false;
        hide_front(stand_ins, kept, attempt);
        if (stands(reader)) break;
    }
    if (refusal_) {
        if (kept[Hidden::refused]) return true;
        constexpr std::size_t most_fields = 4;  // that say why it is refused
        const std::string front = front_;
        for (std::size_t field = 0; field < most_fields; ++field) {
            front_ = front;
            hide_rest(end_of_messages() + 3 * field);
            if (stands(reader)) return true;
        }
        return false;
    }
    if (left_over_ == 0 || kept[Hidden::left_over]) return true;
    hide_rest(left_over_column_);
    return stands(reader);
}

std::uint64_t RedactedLine::hidden(Hidden kind) const noexcept {
    if (kind == Hidden::prefix) return prefix_hidden_;
    if (kind == Hidden::refused) return refusal_ ? rest_hidden_ : 0;
    return kind == Hidden::left_over && !refusal_ ? rest_hidden_ : 0;
}

std::string RedactedLine::with(const std::vector<const std::vector<std::uint8_t>*>& bytes) const {
    std::string line = front_;
    const char* const digits = capitals_ ? "0123456789ABCDEF" : "0123456789abcdef";
    for (std::size_t k = 0; k < messages_.size(); ++k) {
        const Message& m = messages_[k];
        const std::vector<std::uint8_t>* const own = k < bytes.size() ? bytes[k] : nullptr;
        for (std::uint64_t at = 0; at < m.announced; ++at) {
            const std::size_t column = m.column + static_cast<std::size_t>(3 * at);
            if (column + 2 > usual_.size()) break;
            if (!is_hex(usual_[column]) || !is_hex(usual_[column + 1])) continue;
            const std::uint8_t byte = own != nullptr && at < own->size() ? (*own)[at] : std::uint8_t{0};
            const auto before =
                static_cast<std::uint8_t>(hex_digit(usual_[column]) << 4 | hex_digit(usual_[column + 1]));
            if (byte == before) continue;
            put(column, digits[byte >> 4], line);
            put(column + 1, digits[byte & 0x0F], line);
        }
    }
    return line;
}

bool RedactedLine::reads_alike(TraceReader& reader, std::string_view line,
                               const std::vector<const std::vector<std::uint8_t>*>& bytes) const {
    if (line == text_) {  // nothing but a message that cannot be written could differ
        for (std::size_t k = 0; k < messages_.size() && k < bytes.size(); ++k) {
            if (bytes[k] != nullptr && messages_[k].bytes != *bytes[k]) return false;
        }
        return true;
    }
    RedactedLine other;
    other.read(reader, line, number_);
    if (other.shape_ != shape_ || other.messages_.size() != messages_.size()) return false;
    for (std::size_t k = 0; k < messages_.size(); ++k) {
        if (k < bytes.size() && bytes[k] != nullptr && other.messages_[k].bytes != *bytes[k]) return false;
    }
    return true;
}

std::string blanked(std::string_view line, std::uint64_t& characters) {
    std::string words(line);
    std::size_t at = words.starts_with(byte_order_mark) ? byte_order_mark.size() : 0;
    for (; at < words.size(); ++at) {
        const auto lead = static_cast<unsigned char>(words[at]);
        if (lead < 0x80) {
            if (!is_letter(words[at]) && !is_digit(words[at])) continue;
            words[at] = 'x';
            ++characters;
            continue;
        }
        // As many bytes, and one character again where it was one.
        ++characters;
        const std::size_t n = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
        std::size_t there = 1;
        while (there < n && at + there < words.size() && (words[at + there] & '\xC0') == '\x80') ++there;
        constexpr std::string_view of_bytes[] = {"", "x", "\xC2\xB7", "\xE2\x80\xA2", "\xF0\x9F\x94\xB9"};
        const std::string_view stand_in = there == n ? of_bytes[n] : std::string_view();
        for (std::size_t k = 0; k < there; ++k) words[at + k] = stand_in.empty() ? 'x' : stand_in[k];
        at += there - 1;
    }
    return words;
}

}  // namespace ztdecode::tool
