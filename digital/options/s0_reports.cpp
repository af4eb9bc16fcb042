#include "digital/options/s0_reports.hpp"

#include "core/going_away.hpp"
#include "digital/options/module.hpp"

namespace ztdecode {

namespace {

constexpr auto software_blocks = names({{0, "SIH"},
                                        {1, "BAH"},
                                        {2, "L1C"},
                                        {3, "DLC"},
                                        {4, "BLC"},
                                        {5, "LSC"},
                                        {6, "TXC"},
                                        {7, "RXC"},
                                        {8, "TMC"},
                                        {9, "TEC"},
                                        {10, "OBM"},
                                        {11, "DBG"},
                                        {12, "PID"}},
                                       "module inconnu");
constexpr std::uint8_t layer1_block = 2;

constexpr auto layer1_events = names({{0, "ARU"},
                                      {1, "DIU"},
                                      {2, "LSL"},
                                      {3, "RSYU"},
                                      {4, "AIU"},
                                      {5, "TIMOUT"},
                                      {6, "ACT_RQ"},
                                      {7, "DEA_RQ"},
                                      {8, "LOOP_RQ"},
                                      {9, "TEST_RQ"}},
                                     "inconnu");

constexpr auto layer1_states = names({{0, "G1 deactivated"},
                                      {1, "G2 pending activation"},
                                      {2, "G3 activated"},
                                      {3, "G4 pending deactivation"},
                                      {4, "test"},
                                      {5, "G5 out of synchro"}},
                                     "inconnu");

constexpr auto layer1_timers =
    names({{0, "DID"}, {1, "I3I4"}, {2, "DIU_WAIT"}, {4, "AR_WAIT"}, {5, "LSL"}, {6, "SYNC"}}, "inconnue");

constexpr auto anomalies = names({{17, "LAR_ZT_SAPI= invalid sapi in ZT message"},
                                  {18, "LAR_ZT_TEI= invalid tei in ZT message"},
                                  {26, "LAR_ZT_LINKID= invalid linkId in ZT message"},
                                  {32, "LAR_CODE= invalid message code"},
                                  {33, "LAR_SAPI= invalide SAPI"},
                                  {34, "LAR_TEI= invalid TEI"},
                                  {35, "LAR_PID= invalid PID"},
                                  {36, "LAR_OUT_SEQ_CODE= Out of seq. CODE (wrong state)"},
                                  {37, "LAR_SUBCODE= Invalid message sub-code"},
                                  {40, "LAR_CODE_IMP= Impossib. event in current state"},
                                  {41, "LAR_STATE= Invalid FSM State"},
                                  {42, "LAR_LINKID= Invalid LINKID (PTP)"},
                                  {43, "LAR_GLI= Invalid GLI (Global Link ID)"},
                                  {44, "LAR_TIMEOUT= Invalid time-out"},
                                  {45, "LAR_CODE_IG= Ignored event in current state"},
                                  {46, "LAR_SYNC= Perte de synchro trop longue"},
                                  {47, "LAR_FORWARD= Attempt to forward an inexistant msg"},
                                  {48, "LAR_OVERLOAD= Overload condition detected"},
                                  {49, "LAR_PTP_NOTAVAIL= No more datalink (PTP) available"},
                                  {50, "LAR_GLI_NOTAVAIL= No more global link available"},
                                  {51, "LAR_GLB_UNASSIGN= Global link not established"},
                                  {63, "LAR_PTP_NOTASSIGNED= Datalink not assigned"},
                                  {64, "LAR_UNKNOWN_FRAME= Unknown Frame Type"},
                                  {65, "LAR_CR_BIT= Invalid C/R bit"},
                                  {66, "LAR_EA_BIT= Invalid EA bit"},
                                  {67, "LAR_CTRL= Error in Frame control field"},
                                  {68, "LAR_LENGTH= Frame length error"},
                                  {69, "LAR_NR= NR out of sequence (window)"},
                                  {70, "LAR_NOCHKPOINT= F = 1 and TXC not CHECKPOINTING"},
                                  {72, "LAR_NOT_TMC_MSG= Bad TEI management message type"},
                                  {73, "LAR_TMC_MSG= Erroneous TEI management message"},
                                  {76, "LAR_DM= Link released by the peer entity"},
                                  {77, "LAR_FRM_SAPI= Frame with unsupported SAPI"},
                                  {78, "LAR_FRM_TEI= Frame with unsupported TEI"},
                                  {79, "LAR_FCS= Bad Frame Received Counter"},
                                  {80, "LAR_LSL= Lost of signal level"},
                                  {81, "LAR_ERR_DIU= No DIU indication"},
                                  {96, "LAR_ZTMSG_CELL= Erroneous content of ZT msg cell"},
                                  {104, "LAR_NB_EVENT= Mismatch in number of declared events"},
                                  {160, "LAR_STAR_MSG= Message only for S0-STAR mode"}},
                                 "????");
constexpr std::uint8_t impossible_event = 40;
constexpr std::uint8_t invalid_time_out = 44;
constexpr std::uint8_t ignored_event = 45;

// bytes 8, 9: event and state, or state and timer, by the anomaly in byte 7
void layer1_details(const Message& m, Text& out) {
    switch (m[7]) {
        case impossible_event:
        case ignored_event:
            out.print(" evenement: {}"_cf, layer1_events[m[8]]);
            layer1_state(m[9], out);
            break;
        case invalid_time_out:
            layer1_state(m[8], out);
            out.print(" tempo: {}"_cf, layer1_timers[m[9]]);
            break;
        default:
            break;
    }
}

// byte 6: software block   byte 7: anomaly
void anomaly(const Message& m, Text& out) {
    out.print("anomalie in {}:{}"_cf, software_blocks[m[6]], anomalies[m[7]]);
    if (m[6] == layer1_block) layer1_details(m, out);
}

// byte 3: 0 hard   bytes 5, 6: version   byte 7: selftest   byte 8: 3 without power
void reset_form(Session& /*session*/, const Message& m, Text& out) {
    constexpr std::uint8_t not_powered = 3;
    out.add("reset");
    out.add(m[3] == 0 ? " hard S0 " : " soft S0 ");
    out.add(soft_version(m, 5));
    out.add(m[7] != 0 ? " selftest BAD" : " selftest OK");
    out.add(m[8] == not_powered ? ", not powered" : ", powered");
}

constexpr auto reports = opcodes({{0, reset_form},
                                  {1, reset_form},
                                  {2, "illegal command"},
                                  {6, "segment failure"},
                                  {7, "wrong state"},
                                  {129, reset_form}});

}  // namespace

void layer1_state(std::uint8_t state, Text& out) { out.print(" etat N1= {}"_cf, layer1_states[state]); }

void s0_report(Session& session, const Message& m, Text& out) {
    if (!reports.write(m[3], session, m, out)) anomaly(m, out);
}

}  // namespace ztdecode
