#pragma once

#include "core/session.hpp"

namespace ztdecode {

// A segment of a message from the system: gathers it, and decodes the whole message behind the last one.
void segment_command(Session& session, Message& m, Text& out);

}  // namespace ztdecode
