#include "core/going_away.hpp"
#include "ip/ip.hpp"
#include "ip/messages.hpp"
#include "ip/values.hpp"

// IP set to system: the set announces itself, reports incidents, answers for its parameters, sends a ticket
// at the end of a call.

namespace ztdecode {

using namespace ip;

namespace {

constexpr auto incidents =
    names({{0, "incident: dhcp lease renewal failed"}, {1, "incident: lanpbx file corrupted"}},
          "incident: unknown");

constexpr std::uint8_t types_with_design = 32;

// byte 2: terminal type   byte 3: design, for types below 32
void init(Session& /*session*/, const Message& m, Text& out) {
    const std::uint8_t type = m[2];
    if (type < types_with_design) {
        out.print("init, {} {}"_cf, type_poste(type), design_poste(m[3]));
    } else {
        out.print("init, {}"_cf, type_poste(type));
    }
}

void incident(Session& /*session*/, const Message& m, Text& out) { out.add(incidents[m[2]]); }

void bad_length(const Item& item, Text& out) { out.print(" bad length {}"_cf, item.length); }

// The version is two bytes whatever the length says.
void firmware_version(const Item& item, Text& out) { out.add(version_logiciel("soft", item[0], item[1])); }

void local_address(const Item& item, Text& out) {
    switch (item.length) {
        case 4:
            out.print(": IPv4 {}"_cf, ip_dotted_text(item));
            break;
        case 16:
            out.print(": IPv6 {}"_cf, ip_ipv6_text(item));
            break;
        case 20:
            out.print(": dual IPv4+IPv6 {} + {}"_cf, ip_dotted_text(item), ip_ipv6_text(item, 4));
            break;
        default:
            bad_length(item, out);
            break;
    }
}

void subnet_mask(const Item& item, Text& out) {
    switch (item.length) {
        case 1:
            out.print(": IPv6 prefix length= {} bits"_cf, item[0]);
            break;
        case 4:
            out.print(": IPv4 {}"_cf, ip_dotted_text(item));
            break;
        case 5:
            out.print(": dual IPv4 {} + IPv6 prefix length= {} bits"_cf, ip_dotted_text(item), item[4]);
            break;
        default:
            bad_length(item, out);
            break;
    }
}

void server_address(const Item& item, Text& out) {
    switch (item.length) {
        case 4:
            out.print(": IPv4 {}"_cf, ip_dotted_text(item));
            break;
        case 16:
            out.print(": IPv6 {}"_cf, ip_ipv6_text(item));
            break;
        default:
            bad_length(item, out);
            break;
    }
}

// Every other parameter shows its bytes, the addresses of the DHCP server and the router included.
constexpr auto param_values = item_texts(
    {{0, firmware_version}, {3, local_address}, {4, subnet_mask}, {6, server_address}, {7, server_address}});

void write_param(const Item& item, Text& out) {
    out.add(ip_param_name(item.id));
    if (!param_values.write(item, out)) ip_blank_and_hex(item, out);
}

void param_response(Session& /*session*/, const Message& m, Text& out) {
    out.add("param response(s):");
    write_list(m, 2, out, write_param);
}

void debug_text(Session& session, const Message& m, Text& out) {
    Text carried;  // what stands from byte 2 on, whatever the length says
    if (session.switches.debug) carried.copy_string(m, 2, message_capacity);
    const std::size_t begin = out.size();
    {
        const Text::Piece text(out);
        out.add("debug\n");
        if (m.length() > 2) out.copy(m, 2, m.length() - 2);
    }
    if (!session.switches.debug) return;
    const std::string_view result = out.from(begin);
    session.standard_output(fmt::format("longueur debug: {} (={:x})\n"_cf, m.length(), m.length()));
    session.standard_output(
        fmt::format("texte    debug: longueur: {}, texte: {}\n"_cf, result.size(), result));
    session.standard_output(
        fmt::format("texte MV debug: longueur: {}, texte: {}\n"_cf, carried.size(), carried.view()));
}

constexpr auto messages =
    opcodes({{0, init}, {1, incident}, {2, param_response}, {3, qos_ticket}, {255, debug_text}});

}  // namespace

void ip2dhs(Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    if (!messages.write(m[1], session, m, out)) out.add("unknown message");
}

}  // namespace ztdecode

void ztdecode::ip::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::ip2dhs, d); }
