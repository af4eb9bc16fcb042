#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "core/text.hpp"

// Tables are written as rows {code, ...} in ascending order and looked up directly: the compiler lays an
// index of all codes beside the rows. A table whose rows are out of order, double or too many does not
// compile.

namespace ztdecode {

struct Session;

struct Name {
    std::uint32_t code;
    std::string_view text;
};

namespace table_detail {

inline constexpr std::uint8_t no_row = 255;

// Named so that the compiler's complaint about calling it says what is wrong.
void a_table_has_its_codes_ascending_once_and_below_256();

template <class Row, std::size_t N>
consteval std::array<std::uint8_t, 256> index_of(const std::array<Row, N>& rows) {
    static_assert(N < no_row);
    std::array<std::uint8_t, 256> index{};
    index.fill(no_row);
    for (std::size_t i = 0; i < N; ++i) {
        if (rows[i].code > 255 || (i > 0 && rows[i].code <= rows[i - 1].code)) {
            a_table_has_its_codes_ascending_once_and_below_256();
        }
        index[rows[i].code] = static_cast<std::uint8_t>(i);
    }
    return index;
}

}  // namespace table_detail

// Code to name, with the name of every code that has no row.
template <std::size_t N>
class Names {
  public:
    consteval Names(const Name (&rows)[N], std::string_view other)  // NOLINT: rows stand as a braced list
        : rows_(std::to_array(rows)), index_(table_detail::index_of(rows_)), other_(other) {}

    constexpr std::string_view operator[](std::uint32_t code) const noexcept {
        if (code > 255 || index_[code] == table_detail::no_row) return other_;
        return rows_[index_[code]].text;
    }

  private:
    std::array<Name, N> rows_;
    std::array<std::uint8_t, 256> index_;
    std::string_view other_;
};

template <std::size_t N>
consteval Names<N> names(const Name (&rows)[N],
                         std::string_view other) {  // NOLINT: rows stand as a braced list
    return Names<N>(rows, other);
}

// What an opcode prints: a plain text, or what a function writes of the message.
template <class M>
struct BasicOpcode {
    using Handler = void (*)(Session&, M&, Text&);

    std::uint32_t code;
    std::string_view text{};
    Handler handler = nullptr;

    constexpr BasicOpcode(std::uint32_t c, std::string_view t) : code(c), text(t) {}
    constexpr BasicOpcode(std::uint32_t c, const char* t) : code(c), text(t) {}
    constexpr BasicOpcode(std::uint32_t c, Handler h) : code(c), handler(h) {}
};

template <class M, std::size_t N>
class BasicOpcodes {
  public:
    consteval explicit BasicOpcodes(const BasicOpcode<M> (&rows)[N])  // NOLINT: rows stand as a braced list
        : rows_(std::to_array(rows)), index_(table_detail::index_of(rows_)) {}

    // Writes what the row of `code` says; false when there is none.
    bool write(std::uint32_t code, Session& session, M& m, Text& out) const {
        if (code > 255 || index_[code] == table_detail::no_row) return false;
        const BasicOpcode<M>& row = rows_[index_[code]];
        if (row.handler != nullptr) {
            row.handler(session, m, out);
        } else {
            out.add(row.text);
        }
        return true;
    }

  private:
    std::array<BasicOpcode<M>, N> rows_;
    std::array<std::uint8_t, 256> index_;
};

using Opcode = BasicOpcode<const Message>;

template <std::size_t N>
consteval auto opcodes(const Opcode (&rows)[N]) {  // NOLINT: rows stand as a braced list
    return BasicOpcodes<const Message, N>(rows);
}

// For decoders that leave something in the message: its route, its option type.
using RouteOpcode = BasicOpcode<Message>;

template <std::size_t N>
consteval auto route_opcodes(const RouteOpcode (&rows)[N]) {  // NOLINT: rows stand as a braced list
    return BasicOpcodes<Message, N>(rows);
}

}  // namespace ztdecode
