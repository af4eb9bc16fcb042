#pragma once

#include "core/decoding.hpp"

namespace ztdecode::digital {

// A segment of a message from the system: gathers it, and decodes the whole message behind the last one.
void segment_command(Decoding& d);

}  // namespace ztdecode::digital
