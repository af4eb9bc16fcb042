#pragma once

#include <cstdint>
#include <string_view>

#include "core/text.hpp"
#include "object/tables.hpp"

// Names of codes.

namespace ztdecode {

// Searches in any table of the exported layouts. The first row of the code counts, else the sentinel's.
const char* Look(std::uint8_t code, const ztdecode_name_record* table) noexcept;
// An unknown class is the row whose table of properties is null. Who keeps a current table sets it from here.
const ztdecode_class_record& Lclass(std::uint8_t code, const ztdecode_class_record* table) noexcept;
const ztdecode_property_record& Lprop(std::uint8_t id, const ztdecode_property_record* table) noexcept;
// Name of a character, or null; ends at the sentinel's code, which is not found itself.
const char* find_glyph(std::uint32_t code_point, const ztdecode_glyph_record* table) noexcept;

// The same in the tables of this library, in one step.
std::string_view server_name(std::uint8_t code) noexcept;
std::string_view method_name(std::uint8_t code) noexcept;
std::string_view error_name(std::uint8_t code) noexcept;
std::string_view event_name(std::uint8_t code) noexcept;

struct ObjectClass {
    std::string_view name;
    PropertyTable properties;  // none: the class is unknown
};
ObjectClass class_of(std::uint8_t opcode) noexcept;

// The class table of this library that stands at `rows`, or none.
PropertyTable class_properties_at(const ztdecode_property_record* rows) noexcept;

// Writes every class with its properties and their types.
void ClassProp_Help(Text& out);

}  // namespace ztdecode
