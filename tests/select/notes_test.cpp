#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/session.hpp"
#include "core/trail.hpp"
#include "decode/trace_lines.hpp"
#include "support/process.hpp"
#include "support/support.hpp"

// A trail without values knows the same messages as one with every word.

namespace ztdecode {

namespace {

namespace fs = std::filesystem;

struct Noted {
    std::uint32_t carrier;
    std::uint32_t begin;
    std::uint32_t end;
    std::uint32_t length;
    std::string link;
    std::string name;
    std::uint32_t code;
    bool operator==(const Noted&) const = default;
};
void PrintTo(const Noted& n, std::ostream* out) {  // NOLINT(readability-identifier-naming): GoogleTest's
    *out << n.link << " " << n.name << " " << n.begin << "-" << n.end << " in " << n.carrier;
}

std::vector<std::vector<Noted>> noted(const std::string& trace, Trail::What what) {
    Session session;
    Trail trail(what);
    session.trail = &trail;
    TraceReader reader(std::nullopt, from_dhs);
    Text text;
    std::vector<std::vector<Noted>> all;
    std::uint64_t number = 0;
    for (std::size_t begin = 0; begin < trace.size();) {
        const std::size_t end = std::min(trace.find('\n', begin), trace.size());
        if (reader.begin({trace.data() + begin, end - begin}, ++number) == LineVerdict::trace_line) {
            while (reader.next()) {
                text.clear();
                decode(session, *reader.captured().message, text);
                std::vector<Noted>& messages = all.emplace_back();
                for (const NotedMessage& m : trail.messages()) {
                    messages.push_back({m.carrier, m.begin, m.end, m.length, std::string(m.link),
                                        std::string(m.name), m.code});
                }
            }
        }
        begin = end + 1;
    }
    return all;
}

TEST(Notes, OfMessagesAloneAreTheSame) {
    std::size_t carried = 0;
    for (const auto& entry : fs::directory_iterator(ZTDECODE_SOURCE_DIR "/tests/golden")) {
        if (entry.path().extension() != ".spzt") continue;
        const std::string trace = testing::contents(entry.path());
        const auto words = noted(trace, Trail::What::words);
        EXPECT_EQ(noted(trace, Trail::What::messages), words) << entry.path();
        for (const auto& messages : words) carried += messages.size() - 1;
    }
    EXPECT_GE(carried, 300U);
}

}  // namespace

}  // namespace ztdecode
