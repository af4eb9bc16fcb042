#pragma once

#include <cstdint>

#include "core/session.hpp"
#include "object/bytes.hpp"

namespace ztdecode {

// Writes the body of a terminal's event; nothing for an event that carries none.
void vDecodeEvent(Session& session, std::uint8_t event, const Bytes& body, Text& out);

}  // namespace ztdecode
