#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/record.hpp"
#include "core/text.hpp"
#include "tool/output/output.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// Whether all of a trace was understood: what became of its lines and messages, as two sums, and nothing
// else.
class CheckReport final : public Report {
  public:
    CheckReport(std::string_view file, Output& out) noexcept : file_(file), out_(out) {}

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
    bool can_be_told_in_pieces() const override { return true; }
    Counts take_counts() override;
    bool add(const Counts& counts) override;
    bool end(const LineTotals& totals, std::uint64_t cut) override;

  private:
    // What a message is counted as: the first of these that it is, from the last one on.
    enum Kind : std::size_t { decoded, missing, unknown, left_over, cut_short, kinds };
    static constexpr std::size_t no_segment = kinds;
    Kind kind_of(const Said& said);

    std::string_view file_;
    Output& out_;
    Text decoded_;  // the text of a message
    Record record_;
    std::array<std::uint64_t, kinds> totals_{};
    std::size_t last_segment_ = no_segment;  // what the last segment of a message was counted as
};

}  // namespace ztdecode::tool
