#include "decode/routes/servers.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

using namespace std::string_literals;

TEST(Servers, Messages) {
    TestSession d;
    EXPECT_EQ(d.with(call_server::to_system, "15 04 07"),
              "call server\nNotify\tOFFHOOK\n{\n\tServer\t\tCall\n}\n");
    EXPECT_EQ(d.status, Status::recognised);
    EXPECT_EQ(d.with(call_server::from_system, "15 05 82 00 12 01"),
              "call server\nDeleteItem\tlistbox\n{\n\tServer\t\tCall\n\tObjectId\t0x0012\n\tIndex\t01\n}");
    EXPECT_EQ(d.status, Status::recognised);
    EXPECT_EQ(
        d.with(presentation_server::to_system, "16 04 02 35"),
        "presentation server\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n\tkeychar         \"5\"\n}\n");
    EXPECT_EQ(d.status, Status::recognised);
    EXPECT_EQ(d.with(presentation_server::from_system, "16 02 84 00 07 37 03 41 42 43"),
              "presentation server\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
              "\n\tlabel          \t\"ABC\"\n}\n");
    EXPECT_EQ(d.status, Status::recognised);
}

TEST(Servers, ThroughTheDispatcher) {
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

TEST(Servers, UnknownClass) {
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

TEST(Servers, TheClassOfARequestIsThatOfItsAnswer) {
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

TEST(Servers, ApplicationTextIsThatOfTheMessage) {
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

}  // namespace
}  // namespace ztdecode::testing
