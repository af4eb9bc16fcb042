#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "fuzz/decoding.hpp"

namespace ztdecode::fuzz {

// CapturedMessage messages that carry others in every way there is, inside each other to any depth and across
// messages: super messages of both types, hubs, segments, super messages of modules and the sets that modules
// play. Most lengths are right, some are a little wrong. `steering` makes every choice, so that any bytes
// give a trace, and the same bytes the same one.
std::vector<CapturedMessage> carried_trace(std::span<const std::uint8_t> steering);

}  // namespace ztdecode::fuzz
