#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>

#include "fuzz/bounds.hpp"
#include "support/process.hpp"
#include "support/traces.hpp"

// The command where threads, memory, descriptors or room give out: what was hit is named, the rest goes on.

namespace ztdecode::testing {

namespace {

class Limits : public ::testing::Test {
  protected:
    void SetUp() override {
        if (fuzz::sanitized) GTEST_SKIP() << "a sanitizer needs memory and descriptors of its own";
    }
};

// Descriptors above the standard ones that this process left open count as well.
const std::string few_descriptors = "exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-; ulimit -n ";

Ended limited(const std::string& limits, const std::string& arguments) {
    return run({"/bin/sh", "-c", limits + "; exec '" ZTDECODE_TOOL_FILE "' " + arguments});
}

// Address space of so many KiB.
std::string memory(int kib) { return "ulimit -v " + std::to_string(kib); }

// Whether there is room for the command, and some more: with less, the C library gives up before the command
// has its say.
bool is_enough(int kib, const std::string& small_file) {
    return limited(memory(kib - 500), small_file).status == 0;
}

std::string many_lines() {
    std::string text;
    for (int i = 0; i < 30000; ++i) text += "000001R 02 03 04\n";
    return text;
}

std::string small_text() {
    std::string text;
    for (int i = 0; i < 1000; ++i) text += "\t- digit dialed '4'\n";
    return text;
}

std::string small_trace() {
    std::string text;
    for (int i = 0; i < 1000; ++i) text += "000001R 02 03 04\n";
    return text;
}

std::string deep_trace() { return "000001S 01 2a\n" + nested_hub_line(5100) + "\n000003S 02 21 07\n"; }

std::string two_bytes(std::size_t first, std::size_t second) {
    char bytes[16];
    std::snprintf(bytes, sizeof bytes, " %02x %02x", static_cast<unsigned>(first),
                  static_cast<unsigned>(second));
    return bytes;
}

std::string little_endian(std::size_t n) { return two_bytes(n & 0xFF, n >> 8); }

// A first segment with hubs and super messages inside each other, then one line with many last segments: each
// of them decodes them all.
std::string line_of_long_texts(int messages) {
    std::string nest = " 0c 00";
    std::size_t length = 2;
    for (; length + 5 <= 5000; length += 5) nest.insert(0, " 14 10 17" + little_endian(length));
    std::string trace =
        "zt" + little_endian(length + 4) + " 0c 81" + two_bytes(length >> 8, length & 0xFF) + nest + "\nzt";
    for (int k = 0; k < messages; ++k) trace += " 02 00 0c 00";
    return trace;
}

// A stack of that size fits no address space.
const std::string no_threads = sizeof(void*) == 8 ? "ulimit -s 137438953472" : "ulimit -s 3900000";  // in KiB

TEST_F(Limits, FilesAreDecodedOneByOneWhereNoThreadStarts) {
    const TemporaryFile one(small_trace());
    const TemporaryFile two("000001S 01 2a\n");
    const Ended ended = limited(no_threads, "--no-input --jobs 2 " + one.path() + " " + two.path());
    EXPECT_TRUE(ended.output == small_text() + "\t- version inquiry\n");
    EXPECT_EQ(ended.error, "");
    EXPECT_EQ(ended.status, 0);
}

TEST_F(Limits, FewerThreadsDoTheWorkWhereNotAllStart) {
    const TemporaryFile one(small_trace());
    const std::string three = one.path() + " " + one.path() + " " + one.path();
    const Ended ended = limited("ulimit -s 150000; ulimit -v 400000", "--no-input --jobs 3 " + three);
    EXPECT_TRUE(ended.output == small_text() + small_text() + small_text());
    EXPECT_EQ(ended.error, "");
    EXPECT_EQ(ended.status, 0);
}

void expect_honest(const Ended& ended) {
    EXPECT_TRUE(ended.status >= 0 && ended.status <= 2) << ended.status;
    EXPECT_EQ(ended.error.empty(), ended.status == 0) << ended.error;
    std::istringstream lines(ended.error);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_TRUE(line.starts_with("ztdecode: ")) << line;
        EXPECT_EQ(line.find("standard output"), std::string::npos) << line;
    }
}

TEST_F(Limits, AMessageWithoutMemoryIsRefusedAndTheWorkGoesOn) {
    const TemporaryFile deep(deep_trace());
    const TemporaryFile other("000001S 02 21 07\n");
    int refused = 0;
    for (int kib = 4000; kib < 12000; kib += 500) {
        if (!is_enough(kib, other.path())) continue;
        const Ended ended = limited(memory(kib), "--no-input " + deep.path() + " " + other.path());
        expect_honest(ended);
        if (ended.status != 1) continue;
        ++refused;
        EXPECT_EQ(ended.output, "\t- version inquiry\n\t- all leds OFF\n\t- all leds OFF\n");
        EXPECT_EQ(ended.error, "ztdecode: " + deep.path() + ":2:1: no memory for this message\n");
    }
    EXPECT_GT(refused, 0);
}

TEST_F(Limits, ALineOfManyLongTextsTakesTheMemoryOfFew) {
    for (const char* option : {"", "--color always", "--debug"}) {
        const TemporaryFile trace(line_of_long_texts(40) + "\n");
        const Ended ended =
            limited(memory(150000), std::string(option) + " --no-input " + trace.path() + " | wc -c");
        EXPECT_GT(std::stoul(ended.output), 400000000U) << option;
        EXPECT_EQ(ended.error, "") << option;
    }
}

// The text of the third message is still held.
TEST_F(Limits, ARefusalDoesNotTakeLongTextsBackThatHaveGoneOut) {
    const TemporaryFile trace(line_of_long_texts(3) + " 00 00 00\nzt 02 21 07\n");
    for (const char* option : {"", "--audio-only", "--debug"}) {
        const Ended ended = limited(memory(150000), std::string(option) + " " + trace.path());
        EXPECT_GT(ended.output.size(), 30U) << option;
        EXPECT_TRUE(ended.error.starts_with("ztdecode: " + trace.path() + ":2:")) << ended.error;
        EXPECT_TRUE(ended.error.ends_with(": the length says 0 bytes\n")) << ended.error;
        EXPECT_EQ(ended.status, 1);
    }
    const std::string output = limited(memory(150000), trace.path()).output;
    EXPECT_GT(output.size(), 20000000U);
    EXPECT_TRUE(output.ends_with("\nzt 02 21 07\n\t- all leds OFF\n"));
}

// Text and explanation both grow with the square of the nesting, the explanation as the text does.
TEST_F(Limits, ExplanationsOfNestedMessagesAreNotMuchLongerThanTheirTexts) {
    const TemporaryFile deep(deep_trace());
    const Ended plain = limited("ulimit -v unlimited", "--no-input " + deep.path());
    const Ended explained = limited("ulimit -v unlimited", "--no-input --explain " + deep.path());
    EXPECT_GT(plain.output.size(), 1000000U);
    EXPECT_LT(explained.output.size(), plain.output.size() * 5 / 2);
}

TEST_F(Limits, AWorkerWithoutMemoryReportsItsFileAndTheOthersGoOn) {
    const TemporaryFile deep(deep_trace());
    const TemporaryFile other("000001S 02 21 07\n");
    int refused = 0;
    for (int kib = 4000; kib < 40000; kib += 1000) {
        if (!is_enough(kib, other.path())) continue;
        const Ended ended = limited(memory(kib), "--jobs 2 --no-input " + deep.path() + " " + other.path());
        expect_honest(ended);
        if (ended.status == 1) ++refused;
    }
    EXPECT_GT(refused, 0);
}

TEST_F(Limits, AFileWithoutMemoryIsNamed) {
    // Half a megabyte before its newline: the room for the line has to grow, and so has that for the output.
    const TemporaryFile longer(std::string(std::size_t{512} * 1024, 'a') + "\n000001S 02 21 07\n");
    const TemporaryFile other("000001S 02 21 07\n");
    int named = 0;
    for (int kib = 3800; kib < 12000; kib += 50) {
        if (!is_enough(kib, other.path())) continue;
        const Ended ended = limited(memory(kib), "--no-input " + longer.path() + " " + other.path());
        expect_honest(ended);
        if (ended.error != "ztdecode: " + longer.path() + ": Cannot allocate memory\n") continue;
        ++named;
        EXPECT_EQ(ended.status, 2);
        EXPECT_TRUE(ended.output.ends_with("\t- all leds OFF\n"));
    }
    EXPECT_GT(named, 0);
}

// The first file waits for standard input; what the second one gives meanwhile cannot be kept.
TEST_F(Limits, ATemporaryFileThatCannotBeMadeIsNamedWithTheTraceItWasFor) {
    const TemporaryFile second(many_lines());
    const Ended ended =
        run({"/bin/sh", "-c",
             "(sleep 0.5; echo 000001S 01 2a) | (" + few_descriptors +
                 "4; exec '" ZTDECODE_TOOL_FILE "' --no-input --jobs 2 - " + second.path() + ")"});
    EXPECT_EQ(ended.output, "\t- version inquiry\n");
    EXPECT_EQ(ended.error, "ztdecode: " + second.path() + ": temporary file: Too many open files\n");
    EXPECT_EQ(ended.status, 2);
}

// Two files at once and one descriptor: whoever comes second is named, from a diagnostic that waits for its
// turn without a file to wait in.
TEST_F(Limits, AnInputThatCannotBeOpenedIsNamed) {
    const Ended ended =
        run({"/bin/sh", "-c",
             "(sleep 0.5; echo 000001S 01 2a) | (" + few_descriptors +
                 "4; exec '" ZTDECODE_TOOL_FILE "' --no-input --jobs 2 /dev/stdin /dev/fd/0)"});
    EXPECT_EQ(ended.output, "\t- version inquiry\n");
    EXPECT_TRUE(ended.error == "ztdecode: /dev/stdin: Too many open files\n" ||
                ended.error == "ztdecode: /dev/fd/0: Too many open files\n")
        << ended.error;
    EXPECT_EQ(ended.status, 2);
}

}  // namespace

}  // namespace ztdecode::testing
