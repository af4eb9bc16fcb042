#include "core/going_away.hpp"
#include "he/commands.hpp"
#include "he/pieces.hpp"

// byte 1: command   byte 2: window   byte 3: object   byte 4 ...: by command

namespace ztdecode::he {

namespace {

// byte 4: the text is shared   bytes 5, 6: colours   7, 8: attributes   9: font   10-13: place   14: width in
// characters 15: lines   16 ...: text behind its length
void create_static_text_field(Session& /*session*/, const Message& m, Text& out) {
    out.add("create static text field ");
    window_and_object(m, out);
    out.print(" fgCol={:02x} bgCol={:02x} attr=({:02x},{:02x}) fontId={:02x} "_cf, m[5], m[6], m[7], m[8],
              m[9]);
    position(m, 10, out);
    out.print(" charPerLine={} linesNumber={}"_cf, m[14], m[15]);
    shared_or_quoted_text(m[4] != 0, m, 16, out);
}

// byte 4: colour   byte 5: visible in bit 0
void create_line(Session& /*session*/, const Message& m, Text& out) {
    out.add("create line ");
    window_and_object(m, out);
    out.print(" couleur {:02x} {}"_cf, m[4], m.bit(5, 0) ? "visible" : "invisible");
}

// bytes 8-15: place and size
void create_rectangle(Session& /*session*/, const Message& m, Text& out) {
    out.add("create rectangle ");
    window_and_object(m, out);
    rectangle(m, 8, out);
}

// bytes 11, 12: cells
void create_text_list(Session& /*session*/, const Message& m, Text& out) {
    out.add("create text list ");
    window_and_object(m, out);
    out.add("  ");
    cell(m, 11, out);
}

constexpr auto commands = opcodes({{2, create_static_text_field},
                                   {5, create_line},
                                   {7, create_rectangle},
                                   {9, create_text_list},
                                   {16, "create item list "},
                                   {17, "copy objects "},
                                   {32, "delete objects "},
                                   {33, "delete all window objects "}});

// These show which object of which window they mean, and no more.
constexpr auto object_commands = names({{0, "create icon "},
                                        {1, "create image "},
                                        {3, "create clock "},
                                        {4, "create timer "},
                                        {6, "create polyline "},
                                        {8, "create editable text field "}},
                                       "");

}  // namespace

void object_creation(Session& session, const Message& m, Text& out) {
    if (commands.write(m[1], session, m, out)) return;
    const std::string_view text = object_commands[m[1]];
    if (text.empty()) {
        out.add("object ???");
        return;
    }
    out.add(text);
    window_and_object(m, out);
}

}  // namespace ztdecode::he
