#pragma once

#include <cstddef>

#include "core/text.hpp"
#include "tool/analysis/ladder.hpp"

// Ladders as pictures. What stands in them is escaped already.

namespace ztdecode::tool {

struct LadderTerminal {
    std::size_t width = 80;
    bool ascii = false;
    bool color = false;
};
// For a terminal: lifelines to the left, words to the right of them.
void write_ladder_text(const Ladder& ladder, const LadderTerminal& terminal, Text& out);

// A file of its own.
void write_ladder_svg(const Ladder& ladder, Text& out);

// A sequence diagram for Mermaid.
void write_ladder_mermaid(const Ladder& ladder, Text& out);

}  // namespace ztdecode::tool
