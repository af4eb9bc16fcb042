#pragma once

#include "tool/display.hpp"
#include "tool/options.hpp"
#include "tool/output/output.hpp"

namespace ztdecode::tool {

// Puts the traces into a database, answers the query, or both. Gives the exit status.
int ask(const Options& options, const Display& display, Output& out);

}  // namespace ztdecode::tool
