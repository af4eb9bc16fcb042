#include "tool/analysis/finding_report.hpp"

#include <utility>

namespace ztdecode::tool {

FindingReport::FindingReport(std::string_view file, Findings& findings, bool at_end, Take take)
    : findings_(findings), at_end_(at_end), take_(std::move(take)) {
    findings_.begin(file);
}

void FindingReport::record(const CapturedMessage& captured, const Record& record) {
    take_(findings_.message(captured, record));
}

void FindingReport::refused(std::uint64_t number, Line line, const Refusal& refusal) {
    Text why;
    describe(refusal, line, why);
    if (refusal.reason == Refusal::Reason::no_memory) why.add("no memory for this message");
    take_(findings_.refused(number, why.view()));
}

bool FindingReport::end(const LineTotals& /*totals*/, std::uint64_t /*cut*/) {
    if (at_end_) take_(findings_.end());
    return true;
}

}  // namespace ztdecode::tool
