#include "tool/select/where.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <utility>

#include "core/data.hpp"
#include "core/fields.hpp"
#include "core/message.hpp"
#include "tool/output/control.hpp"
#include "tool/report/ndjson.hpp"
#include "tool/select/names.hpp"
#include "tool/select/regex.hpp"
#include "tool/select/sqlite.hpp"

namespace ztdecode::tool {

namespace {

enum Column : std::uint8_t {
    file,
    line,
    columns,
    time,
    direction,
    link,
    message,
    code,
    status,
    length,
    bytes,
    hex,
    text,
    fields,
    unknown,
    missing,
    depth,
    parent,
    column_count
};

constexpr std::array<std::string_view, column_count> column_names = {
    "file",   "line",  "columns", "time", "direction", "link",    "message", "code",  "status",
    "length", "bytes", "hex",     "text", "fields",    "unknown", "missing", "depth", "parent"};

constexpr const char* declaration =
    "CREATE TABLE messages(file TEXT, line INT, columns TEXT, time TEXT, direction TEXT, link TEXT,"
    " message TEXT, code INT, status TEXT, length INT, bytes BLOB, hex TEXT, text TEXT, fields TEXT,"
    " unknown INT, missing INT, depth INT, parent TEXT)";

constexpr const char* no_table = "an expression sees one message, and cannot read the table messages";

const Field* field_called(std::string_view name) {
    const auto* const found = std::ranges::find(all_fields, name, &Field::name);
    return found == std::ranges::end(all_fields) ? nullptr : found;
}

void give(sqlite3_context* to, std::string_view words) {
    sqlite3_result_text64(to, words.data() == nullptr ? "" : words.data(), words.size(), SQLITE_STATIC,
                          SQLITE_UTF8);
}
void give_name(sqlite3_context* to, std::string_view name) {
    if (!name.empty()) give(to, name);
}
void give(sqlite3_context* to, std::uint64_t number) {
    sqlite3_result_int64(to, static_cast<sqlite3_int64>(number));
}

}  // namespace

class Where::Table {
  public:
    Table(std::string_view file_name, std::span<const std::string> expressions) : file_(file_name) {
        sqlite::add_regexp(connection_);
        if (sqlite3_create_module_v2(connection_.get(), "messages", &module, this, nullptr) != SQLITE_OK ||
            sqlite3_create_function_v2(connection_.get(), "field", 1, SQLITE_UTF8 | SQLITE_DIRECTONLY, this,
                                       field_function, nullptr, nullptr, nullptr) != SQLITE_OK) {
            connection_.fail();
        }
        // Tables that are there without being created are made when they are first named.
        connection_.run("SELECT 1 FROM messages, json_each('1'), json_tree('1') WHERE 0");
        connection_.allow_only({{"messages", "json_each", "json_tree"}});
        std::string all;
        for (const std::string& expression : expressions) {
            check(expression);
            all += all.empty() ? "(" : " AND (";
            all += expression + "\n)";
        }
        used_ = 0;
        statement_.emplace(connection_, "SELECT CASE WHEN " + all + " THEN 1 ELSE 0 END FROM messages");
        // What SQLite finds to be the same for all rows is computed once. A subquery that only asks `field`
        // looks like that.
        const auto has = [&all](const char* words) { return re2::RE2::PartialMatch(all, words); };
        anew_ = has(R"((?i)\bselect\b)");
        asks_values_ =
            has(R"((?i)\bfield\b)") || (used_ & (1U << fields | 1U << unknown | 1U << missing)) != 0;
    }

    Trail::What notes() const noexcept { return asks_values_ ? Trail::What::values : Trail::What::messages; }

    bool holds(const CapturedMessage& captured, const Record& record, std::size_t part) {
        captured_ = &captured;
        record_ = &record;
        part_ = &record.part(part);
        if (anew_) statement_->reset();
        statement_->step();
        return statement_->number(0) != 0;
    }

  private:
    static const sqlite3_module module;

    struct Handle : sqlite3_vtab {
        Table* table;
    };

    // Where it stands in something harmless that allows no more than an expression, so that what SQLite says
    // of it is about the expression.
    void check(const std::string& expression) {
        if (const std::size_t zero = expression.find('\0'); zero != std::string::npos) {
            throw WrongExpression("a zero byte", zero);
        }
        if (expression.find_first_not_of(" \t\r\n") == std::string::npos) {
            throw WrongExpression("there is no expression", std::nullopt);
        }
        check_parentheses(expression);
        check_tables(expression);
        constexpr std::string_view before = "SELECT 1 FROM messages WHERE (";
        try {
            const sqlite::Statement tried(connection_, std::string(before) + expression + "\n)");
            if (sqlite3_bind_parameter_count(tried.get()) > 0) {
                throw WrongExpression("there is nothing that a parameter could stand for", std::nullopt);
            }
        } catch (const sqlite::Error& error) {
            std::optional<std::size_t> place = error.place();
            if (place) place = std::min(*place - std::min(*place, before.size()), expression.size());
            throw WrongExpression(explained(error.what(), expression), place);
        }
        check_patterns(expression);
    }

    // A parenthesis that closes another one than its own would make something else of the statement.
    static void check_parentheses(std::string_view expression) {
        std::size_t open = 0;
        for (std::size_t k = 0; k < expression.size(); ++k) {
            const std::string_view rest = expression.substr(k);
            const auto skip_to = [&](std::string_view end, std::size_t from) {
                const std::size_t found = rest.find(end, from);
                k = found == std::string_view::npos ? expression.size() : k + found + end.size() - 1;
            };
            const char c = rest.front();
            if (c == '\'' || c == '"' || c == '`') {
                skip_to({&c, 1}, 1);
            } else if (c == '[') {
                skip_to("]", 1);
            } else if (rest.starts_with("--")) {
                skip_to("\n", 2);
            } else if (rest.starts_with("/*")) {
                skip_to("*/", 2);
            } else if (c == '(') {
                ++open;
            } else if (c == ')' && open-- == 0) {
                throw WrongExpression("this parenthesis closes none", k);
            }
        }
        if (open > 0) throw WrongExpression("a parenthesis is not closed", std::nullopt);
    }

    // (Whatever gets past this fails when it comes to be read.)
    static void check_tables(std::string_view expression) {
        static const re2::RE2 reads(R"((?i)\b(?:from|join)\s+(?:main\s*\.\s*)?["`\[]?(messages\b))");
        re2::StringPiece table;
        if (!re2::RE2::PartialMatch(re2::StringPiece(expression.data(), expression.size()), reads, &table)) {
            return;
        }
        throw WrongExpression(no_table, static_cast<std::size_t>(table.data() - expression.data()));
    }

    // SQLite would find out when it comes to them.
    static void check_patterns(std::string_view expression) {
        static const re2::RE2 pattern(R"((?i)\bregexp\s*'((?:[^']|'')*)')");
        re2::StringPiece rest(expression.data(), expression.size());
        re2::StringPiece words;
        while (re2::RE2::FindAndConsume(&rest, pattern, &words)) {
            std::string unquoted(words);
            for (std::size_t k = 0; (k = unquoted.find("''", k)) != std::string::npos; ++k)
                unquoted.erase(k, 1);
            std::string why;
            if (compile_regex(unquoted, why) == nullptr) {
                throw WrongExpression("REGEXP: " + why,
                                      static_cast<std::size_t>(words.data() - expression.data()));
            }
        }
    }

    static std::string explained(const std::string& reason, const std::string& expression) {
        constexpr std::string_view no_column = "no such column: ";
        if (!reason.starts_with(no_column)) return reason;
        const std::string name = reason.substr(no_column.size());
        if (expression.find('"' + name + '"') != std::string::npos) {
            return reason + " (texts stand in single quotes: '" + name + "')";
        }
        if (field_called(name) != nullptr) return reason + " (of a message's values: field('" + name + "'))";
        return reason + did_you_mean(name, column_names);
    }

    static int connect(sqlite3* connection, void* table, int /*count*/, const char* const* /*arguments*/,
                       sqlite3_vtab** made, char** /*error*/) noexcept {
        const int code = sqlite3_declare_vtab(connection, declaration);
        if (code != SQLITE_OK) return code;
        auto* const handle = new (std::nothrow) Handle{};
        if (handle == nullptr) return SQLITE_NOMEM;
        handle->table = static_cast<Table*>(table);
        *made = handle;
        return SQLITE_OK;
    }
    static int disconnect(sqlite3_vtab* table) noexcept {
        delete static_cast<Handle*>(table);
        return SQLITE_OK;
    }
    static int best_index(sqlite3_vtab* table, sqlite3_index_info* info) noexcept {
        static_cast<Handle*>(table)->table->used_ |= info->colUsed;
        info->estimatedCost = 1;
        return SQLITE_OK;
    }
    static int open(sqlite3_vtab* table, sqlite3_vtab_cursor** cursor) noexcept {
        Table& own = *static_cast<Handle*>(table)->table;
        if (own.open_) {
            sqlite3_free(table->zErrMsg);
            table->zErrMsg = sqlite3_mprintf("%s", no_table);
            return SQLITE_ERROR;
        }
        *cursor = new (std::nothrow) sqlite3_vtab_cursor{};
        if (*cursor == nullptr) return SQLITE_NOMEM;
        own.open_ = true;
        return SQLITE_OK;
    }
    static int close(sqlite3_vtab_cursor* cursor) noexcept {
        static_cast<Handle*>(cursor->pVtab)->table->open_ = false;
        delete cursor;
        return SQLITE_OK;
    }
    static int filter(sqlite3_vtab_cursor* /*cursor*/, int /*index*/, const char* /*name*/, int /*count*/,
                      sqlite3_value** /*values*/) noexcept {
        return SQLITE_OK;
    }
    static int next(sqlite3_vtab_cursor* /*cursor*/) noexcept { return SQLITE_OK; }
    static int at_end(sqlite3_vtab_cursor* /*cursor*/) noexcept { return 0; }
    static int column(sqlite3_vtab_cursor* cursor, sqlite3_context* to, int index) noexcept {
        try {
            static_cast<Handle*>(cursor->pVtab)->table->give_column(to, index);
            return SQLITE_OK;
        } catch (const std::bad_alloc&) {
            return SQLITE_NOMEM;
        }
    }
    static int row_id(sqlite3_vtab_cursor* /*cursor*/, sqlite3_int64* id) noexcept {
        *id = 0;
        return SQLITE_OK;
    }

    void give_column(sqlite3_context* to, int index) {
        const NotedMessage& noted = *part_->noted;
        switch (index) {
            case file:
                return give(to, file_);
            case line:
                return give(to, captured_->number);
            case columns:
                if (captured_->has_columns) give(to, captured_->columns);
                return;
            case time:
                return give_name(to, captured_->time);
            case direction:
                return give(to, noted.direction == from_dhs ? std::string_view("from") : "to");
            case link:
                return give_name(to, noted.link);
            case message:
                return give_name(to, noted.name);
            case code:
                if (noted.code != NotedMessage::no_code) give(to, std::uint64_t{noted.code});
                return;
            case status:
                return give(to, data::name_of(part_->decoded));
            case length:
                return give(to, std::uint64_t{noted.length});
            case bytes:
                if (part_->bytes.empty()) {
                    sqlite3_result_zeroblob(to, 0);
                } else {
                    sqlite3_result_blob64(to, part_->bytes.data(), part_->bytes.size(), SQLITE_STATIC);
                }
                return;
            case hex:
                made_.clear();
                for (const std::uint8_t byte : part_->bytes) made_.hex(byte);
                return give_made(to);
            case text:
                return give_text(to);
            case fields:
                return give(to, json_.of(*record_, *part_));
            case unknown:
                return give(to, std::uint64_t{part_->unknown});
            case missing:
                return give(to, std::uint64_t{part_->missing});
            case depth:
                return give(to, depth_of());
            case parent:
                if (part_ != &record_->part(0)) give_name(to, record_->part(part_->carrier).noted->name);
                return;
            default:
                return;
        }
    }

    void give_made(sqlite3_context* to) {
        sqlite3_result_text64(to, made_.view().data() == nullptr ? "" : made_.view().data(), made_.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8);
    }

    // Without its colours, which begin with a zero.
    void give_text(sqlite3_context* to) {
        const std::string_view shown = record_->text(*part_);
        if (shown.find('\0') == std::string_view::npos) return give(to, shown);
        made_.clear();
        add_uncoloured(shown, made_);
        give_made(to);
    }

    std::uint64_t depth_of() const {
        std::uint64_t carriers = 0;
        for (const Record::Part* p = part_; p != &record_->part(0); p = &record_->part(p->carrier))
            ++carriers;
        return carriers;
    }

    // The first value of that name in the message at hand. Its field is looked for once.
    static void field_function(sqlite3_context* to, int /*count*/, sqlite3_value** values) noexcept {
        try {
            const auto* field = static_cast<const Field*>(sqlite3_get_auxdata(to, 0));
            if (field == nullptr) {
                const auto* const name = reinterpret_cast<const char*>(sqlite3_value_text(values[0]));
                if (name == nullptr) return;
                field = field_called({name, static_cast<std::size_t>(sqlite3_value_bytes(values[0]))});
                if (field == nullptr) return;
                sqlite3_set_auxdata(to, 0, const_cast<Field*>(field), nullptr);
            }
            static_cast<Table*>(sqlite3_user_data(to))->give_field(to, field);
        } catch (const std::bad_alloc&) {
            sqlite3_result_error_nomem(to);
        }
    }

    void give_field(sqlite3_context* to, const Field* field) {
        if (record_ == nullptr) return;
        for (const std::uint32_t index : record_->values(*part_)) {
            const NotedValue& value = record_->value(index);
            if (value.field == field) return give_value(to, value);
        }
    }

    void give_value(sqlite3_context* to, const NotedValue& value) {
        const std::string_view shown = record_->shown(value);
        switch (value.meaning.kind) {
            case Kind::number:
                if (value.meaning.tenths != 0) {
                    return sqlite3_result_double(to, static_cast<double>(value.meaning.number) / 10);
                }
                return sqlite3_result_int64(to, value.meaning.number);
            case Kind::flag:
                return sqlite3_result_int(to, value.meaning.number != 0 ? 1 : 0);
            case Kind::bytes:
            case Kind::word:
            case Kind::address:
            case Kind::text:
            case Kind::version: {
                made_.clear();
                char* const room = made_.room(data::room_for_value(value.meaning, shown));
                return give(to, data::value(value.meaning, shown, room));
            }
        }
    }

    std::string file_;
    sqlite::Connection connection_;
    std::uint64_t used_ = 0;  // columns that are named
    bool open_ = false;
    bool anew_ = false;
    bool asks_values_ = false;
    const CapturedMessage* captured_ = nullptr;
    const Record* record_ = nullptr;
    const Record::Part* part_ = nullptr;
    Text made_;
    FieldsAsJson json_;
    std::optional<sqlite::Statement> statement_;
};

// Eponymous only: it is there without being created.
const sqlite3_module Where::Table::module = {
    .iVersion = 0,
    .xCreate = nullptr,
    .xConnect = connect,
    .xBestIndex = best_index,
    .xDisconnect = disconnect,
    .xDestroy = nullptr,
    .xOpen = open,
    .xClose = close,
    .xFilter = filter,
    .xNext = next,
    .xEof = at_end,
    .xColumn = column,
    .xRowid = row_id,
    .xUpdate = nullptr,
    .xBegin = nullptr,
    .xSync = nullptr,
    .xCommit = nullptr,
    .xRollback = nullptr,
    .xFindFunction = nullptr,
    .xRename = nullptr,
    .xSavepoint = nullptr,
    .xRelease = nullptr,
    .xRollbackTo = nullptr,
    .xShadowName = nullptr,
};

Where::Where(std::string_view file, std::span<const std::string> expressions)
    : table_(std::make_unique<Table>(file, expressions)) {}

Where::~Where() = default;

Trail::What Where::notes() const noexcept { return table_->notes(); }

bool Where::holds(const CapturedMessage& captured, const Record& record, std::size_t part) {
    return table_->holds(captured, record, part);
}

std::vector<std::string> check_expression(const std::string& expression) {
    const Where checked("", {&expression, 1});
    static const re2::RE2 named(R"((?i)\bfield\s*\(\s*'([^']*)'\s*\)|\bfields\s*->>?\s*'(?:\$\.)?(\w+)')");
    std::vector<std::string> unknown_fields;
    std::vector<std::string_view> names;
    re2::StringPiece rest(expression);
    std::string name;
    std::string key;
    while (re2::RE2::FindAndConsume(&rest, named, &name, &key)) {
        const std::string& word = name.empty() ? key : name;
        if (field_called(word) != nullptr) continue;
        if (names.empty()) {
            for (const Field& field : all_fields) names.push_back(field.name);
        }
        unknown_fields.push_back("no message has a field " + word + did_you_mean(word, names));
    }
    return unknown_fields;
}

}  // namespace ztdecode::tool
