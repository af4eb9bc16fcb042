#include "decode/tables/identity.hpp"

#include <array>

#include "core/tables.hpp"

namespace ztdecode {

namespace {

constexpr auto terminals = names({{0, "set-00"},       {1, "set-01"},  {2, "set-02"},  {3, "set-03"},
                                  {4, "set-04"},       {5, "set-05"},  {6, "HE"},      {7, "set-07"},
                                  {8, "undetermined"}, {9, "set-09"},  {10, "set-10"}, {11, "video add-on"},
                                  {12, "set-12"},      {13, "set-13"}, {14, "set-14"}, {32, "set-32"},
                                  {33, "set-33"},      {34, "set-34"}, {35, "set-35"}, {36, "set-36"},
                                  {37, "set-37"},      {48, "set-48"}, {49, "set-49"}, {50, "set-50"},
                                  {51, "set-51"},      {52, "set-52"}, {53, "set-53"}, {54, "set-54"}},
                                 "autre");

constexpr auto cadences = names({{0, "cadence standard"},
                                 {1, "double burst"},
                                 {2, "triple burst"},
                                 {3, "continue"},
                                 {4, "priority attendant"},
                                 {5, "regular attendant"},
                                 {6, "cadence programmable 6"},
                                 {7, "cadence programmable 7"}},
                                "cadence ???");

// No name: the code itself is shown.
constexpr auto errors = names({{1, "bad ressource ID"},
                               {2, "bad value"},
                               {3, "bad attribut"},
                               {4, "memory overflow"},
                               {5, "bad lenth"},
                               {6, "not accepted"}},
                              "");
constexpr auto designs = names({{0, "alpha"}, {1, "reserved"}, {2, "beta"}, {3, "not used"}}, "");
constexpr auto warnings = names({{16, "clip"}, {32, "alignement"}, {64, "unmap"}}, "");

}  // namespace

Word terminal_type(const Number& code) noexcept { return terminals[code]; }

Word terminal_design(const Number& code) noexcept { return designs[code & 3]; }

Word ring_cadence(const Number& code) noexcept { return cadences[code]; }

// The first number is hexadecimal, the others are decimal; a minor number above 153 takes three places.
char* Version::write(char* at) const {
    const auto v = static_cast<std::int32_t>(minor + 256 * major);
    if (v > 10000) {
        const auto number = static_cast<std::uint32_t>(v);
        return write_format(at, "{-:x}.{-:02}.{-:02}"_cf, number / 10000, number % 10000 / 100, number % 100);
    }
    if (minor <= 153) return write_format(at, "{-:x}.{-:02}"_cf, major, minor);
    if (static_cast<std::int32_t>(minor) < 0) return write_format(at, "{-:x}.-{-:03}"_cf, major, 0U - minor);
    return write_format(at, "{-:x}.{-:03}"_cf, major, minor);
}

char* NameOrCode::write(char* at) const {
    return name.empty() ? write_format(at, "{-}{-:02x}"_cf, before, code) : copy_characters(at, name);
}

NameOrCode error(const Number& code) noexcept { return {errors[code.number], code.number, {}, code.place}; }

NameOrCode warning(const Number& code) noexcept {
    return {warnings[code.number], code.number, {}, code.place};
}

void self_test(Decoding& d, const Number& bits) {
    if (bits.number == 32) {
        d.value("self_test", Word{", self OK", 32, true, bits.place});
        return;
    }
    constexpr std::array<std::string_view, 5> parts = {" disp BAD", " rom BAD", " cpu BAD", " ram BAD",
                                                       " icon BAD"};
    for (unsigned n = 0; n < parts.size(); ++n) {
        if (bits.bit(n).holds) d.value("self_test", Word{parts[n], 1U << n, true, bits.place});
    }
}

}  // namespace ztdecode
