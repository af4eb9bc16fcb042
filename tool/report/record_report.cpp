#include "tool/report/record_report.hpp"

#include "tool/output/control.hpp"

namespace ztdecode::tool {

Text& RecordReport::begin_message(const CapturedMessage& /*captured*/) {
    decoded_.clear();
    return decoded_;
}

void RecordReport::message(const Said& said) {
    record_.take(said.trail, said.text, *said.captured.message, said.outcome);
    record(said.captured, record_);
}

void RecordReport::unfinished(const Said& said, Text& why) {
    message(said);
    add_uncoloured(said.text, why);
}

void RecordReport::no_memory() {
    decoded_ = Text();
    record_ = Record();
}

}  // namespace ztdecode::tool
