#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core/fields.hpp"

namespace ztdecode::tool {

// What is hidden in a trace that leaves the house, by what it tells.
enum class Hidden : std::uint8_t {
    number,            // dialled or calling
    person,            // names, and what displays show
    address,           // of the network
    hardware_address,  // and serial numbers
    secret,            // passwords and keys
    unknown,           // of a message that no table knows, all but its code
    unread,            // bytes of any other message that its text does not speak of
    left_over,         // words behind a message that its length does not count
    refused,           // a trace line that cannot be decoded, or its rest
    line,              // a line that is no trace line
    comment,
    prefix,  // what logs write in front of a trace line, but for the time; columns with letters in them
};
inline constexpr std::size_t hidden_kinds = 12;

std::string_view name_of(Hidden kind) noexcept;
std::optional<Hidden> kind_of(Sensitivity sensitivity) noexcept;

// The kinds that stay as they are.
class Kept {
  public:
    bool operator[](Hidden kind) const noexcept { return kept_[static_cast<std::size_t>(kind)]; }
    // False when there is no such kind, or it is never kept; `why` says which.
    bool keep(std::string_view name, std::string& why);

    // Words of a prefix that whoever redacts has written himself: letters and digits of the pattern that
    // finds it. They stay, or it would not be found any more.
    void keep_words_of(std::string_view pattern);
    bool keeps(std::string_view word) const { return words_.contains(word); }

  private:
    std::set<std::string, std::less<>> words_;
    std::array<bool, hidden_kinds> kept_{};
};

}  // namespace ztdecode::tool
