#include <algorithm>
#include <array>

#include "decode/rows.hpp"
#include "digital/digital.hpp"

namespace ztdecode::testing {
namespace {

struct Prefix {
    std::string_view text;  // what stands before the decoder's text, for the bytes below
    std::uint32_t route;
};

// For the bytes TT 00 01 21.
Prefix prefix_of(int type) {
    switch (type) {
        case 5:
            return {"\t- [HE: telephony -> firmware]\t- ", 1};
        case 133:
            return {"\t-not a HE message!\t- ", 1};
        case 6:
            return {"\t- routage visiophone: src=00 dst=01\n\t- ", 2};
        case 134:
            return {"\t-not a visiophone message!\t- ", 2};
        default:
            break;
    }
    switch (type & 0x7F) {
        case 13:
            return {"\t- ", 4};
        case 14:
            return {"\t- ", 5};
        case 15:
            return {"\t- ", 6};
        case 18:
            return {"\t- ", 7};
        case 19:
            return {"\tIP - ", 8};
        case 20:
            return {"\tHUB - ", 9};
        case 21:
            return {"\tRYM - ", 10};
        case 22:
            return {"\tRYM - ", 11};
        case 24:
            return {"\tDBG - ", 12};
        default:
            return {"\t- ", 0};
    }
}

bool is_digital(int type) {
    const std::uint32_t route = prefix_of(type).route;
    return route == 0 || route == 2 || route == 4 || route == 5;
}

TEST(Dispatcher, EveryTypeByteHasItsPrefix) {
    for (int type = 0; type < 256; ++type) {
        const std::string hex = formatted("{-:02x} 00 01 21"_cf, static_cast<std::uint8_t>(type));
        for (const std::uint32_t direction : {0U, 1U, 2U}) {
            TestSession d;
            const std::string text = d.with(dispatch_message, hex, direction);
            const Prefix prefix = prefix_of(type);
            EXPECT_EQ(text.substr(0, prefix.text.size()), prefix.text) << hex;
            if (type == 5) continue;  // the HE decoder has a message of its own
            // A set's reset report with kind 4 would become a hub's; byte 2 here is 1.
            EXPECT_EQ(d.route, prefix.route) << hex;
        }
    }
}

TEST(Dispatcher, TheDigitalSetHasEveryOtherType) {
    for (int type = 0; type < 256; ++type) {
        if (!is_digital(type)) continue;
        const std::string hex = formatted("{-:02x} 00 01 21"_cf, static_cast<std::uint8_t>(type));
        TestSession alone;
        const std::string from_system = alone.with(digital::from_system, hex, 0);
        const Status from_status = alone.status;
        const std::string to_system = alone.with(digital::to_system, hex, 1);
        const Status to_status = alone.status;
        const std::string prefix(prefix_of(type).text);
        TestSession d;
        EXPECT_EQ(d.with(dispatch_message, hex, 0), prefix + from_system) << hex;
        EXPECT_EQ(d.status, from_status) << hex;
        for (const std::uint32_t direction : {1U, 2U, 0xFFFFFFFFU}) {
            EXPECT_EQ(d.with(dispatch_message, hex, direction), prefix + to_system) << hex;
            EXPECT_EQ(d.status, to_status) << hex;
        }
    }
}

TEST(Dispatcher, ATextOfEachLink) {
    expect_to_dhs({
        {"01", "\t- handset off hook"},
        {"0d 01", "\t- "},
        {"0e 01", "\t- "},
        {"8d 01", "\t- "},
        {"0f 05 11 21", "\t- osi: pclink1 status tx_prepare, rx_rcv"},
        {"8f 05 11 21", "\t- osi: pclink1 status tx_prepare, rx_rcv"},
        {"12 e3", "\t- DECT IBS to CPU: FN_DL_DATA_IND"},
        {"14 02", "\tHUB - download ack, packet number: 0000, status: BAD  seq: 0"},
        {"14 13 02", "\tHUB - set 2 down"},
        {"94 13 02", "\tHUB - set 2 down"},
        {"18 68 69 0a", "\tDBG - hi\n"},
        {"98 68 69 0a", "\tDBG - hi\n"},
        {"18", "\tDBG - "},
    });
    expect_from_dhs({
        {"00", "\t- nop"},
        {"0d 01", "\t- ERR: message inconnu"},
        {"0e 01", "\t- ERR: message inconnu"},
        {"0f 09", "\t- ??"},
        {"0f 02", "\t- osi: read vorna synchro"},
        {"14 18", "\tHUB - set repeater mode"},
        {"14", "\tHUB - ERR: no content"},
        {"18 68 69", "\tDBG - hi"},
    });
}

TEST(Dispatcher, IpMessages) {
    for (const std::string_view hex : {"13 00", "93 00", "13", "93 7f 01"}) {
        EXPECT_EQ(TestSession().to_dhs(hex).substr(0, 6), "\tIP - ") << hex;
        EXPECT_EQ(TestSession().from_dhs(hex).substr(0, 6), "\tIP - ") << hex;
    }
    EXPECT_EQ(TestSession().from_dhs("93 00"), TestSession().from_dhs("13 00"));
}

TEST(Dispatcher, ServersShareAPrefix) {
    EXPECT_EQ(TestSession().to_dhs("15 03").substr(0, 18), "\tRYM - call server");
    EXPECT_EQ(TestSession().from_dhs("15 03").substr(0, 18), "\tRYM - call server");
    EXPECT_EQ(TestSession().to_dhs("16 03").substr(0, 26), "\tRYM - presentation server");
    EXPECT_EQ(TestSession().from_dhs("96 03").substr(0, 26), "\tRYM - presentation server");
}

TEST(Dispatcher, NoMessage) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.with(dispatch_message, "", 0), "");
    EXPECT_EQ(d.with(dispatch_message, "", 1), "");
    EXPECT_EQ(d.output, "");
    EXPECT_EQ(d.status, Status::none);
}

TEST(Dispatcher, HeMessages) {
    expect_to_dhs({
        {"05 01 02 01", "\t- [HE: desktop -> telephony]\t- off hook"},
        {"05 00 ff 82", "\t- [HE: default -> firmware]\t- on hook"},
        {"05 05 fa 03 00 09", "\t- [HE: communication assistant -> 05]\t- digit dialed: 9"},
        {"05 aa 06 22", "\t- [HE: data -> aa]\t- I'm here"},
    });
    expect_from_dhs({
        {"05 07 fc 00", "\t- [HE: minitel -> mail]\t- nop"},
        {"05 01 02 39", "\t- [HE: desktop -> telephony]\t- LCD contrast"},
    });
}

// What the HE decoders do not know is tried as a message of the digital set, without the three routing bytes.
TEST(Dispatcher, HeMessagesOfADigitalSet) {
    expect_to_dhs({
        {"05 01 02 0a", "\t- [HE: desktop -> telephony]\t- warmstart ack"},
        {"05 01 02 21 01 02 05", "\t- [HE: desktop -> telephony]\t- version response  TA,   soft=2.05"},
        {"05 01 02 04 2a 00", "\t- [HE: desktop -> telephony]\t- [opt Z adr 2] nop ack"},
        {"05 01 02 7f", "\t- [HE: desktop -> telephony]\t- "},
        {"05 01 02 8c 81", "\t- [HE: desktop -> telephony]\t- segment message start= yes, reste= 1"},
    });
    expect_from_dhs({
        {"05 01 02 2a", "\t- [HE: desktop -> telephony]\t- version inquiry"},
        {"05 01 02 a1 07", "\t- [HE: desktop -> telephony]\t- all leds OFF"},
        {"05 01 02 7f", "\t- [HE: desktop -> telephony]\t- ERR: message inconnu"},
    });
}

// The whole message, its type byte included: opcode 5 of the HE link and of the digital set are unknown.
TEST(Dispatcher, AnHeTypeByteWithItsHighBit) {
    expect_to_dhs({{"85 01 02 01", "\t-not a HE message!\t- "}, {"85", "\t-not a HE message!\t- "}});
    expect_from_dhs({{"85 01 02 01", "\t-not a HE message!\t- ERR: message inconnu"},
                     {"85", "\t-not a HE message!\t- ERR: message inconnu"}});
}

TEST(Dispatcher, HeMessagesWithoutAMessage) {
    TestSession d;
    EXPECT_EQ(d.to_dhs("05 01 02"), "\t- [HE: desktop -> telephony]\t- ");
    EXPECT_EQ(d.from_dhs("05 01 02"), "\t- [HE: desktop -> telephony]\t- ");
    EXPECT_EQ(d.error, "");
    EXPECT_EQ(d.to_dhs("05 01"), "\t- [HE: firmware -> telephony]\t- ");
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 3, disponible: 2\n");
    d.error.clear();
    EXPECT_EQ(d.from_dhs("05"), "\t- [HE: firmware -> firmware]\t- ");
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 3, disponible: 1\n");
}

// Both know opcode 31; on this link it is the HE decoder's. The last three bytes stand behind the shortened
// message too: byte 6, the first one of the code, is the 05.
TEST(Dispatcher, AnHeResetReport) {
    expect_to_dhs(
        {{"05 01 02 1f 00 00 05",
          "\t- [HE: desktop -> telephony]\t- reset hard: boot 0.0, code 5.0, ipar1 0.0, ipar2 0.0"}});
}

TEST(Dispatcher, VisiophoneRouting) {
    expect_from_dhs({
        {"06 0a 0b 21", "\t- routage visiophone: src=0a dst=0b\n\t- subdev reset"},
        {"06 0a 0b", "\t- routage visiophone: src=0a dst=0b\n\t- subdev reset"},
        {"06 0a", "\t- subdev reset"},
        {"06", "\t- subdev reset"},
        {"86 0a 0b 21", "\t-not a visiophone message!\t- subdev reset"},
        {"86 0a", "\t-not a visiophone message!\t- subdev reset"},
        {"86", "\t- subdev reset"},
    });
    expect_to_dhs({
        {"06 0a 0b 21", "\t- routage visiophone: src=0a dst=0b\n\t- loop back on ack"},
        {"06 ff", "\t- loop back on ack"},
        {"06", "\t- loop back on ack"},
        {"86 00 00", "\t-not a visiophone message!\t- loop back on ack"},
        {"86 00", "\t-not a visiophone message!\t- loop back on ack"},
    });
}

TEST(Dispatcher, AVisiophoneTypeByteAloneIsTheDigitalSets) {
    TestSession d;
    EXPECT_EQ(d.with(dispatch_message, "06", 0), "\t- subdev reset");
    EXPECT_EQ(d.route, 0U);
    EXPECT_EQ(d.with(dispatch_message, "86", 1), "\t- loop back on ack");
    EXPECT_EQ(d.route, 0U);
    EXPECT_EQ(d.with(dispatch_message, "06 01", 0), "\t- subdev reset");
    EXPECT_EQ(d.route, 2U);
    EXPECT_EQ(d.with(dispatch_message, "86 01", 1), "\t-not a visiophone message!\t- loop back on ack");
    EXPECT_EQ(d.route, 2U);
}

TEST(Dispatcher, AnyDirectionButZeroGoesToTheSystem) {
    for (const std::uint32_t direction : {1U, 2U, 256U, 0xFFFFFFFFU}) {
        EXPECT_EQ(TestSession().decode("00", direction), "\t- nop ack");
        EXPECT_EQ(TestSession().decode("05 01 02 01", direction),
                  "\t- [HE: desktop -> telephony]\t- off hook");
        EXPECT_EQ(TestSession().decode("0f 07", direction), "\t- osi: cti status");
        EXPECT_EQ(TestSession().decode("14 06", direction), "\tHUB - download end ack");
    }
}

TEST(Dispatcher, AudioMessagesAlone) {
    TestSession d;
    d.session().switches.audio_only = true;
    EXPECT_EQ(d.from_dhs("24"), "\t- enable DTMF");
    EXPECT_EQ(d.from_dhs("26"), "");
    EXPECT_EQ(d.from_dhs("a4"), "");  // the whole byte counts
    EXPECT_EQ(d.from_dhs("4d 00"), "\t- loudspeaker off");
    EXPECT_EQ(d.from_dhs("15 03"), "");
    EXPECT_EQ(d.to_dhs("24"), "");
    EXPECT_EQ(d.to_dhs("01"), "");
    EXPECT_EQ(d.to_dhs("95 03"), "");
    EXPECT_EQ(d.to_dhs("15 03").substr(0, 18), "\tRYM - call server");
    EXPECT_EQ(d.decode("24", 2), "");
    EXPECT_EQ(d.decode("15 03", 2).substr(0, 18), "\tRYM - call server");
    for (int type = 0; type < 256; ++type) {
        const std::string hex = formatted("{-:02x} 00 00 00"_cf, static_cast<std::uint8_t>(type));
        const std::array<int, 14> shown = {0x24, 0x25, 0x29, 0x32, 0x3a, 0x3c, 0x3d,
                                           0x3e, 0x3f, 0x40, 0x49, 0x4d, 0x4e, 0x4f};
        const bool is_shown = std::find(shown.begin(), shown.end(), type) != shown.end();
        EXPECT_EQ(d.with(dispatch_message, hex, 0).empty(), !is_shown) << hex;
        EXPECT_EQ(d.with(dispatch_message, hex, 1).empty(), type != 21) << hex;
    }
}

TEST(Dispatcher, SuppressedMessagesTeachNothing) {
    TestSession d;
    d.session().switches.audio_only = true;
    EXPECT_EQ(d.to_dhs("04 2a 00"), "");
    d.session().switches.audio_only = false;
    EXPECT_EQ(d.from_dhs("02 02 00"), "\t- [opt V24 adr 2] nop");
}

// A zero byte ends the text of a message, not what stands before it or behind it.
TEST(Dispatcher, AZeroByteEndsTheTextOfItsMessage) {
    expect_to_dhs(
        {{"18 41 00 42", "\tDBG - A"},
         {"18 00 42", "\tDBG - "},
         {"0b 04 18 41 00 42 01 00",
          "\t- super message:\n\t> zt 04 00 18 41 00 42\n\tDBG - A\n\t> zt 01 00 00\n\t- nop ack\n"}});
}

}  // namespace
}  // namespace ztdecode::testing
