#include "core/going_away.hpp"
#include "he/commands.hpp"
#include "he/he.hpp"
#include "he/pieces.hpp"

// System to HE set.   byte 0: opcode in bits 0-6   byte 1: sub-command   byte 2 ...: by opcode
// The larger families have files of their own.

namespace ztdecode {

namespace {

constexpr auto metastates = names({{0, "disable"}, {1, "actif"}, {2, "wake-up"}}, "");

void metastate(Session& /*session*/, const Message& m, Text& out) {
    out.print("subdevice {:02x}, metastate: {}"_cf, m[1], metastates[m[2]]);
}

// bytes 2-5: address   bytes 6-9: size
void download_start(Session& /*session*/, const Message& m, Text& out) {
    out.print("DownLoad: start adr= {:08x}  size= {:08x}"_cf, m.u32(2), m.u32(6));
}

void download_code(Session& /*session*/, const Message& m, Text& out) {
    out.print("DownLoad: code message numero {:04x}"_cf, m.u16(2));
}

void download_checksum(Session& /*session*/, const Message& m, Text& out) {
    out.print("DownLoad: isochecksum= {:04x}"_cf, m.u16(2));
}

constexpr auto download_commands =
    opcodes({{1, download_start}, {2, download_code}, {3, "DownLoad: end"}, {4, download_checksum}});

void download_command(Session& session, const Message& m, Text& out) {
    if (!download_commands.write(m[1], session, m, out)) out.add("???");
}

void recorder(Session& /*session*/, const Message& m, Text& out) {
    out.add(m[1] != 0 ? "start recorder" : "stop recorder");
}

constexpr auto double_clicks =
    names({{1, "double click define"}, {2, "double click parameters"}}, "double click ???");

void double_click(Session& /*session*/, const Message& m, Text& out) { out.add(double_clicks[m[1]]); }

constexpr auto shared_objects = names({{0, "create shared icon "},
                                       {1, "create shared image "},
                                       {2, "create shared text "},
                                       {3, "append shared image "},
                                       {4, "copy shared object "},
                                       {5, "append shared icon "}},
                                      "shared object ???");

void shared_object(Session& /*session*/, const Message& m, Text& out) { out.add(shared_objects[m[1]]); }

void query_windows(Session& /*session*/, const Message& m, Text& out) {
    out.print("list windows for appli {:02x}"_cf, m[2]);
}

void query_resource(Session& /*session*/, const Message& m, Text& out) {
    out.print("query ressource for appli {:02x}, win {:02x}"_cf, m[2], m[3]);
}

void clean_application(Session& /*session*/, const Message& m, Text& out) {
    out.print("clean application {:02x}"_cf, m[2]);
}

constexpr auto queries = opcodes({{0, query_windows},
                                  {1, query_resource},
                                  {2, "query available mem"},
                                  {3, clean_application},
                                  {4, "query row"}});

void query(Session& session, const Message& m, Text& out) {
    if (!queries.write(m[1], session, m, out)) out.add("???");
}

constexpr auto editor_commands = names(
    {{0, "text editor: activate "}, {1, "text editor: peek field "}, {2, "text editor: deactivate "}}, "");

void text_editor(Session& /*session*/, const Message& m, Text& out) {
    const std::string_view text = editor_commands[m[1]];
    if (text.empty()) {
        out.add("text editor: ???");
        return;
    }
    out.add(text);
    he::window_and_object(m, out);
}

constexpr auto application_commands =
    names({{1, "launch "}, {2, "suspend "}, {3, "resume "}, {4, "abort "}}, "");
constexpr std::uint8_t list_applications = 5;

void application_command(Session& /*session*/, const Message& m, Text& out) {
    out.add("appli management: ");
    const std::string_view text = application_commands[m[1]];
    if (!text.empty()) {
        out.add(text);
        out.add(apId(m[2]));
    } else {
        out.add(m[1] == list_applications ? "list applis" : "???");
    }
}

constexpr auto messages = opcodes({{0, "nop"},
                                   {6, "reset subdevices"},
                                   {43, "are you there inquiry"},
                                   {44, metastate},
                                   {47, download_command},
                                   {57, "LCD contrast"},
                                   {58, "launch"},
                                   {73, "dpi configuration"},
                                   {76, recorder},
                                   {77, double_click},
                                   {80, he::window_command},
                                   {81, shared_object},
                                   {82, he::object_creation},
                                   {83, he::object_change},
                                   {84, query},
                                   {85, text_editor},
                                   {86, application_command}});

}  // namespace

void dhs2he(Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    if (messages.write(m[0] & 0x7F, session, m, out)) return;
    m.status = Status::unknown;
    out.add("???");
}

}  // namespace ztdecode

void ztdecode::he::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dhs2he, d); }
