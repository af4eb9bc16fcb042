#pragma once

#include <cstdint>
#include <string_view>

#include "core/text.hpp"
#include "decode/trace_lines.hpp"

// What there is to say of the lines of a trace besides their messages.

namespace ztdecode::tool {

// What the end of a trace cuts: segments of a message, of which some never came.
struct CutSeries {
    std::uint64_t segments;
    std::uint64_t to_come;
};

// What became of the lines of a trace; they are `lines` together. Of a binary file each message is a line.
struct LineTotals {
    std::uint64_t lines = 0;
    std::uint64_t refused = 0;
    std::uint64_t no_trace_line = 0;
    std::uint64_t blank = 0;
    std::uint64_t comment = 0;

    std::uint64_t with_messages() const noexcept { return lines - refused - no_trace_line - blank - comment; }
    void count(LineVerdict verdict) noexcept {
        no_trace_line += verdict == LineVerdict::no_trace_line ? 1U : 0U;
        blank += verdict == LineVerdict::blank ? 1U : 0U;
        comment += verdict == LineVerdict::comment ? 1U : 0U;
    }
};

// "1 byte", "2 bytes"
void add_count(std::uint64_t n, std::string_view noun, Text& out);

void write_totals(const LineTotals& totals, Text& out);

// Why a line is refused, in bytes.
void describe(const Refusal& refusal, Line line, Text& out);

void describe(const CutSeries& cut, Text& out);

// The words that stand behind a message in its line.
void describe_left_over(const CapturedMessage& captured, Line line, Text& out);

}  // namespace ztdecode::tool
