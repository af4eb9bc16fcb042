#include "digital/options/s0_tables.hpp"

#include "core/tables.hpp"

namespace ztdecode::s0 {

namespace {

constexpr auto call_control_messages = names({{0x01, "alerte"},
                                              {0x02, "appel en cours"},
                                              {0x03, "progress"},
                                              {0x05, "etablissement"},
                                              {0x07, "connexion"},
                                              {0x0D, "etablissement ack"},
                                              {0x25, "suspension"},
                                              {0x26, "reprise"},
                                              {0x45, "deconnexion"},
                                              {0x4D, "lib"},
                                              {0x5A, "fin lib"},
                                              {0x62, "facilite"},
                                              {0x64, "reponse enreg"},
                                              {0x6E, "notify"},
                                              {0x74, "demande enreg"},
                                              {0x75, "status inquiry"},
                                              {0x7B, "information"},
                                              {0x7D, "status"},
                                              {0xE2, "etat"}},
                                             "inconnu");

constexpr auto internal_statuses = names({{0, " os queues"},
                                          {1, " xon/xoff thresholds"},
                                          {2, " divers"},
                                          {3, " cks, rev, ver,variant"},
                                          {4, " etat niveau 1"}},
                                         "");

}  // namespace

Word call_control(const Byte& code) noexcept { return call_control_messages[code]; }

Word operating_mode(const Byte& mode) noexcept { return either(mode == 1, "full S0", "S0 star"); }

Word internal_status(const Byte& code) noexcept { return internal_statuses[code]; }

// Segments count down to 0. One that comes before any first segment is shown against a total of 0.
void segment_message(Decoding& d, Remembered<std::int32_t>& announced) {
    const bool first = d.bit(3, 7).holds;
    const std::int32_t to_come = d[3].number & 0x7F;
    if (first) d.session().set_anew(announced) = to_come + 1;
    const std::int32_t total = *announced;
    d.print("segment message {segment}/"_cf, d[3].as(total - to_come));
    d.on(d.bit(3, 7));
    d.value("segments", Value<std::int32_t>{total, first ? d[3].place : Place{}});
    if (first) d.print("\n\t- {call_control}"_cf, call_control(d[12]));
}

void data_link(Decoding& d) { d.print(" sapi {sapi} tei {tei:02X} "_cf, d[3], d[4]); }

void data_link_and_content(Decoding& d) {
    data_link(d);
    constexpr std::uint8_t call_control_message = 8;
    constexpr std::uint8_t packet = 16;
    switch (d.on(d[5])) {
        case call_control_message:
            d.print(" {call_control}"_cf, call_control(d[8]));
            break;
        case packet:
            d.print(" {frame_content}"_cf, either(d[5] == packet, "packet", ""));
            break;
        default:
            d.add(" ");
            break;
    }
}

}  // namespace ztdecode::s0
