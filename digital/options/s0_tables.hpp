#pragma once

#include "core/decoding.hpp"

// Names and pieces of text that both directions of the S0 module use.

namespace ztdecode::s0 {

// ISDN call control, by message-type code.
Word call_control(const Byte& code) noexcept;

Word operating_mode(const Byte& mode) noexcept;

// Parts of the module's own state, with a blank in front; an unknown one has no words.
Word internal_status(const Byte& code) noexcept;

// byte 3: bit 7 first segment, bits 0-6 segments still to come   byte 12 of a first one: call-control message
// type `announced` is what the first segment announced, remembered until the next first one.
void segment_message(Decoding& d, Remembered<std::int32_t>& announced);

// byte 3: SAPI   byte 4: TEI
void data_link(Decoding& d);

// The same, and byte 5: 8 call control, its message type in byte 8; 16 packet
void data_link_and_content(Decoding& d);

}  // namespace ztdecode::s0
