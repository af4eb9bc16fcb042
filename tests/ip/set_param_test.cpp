#include "ip/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(ip::from_system, rows); }
void items(const std::vector<Row>& rows) { expect_items(ip::from_system, "13 0a", "set params: ", rows); }

TEST(IpSetParam, Head) {
    from_system({{"13 0a", "set params: "},
                 {"13 0a 00", "set param: tos"},
                 {"13 0a 31", "set param: ???"},
                 {"13 0a 00 00", "set params: tos"},
                 {"13 0a 17 01 04", "set params: DTMF level=6 dB"}});
}

TEST(IpSetParam, ItemsStandOnOneLine) {
    from_system({{"13 0a 03 08 68 65 6c 70 64 65 73 6b 06 01 1b 10 04 31 32 33 34 11 01 02 23 01 00",
                  "set params: snmp sys_contact: \"helpdesk\", default codec: G.722  64 kb/s, MMI password: "
                  "\"1234\", "
                  "PC port status: filter VLAN, logo led managed byt the set"},
                 {"13 0a 00 01 2e 31 02 01 02 1f 03 61 62 63", "set params: tos, ???, ssh password"}});
}

TEST(IpSetParam, NamesOnly) {
    items({{"00 01 2e", "tos"},
           {"01 02 00 64", "vlan id"},
           {"02 01 05", "priority"},
           {"1f 06 73 65 63 72 65 74", "ssh password"},
           {"25 01 01", "eee configuration"},
           {"26 01 01", "lldp configuration"},
           {"27 01 01", "fsne backup sec mode"},
           {"28 04 0a 00 00 05", "fsne backup ip address"},
           {"29 01 01", "virtual add-on"},
           {"2a 01 01", "fsne enable"},
           {"30 02 41 42", "MD5 authentication"}});
}

TEST(IpSetParam, UnknownItems) {
    for (std::size_t id = 44; id < 256; ++id) {
        if (id != 48) items({{hex_byte(id) + "01 41", "???"}, {hex_byte(id) + "00", "???"}});
    }
}

TEST(IpSetParam, QuotedItems) {
    const std::vector<Row> labels = {{"03", "snmp sys_contact: "},
                                     {"04", "snmp sys_name: "},
                                     {"05", "snmp sys_location: "},
                                     {"07", "error string net down: "},
                                     {"08", "error string cable problem: "},
                                     {"09", "error string trying to connect: "},
                                     {"0a", "error string connected: "},
                                     {"0b", "error string reset: "},
                                     {"0c", "error string duplicate IP address: "},
                                     {"0d", "SNMP mib community: "},
                                     {"2b", "set utc offset: "}};
    for (const Row& label : labels) {
        items({{label.hex + " 03 61 62 63", label.text + "\"abc\""},
               {label.hex + " 00", label.text + "\"\""},
               {label.hex + " 03 80 ff 22", label.text + "\"\x80\xff\"\""},
               {label.hex + " 03 61 00 63", label.text + "\"a"},
               {label.hex + " 02 00 61 02 00", label.text + "\", priority"},
               {label.hex + " ff " + repeated("61 ", 255), label.text + "\"" + repeated("a", 255) + "\""}});
    }
}

TEST(IpSetParam, DefaultCodec) {
    items({{"06 01 00", "default codec: G.711 A law"},
           {"06 01 01", "default codec: G.711 mu law"},
           {"06 01 0f", "default codec: G.723.1  5.3 kb/s"},
           {"06 01 10", "default codec: G.723.1  6.3 kb/s"},
           {"06 01 11", "default codec: G.729A  8 kb/s"},
           {"06 01 1b", "default codec: G.722  64 kb/s"},
           {"06 01 1c", "default codec: G.722  56 kb/s"},
           {"06 01 1d", "default codec: G.722  48 kb/s"},
           {"06 01 1e", "default codec: Opus"},
           {"06 01 02", "default codec: ???"},
           {"06 01 0e", "default codec: ???"},
           {"06 01 12", "default codec: ???"},
           {"06 01 1a", "default codec: ???"},
           {"06 01 1f", "default codec: ???"},
           {"06 01 ff", "default codec: ???"}});
}

TEST(IpSetParam, Backup) {
    items({{"0e 01 0a", "TFTP backup secure mode: 0a"},
           {"0e 01 ff", "TFTP backup secure mode: ff"},
           {"0f 04 c0 a8 00 01", "TFTP backup IP address: 192.168.0.1"},
           {"0f 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01",
            "TFTP backup IP address: 2001:0db8:0000:0000:0000:0000:0000:0001"},
           {"0f 03 0a 00 01", "TFTP backup IP address: 0a00:0100:0000:0000:0000:0000:0000:0000"},
           {"0f 00", "TFTP backup IP address: 0000:0000:0000:0000:0000:0000:0000:0000"}});
}

TEST(IpSetParam, MmiPassword) {
    items({{"10 00", "MMI password: suppressed"},
           {"10 04 31 32 33 34", "MMI password: \"1234\""},
           {"10 04 7f 80 ff 41", "MMI password: \"\x7f??A\""},
           {"10 02 61 00", "MMI password: \"a"},
           {"10 01 00 02 00", "MMI password: \", priority"}});
}

TEST(IpSetParam, SessionString) {
    items({{"15 03 61 62 63", "session string \"abc\""},
           {"15 03 80 41 ff", "session string \"?A?\""},
           {"15 00", "session string \"\""},
           {"15 03 41 00 42", "session string \"A"}});
}

TEST(IpSetParam, PcPortStatus) {
    items({{"11 01 00", "PC port status: no security"},
           {"11 01 01", "PC port status: block"},
           {"11 01 02", "PC port status: filter VLAN"},
           {"11 01 03", "PC port status: unknown param 0x03"},
           {"11 01 ff", "PC port status: unknown param 0xff"}});
}

TEST(IpSetParam, RecordAndSecurity) {
    items({{"12 01 00", "record RTP disabled"},
           {"12 01 01", "record RTP enabled"},
           {"12 01 80", "record RTP enabled"},
           {"13 01 00", "security flags:\n  zt connect from any @"},
           {"13 01 01", "security flags:\n  zt connect from well known @"},
           {"13 01 fe", "security flags:\n  zt connect from any @"},
           {"13 01 ff", "security flags:\n  zt connect from well known @"}});
}

TEST(IpSetParam, Numbers) {
    items({{"14 02 01 f4", "arp spoofing timer= 500 ms"},
           {"14 02 ff ff", "arp spoofing timer= 65535 ms"},
           {"16 01 03", "AEC stable mode=3"},
           {"16 01 ff", "AEC stable mode=255"},
           {"17 01 00", "DTMF level=10 dB"},
           {"17 01 0a", "DTMF level=0 dB"},
           {"17 01 0b", "DTMF level=-1 dB"},
           {"17 01 ff", "DTMF level=-245 dB"}});
}

TEST(IpSetParam, Switches) {
    items({{"18 01 00", "keep talking disabled"},
           {"18 01 01", "keep talking enabled"},
           {"19 01 00", "BT_RADIO disabled"},
           {"19 01 ff", "BT_RADIO enabled"},
           {"1a 01 00", "transparent reboot disabled"},
           {"1a 01 01", "transparent reboot enabled"},
           {"1d 01 00", "dialpad rotation disabled"},
           {"1d 01 02", "dialpad rotation enabled"},
           {"1e 01 00", "usb boost charging disabled"},
           {"1e 01 01", "usb boost charging enabled"},
           {"1e 01 02", "usb boost charging auto_neg"},
           {"1e 01 03", "usb boost charging enabled"},
           {"20 01 00", "disable dhcp survi: survi enabled"},
           {"20 01 01", "disable dhcp survi: survi disabled"},
           {"20 01 ff", "disable dhcp survi: survi disabled"},
           {"21 01 00", "usb device all ports disabled"},
           {"21 01 01", "usb device all ports enabled"},
           {"22 01 00", "ambiant light sensor disabled"},
           {"22 01 01", "ambiant light sensor enabled"},
           {"23 01 00", "logo led managed byt the set"},
           {"23 01 01", "logo led enabled"},
           {"23 01 02", "logo led disabled"},
           {"23 01 03", "logo led illegal value"},
           {"23 01 ff", "logo led illegal value"}});
}

TEST(IpSetParam, SkinsAndEnvironments) {
    items({{"1b 01 00", "set skin handled by terminal"},
           {"1b 01 01", "set skin classical"},
           {"1b 01 02", "set skin rainbow"},
           {"1b 01 03", "set skin green"},
           {"1b 01 04", "set skin luxury"},
           {"1b 01 05", "set skin release skin"},
           {"1b 01 06", "set skin unknown 0x06"},
           {"1b 01 09", "set skin unknown 0x09"},
           {"1b 01 ff", "set skin unknown 0xff"},
           {"24 01 00", "audio environment standard"},
           {"24 01 01", "audio environment open space"},
           {"24 01 02", "audio environment meeting room"},
           {"24 01 03", "audio environment noisy"},
           {"24 01 04", "audio environment unknown 0x04"},
           {"24 01 ff", "audio environment unknown 0xff"}});
}

TEST(IpSetParam, Language) {
    items({{"1c 02 66 72", "language id fr"},
           {"1c 02 66 00", "language id f"},
           {"1c 02 00 72 02 00", "language id , priority"},
           {"1c 00 02 00", "language id \x02, priority"}});
}

TEST(IpSetParam, EmptyValuesShowWhatStandsBehind) {
    items({{"06 00", "default codec: G.711 A law"},
           {"11 00", "PC port status: no security"},
           {"17 00", "DTMF level=10 dB"},
           {"1b 00", "set skin handled by terminal"},
           {"20 00", "disable dhcp survi: survi enabled"},
           {"17 00 01 00", "DTMF level=9 dB, vlan id"}});
}

TEST(IpSetParam, AnItemThatRunsPastTheEndIsTheLast) {
    from_system({{"13 0a 03 04 61 62", "set params: snmp sys_contact: \"ab"},
                 {"13 0a 14 02 01", "set params: arp spoofing timer= 256 ms"},
                 {"13 0a 23", "set param: logo led managed byt the set"}});
    EXPECT_EQ(in_record(ip::from_system, "13 0a 03 04 61 62", "63 64 65"),
              "set params: snmp sys_contact: \"abcd\"");
}

}  // namespace
}  // namespace ztdecode::testing
