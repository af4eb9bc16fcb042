#include "decode/routes/hub.hpp"

#include <gtest/gtest.h>
#include <pthread.h>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

struct Row {
    std::string_view hex;
    std::string_view text;
};

void expect_rows(Decoder decoder, std::uint32_t direction, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(decoder, row.hex, direction), row.text) << row.hex;
        EXPECT_EQ(d.status, Status::recognised) << row.hex;
    }
}

void to_hub(const std::vector<Row>& rows) { expect_rows(hub::from_system, from_dhs, rows); }
void from_hub(const std::vector<Row>& rows) { expect_rows(hub::to_system, to_dhs, rows); }

void decode_with(Decoder decoder, TestSession& session, const Message& m, Text& out) {
    Decoding d(session.session(), m, out);
    decoder(d);
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) result += text;
    return result;
}

TEST(HubFromSystem, NoContent) {
    to_hub({{"14", "ERR: no content"}, {"94", "ERR: no content"}});
    const auto record = bytes("14 05");
    Message m(record.data(), 1, 2);
    TestSession d;
    Text out;
    decode_with(hub::from_system, d, m, out);
    EXPECT_EQ(out.view(), "ERR: no content");
}

TEST(HubFromSystem, DownloadRequest) {
    to_hub({{"14 01 aa", "download request, binary identifier: aa"},
            {"14 01 0a 1b 2c", "download request, binary identifier: 0a version: 1B.2C"},
            {"14 01 fe 01 02 10 0f",
             "download request, binary identifier: fe version: 01.02 begin address: 100F"},
            {"14 01", "ERR: bad length, download request"},
            {"14 01 aa 01", "ERR: bad length, download request"},
            {"14 01 aa 01 02 10", "ERR: bad length, download request"},
            {"14 01 aa 01 02 10 00 00", "ERR: bad length, download request"}});
}

TEST(HubFromSystem, Download) {
    to_hub({{"14 04 00 0a", "download data, packet number: 000A, seq: 0"},
            {"14 04 80 01 55", "download data, packet number: 0001, seq: 1"},
            {"14 04 ff fe", "download data, packet number: 7FFE, seq: 1"},
            {"14 04", "download data, packet number: 0000, seq: 0"},
            {"14 05", "download end"},
            {"14 07", "download checksum"},
            {"14 07 01 02", "download checksum"}});
}

TEST(HubFromSystem, SetStatus) {
    to_hub({{"14 13 01 00", "set 1 status: idle"},
            {"14 13 02 01", "set 2 status: active"},
            {"14 13 ff 02", "set 255 status: ???"},
            {"14 13", "ERR: bad length"},
            {"14 13 01", "ERR: bad length"},
            {"14 13 01 00 00", "ERR: bad length"}});
}

TEST(HubFromSystem, SetChannel) {
    to_hub({{"14 14 01 02", "set 1 set channel B2 (mode 1)"},
            {"14 15 03 01", "set 3 set channel B1 (mode 2)"},
            {"14 14 ff fe", "set 255 set channel B254 (mode 1)"},
            {"14 14 01", "ERR: bad length"},
            {"14 14 01 02 03", "ERR: bad length"},
            {"14 15", "ERR: bad length"},
            {"14 15 01 02 03", "ERR: bad length"}});
}

TEST(HubFromSystem, Inquiries) {
    to_hub({{"14 16 00", "anv number request for ROM soft"},
            {"14 16 01", "anv number request for RAM soft"},
            {"14 16 02", "anv number request for ??? soft"},
            {"14 16 ff", "anv number request for ??? soft"},
            {"14 16", "anv number request for ROM soft"},
            {"14 18", "set repeater mode"},
            {"14 19", "maintenance timer"},
            {"14 20", "version inquiry"},
            {"14 21", "status inquiry"},
            {"14 30", "read peripheral"},
            {"14 31", "write peripheral"},
            {"14 31 01 02", "write peripheral"}});
}

TEST(HubFromSystem, Debug) {
    to_hub({{"14 32", "ERR: no content"},
            {"14 32 01", "debug: read synchros"},
            {"14 32 02 01", "debug: set led ON"},
            {"14 32 02 00", "debug: set led OFF"},
            {"14 32 02 02", "debug: set led OFF"},
            {"14 32 02", "debug: set led OFF"},
            {"14 32 03 01", "debug: output test clock ON"},
            {"14 32 03 00", "debug: output test clock OFF"},
            {"14 32 03 ff", "debug: output test clock OFF"},
            {"14 32 04 19", "debug: tempo alim on= 200 ms"},
            {"14 32 04 ff", "debug: tempo alim on= 2040 ms"},
            {"14 32 04", "debug: ERR bad length"},
            {"14 32 04 19 00", "debug: ERR bad length"},
            {"14 32 05", "debug: read P1 "},
            {"14 32 06 01", "debug: write P1 "},
            {"14 32 07", "debug: read P3 "},
            {"14 32 08", "debug: write P3 "},
            {"14 32 09 0a", "debug: tempo wait synchro= 80 ms"},
            {"14 32 09", "debug: ERR bad length"},
            {"14 32 09 0a 00", "debug: ERR bad length"},
            {"14 32 0a 03", "debug: tempo alim cooling= 300 ms"},
            {"14 32 0a ff", "debug: tempo alim cooling= 25500 ms"},
            {"14 32 0a", "debug: ERR bad length"},
            {"14 32 0a 03 00", "debug: ERR bad length"},
            {"14 32 00", "debug: unknown"},
            {"14 32 0b", "debug: unknown"},
            {"14 32 81", "debug: unknown"},
            {"14 32 ff 01", "debug: unknown"}});
}

TEST(HubFromSystem, EveryOtherCodeIsUnknown) {
    const std::vector<std::size_t> known = {0x01, 0x04, 0x05, 0x07, 0x10, 0x11, 0x12, 0x13, 0x14,
                                            0x15, 0x16, 0x18, 0x19, 0x20, 0x21, 0x30, 0x31, 0x32};
    for (std::size_t code = 0; code < 256; ++code) {
        if (std::find(known.begin(), known.end(), code) != known.end()) continue;
        to_hub({{formatted("14 {-:02x} 01 02"_cf, code), "unknown message"}});
    }
}

TEST(HubToSystem, Download) {
    from_hub({{"14 02 80 01 08", "download ack, packet number: 0001, status: OK  seq: 1"},
              {"14 02 00 ab 08", "download ack, packet number: 00AB, status: OK  seq: 0"},
              {"14 02 ff fe 09", "download ack, packet number: 7FFE, status: BAD  seq: 1"},
              {"14 02 01 02", "download ack, packet number: 0102, status: BAD  seq: 0"},
              {"14 06", "download end ack"},
              {"14 08 01", "download checksum ack  status: OK"},
              {"14 08 00", "download checksum ack  status: BAD"},
              {"14 08 02", "download checksum ack  status: BAD"},
              {"14 08", "download checksum ack  status: BAD"}});
}

TEST(HubToSystem, SetsAndNumbers) {
    from_hub({{"14 13 01", "set 1 down"},
              {"14 13 ff", "set 255 down"},
              {"14 13", "set 0 down"},
              {"14 17 00 33 2e 31 00", "anv number response for ROM soft: 3.1"},
              {"14 17 01 33 2e 31", "anv number response for RAM soft: 3.1"},
              {"14 17 ff 41 00 42", "anv number response for RAM soft: A"},
              {"14 17 00", "anv number response for ROM soft: "},
              {"14 17", "anv number response for ROM soft: "},
              {"14 1f", "unsolicited message"},
              {"14 30 01", "peripheral content"}});
    const auto record = bytes("14 17 00 41 42 43 00 44");
    Message m(record.data(), 4, record.size());
    TestSession d;
    Text out;
    decode_with(hub::to_system, d, m, out);
    EXPECT_EQ(out.view(), "anv number response for ROM soft: ABC");
}

TEST(HubToSystem, Version) {
    from_hub({{"14 20 01 0a ff", "version response ROM: 01, RAM: 0a.ff"},
              {"14 20 01 0a", "ERR: bad length in version response"},
              {"14 20 01 0a ff 00", "ERR: bad length in version response"},
              {"14 20", "ERR: bad length in version response"}});
}

TEST(HubToSystem, Status) {
    from_hub({{"14 21 00 01 02", "status response, set1 IDLE, set2 OK, set3 ALIM"},
              {"14 21 03 04 05", "status response, set1 SYNC WAIT, set2 RESET WAIT, set3 BAD"},
              {"14 21 06 07 08", "status response, set1 ALIM REST ON, set2 ALIM REST OFF, set3 ???"},
              {"14 21 09 ff 81", "status response, set1 ???, set2 ???, set3 ???"},
              {"14 21 00 01", "ERR: bad length in status response"},
              {"14 21 00 01 02 03", "ERR: bad length in status response"},
              {"14 21", "ERR: bad length in status response"}});
}

TEST(HubToSystem, Debug) {
    from_hub({{"14 32 05", "debug P1 value"},
              {"14 32 07 01", "debug P3 value"},
              {"14 32 01 00", "debug synchros response: all OK"},
              {"14 32 01", "debug synchros response: all OK"},
              {"14 32 01 01", "debug synchros response: OK except dhs "},
              {"14 32 01 02", "debug synchros response: OK except set1 "},
              {"14 32 01 04", "debug synchros response: OK except set2 "},
              {"14 32 01 08", "debug synchros response: OK except set3 "},
              {"14 32 01 0b", "debug synchros response: OK except dhs set1 set3 "},
              {"14 32 01 ff", "debug synchros response: OK except dhs set1 set2 set3 "},
              {"14 32 01 f0", "debug synchros response: OK except "},
              {"14 32 00", "debug unknown"},
              {"14 32 02", "debug unknown"},
              {"14 32 06", "debug unknown"},
              {"14 32 81", "debug unknown"},
              {"14 32", "debug unknown"}});
}

TEST(HubToSystem, AMessageOfOneByteIsNamedByTheByteBehindIt) {
    from_hub({{"14", "unknown message"}});
    const auto record = bytes("14 32 05");
    Message m(record.data(), 1, record.size());
    TestSession d;
    Text out;
    decode_with(hub::to_system, d, m, out);
    EXPECT_EQ(out.view(), "ERR: no content");
    EXPECT_EQ(d.error, "");
}

TEST(HubToSystem, ASetMessageThatIsNotThere) {
    const auto record = bytes("14 10 13 06");
    Message m(record.data(), 1, record.size());
    TestSession d;
    Text out;
    decode_with(hub::to_system, d, m, out);
    EXPECT_EQ(out.view(), "from set 1");
    EXPECT_EQ(d.error, "decalage incorrect: demandé: 2, disponible: 1\n");
}

TEST(HubToSystem, Bit7OfTheCodeIsIgnored) {
    from_hub({{"14 93 01", "set 1 down"},
              {"14 9f", "unsolicited message"},
              {"14 91 13 01 01", "from set 2\tIP - incident: lanpbx file corrupted"},
              {"14 b2 05", "debug P1 value"}});
    to_hub({{"14 93 01 00", "unknown message"}, {"14 90 13 06", "unknown message"}});
}

TEST(HubToSystem, EveryOtherCodeIsUnknown) {
    const std::vector<std::size_t> known = {0x02, 0x06, 0x08, 0x10, 0x11, 0x12, 0x13,
                                            0x17, 0x1F, 0x20, 0x21, 0x30, 0x32};
    for (std::size_t code = 0; code < 256; ++code) {
        if (std::find(known.begin(), known.end(), code & 0x7F) != known.end()) continue;
        from_hub({{formatted("14 {-:02x} 01 02"_cf, code), "unknown message"}});
    }
}

TEST(HubCarries, SetMessages) {
    to_hub({{"14 10 13 06", " to set 1\tIP - stop tone"},
            {"14 11 13 0b 05", " to set 2\tIP - send digit key 5 in RTP"},
            {"14 12 12 21", " to set 3\t- DECT CPU to IBS: FD_DL_RELEASE_REQ"},
            {"14 10", " to set 1"},
            {"14 11", " to set 2"},
            {"14 12", " to set 3"}});
    from_hub({{"14 10 13 01 00", "from set 1\tIP - incident: dhcp lease renewal failed"},
              {"14 11 12 13 07 09", "from set 2\t- maintenance: harware anomaly, lien: 07 name 09"},
              {"14 12 13 00 02 01", "from set 3\tIP - init, set-02 reserved"},
              {"14 10", "from set 1"},
              {"14 92", "from set 3"}});
}

TEST(HubCarries, OnItsRoute) {
    EXPECT_EQ(TestSession().from_dhs("14 10 13 06"), "\tHUB -  to set 1\tIP - stop tone");
    EXPECT_EQ(TestSession().to_dhs("94 10 13 01 00"),
              "\tHUB - from set 1\tIP - incident: dhcp lease renewal failed");
    EXPECT_EQ(TestSession().from_dhs("14"), "\tHUB - ERR: no content");
}

TEST(HubCarries, TheTextEndsAtItsZeroByte) {
    EXPECT_EQ(TestSession().to_dhs("0b 06 14 10 13 ff 61 00 05 14 11 13 01 00"),
              "\t- super message:\n\t> zt 06 00 14 10 13 ff 61 00\n\tHUB - from set 1\tIP - debug\na\n"
              "\t> zt 05 00 14 11 13 01 00\n\tHUB - from set 2\tIP - incident: dhcp lease renewal failed\n");
}

TEST(HubCarries, SuperMessages) {
    EXPECT_EQ(TestSession().from_dhs("14 10 0b 02 13 06 02 13 08"),
              "\tHUB -  to set 1\t- super message:\n\t> zt 02 00 13 06\n\tIP - stop tone\n"
              "\t> zt 02 00 13 08\n\tIP - stop listen RTP\n");
    EXPECT_EQ(TestSession().to_dhs("14 12 17 03 00 13 01 01"),
              "\tHUB - from set 3\t- super message, type 2:\n\t> zt 03 00 13 01 01\n"
              "\tIP - incident: lanpbx file corrupted");
    EXPECT_EQ(TestSession().from_dhs("14 10 0b 05 13 06"),
              "\tHUB -  to set 1\t- super message:\n\t- bad residual length!!!");
}

TEST(HubCarries, BytesBehindTheSetMessageAreThoseOfTheHubMessage) {
    // Six bytes moved to the front by two: what stood in bytes 6 and 7 still stands there, the record's next
    // bytes too.
    const auto record = bytes("14 10 13 02 01 04 aa bb cc 00");
    Message m(record.data(), 8, record.size());
    m.direction = to_dhs;
    TestSession d;
    Text out;
    decode_with(hub::to_system, d, m, out);
    EXPECT_EQ(out.view(), "from set 1\tIP - param response(s):\n\t... tscip version aa bb aa bb");
    EXPECT_EQ(TestSession().to_dhs("14 10 14 11 13 02 01 06 aa bb"),
              "\tHUB - from set 1\tHUB - from set 2\tIP - param response(s):\n\t... tscip version aa bb aa "
              "bb aa bb");
}

TEST(HubCarries, Colours) {
    TestSession d;
    d.session().switches.color = true;
    EXPECT_EQ(
        d.to_dhs("14 10 13 01 00"),
        "\033[0;31m\tHUB - from set 1\033[0;31m\tIP - incident: dhcp lease renewal failed\033[0m\033[0m");
    EXPECT_EQ(d.from_dhs("14 11 14 12 13 06"),
              "\033[0;32m\tHUB -  to set 2\033[0;32m\tHUB -  to set 3\033[0;32m\tIP - stop "
              "tone\033[0m\033[0m\033[0m");
    EXPECT_EQ(d.from_dhs("14 10"), "\033[0;32m\tHUB -  to set 1\033[0m");
}

TEST(HubCarries, Traces) {
    TestSession d;
    d.session().switches.debug = true;
    EXPECT_EQ(d.to_dhs("14 10 13 01 00"), "\tHUB - from set 1\tIP - incident: dhcp lease renewal failed");
    EXPECT_EQ(d.output,
              "entree decode, lng=0x05  sens= to DHS\nentree decode1msg, lng=0x05  sens= to DHS\n"
              "entree decode, lng=0x03  sens= to DHS\nentree decode1msg, lng=0x03  sens= to DHS\n");
}

TEST(HubCarries, TheRouteOfTheHubMessageStays) {
    TestSession d;
    EXPECT_EQ(d.with(hub::from_system, "14 10 13 06"), " to set 1\tIP - stop tone");
    EXPECT_EQ(d.route, route_digital);  // as it came in: only the dispatcher writes it
    EXPECT_EQ(d.status, Status::recognised);
}

TEST(HubCarries, AHubMessageInAHubMessageLeavesTheOuterTextWhole) {
    EXPECT_EQ(TestSession().from_dhs("14 10 14 13 01 01"), "\tHUB -  to set 1\tHUB - set 1 status: active");
    EXPECT_EQ(TestSession().to_dhs("14 10 14 11 14 12 13 01 01"),
              "\tHUB - from set 1\tHUB - from set 2\tHUB - from set 3\tIP - incident: lanpbx file corrupted");
    EXPECT_EQ(TestSession().from_dhs("14 10 14"), "\tHUB -  to set 1\tHUB - ERR: no content");
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZTDECODE_TEST_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZTDECODE_TEST_SANITIZED
#endif
#if defined(ZTDECODE_TEST_SANITIZED) || !defined(__OPTIMIZE__)
constexpr std::size_t stack_size = 8 << 20;
#else
constexpr std::size_t stack_size = 1 << 20;
#endif

// Decodes on a thread with a small stack, as a host may have one.
std::string on_a_small_stack(const std::vector<std::uint8_t>& data, std::uint32_t direction) {
    struct Job {
        const std::vector<std::uint8_t>& data;
        std::uint32_t direction;
        std::string text;
    } job{data, direction, {}};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    EXPECT_EQ(pthread_attr_setstacksize(&attributes, stack_size), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        auto& j = *static_cast<Job*>(argument);
        Message m(j.data);
        m.direction = j.direction;
        const auto session = std::make_unique<Session>();
        Text out;
        decode(*session, m, out);
        j.text = out.view();
        return nullptr;
    };
    EXPECT_EQ(pthread_create(&thread, &attributes, run, &job), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return job.text;
}

TEST(HubNests, AsDeepAsAMessageIsLong) {
    const std::string outer = repeated("14 11 ", 2559);
    EXPECT_EQ(on_a_small_stack(bytes(outer + "13 06"), from_dhs),
              repeated("\tHUB -  to set 2", 2559) + "\tIP - stop tone");
    EXPECT_EQ(on_a_small_stack(bytes(outer + "14 9f"), to_dhs),
              repeated("\tHUB - from set 2", 2559) + "\tHUB - unsolicited message");
    EXPECT_EQ(on_a_small_stack(bytes(outer + "14 10"), from_dhs),
              repeated("\tHUB -  to set 2", 2559) + "\tHUB -  to set 1");
}

TEST(HubNests, WithATicketThatClaimsMoreThanThereIs) {
    const std::string head = "\tIP - Ticket QOS:\n\t... ???               0x";
    EXPECT_EQ(
        on_a_small_stack(bytes(repeated("14 10 ", 2557) + "13 03 00 ff ff"), to_dhs).size(),
        2557 * std::string_view("\tHUB - from set 1").size() + std::string_view("\tIP - ").size() + 29999);
    EXPECT_TRUE(on_a_small_stack(bytes(repeated("14 10 ", 2557) + "13 03 00 ff ff"), to_dhs)
                    .starts_with(repeated("\tHUB - from set 1", 2557) + head));
}

TEST(HubNests, ThroughSuperMessages) {
    // From the inside out: a super message of one part around each hub message.
    std::vector<std::uint8_t> data = bytes("13 06");
    std::vector<std::string> pieces = {"\tIP - stop tone"};
    while (data.size() + 5 <= message_capacity) {
        std::string line = formatted("\t> zt {-:02x} 00 "_cf, data.size());
        for (const std::uint8_t byte : data) line += formatted("{-:02x} "_cf, byte);
        line.back() = '\n';
        pieces.push_back("\tHUB -  to set 3\t- super message, type 2:\n" + line);
        const auto head =
            bytes(formatted("14 12 17 {-:02x} {-:02x}"_cf, data.size() & 0xFF, data.size() >> 8));
        data.insert(data.begin(), head.begin(), head.end());
    }
    std::string text;
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) text += *piece;
    EXPECT_EQ(on_a_small_stack(data, from_dhs), text);
}

TEST(HubSweep, EveryCodeAndLengthEnds) {
    for (const std::uint32_t direction : {from_dhs, to_dhs}) {
        for (std::size_t code = 0; code < 256; ++code) {
            for (std::size_t fill = 0; fill < 256; fill += 15) {
                for (std::size_t length = 1; length <= 40; ++length) {
                    std::vector<std::uint8_t> data(length, static_cast<std::uint8_t>(fill));
                    data[0] = 0x14;
                    if (length > 1) data[1] = static_cast<std::uint8_t>(code);
                    Message m(data);
                    m.direction = direction;
                    TestSession d;
                    Text out;
                    EXPECT_EQ(decode(d.session(), m, out), Outcome::decoded);
                    EXPECT_TRUE(out.view().starts_with("\tHUB - ")) << code << ' ' << length;
                }
            }
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
