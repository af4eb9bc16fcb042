#pragma once

#include "core/session.hpp"

// The messages of the IP-set link that have a file of their own.

namespace ztdecode::ip {

// To the system.
void qos_ticket(Session& session, const Message& m, Text& out);

// From the system.
void set_param(Session& session, const Message& m, Text& out);

// Lists that begin at byte `first` of the message, each item on a line.
void rtp_param_list(const Message& m, std::uint32_t first, Text& out);
void redirect_list(const Message& m, std::uint32_t first, Text& out);
void listen_list(const Message& m, std::uint32_t first, Text& out);
// Remembers the text of the last item for one that repeats it.
void record_list(const Message& m, std::uint32_t first, Session& session, Text& out);
void reset_list(const Message& m, std::uint32_t first, Text& out);
void application_list(const Message& m, std::uint32_t first, Text& out);

}  // namespace ztdecode::ip
