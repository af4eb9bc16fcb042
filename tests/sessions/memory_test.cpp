#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/session.hpp"
#include "support/support.hpp"
#include "support/traces.hpp"

// What is decoded from another memory says the same where the two agree in what was looked at before it was
// set, and then teaches the same.

namespace ztdecode::testing {

namespace {

constexpr std::uint64_t seed = 0x5EED;
constexpr int sequences = 40;
constexpr std::size_t length_of_sequence = 120;
constexpr int trials = 1500;

class Complaints : public SideChannel {
  public:
    bool shows_output() const override { return false; }  // which would look at all bytes of a series
    void standard_output(std::string_view /*text*/) override {}
    void standard_error(std::string_view text) override { said += text; }
    std::uint64_t place() const override { return at; }

    std::string said;
    std::uint64_t at = 0;
};

// A session that begins with this memory.
class Decoder {
  public:
    explicit Decoder(const Memory& memory) {
        static_cast<Memory&>(*session_) = memory;
        session_->forget_uses();
        session_->side = &complaints_;
    }
    // The text, and what is wrong with the message.
    std::string decode(const Captured& captured, std::uint64_t place) {
        complaints_.said.clear();
        complaints_.at = place;
        Message m(captured.bytes);
        m.direction = captured.direction;
        text_.clear();
        const Outcome outcome = ztdecode::decode(*session_, m, text_);
        return std::string(text_.view()) + (outcome == Outcome::decoded ? "|" : "!") + complaints_.said;
    }
    const Memory& memory() const { return *session_; }

  private:
    Complaints complaints_;
    std::unique_ptr<Session> session_ = std::make_unique<Session>();
    Text text_;
};

bool is_same(const Memory& a, const Memory& b) {
    for (std::size_t k = 0; k < a.digital.modules.types.size(); ++k) {
        if (a.digital.modules.types[k].value() != b.digital.modules.types[k].value()) return false;
    }
    const Reassembly& x = a.digital.reassembly.value();
    const Reassembly& y = b.digital.reassembly.value();
    return a.digital.modules.s0_to_system_total.value() == b.digital.modules.s0_to_system_total.value() &&
           a.digital.modules.s0_from_system_total.value() == b.digital.modules.s0_from_system_total.value() &&
           x.bytes == y.bytes && x.length == y.length && x.gathered == y.gathered &&
           x.segments == y.segments && x.to_come == y.to_come && x.last_place == y.last_place &&
           x.direction == y.direction && x.places == y.places &&
           a.digital.audio_devices.value() == b.digital.audio_devices.value() &&
           a.ip.record_item.value() == b.ip.record_item.value() &&
           a.he.window_command.value() == b.he.window_command.value() &&
           a.object.properties.value() == b.object.properties.value();
}

bool uses_memory(const Captured& captured) {
    const auto fresh = std::make_unique<Memory>();
    Decoder decoder(*fresh);
    decoder.decode(captured, 1);
    const Memory& m = decoder.memory();
    const auto used = [](const auto& item) { return item.first_use() != FirstUse::none; };
    return std::any_of(m.digital.modules.types.begin(), m.digital.modules.types.end(), used) ||
           used(m.digital.modules.s0_to_system_total) || used(m.digital.modules.s0_from_system_total) ||
           used(m.digital.reassembly) || used(m.digital.audio_devices) || used(m.ip.record_item) ||
           used(m.he.window_command) || used(m.object.properties);
}

Captured from_system(std::string_view hex) { return {bytes(hex), from_dhs, ""}; }
Captured to_system(std::string_view hex) { return {bytes(hex), to_dhs, ""}; }

// Golden messages that teach or are taught, and others for what those seldom do.
std::vector<Captured> messages() {
    std::vector<Captured> all;
    for (const Captured& captured : golden_messages()) {
        if (uses_memory(captured)) all.push_back(captured);
    }
    const std::vector<Captured> others = {
        from_system("0c 81 00 09 21 04 03 41"),  // the first of two segments: 9 bytes in all
        from_system("0c 00 42 43 44 45 46"),     // the last one
        from_system("0c 00 47"),                 // one that lacks bytes
        from_system("0c 82 00 06 21"),           // the first of three
        from_system("0c 01 05 06 07"),
        from_system("0c 80 00 03 21 00 05"),  // whole ones: a led, how in byte 1, its number in byte 2
        from_system("0c 80 00 03 21 01 06"),
        from_system("0c 80 00 02 21 02"),
        from_system("0c 80 00 01 21"),  // which is asked for bytes behind its end
        from_system("0c 80 00 02 21"),  // which says that it is longer than it is
        to_system("04 08 0e 01 00"),
        to_system("04 f8 0e 01 00"),
        from_system("02 00 0c 83"),
        from_system("02 00 0c 02"),
        from_system("02 05 0c 01 01"),
        to_system("01 00 00 01 02"),
        to_system("01 01 04 00 00"),
    };
    all.insert(all.end(), others.begin(), others.end());
    return all;
}

class Sequences {
  public:
    Sequences() : pool_(messages()) {}

    std::vector<Captured> next() {
        std::vector<Captured> sequence;
        while (sequence.size() < length_of_sequence) {
            // Half of them are the others, which stand at the end.
            const std::size_t from = random(2) == 0 ? 0 : pool_.size() - 16;
            Captured captured = pool_[from + random(pool_.size() - from)];
            if (random(3) == 0) mutate(captured);
            sequence.push_back(std::move(captured));
        }
        return sequence;
    }
    std::size_t random(std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(engine_);
    }

  private:
    void mutate(Captured& captured) {
        if (captured.bytes.empty()) return;
        switch (random(4)) {
            case 0:
                captured.bytes[random(captured.bytes.size())] = static_cast<std::uint8_t>(random(256));
                break;
            case 1:
                captured.bytes[random(captured.bytes.size())] ^= static_cast<std::uint8_t>(1U << random(8));
                break;
            case 2:
                captured.bytes.resize(1 + random(captured.bytes.size()));
                break;
            default:
                captured.bytes.push_back(static_cast<std::uint8_t>(random(256)));
                break;
        }
    }

    std::vector<Captured> pool_;
    std::mt19937_64 engine_{seed};
};

TEST(MemoryOfMessages, WhatAgreesInWhatWasLookedAtSaysAndTeachesTheSame) {
    Sequences sequences_of_messages;
    int same = 0;
    int other_memory = 0;
    int different = 0;
    for (int n = 0; n < sequences; ++n) {
        const std::vector<Captured> sequence = sequences_of_messages.next();
        std::vector<Memory> arrived;
        std::vector<std::string> said;
        Decoder one{Memory()};
        for (std::size_t k = 0; k < sequence.size(); ++k) {
            arrived.push_back(one.memory());
            said.push_back(one.decode(sequence[k], k));
        }
        arrived.push_back(one.memory());
        for (int trial = 0; trial < trials; ++trial) {
            const std::size_t first = sequences_of_messages.random(sequence.size());
            const std::size_t last = std::min(sequence.size(), first + 1 + sequences_of_messages.random(12));
            const Memory& assumed = arrived[sequences_of_messages.random(arrived.size())];
            Decoder decoder(assumed);
            const Memory before = decoder.memory();
            bool texts_differ = false;
            for (std::size_t k = first; k < last; ++k)
                texts_differ = decoder.decode(sequence[k], k) != said[k] || texts_differ;
            different += texts_differ ? 1 : 0;
            if (!arrived[first].would_say_the_same(before, decoder.memory())) continue;
            ++same;
            other_memory += is_same(arrived[first], before) ? 0 : 1;
            ASSERT_FALSE(texts_differ) << "sequence " << n << ", messages " << first << " to " << last;
            Memory taught = arrived[first];
            taught.learn(decoder.memory());
            ASSERT_TRUE(is_same(taught, arrived[last]))
                << "sequence " << n << ", messages " << first << " to " << last;
        }
    }
    // Something was tried: most memories differ, and many of them say the same nevertheless.
    EXPECT_GT(other_memory, sequences * trials / 20);
    EXPECT_GT(different, sequences * trials / 20);
    EXPECT_LT(same, sequences * trials);
}

// Bytes that a longer message left show where a shorter one is asked for more than it has.
TEST(MemoryOfMessages, StaleBytesOfSegmentsAreLookedAtOnlyWhereTheyShow) {
    Decoder decoder{Memory()};
    const auto stale = [&] { return decoder.memory().digital.reassembly.value().stale_looked_at; };
    decoder.decode(from_system("0c 80 00 03 21 01 07"), 1);
    EXPECT_FALSE(stale());
    decoder.decode(from_system("0c 80 00 01 21"), 2);
    EXPECT_TRUE(stale());
}

TEST(MemoryOfMessages, StaleBytesOfSegmentsAreLookedAtWhereTheLengthCountsThem) {
    Decoder decoder{Memory()};
    decoder.decode(from_system("0c 80 00 02 03"), 1);
    EXPECT_TRUE(decoder.memory().digital.reassembly.value().stale_looked_at);
}

}  // namespace

}  // namespace ztdecode::testing
