#include <array>

#include "core/session.hpp"
#include "decode/hub.hpp"
#include "decode/ibs.hpp"
#include "decode/identity.hpp"
#include "decode/minor.hpp"
#include "digital/digital.hpp"
#include "he/he.hpp"
#include "ip/ip.hpp"

// One single message: its type byte says on which link it travels; the link's decoder of its direction writes
// the text.

namespace ztdecode {

namespace {

using Decoder = void (*)(Session&, Message&, Text&);

struct RouteRow {
    std::uint8_t type;  // bit 7 cleared
    Route route;
    std::string_view prefix;
    Decoder from_dhs;
    Decoder to_dhs;
};

void dhs2he_or_digital(Session& session, Message& m, Text& out);
void he2dhs_or_digital(Session& session, Message& m, Text& out);

// Both object-protocol servers share a prefix.
constexpr RouteRow digital_row = {0, route_digital, "\t- ", dhs2rn, rn2dhs};
constexpr auto route_rows = std::to_array<RouteRow>({
    {5, route_he, "\t- ", dhs2he_or_digital, he2dhs_or_digital},
    {6, route_visiophone, "\t- ", dhs2rn, rn2dhs},
    {13, route_type13, "\t- ", dhs2rn, rn2dhs},
    {14, route_type14, "\t- ", dhs2rn, rn2dhs},
    {15, route_osi, "\t- ", dhs2osi, osi2dhs},
    {18, route_ibs, "\t- ", dhs2ibs, ibs2dhs},
    {19, route_ip, "\tIP - ", dhs2ip, ip2dhs},
    {20, route_hub, "\tHUB - ", dhs2hub, hub2dhs},
    {21, route_cs, "\tRYM - ", dhs2cs, cs2dhs},
    {22, route_prs, "\tRYM - ", dhs2prs, prs2dhs},
    {24, route_debug, "\tDBG - ", dhs2dbg, dbg2dhs},
});

constexpr std::uint8_t he_type = 5;
constexpr std::uint8_t visiophone_type = 6;

consteval std::array<std::uint8_t, 128> rows_by_type() {
    std::array<std::uint8_t, 128> index{};
    index.fill(route_rows.size());
    for (std::size_t i = 0; i < route_rows.size(); ++i)
        index[route_rows[i].type] = static_cast<std::uint8_t>(i);
    return index;
}
constexpr auto row_of_type = rows_by_type();

const RouteRow& row_of(const Message& m) {
    const std::uint8_t type = m[0] & 0x7F;
    if (type == visiophone_type && m.length() == 1) return digital_row;
    return row_of_type[type] == route_rows.size() ? digital_row : route_rows[row_of_type[type]];
}

// A message that the HE decoder does not know is one of the digital set's: its HE text is dropped.
void he_or_digital(Decoder he, Decoder digital, Session& session, Message& m, Text& out) {
    const std::size_t begin = out.size();
    he(session, m, out);
    if (m.status == Status::recognised) return;
    out.cut(begin);
    digital(session, m, out);
}

void dhs2he_or_digital(Session& session, Message& m, Text& out) {
    he_or_digital(dhs2he, dhs2rn, session, m, out);
}

void he2dhs_or_digital(Session& session, Message& m, Text& out) {
    he_or_digital(he2dhs, rn2dhs, session, m, out);
}

void decode_on(const RouteRow& row, Session& session, Message& m, Text& out) {
    m.route = row.route;
    out.add(row.prefix);
    const Text::Piece text(out);
    (m.direction == from_dhs ? row.from_dhs : row.to_dhs)(session, m, out);
}

// Hub messages carry messages that are dispatched in turn, thousands deep: what a level of that does not need
// stays out of its stack frame, here and below.

// byte 0: type   byte 1: receiving application   byte 2: sending application   then the HE message
[[gnu::noinline]] void decode_he(const RouteRow& row, Session& session, Message& m, Text& out) {
    if (m[0] != he_type) {
        out.add("\t-not a HE message!");
        decode_on(row, session, m, out);
        return;
    }
    out.print("\t- [HE:{} ->{}]"_cf, apId(m[2]), apId(m[1]));
    Message he = decale(session, m, 3);
    decode_on(row, session, he, out);
}

// byte 1: source   byte 2: destination; a message of two bytes has no routing
[[gnu::noinline]] void visiophone_header(const Message& m, Text& out) {
    if (m[0] != visiophone_type) {
        out.add("\t-not a visiophone message!");
    } else if (m.length() != 2) {
        out.print("\t- routage visiophone: src={:02x} dst={:02x}\n"_cf, m[1], m[2]);
    }
}

[[gnu::noinline]] void trace_entry(const Session& session, const Message& m) {
    session.standard_output(fmt::format("entree decode1msg, lng=0x{:02x}  sens= {}\n"_cf, m.length(),
                                        m.direction == to_dhs ? "to DHS" : "from DHS"));
}

}  // namespace

void dispatch_message(Session& session, Message& m, Text& out) {
    if (m.length() == 0) return;
    if (!inListAudioOpcodes(session, m.direction, m[0])) return;
    if (session.switches.debug) trace_entry(session, m);
    const RouteRow& row = row_of(m);
    switch (row.route) {
        case route_he:
            decode_he(row, session, m, out);
            break;
        case route_visiophone:
            visiophone_header(m, out);
            decode_on(row, session, m, out);
            break;
        default:
            decode_on(row, session, m, out);
            break;
    }
}

}  // namespace ztdecode
