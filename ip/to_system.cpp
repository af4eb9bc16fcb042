#include "core/phrase.hpp"
#include "decode/tables/identity.hpp"
#include "ip/ip.hpp"
#include "ip/items.hpp"
#include "ip/messages.hpp"
#include "ip/parameters.hpp"

// IP set to system: the set announces itself, reports incidents, answers for its parameters, sends a ticket
// at the end of a call.

namespace ztdecode::ip {

namespace {

// byte 2: terminal type   byte 3: design, for types below 32
void init(Decoding& d) {
    constexpr int types_with_design = 32;
    const Byte type = d[2];
    if (d.on(type < types_with_design)) {
        d.print("init, {terminal_type} {terminal_design}"_cf, terminal_type(type), terminal_design(d[3]));
    } else {
        d.print("init, {terminal_type}"_cf, terminal_type(type));
    }
}

void incident(Decoding& d) {
    static constexpr auto incidents =
        names({{0, "incident: dhcp lease renewal failed"}, {1, "incident: lanpbx file corrupted"}},
              "incident: unknown");
    add_phrase(d, "incident", incidents[d[2]], "incident: ");
}

void param_response(Decoding& d) {
    d.add("param response(s):");
    write_list(d, 2, [](Decoding& item, const Byte& id) { write_parameter(item, id); });
}

void debug_text(Decoding& d) {
    const std::size_t begin = d.out().size();
    {
        const Decoding::Piece text(d);
        d.add("debug\n");
        if (d.length() > 2) d.text("debug_text", 2, d.length() - 2);
    }
    const Session& session = d.session();
    if (!session.switches.debug) return;
    const std::string_view result = d.out().from(begin);
    Text carried;  // what stands from byte 2 on, whatever the length says
    carried.copy_string(d.message(), 2, message_capacity);
    session.standard_output(formatted("longueur debug: {-} (={-:x})\n"_cf, d.length(), d.length()));
    session.standard_output(
        formatted("texte    debug: longueur: {-}, texte: {-}\n"_cf, result.size(), result));
    session.standard_output(
        formatted("texte MV debug: longueur: {-}, texte: {-}\n"_cf, carried.size(), carried.view()));
}

constexpr auto messages = opcodes({{0x00, "init", init},
                                   {0x01, "incident", incident},
                                   {0x02, "param_response", param_response},
                                   {0x03, "qos_ticket", qos_ticket},
                                   {0xFF, "debug_text", debug_text}},
                                  "unknown message");

}  // namespace

void to_system(Decoding& d) {
    d.status = Status::recognised;
    messages.write(d, d[1]);
}

}  // namespace ztdecode::ip
