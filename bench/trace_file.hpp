#pragma once

#include <string_view>

#include "bench/office.hpp"
#include "core/text.hpp"

// An office's traffic as the command reads it.

namespace ztdecode::bench {

enum class Head { none, tag, column };
enum class Width { shortest, one, two };

struct TraceLayout {
    std::string_view name;
    bool binary;
    Head head;
    Width width;                 // of the length field
    std::size_t two_bytes_from;  // where the width is the shortest: the first length that takes two bytes
};

// The layouts of the command, and "zt-lng2" for tagged lines that always have two length bytes; null for
// other names.
const TraceLayout* layout_named(std::string_view name);

class TraceFile {
  public:
    // Layouts without a direction column hold the messages of one direction.
    TraceFile(const TraceLayout& layout, std::uint32_t direction);

    // Writes the next message.
    void write(Text& out);

    Office& office() noexcept { return office_; }

  private:
    Captured next_fitting();
    bool has_two_length_bytes(const Bytes& message) const;

    const TraceLayout& layout_;
    std::uint32_t direction_;
    std::uint32_t number_ = 0;
    Office office_;
};

}  // namespace ztdecode::bench
