#pragma once

#include "core/record.hpp"
#include "core/text.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// A report that is made of records, and writes no line as it comes.
class RecordReport : public Report {
  public:
    std::optional<Trail::What> notes() const override { return Trail::What::values; }
    void other(std::uint64_t /*number*/, std::string_view /*line*/, bool /*newline*/) override {}
    void begin_line(Line /*line*/) override {}
    void begin_bytes(std::span<const std::uint8_t> /*bytes*/) override {}
    Text& begin_message(const CapturedMessage& captured) override;
    void trace(std::uint64_t /*number*/, std::string_view /*words*/) override {}
    void message(const Said& said) override;
    void unfinished(const Said& said, Text& why) override;
    void refused(std::uint64_t /*number*/, Line /*line*/, const Refusal& /*refusal*/) override {}
    void end_line(std::uint64_t /*number*/, Line /*line*/) override {}
    bool let_out(std::size_t /*besides*/) override { return false; }
    void no_memory() override;
    bool end(const LineTotals& /*totals*/, std::uint64_t /*cut*/) override { return true; }

  protected:
    // A message, decoded to its end or as far as it could be; valid during the call.
    virtual void record(const CapturedMessage& captured, const Record& record) = 0;

  private:
    Text decoded_;
    Record record_;
};

}  // namespace ztdecode::tool
