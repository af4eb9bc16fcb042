#include "tool/report/page_report.hpp"

namespace ztdecode::tool {

namespace {

// A longer line is several rows.
constexpr std::size_t longest_row = std::size_t{16} << 20;

}  // namespace

PageReport::PageReport(std::string_view file, PageWriter& page, Output& out) : page_(page), out_(out) {
    page_.begin_file(file, out);
}

void PageReport::other(std::uint64_t number, std::string_view line, bool newline) {
    if (other_number_ != 0 && (other_number_ != number || other_.size() + line.size() > longest_row))
        finish_other();
    if (newline && other_number_ == 0) {
        if (!line.empty()) page_.other(number, line);
        return;
    }
    other_.append(line);
    other_number_ = number;
    if (newline) finish_other();
}

void PageReport::finish_other() {
    if (!other_.empty()) page_.other(other_number_, other_);
    other_ = std::string();
    other_number_ = 0;
}

void PageReport::begin_line(Line /*line*/) { finish_other(); }

void PageReport::begin_bytes(std::span<const std::uint8_t> /*bytes*/) { finish_other(); }

void PageReport::trace(std::uint64_t number, std::string_view words) { page_.other(number, words); }

void PageReport::record(const CapturedMessage& captured, const Record& record) {
    page_.message(captured, record);
}

void PageReport::refused(std::uint64_t number, Line line, const Refusal& refusal) {
    Text why;
    describe(refusal, line, why);
    page_.refused(number, {line.text, line.length}, refusal.column + 1, why.view());
}

bool PageReport::let_out(std::size_t besides) {
    constexpr std::size_t most_held = std::size_t{1} << 20;
    if (out_.text.size() + besides < most_held) return false;
    out_.flush();
    return true;
}

bool PageReport::end(const LineTotals& /*totals*/, std::uint64_t /*cut*/) {
    finish_other();
    return true;
}

}  // namespace ztdecode::tool
