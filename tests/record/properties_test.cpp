#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/record.hpp"
#include "core/session.hpp"
#include "fuzz/bounds.hpp"
#include "support/support.hpp"
#include "support/traces.hpp"

// What holds for what every message says: the words put together are the text, a value stands where it says
// and shows what it says, every offset is in the message or marked as missing, and one byte of a message
// changes only the words that name it.

namespace ztdecode::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Sent {
    Bytes bytes;
    std::uint32_t direction = from_dhs;
    std::vector<Bytes> before{};  // to the system, in the same session: what the message is understood with
};

struct Said {
    Sent sent;
    Session session;
    Text text;
    Trail trail;
    Outcome outcome = Outcome::decoded;
    Record record;

    std::string_view shown(const NotedValue& v) const { return text.view().substr(v.begin, v.end - v.begin); }
};

std::unique_ptr<Said> said(Sent sent) {
    auto s = std::make_unique<Said>();
    s->sent = std::move(sent);
    for (const Bytes& bytes : s->sent.before) {
        Message m(bytes);
        m.direction = to_dhs;
        Text text;
        decode(s->session, m, text);
    }
    s->session.trail = &s->trail;
    Message m(s->sent.bytes);
    m.direction = s->sent.direction;
    s->outcome = decode(s->session, m, s->text);
    s->record.take(s->trail, s->text.view(), m, s->outcome);
    return s;
}

std::unique_ptr<Said> said_with(const Said& s, std::uint32_t byte, std::uint8_t value) {
    Sent sent = s.sent;
    sent.bytes[byte] = value;
    return said(std::move(sent));
}

std::string hex(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) text += formatted("{-:02x} "_cf, byte);
    return text;
}

std::string described(const Said& s) {
    std::string before;
    for (const Bytes& bytes : s.sent.before) before += "behind " + hex(bytes) + "\n";
    return before + (s.sent.direction == from_dhs ? "from system: " : "to system: ") + hex(s.sent.bytes) +
           "\n" + std::string(s.text.view().substr(0, 1000));
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
        if (negative) continue;
        // A number with a sign may be shown as the bits that it has.
        const std::uint64_t bits = std::strtoull(text.c_str() + at, &end, 16);
        const auto digits = static_cast<unsigned>(end - (text.c_str() + at));
        const std::uint64_t mask =
            digits < 16 && number < 0 ? (std::uint64_t{1} << 4 * digits) - 1 : ~std::uint64_t{0};
        if (digits > 0 && bits == (static_cast<std::uint64_t>(number) & mask)) return true;
    }
    return false;
}

bool shows_flag(std::string_view shown, bool value) {
    std::string lower(shown);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    const auto says = [&](std::initializer_list<std::string_view> words) {
        return std::any_of(words.begin(), words.end(),
                           [&](std::string_view w) { return lower.find(w) != std::string::npos; });
    };
    const bool no = says({"off", "no", "disable", "invisible", "unplugged", "false", "released", "0", "not ",
                          "stop", "bad", "suite"});
    const bool yes = says({"on", "yes", "enable", "visible", "plugged", "true", "pushed", "1", "ack", "start",
                           "ok", "powered", "debut"});
    return value ? yes : no;
}

bool shows_value(const Said& s, const NotedValue& v) {
    if (v.name == "unknown_code") return true;  // the code itself, for which the text has words
    const std::string_view shown = s.shown(v);
    switch (v.meaning.kind) {
        case Kind::number:
            if (v.meaning.tenths != 0) {
                return std::strtod(std::string(shown).c_str(), nullptr) * 10 ==
                       static_cast<double>(v.meaning.number);
            }
            return shows_number(shown, v.meaning.number);
        case Kind::flag:
            return shows_flag(shown, v.meaning.number != 0);
        default:
            return true;
    }
}

// A failure of each kind once, and not too many of them: one wrong decoder fails for thousands of messages.
class Failures {
  public:
    static constexpr std::size_t most = 20;

    bool enough() const { return kinds_.size() >= most; }
    bool first_of_kind(const std::string& kind) { return !enough() && kinds_.insert(kind).second; }

  private:
    std::set<std::string> kinds_;
};

#define EXPECT_FOR_KIND(condition, kind) \
    if (condition) {                     \
    } else                               \
        for (bool once = failures.first_of_kind(kind); once; once = false) ADD_FAILURE() << #condition << "\n"

// What an earlier message or item said, or nothing said so far: a text that is shown once more, and the list
// of devices of a terminal that has none.
bool comes_from_memory(const NotedValue& v) {
    return v.name == "repeated_text" || (v.name.ends_with("_devices") && v.meaning.number == 0);
}

// Table words that say that there is none for the code.
bool says_unknown(std::string_view shown) {
    const std::string_view word = without_punctuation(shown);
    if (word == "inconnu pour logiciel s0") return false;  // a row of the table says so
    return shown.empty() || word.starts_with("unknown") || word.starts_with("inconnu") ||
           word.find("??") != std::string_view::npos;
}

void expect_words_and_values(const Said& s, Failures& failures) {
    std::uint32_t at = 0;
    for (const Stretch& stretch : s.trail.stretches()) {
        EXPECT_FOR_KIND(stretch.begin == at && stretch.end > stretch.begin, "gap") << described(s);
        at = stretch.end;
    }
    EXPECT_FOR_KIND(at == s.text.size(), "gap") << described(s);
    EXPECT_FOR_KIND(s.text.view().find('\0') == std::string_view::npos, "zero") << described(s);
    for (const NotedValue& v : s.trail.values()) {
        const std::string name(v.name);
        if (v.begin > v.end || v.end > s.text.size()) {
            EXPECT_FOR_KIND(false && "a value outside the text", "outside " + name) << name << "\n"
                                                                                    << described(s);
            continue;
        }
        EXPECT_FOR_KIND(!name.empty() && name != "{}", "nameless") << s.shown(v) << "\n" << described(s);
        EXPECT_FOR_KIND(v.field == nullptr || v.field->name == v.name, "field " + name) << described(s);
        EXPECT_FOR_KIND(shows_value(s, v), "shown " + name)
            << name << " " << v.meaning.number << " \"" << s.shown(v) << "\"\n"
            << described(s);
        EXPECT_FOR_KIND(v.meaning.kind != Kind::word || !v.meaning.known || comes_from_memory(v) ||
                            !says_unknown(s.shown(v)),
                        "known " + name)
            << name << " " << v.meaning.number << " \"" << s.shown(v) << "\"\n"
            << described(s);
        EXPECT_FOR_KIND(v.meaning.known || v.meaning.kind == Kind::word || v.name == "unknown_code",
                        "unknown " + name)
            << name << " " << v.meaning.number << " \"" << s.shown(v) << "\"\n"
            << described(s);
    }
}

void expect_offsets(const Said& s, Failures& failures) {
    const auto& messages = s.trail.messages();
    const auto in_message = [&](std::span<const ByteRange> ranges, std::uint32_t message) {
        return std::all_of(ranges.begin(), ranges.end(), [&](const ByteRange& r) {
            return r.first <= r.last && r.last < messages[message].source_length;
        });
    };
    for (const Stretch& stretch : s.trail.stretches()) {
        EXPECT_FOR_KIND(in_message(s.trail.bytes_of(stretch), stretch.message), "offset") << described(s);
    }
    for (const NotedValue& v : s.trail.values()) {
        const std::string name(v.name);
        EXPECT_FOR_KIND(in_message(s.trail.bytes_of(v), v.message), "offset " + name) << name << "\n"
                                                                                      << described(s);
        EXPECT_FOR_KIND(v.meaning.place.count == 0 || v.ranges != 0 || v.missing, "no bytes " + name)
            << name << "\n"
            << described(s);
    }
}

// --- records

void expect_records(const Said& s, Failures& failures) {
    const Record& record = s.record;
    std::size_t values = 0;
    for (std::size_t k = 0; k < record.size(); ++k) {
        const Record::Part& part = record.part(k);
        std::uint32_t at = part.begin;
        for (const Stretch& stretch : record.stretches(part)) {
            EXPECT_FOR_KIND(stretch.begin == at, "part's stretches") << "part " << k << "\n" << described(s);
            at = stretch.end;
        }
        EXPECT_FOR_KIND(at == part.end, "part's stretches") << "part " << k << "\n" << described(s);
        std::uint32_t unknown = 0;
        for (const std::uint32_t index : record.values(part)) {
            const NotedValue& v = record.value(index);
            ++values;
            if (!v.meaning.known) ++unknown;
            EXPECT_FOR_KIND(part.begin <= v.begin && v.end <= part.end,
                            "part's values " + std::string(v.name))
                << "part " << k << " " << v.name << "\n"
                << described(s);
        }
        EXPECT_FOR_KIND(unknown == part.unknown, "part's unknown") << "part " << k << "\n" << described(s);
        for (const std::uint32_t carried : record.carried(part)) {
            EXPECT_FOR_KIND(record.part(carried).carrier == k, "carrier") << described(s);
        }
        if (part.noted->reassembled) continue;
        const std::size_t origin = part.noted->origin;
        const std::size_t in_sent = s.sent.bytes.size() - std::min(origin, s.sent.bytes.size());
        const std::span<const std::uint8_t> sent =
            std::span(s.sent.bytes).last(in_sent).first(std::min<std::size_t>(in_sent, part.noted->length));
        EXPECT_FOR_KIND(std::ranges::equal(part.bytes, sent), "part's bytes") << "part " << k << "\n"
                                                                              << described(s);
    }
    EXPECT_FOR_KIND(values == s.trail.values().size(), "values of parts") << described(s);
}

// --- missing bytes

// A text that has a zero, or takes the one behind it for the rest of a character: it ends there.
bool has_zero(const Said& s, const NotedValue& v) {
    if (v.meaning.kind != Kind::text || s.trail.messages()[v.message].reassembled) return false;
    const auto ranges = s.trail.bytes_of(v);
    return v.missing || std::any_of(ranges.begin(), ranges.end(), [&](const ByteRange& r) {
               const auto first = s.sent.bytes.begin() + r.first;
               const auto last = s.sent.bytes.begin() + r.last + 1;
               return std::find(first, last, 0) != last;
           });
}

// Where zeros behind the message do not change what it says, they are the bytes that it lacked.
void expect_missing(const Said& s, Failures& failures) {
    constexpr std::uint32_t most_zeros = 64;
    const auto length = static_cast<std::uint32_t>(s.sent.bytes.size());
    if (s.record.size() != 1 || s.trail.messages().size() != 1 || length == 0) return;
    // What stands behind a text that ended may be there without being seen.
    if (std::ranges::any_of(s.trail.values(), [&](const NotedValue& v) { return has_zero(s, v); })) return;
    std::set<std::uint32_t> missing;
    for (const ByteRange& r : s.record.part(0).noted->missing) {
        for (std::uint32_t k = r.first; k <= r.last; ++k) missing.insert(k);
    }
    EXPECT_FOR_KIND(missing.size() == s.record.part(0).missing, "count of missing") << described(s);
    if (missing.empty() || *missing.rbegin() >= length + most_zeros) return;
    Sent longer = s.sent;
    longer.bytes.resize(*missing.rbegin() + 1);
    const auto other = said(std::move(longer));
    if (other->text.view() != s.text.view()) return;
    std::set<std::uint32_t> named;
    const auto name = [&](std::span<const ByteRange> ranges) {
        for (const ByteRange& r : ranges) {
            for (std::uint32_t k = std::max(r.first, length); k <= r.last; ++k) named.insert(k);
        }
    };
    for (const Stretch& stretch : other->trail.stretches()) {
        name(other->trail.bytes_of(stretch));
        name(other->trail.tested_for(stretch));
    }
    for (const NotedValue& v : other->trail.values()) name(other->trail.bytes_of(v));
    EXPECT_FOR_KIND(other->record.part(0).missing == 0, "missing no more") << described(*other);
    for (const std::uint32_t k : named) {
        EXPECT_FOR_KIND(missing.contains(k), "not missing") << "byte " << k << "\n" << described(s);
    }
}

// --- changes

bool among(std::span<const ByteRange> ranges, std::uint32_t byte) {
    return std::any_of(ranges.begin(), ranges.end(),
                       [&](const ByteRange& r) { return r.first <= byte && byte <= r.last; });
}

// Whether this byte decided that the words stand there, or what they are.
bool has_part(const Said& s, const Stretch& stretch, std::uint32_t byte) {
    if (among(s.trail.bytes_of(stretch), byte) || among(s.trail.tested_for(stretch), byte)) return true;
    for (std::uint32_t m = stretch.message; m != NotedMessage::no_message;
         m = s.trail.messages()[m].carrier) {
        if (among(s.trail.tested_for(s.trail.messages()[m]), byte)) return true;
    }
    return false;
}

// Whether what is missing may be any byte of the captured message: behind the end of a carried one, and of
// the copies that a module's super message is walked in, stands what the ones around it left in the record.
bool shows_what_was_left(const NotedMessage& message) {
    return message.carrier != NotedMessage::no_message || message.name == "super_message";
}

// The words that this byte has no part in, up to `end` of the text. A carried message's text ends in a
// newline, its own or one that is put there because it lacks it, and of two one is taken away: those are left
// out.
std::string words_without(const Said& s, std::uint32_t byte, std::uint32_t end) {
    std::string words;
    for (const Stretch& stretch : s.trail.stretches()) {
        const NotedMessage& message = s.trail.messages()[stretch.message];
        if (stretch.begin >= end || message.reassembled) continue;
        // (A value without bytes comes from memory where a byte that was left says so.)
        const bool without_bytes = stretch.value != Stretch::no_value && stretch.ranges == 0;
        if ((stretch.missing || without_bytes) && shows_what_was_left(message)) continue;
        if (stretch.value != Stretch::no_value && comes_from_memory(s.trail.values()[stretch.value]))
            continue;
        if (has_part(s, stretch, byte)) continue;
        std::string_view said =
            s.text.view().substr(stretch.begin, std::min(stretch.end, end) - stretch.begin);
        while (stretch.end == message.end && said.ends_with('\n')) said.remove_suffix(1);
        words += said;
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

// A class that does not exist ends the whole text: where it does, what stands behind goes without saying.
std::uint32_t refused_from(const Said& s) {
    if (s.outcome != Outcome::unknown_class || s.trail.values().empty()) return 0xFFFFFFFF;
    return s.trail.values().back().begin;
}

bool in_text(const Said& s, std::uint32_t byte) {
    return std::any_of(s.trail.values().begin(), s.trail.values().end(), [&](const NotedValue& v) {
        return v.meaning.kind == Kind::text && among(s.trail.bytes_of(v), byte);
    });
}

// By this byte, or one that it has chosen.
bool in_text_with_zero(const Said& s, std::uint32_t byte) {
    return std::any_of(s.trail.stretches().begin(), s.trail.stretches().end(), [&](const Stretch& stretch) {
        return stretch.value != Stretch::no_value && has_part(s, stretch, byte) &&
               has_zero(s, s.trail.values()[stretch.value]);
    });
}

// All super messages of modules that are walked inside each other write to one place: the inner one's text
// stands there in place of what the outer one had written.
bool writes_over_itself(const Said& s) {
    const auto& messages = s.trail.messages();
    return std::any_of(messages.begin(), messages.end(), [&](const NotedMessage& m) {
        if (m.carrier == NotedMessage::no_message || messages[m.carrier].carrier == NotedMessage::no_message)
            return false;
        const NotedMessage& inner = messages[m.carrier];
        return inner.name == "super_message" && messages[inner.carrier].name == "super_message";
    });
}

bool has_segments(const Said& s) {
    return std::any_of(s.trail.messages().begin(), s.trail.messages().end(),
                       [](const NotedMessage& m) { return m.reassembled; });
}

std::string beginning(const Said& s) { return std::string(s.text.view().substr(0, 32)); }

void expect_same_without(const Said& s, const Said& other, std::uint32_t byte, Failures& failures) {
    if (has_segments(s) || has_segments(other) || writes_over_itself(s) || writes_over_itself(other)) return;
    // A zero in a text ends the piece that it stands in.
    const bool zero = other.sent.bytes[byte] == 0 || s.sent.bytes[byte] == 0;
    if (zero && (in_text(s, byte) || in_text(other, byte))) return;
    if (in_text_with_zero(s, byte) || in_text_with_zero(other, byte)) return;
    const std::uint32_t end = std::min(walked_from(s, byte), refused_from(s));
    const std::uint32_t other_end = std::min(walked_from(other, byte), refused_from(other));
    const std::string words = words_without(s, byte, end);
    const std::string other_words = words_without(other, byte, other_end);
    const bool same = words == other_words || (end < s.text.size() && other_words.starts_with(words)) ||
                      (other_end < other.text.size() && words.starts_with(other_words));
    EXPECT_FOR_KIND(same, beginning(s) + std::to_string(byte))
        << words << "\n--- and ---\n"
        << other_words << "\nbyte " << byte << " from " << unsigned{s.sent.bytes[byte]} << " to "
        << unsigned{other.sent.bytes[byte]} << "\n"
        << described(s) << "\n"
        << described(other);
}

// --- numbers without a name

struct Digits {
    std::string around;  // the words with a '#' for each number
    std::string digits;
    bool operator==(const Digits&) const = default;
};

// The words that are no value and have numbers in them, decimal or hexadecimal ones.
std::vector<Digits> nameless_digits(const Said& s) {
    std::vector<Digits> all;
    for (const Stretch& stretch : s.trail.stretches()) {
        if (stretch.value != Stretch::no_value) continue;
        const std::string_view words = s.text.view().substr(stretch.begin, stretch.end - stretch.begin);
        Digits found;
        for (std::size_t k = 0; k < words.size();) {
            const auto is = [&](std::size_t at, int (*kind)(int)) {
                return at < words.size() && kind(static_cast<unsigned char>(words[at])) != 0;
            };
            std::size_t end = k;
            bool digit = false;
            for (; is(end, std::isxdigit); ++end) digit = digit || is(end, std::isdigit);
            if (digit) {
                found.around += '#';
                (found.digits += words.substr(k, end - k)) += ' ';
            } else {
                end = std::max(end, k + 1);
                found.around += words.substr(k, end - k);
            }
            k = end;
        }
        if (!found.digits.empty()) all.push_back(found);
    }
    return all;
}

// The first number that the other message shows in the same words, and this one does not.
const Digits* changed_digits(const std::vector<Digits>& ones, const std::vector<Digits>& others) {
    if (ones.size() != others.size()) return nullptr;
    for (std::size_t k = 0; k < ones.size(); ++k) {
        if (ones[k].around == others[k].around && ones[k].digits != others[k].digits) return &ones[k];
    }
    return nullptr;
}

// Words of a table may have numbers in them; a value goes with the byte.
void expect_named(const Said& s, const Said& other, std::uint32_t byte, Failures& failures) {
    const std::vector<Digits> digits = nameless_digits(s);
    if (digits.empty()) return;
    const Digits* const changed = changed_digits(digits, nameless_digits(other));
    if (changed == nullptr) return;
    constexpr std::size_t too_many_for_a_table = 5;
    std::set<std::string> shown;
    for (unsigned k = 0; k < 16; ++k) {
        const auto again = said_with(s, byte, static_cast<std::uint8_t>(s.sent.bytes[byte] + 17 * k));
        for (const Digits& d : nameless_digits(*again)) {
            if (d.around == changed->around) shown.insert(d.digits);
        }
    }
    EXPECT_FOR_KIND(shown.size() < too_many_for_a_table, "nameless " + changed->around)
        << "\"" << changed->around << "\" " << changed->digits << "\n"
        << described(s) << "\n"
        << described(other);
}

void expect_changes(const Said& s, std::uint32_t most_bytes, Failures& failures) {
    const auto n = std::min<std::uint32_t>(most_bytes, static_cast<std::uint32_t>(s.sent.bytes.size()));
    const auto salt = static_cast<unsigned>(s.sent.bytes.size() + s.sent.direction);
    for (std::uint32_t byte = 0; byte < n; ++byte) {
        for (const unsigned step : {1U, 0x80U, 1 + (salt * 37 + byte * 11) % 255}) {
            const auto other = said_with(s, byte, static_cast<std::uint8_t>(s.sent.bytes[byte] + step));
            expect_same_without(s, *other, byte, failures);
            expect_named(s, *other, byte, failures);
        }
    }
}

void expect_all(Sent sent, Failures& failures, std::uint32_t changed_bytes = 14) {
    const auto s = said(std::move(sent));
    expect_words_and_values(*s, failures);
    expect_offsets(*s, failures);
    expect_records(*s, failures);
    expect_missing(*s, failures);
    expect_changes(*s, changed_bytes, failures);
}

TEST(Properties, OfEveryGoldenMessage) {
    Failures failures;
    for (const Captured& message : golden_messages()) {
        expect_all({message.bytes, message.direction}, failures, 40);
        ASSERT_FALSE(failures.enough());
    }
}

// Both bytes of a version lie behind these messages; the rest of what they ask for does, too.
TEST(Properties, OfMissingBytes) {
    // A reset: a kind at 2 and a version at 3 and 4, both behind the end, as are terminal and design, both
    // infos, the hardware and the coder at 6 to 10. (The self-test at 5 shows in no words when it is 0.)
    const auto reset = said({{0x1F, 0x00}, to_dhs});
    EXPECT_TRUE(reset->text.view().find(" soft=0.00") != std::string_view::npos) << described(*reset);
    EXPECT_EQ(reset->record.part(0).missing, 8U);
    // With all but the version's second byte and what follows: 4 and 6 to 10.
    EXPECT_EQ(said({{0x1F, 0x00, 0x00, 0x02}, to_dhs})->record.part(0).missing, 6U);
    // An adapter's version stands at 2 and 3, and nothing behind it.
    EXPECT_EQ(said({{0x21, 0x01}, to_dhs})->record.part(0).missing, 2U);
    EXPECT_EQ(said({{0x21, 0x01, 0x05}, to_dhs})->record.part(0).missing, 1U);
    EXPECT_EQ(said({{0x21, 0x01, 0x05, 0x06}, to_dhs})->record.part(0).missing, 0U);
    // The same message, carried by a hub's: it lacks them, not its carrier.
    const auto hub = said({{0x14, 0x10, 0x21, 0x01}, to_dhs});
    ASSERT_EQ(hub->record.size(), 2U);
    EXPECT_EQ(hub->record.part(0).missing, 0U);
    EXPECT_EQ(hub->record.part(1).missing, 2U);
}

// Every code that a table does not have, and no other, is an unknown word.
TEST(Properties, OfUnknownWords) {
    struct Table {
        Sent sent;
        std::uint32_t byte;
        std::string_view name;
        std::set<unsigned> known;
    };
    const Table tables[] = {
        {{{0x32, 0x00, 0x00}, from_dhs}, 1, "voice_channel", {0, 1, 2, 3}},
        {{{0x2C, 0x01, 0x00}, from_dhs}, 2, "option_state", {0, 1, 2}},
        {{{0x04, 0x00}, from_dhs}, 1, "warm_start_mode", {0, 1}},
        {{{0x13, 0x01, 0x00}, to_dhs}, 2, "incident", {0, 1}},
        {{{0x13, 0x01, 0x00}, from_dhs}, 2, "stream_direction", {0, 1, 2}},
        {{{0x13, 0x01, 0x00, 0x04, 0x01, 0x00}, from_dhs},
         5,
         "codec",
         {0x00, 0x01, 0x0F, 0x10, 0x11, 0x1B, 0x1C, 0x1D, 0x1E}},
        {{{0x14, 0x13, 0x01, 0x00}, from_dhs}, 3, "set_status", {0, 1}},
        {{{0x15, 0x04, 0x0A, 0x00, 0x00, 0x00}, to_dhs}, 4, "error_code", {0x00, 0x01, 0x02, 0x03, 0x04, 0x05,
                                                                           0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B,
                                                                           0x0C, 0x0D, 0x0E, 0x0F, 0x10, 0x11,
                                                                           0x80, 0x81, 0x82}},
        {{{0x05, 0x01, 0x02, 0x50, 0x02, 0x01, 0x00, 0x00}, from_dhs}, 6, "map_position", {0, 1, 2}},
        {{{0x04, 0x01, 0x2D, 0x00}, to_dhs}, 3, "timer", {30, 100}},
    };
    for (const Table& table : tables) {
        for (unsigned code = 0; code < 256; ++code) {
            Sent sent = table.sent;
            sent.bytes[table.byte] = static_cast<std::uint8_t>(code);
            const auto s = said(sent);
            const auto& values = s->trail.values();
            const auto v =
                std::ranges::find_if(values, [&](auto& value) { return value.name == table.name; });
            ASSERT_NE(v, values.end()) << table.name << "\n" << described(*s);
            EXPECT_EQ(v->meaning.known, table.known.contains(code)) << table.name << "\n" << described(*s);
            EXPECT_EQ(s->record.part(s->record.size() - 1).unknown, table.known.contains(code) ? 0U : 1U)
                << described(*s);
        }
    }
}

// --- every opcode

// A link: the beginning of its messages, behind which the opcode stands, and what a session is told before.
struct Link {
    std::string_view name;
    Bytes begin;
    std::vector<Bytes> before{};
    std::optional<Direction> only{};
};

// The type of the module at address 1 is told by its last message to the system.
Link from_system_to_module(std::string_view name, std::uint8_t type) {
    return {name, {0x02, 0x01}, {{0x04, static_cast<std::uint8_t>(type << 3 | 1), 0x00}}, from_dhs};
}

const std::vector<Link>& links() {
    static const std::vector<Link> all = [] {
        std::vector<Link> result = {{"digital", {}},
                                    {"digital_reset", {0x1F}},
                                    {"download", {0x50}},
                                    {"audio", {0x49}},
                                    {"he", {0x05, 0x01, 0x02}},
                                    {"he_window", {0x05, 0x01, 0x02, 0x50}},
                                    {"he_creation", {0x05, 0x01, 0x02, 0x52}},
                                    {"he_change", {0x05, 0x01, 0x02, 0x53}},
                                    {"he_query", {0x05, 0x01, 0x02, 0x54}},
                                    {"he_status", {0x05, 0x01, 0x02, 0x1F}},
                                    {"visiophone", {0x06}},
                                    {"visiophone_routed", {0x06, 0x01}},
                                    {"type13", {0x0D}},
                                    {"type14", {0x0E}},
                                    {"osi", {0x0F}},
                                    {"ibs", {0x12}},
                                    {"ip", {0x13}},
                                    {"hub", {0x14}},
                                    {"hub_debug", {0x14, 0x32}},
                                    {"hub_set1", {0x14, 0x10}},
                                    {"hub_set2_ip", {0x14, 0x11, 0x13}},
                                    {"hub_set3_he", {0x14, 0x12, 0x05, 0x02, 0x03}},
                                    {"call_server", {0x15}},
                                    {"presentation_server", {0x16}},
                                    {"debug", {0x18}},
                                    {"super_message", {0x0B, 0x03}},
                                    {"super_message_type_2", {0x17, 0x03, 0x00}}};
        for (std::uint8_t type = 0; type < 16; ++type) {
            const auto sub_device = static_cast<std::uint8_t>(type << 3 | 1);
            result.push_back({"from_module", {0x04, sub_device}, {}, to_dhs});
            result.push_back({"report_of_module", {0x04, sub_device, 0x1F}, {}, to_dhs});
            result.push_back(from_system_to_module("to_module", type));
        }
        result.push_back({"module_in_set", {0x04, 0x11, 0x26}, {}, to_dhs});
        return result;
    }();
    return all;
}

// Every opcode of every link, at several lengths, with bytes that walk through tables and lengths.
class EveryOpcode : public ::testing::TestWithParam<std::size_t> {};

TEST_P(EveryOpcode, Holds) {
    const Link& link = links()[GetParam()];
    Failures failures;
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    constexpr unsigned stride = fuzz::sanitized ? 16 : 1;
    for (unsigned opcode = static_cast<unsigned>(GetParam()) % stride; opcode < 256; opcode += stride) {
        for (const std::size_t length : {0U, 1U, 2U, 5U, 9U, 17U, 26U}) {
            for (const Direction direction : {from_dhs, to_dhs}) {
                if (link.only.value_or(direction) != direction) continue;
                Bytes bytes = link.begin;
                bytes.push_back(static_cast<std::uint8_t>(opcode));
                const auto kind = static_cast<unsigned>(random() % 3);
                for (std::size_t k = 0; k < length; ++k) {
                    const std::size_t byte = kind == 0 ? k + 1 : kind == 1 ? random() % 8 : random() % 256;
                    bytes.push_back(static_cast<std::uint8_t>(byte));
                }
                expect_all({bytes, direction, link.before}, failures, 14);
                ASSERT_FALSE(failures.enough());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Links, EveryOpcode, ::testing::Range(std::size_t{0}, links().size()),
                         [](const auto& link) {
                             return std::string(links()[link.param].name) + "_" + std::to_string(link.param);
                         });

// --- well-formed messages

// Messages whose ids and lengths add up, as sets and systems send them.
class Generator {
  public:
    explicit Generator(unsigned seed) : random_(seed) {}

    unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }
    std::uint8_t byte() {
        switch (below(4)) {
            case 0:
                return static_cast<std::uint8_t>(below(8));
            case 1:
                return static_cast<std::uint8_t>(0x20 + below(0x5F));
            default:
                return static_cast<std::uint8_t>(below(256));
        }
    }
    std::uint8_t one_of(std::initializer_list<int> bytes) {
        return static_cast<std::uint8_t>(bytes.begin()[below(static_cast<unsigned>(bytes.size()))]);
    }
    void add(Bytes& to, unsigned n) {
        for (unsigned k = 0; k < n; ++k) to.push_back(byte());
    }
    // A length that some kind of value has, and so many bytes behind it.
    void add_value(Bytes& to, unsigned bytes_of_length = 1) {
        const unsigned n = below(3) == 0 ? below(10) : one_of({1, 1, 2, 4, 4, 5, 16, 20});
        if (bytes_of_length == 2) to.push_back(0);
        to.push_back(static_cast<std::uint8_t>(n));
        add(to, n);
    }
    // UTF-8 with characters of one to three bytes.
    void add_text(Bytes& to) {
        Bytes text;
        for (unsigned n = below(5); n > 0; --n) {
            switch (below(4)) {
                case 0:
                    text.insert(text.end(), {0xC3, static_cast<std::uint8_t>(0x80 + below(64))});
                    break;
                case 1:
                    text.insert(text.end(), {0xE6, 0x97, static_cast<std::uint8_t>(0x80 + below(64))});
                    break;
                default:
                    text.push_back(static_cast<std::uint8_t>(1 + below(0x7E)));
            }
        }
        to.push_back(static_cast<std::uint8_t>(text.size()));
        to.insert(to.end(), text.begin(), text.end());
    }

    Sent ip_from_system() {
        Bytes bytes = {
            0x13, one_of({0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x07, 0x0A, 0x0A, 0x0C, 0x0D, 0x0E, 0x14})};
        const unsigned n = below(4);
        if (bytes[1] == 0x04 || bytes[1] == 0x05) {
            bytes.push_back(static_cast<std::uint8_t>(n));
            for (unsigned k = 0; k < n; ++k) {
                if (below(4) == 0) {
                    bytes.insert(bytes.end(), bytes[1] == 0x04 ? 6 : 3, 0);
                } else {
                    add(bytes, bytes[1] == 0x04 ? 6 : 3);
                }
            }
            return {bytes, from_dhs};
        }
        if (bytes[1] == 0x01) bytes.push_back(one_of({0, 1, 2, 3}));
        for (unsigned k = 0; k < n; ++k) {
            bytes.push_back(static_cast<std::uint8_t>(below(3) == 0 ? below(6) : below(0x54)));
            add_value(bytes);
        }
        return {bytes, from_dhs};
    }
    Sent ip_to_system() {
        Bytes bytes = {0x13, one_of({0x00, 0x01, 0x02, 0x02, 0x03, 0x03})};
        if (bytes[1] < 0x02) add(bytes, 2);
        for (unsigned n = 1 + below(4); n > 0 && bytes[1] >= 0x02; --n) {
            bytes.push_back(static_cast<std::uint8_t>(below(bytes[1] == 0x02 ? 16 : 64)));
            add_value(bytes, bytes[1] == 0x02 ? 1 : 2);
        }
        if (bytes[1] == 0x03 && below(2) == 0) bytes.push_back(0xFF);
        return {bytes, to_dhs};
    }

    // Bit 7 of an id says that an index follows; bit 7 of a length that it has two bytes.
    void add_property(Bytes& to) {
        static const std::initializer_list<int> ids = {0x00, 0x01, 0x10, 0x12, 0x15, 0x1E, 0x24,
                                                       0x28, 0x2B, 0x37, 0x38, 0x44, 0x46, 0x5C,
                                                       0x62, 0x85, 0x88, 0x8A, 0x8B, 0x9E};
        const std::uint8_t id = below(3) == 0 ? byte() : one_of(ids);
        to.push_back(id);
        if (id >= 0x80) to.push_back(static_cast<std::uint8_t>(below(4)));
        switch (below(8)) {
            case 0: {
                const unsigned n = 128 + below(8);
                to.insert(to.end(), {0x80, static_cast<std::uint8_t>(n)});
                add(to, n);
                break;
            }
            case 1:
            case 2:
            case 3:
                add_text(to);
                break;
            default: {
                const std::uint8_t n = one_of({0, 1, 1, 1, 2, 4});
                to.push_back(n);
                add(to, n);
            }
        }
    }
    std::uint8_t object_class() {
        return static_cast<std::uint8_t>(below(2) == 0 ? below(15) : 0x80 + below(0x1B));
    }
    Sent object_from_system() {
        const std::uint8_t method = one_of({0, 1, 2, 2, 2, 3, 5, 6});
        Bytes bytes = {one_of({0x15, 0x16}), static_cast<std::uint8_t>(method | (below(2) << 7)),
                       object_class()};
        if (bytes[2] >= 0x80 || method == 5 || method == 6) add(bytes, 2);
        if (method == 5 || method == 6) add(bytes, 1);
        for (unsigned n = below(4); n > 0 && method != 5; --n) add_property(bytes);
        return {bytes, from_dhs};
    }
    Sent object_to_system() {
        Bytes bytes = {one_of({0x15, 0x16}), 0x04,
                       static_cast<std::uint8_t>(below(2) == 0 ? below(0x20) : 0x80 + below(0x24))};
        if (below(6) == 0) bytes[2] = 0x94;
        if (bytes[2] == 0x94) {
            bytes.push_back(0);
            bytes.push_back(static_cast<std::uint8_t>(below(15)));
        } else if (bytes[2] >= 0x80 || bytes[2] == 0x01) {
            add(bytes, 2);
        }
        if (bytes[2] >= 0x80 || bytes[2] == 0x01) {
            for (unsigned n = below(4); n > 0; --n) add_property(bytes);
        } else if (below(3) == 0) {
            add_text(bytes);
            bytes.erase(bytes.begin() + 3);
        } else {
            bytes.insert(bytes.end(), {byte(), static_cast<std::uint8_t>(below(7)), object_class()});
            add(bytes, 12);
        }
        return {bytes, to_dhs};
    }

    Sent he_from_system() {
        Bytes bytes = {0x05, one_of({0, 1, 2, 3}), one_of({0, 1, 2, 3}),
                       one_of({0x50, 0x52, 0x53, 0x53, 0x54, 0x56})};
        const auto add_list = [&](unsigned width) {
            const unsigned n = below(4);
            bytes.push_back(static_cast<std::uint8_t>(n));
            add(bytes, width * n);
        };
        switch (below(5)) {
            case 0:
                bytes.insert(bytes.end(), {0x01});
                bytes[3] = 0x50;
                add_list(1);
                break;
            case 1:
                bytes[3] = 0x53;
                bytes.insert(bytes.end(), {one_of({0x10, 0x11}), byte(), byte()});
                add_list(2);
                break;
            case 2:
                bytes[3] = 0x53;
                bytes.insert(bytes.end(),
                             {one_of({0x04, 0x0B, 0x0C, 0x0D, 0x0E}), byte(), byte(), one_of({0, 0, 1})});
                add_text(bytes);
                break;
            case 3:
                bytes[3] = 0x52;
                bytes.insert(bytes.end(), {0x02, byte(), byte(), 0});
                add(bytes, 11);
                add_text(bytes);
                break;
            default:
                bytes.push_back(static_cast<std::uint8_t>(below(0x24)));
                add(bytes, 22);
        }
        return {bytes, from_dhs};
    }
    Sent he_to_system() {
        Bytes bytes = {0x05,  one_of({0, 1, 2, 3}), one_of({0, 1, 2, 3}), 0x31, byte(), byte(), byte(),
                       byte()};
        if (below(2) == 0) {
            bytes[3] = one_of({0x1F, 0x2C, 0x30, 0x34, 0x50, 0x03, 0x20, 0x25});
            bytes[4] = static_cast<std::uint8_t>(below(8));
            add(bytes, 8);
        } else {
            add_text(bytes);
        }
        return {bytes, to_dhs};
    }

    Sent set_from_system() {
        Bytes bytes = {one_of({0x21, 0x27, 0x28, 0x29, 0x32, 0x33, 0x35, 0x3B, 0x3C, 0x49, 0x4D, 0x4F, 0x50}),
                       static_cast<std::uint8_t>(below(8))};
        add(bytes, one_of({1, 2, 3, 6, 11}));
        return {bytes, from_dhs};
    }
    Sent set_to_system() {
        Bytes bytes = {0x1F, static_cast<std::uint8_t>(below(9)), static_cast<std::uint8_t>(below(6))};
        add(bytes, one_of({4, 5, 8, 10, 14, 16}));
        if (below(3) == 0) {
            bytes = {0x04, static_cast<std::uint8_t>(below(14) << 3 | 1), 0x1F,
                     static_cast<std::uint8_t>(below(3))};
            add(bytes, 6);
        }
        return {bytes, to_dhs};
    }

    Sent single(std::uint32_t direction) {
        const bool from = direction == from_dhs;
        switch (below(4)) {
            case 0:
                return from ? ip_from_system() : ip_to_system();
            case 1:
                return from ? object_from_system() : object_to_system();
            case 2:
                return from ? he_from_system() : he_to_system();
            default:
                return from ? set_from_system() : set_to_system();
        }
    }
    Sent super_message(std::uint32_t direction) {
        const bool wide = below(2) == 0;
        Bytes bytes = {static_cast<std::uint8_t>(wide ? 0x17 : 0x0B)};
        for (unsigned n = 1 + below(3); n > 0; --n) {
            const Bytes part = single(direction).bytes;
            if (part.size() > 255) continue;
            bytes.push_back(static_cast<std::uint8_t>(part.size()));
            if (wide) bytes.push_back(0);
            bytes.insert(bytes.end(), part.begin(), part.end());
        }
        return {bytes, direction};
    }
    Sent on_hub(std::uint32_t direction) {
        Bytes bytes = {0x14, one_of({0x10, 0x11, 0x12})};
        const Bytes carried = (below(3) == 0 ? super_message(direction) : single(direction)).bytes;
        bytes.insert(bytes.end(), carried.begin(), carried.end());
        return {bytes, direction};
    }
    // A super message of a module: the parts are messages of its own without the set's two bytes.
    Sent of_module(std::uint32_t direction) {
        const std::uint8_t type = one_of({2, 3, 4, 5, 9});
        const auto sub_device = static_cast<std::uint8_t>(type << 3 | 1);
        Bytes bytes = {0x04, sub_device, 0x0B};
        Sent sent{{}, direction};
        if (direction == from_dhs) {
            bytes = {0x02, 0x01, 0x0B};
            sent.before = {{0x04, sub_device, 0x00}};
        }
        for (unsigned n = 1 + below(3); n > 0; --n) {
            const unsigned length = 1 + below(6);
            bytes.push_back(static_cast<std::uint8_t>(length));
            bytes.push_back(one_of({0x00, 0x0C, 0x0E, 0x1F, 0x20, 0x21, 0x29, 0x2A, 0x41}));
            add(bytes, length - 1);
        }
        sent.bytes = bytes;
        return sent;
    }

  private:
    std::mt19937 random_;
};

using Generate = Sent (*)(Generator&);

struct Kinds {
    std::string_view name;
    Generate generate;
};

const Kinds kinds[] = {
    {"ip_from_system", [](Generator& g) { return g.ip_from_system(); }},
    {"ip_to_system", [](Generator& g) { return g.ip_to_system(); }},
    {"object_from_system", [](Generator& g) { return g.object_from_system(); }},
    {"object_to_system", [](Generator& g) { return g.object_to_system(); }},
    {"he_from_system", [](Generator& g) { return g.he_from_system(); }},
    {"he_to_system", [](Generator& g) { return g.he_to_system(); }},
    {"set_from_system", [](Generator& g) { return g.set_from_system(); }},
    {"set_to_system", [](Generator& g) { return g.set_to_system(); }},
    {"super_from_system", [](Generator& g) { return g.super_message(from_dhs); }},
    {"super_to_system", [](Generator& g) { return g.super_message(to_dhs); }},
    {"hub_from_system", [](Generator& g) { return g.on_hub(from_dhs); }},
    {"hub_to_system", [](Generator& g) { return g.on_hub(to_dhs); }},
    {"module_from_system", [](Generator& g) { return g.of_module(from_dhs); }},
    {"module_to_system", [](Generator& g) { return g.of_module(to_dhs); }},
};

class WellFormed : public ::testing::TestWithParam<Kinds> {};

TEST_P(WellFormed, Holds) {
    Failures failures;
    Generator generator(1);
    constexpr unsigned messages = fuzz::sanitized ? 30 : 1000;
    for (unsigned n = 0; n < messages; ++n) {
        expect_all(GetParam().generate(generator), failures, 30);
        ASSERT_FALSE(failures.enough());
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, WellFormed, ::testing::ValuesIn(kinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace ztdecode::testing
