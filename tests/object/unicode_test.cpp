#include "object/unicode.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "object/lookup.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

using namespace object;

// Every glyph and key that has a name of its own; the others of U+E000 to U+E0B2 have the font's alone.
// clang-format off
const std::map<std::uint32_t, const char*> named_glyphs = {
    {0xE031, "Corvane rond vide (ne pas utiliser)"},
    {0xE032, "Corvane rond avec un point dedans (ne pas utiliser)"},
    {0xE07F, "Corvane triangle vide (ne pas utiliser)"},
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
};
// clang-format on

const char* expected_glyph(std::uint32_t code_point) {
    const auto found = named_glyphs.find(code_point);
    if (found != named_glyphs.end()) return found->second;
    return code_point >= 0xE000 && code_point <= 0xE0B2 ? "Corvane " : nullptr;
}

TEST(Glyphs, RowsInStoredOrder) {
    ASSERT_EQ(std::size(tab_unicod), 289U);
    ASSERT_EQ(sizeof tab_unicod, 289 * 2 * sizeof(void*));
    std::size_t row = 0;
    for (std::uint32_t c = 0xE000; c <= 0xE139; ++c) {
        const char* name = expected_glyph(c);
        if (name == nullptr) continue;
        ASSERT_LT(row, 288U);
        EXPECT_EQ(tab_unicod[row].code, c);
        EXPECT_STREQ(tab_unicod[row].name, name) << c;
        ++row;
    }
    EXPECT_EQ(row, 288U);
    EXPECT_EQ(tab_unicod[288].code, 0xB000);
    EXPECT_STREQ(tab_unicod[288].name, "UTF8_LABEL_NOT_FOUND");
}

TEST(Glyphs, NamesAreUtf8) {
    EXPECT_STREQ(tab_unicod[0xB4].name, "Corvane petit a soulign\xC3\xA9 (ne pas utiliser)");
    EXPECT_STREQ(tab_unicod[0xC5].name,
                 "Corvane fl\xC3\xA8"
                 "che haut");
    EXPECT_STREQ(tab_unicod[0xF6].name, "Corvane triangle plein pointe \xC3\xA0 droite");
}

TEST(Glyphs, FoundByCodePoint) {
    for (std::uint32_t c = 0; c <= 0x11000; ++c) {
        const char* name = expected_glyph(c);
        if (name == nullptr) {
            EXPECT_EQ(glyph_name(c), nullptr) << c;
        } else {
            EXPECT_STREQ(glyph_name(c), name) << c;
        }
        EXPECT_EQ(object::find_glyph(c, tab_unicod), glyph_name(c)) << c;
    }
    EXPECT_EQ(glyph_name(0xFFFFFFFF), nullptr);
    EXPECT_EQ(glyph_name(0x1E031), nullptr);
    EXPECT_EQ(object::find_glyph(0x1E031, tab_unicod), nullptr);
    EXPECT_EQ(object::find_glyph(0xB000, tab_unicod), nullptr);
}

TEST(Glyphs, AnyTableEndsAtItsSentinel) {
    const ztdecode_glyph_record table[] = {{7, "seven"}, {7, "again"}, {0xB000, "end"}, {9, "behind"}};
    EXPECT_STREQ(object::find_glyph(7, table), "seven");
    EXPECT_EQ(object::find_glyph(9, table), nullptr);
}

TEST(Blocks, Structure) {
    ASSERT_EQ(std::size(UnicodeBlock), 161U);
    EXPECT_EQ(sizeof UnicodeBlock, 161 * (8 + sizeof(void*)));
    EXPECT_EQ(UnicodeBlock[0].first, 0U);
    EXPECT_EQ(UnicodeBlock[160].last, 0xFFFFU);
    // Ascending and apart from each other, in columns of sixteen; these three stretches stand in no block.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> gaps;
    std::uint32_t next = 0;
    std::vector<std::string> names;
    for (const ztdecode_block_record& block : UnicodeBlock) {
        EXPECT_EQ(block.first % 16, 0U) << block.name;
        EXPECT_EQ(block.last % 16, 15U) << block.name;
        EXPECT_LT(block.first, block.last) << block.name;
        ASSERT_GE(block.first, next) << block.name;
        if (block.first != next) gaps.emplace_back(next, block.first - 1);
        next = block.last + 1;
        names.emplace_back(block.name);
    }
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> expected = {
        {0x0860, 0x089F}, {0x1C90, 0x1CBF}, {0x2FE0, 0x2FEF}};
    EXPECT_EQ(gaps, expected);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

TEST(Blocks, Rows) {
    struct Row {
        std::size_t row;
        std::uint32_t first;
        std::uint32_t last;
        const char* name;
    };
    const Row rows[] = {
        {0, 0x0000, 0x007F, "C0 Controls and Basic Latin (Basic Latin)"},
        {1, 0x0080, 0x00FF, "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)"},
        {2, 0x0100, 0x017F, "Latin Extended-A"},
        {3, 0x0180, 0x024F, "Latin Extended-B"},
        {4, 0x0250, 0x02AF, "IPA Extensions"},
        {5, 0x02B0, 0x02FF, "Spacing Modifier Letters"},
        {6, 0x0300, 0x036F, "Combining Diacritical Marks"},
        {7, 0x0370, 0x03FF, "Greek and Coptic"},
        {8, 0x0400, 0x04FF, "Cyrillic"},
        {9, 0x0500, 0x052F, "Cyrillic Supplement"},
        {10, 0x0530, 0x058F, "Armenian"},
        {11, 0x0590, 0x05FF, "Hebrew"},
        {12, 0x0600, 0x06FF, "Arabic"},
        {157, 0xFE50, 0xFE6F, "Small Form Variants"},
        {158, 0xFE70, 0xFEFF, "Arabic Presentation Forms-B"},
        {159, 0xFF00, 0xFFEF, "Halfwidth and Fullwidth Forms"},
        {160, 0xFFF0, 0xFFFF, "Specials"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(UnicodeBlock[row.row].first, row.first) << row.name;
        EXPECT_EQ(UnicodeBlock[row.row].last, row.last) << row.name;
        EXPECT_STREQ(UnicodeBlock[row.row].name, row.name);
    }
}

TEST(Blocks, FoundByCodePoint) {
    struct Row {
        std::uint32_t code_point;
        const char* name;
    };
    const Row rows[] = {
        {0x0000, "C0 Controls and Basic Latin (Basic Latin)"},
        {0x007E, "C0 Controls and Basic Latin (Basic Latin)"},
        {0x007F, nullptr},  // the last of each block does not count
        {0x0080, "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)"},
        {0x00E9, "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)"},
        {0x00FE, "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)"},
        {0x00FF, nullptr},
        {0x0100, "Latin Extended-A"},
        {0x0120, "Latin Extended-A"},
        {0x03B1, "Greek and Coptic"},
        {0x0860, nullptr},
        {0x089F, nullptr},
        {0x08A0, "Arabic Extended-A"},
        {0x1C80, "Cyrillic Extended-C"},
        {0x1C90, nullptr},
        {0x1CC0, "Sundanese Supplement"},
        {0x20AC, "Currency Symbols"},
        {0x20D0, "Combining Diacritical Marks for Symbols"},
        {0x2192, "Arrows"},
        {0x260E, "Miscellaneous Symbols"},
        {0x2FE0, nullptr},
        {0x3042, "Hiragana"},
        {0x4DBE, "CJK Unified Ideographs Extension A"},
        {0x65E5, "CJK Unified Ideographs"},
        {0x672C, "CJK Unified Ideographs"},
        {0xD55C, "Hangul Syllables"},
        {0xD800, "High Surrogates"},
        {0xDB80, "High Private Use Surrogates"},
        {0xDC00, "Low Surrogates"},
        {0xE140, "Private Use Area"},
        {0xF8FF, nullptr},
        {0xFEFF, nullptr},
        {0xFFF0, "Specials"},
        {0xFFFE, "Specials"},
        {0xFFFF, nullptr},
        {0x10000, nullptr},
        {0x1F600, nullptr},
        {0xFFFFFFFF, nullptr},
    };
    for (const Row& row : rows) {
        if (row.name == nullptr) {
            EXPECT_EQ(block_name(row.code_point), nullptr) << row.code_point;
        } else {
            EXPECT_STREQ(block_name(row.code_point), row.name) << row.code_point;
        }
    }
}

// The plain walk from the first row on, for every code point.
TEST(Blocks, SameAsTheWalk) {
    for (std::uint32_t c = 0; c <= 0x20000; ++c) {
        const auto* found = std::find_if(
            std::begin(UnicodeBlock), std::end(UnicodeBlock),
            [c](const ztdecode_block_record& block) { return block.first <= c && c < block.last; });
        const char* expected = found == std::end(UnicodeBlock) ? nullptr : found->name;
        ASSERT_EQ(block_name(c), expected) << c;
    }
}

}  // namespace
}  // namespace ztdecode::testing
