#include "core/tables.hpp"
#include "decode/identity.hpp"
#include "digital/digital.hpp"
#include "digital/options/options.hpp"

// Digital set to system. byte 0: opcode (bit 7 is ignored), then its parameters.

namespace ztdecode {

namespace {

constexpr std::uint8_t type_unknown = 31;  // remembered for every address after a reset of the set
constexpr std::uint8_t type_aom = 3;

// byte 1: sub-code ... see the callers; code in two digits behind its name
constexpr auto download_acks = names({{0x00, "ack ok"},
                                      {0x10, "refused hard pb"},
                                      {0x11, "refused no loader"},
                                      {0x12, "refused soft lock"},
                                      {0x13, "refused wrong param"},
                                      {0x20, "error wrong packet number"},
                                      {0x21, "error invalid compressed header"},
                                      {0x22, "error decompress"},
                                      {0x23, "error invalid binary header"},
                                      {0x24, "error binary check"},
                                      {0x25, "error no more data accepted"},
                                      {0x26, "error no dwl in progress"},
                                      {0x27, "error too many bytes received"},
                                      {0xFF, "error undefined"}},
                                     "");

// An unknown code stands twice: in its name's place and behind it.
void download_ack_text(std::uint8_t code, Text& out) {
    if (download_acks[code].empty()) {
        out.print("ack 0x{:02X} ???"_cf, code);
    } else {
        out.add(download_acks[code]);
    }
    out.print(" (0x{:02X})"_cf, code);
}

// byte 1: key
void digit_dialled(Session& /*session*/, Message& m, Text& out) {
    constexpr std::string_view digits = "0123456789*#";
    if (m[1] < digits.size()) {
        out.print("digit dialed '{}'"_cf, digits.substr(m[1], 1));
    } else {
        out.add("digit dialed invalid");
    }
}

// byte 1: bit 7 first segment, bits 0-6 segments still to come
void segment_message(Session& /*session*/, Message& m, Text& out) {
    out.print("segment message start= {}, reste= {}"_cf, m[1] > 127 ? "yes" : "no", m[1] & 0x7F);
}

// What a module without a decoder says of its own state.
// byte 3: kind   byte 4: module type   bytes 5, 6: version   byte 7: selftest   byte 8: mode, or number of
// keys
void module_reset(Message& m, Text& out) {
    out.add("reset");
    if (m.length() <= 7) return;
    out.add(m[3] == 0 ? " hard " : " soft ");
    out.add(option_type_name(m[4]));
    if (m[4] == 0) out.add(m[8] == 3 ? " A1," : " A2,");
    out.add(version_logiciel("soft", m[5], m[6]));
    m.set_option_type(m[4]);
    out.print(", selftest {}"_cf, m[7] != 0 ? "BAD" : "OK");
    if (m.option_type() == type_aom) out.print(", {} touches"_cf, m[8]);
}

void module_report(Message& m, Text& out) {
    switch (m[3]) {
        case 0x00:
        case 0x01:
        case 0x81:
            module_reset(m, out);
            break;
        case 2:
            out.add("illegal command");
            break;
        case 6:
            out.add("segment failure");
            break;
        case 7:
            out.add("wrong state");
            break;
        default:
            out.add("anomalie");
            break;
    }
}

using OptionDecoder = void (*)(Session&, const Message&, Text&);

constexpr std::array<OptionDecoder, 16> option_decoders = {
    decode_v24, decode_s0, decode_mpc, decode_eak, decode_eak, decode_z,  decode_v24, nullptr,
    nullptr,    decode_ks, decode_ks,  decode_ks,  decode_ks,  decode_ks, nullptr,    nullptr,
};

// byte 1: sub-device, address in bits 0-2, module type in bits 3-7   byte 2: module opcode
// The label shows what was remembered before this message; what this message says is remembered as it stands,
// "all bits set" included.
void sub_device_message(Session& session, Message& m, Text& out) {
    constexpr std::uint8_t module_report_opcode = 0x9F;
    option_label(session, m[1], out);
    session.change(session.digital.modules).types[m[1] & 7] = m[1] >> 3;
    const OptionDecoder decoder = option_decoders[m[1] >> 3 & 15];
    if (decoder != nullptr) {
        m.set_option_type(m[4]);
        decoder(session, m, out);
    } else if (m[2] == module_report_opcode) {
        module_report(m, out);
    } else {
        out.add("subdev message");
    }
}

// byte 7: bits 3-5 newer terminal   bytes 7, 8: info   byte 9: hardware   byte 10: 1 rac   then extensions,
// as many as the message has
void reset_tail(const Message& m, Text& out) {
    constexpr std::array<std::string_view, 7> hardware = {
        "fullcrypto ", "gigabit ", "maxmem ", "wideband ", "3g ", "vhe ", "superwideband "};
    out.print(", vta type{}"_cf, (m[7] & 0x38) != 0 ? ">=2" : "=1");
    out.print(", info1={}"_cf, m[7]);
    out.print(", info2={}"_cf, m[8]);
    out.print(", hard cfg={:02x}"_cf, m[9]);
    if (m[9] != 0 && m[2] == 0) {
        out.add(" (");
        for (unsigned n = 0; n < hardware.size(); ++n) {
            if (m.bit(9, n)) out.add(hardware[n]);
        }
        out.add(")");
    }
    out.add(m[10] == 1 ? ", rac" : ", dec");
    const std::uint32_t n = m.length();
    if (n > 12) out.add(version_logiciel(", data", m[11], m[12]));
    if (n > 14) out.add(version_logiciel(", load", m[13], m[14]));
    if (n > 15) out.print(", additional vta type={:02x}, "_cf, m[15]);
    if (n > 16) out.print("bt={}, "_cf, m[16]);
    if (n > 17) out.print("vpn={}, ipsec={}, dtls={}, "_cf, m[17] & 1, m[17] >> 1 & 1, m[17] >> 2 & 1);
    if (n > 18) out.print("wlan connected={}, "_cf, m[18] & 1);
}

void soft_version(const Message& m, Text& out) { out.add(version_logiciel("soft", m[3], m[4])); }

void set_reset(const Message& m, Text& out) {
    out.print("{} {},"_cf, type_poste(m[6]), design_poste(m[7]));
    soft_version(m, out);
    dec_selftest(m[5], out);
    reset_tail(m, out);
}

void adapter_reset(const Message& m, Text& out) {
    soft_version(m, out);
    reset_tail(m, out);
}

// byte 6: channels   byte 7: power feeding   byte 9: 1 download suggested
void base_reset(const Message& m, Text& out) {
    constexpr auto channels = names({{0, ", reserved"}, {1, ", 3 channels"}, {2, ", 6 channels"}}, ", ???");
    constexpr auto power = names({{0, ", local power feeding"}, {1, ", remote power feeding"}}, ", ???");
    soft_version(m, out);
    out.add(channels[m[6]]);
    out.add(power[m[7]]);
    if (m[9] == 1) out.add(", download suggested");
}

// byte 5: self-test   byte 6: type   byte 7: 1 repeater   byte 8: ROM version   byte 9: 1 download suggested
void hub_reset(const Message& m, Text& out) {
    soft_version(m, out);
    out.print(" selfTest: {:02X} type: {:02X} romVersion: {:02X} \n\t... misc: {:02X}"_cf, m[5], m[6], m[8],
              m[7]);
    if (m[7] == 1) out.add("= repeater");
    out.add(m[9] == 1 ? " dld suggested" : " dld done");
}

struct Terminal {
    std::string_view name;
    void (*reset)(const Message&, Text&);
};
constexpr std::array<Terminal, 5> terminals = {{
    {" ", set_reset},
    {" TA", adapter_reset},
    {" DECT-IBS", base_reset},
    {" PWT-IBS", base_reset},
    {" HUB", hub_reset},
}};
constexpr Terminal unknown_terminal = {" ???", adapter_reset};

// byte 1: 0 hard, 1 soft   byte 2: kind of terminal   bytes 3, 4: version; on the HE link byte 3 is the
// terminal's type and the report ends there
void reset_of_terminal(Session& session, const Message& m, Text& out) {
    session.change(session.digital.modules).types.fill(type_unknown);
    out.add("reset");
    out.add(m[1] == 0 ? " hard," : " soft,");
    const Terminal& terminal = m[2] < terminals.size() ? terminals[m[2]] : unknown_terminal;
    out.add(terminal.name);
    if (m.route == route_he) {
        out.add(type_poste(m[3]));
    } else {
        terminal.reset(m, out);
    }
}

// The report's length tells what it is about.
void error_status_or_interface_event(const Message& m, Text& out) {
    constexpr auto events = names({{1, "msg too long"}, {2, "short circuit"}}, "???");
    switch (m.length()) {
        case 7:
            out.print("error status for command 0x{:02x}: 0x{:02x}{:02x}{:02x}{:02x}"_cf, m[2], m[3], m[4],
                      m[5], m[6]);
            break;
        case 8:
            out.print("error status for command 0x13 + 0x{:02x}: 0x{:02x}{:02x}{:02x}{:02x}"_cf, m[3], m[4],
                      m[5], m[6], m[7]);
            break;
        default:
            out.print("interface {:x} event: {}"_cf, m[2], events[m[3]]);
            break;
    }
}

// byte 1: kind of report
void reset_and_status_report(Session& session, Message& m, Text& out) {
    constexpr std::uint8_t hub = 4;
    switch (m[1]) {
        case 0:
        case 1:
            reset_of_terminal(session, m, out);
            break;
        case 2:
            out.print("illegal command received: {:02x}"_cf, m[2]);
            break;
        case 3:
            out.print("erreur: {}"_cf, dec_err(m[2]));
            break;
        case 4:
            out.print("warning: {}"_cf, dec_warn(m[2]));
            break;
        case 5:
            out.print("subdevice {:x} is down"_cf, m[2]);
            break;
        case 6:
            out.add("segment failure");
            break;
        case 8:
            error_status_or_interface_event(m, out);
            break;
        case 9:
            out.print("hub event: {}"_cf, m[2] == 1 ? "msg too long" : "???");
            break;
        default:
            out.add("reset ???");
            break;
    }
    if (m[2] == hub) m.route = route_hub;
}

// byte 1: 0 a set, else an adapter   bytes 2, 3: version   byte 4: terminal
void version_response(Session& /*session*/, Message& m, Text& out) {
    const bool adapter = m[1] != 0;
    out.print("version response {}, {} {}"_cf,
              adapter ? " TA" : " poste= ", adapter ? std::string_view("") : type_poste(m[4]),
              version_logiciel("soft", m[2], m[3]));
}

// byte 1: step   2: acknowledgement, packet number in bytes 2, 3, code in byte 4
// 10: acknowledgement, packet number in bytes 2 to 4, code in byte 5
void download_protocol(Session& /*session*/, Message& m, Text& out) {
    out.add("download protocol ");
    switch (m[1]) {
        case 0:
            out.add("suggest");
            break;
        case 2:
            download_ack_text(m[4], out);
            out.print(", number: 0x{:02x}{:02x}"_cf, m[2], m[3]);
            break;
        case 5:
            out.add("end ack");
            break;
        case 7:
            out.add("checksum ack");
            break;
        case 10:
            download_ack_text(m[5], out);
            out.print(", number: 0x{:02x}{:02x}{:02x}"_cf, m[2], m[3], m[4]);
            break;
        default:
            break;
    }
}

constexpr auto messages = route_opcodes({
    {0, "nop ack"},
    {1, "handset off hook"},
    {2, "handset on hook"},
    {3, digit_dialled},
    {4, sub_device_message},
    {6, "loop back on ack"},
    {7, "loop back off ack"},
    {10, "warmstart ack"},
    {11, "super message"},
    {12, segment_message},
    {23, "super message type 2"},
    {24, "debug message"},
    {31, reset_and_status_report},
    {32, "key pushed"},
    {33, version_response},
    {34, "I'm here"},
    {35, "status response"},
    {36, "subdev state response"},
    {38, "digit released"},
    {39, "trace on ack"},
    {40, "trace off ack"},
    {41, "special key status"},
    {42, "key released"},
    {43, "peripheral content"},
    {45, "TM key pushed"},
    {80, download_protocol},
    {96, "CTI: local msg"},
    {97, "CTI: trace dhs->vta"},
    {98, "CTI: trace vta->dhs"},
    {99, "CTI: trace dhs->subd"},
    {100, "CTI: trace subd->dhs"},
});

}  // namespace

void rn2dhs(Session& session, Message& m, Text& out) {
    if (m.length() == 0) return;
    m.status = Status::recognised;
    if (!messages.write(m[0] & 0x7F, session, m, out)) m.status = Status::unknown;
}

}  // namespace ztdecode
