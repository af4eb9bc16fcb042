#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/fields.hpp"
#include "core/values.hpp"

namespace ztdecode {

// A value that a message has, and what kinds of value it is given as: bit k is `Kind` k.
struct CatalogField {
    const Field* field;
    std::uint32_t kinds;
};

// A message that the decoders know.
struct CatalogRow {
    std::string_view link;
    std::uint32_t direction;
    std::string code;          // its bytes as a trace shows them: "1f 00"; ".." are any
    std::string_view message;  // its name
    std::string of{};          // of which module, or which class of objects; of all of them: empty
    std::vector<CatalogField> fields{};
};

// All of them by link and direction, those of modules and classes behind the others, then by code: what the
// decoders' tables say when messages are tried on them.
std::vector<CatalogRow> catalog();

}  // namespace ztdecode
