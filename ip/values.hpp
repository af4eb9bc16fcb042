#pragma once

#include "core/going_away.hpp"
#include "ip/items.hpp"

// How values of items read, where several lists share it.

namespace ztdecode::ip {

// Name of a parameter that the system asks for and the set answers.
std::string_view ip_param_name(std::uint32_t id) noexcept;

// "10.0.0.5".
struct DottedAddress {
    std::array<std::uint8_t, 4> bytes;

    std::size_t bound() const noexcept { return 15; }
    char* write(char* at) const;
};
// Of the value's bytes from k on.
DottedAddress ip_dotted_text(const Item& item, std::uint32_t k = 0) noexcept;

// Eight groups of four digits, none left out: "2001:0db8:0000:0000:0000:0000:0000:0001".
struct Ipv6Address {
    std::array<std::uint32_t, 8> groups;

    std::size_t bound() const noexcept { return 39; }
    char* write(char* at) const;
};
// Of the value's bytes from k on.
Ipv6Address ip_ipv6_text(const Item& item, std::uint32_t k = 0) noexcept;

// Dotted when the value has four bytes, else taken as the sixteen of an IPv6 address.
void ip_address(const Item& item, Text& out);

// " 2e 2f" and, when all bytes are printable (a blank is not), the characters: " = \"./\"". An empty value is
// printable.
void ip_bytes_text(const Item& item, Text& out);
// Each byte behind a blank.
void ip_blank_and_hex(const Item& item, Text& out);

void ip_number(const Item& item, Text& out);           // first byte, decimal
void ip_two_byte_number(const Item& item, Text& out);  // first two bytes, decimal
void ip_first_byte_hex(const Item& item, Text& out);

// The value as characters, in quotes; a zero byte ends the text, and the closing quote is lost with it.
void ip_quoted(const Item& item, Text& out);
// The value as characters.
void ip_characters(const Item& item, Text& out);

}  // namespace ztdecode::ip
