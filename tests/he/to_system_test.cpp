#include <algorithm>

#include "he/rows.hpp"

namespace ztdecode::testing {
namespace {

using namespace std::string_literals;

void to_system(const std::vector<Row>& rows) { expect_rows(he::to_system, Status::recognised, rows); }

TEST(HeToSystem, PlainOpcodes) {
    to_system({{"00", "NOP ack"},
               {"01", "off hook"},
               {"02", "on hook"},
               {"06", "loopback on ack"},
               {"07", "loopback off ack"},
               {"22", "I'm here"},
               {"2e", "local power failure"},
               {"2f", "local power return"},
               {"35", "launch ack"}});
}

TEST(HeToSystem, Bit7OfTheOpcodeIsIgnored) {
    to_system({{"80", "NOP ack"},
               {"81", "off hook"},
               {"83 00 07", "digit dialed: 7"},
               {"9f 63", "stack dump"},
               {"d0 04", "appli management: list applis report"}});
}

TEST(HeToSystem, DigitsAndKeys) {
    to_system({{"03 00 00", "digit dialed: 0"},
               {"03 ff 09", "digit dialed: 9"},
               {"03 00 ff", "digit dialed: 255"},
               {"20 00 00", "key pushed: 0x00"},
               {"20 00 0a", "key pushed: 0x0a"},
               {"20 00 ff", "key pushed: 0xff"},
               {"25 00 41", "key pushed: 'A'"},
               {"25 00 27", "key pushed: '''"},
               {"25 00 e9", "key pushed: '\xe9'"},
               {"25 00 0a", "key pushed: '\n'"}});
}

TEST(HeToSystem, KeyWithoutACharacterEndsTheText) {
    to_system({{"25 00 00", "key pushed: '"}, {"25", "key pushed: '"}});
}

TEST(HeToSystem, Resets) {
    to_system({
        {"1f 00 aa bb 01 02 03 04 05 06 63 07 08", "reset hard: boot 1.2, code 3.4, ipar1 5.6, ipar2 7.8"},
        {"1f 01 aa bb ff fe fd fc fb fa f9 f8 f7",
         "reset soft: boot 255.254, code 253.252, ipar1 251.250, ipar2 248.247"},
        {"1f 00", "reset hard: boot 0.0, code 0.0, ipar1 0.0, ipar2 0.0"},
        {"1f", "reset hard: boot 0.0, code 0.0, ipar1 0.0, ipar2 0.0"},
    });
}

TEST(HeToSystem, StatusReports) {
    to_system({{"1f 02 00", "illegal command received: 00"},
               {"1f 02 5c", "illegal command received: 5c"},
               {"1f 05 00", "subdevice 0 is down"},
               {"1f 05 0a", "subdevice a is down"},
               {"1f 05 3f", "subdevice 3f is down"},
               {"1f 06", "segment failure"},
               {"1f 63", "stack dump"},
               {"1f 07", "reset ???"},
               {"1f 09", "reset ???"},
               {"1f 62", "reset ???"},
               {"1f 64", "reset ???"},
               {"1f ff", "reset ???"}});
}

TEST(HeToSystem, ErrorsAndWarnings) {
    to_system({{"1f 03 01", "erreur: bad ressource ID"},
               {"1f 03 02", "erreur: bad value"},
               {"1f 03 03", "erreur: bad attribut"},
               {"1f 03 04", "erreur: memory overflow"},
               {"1f 03 05", "erreur: bad lenth"},
               {"1f 03 06", "erreur: not accepted"},
               {"1f 03 00", "erreur: 00"},
               {"1f 03 c7", "erreur: c7"},
               {"1f 04 10", "warning: clip"},
               {"1f 04 20", "warning: alignement"},
               {"1f 04 40", "warning: unmap"},
               {"1f 04 00", "warning: 00"},
               {"1f 04 1b", "warning: 1b"}});
}

TEST(HeToSystem, DownloadAcknowledgements) {
    to_system({{"2c 01", "download start ack"},
               {"2c 02", "download end ack"},
               {"2c 03", "download iso ack"},
               {"2c 04", "download iso bad"},
               {"2c 05", "download bad msg"},
               {"2c 06 01", "download failure: not enought bytes"},
               {"2c 06 02", "download failure: too much bytes"},
               {"2c 06 03", "download failure: bad checksum in current block"},
               {"2c 06 04", "download failure: hardware reason"},
               {"2c 06 05", "download failure: aborted by download end message"},
               {"2c 06 00", "download failure: "},
               {"2c 06 06", "download failure: "},
               {"2c 06 ff", "download failure: "},
               {"2c 00", "download ???"},
               {"2c 07", "download ???"},
               {"2c ff", "download ???"}});
}

TEST(HeToSystem, Reports) {
    to_system({{"30 00", "resources report"},
               {"30 01", "list windows report"},
               {"30 02 00 01 00 00", "Available mem: 0x010000 (decimal 65536)"},
               {"30 02 00 00 00 00", "Available mem: 0x000000 (decimal 0)"},
               {"30 02 12 34 56 78", "Available mem: 0x12345678 (decimal 305419896)"},
               {"30 02 ff ff ff ff", "Available mem: 0xffffffff (decimal 4294967295)"},
               {"30 04", "query row report"},
               {"30 03", "unknown ???"},
               {"30 05", "unknown ???"},
               {"30 ff", "unknown ???"}});
}

TEST(HeToSystem, WindowObjectReport) {
    to_system({
        {"31 00 03 0a 5c 05 48 65 6c 6c 6f", "report:  winId=03 objId=0a valKey:5c, lng=05  \"Hello\""},
        {"31 ff 00 ff 00 00", "report:  winId=00 objId=ff valKey:00, lng=00  \"\""},
        {"31 00 01 02 03 02 41 42 43", "report:  winId=01 objId=02 valKey:03, lng=02  \"AB\""},
    });
}

TEST(HeToSystem, ZeroByteEndsTheReportedValue) {
    to_system({
        {"31 00 01 02 03 05 48 69 00 48 69", "report:  winId=01 objId=02 valKey:03, lng=05  \"Hi"},
        {"31 00 01 02 03 05 48 69", "report:  winId=01 objId=02 valKey:03, lng=05  \"Hi"},
    });
}

TEST(HeToSystem, LongestReportedValue) {
    std::string hex = "31 00 01 02 03 ff";
    for (int i = 0; i < 255; ++i) hex += " 78";
    TestSession d;
    EXPECT_EQ(d.with(he::to_system, hex),
              "report:  winId=01 objId=02 valKey:03, lng=ff  \"" + std::string(255, 'x') + "\"");
}

TEST(HeToSystem, SmartCard) {
    to_system({{"34 01", "smart card: read response"},
               {"34 02", "smart card: write response"},
               {"34 03", "smart card: nack"},
               {"34 04", "smart card: status response"},
               {"34 05", "smart card: insertion"},
               {"34 06", "smart card: removal"},
               {"34 00", "smart card: unknown ???"},
               {"34 07", "smart card: unknown ???"},
               {"34 ff", "smart card: unknown ???"}});
}

TEST(HeToSystem, ApplicationManagement) {
    to_system({{"50 02 fa", "appli management: create appli communication assistant"},
               {"50 02 00", "appli management: create appli firmware"},
               {"50 02 05", "appli management: create appli 05"},
               {"50 03 01", "appli management: delete appli telephony"},
               {"50 03 f7", "appli management: delete appli f7"},
               {"50 04", "appli management: list applis report"},
               {"50 05", "appli management: blink appli request"},
               {"50 00", "appli management: ???"},
               {"50 01", "appli management: ???"},
               {"50 06", "appli management: ???"},
               {"50 ff", "appli management: ???"}});
}

TEST(HeToSystem, EveryOtherOpcodeIsUnknown) {
    const std::vector<unsigned> known = {0, 1, 2, 3, 6, 7, 31, 32, 34, 37, 44, 46, 47, 48, 49, 52, 53, 80};
    for (unsigned opcode = 0; opcode < 256; ++opcode) {
        TestSession d;
        const std::string text = d.with(he::to_system, formatted("{-:02x} 00 00"_cf, opcode));
        if (std::find(known.begin(), known.end(), opcode & 0x7F) != known.end()) {
            EXPECT_EQ(d.status, Status::recognised) << opcode;
            EXPECT_NE(text, "???") << opcode;
        } else {
            EXPECT_EQ(d.status, Status::unknown) << opcode;
            EXPECT_EQ(text, "???") << opcode;
        }
    }
}

TEST(HeToSystem, MessageWithoutBytes) { to_system({{"", "NOP ack"}}); }

// A window command's text is the other direction's; nothing here changes it.
TEST(HeToSystem, LeavesTheWindowCommandAlone) {
    TestSession d;
    d.with(he::from_system, "50 06 04");
    d.with(he::to_system, "50 04");
    EXPECT_EQ(d.with(he::from_system, "50 09"), "refresh window winId=04???");
}

}  // namespace
}  // namespace ztdecode::testing
