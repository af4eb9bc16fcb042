#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ztdecode::tool {

// U+FFFD: stands for bytes that are no UTF-8.
inline constexpr std::string_view replacement = "\xEF\xBF\xBD";

// How many bytes of the beginning are one character in UTF-8: 0 when they are none.
std::size_t character_length(std::string_view words) noexcept;

// The words in UTF-8 that holds no zero byte: each byte that is part of no character, and each zero, is
// U+FFFD. `room` keeps them where they have to be changed.
std::string_view as_utf8(std::string_view words, std::string& room);

}  // namespace ztdecode::tool
