#include "ip/values.hpp"

namespace ztdecode::ip {

namespace {

bool all_printable(const Decoding& d) {
    for (std::uint32_t k = 0; k < d.length(); ++k) {
        const std::uint8_t c = d[k].number;
        if (c < 0x21 || c > 0x7E) return false;
    }
    return true;
}

}  // namespace

char* DottedAddress::write(char* at) const {
    return write_format(at, "{-}.{-}.{-}.{-}"_cf, address.number >> 24, address.number >> 16 & 0xFF,
                        address.number >> 8 & 0xFF, address.number & 0xFF);
}

Place bytes_at(const Decoding& d, std::size_t k, std::uint32_t count) noexcept {
    return {d[k].place.first, count};
}

Ipv6Address ipv6_address(const Decoding& d, std::size_t k) noexcept {
    Ipv6Address address{{}, bytes_at(d, k, 16)};
    for (std::uint32_t& group : address.groups) {
        group = d.u16(k).number;
        k += 2;
    }
    return address;
}

char* Ipv6Address::write(char* at) const {
    return write_format(at, "{-:04x}:{-:04x}:{-:04x}:{-:04x}:{-:04x}:{-:04x}:{-:04x}:{-:04x}"_cf, groups[0],
                        groups[1], groups[2], groups[3], groups[4], groups[5], groups[6], groups[7]);
}

void ip_address(Decoding& d) {
    if (d.length() == 4) {
        d.value(row_field, dotted_address(d, 0));
    } else {
        d.value(row_field, ipv6_address(d, 0));
    }
}

void bytes_text(Decoding& d) {
    blank_and_hex(d);
    if (!d.on(Condition{all_printable(d), 0, bytes_at(d, 0, d.length())})) return;
    d.add(" = \"");
    d.text("item_text", 0, d.length());
    d.add("\"");
}

void blank_and_hex(Decoding& d) { d.hex(row_field, 0, d.length(), Decoding::Before::blank); }

void number(Decoding& d) { d.value(row_field, d[0]); }

void two_byte_number(Decoding& d) { d.value(row_field, d.u16(0)); }

void first_byte_hex(Decoding& d) { d.print("{:02x}"_cf, d[0]); }

void enabled(Decoding& d) { d.value(row_field, flag(d[0] != 0, "enabled", "disabled")); }

void yes_or_no(Decoding& d) { d.value(row_field, flag(d[0] != 0, "yes", "no")); }

void quoted(Decoding& d) {
    d.add("\"");
    characters(d);
    d.add("\"");
}

void characters(Decoding& d) { d.text(row_field, 0, d.length()); }

}  // namespace ztdecode::ip
