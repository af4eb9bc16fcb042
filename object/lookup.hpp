#pragma once

#include <cstdint>
#include <string_view>

#include "core/text.hpp"
#include "core/values.hpp"
#include "object/tables.hpp"

// Names of codes.

namespace ztdecode::object {

inline constexpr std::uint8_t end_of_names = 0xFF;

// Searches in any table of the exported layouts. The first row of the code counts, else the sentinel's.
const char* find_name(std::uint8_t code, const ztdecode_name_record* table) noexcept;
// An unknown class is the row whose table of properties is null. Who keeps a current table sets it from here.
const ztdecode_class_record& find_class(std::uint8_t code, const ztdecode_class_record* table) noexcept;
const ztdecode_property_record& find_property(std::uint8_t id,
                                              const ztdecode_property_record* table) noexcept;
// Name of a character, or null; ends at the sentinel's code, which is not found itself.
const char* find_glyph(std::uint32_t code_point, const ztdecode_glyph_record* table) noexcept;

// The same in the tables of this library, in one step. (Here, so that nobody waits for a word's bytes.)
[[gnu::always_inline]] inline Word word_of(const Byte& code, const ztdecode_name_record* rows,
                                           const CodeIndex& index) noexcept {
    const IndexedRow found = index[code.number];
    const ztdecode_name_record& row = rows[found.row];
    return {{row.name, found.name_size}, code.number, row.code != end_of_names, code.place};
}
[[gnu::always_inline]] inline Word server(const Byte& code) noexcept {
    return word_of(code, Tab_Servers_def, servers_index);
}
[[gnu::always_inline]] inline Word method(const Byte& code) noexcept {
    return word_of(code, Tab_Methods_def, methods_index);
}
[[gnu::always_inline]] inline Word error(const Byte& code) noexcept {
    return word_of(code, Tab_Error_def, errors_index);
}
[[gnu::always_inline]] inline Word event(const Byte& code) noexcept {
    return word_of(code, Tab_Events_Opcodes, events_index);
}

struct ObjectClass {
    std::string_view name;
    PropertyTable properties;  // none: the class is unknown
};
ObjectClass class_of(std::uint8_t opcode) noexcept;

// The class table of this library that stands at `rows`, or none.
PropertyTable class_properties_at(const ztdecode_property_record* rows) noexcept;

// What a command of this method is called, and the notification of this event.
std::string_view command_name(std::uint8_t method) noexcept;
std::string_view notification_name(std::uint8_t event) noexcept;

// What the value of a property is called that somebody else's table gives this name.
const Field* field_of_property(std::string_view name) noexcept;

// Writes every class with its properties and their types.
void list_classes(Text& out);

}  // namespace ztdecode::object
