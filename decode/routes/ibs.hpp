#pragma once

#include <string_view>

#include "core/decoding.hpp"

// DECT bases. byte 0: type   byte 1: class in bits 4-7, name within the class in bits 0-3   bytes 2-3:
// operands

namespace ztdecode {

void ibs2dhs(Session& session, Message& m, Text& out);
void dhs2ibs(Session& session, Message& m, Text& out);

std::string_view ibs_message_name(std::uint32_t name, std::uint32_t message_class) noexcept;

}  // namespace ztdecode

namespace ztdecode::ibs {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::ibs
