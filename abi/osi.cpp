#include "decode/routes/osi.hpp"

#include "abi/process.hpp"

using ztdecode::abi::decoded_in_own_buffer;
using ztdecode::abi::KeptText;

extern "C" {

const char* osi2dhs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::osi::to_system);
}

const char* dhs2osi(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::osi::from_system);
}
}
