#include "tool/input/content.hpp"

#include <fcntl.h>
#include <nettle/sha2.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <vector>

#include "core/text.hpp"
#include "tool/output/output.hpp"

namespace ztdecode::tool {

namespace {

constexpr std::size_t longest_beginning = 16;

// Of a file without a name.
int open_temporary() {
    const char* folder = std::getenv("TMPDIR");  // NOLINT(concurrency-mt-unsafe): nobody sets it
    std::string name =
        (folder != nullptr && *folder != '\0' ? folder : "/tmp") + std::string("/ztdecode-XXXXXX");
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0) ::unlink(name.c_str());
    return descriptor;
}

}  // namespace

Content::Content(const std::string& file)
    : opened_(file == "-" ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
    error_ = opened_ < 0 ? errno : read();
}

Content::~Content() {
    if (kept_ >= 0) ::close(kept_);
    if (opened_ > STDIN_FILENO) ::close(opened_);
}

int Content::read() {
    const off_t begin = ::lseek(opened_, 0, SEEK_CUR);
    if (begin < 0 && (kept_ = open_temporary()) < 0) return errno;
    sha256_ctx digest;
    sha256_init(&digest);
    std::vector<std::uint8_t> block(std::size_t{256} << 10);
    for (;;) {
        const ssize_t got = ::read(opened_, block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return errno;
        if (got == 0) break;
        const auto n = static_cast<std::size_t>(got);
        const std::string_view words(reinterpret_cast<const char*>(block.data()), n);
        if (bytes_ == 0) beginning_ = words.substr(0, longest_beginning);
        bytes_ += n;
        sha256_update(&digest, n, block.data());
        if (kept_ >= 0) {
            if (const int error = write_whole(kept_, words); error != 0) return error;
        }
    }
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> bytes{};
    sha256_digest(&digest, bytes.size(), bytes.data());
    Text text;
    for (const std::uint8_t byte : bytes) text.hex(byte);
    sha256_ = text.view();
    return ::lseek(descriptor(), kept_ >= 0 ? 0 : begin, SEEK_SET) < 0 ? errno : 0;
}

}  // namespace ztdecode::tool
