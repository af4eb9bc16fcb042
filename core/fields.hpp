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
    {"anomaly", "number of an anomaly"},
    {"anomaly_link", "link with the anomaly"},
    {"anv_number", "ANV number"},
    {"channel", "channel of a set behind the hub"},
    {"checksum_status", "whether the checksum is right"},
    {"connected", "connected"},
    {"cooling_time", "time that the power supply cools down", "ms"},
    {"debug_text", "text of a debug message"},
    {"download_address", "address of the download in the memory"},
    {"led_state", "state of the led"},
    {"link_state", "state of the link"},
    {"memory", "which memory"},
    {"memory_value", "value in the memory"},
    {"ram_version", "version of the RAM"},
    {"receive_state", "state of the receiving side"},
    {"sequence_bit", "sequence bit of a packet of a download"},
    {"set1_status", "status of the first set behind the hub"},
    {"set2_status", "status of the second set behind the hub"},
    {"set3_status", "status of the third set behind the hub"},
    {"set_number", "number of a set behind the hub"},
    {"set_status", "status of a set behind the hub"},
    {"software", "software in the ROM or the RAM"},
    {"supply_on_time", "time to switch the power supply on", "ms"},
    {"synchro_wait_time", "time to wait for the synchronisation", "ms"},
    {"test_clock", "output of the test clock on"},
    {"transmit_state", "state of the transmitting side"},
    {"without_synchro", "who is not synchronised"},

    // The IP set.
    {"aec_stable_mode", "acoustic echo cancellation in its stable mode"},
    {"application", "name of an application of the set"},
    {"application_enabled", "application enabled"},
    {"application_mode", "what the set runs as"},
    {"arp_spoofing_timer", "timer against ARP spoofing", "ms"},
    {"audio_environment", "where the set stands"},
    {"bfi_distribution", "how bad frames are distributed"},
    {"bfi_distribution_200ms", "the same within 200 ms"},
    {"bfi_played", "bad frames that were played"},
    {"bt_radio", "Bluetooth radio enabled"},
    {"call_duration", "duration of the call"},
    {"call_end_date", "when the call ended"},
    {"channel_number", "number of the voice channel"},
    {"connect_from", "from where connections are accepted"},
    {"consecutive_rtp", "runs of RTP packets"},
    {"coupler_number", "number of the coupler"},
    {"cpu_ip_address", "address of the CPU", "", network_address},
    {"ctl_fingerprint", "fingerprint of the CTL"},
    {"cust_name", "name of the customisation", "", person},
    {"debug_text", "free text for debugging", "", person},
    {"default_codec", "coding of the voice when nothing else is said"},
    {"delay_table", "table of delays"},
    {"dhcp_ip_address", "address of the DHCP server", "", network_address},
    {"dhcp_survival", "survives without the DHCP server"},
    {"dialpad_rotation", "dial pad rotates"},
    {"diffserv", "DiffServ marking"},
    {"distant_id", "who is at the other end", "", call_number},
    {"dsp_framing", "framing of the signal processor"},
    {"dtmf_level", "level of dialled tones", "dB"},
    {"dtmf_received", "dialled tones received"},
    {"echo_cancellation", "echo cancellation enabled"},
    {"encryption", "encryption of the voice"},
    {"equipment_type", "type of the equipment"},
    {"error_string_cable_problem", "what the set shows when its cable is bad"},
    {"error_string_connected", "what the set shows when it is connected"},
    {"error_string_duplicate_ip_address", "what the set shows when its address is taken"},
    {"error_string_net_down", "what the set shows when the network is down"},
    {"error_string_reset", "what the set shows when it resets"},
    {"error_string_trying_to_connect", "what the set shows when it connects"},
    {"ethernet_config", "configuration of the Ethernet ports"},
    {"fax_packets_lost", "lost packets of a fax"},
    {"fax_underruns", "underruns of a fax"},
    {"firmware_version", "version of the firmware"},
    {"framing_changes", "changes of the framing"},
    {"frequency_1", "first frequency of a tone", "Hz"},
    {"frequency_2", "second frequency of a tone", "Hz"},
    {"high_pass_filter", "high-pass filter"},
    {"icmp_unreachable", "ICMP messages for an unreachable port"},
    {"incident", "what happened to the set"},
    {"integrity_checking", "checking of authentication tags"},
    {"integrity_method", "method of the integrity check"},
    {"ipv6_prefix_length", "length of the IPv6 prefix", "bits"},
    {"jitter_depth", "depth of the jitter buffer"},
    {"keep_talking", "keep talking enabled"},
    {"l10n_name", "name of the localisation"},
    {"language_id", "language"},
    {"level_1", "level of the first frequency", "dB"},
    {"level_2", "level of the second frequency", "dB"},
    {"light_sensor", "sensor of ambient light enabled"},
    {"local_id", "who is at this end", "", call_number},
    {"local_ip_address", "address of the set", "", network_address},
    {"local_ssrc", "source identifier of the sent voice"},
    {"local_udp_port", "UDP port of the set"},
    {"local_udp_port_in", "UDP port of the set, received voice"},
    {"local_udp_port_out", "UDP port of the set, sent voice"},
    {"logo_led", "led of the logo"},
    {"mac_address", "hardware address of the set", "", hardware_address},
    {"maximum_delay", "longest delay"},
    {"md5_authentication", "MD5 authentication", "", secret},
    {"minimum_delay", "shortest delay", "ms"},
    {"mmi_password", "password of the set's menus", "", secret},
    {"must_send_qos_ticket", "a ticket is wanted at the end of the call"},
    {"node_number", "number of the node"},
    {"packets_lost", "RTP packets lost"},
    {"packets_received", "RTP packets received"},
    {"packets_sent", "RTP packets sent"},
    {"parameter", "a parameter of the set"},
    {"payload_concatenation", "voice in one packet", "ms"},
    {"pc_port_status", "what the port for a PC lets through"},
    {"post_filtering", "post-filtering"},
    {"protocol_version", "version of the protocol"},
    {"pseudo_mac", "hardware address that the set goes by", "", hardware_address},
    {"rack_number", "number of the rack"},
    {"received_framing", "framing of the received voice"},
    {"record_rtp", "recording of the voice enabled"},
    {"recorder_index", "number of the recorder"},
    {"remote_ip", "address of the other end of the voice", "", network_address},
    {"remote_ssrc", "source identifier of the received voice"},
    {"remote_udp_port", "UDP port of the other end"},
    {"remote_udp_port_in", "UDP port of the other end, received voice"},
    {"remote_udp_port_out", "UDP port of the other end, sent voice"},
    {"requested_framing", "framing that was asked for"},
    {"rfc2198", "redundancy enabled"},
    {"rfc2198_payload_type", "payload type of redundancy"},
    {"rfc2833_payload_type", "payload type of dialled tones"},
    {"router_ip_address", "address of the router", "", network_address},
    {"rtcp_receiver_report_ip", "address for receiver reports", "", network_address},
    {"rtcp_receiver_report_port", "port for receiver reports"},
    {"rtcp_sender_report_ip", "address for sender reports", "", network_address},
    {"rtcp_sender_report_port", "port for sender reports"},
    {"send_dtmf", "dialled tones are sent"},
    {"send_ipv6_addresses", "IPv6 addresses are sent"},
    {"session_string", "string of the session", "", secret},
    {"sid_received", "silence descriptions received"},
    {"sid_sent", "silence descriptions sent"},
    {"silence_compression", "silence compression enabled"},
    {"sip_name", "name of the SIP application", "", person},
    {"skin", "look of the display"},
    {"snmp_mib_community", "community of the SNMP MIB", "", secret},
    {"snmp_sys_contact", "whom SNMP gives as contact", "", person},
    {"snmp_sys_location", "what SNMP gives as location", "", person},
    {"snmp_sys_name", "what SNMP gives as name", "", person},
    {"source_ip", "address of this end of the voice", "", network_address},
    {"srtp_encryption", "encryption of the voice enabled"},
    {"srtp_master_key", "master key of the voice", "", secret},
    {"srtp_master_salt_key", "master salt key of the voice", "", secret},
    {"stream_direction", "direction of a voice stream"},
    {"subnet_mask", "subnet mask", "", network_address},
    {"tftp_backup_ip_address", "address of the second TFTP server", "", network_address},
    {"tftp_backup_secure_mode", "secure mode of the second TFTP server"},
    {"tftp_ip_address", "address of the TFTP server", "", network_address},
    {"ticket_item_36", "item 36 of a ticket"},
    {"ticket_item_37", "item 37 of a ticket"},
    {"ticket_item_39", "item 39 of a ticket"},
    {"ticket_item_40", "item 40 of a ticket"},
    {"tone", "number of a tone"},
    {"tone_direction", "who hears the tones"},
    {"tone_duration", "duration of a tone", "ms"},
    {"tone_entries", "number of tones that are played"},
    {"tone_entry", "number of a tone in its list"},
    {"tone_pair", "number of a pair of frequencies"},
    {"tone_pairs", "number of pairs of frequencies"},
    {"total_silence", "silence in the whole call"},
    {"transparent_reboot", "transparent reboot enabled"},
    {"tscip_version", "version of the link to the system"},
    {"type_of_service", "type of service of the voice packets"},
    {"unknown_item_bytes", "value of an item that no table knows"},
    {"update_mode", "what is updated"},
    {"url", "address of an application", "", network_address},
    {"usb_boost_charging", "boost charging at the USB port"},
    {"usb_device", "USB ports enabled"},
    {"user_priority", "802.1Q priority"},
    {"utc_offset", "offset from UTC"},
    {"vad", "voice activity detection"},
    {"vlan_id", "number of the VLAN"},
    {"vlan_tagging", "802.1Q in use"},
    {"voice_mode", "mode of the voice"},
    {"write_through_command", "command to the set"},

    // The set with windows.
    {"application", "number of an application"},
    {"available_memory", "memory that is available", "bytes"},
    {"background_color", "number of the background's colour"},
    {"boot_version", "version of the boot software"},
    {"cell_first", "first number of a cell of a text list"},
    {"cell_second", "second number of a cell of a text list"},
    {"characters_per_line", "width of a text field", "characters"},
    {"checksum", "checksum"},
    {"code_version", "version of the code"},
    {"color", "number of a colour"},
    {"download_failure", "why a download failed"},
    {"first_attributes", "first attributes of a text field"},
    {"font", "number of a font"},
    {"foreground_color", "number of the foreground's colour"},
    {"height", "height"},
    {"ipar1_version", "version of the first ipar"},
    {"ipar2_version", "version of the second ipar"},
    {"lines", "number of lines of a text field"},
    {"map_position", "where windows are mapped"},
    {"metastate", "metastate of a subdevice"},
    {"object_count", "number of objects"},
    {"object_type", "type of an object"},
    {"recorder", "recorder started"},
    {"second_attributes", "second attributes of a text field"},
    {"value_key", "key of an object's value"},
    {"value_text", "value of an object", "", person},
    {"visibility", "visible"},
    {"width", "width"},
    {"window", "number of a window"},
    {"window_count", "number of windows"},
    {"window_text", "text in a window", "", person},
    {"x", "place from the left"},
    {"y", "place from the top"},

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

// What a value is called: written as a string, it is looked up by the compiler. `row_field` is what the row
// of the table calls it that led to the value; `no_field` says that words are no value of the message.
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
