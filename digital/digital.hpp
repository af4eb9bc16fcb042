#pragma once

#include "core/session.hpp"

// The digital-set link: sets and the option modules behind them.

namespace ztdecode {

void rn2dhs(Session& session, Message& m, Text& out);
void dhs2rn(Session& session, Message& m, Text& out);

// "[opt TYPE adr A] " for a sub-device byte: address in bits 0-2, module type in bits 3-7. All type bits set:
// the type is the one remembered for the address.
void option_label(const Session& session, std::uint8_t sub_device, Text& out);

// Name of a module type, "???" beyond 13.
std::string_view option_type_name(std::uint32_t type) noexcept;

}  // namespace ztdecode
