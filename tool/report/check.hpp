#pragma once

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
    bool end(const LineTotals& totals, std::uint64_t cut) override;

  private:
    // What a message is counted as: the first of these that it is.
    struct Totals {
        std::uint64_t decoded = 0;
        std::uint64_t unknown = 0;
        std::uint64_t missing = 0;
        std::uint64_t left_over = 0;
        std::uint64_t cut_short = 0;

        std::uint64_t messages() const noexcept {
            return decoded + unknown + missing + left_over + cut_short;
        }
    };
    std::uint64_t& kind_of(const Said& said);

    std::string_view file_;
    Output& out_;
    Text decoded_;  // the text of a message
    Record record_;
    Totals totals_;
    std::uint64_t* last_segment_ = nullptr;  // what the last segment of a message was counted as
};

}  // namespace ztdecode::tool
