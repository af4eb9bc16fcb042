#pragma once

#include <string_view>

namespace ztdecode {

// Whether `text` begins with `pattern`, or with the first `limit` characters of it if limit is not 0. "*" in
// either of them matches any one character; a newline that ends the pattern does not count.
bool bGenericStrCmp(std::string_view pattern, std::string_view text, unsigned limit) noexcept;

// Value of a hexadecimal digit, 0 for every other character.
constexpr int hexdigint(char c) noexcept {
    if (c >= '1' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return 0;
}

// The first `count` characters as a hexadecimal number of 32 bits; those that the text lacks count as 0.
constexpr int hextoint(std::string_view text, int count) noexcept {
    unsigned value = 0;
    const std::size_t digits = count < 0 ? 0 : static_cast<std::size_t>(count);
    for (std::size_t k = 0; k < digits && k < text.size() + 8; ++k) {
        value = value * 16 + (k < text.size() ? static_cast<unsigned>(hexdigint(text[k])) : 0);
    }
    return static_cast<int>(value);
}

}  // namespace ztdecode
