#include "decode/routes/hub.hpp"

#include "core/going_away.hpp"

namespace ztdecode {

namespace {

// What a set sends or gets stands behind the two bytes of the hub, as it would have been captured on the
// set's own link.
void carried_message(Session& session, const Message& m, Text& out) {
    const Carried level(session);
    if (!level) return;
    Message carried = decale(session, m, 2);
    carried.route = route_digital;
    decode_carried(session, carried, out);
}

std::string_view last_bit(bool set) { return set ? "1" : "0"; }

// byte 2: identifier   bytes 3-4: version, may be left out   bytes 5-6: address, may be left out
void download_request(Session& /*session*/, const Message& m, Text& out) {
    const std::uint32_t length = m.length();
    if (length != 3 && length != 5 && length != 7) {
        out.add("ERR: bad length, download request");
        return;
    }
    out.print("download request, binary identifier: {:02x}"_cf, m[2]);
    if (length >= 5) out.print(" version: {:02X}.{:02X}"_cf, m[3], m[4]);
    if (length == 7) out.print(" begin address: {:02X}{:02X}"_cf, m[5], m[6]);
}

// bytes 2-3: packet number; bit 7 of byte 2 is the sequence bit
void download_data(Session& /*session*/, const Message& m, Text& out) {
    out.add("download data");
    out.print(", packet number: {:02X}{:02X}, seq: {}"_cf, m[2] & 0x7FU, m[3], last_bit(m.bit(2, 7)));
}

constexpr auto to_set_labels = names({{0x10, " to set 1"}, {0x11, " to set 2"}, {0x12, " to set 3"}}, "");

void to_set(Session& session, const Message& m, Text& out) {
    out.add(to_set_labels[m[1]]);
    carried_message(session, m, out);
}

// Whether the message has the length that its code wants; otherwise the complaint is all that is said of it.
bool has_length(std::uint32_t wanted, std::string_view complaint, const Message& m, Text& out) {
    if (m.length() == wanted) return true;
    out.add(complaint);
    return false;
}

constexpr std::string_view bad_length = "ERR: bad length";

constexpr auto activities = names({{0, "idle"}, {1, "active"}}, "???");

void set_status(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(4, bad_length, m, out)) return;
    out.print("set {} status: {}"_cf, m[2], activities[m[3]]);
}

void set_channel_mode1(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(4, bad_length, m, out)) return;
    out.print("set {} set channel B{} (mode 1)"_cf, m[2], m[3]);
}

void set_channel_mode2(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(4, bad_length, m, out)) return;
    out.print("set {} set channel B{} (mode 2)"_cf, m[2], m[3]);
}

constexpr auto softwares = names({{0, "ROM soft"}, {1, "RAM soft"}}, "??? soft");

void anv_number_request(Session& /*session*/, const Message& m, Text& out) {
    out.print("anv number request for {}"_cf, softwares[m[2]]);
}

std::string_view on_or_off(std::uint8_t value) { return value == 1 ? "ON" : "OFF"; }

void led(Session& /*session*/, const Message& m, Text& out) { out.print("set led {}"_cf, on_or_off(m[3])); }

void test_clock(Session& /*session*/, const Message& m, Text& out) {
    out.print("output test clock {}"_cf, on_or_off(m[3]));
}

constexpr std::string_view bad_debug_length = "ERR bad length";

// Two times count in steps of 8 ms, the third in steps of 100 ms.
void supply_on_time(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(4, bad_debug_length, m, out)) return;
    out.print("tempo alim on= {} ms"_cf, m[3] * 8);
}

void synchro_time(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(4, bad_debug_length, m, out)) return;
    out.print("tempo wait synchro= {} ms"_cf, m[3] * 8);
}

void cooling_time(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(4, bad_debug_length, m, out)) return;
    out.print("tempo alim cooling= {} ms"_cf, m[3] * 100);
}

constexpr auto debug_commands = opcodes({{1, "read synchros"},
                                         {2, led},
                                         {3, test_clock},
                                         {4, supply_on_time},
                                         {5, "read P1 "},
                                         {6, "write P1 "},
                                         {7, "read P3 "},
                                         {8, "write P3 "},
                                         {9, synchro_time},
                                         {10, cooling_time}});

constexpr std::string_view no_content = "ERR: no content";

void debug_command(Session& session, const Message& m, Text& out) {
    if (m.length() < 3) {
        out.add(no_content);
        return;
    }
    out.add("debug: ");
    if (!debug_commands.write(m[2], session, m, out)) out.add("unknown");
}

constexpr auto commands = opcodes({{0x01, download_request},
                                   {0x04, download_data},
                                   {0x05, "download end"},
                                   {0x07, "download checksum"},
                                   {0x10, to_set},
                                   {0x11, to_set},
                                   {0x12, to_set},
                                   {0x13, set_status},
                                   {0x14, set_channel_mode1},
                                   {0x15, set_channel_mode2},
                                   {0x16, anv_number_request},
                                   {0x18, "set repeater mode"},
                                   {0x19, "maintenance timer"},
                                   {0x20, "version inquiry"},
                                   {0x21, "status inquiry"},
                                   {0x30, "read peripheral"},
                                   {0x31, "write peripheral"},
                                   {0x32, debug_command}});

// bytes 2-3: packet number; bit 7 of byte 2 is the sequence bit   byte 4: status
void download_ack(Session& /*session*/, const Message& m, Text& out) {
    out.add("download ack");
    out.print(", packet number: {:02X}{:02X}, status: {}  seq: {}"_cf, m[2] & 0x7FU, m[3],
              std::string_view(m[4] == 0x08 ? "OK" : "BAD"), last_bit(m.bit(2, 7)));
}

void checksum_ack(Session& /*session*/, const Message& m, Text& out) {
    out.print("download checksum ack  status: {}"_cf, std::string_view(m[2] == 1 ? "OK" : "BAD"));
}

constexpr auto from_set_labels =
    names({{0x10, "from set 1"}, {0x11, "from set 2"}, {0x12, "from set 3"}}, "");

void from_set(Session& session, const Message& m, Text& out) {
    out.add(from_set_labels[m[1] & 0x7F]);
    carried_message(session, m, out);
}

void set_down(Session& /*session*/, const Message& m, Text& out) { out.print("set {} down"_cf, m[2]); }

// The number is text that ends at its zero byte, wherever the message ends.
void anv_number_response(Session& /*session*/, const Message& m, Text& out) {
    out.print("anv number response for {} soft: "_cf, std::string_view(m[2] == 0 ? "ROM" : "RAM"));
    out.copy_string(m, 3, message_capacity);
}

void version_response(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(5, "ERR: bad length in version response", m, out)) return;
    out.print("version response ROM: {:02x}, RAM: {:02x}.{:02x}"_cf, m[2], m[3], m[4]);
}

constexpr auto set_states = names({{0, "IDLE"},
                                   {1, "OK"},
                                   {2, "ALIM"},
                                   {3, "SYNC WAIT"},
                                   {4, "RESET WAIT"},
                                   {5, "BAD"},
                                   {6, "ALIM REST ON"},
                                   {7, "ALIM REST OFF"}},
                                  "???");

void status_response(Session& /*session*/, const Message& m, Text& out) {
    if (!has_length(5, "ERR: bad length in status response", m, out)) return;
    out.print("status response, set1 {}, set2 {}, set3 {}"_cf, set_states[m[2]], set_states[m[3]],
              set_states[m[4]]);
}

// byte 3: who is without synchronisation
void synchros(Session& /*session*/, const Message& m, Text& out) {
    if (m[3] == 0) {
        out.add("synchros response: all OK");
        return;
    }
    out.add("synchros response: OK except ");
    if (m.bit(3, 0)) out.add("dhs ");
    if (m.bit(3, 1)) out.add("set1 ");
    if (m.bit(3, 2)) out.add("set2 ");
    if (m.bit(3, 3)) out.add("set3 ");
}

constexpr auto debug_answers = opcodes({{1, synchros}, {5, "P1 value"}, {7, "P3 value"}});

void debug_answer(Session& session, const Message& m, Text& out) {
    if (m.length() < 2) {
        out.add(no_content);
        return;
    }
    out.add("debug ");
    if (!debug_answers.write(m[2], session, m, out)) out.add("unknown");
}

constexpr auto reports = opcodes({{0x02, download_ack},
                                  {0x06, "download end ack"},
                                  {0x08, checksum_ack},
                                  {0x10, from_set},
                                  {0x11, from_set},
                                  {0x12, from_set},
                                  {0x13, set_down},
                                  {0x17, anv_number_response},
                                  {0x1F, "unsolicited message"},
                                  {0x20, version_response},
                                  {0x21, status_response},
                                  {0x30, "peripheral content"},
                                  {0x32, debug_answer}});

}  // namespace

// Towards the system bit 7 of the code does not count; from the system it does.
void hub2dhs(Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    if (!reports.write(m[1] & 0x7F, session, m, out)) out.add("unknown message");
}

void dhs2hub(Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    if (m.length() == 1) {
        out.add(no_content);
        return;
    }
    if (!commands.write(m[1], session, m, out)) out.add("unknown message");
}

}  // namespace ztdecode

void ztdecode::hub::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dhs2hub, d); }
void ztdecode::hub::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::hub2dhs, d); }
