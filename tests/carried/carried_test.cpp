#include "fuzz/carried.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <utility>

#include "support/support.hpp"

// Traces whose messages carry others in every way, from fixed seeds: each message ends within its bounds, its
// text is a C string, and sessions agree, whether or not one of them asks where the words come from.

namespace ztdecode::testing {
namespace {

using fuzz::CapturedMessage;

constexpr unsigned first_seed = 1;
constexpr unsigned traces = fuzz::sanitized ? 150 : 1500;

std::vector<std::uint8_t> steering(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(20 + random() % 400);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    return bytes;
}

std::string hex(const std::vector<std::uint8_t>& bytes) {
    Text text;
    for (const std::uint8_t byte : bytes) {
        text.hex(byte);
        text.add(" ");
    }
    return std::string(text.view());
}

// What each way of carrying says of itself, and how often it was met.
class Ways {
  public:
    void look_at(std::string_view text) {
        for (auto& [label, count] : ways_) {
            if (text.find(label) != std::string_view::npos) ++count;
        }
    }
    void expect_all() const {
        for (const auto& [label, count] : ways_) EXPECT_GE(count, traces / 100) << label;
    }

  private:
    std::array<std::pair<std::string_view, unsigned>, 8> ways_ = {
        {{"\t- super message:\n\t> zt ", 0},
         {"\t- super message, type 2:\n\t> zt ", 0},
         {"\tHUB -  to set 1\t", 0},
         {"\tHUB - from set 1\t", 0},
         {"segment message 1/1\n\t", 0},
         {"segment message 2/2\n\t", 0},
         {"\nsuper message\n", 0},
         {"VTA emulation: [opt mac/pc adr 0] VTA emulation: ", 0}}};
};

TEST(Carried, EveryMessageIsWithinItsBounds) {
    Ways ways;
    for (unsigned seed = first_seed; seed < first_seed + traces; ++seed) {
        fuzz::TwoSessions sessions;
        for (const CapturedMessage& message : fuzz::carried_trace(steering(seed))) {
            ASSERT_EQ(sessions.decode(message), "")
                << "seed " << seed << ", direction " << message.direction << ": " << hex(message.bytes);
            ways.look_at(sessions.text());
        }
    }
    ways.expect_all();
}

// Few bytes that would carry more than a machine has, were there no budget.

std::vector<std::uint8_t> repeated(std::size_t count, const std::vector<std::uint8_t>& what,
                                   std::vector<std::uint8_t> begin = {}) {
    for (std::size_t k = 0; k < count; ++k) begin.insert(begin.end(), what.begin(), what.end());
    return begin;
}

void expect_within_bounds(fuzz::TwoSessions& sessions, std::uint32_t direction,
                          std::vector<std::uint8_t> bytes) {
    EXPECT_EQ(sessions.decode({{}, direction, std::move(bytes)}), "");
    EXPECT_GT(sessions.text().size(), 0U);
}

// Each of the last segments decodes the whole message, and all of them, once more.
TEST(Carried, LastSegmentsInAMessageOfSegments) {
    fuzz::TwoSessions sessions;
    expect_within_bounds(sessions, from_dhs, bytes("0b 0d 0c 81 00 09 14 10 0b 02 0c 00 02 0c 00 02 0c 00"));
}

// The way down through the hubs is gone 32 times.
TEST(Carried, HubsInAMessageOfSegments) {
    fuzz::TwoSessions sessions;
    std::vector<std::uint8_t> hubs = repeated(1200, {0x14, 0x10});
    hubs.insert(hubs.end(), {0x0C, 0x00});
    expect_within_bounds(sessions, from_dhs, repeated(1, hubs, {0x0C, 0x81, 0x09, 0x62}));
    expect_within_bounds(sessions, from_dhs, hubs);
}

// Super messages of a module whose lengths lead through the same bytes again and again, and behind their end.
TEST(Carried, ComplaintsOfModules) {
    fuzz::TwoSessions sessions;
    const auto part = repeated(41, {0x0B, 0x0B, 0x0B, 0x01, 0x14, 0x0B}, {0xFA, 0x04, 0x10, 0x0B});
    expect_within_bounds(sessions, to_dhs, repeated(20, repeated(1, {0x01}, part), {0x0B}));
    EXPECT_GT(sessions.cost().complaints, fuzz::most_complaints);
}

// As deep as a message has room for; each level shows all the bytes inside it.
TEST(Carried, SuperMessagesAndHubsInEachOther) {
    fuzz::TwoSessions sessions;
    std::vector<std::uint8_t> message = {0x2A};
    while (message.size() + 5 <= message_capacity) {
        const std::size_t length = message.size() + 2;
        message.insert(message.begin(), {0x17, static_cast<std::uint8_t>(length & 0xFF),
                                         static_cast<std::uint8_t>(length >> 8), 0x14, 0x10});
    }
    expect_within_bounds(sessions, from_dhs, message);
}

}  // namespace
}  // namespace ztdecode::testing
