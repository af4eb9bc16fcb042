#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tool/select/sqlite.hpp"

// What somebody else's statement may do, and what is said of one that is wrong.

namespace ztdecode::tool::sqlite {

namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;

std::string error_of(const Connection& connection, const std::string& words) {
    try {
        Statement statement(connection, words);
        while (statement.step()) {
        }
        return {};
    } catch (const Error& error) {
        return error.what();
    }
}

class Authorizer : public ::testing::Test {
  protected:
    Authorizer() {
        add_regexp(connection_);
        connection_.run(
            "CREATE TABLE messages(text); CREATE TABLE hidden(text); CREATE INDEX i ON hidden(text); CREATE "
            "VIEW calls AS SELECT 1 AS n");
        connection_.run("INSERT INTO messages VALUES('on hook')");
        connection_.allow_only({{"messages"}});
    }

    Connection connection_;
};

TEST_F(Authorizer, LetsTablesBeRead) {
    Statement statement(connection_,
                        "SELECT upper(text), count(*) FROM messages WHERE text REGEXP '^on' GROUP BY 1");
    ASSERT_TRUE(statement.step());
    EXPECT_EQ(statement.columns(), 2);
    EXPECT_EQ(statement.text(0), "ON HOOK");
    EXPECT_EQ(statement.number(1), 1);
    EXPECT_FALSE(statement.step());
}

TEST_F(Authorizer, LetsAStatementNameItsOwnQueries) {
    for (const char* words :
         {"WITH own AS (SELECT text FROM Messages) SELECT count(*) FROM own", "SELECT count(*) FROM MESSAGES",
          "SELECT count(*) FROM (SELECT * FROM messages) AS own",
          "WITH RECURSIVE n(k) AS (SELECT 1 UNION ALL SELECT k + 1 FROM n LIMIT 9) SELECT count(*) FROM n"}) {
        EXPECT_EQ(error_of(connection_, words), "") << words;
    }
    for (const char* words : {"SELECT count(*) FROM hidden", "SELECT count(*) FROM Hidden AS own",
                              "SELECT count(*) FROM sqlite_schema", "SELECT count(*) FROM Sqlite_Master",
                              "SELECT count(*) FROM pragma_database_list", "SELECT count(*) FROM calls",
                              "SELECT count(*) FROM json_each('[]')",
                              "WITH own AS (SELECT count(*) FROM hidden) SELECT * FROM own"}) {
        EXPECT_NE(error_of(connection_, words), "") << words;
    }
}

TEST_F(Authorizer, RefusesEverythingElse) {
    for (const char* words : {"SELECT text FROM hidden",
                              "SELECT (SELECT text FROM hidden) FROM messages",
                              "SELECT * FROM sqlite_master",
                              "SELECT * FROM sqlite_schema",
                              "SELECT n FROM calls",
                              "SELECT * FROM pragma_database_list",
                              "INSERT INTO messages VALUES(1)",
                              "UPDATE messages SET text = 1",
                              "DELETE FROM messages",
                              "REPLACE INTO messages VALUES(1)",
                              "CREATE TABLE more(n)",
                              "CREATE TEMP TABLE more(n)",
                              "CREATE VIEW more AS SELECT 1",
                              "CREATE INDEX more ON messages(text)",
                              "CREATE TRIGGER t AFTER INSERT ON messages BEGIN SELECT 1; END",
                              "CREATE VIRTUAL TABLE v USING fts5(a)",
                              "DROP TABLE messages",
                              "ALTER TABLE messages ADD COLUMN n",
                              "ATTACH ':memory:' AS other",
                              "ATTACH '/tmp/other' AS other",
                              "DETACH main",
                              "PRAGMA user_version",
                              "PRAGMA user_version = 3",
                              "PRAGMA writable_schema = 1",
                              "VACUUM",
                              "VACUUM INTO '/tmp/other'",
                              "REINDEX",
                              "ANALYZE",
                              "BEGIN",
                              "SAVEPOINT s",
                              "SELECT load_extension('x')",
                              "SELECT LOAD_EXTENSION('x', 'y')",
                              "SELECT fts3_tokenizer('x')"}) {
        EXPECT_NE(error_of(connection_, words), "") << words;
    }
    EXPECT_THAT(error_of(connection_, "SELECT text FROM hidden"),
                HasSubstr("access to hidden.text is prohibited"));
    EXPECT_THAT(error_of(connection_, "PRAGMA user_version"), HasSubstr("not authorized"));
}

TEST_F(Authorizer, OneStatementAlone) {
    EXPECT_EQ(error_of(connection_, "SELECT 1; SELECT 2"), "only one statement can be asked");
    EXPECT_EQ(error_of(connection_, "SELECT 1; "), "");
    EXPECT_EQ(error_of(connection_, ""), "no statement");
    EXPECT_EQ(error_of(connection_, "SELECT 1\0SELECT 2"s), "a zero byte");
    EXPECT_EQ(error_of(connection_, "SELECT 1 --" + std::string(2 << 20, '-')), "longer than 1 MiB");
}

TEST_F(Authorizer, ValuesHaveBounds) {
    EXPECT_THAT(error_of(connection_, "SELECT length(zeroblob(1000000000))"), HasSubstr("too big"));
    EXPECT_THAT(error_of(connection_, "SELECT " + std::string(2000, '(') + "1" + std::string(2000, ')')),
                ::testing::AnyOf(HasSubstr("depth"), HasSubstr("overflow")));
}

TEST(Sqlite, WrongWordsHaveTheirPlace) {
    const Connection connection;
    try {
        const Statement statement(connection, "SELECT 1 WHERE nobody = 2");
        FAIL();
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), "no such column: nobody");
        EXPECT_EQ(error.place(), 15U);
    }
    EXPECT_EQ(error_of(connection, "SELECT \"text\""), "no such column: text");
}

TEST(Sqlite, BindsAndGivesEveryType) {
    const Connection connection;
    Statement statement(connection, "SELECT ?1, ?2, ?3, ?4, ?5");
    constexpr std::array<std::uint8_t, 3> bytes = {0, 1, 255};
    statement.bind(1, std::int64_t{-3});
    statement.bind(2, -6.5);
    const std::string text = "a\0b"s;
    statement.bind(3, text);
    statement.bind(4, bytes);
    statement.bind_null(5);
    ASSERT_TRUE(statement.step());
    EXPECT_EQ(statement.number(0), -3);
    EXPECT_EQ(statement.real(1), -6.5);
    EXPECT_EQ(statement.text(2), text);
    EXPECT_THAT(statement.bytes(3), ::testing::ElementsAreArray(bytes));
    EXPECT_EQ(statement.type(4), SQLITE_NULL);
}

TEST(Sqlite, AFileThatCannotBeOpenedSaysWhy) {
    try {
        const Connection connection("/not/there", SQLITE_OPEN_READONLY);
        FAIL();
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), "unable to open database file");
    }
}

TEST(Sqlite, Regexp) {
    const Connection connection;
    add_regexp(connection);
    const auto value = [&](const std::string& words) {
        Statement statement(connection, "SELECT " + words);
        EXPECT_TRUE(statement.step());
        return statement.type(0) == SQLITE_NULL ? -1 : statement.number(0);
    };
    EXPECT_EQ(value("'led 3' REGEXP 'd [0-9]$'"), 1);
    EXPECT_EQ(value("'led 3' REGEXP '^d'"), 0);
    EXPECT_EQ(value("'a' || char(10) || 'b' REGEXP '^b$'"), 1);
    EXPECT_EQ(value("NULL REGEXP 'a'"), -1);
    EXPECT_EQ(value("'a' REGEXP NULL"), -1);
    EXPECT_EQ(value("12 REGEXP '^1'"), 1);
    EXPECT_EQ(value("'' REGEXP ''"), 1);
    EXPECT_EQ(error_of(connection, "SELECT 'a' REGEXP '['"), "REGEXP: missing ]: [");
    EXPECT_EQ(error_of(connection, "SELECT 'a' REGEXP '(?<=a)'"), "REGEXP: invalid perl operator: (?<");
    // A pattern for each row.
    Statement rows(connection, "SELECT 'led' REGEXP column1 FROM (VALUES ('^l'), ('x'), ('d$'))");
    for (const int expected : {1, 0, 1}) {
        ASSERT_TRUE(rows.step());
        EXPECT_EQ(rows.number(0), expected);
    }
}

}  // namespace

}  // namespace ztdecode::tool::sqlite
