#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include "support/process.hpp"
#include "support/traces.hpp"

// Whole traces, here and in examples/: NAME.<layout> is decoded as `ztdecode --no-input --color never` with
// the options of NAME.options, where there are any, and must give NAME.expected of this folder byte for byte.
// Where no character-names library can be opened (there is none for the 32-bit build), NAME.unnamed is
// expected of the traces that name characters.
//
// What `ztdecode --format ndjson` says of them stands in NAME.ndjson, with --explain of the messages in
// explained.<layout> also in explained.explained.ndjson. Files have their names as seen from their folder.

namespace ztdecode::testing {

namespace {

namespace fs = std::filesystem;

const fs::path source = ZTDECODE_SOURCE_DIR;

std::vector<std::string> options_of(const fs::path& trace) {
    std::vector<std::string> words;
    const fs::path file = beside_golden(trace, ".options");
    if (fs::exists(file)) {
        std::istringstream text(contents(file));
        for (std::string word; text >> word;) words.push_back(word);
    }
    return words;
}

// Whether characters that the trace names have no names here.
bool lacks_names(const fs::path& trace) {
    static const bool names = ::dlopen("libuninameslist.so", RTLD_LAZY) != nullptr;
    return !names && fs::exists(beside_golden(trace, ".unnamed"));
}

fs::path expected_of(const fs::path& trace) {
    return beside_golden(trace, lacks_names(trace) ? ".unnamed" : ".expected");
}

Ended records(const fs::path& trace, const std::vector<std::string>& options) {
    std::vector<std::string> command = {"/usr/bin/env",     "-C",       trace.parent_path(),
                                        ZTDECODE_TOOL_FILE, "--format", "ndjson"};
    for (const auto& word : options_of(trace)) command.push_back(word);
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(trace.filename());
    return run(command);
}

// Line by line, so that a difference shows where it is.
void expect_records(const Ended& ended, const fs::path& expected) {
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.error, "");
    const std::string wanted = contents(expected);
    if (ended.output == wanted) return;
    std::istringstream got_lines(ended.output);
    std::istringstream wanted_lines(wanted);
    std::string got;
    std::string line;
    for (int number = 1; std::getline(wanted_lines, line); ++number) {
        ASSERT_TRUE(std::getline(got_lines, got)) << "no line " << number;
        ASSERT_EQ(got, line) << "line " << number;
    }
    FAIL() << "there are more lines, or no newline at the end";
}

class Golden : public ::testing::TestWithParam<fs::path> {};

TEST_P(Golden, Trace) {
    std::vector<std::string> command = {ZTDECODE_TOOL_FILE, "--no-input", "--color", "never"};
    for (const auto& word : options_of(GetParam())) command.push_back(word);
    command.push_back(GetParam());
    const Ended ended = run(command);
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.error, "");
    EXPECT_EQ(ended.output, contents(expected_of(GetParam())));
}

TEST_P(Golden, Records) {
    if (lacks_names(GetParam())) GTEST_SKIP() << "characters have no names here";
    expect_records(records(GetParam(), {}), beside_golden(GetParam(), ".ndjson"));
}

INSTANTIATE_TEST_SUITE_P(Traces, Golden, ::testing::ValuesIn(golden_traces()), [](const auto& trace) {
    std::string name = trace.param.stem();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

TEST(Golden, ExplainedRecords) {
    const fs::path trace = source / "tests/golden/explained.spzt";
    expect_records(records(trace, {"--explain"}), beside_golden(trace, ".explained.ndjson"));
}

TEST(Golden, ThereAreTraces) { EXPECT_GE(golden_traces().size(), 6U); }

}  // namespace

}  // namespace ztdecode::testing
