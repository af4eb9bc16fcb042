#include "he/pieces.hpp"

#include "core/tables.hpp"
#include "he/he.hpp"

namespace ztdecode::he {

namespace {

constexpr auto object_types = names({{0x00, "icon"},
                                     {0x01, "image"},
                                     {0x02, "static text field"},
                                     {0x03, "editable text field"},
                                     {0x04, "clock"},
                                     {0x05, "timer"},
                                     {0x06, "line"},
                                     {0x07, "polyline"},
                                     {0x08, "rectangle"},
                                     {0x09, "videotext field"},
                                     {0x0A, "text list"}},
                                    "type d'objet inconnu ???");

// byte 0: type   byte 1: id
void object_id_and_type(Decoding& d, std::size_t first) {
    d.print("objId={object_id:02x} {object_type}"_cf, d[first + 1], object_type(d[first]));
}

}  // namespace

void window_and_object(Decoding& d) { d.print(" winId={window:02x} objId={object_id:02x}"_cf, d[2], d[3]); }

void position(Decoding& d, std::size_t first) {
    d.print(" X= {x}, Y= {y}"_cf, d.u16(first), d.u16(first + 2));
}

void rectangle(Decoding& d, std::size_t first) {
    position(d, first);
    d.print(", L= {width}, H= {height}"_cf, d.u16(first + 4), d.u16(first + 6));
}

void application_of_byte2(Decoding& d) { d.value("application", application(d[2])); }

void cell(Decoding& d, std::size_t first) {
    d.print("cell=[{cell_first},{cell_second}]"_cf, d[first], d[first + 1]);
}

void quoted_text(Decoding& d, FieldName field, std::size_t n) {
    const Decoding::Scope scope(d);
    const Decoding::Piece quoted(d);
    d.add(" \"");
    const std::size_t length = d.walk(d[n]);
    d.text(field, n + 1, length);
    d.add("\"");
}

void shared_or_quoted_text(Decoding& d, std::size_t shared, std::size_t n) {
    const Decoding::Scope scope(d);
    if (d.on(d[shared] != 0)) {
        d.add(" - shared text -");
    } else {
        quoted_text(d, "window_text", n);
    }
}

void window_list(Decoding& d, std::size_t n) {
    const Byte count = d[n];
    switch (d.walk(count)) {
        case 0:
            d.add("all windows");
            break;
        case 1:
            d.print("window winId={window:02x}"_cf, d[n + 1]);
            break;
        default:
            d.print("{window_count} windows"_cf, count);
            for (std::size_t k = n + 1; k <= n + count.number; ++k) d.print(", winId={window:02x}"_cf, d[k]);
            break;
    }
}

void object_list(Decoding& d, std::size_t n) {
    const Byte count = d[n];
    switch (d.walk(count)) {
        case 0:
            d.add("all objects");
            break;
        case 1:
            d.add("object ");
            object_id_and_type(d, n + 1);
            break;
        default:
            d.print("{object_count} objects"_cf, count);
            for (std::size_t k = n + 1; k <= n + std::size_t{2} * count.number; k += 2) {
                d.add(", ");
                object_id_and_type(d, k);
            }
            break;
    }
}

Word object_type(const Number& code) noexcept { return object_types[code]; }

}  // namespace ztdecode::he
