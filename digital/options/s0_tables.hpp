#pragma once

#include "core/session.hpp"

// Names and pieces of text that both directions of the S0 module use.

namespace ztdecode {

// ISDN call control, by message-type code.
std::string_view call_control_name(std::uint8_t code) noexcept;

std::string_view operating_mode_name(std::uint8_t mode) noexcept;

// byte 3: bit 7 first segment, bits 0-6 segments still to come   byte 12 of a first one: call-control message
// type `total` is what the first segment announced, remembered until the next first one.
void s0_segment_message(std::int32_t& total, const Message& m, Text& out);

// byte 3: SAPI   byte 4: TEI
void data_link(const Message& m, Text& out);

// byte 5: 8 call control, its message type in byte 8; 16 packet
void data_link_content(const Message& m, Text& out);

}  // namespace ztdecode
