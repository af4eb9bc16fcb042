#include <algorithm>

#include "he/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(he::from_system, Status::recognised, rows); }

TEST(HeFromSystem, PlainOpcodes) {
    from_system({{"00", "nop"},
                 {"06", "reset subdevices"},
                 {"2b", "are you there inquiry"},
                 {"39", "LCD contrast"},
                 {"3a", "launch"},
                 {"49", "dpi configuration"}});
}

TEST(HeFromSystem, Bit7OfTheOpcodeIsIgnored) {
    from_system({{"80", "nop"},
                 {"ab", "are you there inquiry"},
                 {"d0 04 03", "move window: winId=03"},
                 {"d6 05", "appli management: list applis"}});
}

TEST(HeFromSystem, Metastate) {
    from_system({{"2c 00 00", "subdevice 00, metastate: disable"},
                 {"2c 1a 01", "subdevice 1a, metastate: actif"},
                 {"2c ff 02", "subdevice ff, metastate: wake-up"},
                 {"2c 01 03", "subdevice 01, metastate: "},
                 {"2c 01 ff", "subdevice 01, metastate: "}});
}

TEST(HeFromSystem, Download) {
    from_system({
        {"2f 01 01 23 45 67 89 ab cd ef", "DownLoad: start adr= 01234567  size= 89abcdef"},
        {"2f 01", "DownLoad: start adr= 00000000  size= 00000000"},
        {"2f 02 0a 0b 0c", "DownLoad: code message numero 0a0b"},
        {"2f 02 ff ff", "DownLoad: code message numero ffff"},
        {"2f 03", "DownLoad: end"},
        {"2f 04 00 7f", "DownLoad: isochecksum= 007f"},
        {"2f 00", "???"},
        {"2f 05", "???"},
        {"2f ff", "???"},
    });
}

TEST(HeFromSystem, Recorder) {
    from_system({{"4c 00", "stop recorder"},
                 {"4c 01", "start recorder"},
                 {"4c ff", "start recorder"},
                 {"4c", "stop recorder"}});
}

TEST(HeFromSystem, DoubleClick) {
    from_system({{"4d 01", "double click define"},
                 {"4d 02", "double click parameters"},
                 {"4d 00", "double click ???"},
                 {"4d 03", "double click ???"},
                 {"4d ff", "double click ???"}});
}

// A blank ends each of them.
TEST(HeFromSystem, SharedObjects) {
    from_system({{"51 00", "create shared icon "},
                 {"51 01", "create shared image "},
                 {"51 02", "create shared text "},
                 {"51 03", "append shared image "},
                 {"51 04", "copy shared object "},
                 {"51 05", "append shared icon "},
                 {"51 06", "shared object ???"},
                 {"51 ff", "shared object ???"}});
}

TEST(HeFromSystem, Queries) {
    from_system({{"54 00 fa", "list windows for appli fa"},
                 {"54 01 02 0b", "query ressource for appli 02, win 0b"},
                 {"54 02", "query available mem"},
                 {"54 03 07", "clean application 07"},
                 {"54 04", "query row"},
                 {"54 05", "???"},
                 {"54 ff", "???"}});
}

TEST(HeFromSystem, TextEditor) {
    from_system({{"55 00 01 02", "text editor: activate  winId=01 objId=02"},
                 {"55 01 03 02", "text editor: peek field  winId=03 objId=02"},
                 {"55 02 ff 0a", "text editor: deactivate  winId=ff objId=0a"},
                 {"55 03 01 02", "text editor: ???"},
                 {"55 ff", "text editor: ???"}});
}

TEST(HeFromSystem, ApplicationManagement) {
    from_system({{"56 01 02", "appli management: launch  desktop"},
                 {"56 02 06", "appli management: suspend  data"},
                 {"56 03 f9", "appli management: resume  manufacturing test"},
                 {"56 04 11", "appli management: abort  11"},
                 {"56 05 01", "appli management: list applis"},
                 {"56 00", "appli management: ???"},
                 {"56 06", "appli management: ???"},
                 {"56 ff", "appli management: ???"}});
}

TEST(HeFromSystem, EveryOtherOpcodeIsUnknown) {
    const std::vector<unsigned> known = {0, 6, 43, 44, 47, 57, 58, 73, 76, 77, 80, 81, 82, 83, 84, 85, 86};
    for (unsigned opcode = 0; opcode < 256; ++opcode) {
        TestSession d;
        const std::string text = d.with(he::from_system, formatted("{-:02x} 02 00"_cf, opcode));
        if (std::find(known.begin(), known.end(), opcode & 0x7F) != known.end()) {
            EXPECT_EQ(d.status, Status::recognised) << opcode;
            EXPECT_NE(text, "???") << opcode;
        } else {
            EXPECT_EQ(d.status, Status::unknown) << opcode;
            EXPECT_EQ(text, "???") << opcode;
        }
    }
}

TEST(HeFromSystem, MessageWithoutBytes) { from_system({{"", "nop"}}); }

}  // namespace
}  // namespace ztdecode::testing
