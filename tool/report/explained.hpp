#pragma once

#include <string_view>

#include "core/message.hpp"
#include "core/text.hpp"
#include "core/trail.hpp"

namespace ztdecode::tool {

// Writes which bytes of the message each stretch of its text came from, a stretch a line, then the bytes that
// none used. Offset 0 is the first byte of the message:
//
//     0       03     "\t- "
//     0-1     03 04  "digit dialed '4'"
//     unused  2-3  55 66
//
// Long ranges are shortened, so that a line is as long as its words allow:
//
//     0-44  27 41 41 41 41 .. 41 00  "write line 1 ...
//     1,3,..,20-25  ...
//
// A stretch for which a byte was asked that the message does not have says "behind the end". Offsets in a
// message that was put together from segments are "reassembled".
void explain(const Trail& trail, std::string_view text, const Message& m, Text& out);

}  // namespace ztdecode::tool
