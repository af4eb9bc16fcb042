#include "tool/report/times.hpp"

#include <charconv>

namespace ztdecode::tool {

std::optional<LogTime> time_of(const CapturedMessage& captured, std::int64_t unit) {
    if (unit == 0) return captured.time.empty() ? std::nullopt : log_time(captured.time);
    std::int64_t n = 0;
    const char* const end = captured.time.data() + captured.time.size();
    const auto read = std::from_chars(captured.time.data(), end, n);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    std::int64_t microseconds = 0;
    if (__builtin_mul_overflow(n, unit, &microseconds)) return std::nullopt;
    return LogTime{microseconds, false};
}

}  // namespace ztdecode::tool
