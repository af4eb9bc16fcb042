#pragma once

#include <time.h>

#include <cstddef>
#include <string_view>

#include "core/message.hpp"

// What decoding may cost, whatever the bytes are: the bounds that tests and fuzz targets hold every message
// to.

namespace ztdecode::fuzz {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool sanitized = true;
#elif defined(__has_feature)
inline constexpr bool sanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool sanitized = false;
#endif

// What a message says that carries no other. A property's value may claim 32767 bytes, and shows the ones
// that are not there, as "\NUL" at the longest, in the text and once more in the names of its characters.
// Lists of 255 rows are the longest of all else (a row of tones has 70 characters). Each byte of the message
// adds at most a line of its own.
constexpr std::size_t own_text(std::size_t bytes) { return 300000 + 200 * bytes; }

// What one captured message may write for all that it carries. The traces have the same bound.
inline constexpr std::size_t carried_text = std::size_t{16} << 20;
inline constexpr std::size_t most_complaints = std::size_t{64} << 10;

// The carried message that is being written when that is used up is written to its end; it may be a
// reassembled one, and then be longer than what was captured.
constexpr std::size_t longest_text(std::size_t bytes) {
    return carried_text + own_text(bytes) + own_text(message_capacity);
}

// For one captured message, in seconds of the processor: many times what it takes.
inline constexpr double longest_time = sanitized ? 60 : 2;

inline double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// What was written and used.
struct Cost {
    std::size_t text = 0;
    std::size_t output = 0;      // on standard output
    std::size_t complaints = 0;  // on standard error
    double seconds = 0;

    Cost& operator+=(const Cost& other) {
        text += other.text;
        output += other.output;
        complaints += other.complaints;
        seconds += other.seconds;
        return *this;
    }
};

// The bound that is exceeded by what so many captured messages with so many bytes in all cost; nothing when
// all of them hold.
inline std::string_view exceeded(const Cost& cost, std::size_t bytes, std::size_t messages = 1) {
    if (cost.text > messages * longest_text(bytes)) return "the text is within its bound";
    if (cost.output > messages * longest_text(bytes)) return "the traces are within their bound";
    if (cost.complaints > messages * most_complaints) return "the complaints are within their bound";
    if (cost.seconds > static_cast<double>(messages) * longest_time) return "the time is within its bound";
    return {};
}

}  // namespace ztdecode::fuzz
