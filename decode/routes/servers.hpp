#pragma once

#include "core/decoding.hpp"

// The object protocol's two servers. The session's application text becomes the message's.

namespace ztdecode::call_server {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::call_server

namespace ztdecode::presentation_server {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::presentation_server
