#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <span>
#include <string_view>

#include "abi/application_buffer.hpp"
#include "abi/process.hpp"
#include "object/characters.hpp"
#include "object/command.hpp"
#include "object/events.hpp"
#include "object/frames.hpp"
#include "object/input.hpp"
#include "object/lookup.hpp"
#include "object/segments.hpp"
#include "object/values.hpp"

using ztdecode::Bytes;
using ztdecode::Message;
using ztdecode::Session;
using ztdecode::Text;

extern "C" {
std::uint8_t in_buf[ztdecode::input_capacity] = {};
std::uint16_t nb_vals = 0;
int boDisplayResult = 0;
}

namespace ztdecode::abi {

namespace {

// The host's bytes: a null pointer and a negative length are no bytes.
Message message(const std::uint8_t* bytes, int length) noexcept {
    if (bytes == nullptr || length < 0) return Message::without_record({});
    return Message::without_record(std::span(bytes, static_cast<std::size_t>(length)));
}

Bytes all_of(const Message& m) noexcept { return {m, 0, m.length()}; }

std::string_view characters(const char* text) noexcept {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

// Appends to the application buffer what `write` writes. Nothing thrown leaves: without memory nothing is
// appended, and for an unknown class the process ends.
template <class Write>
void append(Write write) noexcept {
    static KeptText kept;
    Text& piece = kept;
    try {
        piece.clear();
        write(session(), piece);
    } catch (const UnknownClass&) {
        add_application_text(piece.view());
        std::exit(-1);
    } catch (...) {
        return;
    }
    add_application_text(piece.view());
}

using Analyser = void (*)(Session&, const Message&, Text&);

const char* analyse(Analyser analyser, const std::uint8_t* bytes, int length) noexcept {
    set_application_text("");
    append([&](Session& s, Text& out) { analyser(s, message(bytes, length), out); });
    return application_text();
}

void add_frame_text(const FrameText& frame) noexcept {
    if (frame.kind == FrameKind::gathered) {
        boDisplayResult = 0;
        return;
    }
    if (frame.kind == FrameKind::series) boDisplayResult = 1;
    add_application_text(frame.dump.view());
    if (frame.kind != FrameKind::zt) restart_application_text();
    const std::string_view text = frame.text.view();
    add_application_text(text.substr(0, frame.item_begin));
    if (frame.item_end > frame.item_begin) {
        add_application_item(text.substr(frame.item_begin, frame.item_end - frame.item_begin));
    }
    add_application_text(text.substr(frame.item_end));
}

void decode_frame(const Message& frame, int way) noexcept {
    static Kept<FrameText> kept;
    FrameText& out = kept;
    try {
        analyse_cmd(session(), frame, way, out);
    } catch (const UnknownClass&) {
        // A message among those of the sets has left its text already.
        if (out.kind != FrameKind::zt) add_frame_text(out);
        std::exit(-1);
    } catch (...) {
        return;
    }
    add_frame_text(out);
}

// A segment as its length bytes tell where it ends; the four bytes in front of the payload are always there.
Message segment(const std::uint8_t* frame) noexcept {
    if (frame == nullptr) return Message::without_record({});
    const std::uint32_t length = segment_length(Message::without_record(std::span(frame, 2)));
    return Message::without_record(std::span(frame, std::max<std::size_t>(length + 2, 4)));
}

ObjectSegments& segments() { return session().change(session().object.segments); }

}  // namespace

}  // namespace ztdecode::abi

namespace abi = ztdecode::abi;

extern "C" {

void vDecodeTLV(std::uint8_t tag, std::uint8_t index, int length, const std::uint8_t* value,
                const ztdecode_property_record* table) {
    if (table == nullptr) return;
    abi::append([&](Session& /*session*/, Text& out) {
        const Message m = abi::message(value, length);
        const Bytes bytes = abi::all_of(m);
        ztdecode::vDecodeTLV(tag, index, value != nullptr ? &bytes : nullptr, ztdecode::Properties(table),
                             out);
    });
}

void vDecodeEvent(std::uint8_t event, const std::uint8_t* body, int length) {
    abi::append([&](Session& s, Text& out) {
        const Message m = abi::message(body, length);
        ztdecode::vDecodeEvent(s, event, abi::all_of(m), out);
    });
}

void vDsipTLV(const char* banner, const std::uint8_t* frame, int length) {
    abi::add_application_item(abi::characters(banner));
    abi::append(
        [&](Session& /*session*/, Text& out) { ztdecode::vDsipTLV("", abi::message(frame, length), out); });
}

int printUTF8str(const std::uint8_t* bytes, int length, int mode) {
    bool beyond_ascii = false;
    abi::append([&](Session& /*session*/, Text& out) {
        const Message m = abi::message(bytes, length);
        const auto how = mode == 0 ? ztdecode::Utf8Mode::names : ztdecode::Utf8Mode::characters;
        beyond_ascii = ztdecode::printUTF8str(abi::all_of(m), how, out);
    });
    return beyond_ascii ? 1 : 0;
}

void vPutf8char(std::uint8_t c) {
    abi::append([&](Session& /*session*/, Text& out) { ztdecode::vPutf8char(c, out); });
}

const char* LookUtf8(std::uint32_t code_point, const ztdecode_glyph_record* table) {
    static abi::KeptText block;
    if (table != nullptr) {
        if (const char* glyph = ztdecode::find_glyph(code_point, table)) return glyph;
    }
    if (const char* name = ztdecode::character_names()[code_point]) return name;
    return abi::in_own_buffer(block, [code_point](Session& /*session*/, Text& out) {
        ztdecode::print_block_name(code_point, out);
    });
}

const char* analyse_cmd_pbx(const std::uint8_t* bytes, int length) {
    return abi::analyse(ztdecode::analyse_cmd_pbx, bytes, length);
}

const char* analyse_cmd_term(const std::uint8_t* bytes, int length) {
    return abi::analyse(ztdecode::analyse_cmd_term, bytes, length);
}

int analyse_cmd(const std::uint8_t* frame, int length, int direction) {
    abi::decode_frame(abi::message(frame, length), direction);
    return 1;
}

int boCatchSegment(const std::uint8_t* frame) {
    try {
        return ztdecode::boCatchSegment(abi::segments(), abi::segment(frame)) ? 1 : 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

int bo_OLD_CatchSegment(const std::uint8_t* frame) {
    try {
        return ztdecode::bo_OLD_CatchSegment(abi::segments(), abi::segment(frame)) ? 1 : 0;
    } catch (const std::bad_alloc&) {
        std::exit(1);
    }
}

void vSaveLastReconstructedCmd(void) {
    try {
        ztdecode::vSaveLastReconstructedCmd(abi::segments());
    } catch (const std::bad_alloc&) {
        ztdecode::vFreeLastReconstructedCmd(abi::segments());
    }
}

void vFreeReconstructedCmd(void) { ztdecode::vFreeReconstructedCmd(abi::segments()); }

void vFreeLastReconstructedCmd(void) { ztdecode::vFreeLastReconstructedCmd(abi::segments()); }

void convert_line(const char* text) {
    nb_vals = 0;
    abi::append([&](Session& /*session*/, Text& out) {
        nb_vals = ztdecode::convert_line(abi::characters(text), std::span(in_buf), out);
    });
}
}
