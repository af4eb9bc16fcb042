#include "ip/messages.hpp"
#include "ip/values.hpp"

// The item lists of voice streams. Redirecting, listening and recording have ids and spellings of their own.

namespace ztdecode::ip {

namespace {

// The set's default codec is spelt a little differently where it is set.
constexpr auto codecs = names({{0, "G.711 A law"},
                               {1, "G.711 mu law"},
                               {15, "G.723.1  5.3 kb/s"},
                               {16, "G.723.1  6.3 kb/s"},
                               {17, "G.729A  8 kb/s"},
                               {27, "G.722 64 kb/s"},
                               {28, "G.722 56 kb/s"},
                               {29, "G.722 48 kb/s"},
                               {30, "Opus"}},
                              "???");

void codec(const Item& item, Text& out) { out.add(codecs[item[0]]); }

void milliseconds(const Item& item, Text& out) { out.print("{} ms"_cf, item[0]); }

void channel(const Item& item, Text& out) {
    switch (item[0]) {
        case 0:
            out.add("channel number: 0 <=> main");
            break;
        case 1:
            out.add("channel number: 1 <=> announce");
            break;
        default:
            out.print("channel number: 0x{:02x} <=> unknown"_cf, item[0]);
            break;
    }
}

void yes_or_no(const Item& item, Text& out) { out.add(item[0] != 0 ? "yes" : "no"); }

// Set means off.
void disable_or_enable(const Item& item, Text& out) { out.add(item[0] != 0 ? "disable" : "enable"); }

constexpr std::uint8_t encryption_on = 16;

void encryption(const Item& item, Text& out) { out.add(item[0] == encryption_on ? "enable" : "disable"); }

constexpr auto rtp_params = item_texts({{0, "local UDP port=", ip_two_byte_number},
                                        {1, "remote IP=", ip_address},
                                        {2, "remote UDP port=", ip_two_byte_number},
                                        {3, "type of service: ", ip_bytes_text},
                                        {4, "codec: ", codec},
                                        {5, "payload concatenation: ", milliseconds},
                                        {6, "Echo Cancelation Enabler: ", ip_bytes_text},
                                        {7, "Silence Compression Enabler: ", ip_bytes_text},
                                        {8, "802.1Q user priority: ", ip_bytes_text},
                                        {9, "reserved"},
                                        {10, "post filtering: ", ip_bytes_text},
                                        {11, "high pass filter: ", ip_bytes_text},
                                        {12, "remote ssrc: ", ip_bytes_text},
                                        {13, "must send QOS ticket: ", ip_bytes_text},
                                        {14, "local id: ", ip_bytes_text},
                                        {15, "distant id: ", ip_bytes_text},
                                        {16, "port rtcp sender report: ", ip_bytes_text},
                                        {17, "@IP  rtcp sender report: ", ip_address},
                                        {18, "port rtcp receiver report: ", ip_bytes_text},
                                        {19, "@IP  rtcp receiver report: ", ip_address},
                                        {20, channel},
                                        {21, "send DTMF: ", yes_or_no},
                                        {22, "payload type for rfc2198: ", ip_bytes_text},
                                        {23, "payload type for rfc2833: ", ip_bytes_text},
                                        {24, "enable/disable rfc2198: ", disable_or_enable},
                                        {49, "SRTP encryption enable/disable: ", encryption},
                                        {50, "master key for SRTP session: ", ip_bytes_text},
                                        {51, "master salt key for SRTP session: ", ip_bytes_text},
                                        {54, "integrity checking: ", ip_number},
                                        {57, "integrity Thales method: ", ip_number},
                                        {80, "MD5 authentication: ", ip_bytes_text}});

constexpr auto redirect_items =
    item_texts({{0, "remote IP=", ip_address}, {1, "remote UDP port=", ip_two_byte_number}});

constexpr auto listen_items = item_texts({{0, "remote IP=", ip_address},
                                          {1, "remote UDP portIn=", ip_two_byte_number},
                                          {2, "remote UDP portOut=", ip_two_byte_number}});

constexpr auto tag_checks = names({{0, "no authentication"},
                                   {1, "Authentication tag emission with received tag control"},
                                   {16, "Authentication tag emission without received tag control"}},
                                  "unknown");
constexpr auto integrity_methods = names({{0, "old method"}, {1, "new method"}}, "unknown");

void tag_check(const Item& item, Text& out) { out.add(tag_checks[item[0]]); }

void integrity_method(const Item& item, Text& out) { out.add(integrity_methods[item[0]]); }

// Keys are not shown here.
constexpr auto record_items = item_texts({{0, "recorder index=", ip_number},
                                          {1, "remote IP=", ip_address},
                                          {2, "remote UDP port in= ", ip_two_byte_number},
                                          {3, "remote UDP port out= ", ip_two_byte_number},
                                          {5, "local UDP port in= ", ip_two_byte_number},
                                          {6, "local UDP port out= ", ip_two_byte_number},
                                          {7, "type of service= ", ip_first_byte_hex},
                                          {8, "master key for srtp session: "},
                                          {9, "master salt key for srtp session: "},
                                          {16, "integrity checking: ", tag_check},
                                          {17, "integrity method of thales component: ", integrity_method},
                                          {48, "MD5 authentication: ", ip_bytes_text}});

constexpr std::uint8_t record_item_repeated = 4;

void ip_rtp_param_text(const Item& item, Text& out) {
    if (!rtp_params.write(item, out)) out.add("???");
}

}  // namespace

void rtp_param_list(const Message& m, std::uint32_t first, Text& out) {
    write_list(m, first, out, ip_rtp_param_text);
}

void redirect_list(const Message& m, std::uint32_t first, Text& out) {
    write_list(m, first, out, [](const Item& item, Text& text) {
        if (!redirect_items.write(item, text)) text.add("???");
    });
}

void listen_list(const Message& m, std::uint32_t first, Text& out) {
    write_list(m, first, out, [](const Item& item, Text& text) {
        if (!listen_items.write(item, text)) text.add("???");
    });
}

void record_list(const Message& m, std::uint32_t first, Session& session, Text& out) {
    write_list(m, first, out, [&session](const Item& item, Text& text) {
        if (item.id == record_item_repeated) {
            text.add(*session.ip.record_item);
            return;
        }
        const std::size_t begin = text.size();
        if (!record_items.write(item, text)) text.add("???");
        session.change(session.ip.record_item) = text.from(begin);
    });
}

}  // namespace ztdecode::ip
