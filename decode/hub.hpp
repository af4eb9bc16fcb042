#pragma once

#include "core/session.hpp"

// Hubs: up to three sets behind one link. byte 0: type   byte 1: code   then what the code carries.

namespace ztdecode {

void hub2dhs(Session& session, Message& m, Text& out);
void dhs2hub(Session& session, Message& m, Text& out);

}  // namespace ztdecode
