#include "ip/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(ip::from_system, rows); }

constexpr const char* address = "20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01";

TEST(IpStreams, StartRtpDirections) {
    from_system({{"13 01 00", "start RTP: TSC input"},
                 {"13 01 01", "start RTP: TSC output"},
                 {"13 01 02", "start RTP: both directions"},
                 {"13 01 03", "start RTP: ???"},
                 {"13 01 ff", "start RTP: ???"},
                 {"13 01", "start RTP: TSC input"}});
}

TEST(IpStreams, StreamMessages) {
    from_system({{"13 01 01 00 02 75 30 04 01 11",
                  "start RTP: TSC output, \n\t... local UDP port=30000\n\t... codec: G.729A  8 kb/s"},
                 {"13 01 02 09", "start RTP: both directions, \n\t... reserved"},
                 {"13 02", "stop RTP"},
                 {"13 02 09", "stop RTP, \n\t... reserved"},
                 {"13 02 09 00 14 01 01", "stop RTP, \n\t... reserved\n\t... channel number: 1 <=> announce"},
                 {"13 0c", "pause RTP"},
                 {"13 0c 14 01 00", "pause RTP, \n\t... channel number: 0 <=> main"},
                 {"13 0d", "restart RTP"},
                 {"13 0d 02 02 7d 00", "restart RTP, \n\t... remote UDP port=32000"}});
}

const std::vector<Row>& rtp_items() {
    static const std::vector<Row> items = {
        {"00 02 75 30", "local UDP port=30000"},
        {"00 02 ff ff", "local UDP port=65535"},
        {"01 04 0a 00 00 05", "remote IP=10.0.0.5"},
        {"01 10 " + std::string(address), "remote IP=2001:0db8:0000:0000:0000:0000:0000:0001"},
        {"02 02 7d 00", "remote UDP port=32000"},
        {"03 01 2e", "type of service:  2e = \".\""},
        {"03 00", "type of service:  = \"\""},
        {"04 01 00", "codec: G.711 A law"},
        {"04 01 01", "codec: G.711 mu law"},
        {"04 01 0f", "codec: G.723.1  5.3 kb/s"},
        {"04 01 10", "codec: G.723.1  6.3 kb/s"},
        {"04 01 11", "codec: G.729A  8 kb/s"},
        {"04 01 1b", "codec: G.722 64 kb/s"},
        {"04 01 1c", "codec: G.722 56 kb/s"},
        {"04 01 1d", "codec: G.722 48 kb/s"},
        {"04 01 1e", "codec: Opus"},
        {"04 01 02", "codec: ???"},
        {"04 01 0e", "codec: ???"},
        {"04 01 12", "codec: ???"},
        {"04 01 1a", "codec: ???"},
        {"04 01 1f", "codec: ???"},
        {"04 01 ff", "codec: ???"},
        {"05 01 14", "payload concatenation: 20 ms"},
        {"05 01 ff", "payload concatenation: 255 ms"},
        {"06 01 01", "Echo Cancelation Enabler:  01"},
        {"07 01 00", "Silence Compression Enabler:  00"},
        {"08 01 05", "802.1Q user priority:  05"},
        {"09 00", "reserved"},
        {"09 01 41", "reserved"},
        {"0a 01 01", "post filtering:  01"},
        {"0b 01 00", "high pass filter:  00"},
        {"0c 02 20 41", "remote ssrc:  20 41"},
        {"0d 01 01", "must send QOS ticket:  01"},
        {"0e 04 34 37 31 31", "local id:  34 37 31 31 = \"4711\""},
        {"0f 03 21 7e 22", "distant id:  21 7e 22 = \"!~\"\""},
        {"10 02 75 31", "port rtcp sender report:  75 31 = \"u1\""},
        {"11 04 0a 00 00 06", "@IP  rtcp sender report: 10.0.0.6"},
        {"11 10 " + std::string(address), "@IP  rtcp sender report: 2001:0db8:0000:0000:0000:0000:0000:0001"},
        {"12 02 80 31", "port rtcp receiver report:  80 31"},
        {"13 04 0a 00 00 07", "@IP  rtcp receiver report: 10.0.0.7"},
        {"13 10 " + std::string(address),
         "@IP  rtcp receiver report: 2001:0db8:0000:0000:0000:0000:0000:0001"},
        {"14 01 00", "channel number: 0 <=> main"},
        {"14 01 01", "channel number: 1 <=> announce"},
        {"14 01 02", "channel number: 0x02 <=> unknown"},
        {"14 01 fe", "channel number: 0xfe <=> unknown"},
        {"15 01 00", "send DTMF: no"},
        {"15 01 01", "send DTMF: yes"},
        {"15 01 80", "send DTMF: yes"},
        {"16 01 60", "payload type for rfc2198:  60 = \"`\""},
        {"17 01 7f", "payload type for rfc2833:  7f"},
        {"18 01 00", "enable/disable rfc2198: enable"},
        {"18 01 01", "enable/disable rfc2198: disable"},
        {"18 01 ff", "enable/disable rfc2198: disable"},
        {"31 01 10", "SRTP encryption enable/disable: enable"},
        {"31 01 00", "SRTP encryption enable/disable: disable"},
        {"31 01 01", "SRTP encryption enable/disable: disable"},
        {"31 01 11", "SRTP encryption enable/disable: disable"},
        {"32 03 01 02 03", "master key for SRTP session:  01 02 03"},
        {"33 02 41 42", "master salt key for SRTP session:  41 42 = \"AB\""},
        {"36 01 01", "integrity checking: 1"},
        {"36 01 ff", "integrity checking: 255"},
        {"39 01 02", "integrity Thales method: 2"},
        {"50 02 ab cd", "MD5 authentication:  ab cd"},
    };
    return items;
}

TEST(IpStreams, RtpItems) {
    expect_items(ip::from_system, "13 01 00", "start RTP: TSC input, \n\t... ", rtp_items());
    expect_items(ip::from_system, "13 02", "stop RTP, \n\t... ", rtp_items());
    expect_items(ip::from_system, "13 0c", "pause RTP, \n\t... ", rtp_items());
    expect_items(ip::from_system, "13 0d", "restart RTP, \n\t... ", rtp_items());
}

TEST(IpStreams, UnknownRtpItems) {
    for (std::size_t id = 25; id < 256; ++id) {
        if (id == 49 || id == 50 || id == 51 || id == 54 || id == 57 || id == 80) continue;
        expect_items(ip::from_system, "13 02", "stop RTP, \n\t... ",
                     {{hex_byte(id) + "02 41 42", "???"}, {hex_byte(id) + "00", "???"}});
    }
}

TEST(IpStreams, AddressesOfOtherLengthsAreTakenAsSixteenBytes) {
    expect_items(ip::from_system, "13 02", "stop RTP, \n\t... ",
                 {{"01 00", "remote IP=0000:0000:0000:0000:0000:0000:0000:0000"},
                  {"01 03 0a 00 01", "remote IP=0a00:0100:0000:0000:0000:0000:0000:0000"},
                  {"01 05 01 02 03 04 05 09 00",
                   "remote IP=0102:0304:0509:0000:0000:0000:0000:0000\n\t... reserved"}});
}

TEST(IpStreams, BytesAreCharactersOnlyWhenAllArePrintable) {
    expect_items(ip::from_system, "13 02", "stop RTP, \n\t... ",
                 {{"0e 02 21 7e", "local id:  21 7e = \"!~\""},
                  {"0e 02 41 20", "local id:  41 20"},
                  {"0e 02 41 7f", "local id:  41 7f"},
                  {"0e 02 00 41", "local id:  00 41"},
                  {"0e 02 80 41", "local id:  80 41"},
                  {"0e ff " + repeated("61 ", 255),
                   "local id: " + repeated(" 61", 255) + " = \"" + repeated("a", 255) + "\""}});
}

TEST(IpStreams, AnItemThatRunsPastTheEndIsTheLast) {
    from_system({{"13 02 0e 04 41 42", "stop RTP, \n\t... local id:  41 42 00 00"},
                 {"13 02 00", "stop RTP, \n\t... local UDP port=0"},
                 {"13 02 00 01 75 09 00", "stop RTP, \n\t... local UDP port=29961\n\t... reserved"}});
    EXPECT_EQ(in_record(ip::from_system, "13 02 0e 04 41 42", "43 44 09 00"),
              "stop RTP, \n\t... local id:  41 42 43 44 = \"ABCD\"");
}

TEST(IpStreams, Redirect) {
    from_system({{"13 03", "redirect: \n\t... "},
                 {"13 03 00 04 0a 00 00 0a 01 02 80 00",
                  "redirect: \n\t... remote IP=10.0.0.10\n\t... remote UDP port=32768"},
                 {"13 03 00 10 " + std::string(address),
                  "redirect: \n\t... remote IP=2001:0db8:0000:0000:0000:0000:0000:0001"}});
    for (std::size_t id = 2; id < 256; ++id)
        from_system({{"13 03 " + hex_byte(id) + "02 01 02", "redirect: \n\t... ???"}});
}

TEST(IpStreams, Listen) {
    from_system({{"13 07", "start listen RTP: \n\t... "},
                 {"13 07 00 04 0a 00 00 09 01 02 75 32 02 02 75 34",
                  "start listen RTP: \n\t... remote IP=10.0.0.9\n\t... remote UDP portIn=30002\n"
                  "\t... remote UDP portOut=30004"},
                 {"13 07 00 10 " + std::string(address),
                  "start listen RTP: \n\t... remote IP=2001:0db8:0000:0000:0000:0000:0000:0001"}});
    for (std::size_t id = 3; id < 256; ++id)
        from_system({{"13 07 " + hex_byte(id) + "02 01 02", "start listen RTP: \n\t... ???"}});
}

TEST(IpStreams, Record) {
    from_system({{"13 0e", "start record RTP"},
                 {"13 0e 00", "start record RTP, \n\t... recorder index=0"},
                 {"13 0e 00 01 01 01 04 0a 00 00 07",
                  "start record RTP, \n\t... recorder index=1\n\t... remote IP=10.0.0.7"}});
    expect_items(
        ip::from_system, "13 0e", "start record RTP, \n\t... ",
        {{"00 01 ff", "recorder index=255"},
         {"01 10 " + std::string(address), "remote IP=2001:0db8:0000:0000:0000:0000:0000:0001"},
         {"02 02 75 30", "remote UDP port in= 30000"},
         {"03 02 75 31", "remote UDP port out= 30001"},
         {"05 02 75 32", "local UDP port in= 30002"},
         {"06 02 75 33", "local UDP port out= 30003"},
         {"07 01 2e", "type of service= 2e"},
         {"07 01 00", "type of service= 00"},
         {"08 03 61 62 63", "master key for srtp session: "},
         {"09 03 61 62 63", "master salt key for srtp session: "},
         {"10 01 00", "integrity checking: no authentication"},
         {"10 01 01", "integrity checking: Authentication tag emission with received tag control"},
         {"10 01 10", "integrity checking: Authentication tag emission without received tag control"},
         {"10 01 02", "integrity checking: unknown"},
         {"10 01 ff", "integrity checking: unknown"},
         {"11 01 00", "integrity method of thales component: old method"},
         {"11 01 01", "integrity method of thales component: new method"},
         {"11 01 02", "integrity method of thales component: unknown"},
         {"30 02 41 42", "MD5 authentication:  41 42 = \"AB\""},
         {"30 01 20", "MD5 authentication:  20"}});
    for (std::size_t id = 10; id < 256; ++id) {
        if (id == 16 || id == 17 || id == 48) continue;
        expect_items(ip::from_system, "13 0e", "start record RTP, \n\t... ",
                     {{hex_byte(id) + "02 01 02", "???"}});
    }
}

TEST(IpStreams, RecordItem4RepeatsTheItemBeforeIt) {
    from_system(
        {{"13 0e 00 01 05 04 01 01", "start record RTP, \n\t... recorder index=5\n\t... recorder index=5"},
         {"13 0e 07 01 2e 04 00 04 02 09 09 00 01 01",
          "start record RTP, \n\t... type of service= 2e\n\t... type of service= 2e\n"
          "\t... type of service= 2e\n\t... recorder index=1"},
         {"13 0e 12 00 04 00", "start record RTP, \n\t... ???\n\t... ???"},
         {"13 0e 08 01 41 04 00",
          "start record RTP, \n\t... master key for srtp session: \n\t... master key for srtp session: "},
         {"13 0e 30 02 41 42 04 00",
          "start record RTP, \n\t... MD5 authentication:  41 42 = \"AB\"\n\t... MD5 authentication:  41 42 = "
          "\"AB\""}});
}

TEST(IpStreams, RecordItem4RepeatsAnItemOfAnEarlierMessage) {
    TestSession d;
    EXPECT_EQ(d.with(ip::from_system, "13 0e 04 00"), "start record RTP, \n\t... ");
    EXPECT_EQ(d.with(ip::from_system, "13 0e 00 01 07 07 01 2e"),
              "start record RTP, \n\t... recorder index=7\n\t... type of service= 2e");
    // Items of other lists and other messages do not count.
    EXPECT_EQ(d.with(ip::from_system, "13 02 09 00"), "stop RTP, \n\t... reserved");
    EXPECT_EQ(d.with(ip::from_system, "13 0e"), "start record RTP");
    EXPECT_EQ(d.with(ip::to_system, "13 02 0a 00"), "param response(s):\n\t... mac address");
    EXPECT_EQ(d.with(ip::from_system, "13 0e 04 00 00 01 08"),
              "start record RTP, \n\t... type of service= 2e\n\t... recorder index=8");
    EXPECT_EQ(d.with(ip::from_system, "13 0e 04"), "start record RTP, \n\t... recorder index=8");
}

TEST(IpStreams, SessionsDoNotShareRecordItems) {
    TestSession one, other;
    EXPECT_EQ(one.with(ip::from_system, "13 0e 00 01 07"), "start record RTP, \n\t... recorder index=7");
    EXPECT_EQ(other.with(ip::from_system, "13 0e 04 00"), "start record RTP, \n\t... ");
}

}  // namespace
}  // namespace ztdecode::testing
