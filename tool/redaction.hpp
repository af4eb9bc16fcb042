#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/record.hpp"
#include "tool/input/encodings.hpp"
#include "tool/input/lines.hpp"
#include "tool/options.hpp"
#include "tool/output/diagnostics.hpp"
#include "tool/output/output.hpp"
#include "tool/redact/hidden_values.hpp"
#include "tool/redact/kinds.hpp"
#include "tool/redact/lines.hpp"
#include "tool/redact/stand_ins.hpp"
#include "tool/redact/tally.hpp"
#include "tool/sessions.hpp"

namespace ztdecode::tool {

// What all traces of a run are redacted with.
struct Redacting {
    const Options& options;
    const Kept& kept;
    const StandIns& stand_ins;
    Tally& tally;
};

// What the messages of a trace teach each other: as they came, and with their stand-ins.
struct BothSessions {
    Sessions before;
    Sessions after;
};

// One trace on its way out of the house: line for line the same, with stand-ins for what is hidden. What
// becomes of each message is decoded again and held against what was said before; stand-ins that change
// anything else are replaced by others.
//
// Lines wait while a message is being put together from segments, as only its last one tells what they hold:
// so many of them at most. What is put together later than that is blanked.
class Redaction {
  public:
    static constexpr std::size_t most_lines = 4096;
    static constexpr std::size_t most_bytes = std::size_t{4} << 20;

    Redaction(std::string name, const Redacting& redacting, BothSessions& sessions, Output& out,
              Output& diagnostics);

    // Reads to the end, or until `out` cannot be written any more. `utf16`: the source of a trace that comes
    // in UTF-16, and goes out so; null for any other one.
    void redact(Source& source, const Utf16Source* utf16);

    bool unreadable() const noexcept { return unreadable_; }
    bool refused_lines() const noexcept { return refused_; }

  private:
    struct PendingLine {
        RedactedLine line;
        std::string text;  // of a line that is none, or of a message in a binary file what stands before it
        std::string behind;
        std::vector<std::optional<std::size_t>> messages;  // which of the pending ones; none: not decoded
        bool is_trace = false;
        bool is_binary = false;
        bool lost = false;

        // Messages of a line that are decoded come first.
        bool has_message() const noexcept { return !messages.empty() && messages.front().has_value(); }
        std::size_t first_message() const noexcept { return has_message() ? *messages.front() : 0; }
    };

    void redact_text(Input& input);
    void redact_binary(Input& input);
    void text_line(const Input::Next& next);
    void trace_line(PendingLine& pending);
    void no_trace_line(PendingLine& pending, LineVerdict verdict, std::string_view line);
    void lose(PendingLine& pending);
    void binary_message(std::span<const std::uint8_t> head, std::span<const std::uint8_t> bytes,
                        std::size_t announced);
    Outcome decode_before(std::span<const std::uint8_t> bytes, std::uint32_t direction,
                          std::string_view terminal);
    bool waits();
    void finish_pending();
    std::vector<std::size_t> ends_of_groups() const;
    void replace_group();
    bool replace_all();
    void replace_one_by_one();
    bool fits_with(const Edit& edit);
    bool hide_in_pieces(const Edit& edit);
    bool fits(bool for_good);
    bool says_the_same(const HiddenMessage& m);
    bool lines_stand();
    std::vector<const std::vector<std::uint8_t>*> bytes_of(const PendingLine& pending) const;
    void count();
    void write(const PendingLine& pending);
    void write_text(std::string_view words);
    void refuse(const PendingLine& pending);
    void complaints_go_out();

    std::string name_;
    const Redacting& redacting_;
    const Options& options_;
    BothSessions& sessions_;
    Output& out_;
    Diagnostics diagnostics_;
    TraceReader reader_;
    TraceReader second_reader_;
    Trail trail_before_;
    Trail trail_after_;
    Text text_;
    Record record_;
    Typing typing_;
    std::vector<HiddenMessage> messages_;
    std::vector<Edit> edits_;
    std::deque<PendingLine> lines_;
    std::size_t pending_bytes_ = 0;
    struct Group {
        std::size_t begin = 0;  // of `messages_`
        std::size_t end = 0;
        std::vector<const Edit*> edits;
        std::vector<PendingLine*> lines;
    };
    Group group_;                                       // of messages that hang together
    std::map<const Session*, std::uint64_t> open_;      // series that lines wait for, by their first segments
    std::map<const Session*, std::uint64_t> given_up_;  // and those that they do not wait for any more
    std::size_t tries_ = 0;
    std::uint64_t number_ = 0;
    bool in_long_line_ = false;
    bool long_comment_ = false;
    const Utf16Source* utf16_ = nullptr;
    bool begun_ = false;  // to write
    bool refused_ = false;
    bool unreadable_ = false;
};

}  // namespace ztdecode::tool
