#pragma once

#include "core/tables.hpp"

// Whole messages of the object protocol. A message that names an unknown class ends with the error line, and
// UnknownClass is thrown.

namespace ztdecode::object {

// A command of the system to a terminal.
void from_system(Decoding& d);
// An event that a terminal reports.
void to_system(Decoding& d);

// One of these two, after which the session's application text is what it wrote, also when an unknown class
// ended it.
void for_application(Decoding& d, Decoder decoder);

}  // namespace ztdecode::object
