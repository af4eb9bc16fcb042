#include "digital/options/options.hpp"

#include <algorithm>

#include "abi/process.hpp"
#include "digital/options/super.hpp"

using namespace ztdecode;
using namespace ztdecode::abi;

namespace {

using HostDecoder = const char* (*)(MessageRecord*);

// The records that a host's decoder gets for the parts of a super message: copies of a record that loses its
// first bytes as the walk goes on, with all the bytes behind their ends.
class PartRecords {
  public:
    explicit PartRecords(const MessageRecord& whole) : rest_(whole) {
        rest_.length = std::min<std::uint32_t>(rest_.length, ZTDECODE_CAPACITY);
        drop(rest_, 1);
    }

    MessageRecord next(const Message& part) {
        MessageRecord record = rest_;
        drop(record, 1);
        record.length = part.length();
        drop(rest_, part.length() - 1);
        return record;
    }

  private:
    // The walk itself has the complaint about bytes that are not there.
    static void drop(MessageRecord& record, std::uint32_t n) {
        if (record.length < n) {
            record.length = 0;
            return;
        }
        record.length -= n;
        std::copy_n(record.data + n, record.length, record.data);
    }

    MessageRecord rest_;
};

struct HostParts {
    PartRecords records;
    HostDecoder decoder;
};

void decode_part_of_host(Decoding& part, void* host) {
    auto& parts = *static_cast<HostParts*>(host);
    MessageRecord record = parts.records.next(part.message());
    const char* described = parts.decoder(&record);
    if (described != nullptr) part.add(described);
}

}  // namespace

extern "C" {

const char* decode_z(MessageRecord* record) { return decoded_in_own_buffer<z::to_system>(record); }

const char* decode_z_out(MessageRecord* record) { return decoded_in_own_buffer<z::from_system>(record); }

const char* decode_mpc(MessageRecord* record) { return decoded_in_own_buffer<mpc::to_system>(record); }

const char* decode_mpc_out(MessageRecord* record) { return decoded_in_own_buffer<mpc::from_system>(record); }

const char* decode_eak(MessageRecord* record) { return decoded_in_own_buffer<eak::to_system>(record); }

const char* decode_eak_out(MessageRecord* record) { return decoded_in_own_buffer<eak::from_system>(record); }

const char* decode_ks(MessageRecord* record) { return decoded_in_own_buffer<ks::to_system>(record); }

const char* decode_ks_out(MessageRecord* record) { return decoded_in_own_buffer<ks::from_system>(record); }

const char* decode_v24(MessageRecord* record) { return decoded_in_own_buffer<v24::to_system>(record); }

const char* decode_v24_out(MessageRecord* record) { return decoded_in_own_buffer<v24::from_system>(record); }

const char* decode_s0(MessageRecord* record) { return decoded_in_own_buffer<s0::to_system>(record); }

const char* decode_s0_out(MessageRecord* record) { return decoded_in_own_buffer<s0::from_system>(record); }

// The text is put together apart and then becomes the buffer: the host's decoder may call this function
// again.
const char* subSuper(MessageRecord* record, HostDecoder decoder) {
    static KeptText buffer;
    if (record == nullptr || decoder == nullptr) return "";
    Text text;
    const char* result = in_own_buffer(text, [&](Session& s, Text& out) {
        const Message m = view(*record);
        Decoding d(s, m, out);
        HostParts parts{PartRecords(*record), decoder};
        modules::super_message(d, decode_part_of_host, &parts);
    });
    buffer.get() = std::move(text);
    return result;
}

}  // extern "C"
