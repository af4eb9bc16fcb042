#include <algorithm>

#include "ip/items.hpp"
#include "ip/messages.hpp"
#include "ip/values.hpp"

// The ticket of a call that has ended. Its items have a length of two bytes: tag, length, value.

namespace ztdecode::ip {

namespace {

// "Ticket QOS:" and its lines end here.
constexpr std::uint32_t longest_ticket = 29999;

constexpr std::uint8_t end_tag = 255;

void hex(Decoding& d) {
    d.add("0x");
    d.hex_number(row_field, 0, d.length());
}

// A table: some bytes a line, the lines below each other.
void hex_table(Decoding& d, std::uint32_t bytes_a_line) {
    d.add("0x");
    for (std::uint32_t k = 0; k < d.length(); k += bytes_a_line) {
        if (k != 0) d.add("\n\t\t\t      0x");
        d.hex_number(row_field, k, std::min(bytes_a_line, d.length() - k));
    }
}

void hex_words(Decoding& d) { hex_table(d, 2); }

void hex_double_words(Decoding& d) { hex_table(d, 4); }

void equipment(Decoding& d) {
    d.value(row_field, {Kind::word, true, 0, d.u16(0).number, d.u16(0).place},
            [&] { d.out().print("{-}.{-}"_cf, d[0], d[1]); });
}

void dotted(Decoding& d) { d.value(row_field, dotted_address(d, 0)); }

// The labels are a column: each has 18 characters. 36, 37, 39 and 40 are called by their numbers.
constexpr std::size_t label_width = 18;
constexpr std::string_view unknown_label = "???               ";
constexpr auto ticket_items = items({{0x01, "date de fin com   ", "call_end_date", hex},
                                     {0x02, "numero noeud      ", "node_number", hex},
                                     {0x03, "version protocole ", "protocol_version", hex},
                                     {0x04, "numero rack       ", "rack_number", hex},
                                     {0x05, "numero coupleur   ", "coupler_number", hex},
                                     {0x06, "type equipement   ", "equipment_type", equipment},
                                     {0x07, "numero canal      ", "channel_number", hex},
                                     {0x08, "ip source         ", "source_ip", dotted},
                                     {0x09, "ip distant        ", "remote_ip", dotted},
                                     {0x0A, "local id          ", quoted},
                                     {0x0B, "distant id        ", quoted},
                                     {0x0C, "duree appel       ", "call_duration", hex},
                                     {0x0D, "ssrc local        ", "local_ssrc", hex},
                                     {0x0E, "ssrc distant      ", "remote_ssrc", hex},
                                     {0x0F, "algo compress     ", "codec", hex},
                                     {0x10, "vad               ", hex},
                                     {0x11, "ece               ", "echo_cancellation", hex},
                                     {0x12, "voice mode        ", hex},
                                     {0x13, "framing demande   ", "requested_framing", hex},
                                     {0x14, "framing recu      ", "received_framing", hex},
                                     {0x15, "changemt framing  ", "framing_changes", hex},
                                     {0x16, "nb paquets recus  ", "packets_received", hex},
                                     {0x17, "nb paquets emis   ", "packets_sent", hex},
                                     {0x18, "nb paquets perdus ", "packets_lost", hex},
                                     {0x19, "silence total     ", "total_silence", hex},
                                     {0x1A, "nb sid recus      ", "sid_received", hex},
                                     {0x1B, "table delais      ", "delay_table", hex_words},
                                     {0x1C, "delai max         ", "maximum_delay", hex},
                                     {0x1D, "nb dtmf recus     ", "dtmf_received", hex},
                                     {0x1E, "bfi joues         ", "bfi_played", hex_words},
                                     {0x1F, "repartition bfi   ", "bfi_distribution", hex_words},
                                     {0x20, "prof jitter       ", "jitter_depth", hex_double_words},
                                     {0x21, "icmp unreachable  ", hex},
                                     {0x22, "fax pqts perdus   ", "fax_packets_lost", hex},
                                     {0x23, "fax underrun      ", "fax_underruns", hex},
                                     {0x24, "  36              ", "ticket_item_36", hex},
                                     {0x25, "  37              ", "ticket_item_37", hex},
                                     {0x26, "version soft      ", "software_version", hex},
                                     {0x27, "  39              ", "ticket_item_39", hex},
                                     {0x28, "  40              ", "ticket_item_40", hex},
                                     {0x29, "framing dsp       ", "dsp_framing", hex},
                                     {0x2A, "nb sid emis       ", "sid_sent", hex},
                                     {0x2D, "delai min (ms)    ", "minimum_delay", hex},
                                     {0x2E, "utilisatn 802.1Q  ", "vlan_tagging", hex},
                                     {0x2F, "priorite 802.1Q   ", "user_priority", hex},
                                     {0x30, "VLAN id           ", hex},
                                     {0x31, "DiffServ          ", hex},
                                     {0x37, "encryption        ", hex},
                                     {0x3D, "200ms_bfi_distrib ", "bfi_distribution_200ms", hex},
                                     {0x3E, "consecutive_rtp   ", hex}},
                                    unknown_label);

static_assert(unknown_label.size() == label_width);
static_assert(std::all_of(ticket_items.rows().begin(), ticket_items.rows().end(),
                          [](const Item& row) { return row.label.size() == label_width; }));

void ticket_item(Decoding& d, const Byte& tag) {
    if (ticket_items.write(d, tag)) return;
    const Decoding::Scope unknown(d);
    d.on(tag);
    d.add("0x");
    d.hex_number("unknown_item_bytes", 0, d.length());
}

}  // namespace

// byte 0 of an item: tag   bytes 1-2: length   then the value, of which as much is shown as a ticket can have
// A tag 255 behind an item ends the ticket, where it may stand even behind the end of the message. In first
// place it is a tag like any other.
void qos_ticket(Decoding& d) {
    const std::size_t begin = d.out().size();
    d.add("Ticket QOS:");
    d.add(new_list_line);
    for (std::uint32_t at = 2; at < d.length() && d.out().size() - begin < longest_ticket;) {
        const Decoding::Scope item(d);
        const Byte tag = d[at];
        const Number length = d.u16(at + 1);
        at += 3;
        d.walk(length);
        {
            const Decoding::Piece line(d);
            const Decoding::Window value(d, at, length.as(std::min(length.number, longest_ticket)));
            ticket_item(d, tag);
        }
        at += length.number;
        if (at < d.length()) d.add(new_list_line);
        if (d[at].number == end_tag) {
            d.walk(d[at]);
            d.add("\n\t... end missing");
            break;
        }
    }
    if (d.out().size() - begin > longest_ticket) d.cut(begin + longest_ticket);
}

}  // namespace ztdecode::ip
