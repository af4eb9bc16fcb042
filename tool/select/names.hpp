#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ztdecode::tool {

// What links and messages are called, sorted. The catalogue knows them as well, but takes as long to be made
// as a million messages to be decoded; a test holds the two equal.
std::span<const std::string_view> link_names() noexcept;
std::span<const std::string_view> message_names() noexcept;

// " (did you mean link?)": the nearest of the names, or nothing where none is near.
std::string did_you_mean(std::string_view word, std::span<const std::string_view> names);

}  // namespace ztdecode::tool
