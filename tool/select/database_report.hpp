#pragma once

#include "tool/report/record_report.hpp"
#include "tool/select/database.hpp"

namespace ztdecode::tool {

// What a trace says as rows of a database.
class DatabaseReport final : public RecordReport {
  public:
    explicit DatabaseReport(Database& database) noexcept : database_(database) {}

    void other(std::uint64_t number, std::string_view line, bool newline) override;
    void begin_line(Line line) override;
    void begin_bytes(std::span<const std::uint8_t> bytes) override;
    void refused(std::uint64_t number, Line line, const Refusal& refusal) override;
    void end_line(std::uint64_t number, Line line) override;

  private:
    void record(const CapturedMessage& captured, const Record& record) override;

    Database& database_;
    bool said_ = false;     // the line has a row
    bool in_line_ = false;  // pieces of a long line have been seen, and more follow
};

}  // namespace ztdecode::tool
