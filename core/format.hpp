#pragma once

#include <fmt/compile.h>

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

// Formats of texts: "..."_cf literals that the compiler takes apart, with integers and strings for arguments.
// {fmt} does the work, but for what nearly every text has: strings, and numbers of messages.

namespace ztdecode {

using namespace fmt::literals;

struct Characters {
    std::string_view text;
};
template <class T>
struct Number {
    T value;
};

// What writes itself into a format: at most `bound()` characters from `at` on; `write` gives the end.
template <class T>
concept Words = requires(const T& words, char* at) {
    { words.bound() } -> std::same_as<std::size_t>;
    { words.write(at) } -> std::same_as<char*>;
};

// At least one block of characters, two at the most: from both ends, which may overlap.
template <class Block>
void copy_both_ends(char* at, const char* from, std::size_t n) noexcept {
    Block first;
    Block last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + n - sizeof last, sizeof last);
    std::memcpy(at, &first, sizeof first);
    std::memcpy(at + n - sizeof last, &last, sizeof last);
}

// Copies a few characters without the call that memcpy would be: a text has up to a dozen such pieces. Gives
// the end.
inline char* copy_characters(char* at, std::string_view text) noexcept {
    const char* const from = text.data();
    const std::size_t n = text.size();
    if (n > 32) {
        std::memcpy(at, from, n);
    } else if (n >= 16) {
        copy_both_ends<std::array<std::uint64_t, 2>>(at, from, n);
    } else if (n >= 8) {
        copy_both_ends<std::uint64_t>(at, from, n);
    } else if (n >= 4) {
        copy_both_ends<std::uint32_t>(at, from, n);
    } else {
        for (std::size_t k = 0; k < n; ++k) at[k] = from[k];
    }
    return at + n;
}

inline constexpr char lower_case_digits[] = "0123456789abcdef";
inline constexpr char upper_case_digits[] = "0123456789ABCDEF";

}  // namespace ztdecode

// The characters as they stand, with blanks behind them up to the width of "{:<15}". {fmt} itself would count
// columns of a terminal, which takes longer than all the rest.
template <>
struct fmt::formatter<ztdecode::Characters> {
    std::size_t width = 0;

    constexpr auto parse(fmt::format_parse_context& spec) {
        auto at = spec.begin();
        if (at == spec.end() || *at != '<') return at;
        for (++at; *at >= '0' && *at <= '9'; ++at) width = 10 * width + static_cast<std::size_t>(*at - '0');
        return at;
    }

    template <class Context>
    auto format(const ztdecode::Characters& characters, Context& context) const {
        const std::string_view text = characters.text;
        char* end = ztdecode::copy_characters(context.out(), text);
        return width > text.size() ? std::fill_n(end, width - text.size(), ' ') : end;
    }
};

template <ztdecode::Words T>
struct fmt::formatter<T> {
    constexpr auto parse(fmt::format_parse_context& spec) { return spec.begin(); }

    template <class Context>
    auto format(const T& words, Context& context) const {
        return words.write(context.out());
    }
};

// Numbers without a sign as "{}", "{:x}" and "{:X}", with zeros in front of them up to N digits as in
// "{:0Nx}". No text needs another way, and none compiles.
template <std::unsigned_integral T>
struct fmt::formatter<ztdecode::Number<T>> {
    unsigned least = 1;                 // digits
    const char* hexadecimal = nullptr;  // the digits; null: decimal

    constexpr auto parse(fmt::format_parse_context& spec) {
        auto at = spec.begin();
        if (at != spec.end() && *at == '0' && at[1] >= '1' && at[1] <= '9') {
            least = static_cast<unsigned>(at[1] - '0');
            at += 2;
        }
        if (at != spec.end() && (*at == 'x' || *at == 'X')) {
            hexadecimal = *at == 'x' ? ztdecode::lower_case_digits : ztdecode::upper_case_digits;
            ++at;
        }
        if (at != spec.end() && *at != '}') spec.on_error("a number is shown in another way");
        return at;
    }

    template <class Context>
    auto format(const ztdecode::Number<T>& number, Context& context) const {
        char* const at = context.out();
        if (hexadecimal != nullptr && least == 2 && sizeof(T) == 1) {
            at[0] = hexadecimal[number.value >> 4];
            at[1] = hexadecimal[number.value & 15];
            return at + 2;
        }
        return hexadecimal != nullptr ? write<16>(at, number.value, hexadecimal)
                                      : write<10>(at, number.value, ztdecode::lower_case_digits);
    }

  private:
    template <unsigned base>
    char* write(char* at, T value, const char* digits) const {
        unsigned n = 1;
        for (T rest = value / base; rest != 0; rest /= base) ++n;
        char* const end = at + std::max(n, least);
        for (char* digit = end; digit != at; value /= base) *--digit = digits[value % base];
        return end;
    }
};

namespace ztdecode {

namespace format_detail {

template <class T>
inline constexpr bool is_string = std::is_convertible_v<const T&, std::string_view>;

// The longest padding in use is 18.
template <class T>
constexpr std::size_t bound(const T& arg) noexcept {
    if constexpr (is_string<T>) {
        return std::string_view(arg).size() + 18;
    } else if constexpr (Words<T>) {
        return arg.bound();
    } else {
        static_assert(std::is_integral_v<T>, "a text has integers and strings for arguments");
        return 24;
    }
}

template <class T>
constexpr decltype(auto) argument(const T& arg) noexcept {
    if constexpr (is_string<T>) {
        return Characters{arg};
    } else if constexpr (std::unsigned_integral<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char>) {
        return Number<T>{arg};
    } else {
        return (arg);
    }
}

}  // namespace format_detail

// The most characters that the format takes with these arguments: replacement fields make the literal only
// shorter.
template <class Format, class... Args>
constexpr std::size_t format_bound(const Format& /*format*/, const Args&... args) noexcept {
    return static_cast<fmt::basic_string_view<char>>(Format()).size() +
           (std::size_t{0} + ... + format_detail::bound(args));
}

// Writes it where there is room for all of it. Gives the end.
template <class Format, class... Args>
char* write_format(char* at, const Format& format, const Args&... args) {
    return fmt::format_to(at, format, format_detail::argument(args)...);
}

}  // namespace ztdecode
