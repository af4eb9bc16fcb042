#include "core/trail.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/decoding.hpp"
#include "core/phrase.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

std::string shown(std::span<const ByteRange> ranges) {
    std::string result;
    for (const ByteRange& r : ranges) {
        if (!result.empty()) result += ',';
        result += std::to_string(r.first);
        if (r.last != r.first) result += "-" + std::to_string(r.last);
    }
    return result;
}

using Lines = std::vector<std::string>;

// "text<bytes name>" of each stretch, with its name where it is a value; R: the bytes are those of a
// reassembled message, E: one that was asked for is not there.
Lines lines(const Trail& trail, std::string_view text) {
    Lines result;
    for (const Stretch& s : trail.stretches()) {
        std::string line =
            std::string(text.substr(s.begin, s.end - s.begin)) + "<" + shown(trail.bytes_of(s));
        if (trail.messages()[s.message].reassembled) line += "R";
        if (s.missing) line += "E";
        if (s.value != Stretch::no_value) line.append(" ").append(trail.values()[s.value].name);
        result.push_back(line + ">");
    }
    return result;
}

// A message decoded with somebody watching.
struct Watched {
    Watched() { decoding.session().trail = &trail; }

    Lines to_dhs(std::string_view hex) { return stretches(hex, ztdecode::to_dhs); }
    Lines from_dhs(std::string_view hex) { return stretches(hex, ztdecode::from_dhs); }
    Lines stretches(std::string_view hex, std::uint32_t direction) {
        text = decoding.decode(hex, direction);
        return lines(trail, text);
    }
    std::string unused() const { return shown(trail.unused()); }

    TestSession decoding;
    Trail trail;
    std::string text;
};

// A text that the test itself writes.
struct Written {
    explicit Written(std::string_view hex) : data(bytes(hex)) { trail.start(text, m); }

    void words(std::string_view w, Place place) {
        const std::size_t begin = text.size();
        text.add(w);
        trail.words(m, place, begin, text.size());
    }
    void value(FieldName field, std::string_view w, Place place) {
        const std::size_t begin = text.size();
        text.add(w);
        trail.value(m, field.get()->name, field.get(), {Kind::word, true, 0, 0, place}, begin, text.size());
    }
    Lines finish() {
        trail.finish();
        return lines(trail, text.view());
    }

    std::vector<std::uint8_t> data;
    Message m{data};
    Trail trail;
    Text text;
};

TEST(Trail, ValuesHaveTheirBytesAndWordsThoseThatChoseThem) {
    Watched w;
    EXPECT_EQ(w.to_dhs("83 0a"), (Lines{"\t- <0>", "digit dialed '<0-1>", "*<1 digit>", "'<0-1>"}));
    EXPECT_EQ(w.unused(), "");
    EXPECT_EQ(w.from_dhs("35 07 02"), (Lines{"\t- <0>", "cursor on, line <0,2>", "7<1 line>"}));
    EXPECT_EQ(w.from_dhs("2c 05 01 44"),
              (Lines{"\t- metastate option <0>", "5<1 option>", "= <0>", "active<2 option_state>"}));
    EXPECT_EQ(w.unused(), "3");
}

TEST(Trail, BytesMayBeShownOutOfOrder) {
    Watched w;
    // The packet number has its low byte first.
    EXPECT_EQ(w.from_dhs("50 03 12 34 56"),
              (Lines{"\t- download protocol <0>", "data, number: 0x03<0-1>", "3412<2-3 packet_number>"}));
    EXPECT_EQ(w.unused(), "4");
    // The code stands behind the number that it is printed before.
    EXPECT_EQ(w.to_dhs("50 02 01 02 10"),
              (Lines{"\t- download protocol <0>", "refused hard pb<4 acknowledgement>", " (0x<0-1>",
                     "10<4 acknowledgement_code>", "), number: 0x<0-1>", "0102<2-3 packet_number>"}));
}

TEST(Trail, UnusedBytesAreTheRunsBetween) {
    Watched w;
    // A version response of an adapter shows bytes 2 and 3 and asks byte 1; the first byte is its opcode.
    EXPECT_EQ(w.to_dhs("21 01 02 05 06 07"),
              (Lines{"\t- <0>", "version response  TA,   soft=<0-1>", "2.05<2-3 software_version>"}));
    EXPECT_EQ(w.unused(), "4-5");
    EXPECT_EQ(w.from_dhs("33 01 02 03 04 05 06"), (Lines{"\t- <0>", "external ringer on<0-1>"}));
    EXPECT_EQ(w.unused(), "2-6");
    // Bytes 1 and 2 of a display line are not shown.
    EXPECT_EQ(w.from_dhs("27 01 02 41 42"),
              (Lines{"\t- <0>", "write line 1<0 line>", " \"<0>", "AB<3-4 display_text>", "\"\n<0>"}));
    EXPECT_EQ(w.unused(), "1-2");
}

TEST(Trail, AByteBehindTheEndIsSaid) {
    Watched w;
    EXPECT_EQ(w.to_dhs("03"), (Lines{"\t- <0>", "digit dialed '<0E>", "0<E digit>", "'<0E>"}));
    const auto& missing = w.trail.messages().front().missing;
    ASSERT_FALSE(missing.empty());
    for (const ByteRange& r : missing) EXPECT_EQ(r, (ByteRange{1, 1}));
    EXPECT_EQ(w.from_dhs("35 02"), (Lines{"\t- <0>", "cursor off, line <0E>", "2<1 line>"}));
    EXPECT_EQ(w.trail.messages().front().missing, (std::vector<ByteRange>{{2, 2}}));
}

TEST(Trail, PartsOfASuperMessageCountInTheWholeMessage) {
    Watched w;
    const Lines found = w.to_dhs("0b 02 03 05 01 01");
    EXPECT_EQ(w.text,
              "\t- super message:\n"
              "\t> zt 02 00 03 05\n\t- digit dialed '5'\n"
              "\t> zt 01 00 01\n\t- handset off hook\n");
    EXPECT_EQ(found, (Lines{"\t- super message:\n<0>", "\t> zt <0-1>", "02<1 part_length>", " 00<0-1>",
                            " 03 05<2-3 part_bytes>", "\n<0-1>", "\t- <2>", "digit dialed '<2-3>",
                            "5<3 digit>", "'<2-3>", "\n<2>", "\t> zt <0,4>", "01<4 part_length>", " 00<0,4>",
                            " 01<5 part_bytes>", "\n<0,4>", "\t- handset off hook\n<5>"}));
    EXPECT_EQ(w.unused(), "");
    ASSERT_EQ(w.trail.messages().size(), 3U);
    EXPECT_EQ(w.trail.messages()[0].name, "super_message");
    EXPECT_EQ(w.trail.messages()[1].name, "digit_dialled");
    EXPECT_EQ(w.trail.messages()[1].origin, 2U);
    EXPECT_EQ(w.trail.messages()[1].length, 2U);
    EXPECT_EQ(w.trail.messages()[2].name, "off_hook");
    EXPECT_EQ(w.trail.messages()[2].carrier, 0U);
    // The lengths say where the others stand.
    ASSERT_EQ(w.trail.walked().size(), 2U);
    EXPECT_EQ(w.trail.walked()[0].bytes, (ByteRange{1, 1}));
    EXPECT_EQ(w.trail.walked()[0].begin, 18U);
    EXPECT_EQ(w.trail.walked()[1].bytes, (ByteRange{4, 4}));
}

TEST(Trail, PartsWithTwoLengthBytes) {
    Watched w;
    EXPECT_EQ(w.to_dhs("17 01 00 01 02 00 03 05"),
              (Lines{"\t- super message, type 2:\n<0>", "\t> zt <0-2>", "01<1-2 part_length>", " 00<0-2>",
                     " 01<3 part_bytes>", "\n<0-2>", "\t- handset off hook<3>", "\t> zt <0,4-5>",
                     "02<4-5 part_length>", " 00<0,4-5>", " 03 05<6-7 part_bytes>", "\n<0,4-5>", "\t- <6>",
                     "digit dialed '<6-7>", "5<7 digit>", "'<6-7>"}));
}

// The HE link drops its three routing bytes before the message is decoded.
TEST(Trail, DroppedBytesAreCountedAlong) {
    Watched w;
    // Opcode 33 is none of the HE link's: the digital set's version response, without the text that HE had
    // for it.
    const Lines found = w.to_dhs("05 01 02 21 01 02 05");
    EXPECT_EQ(w.text, "\t- [HE: desktop -> telephony]\t- version response  TA,   soft=2.05");
    ASSERT_GE(found.size(), 7U);
    EXPECT_EQ(Lines(found.begin(), found.begin() + 5),
              (Lines{"\t- [HE:<0>", " desktop<2 sender>", " -><0>", " telephony<1 receiver>", "]<0>"}));
    EXPECT_EQ(Lines(found.end() - 2, found.end()),
              (Lines{"version response  TA,   soft=<3-4>", "2.05<5-6 software_version>"}));
    EXPECT_EQ(w.unused(), "");
}

TEST(Trail, ReassembledMessagesAreMarked) {
    Watched w;
    w.trail.place = 11;
    EXPECT_EQ(w.from_dhs("0c 81 00 03 21"),
              (Lines{"\t- <0>", "segment message <0-1>", "1<1 segment>", "/<0-1>", "2<1 segments>"}));
    EXPECT_EQ(w.unused(), "");
    w.trail.place = 17;
    const Lines found = w.from_dhs("0c 00 01 09 77");
    EXPECT_EQ(w.text, "\t- segment message 2/2\n\t- red led 9 ON");
    EXPECT_EQ(found, (Lines{"\t- <0>", "segment message <0-1>", "2<1 segment>", "/<0-1>", "2< segments>",
                            "\n<0-1>", "\t- <0R>", "red led <0-1R>", "9<2R led>", " ON<0-1R>"}));
    EXPECT_EQ(w.decoding.output, "21 00 00 21 01 09 ");
    EXPECT_EQ(w.unused(), "");
    ASSERT_EQ(w.trail.messages().size(), 2U);
    EXPECT_EQ(w.trail.messages()[1].bytes, bytes("21 01 09"));
    EXPECT_EQ(w.trail.messages()[1].segments, (std::vector<std::uint64_t>{11, 17}));
}

TEST(Trail, ReassembledMessagesUseNoByteOfTheirSegment) {
    Written w("00 01 02 03 04 05");
    const auto whole_bytes = bytes("0a 0b 0c");
    const Message whole(whole_bytes);
    w.trail.test(w.m, {0, 1});
    w.text.add("segment");
    w.trail.enter_reassembled(whole, {});
    w.trail.test(whole, {1, 2});
    w.text.add("whole");
    w.trail.leave_message();
    w.trail.test(w.m, {3, 1});
    w.text.add("behind");
    EXPECT_EQ(w.finish(), (Lines{"segment<0>", "whole<1-2R>", "behind<0,3>"}));
    EXPECT_EQ(shown(w.trail.unused()), "1-2,4-5");
}

TEST(Trail, CarriedMessagesCountInTheMessageOfTheirCarrier) {
    Written w("00 01 02 03 04 05");
    w.trail.test(w.m, {0, 1});
    w.text.add("carrier");
    const Message carried = w.m.part(2, 3);
    w.trail.enter_message(carried);
    w.text.add("nothing asked");
    w.trail.test(carried, {1, 1});
    w.text.add("asked");
    const Message inside = carried.part(2, 1);
    w.trail.enter_message(inside);
    w.trail.test(inside, {0, 2});
    w.text.add("inside");
    w.trail.leave_message();
    w.trail.leave_message();
    w.text.add("behind");
    EXPECT_EQ(w.finish(), (Lines{"carrier<0>", "nothing asked<>", "asked<3>", "inside<4E>", "behind<0>"}));
    ASSERT_EQ(w.trail.messages().size(), 3U);
    EXPECT_EQ(w.trail.messages()[2].carrier, 1U);
    EXPECT_EQ(w.trail.messages()[2].origin, 4U);
    EXPECT_EQ(w.trail.messages()[2].missing, (std::vector<ByteRange>{{1, 1}}));
    EXPECT_EQ(w.trail.messages()[1].begin, 7U);
    EXPECT_EQ(w.trail.messages()[1].end, 31U);
}

// What a record has left behind a shortened message stood elsewhere before.
TEST(Trail, LeftBytesAreMissing) {
    Written w("00 01 02 03 04 05");
    const Message carried = w.m.part(1, 4);
    w.trail.enter_message(carried);
    const Message rest = carried.without_first(2);
    ASSERT_EQ(rest[2], 3);  // byte 3 of the captured one, though 5 counts as far from the beginning
    const Message left = rest.with_length(3);
    w.trail.enter_message(left);
    w.trail.test(left, {1, 2});
    w.text.add("left");
    w.trail.leave_message();
    w.trail.leave_message();
    EXPECT_EQ(w.finish(), (Lines{"left<4E>"}));
}

TEST(Trail, OffsetsCountFromWhereTheTextStood) {
    const auto data = bytes("03 05");
    Session session;
    Trail trail;
    session.trail = &trail;
    Text out;
    out.add("something before ");
    Message m(data);
    m.direction = to_dhs;
    ASSERT_EQ(decode(session, m, out), Outcome::decoded);
    EXPECT_EQ(out.view(), "something before \t- digit dialed '5'");
    EXPECT_EQ(lines(trail, out.view().substr(17)),
              (Lines{"\t- <0>", "digit dialed '<0-1>", "5<1 digit>", "'<0-1>"}));
    EXPECT_EQ(trail.stretches()[0].begin, 0U);
    EXPECT_EQ(trail.stretches()[3].end, 19U);
    EXPECT_EQ(trail.messages()[0].begin, 0U);
    EXPECT_EQ(trail.messages()[0].end, 19U);
}

TEST(Trail, EachMessageStartsAnew) {
    Watched w;
    w.to_dhs("03 05");
    EXPECT_EQ(w.to_dhs("01"), (Lines{"\t- handset off hook<0>"}));
    EXPECT_EQ(w.to_dhs(""), Lines{});
    EXPECT_EQ(w.text, "");
}

TEST(Trail, TestsCountUntilTheirScopeEnds) {
    Written w("00 01 02 03");
    w.trail.test(w.m, {0, 1});
    const std::size_t scope = w.trail.scope();
    w.trail.test(w.m, {3, 1});
    w.text.add("both");
    w.trail.test(w.m, {1, 1});
    w.text.add("three");
    w.trail.end_scope(scope);
    w.text.add("one");
    EXPECT_EQ(w.finish(), (Lines{"both<0,3>", "three<0-1,3>", "one<0>"}));
}

TEST(Trail, ATextThatBecameShorterHasShorterStretches) {
    Written w("00 01 02 03");
    w.words("one", {0, 1});
    w.value("led", "two", {1, 1});
    w.words("gone", {2, 1});
    w.text.cut(4);
    w.trail.look_at_cut();
    w.words("three", {3, 1});
    EXPECT_EQ(w.finish(), (Lines{"one<0>", "t<1 led>", "three<3>"}));
    ASSERT_EQ(w.trail.values().size(), 1U);
    EXPECT_EQ(w.trail.values()[0].end, 4U);
}

TEST(Trail, AMessageWhoseTextIsCutEndsThere) {
    Written w("00 01 02 03");
    w.text.add("abc");
    const Message carried = w.m.part(1, 2);
    w.trail.enter_message(carried);
    w.text.add("defg");
    const Message inside = carried.part(1, 1);
    w.trail.enter_message(inside);
    w.text.add("hi");
    w.trail.leave_message();
    w.trail.leave_message();
    w.text.cut(5);
    w.trail.look_at_cut();
    w.text.add("!");
    EXPECT_EQ(w.finish(), (Lines{"abc<>", "de<>", "!<>"}));
    EXPECT_EQ(w.trail.messages()[0].end, 6U);
    EXPECT_EQ(w.trail.messages()[1].begin, 3U);
    EXPECT_EQ(w.trail.messages()[1].end, 5U);
    EXPECT_EQ(w.trail.messages()[2].begin, 5U);
    EXPECT_EQ(w.trail.messages()[2].end, 5U);
}

TEST(Trail, TheValueOfAPhraseIsAPartOfIt) {
    TestSession decoding;
    Trail trail;
    decoding.session().trail = &trail;
    const std::vector<std::uint8_t> data = bytes("1f 00");
    const Message m(data);
    Text text;
    trail.start(text, m);
    Decoding d(decoding.session(), m, text);
    add_phrase(d, "reset_kind", either(d[1] == 0, " hard reset ", " soft reset "), " ", " reset ");
    add_phrase(d, "reset_kind", either(d[1] == 1, "kind: hard", "kind: soft"), "kind: ");
    trail.finish();
    EXPECT_EQ(lines(trail, text.view()),
              (Lines{" <>", "hard<1 reset_kind>", " reset kind: <>", "soft<1 reset_kind>"}));
}

TEST(Trail, NotesOfAPieceCanStandElsewhere) {
    Written w("00 01 02 03");
    w.words("ab", {0, 1});
    w.value("led", "7", {1, 1});
    w.words("cd", {2, 1});
    const Trail::Notes notes = w.trail.notes(1, 4);
    w.text.cut(0);
    w.trail.look_at_cut();
    w.text.add("b7c");
    w.trail.put(notes, 0);
    w.text.add("X");
    w.text.add("b7c");
    w.trail.put(notes, 4);
    w.text.add("Y");
    EXPECT_EQ(w.finish(), (Lines{"b<0>", "7<1 led>", "c<2>", "X<>", "b<0>", "7<1 led>", "c<2>", "Y<>"}));
    ASSERT_EQ(w.trail.values().size(), 2U);
    EXPECT_EQ(w.trail.values()[0].begin, 1U);
    EXPECT_EQ(w.trail.values()[1].begin, 5U);
    EXPECT_EQ(w.trail.values()[1].end, 6U);
}

TEST(Trail, MessagesMoveWithTheNotesOfTheirText) {
    Written w("00 01 02 03 04 05");
    w.words("head", {0, 1});
    const Message first = w.m.part(1, 2);
    w.trail.enter_message(first);
    w.text.add("gone");
    w.trail.leave_message();
    w.words("mid", {0, 1});
    const Message second = w.m.part(3, 2);
    w.trail.enter_message(second);
    w.trail.walk(second, {1, 1});
    w.text.add("kept");
    w.trail.leave_message();
    const Trail::Notes notes = w.trail.notes(11, 15);
    w.text.cut(4);
    w.trail.look_at_cut();
    w.text.add("kept");
    w.trail.put(notes, 4);
    EXPECT_EQ(w.finish(), (Lines{"head<0>", "kept<4>"}));
    EXPECT_EQ(w.trail.stretches()[1].message, 2U);
    EXPECT_EQ(w.trail.messages()[0].end, 8U);
    EXPECT_EQ(w.trail.messages()[1].begin, 4U);
    EXPECT_EQ(w.trail.messages()[1].end, 4U);
    EXPECT_EQ(w.trail.messages()[2].begin, 4U);
    EXPECT_EQ(w.trail.messages()[2].end, 8U);
    ASSERT_EQ(w.trail.walked().size(), 1U);
    EXPECT_EQ(w.trail.walked()[0].begin, 4U);
}

TEST(Trail, OfNothingIsNothing) {
    const auto data = bytes("00 01 02 03 04");
    const Message m(data);
    Text text;
    Trail trail;
    trail.start(text, m);
    trail.finish();
    EXPECT_TRUE(trail.stretches().empty());
    trail.start(text, m);
    trail.test(m, {3, 1});
    trail.finish();
    EXPECT_TRUE(trail.stretches().empty());
    EXPECT_EQ(shown(trail.unused()), "0-4");
    EXPECT_EQ(trail.messages().size(), 1U);
}

// Stretches lie one behind the other, inside the text, and their bytes ascend.
void expect_in_order(const Trail& trail, std::size_t text_size, const std::string& what) {
    std::size_t end = 0;
    for (const Stretch& s : trail.stretches()) {
        EXPECT_EQ(s.begin, end) << what;
        EXPECT_LT(s.begin, s.end) << what;
        end = s.end;
        const auto ranges = trail.bytes_of(s);
        for (std::size_t i = 0; i < ranges.size(); ++i) {
            EXPECT_LE(ranges[i].first, ranges[i].last) << what;
            if (i > 0) {
                EXPECT_GT(ranges[i].first, ranges[i - 1].last + 1) << what;
            }
        }
    }
    EXPECT_EQ(end, text_size) << what;
    for (const NotedMessage& m : trail.messages()) {
        EXPECT_LE(m.begin, m.end) << what;
        EXPECT_LE(m.end, text_size) << what;
    }
}

// What stands behind a zero byte inside a piece is not shown, and the next piece follows.
TEST(Trail, StretchesEndWithTheTextAtAZeroByte) {
    const auto data = bytes("41 00 42");
    const Message m(data);
    Session session;
    Trail trail;
    session.trail = &trail;
    Text out;
    trail.start(out, m);
    {
        Decoding d(session, m, out);
        {
            const Decoding::Piece piece(d);
            d.text("display_text", 0, 3);
            d.add("behind");
        }
        d.print("!{key:02x}"_cf, d[2]);
    }
    trail.finish();
    EXPECT_EQ(out.view(), "A!42");
    EXPECT_EQ(lines(trail, out.view()), (Lines{"A<0-2 display_text>", "!<>", "42<2 key>"}));

    Watched w;
    for (const char* hex :
         {"0b 08 15 02 84 00 07 37 01 ee 02 0f 09", "17 08 00 15 02 84 00 07 37 01 ee 01 00 2a",
          "14 10 15 02 84 00 07 37 04 41 ee 00 80", "0c 80 00 08 15 02 84 00 07 37 01 ee",
          "0b 04 15 04 02 ee 05 16 04 02 41 c4", "15 02 84 00 07 37 04 41 ee 00 80 26 01 05"}) {
        for (const std::uint32_t direction : {from_dhs, to_dhs}) {
            const std::string text = w.decoding.decode(hex, direction);
            EXPECT_EQ(text, TestSession().decode(hex, direction));
            EXPECT_EQ(text.find('\0'), std::string::npos);
            expect_in_order(w.trail, text.size(), hex);
        }
    }
}

std::string random_message(std::mt19937& random, int type) {
    std::string hex = formatted("{-:02x}"_cf, static_cast<std::uint8_t>(type));
    for (auto n = random() % 40; n > 0; --n) {
        hex += formatted(" {-:02x}"_cf,
                         static_cast<std::uint8_t>(random() % 3 != 0 ? random() % 16 : random() % 256));
    }
    return hex;
}

TEST(Trail, TextsAreTheSameWithAndWithout) {
    std::mt19937 random(77);  // NOLINT: the same every time
    TestSession plain;
    Watched watched;
    for (int type = 0; type < 256; ++type) {
        for (int i = 0; i < 40; ++i) {
            const std::string hex = random_message(random, type);
            const std::uint32_t direction = random() % 2 == 0 ? from_dhs : to_dhs;
            const std::string expected = plain.decode(hex, direction);
            EXPECT_EQ(watched.decoding.decode(hex, direction), expected) << hex;
            EXPECT_EQ(watched.decoding.outcome, plain.outcome) << hex;
            expect_in_order(watched.trail, expected.size(), hex);
        }
    }
    EXPECT_EQ(watched.decoding.output, plain.output);
    EXPECT_EQ(watched.decoding.error, plain.error);
}

// Texts of thousands of values have no more stretches than can be shown.
TEST(Trail, TheRestOfALongTextIsOneStretch) {
    Written w("00 01 02 03");
    for (std::uint32_t k = 0; k < Trail::most_stretches + 1000; ++k) w.value("key", "2a", {k % 4, 1});
    w.trail.finish();
    ASSERT_EQ(w.trail.stretches().size(), Trail::most_stretches + 1);
    const Stretch& last = w.trail.stretches().back();
    EXPECT_EQ(last.begin, 2 * Trail::most_stretches);
    EXPECT_EQ(last.end, w.text.size());
    EXPECT_EQ(last.value, Stretch::no_value);
    EXPECT_EQ(w.trail.values().size(), Trail::most_stretches);

    // Neither have those that are put there.
    const Trail::Notes notes = w.trail.notes(0, 8);
    const std::size_t end = w.text.size();
    w.text.add("2a2a2a2a");
    w.trail.put(notes, end);
    EXPECT_EQ(w.trail.stretches().size(), Trail::most_stretches + 1);
    EXPECT_EQ(w.trail.stretches().back().end, w.text.size());
    EXPECT_EQ(w.trail.values().size(), Trail::most_stretches);
}

}  // namespace
}  // namespace ztdecode::testing
