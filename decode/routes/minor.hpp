#pragma once

#include "core/decoding.hpp"

// Routes that need little of their own.

namespace ztdecode {

// The object protocol's two servers. The session's application text becomes the message's.
void cs2dhs(Session& session, Message& m, Text& out);
void dhs2cs(Session& session, Message& m, Text& out);
void prs2dhs(Session& session, Message& m, Text& out);
void dhs2prs(Session& session, Message& m, Text& out);

}  // namespace ztdecode

namespace ztdecode::call_server {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::call_server

namespace ztdecode::presentation_server {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::presentation_server
