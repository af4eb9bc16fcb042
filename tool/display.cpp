#include "tool/display.hpp"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>

namespace ztdecode::tool {

namespace {

bool wants_color(Color color) {
    switch (color) {
        case Color::always:
            return true;
        case Color::never:
            return false;
        default:
            break;
    }
    const char* no_color =
        std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): before any thread starts
    return is_terminal(STDOUT_FILENO) && (no_color == nullptr || *no_color == '\0');
}

bool wants_escapes(Control control, int descriptor) {
    return control == Control::automatic ? is_terminal(descriptor) : control == Control::escape;
}

bool is_file(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

bool is_terminal(int descriptor) { return ::isatty(descriptor) != 0; }

// Nobody knows where a pipe ends: it may well be the terminal that the progress would be shown on.
Display display(const Options& options) {
    return {.color = wants_color(options.color),
            .escapes_output = wants_escapes(options.control, STDOUT_FILENO),
            .escapes_diagnostics = wants_escapes(options.control, STDERR_FILENO),
            .progress = options.progress && is_terminal(STDERR_FILENO) && is_file(STDOUT_FILENO)};
}

// The first of these that is set decides.
bool locale_is_utf8() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): before any thread starts
        if (value == nullptr || *value == '\0') continue;
        std::string words(value);
        std::transform(words.begin(), words.end(), words.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return words.find("utf-8") != std::string::npos || words.find("utf8") != std::string::npos;
    }
    return false;
}

std::size_t terminal_width(int descriptor) {
    winsize size{};
    return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : 80;
}

}  // namespace ztdecode::tool
