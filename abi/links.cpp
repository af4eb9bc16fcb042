#include "abi/process.hpp"
#include "decode/routes/debug.hpp"
#include "decode/routes/hub.hpp"
#include "decode/routes/ibs.hpp"
#include "decode/routes/osi.hpp"
#include "decode/routes/servers.hpp"
#include "digital/digital.hpp"
#include "he/he.hpp"
#include "ip/ip.hpp"

// The links' decoders.

using namespace ztdecode;
using ztdecode::abi::decoded_in_own_buffer;
using ztdecode::abi::decoded_on_heap;

extern "C" {

char* rn2dhs(MessageRecord* record) { return decoded_on_heap<digital::to_system>(record); }
char* dhs2rn(MessageRecord* record) { return decoded_on_heap<digital::from_system>(record); }

const char* he2dhs(MessageRecord* record) { return decoded_in_own_buffer<he::to_system>(record); }
const char* dhs2he(MessageRecord* record) { return decoded_in_own_buffer<he::from_system>(record); }

const char* osi2dhs(MessageRecord* record) { return decoded_in_own_buffer<osi::to_system>(record); }
const char* dhs2osi(MessageRecord* record) { return decoded_in_own_buffer<osi::from_system>(record); }

const char* ibs2dhs(MessageRecord* record) { return decoded_in_own_buffer<ibs::to_system>(record); }
const char* dhs2ibs(MessageRecord* record) { return decoded_in_own_buffer<ibs::from_system>(record); }

const char* ip2dhs(MessageRecord* record) { return decoded_in_own_buffer<ip::to_system>(record); }
const char* dhs2ip(MessageRecord* record) { return decoded_in_own_buffer<ip::from_system>(record); }

const char* hub2dhs(MessageRecord* record) { return decoded_in_own_buffer<hub::to_system>(record); }
const char* dhs2hub(MessageRecord* record) { return decoded_in_own_buffer<hub::from_system>(record); }

const char* cs2dhs(MessageRecord* record) { return decoded_in_own_buffer<call_server::to_system>(record); }
const char* dhs2cs(MessageRecord* record) { return decoded_in_own_buffer<call_server::from_system>(record); }

const char* prs2dhs(MessageRecord* record) {
    return decoded_in_own_buffer<presentation_server::to_system>(record);
}
const char* dhs2prs(MessageRecord* record) {
    return decoded_in_own_buffer<presentation_server::from_system>(record);
}

// `debug` alone is the host's switch here.
const char* dbg2dhs(MessageRecord* record) {
    return decoded_in_own_buffer<ztdecode::debug::to_system>(record);
}
const char* dhs2dbg(MessageRecord* record) {
    return decoded_in_own_buffer<ztdecode::debug::from_system>(record);
}

}  // extern "C"
