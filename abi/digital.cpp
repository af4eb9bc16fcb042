#include "digital/digital.hpp"

#include "abi/process.hpp"

using namespace ztdecode::abi;

namespace {

// A record without a message has no text.
char* whole_text(MessageRecord* record, void (*decoder)(ztdecode::Decoding&)) {
    static KeptText buffer;
    return record == nullptr || record->length == 0 ? nullptr : decoded_on_heap(buffer, *record, decoder);
}

}  // namespace

extern "C" {

char* rn2dhs(MessageRecord* record) { return whole_text(record, ztdecode::digital::to_system); }

char* dhs2rn(MessageRecord* record) { return whole_text(record, ztdecode::digital::from_system); }

}  // extern "C"
