#include "decode/routes/servers.hpp"

#include "abi/process.hpp"

using ztdecode::abi::decoded_in_own_buffer;
using ztdecode::abi::KeptText;

extern "C" {

const char* dbg2dhs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::dbg2dhs);
}

const char* dhs2dbg(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::dhs2dbg);
}

const char* osi2dhs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::osi2dhs);
}

const char* dhs2osi(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::dhs2osi);
}
}
