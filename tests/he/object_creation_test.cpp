#include "he/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(he::from_system, Status::recognised, rows); }

// The command's blank and the one that starts the ids stand beside each other.
TEST(HeObjectCreation, ObjectsByTheirIds) {
    from_system({{"52 00 01 02", "create icon  winId=01 objId=02"},
                 {"52 01 0a ff", "create image  winId=0a objId=ff"},
                 {"52 03 01 02", "create clock  winId=01 objId=02"},
                 {"52 04 01 02", "create timer  winId=01 objId=02"},
                 {"52 06 01 02", "create polyline  winId=01 objId=02"},
                 {"52 08 01 02", "create editable text field  winId=01 objId=02"}});
}

TEST(HeObjectCreation, StaticTextField) {
    from_system({
        {"52 02 01 02 00 0a 0b 0c 0d 0e 00 10 01 00 14 03 05 48 65 6c 6c 6f",
         "create static text field  winId=01 objId=02 fgCol=0a bgCol=0b attr=(0c,0d) fontId=0e  X= 16, Y= "
         "256 "
         "charPerLine=20 linesNumber=3 \"Hello\""},
        {"52 02 ff fe 00 ff 00 00 ff 00 ff ff 00 00 ff 00 00",
         "create static text field  winId=ff objId=fe fgCol=ff bgCol=00 attr=(00,ff) fontId=00  X= 65535, Y= "
         "0 "
         "charPerLine=255 linesNumber=0 \"\""},
    });
}

TEST(HeObjectCreation, StaticTextFieldWithASharedText) {
    from_system({
        {"52 02 01 02 01 0a 0b 0c 0d 0e 00 10 01 00 14 03 05 48 65 6c 6c 6f",
         "create static text field  winId=01 objId=02 fgCol=0a bgCol=0b attr=(0c,0d) fontId=0e  X= 16, Y= "
         "256 "
         "charPerLine=20 linesNumber=3 - shared text -"},
        {"52 02 01 02 80",
         "create static text field  winId=01 objId=02 fgCol=00 bgCol=00 attr=(00,00) fontId=00  X= 0, Y= 0 "
         "charPerLine=0 linesNumber=0 - shared text -"},
    });
}

TEST(HeObjectCreation, ZeroByteEndsTheText) {
    from_system({
        {"52 02 01 02 00 00 00 00 00 00 00 00 00 00 00 00 03 48 00 69",
         "create static text field  winId=01 objId=02 fgCol=00 bgCol=00 attr=(00,00) fontId=00  X= 0, Y= 0 "
         "charPerLine=0 linesNumber=0 \"H"},
    });
}

TEST(HeObjectCreation, Line) {
    from_system({{"52 05 01 02 07 01", "create line  winId=01 objId=02 couleur 07 visible"},
                 {"52 05 01 02 a0 00", "create line  winId=01 objId=02 couleur a0 invisible"},
                 {"52 05 01 02 00 fe", "create line  winId=01 objId=02 couleur 00 invisible"},
                 {"52 05 01 02 00 ff", "create line  winId=01 objId=02 couleur 00 visible"}});
}

TEST(HeObjectCreation, Rectangle) {
    from_system({
        {"52 07 01 02 aa aa aa aa 00 01 00 02 01 03 ff ff",
         "create rectangle  winId=01 objId=02 X= 1, Y= 2, L= 259, H= 65535"},
        {"52 07 01 02", "create rectangle  winId=01 objId=02 X= 0, Y= 0, L= 0, H= 0"},
    });
}

TEST(HeObjectCreation, TextList) {
    from_system(
        {{"52 09 01 02 aa aa aa aa aa aa aa 05 ff", "create text list  winId=01 objId=02  cell=[5,255]"}});
}

TEST(HeObjectCreation, WithoutIds) {
    from_system({{"52 10 01 02", "create item list "},
                 {"52 11 01 02", "copy objects "},
                 {"52 20 01 02", "delete objects "},
                 {"52 21 01 02", "delete all window objects "}});
}

TEST(HeObjectCreation, EveryOtherCommandIsUnknown) {
    for (unsigned command = 0; command < 256; ++command) {
        if (command <= 9 || command == 16 || command == 17 || command == 32 || command == 33) continue;
        TestSession d;
        EXPECT_EQ(d.with(he::from_system, formatted("52 {-:02x} 01 02"_cf, command)), "object ???")
            << command;
        EXPECT_EQ(d.status, Status::recognised) << command;
    }
}

}  // namespace
}  // namespace ztdecode::testing
