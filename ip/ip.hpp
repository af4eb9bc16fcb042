#pragma once

#include "core/decoding.hpp"

// The IP-set link. byte 0: type   byte 1: opcode   then what the opcode carries; numbers have their high byte
// first.

namespace ztdecode {

void ip2dhs(Session& session, Message& m, Text& out);
void dhs2ip(Session& session, Message& m, Text& out);

}  // namespace ztdecode

namespace ztdecode::ip {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::ip
