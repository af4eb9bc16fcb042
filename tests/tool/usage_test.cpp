#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/process.hpp"

// The options: how they are taken, and that help and man page tell of the same values.

namespace ztdecode::testing {

namespace {

Ended ztdecode(std::vector<std::string> arguments, const std::string& input = {}) {
    arguments.insert(arguments.begin(), ZTDECODE_TOOL_FILE);
    return run(arguments, input);
}

TEST(Usage, HelpAndManPageHaveTheSameValues) {
    const std::string help = ztdecode({"--help"}).output;
    const std::string page = contents(ZTDECODE_SOURCE_DIR "/docs/man/ztdecode.1.scd");
    for (const char* option : {"--layout", "--direction", "--format", "--color", "--control", "--progress"}) {
        const std::string refusal = ztdecode({option, "none-of-them"}).error;
        const std::string begin = std::string(option) + ": none-of-them is none of ";
        const std::size_t at = refusal.find(begin);
        ASSERT_NE(at, std::string::npos) << refusal;
        std::string values = refusal.substr(at + begin.size());
        std::replace(values.begin(), values.end(), ',', ' ');
        std::istringstream words(values.substr(0, values.find('\n')));
        for (std::string value; words >> value;) {
            const std::regex word("\\b" + value + "\\b");
            EXPECT_TRUE(std::regex_search(help, word)) << option << " " << value;
            EXPECT_TRUE(std::regex_search(page, word)) << option << " " << value;
        }
    }
}

TEST(Usage, HelpFitsATerminal) {
    std::istringstream help(ztdecode({"--help"}).output);
    for (std::string line; std::getline(help, line);) EXPECT_LE(line.size(), 79U) << line;
}

TEST(Usage, HelpAndVersionSayThatTheDiskIsFull) {
    for (const char* option : {"--help", "--version"}) {
        const Ended ended =
            run({"/bin/sh", "-c", std::string("'" ZTDECODE_TOOL_FILE "' ") + option + " >/dev/full"});
        EXPECT_EQ(ended.error, "ztdecode: standard output: No space left on device\n");
        EXPECT_EQ(ended.status, 2);
    }
}

TEST(Usage, TheLastOfTwoCounts) {
    const Ended ended =
        ztdecode({"--no-input", "--no-input", "--direction", "from", "--direction", "to", "--color", "always",
                  "--color=never", "--jobs", "3", "--jobs", "2", "--layout", "zt", "--layout", "line"},
                 "02 03 04\n");
    EXPECT_EQ(ended.output, "\t- digit dialed '4'\n");
    EXPECT_EQ(ended.error, "");
    EXPECT_EQ(ended.status, 0);
}

void expect_refused(const std::vector<std::string>& arguments, const std::string& why) {
    const Ended ended = ztdecode(arguments);
    EXPECT_EQ(ended.error, "ztdecode: " + why + "\nztdecode --help says how it is used\n");
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.status, 2);
}

TEST(Usage, ARefusalSaysWhatThereIs) {
    expect_refused({"--layout", "foo"},
                   "--layout: foo is none of auto, line, lng2, zt, spzt, spzt-lng2, bin1, bin2");
    expect_refused({"--direction", "up"}, "--direction: up is none of from, to");
    expect_refused({"--format", "json"}, "--format: json is none of text, ndjson, csv, table");
    expect_refused({"--color", "red"}, "--color: red is none of auto, always, never");
    expect_refused({"--control", "on"}, "--control: on is none of auto, raw, escape");
    expect_refused({"--progress", "always"}, "--progress: always is none of auto, never");
    for (const char* wrong : {"0", "257", "two", "2.5", "0x2", "-1"}) {
        expect_refused({"--jobs", wrong}, "--jobs: " + std::string(wrong) + " is no number from 1 to 256");
    }
}

TEST(Usage, ValuesThatAreMissingOrTooMany) {
    for (const char* option :
         {"--layout", "--direction", "--format", "--color", "--control", "--progress", "--jobs"}) {
        expect_refused({option}, std::string(option) + ": its value is missing");
    }
    for (const char* option : {"--no-input", "--audio-only", "--explain", "--debug"}) {
        expect_refused({std::string(option) + "=false"}, std::string(option) + ": takes no value");
    }
}

TEST(Usage, NamesAreExact) {
    expect_refused({"--direction", "TO"}, "--direction: TO is none of from, to");
    expect_refused({"--format", "NDJSON"}, "--format: NDJSON is none of text, ndjson, csv, table");
    expect_refused({"--color", "Never"}, "--color: Never is none of auto, always, never");
}

}  // namespace

}  // namespace ztdecode::testing
