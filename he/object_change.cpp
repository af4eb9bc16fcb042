#include "core/tables.hpp"
#include "he/commands.hpp"
#include "he/pieces.hpp"

// byte 1: command   byte 2: window   byte 3: object   byte 4 ...: by command

namespace ztdecode::he {

namespace {

// byte 4: the text is shared   byte 5 ...: text behind its length
void set_static_text_field(Decoding& d) {
    d.add("set static text field");
    window_and_object(d);
    shared_or_quoted_text(d, 4, 5);
}

// A text field's new text: byte 4 says whether it is shared, byte n counts its characters. A message that
// ends before the text shows none.
void field_text(Decoding& d, std::uint32_t shortest, std::size_t n) {
    window_and_object(d);
    if (d.length() >= shortest) shared_or_quoted_text(d, 4, n);
}

void new_text(Decoding& d) { field_text(d, 7, 5); }

void replaced_editable_text(Decoding& d) { field_text(d, 9, 7); }

// byte 3: on   byte 4 ...: objects
void set_visibility(Decoding& d) {
    d.print("set visibility {visibility} in winId={window:02x} for "_cf, flag(d[3] != 0, "ON", "OFF"), d[2]);
    object_list(d, 4);
}

// byte 3: colour   byte 4 ...: objects
void set_background_color(Decoding& d) {
    d.print("set background color= {background_color} in winId={window:02x} for "_cf, d[3], d[2]);
    object_list(d, 4);
}

// byte 3 ...: objects
void refresh_objects(Decoding& d) {
    d.print("refresh in winId={window:02x} for "_cf, d[2]);
    object_list(d, 3);
}

// byte 3: type   byte 4: object   bytes 5-8: new place
void move_objects(Decoding& d) {
    d.print("move objects winId={window:02x} {object_type} objId={object_id:02x} "_cf, d[2],
            object_type(d[3]), d[4]);
    position(d, 5);
}

void window_object_and_cell(Decoding& d) {
    window_and_object(d);
    d.add("  ");
    cell(d, 4);
}

// bytes 4, 5: cell   byte 6: the text is shared   byte 7 ...: text behind its length
void set_cell_value(Decoding& d) {
    d.add("set text list cell value: ");
    shared_or_quoted_text(d, 6, 7);
    window_object_and_cell(d);
}

constexpr auto commands =
    opcodes({{0x00, "change_icon_attributes", {"change icon attributes", window_and_object}},
             {0x01, "change_image_attributes", {"change image attributes", window_and_object}},
             {0x02,
              "change_static_text_field_attributes",
              {"change static text field attributes", window_and_object}},
             {0x03,
              "change_editable_text_field_attributes",
              {"change editable text field attributes", window_and_object}},
             {0x04, "set_static_text_field", set_static_text_field},
             {0x05, "change_clock_attributes", {"change clock attributes", window_and_object}},
             {0x06, "change_timer_attributes", {"change timer attributes", window_and_object}},
             {0x07, "set_timer", {"set timer", window_and_object}},
             {0x08, "change_line_attributes", {"change line attributes", window_and_object}},
             {0x09, "change_polyline_attributes", {"change polyline attributes", window_and_object}},
             {0x0A, "change_rectangle_attributes", {"change rectangle attributes", window_and_object}},
             {0x0B, "append_static_text_field", {"append static text field", new_text}},
             {0x0C, "replace_static_text_field", {"replace static text field", new_text}},
             {0x0D, "set_editable_text_field", {"set editable text field", new_text}},
             {0x0E, "append_editable_text_field", {"append editable text field", new_text}},
             {0x0F, "replace_editable_text_field", {"replace editable text field", replaced_editable_text}},
             {0x10, "set_visibility", set_visibility},
             {0x11, "set_background_color", set_background_color},
             {0x13, "refresh_objects", refresh_objects},
             {0x14, "videotext", "videotext ???"},
             {0x15, "videotext", "videotext ???"},
             {0x16, "videotext", "videotext ???"},
             {0x17, "videotext", "videotext ???"},
             {0x18, "copy_timer_value", "copy timer value"},
             {0x19, "move_objects", move_objects},
             {0x1A, "activate_text_list", {"activate text list", window_and_object}},
             {0x1B, "deactivate_text_list", {"deactivate text list", window_and_object}},
             {0x1C, "change_text_list_attributes", {"change text list attributes", window_and_object}},
             {0x1D, "insert_cell", {"insert cell in text list ", window_object_and_cell}},
             {0x1E, "set_cell_value", set_cell_value},
             {0x1F, "copy_cell_value", "copy text list cell value"},
             {0x20, "delete_cell", {"delete cell in text list ", window_object_and_cell}},
             {0x21, "set_focus", {"set focus on cell ", window_object_and_cell}}},
            "change object attributes: ???");

}  // namespace

void object_change(Decoding& d) { commands.write(d, d[1]); }

}  // namespace ztdecode::he
