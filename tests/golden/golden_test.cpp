#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include "support/process.hpp"

// Whole traces: NAME.<layout> is decoded as `ztdecode --no-input --color never` with the options of
// NAME.options, where there are any, and must give NAME.expected byte for byte. Where no character-names
// library can be opened (there is none for the 32-bit build), NAME.unnamed is expected of the traces that
// name characters.

namespace ztdecode::testing {

namespace {

namespace fs = std::filesystem;

const fs::path folder = fs::path(ZTDECODE_SOURCE_DIR) / "tests/golden";

std::vector<fs::path> traces() {
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const fs::path expected = fs::path(entry.path()).replace_extension(".expected");
        const auto extension = entry.path().extension();
        const bool beside = extension == ".expected" || extension == ".options" || extension == ".unnamed";
        if (!beside && fs::exists(expected)) found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<std::string> options_of(const fs::path& trace) {
    std::vector<std::string> words;
    const fs::path file = fs::path(trace).replace_extension(".options");
    if (fs::exists(file)) {
        std::istringstream text(contents(file));
        for (std::string word; text >> word;) words.push_back(word);
    }
    return words;
}

fs::path expected_of(const fs::path& trace) {
    static const bool names = ::dlopen("libuninameslist.so", RTLD_LAZY) != nullptr;
    const fs::path unnamed = fs::path(trace).replace_extension(".unnamed");
    return !names && fs::exists(unnamed) ? unnamed : fs::path(trace).replace_extension(".expected");
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

INSTANTIATE_TEST_SUITE_P(Traces, Golden, ::testing::ValuesIn(traces()), [](const auto& trace) {
    std::string name = trace.param.stem();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

TEST(Golden, ThereAreTraces) { EXPECT_GE(traces().size(), 6U); }

}  // namespace

}  // namespace ztdecode::testing
