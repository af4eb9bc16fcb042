#include "tool/input/source.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace ztdecode::tool {

namespace {

bool is_regular(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

// Reading a file never waits.
DescriptorSource::DescriptorSource(int descriptor)
    : descriptor_(descriptor), may_wait_(!is_regular(descriptor)) {}

std::size_t DescriptorSource::read(char* to, std::size_t n) {
    for (;;) {
        const ssize_t got = ::read(descriptor_, to, n);
        if (got >= 0) return static_cast<std::size_t>(got);
        if (errno == EINTR) continue;
        fail(std::strerror(errno));
        return 0;
    }
}

std::size_t PeekedSource::read(char* to, std::size_t n) {
    if (given_ == size_) {
        const std::size_t got = source_.read(to, n);
        if (got == 0 && source_.failed()) fail(source_.error());
        return got;
    }
    const std::size_t got = std::min(n, size_ - given_);
    std::memcpy(to, bytes_.data() + given_, got);
    given_ += got;
    return got;
}

}  // namespace ztdecode::tool
