#include "he/rows.hpp"

// HE messages as they are captured: with their routing bytes, through the dispatcher.

namespace ztdecode::testing {
namespace {

TEST(HeRoute, HeaderNamesBothApplications) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 01 00 01"), "\t- [HE: firmware -> telephony]\t- off hook");
    EXPECT_EQ(d.from_dhs("05 fe 05 2b"), "\t- [HE: 05 -> text editor]\t- are you there inquiry");
    EXPECT_EQ(d.to_dhs("05 ff fa 22"), "\t- [HE: communication assistant -> default]\t- I'm here");
    EXPECT_EQ(d.error, "");
}

TEST(HeRoute, DirectionsHaveTablesOfTheirOwn) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 00 00 00"), "\t- [HE: firmware -> firmware]\t- NOP ack");
    EXPECT_EQ(d.from_dhs("05 00 00 00"), "\t- [HE: firmware -> firmware]\t- nop");
    EXPECT_EQ(d.decode("05 00 00 00", 2), "\t- [HE: firmware -> firmware]\t- NOP ack");
}

// Lengths count without the routing bytes: nine bytes are six here, and too few for a text.
TEST(HeRoute, RoutingBytesAreDropped) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("05 01 00 53 0b 01 02 00 00"),
              "\t- [HE: firmware -> telephony]\t- append static text field winId=01 objId=02");
    EXPECT_EQ(d.from_dhs("05 01 00 53 0b 01 02 00 01 41"),
              "\t- [HE: firmware -> telephony]\t- append static text field winId=01 objId=02 \"A\"");
}

// Behind the shortened message its last three bytes stand once more.
TEST(HeRoute, BytesBehindTheMessageStayWhereTheyWere) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("05 01 02 50 06"), "\t- [HE: desktop -> telephony]\t- refresh window winId=02");
    EXPECT_EQ(d.from_dhs("05 01 00 50 01 04 0a 0b"),
              "\t- [HE: firmware -> telephony]\t- delete 4 windows, winId=0a, winId=0b, winId=04, winId=0a");
    EXPECT_EQ(d.from_dhs("05 01 00 50 01 08 0a 0b"),
              "\t- [HE: firmware -> telephony]\t- delete 8 windows, winId=0a, winId=0b, winId=08, winId=0a, "
              "winId=0b, winId=00, winId=00, winId=00");
}

TEST(HeRoute, MessageThatIsShorterThanItsRouting) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05"), "\t- [HE: firmware -> firmware]\t- ");
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 3, disponible: 1\n");
    d.error.clear();
    EXPECT_EQ(d.from_dhs("05 02"), "\t- [HE: firmware -> desktop]\t- ");
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 3, disponible: 2\n");
}

TEST(HeRoute, MessageOfRoutingAlone) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 02 06"), "\t- [HE: data -> desktop]\t- ");
    EXPECT_EQ(d.from_dhs("05 02 06"), "\t- [HE: data -> desktop]\t- ");
    EXPECT_EQ(d.error, "");
}

TEST(HeRoute, UnknownOpcodesAreTheDigitalSets) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 01 00 2a 07"), "\t- [HE: firmware -> telephony]\t- key released");
    EXPECT_EQ(d.to_dhs("05 01 00 28"), "\t- [HE: firmware -> telephony]\t- trace off ack");
    EXPECT_EQ(d.from_dhs("05 01 00 46"), "\t- [HE: firmware -> telephony]\t- all icons off");
    EXPECT_EQ(d.from_dhs("05 01 00 26"), "\t- [HE: firmware -> telephony]\t- clear display");
    EXPECT_EQ(d.from_dhs("05 01 00 21 04 03"), "\t- [HE: firmware -> telephony]\t- green led 3 ON");
}

TEST(HeRoute, UnknownToBoth) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 01 00 09"), "\t- [HE: firmware -> telephony]\t- ");
    EXPECT_EQ(d.from_dhs("05 01 00 05"), "\t- [HE: firmware -> telephony]\t- ERR: message inconnu");
}

// An unknown sub-command is no unknown opcode.
TEST(HeRoute, UnknownSubcommandsStayHere) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 01 00 2c 09"), "\t- [HE: firmware -> telephony]\t- download ???");
    EXPECT_EQ(d.from_dhs("05 01 00 2f 09"), "\t- [HE: firmware -> telephony]\t- ???");
}

// With bit 7 of the type set there is no routing to drop, and its own opcode, 5, is nobody's.
TEST(HeRoute, TypeWithBit7) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("85 01 00 01"), "\t-not a HE message!\t- ");
    EXPECT_EQ(d.from_dhs("85 01 00 2b"), "\t-not a HE message!\t- ERR: message inconnu");
    EXPECT_EQ(d.to_dhs("85"), "\t-not a HE message!\t- ");
    EXPECT_EQ(d.error, "");
}

TEST(HeRoute, KeyWithoutACharacterEndsTheText) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 01 00 25 00 00"), "\t- [HE: firmware -> telephony]\t- key pushed: '");
}

TEST(HeRoute, AudioMessagesOnly) {
    TestSession d;
    d.session().switches.audio_only = true;
    EXPECT_EQ(d.to_dhs("05 01 00 01"), "");
    EXPECT_EQ(d.from_dhs("05 01 00 2b"), "");
}

TEST(HeRoute, InColour) {
    TestSession d;
    d.session().switches.color = true;
    EXPECT_EQ(d.to_dhs("05 01 00 01"), "\033[0;31m\t- [HE: firmware -> telephony]\t- off hook\033[0m");
    EXPECT_EQ(d.from_dhs("05 01 00 2b"),
              "\033[0;32m\t- [HE: firmware -> telephony]\t- are you there inquiry\033[0m");
}

TEST(HeRoute, InASuperMessage) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("0b 06 05 01 00 50 06 04 05 05 01 00 50 09"),
              "\t- super message:\n"
              "\t> zt 06 00 05 01 00 50 06 04\n"
              "\t- [HE: firmware -> telephony]\t- refresh window winId=04\n"
              "\t> zt 05 00 05 01 00 50 09\n"
              "\t- [HE: firmware -> telephony]\t- refresh window winId=04???\n");
}

}  // namespace
}  // namespace ztdecode::testing
