#include "tool/select/sqlite.hpp"

#include <algorithm>
#include <array>
#include <new>
#include <utility>
#include <vector>

#include "tool/select/regex.hpp"

namespace ztdecode::tool::sqlite {

namespace {

// A text of a message may have 16 MiB, its bytes in hexadecimal or its fields more than that.
constexpr int longest_value = 256 << 20;
constexpr int longest_statement = 1 << 20;

int limited_open(const std::string& file, int flags, sqlite3** connection) {
    // Nobody asks how much memory SQLite has, and counting it takes a lock each time.
    static const int uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    if (uncounted != SQLITE_OK) return uncounted;
    const int code = sqlite3_open_v2(file.c_str(), connection, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) return code;
    sqlite3_limit(*connection, SQLITE_LIMIT_LENGTH, longest_value);
    sqlite3_limit(*connection, SQLITE_LIMIT_SQL_LENGTH, longest_statement);
    sqlite3_limit(*connection, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_db_config(*connection, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
    sqlite3_db_config(*connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(*connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    // Words in double quotes are names: a misspelt one is an error then, not a text.
    sqlite3_db_config(*connection, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(*connection, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    return SQLITE_OK;
}

constexpr std::array<std::string_view, 2> refused_functions = {"load_extension", "fts3_tokenizer"};

void delete_regex(void* regex) noexcept { delete static_cast<const re2::RE2*>(regex); }

// X REGEXP Y is regexp(Y, X). The pattern is compiled once where it is constant.
void regexp(sqlite3_context* context, int /*count*/, sqlite3_value** values) noexcept {
    try {
        const auto text_of = [](sqlite3_value* value) {
            const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
            if (text == nullptr) return std::string_view();
            return std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
        };
        if (sqlite3_value_type(values[0]) == SQLITE_NULL || sqlite3_value_type(values[1]) == SQLITE_NULL) {
            return;
        }
        const auto* regex = static_cast<const re2::RE2*>(sqlite3_get_auxdata(context, 0));
        std::unique_ptr<const re2::RE2> compiled;
        if (regex == nullptr) {
            std::string why;
            compiled = compile_regex(text_of(values[0]), why);
            if (compiled == nullptr) {
                sqlite3_result_error(context, ("REGEXP: " + why).c_str(), -1);
                return;
            }
            regex = compiled.get();
        }
        const std::string_view text = text_of(values[1]);
        const bool match =
            regex->Match({text.data(), text.size()}, 0, text.size(), re2::RE2::UNANCHORED, nullptr, 0);
        sqlite3_result_int(context, match ? 1 : 0);
        // (SQLite may delete what it is given here at once.)
        if (compiled != nullptr) {
            sqlite3_set_auxdata(context, 0, const_cast<re2::RE2*>(compiled.release()), delete_regex);
        }
    } catch (...) {
        sqlite3_result_error_nomem(context);
    }
}

}  // namespace

Connection::Connection() : Connection(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) {}

Connection::Connection(const std::string& file, int flags) {
    sqlite3* opened = nullptr;
    const int code = limited_open(file, flags, &opened);
    connection_.reset(opened);
    if (opened == nullptr) throw std::bad_alloc();
    if (code != SQLITE_OK) fail();
}

void Connection::run(const char* statements) const {
    if (sqlite3_exec(get(), statements, nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

// A name without a column, as in `select count(*) from NAME`, may be one that the statement itself gives to a
// query (`with NAME as`). So it is known which names are others' by themselves.
struct Connection::Rules {
    std::vector<std::string> readable;
    std::vector<std::string> others;

    static bool has(const std::vector<std::string>& names, const char* name) noexcept {
        return std::ranges::any_of(
            names, [name](const std::string& n) { return sqlite3_stricmp(n.c_str(), name) == 0; });
    }
    bool other(const char* table) const noexcept {
        const auto begins = [table](std::string_view words) {
            return sqlite3_strnicmp(table, words.data(), static_cast<int>(words.size())) == 0;
        };
        return begins("pragma_") || begins("sqlite_") || has(others, table);
    }
    bool may_read(const char* table, const char* column) const noexcept {
        if (table == nullptr) return false;
        if (has(readable, table)) return true;
        return column != nullptr && *column == '\0' && !other(table);
    }
};

int Connection::authorize(void* rules, int action, const char* first, const char* second,
                          const char* /*database*/, const char* /*trigger*/) noexcept {
    switch (action) {
        case SQLITE_SELECT:
        case SQLITE_RECURSIVE:
            return SQLITE_OK;
        case SQLITE_READ:
            return static_cast<const Rules*>(rules)->may_read(first, second) ? SQLITE_OK : SQLITE_DENY;
        case SQLITE_FUNCTION:
            for (const std::string_view name : refused_functions) {
                if (second == nullptr || sqlite3_stricmp(second, name.data()) == 0) return SQLITE_DENY;
            }
            return SQLITE_OK;
        default:
            return SQLITE_DENY;
    }
}

void Connection::allow_only(const Readable& readable) {
    auto rules = std::make_shared<Rules>();
    rules->readable.assign(readable.tables.begin(), readable.tables.end());
    Statement names(*this,
                    "SELECT name FROM sqlite_schema UNION SELECT name FROM sqlite_temp_schema UNION SELECT "
                    "name FROM pragma_module_list");
    while (names.step()) rules->others.emplace_back(names.text(0));
    rules_ = std::move(rules);
    sqlite3_set_authorizer(get(), authorize, const_cast<Rules*>(rules_.get()));
}

void Connection::fail() const {
    const int code = sqlite3_extended_errcode(get());
    if ((code & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
    const int place = sqlite3_error_offset(get());
    throw Error(code, sqlite3_errmsg(get()),
                place < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(place)));
}

Statement::Statement(const Connection& connection, std::string_view words) : connection_(connection) {
    if (const std::size_t zero = words.find('\0'); zero != std::string_view::npos) {
        throw Error(SQLITE_ERROR, "a zero byte", zero);
    }
    if (words.size() > longest_statement) throw Error(SQLITE_TOOBIG, "longer than 1 MiB");
    sqlite3_stmt* prepared = nullptr;
    const char* behind = nullptr;
    const int code = sqlite3_prepare_v3(connection.get(), words.data(), static_cast<int>(words.size()),
                                        SQLITE_PREPARE_PERSISTENT, &prepared, &behind);
    statement_.reset(prepared);
    check(code);
    if (prepared == nullptr) throw Error(SQLITE_ERROR, "no statement");
    const auto used = static_cast<std::size_t>(behind - words.data());
    if (const std::size_t more = words.find_first_not_of(" \t\r\n;", used); more != std::string_view::npos) {
        throw Error(SQLITE_ERROR, "only one statement can be asked", more);
    }
}

void Statement::check(int code) const {
    if (code != SQLITE_OK) connection_.fail();
}

void Statement::bind(int parameter, std::int64_t number) {
    check(sqlite3_bind_int64(get(), parameter, number));
}
void Statement::bind(int parameter, double number) { check(sqlite3_bind_double(get(), parameter, number)); }
void Statement::bind(int parameter, std::string_view text) {
    check(sqlite3_bind_text64(get(), parameter, text.data() == nullptr ? "" : text.data(), text.size(),
                              SQLITE_STATIC, SQLITE_UTF8));
}
void Statement::bind(int parameter, std::span<const std::uint8_t> bytes) {
    check(bytes.empty() ? sqlite3_bind_zeroblob(get(), parameter, 0)
                        : sqlite3_bind_blob64(get(), parameter, bytes.data(), bytes.size(), SQLITE_STATIC));
}
void Statement::bind_null(int parameter) { check(sqlite3_bind_null(get(), parameter)); }

bool Statement::step() {
    const int code = sqlite3_step(get());
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) connection_.fail();
    return false;
}

std::string_view Statement::name(int column) const {
    const char* const name = sqlite3_column_name(get(), column);
    if (name == nullptr) throw std::bad_alloc();
    return name;
}

std::string_view Statement::text(int column) const {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(get(), column));
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(get(), column))};
}

std::span<const std::uint8_t> Statement::bytes(int column) const {
    const auto* const bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(get(), column));
    if (bytes == nullptr) return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(get(), column))};
}

void add_regexp(const Connection& connection) {
    if (sqlite3_create_function_v2(connection.get(), "regexp", 2,
                                   SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr, regexp,
                                   nullptr, nullptr, nullptr) != SQLITE_OK) {
        connection.fail();
    }
}

}  // namespace ztdecode::tool::sqlite
