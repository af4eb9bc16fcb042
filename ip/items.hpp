#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/going_away.hpp"
#include "core/text.hpp"

// Most messages of the IP-set link are lists of items: an id, the length of the value, the value. Lengths are
// trusted; an item whose value runs past the end of the message shows the bytes that stand there and is the
// last one.

namespace ztdecode::ip {

// What separates the lines of a list; an empty list shows it alone.
inline constexpr std::string_view new_list_line = "\n\t... ";

struct Item {
    const Message& m;
    std::uint8_t id;
    std::uint32_t length;  // of the value
    std::uint32_t first;   // where the value begins in the message

    // What a length claims beyond any message is 0 without a look: at the bottom of nested messages looks
    // cost much.
    std::uint8_t operator[](std::size_t k) const noexcept {
        return first + k < message_capacity ? m[first + k] : std::uint8_t{0};
    }
    std::uint32_t u16(std::uint32_t k = 0) const noexcept { return m.u16(first + k); }
};

// byte 0: id   byte 1: length   then the value
inline Item item_at(const Message& m, std::uint32_t at) noexcept { return {m, m[at], m[at + 1], at + 2}; }

// What an item prints: a text, and what a function writes of the value behind it.
struct ItemText {
    using Writer = void (*)(const Item&, Text&);

    std::uint32_t code;
    std::string_view text;
    Writer value = nullptr;

    constexpr ItemText(std::uint32_t c, std::string_view t, Writer v = nullptr)
        : code(c), text(t), value(v) {}
    constexpr ItemText(std::uint32_t c, Writer v) : code(c), value(v) {}
};

template <std::size_t N>
class ItemTexts {
  public:
    consteval explicit ItemTexts(const ItemText (&rows)[N])  // NOLINT: rows stand as a braced list
        : rows_(std::to_array(rows)), index_(table_detail::index_of(rows_)) {}

    // Writes what the row of the item's id says; false when there is none.
    bool write(const Item& item, Text& out) const {
        if (index_[item.id] == table_detail::no_row) return false;
        const ItemText& row = rows_[index_[item.id]];
        out.add(row.text);
        if (row.value != nullptr) row.value(item, out);
        return true;
    }

  private:
    std::array<ItemText, N> rows_;
    std::array<std::uint8_t, 256> index_;
};

template <std::size_t N>
consteval ItemTexts<N> item_texts(const ItemText (&rows)[N]) {  // NOLINT: rows stand as a braced list
    return ItemTexts<N>(rows);
}

// Lets `write_item(item, out)` write each item from byte `first` of the message to its end, with `separator`
// between two.
template <class WriteItem>
void write_items(const Message& m, std::uint32_t first, std::string_view separator, Text& out,
                 WriteItem write_item) {
    for (std::uint32_t at = first; at < m.length();) {
        const Item item = item_at(m, at);
        {
            const Text::Piece text(out);
            write_item(item, out);
        }
        at = item.first + item.length;
        if (at < m.length()) out.add(separator);
    }
}

// The same with a line for each item.
template <class WriteItem>
void write_list(const Message& m, std::uint32_t first, Text& out, WriteItem write_item) {
    out.add(new_list_line);
    write_items(m, first, new_list_line, out, write_item);
}

}  // namespace ztdecode::ip
