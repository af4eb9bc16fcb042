#include "core/going_away.hpp"
#include "digital/options/module.hpp"
#include "digital/options/s0_tables.hpp"

// System to ISDN S0 bus module. byte 2: opcode, then its parameters.

namespace ztdecode {

namespace {

void segment_message(Session& session, const Message& m, Text& out) {
    s0_segment_message(session.change(session.digital.modules).s0_from_system_total, m, out);
}

constexpr auto internal_statuses = names({{0, " os queues"},
                                          {1, " xon/xoff thresholds"},
                                          {2, " divers"},
                                          {3, " cks, rev, ver,variant"},
                                          {4, " etat niveau 1"}},
                                         "");

// byte 3: which one; an unknown one has no words
void internal_software_status_request(Session& /*session*/, const Message& m, Text& out) {
    out.print("internal software status request{}"_cf, internal_statuses[m[3]]);
}

// byte 3: mode
void set_operating_mode(Session& /*session*/, const Message& m, Text& out) {
    out.print("set operating mode: {}"_cf, operating_mode_name(m[3]));
}

void data_link_establish(Session& /*session*/, const Message& m, Text& out) {
    out.add("data link establish. req.");
    data_link(m, out);
}

void establish_and_ui_frame(Session& /*session*/, const Message& m, Text& out) {
    out.add("data link establish. req. + UI frame");
    data_link(m, out);
}

void establish_and_i_frame(Session& /*session*/, const Message& m, Text& out) {
    out.add("data link establish. req. + I frame");
    data_link(m, out);
}

void data_link_release(Session& /*session*/, const Message& m, Text& out) {
    out.add("data link release");
    data_link(m, out);
}

void i_frame(Session& /*session*/, const Message& m, Text& out) {
    out.add("I frame send request");
    data_link(m, out);
    data_link_content(m, out);
}

void ui_frame(Session& /*session*/, const Message& m, Text& out) {
    out.add("UI frame send request");
    data_link(m, out);
    data_link_content(m, out);
}

constexpr auto commands = opcodes({{0, "nop"},
                                   {3, "software reset"},
                                   {6, "digital loop ON"},
                                   {7, "digital loop OFF"},
                                   {12, segment_message},
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
                                   {56, internal_software_status_request},
                                   {63, set_operating_mode},
                                   {71, data_link_establish},
                                   {72, establish_and_ui_frame},
                                   {73, establish_and_i_frame},
                                   {74, data_link_release},
                                   {75, i_frame},
                                   {76, ui_frame},
                                   {77, "set loop request"},
                                   {78, "reset loop request"}});

}  // namespace

void decode_s0_out(Session& session, const Message& m, Text& out) {
    if (!commands.write(module_opcode(m), session, m, out)) out.add("??");
}

}  // namespace ztdecode

void ztdecode::s0::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_s0_out, d); }
