#include "object/command.hpp"

#include <gtest/gtest.h>

#include <string>

#include "object/names.hpp"
#include "support/support.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

using namespace object;

std::string with(Decoder decoder, Session& session, const char* hex) {
    const auto data = bytes(hex);
    const Message m(data);
    Text out;
    Decoding d(session, m, out);
    try {
        decoder(d);
    } catch (const UnknownClass&) {
        out.add("[unknown class]");
    }
    return std::string(out.view());
}

std::string pbx(Session& session, const char* hex) { return with(object::from_system, session, hex); }

std::string term(Session& session, const char* hex) { return with(object::to_system, session, hex); }

std::string pbx(const char* hex) {
    TestSession d;
    return pbx(d.session(), hex);
}

std::string term(const char* hex) {
    TestSession d;
    return term(d.session(), hex);
}

TEST(Command, Methods) {
    EXPECT_EQ(
        pbx("16 00 84 00 11 26 01 05"),
        "\nCreate\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0011\n\tx              \t5\n}\n");
    EXPECT_EQ(pbx("16 01 84 12 ab"),
              "\nDelete\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x12AB\n}\n");
    EXPECT_EQ(pbx("16 02 84 00 07 37 03 41 42 43"),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          "
              "\t\"ABC\"\n}\n");
    EXPECT_EQ(pbx("15 03 01 62 00 64 00"),
              "\nGetProperty\tterminal\n{\n\tServer\t\tCall\n\tserialnum      \t\n\tsoftversion    \t\n}\n");
    EXPECT_EQ(pbx("16 06 82 00 12 03 8a 03 04 41 69 64 65"),
              "\nInsertItem\tlistbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0012\n\tIndex\t03"
              "\n\tDlabel         \tIdx:3  \"Aide\"\n}\n");
    EXPECT_EQ(pbx("16 05 82 00 12 01"),
              "\nDeleteItem\tlistbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0012\n\tIndex\t01\n}");
}

TEST(Command, ItemMethodsHaveAnObjectIdInEveryClass) {
    EXPECT_EQ(pbx("15 06 06 03 05 d0 27 01 aa"),
              "\nInsertItem\tscreen\n{\n\tServer\t\tCall\n\tObjectId\t0x0305\n\tIndex\tD0\n\ty              "
              "\t170\n}\n");
    // Properties of a deleted item are not looked at.
    EXPECT_EQ(pbx("15 05 06 03 05 d0 27 01 aa"),
              "\nDeleteItem\tscreen\n{\n\tServer\t\tCall\n\tObjectId\t0x0305\n\tIndex\tD0\n}");
}

TEST(Command, StaticClassesHaveNoObjectId) {
    EXPECT_EQ(pbx("16 02 06 14 01 08"),
              "\nSetProperty\tscreen\n{\n\tServer\t\tPresentation\n\tcontrast       \t8\n}\n");
    EXPECT_EQ(pbx("16 00 0e 22 01 78"),
              "\nCreate\twidgets_default\n{\n\tServer\t\tPresentation\n\tchecked        \t\"x\"\n}\n");
}

TEST(Command, AcknowledgementAsked) {
    EXPECT_EQ(pbx("16 82 06 15 01 01"),
              "\nSetProperty\tscreen\tAck\n{\n\tServer\t\tPresentation\n\tclearscreen    \tTRUE\n}\n");
    EXPECT_EQ(pbx("15 85 8b 10 66 13"),
              "\nDeleteItem\tdialogbox\tAck\n{\n\tServer\t\tCall\n\tObjectId\t0x1066\n\tIndex\t13\n}");
}

TEST(Command, Server) {
    EXPECT_EQ(pbx("15 00 08"), "\nCreate\tAOMV\n{\n\tServer\t\tCall\n}\n");
    EXPECT_EQ(pbx("16 00 08"), "\nCreate\tAOMV\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(pbx("95 00 08"), "\nCreate\tAOMV\n{\n\tServer\t\t(reserved_error)\n}\n");
    EXPECT_EQ(pbx("00 00 08"), "\nCreate\tAOMV\n{\n\tServer\t\t(reserved_error)\n}\n");
}

TEST(Command, InvalidMethods) {
    EXPECT_EQ(pbx("16 04 02 35"), "\nInvalid_method 0x04 (PBX->TX)");
    EXPECT_EQ(pbx("16 84 02 35"), "\nInvalid_method 0x04 (PBX->TX)");
    EXPECT_EQ(pbx("16 07 84 00 01"), "\nInvalid_method 0x07 (PBX->TX)");
    EXPECT_EQ(pbx("16 7f 04"), "\nInvalid_method 0x7F (PBX->TX)");
    EXPECT_EQ(pbx("16 ff 04"), "\nInvalid_method 0x7F (PBX->TX)");
}

TEST(Command, GetPropertyPassesValuesOver) {
    EXPECT_EQ(pbx("15 83 8f 0d dc 36 02 ec 1e 36 02 7f a3"),
              "\nGetProperty\ticonbox\tAck\n{\n\tServer\t\tCall\n\tObjectId\t0x0DDC\n\ticon           "
              "\t\n\ticon           \t\n}\n");
}

TEST(Command, ShorterThanItsHeader) {
    // The header's missing bytes read as 0; there are no properties.
    EXPECT_EQ(pbx(""), "\nCreate\tcontext\n{\n\tServer\t\t(reserved_error)\n}\n");
    EXPECT_EQ(pbx("16"), "\nCreate\tcontext\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(pbx("16 02"), "\nSetProperty\tcontext\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(pbx("16 02 84"),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0000\n}\n");
    EXPECT_EQ(pbx("16 02 84 01"),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0100\n}\n");
    EXPECT_EQ(pbx("16 06 82 01 02"),
              "\nInsertItem\tlistbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0102\n\tIndex\t00\n}\n");
    EXPECT_EQ(pbx("16 05 82"),
              "\nDeleteItem\tlistbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0000\n\tIndex\t00\n}");
}

TEST(Command, BytesBehindTheMessageAsTheyStand) {
    TestSession d;
    const auto data = bytes("16 02 84 00 07 37 03 41 42 43");
    const Message m(data.data(), 3, data.size());
    Text out;
    Decoding decoding(d.session(), m, out);
    object::from_system(decoding);
    EXPECT_EQ(out.view(), "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n}\n");
}

TEST(Command, LastPropertyLongerThanTheMessage) {
    EXPECT_EQ(pbx("16 02 84 00 07 36 04 01 02"),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\ticon           "
              "\t0x01020000\n}\n");
    EXPECT_EQ(
        pbx("16 02 84 00 07 26"),
        "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tx              \t0\n}\n");
}

TEST(Command, AppendsToTheText) {
    TestSession d;
    const auto data = bytes("15 05 82 00 12 01");
    const Message m(data);
    Text out;
    out.add("call server");
    Decoding decoding(d.session(), m, out);
    object::from_system(decoding);
    EXPECT_EQ(out.view(),
              "call server\nDeleteItem\tlistbox\n{\n\tServer\t\tCall\n\tObjectId\t0x0012\n\tIndex\t01\n}");
}

TEST(Command, UnknownClasses) {
    for (const char* hex : {"16 02 04", "16 00 0a 00 00", "16 03 0b", "16 05 0f 00 00 01", "16 02 7f",
                            "16 82 9b", "16 02 fe", "16 02 ff"}) {
        TestSession d;
        EXPECT_EQ(pbx(d.session(), hex), "\nError class lookup table ptr[unknown class]") << hex;
        EXPECT_EQ(*d.session().object.properties, nullptr);
    }
    // The method is looked at first.
    EXPECT_EQ(pbx("16 04 04"), "\nInvalid_method 0x04 (PBX->TX)");
}

TEST(Command, MakesItsClassTheCurrentOne) {
    TestSession d;
    EXPECT_EQ(*d.session().object.properties, nullptr);
    pbx(d.session(), "16 02 06");
    EXPECT_EQ(*d.session().object.properties, Tab_screen);
    pbx(d.session(), "16 05 82 00 12 01");
    EXPECT_EQ(*d.session().object.properties, Tab_listbox);
    pbx(d.session(), "16 04 84");
    EXPECT_EQ(*d.session().object.properties, Tab_listbox);
}

TEST(Event, TerminalEvents) {
    EXPECT_EQ(term("16 04 02 35"),
              "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n\tkeychar         \"5\"\n}\n");
    EXPECT_EQ(term("15 84 02 35"), "\nNotify\tKEY_PRESS\n{\n\tServer\t\tCall\n\tkeychar         \"5\"\n}\n");
    EXPECT_EQ(term("21 04 07"), "\nNotify\tOFFHOOK\n{\n\tServer\t\t(reserved_error)\n}\n");
    EXPECT_EQ(term("16 04 20 01 02"), "\nNotify\t(reserved_error)\n{\n\tServer\t\tPresentation\n}\n");
}

TEST(Event, EventsThatShowNoBody) {
    EXPECT_EQ(term("16 04 00 01 02"), "\nNotify\tCONTEXT_SWITCH\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(term("16 04 06 01 02"), "\nNotify\tONHOOK\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(term("16 04 07 01 02"), "\nNotify\tOFFHOOK\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(term("16 04 1f 01 02"), "\nNotify\tARP_SPOOFING\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(term("16 04 22 01 02"), "\nNotify\tQOS_TICKET\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(term("16 04 9c 00 05 01 02"),
              "\nNotify\tIME_REMOTEOPEN\n{\n\tServer\t\tPresentation\n\tobjectId\t0x0005\n}\n");
    EXPECT_EQ(term("16 04 82 00 05 01 02"),
              "\nNotify\tLISTBOX_FIRST\n{\n\tServer\t\tPresentation\n\tobjectId\t0x0005\n}\n");
}

TEST(Event, WidgetEvents) {
    EXPECT_EQ(
        term("16 04 81 00 12 2b 01 02"),
        "\nNotify\tLISTBOX\n{\n\tServer\t\tPresentation\n\tobjectId\t0x0012\n\tactive         \t2\n}\n");
    EXPECT_EQ(term("16 04 88 ab cd"),
              "\nNotify\tCHECKBOX\n{\n\tServer\t\tPresentation\n\tobjectId\t0xABCD\n}\n");
    EXPECT_EQ(term("16 04 ff 00 01"),
              "\nNotify\t(reserved_error)\n{\n\tServer\t\tPresentation\n\tobjectId\t0x0001\n}\n");
}

TEST(Event, InvalidMethods) {
    EXPECT_EQ(term("16 02 02 35"), "\nInvalid_method 0x02 (TX->PBX)");
    EXPECT_EQ(term("16 80 02 35"), "\nInvalid_method 0x00 (TX->PBX)");
    EXPECT_EQ(term("16 05 94 00 01"), "\nInvalid_method 0x05 (TX->PBX)");
    EXPECT_EQ(term(""), "\nInvalid_method 0x00 (TX->PBX)");
}

TEST(Event, ShorterThanItsHeader) {
    EXPECT_EQ(term("16 04"), "\nNotify\tCONTEXT_SWITCH\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(term("16 04 02"), "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(term("16 04 81"), "\nNotify\tLISTBOX\n{\n\tServer\t\tPresentation\n\tobjectId\t0x0000\n}\n");
    EXPECT_EQ(term("16 04 81 05"), "\nNotify\tLISTBOX\n{\n\tServer\t\tPresentation\n\tobjectId\t0x0500\n}\n");
    EXPECT_EQ(term("16 04 94"), "\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tPresentation\n}\n");
}

TEST(Event, GetPropertyResultLooksItsClassUp) {
    TestSession d;
    EXPECT_EQ(term(d.session(), "15 04 94 00 01 62 06 30 30 38 30 41 31 03 02 05 dc"),
              "\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tCall\n\tserialnum      \t\"0080A1\"\n\tmtu      "
              "      \t0x05DC\n}\n");
    EXPECT_EQ(*d.session().object.properties, Tab_terminal);
    EXPECT_EQ(term(d.session(), "15 04 94 00 0e 22 01 78"),
              "\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tCall\n\tchecked        \t\"x\"\n}\n");
}

TEST(Event, GetPropertyResultKeepsTheClass) {
    TestSession d;
    // None was ever looked up.
    EXPECT_EQ(term(d.session(), "15 04 94 01 01 62 01 41"),
              "\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tCall\n}\n");
    pbx(d.session(), "16 03 84 00 07 37 00");
    const char* label = "\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tCall\n\tlabel          \t\"A\"\n}\n";
    EXPECT_EQ(term(d.session(), "15 04 94 01 01 37 01 41"), label);  // byte 3 is not 0
    EXPECT_EQ(term(d.session(), "15 04 94 00 0f 37 01 41"), label);  // a class of 15 or above
    EXPECT_EQ(term(d.session(), "15 04 94 00 82 37 01 41"), label);
}

TEST(Event, GetPropertyResultOfAnUnknownClass) {
    for (const char* hex :
         {"15 04 94 00 04 62 01 41", "15 04 94 00 0a", "15 04 94 00 0b", "15 00 94 00 04"}) {
        EXPECT_EQ(term(hex), "\nError class lookup table ptr[unknown class]") << hex;
    }
    EXPECT_EQ(term("15 04 94 01 04"), "\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tCall\n}\n");
}

TEST(Event, GetPropertyResultLooksItsClassUpBeforeTheMethod) {
    TestSession d;
    EXPECT_EQ(term(d.session(), "15 02 94 00 06"), "\nInvalid_method 0x02 (TX->PBX)");
    EXPECT_EQ(*d.session().object.properties, Tab_screen);
}

TEST(Event, ErrorOfAnUnknownClass) {
    EXPECT_EQ(term("16 04 0b 00 01 00 04"),
              "\nNotify\tERROR_CREATE\n{\n\tServer\t\tPresentation"
              "\n\terrorcode       UNKNOWN_CLASS"
              "\n\tmethod          Create"
              "\nError class lookup table ptr[unknown class]");
}

std::string long_event(const std::vector<std::uint8_t>& data) {
    TestSession d;
    const Message m = Message::without_record(data);
    Text out;
    Decoding decoding(d.session(), m, out);
    object::to_system(decoding);
    return std::string(out.view());
}

TEST(Event, BodyLengthInSixteenBits) {
    std::vector<std::uint8_t> data = bytes("16 04 02");
    data.resize(3 + 65536, 'x');
    EXPECT_EQ(long_event(data), "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n}\n");
    data.push_back('y');
    EXPECT_EQ(long_event(data),
              "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n\tkeychar         \"x\"\n}\n");
}

TEST(Command, LongerThanARecord) {
    TestSession d;
    std::vector<std::uint8_t> data = bytes("16 02 84 00 07 37 a0 00");
    data.resize(data.size() + 0x2000, 'x');
    for (const std::uint8_t byte : bytes("26 01 05")) data.push_back(byte);
    Text out;
    const Message m = Message::without_record(data);
    Decoding decoding(d.session(), m, out);
    object::from_system(decoding);
    EXPECT_EQ(
        out.view(),
        "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          \t\"" +
            std::string(0x2000, 'x') + "\"\n\tx              \t5\n}\n");
}

}  // namespace
}  // namespace ztdecode::testing
