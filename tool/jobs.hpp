#pragma once

#include <optional>

#include "tool/files.hpp"

namespace ztdecode::tool {

// Several files at once, their outputs in their order; gives the exit status. None where no thread can be
// had: nothing is done then.
std::optional<int> decode_at_once(const FileDecoding& decoding);

}  // namespace ztdecode::tool
