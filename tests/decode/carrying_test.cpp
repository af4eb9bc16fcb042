#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/support.hpp"

// What a captured message carries has one budget, however it carries it.

namespace ztdecode::testing {
namespace {

std::size_t count(std::string_view text, std::string_view words) {
    std::size_t n = 0;
    for (std::size_t at = text.find(words); at != std::string_view::npos; at = text.find(words, at + 1)) ++n;
    return n;
}

std::string repeated(std::string_view words, std::size_t n) {
    std::string text;
    while (n-- > 0) text += words;
    return text;
}

// The parts of a super message: a first segment whose message is a hub's with a super message of two last
// segments, and two last segments. Each of them is followed by the whole again.
TEST(Carrying, ReassembledMessagesAreCounted) {
    TestSession d;
    const std::string text = d.from_dhs("0b 0d 0c 81 00 09 14 10 0b 02 0c 00 02 0c 00 02 0c 00 02 0c 00");
    EXPECT_EQ(count(text, "HUB - "), Carrying::most_reassembled);
    EXPECT_LT(text.size(), 100000U);
    // The next message has a budget of its own.
    EXPECT_EQ(d.from_dhs("0c 80 00 01 2a"), "\t- segment message 1/1\n\t- version inquiry");
}

TEST(Carrying, LevelsCountThroughReassembledMessages) {
    TestSession d;
    const std::string hubs = repeated("14 10 ", 1200);
    // 2402 bytes in two segments: the hubs, and a last segment inside them.
    EXPECT_EQ(d.from_dhs("0c 81 09 62 " + hubs), "\t- segment message 1/2");
    const std::string text = d.from_dhs(hubs + "0c 00 0c 00");
    // 1200 levels to the last segment, one for the whole message, 1200 in that, one for the whole again: 158
    // are left, and the hub beyond them shows its own words.
    EXPECT_EQ(text, repeated("\tHUB -  to set 1", 1200) + "\t- segment message 2/2\n" +
                        repeated("\tHUB -  to set 1", 1200) + "\t- segment message 2/2\n" +
                        repeated("\tHUB -  to set 1", 159));
}

TEST(Carrying, ComplaintsOfOneMessageEnd) {
    TestSession d;
    std::string parts = "0b";
    while (parts.size() < 15000) parts += " 0a 04 10 0b 0b 0b 01 14 0b 0b 01";
    d.to_dhs(parts);
    EXPECT_LE(d.error.size(), Carrying::most_complaints);
    EXPECT_GT(d.error.size(), Carrying::most_complaints - 100);
    EXPECT_TRUE(d.error.ends_with("\n"));
    d.error.clear();
    d.to_dhs("05 01");
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 3, disponible: 2\n");
}

// Super messages inside each other show their bytes at every level: the most text that nesting gives fits.
TEST(Carrying, TextOfNestedSuperMessagesIsWhole) {
    std::vector<std::uint8_t> data = {0x2A};
    std::size_t supers = 0;
    while (data.size() + 5 <= message_capacity) {
        const auto n = data.size();
        data.insert(data.begin(),
                    {0x14, 0x10, 0x17, static_cast<std::uint8_t>(n), static_cast<std::uint8_t>(n >> 8)});
        ++supers;
    }
    TestSession d;
    Text out;
    Message m(data);
    ASSERT_EQ(decode(d.session(), m, out), Outcome::decoded);
    EXPECT_EQ(count(out.view(), "- super message, type 2:\n"), supers);
    EXPECT_TRUE(out.view().ends_with("\t> zt 01 00 2a\n\t- version inquiry"));
}

// A segment's trace shows the whole message, which may be long, at every segment.
TEST(Carrying, TracesOfSegmentsAreText) {
    TestSession d;
    d.from_dhs("0c ff ff ff 2a");
    d.output.clear();
    d.from_dhs("0b" + repeated(" 02 0c 01", 1700));
    EXPECT_LE(d.output.size(), Carrying::most_text);
    EXPECT_GT(d.output.size(), Carrying::most_text - 3 * 65536);
}

TEST(Carrying, AnUnknownClassInsideLeavesTheNextMessageItsBudget) {
    TestSession d;
    for (int i = 0; i < 3000; ++i) {
        EXPECT_EQ(d.from_dhs("14 10 15 02 04 01"),
                  "\tHUB -  to set 1\tRYM - call server\nError class lookup table ptr");
    }
    EXPECT_EQ(d.from_dhs("14 10 2a"), "\tHUB -  to set 1\t- version inquiry");
}

}  // namespace
}  // namespace ztdecode::testing
