// What a line is taken for: any lines, apart at newlines. Each lies in a block of its own size, with
// the zero that lines have behind them. What a line is does not hang on its line end, and a line that has the
// fields of a layout is one of that layout. A line in another spelling, or behind a prefix, has every column
// in the line as it came; a trace line gives a message or a refusal.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "decode/trace_lines.hpp"
#include "fuzz/fuzzing.hpp"

namespace {

using ztdecode::Line;
using ztdecode::LineKind;
using ztdecode::recognise;
using ztdecode::fuzz::expect;

LineKind kind_of(std::string_view characters) {
    std::vector<char> block(characters.begin(), characters.end());
    block.push_back('\0');
    return recognise({block.data(), block.size() - 1});
}

bool two_digits(std::string_view line, std::size_t column) {
    return line.size() >= column + 2 && ztdecode::hex_digit(line[column]) < 16 &&
           ztdecode::hex_digit(line[column + 1]) < 16;
}

void read(std::string_view line) {
    std::vector<char> block(line.begin(), line.end());
    block.push_back('\0');
    ztdecode::TraceReader reader(std::nullopt, 0);
    if (reader.begin({block.data(), block.size() - 1}, 1) != ztdecode::LineVerdict::trace_line) return;
    const ztdecode::Line whole = reader.whole_line();
    const ztdecode::Line usual = reader.line();
    std::size_t column = 0;
    for (std::size_t k = 0; k < usual.length; ++k) {
        const std::size_t next = reader.whole_column(k);
        expect(next >= column && next < whole.length, "columns stand in the line as it came, in their order");
        column = next;
        const char there = whole.text[column];
        const char here = usual.text[k];
        expect((here | 0x20) == (there | 0x20) || (here == ' ' && (there == '\t' || there == '\r')),
               "and hold what is read");
    }
    bool given = false;
    while (reader.next()) {
        given = true;
        const auto& captured = reader.captured();
        expect(captured.message->length() > 0, "a message has bytes");
        expect(captured.left_over == 0 || captured.left_over_column < usual.length,
               "what is left over is there");
    }
    const bool refused = static_cast<bool>(reader.refusal());
    expect(given || refused, "a trace line gives a message or is refused");
    if (refused) expect(reader.refusal().column <= usual.length, "for something in the line");
}

void look_at(std::string_view line) {
    const LineKind kind = kind_of(line);
    expect(kind_of(std::string(line) + '\r') == kind, "a line end changes nothing");
    expect((kind == LineKind::tagged) == line.starts_with("zt "), "a tag tells the layout");
    if (kind == LineKind::bare) expect(two_digits(line, 0) && two_digits(line, 3), "bare lines have fields");
    if (kind == LineKind::spzt) expect(line[6] == 'S' || line[6] == 'R', "the column says S or R");
    if (line.size() >= 8 && two_digits(line, 0) && two_digits(line, 2) && two_digits(line, 4) &&
        (line.substr(6, 2) == "S " || line.substr(6, 2) == "R ")) {
        expect(kind == LineKind::spzt, "the column tells, whatever stands behind it");
    }
    read(line);
    if (line.size() == 5 && two_digits(line, 0) && line[2] == ' ' && two_digits(line, 3)) {
        expect(kind == LineKind::bare, "a length and a byte are a message");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view content(reinterpret_cast<const char*>(data), size);
    while (!content.empty()) {
        const std::string_view line = content.substr(0, content.find('\n'));
        look_at(line);
        content.remove_prefix(std::min(content.size(), line.size() + 1));
    }
    return 0;
}
