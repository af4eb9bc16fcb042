#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "support/process.hpp"

// --sql and --database: what is answered in which form, what a query may do, and what becomes of the file.

namespace ztdecode::testing {

namespace {

namespace fs = std::filesystem;

Ended ztdecode(std::vector<std::string> arguments, const std::string& input = {}) {
    arguments.insert(arguments.begin(), ZTDECODE_TOOL_FILE);
    return run(arguments, input);
}

Ended ask(const std::string& query, const std::string& trace) { return ztdecode({"--sql", query}, trace); }

// The rows of an answer without its header, their ends and their quotes: "1,2 3,4".
std::string rows(const std::string& query, const std::string& trace) {
    const Ended e = ask(query, trace);
    EXPECT_EQ(e.error, "");
    std::string words = e.output.substr(e.output.find('\n') + 1);
    std::string result;
    for (const char c : words) {
        if (c == '\n') {
            result += ' ';
        } else if (c != '\r' && c != '"') {
            result += c;
        }
    }
    return result.empty() ? result : result.substr(0, result.size() - 1);
}

class Folder {
  public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "ztdecode-questions-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder");
        path_ = name;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { fs::remove_all(path_); }

    std::string file(const std::string& name) const { return path_ + "/" + name; }
    std::string file(const std::string& name, const std::string& words) const {
        std::ofstream(file(name), std::ios::binary) << words;
        return file(name);
    }
    // The names of what is in it.
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(path_)) found.insert(entry.path().filename());
        return found;
    }

  private:
    std::string path_;
};

using Names = std::set<std::string>;

const std::string led = "000001S 03 21 04 03\n";
const std::string two = led + "000002R 02 03 04\n";

TEST(Questions, CsvAsTheStandardHasIt) {
    const Ended e =
        ask("select id, line, link, message, null as n, '' as e, 'a,\"b' as q from messages", led);
    EXPECT_EQ(e.output, "id,line,link,message,n,e,q\r\n1,1,digital,led,,\"\",\"a,\"\"b\"\r\n");
    EXPECT_EQ(e.error, "");
    EXPECT_EQ(e.status, 0);
    EXPECT_EQ(ask("select 'a' || char(10) || 'b' as \"a,b\"", led).output, "\"a,b\"\r\n\"a\nb\"\r\n");
    EXPECT_EQ(ask("select id from messages where 0", led).output, "id\r\n");
}

TEST(Questions, Ndjson) {
    EXPECT_EQ(ztdecode({"--format", "ndjson", "--sql",
                        "select line, 1.5 as real, null as none, bytes, 'a\"b' || char(10) as text, "
                        "cast(x'ff41' as text) as odd, 9e999 as endless from messages"},
                       led)
                  .output,
              "{\"line\":1,\"real\":1.5,\"none\":null,\"bytes\":\"210403\",\"text\":\"a\\\"b\\n\","
              "\"odd\":\"\xEF\xBF\xBD"
              "A\",\"endless\":\"Inf\"}\n");
}

TEST(Questions, Table) {
    EXPECT_EQ(ztdecode({"--format", "table", "--sql",
                        "select line, message, null as none, char(27) || 'Zoé' as odd, length from messages"},
                       two)
                  .output,
              "line  message        none  odd      length\n"
              "----  -------------  ----  -------  ------\n"
              "   1  led                  \\x1bZoé       3\n"
              "   2  digit_dialled        \\x1bZoé       2\n");
    EXPECT_EQ(ztdecode({"--format", "table", "--sql", "select id from messages where 0"}, led).output,
              "id\n--\n");
}

TEST(Questions, SeveralFilesAreOneAnswer) {
    const TemporaryFile a(led);
    const TemporaryFile b(two);
    const Ended e = ztdecode({"--sql", "select file, line, message from messages", a.path(), b.path()});
    EXPECT_EQ(e.output, "file,line,message\r\n" + a.path() + ",1,led\r\n" + b.path() + ",1,led\r\n" +
                            b.path() + ",2,digit_dialled\r\n");
    EXPECT_EQ(
        ztdecode({"--jobs", "2", "--sql", "select file, line, message from messages", a.path(), b.path()})
            .output,
        e.output);
}

TEST(Questions, AMarkInFrontOfACommentChangesNothing) {
    EXPECT_EQ(ask("select verdict from lines", "\xEF\xBB\xBF# words\n").output, "verdict\r\ncomment\r\n");
}

TEST(Questions, LinesThatAreNoMessages) {
    const std::string trace = "# words\n \n08:42:01 link up\n000001S 03 21 04\n" + led;
    const Ended e =
        ask("select line, verdict, reason, \"column\", expected, found, content from lines", trace);
    EXPECT_EQ(e.output,
              "line,verdict,reason,column,expected,found,content\r\n"
              "1,comment,,,,,# words\r\n2,blank,,,,, \r\n3,no_trace_line,,,,,08:42:01 link up\r\n"
              "4,refused,too_short,9,3,2,000001S 03 21 04\r\n");
    EXPECT_EQ(e.error, "ztdecode: -:4:9: the length says 3 bytes, the line has 2\n");
    EXPECT_EQ(e.status, 1);
    EXPECT_EQ(ask("select name, lines, messages, refused, bytes from files", trace).output,
              "name,lines,messages,refused,bytes\r\n-,5,1,1,64\r\n");
}

TEST(Questions, AFileThatCannotBeReadIsNamedAndTheOthersAreAsked) {
    const TemporaryFile file(led);
    const Ended e =
        ztdecode({"--sql", "select count(*) as n from messages", "/no/such/file", file.path(), "/"});
    EXPECT_EQ(e.output, "n\r\n1\r\n");
    EXPECT_EQ(e.error, "ztdecode: /no/such/file: No such file or directory\nztdecode: /: Is a directory\n");
    EXPECT_EQ(e.status, 2);
}

TEST(Questions, BinaryFiles) {
    EXPECT_EQ(ztdecode({"--layout", "bin1", "--sql", "select line, columns is null, message from messages"},
                       std::string("\x03\x21\x04\x03\x01\x2a", 6))
                  .output,
              "line,columns is null,message\r\n1,1,led\r\n2,1,version_inquiry\r\n");
}

TEST(Questions, BytesThatAreNoUtf8) {
    EXPECT_EQ(rows("select value from fields where value like 'M.%'",
                   "000336S 15 05 02 00 53 04 03 01 00 0c 4d 2e 20 4d fc 6c 6c 65 72 20 34 32\n"),
              "M. M\xEF\xBF\xBDller 42");
}

TEST(Questions, WhatIsWrongIsPointedAtBeforeAnyFileIsRead) {
    const auto error = [](const std::string& query) {
        const Ended e = ztdecode({"--sql", query, "/no/such/file"});
        EXPECT_EQ(e.output, "");
        EXPECT_EQ(e.status, 2);
        return e.error;
    };
    EXPECT_EQ(error("select link, mesage from messages"),
              "ztdecode: --sql: no such column: mesage (did you mean message?)\n"
              "    select link, mesage from messages\n"
              "                 ^\n");
    EXPECT_EQ(error("select m.lnk\nfrom messages m"),
              "ztdecode: --sql: no such column: m.lnk (did you mean link?)\n"
              "    select m.lnk\n"
              "           ^\n");
    EXPECT_EQ(error("select 1 from\n  reset"),
              "ztdecode: --sql: no such table: reset (did you mean resets?)\n"
              "      reset\n"
              "      ^\n");
    EXPECT_EQ(error("selec 1"), "ztdecode: --sql: near \"selec\": syntax error\n    selec 1\n    ^\n");
    EXPECT_EQ(error("select 'é', nix('\x1b')"),
              "ztdecode: --sql: no such function: nix\n    select 'é', nix('\\x1b')\n                ^\n");
    EXPECT_EQ(error("select 1; select 2"),
              "ztdecode: --sql: only one statement can be asked\n    select 1; select 2\n              ^\n");
    EXPECT_EQ(error("select"), "ztdecode: --sql: incomplete input\n");
    EXPECT_EQ(error(""), "ztdecode: --sql: no statement\n");
    EXPECT_EQ(error("-- nothing"), "ztdecode: --sql: no statement\n");
}

TEST(Questions, AQueryOnlyReads) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ASSERT_EQ(ztdecode({"--database", database, "-"}, led).status, 0);
    const std::string before = contents(database);
    const std::string other = folder.file("other.db");
    for (const std::string& query : {"attach '" + other + "' as other",
                                     "vacuum into '" + other + "'",
                                     std::string("vacuum"),
                                     std::string("delete from messages"),
                                     std::string("delete from message_rows"),
                                     std::string("drop table files"),
                                     std::string("insert into files(name) values('x')"),
                                     std::string("update files set name = 'x'"),
                                     std::string("create table more(x)"),
                                     std::string("create temp table more(x)"),
                                     std::string("create virtual table more using fts5(x)"),
                                     std::string("pragma user_version = 7"),
                                     std::string("pragma journal_mode"),
                                     std::string("select * from pragma_table_info('files')"),
                                     std::string("select load_extension('x')"),
                                     std::string("begin"),
                                     std::string("select * from sqlite_master"),
                                     std::string("reindex"),
                                     std::string("analyze"),
                                     std::string("detach main"),
                                     std::string("with x as (select 1) delete from files"),
                                     std::string("explain delete from files"),
                                     std::string("select fts3_tokenizer('x')")}) {
        for (const std::string& trace : {std::string("-"), std::string()}) {
            std::vector<std::string> arguments = {"--sql", query};
            if (trace.empty()) {
                arguments.insert(arguments.end(), {"--database", database});
            } else {
                arguments.push_back(trace);
            }
            const Ended e = ztdecode(arguments, led);
            EXPECT_EQ(e.status, 2) << query;
            EXPECT_EQ(e.output, "") << query;
            EXPECT_EQ(e.error.rfind("ztdecode: --sql: ", 0), 0) << e.error;
        }
    }
    EXPECT_EQ(folder.names(), Names{"all.db"});
    EXPECT_EQ(contents(database), before);
}

TEST(Questions, FunctionsOfTheQuery) {
    EXPECT_EQ(rows("select fields ->> 'led' from messages", led), "3");
    EXPECT_EQ(rows("select group_concat(value, '+') from json_each('[1,2]')", led), "1+2");
    EXPECT_EQ(rows("select text regexp 'led \\d ON$' from messages", led), "1");
    const Ended e = ask("select id from messages where text regexp '('", led);
    EXPECT_EQ(e.status, 2);
    EXPECT_EQ(e.error.rfind("ztdecode: --sql: REGEXP: ", 0), 0) << e.error;
}

TEST(Questions, ADisplayedFlagAndATenthAreNumbers) {
    // Receiving -3.0 dB, sending 4.0 dB.
    EXPECT_EQ(
        rows("select value, typeof(value), unit from fields where unit = 'dB'", "000001S 04 29 11 fa 08\n"),
        "-3.0,real,dB 4.0,real,dB");
    EXPECT_EQ(rows("select value, typeof(value), kind from fields where kind = 'flag'", "000001S 02 40 01\n"),
              "1,integer,flag");
}

// Two channels, a second start without a stop between, a second stop, and tickets for three of the starts.
TEST(Questions, Calls) {
    const std::string start = "000000S 0c 13 01 02 01 04 0a 00 00 ";
    const std::string stop = "000000S 05 13 02 14 01 ";
    const std::string ticket = "000000R 10 13 03 09 00 04 0a 00 00 ";
    const std::string trace =
        start + "02 14 01 00\n" + start + "03 14 01 01\n" + stop + "01\n" + stop + "00\n" + ticket +
        "02 0c 00 04 00 00 00 3c\n" + ticket + "03 0c 00 04 00 00 00 05\n" + start + "02 14 01 00\n" + start +
        "04 14 01 00\n" + stop + "00\n" + stop + "00\n" + ticket + "02 0c 00 04 00 00 00 07\n";
    EXPECT_EQ(rows("select start_line, stop_line, ticket_line, remote_ip, call_duration from calls", trace),
              "1,4,5,10.0.0.2,60 2,3,6,10.0.0.3,5 7,,11,10.0.0.2,7 8,9,,10.0.0.4,");
}

TEST(Questions, CallsOfOneFileAreNotThoseOfAnother) {
    const TemporaryFile a("000000S 0c 13 01 02 01 04 0a 00 00 02 14 01 00\n");
    const TemporaryFile b(
        "000000S 05 13 02 14 01 00\n000000R 10 13 03 09 00 04 0a 00 00 02 0c 00 04 00 00 00 3c\n");
    EXPECT_EQ(ztdecode({"--sql", "select start_line, stop_line, ticket_line from calls", a.path(), b.path()})
                  .output,
              "start_line,stop_line,ticket_line\r\n1,,\r\n");
}

// A set behind a hub, number 3, starts; then a module of a set.
TEST(Questions, ResetsAndTerminals) {
    const std::string trace =
        "000001R 11 14 12 1f 00 00 02 15 20 31 02 01 08 01 01 05 01 08\n"
        "000002S 01 03\n";
    EXPECT_EQ(rows("select line, direction, message, hub_set, reset_kind, terminal_type, software_version "
                   "from resets",
                   trace),
              "1,to,reset,3,hard,set-49,2.21 2,from,software_reset,,,,");
    EXPECT_EQ(rows("select line, hub_set, terminal_type, boot_version, data_version from terminals", trace),
              "1,3,set-49,1.08,1.05");
}

TEST(Questions, Tickets) {
    EXPECT_EQ(rows("select line, remote_ip, call_duration, packets_lost from tickets",
                   "000000R 10 13 03 09 00 04 0a 00 00 02 0c 00 04 00 00 00 3c\n"),
              "1,10.0.0.2,60,");
}

TEST(Questions, Errors) {
    const Ended e = ask("select line, what, message, detail from errors",
                        "000001R 03 1f 03 01\n"    // bad resource
                        "000002S 03 21 04\n"       // too short
                        "000003S 03 1d 01 00\n"    // no such message
                        "000004S 02 32 00\n"       // ends early
                        "000005S 03 32 01 00\n");  // nothing wrong
    EXPECT_EQ(e.output,
              "line,what,message,detail\r\n1,reported,error,erreur: bad ressource ID\r\n"
              "2,refused line,,too_short\r\n3,unknown message,,code 29\r\n"
              "4,missing bytes,voice_channel,1 missing bytes\r\n");
    EXPECT_EQ(e.status, 1);
}

TEST(Database, IsThereAfterwards) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    const Ended made = ztdecode({"--database", database}, two);
    EXPECT_EQ(made.output + made.error, "");
    EXPECT_EQ(made.status, 0);
    EXPECT_EQ(folder.names(), Names{"all.db"});
    const std::string bytes = contents(database);
    EXPECT_EQ(bytes.substr(0, 15), "SQLite format 3");
    EXPECT_EQ(bytes.substr(60, 4), std::string("\0\0\0\1", 4));  // user_version
    EXPECT_EQ(bytes.substr(68, 4), "ztdb");                      // application_id
    const Ended asked = ztdecode({"--database", database, "--sql", "select message from messages"});
    EXPECT_EQ(asked.output, "message\r\nled\r\ndigit_dialled\r\n");
    EXPECT_EQ(asked.status, 0);
    EXPECT_EQ(contents(database), bytes);
}

TEST(Database, MadeAndAskedAtOnce) {
    const Folder folder;
    EXPECT_EQ(
        ztdecode({"--database", folder.file("all.db"), "--sql", "select count(*) as n from fields", "-"}, two)
            .output,
        "n\r\n2\r\n");
}

TEST(Database, IsMadeAnewWithoutAppend) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, two);
    ztdecode({"--database", database}, led);
    EXPECT_EQ(ztdecode({"--database", database, "--sql", "select count(*) as n from messages"}).output,
              "n\r\n1\r\n");
}

TEST(Database, Append) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    EXPECT_EQ(ztdecode({"--database", database, "--append", "-"}, led).status, 0);
    EXPECT_EQ(ztdecode({"--database", database, "--append", folder.file("b", two)}).status, 0);
    EXPECT_EQ(
        ztdecode({"--database", database, "--sql",
                  "select id, file_id, line, message, (select count(*) from fields where message_id = id) "
                  "as fields from messages"})
            .output,
        "id,file_id,line,message,fields\r\n1,1,1,led,1\r\n2,2,1,led,1\r\n3,2,2,digit_dialled,1\r\n");
    EXPECT_EQ(
        ztdecode({"--database", database, "--sql", "select link, count(*) as n from messages group by 1"})
            .output,
        "link,n\r\ndigital,3\r\n");
}

TEST(Database, TheSameTraceTwiceIsLeftOut) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    const std::string a = folder.file("a", two);
    const std::string b = folder.file("b", two);
    const std::string empty = folder.file("empty", "");
    const Ended e = ztdecode({"--database", database, a, b, empty, empty});
    EXPECT_EQ(e.error, "ztdecode: " + b + ": left out: its content is there already, as " + a + "\n");
    EXPECT_EQ(e.status, 0);
    const Ended again = ztdecode({"--database", database, "--append", "-"}, two);
    EXPECT_EQ(again.error, "ztdecode: -: left out: its content is there already, as " + a + "\n");
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(ztdecode({"--database", database, "--sql", "select count(*) as n from messages"}).output,
              "n\r\n2\r\n");
}

TEST(Database, WhatIsSomethingElseStaysAsItIs) {
    const Folder folder;
    const std::string trace = folder.file("trace", two);
    for (const std::string& append : {std::string(), std::string("--append")}) {
        std::vector<std::string> arguments = {"--database", trace, folder.file("a", led)};
        if (!append.empty()) arguments.push_back(append);
        const Ended e = ztdecode(arguments);
        EXPECT_EQ(e.error, "ztdecode: " + trace + ": no database of ztdecode; it stays as it is\n");
        EXPECT_EQ(e.status, 2);
        EXPECT_EQ(contents(trace), two);
    }
    EXPECT_EQ(ztdecode({"--database", trace, "--sql", "select 1"}).status, 2);
    EXPECT_EQ(ztdecode({"--database", folder.file("."), folder.file("a")}).error,
              "ztdecode: " + folder.file(".") + ": no regular file\n");
    EXPECT_EQ(folder.names(), (Names{"a", "trace"}));
}

TEST(Database, OfAnotherVersion) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, led);
    std::string bytes = contents(database);
    bytes[63] = 9;
    folder.file("all.db", bytes);
    const std::string why =
        "ztdecode: " + database + ": a database of version 9; this ztdecode reads version 1\n";
    EXPECT_EQ(ztdecode({"--database", database, "--sql", "select 1"}).error, why);
    EXPECT_EQ(ztdecode({"--database", database, "--append", "-"}, two).error, why);
    EXPECT_EQ(ztdecode({"--database", database, "-"}, two).error, why);
    EXPECT_EQ(contents(database), bytes);
}

TEST(Database, ThatIsBroken) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, two);
    const std::string bytes = contents(database);
    for (const std::size_t length : {std::size_t{100}, std::size_t{5000}, bytes.size() / 2}) {
        folder.file("all.db", bytes.substr(0, length));
        const Ended e = ztdecode({"--database", database, "--sql", "select * from messages, fields, lines"});
        EXPECT_EQ(e.status, 2) << length;
        EXPECT_EQ(e.error.rfind("ztdecode: ", 0), 0) << length;
    }
}

TEST(Database, WhereNothingCanBeWritten) {
    const Folder folder;
    const std::string nowhere = folder.file("no/such/all.db");
    const Ended e = ztdecode({"--database", nowhere, "-"}, led);
    EXPECT_EQ(e.error,
              "ztdecode: " + nowhere + ": " + nowhere + ".ztdecode-new: No such file or directory\n");
    EXPECT_EQ(e.status, 2);
    EXPECT_EQ(ztdecode({"--database", folder.file("none.db"), "--sql", "select 1"}).error,
              "ztdecode: " + folder.file("none.db") + ": No such file or directory\n");
    EXPECT_EQ(folder.names(), Names{});
}

std::string many_lines() {
    std::string trace;
    for (int k = 0; k < 20000; ++k) trace += led;
    return trace;
}

TEST(Database, AFullDiskLeavesTheOldFile) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, led);
    const std::string before = contents(database);
    const std::string trace = folder.file("trace", many_lines());
    for (const std::string& append : {std::string(), std::string(" --append")}) {
        const Ended e =
            run({"/bin/sh", "-c", "ulimit -f 300; exec \"$0\" --database \"$1\"" + append + " \"$2\"",
                 ZTDECODE_TOOL_FILE, database, trace});
        EXPECT_EQ(e.status, 2);
        EXPECT_EQ(e.error.rfind("ztdecode: " + database + ": ", 0), 0) << e.error;
        EXPECT_EQ(contents(database), before);
        EXPECT_EQ(folder.names(), (Names{"all.db", "trace"}));
    }
}

// Runs that wait for their input until they are ended.
class Waiting {
  public:
    Waiting(const Folder& folder, const std::string& database) {
        const std::string pipe = folder.file("pipe");
        ::mkfifo(pipe.c_str(), 0600);
        child_ = ::fork();
        if (child_ == 0) {
            ::execl(ZTDECODE_TOOL_FILE, ZTDECODE_TOOL_FILE, "--database", database.c_str(), "--append",
                    pipe.c_str(), nullptr);
            ::_exit(127);
        }
        for (int k = 0; k < 1000 && !fs::exists(database + ".ztdecode-new"); ++k) ::usleep(10000);
        EXPECT_TRUE(fs::exists(database + ".ztdecode-new"));
        // Its database is whole when it opens the pipe.
        pipe_ = ::fopen(pipe.c_str(), "w");
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    ~Waiting() { end(SIGKILL); }

    void end(int signal) {
        if (child_ <= 0) return;
        ::kill(child_, signal);
        ::waitpid(child_, &status_, 0);
        child_ = -1;
        ::fclose(pipe_);
    }
    int status() const { return status_; }

  private:
    pid_t child_ = -1;
    int status_ = 0;
    std::FILE* pipe_ = nullptr;
};

TEST(Database, ARunThatIsEndedLeavesTheOldFile) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, led);
    const std::string before = contents(database);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Waiting waiting(folder, database);
        waiting.end(signal);
        EXPECT_TRUE(WIFSIGNALED(waiting.status()) && WTERMSIG(waiting.status()) == signal);
        EXPECT_EQ(contents(database), before);
        EXPECT_EQ(folder.names(), (Names{"all.db", "pipe"}));
        fs::remove(folder.file("pipe"));
    }
    {
        Waiting waiting(folder, database);
        waiting.end(SIGKILL);
    }
    EXPECT_EQ(contents(database), before);
    // What a killed run leaves is in nobody's way.
    EXPECT_EQ(ztdecode({"--database", database, "--append", "-"}, two).status, 0);
    EXPECT_EQ(folder.names(), (Names{"all.db", "pipe"}));
    EXPECT_EQ(ztdecode({"--database", database, "--sql", "select count(*) as n from messages"}).output,
              "n\r\n3\r\n");
}

TEST(Database, OneRunAtATimeWritesIt) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    Waiting waiting(folder, database);
    const Ended e = ztdecode({"--database", database, "-"}, led);
    EXPECT_EQ(e.error, "ztdecode: " + database + ": another ztdecode is writing it\n");
    EXPECT_EQ(e.status, 2);
    EXPECT_EQ(folder.names(), (Names{"all.db.ztdecode-new", "pipe"}));
}

TEST(Database, BesideAnotherProgramsWork) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, led);
    folder.file("all.db-journal", "unfinished");
    const Ended e = ztdecode({"--database", database, "--append", "-"}, two);
    EXPECT_EQ(e.status, 2);
    EXPECT_NE(e.error.find("there is -journal beside it"), std::string::npos) << e.error;
}

TEST(Database, IsFoundThroughALink) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, led);
    fs::create_symlink("all.db", folder.file("link.db"));
    EXPECT_EQ(ztdecode({"--database", folder.file("link.db"), "--append", "-"}, two).status, 0);
    EXPECT_TRUE(fs::is_symlink(folder.file("link.db")));
    EXPECT_EQ(ztdecode({"--database", database, "--sql", "select count(*) as n from messages"}).output,
              "n\r\n3\r\n");
}

TEST(Database, IsNoTrace) {
    const Folder folder;
    const std::string database = folder.file("all.db");
    ztdecode({"--database", database}, led);
    const Ended e = ztdecode({"--sql", "select count(*) as n from messages", database});
    EXPECT_EQ(e.error,
              "ztdecode: " + database + ": a database is no trace; --database FILE --sql QUERY asks one\n");
    EXPECT_EQ(e.status, 2);
}

TEST(Database, OptionsThatDoNotGoTogether) {
    const auto error = [](const std::vector<std::string>& arguments) {
        const Ended e = ztdecode(arguments, led);
        EXPECT_EQ(e.status, 2);
        EXPECT_EQ(e.output, "");
        return e.error.substr(0, e.error.find('\n'));
    };
    EXPECT_EQ(error({"--append", "x"}), "ztdecode: --append: needs --database FILE to add to");
    EXPECT_EQ(error({"--append", "--database", "x"}),
              "ztdecode: --append: needs a FILE to add, - is standard input");
    EXPECT_EQ(error({"--format", "csv"}), "ztdecode: --format csv and table: for the answers of --sql");
    EXPECT_EQ(error({"--database", "", "x"}), "ztdecode: --database: its value is empty");
    EXPECT_EQ(error({"--sql", "select 1", "--unknown"}),
              "ztdecode: --sql, --database: a query has its own conditions, and a database all messages");
    for (const char* option : {"--explain", "--no-input", "--audio-only", "--debug", "--catalog"}) {
        EXPECT_EQ(error({"--sql", "select 1", option}),
                  std::string("ztdecode: ") + option + ": has no place beside --sql and --database");
    }
}

}  // namespace

}  // namespace ztdecode::testing
