#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <optional>
#include <span>
#include <string_view>

#include "abi/application_buffer.hpp"
#include "abi/process.hpp"
#include "decode/application_frames.hpp"
#include "object/characters.hpp"
#include "object/command.hpp"
#include "object/events.hpp"
#include "object/input.hpp"
#include "object/lookup.hpp"
#include "object/segments.hpp"
#include "object/values.hpp"

using ztdecode::Byte;
using ztdecode::Decoding;
using ztdecode::Message;
using ztdecode::Session;
using ztdecode::Text;

extern "C" {
std::uint8_t in_buf[ztdecode::object::input_capacity] = {};
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

std::string_view characters(const char* text) noexcept {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

// Work on the application buffer: the text that `write` writes is appended, but for what it appends by
// itself. Nothing thrown leaves: without memory it is as if nothing had been asked for, and for an unknown
// class the process ends.
template <class Write>
void append(Write write) noexcept {
    static KeptText kept;
    Text& piece = kept;
    Session& s = session();
    begin_application_text();
    try {
        piece.clear();
        Captured captured(s, piece);
        try {
            write(s, piece);
        } catch (const UnknownClass&) {
            captured.done();
            add_application_text(piece.view());
            throw;
        }
        add_application_text(piece.view());
        if (application_text_is_whole()) {
            captured.done();
            return;
        }
    } catch (const UnknownClass&) {
        end_for_unknown_class();
    } catch (...) {
    }
    take_back_application_text();
}

// What `decode` writes of a message of the host's bytes.
template <class Decode>
void append_decoded(const std::uint8_t* bytes, int length, Decode decode) noexcept {
    append([&](Session& s, Text& out) {
        const Message m = message(bytes, length);
        Decoding d(s, m, out);
        decode(d);
    });
}

const char* analyse(Decoder decoder, const std::uint8_t* bytes, int length) noexcept {
    set_application_text("");
    append_decoded(bytes, length, decoder);
    return application_text();
}

void decode_frame(const Message& frame, int way) noexcept {
    int series_whole = boDisplayResult;
    append([&](Session& s, Text& /*out*/) {
        try {
            decode_application_frame(s, frame, way, series_whole);
        } catch (const UnknownClass&) {
            boDisplayResult = series_whole;
            throw;
        }
        if (application_text_is_whole()) boDisplayResult = series_whole;
    });
}

// A segment as its length bytes tell where it ends; the four bytes in front of the payload are always there.
Message segment(const std::uint8_t* frame) noexcept {
    if (frame == nullptr) return Message::without_record({});
    const std::uint32_t length = object::segment_length(Message::without_record(std::span(frame, 2)));
    return Message::without_record(std::span(frame, std::max<std::size_t>(length + 2, 4)));
}

using Catch = bool (*)(ObjectSegments&, const Message&);

// Whether the segment made a series whole; nothing without memory for it.
std::optional<bool> take_segment(Catch take, const std::uint8_t* frame) noexcept {
    static KeptText no_text;
    Session& s = session();
    try {
        Captured captured(s, no_text);
        const bool whole = take(s.change(s.object.segments), segment(frame));
        captured.done();
        return whole;
    } catch (...) {
        return std::nullopt;
    }
}

}  // namespace

}  // namespace ztdecode::abi

namespace abi = ztdecode::abi;
namespace object = ztdecode::object;

extern "C" {

void vDecodeTLV(std::uint8_t tag, std::uint8_t index, int length, const std::uint8_t* value,
                const ztdecode_property_record* table) {
    if (table == nullptr) return;
    abi::append_decoded(value, length, [&](Decoding& d) {
        const object::Properties properties(table);
        object::print_property_name(d, Byte{tag}, properties);
        if (value != nullptr) object::print_property_value(d, Byte{tag}, Byte{index}, properties);
    });
}

void vDecodeEvent(std::uint8_t event, const std::uint8_t* body, int length) {
    abi::append_decoded(body, length, [&](Decoding& d) { object::event_body(d, Byte{event}); });
}

void vDsipTLV(const char* banner, const std::uint8_t* frame, int length) {
    abi::append([&](Session& /*session*/, Text& out) {
        abi::add_application_item(abi::characters(banner));
        ztdecode::dump_application_frame("", abi::message(frame, length), out);
    });
}

int printUTF8str(const std::uint8_t* bytes, int length, int mode) {
    bool beyond_ascii = false;
    abi::append_decoded(bytes, length, [&](Decoding& d) {
        const auto how = mode == 0 ? object::Utf8Mode::names : object::Utf8Mode::characters;
        beyond_ascii = object::print_text(d, "text", how).holds;
    });
    return beyond_ascii ? 1 : 0;
}

void vPutf8char(std::uint8_t c) {
    abi::append([&](Session& /*session*/, Text& out) { out.put(object::shown_character(c)); });
}

const char* LookUtf8(std::uint32_t code_point, const ztdecode_glyph_record* table) {
    static abi::KeptText block;
    if (table != nullptr) {
        if (const char* glyph = object::find_glyph(code_point, table)) return glyph;
    }
    const char* name = nullptr;
    const char* block_name = abi::in_own_buffer(block, [&](Session& /*session*/, Text& out) {
        name = object::character_names()[code_point];
        if (name == nullptr) object::print_block(code_point, out);
    });
    return name != nullptr ? name : block_name;
}

const char* analyse_cmd_pbx(const std::uint8_t* bytes, int length) {
    return abi::analyse(object::from_system, bytes, length);
}

const char* analyse_cmd_term(const std::uint8_t* bytes, int length) {
    return abi::analyse(object::to_system, bytes, length);
}

int analyse_cmd(const std::uint8_t* frame, int length, int direction) {
    abi::decode_frame(abi::message(frame, length), direction);
    return 1;
}

int boCatchSegment(const std::uint8_t* frame) {
    return abi::take_segment(object::take_segment, frame).value_or(false) ? 1 : 0;
}

int bo_OLD_CatchSegment(const std::uint8_t* frame) {
    const std::optional<bool> whole = abi::take_segment(object::take_segment_of_old, frame);
    if (!whole) abi::end_process(1);
    return *whole ? 1 : 0;
}

void vSaveLastReconstructedCmd(void) {
    try {
        object::keep_command_text(abi::session().object.segments.now());
    } catch (const std::bad_alloc&) {
        vFreeLastReconstructedCmd();
    }
}

void vFreeReconstructedCmd(void) { object::forget_series(abi::session().object.segments.now()); }

void vFreeLastReconstructedCmd(void) { object::forget_command_text(abi::session().object.segments.now()); }

void convert_line(const char* text) {
    nb_vals = 0;
    abi::append([&](Session& /*session*/, Text& out) {
        nb_vals = object::read_numbers(abi::characters(text), std::span(in_buf), out);
    });
}
}
