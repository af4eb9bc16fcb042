#include "decode/identity.hpp"

#include "core/tables.hpp"

namespace ztdecode {

namespace {

constexpr auto terminals = names({{0, "set-00"},       {1, "set-01"},  {2, "set-02"},  {3, "set-03"},
                                  {4, "set-04"},       {5, "set-05"},  {6, "HE"},      {7, "set-07"},
                                  {8, "undetermined"}, {9, "set-09"},  {10, "set-10"}, {11, "video add-on"},
                                  {12, "set-12"},      {13, "set-13"}, {14, "set-14"}, {32, "set-32"},
                                  {33, "set-33"},      {34, "set-34"}, {35, "set-35"}, {36, "set-36"},
                                  {37, "set-37"},      {48, "set-48"}, {49, "set-49"}, {50, "set-50"},
                                  {51, "set-51"},      {52, "set-52"}, {53, "set-53"}, {54, "set-54"}},
                                 "autre");

constexpr auto cadences = names({{0, "cadence standard"},
                                 {1, "double burst"},
                                 {2, "triple burst"},
                                 {3, "continue"},
                                 {4, "priority attendant"},
                                 {5, "regular attendant"},
                                 {6, "cadence programmable 6"},
                                 {7, "cadence programmable 7"}},
                                "cadence ???");

// No name: the code itself is shown.
constexpr auto errors = names({{1, "bad ressource ID"},
                               {2, "bad value"},
                               {3, "bad attribut"},
                               {4, "memory overflow"},
                               {5, "bad lenth"},
                               {6, "not accepted"}},
                              "");
constexpr auto warnings = names({{16, "clip"}, {32, "alignement"}, {64, "unmap"}}, "");

constexpr auto codings = names({{0, "A law"}, {1, "mu law"}}, "???");

// What an audio message from the system starts with.
consteval std::array<bool, 256> audio_opcodes_from_dhs() {
    std::array<bool, 256> audio{};
    for (const int opcode :
         {0x24, 0x25, 0x29, 0x32, 0x3a, 0x3c, 0x3d, 0x3e, 0x3f, 0x40, 0x49, 0x4d, 0x4e, 0x4f}) {
        audio[static_cast<std::size_t>(opcode)] = true;
    }
    return audio;
}
constexpr auto audio_from_dhs = audio_opcodes_from_dhs();
constexpr std::uint8_t audio_to_dhs = 21;

// A terminal without any device keeps the list that was shown last.
void audio_devices(Session& session, std::uint8_t bits, Text& out) {
    if (bits != 0) {
        std::string& list = session.change(session.digital.audio_devices);
        list.clear();
        if ((bits & 0x01) != 0) list += " internal";
        if ((bits & 0x02) != 0) list += " rj9";
        if ((bits & 0x04) != 0) list += " jack";
        if ((bits & 0x08) != 0) list += " bluetooth";
        if ((bits & 0x10) != 0) list += " usb";
        if ((bits & 0xE0) != 0) list += " ???";
    }
    out.add(*session.digital.audio_devices);
}

void audio_device_configuration(Session& session, const Message& m, Text& out) {
    out.add("device configuration:\n");
    out.add("\t\thandset   device: ");
    audio_devices(session, m[2], out);
    out.add("\n\t\theadset   device: ");
    audio_devices(session, m[3], out);
    out.add("\n\t\tloudspeak device: ");
    audio_devices(session, m[4], out);
    out.add("\n\t\tannounce  device: ");
    audio_devices(session, m[5], out);
    out.add("\n\t\thandsfree device: ");
    audio_devices(session, m[6], out);
}

}  // namespace

std::string_view type_poste(std::uint32_t code) noexcept { return terminals[code]; }

std::string_view design_poste(int value) noexcept {
    constexpr std::array<std::string_view, 4> designs = {"alpha", "reserved", "beta", "not used"};
    return designs[static_cast<std::size_t>(value & 3)];
}

std::string_view ring_cadence(std::uint32_t code) noexcept { return cadences[code]; }

// The first number is hexadecimal, the others are decimal; a minor number above 153 takes three places.
char* Version::write(char* at) const {
    const auto v = static_cast<std::int32_t>(minor + 256 * major);
    if (v > 10000) {
        return write_format(at, " {}={:x}.{:02}.{:02}"_cf, label, v / 10000, v % 10000 / 100, v % 100);
    }
    if (minor <= 153) return write_format(at, " {}={:x}.{:02}"_cf, label, major, minor);
    if (static_cast<std::int32_t>(minor) < 0)
        return write_format(at, " {}={:x}.-{:03}"_cf, label, major, 0U - minor);
    return write_format(at, " {}={:x}.{:03}"_cf, label, major, minor);
}

char* NameOrCode::write(char* at) const {
    return name.empty() ? write_format(at, "{}{:02x}"_cf, before, code) : write_format(at, "{}"_cf, name);
}

NameOrCode dec_err(std::uint32_t code) noexcept { return {errors[code], code}; }

NameOrCode dec_warn(std::uint32_t code) noexcept { return {warnings[code], code}; }

void dec_selftest(std::uint32_t bits, Text& out) {
    if (bits == 32) {
        out.add(", self OK");
        return;
    }
    if ((bits & 0x01) != 0) out.add(" disp BAD");
    if ((bits & 0x02) != 0) out.add(" rom BAD");
    if ((bits & 0x04) != 0) out.add(" cpu BAD");
    if ((bits & 0x08) != 0) out.add(" ram BAD");
    if ((bits & 0x10) != 0) out.add(" icon BAD");
}

// byte 1: sub-type   0: byte 3 coding   6: bytes 2 to 6 device bits of handset, headset, loudspeaker,
// announce, handsfree
void audio_config(Session& session, const Message& m, Text& out) {
    out.add("audio configuration: ");
    switch (m[1]) {
        case 0:
            out.print("coding= {}"_cf, codings[m[3]]);
            break;
        case 6:
            audio_device_configuration(session, m, out);
            break;
        default:
            out.print(" {:02x}"_cf, m[1]);
            break;
    }
}

bool is_audio_opcode(std::uint32_t direction, std::uint8_t type) noexcept {
    return direction != from_dhs ? type == audio_to_dhs : audio_from_dhs[type];
}

}  // namespace ztdecode
