#include "decode/tables/identity.hpp"

#include <map>
#include <set>

#include "decode/audio_filter.hpp"
#include "decode/rows.hpp"
#include "digital/audio.hpp"

namespace ztdecode::testing {
namespace {

std::string_view terminal(std::uint32_t code) { return terminal_type(Number{code}).text; }
std::string_view design(int value) { return terminal_design(Number{static_cast<std::uint32_t>(value)}).text; }
std::string_view cadence(std::uint32_t code) { return ring_cadence(Number{code}).text; }
NameOrCode error_of(std::uint32_t code) { return error(Number{code}); }
NameOrCode warning_of(std::uint32_t code) { return warning(Number{code}); }

TEST(TerminalType, EveryCode) {
    const std::map<std::uint32_t, std::string_view> terminals = {
        {0, "set-00"},       {1, "set-01"},  {2, "set-02"},  {3, "set-03"},
        {4, "set-04"},       {5, "set-05"},  {6, "HE"},      {7, "set-07"},
        {8, "undetermined"}, {9, "set-09"},  {10, "set-10"}, {11, "video add-on"},
        {12, "set-12"},      {13, "set-13"}, {14, "set-14"}, {32, "set-32"},
        {33, "set-33"},      {34, "set-34"}, {35, "set-35"}, {36, "set-36"},
        {37, "set-37"},      {48, "set-48"}, {49, "set-49"}, {50, "set-50"},
        {51, "set-51"},      {52, "set-52"}, {53, "set-53"}, {54, "set-54"},
    };
    for (std::uint32_t code = 0; code < 600; ++code) {
        const auto found = terminals.find(code);
        EXPECT_EQ(terminal(code), found == terminals.end() ? "autre" : found->second) << code;
    }
    EXPECT_EQ(terminal(15), "autre");
    EXPECT_EQ(terminal(38), "autre");
    EXPECT_EQ(terminal(0x100), "autre");
    EXPECT_EQ(terminal(0xFFFFFFFF), "autre");
}

TEST(TerminalDesign, TheTwoLowBitsCount) {
    const std::string_view designs[] = {"alpha", "reserved", "beta", "not used"};
    for (int value = -300; value < 300; ++value) EXPECT_EQ(design(value), designs[value & 3]) << value;
    EXPECT_EQ(design(6), "beta");
}

TEST(RingCadence, EveryCode) {
    const std::string_view cadences[] = {
        "cadence standard",   "double burst",      "triple burst",           "continue",
        "priority attendant", "regular attendant", "cadence programmable 6", "cadence programmable 7"};
    for (std::uint32_t code = 0; code < 600; ++code) {
        EXPECT_EQ(cadence(code), code < 8 ? cadences[code] : "cadence ???") << code;
    }
    EXPECT_EQ(cadence(0xFFFFFFFF), "cadence ???");
}

std::string written(const auto& words) {
    Text out;
    out.add(words);
    return std::string(out.view());
}

std::string labelled(std::string_view label, std::uint32_t major, std::uint32_t minor) {
    Text out;
    out.print(" {-}={-}"_cf, label, Version{major, minor});
    return std::string(out.view());
}

TEST(Version, TwoNumbers) {
    EXPECT_EQ(labelled("ROM", 1, 5), " ROM=1.05");
    EXPECT_EQ(labelled("soft", 0, 0), " soft=0.00");
    EXPECT_EQ(labelled("soft", 0x1F, 99), " soft=1f.99");
    EXPECT_EQ(labelled(", data", 0x0A, 100), " , data=a.100");
    EXPECT_EQ(labelled("", 2, 9), " =2.09");
}

TEST(Version, AMinorNumberAbove153TakesThreePlaces) {
    EXPECT_EQ(labelled("label", 2, 153), " label=2.153");
    EXPECT_EQ(labelled("label", 2, 154), " label=2.154");
    EXPECT_EQ(labelled("label", 2, 200), " label=2.200");
    EXPECT_EQ(labelled("label", 2, 255), " label=2.255");
    EXPECT_EQ(labelled("label", 0, 1000), " label=0.1000");
}

TEST(Version, Above10000ItHasThreeNumbers) {
    EXPECT_EQ(labelled("label", 0x30, 0x39), " label=1.23.45");
    EXPECT_EQ(labelled("label", 0x27, 0x10), " label=27.16");  // exactly 10000
    EXPECT_EQ(labelled("label", 0x27, 0x11), " label=1.00.01");
    EXPECT_EQ(labelled("label", 0xFF, 0xFF), " label=6.55.35");
    EXPECT_EQ(labelled("label", 0, 100000), " label=a.00.00");
    EXPECT_EQ(labelled("label", 0, 0x7FFFFFFF), " label=346dc.36.47");
}

// The combined number is signed, and so is a minor number that takes three places.
TEST(Version, NumbersBeyondTheSignBit) {
    EXPECT_EQ(labelled("label", 0x800000, 7), " label=800000.07");
    EXPECT_EQ(labelled("label", 3, 0x80000000), " label=3.-2147483648");
    EXPECT_EQ(labelled("label", 0, 0xFFFFFFFF), " label=0.-001");
    EXPECT_EQ(labelled("label", 0, 0xFFFFFF85), " label=0.-123");
}

// Every pair of bytes against the same rules in the C library's words.
TEST(Version, EveryPairOfBytes) {
    for (std::uint32_t major = 0; major < 256; ++major) {
        for (std::uint32_t minor = 0; minor < 256; ++minor) {
            const std::uint32_t v = minor + 256 * major;
            char expected[64];
            if (v > 10000) {
                std::snprintf(expected, sizeof expected, " soft=%.1x.%.2d.%.2d", v / 10000,
                              static_cast<int>(v % 10000 / 100), static_cast<int>(v % 100));
            } else if (minor <= 153) {
                std::snprintf(expected, sizeof expected, " soft=%.1x.%.2d", major, static_cast<int>(minor));
            } else {
                std::snprintf(expected, sizeof expected, " soft=%.1x.%.3d", major, static_cast<int>(minor));
            }
            ASSERT_EQ(labelled("soft", major, minor), expected) << major << " " << minor;
        }
    }
}

TEST(Error, EveryCode) {
    const std::string_view errors[] = {"00",           "bad ressource ID", "bad value",
                                       "bad attribut", "memory overflow",  "bad lenth",
                                       "not accepted"};
    for (std::uint32_t code = 0; code < 256; ++code) {
        const std::string other = formatted("{-:02x}"_cf, static_cast<std::uint8_t>(code));
        EXPECT_EQ(written(error_of(code)), code < 7 ? errors[code] : other) << code;
    }
    EXPECT_EQ(written(error_of(7)), "07");
    EXPECT_EQ(written(error_of(0xFF)), "ff");
    EXPECT_EQ(written(error_of(0x101)), "101");
    EXPECT_EQ(written(error_of(0xFFFFFFFF)), "ffffffff");
}

TEST(Warning, EveryCode) {
    for (std::uint32_t code = 0; code < 256; ++code) {
        const std::string other = formatted("{-:02x}"_cf, static_cast<std::uint8_t>(code));
        const std::string_view expected = code == 16   ? "clip"
                                          : code == 32 ? "alignement"
                                          : code == 64 ? "unmap"
                                                       : std::string_view(other);
        EXPECT_EQ(written(warning_of(code)), expected) << code;
    }
    EXPECT_EQ(written(warning_of(1)), "01");
    EXPECT_EQ(written(warning_of(0x110)), "110");
}

std::string selftest(std::uint32_t bits) {
    Session session;
    const Message nothing({});
    Text out;
    Decoding d(session, nothing, out);
    self_test(d, Number{bits});
    return std::string(out.view());
}

TEST(SelfTest, EveryValue) {
    EXPECT_EQ(selftest(32), ", self OK");
    EXPECT_EQ(selftest(0), "");
    EXPECT_EQ(selftest(1), " disp BAD");
    EXPECT_EQ(selftest(2), " rom BAD");
    EXPECT_EQ(selftest(3), " disp BAD rom BAD");
    EXPECT_EQ(selftest(4), " cpu BAD");
    EXPECT_EQ(selftest(8), " ram BAD");
    EXPECT_EQ(selftest(16), " icon BAD");
    EXPECT_EQ(selftest(31), " disp BAD rom BAD cpu BAD ram BAD icon BAD");
    EXPECT_EQ(selftest(33), " disp BAD");  // only exactly 32 is OK
    EXPECT_EQ(selftest(0xE0), "");
    EXPECT_EQ(selftest(0xFF), " disp BAD rom BAD cpu BAD ram BAD icon BAD");
    EXPECT_EQ(selftest(0xFFFFFFE4), " cpu BAD");
    for (std::uint32_t bits = 0; bits < 256; ++bits) {
        std::string expected;
        if (bits == 32) {
            expected = ", self OK";
        } else {
            if ((bits & 1) != 0) expected += " disp BAD";
            if ((bits & 2) != 0) expected += " rom BAD";
            if ((bits & 4) != 0) expected += " cpu BAD";
            if ((bits & 8) != 0) expected += " ram BAD";
            if ((bits & 16) != 0) expected += " icon BAD";
        }
        EXPECT_EQ(selftest(bits), expected) << bits;
    }
}

TEST(AudioConfig, Coding) {
    TestSession d;
    EXPECT_EQ(d.with(digital::audio_configuration, "49 00 55 00"), "audio configuration: coding= A law");
    EXPECT_EQ(d.with(digital::audio_configuration, "49 00 55 01"), "audio configuration: coding= mu law");
    EXPECT_EQ(d.with(digital::audio_configuration, "49 00 55 02"), "audio configuration: coding= ???");
    EXPECT_EQ(d.with(digital::audio_configuration, "49 00 55 ff"), "audio configuration: coding= ???");
    EXPECT_EQ(d.with(digital::audio_configuration, "49"), "audio configuration: coding= A law");
}

TEST(AudioConfig, OtherSubTypes) {
    for (int type = 1; type < 256; ++type) {
        if (type == 6) continue;
        EXPECT_EQ(TestSession().with(digital::audio_configuration,
                                     formatted("49 {-:02x} 01 01"_cf, static_cast<std::uint8_t>(type))),
                  formatted("audio configuration:  {-:02x}"_cf, static_cast<std::uint8_t>(type)));
    }
}

TEST(AudioConfig, Devices) {
    EXPECT_EQ(TestSession().with(digital::audio_configuration, "49 06 01 02 04 08 10"),
              "audio configuration: device configuration:\n"
              "\t\thandset   device:  internal\n"
              "\t\theadset   device:  rj9\n"
              "\t\tloudspeak device:  jack\n"
              "\t\tannounce  device:  bluetooth\n"
              "\t\thandsfree device:  usb");
    EXPECT_EQ(TestSession().with(digital::audio_configuration, "49 06 1f ff 20 c0 0a"),
              "audio configuration: device configuration:\n"
              "\t\thandset   device:  internal rj9 jack bluetooth usb\n"
              "\t\theadset   device:  internal rj9 jack bluetooth usb ???\n"
              "\t\tloudspeak device:  ???\n"
              "\t\tannounce  device:  ???\n"
              "\t\thandsfree device:  rj9 bluetooth");
}

TEST(AudioConfig, ATerminalWithoutDevicesShowsTheLastList) {
    TestSession d;
    EXPECT_EQ(d.with(digital::audio_configuration, "49 06"),
              "audio configuration: device configuration:\n"
              "\t\thandset   device: \n"
              "\t\theadset   device: \n"
              "\t\tloudspeak device: \n"
              "\t\tannounce  device: \n"
              "\t\thandsfree device: ");
    EXPECT_EQ(d.with(digital::audio_configuration, "49 06 00 06 00 01 00"),
              "audio configuration: device configuration:\n"
              "\t\thandset   device: \n"
              "\t\theadset   device:  rj9 jack\n"
              "\t\tloudspeak device:  rj9 jack\n"
              "\t\tannounce  device:  internal\n"
              "\t\thandsfree device:  internal");
    EXPECT_EQ(d.with(digital::audio_configuration, "49 06 00 80 00 00 00"),
              "audio configuration: device configuration:\n"
              "\t\thandset   device:  internal\n"
              "\t\theadset   device:  ???\n"
              "\t\tloudspeak device:  ???\n"
              "\t\tannounce  device:  ???\n"
              "\t\thandsfree device:  ???");
    EXPECT_EQ(d.with(digital::audio_configuration, "49 00 00 00"), "audio configuration: coding= A law");
    EXPECT_EQ(d.with(digital::audio_configuration, "49 06 00 00 00 00 00"),
              "audio configuration: device configuration:\n"
              "\t\thandset   device:  ???\n"
              "\t\theadset   device:  ???\n"
              "\t\tloudspeak device:  ???\n"
              "\t\tannounce  device:  ???\n"
              "\t\thandsfree device:  ???");
}

TEST(InListAudioOpcodes, EveryMessagePassesUnlessAudioIsAskedFor) {
    const Session session;
    for (std::uint32_t direction = 0; direction < 3; ++direction) {
        for (int type = 0; type < 256; ++type) {
            EXPECT_TRUE(may_be_shown(session, direction, static_cast<std::uint8_t>(type)));
        }
    }
}

TEST(InListAudioOpcodes, AudioMessagesAlone) {
    Session session;
    session.switches.audio_only = true;
    const std::set<int> from_system = {0x24, 0x25, 0x29, 0x32, 0x3a, 0x3c, 0x3d,
                                       0x3e, 0x3f, 0x40, 0x49, 0x4d, 0x4e, 0x4f};
    for (int type = 0; type < 256; ++type) {
        const auto byte = static_cast<std::uint8_t>(type);
        EXPECT_EQ(may_be_shown(session, 0, byte), from_system.count(type) == 1) << type;
        for (const std::uint32_t direction : {1U, 2U, 0x80000000U}) {
            EXPECT_EQ(may_be_shown(session, direction, byte), type == 21) << type;
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
