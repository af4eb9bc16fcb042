#include <algorithm>
#include <cstdio>
#include <memory>

#include "abi/process.hpp"
#include "decode/line_texts.hpp"

// The frame and the readers.

using namespace ztdecode;
using namespace ztdecode::abi;

namespace {

// One working text for everything that goes out as a heap block: a host's calls do not overlap.
Text& working_text() {
    static KeptText kept;
    return kept;
}

void decode_whole(Session& s, const Message& m, Text& out) {
    if (ztdecode::decode(s, m, out) == Outcome::unknown_class) throw UnknownClass{};
}

constexpr char empty_text[] = "";

// `line` and `line_lng2` share one record, so that bytes behind a short message are those of earlier lines.
LineReader& shared_reader() {
    static LineReader reader(LineReader::Behind::earlier_lines);
    return reader;
}

Line as_line(const char* text) {
    return text == nullptr ? Line{empty_text, 0} : Line{text, std::strlen(text)};
}

// A refusal and the texts of lines with two length bytes stay in `buffer`, a decoded message goes to the
// heap.
const char* read_line(Text& buffer, LineLayout layout, bool owned_by_caller, Line text,
                      std::uint32_t direction, const char* without_memory = empty_text) {
    LineReader& reader = shared_reader();
    bool on_the_heap = false;
    const char* result = given<const char*>(
        buffer, nullptr,
        [&](Session& s, Text& out) {
            const ReadResult read = decode_line(s, reader, text, layout, direction, out);
            if (read == ReadResult::unknown_class) throw UnknownClass{};
            on_the_heap = owned_by_caller && read == ReadResult::decoded;
        },
        [&](Text& out) { return on_the_heap ? heap_text(out.view()) : out.c_str(); });
    if (result != nullptr) return result;
    reader.forget_line();
    return without_memory;
}

const char* line_one_byte(Line text, std::uint32_t direction) {
    static KeptText buffer;
    return read_line(buffer, LineLayout::line, true, text, direction);
}

const char* line_two_bytes(Line text, std::uint32_t direction) {
    static KeptText buffer;
    return read_line(buffer, LineLayout::line_lng2, false, text, direction, "line_lng2: malloc output error");
}

}  // namespace

extern "C" {

char* decode(MessageRecord record) {
    if (record.length == 0) return const_cast<char*>(empty_text);  // NOLINT: hosts do not free it
    return on_heap(working_text(), [&record](Session& s, Text& out) { decode_whole(s, view(record), out); });
}

void decale(MessageRecord* record, int n) {
    if (record == nullptr) return;
    const auto dropped = static_cast<std::uint32_t>(n);
    if (record->length < dropped) {
        std::fprintf(stderr, "decalage incorrect: demandé: %d, disponible: %d\n", n,
                     static_cast<int>(record->length));
        record->length = 0;
        return;
    }
    record->length -= dropped;
    if (dropped >= message_capacity) return;
    const std::uint32_t moved = std::min(record->length, message_capacity - dropped);
    std::memmove(record->data, record->data + dropped, moved);
}

MessageRecord* msgdup(const MessageRecord* record) {
    auto* copy =
        static_cast<MessageRecord*>(std::malloc(sizeof(MessageRecord)));  // NOLINT: the host frees it
    if (copy == nullptr) {
        std::fputs("memory exhausted\n", stderr);
        std::exit(1);  // NOLINT(concurrency-mt-unsafe): hosts count on it
    }
    if (record == nullptr) {
        std::memset(copy, 0, sizeof *copy);
    } else {
        std::memcpy(copy, record, sizeof *copy);
    }
    return copy;
}

void print_clean_message(char* out, MessageRecord record, char* text) {
    if (text == nullptr) return;
    const std::unique_ptr<char, void (*)(void*)> released(text, std::free);
    if (out == nullptr) return;
    std::size_t length = std::strlen(text);
    if (length >= 2 && text[length - 1] == '\n' && text[length - 2] == '\n') --length;
    char* at = out + std::strlen(out);
    auto append = [&at](const char* from, std::size_t n) {
        std::memcpy(at, from, n);
        at += n;
    };
    if (useColor != 0) append(record.direction == to_dhs ? "\033[0;31m" : "\033[0;32m", 7);
    append(text, length);
    if (useColor != 0) append("\033[0m", 4);
    *at = '\0';
}

const char* line(const char* text, int direction) {
    return line_one_byte(as_line(text), static_cast<std::uint32_t>(direction));
}

const char* line_lng2(const char* text, int direction) {
    return line_two_bytes(as_line(text), static_cast<std::uint32_t>(direction));
}

const char* line_tzt(const char* text, int direction) {
    const Line all = as_line(text);
    if (std::strncmp(all.text, "zt ", 3) != 0) {
        static KeptText refusal;
        return read_line(refusal, LineLayout::tagged, false, all, from_dhs);
    }
    const Line body = {all.text + 3, all.length - 3};
    return has_two_length_bytes(body) ? line_lng2(body.text, direction) : line(body.text, direction);
}

const char* line_spzt(const char* text) {
    static KeptText refusal;
    const Line all = as_line(text);
    switch (spzt_body(all)) {
        case SpztBody::one_length_byte:
            return line_one_byte(spzt_line(all), spzt_direction(all));
        case SpztBody::two_length_bytes:
            return line_two_bytes(spzt_line(all), spzt_direction(all));
        default:
            return read_line(refusal, LineLayout::spzt, false, all, from_dhs);
    }
}

const char* line_spzt_lng2(const char* text) {
    static KeptText refusal;
    const Line all = as_line(text);
    if (!has_sr_column(all)) return read_line(refusal, LineLayout::spzt_lng2, false, all, from_dhs);
    return line_two_bytes(spzt_line(all), spzt_direction(all));
}

char* decode_bin_lng1(const std::uint8_t* buf, int direction) {
    if (buf == nullptr) return on_heap(working_text(), [](Session&, Text&) {});
    Message m(std::span<const std::uint8_t>(buf + 1, buf[0]));
    m.direction = static_cast<std::uint32_t>(direction);
    return on_heap(working_text(), [&m](Session& s, Text& out) { decode_whole(s, m, out); });
}

const char* decode_bin_lng2(const std::uint8_t* buf, int direction, int size) {
    static KeptText buffer;
    if (buf == nullptr || size <= 0) return empty_text;
    return in_own_buffer(buffer, [&](Session& s, Text& out) {
        const std::span<const std::uint8_t> bytes(buf, static_cast<std::size_t>(size));
        if (ztdecode::decode_bin_lng2(s, bytes, static_cast<std::uint32_t>(direction), out) !=
            ReadResult::decoded) {
            throw UnknownClass{};
        }
    });
}

}  // extern "C"
