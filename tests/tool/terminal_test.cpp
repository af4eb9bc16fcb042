#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz/bounds.hpp"
#include "support/process.hpp"

// The command on a terminal: what it shows there, and that nothing of a trace acts on it.

namespace ztdecode::testing {

namespace {

class PseudoTerminal {
  public:
    PseudoTerminal() {
        if (::openpty(&ours_, &theirs_, nullptr, nullptr, nullptr) != 0) {
            throw std::runtime_error("cannot open a terminal");
        }
        termios settings{};
        ::tcgetattr(theirs_, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(theirs_, TCSANOW, &settings);
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal() {
        ::close(ours_);
        close_theirs();
    }

    int theirs() const { return theirs_; }
    void close_theirs() {
        if (theirs_ >= 0) ::close(theirs_);
        theirs_ = -1;
    }
    // All that comes until nobody has the terminal open any more.
    std::string shown() const {
        std::string text;
        char block[4096];
        for (ssize_t n = 0; (n = ::read(ours_, block, sizeof block)) > 0;) {
            text.append(block, static_cast<std::size_t>(n));
        }
        return text;
    }

  private:
    int ours_ = -1;
    int theirs_ = -1;
};

enum class Stream { output, error, both };

// What the command shows on a terminal that is the stream; the other one goes to the file, or nowhere.
std::string on_terminal(Stream stream, std::vector<std::string> arguments, const std::string& input,
                        const std::string& other = "/dev/null") {
    arguments.insert(arguments.begin(), ZTDECODE_TOOL_FILE);
    const TemporaryFile in(input);
    PseudoTerminal terminal;
    std::vector<char*> words;
    for (std::string& word : arguments) words.push_back(word.data());
    words.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const int elsewhere = ::open(other.c_str(), O_WRONLY);
        ::dup2(::open(in.path().c_str(), O_RDONLY), STDIN_FILENO);
        ::dup2(stream == Stream::error ? elsewhere : terminal.theirs(), STDOUT_FILENO);
        ::dup2(stream == Stream::output ? elsewhere : terminal.theirs(), STDERR_FILENO);
        ::close(terminal.theirs());
        ::unsetenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe)
        ::execv(words[0], words.data());
        ::_exit(127);
    }
    terminal.close_theirs();
    std::string shown = terminal.shown();
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 127);
    return shown;
}

std::string shown(std::vector<std::string> arguments, const std::string& input) {
    return on_terminal(Stream::output, std::move(arguments), input);
}

Ended piped(std::vector<std::string> arguments, const std::string& input) {
    arguments.insert(arguments.begin(), ZTDECODE_TOOL_FILE);
    return run(arguments, input);
}

// A debug text that sets a window's title.
constexpr auto title = "000000S 0c 00 18 1b 5d 30 3b 50 57 4e 45 44 07 41\n";

TEST(Terminal, AnAnswerFitsAndNothingOfItActs) {
    // Eighty columns: the two long ones share what is left.
    EXPECT_EQ(shown({"--sql",
                     "select line, hex(zeroblob(30)) as long, char(27) || '[2J' || char(10) as odd, "
                     "hex(zeroblob(40)) as longer from messages"},
                    "000001S 03 21 04 03\n"),
              "line  long                           odd          longer\n"
              "----  -----------------------------  -----------  ------------------------------\n"
              "   1  " +
                  std::string(28, '0') + "…  \\x1b[2J\\x0a  " + std::string(29, '0') + "…\n");
    EXPECT_EQ(shown({"--format", "csv", "--sql", "select char(27) as odd"}, ""), "odd\r\n\\x1b\r\n");
}

TEST(Terminal, ATitleInAMessageIsShownAndNotSet) {
    EXPECT_EQ(shown({"--no-input"}, title), "\033[0;32m\tDBG - \\x1b]0;PWNED\\x07A\033[0m\n");
}

TEST(Terminal, APipeGetsTheTextAsItIs) {
    EXPECT_EQ(piped({"--no-input"}, title).output, "\tDBG - \033]0;PWNED\007A\n");
}

TEST(Terminal, ControlChooses) {
    EXPECT_EQ(shown({"--no-input", "--control", "raw", "--color", "never"}, title),
              "\tDBG - \033]0;PWNED\007A\n");
    EXPECT_EQ(piped({"--no-input", "--control", "escape"}, title).output, "\tDBG - \\x1b]0;PWNED\\x07A\n");
}

TEST(Terminal, LinesThatAreNoTraceLineDoNotActEither) {
    const std::string lines =
        "a title \033]0;PWNED\007\n"
        "DEL \x7f, CR \r, tab \t.\n"
        "C1 \xc2\x9b"
        "31m and a stray \x9b"
        "31m\n"
        "reversed \xe2\x80\xae and isolated \xe2\x81\xa6 and marked \xd8\x9c \xe2\x80\x8f\n"
        "caf\xc3\xa9, half a caf\xc3\n";
    EXPECT_EQ(shown({}, lines),
              "a title \\x1b]0;PWNED\\x07\n"
              "DEL \\x7f, CR \\x0d, tab \t.\n"
              "C1 \\u009b31m and a stray \\x9b31m\n"
              "reversed \\u202e and isolated \\u2066 and marked \\u061c \\u200f\n"
              "caf\xc3\xa9, half a caf\\xc3\n");
    EXPECT_EQ(piped({}, lines).output, lines);
}

TEST(Terminal, TheTraceLineItselfDoesNotAct) {
    EXPECT_EQ(shown({"--color", "never"}, "\033[31m0S 01 2a\n"), "\\x1b[31m0S 01 2a\n\t- version inquiry\n");
}

TEST(Terminal, AZeroInATraceLineIsNoColour) {
    EXPECT_EQ(shown({"--color", "always"}, std::string("\0[0;31m\n", 8)), "\\x00[0;31m\n");
}

// The bytes of a message are those of both colours and of their end.
TEST(Terminal, ColoursInAMessageAreNotTheCommandsOwn) {
    const std::string colours = "000000S 11 00 18 1b 5b 30 3b 33 31 6d 41 1b 5b 30 6d 5b 30 6d 42\n";
    EXPECT_EQ(shown({"--no-input"}, colours), "\033[0;32m\tDBG - \\x1b[0;31mA\\x1b[0m[0mB\033[0m\n");
    EXPECT_EQ(piped({"--no-input", "--color", "always"}, colours).output,
              "\033[0;32m\tDBG - \033[0;31mA\033[0m[0mB\033[0m\n");
}

// A set's part in a hub's: the hub's text goes on in its own colour.
TEST(Terminal, EveryLineOfATextHasItsColour) {
    const std::string two = "000001R 04 0b 02 03 04\n000002S 06 0c 80 00 02 21 07\n";
    EXPECT_EQ(shown({"--no-input"}, two),
              "\t- super message:\n"
              "\t> zt 02 00 03 04\n"
              "\033[0;31m\t- digit dialed '4'\033[0m\n"
              "\033[0;32m\t- segment message 1/1\033[0m\n"
              "\033[0;32m\t- all leds OFF\033[0m\n");
    EXPECT_EQ(piped({"--no-input", "--color", "always"}, two).output,
              "\t- super message:\n"
              "\t> zt 02 00 03 04\n"
              "\033[0;31m\t- digit dialed '4'\033[0m\n"
              "\033[0;32m\t- segment message 1/1\n"
              "\t- all leds OFF\033[0m\n");
}

TEST(Terminal, AColouredTextInsideAnotherGivesItsPlaceBack) {
    EXPECT_EQ(shown({"--no-input"}, "000001S 03 14 10 2a\n"),
              "\033[0;32m\tHUB -  to set 1\t- version inquiry\033[0m\n");
}

TEST(Terminal, AMessageThatTheFilterDropsLeavesNoColour) {
    const std::string two = "000001S 01 2a\n000002S 01 24\n";
    EXPECT_EQ(piped({"--audio-only", "--color", "always"}, two).output,
              "000002S 01 24\n\033[0;32m\t- enable DTMF\033[0m\n");
    EXPECT_EQ(shown({"--audio-only"}, two), "000002S 01 24\n\033[0;32m\t- enable DTMF\033[0m\n");
}

TEST(Terminal, NothingActsInExplanations) {
    const std::string output = shown({"--no-input", "--explain", "--color", "never"}, title);
    EXPECT_NE(output.find("    1-11    1b 5d 30 3b 50 .. 07 41  \"\\x1b]0;PWNED\\x07A\"\n"),
              std::string::npos)
        << output;
    EXPECT_EQ(output.find('\033'), std::string::npos);
}

TEST(Terminal, NothingActsInDiagnostics) {
    const std::string name = "/no/\033]0;PWNED\007\nztdecode: forged";
    EXPECT_EQ(on_terminal(Stream::error, {name}, ""),
              "ztdecode: /no/\\x1b]0;PWNED\\x07\\x0aztdecode: forged: No such file or directory\n");
    EXPECT_EQ(on_terminal(Stream::error, {}, "zt 01 2a\nzt \033[2J\n"),
              "ztdecode: -:2:4: no length: \"\\x1b[2J\" is no byte of two digits\n");
    EXPECT_EQ(on_terminal(Stream::error, {"--layout", "\033c"}, "").find('\033'), std::string::npos);
    EXPECT_EQ(piped({name}, "").error, "ztdecode: " + name + ": No such file or directory\n");
}

TEST(Terminal, DiagnosticsHaveNoColourCodes) {
    EXPECT_EQ(piped({"--color", "always"}, "000001S 03 16 00 04\n").error,
              "ztdecode: -:1:9: \tRYM - presentation server\n"
              "ztdecode: -:1:9: Error class lookup table ptr\n");
}

// Long enough for the line to show where it is explained; a sanitizer takes its time.
std::string long_trace() {
    constexpr int lines = fuzz::sanitized ? 100000 : 1000000;
    std::string trace;
    for (int i = 0; i < lines; ++i) trace += "000001R 02 03 04\n";
    return trace;
}

TEST(Terminal, ProgressShowsWhileTheOutputGoesToAFileAndCanBeSwitchedOff) {
    const TemporaryFile trace(long_trace());
    const TemporaryFile out("");
    const std::string line = "\rztdecode: " + trace.path() + ": ";
    const std::string shown = on_terminal(Stream::error, {"--explain", trace.path()}, "", out.path());
    EXPECT_NE(shown.find(line), std::string::npos);
    EXPECT_TRUE(shown.ends_with("\r\033[K"));
    EXPECT_EQ(on_terminal(Stream::error, {"--explain", "--progress", "never", trace.path()}, "", out.path()),
              "");
    EXPECT_EQ(on_terminal(Stream::both, {"--audio-only", "--explain", "--no-input", trace.path()}, ""), "");
}

TEST(Terminal, ProgressShowsForOneFileWhateverTheJobs) {
    const TemporaryFile trace(long_trace());
    const TemporaryFile out("");
    EXPECT_NE(
        on_terminal(Stream::error, {"--explain", "--jobs", "4", trace.path()}, "", out.path()).find(" %"),
        std::string::npos);
}

TEST(Terminal, ProgressStaysAwayWhereTheOutputGoesToAPipe) {
    const TemporaryFile trace(long_trace());
    PseudoTerminal terminal;
    const std::string command =
        std::string("'") + ZTDECODE_TOOL_FILE + "' --explain " + trace.path() + " | cat";
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
        ::dup2(terminal.theirs(), STDERR_FILENO);
        ::close(terminal.theirs());
        ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    terminal.close_theirs();
    EXPECT_EQ(terminal.shown(), "");
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

}  // namespace

}  // namespace ztdecode::testing
