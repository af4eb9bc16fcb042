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
#include <iterator>
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

FollowedSource::FollowedSource(std::string file, int descriptor, bool lines, int output)
    : file_(std::move(file)),
      given_(descriptor),
      descriptor_(descriptor),
      events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      lines_(lines),
      output_(output) {
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
        if (!line_end_.empty()) {
            const std::size_t given = line_end_.copy(to, n);
            line_end_.erase(0, given);
            return given;
        }
        const ssize_t got = ::read(descriptor_, to, n);
        if (got < 0 && errno != EINTR) {
            fail(std::strerror(errno));
            return 0;
        }
        if (got > 0) {
            learn({to, static_cast<std::size_t>(got)});
            return static_cast<std::size_t>(got);
        }
        if (is_truncated() || is_made_anew()) {
            end_line();
        } else if (!wait()) {
            return 0;
        }
    }
}

// How the text is written, and whether it stands at the end of a line.
void FollowedSource::learn(std::string_view bytes) {
    if (!encoding_) encoding_ = encoding_of(bytes);
    bytes_ += bytes.size();
    has_newlines_ = has_newlines_ || bytes.find('\n') != std::string_view::npos;
    while (encoding_ != Encoding::bytes && bytes.ends_with('\0')) bytes.remove_suffix(1);
    if (!bytes.empty()) in_line_ = lines_ && bytes.back() != '\n' && (has_newlines_ || bytes.back() != '\r');
}

// The rest of the line never comes, nor that of a character: what follows belongs to another file.
void FollowedSource::end_line() {
    const bool half = encoding_.value_or(Encoding::bytes) != Encoding::bytes && bytes_ % 2 != 0;
    const bool little = encoding_ == Encoding::utf16_little;
    if (half && little) line_end_ += '\0';
    if (half && !little) line_end_ += '\n';
    if (in_line_ && (!half || little)) {
        if (encoding_ == Encoding::utf16_big) line_end_ += '\0';
        line_end_ += '\n';
        if (little) line_end_ += '\0';
    }
    in_line_ = false;
    bytes_ = 0;
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
    // Of the output only what nobody has to ask for: that it is closed on the other side. A descriptor below
    // zero is passed over.
    pollfd watched[] = {{events_, POLLIN, 0}, {output_, 0, 0}};
    if (interrupted == 0) ::ppoll(watched, std::size(watched), &between_looks, &before);
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    std::array<char, 4096> heard;
    while (events_ >= 0 && ::read(events_, heard.data(), heard.size()) > 0) {
    }
    return interrupted == 0 && (watched[1].revents & (POLLERR | POLLHUP)) == 0;
}

}  // namespace ztdecode::tool
