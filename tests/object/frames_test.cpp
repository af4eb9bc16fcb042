#include "object/frames.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "object/lookup.hpp"
#include "support/support.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

class Frames : public ::testing::Test {
  protected:
    // The way 'S' is from the system, 'R' to it.
    void take(const char* hex, int way) {
        const auto data = bytes(hex);
        take(Message::without_record(data), way);
    }
    void take(const Message& frame, int way) {
        unknown_class = false;
        try {
            analyse_cmd(decoding.session(), frame, way, out);
        } catch (const UnknownClass&) {
            unknown_class = true;
        }
    }
    void expect(FrameKind kind, const std::string& dump, const std::string& text) {
        EXPECT_EQ(out.kind, kind);
        EXPECT_EQ(out.dump.view(), dump);
        EXPECT_EQ(out.text.view(), text);
    }

    Decoding decoding;
    FrameText out;
    bool unknown_class = false;
};

TEST_F(Frames, ObjectProtocolMessages) {
    // The frame's own length stands where the server and the method are looked for, and 0x15 where the class
    // is.
    take("16 02 15 14 01 08", 'S');
    expect(FrameKind::object, "\n//>>>>>>>> RYM PBX->TERMINAL   OP:15   LG:02 16   VALUE: 14 01 08 ",
           "\nError class lookup table ptr");
    EXPECT_TRUE(unknown_class);
    take("07 00 15 04 16 02 0c 2d 2c", 'R');
    expect(FrameKind::object, "\n//******** RYM TERMINAL->PBX   OP:15   LG:00 07   VALUE: 04 16 02 0C 2D 2C ",
           "\nInvalid_method 0x00 (TX->PBX)");
    take("04 04 16 00", 'R');
    expect(FrameKind::object, "\n//******** RYM TERMINAL->PBX   OP:16   LG:04 04   VALUE: 00 ",
           "\nNotify\tKEY_LINE\n{\n\tServer\t\t(reserved_error)\n\tvalue           device unknown\n}\n");
    take("16 04 15 04 01", 'R');
    expect(FrameKind::object, "\n//******** RYM TERMINAL->PBX   OP:15   LG:04 16   VALUE: 04 01 ",
           "\nNotify\tDEVICE_PRESENCE\n{\n\tServer\t\tPresentation\n\tvalue           USB\n\tstate           "
           "plugged\n}\n");
    take("07 07 16", 'S');
    expect(FrameKind::object,
           "\n//>>>>>>>> RYM PBX->TERMINAL   OP:16   LG:07 07   VALUE: ", "\nInvalid_method 0x07 (PBX->TX)");
}

TEST_F(Frames, AnythingButSIsToTheSystem) {
    for (const int way : {int{'R'}, int{'s'}, 0, 1, -1}) {
        take("07 00 15 04", way);
        EXPECT_EQ(out.text.view(), "\nInvalid_method 0x00 (TX->PBX)");
    }
}

TEST_F(Frames, Segments) {
    take("0a 00 0c 81 04 16 02 37 04 01 00 00", 'R');
    expect(FrameKind::gathered, "", "");
    take("08 00 0c 00 05 06 07 08 09 0a", 'R');
    // Sixteen 04 02 ... is an event with two bytes less than were gathered.
    expect(FrameKind::series,
           "\n//******** RYM TERMINAL->PBX   OP:02   LG:04 16   VALUE: 37 04 01 00 00 05 06 07 08 09 0A ",
           "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation"
           "\n\tkeychar         \"7\\EOT\\SOH\\NUL\\NUL\\ENQ\\ACK\\BEL\\BS\"\n}\n");
    // The series is forgotten.
    EXPECT_TRUE(decoding.session().object.segments->bytes.empty());
    EXPECT_EQ(decoding.session().object.segments->filled, 0U);
    EXPECT_EQ(decoding.session().object.segments->last_command_text,
              " 16 04 02 37 04 01 00 00 05 06 07 08 09 0A");
}

TEST_F(Frames, SegmentsFromTheSystem) {
    take("0a 00 0c 82 02 16 84 00 07 37 03 41", 'S');
    expect(FrameKind::gathered, "", "");
    take("04 00 0c 01 42 43", 'S');
    expect(FrameKind::gathered, "", "");
    take("04 00 0c 00 26 01", 'S');
    // 16 02 84 00 07 37 03 41 | 42 43 00 00 00 00 00 00 | 26 01, of which the last two are left out
    expect(FrameKind::series,
           "\n//>>>>>>>> RYM PBX->TERMINAL   OP:84   LG:02 16   VALUE: 00 07 37 03 41 42 43 00 00 00 00 00 "
           "00 26 01 ",
           "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
           "\n\tlabel          \t\"ABC\""
           "\n\tobjectid       \t0x"
           "\n\tobjectid       \t0x"
           "\n\tobjectid       \t0x\n}\n");
}

TEST_F(Frames, ValuesOfASeriesEndWhereItsLengthEnds) {
    take("0a 00 0c 81 02 16 84 00 07 37 03 41", 'S');
    take("04 00 0c 00 42 43", 'S');
    // Ten bytes, of which eight count: behind them nothing is read.
    expect(FrameKind::series,
           "\n//>>>>>>>> RYM PBX->TERMINAL   OP:84   LG:02 16   VALUE: 00 07 37 03 41 42 43 ",
           "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          "
           "\t\"A\\NUL\\NUL\"\n}\n");
}

TEST_F(Frames, ShortSeries) {
    take("02 00 0c 81 02 16", 'S');
    take("02 00 0c 00", 'S');
    // Two bytes gathered: the length of the message is 0.
    expect(FrameKind::series, "\n//>>>>>>>> RYM PBX->TERMINAL   OP:00   LG:02 16   VALUE: ",
           "\nCreate\tcontext\n{\n\tServer\t\t(reserved_error)\n}\n");
}

TEST_F(Frames, SeriesOfAnUnknownClassIsForgotten) {
    take("0a 00 0c 81 02 16 04 00 07 37 03 41", 'S');
    take("04 00 0c 00 42 43", 'S');
    EXPECT_TRUE(unknown_class);
    expect(FrameKind::series,
           "\n//>>>>>>>> RYM PBX->TERMINAL   OP:04   LG:02 16   VALUE: 00 07 37 03 41 42 43 ",
           "\nError class lookup table ptr");
    EXPECT_EQ(decoding.session().object.segments->filled, 0U);
}

TEST_F(Frames, MessagesOfTheSets) {
    take("02 00 06 73", 'S');
    expect(FrameKind::zt, "\n//|||||||| ZT PBX->TERMINAL   OP:06   LG:00 02   VALUE: 73 ",
           "\nPbx_ZT_message\n{\n\t- subdev reset\n\n}\n");
    EXPECT_EQ(out.text.view().substr(out.item_begin, out.item_end - out.item_begin), "\n\t- subdev reset\n");
    take("04 00 0f 05 11 21", 'R');
    expect(FrameKind::zt, "\n//######## ZT TERMINAL->PBX   OP:0F   LG:00 04   VALUE: 05 11 21 ",
           "\nTerm_ZT_message\n{\n\t- osi: pclink1 status tx_prepare, rx_rcv\n\n}\n");
}

TEST_F(Frames, SeveralMessagesOfTheSets) {
    take("02 00 0f 04 04 00 0f 01 02 00 03 00 18 68 69", 'S');
    expect(FrameKind::zt,
           "\n//|||||||| ZT PBX->TERMINAL   OP:0F   LG:00 02   VALUE: 04 04 00 0F 01 02 00 03 00 18 68 69 ",
           "\nPbx_ZT_message\n{\n\t- osi: pclink1 bouclage off\n\t- osi: write memory external\n\tDBG - "
           "hi\n\n}\n");
}

TEST_F(Frames, NoBytes) {
    take("", 'R');
    expect(FrameKind::zt,
           "\n//######## ZT TERMINAL->PBX   OP:00   LG:00 00   VALUE: ", "\nTerm_ZT_message\n{\n\n}\n");
}

std::string announced;

TEST_F(Frames, ObjectProtocolMessagesAmongThoseOfTheSets) {
    decoding.session().object.on_decoded = [](std::string_view text) { announced += text; };
    announced.clear();
    // A type byte with bit 7 set is no operation 0x16, but the same route.
    take("03 00 96 04 07", 'R');
    expect(FrameKind::zt, "\n//######## ZT TERMINAL->PBX   OP:96   LG:00 03   VALUE: 04 07 ",
           "\nTerm_ZT_message\n{\n\tRYM - presentation "
           "server\nNotify\tOFFHOOK\n{\n\tServer\t\t(reserved_error)\n}\n\n}\n");
    EXPECT_EQ(announced, "\nNotify\tOFFHOOK\n{\n\tServer\t\t(reserved_error)\n}\n");
}

TEST_F(Frames, UnknownClassAmongMessagesOfTheSets) {
    take("02 00 0f 04 03 00 16 02 04", 'S');
    EXPECT_TRUE(unknown_class);
    EXPECT_EQ(out.kind, FrameKind::zt);
}

TEST(vDsipTLV, Lines) {
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
        vDsipTLV("banner", Message::without_record(data), text);
        EXPECT_EQ(text.view(), row.text);
    }
}

}  // namespace
}  // namespace ztdecode::testing
