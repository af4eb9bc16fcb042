#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/text.hpp"
#include "tool/select/sqlite.hpp"

namespace ztdecode::tool {

// What is wrong with a query, and with which byte of it, where that can be said.
class WrongQuery : public std::runtime_error {
  public:
    WrongQuery(const std::string& why, std::optional<std::size_t> place)
        : std::runtime_error(why), place_(place) {}
    std::optional<std::size_t> place() const noexcept { return place_; }

  private:
    std::optional<std::size_t> place_;
};

// Throws what is wrong with a query of the tables and views that there are.
void check_query(const std::string& query);

// From here on the connection serves queries alone: they read the tables and views.
void only_queries(sqlite::Connection& database);

// The line of a query that a byte of it stands in, and a caret below that byte.
void add_with_caret(std::string_view query, std::size_t place, Text& out);

}  // namespace ztdecode::tool
