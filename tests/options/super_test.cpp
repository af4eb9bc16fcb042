#include "digital/options/super.hpp"

#include <random>
#include <set>

#include "fuzz/bounds.hpp"
#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

std::string lines(std::string_view line, int n) {
    std::string result;
    while (n-- > 0) result += line;
    return result;
}

std::string hex(const std::vector<std::uint8_t>& data) {
    Text text;
    for (const std::uint8_t byte : data) text.print("{-:02x} "_cf, byte);
    return std::string(text.view());
}

std::string drop_error(std::uint32_t asked, std::uint32_t there) {
    return formatted("decalage incorrect: demandé: {-}, disponible: {-}\n"_cf, asked, there);
}

// "LENGTH: B0 B1 ..." of each part, with `extra` bytes behind its end.
std::vector<std::string> parts_of(std::string_view hex, std::size_t extra = 0) {
    const auto data = bytes(hex);
    const Message m(data);
    TestSession d;
    Text out;
    struct Parts {
        std::vector<std::string> texts;
        std::size_t extra;
    } parts{{}, extra};
    const auto note = [](Decoding& part, void* host) {
        auto& noted = *static_cast<Parts*>(host);
        std::string text = formatted("{-}:"_cf, part.length());
        for (std::size_t k = 0; k < part.length() + noted.extra; ++k) {
            text += formatted(" {-:02x}"_cf, part[k]);
        }
        noted.texts.push_back(text);
    };
    Decoding decoding(d.session(), m, out);
    modules::super_message(decoding, note, &parts);
    return parts.texts;
}

TEST(SubSuper, HandsOverEachPartAsAMessageOfItsOwn) {
    EXPECT_EQ(parts_of("04 2a 0b 02 01 05 01 03"),
              (std::vector<std::string>{"4: 0b 02 01 05", "3: 05 01 03"}));
    EXPECT_EQ(parts_of("02 10 8b 01 0e 03 0c 85 00 01 20"),
              (std::vector<std::string>{"3: 8b 01 0e", "5: 0e 03 0c 85 00", "3: 00 01 20"}));
}

TEST(SubSuper, PartOfLength0ReadsItsOpcodeBehindItsEnd) {
    EXPECT_EQ(parts_of("04 2a 0b 00"), (std::vector<std::string>{"2: 0b 00"}));
    EXPECT_EQ(parts_of("04 2a 0b 00", 2), (std::vector<std::string>{"2: 0b 00 00 00"}));
    expect_texts(z::from_system,
                 {{"02 2a 0b 00", "super message\n\t\t- nop\n"},
                  {"02 2a 0b 00 01 0e", "super message\n\t\t- ?? <01>\n\t\t- version inquiry\n"}});
}

// What `decale` leaves behind the shortened copies: 1 byte once, then one of each dropped part.
TEST(SubSuper, PartsSeeTheBytesThatStayedBehindTheEnd) {
    EXPECT_EQ(
        parts_of("04 2a 0b 02 01 05 01 03", 6),
        (std::vector<std::string>{"4: 0b 02 01 05 01 03 03 03 00 00", "3: 05 01 03 03 05 01 03 03 00"}));
}

TEST(SubSuper, WritesALineForEachPart) {
    expect_texts(z::from_system,
                 {{"02 2a 0b 02 01 05 01 03", "super message\n\t\t- ?? <01>\n\t\t- software reset\n"},
                  {"02 2a 0b 02 29 06 02 4a 00 01 25",
                   "super message\n"
                   "\t\t- voice mode ringing\n"
                   "\t\t- audio padded path: analog gain\n"
                   "\t\t- disable dtmf\n"}});
    expect_texts(mpc::to_system, {{"04 10 0b 01 20 02 27 07 05 1f 00 01 02 03",
                                   "super message\n"
                                   "\t\t- I'm here\n"
                                   "\t\t- anomalie soft 7\n"
                                   "\t\t- reset hard mpc  soft=2.03\n"}});
    expect_texts(mpc::from_system, {{"02 10 0b 02 0c 81 02 0c 00",
                                     "super message\n"
                                     "\t\t- segment message debut, reste 1 messages\n"
                                     "\t\t- segment message suite, reste 0 messages\n"}});
    expect_texts(eak::from_system, {{"02 23 0b 02 41 01 01 46",
                                     "super message\n\t\t- key release config = on\n\t\t- all icons off\n"}});
    expect_texts(ks::from_system, {{"02 4a 0b 02 01 02 01 69",
                                    "super message\n\t\t- production testend\n\t\t- write EEPROM\n"}});
}

TEST(SubSuper, CountOf0Or1Or2EndsIt) {
    // Count 4 less 2, 3 and 4.
    expect_texts(z::from_system, {{"02 2a 0b 01 0e", "super message\n\t\t- version inquiry\n"},
                                  {"02 2a 0b 02 0e", "super message\n\t\t- version inquiry\n"},
                                  {"02 2a 0b 03 0e", "super message\n\t\t- version inquiry\n"}});
}

TEST(SubSuper, LengthBehindTheEndWalksOnOverTheEmptyCopy) {
    // Count 4: less 6 is 254, then 21 times less 12 down to 2. The empty copy stays at 2a 0b 05: length 0b,
    // opcode 05.
    TestSession d;
    EXPECT_EQ(d.with(z::from_system, "02 2a 0b 05 03"),
              "super message\n\t\t- software reset\n" + lines("\t\t- ?? <05>\n", 21));
    EXPECT_EQ(d.error, drop_error(6, 4) + lines(drop_error(1, 0) + drop_error(12, 0), 21));
}

TEST(SubSuper, CountThatNeverGetsDownEndsWhereItBegan) {
    // Count 4 less 9 is 251; taking 12 off 64 times leads back to it.
    TestSession d;
    EXPECT_EQ(d.with(z::from_system, "02 2a 0b 08 03"),
              "super message\n\t\t- software reset\n" + lines("\t\t- ?? <08>\n", 64));
    // Length 255 behind the empty copy's first byte: the count stays as it is.
    EXPECT_EQ(d.with(z::from_system, "02 2a 0b 02 00 ff 09"),
              "super message\n\t\t- nop\n\t\t- ?? <09>\n\t\t- ?? <09>\n");
}

TEST(SubSuper, CountHasEightBits) {
    // 258 bytes behind the first count as 2: one part.
    std::vector<std::uint8_t> data(259, 0);
    data[2] = 0x0B;
    TestSession d;
    Text out;
    decode_message(z::from_system, d, Message(data), out);
    EXPECT_EQ(out.view(), "super message\n\t\t- nop\n");
    // One more counts as 3: a part of length 0 leaves 2.
    data.push_back(0);
    out.clear();
    decode_message(z::from_system, d, Message(data), out);
    EXPECT_EQ(out.view(), "super message\n\t\t- nop\n");
    data.push_back(0);
    out.clear();
    decode_message(z::from_system, d, Message(data), out);
    EXPECT_EQ(out.view(), "super message\n\t\t- nop\n\t\t- nop\n");
    EXPECT_EQ(d.error, "");
}

TEST(SubSuper, MessageWithoutAnyPartHasALine) {
    TestSession d;
    Text out;
    const Message m(nullptr, 0, 0);
    Decoding decoding(d.session(), m, out);
    modules::super_message(decoding, [](Decoding& part) { part.print("{-}"_cf, part.length()); });
    // Count 0 less 1 is 255, and so on down to 2.
    EXPECT_EQ(out.view(), "super message\n" + lines("\t\t- 2\n", 254));
    EXPECT_EQ(d.error, drop_error(1, 0) + lines(drop_error(1, 0) + drop_error(1, 0), 254));
}

TEST(SubSuper, InnerTextStandsInPlaceOfTheOuterOneAndThenAgain) {
    expect_texts(mpc::from_system, {{"02 10 0b 01 0e 03 0b 01 00 01 20",
                                     "super message\n\t\t- nop\n"
                                     "super message\n\t\t- nop\n\n"
                                     "\t\t- are you there?\n"},
                                    // The later one replaces the earlier one and what followed it.
                                    {"02 10 0b 03 0b 01 00 01 20 03 8b 01 11 01 12",
                                     "super message\n\t\t- ABC-A\n"
                                     "super message\n\t\t- ABC-A\n\n"
                                     "\t\t- TAPI\n"},
                                    {"02 10 0b 07 0b 03 0b 01 21 01 22",
                                     "super message\n\t\t- pabx type\n"
                                     "super message\n\t\t- pabx type\n\n"
                                     "\t\t- terminal type\n"
                                     "super message\n\t\t- pabx type\n"
                                     "super message\n\t\t- pabx type\n\n"
                                     "\t\t- terminal type\n\n"}});
}

TEST(SubSuper, InnerTextInAnEmulatedMessageStandsInPlaceOfTheOuterOneToo) {
    expect_texts(mpc::to_system, {{"04 10 0b 01 21 06 26 04 10 0b 01 20 01 22",
                                   "super message\n"
                                   "\t\t- I'm here\n"
                                   "VTA emulation: [opt mac/pc adr 0] super message\n"
                                   "\t\t- I'm here\n\n"
                                   "\t\t- disconnection detected\n"}});
}

TEST(SubSuper, EmulationsInPartsEndWithTheirLine) {
    expect_texts(mpc::to_system, {{"04 10 26 04 11 0b 02 26 22 01 20",
                                   "VTA emulation: [opt mac/pc adr 1] super message\n"
                                   "\t\t- VTA emulation: I'm here\n"
                                   "\t\t- I'm here\n"},
                                  {"04 10 26 04 11 0b 05 26 04 12 26 22 02 26 01",
                                   "VTA emulation: [opt mac/pc adr 1] super message\n"
                                   "\t\t- VTA emulation: [opt mac/pc adr 2] VTA emulation: I'm here\n"
                                   "\t\t- VTA emulation: handset off hook\n"}});
}

// A message that was cut off behind its opcode: the opcode is the length, and the byte behind it the opcode.
TEST(SubSuper, CutOffMessageIsOneInsideItself) {
    const std::string inner = "super message\n" + lines("\t\t- nop\n", 10);
    TestSession d;
    EXPECT_EQ(d.with(mpc::from_system, "02 10 0b"), inner + inner + "\n");
}

std::vector<std::uint8_t> nested(int depth) {
    std::vector<std::uint8_t> body = {0x0B, 0x01, 0x00};
    while (--depth > 0) {
        body.insert(body.begin(), {0x0B, static_cast<std::uint8_t>(body.size())});
    }
    body.insert(body.begin(), {0x02, 0x10});
    return body;
}

TEST(SubSuper, IsFollowed12Deep) {
    std::string expected = "super message\n\t\t- nop\n";
    std::string cut_off = "super message\n";
    for (int depth = 1; depth <= 20; ++depth) {
        TestSession d;
        Text out;
        const auto data = nested(depth);
        decode_message(eak::from_system, d, Message(data), out);
        if (depth <= 12) {
            EXPECT_EQ(out.view(), expected) << depth;
            expected += expected + "\n";
            cut_off += cut_off + "\n";
        } else {
            // The thirteenth shows its heading alone, twelve times doubled.
            EXPECT_EQ(out.view(), cut_off) << depth;
        }
        EXPECT_EQ(d.session().carrying.module_super.depth, 0U);
        EXPECT_EQ(d.error, "");
    }
}

// A second opinion: real records whose bytes are moved, and one text for all.
class PlainWalk {
  public:
    struct Record {
        std::vector<std::uint8_t> data;
        std::uint32_t length;
    };

    PlainWalk(TestSession& d, Decoder decoder) : d_(d), decoder_(decoder) {}

    const std::string& text_of(std::span<const std::uint8_t> message, std::size_t capacity) {
        Record record{{message.begin(), message.end()}, static_cast<std::uint32_t>(message.size())};
        record.data.resize(capacity);
        walk(record, 1);
        return text_;
    }
    // Too many parts to go on with.
    bool given_up() const { return parts_ > 300000; }
    std::string errors;

  private:
    void drop(Record& record, std::uint32_t n) {
        if (record.length < n) {
            errors += drop_error(n, record.length);
            record.length = 0;
            return;
        }
        record.length -= n;
        for (std::uint32_t k = 0; k < record.length; ++k) record.data[k] = record.data[k + n];
    }

    void walk(const Record& record, int depth) {
        text_ = "super message\n";
        if (depth > 12) return;
        Record rest = record;
        drop(rest, 1);
        int count = static_cast<int>(rest.length % 256);
        std::set<int> counts_when_empty;
        do {
            if (++parts_, given_up()) return;
            Record part = rest;
            drop(part, 1);
            const std::uint32_t length = part.data[1];
            part.length = length + 2;
            text_ += "\t\t- ";
            const std::string described = describe(part, depth);
            text_ += described + "\n";
            drop(rest, length + 1);
            count = (count - static_cast<int>(length) - 1 + 512) % 256;
            if (rest.length == 0 && !counts_when_empty.insert(count).second) return;
        } while (count > 2);
    }

    std::string describe(const Record& part, int depth) {
        if ((part.data[2] & 0x7F) == 0x0B) {
            walk(part, depth + 1);
            return text_;
        }
        Text out;
        decode_message(decoder_, d_, Message(part.data.data(), part.length, part.data.size()), out);
        return std::string(out.view());
    }

    TestSession& d_;
    Decoder decoder_;
    std::string text_;
    int parts_ = 0;
};

// False when the plain walk gave up.
bool agrees_with_plain_walk(Decoder decoder, const std::vector<std::uint8_t>& data, std::size_t capacity) {
    TestSession d;
    PlainWalk plain(d, decoder);
    const std::string expected = plain.text_of(data, capacity);
    if (plain.given_up()) return false;
    Text out;
    {
        const Captured captured(d.session(), out);
        decode_message(decoder, d, Message(data), out);
    }
    EXPECT_EQ(out.view(), expected) << hex(data);
    if (plain.errors.size() <= Carrying::most_complaints) {
        EXPECT_EQ(d.error, plain.errors) << hex(data);
    } else {
        EXPECT_TRUE(plain.errors.starts_with(d.error));
        EXPECT_LE(d.error.size(), Carrying::most_complaints);
    }
    return true;
}

constexpr std::array<Decoder, 4> splitting_decoders = {z::from_system, mpc::from_system, eak::from_system,
                                                       ks::from_system};

// A sanitizer takes its time: then some tests take every 5th.
constexpr unsigned step = fuzz::sanitized ? 5 : 1;

TEST(SubSuper, EveryLengthByteAgreesWithThePlainWalk) {
    for (const Decoder decoder : {z::from_system, ks::from_system}) {
        for (unsigned length = 0; length < 256; length += step) {
            for (const std::string_view tail :
                 {"", "00", "0e", "01 0e", "0e 01", "0e 02 29 06", "0b 03 03 03", "0b 0b 0b", "8b 01 00 02",
                  "41 0b 41 0b 41 0b ff"}) {
                const auto data = bytes(formatted("02 2a 0b {-:02x} {-}"_cf, length, tail));
                EXPECT_TRUE(agrees_with_plain_walk(decoder, data, 600));
            }
        }
    }
}

TEST(SubSuper, AnyBytesAgreeWithThePlainWalk) {
    std::mt19937 random(20);  // NOLINT: the same every time
    constexpr std::array<std::uint8_t, 8> likely = {0x0B, 0x00, 0x01, 0x02, 0x03, 0x0E, 0x41, 0x29};
    int compared = 0;
    for (int run = 0; run < 2000; ++run) {
        std::vector<std::uint8_t> data(3 + random() % 40);
        for (auto& byte : data) {
            byte = random() % 3 == 0 ? likely[random() % likely.size()] : static_cast<std::uint8_t>(random());
        }
        data[2] = 0x0B;
        const auto decoder = splitting_decoders[random() % splitting_decoders.size()];
        compared += static_cast<int>(agrees_with_plain_walk(decoder, data, 600));
    }
    EXPECT_GT(compared, 1900);
}

TEST(SubSuper, LongMessagesAgreeWithThePlainWalk) {
    std::mt19937 random(21);  // NOLINT: the same every time
    for (int run = 0; run < 30; ++run) {
        std::vector<std::uint8_t> data(200 + random() % 4900);
        for (auto& byte : data) byte = static_cast<std::uint8_t>(random() % 4);
        data[2] = 0x0B;
        EXPECT_TRUE(agrees_with_plain_walk(ks::from_system, data, message_capacity));
    }
}

// Super messages that overlap lead through one another again and again.
TEST(SubSuper, OverlappingOnesAreBounded) {
    std::mt19937 random(22);  // NOLINT: the same every time
    for (unsigned run = 0; run < 40; run += step) {
        std::vector<std::uint8_t> data(run < 35 ? 3 + random() % 300 : message_capacity);
        for (auto& byte : data) {
            byte = random() % 3 == 0 ? 0x0B : random() % 2 == 0 ? 0x8B : static_cast<std::uint8_t>(random());
        }
        data[2] = 0x0B;
        TestSession d;
        Text out;
        const Captured captured(d.session(), out);
        decode_message(mpc::to_system, d, Message(data), out);
        EXPECT_LE(out.size(), Carrying::most_text + 300000);
        EXPECT_LE(d.error.size(), Carrying::most_complaints);
        EXPECT_EQ(d.session().carrying.module_super.depth, 0U);
    }
}

// "'TEXT' BYTES of MESSAGE NAME" of each stretch.
std::string stretches(Decoder decoder, std::string_view hex, Trail& trail) {
    const auto data = bytes(hex);
    TestSession d;
    d.session().trail = &trail;
    Text out;
    const Message m(data);
    trail.start(out, m);
    decode_message(decoder, d, m, out);
    trail.finish();
    std::string found;
    for (const Stretch& s : trail.stretches()) {
        found += formatted("'{-}'"_cf, out.view().substr(s.begin, s.end - s.begin));
        for (const ByteRange& r : trail.bytes_of(s)) found += formatted(" {-}-{-}"_cf, r.first, r.last);
        found += formatted(" of {-}"_cf, s.message);
        if (s.value != Stretch::no_value) {
            found += formatted(" {-}"_cf, trail.values()[s.value].name);
            EXPECT_EQ(trail.values()[s.value].begin, s.begin);
            EXPECT_EQ(trail.values()[s.value].end, s.end);
        }
        found += "\n";
    }
    return found;
}

std::string messages(const Trail& trail) {
    std::string found;
    for (const NotedMessage& m : trail.messages()) {
        found += formatted("{-}+{-} {-}-{-} {-}\n"_cf, m.origin, m.length, m.begin, m.end, m.name);
    }
    return found;
}

TEST(SubSuper, PartsAreMessagesThatKeepTheWayBackToTheirBytes) {
    Trail trail;
    EXPECT_EQ(stretches(mpc::from_system, "02 10 0b 01 0e 02 0c 85", trail),
              "'super message\n' 2-2 of 0\n"
              "'\t\t- ' 2-3 of 0\n"
              "'version inquiry' 4-4 of 1\n"
              "'\n' 2-3 of 0\n"
              "'\t\t- ' 2-2 5-5 of 0\n"
              "'segment message ' 6-6 of 2\n"
              "'debut' 7-7 of 2 segment_start\n"
              "', reste ' 6-6 of 2\n"
              "'5' 7-7 of 2 segments_to_come\n"
              "' messages' 6-6 of 2\n"
              "'\n' 2-2 5-5 of 0\n");
    EXPECT_EQ(messages(trail),
              "0+8 0-78 super_message\n"
              "2+3 18-33 version_inquiry\n"
              "4+4 38-77 segment\n");
}

TEST(SubSuper, InnerTextsKeepTheirBytesWhereverTheyStand) {
    Trail trail;
    EXPECT_EQ(stretches(mpc::from_system, "02 10 0b 01 0e 03 0b 01 00 01 20", trail),
              "'super message\n' 6-6 of 2\n"
              "'\t\t- ' 6-7 of 2\n"
              "'nop' 8-8 of 3\n"
              "'\n' 6-7 of 2\n"
              "'super message\n' 6-6 of 2\n"
              "'\t\t- ' 6-7 of 2\n"
              "'nop' 8-8 of 3\n"
              "'\n' 6-7 of 2\n"
              "'\n' 2-2 5-5 of 0\n"
              "'\t\t- ' 2-2 9-9 of 0\n"
              "'are you there?' 10-10 of 4\n"
              "'\n' 2-2 9-9 of 0\n");
    // The text of the first part is gone; the inner super message is where it stands last.
    EXPECT_EQ(messages(trail),
              "0+11 0-64 super_message\n"
              "2+3 0-0 version_inquiry\n"
              "4+5 22-44 super_message\n"
              "6+3 40-43 nop\n"
              "8+3 49-63 are_you_there\n");
}

TEST(SubSuper, ValuesOfInnerTextsStandTwice) {
    Trail trail;
    EXPECT_EQ(stretches(mpc::to_system, "04 10 0b 04 0b 02 27 07", trail),
              "'super message\n' 4-4 of 1\n"
              "'\t\t- ' 4-5 of 1\n"
              "'anomalie soft ' 6-6 of 2\n"
              "'7' 7-7 of 2 anomaly\n"
              "'\n' 4-5 of 1\n"
              "'super message\n' 4-4 of 1\n"
              "'\t\t- ' 4-5 of 1\n"
              "'anomalie soft ' 6-6 of 2\n"
              "'7' 7-7 of 2 anomaly\n"
              "'\n' 4-5 of 1\n"
              "'\n' 2-3 of 0\n");
    ASSERT_EQ(trail.values().size(), 2U);
    EXPECT_EQ(trail.values()[0].begin, 32U);
    EXPECT_EQ(trail.values()[1].begin, 66U);
}

// The length byte of a part whose end was cut off is there, its opcode is not.
TEST(SubSuper, BytesBehindTheEndAreMissing) {
    Trail trail;
    EXPECT_EQ(stretches(z::from_system, "02 2a 0b 00", trail),
              "'super message\n' 2-2 of 0\n"
              "'\t\t- ' 2-3 of 0\n"
              "'nop' of 1\n"
              "'\n' 2-3 of 0\n");
    ASSERT_EQ(trail.stretches().size(), 4U);
    EXPECT_TRUE(trail.stretches()[2].missing);
    EXPECT_FALSE(trail.stretches()[3].missing);
}

}  // namespace
}  // namespace ztdecode::testing
