#include "tool/report/check.hpp"

#include <algorithm>
#include <numeric>

#include "tool/output/control.hpp"

namespace ztdecode::tool {

CheckReport::Kind CheckReport::kind_of(const CapturedMessage& captured, const Record& record) {
    if (captured.cut_short > 0) return cut_short;
    if (captured.left_over > 0) return left_over;
    bool lacks_bytes = captured.padded > 0;
    for (std::size_t k = 0; k < record.size(); ++k) {
        const Record::Part& part = record.part(k);
        if (part.unknown > 0 || part.decoded == Decoded::unknown) return unknown;
        lacks_bytes = lacks_bytes || part.missing > 0;
    }
    return lacks_bytes ? missing : decoded;
}

void CheckReport::record(const CapturedMessage& captured, const Record& record) {
    const Kind kind = kind_of(captured, record);
    ++totals_[kind];
    for (const NotedMessage& noted : record.trail().messages()) {
        if (noted.name == "segment") last_segment_ = kind;
    }
}

void CheckReport::unfinished(const Said& said, Text& why) { add_uncoloured(said.text, why); }

Counts CheckReport::take_counts() {
    Counts counts{};
    std::copy(totals_.begin(), totals_.end(), counts.begin());
    counts.back() = last_segment_;
    totals_ = {};
    last_segment_ = no_segment;
    return counts;
}

bool CheckReport::add(const Counts& counts) {
    for (std::size_t k = 0; k < totals_.size(); ++k) totals_[k] += counts[k];
    if (counts.back() != no_segment) last_segment_ = static_cast<std::size_t>(counts.back());
    return true;
}

bool CheckReport::end(const LineTotals& totals, std::uint64_t cut) {
    for (; cut > 0 && last_segment_ != no_segment && totals_[last_segment_] > 0; --cut) {
        --totals_[last_segment_];
        ++totals_[cut_short];
    }
    Text& out = out_.text;
    out_.add_name(file_);
    out.add(": ");
    write_totals(totals, out);
    out.add("\n");
    out_.add_name(file_);
    out.add(": ");
    add_count(std::accumulate(totals_.begin(), totals_.end(), std::uint64_t{0}), "message", out);
    out.print(
        " = {-} decoded + {-} unknown + {-} with missing bytes + {-} with bytes left over + {-} cut short by "
        "the file's end\n"_cf,
        totals_[decoded], totals_[unknown], totals_[missing], totals_[left_over], totals_[cut_short]);
    return totals.refused + totals_[unknown] + totals_[left_over] + totals_[cut_short] == 0;
}

}  // namespace ztdecode::tool
