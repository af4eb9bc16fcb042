#pragma once

#include "decode/trace_lines.hpp"
#include "tool/options.hpp"

namespace ztdecode::tool {

// Reads lines as the options say, which stay as long as it.
TraceReader reader_for(const Options& options);

}  // namespace ztdecode::tool
