#include "ip/rows.hpp"

namespace ztdecode::testing {
namespace {

void to_system(const std::vector<Row>& rows) { expect_rows(ip::to_system, rows); }
void param_items(const std::vector<Row>& items) {
    expect_items(ip::to_system, "13 02", "param response(s):\n\t... ", items);
}

TEST(IpToSystem, TypesBelow32HaveADesign) {
    to_system({{"13 00 00 00", "init, set-00 alpha"},
               {"13 00 02 01", "init, set-02 reserved"},
               {"13 00 06 02", "init, HE beta"},
               {"13 00 0b 03", "init, video add-on not used"},
               {"13 00 0e 06", "init, set-14 beta"},
               {"13 00 0f ff", "init, autre not used"},
               {"13 00 1f 01", "init, autre reserved"},
               {"13 00 20 01", "init, set-32"},
               {"13 00 25 02", "init, set-37"},
               {"13 00 26", "init, autre"},
               {"13 00 36 03", "init, set-54"},
               {"13 00 ff 00", "init, autre"},
               {"13 00 08", "init, undetermined alpha"},
               {"13 00", "init, set-00 alpha"},
               {"13", "init, set-00 alpha"}});
}

TEST(IpToSystem, TypeByteIsNotRead) {
    to_system({{"93 00 01 02", "init, set-01 beta"}, {"00 01 00", "incident: dhcp lease renewal failed"}});
}

TEST(IpToSystem, Incidents) {
    to_system({{"13 01 00", "incident: dhcp lease renewal failed"},
               {"13 01 01", "incident: lanpbx file corrupted"},
               {"13 01 02", "incident: unknown"},
               {"13 01 ff", "incident: unknown"},
               {"13 01", "incident: dhcp lease renewal failed"}});
}

TEST(IpToSystem, EveryOtherOpcodeIsUnknown) {
    for (std::size_t opcode = 4; opcode < 255; ++opcode) {
        to_system({{"13 " + hex_byte(opcode) + "01 02 03", "unknown message"}});
    }
}

TEST(IpToSystem, EmptyParamResponse) { to_system({{"13 02", "param response(s):\n\t... "}}); }

TEST(IpToSystem, ParamNames) {
    param_items({{"00 02 01 17", "firmware version soft=1.23"},
                 {"01 02 05 10", "tscip version 05 10"},
                 {"02 04 0a 00 00 05", "dhcp ip address 0a 00 00 05"},
                 {"05 04 0a 00 00 01", "router ip address 0a 00 00 01"},
                 {"08 01 11", "default codec 11"},
                 {"09 01 00", "ethernet config 00"},
                 {"0a 06 00 80 9f 01 02 03", "mac address 00 80 9f 01 02 03"},
                 {"0b 06 00 80 9f 01 02 04", "pseudo mac 00 80 9f 01 02 04"},
                 {"0c 01 01", "enable sending of IPv6 addresses 01"},
                 {"0d 03 fe dc ba", "CTL fingerprint fe dc ba"},
                 {"0e 01 41", "??? 41"},
                 {"ff 02 00 ff", "??? 00 ff"}});
}

TEST(IpToSystem, ParamsWithoutAValueShowTheirNames) {
    param_items({{"01 00", "tscip version"},
                 {"02 00", "dhcp ip address"},
                 {"05 00", "router ip address"},
                 {"08 00", "default codec"},
                 {"09 00", "ethernet config"},
                 {"0a 00", "mac address"},
                 {"0b 00", "pseudo mac"},
                 {"0c 00", "enable sending of IPv6 addresses"},
                 {"0d 00", "CTL fingerprint"},
                 {"0e 00", "???"}});
}

TEST(IpToSystem, FirmwareVersionDoesNotLookAtItsLength) {
    // The second byte of the version is then the next item's id.
    param_items({{"00 01 01 17", "firmware version soft=1.23\n\t... ???"},
                 {"00 01 01 04", "firmware version soft=1.04\n\t... subnet mask bad length 0"},
                 {"00 00", "firmware version soft=0.00"},
                 {"00 02 02 c8", "firmware version soft=2.200"},
                 {"00 02 30 39", "firmware version soft=1.23.45"}});
}

TEST(IpToSystem, LocalAddress) {
    param_items({{"03 04 0a 00 00 05", "local ip address: IPv4 10.0.0.5"},
                 {"03 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01",
                  "local ip address: IPv6 2001:0db8:0000:0000:0000:0000:0000:0001"},
                 {"03 14 c0 a8 01 fe fe 80 00 00 00 00 00 00 02 80 9f ff fe ab cd ef",
                  "local ip address: dual IPv4+IPv6 192.168.1.254 + fe80:0000:0000:0000:0280:9fff:feab:cdef"},
                 {"03 08 01 02 03 04 05 06 07 08", "local ip address bad length 8"},
                 {"03 00", "local ip address bad length 0"},
                 {"03 01 40", "local ip address bad length 1"},
                 {"03 05 01 02 03 04 05", "local ip address bad length 5"}});
}

TEST(IpToSystem, SubnetMask) {
    param_items(
        {{"04 04 ff ff ff 00", "subnet mask: IPv4 255.255.255.0"},
         {"04 01 40", "subnet mask: IPv6 prefix length= 64 bits"},
         {"04 05 ff ff 00 00 80", "subnet mask: dual IPv4 255.255.0.0 + IPv6 prefix length= 128 bits"},
         {"04 00", "subnet mask bad length 0"},
         {"04 02 01 02", "subnet mask bad length 2"},
         {"04 10 " + repeated("00 ", 16), "subnet mask bad length 16"},
         {"04 14 " + repeated("00 ", 20), "subnet mask bad length 20"}});
}

TEST(IpToSystem, ServerAddresses) {
    param_items(
        {{"06 04 0a 00 00 09", "tftp ip address: IPv4 10.0.0.9"},
         {"06 10 20 01 0d b8 00 01 00 02 00 03 00 04 00 05 00 06",
          "tftp ip address: IPv6 2001:0db8:0001:0002:0003:0004:0005:0006"},
         {"06 05 0a 00 00 09 01", "tftp ip address bad length 5"},
         {"06 14 " + repeated("00 ", 20), "tftp ip address bad length 20"},
         {"07 04 0a 00 00 0a", "cpu ip address: IPv4 10.0.0.10"},
         {"07 10 " + repeated("ff ", 16), "cpu ip address: IPv6 ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"},
         {"07 00", "cpu ip address bad length 0"},
         {"07 01 40", "cpu ip address bad length 1"}});
}

TEST(IpToSystem, ParamsStandOnALineEach) {
    to_system(
        {{"13 02 03 04 0a 00 00 05 0a 06 00 80 9f 01 02 03",
          "param response(s):\n\t... local ip address: IPv4 10.0.0.5\n\t... mac address 00 80 9f 01 02 03"},
         {"13 02 03 02 01 02 0c 00 63 01 07",
          "param response(s):\n\t... local ip address bad length 2\n"
          "\t... enable sending of IPv6 addresses\n\t... ??? 07"}});
}

TEST(IpToSystem, AParamThatRunsPastTheEndIsTheLast) {
    to_system({{"13 02 0a 06 00 80", "param response(s):\n\t... mac address 00 80 00 00 00 00"},
               {"13 02 0a", "param response(s):\n\t... mac address"},
               {"13 02 00", "param response(s):\n\t... firmware version soft=0.00"},
               {"13 02 04 04 f8", "param response(s):\n\t... subnet mask: IPv4 248.0.0.0"}});
    EXPECT_EQ(in_record(ip::to_system, "13 02 0a 06 00 80", "9f 01 02 03 01 00"),
              "param response(s):\n\t... mac address 00 80 9f 01 02 03");
    EXPECT_EQ(in_record(ip::to_system, "13 02 0a", "02 11 22 33"),
              "param response(s):\n\t... mac address 11 22");
}

TEST(IpToSystem, DebugText) {
    to_system({{"13 ff 77 61 74 63 68 64 6f 67 20 33", "debug\nwatchdog 3"},
               {"13 ff", "debug\n"},
               {"13 ff 01 7f 80 ff 0a", "debug\n\x01\x7f\x80\xff\n"},
               {"13 ff 61 62 00 63", "debug\nab"},
               {"13 ff 00 63", "debug\n"}});
    EXPECT_EQ(in_record(ip::to_system, "13 ff 61 62", "63 64"), "debug\nab");
}

TEST(IpToSystem, DebugTextOnTheSide) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.with(ip::to_system, "13 ff 68 69 21"), "debug\nhi!");
    EXPECT_EQ(d.output,
              "longueur debug: 5 (=5)\n"
              "texte    debug: longueur: 9, texte: debug\nhi!\n"
              "texte MV debug: longueur: 3, texte: hi!\n");
    EXPECT_EQ(d.error, "");
}

TEST(IpToSystem, DebugTextOnTheSideWithBytesBehindTheMessage) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(in_record(d, ip::to_system, "13 ff " + repeated("61 ", 30), "62 63 00 64"),
              "debug\n" + repeated("a", 30));
    EXPECT_EQ(d.output, "longueur debug: 32 (=20)\ntexte    debug: longueur: 36, texte: debug\n" +
                            repeated("a", 30) +
                            "\ntexte MV debug: longueur: 32, texte: " + repeated("a", 30) + "bc\n");
}

TEST(IpToSystem, DebugTextOnTheSideEndsAtAZero) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.with(ip::to_system, "13 ff 61 00 62"), "debug\na");
    EXPECT_EQ(d.output,
              "longueur debug: 5 (=5)\n"
              "texte    debug: longueur: 7, texte: debug\na\n"
              "texte MV debug: longueur: 1, texte: a\n");
}

TEST(IpToSystem, OtherMessagesSayNothingOnTheSide) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.with(ip::to_system, "13 00 01 00"), "init, set-01 alpha");
    EXPECT_EQ(d.with(ip::to_system, "13 fe 61"), "unknown message");
    EXPECT_EQ(d.output, "");
}

TEST(IpToSystem, OnItsRoute) {
    EXPECT_EQ(TestSession().to_dhs("13 00 02 01"), "\tIP - init, set-02 reserved");
    EXPECT_EQ(TestSession().to_dhs("93 01 00"), "\tIP - incident: dhcp lease renewal failed");
    EXPECT_EQ(TestSession().decode("13 00 02 01", 2), "\tIP - init, set-02 reserved");
}

}  // namespace
}  // namespace ztdecode::testing
