#include "core/going_away.hpp"
#include "he/commands.hpp"
#include "he/pieces.hpp"

// byte 1: command   byte 2: window   byte 3: object   byte 4 ...: by command

namespace ztdecode::he {

namespace {

// byte 4: the text is shared   byte 5 ...: text behind its length
void set_static_text_field(Session& /*session*/, const Message& m, Text& out) {
    out.add("set static text field");
    window_and_object(m, out);
    shared_or_quoted_text(m[4] != 0, m, 5, out);
}

// A text field's new text: byte 4 says whether it is shared, byte n counts its characters. A message that
// ends before the text shows none.
void field_text(std::uint32_t shortest, std::size_t n, const Message& m, Text& out) {
    window_and_object(m, out);
    if (m.length() >= shortest) shared_or_quoted_text(m[4] != 0, m, n, out);
}

void append_static_text_field(Session& /*session*/, const Message& m, Text& out) {
    out.add("append static text field");
    field_text(7, 5, m, out);
}

void replace_static_text_field(Session& /*session*/, const Message& m, Text& out) {
    out.add("replace static text field");
    field_text(7, 5, m, out);
}

void set_editable_text_field(Session& /*session*/, const Message& m, Text& out) {
    out.add("set editable text field");
    field_text(7, 5, m, out);
}

void append_editable_text_field(Session& /*session*/, const Message& m, Text& out) {
    out.add("append editable text field");
    field_text(7, 5, m, out);
}

void replace_editable_text_field(Session& /*session*/, const Message& m, Text& out) {
    out.add("replace editable text field");
    field_text(9, 7, m, out);
}

// byte 3: on   byte 4 ...: objects
void set_visibility(Session& /*session*/, const Message& m, Text& out) {
    out.print("set visibility {} in winId={:02x} for "_cf, m[3] != 0 ? "ON" : "OFF", m[2]);
    object_list(m, 4, out);
}

// byte 3: colour   byte 4 ...: objects
void set_background_color(Session& /*session*/, const Message& m, Text& out) {
    out.print("set background color= {} in winId={:02x} for "_cf, m[3], m[2]);
    object_list(m, 4, out);
}

// byte 3 ...: objects
void refresh_objects(Session& /*session*/, const Message& m, Text& out) {
    out.add("refresh in ");
    window_id(m[2], out);
    out.add(" for ");
    object_list(m, 3, out);
}

// byte 3: type   byte 4: object   bytes 5-8: new place
void move_objects(Session& /*session*/, const Message& m, Text& out) {
    out.add("move objects ");
    window_id(m[2], out);
    out.print(" {} "_cf, object_type(m[3]));
    object_id(m[4], out);
    out.put(' ');
    position(m, 5, out);
}

void window_object_and_cell(const Message& m, Text& out) {
    window_and_object(m, out);
    out.add("  ");
    cell(m, 4, out);
}

void insert_cell(Session& /*session*/, const Message& m, Text& out) {
    out.add("insert cell in text list ");
    window_object_and_cell(m, out);
}

// bytes 4, 5: cell   byte 6: the text is shared   byte 7 ...: text behind its length
void set_cell_value(Session& /*session*/, const Message& m, Text& out) {
    out.add("set text list cell value: ");
    shared_or_quoted_text(m[6] != 0, m, 7, out);
    window_object_and_cell(m, out);
}

void delete_cell(Session& /*session*/, const Message& m, Text& out) {
    out.add("delete cell in text list ");
    window_object_and_cell(m, out);
}

void set_focus(Session& /*session*/, const Message& m, Text& out) {
    out.add("set focus on cell ");
    window_object_and_cell(m, out);
}

constexpr auto commands = opcodes({{4, set_static_text_field},
                                   {11, append_static_text_field},
                                   {12, replace_static_text_field},
                                   {13, set_editable_text_field},
                                   {14, append_editable_text_field},
                                   {15, replace_editable_text_field},
                                   {16, set_visibility},
                                   {17, set_background_color},
                                   {19, refresh_objects},
                                   {20, "videotext ???"},
                                   {21, "videotext ???"},
                                   {22, "videotext ???"},
                                   {23, "videotext ???"},
                                   {24, "copy timer value"},
                                   {25, move_objects},
                                   {29, insert_cell},
                                   {30, set_cell_value},
                                   {31, "copy text list cell value"},
                                   {32, delete_cell},
                                   {33, set_focus}});

// These show which object of which window they mean, and no more.
constexpr auto object_commands = names({{0, "change icon attributes"},
                                        {1, "change image attributes"},
                                        {2, "change static text field attributes"},
                                        {3, "change editable text field attributes"},
                                        {5, "change clock attributes"},
                                        {6, "change timer attributes"},
                                        {7, "set timer"},
                                        {8, "change line attributes"},
                                        {9, "change polyline attributes"},
                                        {10, "change rectangle attributes"},
                                        {26, "activate text list"},
                                        {27, "deactivate text list"},
                                        {28, "change text list attributes"}},
                                       "");

}  // namespace

void object_change(Session& session, const Message& m, Text& out) {
    if (commands.write(m[1], session, m, out)) return;
    const std::string_view text = object_commands[m[1]];
    if (text.empty()) {
        out.add("change object attributes: ???");
        return;
    }
    out.add(text);
    window_and_object(m, out);
}

}  // namespace ztdecode::he
