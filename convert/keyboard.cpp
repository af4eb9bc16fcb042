#include "convert/keyboard.hpp"

#include <strings.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

namespace ztdecode {

namespace {

// Keys that are numbered one after the other, from `first_code` on.
struct KeyRow {
    std::string_view keys;
    int first_code;
};

// Digits, * and #, then the function keys, each by the letter of its name.
constexpr KeyRow single_keys[] = {{"0123456789*#", 0}, {"RBMFU-+HolrdumhD", 12}};
constexpr KeyRow programmable_keys[] = {{"012345", 28}};
constexpr KeyRow soft_keys[] = {{"0123456789", 34}};
constexpr KeyRow special_keys[] = {{"fhasevb", 44}, {"l", 79}};
// The control characters stand for the special keys; the letters are those of an AZERTY keyboard, row by row.
constexpr KeyRow alphabetic_keys[] = {{"\x13\x09\x01\x20\x0D\x03\x08", 44},
                                      {"azertyuiop", 51},
                                      {"qsdfghjklm", 61},
                                      {"wxcvbn", 71},
                                      {"\xA5", 79}};

constexpr int no_key = -1;

template <std::size_t N>
int code_of(const KeyRow (&rows)[N], char key) noexcept {
    for (const KeyRow& row : rows) {
        const std::size_t at = row.keys.find(key);
        if (at != std::string_view::npos) return row.first_code + static_cast<int>(at);
    }
    return no_key;
}

struct Words {
    std::array<const char*, 4> word{};
    std::size_t count = 0;
};

Words split(char* text) noexcept {
    Words words;
    char* rest = nullptr;
    for (char* word = strtok_r(text, " \t", &rest); word != nullptr && words.count < words.word.size();
         word = strtok_r(nullptr, " \t", &rest)) {
        words.word[words.count++] = word;
    }
    return words;
}

struct Key {
    int code = no_key;
    const char* shift = "";
};

Key key_of_family(char family, char key) noexcept {
    switch (family) {
        case 'p':
            return {code_of(programmable_keys, key)};
        case 's':
            return {code_of(soft_keys, key)};
        case 'x':
            return {code_of(special_keys, key)};
        case 'a':
            if (key >= 'A' && key <= 'Z') {
                return {code_of(alphabetic_keys, static_cast<char>(key - 'A' + 'a')), " shift"};
            }
            return {code_of(alphabetic_keys, key)};
        default:
            return {};
    }
}

KeyText written(const Key& key, const char* suffix) noexcept {
    KeyText text{};
    if (key.code == no_key) {
        std::snprintf(text.data(), text.size(), "%s", suffix);
    } else {
        std::snprintf(text.data(), text.size(), "%d%s%s", key.code, key.shift, suffix);
    }
    return text;
}

KeyText hook(const char* position) noexcept {
    KeyText text{};
    const char* word = "";
    if (std::strncmp(position, "on", 2) == 0) word = " onhook";
    if (std::strncmp(position, "off", 3) == 0) word = " offhook";
    std::snprintf(text.data(), text.size(), "%s ", word);
    return text;
}

}  // namespace

KeyText Convert_kb_To_key(char* text) noexcept {
    const Words words = split(text);
    const char* first = words.word[0];
    const char* second = words.word[1];
    const char* suffix = first != nullptr && first[1] == 'l' ? " long" : " short";
    if (words.count == 1) return written({code_of(single_keys, first[0])}, suffix);
    if (words.count != 2) return written({}, suffix);
    if (strcasecmp(first, "hook") == 0) return hook(second);
    return written(key_of_family(first[0], second[0]), suffix);
}

}  // namespace ztdecode
