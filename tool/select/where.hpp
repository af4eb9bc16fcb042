#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/record.hpp"
#include "decode/trace_lines.hpp"

namespace ztdecode::tool {

// What is wrong with an expression, and with which byte of it, where that can be said.
class WrongExpression : public std::runtime_error {
  public:
    WrongExpression(const std::string& why, std::optional<std::size_t> place)
        : std::runtime_error(why), place_(place) {}
    std::optional<std::size_t> place() const noexcept { return place_; }

  private:
    std::optional<std::size_t> place_;
};

// An SQL expression over the columns of a message, or several of which all have to be true.
//
// One statement runs as long as the trace does: it scans a table that has the message at hand as its next
// row, again and again. So nothing is bound and nothing is begun anew for a message, and columns that nobody
// names are not made.
class Where {
  public:
    // `file` is what the column of that name holds. Throws WrongExpression.
    Where(std::string_view file, std::span<const std::string> expressions);
    Where(const Where&) = delete;
    Where& operator=(const Where&) = delete;
    ~Where();

    // What has to be noted for the columns that are named.
    Trail::What notes() const noexcept;
    // Whether it is true of this message of the record. Throws sqlite::Error where there is no telling.
    bool holds(const CapturedMessage& captured, const Record& record, std::size_t part);

  private:
    class Table;

    std::unique_ptr<Table> table_;
};

// Throws what is wrong with one expression; gives the fields that it names and no message has, each with what
// was meant.
std::vector<std::string> check_expression(const std::string& expression);

}  // namespace ztdecode::tool
