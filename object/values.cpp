#include "object/values.hpp"

#include <array>
#include <cstring>
#include <string_view>

#include "object/characters.hpp"
#include "object/lookup.hpp"

namespace ztdecode::object {

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
    print_character_name(code_point, out);
    out.add(">");
}

// A character that the text's end cuts is put together with the bytes behind it.
void print_two_bytes(const Decoding& d, std::uint32_t i, Utf8Mode mode, Text& out) {
    if (i + 1 >= d.length()) out.add("ERROR_UTF8_2CHAR");
    const std::uint8_t lead = d[i].number;
    const std::uint8_t next = d[i + 1].number;
    if (mode == Utf8Mode::names) {
        print_name((lead & 0x1FU) << 6 | (next & 0x3FU), out);
    } else {
        out.put(lead);
        out.put(next);
    }
}

// A character that is the whole text is a key: it shows as its code.
void print_three_bytes(const Decoding& d, std::uint32_t i, Utf8Mode mode, Text& out) {
    if (i + 2 >= d.length()) out.add("ERROR_UTF8_3CHAR");
    const std::uint8_t lead = d[i].number;
    const std::uint8_t second = d[i + 1].number;
    const std::uint8_t third = d[i + 2].number;
    const std::uint32_t code_point = (lead & 0x0FU) << 12 | (second & 0x3FU) << 6 | (third & 0x3FU);
    if (mode == Utf8Mode::names) {
        print_name(code_point, out);
    } else if (d.length() == 3) {
        out.print("\\u{-:04X}"_cf, code_point);
    } else {
        out.put(lead);
        out.put(second);
        out.put(third);
    }
}

struct Written {
    bool beyond_ascii = false;
    std::uint32_t bytes = 0;
};

Written print_characters(const Decoding& d, Utf8Mode mode, Text& out) {
    Written written;
    std::uint32_t& i = written.bytes;
    while (i < d.length()) {
        const std::uint8_t lead = d[i].number;
        if (lead < 0x80) {
            print_ascii(lead, out);
            i += 1;
        } else if ((lead & 0xE0) == 0xC0) {
            print_two_bytes(d, i, mode, out);
            written.beyond_ascii = true;
            i += 2;
        } else if ((lead & 0xF0) == 0xE0) {
            print_three_bytes(d, i, mode, out);
            written.beyond_ascii = true;
            i += 3;
        } else {
            out.add("ERR_UTF8_CHAR");
            i += 1;
        }
    }
    return written;
}

// All bytes, as a number where they are one that can be told.
Meaning number_or_bytes(const Decoding& d, bool has_sign) {
    Meaning all{Kind::bytes, true, 0, 0, {d[0].place.first, d.length()}};
    if (d.length() == 0 || d.length() > sizeof all.number) return all;
    std::uint64_t number = 0;
    for (std::uint32_t k = 0; k < d.length(); ++k) number = number << 8 | d[k].number;
    all.kind = Kind::number;
    all.number = static_cast<std::int64_t>(number);
    if (has_sign && d.length() == 4) all.number = static_cast<std::int32_t>(number);
    if (has_sign && d.length() == 2) all.number = static_cast<std::int16_t>(number);
    return all;
}

void print_hex(Decoding& d, std::uint8_t type, FieldName field) {
    d.add("0x");
    const auto digits = [&d] {
        for (std::uint32_t k = 0; k < d.length(); ++k) d.out().HEX(d[k].number);
    };
    if (d.trail() == nullptr) {
        digits();
    } else {
        // Nobody knows the sign of a property that no table has, whatever the type at the table's end.
        const bool has_sign = type == ZTDECODE_INT32 || type == ZTDECODE_INT16;
        d.value(field, number_or_bytes(d, has_sign && !(field == FieldName("property_value"))), digits);
    }
}

void print_bool(Decoding& d, FieldName field) {
    if (d.length() != 1) d.add("BOOL length error");
    d.value(field, flag(d[0] != 0, "TRUE", "FALSE"));
}

// A text with characters beyond ASCII shows a second time with their names.
void print_utf8(Decoding& d, FieldName field) {
    if (!d.on(print_text(d, field, Utf8Mode::characters))) return;
    d.add("\t//");
    print_text(d, "character_names", Utf8Mode::names);
}

void print_value(Decoding& d, std::uint8_t type, FieldName field) {
    switch (type) {
        case ZTDECODE_INT32:
        case ZTDECODE_INT16:
        case ZTDECODE_UINT32:
        case ZTDECODE_UINT16:
            print_hex(d, type, field);
            break;
        case ZTDECODE_INT8:
            d.value(field, d[0].as(static_cast<std::int8_t>(d[0].number)));
            break;
        case ZTDECODE_UINT8:
            d.value(field, d[0]);
            break;
        case ZTDECODE_BOOL:
            print_bool(d, field);
            break;
        case ZTDECODE_UTF8:
            print_utf8(d, field);
            break;
        default:
            break;
    }
}

void print_name(Decoding& d, const Byte& id, const Property& property, Values values) {
    if (!property.known) {
        d.print("\n\t{unknown_property:<15}\t"_cf, Word{property.name, id.number, false, id.place});
    } else if (values == Values::none) {  // What is asked for is all that is said of it.
        d.print("\n\t{property:<15}\t"_cf, Word{property.name, id.number, true, id.place});
    } else {
        d.print("\n\t{-:<15}\t"_cf, property.name);
    }
}

// Who asks for the fields asks for their names.
FieldName field_of(const Decoding& d, const Properties& table, std::uint8_t id) {
    return d.trail() != nullptr ? table.field(id) : no_field;
}

void print_index(Decoding& d, const Byte& index) { d.print("Idx:{property_index}  "_cf, index); }

}  // namespace

Properties::Properties(const ztdecode_property_record* rows) noexcept
    : known_(class_properties_at(rows)), rows_(rows) {}

Property Properties::searched(std::uint8_t id) const noexcept {
    const ztdecode_property_record& row = find_property(id, rows_);
    return {{row.name, strnlen(row.name, sizeof row.name)}, row.count, row.type, row.id != end_of_properties};
}

FieldName Properties::field(std::uint8_t id) const noexcept {
    return FieldName(known_ ? known_.field(id) : field_of_property((*this)[id].name));
}

Condition print_text(Decoding& d, FieldName field, Utf8Mode mode) {
    Text& out = d.out();
    out.add("\"");
    Written written;
    if (d.trail() == nullptr) {
        written = print_characters(d, mode, out);
    } else {
        Meaning text{Kind::text};
        d.value(field, text, [&] {
            written = print_characters(d, mode, out);
            text.place = {d[0].place.first, written.bytes};
        });
    }
    out.add("\"");
    return {written.beyond_ascii, 0, {d[0].place.first, written.bytes}};
}

std::uint8_t shown_character(std::uint8_t c) noexcept { return is_printable(c) ? c : std::uint8_t{'$'}; }

void print_property_name(Decoding& d, const Byte& id, const Properties& table) {
    print_name(d, id, table[id.number], Values::carried);
}

void print_property_value(Decoding& d, const Byte& id, const Byte& index, const Properties& table) {
    if ((id.number & 0x80) != 0) print_index(d, index);
    print_value(d, table[id.number].type, field_of(d, table, id.number));
}

void print_properties(Decoding& d, std::uint32_t first, const Properties& table, LengthField length_field,
                      Values values) {
    for (std::uint32_t at = first; at < d.length();) {
        const Decoding::Scope scope(d);
        const Byte id = d[at++];
        const bool indexed = (d.on(id) & 0x80) != 0;
        const std::uint32_t index_at = at;
        if (indexed) {
            d.walk(id);
            ++at;
        }
        const Byte announced = d[at++];
        std::uint32_t length = announced.number;
        const bool two = (length & 0x80) != 0 && length_field == LengthField::one_or_two_bytes;
        if (two) length = (length & 0x7F) << 8 | d[at++].number;
        const Property property = table[id.number];
        print_name(d, id, property, values);
        d.walk(Number{length, {announced.place.first, two ? 2U : 1U}});
        if (values == Values::carried) {
            if (indexed) print_index(d, d[index_at]);
            const FieldName field = field_of(d, table, id.number);
            const Decoding::Window value(d, at, length);
            print_value(d, property.type, field);
        }
        at += length;
    }
}

}  // namespace ztdecode::object
