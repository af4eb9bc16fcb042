#pragma once

#include "core/decoding.hpp"

// OSI maintenance. byte 0: type   byte 1: code in bits 0-6   bytes 2-3: operands

namespace ztdecode::osi {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::osi
