#include "decode/routes/servers.hpp"

#include "abi/process.hpp"

using namespace ztdecode;

extern "C" {

const char* cs2dhs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, call_server::to_system);
}

const char* dhs2cs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, call_server::from_system);
}

const char* prs2dhs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, presentation_server::to_system);
}

const char* dhs2prs(MessageRecord* record) {
    static abi::KeptText buffer;
    return abi::decoded_in_own_buffer(buffer, record, presentation_server::from_system);
}

}  // extern "C"
