#include "decode/routes/debug.hpp"

#include "abi/process.hpp"

using ztdecode::abi::decoded_in_own_buffer;
using ztdecode::abi::KeptText;

extern "C" {

const char* dbg2dhs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::debug::to_system);
}

const char* dhs2dbg(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::debug::from_system);
}
}
