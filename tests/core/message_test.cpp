#include "core/message.hpp"

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <random>
#include <vector>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

// The slow and plain second opinion: a record whose bytes are really moved.
struct PlainRecord {
    std::uint32_t length = 0;
    std::array<std::uint8_t, message_capacity> data{};

    void drop_first(std::uint32_t n) {
        length -= n;
        for (std::uint32_t k = 0; k < length; ++k) data[k] = data[k + n];
    }
    PlainRecord part(std::uint32_t first, std::uint32_t n) const {
        PlainRecord fresh;
        fresh.length = n;
        for (std::uint32_t k = 0; k < n; ++k) fresh.data[k] = data[first + k];
        return fresh;
    }
    std::uint8_t operator[](std::size_t k) const { return k < message_capacity ? data[k] : std::uint8_t{0}; }
};

class Dice {
  public:
    explicit Dice(std::uint32_t seed) : random_(seed) {}
    // A number from 0 to n-1.
    std::uint32_t below(std::uint32_t n) { return static_cast<std::uint32_t>(random_() % n); }

  private:
    std::mt19937 random_;
};

// Byte numbers around every border that a view has, and some far ones.
std::vector<std::size_t> looked_at(Dice& dice, std::uint32_t length) {
    std::vector<std::size_t> positions = {0, 1, 5118, 5119, 5120, 5121, 6000, 100000};
    for (std::uint32_t k = length < 8 ? 0 : length - 8; k < length + 8; ++k) positions.push_back(k);
    for (int i = 0; i < 40; ++i) positions.push_back(dice.below(message_capacity + 10));
    for (int i = 0; i < 20; ++i) positions.push_back(dice.below(64));
    return positions;
}

::testing::AssertionResult same(const Message& m, const PlainRecord& plain,
                                const std::vector<std::size_t>& at) {
    if (m.length() != plain.length) {
        return ::testing::AssertionFailure() << "length " << m.length() << " instead of " << plain.length;
    }
    for (const std::size_t k : at) {
        if (m[k] != plain[k]) {
            return ::testing::AssertionFailure()
                   << "byte " << k << " is " << int{m[k]} << " instead of " << int{plain[k]};
        }
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult same(const Message& m, const PlainRecord& plain) {
    std::vector<std::size_t> all(message_capacity + 3);
    for (std::size_t k = 0; k < all.size(); ++k) all[k] = k;
    return same(m, plain, all);
}

struct Start {
    std::vector<std::uint8_t> bytes;
    std::uint32_t length;
};

// Records of all sizes, with and without bytes behind their message, and lengths beyond the bytes that exist.
Start random_start(Dice& dice) {
    const std::uint32_t sizes[] = {0, 1, 2, 3, 10, 40, 300, 5119, 5120};
    Start s;
    s.bytes.resize(sizes[dice.below(std::size(sizes))]);
    for (auto& b : s.bytes) b = static_cast<std::uint8_t>(dice.below(256));
    const std::uint32_t lengths[] = {0, 1, 2, 7, 40, 300, 5120, static_cast<std::uint32_t>(s.bytes.size())};
    s.length = lengths[dice.below(std::size(lengths))];
    return s;
}

PlainRecord plain_of(const Start& s) {
    PlainRecord plain;
    plain.length = s.length;
    std::copy(s.bytes.begin(), s.bytes.end(), plain.data.begin());
    return plain;
}

// The bytes in a row are those of the message at the beginning, from the origin on.
::testing::AssertionResult stands_at_its_origin(const Message& m, const Start& start) {
    const auto bytes = m.bytes();
    if (!bytes.empty() && m.origin() + bytes.size() > start.bytes.size()) {
        return ::testing::AssertionFailure() << "beyond the beginning's bytes";
    }
    if (!std::equal(bytes.begin(), bytes.end(), start.bytes.begin() + (bytes.empty() ? 0 : m.origin()))) {
        return ::testing::AssertionFailure() << "other bytes at " << m.origin();
    }
    return ::testing::AssertionSuccess();
}

void run_sequence(Dice& dice, bool with_parts) {
    const Start start = random_start(dice);
    PlainRecord plain = plain_of(start);
    std::deque<Message> views;  // each reads through the ones before it
    views.emplace_back(start.bytes.data(), start.length, start.bytes.size());
    for (std::uint32_t steps = dice.below(12), i = 0; i <= steps; ++i) {
        ASSERT_TRUE(same(views.back(), plain, looked_at(dice, plain.length))) << "step " << i;
        ASSERT_TRUE(stands_at_its_origin(views.back(), start)) << "step " << i;
        const std::uint32_t n =
            dice.below(dice.below(3) == 0 ? plain.length + 1 : std::min(plain.length, 6U) + 1);
        switch (dice.below(with_parts ? 8 : 6)) {
            case 0: {
                const std::uint32_t length = dice.below(dice.below(4) == 0 ? message_capacity + 200 : 50);
                plain.length = std::min(length, message_capacity);
                views.push_back(views.back().with_length(length));
                break;
            }
            case 6:
            case 7: {
                const std::uint32_t rest = plain.length - n;
                const std::uint32_t count = dice.below(rest + 1);
                plain = plain.part(n, count);
                views.push_back(views.back().part(n, count));
                break;
            }
            default:
                plain.drop_first(n);
                views.push_back(views.back().without_first(n));
                break;
        }
    }
    ASSERT_TRUE(same(views.back(), plain));
}

TEST(Message, ViewsReadLikeARecordWhoseBytesMove) {
    Dice dice(20240501);
    for (int i = 0; i < 4000; ++i) {
        run_sequence(dice, false);
        ASSERT_FALSE(HasFatalFailure()) << "sequence " << i;
    }
}

TEST(Message, PartsReadLikeAFreshRecord) {
    Dice dice(20240502);
    for (int i = 0; i < 4000; ++i) {
        run_sequence(dice, true);
        ASSERT_FALSE(HasFatalFailure()) << "sequence " << i;
    }
}

TEST(Message, BytesBehindAMessageOfItsOwnAreZero) {
    const auto data = bytes("05 21 0a");
    const Message m(data);
    EXPECT_EQ(m.length(), 3U);
    EXPECT_EQ(m[0], 0x05);
    EXPECT_EQ(m[2], 0x0A);
    EXPECT_EQ(m[3], 0);
    EXPECT_EQ(m[5119], 0);
    EXPECT_EQ(m[5120], 0);
    EXPECT_EQ(m[~std::size_t{0}], 0);
}

TEST(Message, ARecordShowsWhatStandsBehindItsMessage) {
    const auto data = bytes("01 02 03 04 05");
    const Message m(data.data(), 2, data.size());
    EXPECT_EQ(m.length(), 2U);
    EXPECT_EQ(m[2], 3);
    EXPECT_EQ(m[4], 5);
    EXPECT_EQ(m[5], 0);
}

TEST(Message, ALengthBeyondTheBytesReadsZeros) {
    const auto data = bytes("01 02");
    const Message m(data.data(), 4, data.size());
    EXPECT_EQ(m.length(), 4U);
    EXPECT_EQ(m[1], 2);
    EXPECT_EQ(m[2], 0);
    EXPECT_EQ(m[3], 0);
    const Message rest = m.without_first(1);
    EXPECT_EQ(rest.length(), 3U);
    EXPECT_EQ(rest[0], 2);
    EXPECT_EQ(rest[1], 0);
}

TEST(Message, DroppedBytesLeaveTheTailWhereItWas) {
    // 01 02 03 04 05 without its first two is 03 04 05, and the record reads 03 04 05 04 05.
    const auto data = bytes("01 02 03 04 05");
    const Message m(data);
    const Message rest = m.without_first(2);
    EXPECT_EQ(rest.length(), 3U);
    const std::uint8_t expected[] = {3, 4, 5, 4, 5, 0};
    for (std::size_t k = 0; k < std::size(expected); ++k) EXPECT_EQ(rest[k], expected[k]) << k;
    // Once more: 05, and the record reads 05 04 05 04 05.
    const Message last = rest.without_first(2);
    const std::uint8_t expected_last[] = {5, 4, 5, 4, 5, 0};
    for (std::size_t k = 0; k < std::size(expected_last); ++k) EXPECT_EQ(last[k], expected_last[k]) << k;
}

TEST(Message, DroppingAllMovesNothing) {
    const auto data = bytes("01 02 03");
    const Message m(data);
    const Message none = m.without_first(3);
    EXPECT_EQ(none.length(), 0U);
    EXPECT_EQ(none[0], 1);
    EXPECT_EQ(none[2], 3);
    EXPECT_EQ(none[3], 0);
}

TEST(Message, ALongerLengthTakesInTheBytesBehind) {
    const auto data = bytes("01 02 03 04 05");
    const Message m(data);
    const Message rest = m.without_first(2);
    const Message longer = rest.with_length(5);
    EXPECT_EQ(longer.length(), 5U);
    EXPECT_EQ(longer[3], 4);
    EXPECT_EQ(longer[4], 5);
    const Message again = longer.without_first(3);
    EXPECT_EQ(again.length(), 2U);
    EXPECT_EQ(again[0], 4);
    EXPECT_EQ(again[1], 5);
    EXPECT_EQ(again[2], 5);  // third byte of 03 04 05 04 05
}

TEST(Message, LengthsAreCutToTheCapacity) {
    const std::vector<std::uint8_t> data(6000, 0xAB);
    const Message m(data);
    EXPECT_EQ(m.length(), 5120U);
    EXPECT_EQ(m[5119], 0xAB);
    EXPECT_EQ(m[5120], 0);
    EXPECT_EQ(m.with_length(6000).length(), 5120U);
    EXPECT_EQ(m.with_length(6000)[5120], 0);
}

TEST(Message, BytesWithoutARecordAreAllThere) {
    std::vector<std::uint8_t> data(70000, 0xAB);
    data.back() = 0xCD;
    const Message m = Message::without_record(data);
    EXPECT_EQ(m.length(), 70000U);
    EXPECT_EQ(m[5120], 0xAB);
    EXPECT_EQ(m[69999], 0xCD);
    EXPECT_EQ(m[70000], 0);
    EXPECT_EQ(Message::without_record({}).length(), 0U);
    EXPECT_EQ(Message::without_record({})[0], 0);

    const Message part = Message::without_record(data, 69998);
    EXPECT_EQ(part.length(), 69998U);
    EXPECT_EQ(part.bytes().size(), 69998U);
    EXPECT_EQ(part[69997], 0xAB);
    EXPECT_EQ(part[69999], 0xCD);
    EXPECT_EQ(part[70000], 0);
    EXPECT_EQ(Message::without_record(data, 0)[69999], 0xCD);
    EXPECT_EQ(Message::without_record(data, 70001).length(), 70000U);
}

TEST(Message, NumbersAreBigEndian) {
    const auto data = bytes("12 34 56 78 9a f3 7f 80");
    const Message m(data);
    EXPECT_EQ(m.u16(0), 0x1234U);
    EXPECT_EQ(m.u32(1), 0x3456789AU);
    EXPECT_EQ(m.u32(4), 0x9AF37F80U);
    EXPECT_EQ(m.u16(7), 0x8000U);  // the second byte stands behind the message
    EXPECT_EQ(m.s8(5), -13);
    EXPECT_EQ(m.s8(6), 127);
    EXPECT_EQ(m.s8(7), -128);
    EXPECT_TRUE(m.bit(7, 7));
    EXPECT_FALSE(m.bit(7, 0));
    EXPECT_TRUE(m.bit(0, 1));
    EXPECT_FALSE(m.bit(0, 0));
}

TEST(Message, APartIsAFreshRecordOfTheSameDirection) {
    const auto data = bytes("0b 02 aa bb 01 cc");
    Message m(data);
    m.direction = 2;
    const Message part = m.part(2, 2);
    EXPECT_EQ(part.length(), 2U);
    EXPECT_EQ(part[0], 0xAA);
    EXPECT_EQ(part[1], 0xBB);
    EXPECT_EQ(part[2], 0);
    EXPECT_EQ(part.direction, 2U);
    EXPECT_EQ(m.part(6, 0).length(), 0U);
    EXPECT_EQ(m.part(6, 0)[0], 0);
}

TEST(Message, ViewsKeepTheDirection) {
    const auto data = bytes("0b 02 aa bb");
    Message m(data);
    m.direction = to_dhs;
    for (const Message& view : {m.without_first(1), m.with_length(2)}) EXPECT_EQ(view.direction, 1U);
}

TEST(Message, ViewsKnowWhereTheyBegin) {
    const auto data = bytes("0b 02 aa bb 01 cc");
    const Message m(data);
    EXPECT_EQ(m.origin(), 0U);
    const Message rest = m.without_first(1);
    EXPECT_EQ(rest.origin(), 1U);
    EXPECT_EQ(rest.part(1, 2).origin(), 2U);
    EXPECT_EQ(rest.with_length(2).origin(), 1U);
    EXPECT_EQ(rest.with_length(2).without_first(2).origin(), 3U);
}

TEST(Message, DecaleDropsOrComplains) {
    const auto data = bytes("01 02 03");
    TestSession d;
    const Message m(data);
    EXPECT_EQ(decale(d.session(), m, 3).length(), 0U);
    EXPECT_EQ(decale(d.session(), m, 2).length(), 1U);
    EXPECT_EQ(decale(d.session(), m, 2)[0], 3);
    EXPECT_EQ(decale(d.session(), m, 0).length(), 3U);
    EXPECT_EQ(d.error, "");
    const Message none = decale(d.session(), m, 4);
    EXPECT_EQ(none.length(), 0U);
    EXPECT_EQ(none[0], 1);  // nothing has moved
    EXPECT_EQ(none[2], 3);
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 4, disponible: 3\n");
    EXPECT_EQ(d.output, "");
}

}  // namespace
}  // namespace ztdecode::testing
