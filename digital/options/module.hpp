#pragma once

#include "core/going_away.hpp"
#include "digital/options/options.hpp"

// What the modules' messages have in common.

namespace ztdecode {

inline std::uint32_t module_opcode(const Message& m) { return m[2] & 0x7F; }

inline std::string_view on_or_off(std::uint8_t byte) { return byte != 0 ? "on" : "off"; }

// Every module tells the version of its software, at places of its own: major number at byte k, minor behind
// it.
inline OldVersion soft_version(const Message& m, std::size_t k) {
    return version_logiciel("soft", m[k], m[k + 1]);
}

// byte 4: the command
void illegal_command(Session& session, const Message& m, Text& out);

}  // namespace ztdecode
