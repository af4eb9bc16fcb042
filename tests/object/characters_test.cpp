#include "object/characters.hpp"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "object/names.hpp"

namespace ztdecode::testing {
namespace {

using namespace object;

std::string name_of(std::uint32_t code_point, const CharacterNames& names) {
    Text out;
    print_character_name(code_point, names, out);
    return std::string(out.view());
}

std::string name_of(std::uint32_t code_point) {
    Text out;
    print_character_name(code_point, out);
    return std::string(out.view());
}

struct Row {
    std::uint32_t code_point;
    const char* name;
};

// What the library's own tables know.
const std::vector<Row> without_library = {
    {0x0000, "C0 Controls and Basic Latin (Basic Latin)-U+0000"},
    {0x0041, "C0 Controls and Basic Latin (Basic Latin)-U+0041"},
    {0x007E, "C0 Controls and Basic Latin (Basic Latin)-U+007E"},
    {0x007F, "???"},  // the last code point of a block is none of it
    {0x0080, "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)-U+0080"},
    {0x00E9, "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)-U+00E9"},
    {0x00FF, "???"},
    {0x0120, "Latin Extended-A-U+0120"},
    {0x1F16, "Greek Extended-U+1F16"},
    {0x20AC, "Currency Symbols-U+20AC"},
    {0xB000, "Hangul Syllables-U+B000"},  // not the sentinel's name
    {0xE000, "Corvane "},
    {0xE031, "Corvane rond vide (ne pas utiliser)"},
    {0xE0C5, "Corvane flèche haut"},
    {0xE112, "Right"},
    {0xE108, "Private Use Area-U+E108"},  // a gap between the keys
    {0xE139, "SoftKey_9"},
    {0xE13A, "Private Use Area-U+E13A"},
    {0xF8FF, "???"},
    {0xFFFE, "Specials-U+FFFE"},
    {0xFFFF, "???"},
    {0x10000, "???"},
};

TEST(PrintCharacterName, WithoutLibrary) {
    const CharacterNames none("libno-such-library-anywhere.so");
    EXPECT_FALSE(none.available());
    EXPECT_EQ(none[0xE9], nullptr);
    for (const auto& row : without_library) EXPECT_EQ(name_of(row.code_point, none), row.name);
}

TEST(PrintCharacterName, LibraryWithoutTheFunction) {
    const CharacterNames none(NO_NAMES_LIBRARY);
    EXPECT_FALSE(none.available());
    EXPECT_EQ(none[0xE9], nullptr);
    for (const auto& row : without_library) EXPECT_EQ(name_of(row.code_point, none), row.name);
}

TEST(PrintCharacterName, NamesOfTheLibrary) {
    const CharacterNames few(FEW_NAMES_LIBRARY);
    ASSERT_TRUE(few.available());
    EXPECT_EQ(name_of(0x00FF, few), "SMALL Y WITH TWO DOTS");
}

TEST(PrintCharacterName, TerminalsOwnCharactersComeFirst) {
    const CharacterNames few(FEW_NAMES_LIBRARY);
    EXPECT_STREQ(few[0xE031], "NEVER ASKED FOR");
    EXPECT_EQ(name_of(0xE031, few), "Corvane rond vide (ne pas utiliser)");
}

TEST(PrintCharacterName, BlockOfWhatTheLibraryDoesNotName) {
    const CharacterNames few(FEW_NAMES_LIBRARY);
    EXPECT_EQ(name_of(0x00E9, few), "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)-U+00E9");
    EXPECT_EQ(name_of(0x007F, few), "???");
}

TEST(PrintCharacterName, InstalledLibrary) {
    if (!character_names().available()) GTEST_SKIP() << "libuninameslist.so is not installed for this build";
    EXPECT_EQ(name_of(0x0041), "LATIN CAPITAL LETTER A");
    EXPECT_EQ(name_of(0x00E9), "LATIN SMALL LETTER E WITH ACUTE");
    EXPECT_EQ(name_of(0x00FF), "LATIN SMALL LETTER Y WITH DIAERESIS");
    EXPECT_EQ(name_of(0x20AC), "EURO SIGN");
    EXPECT_EQ(name_of(0xD55C), "Hangul Syllables-U+D55C");
    EXPECT_EQ(name_of(0xE112), "Right");
    EXPECT_EQ(name_of(0xE108), "Private Use Area-U+E108");
}

TEST(PrintCharacterName, FromSeveralThreads) {
    const std::string expected = e_acute();
    std::vector<std::string> names(4);
    std::vector<std::thread> threads;
    for (auto& name : names) threads.emplace_back([&name] { name = name_of(0x00E9); });
    for (auto& thread : threads) thread.join();
    for (const auto& name : names) EXPECT_EQ(name, expected);
}

}  // namespace
}  // namespace ztdecode::testing
