#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/text.hpp"
#include "decode/readers.hpp"

namespace ztdecode::tool {

// The first lines of a trace that gave no message, for a trace of which none did: what they look like, and
// what would read them.
class Sample {
  public:
    bool wants_more() const noexcept { return lines_.size() < most_lines; }
    void add(Line line);

    // Those of the lines behind, as far as they are wanted.
    void add(const Sample& behind);

    bool empty() const noexcept { return lines_.empty(); }
    // Whether some option would read them; otherwise that none does.
    bool describe(Text& out) const;

  private:
    static constexpr std::size_t most_lines = 8;

    std::vector<std::string> lines_;
};

}  // namespace ztdecode::tool
