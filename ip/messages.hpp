#pragma once

#include <cstdint>

#include "core/decoding.hpp"

// The messages of the IP-set link that have a file of their own.

namespace ztdecode::ip {

// To the system.
void qos_ticket(Decoding& d);

// From the system.
void set_param(Decoding& d);

// Lists that begin at byte `first` of the message, each item on a line.
void rtp_param_list(Decoding& d, std::uint32_t first);
void redirect_list(Decoding& d, std::uint32_t first);
void listen_list(Decoding& d, std::uint32_t first);
// Remembers the text of the last item for one that repeats it.
void record_list(Decoding& d, std::uint32_t first);
void reset_list(Decoding& d, std::uint32_t first);
void application_list(Decoding& d, std::uint32_t first);

}  // namespace ztdecode::ip
