#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ztdecode::tool {

// A question with an answer of its own, beside the plain decode. Its name is the first argument.
struct Subcommand {
    std::string_view name;
    std::string_view purpose;
    // The arguments begin with its name. Gives the exit status.
    int (*run)(int argc, const char* const* argv);
};

std::span<const Subcommand> subcommands() noexcept;

// Null where the first argument names none: a file called like one is given as ./summary or behind "--".
const Subcommand* subcommand(int argc, const char* const* argv) noexcept;

int run_redact(int argc, const char* const* argv);
int run_diff(int argc, const char* const* argv);
int run_ladder(int argc, const char* const* argv);
int run_summary(int argc, const char* const* argv);
int run_findings(int argc, const char* const* argv);
int run_report(int argc, const char* const* argv);

}  // namespace ztdecode::tool
