#include "decode/routes/servers.hpp"

#include "core/going_away.hpp"
#include "object/command.hpp"

namespace ztdecode {

namespace {

// byte 1 on: the text
void debug_text(Message& m, Text& out) {
    m.status = Status::recognised;
    if (m.length() > 1) out.copy(m, 1, m.length() - 1);
}

constexpr auto memories = names({{1, "internal"}, {2, "external"}, {3, "code"}}, "unknown");

constexpr auto transmit_states =
    names({{16, "tx_idle"}, {17, "tx_prepare"}, {18, "tx_lng"}, {19, "tx_send"}, {20, "tx_sum"}}, "unknown");

constexpr auto receive_states =
    names({{32, "rx_idle"}, {33, "rx_rcv"}, {34, "rx_sum"}, {35, "rx_wait"}}, "unknown");

constexpr auto link_states = names(
    {
        {0, "wait_connection"},
        {1, "idle"},
        {2, "send_zt3"},
        {3, "send_wait_ack"},
        {4, "wait_ack"},
        {5, "send_ack"},
        {6, "send_pc2"},
        {7, "wfs_idle"},
        {8, "wfs_send_ack"},
    },
    "unknown");

void memory_value(Session& /*session*/, const Message& m, Text& out) {
    out.print("osi: read memory, value= {:02x}"_cf, m[2]);
}

void pclink1_status(Session& /*session*/, const Message& m, Text& out) {
    out.print("osi: pclink1 status {}, {}"_cf, transmit_states[m[2]], receive_states[m[3]]);
}

void pclink2_status(Session& /*session*/, const Message& m, Text& out) {
    out.print("osi: pclink2 status: {}, {}"_cf, link_states[m[2]], m[3] == 1 ? "connected" : "not connected");
}

void read_memory(Session& /*session*/, const Message& m, Text& out) {
    out.print("osi: read memory {}"_cf, memories[m[2]]);
}

void write_memory(Session& /*session*/, const Message& m, Text& out) {
    out.print("osi: write memory {}"_cf, memories[m[2]]);
}

constexpr auto osi_reports = opcodes({
    {0, memory_value},
    {2, "osi: read vorna synchro"},
    {3, "osi: pclink1 bouclage ON ack"},
    {4, "osi: pclink1 bouclage off ack"},
    {5, pclink1_status},
    {6, pclink2_status},
    {7, "osi: cti status"},
});

constexpr auto osi_commands = opcodes({
    {0, read_memory},
    {1, write_memory},
    {2, "osi: read vorna synchro"},
    {3, "osi: pclink1 bouclage ON"},
    {4, "osi: pclink1 bouclage off"},
    {5, "osi: pclink1 status"},
    {6, "osi: pclink2 status"},
    {7, "osi: cti status"},
});

}  // namespace

void dbg2dhs(Session& /*session*/, Message& m, Text& out) { debug_text(m, out); }

void dhs2dbg(Session& /*session*/, Message& m, Text& out) { debug_text(m, out); }

void osi2dhs(Session& session, Message& m, Text& out) {
    if (!osi_reports.write(m[1] & 0x7F, session, m, out)) out.add("??");
}

void dhs2osi(Session& session, Message& m, Text& out) {
    if (!osi_commands.write(m[1] & 0x7F, session, m, out)) out.add("??");
}

}  // namespace ztdecode

void ztdecode::debug::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dhs2dbg, d); }
void ztdecode::debug::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dbg2dhs, d); }
void ztdecode::osi::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dhs2osi, d); }
void ztdecode::osi::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::osi2dhs, d); }

namespace ztdecode {

namespace {

// The message with its type byte, which is the server's code.
void message_of(std::string_view server, Decoding& d, Decoder decoder) {
    d.status = Status::recognised;
    d.add(server);
    object::for_application(d, decoder);
}

}  // namespace

void call_server::from_system(Decoding& d) { message_of("call server", d, object::from_system); }

void call_server::to_system(Decoding& d) { message_of("call server", d, object::to_system); }

void presentation_server::from_system(Decoding& d) {
    message_of("presentation server", d, object::from_system);
}

void presentation_server::to_system(Decoding& d) { message_of("presentation server", d, object::to_system); }

}  // namespace ztdecode
