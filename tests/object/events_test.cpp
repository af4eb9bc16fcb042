#include "object/events.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "object/lookup.hpp"
#include "object/names.hpp"
#include "support/support.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

using namespace object;

// What an event of this code shows for a body.
std::string body_of(Session& session, std::uint8_t event, const std::vector<std::uint8_t>& data) {
    const Message m(data);
    Text out;
    Decoding d(session, m, out);
    event_body(d, Byte{event});
    return std::string(out.view());
}

std::string body_of(int event, const char* hex) {
    TestSession d;
    return body_of(d.session(), static_cast<std::uint8_t>(event), bytes(hex));
}

TEST(EventBody, Keys) {
    for (const int event : {0x02, 0x03, 0x04, 0x05, 0x08}) {
        EXPECT_EQ(body_of(event, "35"), "\n\tkeychar         \"5\"");
        EXPECT_EQ(body_of(event, "ee 84 92"), "\n\tkeychar         \"\\uE112\"\t\"<Right>\"");
        EXPECT_EQ(body_of(event, "c3 a9"), "\n\tkeychar         \"\xC3\xA9\"\t\"<" + e_acute() + ">\"");
        EXPECT_EQ(body_of(event, "0d 80"), "\n\tkeychar         \"\\CRERR_UTF8_CHAR\"");
    }
}

TEST(EventBody, Errors) {
    for (const int event : {0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x1E}) {
        EXPECT_EQ(body_of(event, "00 04 02 84 00 07 37 00 00 05 00 00 00 01 74 6f 6f 20 6c 6f 6e 67"),
                  "\n\terrorcode       UNKNOWN_PROPERTY"
                  "\n\tmethod          SetProperty"
                  "\n\tclass           textbox"
                  "\n\tobjectid        0x0007"
                  "\n\tproperty        label\t//0x37"
                  "\n\tindex           0"
                  "\n\tlength          0x0005"
                  "\n\tvalue           0x00000001"
                  "\n\ttxt             \"too long\"");
    }
}

TEST(EventBody, ErrorFields) {
    EXPECT_EQ(body_of(0x0B, "aa 82 06 82 ab cd ff fe 12 34 de ad be ef 41 00 e9 7f 20 7e"),
              "\n\terrorcode       INTERNAL"
              "\n\tmethod          InsertItem"
              "\n\tclass           listbox"
              "\n\tobjectid        0xABCD"
              "\n\tproperty        not relevant"
              "\n\tindex           254"
              "\n\tlength          0x1234"
              "\n\tvalue           0xDEADBEEF"
              "\n\ttxt             \"A$$$ ~\"");
    EXPECT_EQ(body_of(0x0B, "00 77 2a 06 00 00 99 03 00 04 00 00 00 00"),
              "\n\terrorcode       (reserved_error)"
              "\n\tmethod          (reserved_error)"
              "\n\tclass           screen"
              "\n\tobjectid        0x0000"
              "\n\tproperty        (property_error)\t//0x99"
              "\n\tindex           3"
              "\n\tlength          0x0004"
              "\n\tvalue           0x00000000"
              "\n\ttxt             \"\"");
}

TEST(EventBody, ErrorTextBeginsAtByte14) {
    const std::string head =
        "\n\terrorcode       INVALID_METHOD"
        "\n\tmethod          Create"
        "\n\tclass           context"
        "\n\tobjectid        0x0000"
        "\n\tproperty        objectid\t//0x00"
        "\n\tindex           0"
        "\n\tlength          0x0000"
        "\n\tvalue           0x00000000";
    EXPECT_EQ(body_of(0x0A, "00 00 00 00 00 00 00 00 00 00 00 00 00 00"), head + "\n\ttxt             \"\"");
    EXPECT_EQ(body_of(0x0A, "00 00 00 00 00 00 00 00 00 00 00 00 00 00 41"),
              head + "\n\ttxt             \"A\"");
    // Fields of a short body read as 0.
    EXPECT_EQ(body_of(0x0A, "00"), head + "\n\ttxt             \"\"");
}

TEST(EventBody, ErrorMakesItsClassTheCurrentOne) {
    TestSession d;
    body_of(d.session(), 0x0D, bytes("00 00 02 8c 00 00 38 00 00 00 00 00 00 00"));
    EXPECT_EQ(*d.session().object.properties, Tab_sliderbar);
}

TEST(EventBody, ErrorOfAnUnknownClass) {
    TestSession d;
    const auto data = bytes("00 01 00 04 00 00");
    const Message m(data);
    Text out;
    Decoding decoding(d.session(), m, out);
    EXPECT_THROW(event_body(decoding, Byte{0x0A}), UnknownClass);
    EXPECT_EQ(out.view(),
              "\n\terrorcode       UNKNOWN_CLASS"
              "\n\tmethod          Create"
              "\nError class lookup table ptr");
    EXPECT_EQ(*d.session().object.properties, nullptr);
}

TEST(EventBody, DevicePresence) {
    EXPECT_EQ(body_of(0x15, "01 01"), "\n\tvalue           BT handset\n\tstate           plugged");
    EXPECT_EQ(body_of(0x15, "02 00"),
              "\n\tvalue           BT headset (should not be used on rymplus)\n\tstate           unplugged");
    EXPECT_EQ(body_of(0x15, "03 ff"), "\n\tvalue           Jack\n\tstate           plugged");
    EXPECT_EQ(body_of(0x15, "04 00"), "\n\tvalue           USB\n\tstate           unplugged");
    EXPECT_EQ(body_of(0x15, "00 01"), "\n\tvalue           device unknown\n\tstate           plugged");
    EXPECT_EQ(body_of(0x15, "05 00"), "\n\tvalue           device unknown\n\tstate           unplugged");
    EXPECT_EQ(body_of(0x15, "03"), "\n\tvalue           Jack\n\tstate           unplugged");
}

TEST(EventBody, KeyLine) {
    EXPECT_EQ(body_of(0x16, "01 01"), "\n\tvalue           BT handset");
    EXPECT_EQ(body_of(0x16, "02"), "\n\tvalue           BT headset (should not be used on rymplus)");
    EXPECT_EQ(body_of(0x16, "03"), "\n\tvalue           Jack");
    EXPECT_EQ(body_of(0x16, "04"), "\n\tvalue           device unknown");
    EXPECT_EQ(body_of(0x16, "00"), "\n\tvalue           device unknown");
}

TEST(EventBody, Bluetooth) {
    EXPECT_EQ(body_of(0x18, "12 ab 0c"), "\n\tobjectid        0x12AB\n\tvalue           0x0C");
    for (const int event : {0x19, 0x1A, 0x1B}) {
        EXPECT_EQ(body_of(event, "9f 01"), "\n\tvalue           0x9F");
    }
}

TEST(EventBody, LocalApplication) {
    EXPECT_EQ(body_of(0x1C, "01 00 01"),
              "\n\tstarted         true\n\tinterruptible   false\n\tid              usermenu");
    EXPECT_EQ(body_of(0x1C, "00 01 02"),
              "\n\tstarted         false\n\tinterruptible   true\n\tid              btconfig");
    EXPECT_EQ(body_of(0x1C, "02 80 03"),
              "\n\tstarted         true\n\tinterruptible   true\n\tid              audioconfig");
    EXPECT_EQ(body_of(0x1C, "00 00 04"),
              "\n\tstarted         false\n\tinterruptible   false\n\tid              speakerphone");
    EXPECT_EQ(body_of(0x1C, "00 00 05"),
              "\n\tstarted         false\n\tinterruptible   false\n\tid              unknown");
    EXPECT_EQ(body_of(0x1C, "01"),
              "\n\tstarted         true\n\tinterruptible   false\n\tid              unknown");
}

TEST(EventBody, Reset) {
    EXPECT_EQ(body_of(0x01, "12 34"), "\n\tobjectId\t0x1234");
    EXPECT_EQ(body_of(0x01, "12"), "\n\tobjectId\t0x1200");
    EXPECT_EQ(
        body_of(
            0x01,
            "00 00 3e 01 01 59 01 02 58 01 03 62 01 41 63 01 42 64 01 43 67 04 00 00 00 02 66 04 01 00 00 00 "
            "65 04 00 80 00 00 46 01 44 47 01 45 53 01 04 7d 01 46 7e 01 05 7f 01 47 28 01 00"),
        "\n\tobjectId\t0x0000"
        "\n\tState          \tTRUE"
        "\n\tlink_type      \t2"
        "\n\tterm_type      \t3"
        "\n\tserialnum      \t\"A\""
        "\n\thardversion    \t\"B\""
        "\n\tsoftversion    \t\"C\""
        "\n\treset_cause    \t0x00000002"
        "\n\tram_size       \t0x01000000"
        "\n\trom_size       \t0x00800000"
        "\n\tcustversion    \t\"D\""
        "\n\tL10Nversion    \t\"E\""
        "\n\tringings_count \t4"
        "\n\tbinary_suffix  \t\"F\""
        "\n\tbinary_count   \t5"
        "\n\tSIPCversion    \t\"G\""
        "\n\t(property_error)\t0x00");
}

struct Row {
    std::uint8_t event;
    const char* hex;
    std::string text;
};

TEST(EventBody, Properties) {
    const Row rows[] = {
        {0x80, "2b 01 02 85 02 02 6f 6b", "\n\tactive         \t2\n\tDvalue         \tIdx:2  \"ok\""},
        {0x81, "2b 01 02 85 02 04 6d 65 6e 75", "\n\tactive         \t2\n\tDvalue         \tIdx:2  \"menu\""},
        {0x87, "38 03 31 32 33", "\n\tvalue          \t\"123\""},
        {0x8C, "38 04 00 00 00 32", "\n\tvalue          \t0x00000032"},
        {0x99, "21 01 41 1e 01 42 05 01 07",
         "\n\tname           \t\"A\"\n\taddress        \t\"B\"\n\ttype           \t7"},
        {0x9A, "1e 01 42 54 04 00 24 04 04", "\n\taddress        \t\"B\"\n\tcod            \t0x00240404"},
        {0x9B, "1e 01 42 21 01 41", "\n\taddress        \t\"B\"\n\tname           \t\"A\""},
        {0x9F, "05 01 01 6f 02 00 02", "\n\ttype           \t1\n\tlist_type      \t0x0002"},
        {0xA0, "05 01 03", "\n\ttype           \t3"},
        {0xA1, "28 01 01", "\n\tvisible        \tTRUE"},
        // a property of another table
        {0xA1, "05 01 01", "\n\t(property_error)\t0x01"},
    };
    for (const auto& row : rows) EXPECT_EQ(body_of(row.event, row.hex), row.text) << int{row.event};
}

TEST(EventBody, ListBoxLengthsAreOneByte) {
    std::vector<std::uint8_t> data = bytes("85 01 85");
    data.insert(data.end(), 133, 'x');
    for (const std::uint8_t byte : bytes("2b 01 02")) data.push_back(byte);
    TestSession d;
    EXPECT_EQ(body_of(d.session(), 0x81, data),
              "\n\tDvalue         \tIdx:1  \"" + std::string(133, 'x') + "\"\n\tactive         \t2");
    // Those of a tab box are not: 0x578 bytes, of which the message has 135 less one.
    EXPECT_EQ(body_of(d.session(), 0x80, data).substr(0, 40),
              ("\n\tDvalue         \tIdx:1  \"" + std::string(133, 'x')).substr(0, 40));
}

TEST(EventBody, GetPropertyResult) {
    TestSession d;
    EXPECT_EQ(body_of(d.session(), 0x94, bytes("62 01 41")), "");
    d.session().change(d.session().object.properties) = Tab_terminal;
    EXPECT_EQ(body_of(d.session(), 0x94, bytes("62 01 41 03 02 05 dc")),
              "\n\tserialnum      \t\"A\"\n\tmtu            \t0x05DC");
    d.session().change(d.session().object.properties) = Tab_callstate;
    EXPECT_EQ(body_of(d.session(), 0x94, bytes("8e 05 01 41 62 01 41")),
              "\n\tDname          \tIdx:5  \"A\"\n\t(property_error)\t0x41");
}

// Codes with a row of their own; every other one shows nothing.
TEST(EventBody, EventsWithoutBody) {
    const std::vector<int> with_body = {0x01, 0x02, 0x03, 0x04, 0x05, 0x08, 0x0A, 0x0B, 0x0C, 0x0D,
                                        0x0E, 0x15, 0x16, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1E, 0x80,
                                        0x81, 0x87, 0x8C, 0x94, 0x99, 0x9A, 0x9B, 0x9F, 0xA0, 0xA1};
    TestSession d;
    d.session().change(d.session().object.properties) = Tab_terminal;
    for (int event = 0; event < 256; ++event) {
        const bool shows = std::find(with_body.begin(), with_body.end(), event) != with_body.end();
        const auto body = bytes("00 01 00 00 00 00 00 00 00 00 00 00 00 00 00");
        EXPECT_EQ(!body_of(d.session(), static_cast<std::uint8_t>(event), body).empty(), shows) << event;
    }
}

TEST(EventBody, DebugTrace) {
    TestSession d;
    body_of(d.session(), 0x02, bytes("35 36"));
    EXPECT_EQ(d.output, "");
    d.session().switches.debug = true;
    body_of(d.session(), 0x02, bytes("35 36"));
    body_of(d.session(), 0x88, bytes("ff"));
    EXPECT_EQ(d.output,
              "vDecodeEvent(bEvent=0x02, ptr[0]= 0x35, len=2)\n"
              "vDecodeEvent(bEvent=0x88, ptr[0]= 0xff, len=1)\n");
}

}  // namespace
}  // namespace ztdecode::testing
