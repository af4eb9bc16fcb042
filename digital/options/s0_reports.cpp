#include "digital/options/s0_reports.hpp"

#include "core/phrase.hpp"
#include "digital/options/module.hpp"

namespace ztdecode::s0 {

namespace {

constexpr auto software_blocks = names({{0x00, "SIH"},
                                        {0x01, "BAH"},
                                        {0x02, "L1C"},
                                        {0x03, "DLC"},
                                        {0x04, "BLC"},
                                        {0x05, "LSC"},
                                        {0x06, "TXC"},
                                        {0x07, "RXC"},
                                        {0x08, "TMC"},
                                        {0x09, "TEC"},
                                        {0x0A, "OBM"},
                                        {0x0B, "DBG"},
                                        {0x0C, "PID"}},
                                       "module inconnu");
constexpr std::uint8_t layer1_block = 2;

constexpr auto layer1_events = names({{0x00, "ARU"},
                                      {0x01, "DIU"},
                                      {0x02, "LSL"},
                                      {0x03, "RSYU"},
                                      {0x04, "AIU"},
                                      {0x05, "TIMOUT"},
                                      {0x06, "ACT_RQ"},
                                      {0x07, "DEA_RQ"},
                                      {0x08, "LOOP_RQ"},
                                      {0x09, "TEST_RQ"}},
                                     "inconnu");

constexpr auto layer1_states = names({{0x00, "G1 deactivated"},
                                      {0x01, "G2 pending activation"},
                                      {0x02, "G3 activated"},
                                      {0x03, "G4 pending deactivation"},
                                      {0x04, "test"},
                                      {0x05, "G5 out of synchro"}},
                                     "inconnu");

constexpr auto layer1_timers = names(
    {{0x00, "DID"}, {0x01, "I3I4"}, {0x02, "DIU_WAIT"}, {0x04, "AR_WAIT"}, {0x05, "LSL"}, {0x06, "SYNC"}},
    "inconnue");

constexpr auto anomalies = names({{0x11, "LAR_ZT_SAPI= invalid sapi in ZT message"},
                                  {0x12, "LAR_ZT_TEI= invalid tei in ZT message"},
                                  {0x1A, "LAR_ZT_LINKID= invalid linkId in ZT message"},
                                  {0x20, "LAR_CODE= invalid message code"},
                                  {0x21, "LAR_SAPI= invalide SAPI"},
                                  {0x22, "LAR_TEI= invalid TEI"},
                                  {0x23, "LAR_PID= invalid PID"},
                                  {0x24, "LAR_OUT_SEQ_CODE= Out of seq. CODE (wrong state)"},
                                  {0x25, "LAR_SUBCODE= Invalid message sub-code"},
                                  {0x28, "LAR_CODE_IMP= Impossib. event in current state"},
                                  {0x29, "LAR_STATE= Invalid FSM State"},
                                  {0x2A, "LAR_LINKID= Invalid LINKID (PTP)"},
                                  {0x2B, "LAR_GLI= Invalid GLI (Global Link ID)"},
                                  {0x2C, "LAR_TIMEOUT= Invalid time-out"},
                                  {0x2D, "LAR_CODE_IG= Ignored event in current state"},
                                  {0x2E, "LAR_SYNC= Perte de synchro trop longue"},
                                  {0x2F, "LAR_FORWARD= Attempt to forward an inexistant msg"},
                                  {0x30, "LAR_OVERLOAD= Overload condition detected"},
                                  {0x31, "LAR_PTP_NOTAVAIL= No more datalink (PTP) available"},
                                  {0x32, "LAR_GLI_NOTAVAIL= No more global link available"},
                                  {0x33, "LAR_GLB_UNASSIGN= Global link not established"},
                                  {0x3F, "LAR_PTP_NOTASSIGNED= Datalink not assigned"},
                                  {0x40, "LAR_UNKNOWN_FRAME= Unknown Frame Type"},
                                  {0x41, "LAR_CR_BIT= Invalid C/R bit"},
                                  {0x42, "LAR_EA_BIT= Invalid EA bit"},
                                  {0x43, "LAR_CTRL= Error in Frame control field"},
                                  {0x44, "LAR_LENGTH= Frame length error"},
                                  {0x45, "LAR_NR= NR out of sequence (window)"},
                                  {0x46, "LAR_NOCHKPOINT= F = 1 and TXC not CHECKPOINTING"},
                                  {0x48, "LAR_NOT_TMC_MSG= Bad TEI management message type"},
                                  {0x49, "LAR_TMC_MSG= Erroneous TEI management message"},
                                  {0x4C, "LAR_DM= Link released by the peer entity"},
                                  {0x4D, "LAR_FRM_SAPI= Frame with unsupported SAPI"},
                                  {0x4E, "LAR_FRM_TEI= Frame with unsupported TEI"},
                                  {0x4F, "LAR_FCS= Bad Frame Received Counter"},
                                  {0x50, "LAR_LSL= Lost of signal level"},
                                  {0x51, "LAR_ERR_DIU= No DIU indication"},
                                  {0x60, "LAR_ZTMSG_CELL= Erroneous content of ZT msg cell"},
                                  {0x68, "LAR_NB_EVENT= Mismatch in number of declared events"},
                                  {0xA0, "LAR_STAR_MSG= Message only for S0-STAR mode"}},
                                 "????");
constexpr std::uint8_t impossible_event = 0x28;
constexpr std::uint8_t invalid_time_out = 0x2C;
constexpr std::uint8_t ignored_event = 0x2D;

// bytes 8, 9: event and state, or state and timer, by the anomaly in byte 7
void layer1_details(Decoding& d) {
    switch (d.on(d[7])) {
        case impossible_event:
        case ignored_event:
            d.print(" evenement: {layer1_event}"_cf, layer1_events[d[8]]);
            layer1_state(d, d[9]);
            break;
        case invalid_time_out:
            layer1_state(d, d[8]);
            d.print(" tempo: {layer1_timer}"_cf, layer1_timers[d[9]]);
            break;
        default:
            break;
    }
}

// byte 6: software block   byte 7: anomaly
void anomaly(Decoding& d) {
    d.print("anomalie in {software_block}:{anomaly}"_cf, software_blocks[d[6]], anomalies[d[7]]);
    if (d.on(d[6] == layer1_block)) layer1_details(d);
}

// byte 3: 0 hard   bytes 5, 6: version   byte 7: selftest   byte 8: 3 without power
void reset(Decoding& d) {
    constexpr int not_powered = 3;
    d.add("reset");
    add_phrase(d, "reset_kind", either(d[3] == 0, " hard S0 ", " soft S0 "), " ", " S0 ");
    d.print(" soft={software_version}"_cf, version_at(d, 5));
    add_phrase(d, "self_test", either(d[7] != 0, " selftest BAD", " selftest OK"), " selftest ");
    d.value("powered", flag(d[8] != not_powered, ", powered", ", not powered"));
}

constexpr auto reports = opcodes({{0x00, "reset", reset},
                                  {0x01, "reset", reset},
                                  {0x02, "illegal_command", "illegal command"},
                                  {0x06, "segment_failure", "segment failure"},
                                  {0x07, "wrong_state", "wrong state"},
                                  {0x81, "reset", reset}},
                                 "anomaly", anomaly);

}  // namespace

void layer1_state(Decoding& d, const Byte& state) {
    d.print(" etat N1= {layer1_state}"_cf, layer1_states[state]);
}

void report(Decoding& d) { reports.write(d, d[3]); }

}  // namespace ztdecode::s0
