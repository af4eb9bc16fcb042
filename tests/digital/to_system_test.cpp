#include <set>

#include "digital/rows.hpp"

namespace ztdecode::testing {
namespace {

constexpr Row plain_messages[] = {
    {"00", "nop ack"},
    {"01", "handset off hook"},
    {"02", "handset on hook"},
    {"06", "loop back on ack"},
    {"07", "loop back off ack"},
    {"0a", "warmstart ack"},
    {"0b", "super message"},
    {"17", "super message type 2"},
    {"18", "debug message"},
    {"20", "key pushed"},
    {"22", "I'm here"},
    {"23", "status response"},
    {"24", "subdev state response"},
    {"26", "digit released"},
    {"27", "trace on ack"},
    {"28", "trace off ack"},
    {"29", "special key status"},
    {"2a", "key released"},
    {"2b", "peripheral content"},
    {"2d", "TM key pushed"},
    {"60", "CTI: local msg"},
    {"61", "CTI: trace dhs->vta"},
    {"62", "CTI: trace vta->dhs"},
    {"63", "CTI: trace dhs->subd"},
    {"64", "CTI: trace subd->dhs"},
};

TEST(ToSystem, PlainMessages) {
    for (const Row& row : plain_messages) {
        expect_to_system({row, {with_high_bit(row.hex), row.text}});
        const std::string longer = std::string(row.hex) + " 01 02 03 04 05";
        expect_to_system({{longer, row.text}});
    }
}

TEST(ToSystem, UnknownOpcodes) {
    std::set<int> known = {3, 4, 12, 31, 33, 80};
    for (const Row& row : plain_messages) known.insert(bytes(row.hex)[0]);
    EXPECT_EQ(known.size(), 31U);
    for (unsigned opcode = 0; opcode < 256; ++opcode) {
        const bool is_known = known.count(opcode & 0x7F) == 1;
        for (const std::string_view rest : {"", " 00", " 03 04 05 06 07 08 09"}) {
            TestSession d;
            const std::string text =
                d.with(digital::to_system, formatted("{-:02x}{-}"_cf, opcode, rest), to_dhs);
            EXPECT_EQ(d.status, is_known ? Status::recognised : Status::unknown) << opcode;
            EXPECT_EQ(text.empty(), !is_known) << opcode;
        }
    }
}

TEST(ToSystem, NoMessage) {
    TestSession d;
    EXPECT_EQ(d.with(digital::to_system, "", to_dhs), "");
    EXPECT_EQ(d.status, Status::none);
}

TEST(ToSystem, Digits) {
    expect_to_system({{"03 00", "digit dialed '0'"},
                      {"03 01", "digit dialed '1'"},
                      {"03 02", "digit dialed '2'"},
                      {"03 03", "digit dialed '3'"},
                      {"03 04", "digit dialed '4'"},
                      {"03 05", "digit dialed '5'"},
                      {"03 06", "digit dialed '6'"},
                      {"03 07", "digit dialed '7'"},
                      {"03 08", "digit dialed '8'"},
                      {"03 09", "digit dialed '9'"},
                      {"03 0a", "digit dialed '*'"},
                      {"03 0b", "digit dialed '#'"},
                      {"83 0a", "digit dialed '*'"},
                      {"03", "digit dialed '0'"}});
    for (unsigned key = 12; key < 256; ++key)
        expect_to_system({{formatted("03 {-:02x}"_cf, key), "digit dialed invalid"}});
}

TEST(ToSystem, Segments) {
    expect_to_system({{"0c 80", "segment message start= yes, reste= 0"},
                      {"0c 82 00 06", "segment message start= yes, reste= 2"},
                      {"0c ff", "segment message start= yes, reste= 127"},
                      {"0c 7f", "segment message start= no, reste= 127"},
                      {"0c 01", "segment message start= no, reste= 1"},
                      {"0c 00", "segment message start= no, reste= 0"},
                      {"8c 85", "segment message start= yes, reste= 5"},
                      {"0c", "segment message start= no, reste= 0"}});
}

// ---- Reset and status report

TEST(ToSystemReset, OfASet) {
    expect_to_system({
        {"1f 00 00 02 05 20 05 02 07 00 01",
         "reset hard, set-05 beta, soft=2.05, self OK, vta type=1, info1=2, info2=7, hard cfg=00, rac"},
        {"1f 01 00 30 39 03 0b 09 ff 7f 00",
         "reset soft, video add-on reserved, soft=1.23.45 disp BAD rom BAD, vta type>=2, info1=9, info2=255, "
         "hard cfg=7f (fullcrypto gigabit maxmem wideband 3g vhe superwideband ), dec"},
        {"9f 00 00 01 00 00 00 00 00 0a 00",
         "reset hard, set-00 alpha, soft=1.00, vta type=1, info1=0, info2=0, hard cfg=0a (gigabit wideband "
         "), dec"},
        {"1f 00 00 0a c8 1f 36 3b 80 80 02",
         "reset hard, set-54 not used, soft=a.200 disp BAD rom BAD cpu BAD ram BAD icon BAD, vta type>=2, "
         "info1=59, "
         "info2=128, hard cfg=80 (), dec"},
        {"1f 00 00 00 00 00 ff 03 00 01 01",
         "reset hard, autre not used, soft=0.00, vta type=1, info1=3, info2=0, hard cfg=01 (fullcrypto ), "
         "rac"},
        {"1f", "reset hard, set-00 alpha, soft=0.00, vta type=1, info1=0, info2=0, hard cfg=00, dec"},
        {"1f 01", "reset soft, set-00 alpha, soft=0.00, vta type=1, info1=0, info2=0, hard cfg=00, dec"},
    });
}

TEST(ToSystemReset, HardwareBits) {
    const std::string before = "reset hard, set-00 alpha, soft=0.00, vta type=1, info1=0, info2=0, hard cfg=";
    const std::string_view bits[] = {"01 (fullcrypto ), dec",    "02 (gigabit ), dec", "04 (maxmem ), dec",
                                     "08 (wideband ), dec",      "10 (3g ), dec",      "20 (vhe ), dec",
                                     "40 (superwideband ), dec", "80 (), dec"};
    for (const std::string_view bit : bits) {
        const std::string hex = "1f 00 00 00 00 00 00 00 00 " + std::string(bit.substr(0, 2));
        expect_to_system({{hex, before + std::string(bit)}});
    }
}

TEST(ToSystemReset, NewerTerminals) {
    for (unsigned info = 0; info < 256; ++info) {
        const std::string_view designs[] = {"alpha", "reserved", "beta", "not used"};
        const std::string hex = formatted("1f 00 00 00 00 00 00 {-:02x}"_cf, info);
        const std::string text = formatted(
            "reset hard, set-00 {-}, soft=0.00, vta type{-}, info1={-}, info2=0, hard cfg=00, dec"_cf,
            designs[info & 3], (info & 0x38) != 0 ? ">=2" : "=1", info);
        expect_to_system({{hex, text}});
    }
}

// One byte more at a time: each extension shows once its last byte is there.
TEST(ToSystemReset, Extensions) {
    const std::string set = "1f 00 00 01 00 00 00 00 00 00 00";
    const std::string text =
        "reset hard, set-00 alpha, soft=1.00, vta type=1, info1=0, info2=0, hard cfg=00, dec";
    const std::string data = text + " , data=3.04";
    const std::string load = data + " , load=2.154";
    const std::string additional = load + ", additional vta type=ab, ";
    const std::string bt = additional + "bt=9, ";
    const std::string vpn = bt + "vpn=1, ipsec=0, dtls=1, ";
    const std::string wlan = vpn + "wlan connected=1, ";
    expect_to_system({
        {set, text},
        {set + " 03", text},
        {set + " 03 04", data},
        {set + " 03 04 02", data},
        {set + " 03 04 02 9a", load},
        {set + " 03 04 02 9a ab", additional},
        {set + " 03 04 02 9a ab 09", bt},
        {set + " 03 04 02 9a ab 09 05", vpn},
        {set + " 03 04 02 9a ab 09 05 03", wlan},
        {set + " 03 04 02 9a ab 09 05 03 ff", wlan},
        {set + " 03 04 02 9a ab 09 02 fe", bt + "vpn=0, ipsec=1, dtls=0, wlan connected=0, "},
        {set + " 03 04 02 9a ab 09 f8 00", bt + "vpn=0, ipsec=0, dtls=0, wlan connected=0, "},
        {set + " 30 39 30 39 0a ff",
         text + " , data=1.23.45 , load=1.23.45, additional vta type=0a, bt=255, "},
    });
}

TEST(ToSystemReset, OfAnAdapter) {
    expect_to_system({
        {"1f 00 01 02 05 ff ff 08 00 ff 01",
         "reset hard, TA soft=2.05, vta type>=2, info1=8, info2=0, hard cfg=ff, rac"},
        {"1f 01 01 02 05 00 00 00 01 00 00 01 02",
         "reset soft, TA soft=2.05, vta type=1, info1=0, info2=1, hard cfg=00, dec , data=1.02"},
    });
}

TEST(ToSystemReset, OfAnUnknownTerminal) {
    expect_to_system({
        {"1f 00 05 02 05 ff ff 08 00 ff 01",
         "reset hard, ??? soft=2.05, vta type>=2, info1=8, info2=0, hard cfg=ff, rac"},
        {"1f 01 ff 02 05", "reset soft, ??? soft=2.05, vta type=1, info1=0, info2=0, hard cfg=00, dec"},
    });
}

TEST(ToSystemReset, OfADectBase) {
    expect_to_system({
        {"1f 00 02 02 05 ff 00 00 ff 00", "reset hard, DECT-IBS soft=2.05, reserved, local power feeding"},
        {"1f 01 02 02 05 ff 01 01 ff 01",
         "reset soft, DECT-IBS soft=2.05, 3 channels, remote power feeding, download suggested"},
        {"1f 00 02 02 05 ff 02 02 ff 02", "reset hard, DECT-IBS soft=2.05, 6 channels, ???"},
        {"1f 00 02 02 05 ff 03 ff", "reset hard, DECT-IBS soft=2.05, ???, ???"},
        {"1f 00 03 30 39 ff ff 00 ff 01",
         "reset hard, PWT-IBS soft=1.23.45, ???, local power feeding, download suggested"},
        {"1f 01 03", "reset soft, PWT-IBS soft=0.00, reserved, local power feeding"},
        {"1f 01 03 01 02 00 02 01 00 00 01 01 01 01 01",
         "reset soft, PWT-IBS soft=1.02, 6 channels, remote power feeding"},
    });
}

TEST(ToSystemReset, OfAHub) {
    expect_to_system({
        {"1f 00 04 02 05 0a 0b 0c 0d 00",
         "reset hard, HUB soft=2.05 selfTest: 0A type: 0B romVersion: 0D \n\t... misc: 0C dld done"},
        {"1f 01 04 02 05 0a 0b 01 0d 01",
         "reset soft, HUB soft=2.05 selfTest: 0A type: 0B romVersion: 0D \n\t... misc: 01= repeater dld "
         "suggested"},
        {"1f 00 04 00 00 00 00 01 00 02",
         "reset hard, HUB soft=0.00 selfTest: 00 type: 00 romVersion: 00 \n\t... misc: 01= repeater dld "
         "done"},
    });
}

// What the dispatcher left in the message before, and what the decoder left in it.
struct OnRoute {
    std::string text;
    std::uint32_t route;
    Status status;
};

OnRoute on_route(std::uint32_t route, std::string_view hex) {
    const auto data = bytes(hex);
    Session session;
    Message m(data);
    m.direction = to_dhs;
    Text out;
    Decoding d(session, m, out);
    d.route = route;
    digital::to_system(d);
    return {std::string(out.view()), d.route, d.status};
}

TEST(ToSystemReset, OnTheHeLinkItIsShort) {
    constexpr Row rows[] = {
        {"1f 00 00 05 01 01 01 01 01 01 01 01 01 01 01", "reset hard, set-05"},
        {"1f 01 00 06", "reset soft, HE"},
        {"1f 00 01 05", "reset hard, TAset-05"},
        {"1f 01 02 08", "reset soft, DECT-IBSundetermined"},
        {"1f 00 03 0f", "reset hard, PWT-IBSautre"},
        {"1f 00 04 00", "reset hard, HUBset-00"},
        {"1f 00 05 0b", "reset hard, ???video add-on"},
        {"1f 00", "reset hard, set-00"},
    };
    for (const Row& row : rows) EXPECT_EQ(on_route(1, row.hex).text, row.text) << row.hex;
    for (const std::uint32_t route : {0U, 2U, 3U, 4U, 5U, 8U, 9U, 12U}) {
        EXPECT_EQ(on_route(route, "1f 00 02 02 05").text,
                  "reset hard, DECT-IBS soft=2.05, reserved, local power feeding")
            << route;
    }
    EXPECT_EQ(on_route(1, "1f 02 05").text, "illegal command received: 05");
}

TEST(ToSystemReset, AHubsReportChangesTheRoute) {
    for (unsigned kind = 0; kind < 256; ++kind) {
        for (const std::uint32_t route : {0U, 1U, 2U}) {
            EXPECT_EQ(on_route(route, formatted("1f {-:02x} 04 00"_cf, kind)).route, 9U) << kind;
            EXPECT_EQ(on_route(route, formatted("9f {-:02x} 04"_cf, kind)).route, 9U) << kind;
            EXPECT_EQ(on_route(route, formatted("1f {-:02x} 03 04"_cf, kind)).route, route) << kind;
            EXPECT_EQ(on_route(route, formatted("1f {-:02x}"_cf, kind)).route, route) << kind;
        }
    }
    EXPECT_EQ(on_route(0, "21 00 04").route, 0U);
}

TEST(ToSystemReset, OtherKinds) {
    expect_to_system({
        {"1f 02 21", "illegal command received: 21"},
        {"1f 02 0f", "illegal command received: 0f"},
        {"1f 02", "illegal command received: 00"},
        {"1f 03 01", "erreur: bad ressource ID"},
        {"1f 03 02", "erreur: bad value"},
        {"1f 03 03", "erreur: bad attribut"},
        {"1f 03 04", "erreur: memory overflow"},
        {"1f 03 05", "erreur: bad lenth"},
        {"1f 03 06", "erreur: not accepted"},
        {"1f 03 07", "erreur: 07"},
        {"1f 04 10", "warning: clip"},
        {"1f 04 20", "warning: alignement"},
        {"1f 04 40", "warning: unmap"},
        {"1f 04 01", "warning: 01"},
        {"1f 05 03", "subdevice 3 is down"},
        {"1f 05 1f", "subdevice 1f is down"},
        {"1f 06", "segment failure"},
        {"1f 06 04 05", "segment failure"},
        {"1f 09 01", "hub event: msg too long"},
        {"1f 09 02", "hub event: ???"},
        {"1f 09", "hub event: ???"},
    });
    for (unsigned kind = 0; kind < 256; ++kind) {
        if (kind != 7 && kind <= 9) continue;
        expect_to_system({{formatted("1f {-:02x} 01 02 03 04 05"_cf, kind), "reset ???"}});
    }
}

TEST(ToSystemReset, Kind8HasThreeTexts) {
    expect_to_system({
        {"1f 08 13 0a 0b 0c 0d", "error status for command 0x13: 0x0a0b0c0d"},
        {"1f 08 13 21 0a 0b 0c 0d", "error status for command 0x13 + 0x21: 0x0a0b0c0d"},
        {"1f 08 ff 21 00 00 00 01", "error status for command 0x13 + 0x21: 0x00000001"},
        {"1f 08 03 01 0b 0c 0d 0e 0f", "interface 3 event: msg too long"},
        {"1f 08 03 02 0b 0c 0d 0e 0f", "interface 3 event: short circuit"},
        {"1f 08 13 00 0b 0c 0d 0e 0f", "interface 13 event: ???"},
        {"1f 08 0a 01 0b 0c", "interface a event: msg too long"},
        {"1f 08 01 02", "interface 1 event: short circuit"},
        {"1f 08 01 03", "interface 1 event: ???"},
        {"1f 08", "interface 0 event: ???"},
    });
}

// ---- Versions and downloads

TEST(ToSystem, VersionResponses) {
    expect_to_system({
        {"21 00 02 05 06", "version response  poste= , HE  soft=2.05"},
        {"21 00 30 39 31", "version response  poste= , set-49  soft=1.23.45"},
        {"21 00 02 c8 0f", "version response  poste= , autre  soft=2.200"},
        {"21 01 02 05 06", "version response  TA,   soft=2.05"},
        {"a1 ff 02 05 06", "version response  TA,   soft=2.05"},
        {"21", "version response  poste= , set-00  soft=0.00"},
    });
}

TEST(ToSystem, DownloadAcknowledgements) {
    constexpr Row acks[] = {
        {"00", "ack ok (0x00)"},
        {"10", "refused hard pb (0x10)"},
        {"11", "refused no loader (0x11)"},
        {"12", "refused soft lock (0x12)"},
        {"13", "refused wrong param (0x13)"},
        {"20", "error wrong packet number (0x20)"},
        {"21", "error invalid compressed header (0x21)"},
        {"22", "error decompress (0x22)"},
        {"23", "error invalid binary header (0x23)"},
        {"24", "error binary check (0x24)"},
        {"25", "error no more data accepted (0x25)"},
        {"26", "error no dwl in progress (0x26)"},
        {"27", "error too many bytes received (0x27)"},
        {"ff", "error undefined (0xFF)"},
        {"01", "ack 0x01 ??? (0x01)"},
        {"0f", "ack 0x0F ??? (0x0F)"},
        {"14", "ack 0x14 ??? (0x14)"},
        {"1f", "ack 0x1F ??? (0x1F)"},
        {"28", "ack 0x28 ??? (0x28)"},
        {"ab", "ack 0xAB ??? (0xAB)"},
        {"fe", "ack 0xFE ??? (0xFE)"},
    };
    std::set<int> named;
    for (const Row& ack : acks) {
        const std::string code(ack.hex);
        const std::string text(ack.text);
        named.insert(bytes(code)[0]);
        expect_to_system({
            {"50 02 01 02 " + code, "download protocol " + text + ", number: 0x0102"},
            {"50 0a 01 02 03 " + code, "download protocol " + text + ", number: 0x010203"},
            {"d0 02 ff 0a " + code + " 77", "download protocol " + text + ", number: 0xff0a"},
        });
    }
    for (unsigned code = 0; code < 256; ++code) {
        if (named.count(code) == 1) continue;
        expect_to_system(
            {{formatted("50 02 00 00 {-:02x}"_cf, code),
              formatted("download protocol ack 0x{-:02X} ??? (0x{-:02X}), number: 0x0000"_cf, code, code)}});
    }
}

TEST(ToSystem, OtherDownloadSteps) {
    expect_to_system({{"50 00", "download protocol suggest"},
                      {"50", "download protocol suggest"},
                      {"50 05", "download protocol end ack"},
                      {"50 07", "download protocol checksum ack"},
                      {"50 02", "download protocol ack ok (0x00), number: 0x0000"}});
    for (unsigned step = 0; step < 256; ++step) {
        if (step == 0 || step == 2 || step == 5 || step == 7 || step == 10) continue;
        expect_to_system({{formatted("50 {-:02x} 01 02 03 04"_cf, step), "download protocol "}});
    }
}

}  // namespace
}  // namespace ztdecode::testing
