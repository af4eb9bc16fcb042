#include "decode/routes/servers.hpp"

#include "object/command.hpp"

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
