#include "tool/output/output.hpp"

#include <unistd.h>

#include <cerrno>

namespace ztdecode::tool {

int write_whole(int descriptor, std::string_view words) noexcept {
    while (!words.empty()) {
        const ssize_t written = ::write(descriptor, words.data(), words.size());
        if (written >= 0) {
            words.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

void Output::flush() {
    forget_kept();
    send_first(text.size());
}

void Output::flush_keeping(std::size_t n) {
    const std::string_view unsent = text.from(kept_);
    if (error_ == 0) send(unsent);
    sent_ += unsent.size();
    text.cut(n);
    kept_ = n;
}

void Output::send_first(std::size_t n) {
    if (n > 0 && error_ == 0) send(text.view().substr(0, n));
    sent_ += n;
    text.remove_first(n);
}

}  // namespace ztdecode::tool
