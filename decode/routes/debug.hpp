#pragma once

#include "core/decoding.hpp"

// The debug channel: plain text.

namespace ztdecode::debug {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::debug
