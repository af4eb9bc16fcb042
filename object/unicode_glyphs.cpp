// Names of the terminals' own characters (U+E000 to U+E0FF) and keys (U+E100 to U+E139).

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "object/unicode.hpp"

// Most of the font's characters are known by the font's name alone, blank included.
// clang-format off
#define PLAIN(c) {c, "Corvane "}
#define PLAIN_2(c) PLAIN(c), PLAIN((c) + 1)
#define PLAIN_4(c) PLAIN_2(c), PLAIN_2((c) + 2)
#define PLAIN_8(c) PLAIN_4(c), PLAIN_4((c) + 4)
#define PLAIN_16(c) PLAIN_8(c), PLAIN_8((c) + 8)
// clang-format on

constexpr ztdecode_glyph_record tab_unicod[] = {
    PLAIN_16(0xE000),
    PLAIN_16(0xE010),
    PLAIN_16(0xE020),
    PLAIN(0xE030),
    {0xE031, "Corvane rond vide (ne pas utiliser)"},
    {0xE032, "Corvane rond avec un point dedans (ne pas utiliser)"},
    PLAIN(0xE033),
    PLAIN_4(0xE034),
    PLAIN_8(0xE038),
    PLAIN_16(0xE040),
    PLAIN_16(0xE050),
    PLAIN_16(0xE060),
    PLAIN_8(0xE070),
    PLAIN_4(0xE078),
    PLAIN_2(0xE07C),
    PLAIN(0xE07E),
    {0xE07F, "Corvane triangle vide (ne pas utiliser)"},
    PLAIN_16(0xE080),
    PLAIN_16(0xE090),
    PLAIN_16(0xE0A0),
    PLAIN_2(0xE0B0),
    PLAIN(0xE0B2),
    {0xE0B3, "Corvane c cedille (ne pas utiliser)"},
    {0xE0B4, "Corvane petit a souligné (ne pas utiliser)"},
    {0xE0B5, "Corvane petit o souligné (ne pas utiliser)"},
    {0xE0B6, "Corvane cent (ne pas utiliser)"},
    {0xE0B7, "Corvane pt (ne pas utiliser)"},
    {0xE0B8, "Corvane point d'exclamation inversé (ne pas utiliser)"},
    {0xE0B9, "Corvane o barré (ne pas utiliser)"},
    {0xE0BA, "Corvane inférieur ou égal (ne pas utiliser)"},
    {0xE0BB, "Corvane supérieur ou égal (ne pas utiliser)"},
    {0xE0BC, "Corvane d croate (ne pas utiliser)"},
    {0xE0BD, "Corvane différent (ne pas utiliser)"},
    {0xE0BE, "Corvane racine (ne pas utiliser)"},
    {0xE0BF, "Corvane moins (ne pas utiliser)"},
    {0xE0C0, "Corvane 1/2 accolade haute"},
    {0xE0C1, "Corvane 1/2 accolade basse"},
    {0xE0C2, "Corvane infini"},
    {0xE0C3, "Corvane 1/2 triangle supérieur gauche"},
    {0xE0C4, "Corvane return"},
    {0xE0C5, "Corvane flèche haut"},
    {0xE0C6, "Corvane flèche bas"},
    {0xE0C7, "Corvane flèche gauche"},
    {0xE0C8, "Corvane flèche droite"},
    {0xE0C9, "Corvane flèche droite grasse"},
    {0xE0CA, "Corvane carré plein"},
    {0xE0CB, "Corvane carré vide"},
    {0xE0CC, "Corvane flèche gauche grasse"},
    {0xE0CD, "Corvane point"},
    {0xE0CE, "Corvane registered"},
    {0xE0CF, "Corvane copyright"},
    {0xE0D0, "Corvane trademark"},
    {0xE0D1, "Corvane dagger"},
    {0xE0D2, "Corvane signe de section"},
    {0xE0D3, "Corvane paragraphe"},
    {0xE0D4, "Corvane gamma majuscule"},
    {0xE0D5, "Corvane delta majuscule"},
    {0xE0D6, "Corvane theta majuscule"},
    {0xE0D7, "Corvane lambda majuscule"},
    {0xE0D8, "Corvane ksi majuscule"},
    {0xE0D9, "Corvane pi majuscule"},
    {0xE0DA, "Corvane sigma majuscule"},
    {0xE0DB, "Corvane tau majuscule"},
    {0xE0DC, "Corvane phi majuscule"},
    {0xE0DD, "Corvane psi majuscule"},
    {0xE0DE, "Corvane omega majuscule"},
    {0xE0DF, "Corvane alpha"},
    {0xE0E0, "Corvane beta"},
    {0xE0E1, "Corvane gamma"},
    {0xE0E2, "Corvane delta"},
    {0xE0E3, "Corvane epsilon"},
    {0xE0E4, "Corvane zeta"},
    {0xE0E5, "Corvane eta"},
    {0xE0E6, "Corvane theta"},
    {0xE0E7, "Corvane iota"},
    {0xE0E8, "Corvane kappa"},
    {0xE0E9, "Corvane lambda"},
    {0xE0EA, "Corvane mu"},
    {0xE0EB, "Corvane nu"},
    {0xE0EC, "Corvane ksi"},
    {0xE0ED, "Corvane pi"},
    {0xE0EE, "Corvane rho"},
    {0xE0EF, "Corvane sigma"},
    {0xE0F0, "Corvane tau"},
    {0xE0F1, "Corvane upsilon"},
    {0xE0F2, "Corvane phi"},
    {0xE0F3, "Corvane psi"},
    {0xE0F4, "Corvane omega"},
    {0xE0F5, "Corvane triangle plein pointe en bas"},
    {0xE0F6, "Corvane triangle plein pointe à droite"},
    {0xE0F7, "Corvane triangle plein pointe à gauche"},
    {0xE0F8, "Corvane R extra gras"},
    {0xE0F9, "Corvane combiné"},
    {0xE0FA, "Corvane F extra gras"},
    {0xE0FB, "Corvane haut-parleur"},
    {0xE0FC, "Corvane rectangle vide"},
    {0xE0FD, "Corvane rectangle plein"},
    {0xE0FE, "Corvane 1/2 rectangle plein à droite"},
    {0xE0FF, "Corvane 1/2 rectangle plein à gauche"},
    {0xE100, "Release"},
    {0xE101, "Bis"},
    {0xE102, "Message"},
    {0xE103, "Handsfree"},
    {0xE104, "Mute"},
    {0xE105, "Vol_dec"},
    {0xE106, "Vol_inc"},
    {0xE107, "Hook"},
    {0xE110, "Ok"},
    {0xE111, "Left"},
    {0xE112, "Right"},
    {0xE113, "Down"},
    {0xE114, "Up"},
    {0xE115, "Home"},
    {0xE116, "Help"},
    {0xE117, "Directory"},
    {0xE120, "ProgKey_0"},
    {0xE121, "ProgKey_1"},
    {0xE122, "ProgKey_2"},
    {0xE123, "ProgKey_3"},
    {0xE124, "ProgKey_4"},
    {0xE125, "ProgKey_5"},
    {0xE130, "SoftKey_0"},
    {0xE131, "SoftKey_1"},
    {0xE132, "SoftKey_2"},
    {0xE133, "SoftKey_3"},
    {0xE134, "SoftKey_4"},
    {0xE135, "SoftKey_5"},
    {0xE136, "SoftKey_6"},
    {0xE137, "SoftKey_7"},
    {0xE138, "SoftKey_8"},
    {0xE139, "SoftKey_9"},
    {0xB000, "UTF8_LABEL_NOT_FOUND"},
};

namespace ztdecode::object {

namespace {

constexpr std::uint32_t first_glyph = 0xE000;
constexpr std::uint32_t last_glyph = 0xE139;
constexpr std::size_t sentinel_row = std::size(tab_unicod) - 1;

constexpr auto row_of_glyph = [] {
    std::array<std::uint16_t, last_glyph - first_glyph + 1> rows{};
    rows.fill(sentinel_row);
    for (std::size_t i = 0; i < sentinel_row; ++i) {
        rows.at(tab_unicod[i].code - first_glyph) = static_cast<std::uint16_t>(i);
    }
    return rows;
}();

}  // namespace

const char* glyph_name(std::uint32_t code_point) noexcept {
    if (code_point < first_glyph || code_point > last_glyph) return nullptr;
    const std::size_t row = row_of_glyph[code_point - first_glyph];
    return row == sentinel_row ? nullptr : tab_unicod[row].name;
}

}  // namespace ztdecode::object
