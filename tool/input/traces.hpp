#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tool/input/source.hpp"

namespace ztdecode::tool {

// One trace in a file: `name` is the file's, and behind a slash what it is called in there, if it is packed.
using TraceAction = std::function<void(const std::string& name, bool packed, Source& source)>;

// Does it with each trace of a file: with the file, unpacked if need be, or with each member of it; and so
// with members that are packed themselves. `text`: the traces are, in whatever encoding. Gives what is wrong
// with the file but for its traces, and where, empty if nothing is.
struct Damage {
    std::string name;
    std::string why;
};
Damage each_trace(const std::string& name, Source& source, bool text, const TraceAction& action);

}  // namespace ztdecode::tool
