#include "core/tables.hpp"
#include "he/commands.hpp"
#include "he/pieces.hpp"

// byte 1: command   byte 2: window   byte 3: object   byte 4 ...: by command

namespace ztdecode::he {

namespace {

// byte 4: the text is shared   bytes 5, 6: colours   7, 8: attributes   9: font   10-13: place   14: width in
// characters 15: lines   16 ...: text behind its length
void create_static_text_field(Decoding& d) {
    d.add("create static text field ");
    window_and_object(d);
    d.print(
        " fgCol={foreground_color:02x} bgCol={background_color:02x} attr=({first_attributes:02x},"
        "{second_attributes:02x}) fontId={font:02x} "_cf,
        d[5], d[6], d[7], d[8], d[9]);
    position(d, 10);
    d.print(" charPerLine={characters_per_line} linesNumber={lines}"_cf, d[14], d[15]);
    shared_or_quoted_text(d, 4, 16);
}

// byte 4: colour   byte 5: visible in bit 0
void create_line(Decoding& d) {
    d.add("create line ");
    window_and_object(d);
    d.print(" couleur {color:02x} {visibility}"_cf, d[4], flag(d.bit(5, 0), "visible", "invisible"));
}

// bytes 8-15: place and size
void create_rectangle(Decoding& d) {
    d.add("create rectangle ");
    window_and_object(d);
    rectangle(d, 8);
}

// bytes 11, 12: cells
void create_text_list(Decoding& d) {
    d.add("create text list ");
    window_and_object(d);
    d.add("  ");
    cell(d, 11);
}

constexpr auto commands =
    opcodes({{0x00, "create_icon", {"create icon ", window_and_object}},
             {0x01, "create_image", {"create image ", window_and_object}},
             {0x02, "create_static_text_field", create_static_text_field},
             {0x03, "create_clock", {"create clock ", window_and_object}},
             {0x04, "create_timer", {"create timer ", window_and_object}},
             {0x05, "create_line", create_line},
             {0x06, "create_polyline", {"create polyline ", window_and_object}},
             {0x07, "create_rectangle", create_rectangle},
             {0x08, "create_editable_text_field", {"create editable text field ", window_and_object}},
             {0x09, "create_text_list", create_text_list},
             {0x10, "create_item_list", "create item list "},
             {0x11, "copy_objects", "copy objects "},
             {0x20, "delete_objects", "delete objects "},
             {0x21, "delete_all_window_objects", "delete all window objects "}},
            "object ???");

}  // namespace

void object_creation(Decoding& d) { commands.write(d, d[1]); }

}  // namespace ztdecode::he
