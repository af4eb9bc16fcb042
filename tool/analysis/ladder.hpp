#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/fields.hpp"
#include "tool/analysis/findings.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// What is wrong with the message of a row.
struct LadderMark {
    Severity severity = Severity::note;
    std::string words;
    std::uint32_t trace = 0;  // where another message stands that it has to do with,
    std::uint64_t line = 0;   // 0 where there is none
};

struct LadderRow {
    enum class Is : unsigned char {
        arrow,
        line,    // a line that is refused: nobody said it to anybody
        repeat,  // the rows above once more, so many times
        trace,   // another trace begins
    };
    Is is = Is::arrow;
    bool carried = false;  // by a message above
    std::uint32_t direction = 0;
    std::uint32_t from = 0;  // lifelines
    std::uint32_t to = 0;
    std::uint32_t trace = 0;      // which one, in their order
    std::uint64_t line = 0;       // or the message in a binary file
    std::uint64_t last_line = 0;  // of those that it stands for
    std::uint64_t count = 1;
    std::size_t rows = 0;  // above, that are repeated
    std::string words;     // what is said; nothing in it acts on a terminal
    std::string delta;     // seconds since the message before, where that is known
    std::vector<LadderMark> marks;
};

// Who said what to whom, as rows below lifelines. The first lifeline is the system's.
class Ladder {
  public:
    struct Options {
        std::bitset<std::size(all_fields)> fields;
        bool fold = true;
        bool by_columns = false;  // what stands there tells terminals apart
        bool by_prefix = false;
        Findings::Reading reading{};
        // Of a message in its trace: how long after the one before. Empty where that is not known.
        std::function<std::string(const CapturedMessage&)> delta;
    };
    explicit Ladder(Options options);

    std::unique_ptr<Report> report(std::string_view trace);
    // Behind the last trace, and before anything is asked.
    void end();

    const std::vector<std::string>& lifelines() const noexcept { return lifelines_; }
    const std::vector<LadderRow>& rows() const noexcept { return rows_; }
    const std::vector<std::string>& traces() const noexcept { return traces_; }

  private:
    class OfTrace;

    void add(const CapturedMessage& captured, const Record& record);
    void add_refused(std::uint64_t line, std::string_view why);
    void add_part(const CapturedMessage& captured, const Record& record, std::uint32_t index,
                  std::uint32_t side, std::uint32_t terminal);
    std::uint32_t lifeline(const std::string& name);
    std::uint32_t terminal_of(const CapturedMessage& captured, const Record& record,
                              const Record::Part& part);
    std::string words_of(const Record& record, const Record::Part& part) const;
    void mark(const Finding& finding);
    void put_servers_first();
    void fold();

    Options options_;
    Findings findings_;
    std::vector<std::string> traces_;
    std::vector<std::string> lifelines_;
    std::map<std::string, std::uint32_t, std::less<>> numbers_;
    std::vector<LadderRow> rows_;
};

// The columns that words take on a terminal.
std::size_t columns_of(std::string_view words) noexcept;

}  // namespace ztdecode::tool
