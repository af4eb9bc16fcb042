#include "tool/progress.hpp"

#include <sys/stat.h>

#include <cstdio>

#include "tool/output/control.hpp"

namespace ztdecode::tool {

namespace {

constexpr std::chrono::milliseconds between_lines{200};
constexpr std::uint64_t bytes_between_looks = std::uint64_t{256} * 1024;

}  // namespace

Progress::Progress(std::string_view name, int input_descriptor, bool wanted)
    : next_(std::chrono::steady_clock::now() + between_lines) {
    struct stat status {};
    if (wanted && ::fstat(input_descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
        total_ = static_cast<std::uint64_t>(status.st_size);
        add_escaped_name(name, name_);
    }
}

Progress::~Progress() { hide(); }

void Progress::hide() {
    if (!shown_) return;
    std::fputs("\r\033[K", stderr);
    shown_ = false;
}

void Progress::show(std::uint64_t bytes_read) {
    if (bytes_read - seen_ < bytes_between_looks) return;
    seen_ = bytes_read;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) return;
    next_ = now + between_lines;
    shown_ = true;
    std::fprintf(stderr, "\rztdecode: %s: %u %%", name_.c_str(),
                 static_cast<unsigned>(100 * bytes_read / total_));
    std::fflush(stderr);
}

}  // namespace ztdecode::tool
