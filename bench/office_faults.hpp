#pragma once

#include <string_view>

#include "bench/office.hpp"

namespace ztdecode::bench {

// Lets something go wrong in the office: what the rule of this code is to find (docs/findings.md). False
// where there is no such fault.
bool plant(std::string_view code, Office& o);

}  // namespace ztdecode::bench
