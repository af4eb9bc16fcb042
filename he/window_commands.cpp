#include <string>

#include "core/tables.hpp"
#include "he/commands.hpp"
#include "he/pieces.hpp"

// byte 1: command   byte 2: window, or the number of windows where the command takes a list

namespace ztdecode::he {

namespace {

// byte 15 ... 22: place and size
void create_window(Decoding& d) {
    d.print("create window {window:02x},"_cf, d[2]);
    rectangle(d, 15);
}

void delete_windows(Decoding& d) {
    d.add("delete ");
    window_list(d, 2);
}

// byte 3: where   byte 4 ...: which
void map_windows(Decoding& d) {
    static constexpr auto positions = names({{0, "behind"}, {1, "before"}, {2, "top"}}, "???");
    d.print("map {map_position} "_cf, positions[d[3]]);
    window_list(d, 4);
}

void unmap_windows(Decoding& d) {
    d.add("unmap ");
    window_list(d, 2);
}

void move_window(Decoding& d) { d.print("move window: winId={window:02x}"_cf, d[2]); }

void change_attributes(Decoding& d) { d.print("change window attributes winId={window:02x}"_cf, d[2]); }

void refresh_window(Decoding& d) { d.print("refresh window winId={window:02x}"_cf, d[2]); }

void set_softkeys(Decoding& d) { d.print("set softkeys status winId={window:02x}"_cf, d[2]); }

// What an unknown command shows stands below.
constexpr auto commands = opcodes({{0x00, "create_window", create_window},
                                   {0x01, "delete_windows", delete_windows},
                                   {0x02, "map_windows", map_windows},
                                   {0x03, "unmap_windows", unmap_windows},
                                   {0x04, "move_window", move_window},
                                   {0x05, "change_window_attributes", change_attributes},
                                   {0x06, "refresh_window", refresh_window},
                                   {0x07, "set_softkeys", set_softkeys}},
                                  "");

// An unknown command is shown behind the last known one, one more mark for each since then. A trace can hold
// unknown commands without end, and nobody counts beyond some thousand marks: the text grows to this size,
// then stays.
constexpr std::size_t longest_remembered = 16384;
constexpr std::string_view unknown_mark = "???";

}  // namespace

void window_command(Decoding& d) {
    Session& session = d.session();
    const std::size_t begin = d.out().size();
    if (commands.write(d, d[1])) {
        session.set_anew(session.he.window_command).assign(d.out().from(begin));
        return;
    }
    std::string& last = session.change(session.he.window_command);
    if (!last.empty()) d.value("repeated_text", std::string_view(last));
    if (last.size() + unknown_mark.size() > longest_remembered) return;
    last += unknown_mark;
    d.add_word({unknown_mark, 0, true, d[1].place});
}

}  // namespace ztdecode::he
