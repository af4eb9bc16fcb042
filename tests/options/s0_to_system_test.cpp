#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(DecodeS0, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(s0::to_system,
                   {{0, "nop ack"},
                    {6, "digital loop ON ack"},
                    {7, "digital loop OFF ack"},
                    {12, "segment message -1/0"},
                    {14, "version response"},
                    {15, "state response, etat N1 star= deactivated"},
                    {31, "reset soft S0  soft=0.00 selftest OK, powered"},
                    {32, "s0 star: activate confirm"},
                    {33, "s0 star: activate request"},
                    {34, "s0 star: deactivate request"},
                    {35, "s0 star: deactivate confirm"},
                    {36, "loss of power"},
                    {37, "gain of power"},
                    {49, "overload condition"},
                    {56, "internal software status xon/xoff thresholds"},
                    {63, "operating mode: full S0"},
                    {64, "data link establish. ind. sapi 1 tei 00 cause: request ack."},
                    {65, "data link release ind. sapi 1 tei 00 cause: request ack."},
                    {66, "I frame received sapi 1 tei 00  "},
                    {67, "dat link estab. & UI frame received sapi 1 tei 00  "},
                    {68, "UI frame received sapi 1 tei 00  "},
                    {69, "loop set indication"},
                    {70, "loop reset indication"}},
                   [](unsigned) { return std::string("??"); });
}

TEST(DecodeS0, NamesStarStates) {
    expect_values(s0::to_system, "04 0b 0f 01 00", 4,
                  {{0, "state response, etat N1 star= deactivated"},
                   {1, "state response, etat N1 star= activation request, timer running"},
                   {2, "state response, etat N1 star= timer expired, waiting I3"},
                   {3, "state response, etat N1 star= I3 received, waiting for AIU"},
                   {4, "state response, etat N1 star= AIU received, waiting for I3"},
                   {5, "state response, etat N1 star= activation OK, timer"},
                   {6, "state response, etat N1 star= connected"},
                   {8, "state response, etat N1 star= deactivation request"},
                   {9, "state response, etat N1 star= deactivation"},
                   {10, "state response, etat N1 star= desynchro"},
                   {255, "state response, etat N1 star= inconnu pour logiciel s0"}},
                  "state response, etat N1 star= inconnu");
}

TEST(DecodeS0, NamesInternalStatuses) {
    expect_values(s0::to_system, "04 0b 38 00 02", 3,
                  {{0, "internal software status os queues"},
                   {1, "internal software status xon/xoff thresholds"},
                   {2, "internal software status divers"},
                   {3, "internal software status cks, rev, ver,variant"},
                   {4, "internal software status etat N1= G3 activated"}},
                  "internal software status");
}

TEST(DecodeS0, NamesLayer1States) {
    expect_values(s0::to_system, "04 0b 38 04 00", 4,
                  {{0, "internal software status etat N1= G1 deactivated"},
                   {1, "internal software status etat N1= G2 pending activation"},
                   {2, "internal software status etat N1= G3 activated"},
                   {3, "internal software status etat N1= G4 pending deactivation"},
                   {4, "internal software status etat N1= test"},
                   {5, "internal software status etat N1= G5 out of synchro"}},
                  "internal software status etat N1= inconnu");
}

TEST(DecodeS0, NamesOperatingModes) {
    expect_values(s0::to_system, "04 0b 3f 00", 3, {{1, "operating mode: full S0"}},
                  "operating mode: S0 star");
}

TEST(DecodeS0, NamesReleaseCauses) {
    expect_values(s0::to_system, "04 0b 41 10 7f 00", 5,
                  {{0, "data link release ind. sapi 16 tei 7F cause: request ack."},
                   {1, "data link release ind. sapi 16 tei 7F cause: deactivated by peer"},
                   {2, "data link release ind. sapi 16 tei 7F cause: activated by peer"},
                   {3, "data link release ind. sapi 16 tei 7F cause: layer 1 deactivated"},
                   {4, "data link release ind. sapi 16 tei 7F cause: peer out of order"},
                   {5, "data link release ind. sapi 16 tei 7F cause: protocol out of order"},
                   {6, "data link release ind. sapi 16 tei 7F cause: corrupted frame received"},
                   {7, "data link release ind. sapi 16 tei 7F cause: reset by peer"},
                   {8, "data link release ind. sapi 16 tei 7F cause: timeout for remote busy"},
                   {9, "data link release ind. sapi 16 tei 7F cause: internal ressource not available"}},
                  "data link release ind. sapi 16 tei 7F cause: inconnue");
    expect_texts(s0::to_system, {{"04 0b 40 ff 0a 03",
                                  "data link establish. ind. sapi 255 tei 0A cause: layer 1 deactivated"}});
}

TEST(DecodeS0, NamesCallControlMessages) {
    expect_values(s0::to_system, "04 0b 42 00 40 08 06 07 00", 8,
                  {{1, "I frame received sapi 0 tei 40  alerte"},
                   {2, "I frame received sapi 0 tei 40  appel en cours"},
                   {3, "I frame received sapi 0 tei 40  progress"},
                   {5, "I frame received sapi 0 tei 40  etablissement"},
                   {7, "I frame received sapi 0 tei 40  connexion"},
                   {13, "I frame received sapi 0 tei 40  etablissement ack"},
                   {37, "I frame received sapi 0 tei 40  suspension"},
                   {38, "I frame received sapi 0 tei 40  reprise"},
                   {69, "I frame received sapi 0 tei 40  deconnexion"},
                   {77, "I frame received sapi 0 tei 40  lib"},
                   {90, "I frame received sapi 0 tei 40  fin lib"},
                   {98, "I frame received sapi 0 tei 40  facilite"},
                   {100, "I frame received sapi 0 tei 40  reponse enreg"},
                   {110, "I frame received sapi 0 tei 40  notify"},
                   {116, "I frame received sapi 0 tei 40  demande enreg"},
                   {117, "I frame received sapi 0 tei 40  status inquiry"},
                   {123, "I frame received sapi 0 tei 40  information"},
                   {125, "I frame received sapi 0 tei 40  status"},
                   {226, "I frame received sapi 0 tei 40  etat"}},
                  "I frame received sapi 0 tei 40  inconnu");
}

TEST(DecodeS0, ContentIsCallControlOrPacketOrItsBlankAlone) {
    expect_values(s0::to_system, "04 0b 44 00 41 00 06 07 45", 5,
                  {{8, "UI frame received sapi 0 tei 41  deconnexion"},
                   {16, "UI frame received sapi 0 tei 41  packet"}},
                  "UI frame received sapi 0 tei 41  ");
    expect_texts(
        s0::to_system,
        {{"04 0b 43 00 ff 08 00 00 05", "dat link estab. & UI frame received sapi 0 tei FF  etablissement"},
         {"04 0b 43 10 02 10", "dat link estab. & UI frame received sapi 16 tei 02  packet"},
         {"04 0b 42 00 00 10 00 00 05", "I frame received sapi 0 tei 00  packet"},
         {"04 0b 42 01 02 08 00 00 05", "I frame received sapi 1 tei 02  etablissement"}});
}

TEST(DecodeS0, SegmentsCountUpToTheRememberedTotal) {
    TestSession d;
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 02"), "segment message -2/0");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 82 04 05 06 07 08 09 0a 0b 05"),
              "segment message 1/3\n\t- etablissement");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 01 04 05 06 07 08 09 0a 0b 05"), "segment message 2/3");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 00"), "segment message 3/3");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 7f"), "segment message -124/3");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 8c 80"), "segment message 1/1\n\t- inconnu");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c ff"), "segment message 1/128\n\t- inconnu");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 7e"), "segment message 2/128");
}

TEST(DecodeS0, DirectionsCountTheirSegmentsApart) {
    TestSession d;
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 82 00 00 00 00 00 00 00 00 4d"),
              "segment message 1/3\n\t- lib");
    EXPECT_EQ(d.with(s0::from_system, "02 0b 0c 01"), "segment message -1/0");
    EXPECT_EQ(d.with(s0::from_system, "02 0b 0c 84 00 00 00 00 00 00 00 00 5a"),
              "segment message 1/5\n\t- fin lib");
    EXPECT_EQ(d.with(s0::to_system, "04 0b 0c 01"), "segment message 2/3");
    EXPECT_EQ(d.with(s0::from_system, "02 0b 0c 00"), "segment message 5/5");
}

TEST(DecodeS0, DoesNotSplitSuperMessages) {
    expect_texts(s0::to_system, {{"04 0b 0b 02 01 05 01 03", "??"}, {"04 0b 47", "??"}, {"04 0b ff", "??"}});
}

}  // namespace
}  // namespace ztdecode::testing
