#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

// What decoders read: numbers and words that know which bytes they come from. Nobody pays for that knowledge
// but who asks for it.

namespace ztdecode {

// Bytes first ... first+count-1 of the message that is being decoded; none when count is 0.
struct Place {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

enum class Kind : std::uint8_t { number, word, address, text, version, flag, bytes };

// What there is to know of a value that stands in a text.
struct Meaning {
    Kind kind = Kind::number;
    bool known = true;        // whether the table of a word has a row for its code
    std::uint8_t tenths = 0;  // the number counts in tenths
    std::int64_t number = 0;  // the value of a number or flag, the code of a word
    Place place{};
};

// A condition on a byte. What it decides is written by `Decoding::on`, `either` and the like, so that it is
// known which byte decided.
struct Condition {
    bool holds;
    std::uint32_t number;
    Place place;

    constexpr Condition operator!() const noexcept { return {!holds, number, place}; }
};

template <std::integral T>
struct Value {
    T number;
    Place place{};

    using Wide = std::conditional_t<std::is_signed_v<T>, std::int32_t, std::uint32_t>;

    constexpr Condition operator==(int n) const noexcept { return is(number == static_cast<T>(n)); }
    constexpr Condition operator!=(int n) const noexcept { return is(number != static_cast<T>(n)); }
    constexpr Condition operator<(int n) const noexcept { return is(number < static_cast<T>(n)); }
    constexpr Condition operator>(int n) const noexcept { return is(number > static_cast<T>(n)); }
    constexpr Condition operator<=(int n) const noexcept { return is(number <= static_cast<T>(n)); }
    constexpr Condition operator>=(int n) const noexcept { return is(number >= static_cast<T>(n)); }

    constexpr Value operator&(unsigned mask) const noexcept { return {static_cast<T>(number & mask), place}; }
    constexpr Value operator|(unsigned bits) const noexcept { return {static_cast<T>(number | bits), place}; }
    constexpr Value operator>>(unsigned n) const noexcept { return {static_cast<T>(number >> n), place}; }
    constexpr Value<Wide> operator*(unsigned n) const noexcept {
        return {static_cast<Wide>(number * n), place};
    }
    constexpr Condition bit(unsigned n) const noexcept { return is((number >> n & 1) != 0); }

    constexpr operator Value<std::uint32_t>() const noexcept  // NOLINT: every number is one
        requires(std::is_unsigned_v<T> && !std::is_same_v<T, std::uint32_t>) {
        return {number, place};
    }

    // What somebody made of it.
    template <std::integral U>
    constexpr Value<U> as(U made) const noexcept {
        return {made, place};
    }

  private:
    constexpr Condition is(bool holds) const noexcept {
        return {holds, static_cast<std::uint32_t>(number), place};
    }
};

using Byte = Value<std::uint8_t>;
using Number = Value<std::uint32_t>;

// A word that stands for a code.
struct Word {
    std::string_view text;
    std::uint32_t code = 0;
    bool known = true;
    Place place{};
    Kind kind = Kind::word;
};

// One word or another.
constexpr Word either(const Condition& condition, std::string_view yes, std::string_view no) noexcept {
    return {condition.holds ? yes : no, condition.number, true, condition.place};
}
// The same for something that is the case or is not: its value is true when the condition holds.
constexpr Word flag(const Condition& condition, std::string_view yes, std::string_view no) noexcept {
    return {condition.holds ? yes : no, condition.holds ? 1U : 0U, true, condition.place, Kind::flag};
}

// "%.1f" of half-decibel steps: a signed byte, so 0xF3 is "-6.5".
struct HalfDecibels {
    Byte steps;

    std::size_t bound() const noexcept { return 5; }
    char* write(char* at) const noexcept;
    Meaning meaning() const noexcept {
        return {Kind::number, true, 1, std::int64_t{5} * static_cast<std::int8_t>(steps.number), steps.place};
    }
};
inline HalfDecibels half_decibels(Byte steps) noexcept { return {steps}; }

// What writes itself into a format: at most `bound()` characters from `at` on; `write` gives the end. It says
// what it means.
template <class T>
concept Words = requires(const T& words, char* at) {
    { words.bound() } -> std::same_as<std::size_t>;
    { words.write(at) } -> std::same_as<char*>;
    { words.meaning() } -> std::same_as<Meaning>;
};

template <std::integral T>
constexpr Meaning meaning_of(const Value<T>& value) noexcept {
    return {Kind::number, true, 0, static_cast<std::int64_t>(value.number), value.place};
}
constexpr Meaning meaning_of(const Word& word) noexcept {
    return {word.kind, word.known, 0, word.code, word.place};
}
template <Words T>
Meaning meaning_of(const T& words) noexcept {
    return words.meaning();
}
// What comes from no byte: a length, a count, what an earlier message said.
template <std::integral T>
constexpr Meaning meaning_of(T number) noexcept {
    return {Kind::number, true, 0, static_cast<std::int64_t>(number), {}};
}
constexpr Meaning meaning_of(std::string_view /*text*/) noexcept { return {Kind::text, true, 0, 0, {}}; }

}  // namespace ztdecode
