#pragma once

#include "core/session.hpp"

// Families of commands to an HE set, each picked by its opcode; byte 1 is the command in the family.

namespace ztdecode::he {

void window_command(Session& session, const Message& m, Text& out);   // opcode 80
void object_creation(Session& session, const Message& m, Text& out);  // opcode 82
void object_change(Session& session, const Message& m, Text& out);    // opcode 83

}  // namespace ztdecode::he
