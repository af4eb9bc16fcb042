#include "digital/digital.hpp"

#include "abi/process.hpp"

using namespace ztdecode::abi;

namespace {

// A record without a message has no text.
char* whole_text(MessageRecord* record,
                 void (*decoder)(ztdecode::Session&, ztdecode::Message&, ztdecode::Text&)) {
    static KeptText buffer;
    return record == nullptr || record->length == 0 ? nullptr : decoded_on_heap(buffer, *record, decoder);
}

}  // namespace

extern "C" {

char* rn2dhs(MessageRecord* record) { return whole_text(record, ztdecode::rn2dhs); }

char* dhs2rn(MessageRecord* record) { return whole_text(record, ztdecode::dhs2rn); }

}  // extern "C"
