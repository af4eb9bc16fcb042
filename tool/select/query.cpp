#include "tool/select/query.hpp"

#include <cctype>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "tool/select/names.hpp"
#include "tool/select/schema.hpp"
#include "tool/select/selection.hpp"

namespace ztdecode::tool {

namespace {

bool part_of_a_name(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

// Where a name stands as a word of its own.
std::optional<std::size_t> find_name(std::string_view query, std::string_view name) {
    for (std::size_t at = 0; (at = query.find(name, at)) != std::string_view::npos; ++at) {
        const std::size_t end = at + name.size();
        const bool begins = at == 0 || !part_of_a_name(query[at - 1]);
        if (begins && (end == query.size() || !part_of_a_name(query[end]))) return at;
    }
    return std::nullopt;
}

std::vector<std::string> columns_of_all(const sqlite::Connection& database,
                                        const std::set<std::string, std::less<>>& tables) {
    std::vector<std::string> names;
    for (const std::string& table : tables) {
        const sqlite::Statement all(database, "select * from " + table);
        for (int k = 0; k < all.columns(); ++k) names.emplace_back(all.name(k));
    }
    return names;
}

// SQLite's words, with the nearest name that there is, and where the name stands that there is not.
WrongSelection explained(const sqlite::Error& error, const std::string& query,
                         const sqlite::Connection& database) {
    const std::string why = error.what();
    std::vector<std::string> names;
    const auto tables = readable_tables().tables;
    const auto about = [&](std::string_view words) { return why.starts_with(words); };
    if (about("no such table: ")) {
        names.assign(tables.begin(), tables.end());
    } else if (about("no such column: ")) {
        names = columns_of_all(database, tables);
    } else {
        return {"--sql", why, query, error.place()};
    }
    std::string name = why.substr(why.find(": ") + 2);
    const std::optional<std::size_t> place = error.place() ? error.place() : find_name(query, name);
    name.erase(0, name.rfind('.') + 1);
    const std::vector<std::string_view> candidates(names.begin(), names.end());
    return {"--sql", why + did_you_mean(name, candidates), query, place};
}

}  // namespace

void only_queries(sqlite::Connection& database) {
    // Views take JSON apart and put it together, which SQLite lets only those do that are trusted. A file
    // from elsewhere may hold any views: what they may do is what a query may.
    sqlite3_db_config(database.get(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 1, nullptr);
    add_regexp(database);
    // These tables are made when they are named first, which is more than a query may do.
    database.run("select 1 from json_each('[]'), json_tree('[]')");
    database.allow_only(readable_tables());
}

void check_query(const std::string& query) {
    sqlite::Connection database;
    create_tables(database);
    create_views(database);
    only_queries(database);
    try {
        const sqlite::Statement checked(database, query);
        if (checked.columns() == 0) throw WrongSelection("--sql", "it asks for nothing");
    } catch (const sqlite::Error& error) {
        throw explained(error, query, database);
    }
}

}  // namespace ztdecode::tool
