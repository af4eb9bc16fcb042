// The command over any file, in any layout and with any options. It ends, its output has its bound, every
// line of the input is still there, in its place, and with escapes nothing of it acts on a terminal.
//
// Byte 0: layout and direction. Byte 1: options. Byte 2: size of the pieces that the file comes in, 0 all at
// once. Then the file.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/descriptors.hpp"
#include "tool/display.hpp"
#include "tool/formats.hpp"
#include "tool/trace.hpp"

namespace {

using ztdecode::fuzz::expect;
using ztdecode::tool::Layout;
using ztdecode::tool::Options;

enum : std::uint8_t {
    bit_without_input = 1,
    bit_audio_only = 2,
    bit_debug = 4,
    bit_explain = 8,
    bit_color = 16,
    bit_escapes = 32
};

constexpr std::size_t header = 3;
constexpr std::size_t longest = 4000;                // few enough lines to be quick
constexpr std::size_t room = std::size_t{32} << 20;  // of the output; it ends there
constexpr std::size_t explained = 32;                // a line for each character that is written

Options options_of(const std::uint8_t* data) {
    Options options;
    options.layout = static_cast<Layout>(data[0] % 8);
    options.direction = data[0] >> 3 & 1;
    options.input = (data[1] & bit_without_input) == 0;
    options.audio_only = (data[1] & bit_audio_only) != 0;
    options.debug = (data[1] & bit_debug) != 0;
    options.explain = (data[1] & bit_explain) != 0;
    return options;
}

bool binary(Layout layout) { return layout == Layout::bin1 || layout == Layout::bin2; }

struct Decoded {
    std::string output;
    std::string complaints;
    int error = 0;
};

Decoded decode(const Options& options, bool color, bool escapes, int descriptor) {
    const ztdecode::fuzz::Sink output(room);
    const ztdecode::fuzz::Sink complaints(room);
    const ztdecode::tool::Display display = {
        .color = color, .escapes_output = escapes, .escapes_diagnostics = escapes, .progress = false};
    ztdecode::tool::Output out(output.descriptor(), display.escapes_output);
    ztdecode::tool::Output diagnostics(complaints.descriptor(), display.escapes_diagnostics);
    ztdecode::tool::Sessions sessions;
    ztdecode::tool::TraceDecoder decoder("trace", ztdecode::tool::make_report("trace", options, display, out),
                                         options, display, false, sessions, out, diagnostics);
    ztdecode::tool::DescriptorSource source(descriptor);
    decoder.decode(source, descriptor);
    expect(!decoder.unreadable(), "the input can be read");
    return {output.content(), complaints.content(), out.error()};
}

// Takes the next line off; its newline is left out.
std::string_view next_line(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

// Lines of these characters alone have nothing to escape.
bool plain(std::string_view line) {
    return std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c < 0x7F && c != '\\'; });
}

void expect_every_line(std::string_view input, std::string_view output, bool escapes) {
    while (!input.empty()) {
        const std::string_view line = next_line(input);
        if (escapes && !plain(line)) continue;
        bool met = false;
        while (!met && !output.empty()) met = next_line(output) == line;
        expect(met, "every line of the input is in the output");
    }
}

// What is behind the control sequence, one that colours, at the front of the text.
std::string_view behind_colour(std::string_view text) {
    expect(text.starts_with("\033["), "a control sequence is one of the command's");
    const std::size_t end = text.find_first_not_of("0123456789;", 2);
    expect(end != std::string_view::npos && (text[end] == 'm' || text[end] == 'K'),
           "a control sequence colours");
    return text.substr(end + 1);
}

void expect_nothing_acts(std::string_view text, bool color) {
    while (!text.empty()) {
        const auto c = static_cast<unsigned char>(text[0]);
        if (c == 0x1B && color) {
            text = behind_colour(text);
            continue;
        }
        expect((c >= 0x20 && c != 0x7F) || c == '\n' || c == '\t', "control characters are escaped");
        expect(c != 0xC2 || text.size() == 1 || static_cast<unsigned char>(text[1]) >= 0xA0,
               "so are those beyond ASCII");
        text.remove_prefix(1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < header) return 0;
    const Options options = options_of(data);
    const std::string_view content(reinterpret_cast<const char*>(data + header),
                                   std::min(size - header, longest));
    const ztdecode::fuzz::Descriptor in =
        data[2] == 0 ? ztdecode::fuzz::file_with(content) : ztdecode::fuzz::pieces_of(content, data[2]);
    const bool color = (data[1] & bit_color) != 0;
    const bool escapes = (data[1] & bit_escapes) != 0;
    const Decoded decoded = decode(options, color, escapes, in.number());

    // A message of a binary file may have no byte but its length.
    const std::size_t messages = content.size() + 1;
    const std::size_t each = ztdecode::fuzz::longest_text(content.size()) * (options.explain ? explained : 1);
    expect(decoded.output.size() <= messages * each, "the output has its bound");
    expect(decoded.complaints.size() <= 10 * messages * ztdecode::fuzz::most_complaints,
           "so have the complaints");
    if (escapes) {
        // A sequence may be cut where the room ends.
        if (decoded.error == 0) expect_nothing_acts(decoded.output, color);
        expect_nothing_acts(decoded.complaints, false);
    }
    if (decoded.error == 0 && options.input && !options.audio_only && !binary(options.layout)) {
        expect_every_line(content, decoded.output, escapes);
    }
    return 0;
}
