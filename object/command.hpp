#pragma once

#include "core/session.hpp"

// Whole messages of the object protocol. Each writes behind what `out` holds. A message that names an unknown
// class ends with the error line, and UnknownClass is thrown.

namespace ztdecode {

// A command of the system to a terminal.
void analyse_cmd_pbx(Session& session, const Message& m, Text& out);
// An event that a terminal reports.
void analyse_cmd_term(Session& session, const Message& m, Text& out);

// One of these two, after which the session's application text is what it wrote, also when an unknown class
// ended it.
using Analyser = void (*)(Session&, const Message&, Text&);
void analyse_for_application(Session& session, Analyser analyse, const Message& m, Text& out);

}  // namespace ztdecode
