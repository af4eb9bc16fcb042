#include "decode/routes/minor.hpp"

#include "core/going_away.hpp"
#include "object/command.hpp"

namespace ztdecode {

namespace {

// The message with its type byte, which is the server's code.
void to_server(std::string_view server, Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    out.add(server);
    analyse_for_application(session, analyse_cmd_term, m, out);
}

void from_server(std::string_view server, Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    out.add(server);
    analyse_for_application(session, analyse_cmd_pbx, m, out);
}

}  // namespace

void cs2dhs(Session& session, Message& m, Text& out) { to_server("call server", session, m, out); }

void dhs2cs(Session& session, Message& m, Text& out) { from_server("call server", session, m, out); }

void prs2dhs(Session& session, Message& m, Text& out) { to_server("presentation server", session, m, out); }

void dhs2prs(Session& session, Message& m, Text& out) { from_server("presentation server", session, m, out); }

}  // namespace ztdecode

void ztdecode::call_server::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dhs2cs, d); }
void ztdecode::call_server::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::cs2dhs, d); }
void ztdecode::presentation_server::from_system(ztdecode::Decoding& d) {
    ztdecode::call_old(ztdecode::dhs2prs, d);
}
void ztdecode::presentation_server::to_system(ztdecode::Decoding& d) {
    ztdecode::call_old(ztdecode::prs2dhs, d);
}
