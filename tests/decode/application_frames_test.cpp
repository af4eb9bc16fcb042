#include "decode/application_frames.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "object/lookup.hpp"
#include "object/names.hpp"
#include "object/segments.hpp"
#include "support/support.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

using namespace std::string_literals;

using Steps = std::vector<std::string>;

std::string set(const std::string& text) { return "=" + text; }
std::string add(const std::string& text) { return "+" + text; }
std::string item(const std::string& text) { return "|" + text; }

// What happens to an application text, step by step.
class Recorded : public ApplicationText {
  public:
    void set(std::string_view text) override { steps.push_back(testing::set(std::string(text))); }
    void add(std::string_view text) override { steps.push_back(testing::add(std::string(text))); }
    void add_item(std::string_view item) override { steps.push_back(testing::item(std::string(item))); }

    Steps steps;
};

class Frames : public ::testing::Test {
  protected:
    Frames() { decoding.session().object.application = &recorded; }

    // The way 'S' is from the system, 'R' to it.
    Steps take(const char* hex, int way) { return take(bytes(hex), way); }
    Steps take(const std::vector<std::uint8_t>& data, int way) {
        recorded.steps.clear();
        unknown_class = false;
        try {
            decode_application_frame(decoding.session(), Message::without_record(data), way, series_whole);
        } catch (const UnknownClass&) {
            unknown_class = true;
        }
        return std::exchange(recorded.steps, {});
    }
    // The text of a series, without its dump line.
    std::string series(const std::vector<const char*>& segments, int way) {
        Steps last;
        for (const char* hex : segments) last = take(hex, way);
        EXPECT_EQ(last.size(), 2U);
        return last.empty() ? "" : last.back().substr(1);
    }

    TestSession decoding;
    Recorded recorded;
    int series_whole = 7;
    bool unknown_class = false;
};

TEST_F(Frames, ObjectProtocolMessages) {
    // The frame's own length stands where the server and the method are looked for, and 0x15 where the class
    // is.
    EXPECT_EQ(take("16 02 15 14 01 08", 'S'),
              (Steps{add("\n//>>>>>>>> RYM PBX->TERMINAL   OP:15   LG:02 16   VALUE: 14 01 08 "),
                     set("\nError class lookup table ptr")}));
    EXPECT_TRUE(unknown_class);
    EXPECT_EQ(take("07 00 15 04 16 02 0c 2d 2c", 'R'),
              (Steps{add("\n//******** RYM TERMINAL->PBX   OP:15   LG:00 07   VALUE: 04 16 02 0C 2D 2C "),
                     set("\nInvalid_method 0x00 (TX->PBX)")}));
    EXPECT_EQ(take("04 04 16 00", 'R'),
              (Steps{add("\n//******** RYM TERMINAL->PBX   OP:16   LG:04 04   VALUE: 00 "),
                     set("\nNotify\tKEY_LINE\n{\n\tServer\t\t(reserved_error)"
                         "\n\tvalue           device unknown\n}\n")}));
    EXPECT_EQ(take("16 04 15 04 01", 'R'),
              (Steps{add("\n//******** RYM TERMINAL->PBX   OP:15   LG:04 16   VALUE: 04 01 "),
                     set("\nNotify\tDEVICE_PRESENCE\n{\n\tServer\t\tPresentation"
                         "\n\tvalue           USB\n\tstate           plugged\n}\n")}));
    EXPECT_EQ(take("07 07 16", 'S'),
              (Steps{add("\n//>>>>>>>> RYM PBX->TERMINAL   OP:16   LG:07 07   VALUE: "),
                     set("\nInvalid_method 0x07 (PBX->TX)")}));
    EXPECT_EQ(series_whole, 7);
}

TEST_F(Frames, AnythingButSIsToTheSystem) {
    for (const int way : {int{'R'}, int{'s'}, 0, 1, -1}) {
        EXPECT_EQ(take("07 00 15 04", way).back(), set("\nInvalid_method 0x00 (TX->PBX)"));
    }
}

TEST_F(Frames, Segments) {
    EXPECT_EQ(take("0a 00 0c 81 04 16 02 37 04 01 00 00", 'R'), Steps{});
    EXPECT_EQ(series_whole, 0);
    // Sixteen 04 02 ... is an event with two bytes less than were gathered.
    EXPECT_EQ(take("08 00 0c 00 05 06 07 08 09 0a", 'R'),
              (Steps{add("\n//******** RYM TERMINAL->PBX   OP:02   LG:04 16"
                         "   VALUE: 37 04 01 00 00 05 06 07 08 09 0A "),
                     set("\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation"
                         "\n\tkeychar         \"7\\EOT\\SOH\\NUL\\NUL\\ENQ\\ACK\\BEL\\BS\"\n}\n")}));
    EXPECT_EQ(series_whole, 1);
    // The series is forgotten.
    EXPECT_TRUE(decoding.session().object.segments->bytes.empty());
    EXPECT_EQ(decoding.session().object.segments->filled, 0U);
    EXPECT_EQ(decoding.session().object.segments->last_command_text,
              " 16 04 02 37 04 01 00 00 05 06 07 08 09 0A");
}

TEST_F(Frames, SegmentsFromTheSystem) {
    EXPECT_EQ(take("0a 00 0c 82 02 16 84 00 07 37 03 41", 'S'), Steps{});
    EXPECT_EQ(take("04 00 0c 01 42 43", 'S'), Steps{});
    // 16 02 84 00 07 37 03 41 | 42 43 00 00 00 00 00 00 | 26 01, of which the last two are left out
    EXPECT_EQ(take("04 00 0c 00 26 01", 'S'),
              (Steps{add("\n//>>>>>>>> RYM PBX->TERMINAL   OP:84   LG:02 16"
                         "   VALUE: 00 07 37 03 41 42 43 00 00 00 00 00 00 26 01 "),
                     set("\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
                         "\n\tlabel          \t\"ABC\""
                         "\n\tobjectid       \t0x"
                         "\n\tobjectid       \t0x"
                         "\n\tobjectid       \t0x\n}\n")}));
}

// The two bytes that do not count stand behind the message all the same, and then zeros.
TEST_F(Frames, ValuesOfASeriesRunOnIntoItsLastBytes) {
    const std::string label =
        "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          \t";
    // 16 02 84 00 07 37 03 41 | 42 43
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 03 41", "04 00 0c 00 42 43"}, 'S'),
              label + "\"ABC\"\n}\n");
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 05 41", "04 00 0c 00 42 43"}, 'S'),
              label + "\"ABC\\NUL\\NUL\"\n}\n");
    // The length of the value, too, and its first byte: 16 02 84 00 07 37 | 01 41
    EXPECT_EQ(series({"08 00 0c 81 02 16 84 00 07 37", "04 00 0c 00 01 41"}, 'S'), label + "\"A\"\n}\n");
    EXPECT_EQ(series({"08 00 0c 81 02 16 84 00 07 37", "04 00 0c 00 80 02"}, 'S'),
              label + "\"\\NUL\\NUL\"\n}\n");
    // What stands there begins no property of its own: 16 02 84 00 07 37 01 41 | 26 01
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 01 41", "04 00 0c 00 26 01"}, 'S'),
              label + "\"A\"\n}\n");
    // The index, and the length behind it: 16 02 82 00 07 8a | 03 01
    EXPECT_EQ(series({"08 00 0c 81 02 16 82 00 07 8a", "04 00 0c 00 03 01"}, 'S'),
              "\nSetProperty\tlistbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
              "\n\tDlabel         \tIdx:3  \"\\NUL\"\n}\n");
    // A number: 16 02 84 00 07 26 | 01 05
    EXPECT_EQ(series({"08 00 0c 81 02 16 84 00 07 26", "04 00 0c 00 01 05"}, 'S'),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
              "\n\tx              \t5\n}\n");
}

TEST_F(Frames, CharactersOfASeriesRunOnIntoItsLastBytes) {
    const std::string label =
        "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          \t";
    // 16 02 84 00 07 37 01 c3 | a9 41
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 01 c3", "04 00 0c 00 a9 41"}, 'S'),
              label + "\"ERROR_UTF8_2CHAR\xC3\xA9\"\t//\"ERROR_UTF8_2CHAR<" + e_acute() + ">\"\n}\n");
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 01 ee", "04 00 0c 00 80 b1"}, 'S'),
              label +
                  "\"ERROR_UTF8_3CHAR\xEE\x80\xB1\"\t//\"ERROR_UTF8_3CHAR<Corvane rond vide (ne pas "
                  "utiliser)>\"\n}\n");
    // A zero byte that was received, and one behind everything.
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 01 ee", "04 00 0c 00 00 80"}, 'S'),
              label + "\"ERROR_UTF8_3CHAR\xEE\0\x80\"\t//\"ERROR_UTF8_3CHAR<Corvane >\"\n}\n"s);
    // 16 02 84 00 07 37 03 41 | 42 ee: the three bytes are the whole text
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 03 41", "04 00 0c 00 42 ee"}, 'S'),
              label + "\"ABERROR_UTF8_3CHAR\\uE000\"\t//\"ABERROR_UTF8_3CHAR<Corvane >\"\n}\n");
    // 16 02 84 00 07 37 04 41 | 42 ee and two zeros, of which the first is the value's
    EXPECT_EQ(series({"0a 00 0c 81 02 16 84 00 07 37 04 41", "04 00 0c 00 42 ee"}, 'S'),
              label + "\"ABERROR_UTF8_3CHAR\xEE\0\0\"\t//\"ABERROR_UTF8_3CHAR<Corvane >\"\n}\n"s);
}

TEST_F(Frames, EventsOfASeriesRunOnIntoItsLastBytes) {
    // 16 04 02 c3 | a9 41
    EXPECT_EQ(series({"06 00 0c 81 04 16 02 c3", "04 00 0c 00 a9 41"}, 'R'),
              "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation"
              "\n\tkeychar         \"ERROR_UTF8_2CHAR\xC3\xA9\"\t\"ERROR_UTF8_2CHAR<" +
                  e_acute() + ">\"\n}\n");
    // 16 04 15 04 | 01 00: whether the device is plugged stands behind the message
    EXPECT_EQ(series({"06 00 0c 81 04 16 15 04", "04 00 0c 00 01 00"}, 'R'),
              "\nNotify\tDEVICE_PRESENCE\n{\n\tServer\t\tPresentation"
              "\n\tvalue           USB\n\tstate           plugged\n}\n");
    // 16 04 0b 00 | 01 00
    EXPECT_EQ(series({"06 00 0c 81 04 16 0b 00", "04 00 0c 00 01 00"}, 'R'),
              "\nNotify\tERROR_CREATE\n{\n\tServer\t\tPresentation"
              "\n\terrorcode       UNKNOWN_CLASS\n\tmethod          Create\n\tclass           context"
              "\n\tobjectid        0x0000\n\tproperty        objectid\t//0x00\n\tindex           0"
              "\n\tlength          0x0000\n\tvalue           0x00000000\n\ttxt             \"\"\n}\n");
}

TEST_F(Frames, ShortSeries) {
    // Two bytes gathered: the length of the message is 0, and its header stands behind that.
    EXPECT_EQ(take("04 00 0c 81 02 16", 'S'), Steps{});
    EXPECT_EQ(take("02 00 0c 00", 'S'),
              (Steps{add("\n//>>>>>>>> RYM PBX->TERMINAL   OP:00   LG:02 16   VALUE: "),
                     set("\nSetProperty\tcontext\n{\n\tServer\t\tPresentation\n}\n")}));
    EXPECT_EQ(series({"04 00 0c 81 04 15", "02 00 0c 00"}, 'R'),
              "\nNotify\tCONTEXT_SWITCH\n{\n\tServer\t\tCall\n}\n");
    EXPECT_EQ(series({"02 00 0c 81 04 15", "03 00 0c 00 06"}, 'R'),
              "\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n");
    // 16 02 06 08 01: the property lies behind the length of 3.
    EXPECT_EQ(series({"04 00 0c 81 02 16", "05 00 0c 00 06 08 01"}, 'S'),
              "\nSetProperty\tscreen\n{\n\tServer\t\tPresentation\n}\n");
    // 16 02 84 00 | 07 37: nor has an object of a length of 4 a property.
    EXPECT_EQ(series({"06 00 0c 81 02 16 84 00", "04 00 0c 00 07 37"}, 'S'),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n}\n");
}

// Only the earlier way of gathering makes a series of fewer than two bytes: it has no more of them than it
// has.
TEST_F(Frames, SeriesOfLessThanItLeavesOut) {
    const std::pair<const char*, std::string> rows[] = {{"02 00 0c 81", "(reserved_error)"},
                                                        {"03 00 0c 81 16", "Presentation"}};
    for (const auto& [first, server] : rows) {
        const auto data = bytes(first);
        object::take_segment_of_old(decoding.session().object.segments.now(), Message::without_record(data));
        EXPECT_EQ(series({"02 00 0c 00"}, 'S'), "\nCreate\tcontext\n{\n\tServer\t\t" + server + "\n}\n");
    }
}

TEST_F(Frames, SeriesBehindOneThatNobodyFreed) {
    for (const char* hex : {"06 00 0c 81 01 02 03 04", "02 00 0c 00"}) {
        const auto data = bytes(hex);
        object::take_segment(decoding.session().object.segments.now(), Message::without_record(data));
    }
    EXPECT_EQ(take("06 00 0c 81 11 12 13 14", 'S'), Steps{});
    // 00 00 00 00 12 11 | 41 42, of which six count: the property's eighteen bytes begin with the sixth.
    EXPECT_EQ(take("04 00 0c 00 41 42", 'S'),
              (Steps{add("\n//>>>>>>>> RYM PBX->TERMINAL   OP:00   LG:00 00   VALUE: 00 12 11 41 42 "),
                     set("\nCreate\tcontext\n{\n\tServer\t\t(reserved_error)"
                         "\n\tobjectid       \t0x114142000000000000000000000000000000\n}\n")}));
    EXPECT_EQ(decoding.session().object.segments->filled, 0U);
}

std::vector<std::uint8_t> segment_of(std::uint8_t to_come, const std::vector<std::uint8_t>& payload) {
    const std::size_t length = payload.size() + 2;
    std::vector<std::uint8_t> frame = {static_cast<std::uint8_t>(length & 0xFF),
                                       static_cast<std::uint8_t>(length >> 8), 0x0C, to_come};
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

TEST_F(Frames, TheLengthOfASeriesHasSixteenBits) {
    auto payload = bytes("02 16 84 00 07 37 04 41 42 43");
    payload.resize(0xFFFD, 'x');
    take(segment_of(0x81, payload), 'S');
    // 65533 and 13 bytes are 65536 and 10: the message has 8.
    const Steps steps = take(segment_of(0, std::vector<std::uint8_t>(13, 'y')), 'S');
    EXPECT_EQ(steps.back(), set("\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
                                "\n\tlabel          \t\"ABCx\"\n}\n"));
}

TEST_F(Frames, TheLastValueOfTheLongestSeries) {
    // Bytes 5, 32775 and 65534 begin a label; the last one's length and value lie behind the 65535 bytes.
    std::vector<std::uint8_t> all(2 * 65536 + 1, 'x');
    const auto head = bytes("16 02 84 00 07 37 ff ff");
    std::copy(head.begin(), head.end(), all.begin());
    const auto second = bytes("37 ff f4");
    std::copy(second.begin(), second.end(), all.begin() + 32775);
    const auto third = bytes("37 ff ff");
    std::copy(third.begin(), third.end(), all.begin() + 65534);
    all[65537] = 'A';
    all[65537 + 32766] = 'Z';

    std::vector<std::uint8_t> first(all.begin(), all.begin() + 0xFFFD);
    std::swap(first[0], first[1]);
    take(segment_of(0x82, first), 'S');
    take(segment_of(1, {all.begin() + 0xFFFD, all.begin() + 2 * 0xFFFD}), 'S');
    const Steps steps = take(segment_of(0, {all.begin() + 2 * 0xFFFD, all.end()}), 'S');
    ASSERT_EQ(steps.size(), 2U);
    const auto label = [](const std::string& value) { return "\n\tlabel          \t\"" + value + "\""; };
    EXPECT_EQ(steps.back(), set("\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007" +
                                label(std::string(32767, 'x')) + label(std::string(0x7FF4, 'x')) +
                                label("A" + std::string(32765, 'x') + "Z") + "\n}\n"));
}

TEST_F(Frames, SeriesOfAnUnknownClassIsForgotten) {
    take("0a 00 0c 81 02 16 04 00 07 37 03 41", 'S');
    EXPECT_EQ(take("04 00 0c 00 42 43", 'S'),
              (Steps{add("\n//>>>>>>>> RYM PBX->TERMINAL   OP:04   LG:02 16   VALUE: 00 07 37 03 41 42 43 "),
                     set("\nError class lookup table ptr")}));
    EXPECT_TRUE(unknown_class);
    EXPECT_EQ(series_whole, 1);
    EXPECT_EQ(decoding.session().object.segments->filled, 0U);
}

TEST_F(Frames, MessagesOfTheSets) {
    EXPECT_EQ(take("02 00 06 73", 'S'),
              (Steps{add("\n//|||||||| ZT PBX->TERMINAL   OP:06   LG:00 02   VALUE: 73 "),
                     add("\nPbx_ZT_message\n{"), item("\n\t- subdev reset\n"), add("\n}\n")}));
    EXPECT_EQ(take("04 00 0f 05 11 21", 'R'),
              (Steps{add("\n//######## ZT TERMINAL->PBX   OP:0F   LG:00 04   VALUE: 05 11 21 "),
                     add("\nTerm_ZT_message\n{"), item("\n\t- osi: pclink1 status tx_prepare, rx_rcv\n"),
                     add("\n}\n")}));
    EXPECT_EQ(series_whole, 7);
}

TEST_F(Frames, SeveralMessagesOfTheSets) {
    EXPECT_EQ(take("02 00 0f 04 04 00 0f 01 02 00 03 00 18 68 69", 'S'),
              (Steps{add("\n//|||||||| ZT PBX->TERMINAL   OP:0F   LG:00 02"
                         "   VALUE: 04 04 00 0F 01 02 00 03 00 18 68 69 "),
                     add("\nPbx_ZT_message\n{"),
                     item("\n\t- osi: pclink1 bouclage off\n\t- osi: write memory external\n\tDBG - hi\n"),
                     add("\n}\n")}));
}

TEST_F(Frames, NoBytes) {
    EXPECT_EQ(take("", 'R'), (Steps{add("\n//######## ZT TERMINAL->PBX   OP:00   LG:00 00   VALUE: "),
                                    add("\nTerm_ZT_message\n{"), item("\n"), add("\n}\n")}));
}

TEST_F(Frames, ObjectProtocolMessagesAmongThoseOfTheSets) {
    // A type byte with bit 7 set is no operation 0x16, but the same route.
    const std::string offhook = "\nNotify\tOFFHOOK\n{\n\tServer\t\t(reserved_error)\n}\n";
    EXPECT_EQ(take("03 00 96 04 07", 'R'),
              (Steps{add("\n//######## ZT TERMINAL->PBX   OP:96   LG:00 03   VALUE: 04 07 "),
                     add("\nTerm_ZT_message\n{"), set(offhook),
                     item("\n\tRYM - presentation server" + offhook), add("\n}\n")}));
    // Two of them, and others before, between and behind.
    const std::string onhook = "\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n";
    EXPECT_EQ(take("02 00 0f 07 03 00 96 04 07 02 00 0f 02 03 00 15 04 06 02 00 18 41", 'R'),
              (Steps{add("\n//######## ZT TERMINAL->PBX   OP:0F   LG:00 02   VALUE: 07 03 00 96 04 07 02 00 "
                         "0F 02 03 00 15 04 06 02 00 18 41 "),
                     add("\nTerm_ZT_message\n{"), set(offhook), set(onhook),
                     item("\n\t- osi: cti status\n\tRYM - presentation server" + offhook +
                          "\t- osi: read vorna synchro\n\tRYM - call server" + onhook + "\tDBG - A\n"),
                     add("\n}\n")}));
}

// However it is carried: in a hub message, in a super message, in segments.
TEST_F(Frames, CarriedObjectProtocolMessages) {
    const std::string screen = "\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n";
    EXPECT_EQ(take("05 00 14 10 15 02 06", 'S'),
              (Steps{add("\n//|||||||| ZT PBX->TERMINAL   OP:14   LG:00 05   VALUE: 10 15 02 06 "),
                     add("\nPbx_ZT_message\n{"), set(screen),
                     item("\n\tHUB -  to set 1\tRYM - call server" + screen), add("\n}\n")}));
    EXPECT_EQ(take("05 00 0b 03 15 02 06", 'S'),
              (Steps{add("\n//|||||||| ZT PBX->TERMINAL   OP:0B   LG:00 05   VALUE: 03 15 02 06 "),
                     add("\nPbx_ZT_message\n{"), set(screen),
                     item("\n\t- super message:\n\t> zt 03 00 15 02 06\n\tRYM - call server" + screen),
                     add("\n}\n")}));
    EXPECT_EQ(take("07 00 8c 80 00 03 15 02 06", 'S'),
              (Steps{add("\n//|||||||| ZT PBX->TERMINAL   OP:8C   LG:00 07   VALUE: 80 00 03 15 02 06 "),
                     add("\nPbx_ZT_message\n{"), set(screen),
                     item("\n\t- segment message 1/1\n\tRYM - call server" + screen), add("\n}\n")}));
}

TEST_F(Frames, ObjectProtocolMessageWithAZeroByteAmongThoseOfTheSets) {
    // The application text has all of it, the texts of the frame what stands before the zero byte.
    EXPECT_EQ(take("08 00 95 02 84 00 07 37 01 ee 02 00 0f 09", 'S'),
              (Steps{add("\n//|||||||| ZT PBX->TERMINAL   OP:95   LG:00 08"
                         "   VALUE: 02 84 00 07 37 01 EE 02 00 0F 09 "),
                     add("\nPbx_ZT_message\n{"),
                     set("\nSetProperty\ttextbox\n{\n\tServer\t\t(reserved_error)\n\tObjectId\t0x0007"
                         "\n\tlabel          \t\"ERROR_UTF8_3CHAR\xEE\0\0\"\t//\"ERROR_UTF8_3CHAR<Corvane >\""
                         "\n}\n"s),
                     item("\n\tRYM - call server\nSetProperty\ttextbox\n{\n\tServer\t\t(reserved_error)"
                          "\n\tObjectId\t0x0007\n\tlabel          \t\"ERROR_UTF8_3CHAR\xEE\n\t- ??\n"),
                     add("\n}\n")}));
}

TEST_F(Frames, MessagesThatAreNotDecodedLeaveTheTextAlone) {
    decoding.session().switches.audio_only = true;
    EXPECT_EQ(take("03 00 96 04 07", 'R'),
              (Steps{add("\n//######## ZT TERMINAL->PBX   OP:96   LG:00 03   VALUE: 04 07 "),
                     add("\nTerm_ZT_message\n{"), item("\n\n"), add("\n}\n")}));
}

TEST_F(Frames, UnknownClassAmongMessagesOfTheSets) {
    EXPECT_EQ(take("02 00 0f 04 03 00 16 02 04", 'S'),
              (Steps{add("\n//|||||||| ZT PBX->TERMINAL   OP:0F   LG:00 02   VALUE: 04 03 00 16 02 04 "),
                     add("\nPbx_ZT_message\n{"), set("\nError class lookup table ptr")}));
    EXPECT_TRUE(unknown_class);
    EXPECT_EQ(
        take("03 00 95 04 06 07 00 15 04 0b 00 00 00 04", 'R'),
        (Steps{add("\n//######## ZT TERMINAL->PBX   OP:95   LG:00 03"
                   "   VALUE: 04 06 07 00 15 04 0B 00 00 00 04 "),
               add("\nTerm_ZT_message\n{"), set("\nNotify\tONHOOK\n{\n\tServer\t\t(reserved_error)\n}\n"),
               set("\nNotify\tERROR_CREATE\n{\n\tServer\t\tCall\n\terrorcode       INVALID_METHOD"
                   "\n\tmethod          Create\nError class lookup table ptr")}));
    EXPECT_TRUE(unknown_class);
}

TEST(ApplicationFrames, Lines) {
    const struct {
        const char* hex;
        const char* text;
    } rows[] = {
        {"07 01 0c 82 ab", "banner   OP:0C   LG:01 07   VALUE: 82 AB "},
        {"07 01 0c 82", "banner   OP:0C   LG:01 07   VALUE: 82 "},
        {"07 01 0c", "banner   OP:0C   LG:01 07   VALUE: "},
        {"07", "banner   OP:00   LG:00 07   VALUE: "},
        {"", "banner   OP:00   LG:00 00   VALUE: "},
    };
    for (const auto& row : rows) {
        const auto data = bytes(row.hex);
        Text text;
        dump_application_frame("banner", Message::without_record(data), text);
        EXPECT_EQ(text.view(), row.text);
    }
}

}  // namespace
}  // namespace ztdecode::testing
