#pragma once

#include "core/session.hpp"

// Key messages of the modules that have keys. byte 3: key, or bits

namespace ztdecode {

void key_pushed(Session& session, const Message& m, Text& out);
void key_released(Session& session, const Message& m, Text& out);
void special_key_status(Session& session, const Message& m, Text& out);
void key_release_config(Session& session, const Message& m, Text& out);

}  // namespace ztdecode
