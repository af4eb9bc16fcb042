#pragma once

#include <cstddef>

#include "core/decoding.hpp"

// Pieces of text that many HE messages share.

namespace ztdecode::he {

// " winId=03 objId=0a" of bytes 2 and 3. A text that puts a blank of its own before it has two there.
void window_and_object(Decoding& d);

// " X= 16, Y= 300": two numbers of two bytes from `first` on.
void position(Decoding& d, std::size_t first);
// " X= 16, Y= 300, L= 64, H= 20": four of them.
void rectangle(Decoding& d, std::size_t first);

// " telephony" of byte 2.
void application_of_byte2(Decoding& d);

// "cell=[2,5]"
void cell(Decoding& d, std::size_t first);

// " \"text\"": the bytes behind byte n, which holds their number. A zero byte ends it, and the closing quote
// with it.
void quoted_text(Decoding& d, FieldName field, std::size_t n);

// A text that lies in a shared object of the set where byte `shared` says so; otherwise it stands in the
// message behind byte n.
void shared_or_quoted_text(Decoding& d, std::size_t shared, std::size_t n);

// Byte n counts the windows, one byte each.
void window_list(Decoding& d, std::size_t n);

// Byte n counts the objects, two bytes each: type, id.
void object_list(Decoding& d, std::size_t n);

Word object_type(const Number& code) noexcept;

}  // namespace ztdecode::he
