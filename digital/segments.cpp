#include "digital/segments.hpp"

#include <algorithm>
#include <memory>

namespace ztdecode {

namespace {

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
void trace(Session& session, const Reassembly& whole) {
    if (!session.shows_output()) return;
    const std::size_t size = std::size_t{3} * whole.length;
    if (!session.carrying.has_room_for(size)) return;
    session.carrying.text_besides += size;
    Text line;
    for (std::uint32_t k = 0; k < whole.length; ++k) {
        line.hex(k < message_capacity ? whole.bytes[k] : std::uint8_t{0});
        line.add(" ");
    }
    session.standard_output(line.view());
}

// The way down into a reassembled message, which may itself be a segment, and so for ever.
class Descent {
  public:
    explicit Descent(Session& session) noexcept
        : carrying_(session.carrying),
          level_(session),
          open_(level_ && carrying_.reassembly_depth < Carrying::deepest_reassembly &&
                carrying_.reassembled < Carrying::most_reassembled) {
        ++carrying_.reassembly_depth;
        if (open_) ++carrying_.reassembled;
    }
    Descent(const Descent&) = delete;
    Descent& operator=(const Descent&) = delete;
    ~Descent() { --carrying_.reassembly_depth; }

    explicit operator bool() const noexcept { return open_; }

  private:
    Carrying& carrying_;
    Carried level_;
    bool open_;
};

// On a copy: the whole message may be a segment that goes on gathering. (Not on the stack, which has to hold
// all that is carried inside each other.)
void dispatch_whole(Session& session, Text& out) {
    const Descent descent(session);
    if (!descent) return;
    const Reassembly& whole = *session.digital.reassembly;
    const auto bytes = std::make_unique<const decltype(whole.bytes)>(whole.bytes);
    Message m(bytes->data(), whole.length, message_capacity);
    m.direction = whole.direction;
    m.route = whole.route;
    m.observe(session.provenance);
    m.mark_reassembled();
    out.add("\n");
    dispatch_message(session, m, out);
}

}  // namespace

// byte 1: bit 7 first segment, bits 0-6 segments still to come; the bytes of a first segment start at 4, of a
// later one at 2. Nobody checks that the number of segments or of bytes comes out right.
void segment_command(Session& session, Message& m, Text& out) {
    Reassembly& whole = session.change(session.digital.reassembly);
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
