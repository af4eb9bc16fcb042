#include "tool/analysis/summary.hpp"
#include "tool/command_line.hpp"
#include "tool/files.hpp"
#include "tool/subcommands.hpp"

namespace ztdecode::tool {

int run_summary(int argc, const char* const* argv) {
    Options options;
    CommandLine line("ztdecode summary", "What is in traces, on one page.\n",
                     "Example:\n  ztdecode summary trace.spzt\n", options);
    line.add_files();
    line.add_input();
    line.add_selection();
    line.add_output();
    line.add_terminal();
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return *status;
    line.default_files();

    Summary summary;
    return analyse_files(
        options, [&](const std::string& name, Output& /*out*/) { return summary.report(name); },
        [&](const Display& /*display*/, Output& out) {
            summary.write(out.text);
            return 0;
        });
}

}  // namespace ztdecode::tool
