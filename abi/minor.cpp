#include "decode/routes/minor.hpp"

#include "abi/process.hpp"

using ztdecode::abi::decoded_in_own_buffer;
using ztdecode::abi::KeptText;

extern "C" {

const char* cs2dhs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::cs2dhs);
}

const char* dhs2cs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::dhs2cs);
}

const char* prs2dhs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::prs2dhs);
}

const char* dhs2prs(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::dhs2prs);
}
}
