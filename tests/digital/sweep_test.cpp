#include <array>
#include <cstring>
#include <memory>

#include "digital/rows.hpp"
#include "fuzz/bounds.hpp"

// Every type byte with every second byte at every length, both ways, through one session, so that what one
// message leaves behind is met by all others. Each message lies in a block of just its size: a sanitizer sees
// a byte too far.

namespace ztdecode::testing {
namespace {

constexpr unsigned stride = fuzz::sanitized ? 4 : 1;

constexpr std::size_t longest = 40;
constexpr unsigned rounds = 4;

// No text of such a message is as long.
constexpr std::size_t long_text = std::size_t{5} << 20;

// Module opcodes, kinds of report, lengths of parts, counts.
constexpr std::array<std::uint8_t, 16> third_bytes = {0x00, 0x01, 0x02, 0x04, 0x05, 0x0B, 0x0C, 0x1F,
                                                      0x26, 0x2A, 0x7F, 0x80, 0x8B, 0x9F, 0xF8, 0xFF};

class Sweep {
  public:
    Sweep() {
        for (std::size_t n = 0; n <= longest; ++n) blocks_[n] = std::make_unique<std::uint8_t[]>(n);
    }

    // One message at each length, with one of the fillings and one of the third bytes.
    void messages(unsigned round, std::uint32_t direction, unsigned type, unsigned second) {
        for (std::size_t n = 0; n <= longest; ++n) {
            const unsigned turn = count_++;
            if (turn % stride != 0) continue;
            const unsigned pick = turn / stride;
            fill(n, pick);
            std::uint8_t* data = blocks_[n].get();
            if (n > 0) data[0] = static_cast<std::uint8_t>(type);
            if (n > 1) data[1] = static_cast<std::uint8_t>(second);
            if (n > 2) data[2] = third_bytes[(pick * 7 + round * 5 + type + second) % third_bytes.size()];
            decode_one(data, n, direction);
            ASSERT_FALSE(::testing::Test::HasFatalFailure()) << "type " << type << " second " << second;
        }
    }

    std::size_t decoded() const { return decoded_; }

  private:
    // Zeros, small counts, counts beyond every message, and different bytes.
    void fill(std::size_t n, unsigned pick) {
        constexpr std::array<std::array<std::uint8_t, 2>, 6> fillings = {
            {{0, 0}, {1, 0}, {2, 1}, {255, 0}, {1, 1}, {250, 0xED}}};
        const auto& filling = fillings[pick / 3 % fillings.size()];
        std::uint8_t value = filling[0];
        for (std::size_t k = 0; k < n; ++k) {
            blocks_[n][k] = value;
            value = static_cast<std::uint8_t>(value + filling[1]);
        }
    }

    void decode_one(const std::uint8_t* data, std::size_t n, std::uint32_t direction) {
        Message m(data, n, n);
        m.direction = direction;
        out_.clear();
        static_cast<void>(decode(session_, m, out_));
        ++decoded_;
        ASSERT_EQ(n == 0, out_.empty()) << "length " << n;
        if (out_.empty()) return;
        ASSERT_EQ(std::memchr(out_.data(), 0, out_.size()), nullptr) << "length " << n;
        ASSERT_LT(out_.size(), long_text) << "length " << n;
    }

    Session session_;
    Text out_;
    std::array<std::unique_ptr<std::uint8_t[]>, longest + 1> blocks_;
    unsigned count_ = 0;
    std::size_t decoded_ = 0;
};

TEST(DigitalSweep, EveryTypeEverySecondByteEveryLength) {
    Sweep sweep;
    for (unsigned round = 0; round < rounds; ++round) {
        for (unsigned type = 0; type < 256; ++type) {
            for (const std::uint32_t direction : {from_dhs, to_dhs}) {
                for (unsigned second = 0; second < 256; ++second) {
                    sweep.messages(round, direction, type, second);
                    if (HasFatalFailure()) return;
                }
            }
        }
    }
    EXPECT_EQ(sweep.decoded(), (rounds * 256U * 2 * 256 * (longest + 1) + stride - 1) / stride);
}

// The link's own decoders, without the dispatcher in front: all third bytes of the messages that look at
// them.
TEST(DigitalSweep, EveryThirdByteOfModulesAndReports) {
    Session session;
    Text out;
    for (const int opcode : {0x02, 0x04, 0x0C, 0x1F, 0x29, 0x49, 0x4F, 0x50}) {
        for (unsigned second = 0; second < 256; second += stride == 1 ? 1 : 5) {
            for (unsigned third = 0; third < 256; ++third) {
                const auto data = std::make_unique<std::uint8_t[]>(12);
                data[0] = static_cast<std::uint8_t>(opcode);
                data[1] = static_cast<std::uint8_t>(second);
                data[2] = static_cast<std::uint8_t>(third);
                for (std::size_t k = 3; k < 12; ++k) data[k] = static_cast<std::uint8_t>(third * k);
                for (const auto decoder : {digital::to_system, digital::from_system}) {
                    const Message m(data.get(), 12, 12);
                    out.clear();
                    Decoding d(session, m, out);
                    decoder(d);
                    ASSERT_NE(d.status, Status::none);
                    ASSERT_EQ(out.view().find('\0'), std::string_view::npos);
                    ASSERT_LT(out.size(), long_text);
                }
            }
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
