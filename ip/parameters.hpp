#pragma once

#include "core/tables.hpp"

namespace ztdecode::ip {

// A parameter that the system asks for and the set answers.
Word parameter_name(const Number& id) noexcept;
// What the set answers for it.
void write_parameter(Decoding& d, const Number& id);

}  // namespace ztdecode::ip
