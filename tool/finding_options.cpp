#include "tool/finding_options.hpp"

#include <charconv>
#include <string>

#include "tool/command_line.hpp"
#include "tool/time_column.hpp"

namespace ztdecode::tool {

namespace {

constexpr std::uint32_t longest_time = 3600000;  // milliseconds

// A percentage with one decimal at most becomes thousandths.
void add_percentage(CLI::App& app, const std::string& option, std::uint32_t& thousandths,
                    const std::string& help) {
    auto choose = [&thousandths, option](const std::string& word) {
        const auto wrong = [&] {
            return CLI::ValidationError(option,
                                        word + " is no percentage from 0 to 100 with one decimal at most");
        };
        const char* const end = word.data() + word.size();
        std::uint32_t whole = 0;
        const auto read = std::from_chars(word.data(), end, whole);
        std::uint32_t tenths = 0;
        const bool decimal =
            read.ptr + 2 == end && *read.ptr == '.' && read.ptr[1] >= '0' && read.ptr[1] <= '9';
        if (decimal) tenths = static_cast<std::uint32_t>(read.ptr[1] - '0');
        if (read.ec != std::errc() || (read.ptr != end && !decimal) || whole > 100) throw wrong();
        if (whole == 100 && tenths > 0) throw wrong();
        thousandths = whole * 10 + tenths;
    };
    app.add_option_function<std::string>(option, choose, help)->take_last()->type_name("PERCENT");
}

}  // namespace

Findings::Reading reading_of(const Options& options) {
    const auto apart = options.terminal == Terminal::columns  ? Findings::Apart::columns
                       : options.terminal == Terminal::prefix ? Findings::Apart::prefix
                                                              : Findings::Apart::nothing;
    return {apart, column_unit(options.columns), options.join != Join::none};
}

void add_limits(CLI::App& app, Findings::Limits& limits) {
    add_number(app, "--max-response", limits.response, 0U, longest_time,
               "an answer takes N ms at most (default 1000),\n"
               "where the trace gives times")
        ->group("Limits");
    add_percentage(app, "--max-loss", limits.loss,
                   "a ticket tells of so many lost packets at\n"
                   "most (default 1)");
    app.get_option("--max-loss")->group("Limits");
    add_number(app, "--max-delay", limits.delay, 0U, longest_time,
               "and of a delay of N ms at most (default 150)")
        ->group("Limits");
    add_number(app, "--max-jitter", limits.jitter, 0U, longest_time,
               "which varies by N ms at most (default 50)")
        ->group("Limits");
}

}  // namespace ztdecode::tool
