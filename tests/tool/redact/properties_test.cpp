#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/record.hpp"
#include "decode/trace_lines.hpp"
#include "support/process.hpp"
#include "support/traces.hpp"

// What holds of every redacted trace, of the golden ones and of those with other bytes in their lines: it has
// the same lines and messages, says the same but for what is hidden, and nothing of that stands in it any
// more.

namespace ztdecode::testing {

namespace {

struct Shown {
    std::string name;
    std::string text;
    std::vector<std::uint8_t> bytes;
    bool is_text = false;
    bool sensitive = false;
    bool shares = false;  // a byte with one that is
};

struct Said {
    std::string what;  // links, names, lengths and the like, of carried messages too
    std::vector<Shown> values;
    std::string text;
    std::vector<std::uint8_t> bytes;
    std::string plain;  // words and bytes that tell nothing about anybody, a mark where others stood
};

struct Seen {
    std::vector<std::string> lines;  // what each of them is
    std::vector<Said> messages;
    std::vector<std::size_t> line_of;  // of each message
};

constexpr char mark = '\x1F';  // between words, and no character of them

// Fields that show once more what others show.
bool is_copy(std::string_view name) {
    return name == "part_bytes" || name == "item_text" || name == "repeated_text";
}

// The bytes that offsets of the message count in.
const std::vector<std::uint8_t>& source_bytes(const Trail& trail, std::uint32_t message,
                                              const std::vector<std::uint8_t>& captured,
                                              std::uint32_t& source) {
    while (message > 0 && trail.messages()[message].bytes.empty())
        message = trail.messages()[message].carrier;
    source = message;
    return message == 0 ? captured : trail.messages()[message].bytes;
}

Said said(const Trail& trail, const Record& record, Outcome outcome, std::string_view text,
          const Message& m) {
    Said result;
    result.text = text;
    result.bytes.assign(m.bytes().begin(), m.bytes().end());
    result.what = std::to_string(static_cast<int>(outcome));
    for (std::size_t k = 0; k < record.size(); ++k) {
        const Record::Part& part = record.part(k);
        result.what += " | " + std::string(part.noted->link) + " " + std::string(part.noted->name) + " " +
                       std::to_string(part.noted->direction) + " " + std::to_string(part.carrier) + " " +
                       std::to_string(part.bytes.size()) + " " +
                       std::to_string(static_cast<int>(part.decoded)) + " unknown " +
                       std::to_string(part.unknown) + " missing " + std::to_string(part.missing) + " code " +
                       std::to_string(part.noted->code);
    }
    std::set<std::pair<std::uint32_t, std::uint32_t>> sensitive;
    for (const bool second : {false, true}) {
        for (const NotedValue& v : trail.values()) {
            // Of HE sets the code of a key may be the character that it types.
            const bool typed = v.name == "key" && trail.messages()[v.message].link == "he" &&
                               std::isalnum(static_cast<int>(v.meaning.number & 0xFF)) != 0;
            const bool hidden = typed || (v.field != nullptr && v.field->sensitivity != Sensitivity::none);
            Shown shown{std::string(v.name),
                        std::string(record.shown(v)),
                        {},
                        v.meaning.kind == Kind::text,
                        hidden && !is_copy(v.name)};
            std::uint32_t source = 0;
            const auto& bytes = source_bytes(trail, v.message, result.bytes, source);
            for (const ByteRange& range : trail.bytes_of(v)) {
                for (std::uint32_t at = range.first; at <= range.last && at < bytes.size(); ++at) {
                    shown.bytes.push_back(bytes[at]);
                    if (shown.sensitive) sensitive.insert({source, at});
                    if (sensitive.contains({source, at})) shown.shares = true;
                }
            }
            if (shown.name == "repeated_text" || shown.name == "part_bytes") shown.shares = true;
            if (second) result.values.push_back(std::move(shown));
        }
    }
    std::string words = result.text;
    for (std::size_t k = 0; k < result.values.size(); ++k) {
        const NotedValue& v = trail.values()[k];
        const bool hidden = result.values[k].sensitive || result.values[k].shares;
        for (std::size_t at = v.begin; hidden && at < v.end && at < words.size(); ++at) words[at] = mark;
    }
    for (std::uint32_t at = 0; at < result.bytes.size(); ++at)
        result.plain += sensitive.contains({0, at}) ? mark : static_cast<char>(result.bytes[at]);
    result.plain = words + mark + result.plain + mark;
    return result;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

// How a trace is read, as the file beside it says.
struct Reading {
    std::vector<std::string> options{};
    std::optional<LineLayout> layout{};
    std::uint32_t direction = from_dhs;
};

Reading reading_of(const std::filesystem::path& trace) {
    Reading reading;
    const auto file = beside_golden(trace, ".options");
    if (!std::filesystem::exists(file)) return reading;
    std::istringstream words(contents(file));
    for (std::string word; words >> word;) reading.options.push_back(word);
    for (const std::string& word : reading.options) {
        if (word == "lng2") reading.layout = LineLayout::line_lng2;
        if (word == "to") reading.direction = to_dhs;
    }
    return reading;
}

Seen seen(const std::string& trace, const Reading& reading) {
    Seen result;
    Session session;
    Trail trail;
    session.trail = &trail;
    TraceReader reader(reading.layout, reading.direction);
    std::uint64_t number = 0;
    for (const std::string& line : lines_of(trace)) {
        const LineVerdict verdict = reader.begin({line.c_str(), line.size()}, ++number);
        std::string what = std::to_string(static_cast<int>(verdict)) + " " + std::to_string(line.size());
        bool goes_on = verdict == LineVerdict::trace_line;
        while (goes_on && reader.next()) {
            const Message& m = *reader.captured().message;
            Text text;
            Record record;
            trail.place = number;
            const Outcome outcome = decode(session, m, text);
            record.take(trail, text.view(), m, outcome);
            result.messages.push_back(said(trail, record, outcome, text.view(), m));
            result.line_of.push_back(result.lines.size());
            goes_on = outcome == Outcome::decoded;
            what += " left over " + std::to_string(reader.captured().left_over);
        }
        if (goes_on) what += " refused " + std::to_string(static_cast<int>(reader.refusal().reason));
        result.lines.push_back(what);
    }
    return result;
}

const char* const key = "a key for tests, and for nothing else";

Ended redact(const std::string& trace, const std::vector<std::string>& options = {}) {
    const TemporaryFile key_file(key);
    std::vector<std::string> command = {ZTDECODE_TOOL_FILE, "redact", "--key", key_file.path()};
    command.insert(command.end(), options.begin(), options.end());
    return run(command, trace);
}

// Lines whose messages say something else: the command names them.
std::set<std::size_t> changed_lines(const std::string& error) {
    std::set<std::size_t> lines;
    for (const std::string& line : lines_of(error)) {
        if (line.find("changes what else") == std::string::npos) continue;
        lines.insert(std::stoul(line.substr(line.find("-:") + 2)) - 1);
    }
    return lines;
}

// How many messages it could not be looked at, because what they say had to change.
std::size_t expect_same_but_for_hidden(const std::string& trace, const Ended& redacted,
                                       const Reading& reading) {
    const Seen before = seen(trace, reading);
    const Seen after = seen(redacted.output, reading);
    const std::set<std::size_t> changed = changed_lines(redacted.error);
    EXPECT_EQ(before.lines.size(), after.lines.size());
    if (before.messages.size() != after.messages.size()) {
        ADD_FAILURE() << before.messages.size() << " messages became " << after.messages.size();
        return 0;
    }
    for (std::size_t k = 0; k < std::min(before.lines.size(), after.lines.size()); ++k)
        EXPECT_EQ(before.lines[k], after.lines[k]) << "line " << k + 1;
    for (std::size_t k = 0; k < before.messages.size(); ++k) {
        if (changed.contains(before.line_of[k])) continue;
        const Said& a = before.messages[k];
        const Said& b = after.messages[k];
        EXPECT_EQ(a.what, b.what) << "line " << before.line_of[k] + 1;
        if (a.values.size() != b.values.size()) {
            ADD_FAILURE() << "line " << before.line_of[k] + 1 << "\n" << a.text << "\n" << b.text;
            continue;
        }
        for (std::size_t v = 0; v < a.values.size(); ++v) {
            EXPECT_EQ(a.values[v].name, b.values[v].name);
            const bool hidden = a.values[v].sensitive || a.values[v].shares;
            if (hidden) continue;
            EXPECT_EQ(a.values[v].text, b.values[v].text) << "line " << before.line_of[k] + 1;
        }
    }
    return changed.size();
}

bool is_word(unsigned char c) {
    const auto low = static_cast<unsigned char>(c | 0x20);
    return (low >= 'a' && low <= 'z') || (c >= '0' && c <= '9') || c >= 0x80;
}

// Nothing is set, or it is a subnet mask: neither tells about anybody.
bool tells_nothing(const std::vector<std::uint8_t>& bytes) {
    const auto all = [&](std::uint8_t value) {
        return std::all_of(bytes.begin(), bytes.end(), [value](std::uint8_t b) { return b == value; });
    };
    if (all(0) || all(0xFF)) return true;
    if (bytes.size() != 4) return false;
    std::uint32_t bits = 0;
    for (const std::uint8_t byte : bytes) bits = bits << 8 | byte;
    return (~bits & (~bits + 1)) == 0;
}

std::string utf16(std::string_view text, bool little) {
    std::string result;
    for (const char c : text) result.append(little ? std::string{c, '\0'} : std::string{'\0', c});
    return result;
}

std::string half_bytes(std::string_view digits) {
    std::string result;
    for (std::size_t k = 0; k + 1 < digits.size(); k += 2)
        result += static_cast<char>((digits[k] - '0') << 4 | (digits[k + 1] - '0'));
    return result;
}

// Enough to know it again: four letters or digits, or four bytes of which so many are something: zeros in
// place of what was blanked may stand beside small numbers. (What terminals have in the private area are keys
// and pictures.)
bool can_be_known_again(const std::string& bytes, bool characters, int least) {
    if (bytes.size() < 4) return false;
    std::ptrdiff_t words = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto c = static_cast<unsigned char>(bytes[at]);
        const auto next = at + 1 < bytes.size() ? static_cast<unsigned char>(bytes[at + 1]) : 0;
        if (c == 0xEE || (c == 0xEF && next < 0xA4)) {
            at += 2;
        } else if (characters ? is_word(c) : c != 0 && c != 0xFF) {
            ++words;
        }
    }
    return words >= (characters ? 4 : least);
}

// Nothing of what is sensitive, of four letters or digits or of four bytes at least, stands in the words, the
// texts or the bytes that come out.
void expect_nothing_left(const std::string& trace, const Ended& redacted, const Reading& reading,
                         int least = 2) {
    std::string out = redacted.output;
    for (const Said& m : seen(redacted.output, reading).messages) {
        out += mark + m.text + mark;
        out.append(m.bytes.begin(), m.bytes.end());
    }
    std::set<std::string> looked_for;
    std::string said_besides;  // the number of an object may be somebody's password as well
    for (const Said& m : seen(trace, reading).messages) {
        said_besides += m.plain;
        for (const Shown& v : m.values) {
            if (!v.sensitive || tells_nothing(v.bytes)) continue;
            const std::string bytes(v.bytes.begin(), v.bytes.end());
            const bool characters = v.is_text || std::all_of(bytes.begin(), bytes.end(), [](char c) {
                                        return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F;
                                    });
            if (!can_be_known_again(bytes, characters, least)) continue;
            looked_for.insert(bytes);
            if (!characters) continue;
            looked_for.insert(utf16(bytes, true));
            looked_for.insert(utf16(bytes, false));
            const bool digits =
                std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= '0' && c <= '9'; });
            if (digits && bytes.size() >= 8) looked_for.insert(half_bytes(bytes));
        }
    }
    for (const std::string& value : looked_for) {
        if (said_besides.find(value) != std::string::npos) continue;
        EXPECT_EQ(out.find(value), std::string::npos)
            << ::testing::PrintToString(value) << " stands at " << out.find(value) << " still";
    }
}

// The lines of all golden traces with other bytes here and there, behind their lengths.
std::string mutated(unsigned seed, unsigned one_in) {
    std::mt19937 random(seed);
    std::string result;
    for (const Captured& captured : golden_messages()) {
        std::string line = captured.line;
        if (line.size() < 14 || line[6] == ' ' || (line[6] != 'S' && line[6] != 'R')) continue;
        const bool two = captured.bytes.size() > 255 || line.substr(11, 2) == "00";
        for (std::size_t at = two ? 14 : 11; at + 1 < line.size(); at += 3) {
            if (random() % one_in != 0) continue;
            const char* const digits = "0123456789abcdef";
            line[at] = digits[random() % 16];
            line[at + 1] = digits[random() % 16];
        }
        result += line + '\n';
    }
    return result;
}

}  // namespace

TEST(Redact, GoldenTracesSayTheSameButForWhatIsHidden) {
    for (const auto& trace : golden_traces()) {
        SCOPED_TRACE(trace.filename().string());
        const std::string text = contents(trace);
        const Reading reading = reading_of(trace);
        const Ended redacted = redact(text, reading.options);
        EXPECT_EQ(redacted.status, 0) << redacted.error;
        EXPECT_EQ(expect_same_but_for_hidden(text, redacted, reading), 0U);
        expect_nothing_left(text, redacted, reading);
    }
}

TEST(Redact, TheSameKeyGivesTheSame) {
    for (const auto& trace : golden_traces()) {
        const std::string text = contents(trace);
        const auto options = reading_of(trace).options;
        EXPECT_EQ(redact(text, options).output, redact(text, options).output) << trace;
    }
}

TEST(Redact, MutatedTracesSayTheSameButForWhatIsHidden) {
    std::size_t changed = 0;
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        const std::string text = mutated(seed, seed % 2 == 0 ? 10 : 60);
        const Ended redacted = redact(text);
        EXPECT_EQ(redacted.error.find("blanked whole"), std::string::npos) << redacted.error;
        changed += expect_same_but_for_hidden(text, redacted, {});
        expect_nothing_left(text, redacted, {}, 3);
    }
    // Where a secret's bytes, say, are lengths as well. Of some ten thousand messages it is a few.
    EXPECT_LT(changed, 20U);
}

}  // namespace ztdecode::testing
