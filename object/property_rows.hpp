#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "object/tables.hpp"
#include "ztdecode.h"

// What the property tables are written with: rows {type, id, name, number of elements}.

namespace ztdecode::object::property_rows {

inline constexpr std::uint8_t INT32 = ZTDECODE_INT32;
inline constexpr std::uint8_t INT8 = ZTDECODE_INT8;
inline constexpr std::uint8_t UINT32 = ZTDECODE_UINT32;
inline constexpr std::uint8_t UINT16 = ZTDECODE_UINT16;
inline constexpr std::uint8_t UINT8 = ZTDECODE_UINT8;
inline constexpr std::uint8_t BOOL = ZTDECODE_BOOL;
inline constexpr std::uint8_t UTF8 = ZTDECODE_UTF8;

template <const auto& Table>
static constexpr CodeIndex property_index = index_of(Table);

// Whose address the property "address" is.
enum class Address { of_server, of_bluetooth, of_module };

consteval const Field* field_of_row(const ztdecode_property_record& row, Address address) {
    const SnakeCase name{std::string_view(row.name)};
    if (name.view() != "address") return field_named(name.view());
    switch (address) {
        case Address::of_bluetooth:
            return field_named("bluetooth_address");
        case Address::of_module:
            return field_named("module_address");
        default:
            return field_named("address");
    }
}

template <std::size_t N>
consteval std::array<const Field*, N> fields_of(
    const ztdecode_property_record (&rows)[N],  // NOLINT: a C array
    Address address) {
    std::array<const Field*, N> fields{};
    for (std::size_t i = 0; i + 1 < N; ++i) fields[i] = field_of_row(rows[i], address);
    fields[N - 1] = field_named("property_value");  // of an id that the table does not have
    return fields;
}

template <const auto& Table, Address address>
static constexpr auto property_fields = fields_of(Table, address);

template <const auto& Table, Address address = Address::of_server>
static constexpr PropertyTable indexed{Table, &property_index<Table>, property_fields<Table, address>.data()};

}  // namespace ztdecode::object::property_rows

// clang-format off

// The rows that open the table of every displayed widget.
#define ZTDECODE_WIDGET_HEAD          \
    {UINT16, 0x00, "objectid", 0},    \
    {UINT16, 0x24, "anchorid", 0},    \
    {UINT8, 0x25, "grid", 0},         \
    {UINT8, 0x26, "x", 0},            \
    {UINT8, 0x27, "y", 0},            \
    {UINT8, 0x12, "w", 0},            \
    {UINT8, 0x13, "h", 0},            \
    {BOOL, 0x28, "visible", 0},       \
    {INT8, 0x46, "hoffset", 0},       \
    {INT8, 0x47, "voffset", 0},       \
    {UINT16, 0x68, "cycling_time", 0}

// The row that ends every table.
#define ZTDECODE_PROPERTY_END {INT32, 0xFF, "(property_error)", 0}

// clang-format on
