#include "object/input.hpp"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace ztdecode::object {

namespace {

constexpr std::size_t most_fields = 2998;

// Takes the first field off the text; empty when there is none.
std::string_view next_field(std::string_view& text) {
    constexpr std::string_view separators = " \t\n\r";
    text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
    const std::string_view field = text.substr(0, text.find_first_of(separators));
    text.remove_prefix(field.size());
    return field;
}

// As a number in base 16: white space, sign and "0x" in front are fine, what is no digit ends it.
std::uint8_t number(std::string_view field) {
    return static_cast<std::uint8_t>(std::strtol(std::string(field).c_str(), nullptr, 16) & 0xFF);
}

}  // namespace

std::uint16_t read_numbers(std::string_view text, std::span<std::uint8_t, input_capacity> bytes, Text& out) {
    std::uint16_t count = 0;
    for (std::string_view field = next_field(text); !field.empty();) {
        bytes[count++] = number(field);
        field = next_field(text);
        // The first field may be as long as it likes.
        if (field.size() > 2) {
            out.add("\nhexa conv error\n");
            return 0;
        }
        if (count > most_fields) {
            out.add("\ntoo many fields in input file");
            return 0;
        }
    }
    return count;
}

}  // namespace ztdecode::object
