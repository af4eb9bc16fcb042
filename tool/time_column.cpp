#include "tool/time_column.hpp"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "tool/report/times.hpp"

namespace ztdecode::tool {

namespace {

constexpr std::int64_t second = 1000000;
constexpr std::int64_t day = 86400 * second;

// "-12.000345"
std::string seconds(std::int64_t microseconds) {
    const auto n = static_cast<std::uint64_t>(microseconds < 0 ? -microseconds : microseconds);
    char text[32];
    std::snprintf(text, sizeof text, "%s%llu.%06llu", microseconds < 0 ? "-" : "",
                  static_cast<unsigned long long>(n / second), static_cast<unsigned long long>(n % second));
    return text;
}

std::string date(const LogTime& time) {
    const std::int64_t part = (time.microseconds % second + second) % second;
    const auto whole = static_cast<std::time_t>((time.microseconds - part) / second);
    std::tm parts{};
    ::gmtime_r(&whole, &parts);
    char text[64];
    const std::size_t n =
        std::strftime(text, sizeof text, time.of_day ? "%H:%M:%S" : "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + n, sizeof text - n, ".%06u", static_cast<unsigned>(part));
    return text;
}

}  // namespace

// A time of day goes on behind midnight.
std::string_view TimeColumn::of(const CapturedMessage& captured) {
    const std::size_t width = shown_ == TimeShown::absolute ? 26 : 14;
    const std::optional<LogTime> time = time_of(captured, column_unit(columns_));
    column_.clear();
    if (time) {
        std::int64_t delta = last_ ? time->microseconds - *last_ : 0;
        if (time->of_day && delta < -day / 2) delta += day;
        since_first_ += delta;
        last_ = time->microseconds;
        const bool counted = columns_ == Columns::seconds || columns_ == Columns::milliseconds;
        column_ = shown_ == TimeShown::relative ? seconds(since_first_)
                  : shown_ == TimeShown::delta  ? seconds(delta)
                  : counted                     ? seconds(time->microseconds)
                                                : date(*time);
    }
    column_.insert(0, width - std::min(width, column_.size()), ' ');
    column_ += "  ";
    return column_;
}

}  // namespace ztdecode::tool
