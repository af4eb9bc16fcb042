#include "digital/audio.hpp"

#include "core/tables.hpp"
#include "decode/identity.hpp"

namespace ztdecode {

namespace {

std::string_view off_or_on(std::uint8_t value) { return value == 0 ? "off" : "on"; }

// byte 2: speaker gain, 0x80 is mute   byte 3: sending gain
void handsfree(const Message& m, Text& out) {
    constexpr std::uint8_t speaker_mute = 0x80;
    if (m[2] == speaker_mute) {
        out.print("new voice mode: handsfree, speaker mute, sending {} dB"_cf, half_decibels(m[3]));
    } else {
        out.print("new voice mode: handsfree, speaker {} dB, sending {} dB"_cf, half_decibels(m[2]),
                  half_decibels(m[3]));
    }
}

}  // namespace

// byte 1: mode. Old modes have a volume digit behind their parameters, new ones (0x10 ...) gains.
void voice_mode(Session& /*session*/, Message& m, Text& out) {
    switch (m[1]) {
        case 0x00:
            out.add("voice mode: idle");
            break;
        case 0x01:
            out.add("voice mode: handset");
            break;
        case 0x02:
            out.print("voice mode: group listen  volume={:x}"_cf, m[2]);
            break;
        case 0x03:
            out.print("voice mode: on_hook dial  volume={:x}"_cf, m[2]);
            break;
        case 0x04:
            out.print("voice mode: handsfree  volume={:x}"_cf, m[2]);
            break;
        case 0x05:
            out.print("voice mode: announce loudspeaker  volume={:x}"_cf, m[2]);
            break;
        case 0x06:
            out.print("voice mode: ringing, melodie {}, {}  volume={:x}"_cf, m[2], ring_cadence(m[3]), m[4]);
            break;
        case 0x10:
            out.add("new voice mode: idle");
            break;
        case 0x11:
            out.print("new voice mode: handset, receiving {} dB, sending {} dB"_cf, half_decibels(m[2]),
                      half_decibels(m[3]));
            break;
        case 0x12:
            out.print("new voice mode: headset, receiving {} dB, sending {} dB"_cf, half_decibels(m[2]),
                      half_decibels(m[3]));
            break;
        case 0x13:
            handsfree(m, out);
            break;
        default:
            out.add("voice mode: ???");
            break;
    }
}

void beep(Session& /*session*/, Message& m, Text& out) {
    constexpr auto beeps =
        names({{3, "stop beep"}, {4, "start beep"}, {5, "define beep"}}, "unknown sub command");
    out.print("beep: {}"_cf, m.length() == 1 ? "play classical beep" : beeps[m[1]]);
}

// 0 mutes.
void mute(Session& /*session*/, Message& m, Text& out) { out.print("mute {}"_cf, m[1] == 0 ? "on" : "off"); }

void feedback_dtmf(Session& /*session*/, Message& m, Text& out) {
    out.print("feedback dtmf {}"_cf, off_or_on(m[1]));
    if (m.length() == 3) out.print(", gain {} "_cf, m[2] == 0 ? "-30 db (default)" : "-36 db");
}

void key_release(Session& /*session*/, Message& m, Text& out) {
    out.print("key release {}"_cf, off_or_on(m[1]));
}

void loudspeaker(Session& /*session*/, Message& m, Text& out) {
    if (m[1] == 0) {
        out.add("loudspeaker off");
    } else {
        out.print("loudspeaker on, volume= {} dB"_cf, half_decibels(m[2]));
    }
}

void announce(Session& /*session*/, Message& m, Text& out) { out.print("announce {}"_cf, off_or_on(m[1])); }

// byte 2: melody   byte 3: cadence   byte 4: volume   byte 5: beeps   byte 6: bit 7 silent, bits 0-1
// progressive
void ring(Session& /*session*/, Message& m, Text& out) {
    out.print("ring {}"_cf, off_or_on(m[1]));
    if (m[1] == 0) return;
    out.add("\n");
    out.print("\t\t  melody: #{} \n"_cf, m[2]);
    out.print("\t\t  cadence: #{} ({}) \n"_cf, m[3], ring_cadence(m[3]));
    out.print("\t\t  volume: {} dB \n"_cf, half_decibels(m[4]));
    out.print("\t\t  beep number: 0x{:02x} \n"_cf, m[5]);
    out.print("\t\t  silent: {} \n"_cf, m.bit(6, 7) ? "yes" : "no");
    out.print("\t\t  progressive: {}"_cf, m[6] & 3);
}

}  // namespace ztdecode
