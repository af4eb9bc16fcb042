#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/support.hpp"
#include "ztdecode.h"

// The object protocol's functions as a host calls them.

namespace ztdecode::testing {
namespace {

using namespace std::string_literals;

std::string buffer() { return app_buf != nullptr ? app_buf : "(null)"; }

std::string pbx(const char* hex) {
    const auto data = bytes(hex);
    return analyse_cmd_pbx(data.data(), static_cast<int>(data.size()));
}

std::string term(const char* hex) {
    const auto data = bytes(hex);
    return analyse_cmd_term(data.data(), static_cast<int>(data.size()));
}

// A block of just its size: a sanitizer sees a read behind it.
std::string frame(const char* hex, int way) {
    const auto data = bytes(hex);
    EXPECT_EQ(analyse_cmd(data.data(), static_cast<int>(data.size()), way), 1);
    return buffer();
}

MessageRecord record(const char* hex, std::uint32_t direction) {
    MessageRecord r = {};
    const auto data = bytes(hex);
    r.length = static_cast<std::uint32_t>(data.size());
    std::memcpy(r.data, data.data(), data.size());
    r.direction = direction;
    return r;
}

class ApplicationBuffer : public ::testing::Test {
  protected:
    ApplicationBuffer() {
        vFreeApplicationBuffer();
        // The end of a series, whether one is open or not.
        const auto last = bytes("02 00 0c 00");
        if (boCatchSegment(last.data()) == 0) boCatchSegment(last.data());
        vFreeReconstructedCmd();
    }
    ~ApplicationBuffer() override {
        vFreeApplicationBuffer();
        vFreeReconstructedCmd();
        vFreeLastReconstructedCmd();
    }
};

TEST_F(ApplicationBuffer, BeginsWithTheFirstOutput) {
    EXPECT_EQ(app_buf, nullptr);
    EXPECT_EQ(app_buf_size, 0U);
    EXPECT_EQ(app_idx, 0U);
    char* first = p("one %d", 1);
    EXPECT_EQ(first, app_buf);
    EXPECT_EQ(app_buf_size, 200000U);
    EXPECT_EQ(app_idx, 5U);
    char* second = p("%s", ", two");
    EXPECT_EQ(second, app_buf + 5);
    EXPECT_STREQ(app_buf, "one 1, two");
    EXPECT_EQ(app_idx, 10U);
    vFreeApplicationBuffer();
    EXPECT_EQ(app_buf, nullptr);
    EXPECT_EQ(app_buf_size, 0U);
    EXPECT_EQ(app_idx, 0U);
}

TEST_F(ApplicationBuffer, EmptyOutput) {
    EXPECT_EQ(p("%s", ""), app_buf);
    EXPECT_STREQ(app_buf, "");
    EXPECT_EQ(app_buf_size, 200000U);
}

TEST_F(ApplicationBuffer, LongItems) {
    const struct {
        int length;
        std::size_t kept;
        const char* complaint;
    } rows[] = {
        {9999, 9999, ""},
        {10000, 9999, ""},
        {10001, 9999, "\nLine too long, truncated\n"},
        {150000, 9999, "\nLine too long, truncated\n"},
    };
    for (const auto& row : rows) {
        vFreeApplicationBuffer();
        const std::string item(static_cast<std::size_t>(row.length), 'x');
        ::testing::internal::CaptureStderr();
        p("%s", item.c_str());
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), row.complaint) << row.length;
        EXPECT_EQ(std::strlen(app_buf), row.kept) << row.length;
        EXPECT_EQ(app_idx, static_cast<std::uint32_t>(row.length));
        p("behind");
        EXPECT_STREQ(app_buf + row.length, "behind");
        for (std::size_t k = row.kept; k < item.size(); ++k) ASSERT_EQ(app_buf[k], '\0') << k;
    }
}

TEST_F(ApplicationBuffer, CutPartOfAnItemIsZeroOverAnOlderText) {
    for (int i = 0; i < 3; ++i) p("%s", std::string(9000, 'o').c_str());
    app_idx = 0;
    ::testing::internal::CaptureStderr();
    p("%s", std::string(20000, 'n').c_str());
    ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::strlen(app_buf), 9999U);
    for (std::size_t k = 9999; k <= 20000; ++k) ASSERT_EQ(app_buf[k], '\0') << k;
}

TEST_F(ApplicationBuffer, GrowsInSteps) {
    const std::string item(9000, 'x');
    for (int i = 0; i < 22; ++i) p("%s", item.c_str());
    EXPECT_EQ(app_idx, 198000U);
    EXPECT_EQ(app_buf_size, 200000U);
    p("%s", std::string(1999, 'x').c_str());
    EXPECT_EQ(app_buf_size, 200000U);
    p("%s", "x");  // the zero behind it needs room, too
    EXPECT_EQ(app_idx, 200000U);
    EXPECT_EQ(app_buf_size, 400000U);
    EXPECT_EQ(buffer(), std::string(200000, 'x'));
    app_idx = 0;
    p("short");
    EXPECT_STREQ(app_buf, "short");
    EXPECT_EQ(app_buf_size, 400000U);
}

TEST_F(ApplicationBuffer, OneStepForAnItemOfMore) {
    ::testing::internal::CaptureStderr();
    p("%300000d", 1);
    ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(app_idx, 300000U);
    EXPECT_EQ(app_buf_size, 200000U);
    p("behind");
    EXPECT_EQ(app_buf_size, 400000U);
    EXPECT_STREQ(app_buf + 300000, "behind");
}

TEST_F(ApplicationBuffer, PositionOfTheHosts) {
    app_idx = 1000000;
    p("far");
    EXPECT_EQ(app_buf_size, 1200000U);
    EXPECT_STREQ(app_buf + 1000000, "far");
    EXPECT_STREQ(app_buf, "");
}

TEST_F(ApplicationBuffer, MessagesBeginItAnew) {
    p("something before");
    EXPECT_EQ(pbx("16 02 84 00 07 37 03 41 42 43"),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          "
              "\t\"ABC\"\n}\n");
    EXPECT_EQ(app_idx, std::strlen(app_buf));
    EXPECT_EQ(term("16 04 07"), "\nNotify\tOFFHOOK\n{\n\tServer\t\tPresentation\n}\n");
    EXPECT_EQ(app_idx, std::strlen(app_buf));
    EXPECT_EQ(analyse_cmd_pbx(bytes("16 04").data(), 2), app_buf);
    EXPECT_EQ(buffer(), "\nInvalid_method 0x04 (PBX->TX)");
}

TEST_F(ApplicationBuffer, NoBytes) {
    EXPECT_STREQ(analyse_cmd_pbx(nullptr, 5), "\nCreate\tcontext\n{\n\tServer\t\t(reserved_error)\n}\n");
    EXPECT_STREQ(analyse_cmd_term(bytes("16 04").data(), -1), "\nInvalid_method 0x00 (TX->PBX)");
}

TEST_F(ApplicationBuffer, RoutesLeaveTheirText) {
    const MessageRecord cs = record("15 04 06", 1);
    char* text = decode(cs);
    EXPECT_STREQ(text, "\tRYM - call server\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n");
    std::free(text);
    EXPECT_EQ(buffer(), "\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n");
    EXPECT_EQ(app_idx, std::strlen(app_buf));

    std::free(const_cast<char*>(line("03 16 00 08", 0)));  // NOLINT: a decoded line is the caller's
    EXPECT_EQ(buffer(), "\nCreate\tAOMV\n{\n\tServer\t\tPresentation\n}\n");
    // The last one of a super message.
    text = decode(record("0b 03 15 04 06 03 16 04 07", 1));
    std::free(text);
    EXPECT_EQ(buffer(), "\nNotify\tOFFHOOK\n{\n\tServer\t\tPresentation\n}\n");
    // Other routes leave it alone.
    text = decode(record("18 68 69", 1));
    std::free(text);
    EXPECT_EQ(buffer(), "\nNotify\tOFFHOOK\n{\n\tServer\t\tPresentation\n}\n");
}

TEST_F(ApplicationBuffer, Frames) {
    EXPECT_EQ(frame("07 00 15 04 16 02 0c 2d 2c", 'R'), "\nInvalid_method 0x00 (TX->PBX)");
    EXPECT_EQ(frame("07 07 16 01", 'S'), "\nInvalid_method 0x07 (PBX->TX)");
    const std::string before = "\nInvalid_method 0x07 (PBX->TX)";
    const std::string osi =
        "\n//######## ZT TERMINAL->PBX   OP:0F   LG:00 04   VALUE: 05 11 21 \nTerm_ZT_message\n{"
        "\n\t- osi: pclink1 status tx_prepare, rx_rcv\n\n}\n";
    EXPECT_EQ(frame("04 00 0f 05 11 21", 'R'), before + osi);
    EXPECT_EQ(app_idx, std::strlen(app_buf));
    EXPECT_EQ(frame("04 00 0f 05 11 21", 'R'), before + osi + osi);
    EXPECT_EQ(frame("16 04 15 04 01", 'R'),
              "\nNotify\tDEVICE_PRESENCE\n{\n\tServer\t\tPresentation\n\tvalue           USB"
              "\n\tstate           plugged\n}\n");
}

// Its lines in front of the messages are written, and then gone with the message that begins anew.
TEST_F(ApplicationBuffer, FrameThatCarriesAnObjectProtocolMessage) {
    const std::string offhook = "\nNotify\tOFFHOOK\n{\n\tServer\t\t(reserved_error)\n}\n";
    const std::string onhook = "\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n";
    p("before");
    EXPECT_EQ(frame("03 00 96 04 07", 'R'), offhook + "\n\tRYM - presentation server" + offhook + "\n}\n");
    EXPECT_EQ(app_idx, std::strlen(app_buf));
    // The last of several is the one that stands in front.
    const std::string both = onhook + "\n\t- osi: cti status\n\tRYM - presentation server" + offhook +
                             "\tRYM - call server" + onhook + "\tDBG - A\n\n}\n";
    EXPECT_EQ(frame("02 00 0f 07 03 00 96 04 07 03 00 15 04 06 02 00 18 41", 'R'), both);
    EXPECT_EQ(app_idx, std::strlen(app_buf));
    // One without such a message is appended.
    EXPECT_EQ(frame("02 00 0f 07", 'R'), both +
                                             "\n//######## ZT TERMINAL->PBX   OP:0F   LG:00 02   VALUE: 07 "
                                             "\nTerm_ZT_message\n{\n\t- osi: cti status\n\n}\n");
    EXPECT_EQ(app_idx, std::strlen(app_buf));
}

TEST_F(ApplicationBuffer, FrameWithALongTextBehindAnObjectProtocolMessage) {
    std::vector<std::uint8_t> data = bytes("03 00 96 04 07");
    for (int i = 0; i < 2; ++i) {
        for (const std::uint8_t byte : bytes("ff 13 18")) data.push_back(byte);
        data.insert(data.end(), 5118, 'x');
    }
    ::testing::internal::CaptureStderr();
    analyse_cmd(data.data(), static_cast<int>(data.size()), 'R');
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "\nLine too long, truncated\n");
    const std::string offhook = "\nNotify\tOFFHOOK\n{\n\tServer\t\t(reserved_error)\n}\n";
    const std::string label = "\n\tRYM - presentation server";
    // 9999 characters of the item: newline, label, text, "\tDBG - " with 5118 characters and a newline, and
    // more
    const std::string item = label + offhook + "\tDBG - " + std::string(5118, 'x') + "\n\tDBG - ";
    EXPECT_EQ(buffer(), offhook + item + std::string(9999 - item.size(), 'x'));
    EXPECT_EQ(app_idx, offhook.size() + item.size() + 5118 + 1 + 3);
    EXPECT_STREQ(app_buf + app_idx - 3, "\n}\n");
}

// What is printed behind a zero byte of a value is in the buffer, where a C string does not show it.
TEST_F(ApplicationBuffer, ZeroBytesOfCharactersStayAndCount) {
    const std::string head =
        "\nSetProperty\ttextbox\n{\n\tServer\t\tCall\n\tObjectId\t0x0007\n\tlabel          \t";
    const std::string shown = head + "\"ERROR_UTF8_3CHAR\xEE";
    const std::string all = shown + "\0\0\"\t//\"ERROR_UTF8_3CHAR<Corvane >\"\n}\n"s;
    const auto whole = [] { return std::string(app_buf, app_idx); };

    EXPECT_EQ(pbx("15 02 84 00 07 37 01 ee"), shown);
    EXPECT_EQ(whole(), all);
    // In front of more properties.
    EXPECT_EQ(pbx("15 02 84 00 07 37 04 41 ee 00 80 26 01 05"), head + "\"A\xEE");
    EXPECT_EQ(whole(), head + "\"A\xEE\0\x80\"\t//\"A<Corvane >\"\n\tx              \t5\n}\n"s);
    EXPECT_EQ(term("15 04 02 ee 80"),
              "\nNotify\tKEY_PRESS\n{\n\tServer\t\tCall"
              "\n\tkeychar         \"ERROR_UTF8_3CHAR\xEE\x80");
    EXPECT_EQ(whole(),
              "\nNotify\tKEY_PRESS\n{\n\tServer\t\tCall\n\tkeychar         "
              "\"ERROR_UTF8_3CHAR\xEE\x80\0\"\t\"ERROR_UTF8_3CHAR<Corvane >\"\n}\n"s);

    // By the routes.
    MessageRecord r = record("15 02 84 00 07 37 01 ee", 0);
    char* text = decode(r);
    EXPECT_EQ(text, "\tRYM - call server" + shown);
    std::free(text);
    EXPECT_EQ(whole(), all);
    vFreeApplicationBuffer();
    EXPECT_EQ(dhs2cs(&r), "call server" + shown);
    EXPECT_EQ(whole(), all);
    const char* const by_line = line("08 15 02 84 00 07 37 01 ee", 0);
    EXPECT_EQ(by_line, "\tRYM - call server" + shown);
    std::free(const_cast<char*>(by_line));  // NOLINT: a decoded line is the caller's
    EXPECT_STREQ(line_lng2("08 00 15 02 84 00 07 37 01 ee 02 00 0f 09", 0),
                 ("\tRYM - call server" + shown + "\n\t- ??").c_str());
    EXPECT_EQ(whole(), all);

    // What a host appends stands behind everything.
    p("behind");
    EXPECT_EQ(buffer(), shown);
    EXPECT_EQ(whole(), all + "behind");

    // In a frame: the message, and its text as a C string.
    const auto data = bytes("08 00 95 02 84 00 07 37 01 ee 02 00 0f 09");
    analyse_cmd(data.data(), static_cast<int>(data.size()), 'S');
    const std::string server = "(reserved_error)";
    const auto served = [&server](std::string s) { return s.replace(s.find("Call"), 4, server); };
    EXPECT_EQ(buffer(), served(shown));
    EXPECT_EQ(whole(), served(all) + "\n\tRYM - call server" + served(shown) + "\n\t- ??\n\n}\n");

    // By the functions that append.
    app_idx = 0;
    EXPECT_EQ(printUTF8str(bytes("41 ee 00 80").data(), 4, 1), 1);
    EXPECT_EQ(printUTF8str(bytes("c4").data(), 1, 1), 1);
    vPutf8char('x');
    EXPECT_EQ(whole(), "\"A\xEE\0\x80\"\"ERROR_UTF8_2CHAR\xC4\0\"x"s);
    app_idx = 0;
    EXPECT_EQ(*p("A%cB", 0), 'A');
    EXPECT_EQ(whole(), "A\0B"s);
}

TEST_F(ApplicationBuffer, TextsEndAtTheZeroByteOfAPart) {
    const std::string head =
        "\nSetProperty\ttextbox\n{\n\tServer\t\tCall\n\tObjectId\t0x0007\n\tlabel          \t";
    const std::string hex_line =
        " 15 02 84 00 07 37 01 ee\n\tRYM - call server" + head + "\"ERROR_UTF8_3CHAR\xEE";
    const std::string osi = "\t> zt 02 00 0f 09\n\t- ??";
    const struct {
        const char* hex;
        std::uint8_t color;
        std::string text;
    } rows[] = {
        // Type 1 adds the newline that the text lacks, type 2 does not.
        {"0b 08 15 02 84 00 07 37 01 ee 02 0f 09", 0,
         "\t- super message:\n\t> zt 08 00" + hex_line + "\n" + osi + "\n"},
        {"17 08 00 15 02 84 00 07 37 01 ee 02 00 0f 09", 0,
         "\t- super message, type 2:\n\t> zt 08 00" + hex_line + osi},
        // The colour ends all the same.
        {"0b 08 15 02 84 00 07 37 01 ee", 1,
         "\t- super message:\n\t> zt 08 00" + std::string(hex_line).insert(25, "\033[0;32m") + "\033[0m\n"},
        {"17 08 00 15 02 84 00 07 37 01 ee", 1,
         "\t- super message, type 2:\n\t> zt 08 00" + std::string(hex_line).insert(25, "\033[0;32m") +
             "\033[0m"},
        // Behind a hub, where what it dropped left two bytes behind the message.
        {"14 10 15 02 84 00 07 37 01 ee", 0,
         "\tHUB -  to set 1\tRYM - call server" + head +
             "\"ERROR_UTF8_3CHAR\xEE\x01\xEE\"\t//\"ERROR_UTF8_3CHAR<Corvane >\"\n}\n"},
        {"14 10 15 02 84 00 07 37 04 41 ee 00 80", 0,
         "\tHUB -  to set 1\tRYM - call server" + head + "\"A\xEE"},
        // Put together from a segment.
        {"0b 0c 0c 80 00 08 15 02 84 00 07 37 01 ee 02 0f 09", 0,
         "\t- super message:\n\t> zt 0c 00 0c 80 00 08 15 02 84 00 07 37 01 ee\n\t- segment message 1/1\n"
         "\tRYM - call server" +
             head + "\"ERROR_UTF8_3CHAR\xEE\n" + osi + "\n"},
        // The newline in front of the zero byte is the text's last character: none is added, none trimmed.
        {"0b 09 15 02 84 00 07 37 02 e1 0a 02 0f 09", 0,
         "\t- super message:\n\t> zt 09 00 15 02 84 00 07 37 02 e1 0a\n\tRYM - call server" + head +
             "\"ERROR_UTF8_3CHAR\xE1\n" + osi + "\n"},
        {"17 09 00 15 02 84 00 07 37 02 e1 0a 02 00 0f 09", 0,
         "\t- super message, type 2:\n\t> zt 09 00 15 02 84 00 07 37 02 e1 0a\n\tRYM - call server" + head +
             "\"ERROR_UTF8_3CHAR\xE1\n" + osi},
    };
    for (const auto& row : rows) {
        useColor = row.color;
        ::testing::internal::CaptureStdout();
        char* text = decode(record(row.hex, 0));
        ::testing::internal::GetCapturedStdout();  // the bytes of a reassembled message
        EXPECT_EQ(text, row.text) << row.hex;
        std::free(text);
    }
    useColor = 0;
}

// The buffer as slow and plain as it can be told: each item is copied to where the text stands, with the zero
// behind it.
struct PlainBuffer {
    std::string memory;
    std::size_t at = 0;

    void print(const std::string& item) {
        memory.resize(std::max(memory.size(), at + item.size() + 1), '\0');
        std::copy(item.begin(), item.end(), memory.begin() + static_cast<std::ptrdiff_t>(at));
        memory[at += item.size()] = '\0';
    }
    void expect_same(const std::string& what) const {
        ASSERT_EQ(app_idx, at) << what;
        EXPECT_EQ(std::string(app_buf, app_idx), memory.substr(0, at)) << what;
        EXPECT_EQ(buffer(), memory.c_str()) << what;
    }
};

// Decodes into such a buffer whatever of the object protocol comes along.
class PlainHost : public TestSession, public ApplicationText {
  public:
    PlainHost() { session().object.application = this; }

    void set(std::string_view text) override {
        app.at = 0;
        app.print(std::string(text));
    }
    void add(std::string_view /*text*/) override {}
    void add_item(std::string_view /*item*/) override {}

    void take(const std::vector<std::string>& messages, std::uint32_t direction) {
        std::string hex;
        for (const auto& m : messages) {
            const std::size_t length = testing::bytes(m).size();
            hex += formatted("{-:02x} {-:02x} {-} "_cf, length & 0xFF, length >> 8, m);
        }
        const auto data = testing::bytes(hex);
        const bool to_terminal = direction == ztdecode::from_dhs;
        app.print(to_terminal ? "\n//|||||||| ZT PBX->TERMINAL" : "\n//######## ZT TERMINAL->PBX");
        app.print(formatted("   OP:{-:02X}"_cf, data[2]));
        app.print(formatted("   LG:{-:02X} {-:02X}   VALUE: "_cf, data[1], data[0]));
        for (std::size_t k = 3; k < data.size(); ++k) app.print(formatted("{-:02X} "_cf, data[k]));
        app.print(to_terminal ? "\nPbx_ZT_message" : "\nTerm_ZT_message");
        app.print("\n{");
        std::string texts;
        for (const auto& m : messages) {
            texts += decode(m, direction);
            if (!texts.ends_with('\n')) texts += "\n";
        }
        app.print("\n" + texts);
        app.print("\n}\n");

        analyse_cmd(data.data(), static_cast<int>(data.size()), to_terminal ? 'S' : 'R');
        app.expect_same(hex);
    }

    PlainBuffer app;
};

TEST_F(ApplicationBuffer, FramesInAnyOrder) {
    // The first of a frame tells what it is: an object-protocol message there has bit 7 set.
    constexpr std::size_t as_first = 8;
    const std::vector<std::string> messages = {"0f 07",
                                               "95 02 06",
                                               "96 04 07",
                                               "14 10 15 84 06",
                                               "0b 04 15 04 02 c4 03 16 02 06",
                                               "17 03 00 16 04 06 02 00 0f 01",
                                               "18 68 00 69",
                                               "8c 80 00 04 16 04 02 ee",
                                               "16 03 84 00 07 37 00",
                                               "15 02 84 00 07 37 01 ee",
                                               "15 04 02 41 ee 00 80"};
    std::mt19937 random(5);
    PlainHost host;
    ::testing::internal::CaptureStdout();  // the bytes of reassembled messages
    for (int i = 0; i < 2000; ++i) {
        std::vector<std::string> some(1 + random() % 4);
        for (auto& m : some) m = messages[random() % messages.size()];
        some.front() = messages[random() % as_first];
        host.take(some, random() % 2 == 0 ? from_dhs : to_dhs);
        if (random() % 8 == 0) {
            host.app.print("from the host");
            p("from the %s", "host");
        }
    }
    ::testing::internal::GetCapturedStdout();
}

// The quoted characters step by step, as `p` would be called for them.
std::string quoted(const std::vector<std::uint8_t>& text) {
    const auto at = [&text](std::size_t k) { return k < text.size() ? static_cast<char>(text[k]) : '\0'; };
    PlainBuffer out;
    out.print("\"");
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] < 0x80) {
            const std::map<std::uint8_t, std::string> names = {{0x00, "\\NUL"}, {0x0A, "\\LF"}, {0x41, "A"}};
            out.print(names.at(text[i]));
            i += 1;
        } else if (text[i] < 0xC0) {
            out.print("ERR_UTF8_CHAR");
            i += 1;
        } else if (text[i] < 0xE0) {
            if (i + 1 >= text.size()) out.print("ERROR_UTF8_2CHAR");
            out.print({at(i), at(i + 1)});
            i += 2;
        } else {
            if (i + 2 >= text.size()) out.print("ERROR_UTF8_3CHAR");
            const unsigned code_point = (text[i] & 0x0FU) << 12 |
                                        (static_cast<unsigned>(at(i + 1)) & 0x3FU) << 6 |
                                        (static_cast<unsigned>(at(i + 2)) & 0x3FU);
            if (text.size() == 3) {
                out.print(formatted("\\u{-:04X}"_cf, code_point));
            } else {
                out.print({at(i), at(i + 1), at(i + 2)});
            }
            i += 3;
        }
    }
    out.print("\"");
    return out.memory.substr(0, out.at);
}

TEST_F(ApplicationBuffer, ShortTextsOfAllKindsOfBytes) {
    const auto kinds = bytes("00 0a 41 80 c4 ee");
    for (std::size_t length = 0, count = 1; length <= 4; ++length, count *= kinds.size()) {
        for (std::size_t i = 0; i < count; ++i) {
            std::vector<std::uint8_t> text(length);
            for (std::size_t k = 0, rest = i; k < length; ++k, rest /= kinds.size()) {
                text[k] = kinds[rest % kinds.size()];
            }
            app_idx = 0;
            printUTF8str(text.data(), static_cast<int>(length), 1);
            ASSERT_EQ(std::string(app_buf, app_idx), quoted(text)) << length << ' ' << i;
        }
    }
}

TEST_F(ApplicationBuffer, FrameWithALongText) {
    std::vector<std::uint8_t> data = bytes("11 27 18");
    data.resize(data.size() + 10000, 'x');
    // 10001 bytes, of which 5120 are decoded
    ::testing::internal::CaptureStderr();
    analyse_cmd(data.data(), static_cast<int>(data.size()), 'S');
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    const std::string text = buffer();
    EXPECT_EQ(text.substr(text.size() - 12), "xxxxxxxx\n\n}\n");

    // Two of them are longer than one item can be.
    vFreeApplicationBuffer();
    const auto half = data;
    data.insert(data.end(), half.begin(), half.end());
    ::testing::internal::CaptureStderr();
    analyse_cmd(data.data(), static_cast<int>(data.size()), 'S');
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "\nLine too long, truncated\n");
    const std::string cut = buffer();
    const std::size_t item = cut.find("\nPbx_ZT_message\n{") + std::strlen("\nPbx_ZT_message\n{");
    EXPECT_EQ(cut.size() - item, 9999U);
    // newline, two times "\tDBG - " with 5119 characters and a newline, and what ends the frame
    EXPECT_EQ(app_idx, item + 1 + 2 * (7 + 5119 + 1) + 3);
    EXPECT_STREQ(app_buf + app_idx - 3, "\n}\n");
}

TEST_F(ApplicationBuffer, SegmentsThroughFrames) {
    boDisplayResult = 7;
    frame("0a 00 0c 81 02 16 84 00 07 37 03 41", 'S');
    EXPECT_EQ(boDisplayResult, 0);
    EXPECT_EQ(app_buf, nullptr);
    p("before");
    EXPECT_EQ(frame("05 00 0c 00 42 43 44", 'S'),
              "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007"
              "\n\tlabel          \t\"ABC\"\n}\n");
    EXPECT_NE(boDisplayResult, 0);
    EXPECT_EQ(app_idx, std::strlen(app_buf));
    // A frame that is no segment leaves the result alone.
    frame("07 07 16 01", 'S');
    EXPECT_NE(boDisplayResult, 0);
}

TEST_F(ApplicationBuffer, SegmentsInAnyOrder) {
    const char* const segments[] = {"06 00 0c 82 01 02 03 04",
                                    "04 00 0c 01 11 12",
                                    "02 00 0c 00",
                                    "05 00 0c 00 21 22 23",
                                    "00 00 0c 80",
                                    "05 01 0c 83 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13",
                                    "03 00 0c 00 07"};
    for (int order = 0; order < 7 * 7 * 7 * 7; ++order) {
        for (int rest = order, k = 0; k < 4; rest /= 7, ++k) {
            const auto data = bytes(segments[rest % 7]);
            (order & 1) != 0 ? bo_OLD_CatchSegment(data.data()) : boCatchSegment(data.data());
        }
        vSaveLastReconstructedCmd();
        if ((order & 2) != 0) vFreeReconstructedCmd();
        if ((order & 4) != 0) vFreeLastReconstructedCmd();
    }
}

TEST_F(ApplicationBuffer, SegmentsDirectly) {
    for (const auto take : {boCatchSegment, bo_OLD_CatchSegment}) {
        EXPECT_EQ(take(bytes("06 00 0c 82 01 02 03 04").data()), 0);
        EXPECT_EQ(take(bytes("04 00 0c 01 11 12").data()), 0);
        EXPECT_NE(take(bytes("04 00 0c 00 21 22").data()), 0);
        vFreeReconstructedCmd();
    }
    EXPECT_EQ(boCatchSegment(nullptr), 0);
    EXPECT_NE(boCatchSegment(nullptr), 0);
}

TEST_F(ApplicationBuffer, Values) {
    const auto label = bytes("c3 a9");
    vDecodeTLV(0x37, 0, 1, label.data(), Tab_textbox);
    EXPECT_EQ(buffer(), "\n\tlabel          \t\"ERROR_UTF8_2CHAR\xC3");
    EXPECT_EQ(std::string(app_buf + 36, 5), "\0\"\t//"s);
    vFreeApplicationBuffer();
    vDecodeTLV(0x8A, 3, 1, bytes("41").data(), Tab_listbox);
    vDecodeTLV(0x26, 0, 0, bytes("05").data(), Tab_listbox);
    vDecodeTLV(0x27, 0, 0, nullptr, Tab_listbox);
    vDecodeTLV(0x99, 1, -5, bytes("05").data(), Tab_screen);
    vDecodeTLV(0x99, 1, 5, bytes("05").data(), nullptr);
    EXPECT_EQ(buffer(),
              "\n\tDlabel         \tIdx:3  \"A\"\n\tx              \t0\n\ty              \t"
              "\n\t(property_error)\tIdx:1  0x");
    EXPECT_EQ(app_idx, std::strlen(app_buf));
}

TEST_F(ApplicationBuffer, TextsAndDumps) {
    EXPECT_EQ(printUTF8str(bytes("41 0a").data(), 2, 1), 0);
    EXPECT_EQ(printUTF8str(bytes("ee 80 b1").data(), 3, 1), 1);
    EXPECT_EQ(printUTF8str(bytes("ee 80 b1").data(), 3, 0), 1);
    EXPECT_EQ(printUTF8str(nullptr, 0, 0), 0);
    vPutf8char('A');
    vPutf8char(0);
    vPutf8char(0xE9);
    vDsipTLV("\n//", bytes("07 01 0c 82 ab").data(), 5);
    vDsipTLV(nullptr, bytes("07 01 0c").data(), 3);
    EXPECT_EQ(buffer(),
              "\"A\\LF\"\"\\uE031\"\"<Corvane rond vide (ne pas utiliser)>\"\"\"A$$"
              "\n//   OP:0C   LG:01 07   VALUE: 82 AB    OP:0C   LG:01 07   VALUE: ");
}

TEST_F(ApplicationBuffer, Events) {
    vDecodeEvent(0x02, bytes("35").data(), 1);
    vDecodeEvent(0x15, bytes("03").data(), 1);
    vDecodeEvent(0x88, bytes("03").data(), 1);
    vDecodeEvent(0x0A, nullptr, 0);
    EXPECT_EQ(buffer(),
              "\n\tkeychar         \"5\""
              "\n\tvalue           Jack\n\tstate           unplugged"
              "\n\terrorcode       INVALID_METHOD\n\tmethod          Create\n\tclass           context"
              "\n\tobjectid        0x0000\n\tproperty        objectid\t//0x00\n\tindex           0"
              "\n\tlength          0x0000\n\tvalue           0x00000000\n\ttxt             \"\"");
}

TEST_F(ApplicationBuffer, EventTrace) {
    debug = 1;
    ::testing::internal::CaptureStdout();
    vDecodeEvent(0x02, bytes("35 36").data(), 2);
    std::fflush(stdout);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "vDecodeEvent(bEvent=0x02, ptr[0]= 0x35, len=2)\n");
    debug = 0;
}

TEST_F(ApplicationBuffer, InputLines) {
    convert_line("01 02 ff");
    EXPECT_EQ(nb_vals, 3);
    EXPECT_EQ(in_buf[0], 0x01);
    EXPECT_EQ(in_buf[1], 0x02);
    EXPECT_EQ(in_buf[2], 0xFF);
    EXPECT_EQ(app_buf, nullptr);
    convert_line("03 04 0345");
    EXPECT_EQ(nb_vals, 0);
    EXPECT_EQ(in_buf[0], 0x03);
    EXPECT_EQ(in_buf[1], 0x04);
    EXPECT_EQ(in_buf[2], 0xFF);
    EXPECT_EQ(buffer(), "\nhexa conv error\n");
    std::string many;
    for (int i = 0; i < 2999; ++i) many += "1 ";
    convert_line(many.c_str());
    EXPECT_EQ(nb_vals, 0);
    EXPECT_EQ(buffer(), "\nhexa conv error\n\ntoo many fields in input file");
    convert_line(nullptr);
    EXPECT_EQ(nb_vals, 0);
}

TEST_F(ApplicationBuffer, CurrentClass) {
    EXPECT_STREQ(Lclass(0x84, Tab_Classes_Opcodes), "textbox");
    vDecodeEvent(0x94, bytes("37 01 41").data(), 3);
    EXPECT_STREQ(Lclass(0x01, Tab_Classes_Opcodes), "terminal");
    vDecodeEvent(0x94, bytes("62 01 41").data(), 3);
    EXPECT_EQ(buffer(), "\n\tlabel          \t\"A\"\n\tserialnum      \t\"A\"");
}

TEST_F(ApplicationBuffer, ClassesOfTheHosts) {
    static const ztdecode_property_record properties[] = {
        {ZTDECODE_INT8, 0x05, "own", 0},
        {ZTDECODE_INT32, 0xFF, "(property_error)", 0},
    };
    static const ztdecode_class_record classes[] = {
        {0x04, "own_class", properties},
        {0xFF, "(class_error)", nullptr},
    };
    EXPECT_STREQ(Lclass(0x04, classes), "own_class");
    vDecodeEvent(0x94, bytes("05 01 fe 06 01 fe").data(), 6);
    EXPECT_EQ(buffer(), "\n\town            \t-2\n\t(property_error)\t0xFE");
}

void show_buffer_at_exit() {
    std::atexit([] { std::fprintf(stderr, "[%s]", buffer().c_str()); });
}

using UnknownClassDeathTest = ApplicationBuffer;

#define EXPECT_END(statement, text) \
    EXPECT_EXIT(                    \
        {                           \
            show_buffer_at_exit();  \
            statement;              \
        },                          \
        ::testing::ExitedWithCode(255), text)

TEST_F(UnknownClassDeathTest, EndsTheProcess) {
    EXPECT_END(pbx("16 02 04"), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(term("16 04 94 00 04"), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(term("16 04 0b 00 01 00 04"),
               "^\\[\nNotify\tERROR_CREATE\n\\{\n\tServer\t\tPresentation\n\terrorcode       UNKNOWN_CLASS\n"
               "\tmethod          Create\nError class lookup table ptr\\]");
    EXPECT_END(frame("16 02 15 14", 'S'), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(frame("03 00 96 02 04", 'S'), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(frame("03 00 96 02 06 03 00 15 02 04 02 00 0f 09", 'S'),
               "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(
        vDecodeEvent(0x0B, bytes("00 01 00 04").data(), 4),
        "^\\[\n\terrorcode       UNKNOWN_CLASS\n\tmethod          Create\nError class lookup table ptr\\]");
    EXPECT_END((p("before"), Lclass(0x04, Tab_Classes_Opcodes)),
               "^\\[before\nError class lookup table ptr\\]");
    EXPECT_END(Lclass(0xFF, Tab_Classes_Opcodes), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(decode(record("15 02 04", 0)), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(line("03 15 02 04", 0), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(decode_bin_lng1(bytes("03 15 02 04").data(), 0), "^\\[\nError class lookup table ptr\\]");
    EXPECT_END(decode_bin_lng2(bytes("01 00 2a 03 00 15 02 04").data(), 0, 8),
               "^\\[\nError class lookup table ptr\\]");
    MessageRecord r = record("15 02 04", 0);
    EXPECT_END(dhs2cs(&r), "^\\[\nError class lookup table ptr\\]");
}

TEST(LookUps, Names) {
    EXPECT_STREQ(Look(0x16, Tab_Servers_def), "Presentation");
    EXPECT_STREQ(Look(0x20, Tab_Events_Opcodes), "(reserved_error)");
    EXPECT_STREQ(Look(0xFF, Tab_Events_Opcodes), "(reserved_error)");
    EXPECT_STREQ(Look(0x116, Tab_Servers_def), "(reserved_error)");
    EXPECT_STREQ(Look(-1, Tab_Servers_def), "(reserved_error)");
    EXPECT_STREQ(Look(1, nullptr), "");
    EXPECT_STREQ(Lclass(1, nullptr), "");
}

TEST(LookUps, Properties) {
    std::uint16_t count = 77;
    std::uint8_t type = 77;
    EXPECT_STREQ(Lprop(0x97, Tab_screen, &count, &type), "Ddata");
    EXPECT_EQ(count, 20);
    EXPECT_EQ(type, ZTDECODE_UTF8);
    EXPECT_STREQ(Lprop(0x99, Tab_screen, &count, &type), "(property_error)");
    EXPECT_EQ(count, 0);
    EXPECT_EQ(type, ZTDECODE_INT32);
    EXPECT_STREQ(Lprop(0x11, Tab_screen, nullptr, nullptr), "bpp");
    EXPECT_STREQ(Lprop(0x11, nullptr, &count, &type), "");
}

TEST(LookUps, Characters) {
    EXPECT_STREQ(LookUtf8(0xE031, tab_unicod), "Corvane rond vide (ne pas utiliser)");
    EXPECT_STREQ(LookUtf8(0xD55C, tab_unicod), "Hangul Syllables-U+D55C");
    EXPECT_STREQ(LookUtf8(0xE031, nullptr), "Private Use Area-U+E031");
    EXPECT_STREQ(LookUtf8(0xFFFF, tab_unicod), "???");
    static const ztdecode_glyph_record own[] = {
        {0x0041, "own A"}, {0xB000, "end"}, {0xE031, "behind the end"}};
    EXPECT_STREQ(LookUtf8(0x0041, own), "own A");
    EXPECT_STREQ(LookUtf8(0xE031, own), "Private Use Area-U+E031");
}

TEST(Help, Listing) {
    EXPECT_EQ(ClassProp_Help(), 0);
    EXPECT_EQ(hlp_idx, 15133U);
    EXPECT_EQ(std::strlen(str_help), 15133U);
    const std::string head =
        "\n-----------------------------------------\ncontext\n{\n\tobjectid       \tuint16\n\townership     "
        " \tuint8\n}"
        "\n-----------------------------------------\nterminal\n{";
    EXPECT_EQ(std::string(str_help).substr(0, head.size()), head);
    // The class that was looked up last is the current one.
    vFreeApplicationBuffer();
    vDecodeEvent(0x94, bytes("86 01 01 01").data(), 4);
    EXPECT_EQ(buffer(), "\n\tDmode          \tIdx:1  TRUE");
    vFreeApplicationBuffer();
}

TEST(Help, Append) {
    hlp_idx = 0;
    ph("%s %d", "one", 1);
    ph(", two");
    EXPECT_STREQ(str_help, "one 1, two");
    EXPECT_EQ(hlp_idx, 10U);
}

TEST(Help, EndsWithItsBuffer) {
    hlp_idx = 19990;
    ph("%s", "123456789012345");
    EXPECT_EQ(hlp_idx, 19999U);
    EXPECT_STREQ(str_help + 19990, "123456789");
    ph("more");
    EXPECT_EQ(hlp_idx, 19999U);
    for (const std::uint32_t behind : {20000U, 20001U, 0xFFFFFFFFU}) {
        hlp_idx = behind;
        ph("more");
        EXPECT_EQ(hlp_idx, behind);
    }
    hlp_idx = 0;
    ph("%30000d", 5);
    EXPECT_EQ(hlp_idx, 19999U);
    EXPECT_EQ(std::strlen(str_help), 19999U);
}

TEST(MinorRoutes, Records) {
    const struct {
        const char* (*decoder)(MessageRecord*);
        const char* hex;
        const char* text;
        std::uint32_t status;
    } rows[] = {
        {cs2dhs, "15 04 06", "call server\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n", 1},
        {dhs2cs, "15 00 08", "call server\nCreate\tAOMV\n{\n\tServer\t\tCall\n}\n", 1},
        {prs2dhs, "16 02 06", "presentation server\nInvalid_method 0x02 (TX->PBX)", 1},
        {dhs2prs, "16 04 06", "presentation server\nInvalid_method 0x04 (PBX->TX)", 1},
        {dbg2dhs, "18 68 69 0a", "hi\n", 1},
        {dhs2dbg, "18 68 00 69", "h", 1},
        {osi2dhs, "0f 05 11 21", "osi: pclink1 status tx_prepare, rx_rcv", 0},
        {dhs2osi, "0f 09", "??", 0},
    };
    for (const auto& row : rows) {
        MessageRecord r = record(row.hex, 0);
        EXPECT_STREQ(row.decoder(&r), row.text);
        EXPECT_EQ(r.status, row.status);
        EXPECT_STREQ(row.decoder(nullptr), "");
    }
}

}  // namespace
}  // namespace ztdecode::testing
