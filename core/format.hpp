#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "core/fields.hpp"
#include "core/values.hpp"

// Formats of texts: "..."_cf literals that the compiler takes apart.
//
// A value stands in braces under its field's name, with how it is shown behind a colon; without a name it is
// the field of the table's row, and "-" says that it is none:
//
//     {led}          decimal, or words as they are
//     {minor:02}     decimal, with zeros in front up to two digits
//     {key:02x}      hexadecimal, with zeros in front up to two digits; {key:x} without them; X for capitals
//     {name:<15}     words with blanks behind them up to fifteen characters
//
// "{{" and "}}" are braces.

namespace ztdecode {

namespace format_detail {

// How a value is shown.
struct Shape {
    std::uint8_t width = 0;
    std::uint8_t base = 10;
    bool capitals = false;
    bool left = false;  // words with blanks behind them
};

struct Placeholder {
    std::size_t literal_end = 0;  // of the characters that stand before it, in the characters of all literals
    Shape shape{};
    FieldName field = row_field;
};

// Named so that the compiler's complaint about calling them says what is wrong.
void a_brace_stands_alone();
void a_value_is_shown_in_no_such_way();
void a_width_is_at_most_18();

inline constexpr std::size_t longest_padding = 18;

// The size of the text where there is none. (std::string_view::find is nothing for the compiler when it looks
// for undefined behaviour.)
constexpr std::size_t find(std::string_view text, char c, std::size_t from) {
    while (from < text.size() && text[from] != c) ++from;
    return from;
}

consteval Shape shape_of(std::string_view spec) {
    Shape shape;
    std::size_t at = 0;
    if (at < spec.size() && (spec[at] == '<' || spec[at] == '0')) {
        shape.left = spec[at] == '<';
        for (++at; at < spec.size() && spec[at] >= '0' && spec[at] <= '9'; ++at) {
            shape.width = static_cast<std::uint8_t>(10 * shape.width + (spec[at] - '0'));
        }
        if (shape.width == 0) a_value_is_shown_in_no_such_way();
        if (shape.width > longest_padding) a_width_is_at_most_18();
    }
    if (at < spec.size() && !shape.left && (spec[at] == 'x' || spec[at] == 'X')) {
        shape.base = 16;
        shape.capitals = spec[at] == 'X';
        ++at;
    }
    if (at != spec.size()) a_value_is_shown_in_no_such_way();
    return shape;
}

consteval FieldName field_of(std::string_view name) {
    if (name.empty()) return row_field;
    if (name == "-") return no_field;
    return FieldName(field_named(name));
}

template <std::size_t N>
struct Literal {
    char characters[N];  // NOLINT: a string literal

    consteval Literal(const char (&text)[N]) { std::copy_n(text, N, characters); }  // NOLINT: as above
};

template <std::size_t N>
consteval std::size_t count_placeholders(const Literal<N>& format) {
    std::size_t count = 0;
    for (std::size_t i = 0; i + 1 < N; ++i) {
        if (format.characters[i] != '{') continue;
        if (format.characters[i + 1] == '{') {
            ++i;
        } else {
            ++count;
        }
    }
    return count;
}

template <std::size_t N, std::size_t Count>
struct Parsed {
    char characters[N] = {};  // NOLINT: of all literals
    std::size_t size = 0;
    std::array<Placeholder, Count> placeholders{};
};

template <std::size_t Count, std::size_t N>
consteval Parsed<N, Count> parsed(const Literal<N>& format) {
    Parsed<N, Count> result;
    const std::string_view text(format.characters, N - 1);
    std::size_t placeholder = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool brace = text[i] == '{' || text[i] == '}';
        const bool doubled = brace && i + 1 < text.size() && text[i + 1] == text[i];
        if (!brace || doubled) {
            result.characters[result.size++] = text[i];
            if (doubled) ++i;
            continue;
        }
        const std::size_t end = find(text, '}', i);
        if (text[i] == '}' || end == text.size()) a_brace_stands_alone();
        const std::string_view inside = text.substr(i + 1, end - i - 1);
        const std::size_t colon = find(inside, ':', 0);
        Placeholder& p = result.placeholders[placeholder++];
        p.literal_end = result.size;
        p.field = field_of(inside.substr(0, colon));
        p.shape = shape_of(inside.substr(std::min(colon + 1, inside.size())));
        i = end;
    }
    return result;
}

}  // namespace format_detail

template <format_detail::Literal L>
struct Format {
    static constexpr std::size_t count = format_detail::count_placeholders(L);
    static constexpr auto parsed = format_detail::parsed<count>(L);
};

template <format_detail::Literal L>
consteval Format<L> operator""_cf() {
    return {};
}

// Copies a few characters without the call that memcpy would be: a text has up to a dozen such pieces. Gives
// the end.
template <class Block>
void copy_both_ends(char* at, const char* from, std::size_t n) noexcept {
    Block first;
    Block last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + n - sizeof last, sizeof last);
    std::memcpy(at, &first, sizeof first);
    std::memcpy(at + n - sizeof last, &last, sizeof last);
}
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
    } else if (n >= 2) {
        copy_both_ends<std::uint16_t>(at, from, n);
    } else if (n == 1) {
        *at = *from;
    }
    return at + n;
}

inline constexpr char lower_case_digits[] = "0123456789abcdef";
inline constexpr char upper_case_digits[] = "0123456789ABCDEF";

namespace format_detail {

template <unsigned base, class T>
char* write_many_digits(char* at, T value, std::size_t least, const char* digits) noexcept {
    std::size_t n = 1;
    for (T rest = value / base; rest != 0; rest /= base) ++n;
    char* const end = at + std::max(n, least);
    for (char* digit = end; digit != at; value /= base) *--digit = digits[value % base];
    return end;
}

// Most numbers have one digit or two.
template <unsigned base, std::size_t least, class T>
char* write_digits(char* at, T value, const char* digits) noexcept {
    if constexpr (least <= 1) {
        if (value < base) {
            *at = digits[value];
            return at + 1;
        }
    }
    if constexpr (least <= 2) {
        if (value < base * base) {
            at[0] = digits[value / base];
            at[1] = digits[value % base];
            return at + 2;
        }
    }
    return write_many_digits<base>(at, value, least, digits);
}

template <Shape shape, std::integral T>
char* write_number(char* at, T value) noexcept {
    static_assert(!shape.left, "blanks stand behind words only");
    constexpr const char* digits = shape.capitals ? upper_case_digits : lower_case_digits;
    if constexpr (shape.base == 16 && shape.width == 2 && sizeof(T) == 1 && std::is_unsigned_v<T>) {
        at[0] = digits[value >> 4];
        at[1] = digits[value & 15];
        return at + 2;
    } else if constexpr (std::is_signed_v<T>) {
        static_assert(shape.base == 10 && shape.width == 0, "a number with a sign is shown as it is");
        auto magnitude = static_cast<std::make_unsigned_t<T>>(value);
        if (value < 0) {
            *at++ = '-';
            magnitude = static_cast<std::make_unsigned_t<T>>(0 - magnitude);
        }
        return write_digits<10, 1>(at, magnitude, digits);
    } else {
        return write_digits<shape.base, shape.width>(at, value, digits);
    }
}

template <Shape shape>
char* write_words(char* at, std::string_view text) noexcept {
    static_assert(shape.base == 10 && (shape.left || shape.width == 0), "words are shown as they are");
    char* const end = copy_characters(at, text);
    if constexpr (shape.width == 0) return end;
    return text.size() < shape.width ? std::fill_n(end, shape.width - text.size(), ' ') : end;
}

template <Shape shape, class T>
char* write_value(char* at, const T& value) {
    if constexpr (std::is_same_v<T, char>) {
        *at = value;
        return at + 1;
    } else if constexpr (std::is_same_v<T, Word>) {
        return write_words<shape>(at, value.text);
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        return write_words<shape>(at, value);
    } else if constexpr (Words<T>) {
        static_assert(shape.base == 10 && shape.width == 0, "words are shown as they are");
        return value.write(at);
    } else if constexpr (std::integral<T>) {
        return write_number<shape>(at, value);
    } else {
        return write_number<shape>(at, value.number);
    }
}

template <class T>
constexpr std::size_t bound(const T& value) noexcept {
    if constexpr (std::is_same_v<T, Word>) {
        return value.text.size() + longest_padding;
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        return std::string_view(value).size() + longest_padding;
    } else if constexpr (Words<T>) {
        return value.bound();
    } else {
        return 24;  // the longest number, and the longest padding
    }
}
static_assert(longest_padding <= 24);

// The literal that ends at `end` and begins at `begin` of the format's characters.
template <class F, std::size_t begin, std::size_t end>
char* write_literal(char* at) noexcept {
    if constexpr (begin != end) std::memcpy(at, F::parsed.characters + begin, end - begin);
    return at + (end - begin);
}

template <class F, std::size_t i>
inline constexpr std::size_t literal_begin = [] {
    if constexpr (i == 0) {
        return std::size_t{0};
    } else {
        return F::parsed.placeholders[i - 1].literal_end;
    }
}();

template <class F, std::size_t i, class T>
char* write_placeholder(char* at, char** ends, const T& value) {
    at = write_literal<F, literal_begin<F, i>, F::parsed.placeholders[i].literal_end>(at);
    ends[2 * i] = at;
    at = write_value<F::parsed.placeholders[i].shape>(at, value);
    ends[2 * i + 1] = at;
    return at;
}

template <class F, std::size_t... i, class... Args>
char* write(std::index_sequence<i...> /*of the placeholders*/, char* at, char** ends, const Args&... args) {
    ((at = write_placeholder<F, i>(at, ends, args)), ...);
    return write_literal<F, literal_begin<F, sizeof...(i)>, F::parsed.size>(at);
}

}  // namespace format_detail

// Where the values of a format stand: begin and end of each.
template <class F>
using Ends = std::array<char*, 2 * F::count>;

// The most characters that the format takes with these arguments.
template <class F, class... Args>
constexpr std::size_t format_bound(const F& /*format*/, const Args&... args) noexcept {
    return F::parsed.size + (std::size_t{0} + ... + format_detail::bound(args));
}

// Writes it where there is room for all of it. Gives the end.
template <class F, class... Args>
char* write_format(char* at, const F& /*format*/, Ends<F>& ends, const Args&... args) {
    static_assert(F::count == sizeof...(Args), "a format has as many values as arguments");
    return format_detail::write<F>(std::make_index_sequence<F::count>(), at, ends.data(), args...);
}
template <class F, class... Args>
char* write_format(char* at, const F& format, const Args&... args) {
    Ends<F> ends;
    return write_format(at, format, ends, args...);
}

template <class F, class... Args>
std::string formatted(const F& format, const Args&... args) {
    std::string text(format_bound(format, args...), '\0');
    text.resize(static_cast<std::size_t>(write_format(text.data(), format, args...) - text.data()));
    return text;
}

}  // namespace ztdecode
