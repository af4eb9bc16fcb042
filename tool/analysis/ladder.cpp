#include "tool/analysis/ladder.hpp"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "core/data.hpp"
#include "core/message.hpp"
#include "tool/analysis/finding_report.hpp"
#include "tool/output/control.hpp"
#include "tool/output/utf8.hpp"
#include "tool/report/verdicts.hpp"

namespace ztdecode::tool {

namespace {

struct Link {
    std::string_view name;
    std::string_view system;    // who speaks there for the system
    std::string_view terminal;  // ... and whom it speaks to
};
constexpr std::string_view system_name = "system";
constexpr auto links = std::to_array<Link>({
    {"digital", system_name, "digital set"},
    {"ip", system_name, "IP set"},
    {"he", system_name, "HE set"},
    {"call_server", "call server", "object terminal"},
    {"presentation_server", "presentation server", "object terminal"},
    {"hub", system_name, "hub"},
    {"ibs", system_name, "DECT base"},
    {"visiophone", system_name, "visiophone"},
    {"osi", system_name, "OSI channel"},
    {"debug", system_name, "debug channel"},
});

Link link_named(std::string_view name) {
    const auto* const found =
        std::find_if(links.begin(), links.end(), [&](const Link& link) { return link.name == name; });
    return found == links.end() ? Link{name, system_name, name.empty() ? "terminal" : name} : *found;
}

std::string value_of(const Record& record, const Record::Part& part, std::string_view name) {
    for (const std::uint32_t index : record.values(part)) {
        const NotedValue& value = record.value(index);
        if (value.name != name) continue;
        const std::string_view shown = record.shown(value);
        std::string room(data::room_for_value(value.meaning, shown), '\0');
        return std::string(data::value(value.meaning, shown, room.data()));
    }
    return {};
}

std::string escaped(std::string_view words) {
    Text text;
    add_escaped_name(words, text);
    return std::string(text.view());
}

bool same_row(const LadderRow& a, const LadderRow& b) {
    return a.is == LadderRow::Is::arrow && b.is == LadderRow::Is::arrow && a.from == b.from && a.to == b.to &&
           a.trace == b.trace && a.carried == b.carried && a.words == b.words && a.marks.empty() &&
           b.marks.empty();
}

// How often the rows from `first` on, so many of them, stand there in a row.
std::size_t repeats(const std::vector<LadderRow>& rows, std::size_t first, std::size_t n) {
    std::size_t count = 1;
    for (std::size_t at = first + n; at + n <= rows.size(); at += n, ++count) {
        for (std::size_t k = 0; k < n; ++k) {
            if (!same_row(rows[first + k], rows[at + k])) return count;
        }
    }
    return count;
}

struct Character {
    std::uint32_t first;
    std::uint32_t last;
};
// What takes two columns on terminals, roughly.
constexpr auto wide = std::to_array<Character>({{0x1100, 0x115F},
                                                {0x2E80, 0xA4CF},
                                                {0xAC00, 0xD7A3},
                                                {0xF900, 0xFAFF},
                                                {0xFE30, 0xFE6F},
                                                {0xFF00, 0xFF60},
                                                {0xFFE0, 0xFFE6},
                                                {0x1F300, 0x1FAFF},
                                                {0x20000, 0x3FFFD}});

}  // namespace

std::size_t columns_of(std::string_view words) noexcept {
    std::size_t columns = 0;
    while (!words.empty()) {
        const std::size_t n = std::max<std::size_t>(character_length(words), 1);
        std::uint32_t code = static_cast<unsigned char>(words[0]);
        if (n > 1) code &= 0xFFU >> (n + 1);
        for (std::size_t k = 1; k < n; ++k) code = code << 6 | (static_cast<unsigned char>(words[k]) & 0x3FU);
        words.remove_prefix(n);
        if (code >= 0x300 && code < 0x370) continue;  // combining
        const auto in = [code](const Character& c) { return code >= c.first && code <= c.last; };
        columns += std::any_of(wide.begin(), wide.end(), in) ? 2 : 1;
    }
    return columns;
}

class Ladder::OfTrace final : public FindingReport {
  public:
    OfTrace(std::string_view trace, Ladder& ladder)
        : FindingReport(trace, ladder.findings_, !ladder.options_.reading.joined,
                        [&ladder](std::span<const Finding> found) {
                            for (const Finding& finding : found) ladder.mark(finding);
                        }),
          ladder_(ladder) {}

    void refused(std::uint64_t number, Line line, const Refusal& refusal) override {
        Text why;
        describe(refusal, line, why);
        ladder_.add_refused(number, why.view());
        FindingReport::refused(number, line, refusal);
    }

  private:
    void record(const CapturedMessage& captured, const Record& record) override {
        ladder_.add(captured, record);
        FindingReport::record(captured, record);
    }

    Ladder& ladder_;
};

Ladder::Ladder(Options options) : options_(std::move(options)), findings_(options_.reading, {}) {
    lifeline(std::string(system_name));
}

std::unique_ptr<Report> Ladder::report(std::string_view trace) {
    traces_.push_back(escaped(trace));
    LadderRow row;
    row.is = LadderRow::Is::trace;
    row.trace = static_cast<std::uint32_t>(traces_.size() - 1);
    row.words = traces_.back();
    rows_.push_back(std::move(row));
    return std::make_unique<OfTrace>(trace, *this);
}

std::uint32_t Ladder::lifeline(const std::string& name) {
    const auto [place, is_new] = numbers_.try_emplace(name, static_cast<std::uint32_t>(lifelines_.size()));
    if (is_new) lifelines_.push_back(name);
    return place->second;
}

// A module is one by its type and address, everything else by who it is for its link, or by what tells
// terminals apart.
std::uint32_t Ladder::terminal_of(const CapturedMessage& captured, const Record& record,
                                  const Record::Part& part) {
    const std::string_view name = options_.by_columns  ? captured.columns
                                  : options_.by_prefix ? captured.terminal
                                                       : std::string_view();
    const std::string terminal = escaped(name);
    const std::string module = escaped(value_of(record, part, "module"));
    if (module.empty())
        return lifeline(terminal.empty() ? std::string(link_named(part.noted->link).terminal) : terminal);
    const std::string address = value_of(record, part, "module_address");
    return lifeline((terminal.empty() ? "" : terminal + " ") + "module " + module +
                    (address.empty() ? "" : " " + address));
}

void Ladder::add(const CapturedMessage& captured, const Record& record) {
    const Record::Part& part = record.part(0);
    const std::uint32_t side = lifeline(std::string(link_named(part.noted->link).system));
    const std::size_t first = rows_.size();
    add_part(captured, record, 0, side, terminal_of(captured, record, part));
    if (options_.delta) rows_[first].delta = options_.delta(captured);
}

void Ladder::add_part(const CapturedMessage& captured, const Record& record, std::uint32_t index,
                      std::uint32_t side, std::uint32_t terminal) {
    const Record::Part& part = record.part(index);
    LadderRow row;
    row.carried = index > 0;
    row.direction = part.noted->direction;
    row.from = row.direction == from_dhs ? side : terminal;
    row.to = row.direction == from_dhs ? terminal : side;
    row.trace = static_cast<std::uint32_t>(traces_.size() - 1);
    row.line = row.last_line = captured.number;
    row.words = words_of(record, part);
    rows_.push_back(std::move(row));
    // A hub passes on what it carries; everybody else says it.
    const std::string set = part.noted->link == "hub" ? value_of(record, part, "set_number") : std::string();
    for (const std::uint32_t carried : record.carried(part)) {
        const Record::Part& inner = record.part(carried);
        const bool module = !value_of(record, inner, "module").empty();
        if (set.empty()) {
            add_part(captured, record, carried, side,
                     module ? terminal_of(captured, record, inner) : terminal);
        } else {
            add_part(captured, record, carried, terminal,
                     lifeline(lifelines_[terminal] + " set " + escaped(set)));
        }
    }
}

void Ladder::add_refused(std::uint64_t line, std::string_view why) {
    LadderRow row;
    row.is = LadderRow::Is::line;
    row.trace = static_cast<std::uint32_t>(traces_.size() - 1);
    row.line = row.last_line = line;
    row.words = "refused: " + escaped(why);
    rows_.push_back(std::move(row));
}

std::string Ladder::words_of(const Record& record, const Record::Part& part) const {
    std::string words(part.noted->name);
    if (words.empty()) words = "unknown message";
    std::string before = "  ";
    std::string room;
    for (const std::uint32_t index : record.values(part)) {
        const NotedValue& value = record.value(index);
        if (!options_.fields[static_cast<std::size_t>(value.field - std::begin(all_fields))]) continue;
        const std::string_view shown = record.shown(value);
        room.resize(data::room_for_value(value.meaning, shown));
        words.append(before).append(value.name).append(": ");
        words.append(escaped(data::value(value.meaning, shown, room.data())));
        before = ", ";
    }
    if (part.decoded == Decoded::refused) words += "  (refused)";
    if (part.missing > 0) words += "  (bytes are missing)";
    return words;
}

// Traces are told of to both in the same order.
void Ladder::mark(const Finding& finding) {
    const Standing& at = finding.at;
    const auto row = std::partition_point(rows_.begin(), rows_.end(), [&](const LadderRow& one) {
        return one.trace < at.file || (one.trace == at.file && one.line < at.line);
    });
    if (row == rows_.end() || row->trace != at.file || row->line != at.line) return;
    LadderMark mark;
    mark.severity = finding.rule->severity;
    mark.words = std::string(finding.rule->code) + ": " + escaped(finding.words);
    std::string others;
    for (const Standing& on : finding.on) {
        if (on.file == at.file && on.line == at.line) continue;
        if (mark.line == 0) {
            mark.trace = on.file;
            mark.line = on.line;
        }
        others += (others.empty() ? " (with line " : ", ") + std::to_string(on.line);
    }
    if (!others.empty()) mark.words += others + ")";
    row->marks.push_back(std::move(mark));
}

void Ladder::end() {
    if (options_.reading.joined) {
        for (const Finding& finding : findings_.end()) mark(finding);
    }
    if (traces_.size() == 1 && !rows_.empty()) rows_.erase(rows_.begin());
    put_servers_first();
    if (options_.fold) fold();
}

// Beside the system, which they are part of.
void Ladder::put_servers_first() {
    const auto is_server = [&](std::uint32_t k) {
        return std::any_of(links.begin(), links.end(), [&](const Link& link) {
            return link.system != system_name && lifelines_[k] == link.system;
        });
    };
    std::vector<std::uint32_t> order(lifelines_.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_partition(order.begin() + 1, order.end(), is_server);
    std::vector<std::uint32_t> place(order.size());
    std::vector<std::string> names(order.size());
    for (std::uint32_t k = 0; k < order.size(); ++k) {
        place[order[k]] = k;
        names[k] = std::move(lifelines_[order[k]]);
    }
    lifelines_ = std::move(names);
    for (LadderRow& row : rows_) {
        row.from = place[row.from];
        row.to = place[row.to];
    }
}

// What is said again and again stands there once: one row, or a few that take turns.
void Ladder::fold() {
    constexpr std::size_t most_rows = 6;
    constexpr std::size_t least_repeats = 3;  // of several rows; a single one is folded at once
    std::vector<LadderRow> folded;
    for (std::size_t at = 0; at < rows_.size();) {
        std::size_t n = 1;
        std::size_t count = repeats(rows_, at, 1);
        for (std::size_t k = 2; k <= most_rows; ++k) {
            const std::size_t times = repeats(rows_, at, k);
            if (times >= least_repeats && times * k > count * n) {
                n = k;
                count = times;
            }
        }
        const std::uint64_t last_line = rows_[at + n * count - 1].line;
        LadderRow repeat;
        repeat.is = LadderRow::Is::repeat;
        repeat.trace = rows_[at].trace;
        repeat.line = rows_[at].line;
        repeat.last_line = last_line;
        repeat.count = count;
        repeat.rows = n;
        for (std::size_t k = 0; k < n; ++k) folded.push_back(std::move(rows_[at + k]));
        if (n == 1) {
            folded.back().count = count;
            folded.back().last_line = last_line;
        } else {
            folded.push_back(std::move(repeat));
        }
        at += n * count;
    }
    rows_ = std::move(folded);
}

}  // namespace ztdecode::tool
