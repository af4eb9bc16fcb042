#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/support.hpp"
#include "ztdecode.h"

namespace {

using ztdecode::testing::bytes;

std::string repeated(std::string_view words, int n) {
    std::string text;
    while (n-- > 0) text += words;
    return text;
}

constexpr int more_than_a_message_may_carry = 200;
constexpr auto text_of_reassembled = "\t- segment message 1/1\n\t- version inquiry";

// Each message of a call has a budget of its own for what it carries.
TEST(AbiDecode, EachMessageOfABufferHasItsBudget) {
    const std::vector<std::uint8_t> buffer =
        bytes(repeated("05 00 0c 80 00 01 2a", more_than_a_message_may_carry));
    EXPECT_EQ(decode_bin_lng2(buffer.data(), 0, static_cast<int>(buffer.size())),
              repeated(std::string(text_of_reassembled) + "\n", more_than_a_message_may_carry));
}

TEST(AbiDecode, EachMessageOfALineHasItsBudget) {
    std::string line = repeated("05 00 0c 80 00 01 2a ", more_than_a_message_may_carry);
    line.pop_back();
    std::string expected = repeated(std::string(text_of_reassembled) + "\n", more_than_a_message_may_carry);
    expected.pop_back();
    EXPECT_EQ(line_lng2(line.c_str(), 0), expected);
}

const char* decoded_again(MessageRecord* /*part*/) {
    static std::string text;
    MessageRecord carried = {};
    const auto data = bytes("0c 80 00 02 0c 00");
    carried.length = static_cast<std::uint32_t>(data.size());
    std::copy(data.begin(), data.end(), carried.data);
    char* described = decode(carried);
    text = described;
    free(described);
    return text.c_str();
}

// What a host's decoder hands over while it decodes a part belongs to the message of that part.
TEST(AbiDecode, MessagesOfAHostsDecoderShareTheBudget) {
    MessageRecord whole = {};
    const auto data = bytes("02 2a 0b 01 0e 01 0e 01 0e 01 0e");
    whole.length = static_cast<std::uint32_t>(data.size());
    std::copy(data.begin(), data.end(), whole.data);
    const std::string text = subSuper(&whole, decoded_again);
    std::size_t reassembled = 0;
    for (std::size_t at = text.find("1/1\n\t-"); at != std::string::npos;
         at = text.find("1/1\n\t-", at + 1)) {
        ++reassembled;
    }
    EXPECT_EQ(reassembled, 64U);
}

}  // namespace
