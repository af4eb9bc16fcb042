#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "fuzz/bounds.hpp"
#include "support/process.hpp"
#include "support/traces.hpp"
#include "tool/formats.hpp"
#include "tool/pieces.hpp"

// A trace that is decoded in pieces gives what it gives as a whole: texts, what is said of them and in which
// order the two go out, sums and the exit status, wherever it is cut.

namespace ztdecode::testing {

namespace {

using namespace tool;

constexpr std::uint64_t seed = 0xC0FFEE;
constexpr std::size_t step = fuzz::sanitized ? 23 : 1;  // between two cuts
constexpr int mutations = fuzz::sanitized ? 4 : 40;

class Memories : public Source {
  public:
    explicit Memories(std::string_view text) : rest_(text) {}
    std::size_t read(char* to, std::size_t n) override {
        const std::size_t got = std::min(n, rest_.size());
        std::memcpy(to, rest_.data(), got);
        rest_.remove_prefix(got);
        return got;
    }
    bool may_wait() const override { return false; }

  private:
    std::string_view rest_;
};

// Both outputs in the order in which they go out.
struct Log {
    std::string words;
    char last = 0;
};
class Logged : public Output {
  public:
    Logged(Log& log, char name) : Output(-1, false), log_(log), name_(name) {}

  private:
    void send(std::string_view words) override {
        if (words.empty()) return;
        if (log_.last != name_) log_.words.append("\n[").append(1, name_).append("]\n");
        log_.last = name_;
        log_.words += words;
    }
    Log& log_;
    char name_;
};

struct Result {
    std::string words;
    std::uint64_t lines;
    bool refused;
    bool matched;
    bool in_pieces;
    bool operator==(const Result&) const = default;
};

Result decode(const std::string& trace, const Options& options, const Splitting& splitting) {
    Log log;
    Logged out(log, 'o');
    Logged diagnostics(log, 'e');
    const Display display{options.color == Color::always, false, false, false};
    const std::string name = "trace";
    const auto make = [&](Sessions& sessions, Output& to, Output& complaints) {
        return std::make_unique<TraceDecoder>(name, make_report(name, options, display, to), options, display,
                                              false, sessions, to, complaints);
    };
    Sessions sessions;
    const auto whole = make(sessions, out, diagnostics);
    Memories source(trace);
    const bool in_pieces = can_be_decoded_in_pieces(options, whole->report());
    if (splitting.jobs > 1 && in_pieces) {
        Pieces pieces(*whole, sessions.main(), out, diagnostics, splitting, make);
        whole->decode(
            source, -1, [&](Input& input) { pieces.decode(input); }, splitting.lines_alone);
    } else {
        whole->decode(source, -1);
    }
    return {log.words, whole->lines(), whole->refused_lines(), whole->matched(), in_pieces};
}

struct Way {
    const char* name;
    std::function<void(Options&)> set;
};
const std::vector<Way>& ways() {
    static const std::vector<Way> all = {
        {"texts", [](Options&) {}},
        {"no input", [](Options& o) { o.input = false; }},
        {"colours", [](Options& o) { o.color = Color::always; }},
        {"explain", [](Options& o) { o.explain = true; }},
        {"audio only", [](Options& o) { o.audio_only = true; }},
        {"pad", [](Options& o) { o.pad = true; }},
        {"quiet", [](Options& o) { o.quiet = true; }},
        {"time", [](Options& o) { o.time = TimeShown::absolute; }},
        {"records", [](Options& o) { o.format = tool::Format::ndjson; }},
        {"records with words",
         [](Options& o) {
             o.format = tool::Format::ndjson;
             o.explain = true;
         }},
        {"check", [](Options& o) { o.check = true; }},
        {"link", [](Options& o) { o.selection.links = {"digital"}; }},
        {"grep",
         [](Options& o) {
             o.selection.grep = {"segment|opt|led"};
             o.selection.invert = true;
         }},
        {"where", [](Options& o) { o.selection.where = {"line % 3 = 0 OR length > 20"}; }},
        {"a failing where", [](Options& o) { o.selection.where = {"json_extract(text, '$.a') = 1"}; }},
        {"refused", [](Options& o) { o.selection.refused = true; }},
        {"count",
         [](Options& o) {
             o.selection.count = true;
             o.selection.from_system = true;
         }},
        {"the first ones",
         [](Options& o) {
             o.selection.to_system = true;
             o.selection.most = 7;
         }},
        {"the first records",
         [](Options& o) {
             o.format = tool::Format::ndjson;
             o.selection.unknown = true;
             o.selection.most = 2;
         }},
    };
    return all;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        lines.push_back(text.substr(at, end - at));
        at = end;
    }
    return lines;
}

// The same, or the expression that failed there.
std::string failed_or(const std::function<Result()>& decode, Result& result) {
    try {
        result = decode();
        return {};
    } catch (const FailedExpression& failed) {
        return std::to_string(failed.line()) + ": " + failed.what();
    }
}

void expect_the_same(const std::string& trace, const Way& way, const Splitting& splitting,
                     const Result& expected, const std::string& failed) {
    Options options;
    way.set(options);
    Result result{};
    EXPECT_EQ(failed_or([&] { return decode(trace, options, splitting); }, result), failed);
    if (!failed.empty()) return;
    ASSERT_TRUE(result == expected) << way.name << ", " << splitting.lines_alone << " lines alone, pieces of "
                                    << splitting.piece << " bytes, batches of " << splitting.batch << "\n"
                                    << result.words.substr(0, 4000) << "\ninstead of\n"
                                    << expected.words.substr(0, 4000);
}

Result whole(const std::string& trace, const Way& way, std::string& failed) {
    Options options;
    way.set(options);
    Result result{};
    failed = failed_or([&] { return decode(trace, options, {.jobs = 1}); }, result);
    return result;
}

class Random {
  public:
    std::size_t below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(engine_); }
    Splitting splitting(std::uint64_t lines_alone) {
        return {.jobs = 2 + static_cast<unsigned>(below(2)),
                .lines_alone = lines_alone,
                .piece = std::size_t{1} << below(11),
                .batch = std::size_t{1} << below(9)};
    }

  private:
    std::mt19937_64 engine_{seed};
};

void expect_the_same_cut_anywhere(const std::string& trace, const Way& way, std::size_t between,
                                  Random& random) {
    std::string failed;
    const Result expected = whole(trace, way, failed);
    const std::size_t lines = lines_of(trace).size();
    for (std::size_t cut = 1 + random.below(between); cut <= lines; cut += between)
        expect_the_same(trace, way, random.splitting(cut), expected, failed);
}

TEST(Pieces, GoldenTracesAreTheSameWhereverTheyAreCut) {
    Random random;
    for (const auto& file : golden_traces()) {
        SCOPED_TRACE(file.filename().string());
        const std::string trace = contents(file.string());
        for (const char* name : {"texts", "records", "check"}) {
            const auto way = std::find_if(ways().begin(), ways().end(),
                                          [&](const Way& w) { return w.name == std::string(name); });
            expect_the_same_cut_anywhere(trace, *way, step, random);
        }
    }
}

TEST(Pieces, WhateverIsAskedForIsTheSame) {
    Random random;
    for (const auto& file : golden_traces()) {
        SCOPED_TRACE(file.filename().string());
        const std::string trace = contents(file.string());
        for (const Way& way : ways()) expect_the_same_cut_anywhere(trace, way, 40 * step, random);
    }
}

// Lines of all golden traces in any order, with some that are wrong, and others among them.
class Mutated {
  public:
    Mutated() {
        for (const auto& file : golden_traces()) {
            for (std::string& line : lines_of(contents(file.string()))) lines_.push_back(std::move(line));
        }
    }
    std::string next(Random& random) {
        const std::vector<std::string> others = {"",
                                                 "\n",
                                                 "# a comment\n",
                                                 "08:42:01 link up\n",
                                                 "000001S 09 03\r\n",
                                                 "000001S 08 0c 81 00 09 21 04 03 41\n",
                                                 "000002S 07 0c 00 42 43 44 45 46\n",
                                                 "000003S 05 0c 80 00 01 21\n",
                                                 "000004S 07 0c 80 00 03 21 01 07\n",
                                                 "000005S 06 0c 82 00 06 21 07\n",
                                                 "12:00:01.250 set-4 000006R 02 03 04\n",
                                                 "000007R 02 03 04 05 06\n",
                                                 "000008R 02 03 zz\n"};
        std::string trace;
        const std::size_t lines = 20 + random.below(200);
        for (std::size_t k = 0; k < lines; ++k) {
            std::string line = random.below(4) == 0 ? others[random.below(others.size())]
                                                    : lines_[random.below(lines_.size())];
            if (!line.empty() && random.below(5) == 0)
                line[random.below(line.size())] = "0123456789abcdef \n\r"[random.below(19)];
            trace += line;
        }
        if (random.below(4) == 0) {
            for (char& c : trace) c = c == '\n' ? '\r' : c;
        }
        return trace;
    }

  private:
    std::vector<std::string> lines_;
};

TEST(Pieces, MutatedTracesAreTheSame) {
    Random random;
    Mutated mutated;
    for (int k = 0; k < mutations; ++k) {
        SCOPED_TRACE(k);
        const std::string trace = mutated.next(random);
        if (trace.empty()) continue;
        for (const Way& way : ways()) {
            std::string failed;
            const Result expected = whole(trace, way, failed);
            for (int n = 0; n < 4; ++n)
                expect_the_same(trace, way, random.splitting(1 + random.below(20)), expected, failed);
        }
    }
}

// Longer than an input holds: they are taken one by one, and those behind them in pieces again.
TEST(Pieces, LongLinesAreTheSame) {
    const std::string plain = "000001R 02 03 04\n";
    std::string trace;
    for (int k = 0; k < 400; ++k) {
        trace += plain;
        if (k % 150 == 100) trace += std::string(3000000, 'x') + "\n";
        if (k % 150 == 120) trace += "# " + std::string(300000, 'x') + "\n";
    }
    for (const char* end : {"", "000001R 02 03", "# no line end"}) {
        const std::string whole_trace = trace + end;
        for (const std::size_t k : {0U, 8U, 10U}) {
            std::string failed;
            const Result expected = whole(whole_trace, ways()[k], failed);
            expect_the_same(whole_trace, ways()[k],
                            {.jobs = 2, .lines_alone = 10, .piece = 500, .batch = 100}, expected, failed);
        }
    }
}

// More text than is held for a piece: what is too much is decoded at its turn.
TEST(Pieces, LongTextsAreTheSame) {
    const std::string deep = nested_hub_line(3000);
    std::string trace;
    for (int k = 0; k < 12; ++k) trace += "000001R 02 03 04\n" + deep + "\n000003S 01 2a\n";
    Options options;
    const Result expected = decode(trace, options, {.jobs = 1});
    EXPECT_GT(expected.words.size(), std::size_t{8} << 20);
    expect_the_same(trace, ways().front(), {.jobs = 2, .lines_alone = 1, .piece = 200000, .batch = 1},
                    expected, "");
    expect_the_same(trace, ways().front(), {.jobs = 3, .lines_alone = 1, .piece = 1000000, .batch = 100000},
                    expected, "");
}

TEST(Pieces, SomeOptionsNeedTheWholeTrace) {
    const Display display{};
    Output out(-1, false);
    const auto in_pieces = [&](const std::function<void(Options&)>& set) {
        Options options;
        set(options);
        return can_be_decoded_in_pieces(options, *make_report("trace", options, display, out));
    };
    EXPECT_TRUE(in_pieces([](Options&) {}));
    EXPECT_TRUE(in_pieces([](Options& o) { o.selection.count = true; }));
    EXPECT_FALSE(in_pieces([](Options& o) { o.selection.around = 2; }));
    EXPECT_FALSE(in_pieces([](Options& o) { o.selection.before = 1; }));
    EXPECT_FALSE(in_pieces([](Options& o) { o.layout = Layout::bin2; }));
    EXPECT_FALSE(in_pieces([](Options& o) { o.debug = true; }));
    EXPECT_FALSE(in_pieces([](Options& o) { o.follow = true; }));
    EXPECT_FALSE(in_pieces([](Options& o) { o.time = TimeShown::delta; }));
    EXPECT_FALSE(in_pieces([](Options& o) { o.terminal = Terminal::columns; }));
}

}  // namespace

}  // namespace ztdecode::testing
