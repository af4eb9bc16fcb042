#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ztdecode::tool {

// A file that is read twice: once for what tells its content from any other, and once for the trace in it.
// What comes through a pipe is kept in a temporary file for that.
class Content {
  public:
    // "-" is standard input.
    explicit Content(const std::string& file);
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;
    ~Content();

    // 0, or the errno that ended it; then there is nothing else to ask for.
    int error() const noexcept { return error_; }
    // Stands where the trace begins.
    int descriptor() const noexcept { return kept_ >= 0 ? kept_ : opened_; }
    std::uint64_t bytes() const noexcept { return bytes_; }
    // As sha256sum shows it.
    const std::string& sha256() const noexcept { return sha256_; }
    bool begins_with(std::string_view words) const noexcept { return beginning_.starts_with(words); }

  private:
    int read();

    int opened_ = -1;
    int kept_ = -1;
    int error_ = 0;
    std::uint64_t bytes_ = 0;
    std::string sha256_;
    std::string beginning_;
};

}  // namespace ztdecode::tool
