#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "tool/analysis/findings.hpp"
#include "tool/report/record_report.hpp"

namespace ztdecode::tool {

// Tells the rules of a trace, and somebody of what they find.
class FindingReport : public RecordReport {
  public:
    using Take = std::function<void(std::span<const Finding>)>;
    // `at_end`: the trace is one by itself, and what shows at its end only is taken there.
    FindingReport(std::string_view file, Findings& findings, bool at_end, Take take);

    void refused(std::uint64_t number, Line line, const Refusal& refusal) override;
    bool end(const LineTotals& totals, std::uint64_t cut) override;

  protected:
    void record(const CapturedMessage& captured, const Record& record) override;

  private:
    Findings& findings_;
    bool at_end_;
    Take take_;
};

}  // namespace ztdecode::tool
