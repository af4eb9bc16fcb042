#pragma once

#include "core/tables.hpp"
#include "decode/tables/identity.hpp"
#include "digital/options/options.hpp"

// What the modules' messages have in common.

namespace ztdecode::modules {

inline Byte opcode(const Decoding& d) { return d[2] & 0x7F; }

// Byte 0: hard, any other soft.
inline Word hard_or_soft(const Byte& kind) { return either(kind == 0, "hard", "soft"); }

inline Word on_or_off(const Byte& byte) { return flag(byte != 0, "on", "off"); }

// byte 4: the command
void illegal_command(Decoding& d);

}  // namespace ztdecode::modules
