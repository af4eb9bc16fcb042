#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace ztdecode::tool {

// A line on standard error that says how far a long file has come. Silent unless standard error is a terminal
// and the output is not, and for input whose length nobody knows.
class Progress {
  public:
    Progress(std::string name, int input_descriptor, bool wanted);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    void at(std::uint64_t bytes_read) {
        if (total_ != 0) show(bytes_read);
    }
    // Takes the line away, before anything else is written to the terminal.
    void hide();

  private:
    void show(std::uint64_t bytes_read);

    std::string name_;
    std::uint64_t total_ = 0;
    std::uint64_t seen_ = 0;
    bool shown_ = false;
    std::chrono::steady_clock::time_point next_;
};

}  // namespace ztdecode::tool
