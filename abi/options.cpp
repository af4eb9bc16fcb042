#include "digital/options/options.hpp"

#include <algorithm>

#include "abi/process.hpp"
#include "digital/options/super.hpp"

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

    MessageRecord next(const ztdecode::Message& part) {
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

}  // namespace

extern "C" {

const char* decode_z(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_z);
}

const char* decode_z_out(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_z_out);
}

const char* decode_mpc(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_mpc);
}

const char* decode_mpc_out(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_mpc_out);
}

const char* decode_eak(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_eak);
}

const char* decode_eak_out(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_eak_out);
}

const char* decode_ks(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_ks);
}

const char* decode_ks_out(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_ks_out);
}

const char* decode_v24(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_v24);
}

const char* decode_v24_out(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_v24_out);
}

const char* decode_s0(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_s0);
}

const char* decode_s0_out(MessageRecord* record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, record, ztdecode::decode_s0_out);
}

// The text is put together apart and then becomes the buffer: the host's decoder may call this function
// again.
const char* subSuper(MessageRecord* record, HostDecoder decoder) {
    static KeptText buffer;
    if (record == nullptr || decoder == nullptr) return "";
    ztdecode::Text text;
    const char* result = in_own_buffer(text, [&](ztdecode::Session& s, ztdecode::Text& out) {
        PartRecords parts(*record);
        const auto decode_part = [&](ztdecode::Session&, const ztdecode::Message& part,
                                     ztdecode::Text& line) {
            MessageRecord part_record = parts.next(part);
            const char* described = decoder(&part_record);
            if (described != nullptr) line.add(described);
        };
        ztdecode::sub_super(s, view(*record), decode_part, out);
    });
    buffer.get() = std::move(text);
    return result;
}

}  // extern "C"
