#pragma once

#include <cstdint>

#include "core/decoding.hpp"
#include "object/tables.hpp"

// Properties of objects, and the values that they carry.

namespace ztdecode::object {

// A table of properties: one of this library's, looked up in one step, or any other of the same layout.
class Properties {
  public:
    Properties(const PropertyTable& table) noexcept
        : known_(table), rows_(table.rows()) {}  // NOLINT: the same thing
    explicit Properties(const ztdecode_property_record* rows) noexcept;

    Property operator[](std::uint8_t id) const noexcept { return known_ ? known_[id] : searched(id); }
    // What the value of a property is called.
    FieldName field(std::uint8_t id) const noexcept;

  private:
    Property searched(std::uint8_t id) const noexcept;

    PropertyTable known_;
    const ztdecode_property_record* rows_;
};

// A property on the wire.
//
//   byte 0   property id; bit 7: an indexed property
//            index, with bit 7 of the id only
//            length of the value: one byte, or with its bit 7 set 15 bits in two, high byte first
//            value
enum class LengthField {
    one_or_two_bytes,
    one_byte,  // in the events of a list box, bit 7 or not
};
enum class Values {
    carried,
    none,  // in the requests for properties: only the names are shown
};

// Writes the properties from byte `first` on. The last one is shown whole where it says that it is longer.
void print_properties(Decoding& d, std::uint32_t first, const Properties& table, LengthField length_field,
                      Values values);

// Writes the name of a property, and the value that the bytes are.
void print_property_name(Decoding& d, const Byte& id, const Properties& table);
void print_property_value(Decoding& d, const Byte& id, const Byte& index, const Properties& table);

enum class Utf8Mode { names, characters };

// Writes the bytes as a text in double quotes. True when it has a character beyond ASCII. A zero byte in such
// a character is written as any other: whoever reads the whole message as a C string sees it end there.
Condition print_text(Decoding& d, FieldName field, Utf8Mode mode);

// A character of free text as it shows: "$" for what is not printable.
std::uint8_t shown_character(std::uint8_t c) noexcept;

}  // namespace ztdecode::object
