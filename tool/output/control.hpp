#pragma once

#include <string_view>

#include "core/text.hpp"

// What a terminal would act on, made visible: control characters (but newline and tab), those that turn or
// break the direction of writing, the byte order mark, and bytes that are no UTF-8.
//
//     ESC [         \x1b[      a byte
//     U+202E        \u202e     a character
//     \x (as such)  \x5cx      so that nothing else looks like an escape

namespace ztdecode::tool {

void add_escaped(std::string_view words, Text& to);

// The same in one line and in quotes: newlines, tabs and quotes are escaped as well, backslashes doubled.
void add_quoted(std::string_view words, Text& to);

// The name of a file: nothing but its own place in a line.
void add_escaped_name(std::string_view name, Text& to);

// Whether there is anything but codes in a decoded text.
bool has_characters(std::string_view text);
// A decoded text, whose colours begin with a zero: with the codes that terminals know in their place.
void add_coloured(std::string_view text, Text& to);
// The same, escaped; every line gets the codes of its own that pagers and terminals want, and a text goes on
// in its colour behind one inside it.
void add_coloured_escaped(std::string_view text, Text& to);
// The same without the codes.
void add_uncoloured(std::string_view text, Text& to);

}  // namespace ztdecode::tool
