#include "decode/routes/osi.hpp"

#include "core/tables.hpp"

namespace ztdecode::osi {

namespace {

constexpr auto memories = names({{0x01, "internal"}, {0x02, "external"}, {0x03, "code"}}, "unknown");

void memory_value(Decoding& d) { d.print("osi: read memory, value= {memory_value:02x}"_cf, d[2]); }

void pclink1_status(Decoding& d) {
    static constexpr auto transmit_states = names(
        {{0x10, "tx_idle"}, {0x11, "tx_prepare"}, {0x12, "tx_lng"}, {0x13, "tx_send"}, {0x14, "tx_sum"}},
        "unknown");
    static constexpr auto receive_states =
        names({{0x20, "rx_idle"}, {0x21, "rx_rcv"}, {0x22, "rx_sum"}, {0x23, "rx_wait"}}, "unknown");
    d.print("osi: pclink1 status {transmit_state}, {receive_state}"_cf, transmit_states[d[2]],
            receive_states[d[3]]);
}

void pclink2_status(Decoding& d) {
    static constexpr auto states = names({{0x00, "wait_connection"},
                                          {0x01, "idle"},
                                          {0x02, "send_zt3"},
                                          {0x03, "send_wait_ack"},
                                          {0x04, "wait_ack"},
                                          {0x05, "send_ack"},
                                          {0x06, "send_pc2"},
                                          {0x07, "wfs_idle"},
                                          {0x08, "wfs_send_ack"}},
                                         "unknown");
    d.print("osi: pclink2 status: {link_state}, {connected}"_cf, states[d[2]],
            flag(d[3] == 1, "connected", "not connected"));
}

void read_memory(Decoding& d) { d.print("osi: read memory {memory}"_cf, memories[d[2]]); }

void write_memory(Decoding& d) { d.print("osi: write memory {memory}"_cf, memories[d[2]]); }

constexpr auto reports = opcodes({{0x00, "read_memory_response", memory_value},
                                  {0x02, "read_vorna_synchro", "osi: read vorna synchro"},
                                  {0x03, "pclink1_loop_back_on_ack", "osi: pclink1 bouclage ON ack"},
                                  {0x04, "pclink1_loop_back_off_ack", "osi: pclink1 bouclage off ack"},
                                  {0x05, "pclink1_status", pclink1_status},
                                  {0x06, "pclink2_status", pclink2_status},
                                  {0x07, "cti_status", "osi: cti status"}},
                                 "??");

constexpr auto commands = opcodes({{0x00, "read_memory", read_memory},
                                   {0x01, "write_memory", write_memory},
                                   {0x02, "read_vorna_synchro", "osi: read vorna synchro"},
                                   {0x03, "pclink1_loop_back_on", "osi: pclink1 bouclage ON"},
                                   {0x04, "pclink1_loop_back_off", "osi: pclink1 bouclage off"},
                                   {0x05, "pclink1_status", "osi: pclink1 status"},
                                   {0x06, "pclink2_status", "osi: pclink2 status"},
                                   {0x07, "cti_status", "osi: cti status"}},
                                  "??");

}  // namespace

void to_system(Decoding& d) { reports.write(d, d[1] & 0x7F); }

void from_system(Decoding& d) { commands.write(d, d[1] & 0x7F); }

}  // namespace ztdecode::osi
