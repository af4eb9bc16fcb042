#include "object/values.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/session.hpp"
#include "object/lookup.hpp"
#include "object/names.hpp"
#include "support/support.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

using namespace object;

using namespace std::string_literals;

std::string shown(const std::vector<std::uint8_t>& data, const Properties& table,
                  LengthField length_field = LengthField::one_or_two_bytes, Values values = Values::carried) {
    const Message m(data);
    Session session;
    Text out;
    Decoding d(session, m, out);
    print_properties(d, 0, table, length_field, values);
    return std::string(out.view());
}

struct PropertyRow {
    std::uint8_t object_class;
    const char* hex;
    std::string text;
};

TEST(Properties, ValueTypes) {
    const PropertyRow rows[] = {
        // int32, uint32, uint16: as many bytes as there are
        {0x8B, "42 04 00 00 75 30", "\n\ttimeout        \t0x00007530"},
        {0x8B, "42 01 75", "\n\ttimeout        \t0x75"},
        {0x8B, "42 00", "\n\ttimeout        \t0x"},
        {0x06, "5c 04 00 00 75 30", "\n\tbacklight_timeout\t0x00007530"},
        {0x06, "24 02 ab cd", "\n\tanchorid       \t0xABCD"},
        {0x06, "24 03 ab cd ef", "\n\tanchorid       \t0xABCDEF"},
        // int8 and uint8: the first byte
        {0x80, "46 01 7f", "\n\thoffset        \t127"},
        {0x80, "46 01 80", "\n\thoffset        \t-128"},
        {0x80, "46 02 ff 01", "\n\thoffset        \t-1"},
        {0x80, "26 01 00", "\n\tx              \t0"},
        {0x80, "26 01 ff", "\n\tx              \t255"},
        {0x80, "26 02 07 08", "\n\tx              \t7"},
        // BOOL
        {0x80, "28 01 00", "\n\tvisible        \tFALSE"},
        {0x80, "28 01 01", "\n\tvisible        \tTRUE"},
        {0x80, "28 01 80", "\n\tvisible        \tTRUE"},
        {0x80, "28 02 00 01", "\n\tvisible        \tBOOL length errorFALSE"},
        {0x80, "28 02 01 00", "\n\tvisible        \tBOOL length errorTRUE"},
        // UTF8
        {0x84, "37 03 41 42 43", "\n\tlabel          \t\"ABC\""},
        {0x84, "37 00", "\n\tlabel          \t\"\""},
        {0x84, "37 02 c3 a9", "\n\tlabel          \t\"\xC3\xA9\"\t//\"<" + e_acute() + ">\""},
        {0x84, "37 01 ff", "\n\tlabel          \t\"ERR_UTF8_CHAR\""},
        // the same name is another type in another class
        {0x8D, "38 01 fe", "\n\tvalue          \t254"},
        {0x8C, "38 04 00 00 00 fe", "\n\tvalue          \t0x000000FE"},
        {0x86, "38 01 41", "\n\tvalue          \t\"A\""},
        {0x89, "40 01 fe", "\n\tincdec         \t-2"},
        {0x8C, "40 01 fe", "\n\tincdec         \t254"},
        {0x01, "46 01 41", "\n\tcustversion    \t\"A\""},
        // ids that the class does not have
        {0x06, "99 02 01 0a", "\n\t(property_error)\tIdx:2  0x0A"},
        {0x06, "7f 02 01 0a", "\n\t(property_error)\t0x010A"},
        {0x06, "ff 00 01 aa", "\n\t(property_error)\tIdx:0  0xAA"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(shown(bytes(row.hex), class_of(row.object_class).properties), row.text) << row.hex;
    }
}

TEST(Properties, Indexed) {
    const Properties listbox = class_of(0x82).properties;
    EXPECT_EQ(shown(bytes("8a 02 03 41 42 43"), listbox), "\n\tDlabel         \tIdx:2  \"ABC\"");
    EXPECT_EQ(shown(bytes("89 ff 02 01 0a"), listbox), "\n\tDicon          \tIdx:255  0x010A");
    EXPECT_EQ(shown(bytes("8c 00 01 00 8b 1f 01 07"), listbox),
              "\n\tDenable        \tIdx:0  FALSE"
              "\n\tDownership     \tIdx:31  7");
    EXPECT_EQ(shown(bytes("8a 02 00 2b 01 05"), listbox),
              "\n\tDlabel         \tIdx:2  \"\""
              "\n\tactive         \t5");
}

TEST(Properties, LengthInTwoBytes) {
    const Properties textbox = class_of(0x84).properties;
    EXPECT_EQ(shown(bytes("37 80 02 41 42 26 01 05"), textbox),
              "\n\tlabel          \t\"AB\"\n\tx              \t5");
    EXPECT_EQ(shown(bytes("37 80 00 26 01 05"), textbox), "\n\tlabel          \t\"\"\n\tx              \t5");

    auto data = bytes("37 81 01");
    data.insert(data.end(), 257, 'x');
    for (const std::uint8_t byte : bytes("26 01 05")) data.push_back(byte);
    EXPECT_EQ(shown(data, textbox),
              "\n\tlabel          \t\"" + std::string(257, 'x') + "\"\n\tx              \t5");

    data = bytes("8a 03 81 2c");
    data.insert(data.end(), 300, 'y');
    EXPECT_EQ(shown(data, class_of(0x82).properties),
              "\n\tDlabel         \tIdx:3  \"" + std::string(300, 'y') + "\"");
}

TEST(Properties, LengthInOneByte) {
    auto data = bytes("85 01 85");
    data.insert(data.end(), 133, 'z');
    for (const std::uint8_t byte : bytes("2b 01 02")) data.push_back(byte);
    EXPECT_EQ(shown(data, event_properties::listbox, LengthField::one_byte),
              "\n\tDvalue         \tIdx:1  \"" + std::string(133, 'z') + "\"\n\tactive         \t2");
}

TEST(Properties, NamesOnly) {
    EXPECT_EQ(
        shown(bytes("62 00 64 00"), class_of(0x01).properties, LengthField::one_or_two_bytes, Values::none),
        "\n\tserialnum      \t\n\tsoftversion    \t");
    // Values that stand there all the same are passed over.
    EXPECT_EQ(shown(bytes("36 02 ec 1e 8a 01 01 41 30 01 00"), class_of(0x82).properties,
                    LengthField::one_or_two_bytes, Values::none),
              "\n\t(property_error)\t\n\tDlabel         \t\n\tshowevent      \t");
}

TEST(Properties, LastOneLongerThanTheMessage) {
    const Properties textbox = class_of(0x84).properties;
    EXPECT_EQ(shown(bytes("37 04 41"), textbox), "\n\tlabel          \t\"A\\NUL\\NUL\\NUL\"");
    EXPECT_EQ(shown(bytes("36 04 01"), textbox), "\n\ticon           \t0x01000000");
    EXPECT_EQ(shown(bytes("26 01"), textbox), "\n\tx              \t0");
    EXPECT_EQ(shown(bytes("28"), textbox), "\n\tvisible        \tBOOL length errorFALSE");
    EXPECT_EQ(shown(bytes("37"), textbox), "\n\tlabel          \t\"\"");
    EXPECT_EQ(shown(bytes("b7"), textbox), "\n\t(property_error)\tIdx:0  0x");
    EXPECT_EQ(shown(bytes("24 ff"), textbox), "\n\tanchorid       \t0x" + std::string(2 * 0x7F00, '0'));
}

TEST(Properties, BytesBehindTheMessageAsTheyStand) {
    const auto data = bytes("37 03 41 42 43 99");
    const Message m(data.data(), 3, data.size());
    Text out;
    Session session;
    Decoding d(session, m, out);
    print_properties(d, 0, class_of(0x84).properties, LengthField::one_or_two_bytes, Values::carried);
    EXPECT_EQ(out.view(), "\n\tlabel          \t\"ABC\"");
}

constexpr ztdecode_property_record own_table[] = {
    {1, 0x01, "one", 0},
    {3, 0x02, "type of no table", 0},
    {9, 0x03, "type above all", 0},
    {6, 0x04, "a name of 29 characters, full", 0},
    {0, 0xFF, "(property_error)", 0},
};

TEST(Properties, TableOfSomebodyElse) {
    const Properties own(own_table);
    EXPECT_EQ(shown(bytes("01 02 ab cd"), own), "\n\tone            \t0xABCD");
    EXPECT_EQ(shown(bytes("02 02 ab cd"), own), "\n\ttype of no table\t");
    EXPECT_EQ(shown(bytes("03 02 ab cd"), own), "\n\ttype above all \t");
    EXPECT_EQ(shown(bytes("04 01 09"), own), "\n\ta name of 29 characters, full\t9");
    EXPECT_EQ(shown(bytes("05 01 09"), own), "\n\t(property_error)\t0x09");
    EXPECT_EQ(shown(bytes("82 04 01 09"), own), "\n\t(property_error)\tIdx:4  0x09");
    EXPECT_EQ(shown(bytes("2b 01 09"), Properties(Tab_LISTBOX)), "\n\tactive         \t9");
}

// A property by itself.
std::string shown(std::uint8_t id, std::uint8_t index, const char* hex, std::uint32_t length,
                  const Properties& table) {
    const auto data = bytes(hex);
    const Message m(data);
    Session session;
    Text out;
    Decoding d(session, m, out);
    print_property_name(d, Byte{id}, table);
    const Decoding::Window value(d, 0, length);
    print_property_value(d, Byte{id}, Byte{index}, table);
    return std::string(out.view());
}

TEST(Property, Value) {
    EXPECT_EQ(shown(0x8A, 12, "41 c3 a9", 3, class_of(0x82).properties),
              "\n\tDlabel         \tIdx:12  \"A\xC3\xA9\"\t//\"A<" + e_acute() + ">\"");
}

TEST(Property, NoValue) {
    const Message m({});
    Session session;
    Text out;
    Decoding d(session, m, out);
    print_property_name(d, Byte{0x8A}, class_of(0x82).properties);
    EXPECT_EQ(out.view(), "\n\tDlabel         \t");
}

TEST(Property, ZeroLengthReadsTheByteBehind) {
    EXPECT_EQ(shown(0x26, 0, "05", 0, class_of(0x80).properties), "\n\tx              \t5");
}

struct Utf8Row {
    const char* hex;
    std::string characters;
    std::string names;
    bool beyond_ascii;
};

class PrintUtf8 : public ::testing::Test {
  protected:
    static void expect(const std::vector<std::uint8_t>& data, std::uint32_t length,
                       const std::string& characters, const std::string& names, bool beyond_ascii) {
        const Message m(data.data(), length, data.size());
        Session session;
        Text out;
        Decoding d(session, m, out);
        EXPECT_EQ(print_text(d, "text", Utf8Mode::characters).holds, beyond_ascii);
        EXPECT_EQ(out.view(), characters);
        out.clear();
        EXPECT_EQ(print_text(d, "text", Utf8Mode::names).holds, beyond_ascii);
        EXPECT_EQ(out.view(), names);
    }
};

TEST_F(PrintUtf8, Ascii) {
    expect({}, 0, "\"\"", "\"\"", false);
    expect(bytes("20 41 7e"), 3, "\" A~\"", "\" A~\"", false);
    const std::string controls =
        "\"\\NUL\\SOH\\STX\\ETX\\EOT\\ENQ\\ACK\\BEL\\BS\\HT\\LF\\VT\\FF\\CR\\SO\\SI\"";
    expect(bytes("00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f"), 16, controls, controls, false);
    expect(bytes("10 1f 7f"), 3, "\"\\$\\$\\$\"", "\"\\$\\$\\$\"", false);
}

TEST_F(PrintUtf8, TwoBytes) {
    expect(bytes("c3 a9"), 2, "\"\xC3\xA9\"", "\"<" + e_acute() + ">\"", true);
    expect(bytes("41 c3 a9 42"), 4,
           "\"A\xC3\xA9"
           "B\"",
           "\"A<" + e_acute() + ">B\"", true);
    expect(bytes("c4 a0"), 2, "\"\xC4\xA0\"", "\"<" + g_dot_above() + ">\"", true);
    // Whatever stands behind the lead byte gives its lower six bits.
    expect(bytes("c3 29"), 2, "\"\xC3)\"", "\"<" + e_acute() + ">\"", true);
}

TEST_F(PrintUtf8, ThreeBytes) {
    expect(bytes("ee 80 b1"), 3, "\"\\uE031\"", "\"<Corvane rond vide (ne pas utiliser)>\"", true);
    expect(bytes("ee 84 92"), 3, "\"\\uE112\"", "\"<Right>\"", true);
    expect(bytes("e0 84 a0"), 3, "\"\\u0120\"", "\"<" + g_dot_above() + ">\"", true);
    expect(bytes("e0 84 a0 41"), 4,
           "\"\xE0\x84\xA0"
           "A\"",
           "\"<" + g_dot_above() + ">A\"", true);
    expect(bytes("41 e2 82 ac"), 4, "\"A\xE2\x82\xAC\"", "\"A<" + euro() + ">\"", true);
    expect(bytes("ee 80 b1 ee 84 92"), 6, "\"\xEE\x80\xB1\xEE\x84\x92\"",
           "\"<Corvane rond vide (ne pas utiliser)><Right>\"", true);
    expect(bytes("e1 88 b4"), 3, "\"\\u1234\"", "\"<" + ethiopic_see() + ">\"", true);
    // The whole text's length decides: three bytes that are a letter and a character of two show as they are.
    expect(bytes("41 c3 a9"), 3, "\"A\xC3\xA9\"", "\"A<" + e_acute() + ">\"", true);
}

TEST_F(PrintUtf8, StrayBytes) {
    expect(bytes("80"), 1, "\"ERR_UTF8_CHAR\"", "\"ERR_UTF8_CHAR\"", false);
    expect(bytes("bf 41 f0 9f 98 80 ff"), 7,
           "\"ERR_UTF8_CHARAERR_UTF8_CHARERR_UTF8_CHARERR_UTF8_CHARERR_UTF8_CHARERR_UTF8_CHAR\"",
           "\"ERR_UTF8_CHARAERR_UTF8_CHARERR_UTF8_CHARERR_UTF8_CHARERR_UTF8_CHARERR_UTF8_CHAR\"", false);
    expect(bytes("c3 a9 a9"), 3,
           "\"\xC3\xA9"
           "ERR_UTF8_CHAR\"",
           "\"<" + e_acute() + ">ERR_UTF8_CHAR\"", true);
}

TEST_F(PrintUtf8, CutAtTheEnd) {
    // The bytes behind the text are taken in.
    expect(bytes("c3 a9"), 1, "\"ERROR_UTF8_2CHAR\xC3\xA9\"", "\"ERROR_UTF8_2CHAR<" + e_acute() + ">\"",
           true);
    expect(bytes("41 ee 80 b1"), 3, "\"AERROR_UTF8_3CHAR\\uE031\"",
           "\"AERROR_UTF8_3CHAR<Corvane rond vide (ne pas utiliser)>\"", true);
    expect(bytes("ee 80 b1"), 2, "\"ERROR_UTF8_3CHAR\xEE\x80\xB1\"",
           "\"ERROR_UTF8_3CHAR<Corvane rond vide (ne pas utiliser)>\"", true);
    expect(bytes("ee 80 b1"), 1, "\"ERROR_UTF8_3CHAR\xEE\x80\xB1\"",
           "\"ERROR_UTF8_3CHAR<Corvane rond vide (ne pas utiliser)>\"", true);
}

TEST_F(PrintUtf8, ZeroByteInsideACharacterStays) {
    expect(bytes("41 c4 00 42"), 4, "\"A\xC4\0B\""s, "\"A<" + a_macron() + ">B\"", true);
    expect(bytes("ee 00 80 42"), 4, "\"\xEE\0\x80"s + "B\"", "\"<Corvane >B\"", true);
    expect(bytes("ee 80 00 42"), 4, "\"\xEE\x80\0B\""s, "\"<Corvane >B\"", true);
    // A key shows as its code: no byte of it is copied.
    expect(bytes("ee 00 00"), 3, "\"\\uE000\"", "\"<Corvane >\"", true);
    // A zero byte of its own has a name.
    expect(bytes("00 41"), 2, "\"\\NULA\"", "\"\\NULA\"", false);
    // Nothing behind the text: the bytes there read as 0.
    expect(bytes("c4"), 1, "\"ERROR_UTF8_2CHAR\xC4\0\""s, "\"ERROR_UTF8_2CHAR<" + a_macron() + ">\"", true);
    expect(bytes("ee"), 1, "\"ERROR_UTF8_3CHAR\xEE\0\0\""s, "\"ERROR_UTF8_3CHAR<Corvane >\"", true);
    expect(bytes("ee 80"), 2, "\"ERROR_UTF8_3CHAR\xEE\x80\0\""s, "\"ERROR_UTF8_3CHAR<Corvane >\"", true);
    expect(bytes("41 42 ee"), 3, "\"ABERROR_UTF8_3CHAR\\uE000\"", "\"ABERROR_UTF8_3CHAR<Corvane >\"", true);
    EXPECT_EQ(shown(bytes("37 02 c4 00 26 01 05"), class_of(0x84).properties),
              "\n\tlabel          \t\"\xC4\0\"\t//\"<"s + a_macron() + ">\"\n\tx              \t5");
}

TEST(ShownCharacter, EveryByte) {
    for (unsigned c = 0; c < 256; ++c) {
        const bool printable = c >= ' ' && c <= '~';
        EXPECT_EQ(shown_character(static_cast<std::uint8_t>(c)), printable ? c : '$');
    }
}

}  // namespace
}  // namespace ztdecode::testing
