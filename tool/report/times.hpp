#pragma once

#include <cstdint>
#include <optional>

#include "decode/line_prefix.hpp"
#include "decode/trace_lines.hpp"

namespace ztdecode::tool {

// The time of a message, where its trace gives one. `unit`: microseconds that the columns in front of it
// count in, 0 where they are no such count.
std::optional<LogTime> time_of(const CapturedMessage& captured, std::int64_t unit);

}  // namespace ztdecode::tool
