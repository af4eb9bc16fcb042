#include "decode/routes/hub.hpp"

#include <array>

#include "core/phrase.hpp"
#include "core/tables.hpp"

namespace ztdecode::hub {

namespace {

// Codes 10 to 12 are those of the sets 1 to 3.
constexpr std::uint8_t first_set = 0x10;
constexpr std::uint8_t last_set = 0x12;

using SetPhrases = Names<3>;

// What the set gets or sends stands below.
void set_of_code(Decoding& d, const SetPhrases& phrases, std::string_view before) {
    Word phrase = phrases[d.code().as(d.code().number - first_set + 1)];
    phrase.kind = Kind::number;
    add_phrase(d, "set_number", phrase, before);
}

void to_set(Decoding& d) {
    static constexpr SetPhrases phrases({{1, " to set 1"}, {2, " to set 2"}, {3, " to set 3"}}, "");
    set_of_code(d, phrases, " to set ");
}

void from_set(Decoding& d) {
    static constexpr SetPhrases phrases({{1, "from set 1"}, {2, "from set 2"}, {3, "from set 3"}}, "");
    set_of_code(d, phrases, "from set ");
}

// "1B.2C": a version in hexadecimal digits.
struct HexVersion {
    Number number;
    bool capitals;

    std::size_t bound() const noexcept { return 8; }
    char* write(char* at) const {
        if (capitals) return write_format(at, "{-:02X}.{-:02X}"_cf, number >> 8, number & 0xFF);
        return write_format(at, "{-:02x}.{-:02x}"_cf, number >> 8, number & 0xFF);
    }
    Meaning meaning() const noexcept { return {Kind::version, true, 0, number.number, number.place}; }
};

// byte 2: identifier   bytes 3-4: version, may be left out   bytes 5-6: address, may be left out
void download_request(Decoding& d) {
    const std::uint32_t length = d.length();
    if (length != 3 && length != 5 && length != 7) {
        d.add("ERR: bad length, download request");
        return;
    }
    d.print("download request, binary identifier: {download_identifier:02x}"_cf, d[2]);
    if (length >= 5) d.print(" version: {software_version}"_cf, HexVersion{d.u16(3), true});
    if (length == 7) d.print(" begin address: {download_address:04X}"_cf, d.u16(5));
}

// bytes 2-3: packet number; bit 7 of byte 2 is the sequence bit
void download_data(Decoding& d) {
    d.print("download data, packet number: {packet_number:04X}, seq: {sequence_bit}"_cf, d.u16(2) & 0x7FFF,
            d[2] >> 7);
}

// Whether the message has the length that its code wants; otherwise the complaint is all that is said of it.
bool has_length(std::uint32_t wanted, std::string_view complaint, Decoding& d) {
    if (d.length() == wanted) return true;
    d.add(complaint);
    return false;
}

constexpr std::string_view bad_length = "ERR: bad length";

void set_status(Decoding& d) {
    static constexpr auto activities = names({{0, "idle"}, {1, "active"}}, "???");
    if (!has_length(4, bad_length, d)) return;
    d.print("set {set_number} status: {set_status}"_cf, d[2], activities[d[3]]);
}

void set_channel_mode1(Decoding& d) {
    if (!has_length(4, bad_length, d)) return;
    d.print("set {set_number} set channel B{channel} (mode 1)"_cf, d[2], d[3]);
}

void set_channel_mode2(Decoding& d) {
    if (!has_length(4, bad_length, d)) return;
    d.print("set {set_number} set channel B{channel} (mode 2)"_cf, d[2], d[3]);
}

void anv_number_request(Decoding& d) {
    static constexpr auto softwares = names({{0, "ROM soft"}, {1, "RAM soft"}}, "??? soft");
    d.print("anv number request for {software}"_cf, softwares[d[2]]);
}

Word on_or_off(const Byte& value) { return flag(value == 1, "ON", "OFF"); }

void led(Decoding& d) { d.print("set led {led_state}"_cf, on_or_off(d[3])); }

void test_clock(Decoding& d) { d.print("output test clock {test_clock}"_cf, on_or_off(d[3])); }

constexpr std::string_view bad_debug_length = "ERR bad length";

// Two times count in steps of 8 ms, the third in steps of 100 ms.
void supply_on_time(Decoding& d) {
    if (!has_length(4, bad_debug_length, d)) return;
    d.print("tempo alim on= {supply_on_time} ms"_cf, d[3] * 8);
}

void synchro_time(Decoding& d) {
    if (!has_length(4, bad_debug_length, d)) return;
    d.print("tempo wait synchro= {synchro_wait_time} ms"_cf, d[3] * 8);
}

void cooling_time(Decoding& d) {
    if (!has_length(4, bad_debug_length, d)) return;
    d.print("tempo alim cooling= {cooling_time} ms"_cf, d[3] * 100);
}

constexpr auto debug_commands = opcodes({{0x01, "debug_read_synchros", "read synchros"},
                                         {0x02, "debug_led", led},
                                         {0x03, "debug_test_clock", test_clock},
                                         {0x04, "debug_supply_on_time", supply_on_time},
                                         {0x05, "debug_read_p1", "read P1 "},
                                         {0x06, "debug_write_p1", "write P1 "},
                                         {0x07, "debug_read_p3", "read P3 "},
                                         {0x08, "debug_write_p3", "write P3 "},
                                         {0x09, "debug_synchro_wait_time", synchro_time},
                                         {0x0A, "debug_cooling_time", cooling_time}},
                                        "unknown");

constexpr std::string_view no_content = "ERR: no content";

// byte 2: what to do
void debug_command(Decoding& d) {
    if (d.length() < 3) {
        d.add(no_content);
        return;
    }
    d.add("debug: ");
    debug_commands.write(d, d[2]);
}

constexpr auto commands = opcodes({{0x01, "download_request", download_request},
                                   {0x04, "download_data", download_data},
                                   {0x05, "download_end", "download end"},
                                   {0x07, "download_checksum", "download checksum"},
                                   {0x10, "to_set", to_set},
                                   {0x11, "to_set", to_set},
                                   {0x12, "to_set", to_set},
                                   {0x13, "set_status", set_status},
                                   {0x14, "set_channel", set_channel_mode1},
                                   {0x15, "set_channel", set_channel_mode2},
                                   {0x16, "anv_number_request", anv_number_request},
                                   {0x18, "set_repeater_mode", "set repeater mode"},
                                   {0x19, "maintenance_timer", "maintenance timer"},
                                   {0x20, "version_inquiry", "version inquiry"},
                                   {0x21, "status_inquiry", "status inquiry"},
                                   {0x30, "read_peripheral", "read peripheral"},
                                   {0x31, "write_peripheral", "write peripheral"},
                                   {0x32, "debug_command", debug_command}},
                                  "unknown message");

// bytes 2-3: packet number; bit 7 of byte 2 is the sequence bit   byte 4: status
void download_ack(Decoding& d) {
    d.print(
        "download ack, packet number: {packet_number:04X}, status: {acknowledgement}  seq: {sequence_bit}"_cf,
        d.u16(2) & 0x7FFF, either(d[4] == 0x08, "OK", "BAD"), d[2] >> 7);
}

void checksum_ack(Decoding& d) {
    d.print("download checksum ack  status: {checksum_status}"_cf, either(d[2] == 1, "OK", "BAD"));
}

void set_down(Decoding& d) { d.print("set {set_number} down"_cf, d[2]); }

// The number is text that ends at its zero byte, wherever the message ends.
void anv_number_response(Decoding& d) {
    d.print("anv number response for {software} soft: "_cf, either(d[2] == 0, "ROM", "RAM"));
    d.text_to_zero("anv_number", 3, message_capacity);
}

void version_response(Decoding& d) {
    if (!has_length(5, "ERR: bad length in version response", d)) return;
    d.print("version response ROM: {rom_version:02x}, RAM: {ram_version}"_cf, d[2],
            HexVersion{d.u16(3), false});
}

void status_response(Decoding& d) {
    static constexpr auto states = names({{0, "IDLE"},
                                          {1, "OK"},
                                          {2, "ALIM"},
                                          {3, "SYNC WAIT"},
                                          {4, "RESET WAIT"},
                                          {5, "BAD"},
                                          {6, "ALIM REST ON"},
                                          {7, "ALIM REST OFF"}},
                                         "???");
    if (!has_length(5, "ERR: bad length in status response", d)) return;
    d.print("status response, set1 {set1_status}, set2 {set2_status}, set3 {set3_status}"_cf, states[d[2]],
            states[d[3]], states[d[4]]);
}

// byte 3: who is without synchronisation
void synchros(Decoding& d) {
    static constexpr std::array<std::string_view, 4> names = {"dhs ", "set1 ", "set2 ", "set3 "};
    if (d.on(d[3] == 0)) {
        d.add("synchros response: all OK");
        return;
    }
    d.add("synchros response: OK except ");
    for (unsigned n = 0; n < names.size(); ++n) {
        if (d.bit(3, n).holds) d.value("without_synchro", Word{names[n], 1U << n, true, d[3].place});
    }
}

constexpr auto debug_answers = opcodes({{0x01, "debug_synchros", synchros},
                                        {0x05, "debug_p1_value", "P1 value"},
                                        {0x07, "debug_p3_value", "P3 value"}},
                                       "unknown");

// byte 2: what was asked for
void debug_answer(Decoding& d) {
    if (d.length() < 2) {
        d.add(no_content);
        return;
    }
    d.add("debug ");
    debug_answers.write(d, d[2]);
}

constexpr auto reports = opcodes({{0x02, "download_ack", download_ack},
                                  {0x06, "download_end_ack", "download end ack"},
                                  {0x08, "download_checksum_ack", checksum_ack},
                                  {0x10, "from_set", from_set},
                                  {0x11, "from_set", from_set},
                                  {0x12, "from_set", from_set},
                                  {0x13, "set_down", set_down},
                                  {0x17, "anv_number_response", anv_number_response},
                                  {0x1F, "unsolicited_message", "unsolicited message"},
                                  {0x20, "version_response", version_response},
                                  {0x21, "status_response", status_response},
                                  {0x30, "peripheral_content", "peripheral content"},
                                  {0x32, "debug_answer", debug_answer}},
                                 "unknown message");

// Hub messages carry each other, thousands deep: what a level of that does not need stays out of its stack
// frame, above all the tables' rows.

[[gnu::noinline]] void write_command(Decoding& d) { commands.write(d, d[1]); }

[[gnu::noinline]] void write_report(Decoding& d) { reports.write(d, d[1] & 0x7F); }

// What a set sends or gets stands behind the two bytes of the hub, as it would have been captured on the
// set's own link.
[[gnu::noinline]] void carried_message(Decoding& d) {
    const Carried level(d.session());
    if (!level) return;
    const Message message = decale(d.session(), d.message(), 2);
    Decoding carried(d, message);
    decode_carried(carried);
}

// (The last thing that is done for a hub's message, so that nothing of it has to stay on the stack.)
void message_of_a_set(Decoding& d, const Byte& code) {
    if (code.number < first_set || code.number > last_set) return;
    d.on(code);
    carried_message(d);
}

}  // namespace

// Towards the system bit 7 of the code does not count; from the system it does.
void to_system(Decoding& d) {
    d.status = Status::recognised;
    write_report(d);
    message_of_a_set(d, d[1] & 0x7F);
}

void from_system(Decoding& d) {
    d.status = Status::recognised;
    if (d.length() == 1) {
        d.add(no_content);
        return;
    }
    write_command(d);
    message_of_a_set(d, d[1]);
}

}  // namespace ztdecode::hub
