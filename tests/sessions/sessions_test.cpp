#include <gtest/gtest.h>

#include <barrier>
#include <memory>
#include <thread>

#include "core/session.hpp"
#include "core/trail.hpp"
#include "fuzz/bounds.hpp"
#include "support/traces.hpp"

// Sessions on threads of their own share nothing but constant tables and the library of character names: what
// they decode at the same time is what they decode one after the other.

namespace ztdecode::testing {
namespace {

// Everything that comes out of a session, in its order.
class Transcript : public SideChannel {
  public:
    explicit Transcript(bool explained) : session_(std::make_unique<Session>()) {
        session_->side = this;
        session_->switches = {.color = true, .audio_only = false, .debug = true};
        if (explained) session_->trail = &trail_;
    }

    void decode(const Captured& message) {
        Message m(message.bytes);
        m.direction = message.direction;
        text_.clear();
        const Outcome outcome = ztdecode::decode(*session_, m, text_);
        all_ += text_.view();
        all_ += outcome == Outcome::decoded ? "\n" : "\nunknown class\n";
        for (const Stretch& stretch : trail_.stretches()) {
            all_ += formatted("{-}-{-} "_cf, stretch.begin, stretch.end);
        }
    }

    void standard_output(std::string_view text) override { add_side("output: ", text); }
    void standard_error(std::string_view text) override { add_side("error: ", text); }

    const std::string& all() const { return all_; }

  private:
    // The trace of a long series of segments is not worth keeping whole.
    void add_side(std::string_view label, std::string_view text) {
        all_ += label;
        all_ += text.substr(0, 200);
        all_ += '\n';
    }

    std::unique_ptr<Session> session_;
    Trail trail_;
    Text text_;
    std::string all_;
};

// Texts of characters that only the library has names for, so that all threads need it at once.
Captured named_characters(std::uint8_t page) {
    Captured message{{0x16, 0x02, 0x84, 0x00, 0x07, 0x37, 40}, from_dhs, {}};
    for (unsigned k = 0; k < 20; ++k) {
        message.bytes.push_back(static_cast<std::uint8_t>(0xC3 + page % 20));
        message.bytes.push_back(static_cast<std::uint8_t>(0x80 + (page * 7 + k * 3) % 0x40));
    }
    return message;
}

// A message of any link and direction; always the same one for a number.
Captured any_message(std::uint32_t number) {
    constexpr std::uint8_t types[] = {0x00, 0x02, 0x04, 0x05, 0x06, 0x0B, 0x0C, 0x0D, 0x0E,
                                      0x0F, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x1F,
                                      0x21, 0x27, 0x29, 0x31, 0x49, 0x4F, 0x50};
    std::uint64_t random = number * 0x9E3779B97F4A7C15U + 0x2545F4914F6CDD1DU;
    const auto next = [&random] {
        random ^= random >> 12;
        random ^= random << 25;
        random ^= random >> 27;
        return static_cast<std::uint32_t>(random >> 16);
    };
    Captured message;
    message.direction = next() % 2;
    message.bytes.push_back(types[next() % std::size(types)]);
    for (std::uint32_t k = next() % 60; k > 0; --k)
        message.bytes.push_back(static_cast<std::uint8_t>(next()));
    if (message.bytes.size() > 2 && next() % 2 == 0)
        message.bytes[1] = static_cast<std::uint8_t>(next() % 32);
    return message;
}

std::vector<Captured> messages_of(unsigned thread, std::size_t mixed) {
    std::vector<Captured> messages;
    for (unsigned k = 0; k < 200; ++k)
        messages.push_back(named_characters(static_cast<std::uint8_t>(k + thread)));
    const std::vector<Captured> golden = golden_messages();
    messages.insert(messages.end(), golden.begin(), golden.end());
    for (std::size_t k = 0; k < mixed; ++k) {
        messages.push_back(any_message(static_cast<std::uint32_t>(k * (thread + 1))));
        if (k % 16 == 0) messages.push_back(golden[(k / 16 * 7 + thread) % golden.size()]);
    }
    return messages;
}

std::string decoded(const std::vector<Captured>& messages, bool explained) {
    Transcript transcript(explained);
    for (const Captured& message : messages) transcript.decode(message);
    return transcript.all();
}

// What two transcripts say where they differ for the first time.
std::string difference(const std::string& a, const std::string& b) {
    std::size_t at = 0;
    while (at < a.size() && at < b.size() && a[at] == b[at]) ++at;
    const std::size_t begin = at < 100 ? 0 : at - 100;
    return "..." + a.substr(begin, 200) + "...\n---\n..." + b.substr(begin, 200) + "...";
}

void decode_side_by_side(unsigned threads, std::size_t mixed) {
    std::vector<std::vector<Captured>> work;
    for (unsigned t = 0; t < threads; ++t) work.push_back(messages_of(t, mixed));
    std::vector<std::string> together(threads);
    {
        std::barrier start(static_cast<std::ptrdiff_t>(threads));
        std::vector<std::jthread> running;
        for (unsigned t = 0; t < threads; ++t) {
            running.emplace_back([&, t] {
                start.arrive_and_wait();
                together[t] = decoded(work[t], t % 2 == 1);
            });
        }
    }
    for (unsigned t = 0; t < threads; ++t) {
        const std::string alone = decoded(work[t], t % 2 == 1);
        ASSERT_NE(alone.find("\t//\"<"), std::string::npos) << "no character was named";
        EXPECT_TRUE(together[t] == alone) << "thread " << t << ":\n" << difference(together[t], alone);
    }
}

// The first thing that this program does, so that the library of names is opened by two threads at once.
TEST(Sessions, TwoAtTheSameTime) { decode_side_by_side(2, fuzz::sanitized ? 10000 : 50000); }

TEST(Sessions, EightAtTheSameTime) { decode_side_by_side(8, 5000); }

// Two sessions that take turns on one thread do not notice each other either.
TEST(Sessions, TwoInTurns) {
    const std::vector<Captured> one = messages_of(0, 5000);
    const std::vector<Captured> other = messages_of(1, 5000);
    Transcript a(false);
    Transcript b(true);
    for (std::size_t k = 0; k < std::max(one.size(), other.size()); ++k) {
        if (k < one.size()) a.decode(one[k]);
        if (k < other.size()) b.decode(other[k]);
    }
    EXPECT_TRUE(a.all() == decoded(one, false)) << difference(a.all(), decoded(one, false));
    EXPECT_TRUE(b.all() == decoded(other, true)) << difference(b.all(), decoded(other, true));
}

}  // namespace
}  // namespace ztdecode::testing
