#pragma once

#include "core/decoding.hpp"

// Hubs: up to three sets behind one link. byte 0: type   byte 1: code   then what the code carries.

namespace ztdecode {

void hub2dhs(Session& session, Message& m, Text& out);
void dhs2hub(Session& session, Message& m, Text& out);

}  // namespace ztdecode

namespace ztdecode::hub {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::hub
