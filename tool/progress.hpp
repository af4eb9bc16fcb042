#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

#include "core/text.hpp"

namespace ztdecode::tool {

// A line on standard error that says how far a long file has come. Silent for input whose length nobody
// knows.
class Progress {
  public:
    Progress(std::string_view name, int input_descriptor, bool wanted);
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

    Text name_;
    std::uint64_t total_ = 0;
    std::uint64_t seen_ = 0;
    bool shown_ = false;
    std::chrono::steady_clock::time_point next_;
};

}  // namespace ztdecode::tool
