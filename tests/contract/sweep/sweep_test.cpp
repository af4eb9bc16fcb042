#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>

#include "core/session.hpp"
#include "fuzz/bounds.hpp"
#include "support/traces.hpp"

// Every first three bytes that a message can have, in both directions, with short and long tails, through one
// session: 33.5 million messages a tail. And the golden messages, cut off behind every byte. Whatever comes
// in, decoding ends in no time, with a text of bounded size that has no zero byte in it.
//
// A plain build takes all of them, under a sanitizer it is every 3rd, another one with each tail.

namespace ztdecode::testing {
namespace {

constexpr unsigned step = fuzz::sanitized ? 3 : 1;

// What modules pack into one another, and what comes in segments, has other bounds, which such tails do not
// reach.
using fuzz::own_text;
using fuzz::processor_seconds;

// Of 256 messages, in seconds of the processor.
constexpr double longest_time = fuzz::sanitized ? 20 : 1;

// Each message lies in a block of just its size, so that a sanitizer sees a byte too far.
class OneMessage {
  public:
    explicit OneMessage(std::size_t length)
        : block_(std::make_unique<std::uint8_t[]>(length)), length_(length) {}

    std::uint8_t* bytes() { return block_.get(); }

    void decode(Session& session, std::uint32_t direction) {
        Message m(block_.get(), length_, length_);
        m.direction = direction;
        text_.clear();
        static_cast<void>(ztdecode::decode(session, m, text_));
        if (text_.empty()) return;
        if (std::memchr(text_.data(), 0, text_.size()) != nullptr)
            FAIL() << "a zero byte in the text of " << hex();
        if (text_.size() > own_text(length_)) FAIL() << text_.size() << " bytes of text for " << hex();
    }

    std::string hex() const {
        std::string all;
        for (std::size_t k = 0; k < length_; ++k) all += formatted("{-:02x} "_cf, block_[k]);
        return all;
    }

  private:
    std::unique_ptr<std::uint8_t[]> block_;
    std::size_t length_;
    Text text_;
};

// Zeros, counts that are small, counts beyond every message, different bytes, any bytes.
class Tail {
  public:
    void fill(std::uint8_t* bytes, std::size_t count) {
        random_ = random_ * 1664525U + 1013904223U;
        constexpr std::array<std::array<std::uint8_t, 2>, 6> fillings = {
            {{0, 0}, {1, 0}, {2, 1}, {255, 0}, {1, 1}, {250, 0xED}}};
        const std::uint32_t pick = random_ >> 29;
        std::uint32_t value = random_ >> 8;
        std::uint32_t add = value | 1;
        if (pick < fillings.size()) {
            value = std::uint32_t{fillings[pick][0]} << 8U;
            add = std::uint32_t{fillings[pick][1]} << 8U;
        }
        for (std::size_t k = 0; k < count; ++k) {
            bytes[k] = static_cast<std::uint8_t>(value >> 8);
            value = value * (pick < fillings.size() ? 1 : 69069U) + add;
        }
    }

  private:
    std::uint32_t random_ = 1;
};

class Sweep : public ::testing::TestWithParam<std::size_t> {};

TEST_P(Sweep, EveryThreeBytes) {
    const std::size_t length = GetParam();
    const auto session = std::make_unique<Session>();
    OneMessage one(length);
    Tail tail;
    std::uint8_t* const m = one.bytes();
    unsigned turn = static_cast<unsigned>(length);
    unsigned decoded = 0;
    double slowest = 0;
    for (unsigned head = 0; head < 2 * 256 * 256; ++head) {
        const double begin = processor_seconds();
        for (unsigned third = 0; third < 256; ++third) {
            if (++turn % step != 0) continue;
            m[0] = static_cast<std::uint8_t>(head >> 8);
            m[1] = static_cast<std::uint8_t>(head);
            m[2] = static_cast<std::uint8_t>(third);
            tail.fill(m + 3, length - 3);
            one.decode(*session, head >> 16);
            if (HasFatalFailure()) return;
            ++decoded;
        }
        slowest = std::max(slowest, processor_seconds() - begin);
    }
    EXPECT_LT(slowest, longest_time);
    EXPECT_GE(decoded, 2U * 256 * 256 * 256 / step);
}

INSTANTIATE_TEST_SUITE_P(Length, Sweep, ::testing::Values(3, 5, 9, 24, 60));

// Through one session as well: a message that was cut off leaves behind what the next one meets.
TEST(SweepOfTraces, EveryTruncation) {
    const auto session = std::make_unique<Session>();
    for (const Captured& message : golden_messages()) {
        for (std::size_t length = 0; length <= message.bytes.size(); ++length) {
            OneMessage one(length);
            std::copy_n(message.bytes.begin(), length, one.bytes());
            for (const std::uint32_t direction : {message.direction, message.direction ^ 1}) {
                const double begin = processor_seconds();
                one.decode(*session, direction);
                ASSERT_FALSE(HasFatalFailure()) << message.line;
                ASSERT_LT(processor_seconds() - begin, longest_time / 4) << message.line;
            }
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
