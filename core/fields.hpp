#pragma once

#include <cstddef>
#include <string_view>

// The names of the values that texts show. A name is the field's own term and means the same thing on every
// link; what else there is to know of such a value hangs on its name.

namespace ztdecode {

// Whom a value tells about. What is hidden in a trace that leaves the house is decided by this alone.
enum class Sensitivity : unsigned char {
    none,
    call_number,  // dialled or calling
    person,       // a person's name, or what a display shows
    network_address,
    hardware_address,
    secret,  // passwords and keys
};

struct Field {
    std::string_view name;
    std::string_view meaning;
    std::string_view unit{};
    Sensitivity sensitivity = Sensitivity::none;
};

using enum Sensitivity;

// clang-format off
inline constexpr Field all_fields[] = {
    // On several links.
    {"unknown_code", "a code that no table knows"},
    {"repeated_text", "text of an earlier message, shown again"},
    {"audio_devices", "devices of an earlier configuration, shown again"},
    {"length", "number of bytes"},
    {"key", "code of a key"},
    {"key_text", "character of a key", "", call_number},
    {"digit", "dialled digit", "", call_number},
    {"subdevice", "number of a device behind the set"},
    {"software_version", "version of the software"},
    {"hardware_version", "version of the hardware"},
    {"terminal_type", "type of the terminal"},
    {"terminal_design", "design of the terminal"},
    {"reset_kind", "hard or soft"},
    {"self_test", "result of the self-test"},
    {"error", "what went wrong"},
    {"warning", "what the set warns of"},
    {"command", "code of a command"},
    {"packet_number", "number of a packet of a download"},
    {"codec", "coding of the voice"},
    {"part_length", "length of a part of a super message"},
    {"part_bytes", "bytes of a part of a super message"},
    {"sender", "application that sends"},
    {"receiver", "application that receives"},
    {"source", "where a visiophone message comes from"},
    {"destination", "where a visiophone message goes to"},

    // The digital set.
    {"acknowledgement", "what became of a packet of a download"},
    {"acknowledgement_code", "the same as a code"},
    {"additional_vta_type", "further type of the terminal adapter"},
    {"announce", "announce on"},
    {"announce_channel", "channel of the announce"},
    {"announce_devices", "devices of the announce"},
    {"beep", "what to do with the beep"},
    {"beep_number", "number of beeps"},
    {"bluetooth", "Bluetooth present"},
    {"cadence", "cadence of the ringing"},
    {"cadence_number", "the same as a number"},
    {"channels", "channels of a base"},
    {"coder", "kind of coder"},
    {"coding", "law of the coding"},
    {"configuration", "audio configuration that no table knows"},
    {"data_version", "version of the data"},
    {"display_text", "text of a display", "", person},
    {"download", "state of the download"},
    {"download_content", "what is downloaded"},
    {"download_identifier", "which binary is downloaded"},
    {"download_length", "length of the download", "bytes"},
    {"dtls", "DTLS supported"},
    {"error_status", "status of a refused command"},
    {"event", "what happened"},
    {"feedback_dtmf", "feedback of dialled tones on"},
    {"gain", "gain"},
    {"handset_devices", "devices of the handset"},
    {"handsfree_devices", "devices of handsfree"},
    {"hardware", "what the hardware has"},
    {"hardware_configuration", "the same as bits"},
    {"headset_devices", "devices of the headset"},
    {"hub_type", "type of the hub"},
    {"info1", "first info byte"},
    {"info2", "second info byte"},
    {"interface", "number of an interface"},
    {"ipsec", "IPsec supported"},
    {"key_release", "released keys are reported"},
    {"keys", "number of keys"},
    {"led", "number of a led"},
    {"line", "line of the display"},
    {"line_mode", "mode of the line"},
    {"loader_version", "version of the loader"},
    {"loudspeaker_devices", "devices of the loudspeaker"},
    {"melody", "number of the melody"},
    {"misc", "misc byte"},
    {"mute", "microphone muted"},
    {"option", "number of an option"},
    {"option_state", "state of an option"},
    {"power_feeding", "where the power comes from"},
    {"progressive", "progressive ringing"},
    {"receiving_gain", "gain of the receiving side", "dB"},
    {"refusals", "what to do with refusals"},
    {"ring", "ringing on"},
    {"ring_volume", "volume of the ringing", "dB"},
    {"rom_version", "version of the ROM"},
    {"segment", "number of the segment"},
    {"segment_start", "first segment"},
    {"segments", "number of segments"},
    {"segments_to_come", "segments still to come"},
    {"sending_gain", "gain of the sending side", "dB"},
    {"side_tone", "side tone on"},
    {"silent", "silent ringing"},
    {"speaker_gain", "gain of the loudspeaker", "dB"},
    {"terminal", "kind of terminal"},
    {"test", "test"},
    {"voice_channel", "channel of the voice"},
    {"volume", "volume step"},
    {"vpn", "VPN supported"},
    {"vta_type", "type of the terminal adapter"},
    {"warm_start_mode", "mode of the warm start"},
    {"windows", "number of windows"},
    {"wlan_connected", "connected to a wireless network"},

    // The modules behind a digital set.
    {"adaptation", "protocol of a data adapter"},
    {"adapter_state", "state of a data adapter"},
    {"anomaly", "what a module's software found wrong"},
    {"baud_rate", "speed of a data adapter's line, as a code"},
    {"call_control", "ISDN call-control message"},
    {"control_key", "control key pushed"},
    {"eeprom_written", "writing to the EEPROM went well"},
    {"frame_content", "what a frame carries that is no call control"},
    {"hook", "on hook or off hook"},
    {"internal_status", "part of the module's own state"},
    {"layer1_event", "event of layer 1"},
    {"layer1_state", "state of layer 1"},
    {"layer1_timer", "timer of layer 1"},
    {"module", "type of a module"},
    {"module_address", "address of a module behind its set"},
    {"operating_mode", "mode that the module works in"},
    {"padded_path", "path of the audio"},
    {"powered", "the module has power"},
    {"release_cause", "cause of a data link's release"},
    {"reset_reason", "reason of a reset, as a code"},
    {"sapi", "SAPI of a data link"},
    {"shift_key", "shift key pushed"},
    {"software_block", "block of a module's software"},
    {"stack_maximum", "most of its stack that a module used"},
    {"star_state", "state of layer 1 of a star"},
    {"string_error", "what is wrong with a literal string, as a code"},
    {"tei", "TEI of a data link"},
    {"timer", "timer that expired"},
    {"transmission", "asynchronous or synchronous"},
    {"voice_mode", "mode of the voice"},

    // The hub, the DECT bases and the smaller links.
    {"set_number", "number of a set behind the hub"},

    // The IP set.
    {"remote_ip", "address of the other end of the voice", "", network_address},

    // The set with windows.
    {"window", "number of a window"},

    // The object protocol.
    {"object_id", "number of an object"},
};
// clang-format on

// Named so that the compiler's complaint about calling it says what is wrong.
void a_field_has_to_stand_in_the_list_of_fields();

consteval const Field* field_named(std::string_view name) {
    for (const Field& field : all_fields) {
        if (field.name == name) return &field;
    }
    a_field_has_to_stand_in_the_list_of_fields();
    return nullptr;
}

// What a value is called: written as a string, it is looked up by the compiler. `row_field` is what the row of
// the table calls it that led to the value; `no_field` says that words are no value of the message.
class FieldName {
  public:
    consteval FieldName(const char* name) : field_(field_named(name)) {}  // NOLINT: a name as a string
    constexpr explicit FieldName(const Field* field) : field_(field) {}
    constexpr const Field* get() const noexcept { return field_; }
    constexpr bool operator==(const FieldName&) const = default;

  private:
    const Field* field_;
};

// The name that a label has for its value: "remote IP=" is remote_ip.
consteval FieldName field_of_label(std::string_view label) {
    char name[64] = {};  // NOLINT: for the compiler alone
    std::size_t size = 0;
    for (const char c : label) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
        const bool capital = c >= 'A' && c <= 'Z';
        if (!letter && !capital) {
            if (size > 0 && name[size - 1] != '_') name[size++] = '_';
        } else {
            name[size++] = capital ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    while (size > 0 && name[size - 1] == '_') --size;
    return FieldName(field_named({name, size}));
}

inline constexpr Field row_field_mark{"{}", ""};
inline constexpr Field no_field_mark{"-", ""};
inline constexpr FieldName row_field{&row_field_mark};
inline constexpr FieldName no_field{&no_field_mark};

}  // namespace ztdecode
