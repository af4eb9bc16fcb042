#pragma once

#include <cstddef>

#include "tool/options.hpp"

namespace ztdecode::tool {

// What the options come to with the standard streams as they are.
struct Display {
    bool color;
    bool escapes_output;
    bool escapes_diagnostics;
    bool progress;
};
Display display(const Options& options);

// Whether what goes to this descriptor is shown on a terminal.
bool is_terminal(int descriptor);
// Its columns; 80 where it does not say.
std::size_t terminal_width(int descriptor);
// Whether the user's locale is one of UTF-8, by the environment.
bool locale_is_utf8();

}  // namespace ztdecode::tool
