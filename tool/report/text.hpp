#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "tool/output/output.hpp"
#include "tool/report/remarks.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// The texts of the messages, each below its trace line. Lines that are no trace line keep their place, so
// that a log keeps its context.
class TextReport final : public Report {
  public:
    struct Options {
        bool lines = true;        // show the trace lines
        bool only_texts = false;  // leave out the trace lines without a text
        bool color = false;       // texts have colours, which become those of terminals
        bool explained = false;   // below each text the bytes that its words came from
    };
    // `remarks`: who has something to say beneath the messages, if anybody.
    TextReport(const Options& options, Output& out, std::unique_ptr<Remarks> remarks = nullptr);

    // Whether texts go out as they are decoded, and nothing else does.
    bool plain() const noexcept { return !presents_ && !options_.only_texts; }
    // A plain line of one message: its text goes behind what is returned. `line` has its newline behind it.
    Text& begin_plain(Line line) {
        if (options_.lines) out_.text.add({line.text, line.length + 1});
        text_ = out_.text.size();
        return out_.text;
    }
    void end_plain() {
        if (out_.text.size() > text_ && out_.text.view().back() != '\n') out_.text.add("\n");
    }

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
    // What remarks say depends on messages far in front.
    bool can_be_told_in_pieces() const override { return remarks_ == nullptr; }
    void no_memory() override;
    bool end(const LineTotals& totals, std::uint64_t cut) override;

  private:
    void begin_text(std::size_t begin);
    void present(const Said& said);
    void put_traces_above_text();
    void use_line_end();
    template <class Say>
    void remark(Say say);

    Options options_;
    Output& out_;
    bool presents_;          // texts go out in another form than they are decoded in
    std::string_view time_;  // in front of the line
    std::string_view line_end_ = "\n";
    std::size_t begin_ = 0;    // of the line in the output
    std::size_t text_ = 0;     // of its text
    bool partly_out_ = false;  // text of the line has gone out
    bool failed_ = false;      // the line has no text, since something is wrong with it
    Text decoded_;             // a text before it is presented
    std::string traced_;       // side output that is not in the output yet
    std::unique_ptr<Remarks> remarks_;
    std::string remarked_;  // of the line, not in the output yet
};

}  // namespace ztdecode::tool
