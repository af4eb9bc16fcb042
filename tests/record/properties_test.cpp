#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "core/record.hpp"
#include "core/session.hpp"
#include "support/support.hpp"
#include "support/traces.hpp"

// What holds for what every message says: the words put together are the text, a value stands where it says
// and shows what it says, every offset is in the message or marked as missing, and one byte of a message
// changes only the words that name it.

namespace ztdecode::testing {
namespace {

struct Said {
    std::vector<std::uint8_t> bytes;
    std::uint32_t direction = from_dhs;
    Session session;
    Text text;
    Trail trail;
    Outcome outcome = Outcome::decoded;
    Record record;

    std::string_view shown(const NotedValue& v) const { return text.view().substr(v.begin, v.end - v.begin); }
};

std::unique_ptr<Said> said(const std::vector<std::uint8_t>& bytes, std::uint32_t direction) {
    auto s = std::make_unique<Said>();
    s->bytes = bytes;
    s->direction = direction;
    s->session.trail = &s->trail;
    Message m(s->bytes);
    m.direction = direction;
    s->outcome = decode(s->session, m, s->text);
    s->record.take(s->trail, s->text.view(), m, s->outcome);
    return s;
}

std::string hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) text += formatted("{-:02x} "_cf, byte);
    return text;
}

std::string described(const Said& s) {
    return (s.direction == from_dhs ? "from system: " : "to system: ") + hex(s.bytes) + "\n" +
           std::string(s.text.view());
}

// --- words and values

// The digits of a number in the text, however many zeros stand in front of them.
bool shows_number(std::string_view shown, std::int64_t number) {
    const std::string text(shown);
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (std::isxdigit(static_cast<unsigned char>(text[at])) == 0 && text[at] != '-') continue;
        char* end = nullptr;
        if (std::strtoll(text.c_str() + at, &end, 10) == number && end != text.c_str() + at) return true;
        const bool negative = text[at] == '-';
        if (!negative && std::strtoull(text.c_str() + at, &end, 16) == static_cast<std::uint64_t>(number) &&
            end != text.c_str() + at) {
            return true;
        }
    }
    return false;
}

bool shows_flag(std::string_view shown, bool value) {
    std::string lower(shown);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    const auto says = [&](std::initializer_list<std::string_view> words) {
        return std::any_of(words.begin(), words.end(),
                           [&](std::string_view w) { return lower.find(w) != std::string::npos; });
    };
    const bool no = says({"off", "no", "disable", "invisible", "unplugged", "false", "released", "0", "not "});
    const bool yes = says({"on", "yes", "enable", "visible", "plugged", "true", "pushed", "1", "ack"});
    return value ? yes : no;
}

bool shows_value(const Said& s, const NotedValue& v) {
    const std::string_view shown = s.shown(v);
    switch (v.meaning.kind) {
        case Kind::number:
            if (v.meaning.tenths != 0) {
                return std::strtod(std::string(shown).c_str(), nullptr) * 10 == static_cast<double>(v.meaning.number);
            }
            return shows_number(shown, v.meaning.number);
        case Kind::flag:
            return shows_flag(shown, v.meaning.number != 0);
        default:
            return true;
    }
}

void expect_words_and_values(const Said& s) {
    const auto& stretches = s.trail.stretches();
    std::uint32_t at = 0;
    for (const Stretch& stretch : stretches) {
        ASSERT_EQ(stretch.begin, at) << described(s);
        ASSERT_GT(stretch.end, stretch.begin) << described(s);
        at = stretch.end;
    }
    ASSERT_EQ(at, s.text.size()) << described(s);
    const bool zero_in_text = s.text.view().find('\0') != std::string_view::npos;
    ASSERT_FALSE(zero_in_text) << described(s);
    for (const NotedValue& v : s.trail.values()) {
        ASSERT_LE(v.begin, v.end) << described(s);
        ASSERT_LE(v.end, s.text.size()) << v.name << "\n" << described(s);
        ASSERT_NE(v.name, "{}") << described(s) << "\n" << s.shown(v);
        ASSERT_FALSE(v.name.empty()) << described(s);
        EXPECT_TRUE(shows_value(s, v)) << v.name << " " << v.meaning.number << " \"" << s.shown(v) << "\"\n" << described(s);
    }
}

void expect_offsets(const Said& s) {
    const auto& messages = s.trail.messages();
    const auto in_message = [&](std::span<const ByteRange> ranges, std::uint32_t message) {
        return std::all_of(ranges.begin(), ranges.end(), [&](const ByteRange& r) {
            return r.first <= r.last && r.last < messages[message].source_length;
        });
    };
    for (const Stretch& stretch : s.trail.stretches()) {
        ASSERT_TRUE(in_message(s.trail.bytes_of(stretch), stretch.message)) << described(s);
    }
    for (const NotedValue& v : s.trail.values()) {
        ASSERT_TRUE(in_message(s.trail.bytes_of(v), v.message)) << v.name << "\n" << described(s);
    }
}

// The words that this byte has no part in, up to `end` of the text.
std::string words_without(const Said& s, std::uint32_t byte, std::uint32_t end) {
    std::string words;
    for (const Stretch& stretch : s.trail.stretches()) {
        const auto among = [byte](std::span<const ByteRange> ranges) {
            return std::any_of(ranges.begin(), ranges.end(),
                               [&](const ByteRange& r) { return r.first <= byte && byte <= r.last; });
        };
        if (stretch.begin >= end || s.trail.messages()[stretch.message].reassembled) continue;
        bool has_part = among(s.trail.bytes_of(stretch)) || among(s.trail.tested_for(stretch));
        for (std::uint32_t m = stretch.message; m != NotedMessage::no_message && !has_part;
             m = s.trail.messages()[m].carrier) {
            has_part = among(s.trail.tested_for(s.trail.messages()[m]));
        }
        if (has_part) continue;
        words += s.text.view().substr(stretch.begin, std::min(stretch.end, end) - stretch.begin);
    }
    return words;
}

// Where the text begins that may stand elsewhere when this byte changes.
std::uint32_t walked_from(const Said& s, std::uint32_t byte) {
    std::uint32_t from = 0xFFFFFFFF;
    for (const Trail::Walked& w : s.trail.walked()) {
        if (!w.reassembled && w.bytes.first <= byte && byte <= w.bytes.last) from = std::min(from, w.begin);
    }
    return from;
}

// A zero in a text ends it.
bool in_text(const Said& s, std::uint32_t byte) {
    return std::any_of(s.trail.values().begin(), s.trail.values().end(), [&](const NotedValue& v) {
        const auto ranges = s.trail.bytes_of(v);
        return v.meaning.kind == Kind::text &&
               std::any_of(ranges.begin(), ranges.end(),
                           [&](const ByteRange& r) { return r.first <= byte && byte <= r.last; });
    });
}

bool has_segments(const Said& s) {
    return std::any_of(s.trail.messages().begin(), s.trail.messages().end(),
                       [](const NotedMessage& m) { return m.reassembled; });
}

void expect_changes(const Said& s, std::uint32_t most_bytes, std::uint32_t salt) {
    const auto n = std::min<std::uint32_t>(most_bytes, static_cast<std::uint32_t>(s.bytes.size()));
    for (std::uint32_t byte = 0; byte < n; ++byte) {
        for (const unsigned step : {1U, 0x80U, 1 + (salt * 37 + byte * 11) % 255}) {
            std::vector<std::uint8_t> bytes = s.bytes;
            bytes[byte] = static_cast<std::uint8_t>(bytes[byte] + step);
            const auto other = said(bytes, s.direction);
            if (has_segments(s) || has_segments(*other)) continue;
            if ((bytes[byte] == 0 || s.bytes[byte] == 0) && (in_text(s, byte) || in_text(*other, byte))) continue;
            const std::uint32_t end = std::min(walked_from(s, byte), walked_from(*other, byte));
            ASSERT_EQ(words_without(s, byte, end), words_without(*other, byte, end))
                << "byte " << byte << " from " << unsigned{s.bytes[byte]} << " to " << unsigned{bytes[byte]} << "\n"
                << described(s) << "\n"
                << described(*other);
        }
    }
}

void expect_all(const std::vector<std::uint8_t>& bytes, std::uint32_t direction, std::uint32_t changed_bytes = 14) {
    const auto s = said(bytes, direction);
    expect_words_and_values(*s);
    if (::testing::Test::HasFatalFailure()) return;
    expect_offsets(*s);
    if (::testing::Test::HasFatalFailure()) return;
    expect_changes(*s, changed_bytes, static_cast<std::uint32_t>(bytes.size() + direction));
}

TEST(Properties, OfEveryGoldenMessage) {
    for (const Captured& message : golden_messages()) {
        expect_all(message.bytes, message.direction, 40);
        ASSERT_FALSE(HasFatalFailure()) << message.line;
    }
}

// The beginnings of the links' messages; every second byte comes behind them.
const std::vector<std::vector<std::uint8_t>> links = {
    {},           {0x05, 0x01, 0x02}, {0x06}, {0x0F}, {0x12},       {0x13},
    {0x14},       {0x15},             {0x16}, {0x18}, {0x02, 0x01}, {0x04, 0x0B},
    {0x04, 0x13}, {0x04, 0x03},       {0x04, 0x23}, {0x04, 0x2B}, {0x04, 0x4B}, {0x1F, 0x00}};

// Every opcode of every link, at several lengths, with bytes that walk through tables and lengths.
class EveryOpcode : public ::testing::TestWithParam<std::size_t> {};

TEST_P(EveryOpcode, Holds) {
    const std::vector<std::uint8_t>& link = links[GetParam()];
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    const unsigned stride = sanitized() ? 8 : 1;
    for (unsigned opcode = 0; opcode < 256; opcode += stride) {
        for (const std::size_t length : {0U, 1U, 2U, 5U, 9U, 17U, 26U}) {
            for (const std::uint32_t direction : {from_dhs, to_dhs}) {
                std::vector<std::uint8_t> bytes = link;
                bytes.push_back(static_cast<std::uint8_t>(opcode));
                const auto kind = static_cast<unsigned>(random() % 3);
                for (std::size_t k = 0; k < length; ++k) {
                    const std::size_t byte = kind == 0 ? k + 1 : kind == 1 ? random() % 8 : random() % 256;
                    bytes.push_back(static_cast<std::uint8_t>(byte));
                }
                expect_all(bytes, direction);
                ASSERT_FALSE(HasFatalFailure());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Links, EveryOpcode, ::testing::Range(std::size_t{0}, links.size()));

}  // namespace
}  // namespace ztdecode::testing
