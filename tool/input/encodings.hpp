#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tool/input/source.hpp"

namespace ztdecode::tool {

enum class Encoding { bytes, utf16_little, utf16_big };

// How a text is written whose first bytes these are: with a mark in front, or with a zero in every other
// byte. UTF-8 is bytes, and its mark stays with the first line.
Encoding encoding_of(std::string_view first_bytes);

// UTF-16 as UTF-8; what is no character becomes U+FFFD, and the mark in front is left out.
class Utf16Source final : public Source {
  public:
    Utf16Source(Source& source, Encoding encoding) noexcept : source_(source), encoding_(encoding) {}

    std::size_t read(char* to, std::size_t n) override;
    bool may_wait() const override { return source_.may_wait(); }

    Encoding encoding() const noexcept { return encoding_; }
    // There was a mark in front: known when something has been read.
    bool marked() const noexcept { return marked_; }

  private:
    bool fill();
    void unit(std::uint32_t code);
    void add(std::uint32_t code);

    Source& source_;
    Encoding encoding_;
    bool begins_ = true;
    bool marked_ = false;
    bool ended_ = false;
    int odd_ = -1;            // the first byte of a unit whose second one has not come
    std::uint32_t high_ = 0;  // the first unit of a character of two
    std::string ready_;
    std::size_t given_ = 0;
};

}  // namespace ztdecode::tool
