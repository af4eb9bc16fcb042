#pragma once

#include "decode/readers.hpp"

namespace ztdecode {

// What a line of a trace is by itself.
enum class LineKind { none, bare, tagged, spzt };

LineKind recognise(Line line);

}  // namespace ztdecode
