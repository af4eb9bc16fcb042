#include <string>

#include "core/phrase.hpp"
#include "ip/items.hpp"
#include "ip/messages.hpp"
#include "ip/values.hpp"

// The item lists of voice streams. Redirecting, listening and recording have ids and spellings of their own.

namespace ztdecode::ip {

namespace {

// The set's default codec is spelt a little differently where it is set.
constexpr auto codecs = names({{0x00, "G.711 A law"},
                               {0x01, "G.711 mu law"},
                               {0x0F, "G.723.1  5.3 kb/s"},
                               {0x10, "G.723.1  6.3 kb/s"},
                               {0x11, "G.729A  8 kb/s"},
                               {0x1B, "G.722 64 kb/s"},
                               {0x1C, "G.722 56 kb/s"},
                               {0x1D, "G.722 48 kb/s"},
                               {0x1E, "Opus"}},
                              "???");

void codec(Decoding& d) { d.value(row_field, codecs[d[0]]); }

void milliseconds(Decoding& d) { d.print("{} ms"_cf, d[0]); }

void channel(Decoding& d) {
    static constexpr auto channels =
        names({{0, "channel number: 0 <=> main"}, {1, "channel number: 1 <=> announce"}}, "");
    Word channel = channels[d[0]];
    std::string unknown;
    if (!channel.known) {
        unknown = formatted("channel number: 0x{-:02x} <=> unknown"_cf, d[0]);
        channel.text = unknown;
    }
    add_phrase(d, row_field, channel, "channel number: ");
}

// Set means off.
void disable_or_enable(Decoding& d) { d.value(row_field, flag(d[0] == 0, "enable", "disable")); }

constexpr int encryption_on = 0x10;

void encryption(Decoding& d) { d.value(row_field, flag(d[0] == encryption_on, "enable", "disable")); }

constexpr auto rtp_params =
    items({{0x00, "local UDP port=", two_byte_number},
           {0x01, "remote IP=", ip_address},
           {0x02, "remote UDP port=", two_byte_number},
           {0x03, "type of service: ", bytes_text},
           {0x04, "codec: ", codec},
           {0x05, "payload concatenation: ", milliseconds},
           {0x06, "Echo Cancelation Enabler: ", "echo_cancellation", bytes_text},
           {0x07, "Silence Compression Enabler: ", "silence_compression", bytes_text},
           {0x08, "802.1Q user priority: ", "user_priority", bytes_text},
           {0x09, "reserved"},
           {0x0A, "post filtering: ", bytes_text},
           {0x0B, "high pass filter: ", bytes_text},
           {0x0C, "remote ssrc: ", bytes_text},
           {0x0D, "must send QOS ticket: ", bytes_text},
           {0x0E, "local id: ", bytes_text},
           {0x0F, "distant id: ", bytes_text},
           {0x10, "port rtcp sender report: ", "rtcp_sender_report_port", bytes_text},
           {0x11, "@IP  rtcp sender report: ", "rtcp_sender_report_ip", ip_address},
           {0x12, "port rtcp receiver report: ", "rtcp_receiver_report_port", bytes_text},
           {0x13, "@IP  rtcp receiver report: ", "rtcp_receiver_report_ip", ip_address},
           {0x14, "", "channel_number", channel},
           {0x15, "send DTMF: ", yes_or_no},
           {0x16, "payload type for rfc2198: ", "rfc2198_payload_type", bytes_text},
           {0x17, "payload type for rfc2833: ", "rfc2833_payload_type", bytes_text},
           {0x18, "enable/disable rfc2198: ", "rfc2198", disable_or_enable},
           {0x31, "SRTP encryption enable/disable: ", "srtp_encryption", encryption},
           {0x32, "master key for SRTP session: ", "srtp_master_key", bytes_text},
           {0x33, "master salt key for SRTP session: ", "srtp_master_salt_key", bytes_text},
           {0x36, "integrity checking: ", number},
           {0x39, "integrity Thales method: ", "integrity_method", number},
           {0x50, "MD5 authentication: ", bytes_text}},
          "???");

constexpr auto redirect_items =
    items({{0x00, "remote IP=", ip_address}, {0x01, "remote UDP port=", two_byte_number}}, "???");

constexpr auto listen_items = items({{0x00, "remote IP=", ip_address},
                                     {0x01, "remote UDP portIn=", "remote_udp_port_in", two_byte_number},
                                     {0x02, "remote UDP portOut=", "remote_udp_port_out", two_byte_number}},
                                    "???");

void tag_check(Decoding& d) {
    static constexpr auto tag_checks =
        names({{0x00, "no authentication"},
               {0x01, "Authentication tag emission with received tag control"},
               {0x10, "Authentication tag emission without received tag control"}},
              "unknown");
    d.value(row_field, tag_checks[d[0]]);
}

void integrity_method(Decoding& d) {
    static constexpr auto integrity_methods = names({{0, "old method"}, {1, "new method"}}, "unknown");
    d.value(row_field, integrity_methods[d[0]]);
}

// The text of the item before it, which may be one of an earlier message.
void repeated_item(Decoding& d) {
    d.value(row_field, {Kind::text, true, 0, 0, d.code().place}, [&] { d.add(*d.session().ip.record_item); });
}

constexpr int record_item_repeated = 0x04;

// Keys are not shown here.
constexpr auto record_items =
    items({{0x00, "recorder index=", number},
           {0x01, "remote IP=", ip_address},
           {0x02, "remote UDP port in= ", two_byte_number},
           {0x03, "remote UDP port out= ", two_byte_number},
           {record_item_repeated, "", "repeated_text", repeated_item},
           {0x05, "local UDP port in= ", two_byte_number},
           {0x06, "local UDP port out= ", two_byte_number},
           {0x07, "type of service= ", first_byte_hex},
           {0x08, "master key for srtp session: "},
           {0x09, "master salt key for srtp session: "},
           {0x10, "integrity checking: ", tag_check},
           {0x11, "integrity method of thales component: ", "integrity_method", integrity_method},
           {0x30, "MD5 authentication: ", bytes_text}},
          "???");

}  // namespace

void rtp_param_list(Decoding& d, std::uint32_t first) {
    write_list(d, first, [](Decoding& item, const Byte& id) { rtp_params.write(item, id); });
}

void redirect_list(Decoding& d, std::uint32_t first) {
    write_list(d, first, [](Decoding& item, const Byte& id) { redirect_items.write(item, id); });
}

void listen_list(Decoding& d, std::uint32_t first) {
    write_list(d, first, [](Decoding& item, const Byte& id) { listen_items.write(item, id); });
}

void record_list(Decoding& d, std::uint32_t first) {
    write_list(d, first, [](Decoding& item, const Byte& id) {
        const std::size_t begin = item.out().size();
        record_items.write(item, id);
        if (id.number == record_item_repeated) return;
        Session& session = item.session();
        session.set_anew(session.ip.record_item) = item.out().from(begin);
    });
}

}  // namespace ztdecode::ip
