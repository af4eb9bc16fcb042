#include <array>

#include "core/tables.hpp"
#include "digital/audio.hpp"
#include "digital/digital.hpp"
#include "digital/options/options.hpp"
#include "digital/segments.hpp"

// System to digital set. byte 0: opcode (bit 7 is ignored), then its parameters.

namespace ztdecode::digital {

namespace {

bool printable(std::uint8_t c) { return c >= 0x20 && c < 0x7F; }

// byte 1: 1 start, 2 stop
void production_test(Decoding& d) {
    static constexpr auto tests =
        names({{1, "start keyboard test"}, {2, "stop keyboard test"}}, "unknown parameter");
    if (d.length() == 2) {
        d.print("production test: {test}"_cf, tests[d[1]]);
    } else {
        d.add("production test: illegal length");
    }
}

// A synchronous V24 module (6) has no decoder in this direction.
constexpr std::array<Decoder, 14> module_decoders = {
    v24::from_system, s0::from_system, mpc::from_system, eak::from_system, eak::from_system,
    z::from_system,   nullptr,         nullptr,          nullptr,          ks::from_system,
    ks::from_system,  ks::from_system, ks::from_system,  ks::from_system,
};

// byte 1: sub-device address in bits 0-2; the module's type is the one that its last message to the system
// gave
void subdevice_command(Decoding& d) {
    module_label(d, d[1] | 0xF8);
    const std::uint8_t type = *d.session().digital.modules.types[d.on(d[1] & 7)];
    const Decoder decoder = type < module_decoders.size() ? module_decoders[type] : nullptr;
    if (decoder != nullptr) {
        decoder(d);
    } else {
        d.add("subdev command");
    }
}

// byte 1, where there is one: 0 2G, 1 3G
void warm_start(Decoding& d) {
    static constexpr auto modes =
        names({{0, "warmstart mode 2G"}, {1, "warmstart mode 3G"}}, "warmstart bizarre");
    switch (d.length()) {
        case 1:
            d.add("warmstart simple");
            break;
        case 2:
            d.value("warm_start_mode", modes[d[1]]);
            break;
        default:
            d.add("warmstart bizarre");
            break;
    }
}

// byte 2: number of the led
constexpr auto led_states =
    opcodes({{0, "", [](Decoding& d) { d.print("led {led} OFF"_cf, d[2]); }},
             {1, "", [](Decoding& d) { d.print("red led {led} ON"_cf, d[2]); }},
             {2, "", [](Decoding& d) { d.print("red led {led} fast flash"_cf, d[2]); }},
             {3, "", [](Decoding& d) { d.print("red led {led} slow flash"_cf, d[2]); }},
             {4, "", [](Decoding& d) { d.print("green led {led} ON"_cf, d[2]); }},
             {5, "", [](Decoding& d) { d.print("green led {led} fast flash ON "_cf, d[2]); }},
             {6, "", [](Decoding& d) { d.print("green led {led} slow flash ON "_cf, d[2]); }},
             {7, "", "all leds OFF"}},
            "led bizarre");

// byte 1: what the led does
void led(Decoding& d) { led_states.write(d, d[1]); }

// bytes 3 ...: characters. The line is told by the whole opcode byte, bit 7 included: 0xA7 writes line 2.
void write_display_line(Decoding& d) {
    const Condition first = d[0] == 0x27;
    d.value("line", {Kind::number, true, 0, first.holds ? 1 : 2, first.place},
            [&] { d.add(first.holds ? "write line 1" : "write line 2"); });
    if (d.length() >= 4) {
        d.add(" \"");
        d.text_as("display_text", 3, d.length() - 3,
                  [](std::uint8_t c) { return printable(c) ? c : std::uint8_t{'?'}; });
        d.add("\"");
    }
    d.add("\n");
}

// byte 1: option   byte 2: state
void metastate(Decoding& d) {
    static constexpr auto states = names({{0, "disable"}, {1, "active"}, {2, "wake up"}}, "inconnu");
    d.print("metastate option {option:x}= {option_state}"_cf, d[1], states[d[2]]);
}

// byte 1: channel of the voice   byte 2: channel of the announce
void voice_channel(Decoding& d) {
    static constexpr auto channels = names({{0, "No"}, {1, "B1"}, {2, "B2"}, {3, "B3"}}, "unknown channel");
    d.print("voice channel: voice= {voice_channel}, announce= {announce_channel}"_cf, channels[d[1]],
            channels[d[2]]);
}

void unknown_ringer_mode(Decoding& d) { d.print("external ringer, unknown mode 0x{-:02x}"_cf, d[1]); }

constexpr auto ringer_modes = opcodes(
    {{0, "", "external ringer off"}, {1, "", "external ringer on"}, {2, "", "external ringer, mode follow"}},
    unknown_ringer_mode);

// byte 1: mode
void external_ringer(Decoding& d) { ringer_modes.write(d, d[1]); }

// byte 1: line   byte 2: bit 1 on
void cursor(Decoding& d) {
    if (d.on(d.bit(2, 1))) {
        d.print("cursor on, line {line}"_cf, d[1]);
    } else {
        d.print("cursor off, line {line}"_cf, d[1]);
    }
}

void side_tone(Decoding& d) { d.value("side_tone", flag(d[1] != 0, "side tone on", "side tone off")); }

// Of 13 bytes: byte 2 what to do with refusals, byte 3 what is downloaded, bytes 10 to 12 its length.
// Otherwise: byte 3 identifier, bytes 10 to 13 length.
void download_request(Decoding& d) {
    static constexpr auto refusals =
        names({{0, ", accept all refusals"}, {1, ", will override software lock"}}, "");
    static constexpr auto contents = names({{0, ", patches"}, {1, ", application"}, {2, ", data"}}, "");
    static constexpr auto identifiers =
        names({{0xAA, "base binary"}, {0xCC, "patch binary"}}, "unknown identifier");
    d.add("request");
    if (d.length() == 13) {
        d.print("{refusals}{download_content}, length 0x{download_length:06x}"_cf, refusals[d[2]],
                contents[d[3]], d.u24(10));
    } else {
        d.print(", {download_identifier}, length 0x{download_length:08x}"_cf, identifiers[d[3]], d.u32(10));
    }
}

// The packet number of "data" is shown low byte first behind a fixed 03.
constexpr auto download_steps = opcodes(
    {{0x00, "download_suggest", "suggest"},
     {0x01, "download_request", download_request},
     {0x03, "download_data",
      [](Decoding& d) { d.print("data, number: 0x03{packet_number:04x}"_cf, d.low16(2)); }},
     {0x04, "download_end", "end"},
     {0x06, "download_checksum", "checksum"},
     {0x08, "download_set_windows", [](Decoding& d) { d.print("set windows 0x{windows:02x}"_cf, d[2]); }},
     {0x09, "download_data_extended",
      [](Decoding& d) { d.print("data extended, number: 0x{packet_number:06x}"_cf, d.u24(2)); }}},
    "");

// byte 1: step
void download_protocol(Decoding& d) {
    d.add("download protocol ");
    download_steps.write(d, d[1]);
}

constexpr auto commands = opcodes(
    {
        {0x00, "nop", "nop"},
        {0x01, "production_test", production_test},
        {0x02, "subdevice_command", subdevice_command},
        {0x03, "software_reset", "software reset"},
        {0x04, "warm_start", warm_start},
        {0x06, "subdevice_reset", "subdev reset"},
        {0x07, "loop_back_on", "loop back On"},
        {0x08, "loop_back_off", "loop back Off"},
        {0x0B, "super_message", "super message"},
        {0x0C, "segment", segment_command},
        {0x11, "cti_abca", "CTI: abca"},
        {0x17, "super_message_type_2", "super message type 2"},
        {0x18, "debug_message", "debug message"},
        {0x21, "led", led},
        {0x22, "start_buzzer", "start buzzer"},
        {0x23, "stop_buzzer", "stop buzzer"},
        {0x24, "enable_dtmf", "enable DTMF"},
        {0x25, "disable_dtmf", "disable DTMF"},
        {0x26, "clear_display", "clear display"},
        {0x27, "write_display_line", write_display_line},
        {0x28, "write_display_line", write_display_line},
        {0x29, "voice_mode", voice_mode},
        {0x2A, "version_inquiry", "version inquiry"},
        {0x2B, "are_you_there", "are you there?"},
        {0x2C, "metastate", metastate},
        {0x2D, "status_inquiry", "status inquiry"},
        {0x2E, "subdevice_state_inquiry", "subdev state inquiry"},
        {0x30, "dtmf_and_clock_time", "DTMF & clock time"},
        {0x31, "set_clock", "set clock command"},
        {0x32, "voice_channel", voice_channel},
        {0x33, "external_ringer", external_ringer},
        {0x35, "cursor", cursor},
        {0x36, "special_character", "special char"},
        {0x38, "clock_and_timer_position", "clock & timer position"},
        {0x39, "lcd_contrast", "LCD contrast"},
        {0x3A, "audio_idle", "audio idle"},
        {0x3B, "speaker_volume", "speaker volume"},
        {0x3C, "beep", beep},
        {0x3D, "side_tone", side_tone},
        {0x3E, "ringing_cadence", "ringing cadence"},
        {0x3F, "mute", mute},
        {0x40, "feedback_dtmf", feedback_dtmf},
        {0x41, "key_release", key_release},
        {0x42, "trace_on", "trace on"},
        {0x43, "trace_off", "trace off"},
        {0x44, "read_peripheral", "read peripheral"},
        {0x45, "write_peripheral", "write peripheral"},
        {0x46, "all_icons_off", "all icons off"},
        {0x47, "icons", "icons command"},
        {0x48, "amplified_handset", "amplified handset"},
        {0x49, "audio_configuration", audio_configuration},
        {0x4A, "audio_padded_path", "audio padded path"},
        {0x4D, "loudspeaker", loudspeaker},
        {0x4E, "announce", announce},
        {0x4F, "ring", ring},
        {0x50, "download_protocol", download_protocol},
        {0x60, "cti_local_message", "CTI: local msg"},
        {0x61, "cti_trace_system_to_vta", "CTI: trace dhs->vta"},
        {0x62, "cti_trace_vta_to_system", "CTI: trace vta->dhs"},
        {0x63, "cti_trace_system_to_subdevice", "CTI: trace dhs->subd"},
        {0x64, "cti_trace_subdevice_to_system", "CTI: trace subd->dhs"},
        {0x6E, "cti_local_super_message", "CTI: local super msg"},
        {0x6F, "cti_local_message_combined", "CTI: local msg combine"},
    },
    "ERR: message inconnu");
}  // namespace

void from_system(Decoding& d) {
    if (d.length() == 0) return;
    d.status = commands.write(d, d[0] & 0x7F) ? Status::recognised : Status::unknown;
}

}  // namespace ztdecode::digital
