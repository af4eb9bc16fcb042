#pragma once

#include <CLI/CLI.hpp>

#include "tool/analysis/findings.hpp"
#include "tool/options.hpp"

namespace ztdecode::tool {

// How traces are read that are looked at with these options.
Findings::Reading reading_of(const Options& options);

// The limits of the rules.
void add_limits(CLI::App& app, Findings::Limits& limits);

}  // namespace ztdecode::tool
