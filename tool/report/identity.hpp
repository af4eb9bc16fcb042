#pragma once

#include <string_view>

namespace ztdecode::tool {

// The messages to the system in which terminals say what they are.
inline constexpr std::string_view identity_messages[] = {"reset", "init", "version_response",
                                                         "param_response"};

// What they say; of several names the one that the message has.
inline constexpr std::string_view identity_fields[] = {
    "module",
    "module_address",
    "terminal_type,term_type",
    "terminal_design",
    "software_version,softversion,firmware_version,code_version,ram_version",
    "hardware_version,hardversion",
    "boot_version,rom_version,loader_version",
    "data_version",
    "serialnum",
    "mac_address",
    "local_ip_address",
};

}  // namespace ztdecode::tool
