#pragma once

#include <string>

#include "tool/select/sqlite.hpp"

// The tables and views of a database of messages (docs/queries.md). Tables whose names end in _rows and
// _names are what the views are made of: names that repeat stand there once.

namespace ztdecode::tool {

// What tells such a file from other databases, and its version from later ones.
inline constexpr int database_identity = 0x7A746462;  // "ztdb"
inline constexpr int database_version = 1;

void create_tables(sqlite::Connection& database);
void create_views(sqlite::Connection& database);
// Rows are written without them, which is far quicker.
void create_indexes(sqlite::Connection& database);
void drop_indexes(sqlite::Connection& database);

// What a query may read: all of these, and the functions that take JSON apart.
sqlite::Readable readable_tables();

}  // namespace ztdecode::tool
