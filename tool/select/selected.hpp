#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "tool/output/output.hpp"
#include "tool/report/report.hpp"
#include "tool/select/selection.hpp"

namespace ztdecode::tool {

// An expression that fails on one message of a file: no telling what it would select.
class FailedExpression : public std::runtime_error {
  public:
    FailedExpression(std::uint64_t line, const std::string& why)
        : std::runtime_error("--where: " + why), line_(line) {}
    // Or in a binary file the message.
    std::uint64_t line() const noexcept { return line_; }

  private:
    std::uint64_t line_;
};

// Stands in front of another report, which is told of the messages that are asked for and of nothing else.
// Each message is told of as if it stood alone in its line; of a line with several the trace line is shown
// once.
class Selected final : public Report {
  public:
    struct Options {
        bool only_texts = false;  // messages without a text are not there
        bool separators = false;  // "--" stands between groups with context
        bool file_names = false;  // in front of the count
    };
    Selected(std::string_view file, const SelectionOptions& selection, const Options& options,
             std::unique_ptr<Report> shown, Output& out);

    // Whether no message is asked for any more.
    bool enough() const noexcept { return matched_ >= selection_options_.most && after_left_ == 0; }
    bool matched() const noexcept { return matched_ > 0; }

    std::optional<Trail::What> notes() const override;
    void other(std::uint64_t number, std::string_view line, bool newline) override;
    void show_time(std::string_view column) override { time_ = column; }
    void begin_line(Line line) override;
    void begin_bytes(std::span<const std::uint8_t> bytes) override;
    Text& begin_message(const CapturedMessage& captured) override;
    void trace(std::uint64_t number, std::string_view words) override;
    void message(const Said& said) override;
    void unfinished(const Said& said, Text& why) override;
    void refused(std::uint64_t number, Line line, const Refusal& refusal) override;
    void end_line(std::uint64_t number, Line line) override;
    bool let_out(std::size_t besides) override;
    void no_memory() override;
    // Context belongs to messages of other pieces.
    bool can_be_told_in_pieces() const override {
        return before_ == 0 && after_ == 0 && shown_->can_be_told_in_pieces();
    }
    Counts take_counts() override { return {std::exchange(matched_, 0)}; }
    bool add(const Counts& counts) override;
    // Says how many messages there were, where that is what is asked for.
    bool end(const LineTotals& totals, std::uint64_t cut) override;

  private:
    // What was shown of a message, which may be wanted as context.
    struct Past {
        std::string text;
        std::size_t line;  // characters of it that are the trace line
        std::uint64_t number;
        std::uint64_t place;
    };

    bool asked_for(const Said& said);
    template <class Tell>
    void consider(bool asked, std::uint64_t number, Tell tell);
    template <class Tell>
    void show(std::uint64_t number, Tell tell);
    template <class Tell>
    std::size_t tell_of_line(Tell tell);
    Said tell_of_message(const Said& said);
    void separate(std::uint64_t place);
    void keep(Past past);
    void show_past();

    const SelectionOptions& selection_options_;
    Options options_;
    std::string file_;
    std::unique_ptr<Report> shown_;
    Output& out_;
    std::size_t before_;  // messages of context
    std::size_t after_;
    Selection selection_;

    Record record_;
    Text decoded_;
    std::string traced_;
    std::string_view time_;  // in front of the line
    Line line_{"", 0};
    std::span<const std::uint8_t> bytes_{};
    bool binary_ = false;
    bool telling_ = false;  // the other report is in the middle of a line

    std::size_t matched_ = 0;
    std::size_t after_left_ = 0;
    std::uint64_t place_ = 0;         // of the message, counted among all of them
    std::uint64_t shown_place_ = 0;   // of the one that was shown last
    std::uint64_t shown_number_ = 0;  // of its line
    std::deque<Past> past_;
    std::size_t past_size_ = 0;
};

}  // namespace ztdecode::tool
