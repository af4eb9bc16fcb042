#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "abi/kept.hpp"
#include "core/decoding.hpp"
#include "core/session.hpp"
#include "core/tables.hpp"
#include "ztdecode.h"

// What the functions of the C interface share: the process-wide session, views on the host's records, and the
// three ways in which a text goes out (a buffer of the function's own, the heap, a constant).

namespace ztdecode::abi {

// The process-wide session, with the switches as the host has set them now.
Session& session() noexcept;

// The buffer of a function's text.
using KeptText = Kept<Text>;

// The host's record as a message.
Message view(const MessageRecord& record) noexcept;

// What the record says besides: a decoder gets it, and what it makes of it goes back in the record.
struct RecordState {
    std::uint32_t route;
    Status status;
    std::uint8_t option_type;  // the upper byte of `reserved`

    explicit RecordState(const MessageRecord& record) noexcept;
    void run(Decoder decoder, Decoding& d);
    void put_back(MessageRecord& record) const noexcept;
};

// The text as a heap block that the caller frees. When there is no memory: null, or std::bad_alloc.
char* heap_copy(std::string_view text) noexcept;
char* heap_text(std::string_view text);

// Ends the process where the hosts expect it. Exit handlers may call every function.
[[noreturn]] void end_process(int status) noexcept;
// For an object-protocol message of a class that does not exist. The application buffer has its text.
[[noreturn]] inline void end_for_unknown_class() noexcept { end_process(-1); }

// Runs `write`, which decodes what a host handed over and writes a text into `buffer` from its beginning, and
// gives what `give` makes of the text. Nothing thrown leaves: without memory the host gets `nothing`, and the
// session is as if the message had not been there.
template <class Result, class Write, class Give>
Result given(Text& buffer, Result nothing, Write write, Give give) noexcept {
    Session& s = session();
    try {
        buffer.clear();
        Captured captured(s, buffer);
        try {
            const Text::Piece whole(buffer);
            write(s, buffer);
        } catch (const UnknownClass&) {
            captured.done();
            throw;
        }
        const Result result = give(buffer);
        captured.done();
        return result;
    } catch (const UnknownClass&) {
        end_for_unknown_class();
    } catch (...) {
        return nothing;
    }
}

// A text in a buffer of the function's own, and one on the heap.
template <class Write>
const char* in_own_buffer(Text& buffer, Write write) noexcept {
    return given<const char*>(buffer, "", write, [](Text& text) { return text.c_str(); });
}
template <class Write>
char* on_heap(Text& buffer, Write write) noexcept {
    return given<char*>(buffer, nullptr, write, [](Text& text) { return heap_text(text.view()); });
}

// What the decoder writes of the host's record. Null without memory: then the record stays as it is.
template <class Result, class Give>
Result decoded(Text& buffer, Decoder decoder, MessageRecord& record, Give give) noexcept {
    const Message m = view(record);
    RecordState state(record);
    const auto result = given<Result>(
        buffer, nullptr,
        [&](Session& s, Text& out) {
            Decoding d(s, m, out);
            state.run(decoder, d);
        },
        give);
    if (result != nullptr) state.put_back(record);
    return result;
}

template <Decoder decoder>
const char* decoded_in_own_buffer(MessageRecord* record) noexcept {
    static KeptText buffer;
    if (record == nullptr) return "";
    const auto* text = decoded<const char*>(buffer, decoder, *record, [](Text& out) { return out.c_str(); });
    return text != nullptr ? text : "";
}

// A record without a message has no text.
template <Decoder decoder>
char* decoded_on_heap(MessageRecord* record) noexcept {
    static KeptText buffer;
    if (record == nullptr || record->length == 0) return nullptr;
    return decoded<char*>(buffer, decoder, *record, [](Text& out) { return heap_text(out.view()); });
}

}  // namespace ztdecode::abi
