#include "digital/options/s0_tables.hpp"

#include "core/going_away.hpp"

namespace ztdecode {

namespace {

constexpr auto call_control = names({{1, "alerte"},
                                     {2, "appel en cours"},
                                     {3, "progress"},
                                     {5, "etablissement"},
                                     {7, "connexion"},
                                     {13, "etablissement ack"},
                                     {37, "suspension"},
                                     {38, "reprise"},
                                     {69, "deconnexion"},
                                     {77, "lib"},
                                     {90, "fin lib"},
                                     {98, "facilite"},
                                     {100, "reponse enreg"},
                                     {110, "notify"},
                                     {116, "demande enreg"},
                                     {117, "status inquiry"},
                                     {123, "information"},
                                     {125, "status"},
                                     {226, "etat"}},
                                    "inconnu");

constexpr std::uint8_t content_call_control = 8;
constexpr std::uint8_t content_packet = 16;

}  // namespace

std::string_view call_control_name(std::uint8_t code) noexcept { return call_control[code]; }

std::string_view operating_mode_name(std::uint8_t mode) noexcept { return mode == 1 ? "full S0" : "S0 star"; }

// Segments count down to 0. One that comes before any first segment is shown against a total of 0.
void s0_segment_message(std::int32_t& total, const Message& m, Text& out) {
    const bool first = m.bit(3, 7);
    const std::int32_t to_come = m[3] & 0x7F;
    if (first) total = to_come + 1;
    out.print("segment message {}/{}"_cf, total - to_come, total);
    if (first) out.print("\n\t- {}"_cf, call_control_name(m[12]));
}

void data_link(const Message& m, Text& out) { out.print(" sapi {} tei {:02X} "_cf, m[3], m[4]); }

void data_link_content(const Message& m, Text& out) {
    out.add(" ");
    if (m[5] == content_call_control) {
        out.add(call_control_name(m[8]));
    } else if (m[5] == content_packet) {
        out.add("packet");
    }
}

}  // namespace ztdecode
