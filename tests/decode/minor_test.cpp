#include "decode/routes/minor.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

using namespace std::string_literals;

TEST(Minor, Servers) {
    TestSession d;
    EXPECT_EQ(d.with(cs2dhs, "15 04 07"), "call server\nNotify\tOFFHOOK\n{\n\tServer\t\tCall\n}\n");
    EXPECT_EQ(d.status, Status::recognised);
    EXPECT_EQ(d.with(dhs2cs, "15 05 82 00 12 01"),
              "call server\nDeleteItem\tlistbox\n{\n\tServer\t\tCall\n\tObjectId\t0x0012\n\tIndex\t01\n}");
    EXPECT_EQ(d.status, Status::recognised);
    EXPECT_EQ(
        d.with(prs2dhs, "16 04 02 35"),
        "presentation server\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n\tkeychar         \"5\"\n}\n");
    EXPECT_EQ(d.status, Status::recognised);
    EXPECT_EQ(d.with(dhs2prs, "16 02 84 00 07 37 03 41 42 43"),
              "presentation server\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
              "\n\tlabel          \t\"ABC\"\n}\n");
    EXPECT_EQ(d.status, Status::recognised);
}

TEST(Minor, ServersThroughTheDispatcher) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("15 04 06"), "\tRYM - call server\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n");
    EXPECT_EQ(d.from_dhs("15 04 06"), "\tRYM - call server\nInvalid_method 0x04 (PBX->TX)");
    EXPECT_EQ(d.to_dhs("16 02 02"), "\tRYM - presentation server\nInvalid_method 0x02 (TX->PBX)");
    EXPECT_EQ(d.from_dhs("16 00 08"),
              "\tRYM - presentation server\nCreate\tAOMV\n{\n\tServer\t\tPresentation\n}\n");
    // With bit 7 the type byte is the same route, but no server.
    EXPECT_EQ(d.from_dhs("96 00 08"),
              "\tRYM - presentation server\nCreate\tAOMV\n{\n\tServer\t\t(reserved_error)\n}\n");
}

TEST(Minor, UnknownClass) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("15 02 04 01"), "\tRYM - call server\nError class lookup table ptr");
    EXPECT_EQ(d.outcome, Outcome::unknown_class);
    EXPECT_EQ(d.to_dhs("16 04 94 00 0b"), "\tRYM - presentation server\nError class lookup table ptr");
    EXPECT_EQ(d.outcome, Outcome::unknown_class);
    // The session goes on, without a current class.
    EXPECT_EQ(d.to_dhs("16 04 94 01 00 62 01 41"),
              "\tRYM - presentation server\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(d.outcome, Outcome::decoded);
}

TEST(Minor, TheClassOfARequestIsThatOfItsAnswer) {
    TestSession d;
    d.from_dhs("16 03 86 00 05 38 00");
    EXPECT_EQ(d.to_dhs("16 04 94 00 86 38 02 31 32"),
              "\tRYM - presentation server\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tPresentation"
              "\n\tvalue          \t\"12\"\n}\n");
}

class Announced : public ApplicationText {
  public:
    void set(std::string_view text) override { texts.emplace_back(text); }
    void add(std::string_view text) override { texts.push_back("added " + std::string(text)); }
    void add_item(std::string_view item) override { texts.push_back("item " + std::string(item)); }

    std::vector<std::string> texts;
};

TEST(Minor, ApplicationTextIsThatOfTheMessage) {
    TestSession d;
    Announced announced;
    d.session().object.application = &announced;
    d.to_dhs("15 04 06");
    d.from_dhs("18 68 69");
    d.from_dhs("0b 03 16 00 08 03 15 02 04");
    d.from_dhs("16 02 84 00 07 37 04 41 ee 00 80 26 01 05");
    const std::vector<std::string> expected = {"\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n",
                                               "\nCreate\tAOMV\n{\n\tServer\t\tPresentation\n}\n",
                                               "\nError class lookup table ptr",
                                               // with what the message's own text loses at the zero byte
                                               "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation"
                                               "\n\tObjectId\t0x0007\n\tlabel          \t\"A\xEE\0\x80\""
                                               "\t//\"A<Corvane >\"\n\tx              \t5\n}\n"s};
    EXPECT_EQ(announced.texts, expected);
}

TEST(Minor, Debug) {
    for (const auto decoder : {dbg2dhs, dhs2dbg}) {
        TestSession d;
        EXPECT_EQ(d.with(decoder, "18 68 69 0a"), "hi\n");
        EXPECT_EQ(d.status, Status::recognised);
        EXPECT_EQ(d.with(decoder, "18"), "");
        EXPECT_EQ(d.status, Status::recognised);
        EXPECT_EQ(d.with(decoder, "18 68 00 69"), "h");
        EXPECT_EQ(d.with(decoder, "18 00 69"), "");
        EXPECT_EQ(d.with(decoder, "18 01 7f 80 ff 25 73"), "\x01\x7F\x80\xFF%s");
    }
    TestSession d;
    EXPECT_EQ(d.to_dhs("18"), "\tDBG - ");
    EXPECT_EQ(d.to_dhs("18 68 69 0a"), "\tDBG - hi\n");
    EXPECT_EQ(d.from_dhs("18 68 69 0a 0a"), "\tDBG - hi\n");
}

struct Row {
    const char* hex;
    const char* text;
};

TEST(Minor, OsiToSystem) {
    const Row rows[] = {
        {"0f 00 7f", "osi: read memory, value= 7f"},
        {"0f 00 0a 01", "osi: read memory, value= 0a"},
        {"0f", "osi: read memory, value= 00"},
        {"0f 01 02", "??"},
        {"0f 02", "osi: read vorna synchro"},
        {"0f 03", "osi: pclink1 bouclage ON ack"},
        {"0f 04", "osi: pclink1 bouclage off ack"},
        {"0f 05 10 20", "osi: pclink1 status tx_idle, rx_idle"},
        {"0f 05 11 21", "osi: pclink1 status tx_prepare, rx_rcv"},
        {"0f 05 12 22", "osi: pclink1 status tx_lng, rx_sum"},
        {"0f 05 13 23", "osi: pclink1 status tx_send, rx_wait"},
        {"0f 05 14 24", "osi: pclink1 status tx_sum, unknown"},
        {"0f 05 15 1f", "osi: pclink1 status unknown, unknown"},
        {"0f 05 0f", "osi: pclink1 status unknown, unknown"},
        {"0f 06 00 01", "osi: pclink2 status: wait_connection, connected"},
        {"0f 06 01 00", "osi: pclink2 status: idle, not connected"},
        {"0f 06 02 02", "osi: pclink2 status: send_zt3, not connected"},
        {"0f 06 03 01", "osi: pclink2 status: send_wait_ack, connected"},
        {"0f 06 04 81", "osi: pclink2 status: wait_ack, not connected"},
        {"0f 06 05 01", "osi: pclink2 status: send_ack, connected"},
        {"0f 06 06 01", "osi: pclink2 status: send_pc2, connected"},
        {"0f 06 07 01", "osi: pclink2 status: wfs_idle, connected"},
        {"0f 06 08 01", "osi: pclink2 status: wfs_send_ack, connected"},
        {"0f 06 09", "osi: pclink2 status: unknown, not connected"},
        {"0f 07", "osi: cti status"},
        {"0f 08", "??"},
        {"0f 7f", "??"},
        {"0f 82", "osi: read vorna synchro"},
        {"0f 88", "??"},
    };
    for (const auto& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(osi2dhs, row.hex), row.text) << row.hex;
        EXPECT_EQ(d.status, Status::none);
        EXPECT_EQ(d.to_dhs(row.hex), std::string("\t- ") + row.text);
    }
}

TEST(Minor, OsiFromSystem) {
    const Row rows[] = {
        {"0f 00 01", "osi: read memory internal"},
        {"0f 00 02", "osi: read memory external"},
        {"0f 00 03", "osi: read memory code"},
        {"0f 00 04", "osi: read memory unknown"},
        {"0f", "osi: read memory unknown"},
        {"0f 01 01", "osi: write memory internal"},
        {"0f 01 02", "osi: write memory external"},
        {"0f 01 03", "osi: write memory code"},
        {"0f 01 00", "osi: write memory unknown"},
        {"0f 02", "osi: read vorna synchro"},
        {"0f 03", "osi: pclink1 bouclage ON"},
        {"0f 04", "osi: pclink1 bouclage off"},
        {"0f 05 10 20", "osi: pclink1 status"},
        {"0f 06 00 01", "osi: pclink2 status"},
        {"0f 07", "osi: cti status"},
        {"0f 08", "??"},
        {"0f 09", "??"},
        {"0f ff", "??"},
        {"0f 81 83", "osi: write memory unknown"},
        {"0f 87", "osi: cti status"},
    };
    for (const auto& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(dhs2osi, row.hex), row.text) << row.hex;
        EXPECT_EQ(d.status, Status::none);
        EXPECT_EQ(d.from_dhs(row.hex), std::string("\t- ") + row.text);
    }
}

}  // namespace
}  // namespace ztdecode::testing
