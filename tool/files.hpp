#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tool/display.hpp"
#include "tool/options.hpp"
#include "tool/output/output.hpp"
#include "tool/pieces.hpp"
#include "tool/report/report.hpp"
#include "tool/sessions.hpp"

namespace ztdecode::tool {

// Who is told of one trace, a file or a member of one. `name` is what it is called, and stays until the
// report is done.
using MakeReport = std::function<std::unique_ptr<Report>(const std::string& name, Output& out)>;

// What the files are decoded with, whoever is told of them.
struct FileDecoding {
    const Options& options;
    const Display& display;
    const MakeReport& make_report;
    Splitting splitting{};
};

// Exit statuses.
constexpr int status_refused = 1;
constexpr int status_nothing = 1;  // of what was asked for
constexpr int status_found = 1;    // what the command is asked to fail on
constexpr int status_failed = 2;

// Of several files: the worst. Where something is asked for one file that has it is enough, but for errors.
int first_status(const Options& options);
int both(const Options& options, int a, int b);

// Decodes one of the files; gives the exit status. `joined`: what the files before it teach this one, null
// where each is a trace of its own.
int decode_file(const std::string& file, const FileDecoding& decoding, Sessions* joined, Output& out,
                Output& diagnostics);

// All files in their order, until `out` cannot be written any more.
int decode_files(const FileDecoding& decoding, Output& out, Output& diagnostics);

// What the status becomes with what became of standard output, which is complained of. A closed pipe ends the
// work quietly: whoever read has seen enough.
int status_with_output(const Options& options, int status, int error);

// Decodes all files into what is made of them together, then lets `answer` say it. Gives the exit status,
// which is `answer`'s where nothing failed. The selection of the options holds.
int analyse_files(const Options& options, const MakeReport& make_report,
                  const std::function<int(const Display&, Output&)>& answer);

}  // namespace ztdecode::tool
