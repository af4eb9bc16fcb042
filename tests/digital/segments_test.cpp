#include "digital/segments.hpp"

#include "digital/rows.hpp"

namespace ztdecode::testing {
namespace {

std::string repeated(std::string_view words, std::size_t n) {
    std::string result;
    for (std::size_t i = 0; i < n; ++i) result += words;
    return result;
}

TEST(Segments, ThreeSegmentsMakeAMessage) {
    TestSession d;
    // A ring command of six bytes, two in each segment; the sixth byte is the number of beeps.
    EXPECT_EQ(d.with(digital::from_system, "0c 82 00 06 4f 01"), "segment message 1/3");
    EXPECT_EQ(d.output, "4f 01 00 00 00 00 ");
    d.output.clear();
    EXPECT_EQ(d.with(digital::from_system, "0c 01 05 01"), "segment message 2/3");
    EXPECT_EQ(d.output, "4f 01 05 01 00 00 ");
    d.output.clear();
    EXPECT_EQ(d.with(digital::from_system, "0c 00 f3 0a"),
              "segment message 3/3\n"
              "\t- ring on\n"
              "\t\t  melody: #5 \n"
              "\t\t  cadence: #1 (double burst) \n"
              "\t\t  volume: -6.5 dB \n"
              "\t\t  beep number: 0x0a \n"
              "\t\t  silent: no \n"
              "\t\t  progressive: 0");
    EXPECT_EQ(d.output, "4f 01 05 01 f3 0a ");
    EXPECT_EQ(d.status, Status::recognised);
    EXPECT_EQ(d.error, "");
}

TEST(Segments, OneSegmentIsAMessage) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("0c 80 00 01 2a"), "\t- segment message 1/1\n\t- version inquiry");
    EXPECT_EQ(d.output, "2a ");
    EXPECT_EQ(d.from_dhs("8c 80 00 01 2b"), "\t- segment message 1/1\n\t- are you there?");
}

TEST(Segments, UnknownMessages) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 01 7f"),
              "segment message 1/1\n\t- ERR: message inconnu");
    EXPECT_EQ(d.status, Status::recognised);  // the segment is known
}

// The whole message goes by its own type byte to any link.
TEST(Segments, WholeMessagesOfOtherLinks) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("0c 80 00 03 18 68 69"), "\t- segment message 1/1\n\tDBG - hi");
    EXPECT_EQ(d.from_dhs("0c 80 00 02 14 18"), "\t- segment message 1/1\n\tHUB - set repeater mode");
    EXPECT_EQ(d.from_dhs("0c 80 00 04 05 01 02 2b"),
              "\t- segment message 1/1\n\t- [HE: desktop -> telephony]\t- are you there inquiry");
    EXPECT_EQ(d.from_dhs("0c 80 00 04 06 0a 0b 21"),
              "\t- segment message 1/1\n\t- routage visiophone: src=0a dst=0b\n\t- subdev reset");
    // Single messages only: a super message is named.
    EXPECT_EQ(d.from_dhs("0c 80 00 03 0b 01 00"), "\t- segment message 1/1\n\t- super message");
    EXPECT_EQ(d.from_dhs("0c 80 00 04 17 01 00 00"), "\t- segment message 1/1\n\t- super message type 2");
}

TEST(Segments, ADoubledNewlineAtTheEndIsTrimmed) {
    EXPECT_EQ(TestSession().from_dhs("0c 80 00 04 18 41 0a 0a"), "\t- segment message 1/1\n\tDBG - A\n");
}

TEST(Segments, TheFirstSegmentSetsTheDirection) {
    TestSession d;
    // The segments' decoder is that of one direction; the whole message follows the direction of the first.
    EXPECT_EQ(d.with(digital::from_system, "0c 81 00 02 03", to_dhs), "segment message 1/2");
    EXPECT_EQ(d.with(digital::from_system, "0c 00 05", from_dhs),
              "segment message 2/2\n\t- digit dialed '5'");
    EXPECT_EQ(d.with(digital::from_system, "0c 81 00 02 03", from_dhs), "segment message 1/2");
    EXPECT_EQ(d.with(digital::from_system, "0c 00 05", to_dhs), "segment message 2/2\n\t- software reset");
}

TEST(Segments, NumbersAreNotChecked) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c ff 00 02 2a 2b"), "segment message 1/128");
    EXPECT_EQ(d.with(digital::from_system, "0c 7f"), "segment message 1/128");
    EXPECT_EQ(d.with(digital::from_system, "0c 05"), "segment message 123/128");
    EXPECT_EQ(d.with(digital::from_system, "0c 00"), "segment message 128/128\n\t- version inquiry");
    // The last one may come again.
    EXPECT_EQ(d.with(digital::from_system, "0c 00"), "segment message 128/128\n\t- version inquiry");
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 01 2a"), "segment message 1/1\n\t- version inquiry");
    EXPECT_EQ(d.with(digital::from_system, "0c 05"), "segment message -4/1");
}

TEST(Segments, WithoutAFirstOne) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c 03 2a"), "segment message -3/0");
    EXPECT_EQ(d.output, "");  // no length is announced
    EXPECT_EQ(d.with(digital::from_system, "0c 00 2b"), "segment message 0/0\n");
    EXPECT_EQ(d.output, "");
}

TEST(Segments, AFirstOneStartsAnew) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c 82 00 02 2a"), "segment message 1/3");
    EXPECT_EQ(d.with(digital::from_system, "0c 81 00 02 2b"), "segment message 1/2");
    EXPECT_EQ(d.with(digital::from_system, "0c 00 01"), "segment message 2/2\n\t- are you there?");
    EXPECT_EQ(d.output, "2a 00 2b 00 2b 01 ");
}

// What was never sent is what an earlier message left there.
TEST(Segments, TooFewBytes) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 03 2c"),
              "segment message 1/1\n\t- metastate option 0= disable");
    EXPECT_EQ(d.output, "2c 00 00 ");
    d.output.clear();
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 03 2c 05 02"),
              "segment message 1/1\n\t- metastate option 5= wake up");
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 03 2c"),
              "segment message 1/1\n\t- metastate option 5= wake up");
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 03"),
              "segment message 1/1\n\t- metastate option 5= wake up");
    EXPECT_EQ(d.output, "2c 05 02 2c 05 02 2c 05 02 ");
}

// Bytes behind the announced length stand behind the message all the same.
TEST(Segments, TooManyBytes) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 01 2c 05 02"),
              "segment message 1/1\n\t- metastate option 5= wake up");
    EXPECT_EQ(d.output, "2c ");
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 02 04 01 01 01"),
              "segment message 1/1\n\t- warmstart mode 3G");
}

TEST(Segments, NoLength) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 00 2a"), "segment message 1/1\n");
    EXPECT_EQ(d.with(digital::from_system, "0c 80"), "segment message 1/1\n");
    EXPECT_EQ(d.with(digital::from_system, "0c 81"), "segment message 1/2");
    EXPECT_EQ(d.with(digital::from_system, "0c"), "segment message 2/2\n");
    EXPECT_EQ(d.output, "");
}

// The bytes of a first segment start at 4, those of a later one at 2.
TEST(Segments, ShortSegments) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, "0c 83 00 04"), "segment message 1/4");
    EXPECT_EQ(d.with(digital::from_system, "0c 02"), "segment message 2/4");
    EXPECT_EQ(d.with(digital::from_system, "0c 01 35"), "segment message 3/4");
    EXPECT_EQ(d.with(digital::from_system, "0c 00 07 02 09"), "segment message 4/4\n\t- cursor on, line 7");
    EXPECT_EQ(d.output, "00 00 00 00 00 00 00 00 35 00 00 00 35 07 02 09 ");
}

TEST(Segments, TheAnnouncedLengthHasItsHighByteFirst) {
    TestSession d;
    const std::string text(257, 'A');
    EXPECT_EQ(d.from_dhs("0c 80 01 02 18" + repeated(" 41", 257)),
              "\t- segment message 1/1\n\tDBG - " + text);
    EXPECT_EQ(d.output, "18 " + repeated("41 ", 257));
}

TEST(Segments, LongerThanARecord) {
    TestSession d;
    const std::string bytes_of_a_segment = repeated(" 41", 5000);
    EXPECT_EQ(d.with(digital::from_system, "0c 82 17 70 18" + bytes_of_a_segment), "segment message 1/3");
    // Positions from 5120 on are dropped when they are written, and zeros when they are read.
    EXPECT_EQ(d.with(digital::from_system, "0c 01" + bytes_of_a_segment), "segment message 2/3");
    d.output.clear();
    EXPECT_EQ(d.with(digital::from_system, "0c 00 42"),
              "segment message 3/3\n\tDBG - " + std::string(5119, 'A'));
    EXPECT_EQ(d.output, "18 " + repeated("41 ", 5119) + repeated("00 ", 6000 - 5120));
    EXPECT_EQ(d.with(digital::from_system, "0c 80 ff ff 2a"), "segment message 1/1\n\t- version inquiry");
    d.output.clear();
    EXPECT_EQ(d.with(digital::from_system, "0c 81 ff ff 2b"), "segment message 1/2");
    EXPECT_EQ(d.output.size(), 65535U * 3);
}

TEST(Segments, TheTraceDoesNotShowInTheText) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("0b 05 0c 81 00 02 33 03 0c 00 02"),
              "\t- super message:\n"
              "\t> zt 05 00 0c 81 00 02 33\n\t- segment message 1/2\n"
              "\t> zt 03 00 0c 00 02\n\t- segment message 2/2\n\t- external ringer, mode follow\n");
    EXPECT_EQ(d.output, "33 00 33 02 ");
}

// Nobody looks at the side: the text is the same.
TEST(Segments, WithoutATrace) {
    const auto data = bytes("0c 80 ff ff 2a");
    Session session;
    Message m(data);
    Text out;
    EXPECT_EQ(decode(session, m, out), Outcome::decoded);
    EXPECT_EQ(out.view(), "\t- segment message 1/1\n\t- version inquiry");
}

TEST(Segments, DebugTracesOfTheWholeMessage) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.from_dhs("0c 80 00 02 2a 01"), "\t- segment message 1/1\n\t- version inquiry");
    EXPECT_EQ(d.output,
              "entree decode, lng=0x06  sens= from DHS\n"
              "entree decode1msg, lng=0x06  sens= from DHS\n"
              "2a 01 entree decode1msg, lng=0x02  sens= from DHS\n");
}

TEST(Segments, AMessageInSegmentsMayBeASegment) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("0c 80 00 05 0c 80 00 01 2a"),
              "\t- segment message 1/1\n\t- segment message 1/1\n\t- version inquiry");
    EXPECT_EQ(d.output, "0c 80 00 01 2a 2a ");
    // The inner one is the first of two; the second comes on its own.
    EXPECT_EQ(d.from_dhs("0c 80 00 06 0c 81 00 02 33 00"),
              "\t- segment message 1/1\n\t- segment message 1/2");
    EXPECT_EQ(d.from_dhs("0c 00 99"), "\t- segment message 2/2\n\t- external ringer off");
}

// A message that carries itself is followed 32 deep.
TEST(Segments, AMessageThatCarriesItself) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("0c 80 00 02 0c 00"),
              "\t- segment message 1/1" + repeated("\n\t- segment message 1/1", 32));
    EXPECT_EQ(d.output, repeated("0c 00 ", 33));
    // And once more, as if nothing had been.
    d.output.clear();
    EXPECT_EQ(d.from_dhs("0c 80 00 02 0c 00"),
              "\t- segment message 1/1" + repeated("\n\t- segment message 1/1", 32));
    EXPECT_EQ(d.from_dhs("0c 80 00 01 2a"), "\t- segment message 1/1\n\t- version inquiry");
}

TEST(Segments, AnUnknownClassEndsThemAll) {
    TestSession d;
    const std::string ended =
        "\t- segment message 1/1\n\t- segment message 1/1\n\tRYM - call server\nError class lookup table ptr";
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(d.from_dhs("0c 80 00 08 0c 80 00 04 15 02 04 01"), ended);
        EXPECT_EQ(d.outcome, Outcome::unknown_class);
    }
    EXPECT_EQ(d.from_dhs("0c 80 00 01 2a"), "\t- segment message 1/1\n\t- version inquiry");
}

TEST(Segments, AudioFilter) {
    TestSession d;
    // The type byte of a segment is none of an audio message's, whatever it carries.
    d.session().switches.audio_only = true;
    EXPECT_EQ(d.from_dhs("0c 80 00 01 24"), "");
    EXPECT_EQ(d.output, "");
    // The carried one passes the filter on its own.
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 01 24"), "segment message 1/1\n\t- enable DTMF");
    EXPECT_EQ(d.with(digital::from_system, "0c 80 00 01 26"), "segment message 1/1\n");
}

TEST(Segments, SegmentsOfTwoSessionsDoNotMix) {
    TestSession one;
    TestSession other;
    one.with(digital::from_system, "0c 81 00 02 33");
    other.with(digital::from_system, "0c 81 00 02 35");
    EXPECT_EQ(one.with(digital::from_system, "0c 00 01"), "segment message 2/2\n\t- external ringer on");
    EXPECT_EQ(other.with(digital::from_system, "0c 00 01"), "segment message 2/2\n\t- cursor off, line 1");
}

}  // namespace
}  // namespace ztdecode::testing
