#pragma once

#include <optional>

#include "tool/options.hpp"

namespace ztdecode::tool {

// Makes the file of --output the standard output. Gives the exit status where that cannot be, which has been
// said then: it cannot be written, or is one of those that are read.
std::optional<int> open_output(const Options& options);

}  // namespace ztdecode::tool
