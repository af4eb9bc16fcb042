#include "core/going_away.hpp"
#include "digital/options/module.hpp"
#include "digital/options/s0_reports.hpp"
#include "digital/options/s0_tables.hpp"

// ISDN S0 bus module to system. byte 2: opcode, then its parameters.

namespace ztdecode {

namespace {

constexpr auto star_states = names({{0, "deactivated"},
                                    {1, "activation request, timer running"},
                                    {2, "timer expired, waiting I3"},
                                    {3, "I3 received, waiting for AIU"},
                                    {4, "AIU received, waiting for I3"},
                                    {5, "activation OK, timer"},
                                    {6, "connected"},
                                    {8, "deactivation request"},
                                    {9, "deactivation"},
                                    {10, "desynchro"},
                                    {255, "inconnu pour logiciel s0"}},
                                   "inconnu");

constexpr auto release_causes = names({{0, "request ack."},
                                       {1, "deactivated by peer"},
                                       {2, "activated by peer"},
                                       {3, "layer 1 deactivated"},
                                       {4, "peer out of order"},
                                       {5, "protocol out of order"},
                                       {6, "corrupted frame received"},
                                       {7, "reset by peer"},
                                       {8, "timeout for remote busy"},
                                       {9, "internal ressource not available"}},
                                      "inconnue");

void segment_message(Session& session, const Message& m, Text& out) {
    s0_segment_message(session.change(session.digital.modules).s0_to_system_total, m, out);
}

// byte 4: state of the star
void state_response(Session& /*session*/, const Message& m, Text& out) {
    out.print("state response, etat N1 star= {}"_cf, star_states[m[4]]);
}

void layer1_status(Session& /*session*/, const Message& m, Text& out) { layer1_state(m[4], out); }

constexpr auto internal_statuses = opcodes({{0, " os queues"},
                                            {1, " xon/xoff thresholds"},
                                            {2, " divers"},
                                            {3, " cks, rev, ver,variant"},
                                            {4, layer1_status}});

// byte 3: which one; an unknown one has no words
void internal_software_status(Session& session, const Message& m, Text& out) {
    out.add("internal software status");
    internal_statuses.write(m[3], session, m, out);
}

// byte 3: mode
void operating_mode(Session& /*session*/, const Message& m, Text& out) {
    out.print("operating mode: {}"_cf, operating_mode_name(m[3]));
}

// byte 5: cause
void release_cause(const Message& m, Text& out) { out.print("cause: {}"_cf, release_causes[m[5]]); }

void data_link_establish(Session& /*session*/, const Message& m, Text& out) {
    out.add("data link establish. ind.");
    data_link(m, out);
    release_cause(m, out);
}

void data_link_release(Session& /*session*/, const Message& m, Text& out) {
    out.add("data link release ind.");
    data_link(m, out);
    release_cause(m, out);
}

void i_frame(Session& /*session*/, const Message& m, Text& out) {
    out.add("I frame received");
    data_link(m, out);
    data_link_content(m, out);
}

void establish_and_ui_frame(Session& /*session*/, const Message& m, Text& out) {
    out.add("dat link estab. & UI frame received");
    data_link(m, out);
    data_link_content(m, out);
}

void ui_frame(Session& /*session*/, const Message& m, Text& out) {
    out.add("UI frame received");
    data_link(m, out);
    data_link_content(m, out);
}

constexpr auto answers = opcodes({{0, "nop ack"},
                                  {6, "digital loop ON ack"},
                                  {7, "digital loop OFF ack"},
                                  {12, segment_message},
                                  {14, "version response"},
                                  {15, state_response},
                                  {31, s0_report},
                                  {32, "s0 star: activate confirm"},
                                  {33, "s0 star: activate request"},
                                  {34, "s0 star: deactivate request"},
                                  {35, "s0 star: deactivate confirm"},
                                  {36, "loss of power"},
                                  {37, "gain of power"},
                                  {49, "overload condition"},
                                  {56, internal_software_status},
                                  {63, operating_mode},
                                  {64, data_link_establish},
                                  {65, data_link_release},
                                  {66, i_frame},
                                  {67, establish_and_ui_frame},
                                  {68, ui_frame},
                                  {69, "loop set indication"},
                                  {70, "loop reset indication"}});

}  // namespace

void decode_s0(Session& session, const Message& m, Text& out) {
    if (!answers.write(module_opcode(m), session, m, out)) out.add("??");
}

}  // namespace ztdecode

void ztdecode::s0::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_s0, d); }
