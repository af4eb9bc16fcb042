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
    {"module", "type of a module"},
    {"module_address", "address of a module behind its set"},

    // The hub, the DECT bases and the smaller links.
    {"set_number", "number of a set behind the hub"},

    // The IP set.
    {"remote_ip", "address of the other end of the voice", "", network_address},

    // The set with windows.
    {"window", "number of a window"},

    // The object protocol.
    {"accesskey", "key that opens an item"},
    {"acknowledge", "an acknowledgement is asked for"},
    {"action_icon", "icon of an action"},
    {"action_key", "key of an action"},
    {"action_label", "label of an action", "", person},
    {"action_value", "value that an action gives", "", person},
    {"active", "number of the active element"},
    {"address", "address of a server", "", network_address},
    {"advanced_mode", "advanced mode of a list"},
    {"all_icons_off", "all icons of a key module off"},
    {"all_labels_off", "all labels of a key module off"},
    {"alphakeys_ownership", "server that owns the alphabetic keys"},
    {"alt", "what the keys give with alt"},
    {"anchorid", "object that an object hangs on"},
    {"append", "text or data to append", "", person},
    {"application", "application of the terminal"},
    {"arp_spoofing", "protection from forged addresses"},
    {"autorepeat", "time until a held key repeats"},
    {"autospread", "a frame spreads by itself"},
    {"background", "colour of the background"},
    {"backlight_timeout", "time until the backlight goes out"},
    {"binary_count", "number of binaries"},
    {"binary_suffix", "suffix of the binaries' names"},
    {"bluetooth_address", "address of a Bluetooth device", "", hardware_address},
    {"bonded", "a Bluetooth device is bonded"},
    {"bonded_devices", "Bluetooth devices are bonded"},
    {"bonding_result", "how the bonding of a Bluetooth device ended"},
    {"border", "border of an object"},
    {"bpp", "bits of a pixel", "bits"},
    {"bth_beep", "the Bluetooth handset beeps"},
    {"bth_ringing", "the Bluetooth handset rings"},
    {"character_names", "the characters of a text by their names", "", person},
    {"checked", "mark of a checked box"},
    {"circular", "a list goes round"},
    {"class", "class of an object"},
    {"clearscreen", "the screen is cleared"},
    {"cod", "class of a Bluetooth device"},
    {"color", "colour of a led"},
    {"contrast", "contrast of a display"},
    {"count", "number of elements"},
    {"cs_idle_state", "the call server is idle"},
    {"cursor", "place of the cursor"},
    {"custversion", "version of the customisation"},
    {"cycling", "a frame shows its objects in turn"},
    {"cycling_time", "how long each of them shows"},
    {"data", "data of an image"},
    {"day", "day of the month"},
    {"dcode", "code of a screen element"},
    {"ddata", "data of a screen element", "", person},
    {"delay_max_handset", "longest delay of the handset's voice"},
    {"delay_max_handsfree", "longest delay of handsfree voice"},
    {"delay_rx", "delay of the receiving side"},
    {"delay_tx", "delay of the sending side"},
    {"denable", "an element can be chosen"},
    {"device", "audio device"},
    {"dflt", "what the keys give by themselves"},
    {"dicon", "icon of an element"},
    {"disablelongpress", "long presses do not count"},
    {"dlabel", "label of an element", "", person},
    {"dmode", "mode of an element"},
    {"dname", "name of an element", "", person},
    {"downership", "server that owns an element"},
    {"dstate", "state of an element"},
    {"dtype", "type of an element"},
    {"dvalue", "value of an element", "", person},
    {"enable", "an object can be used"},
    {"error_code", "why a command was refused"},
    {"eventmode", "which key events are reported"},
    {"fetch_timeout", "how long a fetch may take"},
    {"focus", "an object has the focus"},
    {"fontid", "number of a font"},
    {"foreground", "colour of the foreground"},
    {"format", "format of an image, a date or a time"},
    {"frame_type", "type of a frame"},
    {"grid", "grid that coordinates count in"},
    {"h", "height, or hour"},
    {"halign", "horizontal alignment"},
    {"hardversion", "version of the hardware"},
    {"help_timeout", "how long help shows"},
    {"hoffset", "horizontal offset"},
    {"icon", "number of an icon"},
    {"ime_lock", "the input method is locked"},
    {"incdec", "step or direction of counting"},
    {"index", "index of the refused element"},
    {"inputborder", "an input has a border"},
    {"interruptible", "an application can be interrupted"},
    {"item_index", "index of an item"},
    {"key_eventmode", "which events of a key are reported"},
    {"key_ownership", "server that owns a key"},
    {"l10nversion", "version of the localisation"},
    {"label", "label of an object", "", person},
    {"link_key", "key of a Bluetooth link", "", secret},
    {"link_type", "type of the link"},
    {"list_type", "type of a list"},
    {"longpress", "how long a long press is"},
    {"m", "minute"},
    {"mask", "what may be typed"},
    {"mask_subst", "character shown in place of what is typed"},
    {"max", "largest value"},
    {"method", "what is done to an object"},
    {"min", "smallest value"},
    {"modal", "a box has to be answered first"},
    {"mode", "mode of an object"},
    {"month", "month"},
    {"mtu", "longest packet", "bytes"},
    {"name", "name of a server or a Bluetooth device", "", person},
    {"navigator_ownership", "server that owns the navigator"},
    {"negative_ack", "refused commands are answered"},
    {"number", "number of a call", "", call_number},
    {"numpad_eventmode", "which events of the digit keys are reported"},
    {"numpad_ownership", "server that owns the digit keys"},
    {"object_id", "number of an object"},
    {"objectid", "number of an object, as a property of it"},
    {"onoff", "leds on"},
    {"overwrite", "text that takes the place of another", "", person},
    {"ownership", "server that owns an object"},
    {"page_active", "active page of a key module"},
    {"password", "what is typed does not show"},
    {"pin", "PIN of a Bluetooth device", "", secret},
    {"plugged", "a device is plugged in"},
    {"port", "port of a server"},
    {"progkeys_ownership", "server that owns the programmable keys"},
    {"property", "property of an object"},
    {"property_id", "the same as a number"},
    {"property_index", "index of an indexed property"},
    {"property_value", "value of a property that no table knows", "", person},
    {"protocol", "protocol of a server"},
    {"ps_idle_state", "the presentation server is idle"},
    {"qos_ticket", "tickets on the quality of calls are sent"},
    {"ram_size", "size of the RAM", "bytes"},
    {"realcount", "number of elements that are there"},
    {"repetition", "time between repetitions of a held key"},
    {"reset", "how the terminal is to be reset"},
    {"reset_cause", "why the terminal was reset"},
    {"ringings_count", "number of melodies"},
    {"rom_size", "size of the ROM", "bytes"},
    {"s", "second"},
    {"screensaver_timeout", "time until the screen saver starts"},
    {"serialnum", "serial number", "", hardware_address},
    {"server", "server of the object protocol"},
    {"session_timeout", "how long a session may be silent"},
    {"shift", "what the keys give with shift"},
    {"shortpress", "how long a short press is"},
    {"showactive", "the active element is marked"},
    {"showevent", "pressed elements are marked"},
    {"sipcversion", "version of the SIP client"},
    {"size", "size of an image, or of what can be typed"},
    {"softkeys_ownership", "server that owns the soft keys"},
    {"softversion", "version of the software"},
    {"start", "first element that shows"},
    {"started", "an application started"},
    {"state", "state of an object"},
    {"system_id", "number of the system"},
    {"telephony_ownership", "server that owns the telephony keys"},
    {"term_type", "type of the terminal"},
    {"text", "text of an error", "", person},
    {"timeout", "how long an object stays"},
    {"today", "word for today"},
    {"tomorrow", "word for tomorrow"},
    {"type", "type of an object"},
    {"unchecked", "mark of an unchecked box"},
    {"unknown_property", "a property that the class does not have"},
    {"uri", "where an image is found", "", network_address},
    {"use_customisation", "customisation in use"},
    {"valign", "vertical alignment"},
    {"value", "value of an object", "", person},
    {"value_notify", "value that is reported"},
    {"visible", "an object shows"},
    {"voffset", "vertical offset"},
    {"vsplit", "vertical split"},
    {"w", "width"},
    {"widgets_size", "sizes of objects count"},
    {"x", "horizontal place"},
    {"y", "vertical place"},
    {"year", "year"},
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
