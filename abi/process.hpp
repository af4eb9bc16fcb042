#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "abi/kept.hpp"
#include "core/session.hpp"
#include "ztdecode.h"

// What the functions of the C interface share: the process-wide session, views on the host's records, and the
// three ways in which a text goes out (a buffer of the function's own, the heap, a constant).

namespace ztdecode::abi {

// The process-wide session, with the switches as the host has set them now.
Session& session() noexcept;

// The buffer of a function's text.
using KeptText = Kept<Text>;

// The host's record as a message, and what the decoders changed of it back in the record.
Message view(const MessageRecord& record) noexcept;
void put_back(const Message& m, MessageRecord& record) noexcept;

// The text as a heap block that the caller frees; null when there is no memory.
char* heap_copy(std::string_view text) noexcept;

// An object-protocol message named a class that does not exist: what was decoded goes to the application
// buffer, and the process ends with status -1.
[[noreturn]] void end_for_unknown_class(const Text& text) noexcept;

// Runs `write`, which writes a text into `buffer` from its beginning, and gives the text as a C string.
// Nothing thrown leaves: without memory the text is empty.
template <class Write>
const char* in_own_buffer(Text& buffer, Write write) noexcept {
    try {
        buffer.clear();
        {
            const Text::Piece whole(buffer);
            write(session(), buffer);
        }
        return buffer.c_str();
    } catch (const UnknownClass&) {
        end_for_unknown_class(buffer);
    } catch (...) {
        return "";
    }
}

// The same for a decoder of the host's record; `status`, `route` and `reserved` of the record become the
// decoder's.
template <class Decoder>
const char* decoded_in_own_buffer(Text& buffer, MessageRecord* record, Decoder decoder) noexcept {
    if (record == nullptr) return "";
    return in_own_buffer(buffer, [&](Session& s, Text& out) {
        Message m = view(*record);
        decoder(s, m, out);
        put_back(m, *record);
    });
}

}  // namespace ztdecode::abi
