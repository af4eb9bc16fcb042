#pragma once

#include "core/decoding.hpp"

// Hubs: up to three sets behind one link. byte 0: type   byte 1: code   then what the code carries.

namespace ztdecode::hub {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::hub
