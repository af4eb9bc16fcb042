#include "core/tables.hpp"
#include "he/he.hpp"

namespace ztdecode::he {

namespace {

constexpr auto applications = names({{0x00, " firmware"},
                                     {0x01, " telephony"},
                                     {0x02, " desktop"},
                                     {0x06, " data"},
                                     {0x07, " mail"},
                                     {0xF8, " audio tool"},
                                     {0xF9, " manufacturing test"},
                                     {0xFA, " communication assistant"},
                                     {0xFB, " calendar"},
                                     {0xFC, " minitel"},
                                     {0xFD, " calculator"},
                                     {0xFE, " text editor"},
                                     {0xFF, " default"}},
                                    "");

}  // namespace

NameOrCode application(const Number& id) noexcept {
    return {applications[id.number], id.number, " ", id.place};
}

}  // namespace ztdecode::he
