#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include "core/text.hpp"
#include "tool/redact/kinds.hpp"

namespace ztdecode::tool {

// What was replaced, by kind and message: how often, never what.
class Tally {
  public:
    void count(Hidden kind, std::string_view link, std::string_view message, std::uint64_t bytes);
    // Of a line as a whole.
    void count(Hidden kind, std::uint64_t characters) { count(kind, {}, {}, characters); }
    void line() noexcept { ++lines_; }
    void message() noexcept { ++messages_; }
    // A message says something else besides what was replaced; a line had to be blanked with its messages.
    void changed() noexcept { ++changed_; }
    void lost() noexcept { ++lost_; }
    bool whole() const noexcept { return changed_ == 0 && lost_ == 0; }

    void write(Text& out) const;

  private:
    struct Count {
        std::uint64_t times = 0;
        std::uint64_t bytes = 0;
    };
    std::map<std::tuple<Hidden, std::string, std::string>, Count> counts_;
    std::uint64_t lines_ = 0;
    std::uint64_t messages_ = 0;
    std::uint64_t changed_ = 0;
    std::uint64_t lost_ = 0;
};

}  // namespace ztdecode::tool
