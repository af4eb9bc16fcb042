#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/session.hpp"
#include "core/trail.hpp"
#include "decode/trace_lines.hpp"
#include "tool/display.hpp"
#include "tool/input/lines.hpp"
#include "tool/options.hpp"
#include "tool/output/diagnostics.hpp"
#include "tool/output/output.hpp"
#include "tool/progress.hpp"
#include "tool/report/text.hpp"
#include "tool/sample.hpp"
#include "tool/select/selected.hpp"
#include "tool/sessions.hpp"
#include "tool/time_column.hpp"

namespace ztdecode::tool {

// Says of each message of several segments that its end never came. Gives how many there are. `one_file`: the
// trace is one, so that the place of a segment is a line of it.
std::uint64_t complain_of_cuts(Sessions& sessions, Diagnostics& diagnostics, bool one_file);

// One trace file on its way from lines to captured messages to what is reported of them, with what
// its messages teach each other.
class TraceDecoder : private SideChannel {
  public:
    // `name` is what diagnostics call the file.
    // `others_follow`: what this one prints is not the end of the output.
    TraceDecoder(std::string name, std::unique_ptr<Report> report, const Options& options,
                 const Display& display, bool others_follow, Sessions& sessions, Output& out,
                 Output& diagnostics);

    // Reads to the end, or until `out` cannot be written any more. `descriptor`: of the file that the source
    // is, -1 when it is a part of one. `in_pieces` is given the input wherever pieces of it may be decoded at
    // once; what it leaves is decoded here.
    using InPieces = std::function<void(Input& input)>;
    void decode(Source& source, int descriptor, const InPieces& in_pieces = nullptr,
                std::uint64_t lines_between = 0);

    // --- for pieces of a trace (tool/pieces.hpp), which others of this kind decode besides

    // Decodes lines of a trace, of which so many stand in front of them. Where something comes up that the
    // trace's own decoder has to see to, it is thrown, and this one is of no use any more.
    void decode_piece(Input& lines, std::uint64_t lines_before);
    // Decodes lines of the trace that come next.
    void decode_next(Input& lines) { decode_text(lines, all_lines); }
    // What was found in lines besides their output, since the last time; and what another one has found in
    // those that come next. False, and nothing is done, where it would have been something else here.
    struct Found {
        std::uint64_t lines = 0;  // up to here
        LineTotals totals;
        Sample sample;
        Counts counts{};
    };
    Found take_found();
    bool add(const Found& found);
    void show_progress(std::uint64_t bytes_read) { progress_->at(bytes_read); }
    bool goes_on() const noexcept {
        return out_.error() == 0 && (selected_ == nullptr || !selected_->enough());
    }
    const Report& report() const noexcept { return *report_; }

    // Lines, or messages of a binary file.
    std::uint64_t lines() const noexcept { return number_; }
    // Whether a line was refused, or the report is not content.
    bool refused_lines() const noexcept { return totals_.refused > 0 || wanting_; }
    bool unreadable() const noexcept { return unreadable_; }
    // Of a trace of which only some messages are asked for: whether there was one.
    bool matched() const noexcept { return selected_ != nullptr && selected_->matched(); }

  private:
    static constexpr std::uint64_t all_lines = std::numeric_limits<std::uint64_t>::max();
    bool decode_text(Input& input, std::uint64_t last_line);
    void decode_binary(Input& input);
    void binary_message(std::span<const std::uint8_t> bytes, const Refusal& cut);
    void cut_short(const Refusal& cut);
    void left_over(const CapturedMessage& captured);
    void end();
    void no_message();

    bool plain_line(const Input::Next& next);
    void plain_text(Line line, const Message& m);
    void text_line(const Input::Next& next);
    void trace_line(Line line);
    void begin_line(Line line);
    void begin_session(Session& session);
    Session& session_of(const CapturedMessage& captured);
    // Gives false when the message was not decoded to its end.
    bool message(const CapturedMessage& captured);
    void unfinished(const Said& said);
    template <class Action>
    void with_memory(Line line, Action action);
    void no_memory(Line line);

    bool shows_output() const override { return options_.debug; }
    void standard_output(std::string_view text) override;
    void standard_error(std::string_view text) override;

    std::uint64_t place() const override { return number_; }

    void refuse(Refusal refusal, Line line);
    void refuse_line(std::string_view why, std::size_t column);
    void complaints_go_out();
    void message_done(const Input& input);

    std::string name_;
    const Options& options_;
    const Display& display_;
    bool others_follow_;
    Output& out_;
    Diagnostics diagnostics_;
    std::unique_ptr<Report> report_;
    Selected* selected_;  // the report, where only some messages are asked for; or null
    TextReport* plain_;   // where texts may go straight to; null for other reports
    Sessions& sessions_;
    Session* session_;
    Trail trail_;
    TraceReader reader_;
    std::optional<TimeColumn> times_;
    std::optional<Progress> progress_;
    std::string traced_;        // side output of the message that is being decoded
    std::uint64_t number_ = 0;  // of the line, or of the message in a binary file
    bool in_long_line_ = false;
    bool in_piece_ = false;
    LineTotals totals_;  // but for the lines themselves
    Sample sample_;      // of lines without a message, until there is one
    bool wanting_ = false;
    bool unreadable_ = false;
};

}  // namespace ztdecode::tool
