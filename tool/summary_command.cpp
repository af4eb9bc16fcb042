#include <unistd.h>

#include <array>

#include "tool/analysis/summary.hpp"
#include "tool/command_line.hpp"
#include "tool/files.hpp"
#include "tool/finding_options.hpp"
#include "tool/subcommands.hpp"

namespace ztdecode::tool {

namespace {

constexpr auto examples = R"("ztdecode findings" lists the findings that are counted here, "ztdecode --help"
tells of layouts and of columns for --where. With a selection only the messages
that it names are looked at, as if the trace had no others.

A page has the first 100 calls and terminals and the first 20 files, and says
how many more there are; ndjson has all calls.

Examples:
  ztdecode summary trace.spzt
  ztdecode summary --columns ms --terminal prefix monday.log tuesday.log
  ztdecode summary --format ndjson trace.spzt | jq 'select(.kind == "call")'
)";

constexpr auto formats = std::to_array<Named<Format>>({{"text", Format::text}, {"ndjson", Format::ndjson}});

constexpr std::size_t page_width = 80;

}  // namespace

int run_summary(int argc, const char* const* argv) {
    Options options;
    Findings::Limits limits;
    CommandLine line("ztdecode summary", "What is in traces, on one page.\n", examples, options);
    line.add_files();
    line.add_input();
    line.add_selection();
    add_choice(line.app(), "--format", options.format, formats,
               "text (default), or ndjson: the same as JSON\n"
               "objects, one a line")
        ->type_name("FORMAT")
        ->group("Output");
    add_limits(line.app(), limits);
    line.add_output();
    line.add_terminal();
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return *status;
    line.default_files();

    std::unique_ptr<Summary> summary;
    const bool as_ndjson = options.format == Format::ndjson;
    const auto made = [&](Output& out) -> Summary& {
        if (!summary)
            summary = std::make_unique<Summary>(reading_of(options), limits, as_ndjson ? &out : nullptr);
        return *summary;
    };
    return analyse_files(
        options, [&](const std::string& name, Output& out) { return made(out).report(name); },
        [&](const Display& /*display*/, Output& out) {
            made(out).end();
            if (as_ndjson) {
                summary->write_as_ndjson(out);
            } else {
                summary->write(is_terminal(STDOUT_FILENO) ? terminal_width(STDOUT_FILENO) : page_width, out);
            }
            return 0;
        });
}

}  // namespace ztdecode::tool
