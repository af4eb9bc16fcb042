#include "core/data.hpp"

#include <cstdlib>

#include "core/format.hpp"

namespace ztdecode::data {

namespace {

constexpr std::size_t longest_number = 24;

char* write_number(char* at, const Meaning& meaning) {
    if (meaning.tenths == 0) return write_format(at, "{-}"_cf, meaning.number);
    const auto n = static_cast<std::uint64_t>(std::abs(meaning.number));
    return write_format(at, "{-}{-}.{-}"_cf, std::string_view(meaning.number < 0 ? "-" : ""), n / 10, n % 10);
}

// Only the digits: of "0x2A", " 2e 2f".
char* write_digits_of(std::string_view hexadecimal, char* at) {
    for (std::size_t k = 0; k < hexadecimal.size(); ++k) {
        const char c = hexadecimal[k];
        const bool digit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
        if (c == '0' && k + 1 < hexadecimal.size() && hexadecimal[k + 1] == 'x') {
            ++k;
        } else if (digit) {
            *at++ = c;
        } else if (c >= 'A' && c <= 'F') {
            *at++ = static_cast<char>(c - 'A' + 'a');
        }
    }
    return at;
}

}  // namespace

std::string_view name_of(Kind kind) noexcept {
    switch (kind) {
        case Kind::number:
            return "number";
        case Kind::word:
            return "word";
        case Kind::address:
            return "address";
        case Kind::text:
            return "text";
        case Kind::version:
            return "version";
        case Kind::flag:
            return "flag";
        case Kind::bytes:
            return "bytes";
    }
    return "number";
}

std::string_view name_of(Sensitivity sensitivity) noexcept {
    switch (sensitivity) {
        case Sensitivity::none:
            break;
        case Sensitivity::call_number:
            return "call_number";
        case Sensitivity::person:
            return "person";
        case Sensitivity::network_address:
            return "network_address";
        case Sensitivity::hardware_address:
            return "hardware_address";
        case Sensitivity::secret:
            return "secret";
    }
    return "none";
}

std::string_view name_of(Decoded decoded) noexcept {
    switch (decoded) {
        case Decoded::decoded:
            break;
        case Decoded::unknown:
            return "unknown";
        case Decoded::refused:
            return "refused";
    }
    return "decoded";
}

std::size_t room_for_value(const Meaning& meaning, std::string_view shown) noexcept {
    if (meaning.kind == Kind::number) return longest_number;
    return meaning.kind == Kind::bytes ? shown.size() : 0;
}

std::string_view value(const Meaning& meaning, std::string_view shown, char* room) noexcept {
    const auto written_to = [room](const char* end) {
        return std::string_view(room, static_cast<std::size_t>(end - room));
    };
    switch (meaning.kind) {
        case Kind::number:
            return written_to(write_number(room, meaning));
        case Kind::flag:
            return meaning.number != 0 ? "true" : "false";
        case Kind::bytes:
            return written_to(write_digits_of(shown, room));
        case Kind::word:
            return without_punctuation(shown);
        case Kind::address:
        case Kind::text:
        case Kind::version:
            break;
    }
    return shown;
}

}  // namespace ztdecode::data
