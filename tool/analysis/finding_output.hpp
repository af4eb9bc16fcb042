#pragma once

#include <array>
#include <cstdint>

#include "tool/analysis/findings.hpp"
#include "tool/output/output.hpp"

namespace ztdecode::tool {

// How many findings there were of each severity.
class FindingCounts {
  public:
    void count(const Finding& finding) noexcept { ++of(finding.rule->severity); }
    std::uint64_t of(Severity severity) const noexcept { return counts_[static_cast<std::size_t>(severity)]; }
    // Whether there was one of this severity or a worse one.
    bool reach(Severity severity) const noexcept;
    // "2 errors, 1 warning, 0 notes"
    void write(Text& out) const;

  private:
    std::uint64_t& of(Severity severity) noexcept { return counts_[static_cast<std::size_t>(severity)]; }

    std::array<std::uint64_t, 3> counts_{};
};

// "office.spzt:45: warning: illegal_command: led [refused-command]", and the messages below it where there
// are several.
void write_finding(const Findings& findings, const Finding& finding, Output& out);
// The same beneath a message: without the file, and indented.
void write_finding_beneath(const Findings& findings, const Finding& finding, Output& out);
// As one JSON object in a line.
void write_finding_as_ndjson(const Findings& findings, const Finding& finding, Output& out);

}  // namespace ztdecode::tool
