#include "digital/options/module.hpp"
#include "digital/options/s0_tables.hpp"

// System to ISDN S0 bus module. byte 2: opcode, then its parameters.

namespace ztdecode::s0 {

namespace {

void segment(Decoding& d) { segment_message(d, d.session().digital.modules.s0_from_system_total); }

// byte 3: which one; an unknown one has no words
void internal_software_status_request(Decoding& d) {
    d.print("internal software status request{internal_status}"_cf, internal_status(d[3]));
}

// byte 3: mode
void set_operating_mode(Decoding& d) {
    d.print("set operating mode: {operating_mode}"_cf, operating_mode(d[3]));
}

constexpr auto commands = opcodes(
    {{0x00, "nop", "nop"},
     {0x03, "software_reset", "software reset"},
     {0x06, "digital_loop_on", "digital loop ON"},
     {0x07, "digital_loop_off", "digital loop OFF"},
     {0x0C, "segment", segment},
     {0x0E, "version_inquiry", "version inquiry"},
     {0x0F, "state_inquiry", "state inquiry"},
     {0x10, "segment_size", "segment size"},
     {0x20, "channel_affectation", "channel affectation"},
     {0x21, "activate_indicate", "activate indicate"},
     {0x22, "deactivate_indicate", "deactivate indicate"},
     {0x23, "set_timer", "set timer tempo"},
     {0x24, "send_test_pattern", "send test pattern"},
     {0x30, "set_operating_parameters", "set operating parameters"},
     {0x31, "set_overload_condition", "set overload condition"},
     {0x38, "internal_software_status_request", internal_software_status_request},
     {0x3F, "set_operating_mode", set_operating_mode},
     {0x47, "data_link_establish_request", {"data link establish. req.", data_link}},
     {0x48, "data_link_establish_and_ui_frame_request", {"data link establish. req. + UI frame", data_link}},
     {0x49, "data_link_establish_and_i_frame_request", {"data link establish. req. + I frame", data_link}},
     {0x4A, "data_link_release_request", {"data link release", data_link}},
     {0x4B, "i_frame_request", {"I frame send request", data_link_and_content}},
     {0x4C, "ui_frame_request", {"UI frame send request", data_link_and_content}},
     {0x4D, "set_loop_request", "set loop request"},
     {0x4E, "reset_loop_request", "reset loop request"}},
    "??");

}  // namespace

void from_system(Decoding& d) { commands.write(d, modules::opcode(d)); }

}  // namespace ztdecode::s0
