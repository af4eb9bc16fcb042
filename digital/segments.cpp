#include "digital/segments.hpp"

#include <algorithm>
#include <array>

namespace ztdecode {

namespace {

// A reassembled message may itself be a segment, and so for ever: it is followed this deep.
constexpr unsigned deepest_reassembly = 32;

// Bytes first ... of the segment go where the gathering stands; what does not fit the record is dropped.
void gather(Reassembly& whole, const Message& m, std::uint32_t first) {
    for (std::uint32_t k = first; k < m.length() && whole.gathered < message_capacity; ++k) {
        whole.bytes[whole.gathered++] = m[k];
    }
}

// bytes 2, 3: length of the whole message, high byte first
void start(Reassembly& whole, const Message& m) {
    whole.segments = (m[1] & 0x7F) + 1;
    whole.length = m.u16(2);
    whole.route = m.route;
    whole.direction = m.direction;
    whole.gathered = 0;
    gather(whole, m, 4);
}

// The bytes of the whole message as far as they are known, at every segment.
void trace(const Session& session, const Reassembly& whole) {
    if (!session.shows_output()) return;
    Text line;
    for (std::uint32_t k = 0; k < whole.length; ++k) {
        line.hex(k < message_capacity ? whole.bytes[k] : std::uint8_t{0});
        line.add(" ");
    }
    session.standard_output(line.view());
}

// On a copy: the whole message may be a segment that goes on gathering.
void dispatch_whole(Session& session, Text& out) {
    Reassembly& whole = session.digital.reassembly;
    if (whole.depth == deepest_reassembly) return;
    const auto bytes = whole.bytes;
    Message m(bytes.data(), whole.length, message_capacity);
    m.direction = whole.direction;
    m.route = whole.route;
    m.observe(session.provenance);
    m.mark_reassembled();
    ++whole.depth;
    out.add("\n");
    dispatch_message(session, m, out);
    --whole.depth;
}

}  // namespace

// byte 1: bit 7 first segment, bits 0-6 segments still to come; the bytes of a first segment start at 4, of a
// later one at 2. Nobody checks that the number of segments or of bytes comes out right.
void segment_command(Session& session, Message& m, Text& out) {
    Reassembly& whole = session.digital.reassembly;
    const std::int32_t to_come = m[1] & 0x7F;
    if (m.bit(1, 7)) {
        start(whole, m);
    } else {
        gather(whole, m, 2);
    }
    out.print("segment message {}/{}"_cf, whole.segments - to_come, whole.segments);
    trace(session, whole);
    if (to_come == 0) dispatch_whole(session, out);
}

}  // namespace ztdecode
