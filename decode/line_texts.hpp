#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "core/session.hpp"
#include "decode/readers.hpp"

// What hosts of the C interface get for a whole line: the texts of its messages, or why there is none.

namespace ztdecode {

enum class ReadResult {
    decoded,
    refused,        // the text says why; nothing of it is a decoded message
    unknown_class,  // decoded up to an object-protocol message of an unknown class
};

// Why a line is refused, as data: "too_short".
std::string_view name_of(Refusal::Reason reason) noexcept;

// Writes why a line is refused, as the hosts of the C interface read it.
void write_refusal(const Refusal& refusal, Line text, Text& out);

// The line above the text of a padded message.
void write_padding(const Refusal& figures, Text& out);

// Decodes all messages of a line behind what `out` holds.
ReadResult decode_line(Session& session, LineReader& reader, Line text, LineLayout layout,
                       std::uint32_t direction, Text& out);

// Messages behind two length bytes each, one behind the other; every text ends in a newline.
ReadResult decode_bin_lng2(Session& session, std::span<const std::uint8_t> bytes, std::uint32_t direction,
                           Text& out);

}  // namespace ztdecode
