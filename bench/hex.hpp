#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ztdecode::bench {

// "0a 1f" to bytes; the benchmarks' own rows are well formed.
inline std::vector<std::uint8_t> bytes(std::string_view hex) {
    auto digit = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
    std::vector<std::uint8_t> result;
    for (std::size_t k = 0; k + 1 < hex.size(); k += 3) {
        result.push_back(static_cast<std::uint8_t>(digit(hex[k]) << 4 | digit(hex[k + 1])));
    }
    return result;
}

}  // namespace ztdecode::bench
