#pragma once

#include <string>

#include "tool/select/sqlite.hpp"

namespace ztdecode::tool {

// Throws WrongSelection where it is no query of the tables and views that there are.
void check_query(const std::string& query);

// From here on the connection serves queries alone: they read the tables and views.
void only_queries(sqlite::Connection& database);

}  // namespace ztdecode::tool
