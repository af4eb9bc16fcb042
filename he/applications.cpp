#include "core/going_away.hpp"
#include "he/he.hpp"

namespace ztdecode {

namespace {

constexpr auto applications = names({{0, " firmware"},
                                     {1, " telephony"},
                                     {2, " desktop"},
                                     {6, " data"},
                                     {7, " mail"},
                                     {248, " audio tool"},
                                     {249, " manufacturing test"},
                                     {250, " communication assistant"},
                                     {251, " calendar"},
                                     {252, " minitel"},
                                     {253, " calculator"},
                                     {254, " text editor"},
                                     {255, " default"}},
                                    "");

}  // namespace

NameOrCode apId(std::uint32_t id) noexcept { return he::application(Number{id}); }

NameOrCode he::application(const Number& id) noexcept { return {applications[id.number], id.number, " ", id.place}; }

}  // namespace ztdecode
