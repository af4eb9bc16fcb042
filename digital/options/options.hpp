#pragma once

#include "core/decoding.hpp"

// The option modules behind a digital set. Each decoder is given the whole message of the set: byte 0 the
// set's opcode, byte 1 the sub-device byte, byte 2 the module's opcode (bit 7 does not count), then its
// parameters.

namespace ztdecode::z {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::z

namespace ztdecode::mpc {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::mpc

namespace ztdecode::eak {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::eak

namespace ztdecode::ks {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::ks

namespace ztdecode::v24 {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::v24

namespace ztdecode::s0 {

void from_system(Decoding& d);
void to_system(Decoding& d);

}  // namespace ztdecode::s0
