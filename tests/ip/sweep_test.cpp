#include "ip/rows.hpp"

// Whatever comes in: decoding ends, stays inside the bytes and starts with the name of the message.

namespace ztdecode::testing {
namespace {

class Sweep {
  public:
    // The text of a message whose record ends with its last byte.
    std::string_view decode(const std::vector<std::uint8_t>& data, Decoder decoder) {
        Message m(data);
        out_.clear();
        {
            Decoding decoding(d_.session(), m, out_);
            const Decoding::Piece whole(decoding);
            decoder(decoding);
        }
        EXPECT_EQ(out_.view().find('\0'), std::string_view::npos);
        return out_.view();
    }

  private:
    TestSession d_;
    Text out_;
};

const std::vector<std::size_t>& lengths() {
    static const std::vector<std::size_t> all = [] {
        std::vector<std::size_t> result;
        for (std::size_t length = 0; length <= 40; ++length) result.push_back(length);
        result.push_back(255);
        return result;
    }();
    return all;
}

struct List {
    Decoder decoder;
    std::string head_hex;
    std::string head;
    std::string last_hex;  // an item that follows the one that is swept, and its text
    std::string last;
};

const std::vector<List>& lists() {
    static const std::vector<List> all = {
        {ip::to_system, "13 02", "param response(s):\n\t... ", "0a 00", "\n\t... mac address"},
        {ip::from_system, "13 00", "reset, \n\t... ", "01 00", "\n\t... cause: BAD SECURITY MODE"},
        {ip::from_system, "13 01 00", "start RTP: TSC input, \n\t... ", "09 00", "\n\t... reserved"},
        {ip::from_system, "13 02", "stop RTP, \n\t... ", "09 00", "\n\t... reserved"},
        {ip::from_system, "13 03", "redirect: \n\t... ", "01 02 00 07", "\n\t... remote UDP port=7"},
        {ip::from_system, "13 07", "start listen RTP: \n\t... ", "02 02 00 07",
         "\n\t... remote UDP portOut=7"},
        {ip::from_system, "13 0a", "set params: ", "1f 00", ", ssh password"},
        {ip::from_system, "13 0c", "pause RTP, \n\t... ", "09 00", "\n\t... reserved"},
        {ip::from_system, "13 0d", "restart RTP, \n\t... ", "09 00", "\n\t... reserved"},
        {ip::from_system, "13 0e", "start record RTP, \n\t... ", "00 01 03", "\n\t... recorder index=3"},
        {ip::from_system, "13 14", "set application parameters,\n\t... ", "01 01 00", "\n\t...  enable: no"},
    };
    return all;
}

TEST(IpSweep, EveryItemOfEveryLengthIsSteppedOver) {
    Sweep sweep;
    for (const List& list : lists()) {
        for (std::size_t id = 0; id < 256; ++id) {
            for (const std::size_t length : lengths()) {
                std::vector<std::uint8_t> data = bytes(list.head_hex);
                data.push_back(static_cast<std::uint8_t>(id));
                data.push_back(static_cast<std::uint8_t>(length));
                data.insert(data.end(), length, static_cast<std::uint8_t>(id + length));
                const auto last = bytes(list.last_hex);
                data.insert(data.end(), last.begin(), last.end());
                const std::string_view text = sweep.decode(data, list.decoder);
                EXPECT_TRUE(text.starts_with(list.head)) << list.head_hex << ' ' << id << ' ' << length;
                EXPECT_TRUE(text.ends_with(list.last)) << list.head_hex << ' ' << id << ' ' << length;
            }
        }
    }
}

TEST(IpSweep, EveryItemThatIsNotWholeIsTheLast) {
    Sweep sweep;
    for (const List& list : lists()) {
        for (std::size_t id = 0; id < 256; ++id) {
            for (const std::size_t length : lengths()) {
                std::vector<std::uint8_t> data = bytes(list.head_hex);
                data.push_back(static_cast<std::uint8_t>(id));
                data.push_back(static_cast<std::uint8_t>(length));
                data.insert(data.end(), length / 2, 0x41);
                EXPECT_TRUE(sweep.decode(data, list.decoder).starts_with(list.head))
                    << list.head_hex << ' ' << id;
            }
        }
    }
}

TEST(IpSweep, EveryTicketItemOfEveryLength) {
    Sweep sweep;
    for (std::size_t tag = 0; tag < 256; ++tag) {
        for (const std::size_t length :
             {0U, 1U, 2U, 3U, 4U, 5U, 8U, 9U, 40U, 255U, 256U, 257U, 5000U, 65535U}) {
            std::vector<std::uint8_t> data = {0x13, 3, static_cast<std::uint8_t>(tag),
                                              static_cast<std::uint8_t>(length >> 8),
                                              static_cast<std::uint8_t>(length)};
            EXPECT_TRUE(sweep.decode(data, ip::to_system).starts_with("Ticket QOS:\n\t... "))
                << tag << ' ' << length;
            if (length > 257) continue;  // tables of these would be cut
            data.insert(data.end(), length, 0x41);
            const auto last = bytes("10 00 01 01");
            data.insert(data.end(), last.begin(), last.end());
            EXPECT_TRUE(sweep.decode(data, ip::to_system).ends_with("\n\t... vad               0x01"))
                << tag << ' ' << length;
        }
    }
}

TEST(IpSweep, EveryOpcodeOfEveryLengthPrintsSomething) {
    Sweep sweep;
    for (const Decoder decoder : {ip::to_system, ip::from_system}) {
        for (std::size_t opcode = 0; opcode < 256; ++opcode) {
            for (std::size_t fill = 0; fill < 256; fill += 5) {
                for (const std::size_t length : lengths()) {
                    if (length < 2) continue;
                    std::vector<std::uint8_t> data(length, static_cast<std::uint8_t>(fill));
                    data[0] = 0x13;
                    data[1] = static_cast<std::uint8_t>(opcode);
                    EXPECT_FALSE(sweep.decode(data, decoder).empty())
                        << opcode << ' ' << fill << ' ' << length;
                }
            }
        }
    }
}

TEST(IpSweep, EmptyMessages) {
    Sweep sweep;
    EXPECT_EQ(sweep.decode({}, ip::to_system), "init, set-00 alpha");
    EXPECT_EQ(sweep.decode({}, ip::from_system), "reset, \n\t... ");
}

// A message that is cut shows the same text up to the item in which it is cut: its separator is the last that
// counts.
void expect_truncations(const std::string& hex, const std::string& separator, std::size_t first,
                        Decoder decoder) {
    Sweep sweep;
    const auto whole = bytes(hex);
    const std::string text(sweep.decode(whole, decoder));
    std::size_t items = 0;
    for (std::size_t length = first; length <= whole.size(); ++length) {
        const std::vector<std::uint8_t> cut(whole.begin(),
                                            whole.begin() + static_cast<std::ptrdiff_t>(length));
        const std::string_view now = sweep.decode(cut, decoder);
        const std::size_t last = now.rfind(separator);
        ASSERT_NE(last, std::string_view::npos) << length;
        EXPECT_EQ(now.substr(0, last), text.substr(0, last)) << length;
        std::size_t count = 0;
        for (std::size_t at = 0; (at = now.find(separator, at)) != std::string_view::npos; ++at) ++count;
        EXPECT_GE(count, items) << length;
        items = count;
    }
}

TEST(IpSweep, EveryTruncation) {
    expect_truncations(
        "13 02 00 02 01 17 03 14 0a 00 00 05 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01 04 01 40 06 04 "
        "0a 00 00 09 "
        "0a 06 00 80 9f 01 02 03 0d 03 fe dc ba",
        "\n\t... ", 2, ip::to_system);
    expect_truncations(
        "13 03 01 00 04 5f 3a 11 02 06 00 02 02 01 08 00 04 0a 00 00 05 0a 00 04 34 37 31 31 1b 00 06 00 01 "
        "00 02 00 03 "
        "20 00 08 00 00 00 10 00 00 00 20 2b 00 00 3e 00 02 01 02",
        "\n\t... ", 2, ip::to_system);
    expect_truncations(
        "13 01 00 00 02 75 30 01 04 0a 00 00 05 02 02 7d 00 03 01 2e 04 01 11 0e 04 34 37 31 31 14 01 01 18 "
        "01 00 31 01 10 "
        "32 03 01 02 03 50 01 41",
        "\n\t... ", 4, ip::from_system);
    expect_truncations("13 00 00 01 03 02 04 61 63 6d 65 03 02 66 72 04 01 01 05 03 73 69 70 06 00",
                       "\n\t... ", 2, ip::from_system);
    expect_truncations("13 0e 00 01 01 01 04 0a 00 00 07 04 01 00 10 01 10 11 01 01 08 02 00 11 30 02 41 42",
                       "\n\t... ", 3, ip::from_system);
    expect_truncations("13 14 00 01 2a 01 01 01 02 04 68 74 74 70 07 00", "\n\t... ", 3, ip::from_system);
}

}  // namespace
}  // namespace ztdecode::testing
