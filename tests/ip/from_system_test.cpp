#include "ip/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(ip::from_system, rows); }

TEST(IpFromSystem, NoContent) {
    from_system({{"13", "ERR: no content"}, {"00", "ERR: no content"}});
    EXPECT_EQ(in_record(ip::from_system, "13", "06"), "ERR: no content");
}

TEST(IpFromSystem, PlainOpcodes) {
    from_system({{"13 06", "stop tone"},
                 {"13 06 01 02", "stop tone"},
                 {"13 08", "stop listen RTP"},
                 {"13 0f", "stop record RTP"},
                 {"13 11", "free seating"},
                 {"13 12", "set android param"},
                 {"13 12 01 02", "set android param"},
                 {"13 13", "set external numbering param"}});
}

TEST(IpFromSystem, EveryOtherOpcodeIsUnknown) {
    for (std::size_t opcode = 21; opcode < 254; ++opcode) {
        from_system({{"13 " + hex_byte(opcode) + "01 02 03", "unknown message"},
                     {"13 " + hex_byte(opcode), "unknown message"}});
    }
}

TEST(IpFromSystem, DefTones) {
    from_system({{"13 04 02 01 b8 f4 00 00 00 01 5e f0 02 26 ec",
                  "def tones (2 pairs)\n"
                  "           pair 1 = ( 184 Hz -6.0 dB, 0 Hz 0.0 dB)\n"
                  "           pair 2 = ( 350 Hz -8.0 dB, 550 Hz -10.0 dB)\n"},
                 {"13 04 03 00 00 f4 00 00 f4 00 01 00 00 00 00 00 00 00 00 01 7f",
                  "def tones (3 pairs)\n"
                  "           pair 1 = (empty)\n"
                  "           pair 2 = ( 1 Hz 0.0 dB, 0 Hz 0.0 dB)\n"
                  "           pair 3 = ( 0 Hz 0.0 dB, 1 Hz 63.5 dB)\n"},
                 {"13 04 00", "def tones (0 pairs)\n"},
                 {"13 04", "def tones (0 pairs)\n"}});
}

TEST(IpFromSystem, TheLowByteOfFrequency1IsSignedThatOfFrequency2IsNot) {
    from_system({{"13 04 01 01 80 01 01 80 ff",
                  "def tones (1 pairs)\n           pair 1 = ( 128 Hz 0.5 dB, 384 Hz -0.5 dB)\n"},
                 {"13 04 01 01 7f 80 01 7f 03",
                  "def tones (1 pairs)\n           pair 1 = ( 383 Hz -64.0 dB, 383 Hz 1.5 dB)\n"},
                 {"13 04 01 00 ff 00 00 ff 00",
                  "def tones (1 pairs)\n           pair 1 = ( -1 Hz 0.0 dB, 255 Hz 0.0 dB)\n"},
                 {"13 04 01 ff ff 00 ff ff 00",
                  "def tones (1 pairs)\n           pair 1 = ( 65279 Hz 0.0 dB, 65535 Hz 0.0 dB)\n"}});
}

TEST(IpFromSystem, TonePairsAreAsManyAsTheCountSays) {
    std::string text = "def tones (255 pairs)\n           pair 1 = ( 256 Hz 0.0 dB, 0 Hz 0.0 dB)\n";
    for (int pair = 2; pair <= 255; ++pair) text += formatted("           pair {-} = (empty)\n"_cf, pair);
    from_system({{"13 04 ff 01", text}});
    EXPECT_EQ(in_record(ip::from_system, "13 04 01 01", "00 04 00 10 02 99"),
              "def tones (1 pairs)\n           pair 1 = ( 256 Hz 2.0 dB, 16 Hz 1.0 dB)\n");
}

TEST(IpFromSystem, StartTone) {
    from_system(
        {{"13 05 45 01 00 c8 02 01 f4 00 00 00 ff ff ff 00 00 01",
          "start tone, nb entries: 5, to the network\n"
          " - 1: id 1 duration 200 ms\n"
          " - 2: id 2 duration 500 ms\n"
          " - 3: abort mark\n"
          " - 4: id 255 duration 65535 ms\n"
          " - 5: id 0 duration 1 ms\n"},
         {"13 05 42 01 00 c8 00 00 00",
          "start tone, nb entries: 2, to both phone and network\n"
          " - 1: id 1 duration 200 ms\n"
          " - 2: abort mark\n"},
         {"13 05 04 01 00 01 02 00 02 03 00 03 04 00 04",
          "start tone, nb entries: 4, to the phone\n"
          " - 1: id 1 duration 1 ms\n"
          " - 2: id 2 duration 2 ms\n"
          " - 3: id 3 duration 3 ms\n"
          " - 4: id 4 duration 4 ms\n"},
         {"13 05 03 01 00 00",
          "start tone, nb entries: 3,  - 1: id 1 duration 0 ms\n"
          " - 2: abort mark\n"
          " - 3: abort mark\n"},
         {"13 05 c0", "start tone, nb entries: 0, to the phone\n"},
         {"13 05 81 07 00 0a", "start tone, nb entries: 1, to the network\n - 1: id 7 duration 10 ms\n"},
         {"13 05", "start tone, nb entries: 0, to the phone\n"}});
}

TEST(IpFromSystem, ToneEntriesAreAsManyAsTheCountSays) {
    std::string text = "start tone, nb entries: 63,  - 1: id 1 duration 256 ms\n";
    for (int entry = 2; entry <= 63; ++entry) text += formatted(" - {-}: abort mark\n"_cf, entry);
    from_system({{"13 05 ff 01 01", text}});
}

TEST(IpFromSystem, GetParam) {
    from_system(
        {{"13 09 00", "get param: firmware version"},
         {"13 09 0d", "get param: CTL fingerprint"},
         {"13 09 0e", "get param: ???"},
         {"13 09 00 03", "get params: firmware version, local ip address"},
         {"13 09 01 02 04 05 06 07 08 09 0a 0b 0c ff",
          "get params: tscip version, dhcp ip address, subnet mask, router ip address, tftp ip address, "
          "cpu ip address, default codec, ethernet config, mac address, pseudo mac, "
          "enable sending of IPv6 addresses, ???"},
         {"13 09", "get params: "}});
}

TEST(IpFromSystem, DigitKey) {
    from_system({{"13 0b 05", "send digit key 5 in RTP"},
                 {"13 0b ff", "send digit key 255 in RTP"},
                 {"13 0b", "send digit key 0 in RTP"}});
}

TEST(IpFromSystem, SipParameters) {
    from_system({{"13 10", "erase SIP parameters"},
                 {"13 10 01", "set SIP parameters"},
                 {"13 10 01 02 03", "set SIP parameters"}});
}

TEST(IpFromSystem, WriteThroughDefence) {
    from_system({{"13 fe 72 65 73 65 74 20 6e 76 72 61 6d 00", "write through defence reset nvram\n"},
                 {"13 fe 61 00 62", "write through defence a\n"},
                 {"13 fe 61 62", "write through defence ab\n"},
                 {"13 fe", "write through defence \n"}});
    EXPECT_EQ(in_record(ip::from_system, "13 fe 61", "62 63 00 64"), "write through defence abc\n");
    EXPECT_EQ(in_record(ip::from_system, "13 fe 61", repeated("62 ", 5117)),
              "write through defence a" + repeated("b", 5117) + "\n");
}

TEST(IpFromSystem, DebugText) {
    from_system({{"13 ff 68 69 21 0a", "debug\nhi!\n"},
                 {"13 ff", "debug\n"},
                 {"13 ff 61 00 62", "debug\na"},
                 {"13 ff 80 01", "debug\n\x80\x01"}});
    EXPECT_EQ(in_record(ip::from_system, "13 ff 61", "62"), "debug\na");
}

TEST(IpFromSystem, DebugTextSaysItsLengthOnTheSide) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.with(ip::from_system, "13 ff " + repeated("61 ", 18)), "debug\n" + repeated("a", 18));
    EXPECT_EQ(d.output, "longueur debug: 20 (=14)\n");
    EXPECT_EQ(d.with(ip::from_system, "13 06"), "stop tone");
    EXPECT_EQ(d.output, "longueur debug: 20 (=14)\n");
}

TEST(IpFromSystem, OnItsRoute) {
    EXPECT_EQ(TestSession().from_dhs("13 06"), "\tIP - stop tone");
    EXPECT_EQ(TestSession().from_dhs("93 06"), "\tIP - stop tone");
    EXPECT_EQ(TestSession().from_dhs("13"), "\tIP - ERR: no content");
    // Only a doubled newline at the end is tidied.
    EXPECT_EQ(TestSession().from_dhs("13 04 01"),
              "\tIP - def tones (1 pairs)\n           pair 1 = (empty)\n");
    EXPECT_EQ(TestSession().from_dhs("13 fe 61 0a 00"), "\tIP - write through defence a\n");
}

}  // namespace
}  // namespace ztdecode::testing
