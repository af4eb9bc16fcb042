#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(DecodeS0Out, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(s0::from_system,
                   {{0, "nop"},
                    {3, "software reset"},
                    {6, "digital loop ON"},
                    {7, "digital loop OFF"},
                    {12, "segment message -1/0"},
                    {14, "version inquiry"},
                    {15, "state inquiry"},
                    {16, "segment size"},
                    {32, "channel affectation"},
                    {33, "activate indicate"},
                    {34, "deactivate indicate"},
                    {35, "set timer tempo"},
                    {36, "send test pattern"},
                    {48, "set operating parameters"},
                    {49, "set overload condition"},
                    {56, "internal software status request xon/xoff thresholds"},
                    {63, "set operating mode: full S0"},
                    {71, "data link establish. req. sapi 1 tei 00 "},
                    {72, "data link establish. req. + UI frame sapi 1 tei 00 "},
                    {73, "data link establish. req. + I frame sapi 1 tei 00 "},
                    {74, "data link release sapi 1 tei 00 "},
                    {75, "I frame send request sapi 1 tei 00  "},
                    {76, "UI frame send request sapi 1 tei 00  "},
                    {77, "set loop request"},
                    {78, "reset loop request"}},
                   [](unsigned) { return std::string("??"); });
}

TEST(DecodeS0Out, NamesInternalStatuses) {
    expect_values(s0::from_system, "02 0b 38 00 02", 3,
                  {{0, "internal software status request os queues"},
                   {1, "internal software status request xon/xoff thresholds"},
                   {2, "internal software status request divers"},
                   {3, "internal software status request cks, rev, ver,variant"},
                   {4, "internal software status request etat niveau 1"}},
                  "internal software status request");
}

TEST(DecodeS0Out, NamesOperatingModes) {
    expect_values(s0::from_system, "02 0b 3f 00", 3, {{1, "set operating mode: full S0"}},
                  "set operating mode: S0 star");
}

TEST(DecodeS0Out, DataLinksHaveSapiAndTei) {
    expect_texts(s0::from_system,
                 {{"02 0b 47 10 7f 08 00 00 05", "data link establish. req. sapi 16 tei 7F "},
                  {"02 0b 48 ff 0a 10", "data link establish. req. + UI frame sapi 255 tei 0A "},
                  {"02 0b 49 00 ab 10", "data link establish. req. + I frame sapi 0 tei AB "},
                  {"02 0b 4a 3f 01 00", "data link release sapi 63 tei 01 "}});
}

TEST(DecodeS0Out, NamesCallControlMessages) {
    expect_values(s0::from_system, "02 0b 4b 00 40 08 06 07 00", 8,
                  {{1, "I frame send request sapi 0 tei 40  alerte"},
                   {2, "I frame send request sapi 0 tei 40  appel en cours"},
                   {3, "I frame send request sapi 0 tei 40  progress"},
                   {5, "I frame send request sapi 0 tei 40  etablissement"},
                   {7, "I frame send request sapi 0 tei 40  connexion"},
                   {13, "I frame send request sapi 0 tei 40  etablissement ack"},
                   {37, "I frame send request sapi 0 tei 40  suspension"},
                   {38, "I frame send request sapi 0 tei 40  reprise"},
                   {69, "I frame send request sapi 0 tei 40  deconnexion"},
                   {77, "I frame send request sapi 0 tei 40  lib"},
                   {90, "I frame send request sapi 0 tei 40  fin lib"},
                   {98, "I frame send request sapi 0 tei 40  facilite"},
                   {100, "I frame send request sapi 0 tei 40  reponse enreg"},
                   {110, "I frame send request sapi 0 tei 40  notify"},
                   {116, "I frame send request sapi 0 tei 40  demande enreg"},
                   {117, "I frame send request sapi 0 tei 40  status inquiry"},
                   {123, "I frame send request sapi 0 tei 40  information"},
                   {125, "I frame send request sapi 0 tei 40  status"},
                   {226, "I frame send request sapi 0 tei 40  etat"}},
                  "I frame send request sapi 0 tei 40  inconnu");
}

TEST(DecodeS0Out, ContentIsCallControlOrPacketOrItsBlankAlone) {
    expect_values(s0::from_system, "02 0b 4c 00 41 00 06 07 45", 5,
                  {{8, "UI frame send request sapi 0 tei 41  deconnexion"},
                   {16, "UI frame send request sapi 0 tei 41  packet"}},
                  "UI frame send request sapi 0 tei 41  ");
    expect_texts(s0::from_system, {{"02 0b 4b 00 41 10", "I frame send request sapi 0 tei 41  packet"}});
}

TEST(DecodeS0Out, SegmentsCountUpToTheRememberedTotal) {
    TestSession d;
    EXPECT_EQ(d.with(s0::from_system, "02 0b 0c 02"), "segment message -2/0");
    EXPECT_EQ(d.with(s0::from_system, "02 0b 0c 82 04 05 06 07 08 09 0a 0b 07"),
              "segment message 1/3\n\t- connexion");
    EXPECT_EQ(d.with(s0::from_system, "02 0b 0c 01 04 05 06 07 08 09 0a 0b 07"), "segment message 2/3");
    EXPECT_EQ(d.with(s0::from_system, "02 0b 8c 00"), "segment message 3/3");
}

TEST(DecodeS0Out, DoesNotSplitSuperMessages) {
    expect_texts(
        s0::from_system,
        {{"02 0b 0b 02 01 05 01 03", "??"}, {"02 0b 80", "nop"}, {"02 0b 4f", "??"}, {"02 0b ff", "??"}});
}

}  // namespace
}  // namespace ztdecode::testing
