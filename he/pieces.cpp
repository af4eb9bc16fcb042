#include "he/pieces.hpp"

#include "core/going_away.hpp"

namespace ztdecode::he {

namespace {

constexpr auto object_types = names({{0, "icon"},
                                     {1, "image"},
                                     {2, "static text field"},
                                     {3, "editable text field"},
                                     {4, "clock"},
                                     {5, "timer"},
                                     {6, "line"},
                                     {7, "polyline"},
                                     {8, "rectangle"},
                                     {9, "videotext field"},
                                     {10, "text list"}},
                                    "type d'objet inconnu ???");

// byte 0: type   byte 1: id
void object_id_and_type(const Message& m, std::size_t first, Text& out) {
    object_id(m[first + 1], out);
    out.put(' ');
    out.add(object_type(m[first]));
}

}  // namespace

void window_id(std::uint8_t id, Text& out) {
    out.add("winId=");
    out.hex(id);
}

void object_id(std::uint8_t id, Text& out) {
    out.add("objId=");
    out.hex(id);
}

void window_and_object(const Message& m, Text& out) {
    out.put(' ');
    window_id(m[2], out);
    out.put(' ');
    object_id(m[3], out);
}

void position(const Message& m, std::size_t first, Text& out) {
    out.print(" X= {}, Y= {}"_cf, m.u16(first), m.u16(first + 2));
}

void rectangle(const Message& m, std::size_t first, Text& out) {
    position(m, first, out);
    out.print(", L= {}, H= {}"_cf, m.u16(first + 4), m.u16(first + 6));
}

void cell(const Message& m, std::size_t first, Text& out) {
    out.print("cell=[{},{}]"_cf, m[first], m[first + 1]);
}

void quoted_text(const Message& m, std::size_t n, Text& out) {
    const Text::Piece quoted(out);
    const std::size_t length = m[n];
    out.add(" \"");
    out.copy(m, n + 1, length);
    out.put('"');
}

void shared_or_quoted_text(bool shared, const Message& m, std::size_t n, Text& out) {
    if (shared) {
        out.add(" - shared text -");
    } else {
        quoted_text(m, n, out);
    }
}

void window_list(const Message& m, std::size_t n, Text& out) {
    const std::size_t count = m[n];
    if (count == 0) {
        out.add("all windows");
    } else if (count == 1) {
        out.add("window ");
        window_id(m[n + 1], out);
    } else {
        out.print("{} windows"_cf, count);
        for (std::size_t k = n + 1; k <= n + count; ++k) {
            out.add(", ");
            window_id(m[k], out);
        }
    }
}

void object_list(const Message& m, std::size_t n, Text& out) {
    const std::size_t count = m[n];
    if (count == 0) {
        out.add("all objects");
    } else if (count == 1) {
        out.add("object ");
        object_id_and_type(m, n + 1, out);
    } else {
        out.print("{} objects"_cf, count);
        for (std::size_t k = n + 1; k <= n + 2 * count; k += 2) {
            out.add(", ");
            object_id_and_type(m, k, out);
        }
    }
}

std::string_view object_type(std::uint32_t code) noexcept { return object_types[code]; }

}  // namespace ztdecode::he
