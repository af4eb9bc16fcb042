#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "tool/analysis/calls.hpp"
#include "tool/analysis/finding_output.hpp"
#include "tool/analysis/findings.hpp"
#include "tool/output/output.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// What is in traces, on one page.
class Summary {
  public:
    // `calls`: gets each call as JSON when it is over, null where the page is to have them.
    Summary(const Findings::Reading& reading, const Findings::Limits& limits, Output* calls);

    std::unique_ptr<Report> report(std::string_view file);
    // The last trace is done.
    void end();

    // `width`: of the page, in columns.
    void write(std::size_t width, Output& out) const;
    void write_as_ndjson(Output& out) const;

  private:
    class OfFile;
    friend class SummaryPage;

    // A terminal, or a module, by what it says of itself.
    struct Who {
        std::string name;  // what tells terminals apart
        std::string link;
        std::string place;  // behind a hub or a set
        std::string type;
        std::string serial;
        auto operator<=>(const Who&) const = default;  // NOLINT(modernize-use-nullptr): the compiler's
    };
    struct Identity {
        Who who;
        std::vector<std::pair<std::string_view, std::string>> says;  // what, and its last value
        std::uint64_t reports = 0;
    };
    // When something was said, as the trace has it.
    struct When {
        std::string time;
        std::string columns;
    };

    // What more there is of them is counted.
    static constexpr std::size_t most_terminals = 100;
    static constexpr std::size_t most_calls = 100;
    static constexpr std::size_t most_files = 20;

    void message(const CapturedMessage& captured, const Record& record);
    void part(const CapturedMessage& captured, const Record& record, std::size_t k);
    void identity(const Who& who, const Values& values);
    void count(std::span<const Finding> found);
    void call(const Call& call);
    std::string_view name_of_terminal(const CapturedMessage& captured) const;

    Findings::Reading reading_;
    Findings findings_;
    Output* calls_out_;
    Calls calls_;
    TraceClock clock_;
    std::vector<std::string> files_;
    std::uint64_t files_seen_ = 0;
    LineTotals lines_;
    std::uint64_t messages_ = 0;
    std::optional<When> first_;
    When last_;
    std::optional<std::int64_t> first_time_;
    std::optional<std::int64_t> last_time_;
    std::map<std::tuple<std::string_view, std::uint32_t, std::string_view>, std::uint64_t> names_;
    std::map<Who, std::size_t> known_;                         // in identities_
    std::map<std::string, std::size_t, std::less<>> last_of_;  // of a place: who reported there last
    std::vector<Identity> identities_;
    std::uint64_t more_identities_ = 0;
    std::vector<Call> call_list_;
    std::uint64_t call_count_ = 0;
    std::vector<std::uint64_t> found_;  // of each rule
    FindingCounts found_by_severity_;
};

}  // namespace ztdecode::tool
