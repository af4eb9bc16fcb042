#include "digital/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(VoiceMode, OldModes) {
    expect_from_system({
        {"29 00", "voice mode: idle"},
        {"29", "voice mode: idle"},
        {"29 01", "voice mode: handset"},
        {"29 01 05", "voice mode: handset"},
        {"29 02 05", "voice mode: group listen  volume=5"},
        {"29 03 05", "voice mode: on_hook dial  volume=5"},
        {"29 04 0f", "voice mode: handsfree  volume=f"},
        {"29 05 10", "voice mode: announce loudspeaker  volume=10"},
        {"29 05 ff", "voice mode: announce loudspeaker  volume=ff"},
        {"29 02", "voice mode: group listen  volume=0"},
        {"a9 04 07", "voice mode: handsfree  volume=7"},
    });
}

TEST(VoiceMode, Ringing) {
    expect_from_system({
        {"29 06 03 00 05", "voice mode: ringing, melodie 3, cadence standard  volume=5"},
        {"29 06 ff 01 0a", "voice mode: ringing, melodie 255, double burst  volume=a"},
        {"29 06 00 02 00", "voice mode: ringing, melodie 0, triple burst  volume=0"},
        {"29 06 00 03 00", "voice mode: ringing, melodie 0, continue  volume=0"},
        {"29 06 00 04 00", "voice mode: ringing, melodie 0, priority attendant  volume=0"},
        {"29 06 00 05 00", "voice mode: ringing, melodie 0, regular attendant  volume=0"},
        {"29 06 00 06 00", "voice mode: ringing, melodie 0, cadence programmable 6  volume=0"},
        {"29 06 00 07 00", "voice mode: ringing, melodie 0, cadence programmable 7  volume=0"},
        {"29 06 00 08 00", "voice mode: ringing, melodie 0, cadence ???  volume=0"},
        {"29 06 00 ff ff", "voice mode: ringing, melodie 0, cadence ???  volume=ff"},
        {"29 06", "voice mode: ringing, melodie 0, cadence standard  volume=0"},
    });
}

TEST(VoiceMode, NewModes) {
    expect_from_system({
        {"29 10", "new voice mode: idle"},
        {"29 10 01 02", "new voice mode: idle"},
        {"29 11 fa 08", "new voice mode: handset, receiving -3.0 dB, sending 4.0 dB"},
        {"29 11", "new voice mode: handset, receiving 0.0 dB, sending 0.0 dB"},
        {"29 11 80 7f", "new voice mode: handset, receiving -64.0 dB, sending 63.5 dB"},
        {"29 12 0c f3", "new voice mode: headset, receiving 6.0 dB, sending -6.5 dB"},
        {"29 12 80 80", "new voice mode: headset, receiving -64.0 dB, sending -64.0 dB"},
        {"29 13 80 04", "new voice mode: handsfree, speaker mute, sending 2.0 dB"},
        {"29 13 80 80", "new voice mode: handsfree, speaker mute, sending -64.0 dB"},
        {"29 13 81 04", "new voice mode: handsfree, speaker -63.5 dB, sending 2.0 dB"},
        {"29 13 00 01", "new voice mode: handsfree, speaker 0.0 dB, sending 0.5 dB"},
        {"a9 13 ff ff", "new voice mode: handsfree, speaker -0.5 dB, sending -0.5 dB"},
    });
}

TEST(VoiceMode, UnknownModes) {
    for (unsigned mode = 0; mode < 256; ++mode) {
        if (mode <= 6 || (mode >= 0x10 && mode <= 0x13)) continue;
        expect_from_system({{formatted("29 {-:02x} 01 02 03"_cf, mode), "voice mode: ???"}});
    }
}

// Any gain byte, wherever a gain stands.
TEST(VoiceMode, EveryGain) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const int steps = static_cast<std::int8_t>(byte);
        const std::string gain =
            (steps < 0 ? "-" : "") + std::to_string(std::abs(steps) / 2) + (steps % 2 != 0 ? ".5" : ".0");
        expect_from_system({
            {formatted("29 11 {-:02x} 00"_cf, byte),
             "new voice mode: handset, receiving " + gain + " dB, sending 0.0 dB"},
            {formatted("29 12 00 {-:02x}"_cf, byte),
             "new voice mode: headset, receiving 0.0 dB, sending " + gain + " dB"},
            {formatted("29 13 80 {-:02x}"_cf, byte),
             "new voice mode: handsfree, speaker mute, sending " + gain + " dB"},
            {formatted("29 13 {-:02x} 00"_cf, byte),
             byte == 0x80 ? "new voice mode: handsfree, speaker mute, sending 0.0 dB"
                          : "new voice mode: handsfree, speaker " + gain + " dB, sending 0.0 dB"},
            {formatted("4d 01 {-:02x}"_cf, byte), "loudspeaker on, volume= " + gain + " dB"},
        });
    }
}

TEST(Audio, Beep) {
    expect_from_system({
        {"3c", "beep: play classical beep"},
        {"bc", "beep: play classical beep"},
        {"3c 03", "beep: stop beep"},
        {"3c 04", "beep: start beep"},
        {"3c 05 01 02", "beep: define beep"},
        {"3c 00", "beep: unknown sub command"},
    });
    for (unsigned command = 0; command < 256; ++command) {
        if (command >= 3 && command <= 5) continue;
        expect_from_system({{formatted("3c {-:02x}"_cf, command), "beep: unknown sub command"}});
    }
}

TEST(Audio, Mute) {
    expect_from_system(
        {{"3f 00", "mute on"}, {"3f", "mute on"}, {"3f 01", "mute off"}, {"bf ff", "mute off"}});
}

TEST(Audio, FeedbackDtmf) {
    expect_from_system({
        {"40", "feedback dtmf off"},
        {"40 00", "feedback dtmf off"},
        {"40 01", "feedback dtmf on"},
        {"40 ff", "feedback dtmf on"},
        {"40 00 00", "feedback dtmf off, gain -30 db (default) "},
        {"40 01 00", "feedback dtmf on, gain -30 db (default) "},
        {"40 01 01", "feedback dtmf on, gain -36 db "},
        {"40 01 05", "feedback dtmf on, gain -36 db "},
        {"c0 00 ff", "feedback dtmf off, gain -36 db "},
        {"40 01 05 00", "feedback dtmf on"},
        {"40 01 05 00 00", "feedback dtmf on"},
    });
}

TEST(Audio, KeyRelease) {
    expect_from_system({{"41 00", "key release off"},
                        {"41", "key release off"},
                        {"41 01", "key release on"},
                        {"c1 80", "key release on"}});
}

TEST(Audio, Loudspeaker) {
    expect_from_system({
        {"4d 00 05", "loudspeaker off"},
        {"4d", "loudspeaker off"},
        {"4d 01 05", "loudspeaker on, volume= 2.5 dB"},
        {"4d ff 80", "loudspeaker on, volume= -64.0 dB"},
        {"cd 01", "loudspeaker on, volume= 0.0 dB"},
    });
}

TEST(Audio, Announce) {
    expect_from_system({{"4e 00", "announce off"},
                        {"4e", "announce off"},
                        {"4e 01", "announce on"},
                        {"ce 02", "announce on"}});
}

TEST(Audio, Ring) {
    expect_from_system({
        {"4f 00 01 02 03 04 05", "ring off"},
        {"4f", "ring off"},
        {"4f 01 05 01 f3 0a 83",
         "ring on\n"
         "\t\t  melody: #5 \n"
         "\t\t  cadence: #1 (double burst) \n"
         "\t\t  volume: -6.5 dB \n"
         "\t\t  beep number: 0x0a \n"
         "\t\t  silent: yes \n"
         "\t\t  progressive: 3"},
        {"cf ff ff ff 0c ff 7d",
         "ring on\n"
         "\t\t  melody: #255 \n"
         "\t\t  cadence: #255 (cadence ??\?) \n"
         "\t\t  volume: 6.0 dB \n"
         "\t\t  beep number: 0xff \n"
         "\t\t  silent: no \n"
         "\t\t  progressive: 1"},
        {"4f 01",
         "ring on\n"
         "\t\t  melody: #0 \n"
         "\t\t  cadence: #0 (cadence standard) \n"
         "\t\t  volume: 0.0 dB \n"
         "\t\t  beep number: 0x00 \n"
         "\t\t  silent: no \n"
         "\t\t  progressive: 0"},
        {"4f 02 00 07 80 01 80",
         "ring on\n"
         "\t\t  melody: #0 \n"
         "\t\t  cadence: #7 (cadence programmable 7) \n"
         "\t\t  volume: -64.0 dB \n"
         "\t\t  beep number: 0x01 \n"
         "\t\t  silent: yes \n"
         "\t\t  progressive: 0"},
    });
}

TEST(Audio, RingInAWholeMessage) {
    EXPECT_EQ(TestSession().from_dhs("4f 01 00 00 00 00 02"),
              "\t- ring on\n"
              "\t\t  melody: #0 \n"
              "\t\t  cadence: #0 (cadence standard) \n"
              "\t\t  volume: 0.0 dB \n"
              "\t\t  beep number: 0x00 \n"
              "\t\t  silent: no \n"
              "\t\t  progressive: 2");
}

}  // namespace
}  // namespace ztdecode::testing
