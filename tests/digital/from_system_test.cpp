#include <set>

#include "digital/rows.hpp"

namespace ztdecode::testing {
namespace {

constexpr Row plain_commands[] = {
    {"00", "nop"},
    {"03", "software reset"},
    {"06", "subdev reset"},
    {"07", "loop back On"},
    {"08", "loop back Off"},
    {"0b", "super message"},
    {"11", "CTI: abca"},
    {"17", "super message type 2"},
    {"18", "debug message"},
    {"22", "start buzzer"},
    {"23", "stop buzzer"},
    {"24", "enable DTMF"},
    {"25", "disable DTMF"},
    {"26", "clear display"},
    {"2a", "version inquiry"},
    {"2b", "are you there?"},
    {"2d", "status inquiry"},
    {"2e", "subdev state inquiry"},
    {"30", "DTMF & clock time"},
    {"31", "set clock command"},
    {"36", "special char"},
    {"38", "clock & timer position"},
    {"39", "LCD contrast"},
    {"3a", "audio idle"},
    {"3b", "speaker volume"},
    {"3e", "ringing cadence"},
    {"42", "trace on"},
    {"43", "trace off"},
    {"44", "read peripheral"},
    {"45", "write peripheral"},
    {"46", "all icons off"},
    {"47", "icons command"},
    {"48", "amplified handset"},
    {"4a", "audio padded path"},
    {"60", "CTI: local msg"},
    {"61", "CTI: trace dhs->vta"},
    {"62", "CTI: trace vta->dhs"},
    {"63", "CTI: trace dhs->subd"},
    {"64", "CTI: trace subd->dhs"},
    {"6e", "CTI: local super msg"},
    {"6f", "CTI: local msg combine"},
};

TEST(FromSystem, PlainCommands) {
    for (const Row& row : plain_commands) {
        expect_from_system({row, {with_high_bit(row.hex), row.text}});
        const std::string longer = std::string(row.hex) + " 01 02 03 04 05";
        expect_from_system({{longer, row.text}});
    }
}

TEST(FromSystem, UnknownOpcodes) {
    std::set<int> unknown = {0x05, 0x09, 0x0A, 0x2F, 0x34, 0x37, 0x4B, 0x4C};
    for (unsigned opcode = 0x0D; opcode <= 0x10; ++opcode) unknown.insert(opcode);
    for (unsigned opcode = 0x12; opcode <= 0x16; ++opcode) unknown.insert(opcode);
    for (unsigned opcode = 0x19; opcode <= 0x20; ++opcode) unknown.insert(opcode);
    for (unsigned opcode = 0x51; opcode <= 0x5F; ++opcode) unknown.insert(opcode);
    for (unsigned opcode = 0x65; opcode <= 0x6D; ++opcode) unknown.insert(opcode);
    for (unsigned opcode = 0x70; opcode <= 0x7F; ++opcode) unknown.insert(opcode);
    for (unsigned opcode = 0; opcode < 256; ++opcode) {
        const bool is_unknown = unknown.count(opcode & 0x7F) == 1;
        for (const std::string_view rest : {"", " 00", " 01 02 03 04 05 06 07"}) {
            TestSession d;
            const std::string text = d.with(digital::from_system, formatted("{-:02x}{-}"_cf, opcode, rest));
            EXPECT_EQ(d.status, is_unknown ? Status::unknown : Status::recognised) << opcode;
            EXPECT_EQ(text == "ERR: message inconnu", is_unknown) << opcode;
            EXPECT_FALSE(text.empty()) << opcode;
        }
    }
}

TEST(FromSystem, NoMessage) {
    TestSession d;
    EXPECT_EQ(d.with(digital::from_system, ""), "");
    EXPECT_EQ(d.status, Status::none);
}

TEST(FromSystem, ProductionTest) {
    expect_from_system({
        {"01 01", "production test: start keyboard test"},
        {"01 02", "production test: stop keyboard test"},
        {"01 00", "production test: unknown parameter"},
        {"01 03", "production test: unknown parameter"},
        {"81 ff", "production test: unknown parameter"},
        {"01", "production test: illegal length"},
        {"01 01 00", "production test: illegal length"},
        {"01 02 03 04", "production test: illegal length"},
    });
}

TEST(FromSystem, WarmStart) {
    expect_from_system({
        {"04", "warmstart simple"},
        {"84", "warmstart simple"},
        {"04 00", "warmstart mode 2G"},
        {"04 01", "warmstart mode 3G"},
        {"04 02", "warmstart bizarre"},
        {"04 ff", "warmstart bizarre"},
        {"04 00 00", "warmstart bizarre"},
        {"04 01 00", "warmstart bizarre"},
        {"04 01 02 03 04", "warmstart bizarre"},
    });
}

TEST(FromSystem, Leds) {
    expect_from_system({
        {"21 00 07", "led 7 OFF"},
        {"21 01 07", "red led 7 ON"},
        {"21 02 07", "red led 7 fast flash"},
        {"21 03 07", "red led 7 slow flash"},
        {"21 04 07", "green led 7 ON"},
        {"21 05 07", "green led 7 fast flash ON "},
        {"21 06 07", "green led 7 slow flash ON "},
        {"21 07 07", "all leds OFF"},
        {"21 08 07", "led bizarre"},
        {"21 ff", "led bizarre"},
        {"21", "led 0 OFF"},
        {"a1 07", "all leds OFF"},
        {"a1 06 ff", "green led 255 slow flash ON "},
    });
    for (unsigned action = 8; action < 256; ++action) {
        expect_from_system({{formatted("21 {-:02x} 01"_cf, action), "led bizarre"}});
    }
}

TEST(FromSystem, DisplayLines) {
    expect_from_system({
        {"27", "write line 1\n"},
        {"27 00", "write line 1\n"},
        {"27 00 00", "write line 1\n"},
        {"27 00 00 41", "write line 1 \"A\"\n"},
        {"27 41 42 43 44 45", "write line 1 \"CDE\"\n"},
        {"28", "write line 2\n"},
        {"28 00 00 48 65 6c 6c 6f 20 21", "write line 2 \"Hello !\"\n"},
        // The line is told by the whole byte.
        {"a7 00 00 41", "write line 2 \"A\"\n"},
        {"a8 00 00 41", "write line 2 \"A\"\n"},
        // What cannot be printed is shown as a question mark, zeros included.
        {"27 00 00 41 00 42", "write line 1 \"A?B\"\n"},
        {"27 00 00 1f 20 7e 7f 80 e9 ff 0a 09", "write line 1 \"? ~??????\"\n"},
        {"27 00 00 22 3f", "write line 1 \"\"?\"\n"},
    });
}

TEST(FromSystem, EveryCharacterOfADisplayLine) {
    for (unsigned c = 0; c < 256; ++c) {
        const char shown = c >= 0x20 && c <= 0x7E ? static_cast<char>(c) : '?';
        expect_from_system(
            {{formatted("28 00 00 {-:02x}"_cf, c), std::string("write line 2 \"") + shown + "\"\n"}});
    }
    std::string hex = "27 00 00";
    for (int i = 0; i < 5117; ++i) hex += " 41";
    expect_from_system({{hex, "write line 1 \"" + std::string(5117, 'A') + "\"\n"}});
}

TEST(FromSystem, Metastate) {
    expect_from_system({
        {"2c 05 00", "metastate option 5= disable"},
        {"2c 0a 01", "metastate option a= active"},
        {"2c ff 02", "metastate option ff= wake up"},
        {"2c 00 03", "metastate option 0= inconnu"},
        {"2c 00 ff", "metastate option 0= inconnu"},
        {"2c", "metastate option 0= disable"},
    });
}

TEST(FromSystem, VoiceChannel) {
    expect_from_system({
        {"32 00 01", "voice channel: voice= No, announce= B1"},
        {"32 02 03", "voice channel: voice= B2, announce= B3"},
        {"32 01 00", "voice channel: voice= B1, announce= No"},
        {"32 03 02", "voice channel: voice= B3, announce= B2"},
        {"32 04 ff", "voice channel: voice= unknown channel, announce= unknown channel"},
        {"32", "voice channel: voice= No, announce= No"},
    });
}

TEST(FromSystem, ExternalRinger) {
    expect_from_system({
        {"33 00", "external ringer off"},
        {"33", "external ringer off"},
        {"33 01", "external ringer on"},
        {"33 02", "external ringer, mode follow"},
        {"33 03", "external ringer, unknown mode 0x03"},
        {"33 ff", "external ringer, unknown mode 0xff"},
    });
}

TEST(FromSystem, Cursor) {
    expect_from_system({
        {"35 01 02", "cursor on, line 1"},
        {"35 02 00", "cursor off, line 2"},
        {"35 ff fd", "cursor off, line 255"},
        {"35 00 ff", "cursor on, line 0"},
        {"35 00 01", "cursor off, line 0"},
        {"35", "cursor off, line 0"},
    });
}

TEST(FromSystem, SideTone) {
    expect_from_system({{"3d 00", "side tone off"},
                        {"3d", "side tone off"},
                        {"3d 01", "side tone on"},
                        {"bd 80", "side tone on"}});
}

TEST(FromSystem, AudioConfiguration) {
    expect_from_system({
        {"49 00 00 01", "audio configuration: coding= mu law"},
        {"c9 00 00 00", "audio configuration: coding= A law"},
        {"49 07", "audio configuration:  07"},
        {"49 06 01 03 04 00 20",
         "audio configuration: device configuration:\n"
         "\t\thandset   device:  internal\n"
         "\t\theadset   device:  internal rj9\n"
         "\t\tloudspeak device:  jack\n"
         "\t\tannounce  device:  jack\n"
         "\t\thandsfree device:  ???"},
    });
}

TEST(FromSystem, DownloadRequestOf13Bytes) {
    const std::string rest = " 04 05 06 07 08 09 0a 0b 0c";
    const std::string length = ", length 0x0a0b0c";
    expect_from_system({
        {"50 01 00 00" + rest, "download protocol request, accept all refusals, patches" + length},
        {"50 01 01 01" + rest,
         "download protocol request, will override software lock, application" + length},
        {"50 01 01 02" + rest, "download protocol request, will override software lock, data" + length},
        {"50 01 02 00" + rest, "download protocol request, patches" + length},
        {"50 01 00 03" + rest, "download protocol request, accept all refusals" + length},
        {"d0 01 ff ff" + rest, "download protocol request" + length},
        // 0xAA and 0xCC are identifiers of the other form only.
        {"50 01 00 aa" + rest, "download protocol request, accept all refusals" + length},
    });
}

TEST(FromSystem, DownloadRequestOfAnotherLength) {
    const std::string rest = " 04 05 06 07 08 09 0a 0b 0c 0d";
    const std::string length = ", length 0x0a0b0c0d";
    expect_from_system({
        {"50 01 00 aa" + rest, "download protocol request, base binary" + length},
        {"50 01 00 cc" + rest, "download protocol request, patch binary" + length},
        {"50 01 00 00" + rest, "download protocol request, unknown identifier" + length},
        {"50 01 00 cc" + rest + " 0e", "download protocol request, patch binary" + length},
        {"50 01 00 aa 04 05 06 07 08 09 0a 0b", "download protocol request, base binary, length 0x0a0b0000"},
        {"50 01", "download protocol request, unknown identifier, length 0x00000000"},
    });
}

TEST(FromSystem, OtherDownloadSteps) {
    expect_from_system({
        {"50 00", "download protocol suggest"},
        {"50", "download protocol suggest"},
        {"50 03 12 34", "download protocol data, number: 0x033412"},
        {"50 03", "download protocol data, number: 0x030000"},
        {"50 04", "download protocol end"},
        {"50 06", "download protocol checksum"},
        {"50 08 0f", "download protocol set windows 0x0f"},
        {"50 09 01 02 03", "download protocol data extended, number: 0x010203"},
        {"d0 09 ff fe fd fc", "download protocol data extended, number: 0xfffefd"},
        {"50 02", "download protocol "},
        {"50 05", "download protocol "},
        {"50 07", "download protocol "},
        {"50 0a 01 02 03 04", "download protocol "},
    });
    for (unsigned step = 10; step < 256; ++step) {
        expect_from_system({{formatted("50 {-:02x} 01 02 03 04"_cf, step), "download protocol "}});
    }
}

}  // namespace
}  // namespace ztdecode::testing
