// The readers of trace lines and of binary buffers.
//
// The first byte of the input says which reader, the direction and what stands behind a message; the rest is
// lines, or the buffer. Every line ends, each message of it within its bounds, a refusal says why, texts are
// C strings, and two readers with a session each agree.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "decode/line_texts.hpp"
#include "fuzz/decoding.hpp"
#include "fuzz/fuzzing.hpp"

namespace {

using ztdecode::Line;
using ztdecode::LineLayout;
using ztdecode::LineReader;
using ztdecode::ReadResult;
using ztdecode::Text;
using ztdecode::fuzz::expect;

constexpr std::array<LineLayout, 8> layouts = {LineLayout::line,
                                               LineLayout::line_lng2,
                                               LineLayout::tagged,
                                               LineLayout::spzt,
                                               LineLayout::spzt_lng2,
                                               LineLayout::line_any_length,
                                               LineLayout::line_any_length,
                                               LineLayout::line_any_length};

enum : std::uint8_t { bit_to_dhs = 8, bit_zeros = 16 };

struct Reader {
    ztdecode::Session session;
    ztdecode::fuzz::Counted side;
    ztdecode::fuzz::Account account;
    LineReader lines;
    Text text;

    explicit Reader(std::uint8_t how)
        : lines((how & bit_zeros) != 0 ? LineReader::Behind::zeros : LineReader::Behind::earlier_lines) {
        session.side = &side;
    }

    ztdecode::Outcome decode_bounded(const ztdecode::Message& m) {
        const std::size_t begin = text.size();
        ztdecode::Outcome outcome{};
        const ztdecode::fuzz::Cost cost =
            ztdecode::fuzz::cost_of(text, side, [&] { outcome = ztdecode::decode(session, m, text); });
        ztdecode::fuzz::expect_bounded(cost, m.length());
        account.add(cost);
        expect(begin <= text.size(), "what was written stays");
        return outcome;
    }

    // As `decode_line` does it, with an eye on every message.
    ReadResult read(std::uint8_t how, Line line) {
        const std::uint32_t direction = (how & bit_to_dhs) != 0 ? ztdecode::to_dhs : ztdecode::from_dhs;
        text.clear();
        lines.begin(line, layouts[how & 7], direction);
        while (const ztdecode::Message* m = lines.next()) {
            if (lines.padded()) {
                text.clear();
                ztdecode::write_padding(lines.refusal(), text);
            }
            if (decode_bounded(*m) != ztdecode::Outcome::decoded) return ReadResult::unknown_class;
            if (lines.goes_on()) text.add("\n");
        }
        if (!lines.refusal()) return ReadResult::decoded;
        text.clear();
        ztdecode::write_refusal(lines.refusal(), line, text);
        return ReadResult::refused;
    }
};

void expect_same(const Reader& one, const Reader& other, bool same_result) {
    expect(one.text.view().find('\0') == std::string_view::npos, "the text is a C string");
    expect(same_result && one.text.view() == other.text.view(), "both readers write the same text");
}

void read_lines(std::uint8_t how, std::string_view content) {
    Reader one(how);
    Reader other(how);
    while (!content.empty() && !one.account.used_up()) {
        const std::size_t end = content.find('\n');
        // With its zero a block of just the size that it needs: a sanitizer sees a read behind it.
        std::vector<char> characters(
            content.begin(), content.begin() + static_cast<std::ptrdiff_t>(std::min(end, content.size())));
        characters.push_back('\0');
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);

        const Line line = {characters.data(), characters.size() - 1};
        const ReadResult result = one.read(how, line);
        expect_same(one, other, other.read(how, line) == result);
        expect(result != ReadResult::refused || !one.text.empty(), "a refusal says why");
    }
}

void read_buffer(std::uint8_t how, std::string_view content) {
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    const std::uint32_t direction = (how & bit_to_dhs) != 0 ? ztdecode::to_dhs : ztdecode::from_dhs;
    Reader one(how);
    Reader other(how);
    ReadResult result{};
    const ztdecode::fuzz::Cost cost = ztdecode::fuzz::cost_of(
        one.text, one.side, [&] { result = decode_bin_lng2(one.session, bytes, direction, one.text); });
    ztdecode::fuzz::expect_bounded(cost, bytes.size(), 1 + bytes.size() / 2);
    expect_same(one, other, decode_bin_lng2(other.session, bytes, direction, other.text) == result);
    expect(result != ReadResult::decoded || bytes.empty() || one.text.view().ends_with('\n'),
           "every text ends in a newline");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string content(data + 1, data + size);
    if ((data[0] & 7) == 7) {
        read_buffer(data[0], content);
    } else {
        read_lines(data[0], content);
    }
    return 0;
}
