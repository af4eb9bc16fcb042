#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include "support/process.hpp"

// Whole traces, here and in examples/: NAME.<layout> is decoded as `ztdecode --no-input --color never` with
// the options of NAME.options, where there are any, and must give NAME.expected of this folder byte for byte.
// Where no character-names library can be opened (there is none for the 32-bit build), NAME.unnamed is
// expected of the traces that name characters.

namespace ztdecode::testing {

namespace {

namespace fs = std::filesystem;

const fs::path source = ZTDECODE_SOURCE_DIR;

// NAME.<ending> of this folder, for a trace that may stand in another.
fs::path beside(const fs::path& trace, const char* ending) {
    return source / "tests/golden" / trace.filename().replace_extension(ending);
}

std::vector<fs::path> traces() {
    std::vector<fs::path> found;
    for (const char* folder : {"tests/golden", "examples"}) {
        for (const auto& entry : fs::directory_iterator(source / folder)) {
            const auto ending = entry.path().extension();
            if (ending == ".spzt" || ending == ".zt" || ending == ".lng2") found.push_back(entry.path());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<std::string> options_of(const fs::path& trace) {
    std::vector<std::string> words;
    const fs::path file = beside(trace, ".options");
    if (fs::exists(file)) {
        std::istringstream text(contents(file));
        for (std::string word; text >> word;) words.push_back(word);
    }
    return words;
}

fs::path expected_of(const fs::path& trace) {
    static const bool names = ::dlopen("libuninameslist.so", RTLD_LAZY) != nullptr;
    const fs::path unnamed = beside(trace, ".unnamed");
    return !names && fs::exists(unnamed) ? unnamed : beside(trace, ".expected");
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
