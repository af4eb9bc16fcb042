// Messages of one session, one after the other.
//
// The input is records, each of a message behind a byte of switches. Every message ends within its bounds,
// its text is a C string, and two sessions that see the same messages write the same text, whether or not
// somebody asks where the words came from.

#include <cstdint>

#include "fuzz/decoding.hpp"
#include "fuzz/fuzzing.hpp"

namespace {

using ztdecode::fuzz::expect;

enum : std::uint8_t { bit_to_dhs = 1, bit_color = 2, bit_audio_only = 4, bit_debug = 8 };

ztdecode::fuzz::CapturedMessage captured(ztdecode::fuzz::Record record) {
    return {{.color = (record.way & bit_color) != 0,
             .audio_only = (record.way & bit_audio_only) != 0,
             .debug = (record.way & bit_debug) != 0},
            (record.way & bit_to_dhs) != 0 ? ztdecode::to_dhs : ztdecode::from_dhs,
            std::move(record.bytes)};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ztdecode::fuzz::TwoSessions sessions;
    ztdecode::fuzz::Account account;
    ztdecode::fuzz::Records records(data, size);
    while (auto record = records.next()) {
        const std::string_view broken = sessions.decode(captured(std::move(*record)));
        expect(broken.empty(), broken);
        account.add(sessions.cost());
        if (account.used_up()) break;
    }
    return 0;
}
