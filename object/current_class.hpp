#pragma once

#include "core/decoding.hpp"
#include "object/lookup.hpp"

namespace ztdecode::object {

// Looks a class up and makes its properties the current ones. An unknown class ends the message: the error
// line is written and UnknownClass thrown.
ObjectClass current_class(Decoding& d, const Byte& opcode);

}  // namespace ztdecode::object
