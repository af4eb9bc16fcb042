#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "support/process.hpp"

// Several files at once: the same output in the same order, wherever it goes to.

namespace ztdecode::testing {

namespace {

// Lines that differ, so that a piece in a wrong place shows.
std::string trace(int lines, int first) {
    std::string text;
    for (int i = 0; i < lines; ++i) {
        char line[32];
        std::snprintf(line, sizeof line, "%06dR 02 03 %02x\n", (first + i) % 1000000, i % 12);
        text += line;
    }
    return text;
}

std::string quoted(const std::string& word) { return "'" + word + "'"; }

Ended shell(const std::string& arguments, const std::string& behind = {}) {
    return run({"/bin/sh", "-c", quoted(ZTDECODE_TOOL_FILE) + " " + arguments + " " + behind});
}

class Jobs : public ::testing::Test {
  protected:
    void add(const std::string& contents) {
        files_.push_back(std::make_unique<TemporaryFile>(contents));
        list_ += " " + quoted(files_.back()->path());
    }
    std::string list_;

  private:
    std::vector<std::unique_ptr<TemporaryFile>> files_;
};

TEST_F(Jobs, LongOutputsKeepTheirOrder) {
    add(trace(60000, 0));
    add(trace(50000, 100000));
    add(trace(1, 200000));
    add(trace(70000, 300000));
    const Ended expected = shell(list_);
    EXPECT_GT(expected.output.size(), 4000000U);
    for (const char* jobs : {"2", "3", "8"}) {
        const Ended ended = shell(std::string("--jobs ") + jobs + list_);
        EXPECT_TRUE(ended.output == expected.output) << jobs;
        EXPECT_EQ(ended.error, "");
        EXPECT_EQ(ended.status, 0);
    }
}

// Each file has an expression of its own to ask.
TEST_F(Jobs, ASelectionIsTheSame) {
    add(trace(20000, 0));
    add(trace(30000, 100000));
    add(trace(1, 200000));
    for (const char* selection : {" --where \"columns LIKE '%7' AND text REGEXP 'dialed'\" -C 1",
                                  " --grep 'dialed'", " --count --where \"field('digit') = '4'\""}) {
        const Ended expected = shell(selection + list_);
        EXPECT_NE(expected.output, "");
        const Ended ended = shell(std::string("--jobs 3") + selection + list_);
        EXPECT_TRUE(ended.output == expected.output) << selection;
        EXPECT_EQ(ended.error, "");
        EXPECT_EQ(ended.status, expected.status);
    }
}

TEST_F(Jobs, OutputIsAppendedWhereTheShellSaysSo) {
    add(trace(20000, 0));
    add(trace(20000, 100000));
    const std::string expected = shell(list_).output;
    const TemporaryFile out("before\n");
    EXPECT_EQ(shell("--jobs 2" + list_, ">>" + quoted(out.path())).status, 0);
    EXPECT_TRUE(contents(out.path()) == "before\n" + expected);
}

TEST_F(Jobs, OutputGoesThroughAPipe) {
    add(trace(20000, 0));
    add(trace(20000, 100000));
    const std::string expected = shell(list_).output;
    EXPECT_TRUE(shell("--jobs 2" + list_, "| cat").output == expected);
}

// They come in the order of the files, each with its line number.
TEST_F(Jobs, DiagnosticsKeepTheirPlace) {
    add(trace(30000, 0));
    add("000001S 09\n" + trace(30000, 100000) + "000002S 01 2a\n");
    add("000003S 09\n000004S 01 2a\n");
    const Ended one = shell(list_);
    const Ended two = shell("--jobs 2" + list_);
    EXPECT_TRUE(two.output == one.output);
    EXPECT_EQ(two.error, one.error);
    EXPECT_EQ(two.status, 1);
    EXPECT_EQ(one.status, 1);
}

TEST_F(Jobs, MoreFilesThanWorkMayRunAhead) {
    add(trace(100000, 0));
    for (int i = 0; i < 250; ++i) add(trace(3, 3 * i));
    const Ended expected = shell(list_);
    const Ended ended = shell("--jobs 4" + list_);
    EXPECT_TRUE(ended.output == expected.output);
    EXPECT_EQ(ended.status, 0);
}

TEST_F(Jobs, AFullDeviceIsReportedOnce) {
    add(trace(30000, 0));
    add(trace(30000, 100000));
    add(trace(10, 200000));
    const Ended ended = shell("--jobs 2" + list_, ">/dev/full");
    EXPECT_EQ(ended.error, "ztdecode: standard output: No space left on device\n");
    EXPECT_EQ(ended.status, 2);
}

// The second file is done, and its text kept, before the first one ends.
TEST_F(Jobs, AFullDeviceIsReportedForWhatWasKeptToo) {
    add(trace(10, 100000));
    const Ended ended =
        run({"/bin/sh", "-c",
             "sleep 0.5 | " + quoted(ZTDECODE_TOOL_FILE) + " --jobs 2 -" + list_ + " >/dev/full"});
    EXPECT_EQ(ended.error, "ztdecode: standard output: No space left on device\n");
    EXPECT_EQ(ended.status, 2);
}

TEST_F(Jobs, AClosedPipeEndsItQuietly) {
    add(trace(100000, 0));
    add(trace(100000, 100000));
    const Ended ended = shell("--jobs 2" + list_, "| head -n 1");
    EXPECT_EQ(ended.output, "000000R 02 03 00\n");
    EXPECT_EQ(ended.error, "");
}

// Long enough for pieces, with messages that teach later ones and lines that are refused.
std::string long_trace() {
    std::string text;
    for (int i = 0; i < 260000; ++i) {
        char line[64];
        std::snprintf(line, sizeof line, "%06dR 02 03 %02x\n", i % 1000000, i % 12);
        text += line;
        if (i % 1000 == 500) text += "000001R 05 04 08 0e 01 00\n000002S 03 02 00 0e\n";
        if (i % 7000 == 600) text += "000003S 09 03\nlink up\n";
        if (i % 7000 == 800) text += "000004S 05 0c 80 00 01 21\n";
    }
    return text + "000005S 07 0c 81 00 09 21 04 03";
}

TEST_F(Jobs, ALongTraceInPiecesIsTheSame) {
    add(long_trace());
    for (const char* asked : {"", " --format ndjson", " --check", " --count --link digital",
                              " --max-count 150000 --to-system", " --time absolute", " -C 1 --refused"}) {
        const Ended expected = shell(std::string("--jobs 1") + asked + list_);
        for (const char* jobs : {"", "--jobs 2", "--jobs 5"}) {
            const Ended ended = shell(jobs + std::string(asked) + list_);
            EXPECT_TRUE(ended.output == expected.output) << jobs << asked;
            EXPECT_EQ(ended.error, expected.error) << jobs << asked;
            EXPECT_EQ(ended.status, expected.status) << jobs << asked;
        }
    }
}

// Text and complaints stand in the same order where both go to one place.
TEST_F(Jobs, ALongTraceKeepsTheOrderOfBothOutputs) {
    add(long_trace());
    const std::string expected = shell("--jobs 1" + list_, "2>&1").output;
    EXPECT_TRUE(shell("--jobs 2" + list_, "2>&1").output == expected);
    EXPECT_TRUE(shell("--jobs 2", "2>&1 <" + list_ + " | sed 's/ztdecode: -:/ztdecode: /'").output ==
                shell("--jobs 1", "2>&1 <" + list_ + " | sed 's/ztdecode: -:/ztdecode: /'").output);
}

TEST_F(Jobs, ALongTraceComesThroughAPipeOrIsPacked) {
    add(long_trace());
    const std::string expected = shell("--jobs 1 --quiet" + list_).output;
    const std::string tool = quoted(ZTDECODE_TOOL_FILE) + " --jobs 2 --quiet";
    EXPECT_TRUE(run({"/bin/sh", "-c", "cat" + list_ + " | " + tool}).output == expected);
    EXPECT_TRUE(run({"/bin/sh", "-c", "gzip -1c" + list_ + " | " + tool}).output == expected);
}

TEST_F(Jobs, LongTracesAmongOthersKeepTheirOrder) {
    add(trace(10, 0));
    add(trace(10, 100));
    add(long_trace());
    add(trace(10, 200));
    add(long_trace());
    const Ended expected = shell("--jobs 1" + list_);
    const Ended ended = shell("--jobs 2" + list_);
    EXPECT_TRUE(ended.output == expected.output);
    EXPECT_EQ(ended.error, expected.error);
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(shell("--jobs 2 --join" + list_).output == shell("--jobs 1 --join" + list_).output);
}

TEST_F(Jobs, AClosedPipeEndsALongTraceQuietly) {
    add(long_trace());
    const Ended ended = shell("--jobs 2 --quiet" + list_, "| head -n 1");
    EXPECT_EQ(ended.output, "000000R 02 03 00\n");
    EXPECT_EQ(ended.error, "");
}

TEST_F(Jobs, AFullDeviceEndsALongTrace) {
    add(long_trace());
    const Ended ended = shell("--jobs 2 --quiet" + list_, ">/dev/full");
    EXPECT_EQ(ended.error, "ztdecode: standard output: No space left on device\n");
    EXPECT_EQ(ended.status, 2);
}

// The second file has no end.
TEST_F(Jobs, AClosedPipeEndsFilesThatAreBeingDecoded) {
    add(trace(100000, 0));
    const std::string command = "yes '000001R 02 03 04' | timeout 60 " + quoted(ZTDECODE_TOOL_FILE) +
                                " --jobs 2" + list_ + " - | head -n 1";
    const auto begin = std::chrono::steady_clock::now();
    const Ended ended = run({"/bin/sh", "-c", command});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(50));
    EXPECT_EQ(ended.output, "000000R 02 03 00\n");
}

}  // namespace

}  // namespace ztdecode::testing
