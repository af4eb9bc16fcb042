#pragma once

#include <cstdint>

#include "core/session.hpp"

namespace ztdecode {

bool is_audio_opcode(std::uint32_t direction, std::uint8_t type) noexcept;

// Whether a message may be shown: always, or when the session wants audio messages only and it is one.
inline bool may_be_shown(const Session& session, std::uint32_t direction, std::uint8_t type) noexcept {
    return !session.switches.audio_only || is_audio_opcode(direction, type);
}

}  // namespace ztdecode
