#pragma once

#include "core/decoding.hpp"

// Families of commands to an HE set, each picked by its opcode; byte 1 is the command in the family.

namespace ztdecode::he {

void window_command(Decoding& d);   // opcode 50
void object_creation(Decoding& d);  // opcode 52
void object_change(Decoding& d);    // opcode 53

}  // namespace ztdecode::he
