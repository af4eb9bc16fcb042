#include "decode/line_texts.hpp"

#include <cstdlib>
#include <random>

#include "decode/rows.hpp"

// The readers of trace lines and buffers. Most lines carry a message of one byte: to the system 01 is
// "handset off hook", from it 00 is "nop" and 03 "software reset".

namespace ztdecode::testing {
namespace {

constexpr auto decoded = ReadResult::decoded;
constexpr auto refused = ReadResult::refused;

class Reading {
  public:
    explicit Reading(LineReader::Behind behind = LineReader::Behind::earlier_lines) : reader_(behind) {}

    std::string line(const std::string& text, std::uint32_t direction) {
        return read(LineLayout::line, text, direction);
    }
    std::string line_lng2(const std::string& text, std::uint32_t direction) {
        return read(LineLayout::line_lng2, text, direction);
    }
    std::string line_tzt(const std::string& text, std::uint32_t direction) {
        return read(LineLayout::tagged, text, direction);
    }
    std::string line_spzt(const std::string& text) { return read(LineLayout::spzt, text, 0); }
    std::string line_spzt_lng2(const std::string& text) { return read(LineLayout::spzt_lng2, text, 0); }

    ReadResult result = decoded;
    Switches& switches() { return decoding_.session().switches; }

  private:
    // The line lies in a block of just its size, so that a sanitizer sees a character too far.
    std::string read(LineLayout layout, const std::string& text, std::uint32_t direction) {
        const std::vector<char> block(text.c_str(), text.c_str() + text.size() + 1);
        Text out;
        result = decode_line(decoding_.session(), reader_, Line{block.data(), text.size()}, layout, direction,
                             out);
        return std::string(out.view());
    }

    TestSession decoding_;
    LineReader reader_;
};

struct LineRow {
    std::string line;
    std::string text;
    ReadResult result = decoded;
};

using DirectedReader = std::string (Reading::*)(const std::string&, std::uint32_t);

void expect_lines(DirectedReader reader, std::uint32_t direction, const std::vector<LineRow>& rows) {
    for (const LineRow& row : rows) {
        Reading r;
        EXPECT_EQ((r.*reader)(row.line, direction), row.text) << row.line;
        EXPECT_EQ(r.result, row.result) << row.line;
    }
}

void expect_spzt(const std::vector<LineRow>& rows) {
    for (const auto behind : {LineReader::Behind::earlier_lines, LineReader::Behind::zeros}) {
        for (const LineRow& row : rows) {
            Reading r(behind);
            EXPECT_EQ(r.line_spzt(row.line), row.text) << row.line;
            EXPECT_EQ(r.result, row.result) << row.line;
        }
    }
}

std::string repeated(std::string_view field, std::size_t n) {
    std::string result;
    for (std::size_t i = 0; i < n; ++i) result += field;
    return result;
}

// ---- One length byte

TEST(Line, Decodes) {
    expect_lines(&Reading::line, 1,
                 {{"01 01", "\t- handset off hook"},
                  {"02 03 05", "\t- digit dialed '5'"},
                  {"03 01 02 03", "\t- handset off hook"},
                  {"02 03 0B", "\t- digit dialed '#'"},
                  {"02 03 0b", "\t- digit dialed '#'"}});
    expect_lines(&Reading::line, 0,
                 {{"01 00", "\t- nop"}, {"03 01 02 03", "\t- production test: illegal length"}});
    expect_lines(&Reading::line, 2, {{"01 01", "\t- handset off hook"}});
}

TEST(Line, NobodyLooksBetweenTheFields) {
    expect_lines(&Reading::line, 1,
                 {{"02-03-05", "\t- digit dialed '5'"},
                  {"02\t03x05", "\t- digit dialed '5'"},
                  {"02 03 05 and more", "\t- digit dialed '5'"},
                  {"02 03 05\n", "\t- digit dialed '5'"},
                  {"02 03 05 zz zz", "\t- digit dialed '5'"}});
}

TEST(Line, Refusals) {
    const std::string no_length = "line does not start with length byte";
    expect_lines(&Reading::line, 0,
                 {{"", "line: really too short", refused},
                  {"0", "line: really too short", refused},
                  {"zz", no_length, refused},
                  {"00", no_length, refused},
                  {"00 01", no_length, refused},
                  {"0 ", no_length, refused},
                  {" 01 00", no_length, refused},
                  {"0x01", no_length, refused},
                  {"-1 00", no_length, refused},
                  {"1g 00", no_length, refused},
                  {"100 00", "line: longueur > 256", refused},
                  {"0100 00", "line: longueur > 256", refused},
                  {"ffffffffffffffffffff", "line: longueur > 256", refused},
                  {"01", "line too short: expected: 5, real: 2", refused},
                  {"01 0", "line too short: expected: 5, real: 4", refused},
                  {"03 01 02", "line too short: expected: 11, real: 8", refused},
                  {"ff 00", "line too short: expected: 767, real: 5", refused},
                  {"02 01 xx", "line1: ill formed hex value", refused},
                  {"01 0x", "line1: ill formed hex value", refused},
                  {"01  0", "line1: ill formed hex value", refused},
                  {"02 01  1", "line1: ill formed hex value", refused},
                  {"02 g1 01", "line1: ill formed hex value", refused}});
}

TEST(Line, TakesUpTo255Bytes) {
    Reading r;
    EXPECT_EQ(r.line("ff 18" + repeated(" 41", 254), 0), "\tDBG - " + std::string(254, 'A'));
    EXPECT_EQ(r.line("FF 18" + repeated(" 41", 253), 0), "line too short: expected: 767, real: 764");
    EXPECT_EQ(r.line("100 18" + repeated(" 41", 255), 0), "line: longueur > 256");
}

// A field goes on as long as hexadecimal digits do; a byte keeps the low eight bits.
TEST(Line, LongFields) {
    expect_lines(
        &Reading::line, 1,
        {{"002 03 05", "line1: ill formed hex value", refused},  // two bytes; the first field is " 0"
         {"01 1201", "\t- handset off hook"},
         {"01 ff01", "\t- handset off hook"},
         {"01 123456789abcdef01", "\t- "},           // larger than any number: its low byte is 0xff
         {"01 1122334401", "\t- handset off hook"},  // 40 bits
         {"01 7fffffff01", "\t- handset off hook"},
         {"02 00303", "\t- digit dialed '3'"},  // 0x00303, and 03 at the next field's place
         {"02 0305", "line too short: expected: 8, real: 7", refused},
         {"00000000001 05", "\t- handset off hook"}});  // the message starts at column 3 all the same
}

TEST(Line, TheRecordKeepsTheBytesOfEarlierLines) {
    Reading r;
    EXPECT_EQ(r.line("01 03", 1), "\t- digit dialed '0'");
    EXPECT_EQ(r.line("03 01 07 09", 1), "\t- handset off hook");
    EXPECT_EQ(r.line("01 03", 1), "\t- digit dialed '7'");
    EXPECT_EQ(r.line("01 35", 0), "\t- cursor off, line 7");
    // A line that is refused in its middle has left its first bytes there.
    EXPECT_EQ(r.line("03 03 08 xx", 1), "line1: ill formed hex value");
    EXPECT_EQ(r.line("01 03", 1), "\t- digit dialed '8'");
    // One that is refused before has not.
    EXPECT_EQ(r.line("09 03 04", 1), "line too short: expected: 29, real: 8");
    EXPECT_EQ(r.line("01 03", 1), "\t- digit dialed '8'");
    // The two-byte layout shares the record.
    EXPECT_EQ(r.line_lng2("02 00 03 04", 1), "\t- digit dialed '4'");
    EXPECT_EQ(r.line("01 03", 1), "\t- digit dialed '4'");
    EXPECT_EQ(r.line("02 03 06", 1), "\t- digit dialed '6'");
    EXPECT_EQ(r.line_lng2("01 00 03", 1), "\t- digit dialed '6'");
}

TEST(Line, OrZerosStandBehindEachMessage) {
    Reading r(LineReader::Behind::zeros);
    EXPECT_EQ(r.line("02 03 07", 1), "\t- digit dialed '7'");
    EXPECT_EQ(r.line("01 03", 1), "\t- digit dialed '0'");
    EXPECT_EQ(r.line_lng2("01 00 03", 1), "\t- digit dialed '0'");
}

// ---- Two length bytes

TEST(LineLng2, Decodes) {
    expect_lines(&Reading::line_lng2, 1,
                 {{"01 00 01", "\t- handset off hook"},
                  {"02 00 03 05", "\t- digit dialed '5'"},
                  {"02-00-03-05", "\t- digit dialed '5'"},
                  {"02 00 03 05\n", "\t- digit dialed '5'"}});
    expect_lines(&Reading::line_lng2, 0, {{"01 00 03", "\t- software reset"}});
}

TEST(LineLng2, SeveralMessages) {
    expect_lines(
        &Reading::line_lng2, 1,
        {{"02 00 aa bb 01 00 cc", "\t- key released\n\t- "},
         {"01 00 01 01 00 02 02 00 03 05", "\t- handset off hook\n\t- handset on hook\n\t- digit dialed '5'"},
         // Behind a message that ends in a newline stands one more.
         {"02 00 18 0a 01 00 01", "\tDBG - \n\n\t- handset off hook"},
         // Up to five characters behind the last message are no group.
         {"01 00 01 01 00", "\t- handset off hook"},
         {"01 00 01 junk", "\t- handset off hook"},
         // What follows is no length: the newline stands already.
         {"01 00 01 zz zz zz", "\t- handset off hook\n"},
         {"01 00 01 01 zz 01", "\t- handset off hook\n"}});
}

TEST(LineLng2, Refusals) {
    const std::string no_length = "line does not start with 2 length bytes";
    expect_lines(&Reading::line_lng2, 1,
                 {{"", "line_lng2: line really too short", refused},
                  {"01 0", "line_lng2: line really too short", refused},
                  {"01 00", ""},
                  {"zz zz", ""},
                  {"zz zz zz", ""},
                  {"01 zz 01", ""},
                  {"zz 00 01", ""},
                  {"00 00 01", no_length, refused},
                  {"01 00 01 00 00 01", no_length, refused}});  // the first text is lost
}

TEST(LineLng2, ShortLinesAreFilledUp) {
    expect_lines(
        &Reading::line_lng2, 1,
        {{"03 00 aa", "line too short: expected: 14, real: 8, padded with 0xff\n\n\t- key released"},
         {"02 00 03", "line too short: expected: 11, real: 8, padded with 0xff\n\n\t- digit dialed invalid"},
         {"02 00 03 5",
          "line too short: expected: 11, real: 10, padded with 0xff\n\n\t- digit dialed invalid"},
         {"03 00 18 41 4", "line too short: expected: 14, real: 13, padded with 0xff\n\n\tDBG - A\xff"}});
    expect_lines(&Reading::line_lng2, 0,
                 {{"04 00 27 00 00",
                   "line too short: expected: 17, real: 14, padded with 0xff\n\n\t- write line 1 \"?\"\n"}});
}

// Only the length of the whole line is looked at: a later group that is too short is filled up and nothing
// said.
TEST(LineLng2, ShortLaterGroups) {
    expect_lines(&Reading::line_lng2, 1,
                 {{"01 00 01 02 00 03", "\t- handset off hook\n\t- digit dialed invalid"},
                  {"01 00 01 04 00 18 41", "\t- handset off hook\n\tDBG - A\xff\xff"},
                  // With a length beyond the whole line it is said, in place of all texts before it.
                  {"01 00 01 09 00 03",
                   "line too short: expected: 32, real: 17, padded with 0xff\n\n\t- digit dialed invalid"}});
}

TEST(LineLng2, IllFormedFieldsAreFilledUpToo) {
    expect_lines(&Reading::line_lng2, 1,
                 {{"02 00 03 xx", "\t- digit dialed invalid"},
                  {"04 00 18 41 xx 42",
                   "\tDBG - A\xff"
                   "B"}});
}

TEST(LineLng2, LongFields) {
    expect_lines(&Reading::line_lng2, 1,
                 {{"01 00 aaa01", "\t- handset off hook"},
                  {"02 00 00303", "\t- digit dialed '3'"},
                  {"001 00 01", ""}});  // the second field is " 0"
    // 0x101 as low length byte counts whole: 257 bytes.
    Reading r;
    EXPECT_EQ(r.line_lng2("101x00 18", 0), "");  // column 3 is "x0"
    EXPECT_EQ(r.line_lng2("01 01 18" + repeated(" 41", 256), 0), "\tDBG - " + std::string(256, 'A'));
    // 0x101 as high one: 1 + 256 * 257 bytes, and the message starts at " 1".
    EXPECT_EQ(r.line_lng2("01 101 18 41", 0),
              "line too short: expected: 197384, real: 12, padded with 0xff\n\n\t- ERR: message inconnu");
}

std::uint8_t low_byte(const std::string& line, std::size_t column) {
    auto digit = [&](std::size_t k) { return k < line.size() && hex_digit(line[k]) < 16; };
    if (!digit(column) || !digit(column + 1)) return 0xFF;
    return static_cast<std::uint8_t>(std::strtoll(line.c_str() + column, nullptr, 16));
}

// Lines of digits and few separators, each field against what strtol has to say of it.
TEST(LineLng2, FieldsOfAnyLength) {
    std::mt19937 random(4711);
    for (int i = 0; i < 300; ++i) {
        const std::string_view pool = random() % 2 == 0 ? "0000000f" : "0123456789abcdefABCDEF000000 ";
        std::string line = "64 00 ";  // 100 bytes
        for (int k = 0; k < 299; ++k) line += random() % 40 == 0 ? ' ' : pool[random() % pool.size()];
        LineReader reader(LineReader::Behind::zeros);
        reader.begin({line.c_str(), line.size()}, LineLayout::line_lng2, 0);
        const Message* const m = reader.next();
        ASSERT_NE(m, nullptr);
        ASSERT_EQ(m->length(), 100U);
        for (std::size_t k = 0; k < 100; ++k)
            ASSERT_EQ((*m)[k], low_byte(line, 6 + 3 * k)) << line << " " << k;
        ASSERT_EQ(reader.next(), nullptr);
        ASSERT_FALSE(reader.refusal());
    }
}

// A row of digits without end is gone through once, not once for each of its fields.
TEST(LineLng2, AVeryLongRowOfDigits) {
    Reading r;
    // All fields end in the same 01: messages of 1 + 256 bytes, 777 columns apart, the last one with 400
    // columns left.
    const std::size_t columns = 777 * 1287 + 400;
    const std::string text = r.line_lng2("01 01 " + std::string(columns - 8, '0') + "01", 1);
    EXPECT_EQ(r.result, decoded);
    EXPECT_EQ(text, repeated("\t- handset off hook\n", 1287) + "\t- handset off hook");
    EXPECT_EQ(r.line_lng2("01 00 " + std::string(1000000, 'f'), 1).substr(0, 16), "line too short: ");
    EXPECT_EQ(r.line("ff " + std::string(1000000, '0') + "1", 1), "\t- handset off hook");
}

TEST(LineLng2, LengthsAreLowByteFirst) {
    Reading r;
    EXPECT_EQ(r.line_lng2("2c 01 18" + repeated(" 41", 299), 0), "\tDBG - " + std::string(299, 'A'));
    EXPECT_EQ(r.line_lng2("00 01 18" + repeated(" 41", 255), 0), "\tDBG - " + std::string(255, 'A'));
}

TEST(LineLng2, MessagesKeepTheirFirst5120Bytes) {
    Reading r;
    // 6000 bytes: 0x1770. The next group stands behind all of them.
    EXPECT_EQ(r.line_lng2("70 17 18" + repeated(" 41", 5999) + " 01 00 03", 0),
              "\tDBG - " + std::string(5119, 'A') + "\n\t- software reset");
    EXPECT_EQ(r.line_lng2("00 14 18" + repeated(" 41", 5119), 0), "\tDBG - " + std::string(5119, 'A'));
    // 65535 bytes are announced and three are there.
    EXPECT_EQ(r.line_lng2("ff ff 18 41 41", 0),
              "line too short: expected: 196610, real: 14, padded with 0xff\n\n\tDBG - AA" +
                  std::string(5117, '\xff'));
}

TEST(LineLng2, StandsBehindWhatIsThere) {
    TestSession d;
    LineReader reader(LineReader::Behind::zeros);
    Text out;
    out.add("before ");
    const std::string good = "01 00 01 01 00 02";
    EXPECT_EQ(decode_line(d.session(), reader, {good.c_str(), good.size()}, LineLayout::line_lng2, 1, out),
              decoded);
    EXPECT_EQ(out.view(), "before \t- handset off hook\n\t- handset on hook");
    const std::string bad = "01 00 01 00 00 02";
    EXPECT_EQ(decode_line(d.session(), reader, {bad.c_str(), bad.size()}, LineLayout::line_lng2, 1, out),
              refused);
    EXPECT_EQ(out.view(),
              "before \t- handset off hook\n\t- handset on hookline does not start with 2 length bytes");
    out.cut(7);
    const std::string brief = "01 00 01 09 00 02";
    EXPECT_EQ(decode_line(d.session(), reader, {brief.c_str(), brief.size()}, LineLayout::line_lng2, 1, out),
              decoded);
    EXPECT_EQ(out.view(),
              "before line too short: expected: 32, real: 17, padded with 0xff\n\n\t- handset on hook");
}

// ---- Behind a tag

TEST(LineTzt, TheSecondFieldTellsTheLayout) {
    expect_lines(&Reading::line_tzt, 1,
                 {{"zt 03 00 01 02 03", "\t- handset off hook"},
                  {"zt 03 01 02 03", "\t- handset off hook"},
                  {"zt 02 03 05", "\t- digit dialed '5'"},
                  {"zt 02 00 03 05", "\t- digit dialed '5'"},
                  {"zt 01 00 01 01 00 02", "\t- handset off hook\n\t- handset on hook"}});
    // A message of one byte 00 looks like the two-byte layout, unless the line is too short for it.
    const std::string filled_up =
        "line too short: expected: 8, real: 6, padded with 0xff\n\n\t- ERR: message inconnu";
    expect_lines(&Reading::line_tzt, 0,
                 {{"zt 01 00", "\t- nop"},
                  {"zt 01 00 ", filled_up},
                  {"zt 01 00\n", filled_up},
                  {"zt 01 00 03", "\t- software reset"}});
}

TEST(LineTzt, LinesTooLongForOneLengthByte) {
    // 769 characters with their tag are 766 behind it: a length byte can ask for 767 at most.
    const std::string body = "ff 01 18" + repeated(" 41", 252);  // 764 characters
    Reading r;
    EXPECT_EQ(r.line_tzt("zt " + body + "xx", 0),
              "line too short: expected: 1538, real: 766, padded with 0xff\n\n\tDBG - " +
                  std::string(252, 'A') + std::string(258, '\xff'));
    EXPECT_EQ(r.line_tzt("zt " + body + "x", 0), "line too short: expected: 767, real: 765");
    EXPECT_EQ(r.line_tzt("zt ff 18" + repeated(" 41", 252) + "x", 0),
              "line too short: expected: 767, real: 762");
    // 255 bytes that do not start with 00 make a line of 770 characters: it is read as one with two length
    // bytes, whose message starts with 0x41.
    EXPECT_EQ(r.line_tzt("zt ff 18" + repeated(" 41", 254), 0),
              "line too short: expected: 19202, real: 767, padded with 0xff\n\n\t- key release on");
}

TEST(LineTzt, Refusals) {
    expect_lines(
        &Reading::line_tzt, 1,
        {{"xx 03 00 01", " err: awaiting 'zt ', received 'xx '", refused},
         {"zt", " err: awaiting 'zt ', received 'zt", refused},  // the third character is the end of the line
         {"z", " err: awaiting 'zt ', received 'z", refused},
         {"", " err: awaiting 'zt ', received '", refused},
         {"ZT 01 01", " err: awaiting 'zt ', received 'ZT '", refused},
         {" zt 01 01", " err: awaiting 'zt ', received ' zt'", refused},
         {"zt\t01 01", " err: awaiting 'zt ', received 'zt\t'", refused},
         {"zt01 01", " err: awaiting 'zt ', received 'zt0'", refused},
         {"zt ", "line: really too short", refused},
         {"zt 0", "line: really too short", refused},
         {"zt 02", "line too short: expected: 8, real: 2", refused},
         {"zt 02 ", "line too short: expected: 8, real: 3", refused},
         {"zt 00 03", "line does not start with length byte", refused},
         {"zt 00 00 03", "line does not start with 2 length bytes", refused},
         {"zt 02 03 xx", "line1: ill formed hex value", refused}});
}

// The second field is read as strtol does in base 16: blanks, a sign and "0x" may stand in front, and nothing
// is 0.
TEST(LineTzt, TheSecondFieldAsANumber) {
    expect_lines(&Reading::line_tzt, 1,
                 {{"zt 01  0 01", ""},  // 0: two length bytes, "0 " is none
                  {"zt 01  1 01", "line1: ill formed hex value", refused},  // 1
                  {"zt 01 -0 01", ""},                                      // 0
                  {"zt 01 -1 01", "line1: ill formed hex value", refused},  // -1
                  {"zt 01 +1 01", "line1: ill formed hex value", refused},
                  {"zt 01 0x0 01", ""},
                  {"zt 01 0x1 01", "line1: ill formed hex value", refused},
                  {"zt 01 zz 01", ""},  // no number: 0
                  {"zt 01 0z 01", ""},
                  {"zt 01 000 01", "\t- "},  // 0: two length bytes, and the message is " 0": 0xff
                  {"zt 01 001 01", "\t- handset off hook"},  // 1: one length byte, 0x001
                  {"zt 01 ffffffffffffffffffffff01", "\t- "},
                  {"zt 01 \t\n 0 01", ""}});
}

// ---- Behind a column that tells the direction

TEST(LineSpzt, TheColumnTellsTheDirection) {
    expect_spzt({{"123456S 01 00 03", "\t- software reset"},
                 {"123456R 01 00 01", "\t- handset off hook"},
                 {"      S 01 00 03", "\t- software reset"},
                 {"SSSSSSR-01 00 01", "\t- handset off hook"},
                 {"123456S 02 03 0a", "\t- software reset"},
                 {"123456R 02 03 0a", "\t- digit dialed '*'"},
                 {"123456R 02 00 03 0a", "\t- digit dialed '*'"},
                 {"123456R 02 00 03 0a\n", "\t- digit dialed '*'"}});
}

TEST(LineSpzt, Refusals) {
    const std::string no_column = "-> not in spzt format: msg[6] should be S or R";
    const std::string too_short = "-> line too short";
    expect_spzt({{"", no_column, refused},
                 {"123456", no_column, refused},
                 {"123456X 01 00 03", no_column, refused},
                 {"123456s 01 00 03", no_column, refused},
                 {"S23456 01 00 03", no_column, refused},
                 {"12345S  01 00 03", no_column, refused},
                 {"1234567S 01 00 03", no_column, refused},
                 {"123456S 02 03", too_short, refused},
                 {"123456R 02", too_short, refused},
                 {"123456R 03 01 02", too_short, refused},
                 {"123456R 05 01 02 03 xx 05", too_short, refused},
                 {"123456R ffffffffffff 00", too_short, refused},
                 {"123456R ff", too_short, refused}});
}

// Too short is: the hexadecimal part ends before 3n + 10.
TEST(LineSpzt, TheEndOfTheHexadecimalPart) {
    expect_spzt({
        // n = 2 ends at 16 at the earliest.
        {"123456R 02 03 0", "-> line too short", refused},  // 15 characters
        {"123456R 02 03 05", "\t- digit dialed '5'"},
        {"123456R 02 03 05 x", "\t- digit dialed '5'"},
        {"123456R 02 03 05x", "\t- digit dialed '5'"},
        // The part ends at the first character from column 13 on that is neither a blank nor a digit.
        {"123456R 02 03x05", "-> line too short", refused},
        {"123456R 02x03 05", "\t- digit dialed '5'"},
        {"123456R 02 03\t05", "-> line too short", refused},
        // Lines of less than 14 characters end at 13, even where they do not.
        {"123456R 01", "line too short: expected: 5, real: 2", refused},
        {"123456R 01 01", "\t- handset off hook"},
        {"123456R 01 0", "line too short: expected: 5, real: 4", refused},
    });
}

TEST(LineSpzt, OneOrTwoLengthBytes) {
    expect_spzt({
        // Two of them when there is room: n + 256 hi bytes from column 14 on.
        {"123456R 01 00 01", "\t- handset off hook"},  // 3 + 13 = 16 characters
        {"123456R 01 00 0", "\t- nop ack"},            // 15: one length byte, message 00
        {"123456R 01 00", "\t- nop ack"},
        {"123456R 02 00 03 05", "\t- digit dialed '5'"},
        {"123456R 02 00 03", "\t- nop ack"},  // 16 < 19: 00 03 with one length byte
        {"123456R 02 00 03 x", "\t- nop ack"},
        {"123456R 02 01 01 01", "\t- handset off hook"},  // hi is 1: too much for the line
        // Empty and missing numbers are 0.
        {"123456R 00 00", ""},
        {"123456R 00 00 01", "line does not start with 2 length bytes", refused},
        {"123456R 00 01 01", "line does not start with length byte", refused},
        {"123456R", "line_lng2: line really too short", refused},
        {"123456R ", "line_lng2: line really too short", refused},
        {"123456R 0", "line_lng2: line really too short", refused},
        {"123456R 00", "line_lng2: line really too short", refused},
        {"123456R zz zz", ""},
        {"123456R zz zz zz", ""},
    });
}

TEST(LineSpzt, NumbersAsStrtolReadsThem) {
    expect_spzt({
        {"123456R  1 00 01", ""},  // 1: room for two length bytes, and " 1" is none
        {"123456R 0x1 00 01", ""},
        {"123456R -1 00 01", ""},                            // -1: room for anything
        {"123456R  9 00 01", "-> line too short", refused},  // 9
        {"123456R 0x9 00 01", "-> line too short", refused},
        {"123456R 01 -1 01", ""},                 // the second one -1: room for two length bytes
        {"123456R 02 ffffffffffffffff", "\t- "},  // the second one very large: one length byte
    });
}

// Nothing of an earlier and longer line shows, and a direction is the line's own.
TEST(LineSpzt, OneAfterAnother) {
    Reading r(LineReader::Behind::zeros);
    EXPECT_EQ(r.line_spzt("123456S 05 00 18 41 42 43 44"), "\tDBG - ABCD");
    EXPECT_EQ(r.line_spzt("123456R 02 00 03 05"), "\t- digit dialed '5'");
    EXPECT_EQ(r.line_spzt("123456S 02 18 45"), "\tDBG - E");
    EXPECT_EQ(r.line_spzt("123456R 01 00 03"), "\t- digit dialed '0'");
}

TEST(LineSpzt, LinesWhoseHexadecimalPartReaches100) {
    // 30 bytes with one length byte: 8 + 2 + 90 = 100 characters. They are read with two all the same.
    expect_spzt({
        {"123456S 1e 18" + repeated(" 41", 29),
         "line too short: expected: 18527, real: 92, padded with 0xff\n\n\t- key release on"},
        {"123456S 1d 18" + repeated(" 41", 28), "\tDBG - " + std::string(28, 'A')},
        {"123456S 1d 18" + repeated(" 41", 28) + "xxxxxxx", "\tDBG - " + std::string(28, 'A')},
        {"123456S 1e 00 18" + repeated(" 41", 29), "\tDBG - " + std::string(29, 'A')},
    });
}

TEST(LineSpztLng2, AlwaysTwoLengthBytes) {
    const std::vector<LineRow> rows = {
        {"123456S 01 00 03", "\t- software reset"},
        {"123456R 01 00 01", "\t- handset off hook"},
        {"123456R 02 00 03 05 01 00 01", "\t- digit dialed '5'\n\t- handset off hook"},
        {"123456R 02 00 03",
         "line too short: expected: 11, real: 8, padded with 0xff\n\n\t- digit dialed invalid"},
        {"123456R 01 01", ""},
        {"123456R 00 00 01", "line does not start with 2 length bytes", refused},
        {"123456R 01", "line_lng2: line really too short", refused},
        {"123456R", "line_lng2: line really too short", refused},
        {"123456X 01 00 03", "-> not in spzt format: msg[6] should be S or R", refused},
        {"", "-> not in spzt format: msg[6] should be S or R", refused},
    };
    for (const LineRow& row : rows) {
        Reading r;
        EXPECT_EQ(r.line_spzt_lng2(row.line), row.text) << row.line;
        EXPECT_EQ(r.result, row.result) << row.line;
    }
}

// ---- Binary

std::string buffer(std::string_view hex, std::uint32_t direction, ReadResult result = decoded) {
    const auto data = bytes(hex);
    TestSession d;
    Text out;
    EXPECT_EQ(decode_bin_lng2(d.session(), data, direction, out), result) << hex;
    return std::string(out.view());
}

TEST(DecodeBinLng2, EveryTextEndsInANewline) {
    EXPECT_EQ(buffer("", 0), "");
    EXPECT_EQ(buffer("01 00 03", 0), "\t- software reset\n");
    EXPECT_EQ(buffer("01 00 01 02 00 03 05", 1), "\t- handset off hook\n\t- digit dialed '5'\n");
    EXPECT_EQ(buffer("04 00 27 00 00 41", 0), "\t- write line 1 \"A\"\n");
    EXPECT_EQ(buffer("04 00 18 41 0a 0a", 0), "\tDBG - A\n");
    EXPECT_EQ(buffer("01 00 7f", 1), "\t- \n");
    EXPECT_EQ(buffer("00 00", 1), "\n");
    EXPECT_EQ(buffer("00 00 00 00 01 00 01", 1), "\n\n\t- handset off hook\n");
    EXPECT_EQ(buffer("06 00 0b 02 03 05 01 01", 1),
              "\t- super message:\n\t> zt 02 00 03 05\n\t- digit dialed '5'\n\t> zt 01 00 01\n\t- handset "
              "off hook\n");
}

// Bytes that the buffer does not hold read as 0.
TEST(DecodeBinLng2, BuffersThatEndTooEarly) {
    EXPECT_EQ(buffer("02 00 03", 1), "\t- digit dialed '0'\n");
    EXPECT_EQ(buffer("02 00", 1), "\t- nop ack\n");
    EXPECT_EQ(buffer("01", 1), "\t- nop ack\n");
    EXPECT_EQ(buffer("00", 1), "\n");
    EXPECT_EQ(buffer("01 00 01 03", 1), "\t- handset off hook\n\t- nop ack\n");
    EXPECT_EQ(buffer("ff ff 18 41", 0), "\tDBG - A\n");
    EXPECT_EQ(buffer("06 00 0b 02 03", 1),
              "\t- super message:\n\t> zt 02 00 03 00\n\t- digit dialed '0'\n\t> zt 00 00\n\t> zt 00 00\n");
}

TEST(DecodeBinLng2, ARecordOfItsOwnForEachMessage) {
    EXPECT_EQ(buffer("02 00 03 05 01 00 03", 1), "\t- digit dialed '5'\n\t- digit dialed '0'\n");
    EXPECT_EQ(buffer("01 00 03 05 00 03 09", 1), "\t- digit dialed '0'\n\t- digit dialed '9'\n");
}

TEST(DecodeBinLng2, MessagesKeepTheirFirst5120Bytes) {
    EXPECT_EQ(buffer("70 17 18" + repeated(" 41", 5999) + " 01 00 03", 0),
              "\tDBG - " + std::string(5119, 'A') + "\n\t- software reset\n");
}

TEST(HexDigit, EveryCharacter) {
    for (int c = 0; c < 256; ++c) {
        const int expected = c >= '0' && c <= '9'   ? c - '0'
                             : c >= 'a' && c <= 'f' ? c - 'a' + 10
                             : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                    : 16;
        EXPECT_EQ(hex_digit(static_cast<char>(c)), expected) << c;
    }
}

}  // namespace
}  // namespace ztdecode::testing
