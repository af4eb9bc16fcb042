#include "tool/options.hpp"

#include <array>
#include <string>
#include <string_view>

#include "tool/command_line.hpp"

namespace ztdecode::tool {

namespace {

constexpr unsigned most_jobs = 256;

constexpr auto formats = std::to_array<Named<Format>>(
    {{"text", Format::text}, {"ndjson", Format::ndjson}, {"csv", Format::csv}, {"table", Format::table}});
constexpr auto times = std::to_array<Named<TimeShown>>({{"none", TimeShown::none},
                                                        {"relative", TimeShown::relative},
                                                        {"delta", TimeShown::delta},
                                                        {"absolute", TimeShown::absolute}});

constexpr auto purpose = "Readable texts for the messages in traces of telephone terminal signalling.\n";

constexpr auto footer = R"(Subcommands:
  summary                what is in traces, on one page
  findings               what is wrong in traces, by rules
  diff                   what two traces say differently
  ladder                 who said what to whom, as a picture
  redact                 the same trace without names, numbers, addresses, keys
  report                 traces as a page for any browser
"ztdecode summary --help" says more of one. A file of that name is ./summary.

Layouts of trace lines, each with the two bytes 03 0a for its message:
  000042R 02 03 0a       spzt: six characters of the trace's own (a number, a
                         time: copied, never read), S for a message from the
                         system or R for one to it, a blank, the length, the
                         bytes; spzt-lng2: always two length bytes
  02 03 0a               line: the length in one byte, the bytes
  02 00 03 0a            lng2: the length in two bytes, low one first
  zt 02 03 0a            zt: "zt ", then one of these two
bin1 and bin2 are binary: messages behind one or two length bytes each.

Columns for --where, in SQL as SQLite has it; = <> < LIKE GLOB AND OR NOT IN
and X REGEXP 'RE' say most:
  file, line, columns    where it stood; the six characters in front of it
  time                   as the trace gives it, NULL where it does not
  direction, link        'from' or 'to' the system; 'ip', 'digital', 'hub' ...
  message, code, status  'start_rtp'; 1; 'decoded', 'unknown' or 'refused'
  length, bytes, hex     how many bytes; which, as a blob and in hexadecimal
  text                   what is shown of it
  field('codec')         one of its values; fields: all of them as JSON
  unknown, missing       how many values no table knows, and bytes it lacks
  depth, parent          how many messages carry it; the name of its carrier

Words:
  refused                a trace line that cannot be decoded, as "02 03" whose
                         second byte is missing; standard error names it, and
                         the work goes on
  no trace line          any other line, as "08:42:01 link up", a blank one or
                         one that begins with #; it is printed as it is
  carried                of a message that stands inside another one, as those
                         that a hub passes on; a selection that holds for it
                         shows the message that carries it
  offset                 of a byte in its message; 0 is the first one after the
                         length
  HE, RYM                in texts: sets with a windowing system of their own,
                         terminals spoken to in objects and their properties

Examples:
  ztdecode trace.spzt
  tail -f trace.spzt | ztdecode --no-input
  ztdecode --link ip --unknown -C 2 trace.spzt
  ztdecode --where "link = 'ip' AND field('codec') LIKE 'G.7%'" trace.spzt
  ztdecode --explain trace.spzt | less
  ztdecode --catalog | less
  ztdecode --sql 'select * from resets' trace.spzt
  ztdecode --layout bin2 --direction to capture.bin

Exit status: 0, 1 when lines were refused, 2 for bad usage, a file that cannot
be read or an output that cannot be written. With an option of the selection 0
when a message was selected, 1 when none was. "man ztdecode" says more.
)";

void add_what_comes_out(CLI::App& app, Options& o, bool& no_input) {
    add_choice(app, "--format", o.format, formats,
               "text (default), or ndjson: what every line\n"
               "says as one JSON object, values by name; of\n"
               "--sql also csv or table")
        ->type_name("FORMAT")
        ->group("Output");
    add_switch(app, "-n,--no-input", no_input, "leave the trace lines out")->group("Output");
    add_choice(app, "--time", o.time, times,
               "times of the trace in front of its lines:\n"
               "none (default), relative (to the first),\n"
               "delta (to the last one) or absolute")
        ->type_name("WHICH")
        ->group("Output");
    add_switch(app, "--audio-only", o.audio_only, "audio messages only")->group("Output");
    add_switch(app, "--check", o.check,
               "say for each file what became of its lines\n"
               "and messages, and nothing else; exit status 0\n"
               "when all was understood")
        ->group("Output");
    add_switch(app, "--explain", o.explain, "which bytes each stretch of a text came from")->group("Output");
    add_switch(app, "--findings", o.findings,
               "what is wrong, by rules, beneath the messages;\n"
               "see ztdecode findings")
        ->group("Output");
    add_switch(app, "--debug", o.debug, "what the decoders trace on the side")->group("Output");
    add_switch(app, "--catalog", o.catalog,
               "list every message that can be decoded with\n"
               "its code and its fields, and read no file")
        ->group("Output");
    app.add_option("--sql", o.sql,
                   "answer an SQL query of the messages of all\n"
                   "files: as a table on a terminal, as CSV\n"
                   "elsewhere; docs/queries.md has the tables")
        ->take_last()
        ->type_name("QUERY")
        ->group("Questions");
    add_file(app, "--database", o.database,
             "put the messages of all files into an SQLite\n"
             "file; --sql without trace files asks it")
        ->group("Questions");
    add_switch(app, "--append", o.append, "add to what the database holds already")->group("Questions");
}

void add_follow(CLI::App& app, Options& o) {
    add_switch(app, "--follow", o.follow,
               "go on as the file grows, is truncated, or is\n"
               "made anew; ends with Ctrl-C and the totals")
        ->group("Input");
}

struct Switched {
    std::string_view option;
    bool on;
};

// What is wrong with the options beside each other; empty: nothing.
std::string contradiction(const Options& o) {
    if (o.catalog && !o.files.empty()) {
        return "--catalog: reads no file, " + o.files.front() + " is one too many";
    }
    if ((o.format == Format::csv || o.format == Format::table) && !o.sql) {
        return "--format csv and table: for the answers of --sql";
    }
    if (o.format == Format::ndjson && (o.check || o.selection.count))
        return "--format ndjson: has no place beside --check and --count, which print sums";
    if (o.catalog && (o.check || o.selection.any()))
        return "--catalog: lists what can be decoded, --check and a selection have no place beside it";
    if (o.time != TimeShown::none && (o.asks() || o.check || o.format != Format::text || !o.input))
        return "--time: stands in front of trace lines, and has no place where none are shown";
    if (o.findings && (o.asks() || o.check || o.catalog || o.selection.count || o.format != Format::text))
        return "--findings: stands beneath texts; ztdecode findings --format ndjson has them as data";
    if (o.findings && o.join != Join::none)
        return "--findings: looks at each trace by itself; ztdecode findings --join looks at all as one";
    if (o.follow && (o.files.empty() || o.files.front() == "-"))
        return "--follow: needs a FILE; standard input is followed as it is";
    if (o.follow && o.files.size() > 1) return "--follow: one file, " + o.files[1] + " is one too many";
    if (o.append && o.database.empty()) return "--append: needs --database FILE to add to";
    if (o.append && o.files.empty()) return "--append: needs a FILE to add, - is standard input";
    if (o.check && o.selection.any())
        return "--check: says what became of all messages, a selection has no place beside it";
    if (!o.asks()) return {};
    if (o.selection.any())
        return "--sql, --database: a query has its own conditions, and a database all messages";
    const Switched output[] = {{"--no-input", !o.input}, {"--audio-only", o.audio_only},
                               {"--explain", o.explain}, {"--debug", o.debug},
                               {"--check", o.check},     {"--follow", o.follow},
                               {"--catalog", o.catalog}};
    for (const auto& [option, on] : output) {
        if (on) return std::string(option) + ": has no place beside --sql and --database";
    }
    return {};
}

}  // namespace

Arguments parse_arguments(int argc, const char* const* argv) {
    Options o;
    bool no_input = false;
    CommandLine line("ztdecode", purpose, footer, o);
    line.add_files();
    line.add_input();
    add_follow(line.app(), o);
    line.add_selection();
    line.add_context();
    add_what_comes_out(line.app(), o, no_input);
    line.add_output();
    line.add_terminal();
    add_number(line.app(), "-j,--jobs", o.jobs, 1U, most_jobs,
               "decode with N processors, large files in\n"
               "pieces; the output is the same (default: all\n"
               "for files, 1 for pipes)")
        ->group("Work");
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return {std::nullopt, *status};
    o.input = !no_input;
    if (const std::string wrong = contradiction(o); !wrong.empty()) return {std::nullopt, line.refuse(wrong)};
    // A query alone asks the database that there is.
    if (!o.sql || o.database.empty()) line.default_files();
    return {std::move(o), 0};
}

}  // namespace ztdecode::tool
