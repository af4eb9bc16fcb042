#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "decode/trace_lines.hpp"
#include "tool/options.hpp"

namespace ztdecode::tool {

// Microseconds that columns count in which are a time, 0 for others.
constexpr std::int64_t column_unit(Columns columns) {
    return columns == Columns::seconds ? 1000000 : columns == Columns::milliseconds ? 1000 : 0;
}

// The times of a trace as a column in front of its lines.
class TimeColumn {
  public:
    TimeColumn(TimeShown shown, Columns columns) noexcept : shown_(shown), columns_(columns) {}

    // For the next line, as wide as for the others; valid until the next call.
    std::string_view of(const CapturedMessage& captured);

  private:
    TimeShown shown_;
    Columns columns_;
    std::optional<std::int64_t> last_;
    std::int64_t since_first_ = 0;
    std::string column_;
};

}  // namespace ztdecode::tool
