#include "decode/routes/hub.hpp"

#include "abi/process.hpp"
#include "decode/routes/ibs.hpp"

using namespace ztdecode;

const char* hub2dhs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ztdecode::hub2dhs);
}

const char* dhs2hub(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ztdecode::dhs2hub);
}

const char* ibs2dhs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ztdecode::ibs2dhs);
}

const char* dhs2ibs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ztdecode::dhs2ibs);
}
