#pragma once

#include <cstddef>
#include <string>

namespace ztdecode {

// Where a result is written, byte by byte at its place. The bytes stay: what an earlier result left can show
// in a later text. Bytes that were never written are zero.
class FlexBuffer {
  public:
    void put(std::size_t at, char c) {
        if (at >= bytes_.size()) bytes_.resize(at + 1);
        bytes_[at] = c;
    }
    // Puts a text without its end; the place behind it.
    std::size_t put(std::size_t at, const char* text);
    // Makes the text that is to be seen zero.
    void clear_text() noexcept;

    const char* text() const noexcept { return bytes_.c_str(); }

  private:
    std::string bytes_;
};

const char* FLEX_GetAsciiCode(char c) noexcept;

enum class FlexLine {
    other,    // nothing to convert: the line is its own result
    bytes,    // "zt ...": a line of values that gets its "0x"
    command,  // "id", "d ...", "phonemodel...": a text that was turned into values; it is announced on
              // standard output
};

// The result is the text of `buffer`, but for a line of the kind `other`.
FlexLine TOFLEX_Convert(const char* line, FlexBuffer& buffer);

// The result is the text of `buffer`.
void FROMFLEX_Convert(const char* line, FlexBuffer& buffer);

}  // namespace ztdecode
