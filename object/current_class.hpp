#pragma once

#include <cstdint>

#include "core/session.hpp"
#include "object/lookup.hpp"

namespace ztdecode {

// Looks a class up and makes its properties the current ones. An unknown class ends the message: the error
// line is written and UnknownClass thrown.
ObjectClass current_class(Session& session, std::uint8_t opcode, Text& out);

}  // namespace ztdecode
