#pragma once

#include <cstdint>
#include <string_view>

#include "core/decoding.hpp"

// Names that several links share: terminals, cadences, versions, errors and warnings.

namespace ztdecode {

// "1.05"
struct Version {
    std::uint32_t major;
    std::uint32_t minor;
    Place place{};

    std::size_t bound() const noexcept { return 32; }
    char* write(char* at) const;
    Meaning meaning() const noexcept {
        return {Kind::version, true, 0, 256 * std::int64_t{major} + minor, place};
    }
};
// Of two bytes from k on.
inline Version version_at(const Decoding& d, std::size_t k) noexcept {
    const Number number = d.u16(k);
    return {number.number >> 8, number.number & 0xFF, number.place};
}

// The name; a code that has none as hexadecimal digits, with `before` in front of them.
struct NameOrCode {
    std::string_view name;
    std::uint32_t code;
    std::string_view before{};
    Place place{};

    std::size_t bound() const noexcept { return name.size() + before.size() + 8; }
    char* write(char* at) const;
    Meaning meaning() const noexcept { return {Kind::word, !name.empty(), 0, code, place}; }
};

Word terminal_type(const Number& code) noexcept;
Word terminal_design(const Number& code) noexcept;
Word ring_cadence(const Number& code) noexcept;
NameOrCode error(const Number& code) noexcept;
NameOrCode warning(const Number& code) noexcept;
void self_test(Decoding& d, const Number& bits);

}  // namespace ztdecode
