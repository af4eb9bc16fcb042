#pragma once

#include <cstddef>
#include <vector>

#include "core/text.hpp"
#include "decode/catalog.hpp"

namespace ztdecode::tool {

// The catalogue of messages for people: a section for each link and direction, one for each module and class.
// `width`: of the terminal that it fits; 0: every message is one line.
void write_catalog(const std::vector<CatalogRow>& rows, std::size_t width, bool color, Text& out);

// One JSON object a row (docs/record.schema.json).
void write_catalog_as_ndjson(const std::vector<CatalogRow>& rows, Text& out);

}  // namespace ztdecode::tool
