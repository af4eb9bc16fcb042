#include "tool/analysis/finding_remarks.hpp"

#include "core/record.hpp"
#include "tool/analysis/finding_output.hpp"
#include "tool/report/verdicts.hpp"

namespace ztdecode::tool {

namespace {

class FindingRemarks final : public Remarks {
  public:
    FindingRemarks(std::string_view file, const Findings::Reading& reading) : findings_(reading, {}) {
        findings_.begin(file);
    }

    void message(const Said& said, Output& out) override {
        record_.take(said.trail, said.text, *said.captured.message, said.outcome);
        for (const Finding& finding : findings_.message(said.captured, record_))
            write_finding_beneath(findings_, finding, out);
    }

    void refused(std::uint64_t number, Line line, const Refusal& refusal, Output& out) override {
        Text why;
        describe(refusal, line, why);
        for (const Finding& finding : findings_.refused(number, why.view()))
            write_finding_beneath(findings_, finding, out);
    }

    void end(Output& out) override {
        for (const Finding& finding : findings_.end()) write_finding(findings_, finding, out);
    }

  private:
    Findings findings_;
    Record record_;
};

}  // namespace

std::unique_ptr<Remarks> finding_remarks(std::string_view file, const Findings::Reading& reading) {
    return std::make_unique<FindingRemarks>(file, reading);
}

}  // namespace ztdecode::tool
