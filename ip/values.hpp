#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/tables.hpp"

// How values of items read, where several lists share it. The decoders write the value of the item that `d`
// shows, under the field of the table's row.

namespace ztdecode::ip {

// "10.0.0.5".
struct DottedAddress {
    Number address;

    std::size_t bound() const noexcept { return 15; }
    char* write(char* at) const;
    Meaning meaning() const noexcept { return {Kind::address, true, 0, address.number, address.place}; }
};
// Of four bytes from k on.
inline DottedAddress dotted_address(const Decoding& d, std::size_t k) noexcept { return {d.u32(k)}; }

// Eight groups of four digits, none left out: "2001:0db8:0000:0000:0000:0000:0000:0001".
struct Ipv6Address {
    std::array<std::uint32_t, 8> groups;
    Place place{};

    std::size_t bound() const noexcept { return 39; }
    char* write(char* at) const;
    Meaning meaning() const noexcept { return {Kind::address, true, 0, 0, place}; }
};
// Of sixteen bytes from k on.
Ipv6Address ipv6_address(const Decoding& d, std::size_t k) noexcept;

// So many bytes of the item from k on.
Place bytes_at(const Decoding& d, std::size_t k, std::uint32_t count) noexcept;

// Dotted when the value has four bytes, else taken as the sixteen of an IPv6 address.
void ip_address(Decoding& d);

// " 2e 2f" and, when all bytes are printable (a blank is not), the characters: " = \"./\"". An empty value is
// printable.
void bytes_text(Decoding& d);
// Each byte behind a blank.
void blank_and_hex(Decoding& d);

void number(Decoding& d);           // first byte, decimal
void two_byte_number(Decoding& d);  // first two bytes, decimal
void first_byte_hex(Decoding& d);
void enabled(Decoding& d);    // first byte, "disabled" when it is 0
void yes_or_no(Decoding& d);  // "yes", or "no" for 0

// The value as characters, in quotes; a zero byte ends the text, and the closing quote is lost with it.
void quoted(Decoding& d);
// The value as characters.
void characters(Decoding& d);

}  // namespace ztdecode::ip
