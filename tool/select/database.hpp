#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "core/record.hpp"
#include "decode/trace_lines.hpp"
#include "tool/select/schema.hpp"
#include "tool/select/sqlite.hpp"

namespace ztdecode::tool {

// Writes the rows of a database: traces one behind the other, each with its messages and lines in their
// order.
class Database {
  public:
    // The tables are there, with or without rows; the indexes are not. All that is written is one
    // transaction.
    explicit Database(sqlite::Connection& connection);

    // The name of a trace with this content that has rows already.
    std::optional<std::string> name_of(std::string_view sha256);

    void begin_file(std::string_view name, std::string_view sha256, std::uint64_t bytes);
    void message(const CapturedMessage& captured, const Record& record);
    // A line that is no message; the figures are for a refused one.
    void line(std::uint64_t number, std::string_view verdict, std::string_view content,
              const Refusal* refusal = nullptr);
    void end_file(std::uint64_t lines);

    // Behind the last row: the indexes, and the end of the transaction.
    void finish();

  private:
    void part(const CapturedMessage& captured, const Record& record, std::uint32_t index, std::int64_t first);
    void values(const Record& record, const Record::Part& part, std::int64_t id);
    void bind_value(const Record& record, const NotedValue& value);
    void bind_bytes(const Record& record, const Record::Part& part, const NotedValue& value);
    std::int64_t message_name(const NotedMessage& noted, Decoded decoded);
    std::int64_t field_name(const NotedValue& value);
    std::int64_t last_id(const char* table);

    sqlite::Connection& connection_;
    sqlite::Statement known_file_;
    sqlite::Statement begin_file_;
    sqlite::Statement end_file_;
    sqlite::Statement message_name_;
    sqlite::Statement message_;
    sqlite::Statement field_name_;
    sqlite::Statement field_;
    sqlite::Statement line_;

    std::int64_t file_ = 0;
    std::int64_t next_message_ = 0;
    std::int64_t next_message_name_ = 0;
    std::int64_t next_field_name_ = 0;
    std::int64_t messages_ = 0;  // of the file: captured ones
    std::int64_t refused_ = 0;
    std::vector<std::int64_t> depths_;  // of the parts of a record

    // Names that stand in the database, with their rows.
    using MessageName = std::tuple<std::string_view, std::string_view, std::uint32_t, Decoded>;
    std::map<MessageName, std::int64_t> message_names_;
    std::vector<std::int64_t> field_names_;  // by field and kind; 0: not yet

    // Words that had to be changed, until they are written.
    std::string columns_;
    std::string time_;
    std::string text_;
    Text digits_;
};

}  // namespace ztdecode::tool
