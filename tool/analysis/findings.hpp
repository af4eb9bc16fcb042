#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/record.hpp"
#include "decode/trace_lines.hpp"

// What is wrong in a trace, by rules (docs/findings.md tells of each).
//
//     Findings findings({}, {});
//     findings.begin(file);
//     for (each message in the trace's order)
//         for (const Finding& f : findings.message(captured, record)) ...   // show at this message
//     for (const Finding& f : findings.end()) ...                           // show only at the trace's end
//
// What a call gives is valid until the next one. A finding comes with the message that makes it certain,
// which may stand far behind those that it speaks of: a question that nobody answered is found when it is too
// late for the answer. What is kept for later messages has bounds, whatever the trace.

namespace ztdecode::tool {

enum class Severity : unsigned char { note, warning, error };
std::string_view name_of(Severity severity) noexcept;

struct Rule {
    std::string_view code;
    Severity severity;
    std::string_view title;
};

// In the order of docs/findings.md.
std::span<const Rule> rules() noexcept;

// A message, or a line that is refused, that a finding stands on.
struct Standing {
    std::uint32_t file = 0;  // Findings::file
    std::uint64_t line = 0;  // or number, in a binary file
    std::uint32_t direction = 0;
    std::string_view link{};     // none: of a line
    std::string_view message{};  // none: it has no name
};

struct Finding {
    const Rule* rule = nullptr;
    Standing at;               // the message that it is about
    std::vector<Standing> on;  // all that it stands on, in the trace's order, `at` among them
    std::string words;         // may hold foreign words: of the trace
};

class Findings {
  public:
    // What tells the terminals of a trace apart.
    enum class Apart { nothing, columns, prefix };
    struct Reading {
        Apart apart = Apart::nothing;
        std::int64_t column_unit = 0;  // microseconds that columns count in, 0 where they are no such count
        bool joined = false;           // all traces are one: `end` says nothing until the last one
    };
    struct Limits {
        std::uint32_t response = 1000;  // milliseconds
        std::uint32_t loss = 10;        // of a thousand packets
        std::uint32_t delay = 150;      // milliseconds
        std::uint32_t jitter = 50;      // milliseconds
    };

    Findings(const Reading& reading, const Limits& limits);
    Findings(const Findings&) = delete;
    Findings& operator=(const Findings&) = delete;
    ~Findings();

    void begin(std::string_view file);
    std::span<const Finding> message(const CapturedMessage& captured, const Record& record);
    // A line or message that is refused, and why.
    std::span<const Finding> refused(std::uint64_t number, std::string_view why);
    // Behind the last line of a trace; of traces that are joined `last` tells which is the last one.
    std::span<const Finding> end(bool last = true);

    std::string_view file(const Standing& standing) const noexcept;

  private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};

}  // namespace ztdecode::tool
