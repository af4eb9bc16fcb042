#pragma once

#include <cstdint>
#include <string_view>

#include "core/tables.hpp"

// Most messages of the IP-set link are lists of items: an id, the length of the value, the value. Lengths are
// trusted; an item whose value runs past the end of the message shows the bytes that stand there and is the
// last one.

namespace ztdecode::ip {

// What separates the lines of a list; an empty list shows it alone.
inline constexpr std::string_view new_list_line = "\n\t... ";

// Lets `write_item(d, id)` write each item from byte `first` of the message to its end, with `separator`
// between two. byte 0 of the item: id   byte 1: length   then the value, which is all that `d` shows
// meanwhile
template <class WriteItem>
void write_items(Decoding& d, std::uint32_t first, std::string_view separator, WriteItem write_item) {
    for (std::uint32_t at = first; at < d.length();) {
        const Decoding::Scope item(d);
        const Byte id = d[at];
        const Byte length = d[at + 1];
        at += 2;
        d.walk(length);
        {
            const Decoding::Piece text(d);
            const Decoding::Window value(d, at, length);
            write_item(d, id);
        }
        at += length.number;
        if (at < d.length()) d.add(separator);
    }
}

// The same with a line for each item.
template <class WriteItem>
void write_list(Decoding& d, std::uint32_t first, WriteItem write_item) {
    d.add(new_list_line);
    write_items(d, first, new_list_line, write_item);
}

}  // namespace ztdecode::ip
