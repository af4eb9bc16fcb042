#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>

#include "tool/analysis/told_differences.hpp"
#include "tool/command_line.hpp"
#include "tool/files.hpp"
#include "tool/output_file.hpp"
#include "tool/select/names.hpp"
#include "tool/statement_stream.hpp"
#include "tool/subcommands.hpp"

namespace ztdecode::tool {

namespace {

constexpr int status_different = 1;

constexpr auto purpose =
    "What two traces say differently. Messages are matched in order by link,\n"
    "direction, name and fields; columns, times, and fields that only count or tell\n"
    "the time do not matter.\n";

constexpr auto examples = R"(Lines of the output:
    a:12 b:14  the same in both: context
  ~ a:12 b:14  changed, with its changed fields below
  - a:12       only in A
  + b:14       only in B

Examples:
  ztdecode diff good.spzt bad.spzt
  ztdecode diff -U 0 --ignore display_text monday.spzt.gz tuesday.spzt.gz
  ztdecode diff --link ip --format ndjson good.spzt bad.spzt | jq .

Exit status: 0 when both say the same, 1 when they differ, 2 for bad usage, a
file that cannot be read or an output that cannot be written.
"man ztdecode-diff" says more.
)";

constexpr auto formats = std::to_array<Named<Format>>({{"text", Format::text}, {"ndjson", Format::ndjson}});

constexpr std::size_t as_usual = static_cast<std::size_t>(-1);
constexpr std::size_t most_context = 100000;

struct Wishes {
    std::vector<std::string> ignored;
    bool all_fields = false;
    std::size_t context = as_usual;
};

void add_comparison(CLI::App& app, Options& options, Wishes& wishes) {
    add_list(app, "--ignore", wishes.ignored, "fields that do not count either: led,line")
        ->delimiter(',')
        ->type_name("FIELDS")
        ->group("Comparison");
    add_switch(app, "--all-fields", wishes.all_fields, "fields that count or tell the time matter as well")
        ->group("Comparison");
    add_number<std::size_t>(app, "-U,--unified", wishes.context, 0, most_context,
                            "and N messages around each difference that are\n"
                            "the same; default 3, of ndjson 0")
        ->group("Output");
    add_choice(app, "--format", options.format, formats,
               "text (default), or ndjson: each difference as\n"
               "one JSON object")
        ->type_name("FORMAT")
        ->group("Output");
}

// What is wrong with the arguments; empty: nothing.
std::string wrong_with(const std::string& a, const std::string& b, const std::vector<std::string>& more) {
    if (a.empty()) return "two files to compare are missing";
    if (b.empty()) return a + ": a second file to compare it with is missing";
    if (!more.empty()) return more.front() + ": one too many, two files are compared";
    if (a == "-" && b == "-") return "-: standard input can be one of the two files, not both";
    return {};
}

std::string wrong_with(const Wishes& wishes, IgnoredFields& ignored) {
    if (!wishes.all_fields) ignored.add_usual();
    for (const std::string& name : wishes.ignored) {
        if (ignored.add(name)) continue;
        std::vector<std::string_view> names;
        for (const Field& field : all_fields) names.push_back(field.name);
        return "--ignore: no such field: " + name + did_you_mean(name, names);
    }
    return {};
}

struct Ended {
    Compared compared;
    bool failed;
};

Ended compare(const Options& options, const IgnoredFields& ignored, std::size_t context, const Display& shown,
              Differences& differences) {
    Options of_a = options;
    Options of_b = options;
    of_a.files = {options.files[0]};
    of_b.files = {options.files[1]};
    Display display_a = shown;
    display_a.color = false;
    Display display_b = display_a;
    display_b.progress = false;  // they go side by side
    StatementStream a(of_a, display_a, ignored);
    StatementStream b(of_b, display_b, ignored);
    const Compared compared = Comparison(a, b, context, differences).run();
    return {compared, a.failed() || b.failed()};
}

}  // namespace

int run_diff(int argc, const char* const* argv) {
    Options options;
    Wishes wishes;
    CommandLine line("ztdecode diff", purpose, examples, options);
    std::string a;
    std::string b;
    line.app().add_option("A", a, "one trace; - is standard input")->type_name("");
    line.app().add_option("B", b, "another one")->type_name("");
    line.app().add_option("MORE", options.files)->group("");
    line.add_input();
    line.app().remove_option(line.app().get_option("--join"));  // each of the two is a trace
    line.add_selection();
    add_comparison(line.app(), options, wishes);
    line.add_output();
    line.add_terminal();
    line.app().get_option("--color")->description(
        "red what is only in A, green what is only in\n"
        "B: auto (on a terminal without NO_COLOR,\n"
        "default), always or never");
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return *status;
    if (const std::string wrong = wrong_with(a, b, options.files); !wrong.empty()) return line.refuse(wrong);
    options.files = {a, b};
    IgnoredFields ignored;
    if (const std::string wrong = wrong_with(wishes, ignored); !wrong.empty()) return line.refuse(wrong);
    if (const auto status = open_output(options)) return *status;

    const Display shown = display(options);
    Output out(STDOUT_FILENO, shown.escapes_output);
    const bool as_data = options.format == Format::ndjson;
    const std::size_t context = wishes.context != as_usual ? wishes.context : as_data ? 0 : 3;
    DifferenceTexts texts(options.files[0], options.files[1],
                          {.color = shown.color, .ascii = shown.escapes_output && !locale_is_utf8()}, out);
    DifferenceRecords records(out);
    Differences& differences = as_data ? static_cast<Differences&>(records) : texts;
    const Ended ended = compare(options, ignored, context, shown, differences);
    if (!as_data && !ended.failed) texts.end(ended.compared);
    out.flush();
    const int status = ended.failed ? status_failed : ended.compared.different() ? status_different : 0;
    return status_with_output(options, status, out.error());
}

}  // namespace ztdecode::tool
