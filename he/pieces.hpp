#pragma once

#include <cstdint>
#include <string_view>

#include "core/message.hpp"
#include "core/text.hpp"

// Pieces of text that many HE messages share.

namespace ztdecode::he {

// "winId=03", "objId=0a"
void window_id(std::uint8_t id, Text& out);
void object_id(std::uint8_t id, Text& out);

// " winId=03 objId=0a" of bytes 2 and 3. A text that puts a blank of its own before it has two there.
void window_and_object(const Message& m, Text& out);

// " X= 16, Y= 300": two numbers of two bytes from `first` on.
void position(const Message& m, std::size_t first, Text& out);
// " X= 16, Y= 300, L= 64, H= 20": four of them.
void rectangle(const Message& m, std::size_t first, Text& out);

// "cell=[2,5]"
void cell(const Message& m, std::size_t first, Text& out);

// " \"text\"": the bytes behind byte n, which holds their number. A zero byte ends it, and the closing quote
// with it.
void quoted_text(const Message& m, std::size_t n, Text& out);

// A text that lies in a shared object of the set, or stands in the message behind byte n.
void shared_or_quoted_text(bool shared, const Message& m, std::size_t n, Text& out);

// Byte n counts the windows, one byte each.
void window_list(const Message& m, std::size_t n, Text& out);

// Byte n counts the objects, two bytes each: type, id.
void object_list(const Message& m, std::size_t n, Text& out);

std::string_view object_type(std::uint32_t code) noexcept;

}  // namespace ztdecode::he
