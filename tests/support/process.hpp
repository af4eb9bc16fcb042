#pragma once

#include <string>
#include <vector>

namespace ztdecode::testing {

struct Ended {
    int status = 0;  // exit status, or 128 + the signal that ended it
    std::string output;
    std::string error;
};

// Runs a program to its end with `input` on its standard input.
Ended run(const std::vector<std::string>& command, const std::string& input = {});

std::string contents(const std::string& file);

// A file that is there as long as the object.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& contents);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();
    const std::string& path() const noexcept { return path_; }

  private:
    std::string path_;
};

}  // namespace ztdecode::testing
