#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>
#include <regex>

#include "support/process.hpp"

// No line is lost: whatever a file holds, and however it is written and packed, each of its lines gets one
// verdict and each message one, and they are the same.

namespace ztdecode::testing {

namespace {

struct Totals {
    std::vector<std::uint64_t> lines;  // all, and what they are
    std::vector<std::uint64_t> messages;
    bool operator==(const Totals&) const = default;
};

std::vector<std::uint64_t> numbers_of(const std::string& line) {
    static const std::regex number("[0-9]+");
    std::vector<std::uint64_t> numbers;
    const std::string behind_name = line.substr(line.find(": ") + 1);
    for (std::sregex_iterator it(behind_name.begin(), behind_name.end(), number), end; it != end; ++it)
        numbers.push_back(std::stoull(it->str()));
    return numbers;
}

Totals totals(const std::string& file) {
    const Ended ended = run({ZTDECODE_TOOL_FILE, "--check", file});
    const std::size_t newline = ended.output.find('\n');
    EXPECT_NE(newline, std::string::npos) << ended.error;
    EXPECT_EQ(std::count(ended.output.begin(), ended.output.end(), '\n'), 2) << ended.output;
    Totals found{numbers_of(ended.output.substr(0, newline)), numbers_of(ended.output.substr(newline + 1))};
    const bool clean =
        found.lines.at(2) + found.messages.at(2) + found.messages.at(4) + found.messages.at(5) == 0;
    EXPECT_EQ(ended.status, clean ? 0 : 1);
    return found;
}

void expect_sum(const std::vector<std::uint64_t>& sum) {
    ASSERT_EQ(sum.size(), 6U);
    EXPECT_EQ(sum[0], sum[1] + sum[2] + sum[3] + sum[4] + sum[5]);
}

// The sample with so many changes: characters that others stand in place of, that are gone, or are there
// twice. Lines stay lines of printable ASCII.
std::string changed(std::string trace, std::mt19937& random, int changes) {
    static const std::string characters = "0123456789abcdefSRztxX #[]:.-\t";
    for (int k = 0; k < changes; ++k) {
        const std::size_t at = random() % (trace.size() - 1);
        if (trace[at] == '\n') continue;
        switch (random() % 3) {
            case 0:
                trace[at] = characters[random() % characters.size()];
                break;
            case 1:
                trace.erase(at, 1);
                break;
            default:
                trace.insert(at, 1, characters[random() % characters.size()]);
        }
    }
    return trace;
}

std::string with_line_ends(const std::string& trace, const std::string& end) {
    std::string text;
    for (const char c : trace) c == '\n' ? text += end : text += c;
    return text;
}

std::string as_utf16(const std::string& trace, bool little, bool mark) {
    std::string text;
    const auto add = [&](char high, char low) {
        text += little ? low : high;
        text += little ? high : low;
    };
    if (mark) add('\xfe', '\xff');
    for (const char c : trace) add('\0', c);
    return text;
}

TEST(Verdicts, LinesInAreVerdictsOutInEveryEncodingAndCompression) {
    const std::string sample = contents(ZTDECODE_SOURCE_DIR "/examples/office.spzt");
    std::mt19937 random(1);
    for (int round = 0; round < 12; ++round) {
        const std::string trace = changed(sample, random, 40 * round);
        const TemporaryFile file(trace);
        const Totals expected = totals(file.path());
        expect_sum(expected.lines);
        expect_sum(expected.messages);
        EXPECT_EQ(expected.lines[0],
                  static_cast<std::uint64_t>(std::count(trace.begin(), trace.end(), '\n')));
        for (const std::string& other :
             {with_line_ends(trace, "\r\n"), with_line_ends(trace, "\r"), "\xEF\xBB\xBF" + trace,
              as_utf16(trace, true, true), as_utf16(trace, false, true), as_utf16(trace, true, false),
              as_utf16(trace, false, false), as_utf16(with_line_ends(trace, "\r\n"), true, true)}) {
            const TemporaryFile written(other);
            EXPECT_TRUE(totals(written.path()) == expected) << round << " " << other.substr(0, 20);
        }
        for (const char* packer :
             {"gzip -c <", "xz -c <", "bzip2 -c <", "zstd -qc <", "lz4 -qc <", "tar -cPf - "}) {
            const TemporaryFile packed(run({"/bin/sh", "-c", packer + file.path()}).output);
            EXPECT_TRUE(totals(packed.path()) == expected) << round << " " << packer;
        }
    }
}

}  // namespace

}  // namespace ztdecode::testing
