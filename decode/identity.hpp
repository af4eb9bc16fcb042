#pragma once

#include <cstdint>
#include <string_view>

#include "core/session.hpp"

// Names that several links share: terminals, cadences, versions, errors, warnings and the audio
// configuration.

namespace ztdecode {

// " LABEL=1.05": a blank, the label, the version.
struct Version {
    std::string_view label;
    std::uint32_t major;
    std::uint32_t minor;

    std::size_t bound() const noexcept { return label.size() + 32; }
    char* write(char* at) const;
};

// The name; a code that has none as hexadecimal digits, with `before` in front of them.
struct NameOrCode {
    std::string_view name;
    std::uint32_t code;
    std::string_view before{};

    std::size_t bound() const noexcept { return name.size() + before.size() + 8; }
    char* write(char* at) const;
};

std::string_view type_poste(std::uint32_t code) noexcept;
std::string_view design_poste(int value) noexcept;
std::string_view ring_cadence(std::uint32_t code) noexcept;

constexpr Version version_logiciel(std::string_view label, std::uint32_t major,
                                   std::uint32_t minor) noexcept {
    return {label, major, minor};
}
NameOrCode dec_err(std::uint32_t code) noexcept;
NameOrCode dec_warn(std::uint32_t code) noexcept;
void dec_selftest(std::uint32_t bits, Text& out);
void audio_config(Session& session, const Message& m, Text& out);

bool is_audio_opcode(std::uint32_t direction, std::uint8_t type) noexcept;
// Whether a message may be shown: always, or when the session wants audio messages only and it is one.
inline bool inListAudioOpcodes(const Session& session, std::uint32_t direction, std::uint8_t type) noexcept {
    return !session.switches.audio_only || is_audio_opcode(direction, type);
}

}  // namespace ztdecode
