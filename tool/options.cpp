#include "tool/options.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

#include "core/message.hpp"
#include "tool/display.hpp"
#include "tool/input/prefix_pattern.hpp"
#include "tool/output/output.hpp"
#include "tool/select/query.hpp"

namespace ztdecode::tool {

namespace {

constexpr unsigned most_jobs = 256;
constexpr int status_failed = 2;

template <class T>
struct Named {
    std::string_view name;
    T value;
};
template <class T>
using Names = std::span<const Named<T>>;

constexpr auto layouts = std::to_array<Named<Layout>>({
    {"auto", Layout::recognised},
    {"line", Layout::line},
    {"lng2", Layout::line_lng2},
    {"zt", Layout::tagged},
    {"spzt", Layout::spzt},
    {"spzt-lng2", Layout::spzt_lng2},
    {"bin1", Layout::bin1},
    {"bin2", Layout::bin2},
});
constexpr auto directions = std::to_array<Named<std::uint32_t>>({{"from", from_dhs}, {"to", to_dhs}});
constexpr auto formats = std::to_array<Named<Format>>(
    {{"text", Format::text}, {"ndjson", Format::ndjson}, {"csv", Format::csv}, {"table", Format::table}});
constexpr auto colors = std::to_array<Named<Color>>(
    {{"auto", Color::automatic}, {"always", Color::always}, {"never", Color::never}});
constexpr auto controls = std::to_array<Named<Control>>(
    {{"auto", Control::automatic}, {"raw", Control::raw}, {"escape", Control::escape}});
constexpr auto columns = std::to_array<Named<Columns>>({{"text", Columns::text},
                                                        {"number", Columns::number},
                                                        {"ms", Columns::milliseconds},
                                                        {"s", Columns::seconds}});
constexpr auto times = std::to_array<Named<TimeShown>>({{"none", TimeShown::none},
                                                        {"relative", TimeShown::relative},
                                                        {"delta", TimeShown::delta},
                                                        {"absolute", TimeShown::absolute}});
constexpr auto terminals = std::to_array<Named<Terminal>>(
    {{"none", Terminal::none}, {"columns", Terminal::columns}, {"prefix", Terminal::prefix}});
constexpr auto joins = std::to_array<Named<Join>>({{"order", Join::as_given}, {"name", Join::by_name}});
constexpr auto progresses = std::to_array<Named<bool>>({{"auto", true}, {"never", false}});

constexpr auto description = "Readable texts for the messages in traces of telephone terminal signalling.\n";

constexpr auto footer = R"(Layouts of trace lines, each with the two bytes 03 0a for its message:
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

// The library's help with one blank line between groups.
class HelpLayout : public CLI::Formatter {
  public:
    std::string make_group(std::string group, bool is_positional,
                           std::vector<const CLI::Option*> options) const override {
        const std::string text =
            CLI::Formatter::make_group(std::move(group), is_positional, std::move(options));
        return is_positional ? text + "\n" : text.substr(1);
    }
    // What is in braces for the library is the value that the option may do without.
    std::string make_option_name(const CLI::Option* option, bool is_positional) const override {
        std::string text = CLI::Formatter::make_option_name(option, is_positional);
        const std::size_t brace = text.find('{');
        return brace == std::string::npos ? text : text.substr(0, brace) + "[=name]";
    }
    // An option that may be given several times still takes one value a time.
    std::string make_option_opts(const CLI::Option* option) const override {
        constexpr std::string_view several = " ...";
        std::string text = CLI::Formatter::make_option_opts(option);
        if (!option->get_positional() && text.ends_with(several)) text.erase(text.size() - several.size());
        return text;
    }
};

template <class T>
std::string listed(Names<T> names) {
    std::string list;
    for (const auto& [name, value] : names) list.append(list.empty() ? "" : ", ").append(name);
    return list;
}

// An option whose value is one of these names. Given twice, the last one counts.
template <class T>
CLI::Option* add_choice(CLI::App& app, const std::string& option, T& chosen,
                        std::type_identity_t<Names<T>> names, const std::string& help) {
    auto choose = [&chosen, names, option](const std::string& word) {
        for (const auto& [name, value] : names) {
            if (name != word) continue;
            chosen = value;
            return;
        }
        throw CLI::ValidationError(option, word + " is none of " + listed<T>(names));
    };
    return app.add_option_function<std::string>(option, choose, help)->take_last();
}

// An option whose value is a number.
template <class T>
CLI::Option* add_number(CLI::App& app, const std::string& option, T& chosen, T least, T most,
                        const std::string& help) {
    auto choose = [&chosen, option, least, most](const std::string& word) {
        const char* const end = word.data() + word.size();
        T n = 0;
        const auto read = std::from_chars(word.data(), end, n);
        if (read.ec != std::errc() || read.ptr != end || n < least || n > most) {
            throw CLI::ValidationError(
                option, word + " is no number from " + std::to_string(least) + " to " + std::to_string(most));
        }
        chosen = n;
    };
    return app.add_option_function<std::string>(option, choose, help)->take_last()->type_name("N");
}

// An option that may be given several times.
CLI::Option* add_list(CLI::App& app, const std::string& option, std::vector<std::string>& values,
                      const std::string& help) {
    return app.add_option(option, values, help)->allow_extra_args(false);
}

void add_prefix(CLI::App& app, std::shared_ptr<const PrefixFinder>& prefix, const std::string& help) {
    const std::string option = "--prefix";
    auto choose = [&prefix, option](const std::string& word) {
        std::string why;
        prefix = prefix_pattern(word, why);
        if (prefix == nullptr) throw CLI::ValidationError(option, why);
    };
    app.add_option_function<std::string>(option, choose, help)
        ->take_last()
        ->type_name("REGEX")
        ->group("Input");
}

void add_join(CLI::App& app, std::string& join, const std::string& help) {
    app.add_flag("--join{order}", join, help)->take_last()->group("Input");
}

Join join_of(const std::string& word) {
    if (word.empty()) return Join::none;
    for (const auto& [name, value] : joins) {
        if (name == word) return value;
    }
    throw CLI::ValidationError("--join", word + " is none of " + listed<Join>(joins));
}

CLI::Option* add_switch(CLI::App& app, const std::string& option, bool& on, const std::string& help) {
    return app.add_flag(option, on, help)->take_last()->disable_flag_override();
}

void add_selection(CLI::App& app, SelectionOptions& s) {
    constexpr std::size_t most_context = 100000;
    const auto group = [](CLI::Option* option) { option->group("Selection"); };
    group(add_list(app, "--where", s.where,
                   "messages for which this SQL expression over\n"
                   "their columns is true; see below")
              ->type_name("EXPR"));
    group(add_list(app, "--link", s.links, "messages of these links: ip,he")
              ->delimiter(',')
              ->type_name("LINKS"));
    group(add_list(app, "--message", s.messages, "messages of these names: start_rtp")
              ->delimiter(',')
              ->type_name("NAMES"));
    group(add_switch(app, "--from-system", s.from_system, "messages from the system"));
    group(add_switch(app, "--to-system", s.to_system, "messages to the system"));
    group(add_list(app, "--grep", s.grep, "messages whose text has a match")->type_name("REGEX"));
    group(add_switch(app, "--unknown", s.unknown, "messages with something that no table knows"));
    group(add_switch(app, "--missing", s.missing, "messages that lack bytes"));
    group(add_switch(app, "--refused", s.refused, "trace lines and messages that are refused"));
    group(add_switch(app, "--invert", s.invert, "those for which all this does not hold"));
    group(add_switch(app, "--count", s.count, "how many there are, nothing else"));
    group(add_number<std::size_t>(app, "--max-count", s.most, 1, SelectionOptions::all - 1,
                                  "the first N of each file"));
    group(add_number<std::size_t>(app, "-A", s.after, 0, most_context, "and N messages behind each"));
    group(add_number<std::size_t>(app, "-B", s.before, 0, most_context, "and N messages before each"));
    group(add_number<std::size_t>(app, "-C", s.around, 0, most_context, "and N messages around each"));
}

void add_options(CLI::App& app, Options& o, bool& no_input, std::string& join) {
    app.add_option("FILE", o.files, "trace files; - or none: standard input")->type_name("");
    add_choice(app, "--layout", o.layout, layouts,
               "how the messages are written: auto (as each\n"
               "line looks, default), line, lng2, zt, spzt,\n"
               "spzt-lng2, bin1 or bin2; see below")
        ->type_name("LAYOUT")
        ->group("Input");
    add_choice(app, "--direction", o.direction, directions,
               "from (the system, default) or to it, for\n"
               "layouts that do not say it")
        ->type_name("WAY")
        ->group("Input");
    add_prefix(app, o.prefix,
               "what logs write in front of the messages,\n"
               "where it is no time and no [words]; groups\n"
               "(?P<time>...), terminal and direction");
    add_choice(app, "--columns", o.columns, columns,
               "what the six characters in front of S or R\n"
               "are: text (default), number, or a time in ms\n"
               "or s")
        ->type_name("WHAT")
        ->group("Input");
    add_choice(app, "--terminal", o.terminal, terminals,
               "what tells terminals apart, so that messages\n"
               "of one teach nothing for another: none\n"
               "(default), columns or prefix")
        ->type_name("BY")
        ->group("Input");
    add_join(app, join,
             "the files are one trace, in their order or\n"
             "with --join=name by their names");
    add_switch(app, "--follow", o.follow,
               "go on as the file grows, is truncated, or is\n"
               "made anew; ends with Ctrl-C and the totals")
        ->group("Input");
    add_switch(app, "--pad", o.pad,
               "take bytes that a line lacks, or that are no\n"
               "hexadecimal, as ff: such lines are refused\n"
               "otherwise")
        ->group("Input");
    add_choice(app, "--format", o.format, formats,
               "text (default), or ndjson: what every line\n"
               "says as one JSON object, values by name; of\n"
               "--sql also csv or table")
        ->type_name("FORMAT")
        ->group("Output");
    add_selection(app, o.selection);
    add_switch(app, "--no-input", no_input, "leave the trace lines out")->group("Output");
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
    auto name_database = [&o](const std::string& file) {
        if (file.empty()) throw CLI::ValidationError("--database", "its value is empty");
        o.database = file;
    };
    app.add_option_function<std::string>("--database", name_database,
                                         "put the messages of all files into an SQLite\n"
                                         "file; --sql without trace files asks it")
        ->take_last()
        ->type_name("FILE")
        ->group("Questions");
    add_switch(app, "--append", o.append, "add to what the database holds already")->group("Questions");
    add_choice(app, "--color", o.color, colors,
               "red to the system, green from it: auto (on a\n"
               "terminal without NO_COLOR, default), always\n"
               "or never")
        ->type_name("WHEN")
        ->group("Terminal");
    add_choice(app, "--control", o.control, controls,
               "what a terminal would act on: auto (escaped\n"
               "on a terminal, default), escape (always: \\x1b,\n"
               "\\u202e) or raw (never)")
        ->type_name("HOW")
        ->group("Terminal");
    add_choice(app, "--progress", o.progress, progresses,
               "auto (on a terminal while the output goes to\n"
               "a file, default) or never")
        ->type_name("WHEN")
        ->group("Terminal");
    add_number(app, "--jobs", o.jobs, 1U, most_jobs, "decode N files at once; the output is the same")
        ->group("Work");
    app.set_help_flag("-h,--help", "say this")->group("Work");
    app.set_version_flag("--version", "ztdecode " ZTDECODE_VERSION "\n", "say the version")->group("Work");
}

// Gives the exit status.
int say(std::string_view words) {
    const int error = write_whole(STDOUT_FILENO, words);
    if (error == 0) return 0;
    std::fprintf(stderr, "ztdecode: standard output: %s\n", std::strerror(error));
    return status_failed;
}

void say_what_is_wrong(std::string_view why) {
    Output diagnostics(STDERR_FILENO, is_terminal(STDERR_FILENO));
    diagnostics.text.add("ztdecode: ");
    diagnostics.add_name(why);
    diagnostics.text.add("\nztdecode --help says how it is used\n");
    diagnostics.flush();
}

// A missing value, or one too many. The library's words begin with the option, a switch without its dashes.
std::string own_words(std::string_view library) {
    const std::string option(library.substr(0, library.find_first_of(": ")));
    return option.starts_with('-') ? option + ": its value is missing" : "--" + option + ": takes no value";
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

// Says what is wrong with what is asked for, and what is odd.
bool selection_stands(const Options& options) {
    if (!options.selection.any() && !options.sql) return true;
    Output diagnostics(STDERR_FILENO, is_terminal(STDERR_FILENO));
    bool stands = true;
    try {
        if (options.sql) check_query(*options.sql);
        for (const std::string& odd : check_selection(options.selection)) {
            diagnostics.text.add("ztdecode: ");
            diagnostics.add_name(odd);
            diagnostics.text.add("\n");
        }
    } catch (const WrongSelection& wrong) {
        diagnostics.text.add("ztdecode: ");
        diagnostics.add_name(wrong.what());
        diagnostics.text.add("\n");
        diagnostics.text.add(wrong.pointer());
        stands = false;
    }
    diagnostics.flush();
    return stands;
}

}  // namespace

Arguments parse_arguments(int argc, char** argv) {
    Options o;
    bool no_input = false;
    CLI::App app(description, "ztdecode");
    app.footer(footer);
    const auto layout = std::make_shared<HelpLayout>();
    layout->column_width(22);
    layout->label("Positionals", "Files");
    app.formatter(layout);
    std::string join;
    add_options(app, o, no_input, join);
    try {
        app.parse(argc, argv);
        o.join = join_of(join);
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, say(app.help())};
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, say(version.what())};
    } catch (const CLI::ArgumentMismatch& wrong) {
        say_what_is_wrong(own_words(wrong.what()));
        return {std::nullopt, status_failed};
    } catch (const CLI::ParseError& wrong) {
        say_what_is_wrong(wrong.what());
        return {std::nullopt, status_failed};
    }
    o.input = !no_input;
    if (const std::string wrong = contradiction(o); !wrong.empty()) {
        say_what_is_wrong(wrong);
        return {std::nullopt, status_failed};
    }
    if (!selection_stands(o)) return {std::nullopt, status_failed};
    if (o.follow && (o.files.empty() || o.files.front() == "-")) {
        say_what_is_wrong("--follow: needs a FILE; standard input is followed as it is");
        return {std::nullopt, status_failed};
    }
    if (o.follow && o.files.size() > 1) {
        say_what_is_wrong("--follow: one file, " + o.files[1] + " is one too many");
        return {std::nullopt, status_failed};
    }
    if (o.join == Join::by_name) std::sort(o.files.begin(), o.files.end());
    // A query alone asks the database that there is.
    if (o.files.empty() && (!o.sql || o.database.empty())) o.files.emplace_back("-");
    return {std::move(o), 0};
}

}  // namespace ztdecode::tool
