#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Trace lines as people and programs write them besides: tabs and several blanks where one is usual, blanks
// or a byte order mark in front, capitals in the tag, s and r for the column, "0x" before bytes.

namespace ztdecode {

// In front of some files' first line: U+FEFF in UTF-8.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// A line in the spelling that the readers know, and where its characters stood in the line as it came.
class SpelledLine {
  public:
    // Takes a line; false when nothing in it needs another spelling, or it is no trace line in any.
    bool take(std::string_view line);

    std::string_view text() const noexcept { return text_; }
    std::size_t column(std::size_t spelled) const noexcept {
        return spelled < columns_.size() ? columns_[spelled] : end_;
    }

  private:
    bool take_tag(std::string_view line, std::size_t at);
    bool take_column(std::string_view line, std::size_t at, bool any_characters);
    bool take_fields(std::string_view line, std::size_t at, std::size_t least);
    void add(char c, std::size_t column);

    std::string text_;
    std::vector<std::size_t> columns_;
    std::size_t end_ = 0;
};

}  // namespace ztdecode
