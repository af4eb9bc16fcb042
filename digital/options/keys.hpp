#pragma once

#include "core/decoding.hpp"

// Key messages of the modules that have keys. byte 3: key, or bits

namespace ztdecode::modules {

void key_pushed(Decoding& d);
void key_released(Decoding& d);
void special_key_status(Decoding& d);
void key_release(Decoding& d);

}  // namespace ztdecode::modules
