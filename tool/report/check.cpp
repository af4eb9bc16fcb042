#include "tool/report/check.hpp"

#include "tool/output/control.hpp"

namespace ztdecode::tool {

Text& CheckReport::begin_message(const CapturedMessage& /*captured*/) {
    decoded_.clear();
    return decoded_;
}

std::uint64_t& CheckReport::kind_of(const Said& said) {
    if (said.captured.cut_short > 0) return totals_.cut_short;
    if (said.captured.left_over > 0) return totals_.left_over;
    record_.take(said.trail, said.text, *said.captured.message, said.outcome);
    bool missing = said.captured.padded > 0;
    for (std::size_t k = 0; k < record_.size(); ++k) {
        const Record::Part& part = record_.part(k);
        if (part.unknown > 0 || part.decoded == Decoded::unknown) return totals_.unknown;
        missing = missing || part.missing > 0;
    }
    return missing ? totals_.missing : totals_.decoded;
}

void CheckReport::message(const Said& said) {
    std::uint64_t& kind = kind_of(said);
    ++kind;
    for (const NotedMessage& noted : said.trail.messages()) {
        if (noted.name == "segment") last_segment_ = &kind;
    }
}

// No message of its own: its line is refused.
void CheckReport::unfinished(const Said& said, Text& why) { add_uncoloured(said.text, why); }

void CheckReport::no_memory() {
    decoded_ = Text();
    record_ = Record();
}

bool CheckReport::end(const LineTotals& totals, std::uint64_t cut) {
    for (; cut > 0 && last_segment_ != nullptr && *last_segment_ > 0; --cut) {
        --*last_segment_;
        ++totals_.cut_short;
    }
    Text& out = out_.text;
    out_.add_name(file_);
    out.add(": ");
    write_totals(totals, out);
    out.add("\n");
    out_.add_name(file_);
    out.add(": ");
    add_count(totals_.messages(), "message", out);
    out.print(
        " = {-} decoded + {-} unknown + {-} with missing bytes + {-} with bytes left over + {-} cut short by "
        "the "
        "file's end\n"_cf,
        totals_.decoded, totals_.unknown, totals_.missing, totals_.left_over, totals_.cut_short);
    return totals.refused + totals_.unknown + totals_.left_over + totals_.cut_short == 0;
}

}  // namespace ztdecode::tool
