#include <array>

#include "core/tables.hpp"
#include "decode/tables/identity.hpp"
#include "digital/digital.hpp"
#include "digital/options/options.hpp"

// Digital set to system. byte 0: opcode (bit 7 is ignored), then its parameters.

namespace ztdecode::digital {

namespace {

constexpr std::uint8_t type_unknown = 31;  // remembered for every address after a reset of the set
constexpr std::uint8_t type_aom = 3;

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

// The code stands behind its name; an unknown one stands twice.
void download_ack(Decoding& d, const Byte& code) {
    const std::string_view ack = download_acks[code.number];
    d.value("acknowledgement", {Kind::word, !ack.empty(), 0, code.number, code.place}, [&] {
        if (ack.empty()) {
            d.out().print("ack 0x{-:02X} ???"_cf, code);
        } else {
            d.add(ack);
        }
    });
    d.print(" (0x{acknowledgement_code:02X})"_cf, code);
}

// byte 1: key
void digit_dialled(Decoding& d) {
    static constexpr auto digits = names({{0, "0"},
                                          {1, "1"},
                                          {2, "2"},
                                          {3, "3"},
                                          {4, "4"},
                                          {5, "5"},
                                          {6, "6"},
                                          {7, "7"},
                                          {8, "8"},
                                          {9, "9"},
                                          {10, "*"},
                                          {11, "#"}},
                                         "");
    if (d.on(d[1] < 12)) {
        d.print("digit dialed '{digit}'"_cf, digits[d[1]]);
    } else {
        d.add("digit dialed invalid");
    }
}

// byte 1: bit 7 first segment, bits 0-6 segments still to come
void segment_message(Decoding& d) {
    d.print("segment message start= {segment_start}, reste= {segments_to_come}"_cf,
            flag(d[1] > 127, "yes", "no"), d[1] & 0x7F);
}

// What a module without a decoder says of its own state.
// byte 3: kind   byte 4: module type   bytes 5, 6: version   byte 7: selftest   byte 8: mode, or number of
// keys
void module_reset(Decoding& d) {
    d.add("reset");
    if (d.length() <= 7) return;
    d.value("reset_kind", either(d[3] == 0, " hard ", " soft "));
    d.value("module_type", module_type(d[4]));
    if (d.on(d[4] == 0)) d.value("line_mode", either(d[8] == 3, " A1,", " A2,"));
    d.print(" soft={software_version}"_cf, version_at(d, 5));
    d.option_type = d[4].number;
    d.print(", selftest {self_test}"_cf, either(d[7] != 0, "BAD", "OK"));
    if (d.on(d[4] == type_aom)) d.print(", {keys} touches"_cf, d[8]);
}

constexpr auto module_reports = opcodes({{0x00, "reset", module_reset},
                                         {0x01, "reset", module_reset},
                                         {0x02, "illegal_command", "illegal command"},
                                         {0x06, "segment_failure", "segment failure"},
                                         {0x07, "wrong_state", "wrong state"},
                                         {0x81, "reset", module_reset}},
                                        "anomalie");

constexpr std::array<Decoder, 16> module_decoders = {
    v24::to_system, s0::to_system, mpc::to_system, eak::to_system, eak::to_system, z::to_system,
    v24::to_system, nullptr,       nullptr,        ks::to_system,  ks::to_system,  ks::to_system,
    ks::to_system,  ks::to_system, nullptr,        nullptr,
};

// byte 1: sub-device, address in bits 0-2, module type in bits 3-7   byte 2: module opcode
// The label shows what was remembered before this message; what this message says is remembered as it stands,
// "all bits set" included.
void subdevice_message(Decoding& d) {
    constexpr int module_report = 0x9F;
    const Byte subdevice = d[1];
    module_label(d, subdevice);
    Session& session = d.session();
    session.set_anew(session.digital.modules.types[subdevice.number & 7]) = subdevice.number >> 3;
    const Decoder decoder = module_decoders[d.on(subdevice) >> 3 & 15];
    if (decoder != nullptr) {
        d.option_type = d[4].number;
        decoder(d);
    } else if (d.on(d[2] == module_report)) {
        module_reports.write(d, d[3]);
    } else {
        d.add("subdev message");
    }
}

// byte 7: bits 3-5 newer terminal   bytes 7, 8: info   byte 9: hardware   byte 10: 1 rac   then extensions,
// as many as the message has
void reset_tail(Decoding& d) {
    constexpr std::array<std::string_view, 7> hardware = {
        "fullcrypto ", "gigabit ", "maxmem ", "wideband ", "3g ", "vhe ", "superwideband "};
    d.print(", vta type{vta_type}"_cf, either((d[7] & 0x38) != 0, ">=2", "=1"));
    d.print(", info1={info1}"_cf, d[7]);
    d.print(", info2={info2}"_cf, d[8]);
    d.print(", hard cfg={hardware_configuration:02x}"_cf, d[9]);
    {
        const Decoding::Scope scope(d);
        if (d.on(d[9] != 0) && d.on(d[2] == 0)) {
            d.add(" (");
            for (unsigned n = 0; n < hardware.size(); ++n) {
                if (d.bit(9, n).holds) d.value("hardware", either(d.bit(9, n), hardware[n], ""));
            }
            d.add(")");
        }
    }
    d.value("coder", either(d[10] == 1, ", rac", ", dec"));
    const std::uint32_t n = d.length();
    if (n > 12) d.print(" , data={data_version}"_cf, version_at(d, 11));
    if (n > 14) d.print(" , load={loader_version}"_cf, version_at(d, 13));
    if (n > 15) d.print(", additional vta type={additional_vta_type:02x}, "_cf, d[15]);
    if (n > 16) d.print("bt={bluetooth}, "_cf, d[16]);
    if (n > 17)
        d.print("vpn={vpn}, ipsec={ipsec}, dtls={dtls}, "_cf, d[17] & 1, d[17] >> 1 & 1, d[17] >> 2 & 1);
    if (n > 18) d.print("wlan connected={wlan_connected}, "_cf, d[18] & 1);
}

void software_version(Decoding& d) { d.print(" soft={software_version}"_cf, version_at(d, 3)); }

void set_reset(Decoding& d) {
    d.print("{terminal_type} {terminal_design},"_cf, terminal_type(d[6]), terminal_design(d[7]));
    software_version(d);
    self_test(d, d[5]);
    reset_tail(d);
}

void adapter_reset(Decoding& d) {
    software_version(d);
    reset_tail(d);
}

// byte 6: channels   byte 7: power feeding   byte 9: 1 download suggested
void base_reset(Decoding& d) {
    static constexpr auto channels =
        names({{0, ", reserved"}, {1, ", 3 channels"}, {2, ", 6 channels"}}, ", ???");
    static constexpr auto power =
        names({{0, ", local power feeding"}, {1, ", remote power feeding"}}, ", ???");
    software_version(d);
    d.value("channels", channels[d[6]]);
    d.value("power_feeding", power[d[7]]);
    d.add_if(d[9] == 1, ", download suggested");
}

// byte 5: self-test   byte 6: type   byte 7: 1 repeater   byte 8: ROM version   byte 9: 1 download suggested
void hub_reset(Decoding& d) {
    software_version(d);
    d.print(
        " selfTest: {self_test:02X} type: {hub_type:02X} romVersion: {rom_version:02X} \n\t... misc: {misc:02X}"_cf,
        d[5], d[6], d[8], d[7]);
    d.add_if(d[7] == 1, "= repeater");
    d.value("download", either(d[9] == 1, " dld suggested", " dld done"));
}

struct Terminal {
    std::string_view name;
    Decoder reset;
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
void reset(Decoding& d) {
    for (auto& type : d.session().digital.modules.types) d.session().set_anew(type) = type_unknown;
    d.add("reset");
    d.value("reset_kind", either(d[1] == 0, " hard,", " soft,"));
    const Byte kind = d[2];
    const bool known = kind.number < terminals.size();
    const Terminal& terminal = known ? terminals[kind.number] : unknown_terminal;
    d.value("terminal", Word{terminal.name, kind.number, known, kind.place});
    d.on(kind);
    if (d.route == route_he) {
        d.value("terminal_type", terminal_type(d[3]));
    } else {
        terminal.reset(d);
    }
}

// The report's length tells what it is about.
void error_status_or_interface_event(Decoding& d) {
    static constexpr auto events = names({{1, "msg too long"}, {2, "short circuit"}}, "???");
    switch (d.length()) {
        case 7:
            d.print("error status for command 0x{command:02x}: 0x{error_status:08x}"_cf, d[2], d.u32(3));
            break;
        case 8:
            d.print("error status for command 0x13 + 0x{command:02x}: 0x{error_status:08x}"_cf, d[3],
                    d.u32(4));
            break;
        default:
            d.print("interface {interface:x} event: {event}"_cf, d[2], events[d[3]]);
            break;
    }
}

void illegal_command(Decoding& d) { d.print("illegal command received: {command:02x}"_cf, d[2]); }

void error_report(Decoding& d) { d.print("erreur: {error}"_cf, error(d[2])); }

void warning_report(Decoding& d) { d.print("warning: {warning}"_cf, warning(d[2])); }

void subdevice_down(Decoding& d) { d.print("subdevice {subdevice:x} is down"_cf, d[2]); }

void hub_event(Decoding& d) {
    static constexpr auto events = names({{1, "msg too long"}}, "???");
    d.print("hub event: {event}"_cf, events[d[2]]);
}

constexpr auto reports = opcodes({{0x00, "reset", reset},
                                  {0x01, "reset", reset},
                                  {0x02, "illegal_command", illegal_command},
                                  {0x03, "error", error_report},
                                  {0x04, "warning", warning_report},
                                  {0x05, "subdevice_down", subdevice_down},
                                  {0x06, "segment_failure", "segment failure"},
                                  {0x08, "error_status", error_status_or_interface_event},
                                  {0x09, "hub_event", hub_event}},
                                 "reset ???");

// byte 1: kind of report
void report(Decoding& d) {
    constexpr std::uint8_t hub = 4;
    reports.write(d, d[1]);
    if (d[2].number == hub) d.route = route_hub;
}

// byte 1: 0 a set, else an adapter   bytes 2, 3: version   byte 4: terminal
void version_response(Decoding& d) {
    if (d.on(d[1] != 0)) {
        d.print("version response  TA,   soft={software_version}"_cf, version_at(d, 2));
    } else {
        d.print("version response  poste= , {terminal_type}  soft={software_version}"_cf, terminal_type(d[4]),
                version_at(d, 2));
    }
}

// 2: acknowledgement, packet number in bytes 2, 3, code in byte 4
void short_download_ack(Decoding& d) {
    download_ack(d, d[4]);
    d.print(", number: 0x{packet_number:04x}"_cf, d.u16(2));
}

// 10: acknowledgement, packet number in bytes 2 to 4, code in byte 5
void long_download_ack(Decoding& d) {
    download_ack(d, d[5]);
    d.print(", number: 0x{packet_number:06x}"_cf, d.u24(2));
}

constexpr auto download_steps = opcodes({{0x00, "download_suggest", "suggest"},
                                         {0x02, "download_ack", short_download_ack},
                                         {0x05, "download_end_ack", "end ack"},
                                         {0x07, "download_checksum_ack", "checksum ack"},
                                         {0x0A, "download_ack", long_download_ack}},
                                        "");

// byte 1: step
void download_protocol(Decoding& d) {
    d.add("download protocol ");
    download_steps.write(d, d[1]);
}

constexpr auto messages = opcodes(
    {
        {0x00, "nop_ack", "nop ack"},
        {0x01, "off_hook", "handset off hook"},
        {0x02, "on_hook", "handset on hook"},
        {0x03, "digit_dialled", digit_dialled},
        {0x04, "subdevice_message", subdevice_message},
        {0x06, "loop_back_on_ack", "loop back on ack"},
        {0x07, "loop_back_off_ack", "loop back off ack"},
        {0x0A, "warm_start_ack", "warmstart ack"},
        {0x0B, "super_message", "super message"},
        {0x0C, "segment", segment_message},
        {0x17, "super_message_type_2", "super message type 2"},
        {0x18, "debug_message", "debug message"},
        {0x1F, "report", report},
        {0x20, "key_pushed", "key pushed"},
        {0x21, "version_response", version_response},
        {0x22, "i_am_here", "I'm here"},
        {0x23, "status_response", "status response"},
        {0x24, "subdevice_state_response", "subdev state response"},
        {0x26, "digit_released", "digit released"},
        {0x27, "trace_on_ack", "trace on ack"},
        {0x28, "trace_off_ack", "trace off ack"},
        {0x29, "special_key_status", "special key status"},
        {0x2A, "key_released", "key released"},
        {0x2B, "peripheral_content", "peripheral content"},
        {0x2D, "tm_key_pushed", "TM key pushed"},
        {0x50, "download_protocol", download_protocol},
        {0x60, "cti_local_message", "CTI: local msg"},
        {0x61, "cti_trace_system_to_vta", "CTI: trace dhs->vta"},
        {0x62, "cti_trace_vta_to_system", "CTI: trace vta->dhs"},
        {0x63, "cti_trace_system_to_subdevice", "CTI: trace dhs->subd"},
        {0x64, "cti_trace_subdevice_to_system", "CTI: trace subd->dhs"},
    },
    "");

}  // namespace

void to_system(Decoding& d) {
    if (d.length() == 0) return;
    d.status = messages.write(d, d[0] & 0x7F) ? Status::recognised : Status::unknown;
}

}  // namespace ztdecode::digital
