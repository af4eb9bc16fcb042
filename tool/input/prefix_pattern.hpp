#pragma once

#include <memory>
#include <string>

#include "decode/line_prefix.hpp"

namespace ztdecode::tool {

// What logs write in front of lines, as a regular expression says it; its groups `time`, `terminal` and
// `direction` are what they are called. Null, and `why`, when it is none.
std::shared_ptr<const PrefixFinder> prefix_pattern(const std::string& expression, std::string& why);

}  // namespace ztdecode::tool
