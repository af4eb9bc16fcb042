#pragma once

#include <cstdint>
#include <deque>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The traffic of an office, made up but true to form: what sets, modules, hubs and bases say over a day, in
// the shares that a real office has. The same seed gives the same traffic on every machine.

namespace ztdecode::bench {

using Bytes = std::vector<std::uint8_t>;

struct Captured {
    Bytes bytes;
    std::uint32_t direction;
};

// Small and reproducible; good enough to vary texts and numbers.
class Random {
  public:
    explicit Random(std::uint64_t seed) noexcept : state_(seed) {}

    std::uint32_t below(std::uint32_t n) noexcept {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>((state_ >> 32) * n >> 32);
    }
    std::uint32_t between(std::uint32_t least, std::uint32_t most) noexcept {
        return least + below(most - least + 1);
    }
    template <class T>
    const T& one_of(const std::vector<T>& choices) noexcept {
        return choices[below(static_cast<std::uint32_t>(choices.size()))];
    }
    std::uint32_t one_of(std::initializer_list<std::uint32_t> choices) noexcept {
        return choices.begin()[below(static_cast<std::uint32_t>(choices.size()))];
    }

  private:
    std::uint64_t state_;
};

// The voice stream of a call that is going on.
struct Call {
    std::uint32_t remote_address;
};

class Office {
  public:
    // The traffic begins with a set that starts.
    explicit Office(std::uint64_t seed);

    Captured next();

    // For the makers of messages.
    Random& random() noexcept { return random_; }
    // A message that follows the one that is being made.
    void then(std::uint32_t direction, Bytes bytes) { following_.push_back({std::move(bytes), direction}); }

    // The IP set has one at a time.
    std::optional<Call> call;

  private:
    Random random_;
    std::deque<Captured> following_;
};

}  // namespace ztdecode::bench
