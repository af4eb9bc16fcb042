#include <algorithm>

#include "ip/messages.hpp"
#include "ip/values.hpp"

// The ticket of a call that has ended. Its items have a length of two bytes: tag, length, value.

namespace ztdecode::ip {

namespace {

// "Ticket QOS:" and its lines end here.
constexpr std::size_t longest_ticket = 29999;

constexpr std::uint8_t end_tag = 255;

void hex(const Item& item, Text& out) {
    out.add("0x");
    for (std::uint32_t k = 0; k < item.length; ++k) out.hex(item[k]);
}

// A table: some bytes a line, the lines below each other.
void hex_table(const Item& item, std::uint32_t bytes_a_line, Text& out) {
    out.add("0x");
    for (std::uint32_t k = 0; k < item.length; ++k) {
        if (k != 0 && k % bytes_a_line == 0) out.add("\n\t\t\t      0x");
        out.hex(item[k]);
    }
}

void hex_words(const Item& item, Text& out) { hex_table(item, 2, out); }

void hex_double_words(const Item& item, Text& out) { hex_table(item, 4, out); }

void equipment(const Item& item, Text& out) { out.print("{}.{}"_cf, item[0], item[1]); }

void dotted(const Item& item, Text& out) { out.add(ip_dotted_text(item)); }

// The labels are a column: each has 18 characters. 36, 37, 39 and 40 are called by their numbers.
constexpr std::size_t label_width = 18;
constexpr std::string_view unknown_label = "???               ";
constexpr ItemText ticket_rows[] = {
    // NOLINT: rows stand as a braced list
    {1, "date de fin com   ", hex},        {2, "numero noeud      ", hex},
    {3, "version protocole ", hex},        {4, "numero rack       ", hex},
    {5, "numero coupleur   ", hex},        {6, "type equipement   ", equipment},
    {7, "numero canal      ", hex},        {8, "ip source         ", dotted},
    {9, "ip distant        ", dotted},     {10, "local id          ", ip_quoted},
    {11, "distant id        ", ip_quoted}, {12, "duree appel       ", hex},
    {13, "ssrc local        ", hex},       {14, "ssrc distant      ", hex},
    {15, "algo compress     ", hex},       {16, "vad               ", hex},
    {17, "ece               ", hex},       {18, "voice mode        ", hex},
    {19, "framing demande   ", hex},       {20, "framing recu      ", hex},
    {21, "changemt framing  ", hex},       {22, "nb paquets recus  ", hex},
    {23, "nb paquets emis   ", hex},       {24, "nb paquets perdus ", hex},
    {25, "silence total     ", hex},       {26, "nb sid recus      ", hex},
    {27, "table delais      ", hex_words}, {28, "delai max         ", hex},
    {29, "nb dtmf recus     ", hex},       {30, "bfi joues         ", hex_words},
    {31, "repartition bfi   ", hex_words}, {32, "prof jitter       ", hex_double_words},
    {33, "icmp unreachable  ", hex},       {34, "fax pqts perdus   ", hex},
    {35, "fax underrun      ", hex},       {36, "  36              ", hex},
    {37, "  37              ", hex},       {38, "version soft      ", hex},
    {39, "  39              ", hex},       {40, "  40              ", hex},
    {41, "framing dsp       ", hex},       {42, "nb sid emis       ", hex},
    {45, "delai min (ms)    ", hex},       {46, "utilisatn 802.1Q  ", hex},
    {47, "priorite 802.1Q   ", hex},       {48, "VLAN id           ", hex},
    {49, "DiffServ          ", hex},       {55, "encryption        ", hex},
    {61, "200ms_bfi_distrib ", hex},       {62, "consecutive_rtp   ", hex},
};
constexpr auto ticket_items = item_texts(ticket_rows);

static_assert(unknown_label.size() == label_width);
static_assert(std::all_of(std::begin(ticket_rows), std::end(ticket_rows),
                          [](const ItemText& row) { return row.text.size() == label_width; }));

// byte 0: tag   bytes 1-2: length   then the value
Item ticket_item_at(const Message& m, std::uint32_t at) noexcept { return {m, m[at], m.u16(at + 1), at + 3}; }

// As much of the value is shown as a ticket can have, and most values claim far less.
void write_ticket_item(Item item, Text& out) {
    const Text::Piece line(out);
    item.length = std::min<std::uint32_t>(item.length, longest_ticket);
    if (!ticket_items.write(item, out)) {
        out.add(unknown_label);
        hex(item, out);
    }
}

}  // namespace

// A tag 255 behind an item ends the ticket, where it may stand even behind the end of the message. In first
// place it is a tag like any other.
void qos_ticket(Session& /*session*/, const Message& m, Text& out) {
    const std::size_t begin = out.size();
    out.add("Ticket QOS:");
    out.add(new_list_line);
    for (std::uint32_t at = 2; at < m.length() && out.size() - begin < longest_ticket;) {
        const Item item = ticket_item_at(m, at);
        write_ticket_item(item, out);
        at = item.first + item.length;
        if (at < m.length()) out.add(new_list_line);
        if (m[at] == end_tag) {
            out.add("\n\t... end missing");
            break;
        }
    }
    if (out.size() - begin > longest_ticket) out.cut(begin + longest_ticket);
}

}  // namespace ztdecode::ip
