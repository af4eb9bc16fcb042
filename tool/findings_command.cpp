#include <algorithm>
#include <array>

#include "tool/analysis/finding_output.hpp"
#include "tool/analysis/finding_report.hpp"
#include "tool/command_line.hpp"
#include "tool/files.hpp"
#include "tool/finding_options.hpp"
#include "tool/subcommands.hpp"

namespace ztdecode::tool {

namespace {

constexpr auto examples = R"(docs/findings.md tells of the rules. With a selection only the messages that it
names are looked at, as if the trace had no others.

Examples:
  ztdecode findings trace.spzt
  ztdecode findings --fail-on error --columns ms trace.spzt
  ztdecode findings --format ndjson trace.spzt | jq -r .code | sort | uniq -c

Exit status: 0, 1 when there is a finding that --fail-on names, 2 for bad
usage, a file that cannot be read or an output that cannot be written.
)";

constexpr auto formats = std::to_array<Named<Format>>({{"text", Format::text}, {"ndjson", Format::ndjson}});

enum class FailOn { nothing, note, warning, error };
constexpr auto fail_ons = std::to_array<Named<FailOn>>(
    {{"note", FailOn::note}, {"warning", FailOn::warning}, {"error", FailOn::error}});

Severity severity_of(FailOn fail_on) {
    return fail_on == FailOn::note      ? Severity::note
           : fail_on == FailOn::warning ? Severity::warning
                                        : Severity::error;
}

struct Asked {
    Options options;
    Findings::Limits limits;
    FailOn fail_on = FailOn::nothing;
    bool rules = false;
};

void add_own(CLI::App& app, Asked& asked) {
    add_choice(app, "--format", asked.options.format, formats,
               "text (default), or ndjson: each finding as\n"
               "one JSON object")
        ->type_name("FORMAT")
        ->group("Output");
    add_choice(app, "--fail-on", asked.fail_on, fail_ons,
               "exit status 1 when there is a finding of this\n"
               "severity or a worse one: note, warning or\n"
               "error")
        ->type_name("SEVERITY")
        ->group("Output");
    add_switch(app, "--rules", asked.rules, "list the rules, and read no file")->group("Output");
    add_limits(app, asked.limits);
}

void list_rules(const Options& options, Text& out) {
    constexpr std::size_t code_width = 22;
    constexpr std::size_t severity_width = 9;
    const auto pad = [&](std::string_view word, std::size_t width) {
        out.add(word);
        out.add(std::string(width - std::min(width, word.size()), ' '));
    };
    for (const Rule& rule : rules()) {
        if (options.format == Format::ndjson) {
            out.print("{{\"kind\":\"rule\",\"code\":\"{-}\",\"severity\":\"{-}\",\"title\":\"{-}\"}}\n"_cf,
                      rule.code, name_of(rule.severity), rule.title);
            continue;
        }
        pad(rule.code, code_width);
        pad(name_of(rule.severity), severity_width);
        out.print("{-}\n"_cf, rule.title);
    }
}

int find(const Asked& asked) {
    const Options& options = asked.options;
    Findings findings(reading_of(options), asked.limits);
    FindingCounts counts;
    const bool joined = options.join != Join::none;
    const auto take_to = [&](Output& out) {
        return [&](std::span<const Finding> found) {
            for (const Finding& finding : found) {
                counts.count(finding);
                if (options.format == Format::ndjson) {
                    write_finding_as_ndjson(findings, finding, out);
                } else {
                    write_finding(findings, finding, out);
                }
            }
        };
    };
    return analyse_files(
        options,
        [&](const std::string& name, Output& out) {
            return std::make_unique<FindingReport>(name, findings, !joined, take_to(out));
        },
        [&](const Display& /*display*/, Output& out) {
            if (joined) take_to(out)(findings.end());
            if (options.format == Format::text) {
                counts.write(out.text);
                out.text.add("\n");
            }
            return asked.fail_on != FailOn::nothing && counts.reach(severity_of(asked.fail_on)) ? status_found
                                                                                                : 0;
        });
}

}  // namespace

int run_findings(int argc, const char* const* argv) {
    Asked asked;
    CommandLine line("ztdecode findings", "What is wrong in traces, and what it stands on.\n", examples,
                     asked.options);
    line.add_files();
    line.add_input();
    line.add_selection();
    add_own(line.app(), asked);
    line.add_output();
    line.add_terminal();
    line.add_help();
    if (const auto status = line.parse(argc, argv)) return *status;
    if (asked.rules && !asked.options.files.empty())
        return line.refuse("--rules: reads no file, " + asked.options.files.front() + " is one too many");
    if (asked.rules) {
        return analyse_files(asked.options, {}, [&](const Display& /*display*/, Output& out) {
            list_rules(asked.options, out.text);
            return 0;
        });
    }
    line.default_files();
    return find(asked);
}

}  // namespace ztdecode::tool
