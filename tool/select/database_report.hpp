#pragma once

#include <string>

#include "core/text.hpp"
#include "tool/report/report.hpp"
#include "tool/select/database.hpp"

namespace ztdecode::tool {

// What a trace says as rows of a database.
class DatabaseReport final : public Report {
  public:
    explicit DatabaseReport(Database& database) noexcept : database_(database) {}

    std::optional<Trail::What> notes() const override { return Trail::What::values; }
    void other(std::uint64_t number, std::string_view line, bool newline) override;
    void begin_line(Line line) override;
    void begin_bytes(std::span<const std::uint8_t> bytes) override;
    Text& begin_message(const CapturedMessage& captured) override;
    void trace(std::uint64_t /*number*/, std::string_view /*words*/) override {}
    void message(const Said& said) override;
    void unfinished(const Said& said, Text& why) override;
    void refused(std::uint64_t number, Line line, const Refusal& refusal) override;
    void end_line(std::uint64_t number, Line line) override;
    bool let_out(std::size_t /*besides*/) override { return false; }
    void no_memory() override;
    bool end(const LineTotals& /*totals*/, std::uint64_t /*cut*/) override { return true; }

  private:
    Database& database_;
    Record record_;
    Text decoded_;
    bool said_ = false;     // the line has a row
    bool in_line_ = false;  // pieces of a long line have been seen, and more follow
};

}  // namespace ztdecode::tool
