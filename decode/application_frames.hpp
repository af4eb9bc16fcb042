#pragma once

#include <string_view>

#include "core/session.hpp"

// Framed application messages.
//
//   bytes 0-1   length, low byte first
//   byte 2      0x15, 0x16: a message of the object protocol
//               0x0C: a segment of one
//               else: a message of the sets

namespace ztdecode {

// Which way a frame travels: 'S' from the system to the terminal, anything else to the system.
inline constexpr int frame_from_system = 'S';

// Decodes a frame into the session's application text, which has to be there. A segment sets `series_whole`
// before its series is decoded: 1 for the last one, 0 for any other. For an object-protocol message of an
// unknown class UnknownClass is thrown.
void decode_application_frame(Session& session, const Message& frame, int way, int& series_whole);

// Writes the dump line of a frame.
void dump_application_frame(std::string_view banner, const Message& frame, Text& out);

}  // namespace ztdecode
