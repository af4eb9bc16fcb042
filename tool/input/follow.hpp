#pragma once

#include <string>

#include "tool/input/source.hpp"

namespace ztdecode::tool {

// A file that grows, is truncated, or is moved away and made anew, until somebody interrupts the command
// (SIGINT or SIGTERM): the end then. While one of these lives, those signals do nothing else.
class FollowedSource final : public Source {
  public:
    // `descriptor`: of the file, already open. `lines`: it holds such, and the last one of a file that is
    // gone ends there.
    FollowedSource(std::string file, int descriptor, bool lines);
    FollowedSource(const FollowedSource&) = delete;
    FollowedSource& operator=(const FollowedSource&) = delete;
    ~FollowedSource() override;

    std::size_t read(char* to, std::size_t n) override;
    bool may_wait() const override { return true; }

  private:
    bool is_made_anew();
    bool is_truncated() const;
    bool wait();
    void watch();

    std::string file_;
    int given_;       // the descriptor that is somebody else's
    int descriptor_;  // the file as it is now
    int events_;      // inotify's
    int file_watch_ = -1;
    bool lines_;
    bool in_line_ = false;  // what was read last has no line end
};

}  // namespace ztdecode::tool
