#include "core/tables.hpp"
#include "digital/digital.hpp"

namespace ztdecode::digital {

namespace {

constexpr auto module_types = names({{0, "V24"},
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

Word module_type(const Number& type) noexcept { return module_types[type]; }

void module_label(Decoding& d, const Byte& sub_device) {
    const Byte address = sub_device & 7;
    const bool from_memory = (sub_device.number & type_from_memory) == type_from_memory;
    const Byte type =
        from_memory ? address.as(*d.session().digital.modules.types[address.number]) : sub_device >> 3;
    d.print("[opt {module} adr {module_address:x}] "_cf, module_types[type], address);
}

}  // namespace ztdecode::digital
