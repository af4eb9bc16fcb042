#pragma once

#include "core/decoding.hpp"

// The IP-set link. byte 0: type   byte 1: opcode   then what the opcode carries; numbers have their high byte
// first.

namespace ztdecode::ip {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::ip
