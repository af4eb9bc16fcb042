#include "core/tables.hpp"
#include "digital/digital.hpp"

namespace ztdecode {

namespace {

constexpr auto option_types = names({{0, "V24"},
                                     {1, "S0"},
                                     {2, "mac/pc"},
                                     {3, "aom"},
                                     {4, "eak"},
                                     {5, "Z"},
                                     {6, "V24 synchrone"},
                                     {7, "x21"},
                                     {8, "aom set-13"},
                                     {9, "key system interne 7301"},
                                     {10, "key system externe 7302"},
                                     {11, "key system 7303"},
                                     {12, "key system 7304"},
                                     {13, "key system 7305"}},
                                    "???");

constexpr std::uint8_t type_from_memory = 0xF8;

}  // namespace

std::string_view option_type_name(std::uint32_t type) noexcept { return option_types[type]; }

void option_label(const Session& session, std::uint8_t sub_device, Text& out) {
    const std::uint8_t address = sub_device & 7;
    const std::uint8_t type = (sub_device & type_from_memory) == type_from_memory
                                  ? session.digital.modules->types[address]
                                  : static_cast<std::uint8_t>(sub_device >> 3);
    out.print("[opt {} adr {:x}] "_cf, option_types[type], address);
}

}  // namespace ztdecode
