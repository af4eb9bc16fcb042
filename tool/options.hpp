#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "decode/line_prefix.hpp"
#include "tool/select/selection.hpp"

namespace ztdecode::tool {

// How the messages of a file are written. `recognised` tells the layouts of text apart line by line.
enum class Layout { recognised, line, line_lng2, tagged, spzt, spzt_lng2, bin1, bin2 };
constexpr bool is_binary(Layout layout) { return layout == Layout::bin1 || layout == Layout::bin2; }

enum class Color { automatic, always, never };

// What comes out: texts under their trace lines, or one JSON object a line; csv and table are for answers.
enum class Format { text, ndjson, csv, table };

// Whether what would act on a terminal is shown as an escape. `automatic`: where it goes to a terminal.
enum class Control { automatic, raw, escape };

// What the six columns in front of S and R are.
enum class Columns { text, number, milliseconds, seconds };

// What of the times of a trace stands in front of its lines.
enum class TimeShown { none, relative, delta, absolute };

// What tells the terminals of a trace apart.
enum class Terminal { none, columns, prefix };

// Whether the files are one trace, and in which order.
enum class Join { none, as_given, by_name };

struct Options {
    std::vector<std::string> files;  // "-" is standard input
    Layout layout = Layout::recognised;
    std::uint32_t direction = 0;  // of layouts without a direction column
    Format format = Format::text;
    SelectionOptions selection;
    Color color = Color::automatic;
    Control control = Control::automatic;
    bool progress = true;  // say how far a long file has come, where it is in nobody's way
    bool input = true;     // show the trace lines
    bool audio_only = false;
    bool debug = false;
    bool explain = false;
    bool findings = false;                       // what the rules find, beneath the messages
    std::shared_ptr<const PrefixFinder> prefix;  // in front of lines; null: what is usual is recognised
    Columns columns = Columns::text;
    Terminal terminal = Terminal::none;
    Join join = Join::none;
    bool follow = false;  // go on when the file grows
    TimeShown time = TimeShown::none;
    bool pad = false;                    // bytes that a line lacks are 0xff
    bool check = false;                  // say what became of the lines, and nothing else
    bool catalog = false;                // list the messages that there are, and decode nothing
    std::optional<std::string> sql;      // a question to all files
    std::string database;                // where their messages go; empty: nowhere that stays
    bool append = false;                 // what the database holds stays in it
    std::vector<std::string> also_read;  // files beside the traces, a key say
    std::string output;                  // file that the output goes to; empty: standard output
    bool quiet = false;                  // no word of what is wrong with lines
    unsigned jobs = 0;                   // 0: as many as there are processors, where that serves

    bool asks() const noexcept { return sql.has_value() || !database.empty(); }
};

// The options, or the exit status where the arguments ask for nothing more (help, version) or are wrong; what
// there is to say then has been said.
struct Arguments {
    std::optional<Options> options;
    int status = 0;
};
Arguments parse_arguments(int argc, const char* const* argv);

}  // namespace ztdecode::tool
