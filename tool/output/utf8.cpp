#include "tool/output/utf8.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace ztdecode::tool {

namespace {

bool plain(char c) { return c > 0; }

// Whether all of it is ASCII without a zero.
bool all_plain(std::string_view words) {
    constexpr std::uint64_t each = 0x0101010101010101;
    while (words.size() >= sizeof each) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, words.data(), sizeof eight);
        if (((eight | (eight - each)) & 0x80 * each) != 0) return false;
        words.remove_prefix(sizeof eight);
    }
    return std::all_of(words.begin(), words.end(), plain);
}

}  // namespace

std::size_t character_length(std::string_view s) noexcept {
    const auto byte = [s](std::size_t k) { return k < s.size() ? static_cast<unsigned char>(s[k]) : 0U; };
    const auto follows = [&](std::size_t k, unsigned least = 0x80, unsigned most = 0xBF) {
        return byte(k) >= least && byte(k) <= most;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return follows(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const unsigned least = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned most = lead == 0xED ? 0x9F : 0xBF;
        return follows(1, least, most) && follows(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const unsigned least = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned most = lead == 0xF4 ? 0x8F : 0xBF;
        return follows(1, least, most) && follows(2) && follows(3) ? 4 : 0;
    }
    return 0;
}

std::string_view as_utf8(std::string_view words, std::string& room) {
    if (all_plain(words)) return words;
    room.clear();
    while (!words.empty()) {
        const std::size_t n = words.front() == '\0' ? 0 : character_length(words);
        room += n == 0 ? replacement : words.substr(0, n);
        words.remove_prefix(std::max<std::size_t>(n, 1));
    }
    return room;
}

}  // namespace ztdecode::tool
