#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

// SQLite as the command uses it: what is opened is closed, what fails is thrown.

namespace ztdecode::tool::sqlite {

class Error : public std::runtime_error {
  public:
    Error(int code, const std::string& why, std::optional<std::size_t> place = std::nullopt)
        : std::runtime_error(why), code_(code), place_(place) {}

    int code() const noexcept { return code_; }
    // Of a statement that is wrong: the byte where SQLite noticed it, where it says so.
    std::optional<std::size_t> place() const noexcept { return place_; }

  private:
    int code_;
    std::optional<std::size_t> place_;
};

// What somebody else's statement may do: read these tables, and call functions that do nothing but compute.
struct Readable {
    std::set<std::string, std::less<>> tables;
};

class Connection {
  public:
    // A database of its own in memory; or a file, which `flags` of sqlite3_open_v2 say how to open.
    Connection();
    Connection(const std::string& file, int flags);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    sqlite3* get() const noexcept { return connection_.get(); }
    // Our own statements, one behind the other.
    void run(const char* statements) const;
    // From here on every statement that is prepared is somebody else's. For good.
    void allow_only(const Readable& readable);
    // Throws what SQLite has to say.
    [[noreturn]] void fail() const;

  private:
    struct Close {
        void operator()(sqlite3* connection) const noexcept { sqlite3_close_v2(connection); }
    };
    std::unique_ptr<sqlite3, Close> connection_;
    struct Rules;
    static int authorize(void* rules, int action, const char* first, const char* second, const char* database,
                         const char* trigger) noexcept;
    std::shared_ptr<const Rules> rules_;
};

class Statement {
  public:
    // One statement, with nothing but blanks behind it.
    Statement(const Connection& connection, std::string_view words);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    sqlite3_stmt* get() const noexcept { return statement_.get(); }

    // Parameters count from 1; what they are bound to has to stay until `reset`.
    void bind(int parameter, std::int64_t number);
    void bind(int parameter, double number);
    void bind(int parameter, std::string_view text);
    void bind(int parameter, std::span<const std::uint8_t> bytes);
    void bind_null(int parameter);

    // The next row, false behind the last one.
    bool step();
    void reset() noexcept { sqlite3_reset(statement_.get()); }

    int columns() const noexcept { return sqlite3_column_count(statement_.get()); }
    std::string_view name(int column) const;
    int type(int column) const noexcept { return sqlite3_column_type(statement_.get(), column); }
    std::int64_t number(int column) const noexcept { return sqlite3_column_int64(statement_.get(), column); }
    double real(int column) const noexcept { return sqlite3_column_double(statement_.get(), column); }
    // Valid until the next step.
    std::string_view text(int column) const;
    std::span<const std::uint8_t> bytes(int column) const;

  private:
    void check(int code) const;

    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };
    const Connection& connection_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// The operator REGEXP, which SQLite leaves to its users.
void add_regexp(const Connection& connection);

}  // namespace ztdecode::tool::sqlite
