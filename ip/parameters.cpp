#include "ip/parameters.hpp"

#include "decode/tables/identity.hpp"
#include "ip/values.hpp"

namespace ztdecode::ip {

namespace {

void bad_length(Decoding& d) { d.print(" bad length {length}"_cf, d.stated_length()); }

// Two bytes whatever the length says.
void firmware_version(Decoding& d) { d.print(" soft={}"_cf, version_at(d, 0)); }

void local_address(Decoding& d) {
    switch (d.length()) {
        case 4:
            d.print(": IPv4 {}"_cf, dotted_address(d, 0));
            break;
        case 16:
            d.print(": IPv6 {}"_cf, ipv6_address(d, 0));
            break;
        case 20:
            d.print(": dual IPv4+IPv6 {} + {}"_cf, dotted_address(d, 0), ipv6_address(d, 4));
            break;
        default:
            bad_length(d);
            break;
    }
}

void subnet_mask(Decoding& d) {
    switch (d.length()) {
        case 1:
            d.print(": IPv6 prefix length= {ipv6_prefix_length} bits"_cf, d[0]);
            break;
        case 4:
            d.print(": IPv4 {}"_cf, dotted_address(d, 0));
            break;
        case 5:
            d.print(": dual IPv4 {} + IPv6 prefix length= {ipv6_prefix_length} bits"_cf, dotted_address(d, 0),
                    d[4]);
            break;
        default:
            bad_length(d);
            break;
    }
}

void server_address(Decoding& d) {
    switch (d.length()) {
        case 4:
            d.print(": IPv4 {}"_cf, dotted_address(d, 0));
            break;
        case 16:
            d.print(": IPv6 {}"_cf, ipv6_address(d, 0));
            break;
        default:
            bad_length(d);
            break;
    }
}

// The addresses of the DHCP server and the router show their bytes like anything else.
constexpr auto parameters =
    items({{0x00, "firmware version", firmware_version},
           {0x01, "tscip version", blank_and_hex},
           {0x02, "dhcp ip address", blank_and_hex},
           {0x03, "local ip address", local_address},
           {0x04, "subnet mask", subnet_mask},
           {0x05, "router ip address", blank_and_hex},
           {0x06, "tftp ip address", server_address},
           {0x07, "cpu ip address", server_address},
           {0x08, "default codec", blank_and_hex},
           {0x09, "ethernet config", blank_and_hex},
           {0x0A, "mac address", blank_and_hex},
           {0x0B, "pseudo mac", blank_and_hex},
           {0x0C, "enable sending of IPv6 addresses", "send_ipv6_addresses", blank_and_hex},
           {0x0D, "CTL fingerprint", blank_and_hex}},
          "???");

}  // namespace

Word parameter_name(const Number& id) noexcept { return parameters.label(id); }

void write_parameter(Decoding& d, const Number& id) {
    if (parameters.write(d, id)) return;
    const Decoding::Scope unknown(d);
    d.on(id);
    d.hex("unknown_item_bytes", 0, d.length(), Decoding::Before::blank);
}

}  // namespace ztdecode::ip
