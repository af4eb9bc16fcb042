#include "decode/application_frames.hpp"

#include <span>

#include "decode/line_texts.hpp"
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
    Decoder decoder;
    std::string_view zt_banner;
    std::string_view zt_header;
};

constexpr Way to_terminal = {
    from_dhs,
    "\n//>>>>>>>> RYM PBX->TERMINAL",
    object::from_system,
    "\n//|||||||| ZT PBX->TERMINAL",
    "\nPbx_ZT_message\n{",
};
constexpr Way to_system = {
    to_dhs,
    "\n//******** RYM TERMINAL->PBX",
    object::to_system,
    "\n//######## ZT TERMINAL->PBX",
    "\nTerm_ZT_message\n{",
};

void add_dump(std::string_view banner, const Message& frame, ApplicationText& out) {
    Text line;
    dump_application_frame(banner, frame, line);
    out.add(line.view());
}

// The message's text takes the place of its dump line.
void add_object_message(Session& session, const Message& m, const Way& way) {
    Text text;
    Decoding d(session, m, text);
    object::for_application(d, way.decoder);
}

// The frame itself is the message: its length byte is read as the server.
void object_frame(Session& session, const Message& frame, const Way& way, ApplicationText& out) {
    add_dump(way.object_banner, frame, out);
    add_object_message(session, frame, way);
}

// Frees the gathered bytes, whatever becomes of the message in them.
struct Freed {
    ObjectSegments& segments;
    ~Freed() { object::forget_series(segments); }
};

// A whole series is decoded without its last two bytes, in a length of 16 bits; they stand behind its end.
void series(Session& session, const Way& way, ApplicationText& out) {
    ObjectSegments& segments = session.change(session.object.segments);
    const Freed freed{segments};
    const std::span<const std::uint8_t> gathered = segments.bytes;
    add_dump(way.object_banner, Message::without_record(gathered), out);
    const std::size_t length = (segments.filled - 2) & 0xFFFF;
    add_object_message(session, Message::without_record(gathered, length), way);
}

// Messages of the sets, behind two length bytes each. A message of the object protocol among them begins the
// application text anew: then the lines in front of them are gone, and their texts follow that message's own.
void zt_frame(Session& session, const Message& frame, const Way& way, ApplicationText& out) {
    add_dump(way.zt_banner, frame, out);
    out.add(way.zt_header);
    Text messages;
    messages.add("\n");
    const ReadResult read = decode_bin_lng2(session, frame.bytes(), way.direction, messages);
    if (read == ReadResult::unknown_class) throw UnknownClass{};
    out.add_item(messages.view());
    out.add("\n}\n");
}

}  // namespace

void dump_application_frame(std::string_view banner, const Message& frame, Text& out) {
    out.add(banner);
    out.print("   OP:{-:02X}"_cf, frame[2]);
    out.print("   LG:{-:02X} {-:02X}   VALUE: "_cf, frame[1], frame[0]);
    for (std::uint32_t k = 3; k < frame.length(); ++k) out.print("{-:02X} "_cf, frame[k]);
}

void decode_application_frame(Session& session, const Message& frame, int way, int& series_whole) {
    const Way& w = way == frame_from_system ? to_terminal : to_system;
    ApplicationText& out = *session.object.application;
    switch (frame[2]) {
        case call_server:
        case presentation_server:
            object_frame(session, frame, w, out);
            break;
        case segment:
            series_whole = object::take_segment(session.change(session.object.segments), frame) ? 1 : 0;
            if (series_whole != 0) series(session, w, out);
            break;
        default:
            zt_frame(session, frame, w, out);
            break;
    }
}

}  // namespace ztdecode
