#include "core/tables.hpp"
#include "decode/identity.hpp"
#include "digital/audio.hpp"
#include "digital/digital.hpp"
#include "digital/options/options.hpp"
#include "digital/segments.hpp"

// System to digital set. byte 0: opcode (bit 7 is ignored), then its parameters.

namespace ztdecode {

namespace {

bool printable(std::uint8_t c) { return c >= 0x20 && c < 0x7F; }

// byte 1: 1 start, 2 stop
void production_test(Session& /*session*/, Message& m, Text& out) {
    constexpr auto tests =
        names({{1, "start keyboard test"}, {2, "stop keyboard test"}}, "unknown parameter");
    out.print("production test: {}"_cf, m.length() == 2 ? tests[m[1]] : "illegal length");
}

using OptionDecoder = void (*)(Session&, const Message&, Text&);

// A synchronous V24 module (6) has no decoder in this direction.
constexpr std::array<OptionDecoder, 14> option_decoders = {
    decode_v24_out, decode_s0_out, decode_mpc_out, decode_eak_out, decode_eak_out,
    decode_z_out,   nullptr,       nullptr,        nullptr,        decode_ks_out,
    decode_ks_out,  decode_ks_out, decode_ks_out,  decode_ks_out,
};

// byte 1: sub-device address in bits 0-2; the module's type is the one that its last message to the system
// gave
void sub_device_command(Session& session, Message& m, Text& out) {
    option_label(session, m[1] | 0xF8, out);
    const std::uint8_t type = session.digital.modules->types[m[1] & 7];
    const OptionDecoder decoder = type < option_decoders.size() ? option_decoders[type] : nullptr;
    if (decoder != nullptr) {
        decoder(session, m, out);
    } else {
        out.add("subdev command");
    }
}

// byte 1, where there is one: 0 2G, 1 3G
void warm_start(Session& /*session*/, Message& m, Text& out) {
    constexpr auto modes = names({{0, "warmstart mode 2G"}, {1, "warmstart mode 3G"}}, "warmstart bizarre");
    switch (m.length()) {
        case 1:
            out.add("warmstart simple");
            break;
        case 2:
            out.add(modes[m[1]]);
            break;
        default:
            out.add("warmstart bizarre");
            break;
    }
}

// byte 1: what the led does   byte 2: number of the led
void led_command(Session& /*session*/, Message& m, Text& out) {
    switch (m[1]) {
        case 0:
            out.print("led {} OFF"_cf, m[2]);
            break;
        case 1:
            out.print("red led {} ON"_cf, m[2]);
            break;
        case 2:
            out.print("red led {} fast flash"_cf, m[2]);
            break;
        case 3:
            out.print("red led {} slow flash"_cf, m[2]);
            break;
        case 4:
            out.print("green led {} ON"_cf, m[2]);
            break;
        case 5:
            out.print("green led {} fast flash ON "_cf, m[2]);
            break;
        case 6:
            out.print("green led {} slow flash ON "_cf, m[2]);
            break;
        case 7:
            out.add("all leds OFF");
            break;
        default:
            out.add("led bizarre");
            break;
    }
}

// bytes 3 ...: characters. The line is told by the whole opcode byte, bit 7 included: 0xA7 writes line 2.
void write_display_line(Session& /*session*/, Message& m, Text& out) {
    out.add(m[0] == 0x27 ? "write line 1" : "write line 2");
    if (m.length() >= 4) {
        out.add(" \"");
        out.copy_as(m, 3, m.length() - 3,
                    [](std::uint8_t c) { return printable(c) ? c : std::uint8_t{'?'}; });
        out.add("\"");
    }
    out.add("\n");
}

// byte 1: option   byte 2: state
void metastate(Session& /*session*/, Message& m, Text& out) {
    constexpr auto states = names({{0, "disable"}, {1, "active"}, {2, "wake up"}}, "inconnu");
    out.print("metastate option {:x}= {}"_cf, m[1], states[m[2]]);
}

// byte 1: channel of the voice   byte 2: channel of the announce
void voice_channel(Session& /*session*/, Message& m, Text& out) {
    constexpr auto channels = names({{0, "No"}, {1, "B1"}, {2, "B2"}, {3, "B3"}}, "unknown channel");
    out.print("voice channel: voice= {}, announce= {}"_cf, channels[m[1]], channels[m[2]]);
}

void external_ringer(Session& /*session*/, Message& m, Text& out) {
    switch (m[1]) {
        case 0:
            out.add("external ringer off");
            break;
        case 1:
            out.add("external ringer on");
            break;
        case 2:
            out.add("external ringer, mode follow");
            break;
        default:
            out.print("external ringer, unknown mode 0x{:02x}"_cf, m[1]);
            break;
    }
}

// byte 1: line   byte 2: bit 1 on
void cursor(Session& /*session*/, Message& m, Text& out) {
    if (m.bit(2, 1)) {
        out.print("cursor on, line {}"_cf, m[1]);
    } else {
        out.print("cursor off, line {}"_cf, m[1]);
    }
}

void side_tone(Session& /*session*/, Message& m, Text& out) {
    out.add(m[1] == 0 ? "side tone off" : "side tone on");
}

void audio_configuration(Session& session, Message& m, Text& out) { audio_config(session, m, out); }

// Of 13 bytes: byte 2 what to do with refusals, byte 3 what is downloaded, bytes 10 to 12 its length.
// Otherwise: byte 3 identifier, bytes 10 to 13 length.
void download_request(const Message& m, Text& out) {
    constexpr auto refusals = names({{0, ", accept all refusals"}, {1, ", will override software lock"}}, "");
    constexpr auto contents = names({{0, ", patches"}, {1, ", application"}, {2, ", data"}}, "");
    constexpr auto identifiers = names({{0xAA, "base binary"}, {0xCC, "patch binary"}}, "unknown identifier");
    out.add("request");
    if (m.length() == 13) {
        out.add(refusals[m[2]]);
        out.add(contents[m[3]]);
        out.print(", length 0x{:02x}{:02x}{:02x}"_cf, m[10], m[11], m[12]);
    } else {
        out.print(", {}"_cf, identifiers[m[3]]);
        out.print(", length 0x{:02x}{:02x}{:02x}{:02x}"_cf, m[10], m[11], m[12], m[13]);
    }
}

// byte 1: step. The packet number of "data" is shown low byte first behind a fixed 03.
void download_protocol(Session& /*session*/, Message& m, Text& out) {
    out.add("download protocol ");
    switch (m[1]) {
        case 0:
            out.add("suggest");
            break;
        case 1:
            download_request(m, out);
            break;
        case 3:
            out.print("data, number: 0x03{:02x}{:02x}"_cf, m[3], m[2]);
            break;
        case 4:
            out.add("end");
            break;
        case 6:
            out.add("checksum");
            break;
        case 8:
            out.print("set windows 0x{:02x}"_cf, m[2]);
            break;
        case 9:
            out.print("data extended, number: 0x{:02x}{:02x}{:02x}"_cf, m[2], m[3], m[4]);
            break;
        default:
            break;
    }
}

constexpr auto commands = route_opcodes({
    {0x00, "nop"},
    {0x01, production_test},
    {0x02, sub_device_command},
    {0x03, "software reset"},
    {0x04, warm_start},
    {0x06, "subdev reset"},
    {0x07, "loop back On"},
    {0x08, "loop back Off"},
    {0x0B, "super message"},
    {0x0C, segment_command},
    {0x11, "CTI: abca"},
    {0x17, "super message type 2"},
    {0x18, "debug message"},
    {0x21, led_command},
    {0x22, "start buzzer"},
    {0x23, "stop buzzer"},
    {0x24, "enable DTMF"},
    {0x25, "disable DTMF"},
    {0x26, "clear display"},
    {0x27, write_display_line},
    {0x28, write_display_line},
    {0x29, voice_mode},
    {0x2A, "version inquiry"},
    {0x2B, "are you there?"},
    {0x2C, metastate},
    {0x2D, "status inquiry"},
    {0x2E, "subdev state inquiry"},
    {0x30, "DTMF & clock time"},
    {0x31, "set clock command"},
    {0x32, voice_channel},
    {0x33, external_ringer},
    {0x35, cursor},
    {0x36, "special char"},
    {0x38, "clock & timer position"},
    {0x39, "LCD contrast"},
    {0x3A, "audio idle"},
    {0x3B, "speaker volume"},
    {0x3C, beep},
    {0x3D, side_tone},
    {0x3E, "ringing cadence"},
    {0x3F, mute},
    {0x40, feedback_dtmf},
    {0x41, key_release},
    {0x42, "trace on"},
    {0x43, "trace off"},
    {0x44, "read peripheral"},
    {0x45, "write peripheral"},
    {0x46, "all icons off"},
    {0x47, "icons command"},
    {0x48, "amplified handset"},
    {0x49, audio_configuration},
    {0x4A, "audio padded path"},
    {0x4D, loudspeaker},
    {0x4E, announce},
    {0x4F, ring},
    {0x50, download_protocol},
    {0x60, "CTI: local msg"},
    {0x61, "CTI: trace dhs->vta"},
    {0x62, "CTI: trace vta->dhs"},
    {0x63, "CTI: trace dhs->subd"},
    {0x64, "CTI: trace subd->dhs"},
    {0x6E, "CTI: local super msg"},
    {0x6F, "CTI: local msg combine"},
});

}  // namespace

void dhs2rn(Session& session, Message& m, Text& out) {
    if (m.length() == 0) return;
    m.status = Status::recognised;
    if (!commands.write(m[0] & 0x7F, session, m, out)) {
        m.status = Status::unknown;
        out.add("ERR: message inconnu");
    }
}

}  // namespace ztdecode
