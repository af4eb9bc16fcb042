#include "decode/rows.hpp"

// The way in: super messages of both kinds, colours, newlines and debug traces. The texts of single messages
// here are short ones: to the system "nop ack" (00), "handset off hook" (01), "digit dialed '5'" (03 05);
// from it "nop" (00), "software reset" (03) and the line of a display, which ends in a newline (27).

namespace ztdecode::testing {
namespace {

#define RED "\033[0;31m"
#define GREEN "\033[0;32m"
#define PLAIN "\033[0m"

TEST(Frame, SingleMessages) {
    expect_to_dhs({{"00", "\t- nop ack"}, {"03 05", "\t- digit dialed '5'"}, {"8b", "\t- super message"}});
    expect_from_dhs(
        {{"00", "\t- nop"}, {"03 05", "\t- software reset"}, {"97 01 00 00", "\t- super message type 2"}});
}

TEST(Frame, NoMessage) {
    TestSession d;
    d.session().switches = {.color = true, .audio_only = false, .debug = true};
    EXPECT_EQ(d.to_dhs(""), "");
    EXPECT_EQ(d.from_dhs(""), "");
    EXPECT_EQ(d.output, "");
    EXPECT_EQ(d.error, "");
}

TEST(Frame, SuperMessages) {
    expect_to_dhs({
        {"0b 02 03 05 01 01",
         "\t- super message:\n"
         "\t> zt 02 00 03 05\n\t- digit dialed '5'\n"
         "\t> zt 01 00 01\n\t- handset off hook\n"},
        {"0b 01 00", "\t- super message:\n\t> zt 01 00 00\n\t- nop ack\n"},
        {"0b 02 aa bb 01 cc",
         "\t- super message:\n\t> zt 02 00 aa bb\n\t- key released\n\t> zt 01 00 cc\n\t- \n"},
    });
    expect_from_dhs({
        {"0b 01 03 01 00",
         "\t- super message:\n\t> zt 01 00 03\n\t- software reset\n\t> zt 01 00 00\n\t- nop\n"},
        {"0b 02 aa bb 01 cc",
         "\t- super message:\n\t> zt 02 00 aa bb\n\t- version inquiry\n\t> zt 01 00 cc\n"
         "\t- ERR: message inconnu\n"},
    });
}

TEST(Frame, SuperMessagesOfType2) {
    expect_to_dhs({
        {"17 01 00 00", "\t- super message, type 2:\n\t> zt 01 00 00\n\t- nop ack"},
        {"17 02 00 03 05 01 00 01",
         "\t- super message, type 2:\n"
         "\t> zt 02 00 03 05\n\t- digit dialed '5'"
         "\t> zt 01 00 01\n\t- handset off hook"},
    });
    expect_from_dhs({{"17 01 00 aa", "\t- super message, type 2:\n\t> zt 01 00 aa\n\t- version inquiry"}});
}

TEST(Frame, ALongPartHasALongLine) {
    // 300 bytes: 0x012c, low byte first; its line has the length in three digits.
    std::string hex = "17 2c 01 00";
    std::string line = "\t> zt 12c 00 00";
    for (int i = 0; i < 299; ++i) {
        hex += " 5a";
        line += " 5a";
    }
    EXPECT_EQ(TestSession().to_dhs(hex), "\t- super message, type 2:\n" + line + "\n\t- nop ack");
    EXPECT_EQ(TestSession().to_dhs("0b ff" + hex.substr(8, 255 * 3)),
              "\t- super message:\n\t> zt ff 00 00" + line.substr(15, 254 * 3) + "\n\t- nop ack\n");
}

TEST(Frame, EmptyParts) {
    expect_to_dhs({
        {"0b 00", "\t- super message:\n\t> zt 00 00\n"},
        {"0b 00 00 01 00", "\t- super message:\n\t> zt 00 00\n\t> zt 00 00\n\t> zt 01 00 00\n\t- nop ack\n"},
        {"17 00 00", "\t- super message, type 2:\n\t> zt 00 00\n"},
        {"17 01 00 00 00 00", "\t- super message, type 2:\n\t> zt 01 00 00\n\t- nop ack\t> zt 00 00\n"},
    });
}

TEST(Frame, PartsThatRunPastTheEnd) {
    expect_to_dhs({
        {"0b", "\t- super message:\n\t- bad residual length!!!"},
        {"0b 01", "\t- super message:\n\t- bad residual length!!!"},
        {"0b 03 03 05", "\t- super message:\n\t- bad residual length!!!"},
        {"0b ff 03 05", "\t- super message:\n\t- bad residual length!!!"},
        {"0b 01 01 02 01",
         "\t- super message:\n\t> zt 01 00 01\n\t- handset off hook\n\t- bad residual length!!!"},
        {"17", "\t- super message, type 2:\n\t- bad residual length!!!"},
        {"17 00", "\t- super message, type 2:\n\t- bad residual length!!!"},
        {"17 01 00", "\t- super message, type 2:\n\t- bad residual length!!!"},
        {"17 01 01 00", "\t- super message, type 2:\n\t- bad residual length!!!"},
        {"17 ff ff 00", "\t- super message, type 2:\n\t- bad residual length!!!"},
        {"17 01 00 01 00",
         "\t- super message, type 2:\n\t> zt 01 00 01\n\t- handset off hook\t- bad residual length!!!"},
    });
}

// A part is a record of its own: bytes of the next part are not seen behind its end.
TEST(Frame, APartEndsWhereItEnds) {
    expect_to_dhs({{"0b 01 03 02 03 05",
                    "\t- super message:\n\t> zt 01 00 03\n\t- digit dialed '0'\n"
                    "\t> zt 02 00 03 05\n\t- digit dialed '5'\n"}});
}

// Inside, super messages are named only.
TEST(Frame, SuperMessagesInside) {
    expect_to_dhs({
        {"0b 03 0b 01 00", "\t- super message:\n\t> zt 03 00 0b 01 00\n\t- super message\n"},
        {"17 04 00 17 01 00 00",
         "\t- super message, type 2:\n\t> zt 04 00 17 01 00 00\n\t- super message type 2"},
    });
    expect_from_dhs({{"0b 01 17", "\t- super message:\n\t> zt 01 00 17\n\t- super message type 2\n"}});
}

// Parts travel on any link.
TEST(Frame, PartsOfOtherLinks) {
    expect_to_dhs({{"0b 03 18 68 69 04 05 01 02 01",
                    "\t- super message:\n\t> zt 03 00 18 68 69\n\tDBG - hi\n"
                    "\t> zt 04 00 05 01 02 01\n\t- [HE: desktop -> telephony]\t- off hook\n"}});
}

TEST(Frame, NewlinesOfSingleMessages) {
    expect_from_dhs({
        {"27 00 00 41", "\t- write line 1 \"A\"\n"},
        {"18 41", "\tDBG - A"},
        {"18 41 0a", "\tDBG - A\n"},
        {"18 41 0a 0a", "\tDBG - A\n"},
        {"18 41 0a 0a 0a", "\tDBG - A\n\n"},
        {"18 0a 0a", "\tDBG - \n"},
        {"18 0a", "\tDBG - \n"},
        {"18 0a 0a 41", "\tDBG - \n\nA"},
        {"18 41 0a 0a 00 42", "\tDBG - A\n"},  // a zero byte ends the text
    });
}

// Kind 1 adds a newline that lacks and keeps a doubled one; kind 2 adds none and takes one of a doubled one
// away.
TEST(Frame, NewlinesOfParts) {
    expect_from_dhs({
        {"0b 04 27 00 00 41 01 00",
         "\t- super message:\n\t> zt 04 00 27 00 00 41\n\t- write line 1 \"A\"\n\t> zt 01 00 00\n\t- nop\n"},
        {"0b 04 18 41 0a 0a 01 00",
         "\t- super message:\n\t> zt 04 00 18 41 0a 0a\n\tDBG - A\n\n\t> zt 01 00 00\n\t- nop\n"},
        {"17 04 00 27 00 00 41 01 00 00",
         "\t- super message, type 2:\n\t> zt 04 00 27 00 00 41\n\t- write line 1 \"A\"\n"
         "\t> zt 01 00 00\n\t- nop"},
        {"17 04 00 18 41 0a 0a 01 00 00",
         "\t- super message, type 2:\n\t> zt 04 00 18 41 0a 0a\n\tDBG - A\n\t> zt 01 00 00\n\t- nop"},
    });
}

std::string coloured(std::string_view hex, std::uint32_t direction, bool audio_only = false) {
    TestSession d;
    d.session().switches = {.color = true, .audio_only = audio_only, .debug = false};
    return d.decode(hex, direction);
}

TEST(Frame, ColoursTellTheDirection) {
    EXPECT_EQ(coloured("00", 1), RED "\t- nop ack" PLAIN);
    EXPECT_EQ(coloured("00", 0), GREEN "\t- nop" PLAIN);
    EXPECT_EQ(coloured("00", 2),
              GREEN "\t- nop ack" PLAIN);  // any direction but 1 is green, any but 0 towards the system
    EXPECT_EQ(coloured("18 41 0a 0a", 0), GREEN "\tDBG - A\n" PLAIN);
    EXPECT_EQ(coloured("27 00 00 41", 0), GREEN "\t- write line 1 \"A\"\n" PLAIN);
    EXPECT_EQ(coloured("7f", 1), RED "\t- " PLAIN);
}

TEST(Frame, ColoursOfParts) {
    EXPECT_EQ(coloured("0b 01 00 01 01", 1),
              "\t- super message:\n"
              "\t> zt 01 00 00\n" RED "\t- nop ack" PLAIN
              "\n"
              "\t> zt 01 00 01\n" RED "\t- handset off hook" PLAIN "\n");
    EXPECT_EQ(coloured("17 01 00 00 01 00 03", 0),
              "\t- super message, type 2:\n"
              "\t> zt 01 00 00\n" GREEN "\t- nop" PLAIN "\t> zt 01 00 03\n" GREEN "\t- software reset" PLAIN);
    // The text itself ends in a newline: none is added behind the colour.
    EXPECT_EQ(coloured("0b 04 27 00 00 41", 0),
              "\t- super message:\n"
              "\t> zt 04 00 27 00 00 41\n" GREEN "\t- write line 1 \"A\"\n" PLAIN);
    EXPECT_EQ(coloured("0b 02", 1), "\t- super message:\n\t- bad residual length!!!");
}

TEST(Frame, AnEmptyTextHasItsColours) {
    EXPECT_EQ(coloured("00", 1, true), RED PLAIN);
    EXPECT_EQ(coloured("00", 0, true), GREEN PLAIN);
    EXPECT_EQ(coloured("0b 00", 1), "\t- super message:\n\t> zt 00 00\n" RED PLAIN);
    EXPECT_EQ(coloured("0b 01 00", 1, true), "\t- super message:\n\t> zt 01 00 00\n" RED PLAIN);
    EXPECT_EQ(coloured("17 00 00", 0), "\t- super message, type 2:\n\t> zt 00 00\n" GREEN PLAIN);
}

TEST(Frame, ACarriedMessageHasColoursOfItsOwn) {
    EXPECT_EQ(coloured("14 10 00", 1), RED "\tHUB - from set 1" RED "\t- nop ack" PLAIN PLAIN);
}

// The traces go to the standard output and not into the text.
TEST(Frame, DebugTraces) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.to_dhs("03 05"), "\t- digit dialed '5'");
    EXPECT_EQ(d.output,
              "entree decode, lng=0x02  sens= to DHS\n"
              "entree decode1msg, lng=0x02  sens= to DHS\n");
    d.output.clear();
    EXPECT_EQ(d.decode("01", 2), "\t- handset off hook");
    EXPECT_EQ(d.output,
              "entree decode, lng=0x01  sens= from DHS\n"
              "entree decode1msg, lng=0x01  sens= from DHS\n");
    d.output.clear();
    d.from_dhs("0b 01 00 00 01 03");
    EXPECT_EQ(d.output,
              "entree decode, lng=0x06  sens= from DHS\n"
              "entree decode1msg, lng=0x01  sens= from DHS\n"
              "entree decode1msg, lng=0x01  sens= from DHS\n");
    d.output.clear();
    std::string long_message = "18";
    for (int i = 0; i < 299; ++i) long_message += " 41";
    d.from_dhs(long_message);
    EXPECT_EQ(d.output,
              "entree decode, lng=0x12c  sens= from DHS\n"
              "entree decode1msg, lng=0x12c  sens= from DHS\n");
    EXPECT_EQ(d.error, "");
}

TEST(Frame, ASuppressedMessageHasNoSecondTrace) {
    TestSession d;
    d.session().switches = {.color = false, .audio_only = true, .debug = true};
    EXPECT_EQ(d.to_dhs("03 05"), "");
    EXPECT_EQ(d.output, "entree decode, lng=0x02  sens= to DHS\n");
}

TEST(Frame, SuppressedPartsKeepTheirLine) {
    TestSession d;
    d.session().switches.audio_only = true;
    EXPECT_EQ(d.from_dhs("0b 01 00 01 24"),
              "\t- super message:\n\t> zt 01 00 00\n\t> zt 01 00 24\n\t- enable DTMF\n");
}

// An object-protocol message that names a class which does not exist ends the text, and the colour that is
// open.
TEST(Frame, AnUnknownClassEndsTheText) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("0b 01 00 04 15 02 04 01 01 00"),
              "\t- super message:\n\t> zt 01 00 00\n\t- nop\n"
              "\t> zt 04 00 15 02 04 01\n\tRYM - call server\nError class lookup table ptr");
    EXPECT_EQ(d.outcome, Outcome::unknown_class);
    EXPECT_EQ(coloured("15 02 04 01", 0), GREEN "\tRYM - call server\nError class lookup table ptr" PLAIN);
    EXPECT_EQ(d.from_dhs("00"), "\t- nop");
    EXPECT_EQ(d.outcome, Outcome::decoded);
}

TEST(Frame, TheTextStandsBehindWhatIsThere) {
    const auto data = bytes("18 0a");
    Session session;
    Text out;
    out.add("before\n");
    Message m(data);
    EXPECT_EQ(decode(session, m, out), Outcome::decoded);
    EXPECT_EQ(out.view(), "before\n\tDBG - \n");
    // The newline that stands before an empty text is none of its own.
    session.switches.audio_only = true;
    out.clear();
    out.add("before\n\n");
    Message other(data);
    EXPECT_EQ(decode(session, other, out), Outcome::decoded);
    EXPECT_EQ(out.view(), "before\n\n");
}

TEST(Frame, MessagesAreCutToTheCapacity) {
    std::string hex = "18";
    for (int i = 1; i < 5200; ++i) hex += " 41";
    EXPECT_EQ(TestSession().to_dhs(hex), "\tDBG - " + std::string(5119, 'A'));
}

TEST(Frame, ManyParts) {
    std::string hex = "0b";
    std::string text = "\t- super message:\n";
    for (int i = 0; i < 2559; ++i) {
        hex += " 01 00";
        text += "\t> zt 01 00 00\n\t- nop ack\n";
    }
    EXPECT_EQ(TestSession().to_dhs(hex), text);
    EXPECT_EQ(TestSession().to_dhs(hex + " 00"), text + "\t> zt 00 00\n");
    // One byte more than a message can have: the last length byte is cut off.
    EXPECT_EQ(TestSession().to_dhs(hex + " 01 00"), text + "\t- bad residual length!!!");
}

}  // namespace
}  // namespace ztdecode::testing
