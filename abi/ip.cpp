#include "ip/ip.hpp"

#include "abi/process.hpp"

using namespace ztdecode;

const char* ip2dhs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ip::to_system);
}

const char* dhs2ip(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, ip::from_system);
}
