#include "tool/command_line.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

#include "core/message.hpp"
#include "tool/display.hpp"
#include "tool/input/prefix_pattern.hpp"
#include "tool/output/output.hpp"
#include "tool/select/names.hpp"
#include "tool/select/query.hpp"

namespace ztdecode::tool {

namespace {

constexpr int status_failed = 2;

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
constexpr auto colors = std::to_array<Named<Color>>(
    {{"auto", Color::automatic}, {"always", Color::always}, {"never", Color::never}});
constexpr auto controls = std::to_array<Named<Control>>(
    {{"auto", Control::automatic}, {"raw", Control::raw}, {"escape", Control::escape}});
constexpr auto columns = std::to_array<Named<Columns>>({{"text", Columns::text},
                                                        {"number", Columns::number},
                                                        {"ms", Columns::milliseconds},
                                                        {"s", Columns::seconds}});
constexpr auto terminals = std::to_array<Named<Terminal>>(
    {{"none", Terminal::none}, {"columns", Terminal::columns}, {"prefix", Terminal::prefix}});
constexpr auto joins = std::to_array<Named<Join>>({{"order", Join::as_given}, {"name", Join::by_name}});
constexpr auto progresses = std::to_array<Named<bool>>({{"auto", true}, {"never", false}});

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
        if (const std::size_t comma = text.find(','); comma != std::string::npos) text.insert(comma + 1, " ");
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

Join join_of(const std::string& word) {
    if (word.empty()) return Join::none;
    for (const auto& [name, value] : joins) {
        if (name == word) return value;
    }
    throw CLI::ValidationError("--join", word + " is none of " + listed<Join>(joins));
}

// Gives the exit status.
int say(std::string_view words) {
    const int error = write_whole(STDOUT_FILENO, words);
    if (error == 0) return 0;
    std::fprintf(stderr, "ztdecode: standard output: %s\n", std::strerror(error));
    return status_failed;
}

// A missing value, or one too many. The library's words begin with the option, a switch without its dashes.
std::string own_words(std::string_view library) {
    const std::string option(library.substr(0, library.find_first_of(": ")));
    return option.starts_with('-') ? option + ": its value is missing" : "--" + option + ": takes no value";
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

CLI::Option* add_list(CLI::App& app, const std::string& option, std::vector<std::string>& values,
                      const std::string& help) {
    return app.add_option(option, values, help)->allow_extra_args(false);
}

CLI::Option* add_switch(CLI::App& app, const std::string& option, bool& on, const std::string& help) {
    return app.add_flag(option, on, help)->take_last()->disable_flag_override();
}

CLI::Option* add_file(CLI::App& app, const std::string& option, std::string& file, const std::string& help) {
    auto name = [&file, option = long_name(option)](const std::string& word) {
        if (word.empty()) throw CLI::ValidationError(option, "its value is empty");
        file = word;
    };
    return app.add_option_function<std::string>(option, name, help)->take_last()->type_name("FILE");
}

CommandLine::CommandLine(const std::string& command, const std::string& purpose, const std::string& examples,
                         Options& options)
    : app_(purpose, command),
      options_(options),
      more_(command.find(' ') == std::string::npos ? "below" : "ztdecode(1)") {
    app_.footer(examples);
    const auto layout = std::make_shared<HelpLayout>();
    layout->column_width(22);
    layout->label("Positionals", "Files");
    app_.formatter(layout);
}

void CommandLine::add_files() {
    app_.add_option("FILE", options_.files, "trace files; - or none: standard input")->type_name("");
}

void CommandLine::add_input() {
    add_choice(app_, "--layout", options_.layout, layouts,
               "how the messages are written: auto (as each\n"
               "line looks, default), line, lng2, zt, spzt,\n"
               "spzt-lng2, bin1 or bin2; see " +
                   more_)
        ->type_name("LAYOUT")
        ->group("Input");
    add_choice(app_, "--direction", options_.direction, directions,
               "from (the system, default) or to it, for\n"
               "layouts that do not say it")
        ->type_name("WAY")
        ->group("Input");
    add_prefix(app_, options_.prefix,
               "what logs write in front of the messages,\n"
               "where it is no time and no [words]; groups\n"
               "(?P<time>...), terminal and direction");
    add_choice(app_, "--columns", options_.columns, columns,
               "what the six characters in front of S or R\n"
               "are: text (default), number, or a time in ms\n"
               "or s")
        ->type_name("WHAT")
        ->group("Input");
    add_choice(app_, "--terminal", options_.terminal, terminals,
               "what tells terminals apart, so that messages\n"
               "of one teach nothing for another: none\n"
               "(default), columns or prefix")
        ->type_name("BY")
        ->group("Input");
    app_.add_flag("--join{order}", join_,
                  "the files are one trace, in their order or\n"
                  "with --join=name by their names")
        ->take_last()
        ->group("Input");
    add_switch(app_, "--pad", options_.pad,
               "take bytes that a line lacks, or that are no\n"
               "hexadecimal, as ff: such lines are refused\n"
               "otherwise")
        ->group("Input");
}

void CommandLine::add_selection() {
    SelectionOptions& s = options_.selection;
    const auto group = [](CLI::Option* option) { option->group("Selection"); };
    group(add_list(app_, "--where", s.where,
                   "messages for which this SQL expression over\n"
                   "their columns is true; see " +
                       more_)
              ->type_name("EXPR"));
    group(add_list(app_, "--link", s.links, "messages of these links: ip,he")
              ->delimiter(',')
              ->type_name("LINKS"));
    group(add_list(app_, "--message", s.messages, "messages of these names: start_rtp")
              ->delimiter(',')
              ->type_name("NAMES"));
    group(add_switch(app_, "--from-system", s.from_system, "messages from the system"));
    group(add_switch(app_, "--to-system", s.to_system, "messages to the system"));
    group(add_list(app_, "--grep", s.grep, "messages whose text has a match")->type_name("REGEX"));
    group(add_switch(app_, "--unknown", s.unknown, "messages with something that no table knows"));
    group(add_switch(app_, "--missing", s.missing, "messages that lack bytes"));
    group(add_switch(app_, "--refused", s.refused, "trace lines and messages that are refused"));
    group(add_switch(app_, "-v,--invert", s.invert, "those for which all this does not hold"));
}

void CommandLine::add_context() {
    constexpr std::size_t most_context = 100000;
    SelectionOptions& s = options_.selection;
    const auto group = [](CLI::Option* option) { option->group("Selection"); };
    group(add_switch(app_, "-c,--count", s.count, "how many there are, nothing else"));
    group(add_number<std::size_t>(app_, "-m,--max-count", s.most, 1, SelectionOptions::all - 1,
                                  "the first N of each file"));
    group(add_number<std::size_t>(app_, "-A", s.after, 0, most_context, "and N messages behind each"));
    group(add_number<std::size_t>(app_, "-B", s.before, 0, most_context, "and N messages before each"));
    group(add_number<std::size_t>(app_, "-C", s.around, 0, most_context, "and N messages around each"));
}

void CommandLine::add_terminal() {
    add_choice(app_, "--color", options_.color, colors,
               "red to the system, green from it: auto (on a\n"
               "terminal without NO_COLOR, default), always\n"
               "or never")
        ->type_name("WHEN")
        ->group("Terminal");
    add_choice(app_, "--control", options_.control, controls,
               "what a terminal would act on: auto (escaped\n"
               "on a terminal, default), escape (always: \\x1b,\n"
               "\\u202e) or raw (never)")
        ->type_name("HOW")
        ->group("Terminal");
    add_choice(app_, "--progress", options_.progress, progresses,
               "auto (on a terminal while the output goes to\n"
               "a file, default) or never")
        ->type_name("WHEN")
        ->group("Terminal");
}

void CommandLine::add_output() {
    add_file(app_, "-o,--output", options_.output, "write to this file, not to standard output")
        ->group("Output");
    add_switch(app_, "-q,--quiet", options_.quiet,
               "say nothing on standard error of lines that\n"
               "are refused")
        ->group("Output");
}

void CommandLine::add_help() {
    app_.set_help_flag("-h,--help", "say this")->group("Work");
    app_.set_version_flag("-V,--version", "ztdecode " ZTDECODE_VERSION "\n", "say the version")
        ->group("Work");
}

// "--output=" by itself: the library takes the next word for its value.
std::string CommandLine::option_without_value(int argc, const char* const* argv) const {
    for (int k = 1; k < argc && std::string_view(argv[k]) != "--"; ++k) {
        const std::string_view word = argv[k];
        if (!word.starts_with("--") || !word.ends_with('=')) continue;
        std::string name(word.substr(0, word.size() - 1));
        if (app_.get_option_no_throw(name) != nullptr) return name;
    }
    return {};
}

std::optional<int> CommandLine::parse(int argc, const char* const* argv) {
    if (const std::string option = option_without_value(argc, argv); !option.empty())
        return refuse(option + ": its value is empty");
    try {
        app_.parse(argc, argv);
        options_.join = join_of(join_);
    } catch (const CLI::CallForHelp&) {
        return say(app_.help());
    } catch (const CLI::CallForVersion& version) {
        return say(version.what());
    } catch (const CLI::ArgumentMismatch& wrong) {
        return refuse(own_words(wrong.what()));
    } catch (const CLI::ExtrasError&) {
        const std::vector<std::string> unknown = app_.remaining();
        return refuse(unknown.empty() ? "a word too many" : no_such_option(unknown.front()));
    } catch (const CLI::ParseError& wrong) {
        return refuse(wrong.what());
    }
    return settle();
}

void CommandLine::default_files() {
    if (options_.files.empty()) options_.files.emplace_back("-");
}

std::optional<int> CommandLine::settle() {
    const SelectionOptions& s = options_.selection;
    if (s.invert && !s.of_messages() && !s.refused)
        return refuse("--invert: needs a condition, it shows the messages for which that does not hold");
    if (!selection_stands(options_)) return status_failed;
    if (options_.join == Join::by_name) std::sort(options_.files.begin(), options_.files.end());
    return std::nullopt;
}

std::string CommandLine::no_such_option(const std::string& word) const {
    const std::string name = word.substr(0, word.find('='));
    std::vector<std::string> names;
    for (const CLI::Option* option : app_.get_options()) {
        for (const std::string& known : option->get_lnames()) names.push_back("--" + known);
    }
    const std::vector<std::string_view> words(names.begin(), names.end());
    return name + ": no such option" + did_you_mean(name, words);
}

int CommandLine::refuse(std::string_view why) const {
    Output diagnostics(STDERR_FILENO, is_terminal(STDERR_FILENO));
    diagnostics.text.add("ztdecode: ");
    diagnostics.add_name(why);
    diagnostics.text.add("\n");
    diagnostics.add_name(app_.get_name());
    diagnostics.text.add(" --help says how it is used\n");
    diagnostics.flush();
    return status_failed;
}

}  // namespace ztdecode::tool
