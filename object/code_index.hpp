#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "ztdecode.h"

// Direct look-up in the exported tables, whose rows stand in an order of their own: the compiler lays beside
// a table where the first row of each code stands.

namespace ztdecode::object {

struct IndexedRow {
    std::uint8_t row;
    std::uint8_t name_size;
};

// By code; a code without a row has the sentinel's, which is the last one.
using CodeIndex = std::array<IndexedRow, 256>;

namespace code_index_detail {

constexpr std::uint8_t code_of(const ztdecode_name_record& r) { return r.code; }
constexpr std::uint8_t code_of(const ztdecode_class_record& r) { return r.opcode; }
constexpr std::uint8_t code_of(const ztdecode_property_record& r) { return r.id; }

// Named so that the compiler's complaint about calling it says what is wrong.
void a_table_ends_with_its_sentinel_and_its_names_with_a_zero();

}  // namespace code_index_detail

template <class Record, std::size_t N>
consteval CodeIndex index_of(const Record (&rows)[N]) {  // NOLINT: the exported tables are C arrays
    static_assert(N <= 256);
    using namespace code_index_detail;
    CodeIndex index{};
    for (std::size_t i = N; i-- > 0;) {
        std::size_t size = 0;
        while (size < sizeof rows[i].name && rows[i].name[size] != '\0') ++size;
        if (size == sizeof rows[i].name || (code_of(rows[i]) == 255) != (i == N - 1)) {
            a_table_ends_with_its_sentinel_and_its_names_with_a_zero();
        }
        const IndexedRow found{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(size)};
        if (i == N - 1) index.fill(found);
        index[code_of(rows[i])] = found;
    }
    return index;
}

}  // namespace ztdecode::object
