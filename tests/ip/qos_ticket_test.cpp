#include "ip/rows.hpp"

namespace ztdecode::testing {
namespace {

void ticket_items(const std::vector<Row>& items) {
    expect_items(ip::to_system, "13 03", "Ticket QOS:\n\t... ", items);
}
void tickets(const std::vector<Row>& rows) { expect_rows(ip::to_system, rows); }

TEST(IpQosTicket, Labels) {
    ticket_items({{"00 00 02 ab cd", "???               0xabcd"},
                  {"01 00 04 5f 3a 11 02", "date de fin com   0x5f3a1102"},
                  {"02 00 02 00 01", "numero noeud      0x0001"},
                  {"03 00 01 01", "version protocole 0x01"},
                  {"04 00 01 02", "numero rack       0x02"},
                  {"05 00 01 03", "numero coupleur   0x03"},
                  {"06 00 02 02 01", "type equipement   2.1"},
                  {"07 00 01 04", "numero canal      0x04"},
                  {"08 00 04 0a 00 00 05", "ip source         10.0.0.5"},
                  {"09 00 04 c0 a8 01 ff", "ip distant        192.168.1.255"},
                  {"0a 00 04 34 37 31 31", "local id          \"4711\""},
                  {"0b 00 03 30 33 38", "distant id        \"038\""},
                  {"0c 00 04 00 00 00 9c", "duree appel       0x0000009c"},
                  {"0d 00 04 01 02 03 04", "ssrc local        0x01020304"},
                  {"0e 00 04 05 06 07 08", "ssrc distant      0x05060708"},
                  {"0f 00 01 11", "algo compress     0x11"},
                  {"10 00 01 01", "vad               0x01"},
                  {"11 00 01 02", "ece               0x02"},
                  {"12 00 01 03", "voice mode        0x03"},
                  {"13 00 01 14", "framing demande   0x14"},
                  {"14 00 01 14", "framing recu      0x14"},
                  {"15 00 01 00", "changemt framing  0x00"},
                  {"16 00 04 00 00 1f 40", "nb paquets recus  0x00001f40"},
                  {"17 00 04 00 00 1f 41", "nb paquets emis   0x00001f41"},
                  {"18 00 02 00 03", "nb paquets perdus 0x0003"},
                  {"19 00 01 05", "silence total     0x05"},
                  {"1a 00 01 06", "nb sid recus      0x06"},
                  {"1b 00 02 00 01", "table delais      0x0001"},
                  {"1c 00 01 28", "delai max         0x28"},
                  {"1d 00 01 07", "nb dtmf recus     0x07"},
                  {"1e 00 02 00 02", "bfi joues         0x0002"},
                  {"1f 00 02 00 03", "repartition bfi   0x0003"},
                  {"20 00 04 00 00 00 10", "prof jitter       0x00000010"},
                  {"21 00 01 08", "icmp unreachable  0x08"},
                  {"22 00 01 09", "fax pqts perdus   0x09"},
                  {"23 00 01 0a", "fax underrun      0x0a"},
                  {"24 00 01 07", "  36              0x07"},
                  {"25 00 01 08", "  37              0x08"},
                  {"26 00 02 01 17", "version soft      0x0117"},
                  {"27 00 01 0b", "  39              0x0b"},
                  {"28 00 01 0c", "  40              0x0c"},
                  {"29 00 01 14", "framing dsp       0x14"},
                  {"2a 00 01 0d", "nb sid emis       0x0d"},
                  {"2b 00 01 01", "???               0x01"},
                  {"2c 00 01 02", "???               0x02"},
                  {"2d 00 01 0e", "delai min (ms)    0x0e"},
                  {"2e 00 01 01", "utilisatn 802.1Q  0x01"},
                  {"2f 00 01 05", "priorite 802.1Q   0x05"},
                  {"30 00 02 00 64", "VLAN id           0x0064"},
                  {"31 00 01 2e", "DiffServ          0x2e"},
                  {"37 00 01 01", "encryption        0x01"},
                  {"3d 00 02 01 02", "200ms_bfi_distrib 0x0102"},
                  {"3e 00 02 03 04", "consecutive_rtp   0x0304"}});
}

TEST(IpQosTicket, UnknownTags) {
    for (std::size_t tag = 0; tag < 256; ++tag) {
        const bool known =
            (tag >= 1 && tag <= 42) || (tag >= 45 && tag <= 49) || tag == 55 || tag == 61 || tag == 62;
        if (!known) ticket_items({{hex_byte(tag) + "00 03 fe dc ba", "???               0xfedcba"}});
    }
}

TEST(IpQosTicket, EmptyValues) {
    ticket_items({{"01 00 00", "date de fin com   0x"},
                  {"06 00 00", "type equipement   0.0"},
                  {"08 00 00", "ip source         0.0.0.0"},
                  {"0a 00 00", "local id          \"\""},
                  {"0b 00 00", "distant id        \"\""},
                  {"1b 00 00", "table delais      0x"},
                  {"20 00 00", "prof jitter       0x"},
                  {"3f 00 00", "???               0x"}});
}

TEST(IpQosTicket, TablesHaveALineForEachWord) {
    ticket_items(
        {{"1b 00 06 00 01 00 02 00 03", "table delais      0x0001\n\t\t\t      0x0002\n\t\t\t      0x0003"},
         {"1e 00 03 01 02 03", "bfi joues         0x0102\n\t\t\t      0x03"},
         {"1f 00 04 01 02 03 04", "repartition bfi   0x0102\n\t\t\t      0x0304"},
         {"1f 00 01 01", "repartition bfi   0x01"},
         {"20 00 08 00 00 00 10 00 00 00 20", "prof jitter       0x00000010\n\t\t\t      0x00000020"},
         {"20 00 05 01 02 03 04 05", "prof jitter       0x01020304\n\t\t\t      0x05"},
         {"20 00 02 01 02", "prof jitter       0x0102"}});
}

TEST(IpQosTicket, CharactersStandAsTheyAre) {
    ticket_items({{"0a 00 05 22 0a 80 ff 09", "local id          \"\"\n\x80\xff\t\""}});
}

TEST(IpQosTicket, AZeroByteEndsTheLine) {
    ticket_items({{"0a 00 04 34 37 00 31", "local id          \"47"},
                  {"0b 00 01 00", "distant id        \""},
                  {"0b 00 02 00 41 07 00 01 04", "distant id        \"\n\t... numero canal      0x04"}});
}

TEST(IpQosTicket, ItemsStandOnALineEach) {
    tickets({{"13 03 01 00 04 5f 3a 11 02 06 00 02 02 01 2b 00 00 10 00 01 01",
              "Ticket QOS:\n\t... date de fin com   0x5f3a1102\n\t... type equipement   2.1\n"
              "\t... ???               0x\n\t... vad               0x01"},
             // The value's length is its own: what a tag shows of it may be more or less.
             {"13 03 08 00 01 0a 10 00 01 01",
              "Ticket QOS:\n\t... ip source         10.16.0.1\n\t... vad               0x01"},
             {"13 03 06 00 04 02 01 ff ff 10 00 01 01",
              "Ticket QOS:\n\t... type equipement   2.1\n\t... vad               0x01"}});
}

TEST(IpQosTicket, Empty) { tickets({{"13 03", "Ticket QOS:\n\t... "}}); }

TEST(IpQosTicket, Tag255BehindAnItemEndsTheTicket) {
    tickets({{"13 03 0c 00 01 9c ff", "Ticket QOS:\n\t... duree appel       0x9c\n\t... \n\t... end missing"},
             {"13 03 0c 00 01 9c ff 00 01 02",
              "Ticket QOS:\n\t... duree appel       0x9c\n\t... \n\t... end missing"},
             {"13 03 0c 00 01 9c 10 00 01 01 ff 0c",
              "Ticket QOS:\n\t... duree appel       0x9c\n\t... vad               0x01\n\t... \n\t... end "
              "missing"},
             {"13 03 0c 00 01 ff", "Ticket QOS:\n\t... duree appel       0xff"}});
    EXPECT_EQ(in_record(ip::to_system, "13 03 0c 00 01 9c", "ff 00"),
              "Ticket QOS:\n\t... duree appel       0x9c\n\t... end missing");
    EXPECT_EQ(in_record(ip::to_system, "13 03 0c 00 01 9c", "fe ff"),
              "Ticket QOS:\n\t... duree appel       0x9c");
    EXPECT_EQ(in_record(ip::to_system, "13 03 0c 00 02", "41 42 ff"),
              "Ticket QOS:\n\t... duree appel       0x4142\n\t... end missing");
}

TEST(IpQosTicket, Tag255InFirstPlaceIsATag) {
    tickets(
        {{"13 03 ff", "Ticket QOS:\n\t... ???               0x"},
         {"13 03 ff 00 02 01 02", "Ticket QOS:\n\t... ???               0x0102"},
         {"13 03 ff 00 00 ff 00 00", "Ticket QOS:\n\t... ???               0x\n\t... \n\t... end missing"}});
}

TEST(IpQosTicket, AValueThatRunsPastTheEndIsTheLast) {
    tickets({{"13 03 0c 00 04 01", "Ticket QOS:\n\t... duree appel       0x01000000"},
             {"13 03 0c 00", "Ticket QOS:\n\t... duree appel       0x"},
             {"13 03 0c", "Ticket QOS:\n\t... duree appel       0x"},
             {"13 03 0a 01 00 41 42", "Ticket QOS:\n\t... local id          \"AB"}});
    EXPECT_EQ(in_record(ip::to_system, "13 03 0c 00 04 01", "02 03 04 05"),
              "Ticket QOS:\n\t... duree appel       0x01020304");
}

TEST(IpQosTicket, EndsAt29999Characters) {
    const std::string head = "Ticket QOS:\n\t... ";
    const std::string label = "duree appel       0x";
    EXPECT_EQ(TestSession().with(ip::to_system, "13 03 0c ff ff 01"),
              head + label + "01" + repeated("0", 29999 - head.size() - label.size() - 2));
    // The longest claim that fits, and one byte more.
    const std::size_t most = (29999 - head.size() - label.size()) / 2;
    for (const std::size_t claim : {most, most + 1}) {
        const std::string text =
            TestSession().with(ip::to_system, "13 03 0c" + hex_byte(claim / 256) + hex_byte(claim % 256));
        EXPECT_EQ(text, (head + label + repeated("00", claim)).substr(0, 29999)) << claim;
    }
    std::string words = "table delais      0x0000";
    while (words.size() < 29999) words += "\n\t\t\t      0x0000";
    EXPECT_EQ(TestSession().with(ip::to_system, "13 03 1b ff ff"), (head + words).substr(0, 29999));
    std::string double_words = "prof jitter       0x00000000";
    while (double_words.size() < 29999) double_words += "\n\t\t\t      0x00000000";
    EXPECT_EQ(TestSession().with(ip::to_system, "13 03 20 ff ff"), (head + double_words).substr(0, 29999));
}

TEST(IpQosTicket, ManyItemsEndAt29999CharactersToo) {
    std::string hex = "13 03";
    std::string text = "Ticket QOS:\n\t... ";
    for (int i = 0; i < 1700; ++i) {
        hex += " 2b 00 00";
        text += (i > 0 ? "\n\t... " : "") + std::string("???               0x");
    }
    ASSERT_GT(text.size(), 29999U);
    EXPECT_EQ(TestSession().with(ip::to_system, hex), text.substr(0, 29999));
}

TEST(IpQosTicket, WhatStandsBehindTheTicketIsNotCut) {
    // A super message of two parts: the first a ticket that is cut, the second whole.
    const std::string text = TestSession().to_dhs("0b 05 13 03 0c ff ff 03 13 01 01");
    EXPECT_EQ(
        text,
        "\t- super message:\n\t> zt 05 00 13 03 0c ff ff\n\tIP - Ticket QOS:\n\t... duree appel       0x" +
            repeated("0", 29999 - 37) + "\n\t> zt 03 00 13 01 01\n\tIP - incident: lanpbx file corrupted\n");
}

}  // namespace
}  // namespace ztdecode::testing
