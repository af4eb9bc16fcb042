#include "decode/routes/hub.hpp"

#include "abi/process.hpp"
#include "decode/routes/ibs.hpp"

using namespace ztdecode;

const char* hub2dhs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, hub::to_system);
}

const char* dhs2hub(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, hub::from_system);
}

const char* ibs2dhs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ibs::to_system);
}

const char* dhs2ibs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ibs::from_system);
}
