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

}  // namespace

FileOutputs::FileOutputs() : out_(*this, STDOUT_FILENO), diagnostics_(*this, STDERR_FILENO) {}

void FileOutputs::close() {
    for (Kept* kept : {&out_, &diagnostics_}) {
        kept->flush();
        kept->text = Text();
    }
}

void FileOutputs::release() {
    out_.release();
    diagnostics_.release();
}

// A file's text goes out before its diagnostics.
void FileOutputs::Kept::send(std::string_view words) {
    if (both_.turn_.load(std::memory_order_acquire)) both_.release();
    if (released_) {
        write(words);
        return;
    }
    if (file_ == nullptr) file_.reset(std::tmpfile());
    if (file_ == nullptr) {
        fail(errno);
    } else {
        write_to(::fileno(file_.get()), words);
    }
}

void FileOutputs::Kept::release() {
    if (released_) return;
    released_ = true;
    const auto file = std::move(file_);
    if (file == nullptr || error() != 0) return;
    const int from = ::fileno(file.get());
    ::lseek(from, 0, SEEK_SET);
    if (copy_in_kernel(from, descriptor())) return;
    char block[block_size];
    for (ssize_t n = 0; error() == 0 && (n = ::read(from, block, sizeof block)) > 0;) {
        write({block, static_cast<std::size_t>(n)});
    }
}

}  // namespace ztdecode::tool
