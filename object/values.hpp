#pragma once

#include <cstdint>

#include "core/text.hpp"
#include "object/bytes.hpp"
#include "object/tables.hpp"

// Properties of objects, and the values that they carry.

namespace ztdecode {

// A table of properties: one of this library's, looked up in one step, or any other of the same layout.
class Properties {
  public:
    Properties(const PropertyTable& table) noexcept
        : known_(table), rows_(table.rows()) {}  // NOLINT: the same thing
    explicit Properties(const ztdecode_property_record* rows) noexcept;

    Property operator[](std::uint8_t id) const noexcept;

  private:
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

// Writes the properties from byte `first` of `body` to its end. The last one is shown whole where it says
// that it is longer.
void print_properties(const Bytes& body, std::uint32_t first, const Properties& table,
                      LengthField length_field, Values values, Text& out);

// Writes one property; a null value shows its name only.
void vDecodeTLV(std::uint8_t id, std::uint8_t index, const Bytes* value, const Properties& table, Text& out);

enum class Utf8Mode { names, characters };

// Writes a text in double quotes. True when it has a character beyond ASCII. A zero byte in such a character
// is written as any other: whoever reads the whole message as a C string sees it end there.
bool printUTF8str(const Bytes& text, Utf8Mode mode, Text& out);

// Writes a character of free text, "$" for what is not printable.
void vPutf8char(std::uint8_t c, Text& out);

}  // namespace ztdecode
