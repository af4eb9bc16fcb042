// Messages of one session, one after the other.
//
// The input is records, each of a message behind a byte of switches. Every message ends, its text is a C
// string, and two sessions that see the same messages write the same text, whether or not somebody asks where
// the words came from.

#include <cstdint>
#include <vector>

#include "core/session.hpp"
#include "fuzz/fuzzing.hpp"

namespace {

using ztdecode::Session;
using ztdecode::Text;
using ztdecode::fuzz::expect;
using ztdecode::fuzz::Records;

enum : std::uint8_t { bit_to_dhs = 1, bit_color = 2, bit_audio_only = 4, bit_debug = 8 };

class Dropped : public ztdecode::SideChannel {
  public:
    void standard_output(std::string_view text) override { written += text.size(); }
    void standard_error(std::string_view text) override { written += text.size(); }

    std::size_t written = 0;
};

struct Decoder {
    Session session;
    Dropped side;
    Text text;
    ztdecode::Outcome outcome = ztdecode::Outcome::decoded;

    Decoder() { session.side = &side; }

    void decode(std::uint8_t switches, const std::vector<std::uint8_t>& bytes) {
        session.switches = {.color = (switches & bit_color) != 0,
                            .audio_only = (switches & bit_audio_only) != 0,
                            .debug = (switches & bit_debug) != 0};
        ztdecode::Message m(bytes);
        m.direction = (switches & bit_to_dhs) != 0 ? ztdecode::to_dhs : ztdecode::from_dhs;
        text.clear();
        outcome = ztdecode::decode(session, m, text);
    }
};

void expect_in_order(const std::vector<ztdecode::Stretch>& stretches, std::size_t size) {
    std::size_t at = 0;
    for (const ztdecode::Stretch& s : stretches) {
        expect(at <= s.begin && s.begin <= s.end, "stretches follow each other");
        at = s.end;
    }
    expect(at <= size, "stretches end with the text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Decoder one;
    Decoder other;
    ztdecode::Provenance provenance;
    other.session.provenance = &provenance;
    Records records(data, size);
    while (const auto record = records.next()) {
        one.decode(record->way, record->bytes);
        other.decode(record->way, record->bytes);
        expect(one.text.view().find('\0') == std::string_view::npos, "the text is a C string");
        expect(one.text.view() == other.text.view(), "both sessions write the same text");
        expect(one.outcome == other.outcome, "both sessions end alike");
        expect(one.side.written == other.side.written, "both sessions write as much beside the text");
        expect_in_order(provenance.stretches(), other.text.size());
    }
    return 0;
}
