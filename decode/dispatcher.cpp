#include "core/tables.hpp"
#include "decode/audio_filter.hpp"
#include "decode/routes/debug.hpp"
#include "decode/routes/hub.hpp"
#include "decode/routes/ibs.hpp"
#include "decode/routes/osi.hpp"
#include "decode/routes/servers.hpp"
#include "digital/digital.hpp"
#include "he/he.hpp"
#include "ip/ip.hpp"

// One single message: its type byte says on which link it travels; the link's decoder of its direction writes
// the text.

namespace ztdecode {

namespace {

struct RouteRow {
    std::uint32_t code;  // the type byte, bit 7 cleared
    Route route;
    std::string_view link;
    std::string_view prefix;
    void (*from_system)(Decoding&);
    void (*to_system)(Decoding&);
};

void he_or_digital_from_system(Decoding& d);
void he_or_digital_to_system(Decoding& d);

// Both object-protocol servers share a prefix.
constexpr RouteRow digital_row = {0,      route_digital,        "digital",
                                  "\t- ", digital::from_system, digital::to_system};
constexpr auto routes = Table({
    RouteRow{0x05, route_he, "he", "\t- ", he_or_digital_from_system, he_or_digital_to_system},
    RouteRow{0x06, route_visiophone, "visiophone", "\t- ", digital::from_system, digital::to_system},
    RouteRow{0x0D, route_type13, "type13", "\t- ", digital::from_system, digital::to_system},
    RouteRow{0x0E, route_type14, "type14", "\t- ", digital::from_system, digital::to_system},
    RouteRow{0x0F, route_osi, "osi", "\t- ", osi::from_system, osi::to_system},
    RouteRow{0x12, route_ibs, "ibs", "\t- ", ibs::from_system, ibs::to_system},
    RouteRow{0x13, route_ip, "ip", "\tIP - ", ip::from_system, ip::to_system},
    RouteRow{0x14, route_hub, "hub", "\tHUB - ", hub::from_system, hub::to_system},
    RouteRow{0x15, route_cs, "call_server", "\tRYM - ", call_server::from_system, call_server::to_system},
    RouteRow{0x16, route_prs, "presentation_server", "\tRYM - ", presentation_server::from_system,
             presentation_server::to_system},
    RouteRow{0x18, route_debug, "debug", "\tDBG - ", debug::from_system, debug::to_system},
});

constexpr std::uint8_t he_type = 0x05;
constexpr std::uint8_t visiophone_type = 0x06;

const RouteRow& row_of(const Message& m) {
    const std::uint8_t type = m[0] & 0x7F;
    if (type == visiophone_type && m.length() == 1) return digital_row;
    const RouteRow* const row = routes.find(type);
    return row != nullptr ? *row : digital_row;
}

// A message that the HE decoder does not know is one of the digital set's: its HE text is dropped.
void he_or_digital(void (*he)(Decoding&), void (*digital)(Decoding&), Decoding& d) {
    const std::size_t begin = d.out().size();
    he(d);
    if (d.status == Status::recognised) return;
    d.cut(begin);
    digital(d);
}

void he_or_digital_from_system(Decoding& d) { he_or_digital(he::from_system, digital::from_system, d); }

void he_or_digital_to_system(Decoding& d) { he_or_digital(he::to_system, digital::to_system, d); }

// (A function of its own: it needs more of the stack than what goes on below it, see there.)
[[gnu::noinline]] void begin_route(const RouteRow& row, Decoding& d) {
    d.route = row.route;
    d.link(row.link);
    d.add(row.prefix);
}

void decode_on(const RouteRow& row, Decoding& d) {
    begin_route(row, d);
    const Decoding::Piece text(d);
    (d.direction() == from_dhs ? row.from_system : row.to_system)(d);
}

// Hub messages carry messages that are dispatched in turn, thousands deep: what a level of that does not need
// stays out of its stack frame, here and below.

// byte 0: type   byte 1: receiving application   byte 2: sending application   then the HE message
[[gnu::noinline]] void decode_he(const RouteRow& row, Decoding& d) {
    if (d[0].number != he_type) {
        d.add("\t-not a HE message!");
        decode_on(row, d);
        return;
    }
    d.link(row.link);
    d.name("application_message", d[0]);
    d.print("\t- [HE:{sender} ->{receiver}]"_cf, he::application(d[2]), he::application(d[1]));
    const Message he = decale(d.session(), d.message(), 3);
    Decoding carried(d, he);
    decode_on(row, carried);
}

// byte 1: source   byte 2: destination; a message of two bytes has no routing
[[gnu::noinline]] void visiophone_header(Decoding& d) {
    if (d[0].number != visiophone_type) {
        d.add("\t-not a visiophone message!");
    } else if (d.length() != 2) {
        d.print("\t- routage visiophone: src={source:02x} dst={destination:02x}\n"_cf, d[1], d[2]);
    }
}

[[gnu::noinline]] void trace_entry(const Decoding& d) {
    d.session().standard_output(formatted("entree decode1msg, lng=0x{-:02x}  sens= {-}\n"_cf, d.length(),
                                          d.direction() == to_dhs ? "to DHS" : "from DHS"));
}

}  // namespace

void dispatch_message(Decoding& d) {
    if (d.length() == 0) return;
    if (!may_be_shown(d.session(), d.direction(), d.on(d[0]))) return;
    if (d.session().switches.debug) trace_entry(d);
    const RouteRow& row = row_of(d.message());
    switch (row.route) {
        case route_he:
            decode_he(row, d);
            break;
        case route_visiophone:
            visiophone_header(d);
            decode_on(row, d);
            break;
        default:
            decode_on(row, d);
            break;
    }
}

}  // namespace ztdecode
