#pragma once

#include <cstdint>

#include "object/tables.hpp"
#include "ztdecode.h"

// What the property tables are written with: rows {type, id, name, number of elements}.

namespace ztdecode::property_rows {

inline constexpr std::uint8_t INT32 = ZTDECODE_INT32;
inline constexpr std::uint8_t INT8 = ZTDECODE_INT8;
inline constexpr std::uint8_t UINT32 = ZTDECODE_UINT32;
inline constexpr std::uint8_t UINT16 = ZTDECODE_UINT16;
inline constexpr std::uint8_t UINT8 = ZTDECODE_UINT8;
inline constexpr std::uint8_t BOOL = ZTDECODE_BOOL;
inline constexpr std::uint8_t UTF8 = ZTDECODE_UTF8;

template <const auto& Table>
static constexpr CodeIndex property_index = index_of(Table);

template <const auto& Table>
static constexpr PropertyTable indexed{Table, &property_index<Table>};

}  // namespace ztdecode::property_rows

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
