#include "tool/output/file_outputs.hpp"

#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>

namespace ztdecode::tool {

namespace {

constexpr std::size_t block_size = std::size_t{64} * 1024;
constexpr std::size_t most_in_memory = std::size_t{16} * 1024;

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

FileOutputs::FileOutputs(bool escapes_output, bool escapes_diagnostics)
    : out_(*this, STDOUT_FILENO, escapes_output), diagnostics_(*this, STDERR_FILENO, escapes_diagnostics) {}

void FileOutputs::close() {
    out_.flush_and_release();
    diagnostics_.flush_and_release();
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

void FileOutputs::give_up(int error) {
    const std::lock_guard lock(mutex_);
    out_.give_up(error);
}

void FileOutputs::Kept::send(std::string_view words) {
    const std::lock_guard lock(both_.mutex_);
    if (output_error_ != 0) {
        fail(output_error_);
    } else if (both_.turn_) {
        write_out(words);
    } else {
        keep(words);
    }
}

void FileOutputs::Kept::write_out(std::string_view words) {
    output_error_ = write_whole(descriptor(), words);
    fail(output_error_);
}

void FileOutputs::Kept::keep(std::string_view words) {
    if (file_ == nullptr && memory_.size() + words.size() <= most_in_memory) {
        memory_.add(words);
        return;
    }
    if (file_ == nullptr) {
        file_.reset(std::tmpfile());
        if (file_ == nullptr) {
            temporary_error_ = errno;
        } else {
            write_file(memory_.view());
        }
    }
    write_file(words);
    fail(temporary_error_);
}

void FileOutputs::Kept::write_file(std::string_view words) {
    if (temporary_error_ == 0) temporary_error_ = write_whole(::fileno(file_.get()), words);
}

FileOutputs::File FileOutputs::Kept::release() {
    if (file_ != nullptr) {
        copy_file();
    } else {
        output_error_ = write_whole(descriptor(), memory_.view());
    }
    memory_ = Text();
    return std::move(file_);
}

void FileOutputs::Kept::copy_file() {
    const int file = ::fileno(file_.get());
    ::lseek(file, 0, SEEK_SET);
    if (copy_in_kernel(file, descriptor())) return;
    char block[block_size];
    while (output_error_ == 0) {
        const ssize_t n = ::read(file, block, sizeof block);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) temporary_error_ = errno;
        if (n <= 0) return;
        output_error_ = write_whole(descriptor(), {block, static_cast<std::size_t>(n)});
    }
}

}  // namespace ztdecode::tool
