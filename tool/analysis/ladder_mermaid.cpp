#include <algorithm>
#include <string>

#include "tool/analysis/ladder_texts.hpp"

namespace ztdecode::tool {

namespace {

// What ends a statement, begins a comment or an entity is an entity itself.
std::string plain(std::string_view words) {
    std::string result;
    for (const char c : words) {
        switch (c) {
            case '#':
                result += "#35;";
                break;
            case ';':
                result += "#59;";
                break;
            case '<':
                result += "#lt;";
                break;
            case '>':
                result += "#gt;";
                break;
            case '%':
                result += "#37;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

void note(const Ladder& ladder, const std::string& words, Text& out) {
    out.add("    Note over p0");
    if (ladder.lifelines().size() > 1) out.print(",p{-}"_cf, ladder.lifelines().size() - 1);
    out.print(": {-}\n"_cf, plain(words));
}

std::string lines_of(const LadderRow& row) {
    return "lines " + std::to_string(row.line) + "-" + std::to_string(row.last_line);
}

void arrow(const LadderRow& row, Text& out) {
    out.print("    p{-}->>p{-}: {-}{-}"_cf, row.from, row.to, std::string(row.carried ? "in it, " : ""),
              plain(row.words));
    if (!row.delta.empty()) out.print(", {-} s"_cf, row.delta);
    if (row.count > 1) out.print(" ×{-}, {-}"_cf, row.count, lines_of(row));
    out.add("\n");
    for (const LadderMark& mark : row.marks) {
        out.print("    Note right of p{-}: {-} {-}\n"_cf, std::max(row.from, row.to), name_of(mark.severity),
                  plain(mark.words));
    }
}

}  // namespace

void write_ladder_mermaid(const Ladder& ladder, Text& out) {
    out.add("sequenceDiagram\n");
    std::size_t number = 0;
    for (const std::string& name : ladder.lifelines())
        out.print("    participant p{-} as {-}\n"_cf, number++, plain(name));
    for (const LadderRow& row : ladder.rows()) {
        switch (row.is) {
            case LadderRow::Is::arrow:
                arrow(row, out);
                break;
            case LadderRow::Is::line:
                note(ladder, "line " + std::to_string(row.line) + ", " + row.words, out);
                break;
            case LadderRow::Is::repeat:
                note(ladder,
                     "these " + std::to_string(row.rows) + " ×" + std::to_string(row.count) + ", " +
                         lines_of(row),
                     out);
                break;
            case LadderRow::Is::trace:
                note(ladder, row.words, out);
                break;
        }
    }
}

}  // namespace ztdecode::tool
