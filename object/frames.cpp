#include "object/frames.hpp"

#include <algorithm>
#include <span>

#include "decode/readers.hpp"
#include "object/command.hpp"
#include "object/segments.hpp"

namespace ztdecode {

namespace {

constexpr std::uint8_t call_server = 0x15;
constexpr std::uint8_t presentation_server = 0x16;
constexpr std::uint8_t segment = 0x0C;

struct Way {
    Direction direction;
    std::string_view object_banner;
    void (*analyse)(Session&, const Message&, Text&);
    std::string_view zt_banner;
    std::string_view zt_header;
};

constexpr Way to_terminal = {
    from_dhs,
    "\n//>>>>>>>> RYM PBX->TERMINAL",
    analyse_cmd_pbx,
    "\n//|||||||| ZT PBX->TERMINAL",
    "\nPbx_ZT_message\n{",
};
constexpr Way to_system = {
    to_dhs,
    "\n//******** RYM TERMINAL->PBX",
    analyse_cmd_term,
    "\n//######## ZT TERMINAL->PBX",
    "\nTerm_ZT_message\n{",
};

// The frame itself is the message: its length byte is read as the server.
void object_frame(Session& session, const Message& frame, const Way& way, FrameText& out) {
    out.kind = FrameKind::object;
    vDsipTLV(way.object_banner, frame, out.dump);
    way.analyse(session, frame, out.text);
}

// Frees the gathered bytes, whatever becomes of the message in them.
struct Freed {
    ObjectSegments& segments;
    ~Freed() { vFreeReconstructedCmd(segments); }
};

// A whole series is decoded without its last two bytes, in a length of 16 bits.
void segment_frame(Session& session, const Message& frame, const Way& way, FrameText& out) {
    ObjectSegments& segments = session.change(session.object.segments);
    if (!boCatchSegment(segments, frame)) return;
    const Freed freed{segments};
    out.kind = FrameKind::series;
    const std::span<const std::uint8_t> gathered = segments.bytes;
    vDsipTLV(way.object_banner, Message::without_record(gathered), out.dump);
    const std::size_t length = (segments.filled - 2) & 0xFFFF;
    way.analyse(session, Message::without_record(gathered.first(std::min(length, gathered.size()))),
                out.text);
}

// Messages of the sets, behind two length bytes each. They are decoded before anything is written: one of
// them may be an object-protocol message, with which the application buffer begins anew.
void zt_frame(Session& session, const Message& frame, const Way& way, FrameText& out) {
    out.kind = FrameKind::zt;
    out.text.add(way.zt_header);
    out.item_begin = out.text.size();
    out.text.add("\n");
    const ReadResult read = decode_bin_lng2(session, frame.bytes(), way.direction, out.text);
    if (read == ReadResult::unknown_class) throw UnknownClass{};
    out.item_end = out.text.size();
    out.text.add("\n}\n");
    vDsipTLV(way.zt_banner, frame, out.dump);
}

}  // namespace

void vDsipTLV(std::string_view banner, const Message& frame, Text& out) {
    out.add(banner);
    out.print("   OP:{:02X}"_cf, frame[2]);
    out.print("   LG:{:02X} {:02X}   VALUE: "_cf, frame[1], frame[0]);
    for (std::uint32_t k = 3; k < frame.length(); ++k) out.print("{:02X} "_cf, frame[k]);
}

void analyse_cmd(Session& session, const Message& frame, int way, FrameText& out) {
    out.kind = FrameKind::gathered;
    out.dump.clear();
    out.text.clear();
    out.item_begin = out.item_end = 0;
    const Way& w = way == from_system ? to_terminal : to_system;
    switch (frame[2]) {
        case call_server:
        case presentation_server:
            object_frame(session, frame, w, out);
            break;
        case segment:
            segment_frame(session, frame, w, out);
            break;
        default:
            zt_frame(session, frame, w, out);
            break;
    }
}

}  // namespace ztdecode
