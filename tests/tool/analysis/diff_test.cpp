#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "support/process.hpp"
#include "support/traces.hpp"

// What holds for every comparison of two traces: golden ones, mutated ones, long ones.

namespace ztdecode::testing {

namespace {

using Lines = std::vector<std::string>;

Lines lines_of(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

struct Difference {
    std::string kind;
    int a = 0;  // line, 0 where there is none
    int b = 0;
    std::string said;  // everything else

    bool operator<(const Difference& other) const {
        return std::tie(kind, a, b, said) < std::tie(other.kind, other.a, other.b, other.said);
    }
    bool operator==(const Difference&) const = default;
};

std::string shown(const Difference& difference) {
    return difference.kind + " " + std::to_string(difference.a) + " " + std::to_string(difference.b) + " " +
           difference.said;
}

std::string json_of(const rapidjson::Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return {buffer.GetString(), buffer.GetSize()};
}

// `swapped`: as if the two had been named the other way round.
Difference read(const std::string& line, bool swapped) {
    rapidjson::Document object;
    object.Parse(line.c_str());
    EXPECT_FALSE(object.HasParseError()) << line;
    const char* const one = swapped ? "b" : "a";
    const char* const other = swapped ? "a" : "b";
    const auto place = [&](const char* side) {
        return object[side].IsNull() ? 0 : object[side]["line"].GetInt();
    };
    Difference difference;
    difference.a = place(one);
    difference.b = place(other);
    difference.kind = difference.a == 0   ? "only_in_b"
                      : difference.b == 0 ? "only_in_a"
                                          : object["kind"].GetString();
    if (!swapped) {
        EXPECT_EQ(difference.kind, object["kind"].GetString());
    }
    difference.said = json_of(object["direction"]) + json_of(object["link"]) + json_of(object["message"]);
    if (object.HasMember("fields")) difference.said += json_of(object["fields"]);
    std::multiset<std::string> changes;
    if (object.HasMember("changes")) {
        for (const auto& change : object["changes"].GetArray()) {
            changes.insert(json_of(change["field"]) + json_of(change["in"]) + json_of(change[one]) +
                           json_of(change[other]));
        }
    }
    for (const std::string& change : changes) difference.said += change;
    return difference;
}

struct Compared {
    int status = 0;
    std::vector<Difference> differences;  // in their order
};

Compared compare(const TemporaryFile& a, const TemporaryFile& b, const std::vector<std::string>& options,
                 bool swapped = false) {
    std::vector<std::string> command = {ZTDECODE_TOOL_FILE, "diff", "--format", "ndjson"};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(a.path());
    command.push_back(b.path());
    const Ended ended = run(command);
    Compared compared{ended.status, {}};
    for (const std::string& line : lines_of(ended.output))
        compared.differences.push_back(read(line, swapped));
    return compared;
}

// The lines of a trace that say something, with each message.
std::vector<int> lines_with_messages(const TemporaryFile& trace, const std::vector<std::string>& options) {
    std::vector<std::string> command = {ZTDECODE_TOOL_FILE, "--format", "ndjson", trace.path()};
    command.insert(command.end(), options.begin(), options.end());
    std::vector<int> numbers;
    for (const std::string& line : lines_of(run(command).output)) {
        rapidjson::Document object;
        object.Parse(line.c_str());
        const std::string kind = object["kind"].GetString();
        if (kind == "message" || kind == "refused") numbers.push_back(object["line"].GetInt());
    }
    return numbers;
}

// Every message is told of once, in its trace's order; the other way round the same is told the other way
// round.
void expect_sound(const TemporaryFile& a, const TemporaryFile& b, const std::vector<std::string>& options) {
    std::vector<std::string> whole = options;
    whole.insert(whole.end(), {"-U", "100000"});
    Compared forward = compare(a, b, whole);
    std::vector<int> of_a;
    std::vector<int> of_b;
    bool different = false;
    for (const Difference& d : forward.differences) {
        if (d.a != 0) of_a.push_back(d.a);
        if (d.b != 0) of_b.push_back(d.b);
        different = different || d.kind != "same";
    }
    EXPECT_EQ(forward.status, different ? 1 : 0);
    if (different) {
        EXPECT_EQ(of_a, lines_with_messages(a, options));
        EXPECT_EQ(of_b, lines_with_messages(b, options));
    }
    Compared backward = compare(b, a, whole, true);
    EXPECT_EQ(backward.status, forward.status);
    std::sort(forward.differences.begin(), forward.differences.end());
    std::sort(backward.differences.begin(), backward.differences.end());
    EXPECT_EQ(forward.differences.size(), backward.differences.size());
    const auto [one, other] = std::mismatch(forward.differences.begin(), forward.differences.end(),
                                            backward.differences.begin(), backward.differences.end());
    if (one != forward.differences.end() && other != backward.differences.end()) {
        EXPECT_EQ(shown(*one), shown(*other));
    }
}

std::vector<std::string> options_of(const std::filesystem::path& trace) {
    std::vector<std::string> options;
    const auto file = beside_golden(trace, ".options");
    if (!std::filesystem::exists(file)) return options;
    std::istringstream words(contents(file));
    for (std::string word; words >> word;) options.push_back(word);
    return options;
}

// Lines that go, come twice, change places, or have another digit at their end.
std::string mutated(const std::string& trace, std::mt19937& random) {
    Lines lines = lines_of(trace);
    for (int k = 0; k < 6 && lines.size() > 2; ++k) {
        const auto at = lines.begin() + static_cast<std::ptrdiff_t>(random() % (lines.size() - 1));
        switch (random() % 4) {
            case 0:
                lines.erase(at);
                break;
            case 1:
                lines.insert(at, std::string(*at));
                break;
            case 2:
                std::swap(*at, *(at + 1));
                break;
            default:
                if (!at->empty()) at->back() = "0123456789abcdef"[random() % 16];
                break;
        }
    }
    return joined(lines);
}

TEST(Diff, ATraceAndItself) {
    for (const auto& trace : golden_traces()) {
        const TemporaryFile file(contents(trace));
        const auto options = options_of(trace);
        const Compared compared = compare(file, file, options);
        EXPECT_EQ(compared.status, 0) << trace;
        EXPECT_TRUE(compared.differences.empty()) << trace;
    }
}

TEST(Diff, AShuffledTrace) {
    std::mt19937 random(7);
    for (const auto& trace : golden_traces()) {
        Lines lines = lines_of(contents(trace));
        const TemporaryFile original(joined(lines));
        std::shuffle(lines.begin(), lines.end(), random);
        const TemporaryFile shuffled(joined(lines));
        const auto options = options_of(trace);
        EXPECT_EQ(compare(original, shuffled, options).status, 1) << trace;
        expect_sound(original, shuffled, options);
    }
}

TEST(Diff, MutatedTraces) {
    std::mt19937 random(8);
    for (const auto& trace : golden_traces()) {
        const TemporaryFile original(contents(trace));
        const auto options = options_of(trace);
        for (int round = 0; round < 3; ++round) {
            const TemporaryFile other(mutated(contents(trace), random));
            expect_sound(original, other, options);
        }
    }
}

// A key that is pushed: there are so many different ones.
std::string line_of(int number, int kinds) {
    char line[64];
    const int kind = number % kinds;
    std::snprintf(line, sizeof line, "%06dS 06 27 00 00 %02x %02x %02x\n", number % 1000000,
                  0x30 + kind / 900, 0x30 + kind / 30 % 30, 0x30 + kind % 30);
    return line;
}

int count(const Compared& compared, const std::string& kind) {
    return static_cast<int>(std::count_if(compared.differences.begin(), compared.differences.end(),
                                          [&](const Difference& d) { return d.kind == kind; }));
}

// A long piece more, and far behind it a short one less: what is in between is found again.
TEST(Diff, LongPieces) {
    for (const int kinds : {20000, 700}) {
        std::string a;
        std::string b;
        for (int k = 0; k < 20000; ++k) {
            const std::string line = line_of(k * 7, kinds);
            if (k < 15000 || k >= 15005) b += line;
            a += line;
            if (k != 4000) continue;
            for (int more = 0; more < 3000; ++more) b += line_of(more * 11 + 5, kinds);
        }
        const TemporaryFile file_a(a);
        const TemporaryFile file_b(b);
        const Compared compared = compare(file_a, file_b, {});
        EXPECT_EQ(compared.status, 1);
        EXPECT_EQ(count(compared, "only_in_b") - count(compared, "only_in_a"), 2995);
        EXPECT_LE(compared.differences.size(), 3200U) << kinds;
        expect_sound(file_a, file_b, {});
    }
}

}  // namespace

}  // namespace ztdecode::testing
