#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "decode/trace_lines.hpp"
#include "tool/options.hpp"

namespace ztdecode::tool {

// The times of a trace as a column in front of its lines.
class TimeColumn {
  public:
    TimeColumn(TimeShown shown, Columns columns) noexcept : shown_(shown), columns_(columns) {}

    // For the next line, as wide as for the others; valid until the next call.
    std::string_view of(const CapturedMessage& captured);

  private:
    std::optional<LogTime> time_of(const CapturedMessage& captured) const;

    TimeShown shown_;
    Columns columns_;
    std::optional<std::int64_t> last_;
    std::int64_t since_first_ = 0;
    std::string column_;
};

}  // namespace ztdecode::tool
