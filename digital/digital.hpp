#pragma once

#include "core/decoding.hpp"

// The digital-set link: sets and the option modules behind them.

namespace ztdecode::digital {

void from_system(Decoding& d);
void to_system(Decoding& d);

// "[opt TYPE adr A] " for a sub-device byte: address in bits 0-2, module type in bits 3-7. All type bits set:
// the type is the one remembered for the address.
void module_label(Decoding& d, const Byte& sub_device);

// Name of a module type, "???" beyond 13.
Word module_type(const Number& type) noexcept;

}  // namespace ztdecode::digital
