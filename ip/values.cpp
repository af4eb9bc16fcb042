#include "ip/values.hpp"

namespace ztdecode::ip {

namespace {

constexpr auto param_names = names({{0, "firmware version"},
                                    {1, "tscip version"},
                                    {2, "dhcp ip address"},
                                    {3, "local ip address"},
                                    {4, "subnet mask"},
                                    {5, "router ip address"},
                                    {6, "tftp ip address"},
                                    {7, "cpu ip address"},
                                    {8, "default codec"},
                                    {9, "ethernet config"},
                                    {10, "mac address"},
                                    {11, "pseudo mac"},
                                    {12, "enable sending of IPv6 addresses"},
                                    {13, "CTL fingerprint"}},
                                   "???");

bool all_printable(const Item& item) {
    for (std::uint32_t k = 0; k < item.length; ++k) {
        if (item[k] < 0x21 || item[k] > 0x7E) return false;
    }
    return true;
}

}  // namespace

std::string_view ip_param_name(std::uint32_t id) noexcept { return param_names[id]; }

DottedAddress ip_dotted_text(const Item& item, std::uint32_t k) noexcept {
    return {{item[k], item[k + 1], item[k + 2], item[k + 3]}};
}

char* DottedAddress::write(char* at) const {
    return write_format(at, "{}.{}.{}.{}"_cf, bytes[0], bytes[1], bytes[2], bytes[3]);
}

Ipv6Address ip_ipv6_text(const Item& item, std::uint32_t k) noexcept {
    return {{item.u16(k), item.u16(k + 2), item.u16(k + 4), item.u16(k + 6), item.u16(k + 8),
             item.u16(k + 10), item.u16(k + 12), item.u16(k + 14)}};
}

char* Ipv6Address::write(char* at) const {
    return write_format(at, "{:04x}:{:04x}:{:04x}:{:04x}:{:04x}:{:04x}:{:04x}:{:04x}"_cf, groups[0],
                        groups[1], groups[2], groups[3], groups[4], groups[5], groups[6], groups[7]);
}

void ip_address(const Item& item, Text& out) {
    if (item.length == 4) {
        out.add(ip_dotted_text(item));
    } else {
        out.add(ip_ipv6_text(item));
    }
}

void ip_bytes_text(const Item& item, Text& out) {
    ip_blank_and_hex(item, out);
    if (!all_printable(item)) return;
    out.add(" = ");
    ip_quoted(item, out);
}

void ip_blank_and_hex(const Item& item, Text& out) {
    for (std::uint32_t k = 0; k < item.length; ++k) out.print(" {:02x}"_cf, item[k]);
}

void ip_number(const Item& item, Text& out) { out.print("{}"_cf, item[0]); }

void ip_two_byte_number(const Item& item, Text& out) { out.print("{}"_cf, item.u16()); }

void ip_first_byte_hex(const Item& item, Text& out) { out.hex(item[0]); }

void ip_quoted(const Item& item, Text& out) {
    out.put('"');
    ip_characters(item, out);
    out.put('"');
}

void ip_characters(const Item& item, Text& out) { out.copy(item, 0, item.length); }

}  // namespace ztdecode::ip
