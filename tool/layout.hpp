#pragma once

#include "decode/readers.hpp"

namespace ztdecode::tool {

// What kind of trace line a line is.
enum class LineKind { none, bare, tagged, spzt };

LineKind recognise(Line line);

}  // namespace ztdecode::tool
