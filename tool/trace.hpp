#pragma once

#include <cstdint>
#include <memory>
#include <optional>
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
#include "tool/select/selected.hpp"

namespace ztdecode::tool {

// One trace file on its way from lines to captured messages to what is reported of them, with a session of
// its own.
class TraceDecoder : private SideChannel {
  public:
    // `name` is what diagnostics call the file.
    TraceDecoder(std::string name, std::unique_ptr<Report> report, const Options& options,
                 const Display& display, Output& out, Output& diagnostics);

    // Reads to the end, or until `out` cannot be written any more.
    void decode(int descriptor);

    // Lines, or messages of a binary file.
    std::uint64_t lines() const noexcept { return number_; }
    bool refused_lines() const noexcept { return refused_; }
    bool unreadable() const noexcept { return unreadable_; }
    // Of a trace of which only some messages are asked for: whether there was one.
    bool matched() const noexcept { return selected_ != nullptr && selected_->matched(); }

  private:
    bool goes_on() const noexcept {
        return out_.error() == 0 && (selected_ == nullptr || !selected_->enough());
    }
    void decode_text(Input& input);
    void decode_binary(Input& input);

    bool plain_line(const Input::Next& next);
    void plain_text(Line line, const Message& m);
    void text_line(const Input::Next& next);
    void trace_line(Line line);
    // Gives false when the message was not decoded to its end.
    bool message(const CapturedMessage& captured);
    void unfinished(const Said& said);
    template <class Action>
    void with_memory(Line line, Action action);
    void no_memory(Line line);

    bool shows_output() const override { return options_.debug; }
    void standard_output(std::string_view text) override;
    void standard_error(std::string_view text) override;

    void refuse(std::string_view why);
    void complaints_go_out();
    void message_done(const Input& input);

    std::string name_;
    const Options& options_;
    const Display& display_;
    Output& out_;
    Diagnostics diagnostics_;
    std::unique_ptr<Report> report_;
    Selected* selected_;  // the report, where only some messages are asked for; or null
    TextReport* plain_;   // where texts may go straight to; null for other reports
    Session session_;
    Trail trail_;
    TraceReader reader_;
    std::optional<Progress> progress_;
    std::string traced_;        // side output of the message that is being decoded
    std::uint64_t number_ = 0;  // of the line, or of the message in a binary file
    bool refused_ = false;
    bool unreadable_ = false;
};

}  // namespace ztdecode::tool
