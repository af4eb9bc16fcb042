#include <cstdio>

#include "tool/analysis/finding_report.hpp"
#include "tool/command_line.hpp"
#include "tool/files.hpp"
#include "tool/finding_options.hpp"
#include "tool/report/page_report.hpp"
#include "tool/subcommands.hpp"

namespace ztdecode::tool {

namespace {

// What the rules find, for its tab. Behind so many the rest is counted.
class FindingItems {
  public:
    FindingItems(const Findings& findings, PageWriter& page) : findings_(findings), page_(page) {}

    void take(std::span<const Finding> found) {
        for (const Finding& finding : found) {
            if (++count_ > most) continue;
            page_.item(PageWriter::Tab::findings, {.text = finding.words,
                                                   .severity = severity_of(finding.rule->severity),
                                                   .line = finding.at.line,
                                                   .file = findings_.file(finding.at)});
        }
    }
    void say_how_many_are_left() {
        if (count_ <= most) return;
        const std::string words = std::to_string(count_ - most) + " more: \"ztdecode findings\" lists them";
        page_.item(PageWriter::Tab::findings, {.text = words});
    }

  private:
    static constexpr std::uint64_t most = 20000;

    static PageWriter::Severity severity_of(Severity severity) {
        return severity == Severity::error     ? PageWriter::Severity::error
               : severity == Severity::warning ? PageWriter::Severity::warning
                                               : PageWriter::Severity::note;
    }

    const Findings& findings_;
    PageWriter& page_;
    std::uint64_t count_ = 0;
};

// The rows of a trace, and what the rules find in it.
class PageWithFindings final : public PageReport {
  public:
    PageWithFindings(std::string_view file, PageWriter& page, Findings& findings, bool at_end,
                     const FindingReport::Take& take, Output& out)
        : PageReport(file, page, out), rules_(file, findings, at_end, take) {}

    void message(const Said& said) override {
        PageReport::message(said);
        rules_.message(said);
    }
    void refused(std::uint64_t number, Line line, const Refusal& refusal) override {
        PageReport::refused(number, line, refusal);
        rules_.refused(number, line, refusal);
    }
    bool end(const LineTotals& totals, std::uint64_t cut) override {
        rules_.end(totals, cut);
        return PageReport::end(totals, cut);
    }

  private:
    FindingReport rules_;
};

}  // namespace

int run_report(int argc, const char* const* argv) {
    Options options;
    options.format = Format::ndjson;
    CommandLine line("ztdecode report",
                     "Traces as one HTML file that any browser opens, without a network: the\n"
                     "messages, their texts and fields, and which bytes each word came from.\n",
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
    Findings findings(reading_of(options), {});
    FindingItems items(findings, page);
    const auto take = [&](std::span<const Finding> found) { items.take(found); };
    const bool joined = options.join != Join::none;
    return analyse_files(
        options,
        [&](const std::string& name, Output& out) {
            return std::make_unique<PageWithFindings>(name, page, findings, !joined, take, out);
        },
        [&](const Display& /*display*/, Output& out) {
            if (joined) items.take(findings.end());
            items.say_how_many_are_left();
            page.end(out);
            return 0;
        });
}

}  // namespace ztdecode::tool
