#include <algorithm>
#include <array>

#include "fuzz/bounds.hpp"
#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

constexpr std::array<Decoder, 12> decoders = {
    z::to_system,  z::from_system,  mpc::to_system, mpc::from_system, eak::to_system, eak::from_system,
    ks::to_system, ks::from_system, v24::to_system, v24::from_system, s0::to_system,  s0::from_system,
};

bool is_super(Decoder decoder, std::uint8_t opcode) {
    constexpr std::array<Decoder, 5> splitting = {z::from_system, mpc::from_system, mpc::to_system,
                                                  eak::from_system, ks::from_system};
    return (opcode & 0x7F) == 0x0B && std::ranges::count(splitting, decoder) != 0;
}

// Every decoder says something of every opcode, whatever the report code and the length. Bit 7 changes
// nothing but the code that an unknown opcode shows.
TEST(Modules, EveryOpcodeReportCodeAndLengthHasAText) {
    constexpr std::array<std::uint8_t, 24> bytes = {4, 0x2A, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8};
    for (const Decoder decoder : decoders) {
        TestSession d;
        Text out;
        auto data = bytes;
        for (unsigned opcode = 0; opcode < 256; ++opcode) {
            for (unsigned code = 0; code < 256; ++code) {
                data[2] = static_cast<std::uint8_t>(opcode);
                data[3] = static_cast<std::uint8_t>(code);
                if (is_super(decoder, data[2])) continue;
                for (const std::size_t length : {1U, 3U, 4U, 10U, 24U}) {
                    out.clear();
                    decode_message(decoder, d, Message(data.data(), length, length), out);
                    ASSERT_FALSE(out.empty()) << opcode << ' ' << code << ' ' << length;
                    ASSERT_EQ(out.view().find('\0'), std::string_view::npos);
                    ASSERT_LT(out.size(), 400U);
                }
            }
        }
    }
}

// A sanitizer takes its time: then it is every 15th.
TEST(Modules, SuperMessagesOfEveryLengthEnd) {
    constexpr unsigned step = fuzz::sanitized ? 15 : 1;
    for (const Decoder decoder : decoders) {
        TestSession d;
        Text out;
        std::array<std::uint8_t, 48> data = {4, 0x10, 0x0B};
        if (!is_super(decoder, 0x0B)) continue;
        for (unsigned length = 0; length < 256; length += step) {
            for (const unsigned opcode : {0x00U, 0x0BU, 0x1FU, 0x26U, 0x8BU}) {
                data[3] = static_cast<std::uint8_t>(length);
                data[4] = static_cast<std::uint8_t>(opcode);
                for (const std::size_t size : {1U, 3U, 4U, 5U, 40U}) {
                    out.clear();
                    const Captured captured(d.session(), out);
                    decode_message(decoder, d, Message(data.data(), size, data.size()), out);
                    ASSERT_TRUE(out.view().starts_with("super message\n"));
                    ASSERT_TRUE(out.view().ends_with("\n"));
                    ASSERT_LT(out.size(), 300000U) << length << ' ' << opcode << ' ' << size;
                    d.error.clear();
                }
            }
        }
    }
}

// The whole way: every sub-device byte, opcode and report code in both directions.
TEST(Modules, EverySubDeviceByteHasItsLabel) {
    TestSession d;
    Text out;
    std::array<std::uint8_t, 12> data = {4, 0, 0, 0, 2, 1, 5, 8, 3, 7, 6, 2};
    for (unsigned sub_device = 0; sub_device < 256; ++sub_device) {
        for (unsigned opcode = 0; opcode < 256; opcode += opcode == 0x1F ? 1 : 3) {
            for (const unsigned code : {0U, 1U, 2U, 3U, 5U, 7U, 8U, 0x10U, 0x80U, 0x81U, 0x82U, 0xFFU}) {
                data[1] = static_cast<std::uint8_t>(sub_device);
                data[2] = static_cast<std::uint8_t>(opcode);
                data[3] = static_cast<std::uint8_t>(code);
                for (const Direction direction : {to_dhs, from_dhs}) {
                    data[0] = direction == to_dhs ? 4 : 2;
                    out.clear();
                    Message m(data);
                    m.direction = direction;
                    ASSERT_EQ(ztdecode::decode(d.session(), m, out), Outcome::decoded);
                    // A super message inside a super message does not reach the label.
                    ASSERT_TRUE(out.view().starts_with("\t- [opt ")) << out.view();
                    ASSERT_NE(out.view().find(formatted(" adr {-:x}] "_cf, sub_device & 7)),
                              std::string_view::npos);
                }
                d.error.clear();
            }
        }
    }
}

TEST(Modules, RememberedTypeChoosesTheDecoderOfCommands) {
    struct Remembered {
        unsigned type;
        std::string_view text;  // of "02 00 01 01"
    };
    for (const auto& [type, text] : {Remembered{0, "[opt V24 adr 0] cmd ???"},
                                     {1, "[opt S0 adr 0] ??"},
                                     {2, "[opt mac/pc adr 0] ??"},
                                     {3, "[opt aom adr 0] eak ??"},
                                     {4, "[opt eak adr 0] eak ??"},
                                     {5, "[opt Z adr 0] ?? <01>"},
                                     {6, "[opt V24 synchrone adr 0] subdev command"},
                                     {7, "[opt x21 adr 0] subdev command"},
                                     {8, "[opt aom set-13 adr 0] subdev command"},
                                     {9, "[opt key system interne 7301 adr 0] production teststart"},
                                     {10, "[opt key system externe 7302 adr 0] production teststart"},
                                     {11, "[opt key system 7303 adr 0] production teststart"},
                                     {12, "[opt key system 7304 adr 0] production teststart"},
                                     {13, "[opt key system 7305 adr 0] production teststart"},
                                     {14, "[opt ??? adr 0] subdev command"},
                                     {31, "[opt ??? adr 0] subdev command"}}) {
        TestSession d;
        d.to_dhs(formatted("04 {-:02x} 00"_cf, type << 3));
        EXPECT_EQ(d.from_dhs("02 00 01 01"), "\t- " + std::string(text));
    }
}

}  // namespace
}  // namespace ztdecode::testing
