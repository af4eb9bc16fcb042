#pragma once

#include <array>

namespace ztdecode {

using KeyText = std::array<char, 32>;  // a C string

// The key that a user names, as its code and the kind of press: "a Q" is "61 shift short". `text` is split at
// its blanks and tabs in place.
KeyText Convert_kb_To_key(char* text) noexcept;

}  // namespace ztdecode
