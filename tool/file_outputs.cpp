#include "tool/file_outputs.hpp"

#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>

namespace ztdecode::tool {

namespace {

constexpr std::size_t block_size = std::size_t{64} * 1024;

// Inside the kernel where it can do that; it cannot for a file that is appended to, for one.
bool copy_in_kernel(int from, int to) {
    constexpr std::size_t as_much_as_it_takes = 1 << 30;
    ssize_t n = 0;
    do {
        n = ::sendfile(to, from, nullptr, as_much_as_it_takes);
    } while (n > 0 || (n < 0 && errno == EINTR));
    return n == 0;
}

// 0, or an errno.
int copy(int from, int to) {
    ::lseek(from, 0, SEEK_SET);
    if (copy_in_kernel(from, to)) return 0;
    int error = 0;
    char block[block_size];
    for (ssize_t n = 0; error == 0 && (n = ::read(from, block, sizeof block)) > 0;) {
        error = write_whole(to, {block, static_cast<std::size_t>(n)});
    }
    return error;
}

}  // namespace

FileOutputs::FileOutputs() : out_(*this, STDOUT_FILENO), diagnostics_(*this, STDERR_FILENO) {}

void FileOutputs::close() {
    for (Kept* kept : {&out_, &diagnostics_}) {
        kept->flush();
        kept->text = Text();
    }
}

// A file's text goes out before its diagnostics. To close a large file takes a while, which is not for others
// to wait for.
void FileOutputs::your_turn() {
    File text;
    File words;
    const std::lock_guard lock(mutex_);
    turn_ = true;
    text = out_.release();
    words = diagnostics_.release();
}

void FileOutputs::Kept::send(std::string_view words) {
    const std::lock_guard lock(both_.mutex_);
    if (release_error_ != 0) {
        fail(release_error_);
    } else if (both_.turn_) {
        write(words);
    } else {
        keep(words);
    }
}

void FileOutputs::Kept::keep(std::string_view words) {
    if (file_ == nullptr) file_.reset(std::tmpfile());
    fail(file_ == nullptr ? errno : write_whole(::fileno(file_.get()), words));
}

FileOutputs::File FileOutputs::Kept::release() {
    if (file_ != nullptr && error() == 0) release_error_ = copy(::fileno(file_.get()), descriptor());
    return std::move(file_);
}

}  // namespace ztdecode::tool
