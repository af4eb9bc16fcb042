#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/fields.hpp"
#include "object/code_index.hpp"
#include "object/snake_case.hpp"
#include "ztdecode.h"

// The vocabulary of the object protocol. Its tables are exported data and declared in ztdecode.h; here stands
// what the decoder looks them up with.

static_assert(sizeof(ztdecode_name_record) == 31);
static_assert(offsetof(ztdecode_name_record, name) == 1);

static_assert(sizeof(ztdecode_property_record) == 34);
static_assert(offsetof(ztdecode_property_record, type) == 0);
static_assert(offsetof(ztdecode_property_record, id) == 1);
static_assert(offsetof(ztdecode_property_record, name) == 2);
static_assert(offsetof(ztdecode_property_record, count) == 32);

static_assert(sizeof(ztdecode_class_record) == 32 + sizeof(void*));
static_assert(offsetof(ztdecode_class_record, name) == 1);
static_assert(offsetof(ztdecode_class_record, properties) == 32);

static_assert(sizeof(ztdecode_block_record) == 8 + sizeof(void*));
static_assert(offsetof(ztdecode_block_record, last) == 4);
static_assert(offsetof(ztdecode_block_record, name) == 8);

static_assert(sizeof(ztdecode_glyph_record) == 2 * sizeof(void*));
static_assert(offsetof(ztdecode_glyph_record, name) == sizeof(void*));

namespace ztdecode::object {

inline constexpr std::uint8_t end_of_properties = 0xFF;

// A property as its table describes it; for an unknown id "(property_error)" of type int32.
struct Property {
    std::string_view name;
    std::uint16_t count;  // elements of an indexed property, else 0
    std::uint8_t type;    // enum ztdecode_value_type
    bool known;           // whether the table has the id
};

// One of the property tables of this library with its index, and with what the value of each row is called.
class PropertyTable {
  public:
    constexpr PropertyTable() = default;  // no table: false
    constexpr PropertyTable(const ztdecode_property_record* rows, const CodeIndex* index,
                            const Field* const* fields)
        : rows_(rows), index_(index), fields_(fields) {}

    constexpr explicit operator bool() const noexcept { return rows_ != nullptr; }
    constexpr const ztdecode_property_record* rows() const noexcept { return rows_; }

    // To be asked of a table only.
    Property operator[](std::uint8_t id) const noexcept {
        const IndexedRow found = (*index_)[id];
        const ztdecode_property_record& row = rows_[found.row];
        return {{row.name, found.name_size}, row.count, row.type, row.id != end_of_properties};
    }
    const Field* field(std::uint8_t id) const noexcept { return fields_[(*index_)[id].row]; }

  private:
    const ztdecode_property_record* rows_ = nullptr;
    const CodeIndex* index_ = nullptr;
    const Field* const* fields_ = nullptr;
};

extern const CodeIndex servers_index;
extern const CodeIndex methods_index;
extern const CodeIndex errors_index;
extern const CodeIndex events_index;
extern const CodeIndex classes_index;

// What the rows of Tab_Methods_def and Tab_Events_Opcodes are called as messages.
extern const std::array<SnakeCase, 8> method_names;
extern const std::array<SnakeCase, 71> event_names;

// The properties of each class, in the order of Tab_Classes_Opcodes; none for the sentinel.
extern const PropertyTable class_properties[40];

// The properties that an event carries.
namespace event_properties {
extern const PropertyTable reset;
extern const PropertyTable tabbox;
extern const PropertyTable listbox;
extern const PropertyTable inputbox_focus_lost;
extern const PropertyTable sliderbar;
extern const PropertyTable bt_bonded_device;
extern const PropertyTable bt_inquiry_result;
extern const PropertyTable bt_name_discovery;
extern const PropertyTable ime_list;
extern const PropertyTable ime_change;
extern const PropertyTable ime_open;
}  // namespace event_properties

}  // namespace ztdecode::object
