#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// What logs write in front of a trace line: a time, a host, words of their own.

namespace ztdecode {

struct LinePrefix {
    std::size_t length = 0;       // of it and the blanks behind it
    std::string_view text{};      // of it
    std::string_view time{};      // in it, empty when it has none
    std::string_view terminal{};  // what in it tells whose line it is
    std::optional<std::uint32_t> direction{};
};

// Finds the prefix of a line; false when it has none.
class PrefixFinder {
  public:
    PrefixFinder() = default;
    PrefixFinder(const PrefixFinder&) = delete;
    PrefixFinder& operator=(const PrefixFinder&) = delete;
    virtual ~PrefixFinder() = default;
    virtual bool find(std::string_view line, LinePrefix& prefix) const = 0;
};

// The next piece of a prefix at the front of these words, without the blanks behind it: a time (ISO 8601, of
// a day, as syslog writes it with host and program behind it, seconds since 1970) or words in brackets. False
// when there is none.
struct PrefixPiece {
    std::size_t length = 0;
    std::string_view time{};
};
bool find_prefix_piece(std::string_view words, PrefixPiece& piece);

// Such a time in microseconds: since 1970, or of a day (`of_day`), or since what only the log knows. Of a
// time without a zone as if it were UTC, of a syslog time as if in 1972.
struct LogTime {
    std::int64_t microseconds = 0;
    bool of_day = false;
};
std::optional<LogTime> log_time(std::string_view time);

}  // namespace ztdecode
