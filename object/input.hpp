#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "core/text.hpp"

namespace ztdecode::object {

inline constexpr std::size_t input_capacity = 3010;

// Reads hexadecimal numbers, with blanks, tabs or line ends between them, into `bytes`, and gives how many
// there are: 0 with a complaint for a number of more than two characters behind the first one, and for more
// than 2998 numbers.
std::uint16_t read_numbers(std::string_view text, std::span<std::uint8_t, input_capacity> bytes, Text& out);

}  // namespace ztdecode::object
