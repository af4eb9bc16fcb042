#pragma once

#include "core/provenance.hpp"
#include "core/text.hpp"

namespace ztdecode::tool {

// Writes which bytes each stretch of a decoded text came from, a stretch a line, then the bytes that none
// used:
//
//     0        "\t- "
//     0-1      "digit dialed '4'"
//     2, behind the end  "..."
//     unused   none
void explain(const Provenance& provenance, std::size_t text_begin, std::size_t text_end, std::uint32_t length,
             Text& out);

}  // namespace ztdecode::tool
