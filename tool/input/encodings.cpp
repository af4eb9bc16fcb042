#include "tool/input/encodings.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace ztdecode::tool {

namespace {

constexpr std::uint32_t mark = 0xFEFF;
constexpr std::uint32_t replacement = 0xFFFD;

bool is_ascii(unsigned char c) { return (c >= 0x20 && c < 0x7F) || c == '\t' || c == '\r' || c == '\n'; }

// Every other byte from the first one on is a character of a text, and those between them are zeros.
bool has_zeros_between(std::string_view bytes, std::size_t first) {
    constexpr std::size_t enough = 16;
    std::size_t units = 0;
    for (std::size_t k = 0; k + 1 < bytes.size() && units < enough; k += 2, ++units) {
        if (!is_ascii(static_cast<unsigned char>(bytes[k + first])) || bytes[k + 1 - first] != '\0')
            return false;
    }
    return units > 1;
}

}  // namespace

Encoding encoding_of(std::string_view first) {
    if (first.starts_with("\xff\xfe") || has_zeros_between(first, 0)) return Encoding::utf16_little;
    if (first.starts_with("\xfe\xff") || has_zeros_between(first, 1)) return Encoding::utf16_big;
    return Encoding::bytes;
}

std::size_t Utf16Source::read(char* to, std::size_t n) {
    while (given_ == ready_.size() && fill()) {
    }
    const std::size_t got = std::min(n, ready_.size() - given_);
    std::memcpy(to, ready_.data() + given_, got);
    given_ += got;
    return got;
}

bool Utf16Source::fill() {
    if (ended_) return false;
    std::array<char, 16384> bytes;
    const std::size_t n = source_.read(bytes.data(), bytes.size());
    ready_.clear();
    given_ = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const unsigned byte = static_cast<unsigned char>(bytes[k]);
        if (odd_ < 0) {
            odd_ = static_cast<int>(byte);
            continue;
        }
        const auto first = static_cast<unsigned>(odd_);
        odd_ = -1;
        unit(encoding_ == Encoding::utf16_little ? first | byte << 8 : first << 8 | byte);
    }
    if (n > 0) return true;
    // Half a character at the end.
    ended_ = true;
    if (odd_ >= 0 || high_ != 0) add(replacement);
    if (source_.failed()) fail(source_.error());
    return !ready_.empty();
}

void Utf16Source::unit(std::uint32_t code) {
    const bool is_mark = begins_ && code == mark;
    begins_ = false;
    marked_ = marked_ || is_mark;
    if (is_mark) return;
    const bool low = code >= 0xDC00 && code < 0xE000;
    if (high_ != 0) {
        add(low ? 0x10000 + ((high_ & 0x3FF) << 10) + (code & 0x3FF) : replacement);
        high_ = 0;
        if (low) return;
    }
    if (code >= 0xD800 && code < 0xDC00) {
        high_ = code;
    } else {
        add(low ? replacement : code);
    }
}

void Utf16Source::add(std::uint32_t code) {
    const auto put = [this](std::uint32_t byte) { ready_ += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

}  // namespace ztdecode::tool
