#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "fuzz/fuzzing.hpp"

// What the command reads from and writes to, without a file of the file system.

namespace ztdecode::fuzz {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) { expect(number >= 0, "there are descriptors left"); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    int number() const { return number_; }

  private:
    int number_;
};

inline Descriptor file_with(std::string_view content) {
    Descriptor file(::memfd_create("input", 0));
    expect(::write(file.number(), content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
               ::lseek(file.number(), 0, SEEK_SET) == 0,
           "the input can be written");
    return file;
}

// Gives the content in pieces, as a pipe may: each read brings at most one. (More than some hundred do not
// fit.)
inline Descriptor pieces_of(std::string_view content, std::size_t piece) {
    constexpr std::size_t most_pieces = 100;
    piece = std::max(piece, content.size() / most_pieces + 1);
    int ends[2];
    expect(::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) == 0, "there are descriptors left");
    Descriptor reader(ends[0]);
    const Descriptor writer(ends[1]);
    while (!content.empty()) {
        const std::string_view first = content.substr(0, piece);
        expect(::write(writer.number(), first.data(), first.size()) == static_cast<ssize_t>(first.size()),
               "the input can be written");
        content.remove_prefix(first.size());
    }
    return reader;
}

// A file that takes so much and no more: a write beyond that fails.
class Sink {
  public:
    explicit Sink(std::size_t room) : file_(::memfd_create("output", MFD_ALLOW_SEALING)) {
        expect(::ftruncate(file_.number(), static_cast<off_t>(room)) == 0 &&
                   ::fcntl(file_.number(), F_ADD_SEALS, F_SEAL_GROW) == 0,
               "the output can be made");
    }
    int descriptor() const { return file_.number(); }
    std::string content() const {
        std::string all(static_cast<std::size_t>(::lseek(file_.number(), 0, SEEK_CUR)), '\0');
        expect(::pread(file_.number(), all.data(), all.size(), 0) == static_cast<ssize_t>(all.size()),
               "the output can be read");
        return all;
    }

  private:
    Descriptor file_;
};

}  // namespace ztdecode::fuzz
