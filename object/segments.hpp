#pragma once

#include "core/session.hpp"

// Object-protocol messages in segments.
//
//   bytes 0-1   length, low byte first: the payload and two bytes more
//   byte 2      0x0C
//   byte 3      segments still to come; bit 7: the first segment of a series
//   byte 4 on   payload

namespace ztdecode::object {

// What a segment says of its length: the two bytes as hexadecimal numbers without leading zeros, one behind
// the other. So 05 01 is 0x15.
std::uint32_t segment_length(const Message& frame);

// Takes a segment; true when the series is whole.
bool take_segment(ObjectSegments& segments, const Message& frame);
// The same of old: the first segment's first two bytes are not swapped, and byte 0 of a whole series becomes
// 0.
bool take_segment_of_old(ObjectSegments& segments, const Message& frame);

// Keeps the text of the gathered bytes, as long as there are any.
void keep_command_text(ObjectSegments& segments);
void forget_series(ObjectSegments& segments);
void forget_command_text(ObjectSegments& segments);

}  // namespace ztdecode::object
