#include "ip/messages.hpp"
#include "ip/values.hpp"

// Set param: what the system wants an IP set to be. The items stand on one line.

namespace ztdecode::ip {

namespace {

// Unlike those of voice streams, the G.722 names have two blanks here.
constexpr auto codecs = names({{0, "G.711 A law"},
                               {1, "G.711 mu law"},
                               {15, "G.723.1  5.3 kb/s"},
                               {16, "G.723.1  6.3 kb/s"},
                               {17, "G.729A  8 kb/s"},
                               {27, "G.722  64 kb/s"},
                               {28, "G.722  56 kb/s"},
                               {29, "G.722  48 kb/s"},
                               {30, "Opus"}},
                              "???");

void codec(const Item& item, Text& out) { out.add(codecs[item[0]]); }

// In quotes, with a question mark for what is not ASCII.
void quoted_ascii(const Item& item, Text& out) {
    out.put('"');
    out.copy_as(item, 0, item.length, [](std::uint8_t c) { return c < 0x80 ? c : std::uint8_t{'?'}; });
    out.put('"');
}

void mmi_password(const Item& item, Text& out) {
    if (item.length == 0) {
        out.add("MMI password: suppressed");
    } else {
        out.add("MMI password: ");
        quoted_ascii(item, out);
    }
}

void pc_port_status(const Item& item, Text& out) {
    switch (item[0]) {
        case 0:
            out.add("PC port status: no security");
            break;
        case 1:
            out.add("PC port status: block");
            break;
        case 2:
            out.add("PC port status: filter VLAN");
            break;
        default:
            out.print("PC port status: unknown param 0x{:02x}"_cf, item[0]);
            break;
    }
}

void record_rtp(const Item& item, Text& out) {
    out.add(item[0] == 0 ? "record RTP disabled" : "record RTP enabled");
}

void connections(const Item& item, Text& out) {
    out.add((item[0] & 1) == 0 ? "  zt connect from any @" : "  zt connect from well known @");
}

void milliseconds(const Item& item, Text& out) { out.print("{} ms"_cf, item.u16()); }

constexpr int loudest_dtmf = 10;

void dtmf_level(const Item& item, Text& out) { out.print("{} dB"_cf, loudest_dtmf - item[0]); }

void disabled_or_enabled(const Item& item, Text& out) { out.add(item[0] == 0 ? "disabled" : "enabled"); }

constexpr auto skins = names({{0, "handled by terminal"},
                              {1, "classical"},
                              {2, "rainbow"},
                              {3, "green"},
                              {4, "luxury"},
                              {5, "release skin"}},
                             "");
constexpr auto environments =
    names({{0, "standard"}, {1, "open space"}, {2, "meeting room"}, {3, "noisy"}}, "");

void name_or_unknown(std::string_view name, std::uint8_t code, Text& out) {
    if (name.empty()) {
        out.print("unknown 0x{:02x}"_cf, code);
    } else {
        out.add(name);
    }
}

void skin(const Item& item, Text& out) { name_or_unknown(skins[item[0]], item[0], out); }

void environment(const Item& item, Text& out) { name_or_unknown(environments[item[0]], item[0], out); }

void language(const Item& item, Text& out) { out.copy(item.m, item.first, 2); }

constexpr auto usb_charging = names({{0, "disabled"}, {2, "auto_neg"}}, "enabled");
constexpr auto logo_led =
    names({{0, "managed byt the set"}, {1, "enabled"}, {2, "disabled"}}, "illegal value");

void usb_boost_charging(const Item& item, Text& out) { out.add(usb_charging[item[0]]); }

void led(const Item& item, Text& out) { out.add(logo_led[item[0]]); }

// The switch disables: not set, the set survives.
void dhcp_survival(const Item& item, Text& out) {
    out.add(item[0] == 0 ? "survi enabled" : "survi disabled");
}

void usb_ports(const Item& item, Text& out) {
    out.add(item[0] == 0 ? "all ports disabled" : "all ports enabled");
}

// The ssh password is never shown.
constexpr auto set_params = item_texts({{0, "tos"},
                                        {1, "vlan id"},
                                        {2, "priority"},
                                        {3, "snmp sys_contact: ", ip_quoted},
                                        {4, "snmp sys_name: ", ip_quoted},
                                        {5, "snmp sys_location: ", ip_quoted},
                                        {6, "default codec: ", codec},
                                        {7, "error string net down: ", ip_quoted},
                                        {8, "error string cable problem: ", ip_quoted},
                                        {9, "error string trying to connect: ", ip_quoted},
                                        {10, "error string connected: ", ip_quoted},
                                        {11, "error string reset: ", ip_quoted},
                                        {12, "error string duplicate IP address: ", ip_quoted},
                                        {13, "SNMP mib community: ", ip_quoted},
                                        {14, "TFTP backup secure mode: ", ip_first_byte_hex},
                                        {15, "TFTP backup IP address: ", ip_address},
                                        {16, mmi_password},
                                        {17, pc_port_status},
                                        {18, record_rtp},
                                        {19, "security flags:\n", connections},
                                        {20, "arp spoofing timer= ", milliseconds},
                                        {21, "session string ", quoted_ascii},
                                        {22, "AEC stable mode=", ip_number},
                                        {23, "DTMF level=", dtmf_level},
                                        {24, "keep talking ", disabled_or_enabled},
                                        {25, "BT_RADIO ", disabled_or_enabled},
                                        {26, "transparent reboot ", disabled_or_enabled},
                                        {27, "set skin ", skin},
                                        {28, "language id ", language},
                                        {29, "dialpad rotation ", disabled_or_enabled},
                                        {30, "usb boost charging ", usb_boost_charging},
                                        {31, "ssh password"},
                                        {32, "disable dhcp survi: ", dhcp_survival},
                                        {33, "usb device ", usb_ports},
                                        {34, "ambiant light sensor ", disabled_or_enabled},
                                        {35, "logo led ", led},
                                        {36, "audio environment ", environment},
                                        {37, "eee configuration"},
                                        {38, "lldp configuration"},
                                        {39, "fsne backup sec mode"},
                                        {40, "fsne backup ip address"},
                                        {41, "virtual add-on"},
                                        {42, "fsne enable"},
                                        {43, "set utc offset: ", ip_quoted},
                                        {48, "MD5 authentication"}});

void ip_set_param_text(const Item& item, Text& out) {
    if (!set_params.write(item, out)) out.add("???");
}

}  // namespace

void set_param(Session& /*session*/, const Message& m, Text& out) {
    out.add("set param");
    out.add(m.length() == 3 ? ": " : "s: ");
    write_items(m, 2, ", ", out, ip_set_param_text);
}

}  // namespace ztdecode::ip
