#include <array>

#include "digital/rows.hpp"

// Messages of the option modules behind a set: the label, the types that are remembered and the choice of the
// module's decoder, which is told by a short text of each.

namespace ztdecode::testing {
namespace {

constexpr std::array<std::string_view, 32> type_names = {
    "V24",
    "S0",
    "mac/pc",
    "aom",
    "eak",
    "Z",
    "V24 synchrone",
    "x21",
    "aom set-13",
    "key system interne 7301",
    "key system externe 7302",
    "key system 7303",
    "key system 7304",
    "key system 7305",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
    "???",
};

std::string label(unsigned type, unsigned address) {
    return formatted("[opt {-} adr {-}] "_cf, type_names[type], address);
}

// The label that the byte of a sub-device is shown as.
std::string label_of(Session& session, unsigned byte) {
    const Message none({});
    Text out;
    Decoding d(session, none, out);
    digital::module_label(d, Byte{static_cast<std::uint8_t>(byte)});
    return std::string(out.view());
}

std::string message(unsigned type, unsigned address, std::string_view rest) {
    return formatted("04 {-:02x} {-}"_cf, type << 3 | address, rest);
}

TEST(OptionLabel, EveryByte) {
    for (unsigned byte = 0; byte < 0xF8; ++byte) {
        Session session;
        EXPECT_EQ(label_of(session, byte), label(byte >> 3, byte & 7)) << byte;
    }
}

TEST(OptionLabel, AllTypeBitsSetShowWhatIsRemembered) {
    Session session;
    for (unsigned type = 0; type < 32; ++type) {
        for (unsigned address = 0; address < 8; ++address) {
            for (auto& each : session.digital.modules.types) session.change(each) = 31;
            session.change(session.digital.modules.types[address]) = static_cast<std::uint8_t>(type);
            EXPECT_EQ(label_of(session, 0xF8 | address), label(type, address));
        }
    }
    Session fresh;  // every remembered type is 0
    EXPECT_EQ(label_of(fresh, 0xFB), "[opt V24 adr 3] ");
}

TEST(OptionTypeName, EveryType) {
    for (std::uint32_t type = 0; type < 300; ++type) {
        EXPECT_EQ(digital::module_type(Number{type}).text, type < 14 ? type_names[type] : "???") << type;
    }
}

// A message that each module's decoder names in its own way.
TEST(SubDeviceMessage, TheTypeChoosesTheDecoder) {
    expect_to_system({
        {"04 00 2c", "[opt V24 adr 0] error counters"},
        {"04 09 24", "[opt S0 adr 1] loss of power"},
        {"04 12 24", "[opt mac/pc adr 2] disable trace mode"},
        {"04 1b 0f", "[opt aom adr 3] status response: key released= off"},
        {"04 24 0f", "[opt eak adr 4] status response: key released= off"},
        {"04 2d 24", "[opt Z adr 5] z ?? <24>"},
        {"04 36 2c", "[opt V24 synchrone adr 6] error counters"},
        {"04 3f 00", "[opt x21 adr 7] subdev message"},
        {"04 40 00", "[opt aom set-13 adr 0] subdev message"},
        {"04 49 70", "[opt key system interne 7301 adr 1] read EEPROM response"},
        {"04 52 70", "[opt key system externe 7302 adr 2] read EEPROM response"},
        {"04 5b 70", "[opt key system 7303 adr 3] read EEPROM response"},
        {"04 64 70", "[opt key system 7304 adr 4] read EEPROM response"},
        {"04 6d 70", "[opt key system 7305 adr 5] read EEPROM response"},
        {"04 76 00", "[opt ??? adr 6] subdev message"},
        {"04 7f 00", "[opt ??? adr 7] subdev message"},
        {"84 2a 00", "[opt Z adr 2] nop ack"},
        {"04", "[opt V24 adr 0] nop ack"},
    });
}

// Only the low four bits of the type choose it.
TEST(SubDeviceMessage, TypesAbove15) {
    expect_to_system({
        {"04 80 2c", "[opt ??? adr 0] error counters"},
        {"04 89 24", "[opt ??? adr 1] loss of power"},
        {"04 92 24", "[opt ??? adr 2] disable trace mode"},
        {"04 9b 0f", "[opt ??? adr 3] status response: key released= off"},
        {"04 a4 0f", "[opt ??? adr 4] status response: key released= off"},
        {"04 ad 24", "[opt ??? adr 5] z ?? <24>"},
        {"04 b6 2c", "[opt ??? adr 6] error counters"},
        {"04 bf 00", "[opt ??? adr 7] subdev message"},
        {"04 c0 00", "[opt ??? adr 0] subdev message"},
        {"04 c9 70", "[opt ??? adr 1] read EEPROM response"},
        {"04 d2 70", "[opt ??? adr 2] read EEPROM response"},
        {"04 db 70", "[opt ??? adr 3] read EEPROM response"},
        {"04 e4 70", "[opt ??? adr 4] read EEPROM response"},
        {"04 ed 70", "[opt ??? adr 5] read EEPROM response"},
        {"04 f6 00", "[opt ??? adr 6] subdev message"},
        {"04 ff 00",
         "[opt V24 adr 7] subdev message"},  // all bits: the label is from memory, and no decoder runs
    });
}

TEST(SubDeviceMessage, TheLabelShowsWhatWasRememberedBefore) {
    TestSession d;
    EXPECT_EQ(d.with(digital::to_system, "04 2a 01", to_dhs), "[opt Z adr 2] off hook");
    EXPECT_EQ(d.with(digital::to_system, "04 fa 01", to_dhs), "[opt Z adr 2] subdev message");
    EXPECT_EQ(d.with(digital::to_system, "04 fa 01", to_dhs), "[opt ??? adr 2] subdev message");
    EXPECT_EQ(*d.session().digital.modules.types[2], 31);
    EXPECT_EQ(d.with(digital::to_system, "04 fa 9f 02", to_dhs), "[opt ??? adr 2] illegal command");
    EXPECT_EQ(d.with(digital::to_system, "04 fb 00", to_dhs), "[opt V24 adr 3] subdev message");
}

TEST(SubDeviceMessage, EveryTypeIsRemembered) {
    TestSession d;
    for (unsigned type = 0; type < 32; ++type) {
        for (unsigned address = 0; address < 8; ++address) {
            d.with(digital::to_system, message(type, address, "00"), to_dhs);
            EXPECT_EQ(*d.session().digital.modules.types[static_cast<std::size_t>(address)], type);
        }
        for (unsigned address = 0; address < 8; ++address) {
            EXPECT_EQ(d.with(digital::from_system, formatted("02 {-:02x} 7f"_cf, address))
                          .substr(0, label(type, address).size()),
                      label(type, address));
        }
    }
}

// What a module without a decoder says of itself.
TEST(SubDeviceMessage, ModuleReports) {
    expect_to_system({
        {"04 38 9f 00 00 02 05 00 03", "[opt x21 adr 0] reset hard V24 A1, soft=2.05, selftest OK"},
        {"04 39 9f 01 00 02 05 00 04", "[opt x21 adr 1] reset soft V24 A2, soft=2.05, selftest OK"},
        {"04 3a 9f 81 01 30 39 01", "[opt x21 adr 2] reset soft S0 soft=1.23.45, selftest BAD"},
        {"04 43 9f 00 02 00 00 ff", "[opt aom set-13 adr 3] reset hard mac/pc soft=0.00, selftest BAD"},
        {"04 44 9f 00 03 02 05 00 28",
         "[opt aom set-13 adr 4] reset hard aom soft=2.05, selftest OK, 40 touches"},
        {"04 45 9f 01 04 02 05 00 28", "[opt aom set-13 adr 5] reset soft eak soft=2.05, selftest OK"},
        {"04 76 9f 00 05 02 05 00", "[opt ??? adr 6] reset hard Z soft=2.05, selftest OK"},
        {"04 7f 9f 00 06 02 05 00 03", "[opt ??? adr 7] reset hard V24 synchrone soft=2.05, selftest OK"},
        {"04 78 9f 81 07 02 c8 00", "[opt ??? adr 0] reset soft x21 soft=2.200, selftest OK"},
        {"04 38 9f 00 08 02 05 00", "[opt x21 adr 0] reset hard aom set-13 soft=2.05, selftest OK"},
        {"04 38 9f 00 09 02 05 00",
         "[opt x21 adr 0] reset hard key system interne 7301 soft=2.05, selftest OK"},
        {"04 38 9f 00 0a 02 05 00",
         "[opt x21 adr 0] reset hard key system externe 7302 soft=2.05, selftest OK"},
        {"04 38 9f 00 0b 02 05 00", "[opt x21 adr 0] reset hard key system 7303 soft=2.05, selftest OK"},
        {"04 38 9f 00 0c 02 05 00", "[opt x21 adr 0] reset hard key system 7304 soft=2.05, selftest OK"},
        {"04 38 9f 00 0d 02 05 00", "[opt x21 adr 0] reset hard key system 7305 soft=2.05, selftest OK"},
        {"04 38 9f 00 0e 02 05 00", "[opt x21 adr 0] reset hard ??? soft=2.05, selftest OK"},
        {"04 38 9f 00 ff 02 05 00", "[opt x21 adr 0] reset hard ??? soft=2.05, selftest OK"},
        {"84 bf 9f 02", "[opt ??? adr 7] illegal command"},
        {"04 38 9f 06", "[opt x21 adr 0] segment failure"},
        {"04 40 9f 07", "[opt aom set-13 adr 0] wrong state"},
        {"04 38 9f 03", "[opt x21 adr 0] anomalie"},
        {"04 38 9f 80", "[opt x21 adr 0] anomalie"},
        {"04 38 9f", "[opt x21 adr 0] reset"},
        // Every bit of byte 2 counts here.
        {"04 38 1f 02", "[opt x21 adr 0] subdev message"},
        {"04 38 9e 02", "[opt x21 adr 0] subdev message"},
    });
    for (unsigned kind = 0; kind < 256; ++kind) {
        if (kind <= 2 || kind == 6 || kind == 7 || kind == 0x81) continue;
        expect_to_system({{formatted("04 38 9f {-:02x}"_cf, kind), "[opt x21 adr 0] anomalie"}});
    }
}

TEST(SubDeviceMessage, AResetReportNeedsMoreThanSevenBytes) {
    expect_to_system({
        {"04 38 9f 00 03 02 05", "[opt x21 adr 0] reset"},
        {"04 38 9f 01", "[opt x21 adr 0] reset"},
        {"04 38 9f 81 03", "[opt x21 adr 0] reset"},
        {"04 38 9f 00 03 02 05 00", "[opt x21 adr 0] reset hard aom soft=2.05, selftest OK, 0 touches"},
        {"04 38 9f 00 03 02 05 01 ff 09",
         "[opt x21 adr 0] reset hard aom soft=2.05, selftest BAD, 255 touches"},
    });
}

// Modules with a decoder report in its words.
TEST(SubDeviceMessage, ModulesWithADecoderReportThemselves) {
    expect_to_system({
        {"04 28 9f 02", "[opt Z adr 0] illegal command"},
        {"04 20 9f 02 21", "[opt eak adr 0] illegal command 21"},
        {"04 08 9f 06", "[opt S0 adr 0] segment failure"},
        {"04 10 9f 07", "[opt mac/pc adr 0] reset ??"},
    });
}

// The type of the module that the decoder leaves, when the record came with this one.
unsigned option_type_after(std::string_view hex, std::uint8_t before) {
    const auto data = bytes(hex);
    Session session;
    Message m(data);
    m.direction = to_dhs;
    Text out;
    Decoding d(session, m, out);
    d.option_type = before;
    digital::to_system(d);
    return d.option_type;
}

TEST(SubDeviceMessage, Byte4IsTheOptionType) {
    EXPECT_EQ(option_type_after("04 28 00 01 05 06", 0x12), 0x05U);
    EXPECT_EQ(option_type_after("04 28 00", 0x12), 0x00U);
    EXPECT_EQ(option_type_after("04 00 00 00 ff", 0x00), 0xFFU);
    EXPECT_EQ(option_type_after("04 38 9f 00 03 02 05 00 28", 0x12), 0x03U);
    // A module without a decoder: in its whole reset report alone.
    EXPECT_EQ(option_type_after("04 38 9f 00 03 02 05", 0x12), 0x12U);
    EXPECT_EQ(option_type_after("04 38 9f 02 03 02 05 00 28", 0x12), 0x12U);
    EXPECT_EQ(option_type_after("04 38 00 00 03 02 05 00 28", 0x12), 0x12U);
    EXPECT_EQ(option_type_after("1f 00 00 00 03", 0x12), 0x12U);
}

TEST(SubDeviceMessage, AResetOfTheSetForgetsTheTypes) {
    for (const std::string_view reset : {"1f 00", "1f 01 01", "9f 00 04", "1f 01 ff"}) {
        TestSession d;
        for (unsigned address = 0; address < 8; ++address)
            d.with(digital::to_system, message(5, address, "00"), to_dhs);
        d.with(digital::to_system, reset, to_dhs);
        for (unsigned address = 0; address < 8; ++address) {
            EXPECT_EQ(d.with(digital::from_system, formatted("02 {-:02x} 00"_cf, address)),
                      label(31, address) + "subdev command");
        }
    }
    for (unsigned kind = 2; kind < 256; ++kind) {
        TestSession d;
        d.with(digital::to_system, "04 2b 00", to_dhs);
        d.with(digital::to_system, formatted("1f {-:02x} 04"_cf, kind), to_dhs);
        EXPECT_EQ(d.with(digital::from_system, "02 03 00"), "[opt Z adr 3] nop") << kind;
    }
}

TEST(SubDeviceMessage, AShortReportOnTheHeLinkForgetsThemToo) {
    TestSession d;
    d.with(digital::to_system, "04 2b 00", to_dhs);
    const auto data = bytes("1f 00 00 05");
    const Message m(data);
    Text out;
    Decoding on_he(d.session(), m, out);
    on_he.route = route_he;
    digital::to_system(on_he);
    EXPECT_EQ(d.with(digital::from_system, "02 03 00"), "[opt ??? adr 3] subdev command");
}

TEST(SubDeviceCommand, BeforeAnyMessageOfAModule) {
    expect_from_system({
        {"02 00 07", "[opt V24 adr 0] loopback ON"},
        {"02 07 07", "[opt V24 adr 7] loopback ON"},
        {"82 fb 07", "[opt V24 adr 3] loopback ON"},
        {"02", "[opt V24 adr 0] nop"},
    });
}

TEST(SubDeviceCommand, TheRememberedTypeChoosesTheDecoder) {
    const std::array<Row, 14> rows = {{
        {"26", "flush output"},
        {"0f", "state inquiry"},
        {"1f", "bad message"},
        {"39", "lcd contrast"},
        {"39", "lcd contrast"},
        {"26", "terminal type"},
        {"26", "subdev command"},  // a synchronous V24 module has no decoder in this direction
        {"26", "subdev command"},
        {"26", "subdev command"},
        {"68", "read EEPROM"},
        {"68", "read EEPROM"},
        {"68", "read EEPROM"},
        {"68", "read EEPROM"},
        {"68", "read EEPROM"},
    }};
    for (unsigned type = 0; type < 32; ++type) {
        for (unsigned address = 0; address < 8; ++address) {
            TestSession d;
            d.with(digital::to_system, message(type, address, "00"), to_dhs);
            const auto row = static_cast<std::size_t>(type);
            const std::string_view opcode = row < rows.size() ? rows[row].hex : "00";
            const std::string_view text = row < rows.size() ? rows[row].text : "subdev command";
            EXPECT_EQ(d.with(digital::from_system, formatted("02 {-:02x} {-}"_cf, address, opcode)),
                      label(type, address) + std::string(text));
            // The type bits of the command are not looked at.
            EXPECT_EQ(d.with(digital::from_system, formatted("82 {-:02x} {-}"_cf, 0x98 | address, opcode)),
                      label(type, address) + std::string(text));
            EXPECT_EQ(d.status, Status::recognised);
        }
    }
}

TEST(SubDeviceCommand, RemembersNothing) {
    TestSession d;
    d.with(digital::to_system, "04 2a 00", to_dhs);
    EXPECT_EQ(d.with(digital::from_system, "02 0a 26"), "[opt Z adr 2] terminal type");
    EXPECT_EQ(d.with(digital::from_system, "02 fa 26"), "[opt Z adr 2] terminal type");
    EXPECT_EQ(*d.session().digital.modules.types[2], 5);
    EXPECT_EQ(*d.session().digital.modules.types[1], 0);
}

TEST(SubDeviceCommand, AddressesAreTheirOwn) {
    TestSession d;
    d.with(digital::to_system, "04 28 00", to_dhs);
    d.with(digital::to_system, "04 09 00", to_dhs);
    d.with(digital::to_system, "04 37 00", to_dhs);
    EXPECT_EQ(d.with(digital::from_system, "02 00 26"), "[opt Z adr 0] terminal type");
    EXPECT_EQ(d.with(digital::from_system, "02 01 0f"), "[opt S0 adr 1] state inquiry");
    EXPECT_EQ(d.with(digital::from_system, "02 07 26"), "[opt V24 synchrone adr 7] subdev command");
    EXPECT_EQ(d.with(digital::from_system, "02 02 26"), "[opt V24 adr 2] flush output");
}

TEST(SubDevice, InWholeMessages) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("04 2a 03 09"), "\t- [opt Z adr 2] digit dialed '9'");
    EXPECT_EQ(d.from_dhs("02 02 26"), "\t- [opt Z adr 2] terminal type");
    // A module may emulate a set, whose reset is one of the set itself.
    EXPECT_EQ(d.to_dhs("04 11 26 03 0b"), "\t- [opt mac/pc adr 1] VTA emulation: digit dialed '#'");
    EXPECT_EQ(d.from_dhs("02 02 26"), "\t- [opt Z adr 2] terminal type");
    EXPECT_EQ(d.to_dhs("04 11 26 1f 02 05"),
              "\t- [opt mac/pc adr 1] VTA emulation: illegal command received: 05");
    EXPECT_EQ(d.to_dhs("0b 03 04 28 01 03 04 f8 00"),
              "\t- super message:\n"
              "\t> zt 03 00 04 28 01\n\t- [opt Z adr 0] off hook\n"
              "\t> zt 03 00 04 f8 00\n\t- [opt Z adr 0] subdev message\n");
}

}  // namespace
}  // namespace ztdecode::testing
