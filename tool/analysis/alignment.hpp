#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace ztdecode::tool {

// What of two sequences belongs together, in the order of both.
struct Step {
    static constexpr std::uint32_t nothing = 0xFFFFFFFF;

    std::uint32_t a = nothing;  // index in the one
    std::uint32_t b = nothing;  // ... and in the other
    bool same = false;

    bool both() const noexcept { return a != nothing && b != nothing; }
};

// The same numbers are the same things. Every index of both is in one step. Where there is little to tell or
// the numbers are rare, as few as can be are left alone; long stretches that are all repetitions are compared
// piece by piece, so that time grows with the length and not with its square.
std::vector<Step> align(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b);

// The nearest place where both go on the same way for so many things: that with the least in front of it.
// Without a and b where there is none.
Step meeting(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b, std::size_t run);

// How much alike two things are that are not the same; 0: not at all.
using Likeness = std::function<std::uint32_t(std::uint32_t a, std::uint32_t b)>;

// Brings together what is left alone between two things that are the same and is alike.
void bring_together(std::vector<Step>& steps, const Likeness& likeness);

}  // namespace ztdecode::tool
