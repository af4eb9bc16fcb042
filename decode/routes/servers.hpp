#pragma once

#include "core/decoding.hpp"

// Routes that need little of their own.

namespace ztdecode {

// The debug channel: plain text.
void dbg2dhs(Session& session, Message& m, Text& out);
void dhs2dbg(Session& session, Message& m, Text& out);

// OSI maintenance.
void osi2dhs(Session& session, Message& m, Text& out);
void dhs2osi(Session& session, Message& m, Text& out);

}  // namespace ztdecode

// The object protocol's two servers. The session's application text becomes the message's.

namespace ztdecode::call_server {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::call_server

namespace ztdecode::presentation_server {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::presentation_server

namespace ztdecode::debug {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::debug

namespace ztdecode::osi {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::osi
