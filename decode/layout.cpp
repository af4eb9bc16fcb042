#include "decode/layout.hpp"

#include <cstring>

namespace ztdecode {

namespace {

bool hex(char c) { return hex_digit(c) < 16; }

bool ends_field(Line line, std::size_t at) {
    return at >= line.length || line.text[at] == ' ' || line.text[at] == '\r' || line.text[at] == '\t';
}

// "hh" and the end of the field at this column.
bool field(Line line, std::size_t at) {
    return at + 2 <= line.length && hex(line.text[at]) && hex(line.text[at + 1]) && ends_field(line, at + 2);
}

// Any six characters, S or R, a blank, and the first field. Where the six are a number, the column alone
// tells: a line that goes wrong behind it is a trace line still, and its reader says what is wrong.
bool spzt(Line line) {
    if (line.length < 8 || (line.text[6] != 'S' && line.text[6] != 'R') || line.text[7] != ' ') return false;
    if (field(line, 8)) return true;
    for (std::size_t k = 0; k < 6; ++k) {
        if (!hex(line.text[k])) return false;
    }
    return true;
}

}  // namespace

LineKind recognise(Line line) {
    if (line.length >= 3 && std::memcmp(line.text, "zt ", 3) == 0) return LineKind::tagged;
    if (spzt(line)) return LineKind::spzt;
    if (field(line, 0) && field(line, 3)) return LineKind::bare;
    return LineKind::none;
}

}  // namespace ztdecode
