#pragma once

#include <re2/re2.h>

#include <memory>
#include <string>
#include <string_view>

namespace ztdecode::tool {

// A regular expression, in which ^ and $ are the ends of each line; null with the reason in `why` where it is
// none. No expression takes more than time in proportion to what it is matched with.
std::unique_ptr<const re2::RE2> compile_regex(std::string_view words, std::string& why);

}  // namespace ztdecode::tool
