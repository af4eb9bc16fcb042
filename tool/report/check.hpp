#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tool/output/output.hpp"
#include "tool/report/record_report.hpp"

namespace ztdecode::tool {

// Whether all of a trace was understood: what became of its lines and messages, as two sums, and nothing
// else.
class CheckReport final : public RecordReport {
  public:
    CheckReport(std::string_view file, Output& out) noexcept : file_(file), out_(out) {}

    // No message of its own: its line is refused.
    void unfinished(const Said& said, Text& why) override;
    bool can_be_told_in_pieces() const override { return true; }
    Counts take_counts() override;
    bool add(const Counts& counts) override;
    bool end(const LineTotals& totals, std::uint64_t cut) override;

  private:
    // What a message is counted as: the first of these that it is, from the last one on.
    enum Kind : std::size_t { decoded, missing, unknown, left_over, cut_short, kinds };
    static constexpr std::size_t no_segment = kinds;
    static Kind kind_of(const CapturedMessage& captured, const Record& record);
    void record(const CapturedMessage& captured, const Record& record) override;

    std::string_view file_;
    Output& out_;
    std::array<std::uint64_t, kinds> totals_{};
    std::size_t last_segment_ = no_segment;  // what the last segment of a message was counted as
};

}  // namespace ztdecode::tool
