#include "tool/ask.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>

#include "tool/input/content.hpp"
#include "tool/input/traces.hpp"
#include "tool/output/diagnostics.hpp"
#include "tool/select/answer.hpp"
#include "tool/select/database_file.hpp"
#include "tool/select/database_report.hpp"
#include "tool/select/query.hpp"
#include "tool/trace.hpp"

namespace ztdecode::tool {

namespace {

constexpr int status_refused = 1;
constexpr int status_failed = 2;

// Nothing of it has to outlive a crash: what is not finished is thrown away. Rows go to its end, which takes
// no cache, and indexes are sorted quicker in pieces that a processor's own cache holds.
constexpr auto quick =
    "pragma journal_mode = memory; pragma synchronous = off; pragma locking_mode = exclusive;"
    "pragma cache_size = -1024;";

class Asking {
  public:
    Asking(const Options& options, const Display& display, Output& out)
        : options_(options),
          display_(display),
          out_(out),
          diagnostics_(STDERR_FILENO, display.escapes_diagnostics) {
        display_.color = false;
    }

    int run() {
        try {
            if (options_.database.empty()) {
                ask_temporary();
            } else {
                if (!options_.files.empty()) make_file();
                if (options_.sql) ask_file();
            }
        } catch (const std::runtime_error& error) {
            complain(options_.database.empty() ? "temporary database" : options_.database, error.what());
        }
        return status_;
    }

  private:
    // SQLite takes it away when it is closed; it stands where TMPDIR says.
    void ask_temporary() {
        sqlite::Connection database("", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        database.run(quick);
        create_tables(database);
        create_views(database);
        add_traces(database);
        answer(database);
    }

    void make_file() {
        NewDatabaseFile file(options_.database, options_.append);
        {
            sqlite::Connection database(file.path(), SQLITE_OPEN_READWRITE);
            database.run(quick);
            if (file.begun()) {
                drop_indexes(database);
            } else {
                create_tables(database);
                create_views(database);
            }
            add_traces(database);
        }
        if (read_) file.take_place();
    }

    void ask_file() {
        if (!holds_database(options_.database)) throw std::runtime_error(std::strerror(ENOENT));
        sqlite::Connection database(path_of_database(options_.database), SQLITE_OPEN_READONLY);
        answer(database);
    }

    void answer(sqlite::Connection& database) {
        only_queries(database);
        const bool terminal = is_terminal(STDOUT_FILENO);
        try {
            sqlite::Statement query(database, *options_.sql);
            write_answer(query, form(terminal), terminal ? terminal_width(STDOUT_FILENO) : 0, out_);
        } catch (const sqlite::Error& error) {
            complain("--sql", error.what());
        }
        out_.flush();
    }

    AnswerForm form(bool terminal) const {
        switch (options_.format) {
            case Format::ndjson:
                return AnswerForm::ndjson;
            case Format::csv:
                return AnswerForm::csv;
            case Format::table:
                return AnswerForm::table;
            case Format::text:
                break;
        }
        return terminal ? AnswerForm::table : AnswerForm::csv;
    }

    void add_traces(sqlite::Connection& connection) {
        Database database(connection);
        for (const std::string& file : options_.files) add_trace(file, database);
        if (options_.join != Join::none) {
            Diagnostics of_last(options_.files.back(), diagnostics_, options_.quiet);
            complain_of_cuts(joined_, of_last, false);
            diagnostics_.flush();
        }
        database.finish();
    }

    void add_trace(const std::string& file, Database& database) {
        const Content content(file);
        if (content.error() != 0) return complain(file, std::strerror(content.error()));
        if (content.begins_with("SQLite format 3")) {
            return complain(file, "a database is no trace; --database FILE --sql QUERY asks one");
        }
        if (const auto name = database.name_of(content.sha256())) {
            diagnostics_.add_name("ztdecode: " + file + ": left out: its content is there already, as " +
                                  *name);
            diagnostics_.text.add("\n");
            diagnostics_.flush();
            return;
        }
        const auto decode_trace = [&](const std::string& name, bool packed, Source& source) {
            const auto own = options_.join == Join::none ? std::make_unique<Sessions>() : nullptr;
            Sessions& sessions = own != nullptr ? *own : joined_;
            database.begin_file(name, content.sha256(), content.bytes());
            const auto decoder = std::make_unique<TraceDecoder>(
                name, std::make_unique<DatabaseReport>(database), options_, display_,
                packed || &file != &options_.files.back(), sessions, out_, diagnostics_);
            decoder->decode(source, packed ? -1 : content.descriptor());
            read_ = true;
            database.end_file(decoder->lines());
            if (decoder->refused_lines()) status_ = std::max(status_, status_refused);
            if (decoder->unreadable()) status_ = status_failed;
        };
        DescriptorSource source(content.descriptor());
        const Damage damage = each_trace(file, source, !is_binary(options_.layout), decode_trace);
        if (!damage.why.empty()) complain(damage.name, damage.why);
    }

    void complain(std::string_view file, std::string_view why) {
        complain_of_file(file, why, diagnostics_);
        diagnostics_.flush();
        status_ = status_failed;
    }

    const Options& options_;
    Display display_;
    Output& out_;
    Output diagnostics_;
    Sessions joined_;    // of files that are one trace
    bool read_ = false;  // a trace has been: otherwise the database stays what it was
    int status_ = 0;
};

}  // namespace

int ask(const Options& options, const Display& display, Output& out) {
    return Asking(options, display, out).run();
}

}  // namespace ztdecode::tool
