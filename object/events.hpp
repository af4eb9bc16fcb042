#pragma once

#include "core/decoding.hpp"

namespace ztdecode::object {

// Writes the body of a terminal's event; nothing for an event that carries none.
void event_body(Decoding& d, const Byte& event);

}  // namespace ztdecode::object
