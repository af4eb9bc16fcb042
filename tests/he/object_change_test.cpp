#include "he/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(he::from_system, Status::recognised, rows); }

TEST(HeObjectChange, ObjectsByTheirIds) {
    from_system({{"53 00 01 02", "change icon attributes winId=01 objId=02"},
                 {"53 01 01 02", "change image attributes winId=01 objId=02"},
                 {"53 02 01 02", "change static text field attributes winId=01 objId=02"},
                 {"53 03 01 02", "change editable text field attributes winId=01 objId=02"},
                 {"53 05 01 02", "change clock attributes winId=01 objId=02"},
                 {"53 06 01 02", "change timer attributes winId=01 objId=02"},
                 {"53 07 01 02", "set timer winId=01 objId=02"},
                 {"53 08 01 02", "change line attributes winId=01 objId=02"},
                 {"53 09 01 02", "change polyline attributes winId=01 objId=02"},
                 {"53 0a 0b ff", "change rectangle attributes winId=0b objId=ff"},
                 {"53 1a 01 02", "activate text list winId=01 objId=02"},
                 {"53 1b 01 02", "deactivate text list winId=01 objId=02"},
                 {"53 1c 01 02", "change text list attributes winId=01 objId=02"}});
}

TEST(HeObjectChange, SetStaticTextField) {
    from_system({{"53 04 01 02 00 02 48 69 21", "set static text field winId=01 objId=02 \"Hi\""},
                 {"53 04 01 02 00 00", "set static text field winId=01 objId=02 \"\""},
                 {"53 04 01 02", "set static text field winId=01 objId=02 \"\""},
                 {"53 04 01 02 01 02 48 69", "set static text field winId=01 objId=02 - shared text -"},
                 {"53 04 01 02 00 03 48 00 69", "set static text field winId=01 objId=02 \"H"}});
}

TEST(HeObjectChange, TextFields) {
    from_system({
        {"53 0b 01 02 00 02 48 69", "append static text field winId=01 objId=02 \"Hi\""},
        {"53 0c 01 02 00 02 48 69", "replace static text field winId=01 objId=02 \"Hi\""},
        {"53 0d 01 02 00 02 48 69", "set editable text field winId=01 objId=02 \"Hi\""},
        {"53 0e 01 02 00 02 48 69", "append editable text field winId=01 objId=02 \"Hi\""},
        {"53 0f 01 02 00 aa aa 02 48 69", "replace editable text field winId=01 objId=02 \"Hi\""},
    });
}

TEST(HeObjectChange, TextFieldsWithASharedText) {
    from_system({
        {"53 0b 01 02 01 02 48 69", "append static text field winId=01 objId=02 - shared text -"},
        {"53 0c 01 02 ff 02 48 69", "replace static text field winId=01 objId=02 - shared text -"},
        {"53 0d 01 02 80 02 48 69", "set editable text field winId=01 objId=02 - shared text -"},
        {"53 0e 01 02 02 02 48 69", "append editable text field winId=01 objId=02 - shared text -"},
        {"53 0f 01 02 01 aa aa 02 48 69", "replace editable text field winId=01 objId=02 - shared text -"},
    });
}

// Seven bytes are enough for a text, nine for the replaced editable one; a shorter message shows none, shared
// or not.
TEST(HeObjectChange, TextFieldsOfShortMessages) {
    from_system({
        {"53 0b 01 02 00 00", "append static text field winId=01 objId=02"},
        {"53 0b 01 02 01 00", "append static text field winId=01 objId=02"},
        {"53 0b 01", "append static text field winId=01 objId=00"},
        {"53 0b 01 02 00 00 00", "append static text field winId=01 objId=02 \"\""},
        {"53 0b 01 02 01 00 00", "append static text field winId=01 objId=02 - shared text -"},
        {"53 0c 01 02 00 00", "replace static text field winId=01 objId=02"},
        {"53 0c 01 02 00 00 00", "replace static text field winId=01 objId=02 \"\""},
        {"53 0d 01 02 00 00", "set editable text field winId=01 objId=02"},
        {"53 0d 01 02 00 00 00", "set editable text field winId=01 objId=02 \"\""},
        {"53 0e 01 02 00 00", "append editable text field winId=01 objId=02"},
        {"53 0e 01 02 00 00 00", "append editable text field winId=01 objId=02 \"\""},
        {"53 0f 01 02 00 00 00 00", "replace editable text field winId=01 objId=02"},
        {"53 0f 01 02 01 00 00 00", "replace editable text field winId=01 objId=02"},
        {"53 0f 01 02 00 00 00 00 00", "replace editable text field winId=01 objId=02 \"\""},
        {"53 0f 01 02 01 00 00 00 00", "replace editable text field winId=01 objId=02 - shared text -"},
    });
}

TEST(HeObjectChange, ZeroByteEndsATextFieldsText) {
    from_system({
        {"53 0b 01 02 00 03 48 00 69", "append static text field winId=01 objId=02 \"H"},
        {"53 0e 01 02 00 09 48 69", "append editable text field winId=01 objId=02 \"Hi"},
        {"53 0f 01 02 00 00 00 02 00 69", "replace editable text field winId=01 objId=02 \""},
    });
}

TEST(HeObjectChange, SetVisibility) {
    from_system({
        {"53 10 01 00 01 0a 07", "set visibility OFF in winId=01 for object objId=07 text list"},
        {"53 10 01 01 00", "set visibility ON in winId=01 for all objects"},
        {"53 10 01 ff 02 00 05 01 06",
         "set visibility ON in winId=01 for 2 objects, objId=05 icon, objId=06 image"},
    });
}

TEST(HeObjectChange, EveryObjectType) {
    from_system({
        {"53 10 01 01 0b 00 10 01 11 02 12 03 13 04 14 05 15 06 16 07 17 08 18 09 19 0a 1a",
         "set visibility ON in winId=01 for 11 objects, objId=10 icon, objId=11 image, objId=12 static text "
         "field, "
         "objId=13 editable text field, objId=14 clock, objId=15 timer, objId=16 line, objId=17 polyline, "
         "objId=18 rectangle, objId=19 videotext field, objId=1a text list"},
        {"53 10 01 01 02 0b 01 ff 02",
         "set visibility ON in winId=01 for 2 objects, objId=01 type d'objet inconnu ???, "
         "objId=02 type d'objet inconnu ???"},
    });
}

TEST(HeObjectChange, SetBackgroundColor) {
    from_system({
        {"53 11 0a ff 00", "set background color= 255 in winId=0a for all objects"},
        {"53 11 0a 00 01 08 02", "set background color= 0 in winId=0a for object objId=02 rectangle"},
        {"53 11 0a 10 02 08 02 04 03",
         "set background color= 16 in winId=0a for 2 objects, objId=02 rectangle, objId=03 clock"},
    });
}

TEST(HeObjectChange, Refresh) {
    from_system({
        {"53 13 0a 00", "refresh in winId=0a for all objects"},
        {"53 13 0a 01 05 09", "refresh in winId=0a for object objId=09 timer"},
        {"53 13 0a 02 05 09 07 08", "refresh in winId=0a for 2 objects, objId=09 timer, objId=08 polyline"},
    });
}

// A list that is longer than the message goes on with what stands behind it.
TEST(HeObjectChange, ListBeyondTheMessage) {
    from_system({
        {"53 13 0a 03 05 09 07",
         "refresh in winId=0a for 3 objects, objId=09 timer, objId=00 polyline, objId=00 icon"},
        {"53 13 0a 01", "refresh in winId=0a for object objId=00 icon"},
    });

    std::string all = "refresh in winId=0a for 255 objects, objId=09 timer";
    for (int i = 1; i < 255; ++i) all += ", objId=00 icon";
    from_system({{"53 13 0a ff 05 09", all}});
}

TEST(HeObjectChange, MoveObjects) {
    from_system({
        {"53 19 01 04 09 00 10 01 00", "move objects winId=01 clock objId=09  X= 16, Y= 256"},
        {"53 19 01 20 09 ff ff 00 01",
         "move objects winId=01 type d'objet inconnu ??? objId=09  X= 65535, Y= 1"},
    });
}

TEST(HeObjectChange, Cells) {
    from_system({
        {"53 1d 01 02 03 04", "insert cell in text list  winId=01 objId=02  cell=[3,4]"},
        {"53 20 01 02 03 ff", "delete cell in text list  winId=01 objId=02  cell=[3,255]"},
        {"53 21 01 02 00 04", "set focus on cell  winId=01 objId=02  cell=[0,4]"},
    });
}

TEST(HeObjectChange, SetCellValue) {
    from_system({
        {"53 1e 01 02 03 04 00 02 48 69", "set text list cell value:  \"Hi\" winId=01 objId=02  cell=[3,4]"},
        {"53 1e 01 02 03 04 00 00", "set text list cell value:  \"\" winId=01 objId=02  cell=[3,4]"},
        {"53 1e 01 02 03 04 01 02 48 69",
         "set text list cell value:  - shared text - winId=01 objId=02  cell=[3,4]"},
    });
}

// The closing quote is lost with what stands behind the zero byte, the rest of the line is not.
TEST(HeObjectChange, ZeroByteEndsTheCellValueAlone) {
    from_system({
        {"53 1e 01 02 03 04 00 03 48 00 69", "set text list cell value:  \"H winId=01 objId=02  cell=[3,4]"},
        {"53 1e 01 02 03 04 00 05 48", "set text list cell value:  \"H winId=01 objId=02  cell=[3,4]"},
    });
}

TEST(HeObjectChange, WithoutIds) {
    from_system({{"53 14 01 02", "videotext ???"},
                 {"53 15 01 02", "videotext ???"},
                 {"53 16 01 02", "videotext ???"},
                 {"53 17 01 02", "videotext ???"},
                 {"53 18 01 02", "copy timer value"},
                 {"53 1f 01 02", "copy text list cell value"}});
}

TEST(HeObjectChange, EveryOtherCommandIsUnknown) {
    for (unsigned command = 0; command < 256; ++command) {
        if (command <= 33 && command != 18) continue;
        TestSession d;
        EXPECT_EQ(d.with(he::from_system, formatted("53 {-:02x} 01 02"_cf, command)),
                  "change object attributes: ???")
            << command;
        EXPECT_EQ(d.status, Status::recognised) << command;
    }
}

}  // namespace
}  // namespace ztdecode::testing
