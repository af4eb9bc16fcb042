#include "core/going_away.hpp"
#include "he/commands.hpp"
#include "he/pieces.hpp"

// byte 1: command   byte 2: window, or the number of windows where the command takes a list

namespace ztdecode::he {

namespace {

// byte 15 ... 22: place and size
void create_window(Session& /*session*/, const Message& m, Text& out) {
    out.print("create window {:02x},"_cf, m[2]);
    rectangle(m, 15, out);
}

void delete_windows(Session& /*session*/, const Message& m, Text& out) {
    out.add("delete ");
    window_list(m, 2, out);
}

constexpr auto map_positions = names({{0, "behind"}, {1, "before"}, {2, "top"}}, "???");

// byte 3: where   byte 4 ...: which
void map_windows(Session& /*session*/, const Message& m, Text& out) {
    out.print("map {} "_cf, map_positions[m[3]]);
    window_list(m, 4, out);
}

void unmap_windows(Session& /*session*/, const Message& m, Text& out) {
    out.add("unmap ");
    window_list(m, 2, out);
}

void move_window(Session& /*session*/, const Message& m, Text& out) {
    out.add("move window: ");
    window_id(m[2], out);
}

void change_attributes(Session& /*session*/, const Message& m, Text& out) {
    out.add("change window attributes ");
    window_id(m[2], out);
}

void refresh_window(Session& /*session*/, const Message& m, Text& out) {
    out.add("refresh window ");
    window_id(m[2], out);
}

void set_softkeys(Session& /*session*/, const Message& m, Text& out) {
    out.add("set softkeys status ");
    window_id(m[2], out);
}

constexpr auto commands = opcodes({{0, create_window},
                                   {1, delete_windows},
                                   {2, map_windows},
                                   {3, unmap_windows},
                                   {4, move_window},
                                   {5, change_attributes},
                                   {6, refresh_window},
                                   {7, set_softkeys}});

// An unknown command is shown behind the last known one, one more mark for each since then. A trace can hold
// unknown commands without end, and nobody counts beyond some thousand marks: the text grows to this size,
// then stays.
constexpr std::size_t longest_remembered = 16384;
constexpr std::string_view unknown_mark = "???";

}  // namespace

void window_command(Session& session, const Message& m, Text& out) {
    std::string& last = session.change(session.he.window_command);
    const std::size_t begin = out.size();
    if (commands.write(m[1], session, m, out)) {
        last.assign(out.from(begin));
        return;
    }
    if (last.size() + unknown_mark.size() <= longest_remembered) last += unknown_mark;
    out.add(last);
}

}  // namespace ztdecode::he
