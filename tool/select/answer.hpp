#pragma once

#include <cstddef>

#include "tool/output/output.hpp"
#include "tool/select/sqlite.hpp"

namespace ztdecode::tool {

enum class AnswerForm { table, csv, ndjson };

// The rows of a query. A table is as wide as `width` at most, 0: as wide as it is; what does not fit is cut.
// Bytes are hexadecimal digits in all forms.
void write_answer(sqlite::Statement& query, AnswerForm form, std::size_t width, Output& out);

}  // namespace ztdecode::tool
