#pragma once

#include "core/decoding.hpp"
#include "decode/tables/identity.hpp"

// The HE link: sets with a windowing system, applications and a card reader. The decoders get a message
// without its three routing bytes.

namespace ztdecode::he {

void from_system(Decoding& d);
void to_system(Decoding& d);

// Name of an application of the set, a blank before it; one without a name is shown by its number.
NameOrCode application(const Number& id) noexcept;

}  // namespace ztdecode::he
