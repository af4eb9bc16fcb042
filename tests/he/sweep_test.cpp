#include <memory>

#include "he/rows.hpp"

// Every opcode with every sub-command and many lengths: the decoders end, stay inside the bytes that exist
// (each message lies in a block of just its size, so that a sanitizer sees a byte too far), and say
// something.

namespace ztdecode::testing {
namespace {

struct Filling {
    std::uint8_t first;
    std::uint8_t step;
};

// Zeros, counts that are small, counts beyond every message, and different bytes.
constexpr Filling fillings[] = {{0, 0}, {1, 0}, {2, 0}, {255, 0}, {1, 1}, {250, 0xED}};

std::string decoded(Decoder decoder, Session& session, const Filling& filling, std::uint8_t opcode,
                    std::uint8_t command, std::size_t length) {
    const auto bytes = std::make_unique<std::uint8_t[]>(length);
    std::uint8_t value = filling.first;
    for (std::size_t k = 0; k < length; ++k, value = static_cast<std::uint8_t>(value + filling.step)) {
        bytes[k] = k == 0 ? opcode : k == 1 ? command : value;
    }
    Message m(bytes.get(), length, length);
    Text out;
    Decoding d(session, m, out);
    {
        const Decoding::Piece whole(d);
        decoder(d);
    }
    EXPECT_TRUE(d.status == Status::recognised || (d.status == Status::unknown && out.view() == "???"));
    return std::string(out.view());
}

// No text is longer than a list of 255 objects with the longest type name.
constexpr std::size_t longest_text = 100 + 255 * 40;

void sweep(Decoder decoder, const std::vector<std::size_t>& lengths, int opcode_step, int command_step) {
    for (const Filling& filling : fillings) {
        for (int opcode = 0; opcode < 256; opcode += opcode_step) {
            for (int command = 0; command < 256; command += command_step) {
                for (const std::size_t length : lengths) {
                    Session session;
                    const std::string text =
                        decoded(decoder, session, filling, static_cast<std::uint8_t>(opcode),
                                static_cast<std::uint8_t>(command), length);
                    ASSERT_FALSE(text.empty()) << opcode << " " << command << " " << length;
                    ASSERT_EQ(text.find('\0'), std::string::npos)
                        << opcode << " " << command << " " << length;
                    ASSERT_LE(text.size(), longest_text) << opcode << " " << command << " " << length;
                }
            }
        }
    }
}

TEST(HeSweep, EveryCommandToSystem) { sweep(he::to_system, {2, 3, 7, 40}, 1, 1); }

TEST(HeSweep, EveryCommandFromSystem) { sweep(he::from_system, {2, 3, 7, 40}, 1, 1); }

TEST(HeSweep, EveryLength) {
    std::vector<std::size_t> lengths;
    for (std::size_t n = 0; n <= 40; ++n) lengths.push_back(n);
    for (const unsigned n : {255U, 256U, 257U, 300U, 511U, 512U, 600U, 5119U, 5120U}) lengths.push_back(n);
    // A few sub-commands of each opcode; the next test has those that read most.
    for (const Decoder decoder : {he::to_system, he::from_system}) sweep(decoder, lengths, 1, 37);
}

// Lists, texts and their length checks; what one session writes, another one writes too.
TEST(HeSweep, EveryObjectCommandAtEveryLength) {
    std::vector<std::size_t> lengths;
    for (std::size_t n = 1; n <= 40; ++n) lengths.push_back(n);
    for (const Filling& filling : fillings) {
        for (int opcode : {44, 47, 49, 80, 81, 82, 83, 84, 85, 86}) {
            for (int command = 0; command < 40; ++command) {
                for (const std::size_t length : lengths) {
                    Session one;
                    Session other;
                    for (const Decoder decoder : {he::to_system, he::from_system}) {
                        EXPECT_EQ(decoded(decoder, one, filling, static_cast<std::uint8_t>(opcode),
                                          static_cast<std::uint8_t>(command), length),
                                  decoded(decoder, other, filling, static_cast<std::uint8_t>(opcode),
                                          static_cast<std::uint8_t>(command), length));
                    }
                }
            }
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
