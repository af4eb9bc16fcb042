#include <string>

#include "core/phrase.hpp"
#include "decode/tables/identity.hpp"
#include "ip/items.hpp"
#include "ip/messages.hpp"
#include "ip/values.hpp"

// Set param: what the system wants an IP set to be. The items stand on one line.

namespace ztdecode::ip {

namespace {

// Unlike those of voice streams, the G.722 names have two blanks here.
constexpr auto codecs = names({{0x00, "G.711 A law"},
                               {0x01, "G.711 mu law"},
                               {0x0F, "G.723.1  5.3 kb/s"},
                               {0x10, "G.723.1  6.3 kb/s"},
                               {0x11, "G.729A  8 kb/s"},
                               {0x1B, "G.722  64 kb/s"},
                               {0x1C, "G.722  56 kb/s"},
                               {0x1D, "G.722  48 kb/s"},
                               {0x1E, "Opus"}},
                              "???");

void codec(Decoding& d) { d.value(row_field, codecs[d[0]]); }

// In quotes, with a question mark for what is not ASCII.
void quoted_ascii(Decoding& d) {
    d.add("\"");
    d.text_as(row_field, 0, d.length(), [](std::uint8_t c) { return c < 0x80 ? c : std::uint8_t{'?'}; });
    d.add("\"");
}

void mmi_password(Decoding& d) {
    if (d.length() == 0) {
        const Word suppressed{"MMI password: suppressed", 0, true, d.stated_length().place};
        add_phrase(d, row_field, suppressed, "MMI password: ");
    } else {
        d.add("MMI password: ");
        quoted_ascii(d);
    }
}

void pc_port_status(Decoding& d) {
    static constexpr auto states = names({{0, "PC port status: no security"},
                                          {1, "PC port status: block"},
                                          {2, "PC port status: filter VLAN"}},
                                         "");
    Word state = states[d[0]];
    std::string unknown;
    if (!state.known) {
        unknown = formatted("PC port status: unknown param 0x{-:02x}"_cf, d[0]);
        state.text = unknown;
    }
    add_phrase(d, row_field, state, "PC port status: ");
}

void record_rtp(Decoding& d) {
    d.value(row_field, flag(d[0] != 0, "record RTP enabled", "record RTP disabled"));
}

void connections(Decoding& d) {
    add_phrase(d, row_field,
               either((d[0] & 1) == 0, "  zt connect from any @", "  zt connect from well known @"),
               "  zt connect from ", " @");
}

void milliseconds(Decoding& d) { d.print("{} ms"_cf, d.u16(0)); }

void dtmf_level(Decoding& d) {
    constexpr int loudest = 10;
    d.print("{} dB"_cf, d[0].as(loudest - d[0].number));
}

void skin(Decoding& d) {
    static constexpr auto skins = names({{0, "handled by terminal"},
                                         {1, "classical"},
                                         {2, "rainbow"},
                                         {3, "green"},
                                         {4, "luxury"},
                                         {5, "release skin"}},
                                        "");
    d.value(row_field, NameOrCode{skins[d[0].number], d[0].number, "unknown 0x", d[0].place});
}

void environment(Decoding& d) {
    static constexpr auto environments =
        names({{0, "standard"}, {1, "open space"}, {2, "meeting room"}, {3, "noisy"}}, "");
    d.value(row_field, NameOrCode{environments[d[0].number], d[0].number, "unknown 0x", d[0].place});
}

// Two letters, whatever the length says.
void language(Decoding& d) { d.text(row_field, 0, 2); }

// Any code but these two enables it.
void usb_boost_charging(Decoding& d) {
    static constexpr auto states = names({{0, "disabled"}, {2, "auto_neg"}}, "enabled");
    Word state = states[d[0]];
    state.known = true;
    d.value(row_field, state);
}

void logo_led(Decoding& d) {
    static constexpr auto states =
        names({{0, "managed byt the set"}, {1, "enabled"}, {2, "disabled"}}, "illegal value");
    d.value(row_field, states[d[0]]);
}

// The switch disables: not set, the set survives.
void dhcp_survival(Decoding& d) { d.value(row_field, flag(d[0] == 0, "survi enabled", "survi disabled")); }

void usb_ports(Decoding& d) {
    d.value(row_field, flag(d[0] != 0, "all ports enabled", "all ports disabled"));
}

// The ssh password is never shown.
constexpr auto set_params = items({{0x00, "tos"},
                                   {0x01, "vlan id"},
                                   {0x02, "priority"},
                                   {0x03, "snmp sys_contact: ", quoted},
                                   {0x04, "snmp sys_name: ", quoted},
                                   {0x05, "snmp sys_location: ", quoted},
                                   {0x06, "default codec: ", codec},
                                   {0x07, "error string net down: ", quoted},
                                   {0x08, "error string cable problem: ", quoted},
                                   {0x09, "error string trying to connect: ", quoted},
                                   {0x0A, "error string connected: ", quoted},
                                   {0x0B, "error string reset: ", quoted},
                                   {0x0C, "error string duplicate IP address: ", quoted},
                                   {0x0D, "SNMP mib community: ", quoted},
                                   {0x0E, "TFTP backup secure mode: ", first_byte_hex},
                                   {0x0F, "TFTP backup IP address: ", ip_address},
                                   {0x10, "", "mmi_password", mmi_password},
                                   {0x11, "", "pc_port_status", pc_port_status},
                                   {0x12, "", "record_rtp", record_rtp},
                                   {0x13, "security flags:\n", "connect_from", connections},
                                   {0x14, "arp spoofing timer= ", milliseconds},
                                   {0x15, "session string ", quoted_ascii},
                                   {0x16, "AEC stable mode=", number},
                                   {0x17, "DTMF level=", dtmf_level},
                                   {0x18, "keep talking ", enabled},
                                   {0x19, "BT_RADIO ", enabled},
                                   {0x1A, "transparent reboot ", enabled},
                                   {0x1B, "set skin ", "skin", skin},
                                   {0x1C, "language id ", language},
                                   {0x1D, "dialpad rotation ", enabled},
                                   {0x1E, "usb boost charging ", usb_boost_charging},
                                   {0x1F, "ssh password"},
                                   {0x20, "disable dhcp survi: ", "dhcp_survival", dhcp_survival},
                                   {0x21, "usb device ", usb_ports},
                                   {0x22, "ambiant light sensor ", "light_sensor", enabled},
                                   {0x23, "logo led ", logo_led},
                                   {0x24, "audio environment ", environment},
                                   {0x25, "eee configuration"},
                                   {0x26, "lldp configuration"},
                                   {0x27, "fsne backup sec mode"},
                                   {0x28, "fsne backup ip address"},
                                   {0x29, "virtual add-on"},
                                   {0x2A, "fsne enable"},
                                   {0x2B, "set utc offset: ", "utc_offset", quoted},
                                   {0x30, "MD5 authentication"}},
                                  "???");

}  // namespace

void set_param(Decoding& d) {
    d.add("set param");
    d.add(d.length() == 3 ? ": " : "s: ");
    write_items(d, 2, ", ", [](Decoding& item, const Byte& id) { set_params.write(item, id); });
}

}  // namespace ztdecode::ip
