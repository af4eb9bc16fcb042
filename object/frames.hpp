#pragma once

#include <cstdint>
#include <string_view>

#include "core/session.hpp"

// Framed application messages.
//
//   bytes 0-1   length, low byte first
//   byte 2      0x15, 0x16: a message of the object protocol
//               0x0C: a segment of one
//               else: a message of the sets

namespace ztdecode {

enum class FrameKind {
    gathered,  // a segment, and not the last one
    series,    // a message of the object protocol, from its last segment
    object,    // one in a single frame
    zt,        // a message of the sets
};

// What a frame prints. A host's application buffer has the dump line first. The text of an object-protocol
// message then begins the buffer anew, so that the dump line is never seen; the text of any other message
// follows.
struct FrameText {
    FrameKind kind = FrameKind::gathered;
    Text dump;
    Text text;
    // The part of `text` that stands there as one item, however long it is.
    std::size_t item_begin = 0;
    std::size_t item_end = 0;
};

// Which way a frame travels: 'S' from the system to the terminal, anything else to the system.
inline constexpr int from_system = 'S';

// Decodes a frame. For an object-protocol message of an unknown class UnknownClass is thrown; what was
// written until then stands in `out`.
void analyse_cmd(Session& session, const Message& frame, int way, FrameText& out);

// Writes the dump line of a frame.
void vDsipTLV(std::string_view banner, const Message& frame, Text& out);

}  // namespace ztdecode
