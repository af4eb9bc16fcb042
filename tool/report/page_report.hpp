#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tool/report/page_writer.hpp"
#include "tool/report/record_report.hpp"

namespace ztdecode::tool {

// A trace as rows of the page: its messages, and its other lines where they stand.
class PageReport : public RecordReport {
  public:
    PageReport(std::string_view file, PageWriter& page, Output& out);

    std::optional<Trail::What> notes() const override { return Trail::What::words; }
    void other(std::uint64_t number, std::string_view line, bool newline) override;
    void begin_line(Line line) override;
    void begin_bytes(std::span<const std::uint8_t> bytes) override;
    void trace(std::uint64_t number, std::string_view words) override;
    void refused(std::uint64_t number, Line line, const Refusal& refusal) override;
    bool let_out(std::size_t besides) override;
    bool end(const LineTotals& totals, std::uint64_t cut) override;

  protected:
    void record(const CapturedMessage& captured, const Record& record) override;

  private:
    void finish_other();

    PageWriter& page_;
    Output& out_;
    std::string other_;  // a line that comes in pieces
    std::uint64_t other_number_ = 0;
};

}  // namespace ztdecode::tool
