#pragma once

#include "core/decoding.hpp"

// DECT bases. byte 0: type   byte 1: class in bits 4-7, name within the class in bits 0-3   bytes 2-3:
// operands

namespace ztdecode::ibs {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::ibs
