#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(S0Report, IsAnAnomalyUnlessItsKindHasAName) {
    expect_values(s0::to_system, "04 0b 1f 00 04 01 0c 21 03", 3,
                  {{0, "reset hard S0  soft=1.12 selftest BAD, not powered"},
                   {1, "reset soft S0  soft=1.12 selftest BAD, not powered"},
                   {129, "reset soft S0  soft=1.12 selftest BAD, not powered"},
                   {2, "illegal command"},
                   {6, "segment failure"},
                   {7, "wrong state"}},
                  "anomalie in PID:LAR_SAPI= invalide SAPI");
}

TEST(S0Report, ResetTellsSelftestAndPower) {
    expect_texts(s0::to_system,
                 {{"04 0b 1f 01 00 02 03 00 01", "reset soft S0  soft=2.03 selftest OK, powered"},
                  {"04 0b 9f 00 00 02 c8 00 03", "reset hard S0  soft=2.200 selftest OK, not powered"},
                  {"04 0b 1f 81 00 30 39 ff 04", "reset soft S0  soft=1.23.45 selftest BAD, powered"}});
}

TEST(S0Report, NamesSoftwareBlocks) {
    expect_values(s0::to_system, "04 0b 1f 03 04 05 00 48", 6,
                  {{0, "anomalie in SIH:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {1, "anomalie in BAH:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {2, "anomalie in L1C:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {3, "anomalie in DLC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {4, "anomalie in BLC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {5, "anomalie in LSC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {6, "anomalie in TXC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {7, "anomalie in RXC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {8, "anomalie in TMC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {9, "anomalie in TEC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {10, "anomalie in OBM:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {11, "anomalie in DBG:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {12, "anomalie in PID:LAR_NOT_TMC_MSG= Bad TEI management message type"}},
                  "anomalie in module inconnu:LAR_NOT_TMC_MSG= Bad TEI management message type");
}

TEST(S0Report, NamesAnomalies) {
    expect_values(s0::to_system, "04 0b 1f 05 04 05 03 00 01 02", 7,
                  {{17, "anomalie in DLC:LAR_ZT_SAPI= invalid sapi in ZT message"},
                   {18, "anomalie in DLC:LAR_ZT_TEI= invalid tei in ZT message"},
                   {26, "anomalie in DLC:LAR_ZT_LINKID= invalid linkId in ZT message"},
                   {32, "anomalie in DLC:LAR_CODE= invalid message code"},
                   {33, "anomalie in DLC:LAR_SAPI= invalide SAPI"},
                   {34, "anomalie in DLC:LAR_TEI= invalid TEI"},
                   {35, "anomalie in DLC:LAR_PID= invalid PID"},
                   {36, "anomalie in DLC:LAR_OUT_SEQ_CODE= Out of seq. CODE (wrong state)"},
                   {37, "anomalie in DLC:LAR_SUBCODE= Invalid message sub-code"},
                   {40, "anomalie in DLC:LAR_CODE_IMP= Impossib. event in current state"},
                   {41, "anomalie in DLC:LAR_STATE= Invalid FSM State"},
                   {42, "anomalie in DLC:LAR_LINKID= Invalid LINKID (PTP)"},
                   {43, "anomalie in DLC:LAR_GLI= Invalid GLI (Global Link ID)"},
                   {44, "anomalie in DLC:LAR_TIMEOUT= Invalid time-out"},
                   {45, "anomalie in DLC:LAR_CODE_IG= Ignored event in current state"},
                   {46, "anomalie in DLC:LAR_SYNC= Perte de synchro trop longue"},
                   {47, "anomalie in DLC:LAR_FORWARD= Attempt to forward an inexistant msg"},
                   {48, "anomalie in DLC:LAR_OVERLOAD= Overload condition detected"},
                   {49, "anomalie in DLC:LAR_PTP_NOTAVAIL= No more datalink (PTP) available"},
                   {50, "anomalie in DLC:LAR_GLI_NOTAVAIL= No more global link available"},
                   {51, "anomalie in DLC:LAR_GLB_UNASSIGN= Global link not established"},
                   {63, "anomalie in DLC:LAR_PTP_NOTASSIGNED= Datalink not assigned"},
                   {64, "anomalie in DLC:LAR_UNKNOWN_FRAME= Unknown Frame Type"},
                   {65, "anomalie in DLC:LAR_CR_BIT= Invalid C/R bit"},
                   {66, "anomalie in DLC:LAR_EA_BIT= Invalid EA bit"},
                   {67, "anomalie in DLC:LAR_CTRL= Error in Frame control field"},
                   {68, "anomalie in DLC:LAR_LENGTH= Frame length error"},
                   {69, "anomalie in DLC:LAR_NR= NR out of sequence (window)"},
                   {70, "anomalie in DLC:LAR_NOCHKPOINT= F = 1 and TXC not CHECKPOINTING"},
                   {72, "anomalie in DLC:LAR_NOT_TMC_MSG= Bad TEI management message type"},
                   {73, "anomalie in DLC:LAR_TMC_MSG= Erroneous TEI management message"},
                   {76, "anomalie in DLC:LAR_DM= Link released by the peer entity"},
                   {77, "anomalie in DLC:LAR_FRM_SAPI= Frame with unsupported SAPI"},
                   {78, "anomalie in DLC:LAR_FRM_TEI= Frame with unsupported TEI"},
                   {79, "anomalie in DLC:LAR_FCS= Bad Frame Received Counter"},
                   {80, "anomalie in DLC:LAR_LSL= Lost of signal level"},
                   {81, "anomalie in DLC:LAR_ERR_DIU= No DIU indication"},
                   {96, "anomalie in DLC:LAR_ZTMSG_CELL= Erroneous content of ZT msg cell"},
                   {104, "anomalie in DLC:LAR_NB_EVENT= Mismatch in number of declared events"},
                   {160, "anomalie in DLC:LAR_STAR_MSG= Message only for S0-STAR mode"}},
                  "anomalie in DLC:????");
}

TEST(S0Report, NamesLayer1Events) {
    expect_values(
        s0::to_system, "04 0b 1f 05 00 00 02 28 00 04", 8,
        {{0, "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: ARU etat N1= test"},
         {1, "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: DIU etat N1= test"},
         {2, "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: LSL etat N1= test"},
         {3, "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: RSYU etat N1= test"},
         {4, "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: AIU etat N1= test"},
         {5,
          "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: TIMOUT etat N1= test"},
         {6,
          "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: ACT_RQ etat N1= test"},
         {7,
          "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: DEA_RQ etat N1= test"},
         {8,
          "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: LOOP_RQ etat N1= test"},
         {9,
          "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: TEST_RQ etat N1= test"}},
        "anomalie in L1C:LAR_CODE_IMP= Impossib. event in current state evenement: inconnu etat N1= test");
}

TEST(S0Report, NamesLayer1Timers) {
    expect_values(
        s0::to_system, "04 0b 1f 05 00 00 02 2c 05 00", 9,
        {{0, "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G5 out of synchro tempo: DID"},
         {1, "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G5 out of synchro tempo: I3I4"},
         {2, "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G5 out of synchro tempo: DIU_WAIT"},
         {4, "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G5 out of synchro tempo: AR_WAIT"},
         {5, "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G5 out of synchro tempo: LSL"},
         {6, "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G5 out of synchro tempo: SYNC"}},
        "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G5 out of synchro tempo: inconnue");
}

TEST(S0Report, HasDetailsForThreeAnomaliesOfLayer1) {
    expect_texts(s0::to_system,
                 {{"04 0b 1f 05 00 00 02 2c 02 06",
                   "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G3 activated tempo: SYNC"},
                  {"04 0b 1f 05 00 00 02 2d 09 01",
                   "anomalie in L1C:LAR_CODE_IG= Ignored event in current state "
                   "evenement: TEST_RQ etat N1= G2 pending activation"},
                  {"04 0b 1f 05 00 00 02 2d 0a 06",
                   "anomalie in L1C:LAR_CODE_IG= Ignored event in current state "
                   "evenement: inconnu etat N1= inconnu"},
                  {"04 0b 1f 05 00 00 02 2b 02 06", "anomalie in L1C:LAR_GLI= Invalid GLI (Global Link ID)"},
                  {"04 0b 1f 05 00 00 02 2e 02 06", "anomalie in L1C:LAR_SYNC= Perte de synchro trop longue"},
                  {"04 0b 1f 05 00 00 03 2c 02 06", "anomalie in DLC:LAR_TIMEOUT= Invalid time-out"},
                  {"04 0b 1f 05 00 00 01 28 02 06",
                   "anomalie in BAH:LAR_CODE_IMP= Impossib. event in current state"}});
}

}  // namespace
}  // namespace ztdecode::testing
