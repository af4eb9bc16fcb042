#pragma once

#include <cstdint>

#include "object/tables.hpp"

// Names of code points that the library knows by itself, from its exported tables tab_unicod and
// UnicodeBlock.

namespace ztdecode::object {

// Name of a character or key of the terminals' own, or null.
const char* glyph_name(std::uint32_t code_point) noexcept;

// Name of the block that a code point stands in, or null. The last code point of each block is not counted
// in.
const char* block_name(std::uint32_t code_point) noexcept;

}  // namespace ztdecode::object
