#include "object/values.hpp"

#include <array>
#include <cstring>
#include <string_view>

#include "object/characters.hpp"
#include "object/lookup.hpp"

namespace ztdecode {

namespace {

constexpr std::array<std::string_view, 16> control_names = {
    "\\NUL", "\\SOH", "\\STX", "\\ETX", "\\EOT", "\\ENQ", "\\ACK", "\\BEL",
    "\\BS",  "\\HT",  "\\LF",  "\\VT",  "\\FF",  "\\CR",  "\\SO",  "\\SI",
};

constexpr bool is_printable(std::uint8_t c) { return c >= 0x20 && c < 0x7F; }

void print_ascii(std::uint8_t c, Text& out) {
    if (is_printable(c)) {
        out.put(c);
    } else if (c < control_names.size()) {
        out.add(control_names[c]);
    } else {
        out.add("\\$");
    }
}

void print_name(std::uint32_t code_point, Text& out) {
    out.add("<");
    LookUtf8(code_point, out);
    out.add(">");
}

// A character that the text's end cuts is put together with the bytes behind it.
void print_two_bytes(const Bytes& text, std::uint32_t i, Utf8Mode mode, Text& out) {
    if (i + 1 >= text.length) out.add("ERROR_UTF8_2CHAR");
    const std::uint8_t lead = text[i];
    const std::uint8_t next = text[i + 1];
    if (mode == Utf8Mode::names) {
        print_name((lead & 0x1FU) << 6 | (next & 0x3FU), out);
    } else {
        out.put(lead);
        out.put(next);
    }
}

// A character that is the whole text is a key: it shows as its code.
void print_three_bytes(const Bytes& text, std::uint32_t i, Utf8Mode mode, Text& out) {
    if (i + 2 >= text.length) out.add("ERROR_UTF8_3CHAR");
    const std::uint8_t lead = text[i];
    const std::uint8_t second = text[i + 1];
    const std::uint8_t third = text[i + 2];
    const std::uint32_t code_point = (lead & 0x0FU) << 12 | (second & 0x3FU) << 6 | (third & 0x3FU);
    if (mode == Utf8Mode::names) {
        print_name(code_point, out);
    } else if (text.length == 3) {
        out.print("\\u{:04X}"_cf, code_point);
    } else {
        out.put(lead);
        out.put(second);
        out.put(third);
    }
}

void print_hex(const Bytes& value, Text& out) {
    out.add("0x");
    for (std::uint32_t k = 0; k < value.length; ++k) out.HEX(value[k]);
}

void print_bool(const Bytes& value, Text& out) {
    if (value.length != 1) out.add("BOOL length error");
    out.add(value[0] != 0 ? "TRUE" : "FALSE");
}

// A text with characters beyond ASCII shows a second time with their names.
void print_utf8(const Bytes& value, Text& out) {
    if (!printUTF8str(value, Utf8Mode::characters, out)) return;
    out.add("\t//");
    printUTF8str(value, Utf8Mode::names, out);
}

void print_value(std::uint8_t type, const Bytes& value, Text& out) {
    switch (type) {
        case ZTDECODE_INT32:
        case ZTDECODE_INT16:
        case ZTDECODE_UINT32:
        case ZTDECODE_UINT16:
            print_hex(value, out);
            break;
        case ZTDECODE_INT8:
            out.print("{}"_cf, static_cast<std::int8_t>(value[0]));
            break;
        case ZTDECODE_UINT8:
            out.print("{}"_cf, value[0]);
            break;
        case ZTDECODE_BOOL:
            print_bool(value, out);
            break;
        case ZTDECODE_UTF8:
            print_utf8(value, out);
            break;
        default:
            break;
    }
}

}  // namespace

Properties::Properties(const ztdecode_property_record* rows) noexcept
    : known_(class_properties_at(rows)), rows_(rows) {}

Property Properties::operator[](std::uint8_t id) const noexcept {
    if (known_) return known_[id];
    const ztdecode_property_record& row = Lprop(id, rows_);
    return {{row.name, strnlen(row.name, sizeof row.name)}, row.count, row.type};
}

bool printUTF8str(const Bytes& text, Utf8Mode mode, Text& out) {
    bool beyond_ascii = false;
    out.add("\"");
    for (std::uint32_t i = 0; i < text.length;) {
        const std::uint8_t lead = text[i];
        if (lead < 0x80) {
            print_ascii(lead, out);
            i += 1;
        } else if ((lead & 0xE0) == 0xC0) {
            print_two_bytes(text, i, mode, out);
            beyond_ascii = true;
            i += 2;
        } else if ((lead & 0xF0) == 0xE0) {
            print_three_bytes(text, i, mode, out);
            beyond_ascii = true;
            i += 3;
        } else {
            out.add("ERR_UTF8_CHAR");
            i += 1;
        }
    }
    out.add("\"");
    return beyond_ascii;
}

void vPutf8char(std::uint8_t c, Text& out) { out.put(is_printable(c) ? c : '$'); }

void vDecodeTLV(std::uint8_t id, std::uint8_t index, const Bytes* value, const Properties& table, Text& out) {
    const Property property = table[id];
    out.print("\n\t{:<15}\t"_cf, property.name);
    if (value == nullptr) return;
    if ((id & 0x80) != 0) out.print("Idx:{}  "_cf, index);
    print_value(property.type, *value, out);
}

void print_properties(const Bytes& body, std::uint32_t first, const Properties& table,
                      LengthField length_field, Values values, Text& out) {
    std::uint8_t index = 0;
    for (std::uint32_t at = first; at < body.length;) {
        const std::uint8_t id = body[at++];
        if ((id & 0x80) != 0) index = body[at++];
        std::uint32_t length = body[at++];
        if ((length & 0x80) != 0 && length_field == LengthField::one_or_two_bytes) {
            length = (length & 0x7F) << 8 | body[at++];
        }
        const Bytes value{body.message, body.first + at, length};
        at += length;
        vDecodeTLV(id, index, values == Values::carried ? &value : nullptr, table, out);
    }
}

}  // namespace ztdecode
