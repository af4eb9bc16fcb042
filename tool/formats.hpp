#pragma once

#include <memory>
#include <string_view>

#include "tool/display.hpp"
#include "tool/options.hpp"
#include "tool/output/output.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// The output that the options ask for. `file` is what the trace is called, and stays until the report is
// done.
std::unique_ptr<Report> make_report(std::string_view file, const Options& options, const Display& display,
                                    Output& out);

// A report that is told of the selected messages alone, where the options select some.
std::unique_ptr<Report> only_selected(std::string_view file, const Options& options,
                                      std::unique_ptr<Report> whole, Output& out);

}  // namespace ztdecode::tool
