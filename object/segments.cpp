#include "object/segments.hpp"

#include <algorithm>
#include <iterator>

namespace ztdecode::object {

namespace {

// A whole series is decoded with a length of 16 bits, and a last value that begins there may claim 15 bits
// more: no byte from here on is ever looked at. A series without an end, of short segments that count as long
// as the first, must not fill the memory.
constexpr std::uint32_t kept = 2 * 65536;

constexpr std::uint32_t payload_begin = 4;

std::uint32_t payload_length(const Message& frame) {
    const std::uint32_t length = segment_length(frame);
    return length > 2 ? length - 2 : 0;
}

// Lays bytes first ... first+n-1 of the frame at `at` of the gathered ones.
void lay(ObjectSegments& segments, std::uint32_t at, const Message& frame, std::uint32_t first,
         std::uint32_t n) {
    if (at >= kept) return;
    n = std::min(n, kept - at);
    if (segments.bytes.size() < at + n) segments.bytes.resize(at + n);
    for (std::uint32_t k = 0; k < n; ++k) segments.bytes[at + k] = frame[first + k];
}

void append(ObjectSegments& segments, const Message& frame, std::uint32_t n) {
    lay(segments, segments.filled, frame, payload_begin, n);
    segments.filled += n;
}

void begin_series(ObjectSegments& segments, const Message& frame) {
    segments.expects_first = false;
    segments.payload = payload_length(frame);
    segments.bytes.clear();
}

bool is_last(const Message& frame) { return frame[3] == 0; }

void append_last(ObjectSegments& segments, const Message& frame) {
    segments.expects_first = true;
    append(segments, frame, payload_length(frame));
}

}  // namespace

std::uint32_t segment_length(const Message& frame) {
    const std::uint32_t digits_of_low = frame[0] < 0x10 ? 1 : 2;
    return static_cast<std::uint32_t>(frame[1]) << 4 * digits_of_low | frame[0];
}

bool take_segment(ObjectSegments& segments, const Message& frame) {
    if (segments.expects_first) {
        begin_series(segments, frame);
        // What an earlier series left counts on, when nobody freed it: the new one lies behind it.
        const std::uint32_t left = segments.filled;
        lay(segments, left, frame, payload_begin + 1, 1);
        lay(segments, left + 1, frame, payload_begin, 1);
        segments.filled = left + 2;
        if (segments.payload > segments.filled) {
            lay(segments, segments.filled, frame, payload_begin + 2, segments.payload - segments.filled);
            segments.filled = segments.payload;
        }
        return false;
    }
    if (is_last(frame)) {
        append_last(segments, frame);
        keep_command_text(segments);
        return true;
    }
    append(segments, frame, segments.payload);
    return false;
}

bool take_segment_of_old(ObjectSegments& segments, const Message& frame) {
    if (segments.expects_first) {
        begin_series(segments, frame);
        segments.filled = 0;
        append(segments, frame, segments.payload);
        return false;
    }
    if (is_last(frame)) {
        append_last(segments, frame);
        if (!segments.bytes.empty()) segments.bytes.front() = 0;
        keep_command_text(segments);
        return true;
    }
    append(segments, frame, segments.payload);
    return false;
}

void keep_command_text(ObjectSegments& segments) {
    if (segments.filled == 0) return;
    segments.last_command_text.clear();
    segments.last_command_text.reserve(segments.bytes.size() * 3);
    for (const std::uint8_t byte : segments.bytes) {
        segments.last_command_text += formatted(" {-:02X}"_cf, byte);
    }
}

void forget_series(ObjectSegments& segments) {
    segments.bytes = {};
    segments.filled = 0;
}

void forget_command_text(ObjectSegments& segments) { segments.last_command_text = {}; }

}  // namespace ztdecode::object
