#include "tool/report/verdicts.hpp"

#include <algorithm>

namespace ztdecode::tool {

namespace {

void add_bytes(std::uint64_t announced, std::uint64_t found, std::string_view holder, Text& out) {
    out.add("the length says ");
    add_count(announced, "byte", out);
    out.print(", the {-} has {-}"_cf, holder, found);
}

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// What stands at a column where two digits should.
std::string_view word_at(Line line, std::size_t column) {
    constexpr std::size_t longest = 8;
    const std::string_view all(line.text, line.length);
    const std::string_view rest = all.substr(std::min(column, all.size()));
    const auto* const end = std::find_if(rest.begin(), rest.end(), is_blank);
    return rest.substr(0, std::min(longest, static_cast<std::size_t>(end - rest.begin())));
}

void add_no_length(std::string_view wanted, Line line, std::size_t column, Text& out) {
    const std::string_view word = word_at(line, column);
    if (word.empty()) {
        out.print("{-}: the line ends"_cf, wanted);
    } else if (word.find_first_not_of('0') == std::string_view::npos) {
        out.add("the length says 0 bytes");
    } else {
        out.print("{-}: \"{-}\" is no byte of two digits"_cf, wanted, word);
    }
}

}  // namespace

void add_count(std::uint64_t n, std::string_view noun, Text& out) {
    out.print("{-} {-}"_cf, n, noun);
    if (n != 1) out.add("s");
}

void write_totals(const LineTotals& totals, Text& out) {
    add_count(totals.lines, "line", out);
    out.print(" = {-} with messages + {-} refused + {-} no trace line + {-} blank + {-} comment"_cf,
              totals.with_messages(), totals.refused, totals.no_trace_line, totals.blank, totals.comment);
}

void describe(const Refusal& refusal, Line line, Text& out) {
    switch (refusal.reason) {
        case Refusal::Reason::none:
            break;
        case Refusal::Reason::no_length_byte:
        case Refusal::Reason::really_too_short:
            add_no_length("no length", line, refusal.column, out);
            break;
        case Refusal::Reason::no_two_length_bytes:
        case Refusal::Reason::really_too_short_lng2:
            add_no_length("no length of two bytes", line, refusal.column, out);
            break;
        case Refusal::Reason::length_above_256:
            out.print("no length: \"{-}\" is more than one byte says"_cf, word_at(line, refusal.column));
            break;
        case Refusal::Reason::sr_too_short:
            if (refusal.expected == 0) {
                add_no_length("no length", line, refusal.column, out);
                break;
            }
            [[fallthrough]];
        case Refusal::Reason::too_short:
            add_bytes(refusal.expected, refusal.found, "line", out);
            break;
        case Refusal::Reason::no_hexadecimal:
            out.print("\"{-}\" is no byte of two digits"_cf, word_at(line, refusal.column));
            break;
        case Refusal::Reason::no_tag:
            out.add("no \"zt \" at the line's beginning");
            break;
        case Refusal::Reason::no_sr_column:
            out.add("no S or R here");
            break;
        case Refusal::Reason::file_ends:
            add_bytes(refusal.expected, refusal.found, "file", out);
            break;
        case Refusal::Reason::no_memory:
            out.add("no memory for this message");
            break;
    }
}

void describe(const CutSeries& cut, Text& out) {
    out.add("the trace ends inside a message of ");
    add_count(cut.segments, "segment", out);
    out.print(", {-} of them to come"_cf, cut.to_come);
}

void describe_left_over(const CapturedMessage& captured, Line line, Text& out) {
    const bool bytes = std::all_of(line.text + captured.left_over_column, line.text + line.length,
                                   [](char c) { return is_blank(c) || hex_digit(c) < 16; });
    add_count(captured.left_over, bytes ? "byte" : "word", out);
    out.add(" left over behind the message");
}

}  // namespace ztdecode::tool
