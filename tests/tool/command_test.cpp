#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "support/process.hpp"

// The command as a user meets it: what it writes, where, and how it ends.

namespace ztdecode::testing {

namespace {

Ended ztdecode(std::vector<std::string> arguments, const std::string& input = {}) {
    arguments.insert(arguments.begin(), ZTDECODE_TOOL_FILE);
    return run(arguments, input);
}

TEST(Command, ShowsTheLineAndItsText) {
    const Ended e = ztdecode({}, "000007S 01 2a\n");
    EXPECT_EQ(e.output, "000007S 01 2a\n\t- version inquiry\n");
    EXPECT_EQ(e.error, "");
    EXPECT_EQ(e.status, 0);
}

TEST(Command, LeavesTheLinesOut) {
    EXPECT_EQ(ztdecode({"--no-input"}, "000007S 01 2a\n").output, "\t- version inquiry\n");
}

TEST(Command, RecognisesEachLinesLayout) {
    const Ended e = ztdecode({"--no-input"},
                             "zt 02 03 0a\n"
                             "zt 02 00 03 0a\n"
                             "000042R 02 03 0a\n"
                             "000042R 02 00 03 0a\n"
                             "01 2a\n"
                             "01 00 2a\n");
    EXPECT_EQ(e.output,
              "\t- software reset\n"
              "\t- software reset\n"
              "\t- digit dialed '*'\n"
              "\t- digit dialed '*'\n"
              "\t- version inquiry\n"
              "\t- version inquiry\n");
    EXPECT_EQ(e.status, 0);
}

TEST(Command, DirectionOfLayoutsWithoutAColumn) {
    EXPECT_EQ(ztdecode({"--no-input", "--direction", "to"}, "zt 02 03 0a\n02 03 0a\n").output,
              "\t- digit dialed '*'\n\t- digit dialed '*'\n");
    EXPECT_EQ(ztdecode({"--no-input", "--direction", "from"}, "zt 02 03 0a\n").output,
              "\t- software reset\n");
    // The column says it itself.
    EXPECT_EQ(ztdecode({"--no-input", "--direction", "to"}, "000001S 02 03 0a\n").output,
              "\t- software reset\n");
}

TEST(Command, PassesOtherLinesThroughAsTheyAre) {
    const std::string log =
        "# a comment\n"
        "\n"
        "   \n"
        "08:42:01 link up\n"
        "10 calls handled\n"
        "SSSSSSS\n"
        "no newline at the end";
    for (const char* option : {"--no-input", "--color=never"}) {
        const Ended e = ztdecode({option}, log);
        EXPECT_EQ(e.output, log);
        EXPECT_EQ(e.error,
                  "ztdecode: -: not one line was decoded; they look like \"08:42:01 link up\", which is no "
                  "layout of trace lines\n");
        EXPECT_EQ(e.status, 0);
    }
}

TEST(Command, KeepsLineEndsOfTheTrace) {
    EXPECT_EQ(ztdecode({}, "000007S 01 2a\r\n").output, "000007S 01 2a\r\n\t- version inquiry\r\n");
}

TEST(Command, LastLineWithoutNewline) {
    EXPECT_EQ(ztdecode({}, "000007S 01 2a").output, "000007S 01 2a\n\t- version inquiry\n");
}

TEST(Command, NamesFileAndLineOfARefusedLineAndGoesOn) {
    const TemporaryFile file("# trace\n000001S 01 2a\n000002R 09 01\nzt 02 01\nzt 02 01 xx\n000003S 01 2a\n");
    const Ended e = ztdecode({"--no-input", file.path()});
    EXPECT_EQ(e.output, "# trace\n\t- version inquiry\n\t- version inquiry\n");
    EXPECT_EQ(e.error, "ztdecode: " + file.path() + ":3:9: the length says 9 bytes, the line has 1\n" +
                           "ztdecode: " + file.path() + ":4:9: the length says 2 bytes, the line has 1\n" +
                           "ztdecode: " + file.path() + ":5:10: \"xx\" is no byte of two digits\n");
    EXPECT_EQ(e.status, 1);
}

TEST(Command, AnUnreadableFileIsNamedAndTheOthersAreDecoded) {
    const TemporaryFile file("000001S 01 2a\n");
    const Ended e = ztdecode({"--no-input", "/no/such/file", file.path()});
    EXPECT_EQ(e.output, "\t- version inquiry\n");
    EXPECT_EQ(e.error, "ztdecode: /no/such/file: No such file or directory\n");
    EXPECT_EQ(e.status, 2);
    EXPECT_EQ(ztdecode({"/"}).error, "ztdecode: /: Is a directory\n");
    EXPECT_EQ(ztdecode({"/"}).status, 2);
}

TEST(Command, BadUsage) {
    EXPECT_EQ(ztdecode({"--layout", "nonsense"}).status, 2);
    EXPECT_EQ(ztdecode({"--direction", "up"}).status, 2);
    EXPECT_EQ(ztdecode({"--color", "sometimes"}).status, 2);
    EXPECT_EQ(ztdecode({"--jobs", "0"}).status, 2);
    EXPECT_EQ(ztdecode({"--no-such-option"}).status, 2);
    EXPECT_NE(ztdecode({"--no-such-option"}).error, "");
}

TEST(Command, HelpAndVersion) {
    EXPECT_EQ(ztdecode({"--version"}).output, "ztdecode 5.2.0\n");
    EXPECT_EQ(ztdecode({"--version"}).status, 0);
    const Ended help = ztdecode({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option : {"--layout", "--direction", "--no-input", "--color", "--audio-only",
                               "--explain", "--debug", "--format", "--jobs", "--version"}) {
        EXPECT_NE(help.output.find(option), std::string::npos) << option;
    }
}

TEST(Command, ColoursTheTexts) {
    EXPECT_EQ(ztdecode({"--no-input", "--color", "always"}, "000001S 01 2a\n000002R 02 03 0a\n").output,
              "\033[0;32m\t- version inquiry\033[0m\n\033[0;31m\t- digit dialed '*'\033[0m\n");
    // No terminal: no colour.
    EXPECT_EQ(ztdecode({"--no-input", "--color", "auto"}, "000001S 01 2a\n").output, "\t- version inquiry\n");
}

TEST(Command, AudioMessagesOnly) {
    EXPECT_EQ(ztdecode({"--audio-only"}, "# log\n000001S 01 2a\n000002S 01 24\n").output,
              "# log\n000002S 01 24\n\t- enable DTMF\n");
}

TEST(Command, DebugShowsTracesOfMessagesThatTheFilterDrops) {
    const Ended e = ztdecode({"--audio-only", "--debug"}, "000001S 01 2a\n000002S 01 24\n");
    EXPECT_EQ(e.output,
              "entree decode, lng=0x01  sens= from DHS\n"
              "000002S 01 24\n"
              "entree decode, lng=0x01  sens= from DHS\n"
              "entree decode1msg, lng=0x01  sens= from DHS\n"
              "\t- enable DTMF\n");
    EXPECT_EQ(e.error, "");
    EXPECT_EQ(e.status, 0);
}

TEST(Command, BytesBehindAMessageAreZeroWhateverCameBefore) {
    // The second message is shorter than its fields: the first one's bytes must not show in it.
    EXPECT_EQ(ztdecode({"--no-input"}, "000001S 05 33 ff ff ff ff\n000002S 01 33\n").output,
              "\t- external ringer, unknown mode 0xff\n\t- external ringer off\n");
}

TEST(Command, RemembersTheLinkForOneFile) {
    const TemporaryFile report("000001R 08 04 2a 1f 00 05 01 12 00\n000002S 03 02 02 0e\n");
    const TemporaryFile command("000002S 03 02 02 0e\n");
    const Ended e = ztdecode({"--no-input", report.path(), command.path()});
    EXPECT_EQ(e.output,
              "\t- [opt Z adr 2] reset hard z  soft=1.18, selftest=00, off hook, hard=00\n"
              "\t- [opt Z adr 2] version inquiry\n"
              "\t- [opt V24 adr 2] version+state inquiry\n");
}

TEST(Command, ShowsTheTraceOfReassemblyOnDemandOnly) {
    const std::string segments = "000001S 06 0c 81 00 02 28 00\n";
    EXPECT_EQ(ztdecode({"--no-input"}, segments).output, "\t- segment message 1/2\n");
    const Ended e = ztdecode({"--no-input", "--debug"}, segments);
    EXPECT_EQ(e.output,
              "entree decode, lng=0x06  sens= from DHS\n"
              "entree decode1msg, lng=0x06  sens= from DHS\n"
              "28 00 \n"
              "\t- segment message 1/2\n");
    EXPECT_EQ(e.error, "ztdecode: -:1:1: the trace ends inside a message of 2 segments, 1 of them to come\n");
}

TEST(Command, DiagnosticsOfADecoderNameFileAndLine) {
    // An HE message that is shorter than its routing bytes.
    const TemporaryFile file("000001S 01 2a\n000002S 02 05 01\n");
    const Ended e = ztdecode({"--no-input", file.path()});
    EXPECT_EQ(e.error, "ztdecode: " + file.path() + ":2: decalage incorrect: demandé: 3, disponible: 2\n");
    EXPECT_EQ(e.status, 0);
}

TEST(Command, AnUnknownClassEndsTheMessageAndNotTheProgram) {
    const TemporaryFile file("000001S 03 16 00 04\n000002S 01 2a\n");
    const Ended e = ztdecode({"--no-input", file.path()});
    EXPECT_EQ(e.output, "\t- version inquiry\n");
    EXPECT_EQ(e.error, "ztdecode: " + file.path() + ":1:9: \tRYM - presentation server\n" +
                           "ztdecode: " + file.path() + ":1:9: Error class lookup table ptr\n");
    EXPECT_EQ(e.status, 1);
}

TEST(Command, ExplainsWithTheBytesBesideTheirOffsets) {
    EXPECT_EQ(ztdecode({"--explain"}, "000001R 04 03 0a 55 66\n000002S 02 27 00\n").output,
              "000001R 04 03 0a 55 66\n"
              "\t- digit dialed '*'\n"
              "    0       03     \"\\t- \"\n"
              "    0-1     03 0a  \"digit dialed '\"\n"
              "    1       0a     \"*\"\n"
              "    0-1     03 0a  \"'\"\n"
              "    unused  2-3  55 66\n"
              "000002S 02 27 00\n"
              "\t- write line 1\n"
              "    0       27  \"\\t- \"\n"
              "    0       27  \"write line 1\"\n"
              "    0       27  \"\\n\"\n"
              "    unused  1  00\n");
    EXPECT_EQ(ztdecode({"--explain", "--no-input"}, "000001S 02 21 04\n").output,
              "\t- green led 0 ON\n"
              "    0               21     \"\\t- \"\n"
              "    0-1             21 04  \"green led \"\n"
              "    behind the end         \"0\"\n"
              "    0-1             21 04  \" ON\"\n"
              "    unused          none\n");
}

TEST(Command, ExplainsSuperMessagesInOffsetsOfTheWholeMessage) {
    EXPECT_EQ(ztdecode({"--explain", "--no-input"}, "000001R 04 0b 02 03 04\n").output,
              "\t- super message:\n"
              "\t> zt 02 00 03 04\n"
              "\t- digit dialed '4'\n"
              "    0       0b     \"\\t- super message:\\n\"\n"
              "    0-1     0b 02  \"\\t> zt \"\n"
              "    1       02     \"02\"\n"
              "    0-1     0b 02  \" 00\"\n"
              "    2-3     03 04  \" 03 04\"\n"
              "    0-1     0b 02  \"\\n\"\n"
              "    2       03     \"\\t- \"\n"
              "    2-3     03 04  \"digit dialed '\"\n"
              "    3       04     \"4\"\n"
              "    2-3     03 04  \"'\"\n"
              "    2       03     \"\\n\"\n"
              "    unused  none\n");
}

TEST(Command, ExplainsNoColours) {
    EXPECT_EQ(ztdecode({"--explain", "--no-input", "--color", "always"}, "000001R 02 03 04\n").output,
              "\033[0;31m\t- digit dialed '4'\033[0m\n"
              "    0       03     \"\\t- \"\n"
              "    0-1     03 04  \"digit dialed '\"\n"
              "    1       04     \"4\"\n"
              "    0-1     03 04  \"'\"\n"
              "    unused  none\n");
}

TEST(Command, ExplainsReassembledMessagesInOffsetsOfTheirOwn) {
    const Ended e = ztdecode({"--explain", "--no-input"}, "000001S 06 0c 80 00 02 21 07\n");
    EXPECT_EQ(e.output,
              "\t- segment message 1/1\n"
              "\t- all leds OFF\n"
              "    0                0c     \"\\t- \"\n"
              "    0-1              0c 80  \"segment message \"\n"
              "    1                80     \"1\"\n"
              "    0-1              0c 80  \"/\"\n"
              "    1                80     \"1\"\n"
              "    0-1              0c 80  \"\\n\"\n"
              "    reassembled 0           \"\\t- \"\n"
              "    reassembled 0-1         \"all leds OFF\"\n"
              "    unused           none\n");
}

TEST(Command, ExplainsLongRangesShortened) {
    EXPECT_EQ(ztdecode({"--explain", "--no-input"}, "000001S 0e 21 07 40 41 42 43 44 45 46 47 48 49 4a 4b\n")
                  .output,
              "\t- all leds OFF\n"
              "    0       21     \"\\t- \"\n"
              "    0-1     21 07  \"all leds OFF\"\n"
              "    unused  2-13  40 41 42 43 44 .. 4a 4b\n");
}

TEST(Command, BinaryLayouts) {
    const std::string one("\x01\x2a\x02\x21\x07", 5);
    EXPECT_EQ(ztdecode({"--layout", "bin1"}, one).output,
              "zt 01 00 2a\n\t- version inquiry\nzt 02 00 21 07\n\t- all leds OFF\n");
    const std::string two("\x01\x00\x2a\x02\x00\x21\x07", 7);
    EXPECT_EQ(ztdecode({"--layout", "bin2", "--no-input"}, two).output,
              "\t- version inquiry\n\t- all leds OFF\n");
    const Ended cut = ztdecode({"--layout", "bin1", "--no-input"}, std::string("\x01\x2a\x03\x21\x07", 5));
    EXPECT_EQ(cut.output, "\t- version inquiry\n\t- all leds OFF\n");
    EXPECT_EQ(cut.error, "ztdecode: -:2:4: the length says 3 bytes, the file has 2\n");
    EXPECT_EQ(cut.status, 1);
}

TEST(Command, ForcedLayouts) {
    EXPECT_EQ(ztdecode({"--no-input", "--layout", "line"}, "01 2a\n").output, "\t- version inquiry\n");
    EXPECT_EQ(ztdecode({"--no-input", "--layout", "lng2"}, "01 00 2a 02 00 21 07\n").output,
              "\t- version inquiry\n\t- all leds OFF\n");
    EXPECT_EQ(ztdecode({"--no-input", "--layout", "spzt-lng2"}, "xxxxxxS 01 00 2a\n").output,
              "\t- version inquiry\n");
    EXPECT_EQ(ztdecode({"--no-input", "--layout", "spzt"}, "hello\n").error,
              "ztdecode: -:1:7: no S or R here\n"
              "ztdecode: -: not one line was decoded; they look like \"hello\", which is no layout of trace "
              "lines\n");
    EXPECT_EQ(ztdecode({"--no-input", "--layout", "zt"}, "zt 01 2a\nhello\n").error,
              "ztdecode: -:2:1: no \"zt \" at the line's beginning\n");
}

// A super message that says too long a part goes on with parts of nothing, and complains about each of them.
TEST(Command, EveryComplaintNamesItsLine) {
    const Ended e = ztdecode({}, "000001R 04 04 24 20 1a\n000002S 08 02 04 0b 02 41 00 46 46\n");
    std::istringstream complaints(e.error);
    std::string line;
    int lines = 0;
    for (; std::getline(complaints, line); ++lines) {
        EXPECT_TRUE(line.starts_with("ztdecode: -:2: decalage incorrect: demand\u00e9: ")) << line;
    }
    EXPECT_GT(lines, 3);
}

TEST(Command, StandardInputByName) {
    const TemporaryFile file("000001S 01 2a\n");
    EXPECT_EQ(ztdecode({"--no-input", file.path(), "-"}, "000001S 02 21 07\n").output,
              "\t- version inquiry\n\t- all leds OFF\n");
}

TEST(Command, ManyJobsGiveTheSameOutputInTheSameOrder) {
    const std::string folder = ZTDECODE_SOURCE_DIR "/tests/golden/";
    const TemporaryFile broken("000001S 09\n");
    std::vector<std::string> files;
    for (const char* name : {"office-mixed.spzt", "office-ip.spzt", "office-widgets.spzt"})
        files.push_back(folder + name);
    files.push_back(broken.path());
    files.push_back("/no/such/file");
    files.push_back(folder + "office-digital.spzt");
    std::vector<std::string> one = {"--jobs", "1"};
    std::vector<std::string> three = {"--jobs", "3"};
    one.insert(one.end(), files.begin(), files.end());
    three.insert(three.end(), files.begin(), files.end());
    const Ended expected = ztdecode(one);
    const Ended ended = ztdecode(three);
    EXPECT_EQ(ended.output, expected.output);
    EXPECT_EQ(ended.error, expected.error);
    EXPECT_EQ(ended.status, expected.status);
    EXPECT_EQ(expected.status, 2);
}

TEST(Command, LongLinesArePassedThrough) {
    const std::string longest(3 << 20, 'a');
    const Ended e = ztdecode({}, longest + "\n000001S 01 2a\n");
    EXPECT_EQ(e.output, longest + "\n000001S 01 2a\n\t- version inquiry\n");
    EXPECT_EQ(e.status, 0);
}

TEST(Command, AMessageOf65535BytesKeepsItsFirst5120) {
    std::string line = "ff ff 27";
    for (int i = 1; i < 65535; ++i) line += " 41";
    const Ended e = ztdecode({"--no-input", "--layout", "lng2"}, line + " 01 00 2a\n");
    EXPECT_EQ(e.output, "\t- write line 1 \"" + std::string(5117, 'A') + "\"\n\n\t- version inquiry\n");
}

// Each message shows before the next one comes.
TEST(Command, StreamsItsInput) {
    int to[2];
    int from[2];
    ASSERT_EQ(::pipe(to), 0);
    ASSERT_EQ(::pipe(from), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(to[0], STDIN_FILENO);
        ::dup2(from[1], STDOUT_FILENO);
        for (const int descriptor : {to[0], to[1], from[0], from[1]}) ::close(descriptor);
        ::execl(ZTDECODE_TOOL_FILE, ZTDECODE_TOOL_FILE, "--no-input", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(to[0]);
    ::close(from[1]);
    auto expect = [&](const std::string& line, const std::string& text) {
        ASSERT_EQ(::write(to[1], line.data(), line.size()), static_cast<ssize_t>(line.size()));
        std::string got(text.size(), '\0');
        std::size_t have = 0;
        while (have < got.size()) {
            const ssize_t n = ::read(from[0], got.data() + have, got.size() - have);
            ASSERT_GT(n, 0);
            have += static_cast<std::size_t>(n);
        }
        EXPECT_EQ(got, text);
    };
    expect("000001S 01 2a\n", "\t- version inquiry\n");
    expect("000002S 02 21 07\n", "\t- all leds OFF\n");
    ::close(to[1]);
    ::close(from[0]);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST(Command, AClosedPipeEndsItQuietly) {
    std::string trace;
    for (int i = 0; i < 100000; ++i) trace += "000001S 01 2a\n";
    const TemporaryFile file(trace);
    const Ended e =
        run({"/bin/sh", "-c", std::string("\"") + ZTDECODE_TOOL_FILE + "\" " + file.path() + " | head -n 1"});
    EXPECT_EQ(e.output, "000001S 01 2a\n");
    EXPECT_EQ(e.error, "");
}

}  // namespace

}  // namespace ztdecode::testing
