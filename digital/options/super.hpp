#pragma once

#include "core/decoding.hpp"

// Super messages of the modules: several messages of one module behind each other.
//
//   byte 0: the set's opcode   byte 1: sub-device   byte 2: the module's opcode 0x0B
//   then for each part a length byte and as many bytes: the part's opcode and parameters

namespace ztdecode::modules {

// Decodes one part, which looks like a message of its own: byte 2 is its opcode. `host` is what a decoder of
// the C interface's host needs besides.
using PartDecoder = void (*)(Decoding& part);
using HostPartDecoder = void (*)(Decoding& part, void* host);

// The super message's parts line by line, each as `decode_part` describes it.
//
// What the length bytes claim is taken as it comes; what is left is counted in eight bits. A message whose
// lengths do not add up goes on behind its end until the count meets 0, 1 or 2, or comes back to where it
// was. Super messages inside each other are followed as deep as `Carrying` says; a deeper one shows its
// heading alone.
void super_message(Decoding& d, PartDecoder decode_part);
void super_message(Decoding& d, HostPartDecoder decode_part, void* host);

}  // namespace ztdecode::modules
