#include "tool/output_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "tool/display.hpp"
#include "tool/files.hpp"
#include "tool/output/diagnostics.hpp"

namespace ztdecode::tool {

namespace {

bool is_read(const struct stat& output, const std::string& file) {
    struct stat input {};
    const int found = file == "-" ? ::fstat(STDIN_FILENO, &input) : ::stat(file.c_str(), &input);
    return found == 0 && S_ISREG(input.st_mode) && input.st_dev == output.st_dev &&
           input.st_ino == output.st_ino;
}

bool is_read(const struct stat& output, const Options& options) {
    const auto read = [&](const std::string& file) { return is_read(output, file); };
    return std::any_of(options.files.begin(), options.files.end(), read) ||
           std::any_of(options.also_read.begin(), options.also_read.end(), read) || read(options.database);
}

// Empty, or why it cannot be the standard output.
std::string why_not(int descriptor, const Options& options) {
    struct stat output {};
    if (::fstat(descriptor, &output) != 0) return std::strerror(errno);
    if (is_read(output, options)) return "is read, and cannot be written at the same time";
    const bool is_empty = !S_ISREG(output.st_mode) || ::ftruncate(descriptor, 0) == 0;
    return is_empty && ::dup2(descriptor, STDOUT_FILENO) >= 0 ? std::string() : std::strerror(errno);
}

int complain(const Options& options, std::string_view why) {
    Output diagnostics(STDERR_FILENO, display(options).escapes_diagnostics);
    complain_of_file(options.output, why, diagnostics);
    diagnostics.flush();
    return status_failed;
}

}  // namespace

std::optional<int> open_output(const Options& options) {
    if (options.output.empty() || options.output == "-") return std::nullopt;
    constexpr mode_t all_may = 0666;
    const int descriptor = ::open(options.output.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, all_may);
    if (descriptor < 0) return complain(options, std::strerror(errno));
    const std::string why = why_not(descriptor, options);
    ::close(descriptor);
    if (!why.empty()) return complain(options, why);
    return std::nullopt;
}

}  // namespace ztdecode::tool
