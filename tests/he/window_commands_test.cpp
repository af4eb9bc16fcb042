#include "he/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(he::from_system, Status::recognised, rows); }

std::string marks(std::size_t n) {
    std::string text;
    for (std::size_t i = 0; i < n; ++i) text += "???";
    return text;
}

TEST(HeWindowCommands, Create) {
    from_system({
        {"50 00 0c 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 00 10 01 00 02 80 ff ff",
         "create window 0c, X= 16, Y= 256, L= 640, H= 65535"},
        {"50 00 0c", "create window 0c, X= 0, Y= 0, L= 0, H= 0"},
    });
}

TEST(HeWindowCommands, Delete) {
    from_system({{"50 01 00", "delete all windows"},
                 {"50 01 01 0a", "delete window winId=0a"},
                 {"50 01 02 0a 0b", "delete 2 windows, winId=0a, winId=0b"},
                 {"50 01 03 00 ff 10 44", "delete 3 windows, winId=00, winId=ff, winId=10"}});
}

TEST(HeWindowCommands, Map) {
    from_system({{"50 02 00 00 00", "map behind all windows"},
                 {"50 02 ff 01 00", "map before all windows"},
                 {"50 02 00 02 01 07", "map top window winId=07"},
                 {"50 02 00 03 02 07 08", "map ??? 2 windows, winId=07, winId=08"},
                 {"50 02 00 ff 00", "map ??? all windows"}});
}

TEST(HeWindowCommands, Unmap) {
    from_system({{"50 03 00", "unmap all windows"},
                 {"50 03 01 0c", "unmap window winId=0c"},
                 {"50 03 02 0c 0d", "unmap 2 windows, winId=0c, winId=0d"}});
}

TEST(HeWindowCommands, OneWindow) {
    from_system({{"50 04 03", "move window: winId=03"},
                 {"50 05 fe", "change window attributes winId=fe"},
                 {"50 06 04", "refresh window winId=04"},
                 {"50 07 00", "set softkeys status winId=00"}});
}

// A list that is longer than the message goes on with what stands behind it.
TEST(HeWindowCommands, ListBeyondTheMessage) {
    from_system({{"50 01 04 0a", "delete 4 windows, winId=0a, winId=00, winId=00, winId=00"},
                 {"50 01 01", "delete window winId=00"}});

    std::string all = "delete 255 windows, winId=0a";
    for (int i = 1; i < 255; ++i) all += ", winId=00";
    from_system({{"50 01 ff 0a", all}});
}

TEST(HeWindowCommands, UnknownAloneIsItsMark) {
    for (unsigned command = 8; command < 256; ++command) {
        TestSession d;
        EXPECT_EQ(d.with(he::from_system, formatted("50 {-:02x} 01 02 03"_cf, command)), "???");
        EXPECT_EQ(d.status, Status::recognised);
    }
}

TEST(HeWindowCommands, UnknownStandsBehindTheLastOne) {
    TestSession d;
    d.with(he::from_system, "50 06 04");
    EXPECT_EQ(d.with(he::from_system, "50 09"), "refresh window winId=04???");
    EXPECT_EQ(d.with(he::from_system, "50 08 01"), "refresh window winId=04??????");
    EXPECT_EQ(d.with(he::from_system, "d0 ff"), "refresh window winId=04?????????");
    EXPECT_EQ(d.with(he::from_system, "50 04 03"), "move window: winId=03");
    EXPECT_EQ(d.with(he::from_system, "50 09"), "move window: winId=03???");
}

TEST(HeWindowCommands, UnknownOnesGatherBeforeAnyKnownOne) {
    TestSession d;
    EXPECT_EQ(d.with(he::from_system, "50 08"), "???");
    EXPECT_EQ(d.with(he::from_system, "50 08"), "??????");
}

TEST(HeWindowCommands, EveryKnownOneIsRemembered) {
    for (const Row& row : std::vector<Row>{
             {"50 00 0c", "create window 0c, X= 0, Y= 0, L= 0, H= 0"},
             {"50 01 02 0a 0b", "delete 2 windows, winId=0a, winId=0b"},
             {"50 02 00 01 00", "map before all windows"},
             {"50 03 01 0c", "unmap window winId=0c"},
             {"50 04 03", "move window: winId=03"},
             {"50 05 fe", "change window attributes winId=fe"},
             {"50 06 04", "refresh window winId=04"},
             {"50 07 00", "set softkeys status winId=00"},
         }) {
        TestSession d;
        EXPECT_EQ(d.with(he::from_system, row.hex), row.text);
        EXPECT_EQ(d.with(he::from_system, "50 08"), std::string(row.text) + "???");
    }
}

TEST(HeWindowCommands, OtherFamiliesLeaveTheTextAlone) {
    TestSession d;
    d.with(he::from_system, "50 03 00");
    for (const char* other : {"00", "2c 00 00", "2f 01", "4c", "4d 00", "51 00", "51 08", "52 00", "52 0a",
                              "53 00", "53 22", "54 00", "54 09", "55 00", "55 09", "56 01", "56 09", "7f"}) {
        d.with(he::from_system, other);
    }
    EXPECT_EQ(d.with(he::from_system, "50 08"), "unmap all windows???");
}

TEST(HeWindowCommands, SessionsRememberTheirOwn) {
    TestSession one;
    TestSession other;
    one.with(he::from_system, "50 06 01");
    other.with(he::from_system, "50 06 02");
    EXPECT_EQ(one.with(he::from_system, "50 08"), "refresh window winId=01???");
    EXPECT_EQ(other.with(he::from_system, "50 08"), "refresh window winId=02???");
}

// What a decoder before it has written is not the window command's.
TEST(HeWindowCommands, RemembersOnlyItsOwnText) {
    TestSession d;
    EXPECT_EQ(d.from_dhs("05 01 02 50 06 04"), "\t- [HE: desktop -> telephony]\t- refresh window winId=04");
    EXPECT_EQ(d.from_dhs("05 01 02 50 09"), "\t- [HE: desktop -> telephony]\t- refresh window winId=04???");
}

TEST(HeWindowCommands, UnknownOnesWithoutEnd) {
    TestSession d;
    d.with(he::from_system, "50 06 04");
    for (std::size_t n = 1; n <= 5000; ++n) {
        ASSERT_EQ(d.with(he::from_system, "50 08"), "refresh window winId=04" + marks(n)) << n;
    }
    for (int n = 0; n < 5000; ++n) d.with(he::from_system, "50 08");
    const std::string text = d.with(he::from_system, "50 08");
    EXPECT_EQ(text, "refresh window winId=04" + marks(5453));
    EXPECT_EQ(d.with(he::from_system, "50 08"), text);
}

}  // namespace
}  // namespace ztdecode::testing
