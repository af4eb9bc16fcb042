#include "digital/audio.hpp"

#include <string>

#include "core/tables.hpp"
#include "decode/tables/identity.hpp"

namespace ztdecode::digital {

namespace {

Word off_or_on(const Byte& value) { return flag(value != 0, "on", "off"); }

// byte 2: volume
void group_listening(Decoding& d) { d.print("voice mode: group listen  volume={volume:x}"_cf, d[2]); }

void on_hook_dialling(Decoding& d) { d.print("voice mode: on_hook dial  volume={volume:x}"_cf, d[2]); }

void handsfree_of_old(Decoding& d) { d.print("voice mode: handsfree  volume={volume:x}"_cf, d[2]); }

void announce_loudspeaker(Decoding& d) {
    d.print("voice mode: announce loudspeaker  volume={volume:x}"_cf, d[2]);
}

// byte 2: melody   byte 3: cadence   byte 4: volume
void ringing(Decoding& d) {
    d.print("voice mode: ringing, melodie {melody}, {cadence}  volume={volume:x}"_cf, d[2],
            ring_cadence(d[3]), d[4]);
}

// byte 2: receiving gain   byte 3: sending gain
void handset(Decoding& d) {
    d.print("new voice mode: handset, receiving {receiving_gain} dB, sending {sending_gain} dB"_cf,
            half_decibels(d[2]), half_decibels(d[3]));
}

void headset(Decoding& d) {
    d.print("new voice mode: headset, receiving {receiving_gain} dB, sending {sending_gain} dB"_cf,
            half_decibels(d[2]), half_decibels(d[3]));
}

// byte 2: speaker gain, 0x80 is mute   byte 3: sending gain
void handsfree(Decoding& d) {
    constexpr int speaker_mute = 0x80;
    if (d.on(d[2] == speaker_mute)) {
        d.print("new voice mode: handsfree, speaker mute, sending {sending_gain} dB"_cf, half_decibels(d[3]));
    } else {
        d.print("new voice mode: handsfree, speaker {speaker_gain} dB, sending {sending_gain} dB"_cf,
                half_decibels(d[2]), half_decibels(d[3]));
    }
}

// Old modes have a volume digit behind their parameters, new ones (0x10 ...) gains.
constexpr auto voice_modes = opcodes({{0x00, "", "voice mode: idle"},
                                      {0x01, "", "voice mode: handset"},
                                      {0x02, "", group_listening},
                                      {0x03, "", on_hook_dialling},
                                      {0x04, "", handsfree_of_old},
                                      {0x05, "", announce_loudspeaker},
                                      {0x06, "", ringing},
                                      {0x10, "", "new voice mode: idle"},
                                      {0x11, "", handset},
                                      {0x12, "", headset},
                                      {0x13, "", handsfree}},
                                     "voice mode: ???");

constexpr auto beeps =
    names({{3, "stop beep"}, {4, "start beep"}, {5, "define beep"}}, "unknown sub command");

constexpr auto codings = names({{0, "A law"}, {1, "mu law"}}, "???");

// A terminal without any device keeps the list that was shown last.
void devices(Decoding& d, FieldName field, const Byte& bits) {
    if (bits.number != 0) {
        constexpr std::array<std::string_view, 5> names = {" internal", " rj9", " jack", " bluetooth",
                                                           " usb"};
        std::string& list = d.session().set_anew(d.session().digital.audio_devices);
        list.clear();
        for (unsigned n = 0; n < names.size(); ++n) {
            if (bits.bit(n).holds) list += names[n];
        }
        if ((bits.number & 0xE0) != 0) list += " ???";
    }
    const bool known = (bits.number & 0xE0) == 0;
    d.value(field, Word{*d.session().digital.audio_devices, bits.number, known, bits.place});
}

// bytes 2 to 6: device bits
void device_configuration(Decoding& d) {
    d.add("device configuration:\n");
    d.add("\t\thandset   device: ");
    devices(d, "handset_devices", d[2]);
    d.add("\n\t\theadset   device: ");
    devices(d, "headset_devices", d[3]);
    d.add("\n\t\tloudspeak device: ");
    devices(d, "loudspeaker_devices", d[4]);
    d.add("\n\t\tannounce  device: ");
    devices(d, "announce_devices", d[5]);
    d.add("\n\t\thandsfree device: ");
    devices(d, "handsfree_devices", d[6]);
}

}  // namespace

// byte 1: mode
void voice_mode(Decoding& d) { voice_modes.write(d, d[1]); }

// byte 1: what to do; classical without it
void beep(Decoding& d) {
    if (d.length() == 1) {
        d.add("beep: play classical beep");
    } else {
        d.print("beep: {beep}"_cf, beeps[d[1]]);
    }
}

// 0 mutes.
void mute(Decoding& d) { d.print("mute {mute}"_cf, flag(d[1] == 0, "on", "off")); }

// byte 1: 0 off   byte 2, where it is the last one: gain
void feedback_dtmf(Decoding& d) {
    d.print("feedback dtmf {feedback_dtmf}"_cf, off_or_on(d[1]));
    if (d.length() == 3) d.print(", gain {gain} "_cf, either(d[2] == 0, "-30 db (default)", "-36 db"));
}

void key_release(Decoding& d) { d.print("key release {key_release}"_cf, off_or_on(d[1])); }

// byte 1: 0 off   byte 2: volume
void loudspeaker(Decoding& d) {
    if (d.on(d[1] == 0)) {
        d.add("loudspeaker off");
    } else {
        d.print("loudspeaker on, volume= {speaker_gain} dB"_cf, half_decibels(d[2]));
    }
}

void announce(Decoding& d) { d.print("announce {announce}"_cf, off_or_on(d[1])); }

// byte 2: melody   byte 3: cadence   byte 4: volume   byte 5: beeps   byte 6: bit 7 silent, bits 0-1
// progressive
void ring(Decoding& d) {
    d.print("ring {ring}"_cf, off_or_on(d[1]));
    if (!d.on(d[1] != 0)) return;
    d.add("\n");
    d.print("\t\t  melody: #{melody} \n"_cf, d[2]);
    d.print("\t\t  cadence: #{cadence_number} ({cadence}) \n"_cf, d[3], ring_cadence(d[3]));
    d.print("\t\t  volume: {ring_volume} dB \n"_cf, half_decibels(d[4]));
    d.print("\t\t  beep number: 0x{beep_number:02x} \n"_cf, d[5]);
    d.print("\t\t  silent: {silent} \n"_cf, flag(d.bit(6, 7), "yes", "no"));
    d.print("\t\t  progressive: {progressive}"_cf, d[6] & 3);
}

// byte 1: sub-type   0: byte 3 coding   6: devices
void audio_configuration(Decoding& d) {
    d.add("audio configuration: ");
    switch (d.on(d[1])) {
        case 0:
            d.print("coding= {coding}"_cf, codings[d[3]]);
            break;
        case 6:
            device_configuration(d);
            break;
        default:
            d.print(" {configuration:02x}"_cf, d[1]);
            break;
    }
}

}  // namespace ztdecode::digital
