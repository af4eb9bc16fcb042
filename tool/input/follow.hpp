#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tool/input/encodings.hpp"
#include "tool/input/source.hpp"

namespace ztdecode::tool {

// A file that grows, is truncated, or is moved away and made anew, until somebody interrupts the command
// (SIGINT or SIGTERM): the end then. While one of these lives, those signals do nothing else.
class FollowedSource final : public Source {
  public:
    // `descriptor`: of the file, already open. `lines`: it holds such, and the last one of a file that is
    // gone ends there. `output`: where what becomes of it goes; the end comes, too, when nobody reads that
    // any more.
    FollowedSource(std::string file, int descriptor, bool lines, int output);
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
    void learn(std::string_view bytes);
    void end_line();

    std::string file_;
    int given_;       // the descriptor that is somebody else's
    int descriptor_;  // the file as it is now
    int events_;      // inotify's
    int file_watch_ = -1;
    bool lines_;
    int output_;
    std::optional<Encoding> encoding_;  // as the first bytes said
    std::uint64_t bytes_ = 0;           // of the file as it is now
    bool has_newlines_ = false;         // lines may end in carriage returns elsewhere
    bool in_line_ = false;              // what was read last has no line end
    std::string line_end_;              // of a line whose rest never comes, as far as it has not been given
};

}  // namespace ztdecode::tool
