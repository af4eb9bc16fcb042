#include "core/format.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

// Formats against the C library's printf, which the texts were first written for.

namespace ztdecode {

namespace {

template <class... Args>
std::string by_printf(const char* format, Args... args) {
    std::array<char, 512> text{};
    std::snprintf(text.data(), text.size(), format, args...);
    return text.data();
}

TEST(Format, ShowsEveryByteInEveryWay) {
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<std::uint8_t>(value);
        EXPECT_EQ(formatted("{-:02x}|{-:02X}"_cf, byte, byte), by_printf("%.2x|%.2X", value, value));
        EXPECT_EQ(formatted("{-}"_cf, byte), by_printf("%d", value));
        EXPECT_EQ(formatted("{-:x}"_cf, byte), by_printf("%.1x", value));
        EXPECT_EQ(formatted("{-:04X} {-:03} {-:02}"_cf, byte, byte, byte),
                  by_printf("%.4X %03d %02d", value, value, value));
    }
}

template <class T>
void expect_as_printf_has_it(T value) {
    const auto number = static_cast<unsigned long long>(value);
    EXPECT_EQ(formatted("{-}|{-:x}|{-:X}"_cf, value, value, value),
              by_printf("%llu|%llx|%llX", number, number, number));
    EXPECT_EQ(formatted("{-:02}|{-:03}|{-:09}"_cf, value, value, value),
              by_printf("%02llu|%03llu|%09llu", number, number, number));
    EXPECT_EQ(formatted("{-:02x}|{-:04X}|{-:06x}|{-:08x}"_cf, value, value, value, value),
              by_printf("%02llx|%04llX|%06llx|%08llx", number, number, number, number));
}

TEST(Format, ShowsNumbersOfAllSizes) {
    for (std::uint64_t power = 1; power != 0; power *= 2) {
        for (const std::uint64_t value : {power - 1, power, power + 1, power * 10 / 16}) {
            expect_as_printf_has_it(static_cast<std::uint8_t>(value));
            expect_as_printf_has_it(static_cast<std::uint16_t>(value));
            expect_as_printf_has_it(static_cast<std::uint32_t>(value));
            expect_as_printf_has_it(value);
        }
    }
    for (std::uint64_t power = 1; power < 10'000'000'000'000'000'000U; power *= 10) {
        expect_as_printf_has_it(power);
        expect_as_printf_has_it(power - 1);
    }
}

TEST(Format, TellsBytesFromOtherNumbers) {
    EXPECT_EQ(formatted("{-:02x} {-:02X}"_cf, std::uint16_t{0x1234}, 0xABCU), "1234 ABC");
    EXPECT_EQ(formatted("{-} {-}"_cf, std::int8_t{-128}, 'x'), "-128 x");
}

TEST(Format, PadsStringsToTheirWidth) {
    std::string text;
    for (std::size_t n = 0; n < 100; ++n, text += static_cast<char>('0' + n % 71)) {
        EXPECT_EQ(formatted("<{-:<15}>"_cf, text), by_printf("<%-15s>", text.c_str()));
        EXPECT_EQ(formatted("<{-}>"_cf, std::string_view(text)), by_printf("<%s>", text.c_str()));
    }
    EXPECT_EQ(formatted("{-:<12}|{-:<1}|"_cf, "", "ab"), "            |ab|");
}

TEST(Format, CountsCharactersAsBytes) {
    const std::string accent = "R\xC3\xA9";
    EXPECT_EQ(formatted("{-:<5}|"_cf, accent), by_printf("%-5s|", accent.c_str()));
    EXPECT_EQ(formatted("{-:<5}|"_cf, std::string_view("\xFF\0\x80", 3)), std::string("\xFF\0\x80  |", 6));
}

TEST(Format, TakesNothingFromAnEmptyString) {
    EXPECT_EQ(formatted("[{-}{-}]"_cf, std::string_view(), ""), "[]");
    EXPECT_EQ(formatted("{-:<3}|"_cf, std::string_view()), "   |");
}

// A field's name is none of the text.
TEST(Format, ShowsValuesUnderTheirFieldsNames) {
    const Byte led{0x1F, {2, 1}};
    EXPECT_EQ(formatted("led {led}, {led:02x}{led:X} {{{}}}"_cf, led, led, led, led), "led 31, 1f1F {31}");
    EXPECT_EQ(formatted("{module:<6}|{key_release}"_cf, Word{"eak"}, flag(led == 31, "on", "off")),
              "eak   |on");
    using Led = decltype("{led}{}{-}"_cf);
    EXPECT_EQ(Led::parsed.placeholders[0].field, FieldName("led"));
    EXPECT_EQ(Led::parsed.placeholders[1].field, row_field);
    EXPECT_EQ(Led::parsed.placeholders[2].field, no_field);
}

}  // namespace

}  // namespace ztdecode
