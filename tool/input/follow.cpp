#include "tool/input/follow.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

namespace ztdecode::tool {

namespace {

// Looks for itself as often where there are no events, as on file systems of other machines.
constexpr timespec between_looks{0, 100000000};

volatile std::sig_atomic_t interrupted = 0;
void interrupt(int /*signal*/) { interrupted = 1; }

sigset_t ending_signals() {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGINT);
    ::sigaddset(&signals, SIGTERM);
    return signals;
}

}  // namespace

FollowedSource::FollowedSource(std::string file, int descriptor, bool lines)
    : file_(std::move(file)),
      given_(descriptor),
      descriptor_(descriptor),
      events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      lines_(lines) {
    // The first one ends the following, a second one the process.
    struct sigaction action {};
    action.sa_handler = interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    const std::size_t slash = file_.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : file_.substr(0, slash + 1);
    if (events_ >= 0) ::inotify_add_watch(events_, folder.c_str(), IN_CREATE | IN_MOVED_TO | IN_ONLYDIR);
    watch();
}

FollowedSource::~FollowedSource() {
    if (events_ >= 0) ::close(events_);
    if (descriptor_ != given_) ::close(descriptor_);
}

void FollowedSource::watch() {
    if (events_ < 0) return;
    if (file_watch_ >= 0) ::inotify_rm_watch(events_, file_watch_);
    file_watch_ = ::inotify_add_watch(events_, file_.c_str(), IN_MODIFY | IN_ATTRIB | IN_MOVE_SELF);
}

std::size_t FollowedSource::read(char* to, std::size_t n) {
    for (;;) {
        if (interrupted != 0) return 0;
        const ssize_t got = ::read(descriptor_, to, n);
        if (got < 0 && errno != EINTR) {
            fail(std::strerror(errno));
            return 0;
        }
        if (got > 0) {
            in_line_ = lines_ && to[got - 1] != '\n';
            return static_cast<std::size_t>(got);
        }
        if (is_truncated() || is_made_anew()) {
            // The rest of a line never comes.
            if (std::exchange(in_line_, false)) {
                *to = '\n';
                return 1;
            }
            continue;
        }
        if (!wait()) return 0;
    }
}

bool FollowedSource::is_truncated() const {
    struct stat now {};
    const off_t at = ::lseek(descriptor_, 0, SEEK_CUR);
    if (at < 0 || ::fstat(descriptor_, &now) != 0 || now.st_size >= at) return false;
    ::lseek(descriptor_, 0, SEEK_SET);
    return true;
}

// All of the old file has been read by then.
bool FollowedSource::is_made_anew() {
    struct stat old {};
    struct stat now {};
    if (::fstat(descriptor_, &old) != 0 || ::stat(file_.c_str(), &now) != 0) return false;
    if (old.st_dev == now.st_dev && old.st_ino == now.st_ino) return false;
    const int anew = ::open(file_.c_str(), O_RDONLY | O_CLOEXEC);
    if (anew < 0) return false;
    if (descriptor_ != given_) ::close(descriptor_);
    descriptor_ = anew;
    watch();
    return true;
}

// Until something happens to the file; false when somebody wants an end.
bool FollowedSource::wait() {
    // None of them comes between the look and the waiting.
    const sigset_t ending = ending_signals();
    sigset_t before;
    ::sigprocmask(SIG_BLOCK, &ending, &before);
    pollfd events{events_, POLLIN, 0};
    if (interrupted == 0) ::ppoll(&events, events_ >= 0 ? 1 : 0, &between_looks, &before);
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    std::array<char, 4096> heard;
    while (events_ >= 0 && ::read(events_, heard.data(), heard.size()) > 0) {
    }
    return interrupted == 0;
}

}  // namespace ztdecode::tool
