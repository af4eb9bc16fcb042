#pragma once

#include <string>

#include "object/characters.hpp"

namespace ztdecode::testing {

// A character's name where the names library is installed, else what stands for it: its block.
inline std::string named(const char* name, const char* without_library) {
    return object::character_names().available() ? name : without_library;
}

inline std::string e_acute() {
    return named("LATIN SMALL LETTER E WITH ACUTE",
                 "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)-U+00E9");
}
inline std::string g_dot_above() {
    return named("LATIN CAPITAL LETTER G WITH DOT ABOVE", "Latin Extended-A-U+0120");
}
inline std::string a_macron() {
    return named("LATIN CAPITAL LETTER A WITH MACRON", "Latin Extended-A-U+0100");
}
inline std::string ethiopic_see() { return named("ETHIOPIC SYLLABLE SEE", "Ethiopic-U+1234"); }
inline std::string euro() { return named("EURO SIGN", "Currency Symbols-U+20AC"); }

}  // namespace ztdecode::testing
