#include "object/lookup.hpp"

#include <algorithm>
#include <iterator>

namespace ztdecode::object {

namespace {

constexpr std::uint8_t end_code = 255;
constexpr std::uint16_t end_glyph = 0xB000;

std::string_view type_name(std::uint8_t type) noexcept {
    switch (type) {
        case ZTDECODE_INT32:
            return "int32";
        case ZTDECODE_INT16:
            return "int16";
        case ZTDECODE_INT8:
            return "int8";
        case ZTDECODE_UINT32:
            return "uint32";
        case ZTDECODE_UINT16:
            return "uint16";
        case ZTDECODE_UINT8:
            return "uint8";
        case ZTDECODE_BOOL:
            return "BOOL";
        case ZTDECODE_UTF8:
            return "\"UTF8\"";
        default:
            return "";
    }
}

}  // namespace

const char* find_name(std::uint8_t code, const ztdecode_name_record* table) noexcept {
    while (table->code != code && table->code != end_code) ++table;
    return table->name;
}

const ztdecode_class_record& find_class(std::uint8_t code, const ztdecode_class_record* table) noexcept {
    while (table->opcode != code && table->opcode != end_code) ++table;
    return *table;
}

const ztdecode_property_record& find_property(std::uint8_t id,
                                              const ztdecode_property_record* table) noexcept {
    while (table->id != id && table->id != end_code) ++table;
    return *table;
}

const char* find_glyph(std::uint32_t code_point, const ztdecode_glyph_record* table) noexcept {
    while (table->code != end_glyph && table->code != code_point) ++table;
    return table->code != end_glyph ? table->name : nullptr;
}

ObjectClass class_of(std::uint8_t opcode) noexcept {
    const IndexedRow found = classes_index[opcode];
    return {{Tab_Classes_Opcodes[found.row].name, found.name_size}, class_properties[found.row]};
}

PropertyTable class_properties_at(const ztdecode_property_record* rows) noexcept {
    const auto* found = std::find_if(std::begin(class_properties), std::end(class_properties),
                                     [rows](const PropertyTable& table) { return table.rows() == rows; });
    return found != std::end(class_properties) ? *found : PropertyTable();
}

std::string_view command_name(std::uint8_t method) noexcept {
    return method_names[methods_index[method].row].view();
}

// An unknown event is a notification all the same.
std::string_view notification_name(std::uint8_t event) noexcept {
    const std::size_t row = events_index[event].row;
    return row + 1 < event_names.size() ? event_names[row].view() : "notify";
}

const Field* field_of_property(std::string_view name) noexcept {
    for (const Field& field : all_fields) {
        if (field.name == SnakeCase(name).view()) return &field;
    }
    return FieldName("property_value").get();
}

void list_classes(Text& out) {
    for (const ztdecode_class_record* c = Tab_Classes_Opcodes;; ++c) {
        out.add("\n-----------------------------------------");
        if (c->opcode == end_code) return;
        out.print("\n{-}\n{{"_cf, std::string_view(c->name));
        for (const ztdecode_property_record* row = c->properties; row->id != end_code; ++row) {
            out.print("\n\t{-:<15}\t"_cf, std::string_view(row->name));
            if (row->count != 0) out.add("Idx:\t");
            out.add(type_name(row->type));
        }
        out.add("\n}");
    }
}

}  // namespace ztdecode::object
