#include <algorithm>
#include <string>
#include <vector>

#include "core/message.hpp"
#include "tool/analysis/ladder_texts.hpp"

namespace ztdecode::tool {

namespace {

// In pixels. A character of a monospaced font is six tenths of its height wide; fonts differ a little, so
// that words get somewhat more, and those of other scripts are told how wide they are.
constexpr std::size_t font = 13;
constexpr std::size_t character = 8;
constexpr std::size_t margin = 16;
constexpr std::size_t row_height = 34;
constexpr std::size_t note_height = 20;
constexpr std::size_t name_height = 28;

constexpr std::string_view style = R"(<style>
svg { background: #ffffff; color-scheme: light dark }
text { font: 13px ui-monospace, "DejaVu Sans Mono", "Liberation Mono", Menlo, Consolas, monospace; fill: #1f2328;
  white-space: pre; paint-order: stroke; stroke: #ffffff; stroke-width: 4px; stroke-linejoin: round }
line { stroke: #9aa4b2; stroke-width: 1 }
.name { font-weight: bold }
.line, .delta { fill: #6a7380 }
a:hover .line { text-decoration: underline }
.from line, .from path { stroke: #1a7f37 } .from path { fill: #1a7f37 }
.to line, .to path { stroke: #b3261e } .to path { fill: #b3261e }
.arrow line { stroke-width: 1.5 }
.warning { fill: #9a6700 } .error { fill: #b3261e } .repeat { font-style: italic }
g:target .words { font-weight: bold }
@media (prefers-color-scheme: dark) {
  svg { background: #14181d }
  text { fill: #e6eaee; stroke: #14181d }
  line { stroke: #515b67 }
  .line, .delta { fill: #98a2ae }
  .from line, .from path { stroke: #5ccb78 } .from path { fill: #5ccb78 }
  .to line, .to path { stroke: #ff8a80 } .to path { fill: #ff8a80 }
  .warning { fill: #e3b341 } .error { fill: #ff8a80 }
}
</style>
)";

std::string plain(std::string_view words) {
    std::string result;
    for (const char c : words) {
        switch (c) {
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '&':
                result += "&amp;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

bool is_ascii(std::string_view words) {
    return std::all_of(words.begin(), words.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

class Picture {
  public:
    Picture(const Ladder& ladder, Text& out) : ladder_(ladder), out_(out) {}

    void draw() {
        measure();
        out_.print(
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{-}\" height=\"{-}\" viewBox=\"0 0 {-} {-}\">\n"_cf,
            width_, height_, width_, height_);
        out_.add("<title>");
        for (const std::string& trace : ladder_.traces()) {
            if (&trace != ladder_.traces().data()) out_.add(", ");
            out_.add(plain(trace));
        }
        out_.add("</title>\n");
        out_.add(style);
        names();
        std::size_t y = top();
        for (const LadderRow& row : ladder_.rows()) {
            this->row(row, y);
            y += height_of(row);
        }
        out_.add("</svg>\n");
    }

  private:
    static std::size_t width_of(std::string_view words) { return columns_of(words) * character; }
    static std::size_t height_of(const LadderRow& row) {
        return (row.is == LadderRow::Is::arrow ? row_height : note_height) + note_height * row.marks.size();
    }
    std::size_t top() const { return margin + name_height; }
    std::size_t x_of(std::size_t lifeline) const { return left_ + places_[lifeline]; }

    static std::string id_of(std::uint32_t trace, std::uint64_t line) {
        return (trace > 0 ? "T" + std::to_string(trace + 1) + "-L" : "L") + std::to_string(line);
    }
    static std::string words_of(const LadderRow& row) {
        std::string words = row.carried ? "in it: " + row.words : row.words;
        if (row.count > 1 && row.is == LadderRow::Is::arrow) {
            words += "  ×" + std::to_string(row.count) + ", lines " + std::to_string(row.line) + "–" +
                     std::to_string(row.last_line);
        }
        if (row.is == LadderRow::Is::repeat) {
            words = "these " + std::to_string(row.rows) + " ×" + std::to_string(row.count) + ", lines " +
                    std::to_string(row.line) + "–" + std::to_string(row.last_line);
        }
        return words;
    }
    static std::string words_of(const LadderMark& mark) {
        return std::string(name_of(mark.severity)) + " " + mark.words;
    }
    std::size_t begin_of(const LadderRow& row) const {
        return row.is == LadderRow::Is::arrow ? x_of(std::min(row.from, row.to)) + 10 : x_of(0) + 10;
    }

    void measure() {
        std::size_t lines = 1;
        std::size_t deltas = 0;
        for (const LadderRow& row : ladder_.rows()) {
            lines = std::max(lines, width_of(std::to_string(row.line)));
            deltas = std::max(deltas, width_of(row.delta));
        }
        lines_ = margin + lines;
        deltas_ = lines_ + (deltas > 0 ? character + deltas : 0);
        const auto& names = ladder_.lifelines();
        left_ = deltas_ + 2 * character + width_of(names.front()) / 2;
        places_.assign(1, 0);
        for (std::size_t k = 1; k < names.size(); ++k) {
            const std::size_t both = (width_of(names[k - 1]) + width_of(names[k])) / 2;
            places_.push_back(places_.back() + std::max<std::size_t>(both + 2 * character, 140));
        }
        width_ = x_of(names.size() - 1) + width_of(names.back()) / 2 + margin;
        height_ = top() + margin;
        for (const LadderRow& row : ladder_.rows()) {
            width_ = std::max(width_, begin_of(row) + width_of(words_of(row)) + margin);
            for (const LadderMark& mark : row.marks)
                width_ = std::max(width_, begin_of(row) + width_of(words_of(mark)) + margin);
            height_ += height_of(row);
        }
    }

    // `end`: words end there, and do not begin.
    void text(std::string_view kind, std::size_t x, std::size_t y, const std::string& words,
              std::string_view anchor = {}) {
        out_.print("<text class=\"{-}\" x=\"{-}\" y=\"{-}\""_cf, kind, x, y);
        if (!anchor.empty()) out_.print(" text-anchor=\"{-}\""_cf, anchor);
        if (!is_ascii(words)) {
            out_.print(" textLength=\"{-}\" lengthAdjust=\"spacingAndGlyphs\""_cf, width_of(words) * 39 / 40);
        }
        out_.print(">{-}</text>"_cf, plain(words));
    }

    void names() {
        for (std::size_t k = 0; k < ladder_.lifelines().size(); ++k) {
            out_.print("<line x1=\"{-}\" y1=\"{-}\" x2=\"{-}\" y2=\"{-}\"/>"_cf, x_of(k), margin + font + 6,
                       x_of(k), height_ - margin);
            text("name", x_of(k), margin + font, ladder_.lifelines()[k], "middle");
            out_.add("\n");
        }
    }

    void row(const LadderRow& row, std::size_t y) {
        const std::string id = id_of(row.trace, row.line);
        const bool of_a_line =
            row.is == LadderRow::Is::line || (row.is == LadderRow::Is::arrow && !row.carried);
        out_.print("<g class=\"{-}\""_cf, row.is != LadderRow::Is::arrow ? std::string_view("note")
                                          : row.direction == from_dhs    ? std::string_view("arrow from")
                                                                         : std::string_view("arrow to"));
        if (of_a_line && id != last_id_) out_.print(" id=\"{-}\""_cf, id);
        out_.add(">");
        const std::size_t base = y + 15;
        if (of_a_line) {
            last_id_ = id;
            out_.print("<a href=\"#{-}\">"_cf, id);
            text("line", lines_, base, std::to_string(row.line), "end");
            out_.add("</a>");
        }
        if (!row.delta.empty()) text("delta", deltas_, base, row.delta, "end");
        const std::string_view kind = row.is == LadderRow::Is::repeat ? "words repeat"
                                      : row.is == LadderRow::Is::line ? "words warning"
                                                                      : "words";
        text(kind, begin_of(row), base, words_of(row));
        if (row.is == LadderRow::Is::arrow) arrow(row, y + 23);
        std::size_t below = y + (row.is == LadderRow::Is::arrow ? row_height : note_height);
        for (const LadderMark& mark : row.marks) {
            const std::string severity = "mark " + std::string(name_of(mark.severity));
            if (mark.line > 0) out_.print("<a href=\"#{-}\">"_cf, id_of(mark.trace, mark.line));
            text(severity, begin_of(row), below + 10, words_of(mark));
            if (mark.line > 0) out_.add("</a>");
            below += note_height;
        }
        out_.add("</g>\n");
    }

    void arrow(const LadderRow& row, std::size_t y) {
        const std::size_t from = x_of(row.from);
        const std::size_t to = x_of(row.to);
        out_.print("<line x1=\"{-}\" y1=\"{-}\" x2=\"{-}\" y2=\"{-}\"/>"_cf, from, y, to, y);
        const std::size_t back = from < to ? to - 8 : to + 8;
        out_.print("<path d=\"M{-} {-}L{-} {-}L{-} {-}Z\"/>"_cf, to, y, back, y - 4, back, y + 4);
    }

    const Ladder& ladder_;
    Text& out_;
    std::size_t width_ = 0;
    std::size_t height_ = 0;
    std::size_t lines_ = 0;   // where the numbers of lines end
    std::size_t deltas_ = 0;  // ... and the times
    std::size_t left_ = 0;    // of the first lifeline
    std::vector<std::size_t> places_;
    std::string last_id_;
};

}  // namespace

void write_ladder_svg(const Ladder& ladder, Text& out) { Picture(ladder, out).draw(); }

}  // namespace ztdecode::tool
