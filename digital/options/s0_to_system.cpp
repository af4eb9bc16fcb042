#include "digital/options/module.hpp"
#include "digital/options/s0_reports.hpp"
#include "digital/options/s0_tables.hpp"

// ISDN S0 bus module to system. byte 2: opcode, then its parameters.

namespace ztdecode::s0 {

namespace {

constexpr auto star_states = names({{0x00, "deactivated"},
                                    {0x01, "activation request, timer running"},
                                    {0x02, "timer expired, waiting I3"},
                                    {0x03, "I3 received, waiting for AIU"},
                                    {0x04, "AIU received, waiting for I3"},
                                    {0x05, "activation OK, timer"},
                                    {0x06, "connected"},
                                    {0x08, "deactivation request"},
                                    {0x09, "deactivation"},
                                    {0x0A, "desynchro"},
                                    {0xFF, "inconnu pour logiciel s0"}},
                                   "inconnu");

constexpr auto release_causes = names({{0x00, "request ack."},
                                       {0x01, "deactivated by peer"},
                                       {0x02, "activated by peer"},
                                       {0x03, "layer 1 deactivated"},
                                       {0x04, "peer out of order"},
                                       {0x05, "protocol out of order"},
                                       {0x06, "corrupted frame received"},
                                       {0x07, "reset by peer"},
                                       {0x08, "timeout for remote busy"},
                                       {0x09, "internal ressource not available"}},
                                      "inconnue");

void segment(Decoding& d) { segment_message(d, d.session().digital.modules.s0_to_system_total); }

// byte 4: state of the star
void state_response(Decoding& d) {
    d.print("state response, etat N1 star= {star_state}"_cf, star_states[d[4]]);
}

// byte 3: which one; an unknown one has no words   byte 4: state of layer 1, where it is that
void internal_software_status(Decoding& d) {
    constexpr int layer1 = 4;
    d.add("internal software status");
    if (d.on(d[3] == layer1)) {
        layer1_state(d, d[4]);
    } else {
        d.value("internal_status", internal_status(d[3]));
    }
}

// byte 3: mode
void operating_mode_response(Decoding& d) {
    d.print("operating mode: {operating_mode}"_cf, operating_mode(d[3]));
}

// byte 5: cause
void release_cause(Decoding& d) { d.print("cause: {release_cause}"_cf, release_causes[d[5]]); }

void data_link_and_cause(Decoding& d) {
    data_link(d);
    release_cause(d);
}

constexpr auto answers =
    opcodes({{0x00, "nop_ack", "nop ack"},
             {0x06, "digital_loop_on_ack", "digital loop ON ack"},
             {0x07, "digital_loop_off_ack", "digital loop OFF ack"},
             {0x0C, "segment", segment},
             {0x0E, "version_response", "version response"},
             {0x0F, "state_response", state_response},
             {0x1F, "report", report},
             {0x20, "activate_confirm", "s0 star: activate confirm"},
             {0x21, "activate_request", "s0 star: activate request"},
             {0x22, "deactivate_request", "s0 star: deactivate request"},
             {0x23, "deactivate_confirm", "s0 star: deactivate confirm"},
             {0x24, "loss_of_power", "loss of power"},
             {0x25, "gain_of_power", "gain of power"},
             {0x31, "overload_condition", "overload condition"},
             {0x38, "internal_software_status", internal_software_status},
             {0x3F, "operating_mode", operating_mode_response},
             {0x40, "data_link_establish_indication", {"data link establish. ind.", data_link_and_cause}},
             {0x41, "data_link_release_indication", {"data link release ind.", data_link_and_cause}},
             {0x42, "i_frame_received", {"I frame received", data_link_and_content}},
             {0x43,
              "data_link_establish_and_ui_frame_received",
              {"dat link estab. & UI frame received", data_link_and_content}},
             {0x44, "ui_frame_received", {"UI frame received", data_link_and_content}},
             {0x45, "loop_set_indication", "loop set indication"},
             {0x46, "loop_reset_indication", "loop reset indication"}},
            "??");

}  // namespace

void to_system(Decoding& d) { answers.write(d, modules::opcode(d)); }

}  // namespace ztdecode::s0
