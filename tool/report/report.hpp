#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "core/session.hpp"
#include "core/text.hpp"
#include "core/trail.hpp"
#include "decode/trace_lines.hpp"
#include "tool/report/verdicts.hpp"

namespace ztdecode::tool {

// What a message of a trace said.
struct Said {
    const CapturedMessage& captured;
    const Trail& trail;  // as much as the output wants to be noted
    std::string_view text;
    Outcome outcome;
};

// What a report counts, each in an order of its own.
using Counts = std::array<std::uint64_t, 6>;

// One form of what a trace says. It is told of everything in a trace, in the trace's order, and writes it.
class Report {
  public:
    Report() = default;
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    virtual ~Report() = default;

    // What it wants to be noted while messages are decoded, if anything.
    virtual std::optional<Trail::What> notes() const { return std::nullopt; }

    // A line that is no trace line, or a piece of one; `newline`: it ended in one.
    virtual void other(std::uint64_t number, std::string_view line, bool newline) = 0;

    // What stands in front of the next trace line.
    virtual void show_time(std::string_view /*column*/) {}

    // A trace line begins, or in a binary file a message. Its messages follow, then why it is refused, if it
    // is, and its end.
    virtual void begin_line(Line line) = 0;
    virtual void begin_bytes(std::span<const std::uint8_t> bytes) = 0;
    // Room for the text of the next message of the line, behind what it holds.
    virtual Text& begin_message(const CapturedMessage& captured) = 0;
    // What decoders traced on the side while they were at that message.
    virtual void trace(std::uint64_t number, std::string_view words) = 0;
    virtual void message(const Said& said) = 0;
    // The message names a class that does not exist, and was decoded as far as that. `why` gets what there is
    // to say of it besides.
    virtual void unfinished(const Said& said, Text& why) = 0;
    virtual void refused(std::uint64_t number, Line line, const Refusal& refusal) = 0;
    virtual void end_line(std::uint64_t number, Line line) = 0;

    // A line may hold many messages, and each of them megabytes of text. Lets go out what there is when much
    // has come together, `besides` included; whether it did. A refusal later in the line does not take that
    // back.
    virtual bool let_out(std::size_t besides) = 0;
    // There is no memory for the message: what was written of it is taken back, and the memory given back.
    virtual void no_memory() = 0;

    // A trace may be told in pieces, each to a report of its own: whether what they write, one behind the
    // other, is what one would have written.
    virtual bool can_be_told_in_pieces() const { return false; }
    // What was counted since the last time; and what another one has counted. False, and nothing is done,
    // where this one would not have said the same.
    virtual Counts take_counts() { return {}; }
    virtual bool add(const Counts& /*counts*/) { return true; }

    // The trace is done: what became of its lines, and how many messages its end cuts between their segments.
    // False when the report asks for more than it got.
    virtual bool end(const LineTotals& totals, std::uint64_t cut) = 0;
};

}  // namespace ztdecode::tool
