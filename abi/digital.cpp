#include "digital/digital.hpp"

#include "abi/process.hpp"

using namespace ztdecode::abi;

namespace {

// Its text goes to the heap; a record without a message has none.
char* decoded_on_heap(MessageRecord* record,
                      void (*decoder)(ztdecode::Session&, ztdecode::Message&, ztdecode::Text&)) {
    static KeptText buffer;
    if (record == nullptr || record->length == 0) return nullptr;
    return on_heap(buffer, text_of(*record, decoder));
}

}  // namespace

extern "C" {

char* rn2dhs(MessageRecord* record) { return decoded_on_heap(record, ztdecode::rn2dhs); }

char* dhs2rn(MessageRecord* record) { return decoded_on_heap(record, ztdecode::dhs2rn); }

}  // extern "C"
