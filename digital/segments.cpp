#include "digital/segments.hpp"

#include <algorithm>
#include <memory>

namespace ztdecode::digital {

namespace {

// Bytes first ... of the segment go where the gathering stands; what does not fit the record is dropped.
void gather(Reassembly& whole, const Decoding& d, std::uint32_t first) {
    for (std::uint32_t k = first; k < d.length() && whole.gathered < message_capacity; ++k) {
        whole.bytes[whole.gathered++] = d[k].number;
    }
    if (d.trail() == nullptr) return;
    d.trail()->put_by(d.message(), {first, d.length() - std::min(first, d.length())});
    if (whole.places.size() < message_capacity) whole.places.push_back(d.trail()->place);
}

// bytes 2, 3: length of the whole message, high byte first
void start(Reassembly& whole, const Decoding& d) {
    whole.segments = (d[1].number & 0x7F) + 1;
    whole.length = d.u16(2).number;
    whole.direction = d.direction();
    whole.gathered = 0;
    whole.places.clear();
    if (d.trail() != nullptr) d.trail()->put_by(d.message(), {2, 2});
    gather(whole, d, 4);
}

// The bytes of the whole message as far as they are known, at every segment.
void trace(Session& session, const Reassembly& whole) {
    if (!session.shows_output()) return;
    session.digital.reassembly.now().stale_looked_at = true;
    const std::size_t size = std::size_t{3} * whole.length;
    if (!session.carrying.has_room_for(size)) return;
    session.carrying.use_text(size);
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
        if (open_) {
            carrying_.used = true;
            ++carrying_.reassembled;
        }
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

// Takes note where a message shows what those before it left in the record.
class StaleBytes {
  public:
    StaleBytes(Session& session, const Message& record) noexcept
        : series_(session.digital.reassembly), record_(record) {
        if (series_.value().length > series_.value().gathered) series_.now().stale_looked_at = true;
    }
    StaleBytes(const StaleBytes&) = delete;
    StaleBytes& operator=(const StaleBytes&) = delete;
    ~StaleBytes() {
        if (record_.was_looked_at()) series_.now().stale_looked_at = true;
    }

  private:
    Remembered<Reassembly>& series_;
    const Message& record_;
};

// On a copy: the whole message may be a segment that goes on gathering. (Not on the stack, which has to hold
// all that is carried inside each other.)
void dispatch_whole(Decoding& d) {
    const Descent descent(d.session());
    if (!descent) return;
    const Reassembly& whole = *d.session().digital.reassembly;
    const auto bytes = std::make_unique<const decltype(whole.bytes)>(whole.bytes);
    const std::vector<std::uint64_t> places = whole.places;
    Message record(bytes->data(), 0, message_capacity);
    record.direction = whole.direction;
    const StaleBytes stale(d.session(), record);
    const Message m = record.in_used_record(whole.length, whole.gathered);
    d.add("\n");
    Decoding carried(d, m, places);
    dispatch_message(carried);
}

}  // namespace

// byte 1: bit 7 first segment, bits 0-6 segments still to come; the bytes of a first segment start at 4, of a
// later one at 2. Nobody checks that the number of segments or of bytes comes out right.
void segment_command(Decoding& d) {
    Session& session = d.session();
    const Byte to_come = d[1] & 0x7F;
    const bool first = d.on(d.bit(1, 7));
    Remembered<Reassembly>& series = session.digital.reassembly;
    Reassembly& whole = first ? session.set_anew(series) : session.change(series);
    if (first) {
        start(whole, d);
    } else {
        gather(whole, d, 2);
    }
    whole.to_come = to_come.number;
    whole.written = std::max(whole.written, whole.gathered);
    if (session.side != nullptr) whole.last_place = session.side->place();
    // How many there are is what the first one said.
    const Number segments{static_cast<std::uint32_t>(whole.segments), first ? d[1].place : Place{}};
    d.print("segment message {segment}/{segments}"_cf, to_come.as(whole.segments - to_come.number), segments);
    trace(session, whole);
    if (d.on(to_come == 0)) dispatch_whole(d);
}

}  // namespace ztdecode::digital
