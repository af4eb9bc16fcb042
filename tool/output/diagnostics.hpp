#pragma once

#include <cstdint>
#include <string_view>

#include "tool/output/output.hpp"

namespace ztdecode::tool {

// Names a file that something is wrong with.
void complain_of_file(std::string_view name, std::string_view why, Output& out);

// What is wrong with the lines of one file.
class Diagnostics {
  public:
    // `name` is what the file is called.
    // `quiet`: only of what keeps the file from being read.
    Diagnostics(std::string_view name, Output& out, bool quiet = false) noexcept
        : name_(name), out_(out), quiet_(quiet) {}

    // Every line of it names the file and the line (of a binary file the message).
    // Columns count from 1; without one the line as a whole is meant.
    void of_line(std::uint64_t number, std::string_view why, std::size_t column = 0);
    void of_file(std::string_view why) {
        if (!quiet_) complain_of_file(name_, why, out_);
    }
    // Why the rest of it is not read, if anything was: behind that line.
    void unreadable(std::uint64_t number, std::string_view why);

    // Whether something has not gone out yet.
    bool pending() const noexcept { return out_.text.size() > 0; }
    std::size_t size() const noexcept { return out_.text.size(); }
    void flush() { out_.flush(); }

  private:
    void say_of_line(std::uint64_t number, std::string_view why, std::size_t column);

    std::string_view name_;
    Output& out_;
    bool quiet_;
};

}  // namespace ztdecode::tool
