#pragma once

#include "tool/options.hpp"

namespace ztdecode::tool {

// Decodes all files to standard output, with diagnostics on standard error. Gives the exit status.
int run(const Options& options);

}  // namespace ztdecode::tool
