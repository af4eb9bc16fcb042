#include "tool/select/database_report.hpp"

namespace ztdecode::tool {

namespace {

std::string_view verdict_on(std::string_view line) {
    switch (without_message({line.data(), line.size()})) {
        case LineVerdict::blank:
            return "blank";
        case LineVerdict::comment:
            return "comment";
        default:
            return "no_trace_line";
    }
}

}  // namespace

// Of a line that is too long to be one piece the first piece stands for it.
void DatabaseReport::other(std::uint64_t number, std::string_view line, bool newline) {
    if (!in_line_) database_.line(number, verdict_on(line), line);
    in_line_ = !newline;
}

void DatabaseReport::begin_line(Line /*line*/) { said_ = false; }

void DatabaseReport::begin_bytes(std::span<const std::uint8_t> /*bytes*/) { said_ = true; }

void DatabaseReport::record(const CapturedMessage& captured, const Record& record) {
    said_ = true;
    database_.message(captured, record);
}

void DatabaseReport::refused(std::uint64_t number, Line line, const Refusal& refusal) {
    said_ = true;
    database_.line(number, "refused", {line.text, line.length}, &refusal);
}

// A trace line can be without a message: one that announces none.
void DatabaseReport::end_line(std::uint64_t number, Line line) {
    if (!said_) database_.line(number, "no_message", {line.text, line.length});
}

}  // namespace ztdecode::tool
