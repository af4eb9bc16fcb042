#include <algorithm>
#include <string>
#include <vector>

#include "core/message.hpp"
#include "tool/analysis/ladder_texts.hpp"
#include "tool/output/utf8.hpp"

namespace ztdecode::tool {

namespace {

struct Pieces {
    std::string_view life, from_left, from_right, along, across, to_right, to_left, times;
};
constexpr Pieces boxes = {"│", "├", "┤", "─", "┼", "►", "◄", "×"};
constexpr Pieces ascii = {"|", "+", "+", "-", "+", ">", "<", "x"};

constexpr std::size_t least_words = 24;  // columns that are left for them
constexpr std::size_t least_spacing = 2;
constexpr std::size_t most_spacing = 8;

std::string padded(const std::string& words, std::size_t width) {
    const std::size_t columns = columns_of(words);
    return std::string(width - std::min(width, columns), ' ') + words;
}

// The first of the words that go into so many columns, cut between two where that can be; the others stay.
std::string take_line(std::string& words, std::size_t width) {
    if (columns_of(words) <= width) return std::exchange(words, {});
    std::size_t columns = 0;
    std::size_t end = 0;
    std::size_t blank = 0;
    while (end < words.size()) {
        const std::size_t n = std::max<std::size_t>(character_length(std::string_view(words).substr(end)), 1);
        columns += columns_of(std::string_view(words).substr(end, n));
        if (words[end] == ' ') blank = end;
        if (columns > width && end > 0) break;
        end += n;
    }
    if (blank > 0) end = blank;
    std::string line = words.substr(0, end);
    line.erase(line.find_last_not_of(' ') + 1);
    words.erase(0, words.find_first_not_of(' ', end));
    return line;
}

class Drawing {
  public:
    Drawing(const Ladder& ladder, const LadderTerminal& terminal, Text& out)
        : ladder_(ladder), terminal_(terminal), pieces_(terminal.ascii ? ascii : boxes), out_(out) {
        std::uint64_t last = 0;
        for (const LadderRow& row : ladder.rows()) {
            last = std::max({last, row.line, row.last_line});
            deltas_ = std::max(deltas_, row.delta.size());
        }
        lines_ = std::max<std::size_t>(std::to_string(last).size(), 4);
        const std::size_t gutter = left();
        const std::size_t room =
            terminal.width > gutter + least_words ? terminal.width - gutter - least_words : 0;
        places_ = std::clamp<std::size_t>(room / least_spacing, 2, std::max<std::size_t>(lifelines(), 2));
        spacing_ = std::clamp(room / places_, least_spacing, most_spacing);
        words_at_ = gutter + (places_ - 1) * spacing_ + 3;
        words_width_ = std::max<std::size_t>(terminal.width > words_at_ ? terminal.width - words_at_ : 0, 8);
    }

    void draw() {
        names();
        for (const LadderRow& row : ladder_.rows()) {
            switch (row.is) {
                case LadderRow::Is::arrow:
                    arrow(row);
                    break;
                case LadderRow::Is::line:
                    beside(std::to_string(row.line), "", "", "! " + row.words);
                    break;
                case LadderRow::Is::repeat:
                    beside("", "", "", repeated(row));
                    break;
                case LadderRow::Is::trace:
                    title(row.words);
                    break;
            }
            for (const LadderMark& mark : row.marks) marked(mark);
        }
    }

  private:
    std::size_t lifelines() const { return ladder_.lifelines().size(); }
    std::size_t left() const { return lines_ + (deltas_ > 0 ? deltas_ + 2 : 0) + 2; }
    // Where there are more than there is room for, the last place is that of all others.
    bool crowded() const { return lifelines() > places_; }
    std::size_t place(std::size_t lifeline) const { return std::min(lifeline, places_ - 1); }
    std::size_t drawn() const { return std::min(lifelines(), places_); }

    // Each name stands above its lifeline, a step lower than the one before it.
    void names() {
        for (std::size_t k = 0; k < drawn(); ++k) {
            out_.add(std::string(left(), ' '));
            for (std::size_t before = 0; before < k; ++before) {
                out_.add(pieces_.life);
                out_.add(std::string(spacing_ - 1, ' '));
            }
            const bool others = crowded() && k + 1 == drawn();
            std::string name =
                others ? "others (" + std::to_string(lifelines() - k) + ", named with what they say)"
                       : ladder_.lifelines()[k];
            const std::size_t taken = left() + k * spacing_;
            const std::size_t room = terminal_.width > taken + 8 ? terminal_.width - taken : 8;
            out_.add(take_line(name, room));
            out_.add("\n");
            while (!name.empty()) {
                out_.add(std::string(left(), ' '));
                for (std::size_t before = 0; before <= k; ++before) {
                    out_.add(pieces_.life);
                    out_.add(std::string(spacing_ - 1, ' '));
                }
                out_.add(take_line(name, room - 1));
                out_.add("\n");
            }
        }
    }

    std::string life() const {
        std::string cells;
        for (std::size_t k = 0; k < drawn(); ++k) {
            if (k > 0) cells.append(spacing_ - 1, ' ');
            cells += pieces_.life;
        }
        return cells;
    }

    std::string arrow_cells(std::size_t from, std::size_t to) const {
        const std::size_t width = (drawn() - 1) * spacing_ + 1;
        std::vector<std::string_view> cells(width, " ");
        for (std::size_t k = 0; k < drawn(); ++k) cells[k * spacing_] = pieces_.life;
        const std::size_t begin = std::min(from, to) * spacing_;
        const std::size_t end = std::max(from, to) * spacing_;
        for (std::size_t at = begin + 1; at < end; ++at)
            cells[at] = at % spacing_ == 0 ? pieces_.across : pieces_.along;
        cells[from * spacing_] = from < to ? pieces_.from_left : pieces_.from_right;
        if (from < to) {
            cells[end - 1] = pieces_.to_right;
        } else if (from > to) {
            cells[begin + 1] = pieces_.to_left;
        }
        std::string drawn_cells;
        for (const std::string_view cell : cells) drawn_cells += cell;
        return drawn_cells;
    }

    std::string repeated(const LadderRow& row) const {
        return "these " + std::to_string(row.rows) + " " + std::string(pieces_.times) +
               std::to_string(row.count) + ", lines " + std::to_string(row.line) + "-" +
               std::to_string(row.last_line);
    }

    void arrow(const LadderRow& row) {
        std::string words = row.words;
        if (row.carried) words.insert(0, "in it: ");
        if (crowded()) {
            for (const std::uint32_t end : {row.from, row.to}) {
                if (end + 1 >= places_) words.insert(0, "[" + ladder_.lifelines()[end] + "] ");
            }
        }
        if (row.count > 1) {
            words += "  " + std::string(pieces_.times) + std::to_string(row.count) + ", lines " +
                     std::to_string(row.line) + "-" + std::to_string(row.last_line);
        }
        const std::string cells = arrow_cells(place(row.from), place(row.to));
        color(row.direction == from_dhs ? "\x1b[32m" : "\x1b[31m");
        beside(row.carried ? "" : std::to_string(row.line), row.delta, cells, std::move(words));
        color("\x1b[0m");
    }

    void marked(const LadderMark& mark) {
        const std::string words = "! " + std::string(name_of(mark.severity)) + " ";
        color("\x1b[33m");
        beside("", "", "", words + mark.words);
        color("\x1b[0m");
    }

    // A row, and as many below it as its words take.
    void beside(const std::string& line, const std::string& delta, const std::string& cells,
                std::string words) {
        const std::string plain = life();
        bool first = true;
        do {
            out_.add(padded(first ? line : "", lines_));
            if (deltas_ > 0) {
                out_.add("  ");
                out_.add(padded(first ? delta : "", deltas_));
            }
            out_.add("  ");
            out_.add(first && !cells.empty() ? cells : plain);
            out_.add(std::string((places_ - drawn()) * spacing_ + 2, ' '));
            if (!first) out_.add("  ");
            out_.add(take_line(words, first ? words_width_ : words_width_ - 2));
            out_.add("\n");
            first = false;
        } while (!words.empty());
    }

    // The names of traces are long, and nothing stands beside them.
    void title(std::string words) {
        words.insert(0, "--- ");
        while (!words.empty()) {
            out_.add(take_line(words, terminal_.width));
            out_.add("\n");
        }
    }

    void color(std::string_view code) {
        if (terminal_.color) out_.add(code);
    }

    const Ladder& ladder_;
    const LadderTerminal& terminal_;
    const Pieces& pieces_;
    Text& out_;
    std::size_t lines_ = 0;   // columns for the numbers of lines
    std::size_t deltas_ = 0;  // ... for times
    std::size_t places_ = 0;  // for lifelines
    std::size_t spacing_ = 0;
    std::size_t words_at_ = 0;
    std::size_t words_width_ = 0;
};

}  // namespace

void write_ladder_text(const Ladder& ladder, const LadderTerminal& terminal, Text& out) {
    Drawing(ladder, terminal, out).draw();
}

}  // namespace ztdecode::tool
