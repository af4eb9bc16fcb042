#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tool/report/explained.hpp"

// Lines of explanations.

namespace ztdecode::tool {

namespace {

// Words that came from these bytes of a message of 0, 1, 2 ...
std::string explained(std::size_t length, const std::vector<std::uint32_t>& offsets, std::string_view words) {
    std::vector<std::uint8_t> bytes(length);
    for (std::size_t k = 0; k < length; ++k) bytes[k] = static_cast<std::uint8_t>(k);
    const Message m(bytes);
    Text text;
    Trail trail;
    trail.start(text, m);
    for (const std::uint32_t offset : offsets) trail.test(m, {offset, 1});
    text.add(words);
    trail.finish();
    Text out;
    explain(trail, text.view(), m, out);
    return std::string(out.view());
}

TEST(Explain, OffsetsBytesAndWords) {
    EXPECT_EQ(explained(3, {0, 1, 2}, "words"),
              "    0-2     00 01 02  \"words\"\n"
              "    unused  none\n");
}

TEST(Explain, UpToEightBytesAndFourRangesAreShown) {
    EXPECT_EQ(explained(15, {0, 1, 4, 5, 8, 9, 12, 13}, "words"),
              "    0-1,4-5,8-9,12-13  00 01 04 05 08 09 0c 0d  \"words\"\n"
              "    unused             2-3,6-7,10-11,14  02 03 06 07 0a 0b 0e\n");
}

TEST(Explain, MoreAreShortened) {
    EXPECT_EQ(explained(20, {0, 2, 4, 6, 8, 10, 12, 14, 16}, "words"),
              "    0,2,..,16  00 02 04 06 08 .. 0e 10  \"words\"\n"
              "    unused     1,3,..,17-19  01 03 05 07 09 .. 12 13\n");
}

TEST(Explain, BytesBehindTheEnd) {
    EXPECT_EQ(explained(1, {0, 1}, "words"),
              "    0, behind the end  00  \"words\"\n"
              "    unused             none\n");
}

TEST(Explain, WordsStayInTheirLine) {
    EXPECT_EQ(explained(1, {0}, "two\nlines \"\x1b\x9b\\"),
              "    0       00  \"two\\nlines \\\"\\x1b\\x9b\\\\\"\n"
              "    unused  none\n");
}

TEST(Explain, ALineIsAsLongAsItsWordsAllow) {
    constexpr std::size_t columns = 100;
    std::vector<std::uint32_t> offsets;
    for (std::uint32_t k = 0; k < message_capacity; k += 2) offsets.push_back(k);
    offsets.push_back(message_capacity);
    const std::string words(1000, 'w');
    std::istringstream lines(explained(message_capacity, offsets, words));
    for (std::string line; std::getline(lines, line);) EXPECT_LT(line.size(), words.size() + columns);
}

}  // namespace

}  // namespace ztdecode::tool
