#include <cstdio>

#include "tool/command_line.hpp"
#include "tool/files.hpp"
#include "tool/report/page_report.hpp"
#include "tool/subcommands.hpp"

namespace ztdecode::tool {

int run_report(int argc, const char* const* argv) {
    Options options;
    options.format = Format::ndjson;
    CommandLine line("ztdecode report",
                     "Traces as one HTML file that any browser opens, without a network: the messages, their "
                     "texts and fields, and which bytes each word came from.\n",
                     "Examples:\n  ztdecode report trace.spzt > trace.html\n"
                     "  ztdecode report --link ip -o calls.html monday.spzt.gz tuesday.spzt.gz\n",
                     options);
    line.add_files();
    line.add_input();
    line.add_selection();
    line.add_output();
    line.add_terminal();
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return *status;
    if (options.output.empty() && is_terminal(STDOUT_FILENO))
        return line.refuse("a page is for a file: -o FILE, or > FILE");
    line.default_files();

    PageWriter page;
    return analyse_files(
        options,
        [&](const std::string& name, Output& out) { return std::make_unique<PageReport>(name, page, out); },
        [&](const Display& /*display*/, Output& out) {
            page.end(out);
            return 0;
        });
}

}  // namespace ztdecode::tool
