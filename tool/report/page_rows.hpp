#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/record.hpp"
#include "decode/trace_lines.hpp"

namespace ztdecode::tool {

// Numbers and words as the page's script reads them: a number in groups of seven bits, the low ones first,
// and words behind their number of bytes.
class PageBytes {
  public:
    void number(std::uint64_t n) {
        for (; n >= 0x80; n >>= 7) bytes_.push_back(static_cast<char>(n | 0x80));
        bytes_.push_back(static_cast<char>(n));
    }
    // Small ones of either sign are short.
    void signed_number(std::int64_t n) {
        number(static_cast<std::uint64_t>(n) << 1 ^ static_cast<std::uint64_t>(n >> 63));
    }
    void words(std::string_view s) {
        number(s.size());
        bytes_ += s;
    }
    void raw(std::string_view s) { bytes_ += s; }

    std::string_view view() const noexcept { return bytes_; }
    std::size_t size() const noexcept { return bytes_.size(); }
    void cut(std::size_t n) noexcept { bytes_.resize(n); }

  private:
    std::string bytes_;
};

// Rows of the page, some thousand of them: messages, refused lines and all others. They are kept in columns,
// which pack better than rows: what messages have in common (their words, where the values stand and which
// bytes they come from) is a shape, which is kept once; a row has its shape, its bytes, and those of its
// values that do not follow from them. web/records/block.js reads this.
class PageRows {
  public:
    // `kind`: what it is counted as (PageWriter::Kinds).
    void message(std::uint32_t kind, const CapturedMessage& captured, const Record& record);
    void refused(std::uint32_t kind, std::uint64_t line, std::string_view content, std::size_t column,
                 std::string_view why);
    void other(std::uint32_t kind, std::uint64_t line, std::string_view content);

    std::uint32_t size() const noexcept { return rows_; }
    // There was no memory for a row: what is there stands, and nothing more may be added.
    bool closed() const noexcept { return closed_; }
    std::size_t bytes() const noexcept;
    std::uint64_t first_line() const noexcept { return first_line_; }
    std::string_view kinds() const noexcept { return kinds_.view(); }
    // Of all_fields, those that a row has.
    const std::vector<bool>& used_fields() const noexcept { return used_fields_; }

    void write(PageBytes& out) const;

  private:
    enum class Row : unsigned char { message, refused, other };
    // Where a value comes from.
    enum class Rule : unsigned char {
        stored,
        word,
        same_bytes,
        decimal,
        hex,
        upper_hex,
        big,
        little,
        dotted
    };

    template <class Write>
    void add_row(std::uint32_t kind, std::uint64_t line, Write write);
    void place(const CapturedMessage& captured);
    void behind(std::string_view words, std::string& before);
    void words(const Record& record);
    void word(const Record& record, std::uint32_t index, const Stretch& stretch);
    void value(const NotedValue& value, std::string_view shown, std::span<const std::uint8_t> from);
    std::span<const std::uint8_t> bytes_of(std::span<const ByteRange> ranges,
                                           std::span<const std::uint8_t> source);
    std::uint64_t dictionary_word(std::string_view shown, const Meaning& meaning);
    void ranges(std::span<const ByteRange> ranges, std::size_t length);
    void fields(const Record& record);
    void field(const Record& record, std::uint32_t part, std::uint32_t index);
    void parts(const CapturedMessage& captured, const Record& record);
    void part(const Record& record, std::uint32_t k);
    void find_sources(const Record& record);

    bool closed_ = false;
    std::uint32_t rows_ = 0;
    std::uint64_t first_line_ = 0;
    std::uint64_t line_ = 0;
    std::int64_t number_ = 0;  // that the last columns were
    std::string prefix_;
    std::string time_;

    PageBytes shapes_;
    PageBytes dictionary_;
    PageBytes shape_of_;  // each row's
    PageBytes kinds_;     // each row's, for those who count them and need nothing else
    PageBytes lines_;
    PageBytes places_;
    PageBytes lengths_;
    PageBytes message_bytes_;
    PageBytes values_;
    std::unordered_map<std::string, std::uint64_t> known_shapes_;
    std::unordered_map<std::string, std::uint64_t> known_words_;
    std::vector<bool> used_fields_ = std::vector<bool>(std::size(all_fields));

    // Of the row at hand.
    PageBytes shape_;
    std::vector<std::uint32_t>
        sources_;  // of each noted message: the part whose bytes offsets in it count in
    std::vector<std::uint32_t> word_of_;  // of each value: the word that shows it, from 1 on; or 0
    std::vector<std::uint8_t> gathered_;
    std::string room_;
};

}  // namespace ztdecode::tool
