#include "core/provenance.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/text.hpp"
#include "digital/digital.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

std::string shown(const std::vector<ByteRange>& ranges) {
    std::string result;
    for (const ByteRange& r : ranges) {
        if (!result.empty()) result += ',';
        result += std::to_string(r.first);
        if (r.last != r.first) result += "-" + std::to_string(r.last);
    }
    return result;
}

// A message decoded with somebody watching which bytes are read.
struct Watched {
    Watched() { decoding.session().provenance = &provenance; }

    std::vector<std::string> to_dhs(std::string_view hex) { return stretches(hex, ztdecode::to_dhs); }
    std::vector<std::string> from_dhs(std::string_view hex) { return stretches(hex, ztdecode::from_dhs); }

    // "text<bytes>" for each stretch; R: they count in the reassembled message, E: one behind the end was
    // read too.
    std::vector<std::string> stretches(std::string_view hex, std::uint32_t direction) {
        text = decoding.decode(hex, direction);
        std::vector<std::string> result;
        for (const Stretch& s : provenance.stretches()) {
            std::string line = text.substr(s.begin, s.end - s.begin) + "<" + shown(s.bytes);
            if (s.reassembled) line += "R";
            if (s.behind_the_end) line += "E";
            result.push_back(line + ">");
        }
        return result;
    }
    std::string unused(std::string_view hex) const {
        return shown(provenance.unused(static_cast<std::uint32_t>(bytes(hex).size())));
    }

    Decoding decoding;
    Provenance provenance;
    std::string text;
};

using Lines = std::vector<std::string>;

TEST(Provenance, EachTextHasTheBytesThatWereReadForIt) {
    Watched w;
    EXPECT_EQ(w.to_dhs("83 0a"), (Lines{"\t- <0>", "digit dialed '*'<0-1>"}));
    EXPECT_EQ(w.unused("83 0a"), "");
    EXPECT_EQ(w.from_dhs("35 07 02"), (Lines{"\t- <0>", "cursor on, line 7<0-2>"}));
    EXPECT_EQ(w.from_dhs("2c 05 01 44"), (Lines{"\t- <0>", "metastate option 5= active<0-2>"}));
    EXPECT_EQ(w.unused("2c 05 01 44"), "3");
}

TEST(Provenance, BytesMayBeReadOutOfOrder) {
    Watched w;
    // The packet number has its low byte first.
    EXPECT_EQ(w.from_dhs("50 03 12 34 56"),
              (Lines{"\t- <0>", "download protocol <0>", "data, number: 0x033412<1-3>"}));
    EXPECT_EQ(w.unused("50 03 12 34 56"), "4");
    // The code stands behind the number that it is printed before.
    EXPECT_EQ(w.to_dhs("50 02 01 02 10"), (Lines{"\t- <0>", "download protocol <0>",
                                                 "refused hard pb (0x10)<1,4>", ", number: 0x0102<2-3>"}));
}

TEST(Provenance, UnusedBytesAreTheRunsBetween) {
    Watched w;
    // A version response of an adapter shows bytes 2 and 3 and asks byte 1; the first byte is its opcode.
    EXPECT_EQ(w.to_dhs("21 01 02 05 06 07"), (Lines{"\t- <0>", "version response  TA,   soft=2.05<0-3>"}));
    EXPECT_EQ(w.unused("21 01 02 05 06 07"), "4-5");
    EXPECT_EQ(w.from_dhs("33 01 02 03 04 05 06"), (Lines{"\t- <0>", "external ringer on<0-1>"}));
    EXPECT_EQ(w.unused("33 01 02 03 04 05 06"), "2-6");
    EXPECT_EQ(w.provenance.unused(0).size(), 0U);
    EXPECT_EQ(shown(w.provenance.unused(2)), "");
    // Bytes 1 and 2 of a display line are not shown.
    EXPECT_EQ(w.from_dhs("27 01 02 41 42"), (Lines{"\t- <0>", "write line 1 \"<0>", "A<3>", "B\"\n<4>"}));
    EXPECT_EQ(w.unused("27 01 02 41 42"), "1-2");
}

TEST(Provenance, ABytesBehindTheEndIsSaid) {
    Watched w;
    EXPECT_EQ(w.to_dhs("03"), (Lines{"\t- <0>", "digit dialed '0'<0E>"}));
    EXPECT_EQ(w.from_dhs("35 02"), (Lines{"\t- <0>", "cursor off, line 2<0-1E>"}));
    for (const Stretch& s : w.provenance.stretches()) EXPECT_EQ(s.behind_the_end, s.begin != 0);
}

TEST(Provenance, PartsOfASuperMessageCountInTheWholeMessage) {
    Watched w;
    const Lines lines = w.to_dhs("0b 02 03 05 01 01");
    EXPECT_EQ(w.text,
              "\t- super message:\n"
              "\t> zt 02 00 03 05\n\t- digit dialed '5'\n"
              "\t> zt 01 00 01\n\t- handset off hook\n");
    EXPECT_EQ(lines, (Lines{"\t- super message:\n<0>", "\t> zt 02 00 03 05\n<1-3>", "\t- <2>",
                            "digit dialed '5'\n<2-3>", "\t> zt 01 00 01\n<4-5>", "\t- <5>",
                            "handset off hook\n<5>"}));
    EXPECT_EQ(w.unused("0b 02 03 05 01 01"), "");
}

TEST(Provenance, PartsWithTwoLengthBytes) {
    Watched w;
    const Lines lines = w.to_dhs("17 01 00 01 02 00 03 05");
    EXPECT_EQ(lines, (Lines{"\t- super message, type 2:\n<0>", "\t> zt 01 00 01\n<1-3>", "\t- <3>",
                            "handset off hook<3>", "\t> zt 02 00 03 05\n<4-7>", "\t- <6>",
                            "digit dialed '5'<6-7>"}));
}

// The HE link drops its three routing bytes before the message is decoded.
TEST(Provenance, DroppedBytesAreCountedAlong) {
    Watched w;
    const Lines lines = w.to_dhs("05 01 02 03 00 07 99");
    EXPECT_EQ(w.text, "\t- [HE: desktop -> telephony]\t- digit dialed: 7");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].substr(0, 33), "\t- [HE: desktop -> telephony]\t- <");
    EXPECT_EQ(lines[1], "digit dialed: 7<3,5>");
    EXPECT_EQ(w.unused("05 01 02 03 00 07 99"), "4,6");
}

TEST(Provenance, AnHeMessageOfADigitalSet) {
    Watched w;
    // Opcode 33 is none of the HE link's: the digital set's version response, without the text that HE had
    // for it.
    const Lines lines = w.to_dhs("05 01 02 21 01 02 05");
    EXPECT_EQ(w.text, "\t- [HE: desktop -> telephony]\t- version response  TA,   soft=2.05");
    EXPECT_EQ(lines.back(), "version response  TA,   soft=2.05<3-6>");
    EXPECT_EQ(lines.size(), 2U);
}

TEST(Provenance, ReassembledMessagesAreMarked) {
    Watched w;
    EXPECT_EQ(w.from_dhs("0c 81 00 03 21"), (Lines{"\t- <0>", "segment message 1/2<0-4>"}));
    const Lines lines = w.from_dhs("0c 00 01 09 77");
    EXPECT_EQ(w.text, "\t- segment message 2/2\n\t- red led 9 ON");
    EXPECT_EQ(lines, (Lines{"\t- <0>", "segment message 2/2\n<0-4>", "\t- <0R>", "red led 9 ON<0-2R>"}));
    // Their offsets are none of the segment's.
    EXPECT_EQ(w.unused("0c 00 01 09 77"), "");
    EXPECT_EQ(w.decoding.output, "21 00 00 21 01 09 ");
}

TEST(Provenance, ReassembledMessagesUseNoByteOfTheirSegment) {
    Text text;
    Provenance p;
    p.start(text);
    p.read(0, false);
    text.add("segment");
    p.read(1, true);
    p.read(2, true);
    text.add("whole");
    p.read(3, false);
    text.add("behind");
    p.finish();
    ASSERT_EQ(p.stretches().size(), 3U);
    EXPECT_FALSE(p.stretches()[0].reassembled);
    EXPECT_TRUE(p.stretches()[1].reassembled);
    EXPECT_FALSE(p.stretches()[2].reassembled);
    EXPECT_EQ(shown(p.unused(6)), "1-2,4-5");
}

TEST(Provenance, CarriedMessagesCountInTheMessageOfTheirCarrier) {
    Watched w;
    // A hub carries a digit; a hub carries a super message that carries one.
    EXPECT_EQ(w.to_dhs("14 10 03 05").back(), "digit dialed '5'<2-3>");
    EXPECT_EQ(w.to_dhs("14 10 0b 02 03 06").back(), "digit dialed '6'\n<4-5>");
    EXPECT_EQ(w.unused("14 10 0b 02 03 06"), "");
}

TEST(Provenance, OffsetsCountFromWhereTheTextStood) {
    const auto data = bytes("03 05");
    Session session;
    Provenance provenance;
    session.provenance = &provenance;
    Text out;
    out.add("something before ");
    Message m(data);
    m.direction = to_dhs;
    ASSERT_EQ(decode(session, m, out), Outcome::decoded);
    EXPECT_EQ(out.view(), "something before \t- digit dialed '5'");
    ASSERT_EQ(provenance.stretches().size(), 2U);
    EXPECT_EQ(provenance.stretches()[0].begin, 0U);
    EXPECT_EQ(provenance.stretches()[0].end, 3U);
    EXPECT_EQ(provenance.stretches()[1].begin, 3U);
    EXPECT_EQ(provenance.stretches()[1].end, 19U);
}

TEST(Provenance, EachMessageStartsAnew) {
    Watched w;
    w.to_dhs("03 05");
    EXPECT_EQ(w.to_dhs("01"), (Lines{"\t- <0>", "handset off hook<0>"}));
    EXPECT_EQ(w.to_dhs(""), Lines{});
    EXPECT_EQ(w.text, "");
}

TEST(Provenance, ATextThatBecameShorterHasShorterStretches) {
    Text text;
    Provenance p;
    p.start(text);
    p.read(0, false);
    text.add("one");
    p.read(1, false);
    text.add("two");
    p.read(2, false);
    text.cut(4);
    p.read(3, false);
    text.add("three");
    p.finish();
    const std::string all(text.view());
    ASSERT_EQ(all, "onetthree");
    std::vector<std::string> pieces;
    for (const Stretch& s : p.stretches())
        pieces.push_back(all.substr(s.begin, s.end - s.begin) + shown(s.bytes));
    EXPECT_EQ(pieces, (std::vector<std::string>{"one0", "t1", "three3"}));
}

TEST(Provenance, OfNothingIsNothing) {
    Text text;
    Provenance p;
    p.start(text);
    p.finish();
    EXPECT_TRUE(p.stretches().empty());
    p.start(text);
    p.read(3, false);
    p.finish();
    EXPECT_TRUE(p.stretches().empty());
    EXPECT_EQ(shown(p.unused(5)), "0-4");
}

// Stretches lie one behind the other, inside the text, and their bytes ascend.
void expect_in_order(const Provenance& p, std::size_t text_size, const std::string& what) {
    std::size_t end = 0;
    for (const Stretch& s : p.stretches()) {
        EXPECT_EQ(s.begin, end) << what;
        EXPECT_LT(s.begin, s.end) << what;
        end = s.end;
        for (std::size_t i = 0; i < s.bytes.size(); ++i) {
            EXPECT_LE(s.bytes[i].first, s.bytes[i].last) << what;
            if (i > 0) {
                EXPECT_GT(s.bytes[i].first, s.bytes[i - 1].last + 1) << what;
            }
        }
    }
    EXPECT_EQ(end, text_size) << what;
}

// What stands behind a zero byte inside a character is not shown, and the next part follows.
TEST(Provenance, StretchesEndWithTheTextAtAZeroByte) {
    Watched w;
    const Lines lines = w.from_dhs("0b 08 15 02 84 00 07 37 01 ee 02 0f 09");
    ASSERT_GE(lines.size(), 6U);
    EXPECT_EQ(Lines(lines.end() - 6, lines.end()),
              (Lines{"\n\tlabel          \t\"<7-8>", "ERROR_UTF8_3CHAR<9>", "\xEE\n<9E>",
                     "\t> zt 02 00 0f 09\n<10-12>", "\t- <11>", "??\n<12>"}));
    // The properties behind it show nothing.
    const char* const hidden = "15 02 84 00 07 37 04 41 ee 00 80 26 01 05";
    EXPECT_EQ(w.from_dhs(hidden).back(), "\xEE<8-10>");
    EXPECT_EQ(w.unused(hidden), "11-13");

    for (const char* hex :
         {"17 08 00 15 02 84 00 07 37 01 ee 01 00 2a", "14 10 15 02 84 00 07 37 04 41 ee 00 80",
          "0c 80 00 08 15 02 84 00 07 37 01 ee", "0b 04 15 04 02 ee 05 16 04 02 41 c4", hidden}) {
        for (const std::uint32_t direction : {from_dhs, to_dhs}) {
            const std::string text = w.decoding.decode(hex, direction);
            EXPECT_EQ(text, Decoding().decode(hex, direction));
            EXPECT_EQ(text.find('\0'), std::string::npos);
            expect_in_order(w.provenance, text.size(), hex);
        }
    }
}

std::vector<std::uint8_t> random_message(std::mt19937& random, int type) {
    std::vector<std::uint8_t> data(1 + random() % 40);
    for (auto& b : data) b = static_cast<std::uint8_t>(random() % 3 != 0 ? random() % 16 : random() % 256);
    data[0] = static_cast<std::uint8_t>(type);
    return data;
}

TEST(Provenance, TextsAreTheSameWithAndWithout) {
    std::mt19937 random(77);
    Decoding plain;
    Watched watched;
    for (int type = 0; type < 256; ++type) {
        for (int i = 0; i < 40; ++i) {
            const auto data = random_message(random, type);
            std::string hex;
            for (const std::uint8_t b : data) hex += fmt::format("{:02x} ", b);
            const std::uint32_t direction = random() % 2 == 0 ? from_dhs : to_dhs;
            const std::string expected = plain.decode(hex, direction);
            EXPECT_EQ(watched.decoding.decode(hex, direction), expected) << hex;
            EXPECT_EQ(watched.decoding.outcome, plain.outcome) << hex;
            expect_in_order(watched.provenance, expected.size(), hex);
        }
    }
    EXPECT_EQ(watched.decoding.output, plain.output);
    EXPECT_EQ(watched.decoding.error, plain.error);
}

// Texts of thousands of values have no more stretches than can be shown.
TEST(Provenance, TheRestOfALongTextIsOneStretch) {
    Provenance provenance;
    const std::vector<std::uint8_t> data(4, 0x2A);
    Text out;
    Message m(data);
    provenance.start(out);
    m.observe(&provenance);
    for (std::size_t k = 0; k < Provenance::most_stretches + 1000; ++k) {
        out.hex(m[k % 4]);
        out.add(" ");
    }
    provenance.finish();
    ASSERT_EQ(provenance.stretches().size(), Provenance::most_stretches + 1);
    const Stretch& last = provenance.stretches().back();
    EXPECT_EQ(last.end, out.size());
    EXPECT_EQ(last.begin, 3 * Provenance::most_stretches);
    EXPECT_EQ(last.bytes, (std::vector<ByteRange>{{0, 3}}));
}

}  // namespace
}  // namespace ztdecode::testing
