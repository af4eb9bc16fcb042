#include "decode/line_texts.hpp"

#include <algorithm>
#include <string_view>

namespace ztdecode {

namespace {

struct RefusalRow {
    std::string_view name;
    std::string_view text;
};
constexpr RefusalRow row_of(Refusal::Reason reason) {
    switch (reason) {
        case Refusal::Reason::none:
            return {"none", ""};
        case Refusal::Reason::no_length_byte:
            return {"no_length", "line does not start with length byte"};
        case Refusal::Reason::no_two_length_bytes:
            return {"no_length", "line does not start with 2 length bytes"};
        case Refusal::Reason::length_above_256:
            return {"too_long", "line: longueur > 256"};
        case Refusal::Reason::really_too_short:
            return {"too_short", "line: really too short"};
        case Refusal::Reason::really_too_short_lng2:
            return {"too_short", "line_lng2: line really too short"};
        case Refusal::Reason::too_short:
            return {"too_short", "line too short: expected: "};
        case Refusal::Reason::no_hexadecimal:
            return {"no_hexadecimal", "line1: ill formed hex value"};
        case Refusal::Reason::no_tag:
            return {"no_tag", " err: awaiting 'zt ', received '"};
        case Refusal::Reason::no_sr_column:
            return {"no_direction", "-> not in spzt format: msg[6] should be S or R"};
        case Refusal::Reason::sr_too_short:
            return {"too_short", "-> line too short"};
        case Refusal::Reason::file_ends:
            return {"file_ends", "the file ends inside the message"};
        case Refusal::Reason::no_memory:
            return {"no_memory", "no memory for this message"};
    }
    return {"none", ""};
}

}  // namespace

std::string_view name_of(Refusal::Reason reason) noexcept { return row_of(reason).name; }

void write_refusal(const Refusal& refusal, Line text, Text& out) {
    const Text::Piece whole(out);
    out.add(row_of(refusal.reason).text);
    switch (refusal.reason) {
        case Refusal::Reason::too_short:
            out.print("{-}, real: {-}"_cf, 3 * refusal.expected + 2, refusal.length);
            break;
        case Refusal::Reason::no_tag:
            for (std::size_t k = 0; k < 3; ++k)
                out.put(static_cast<std::uint8_t>(k < text.length ? text.text[k] : 0));
            out.add("'");
            break;
        default:
            break;
    }
}

// A padded message begins the text anew: those of the messages in front of it are gone.
ReadResult decode_line(Session& session, LineReader& reader, Line text, LineLayout layout,
                       std::uint32_t direction, Text& out) {
    const std::size_t begin = out.size();
    reader.begin(text, layout, direction);
    while (const Message* m = reader.next()) {
        if (reader.padded()) {
            out.cut(begin);
            write_padding(reader.refusal(), out);
        }
        if (decode(session, *m, out) != Outcome::decoded) return ReadResult::unknown_class;
        if (reader.goes_on()) out.add("\n");
    }
    if (!reader.refusal()) return ReadResult::decoded;
    out.cut(begin);
    write_refusal(reader.refusal(), text, out);
    return ReadResult::refused;
}

void write_padding(const Refusal& figures, Text& out) {
    out.print("line too short: expected: {-}, real: {-}, padded with 0xff\n\n"_cf, 3 * figures.expected + 5,
              figures.length);
}

ReadResult decode_bin_lng2(Session& session, std::span<const std::uint8_t> bytes, std::uint32_t direction,
                           Text& out) {
    auto byte = [bytes](std::size_t k) { return k < bytes.size() ? bytes[k] : std::uint8_t{0}; };
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = byte(at) + 256U * byte(at + 1);
        at += 2;
        const std::span<const std::uint8_t> rest = bytes.subspan(std::min(at, bytes.size()));
        Message m(rest.data(), length, std::min(length, rest.size()));
        m.direction = direction;
        const std::size_t begin = out.size();
        if (decode(session, m, out) != Outcome::decoded) return ReadResult::unknown_class;
        if (!out.from(begin).ends_with('\n')) out.add("\n");
        at += length;
    }
    return ReadResult::decoded;
}

}  // namespace ztdecode
