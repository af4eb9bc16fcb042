#include "convert/screen.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace ztdecode::testing {
namespace {

// Files in a folder of the test's own.
class ScreenFiles : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() / "screen-test-XXXXXX";
        ASSERT_NE(mkdtemp(folder_.data()), nullptr);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return folder_ + "/" + name; }
    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        if (!file) return "(no file)";
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // What is copied of a file with these bytes.
    std::string copied(const std::string& bytes) const {
        write("in", bytes);
        EXPECT_EQ(A_Convert_scr(path("in").c_str(), path("out").c_str()), 0);
        return read("out");
    }
    // How two files with these bytes differ.
    std::string difference(const std::string& a, const std::string& b) const {
        write("a", a);
        write("b", b);
        EXPECT_EQ(A_Diff_scr(path("a").c_str(), path("b").c_str(), path("out").c_str()), 0);
        return read("out");
    }

    std::string folder_;
};

TEST_F(ScreenFiles, CopiesFourLines) {
    EXPECT_EQ(copied("1\n2\n3\n4\n5\n6\n"), "1\n2\n3\n4\n");
    EXPECT_EQ(copied("1\n2\n3\n4\n"), "1\n2\n3\n4\n");
    EXPECT_EQ(copied("1\n2"), "1\n2");
    EXPECT_EQ(copied("\n\n\n\n\n"), "\n\n\n\n");
    EXPECT_EQ(copied(""), "");
}

TEST_F(ScreenFiles, CopyLeavesTheVerdictOut) {
    EXPECT_EQ(copied("<GOOD>\n1\n2\n3\n4\n5\n"), "1\n2\n3\n4\n");
    EXPECT_EQ(copied("<BAD>\n1\n2\n3\n4\n5\n"), "1\n2\n3\n4\n");
    EXPECT_EQ(copied("<GOO anything\n1\n"), "1\n");
    EXPECT_EQ(copied("<BAnything\n1\n"), "1\n");
    EXPECT_EQ(copied("<GOOD>"), "");
    EXPECT_EQ(copied("<BA"), "");
}

TEST_F(ScreenFiles, CopyKeepsEveryOtherLine) {
    EXPECT_EQ(copied("<GO\n1\n"), "<GO\n1\n");
    EXPECT_EQ(copied("<good>\n1\n"), "<good>\n1\n");
    EXPECT_EQ(copied("<Bad>\n1\n"), "<Bad>\n1\n");
    EXPECT_EQ(copied(" <GOOD>\n1\n"), " <GOOD>\n1\n");
    EXPECT_EQ(copied("<B"), "<B");
    // only the first line can be a verdict
    EXPECT_EQ(copied("1\n<GOOD>\n2\n3\n4\n"), "1\n<GOOD>\n2\n3\n");
    EXPECT_EQ(copied("<GOOD>\n<BAD>\n1\n"), "<BAD>\n1\n");
}

// 1023 characters make a line, even where the line goes on.
TEST_F(ScreenFiles, CopyOfLongLines) {
    const std::string line(1023, 'x');
    EXPECT_EQ(copied(line + "\n1\n2\n3\n4\n"), line + "\n1\n2\n");
    EXPECT_EQ(copied(std::string(5000, 'y')), std::string(4 * 1023, 'y'));
    EXPECT_EQ(copied("<GOOD>" + std::string(1017, 'z') + "rest\n1\n"), "rest\n1\n");
    EXPECT_EQ(copied(std::string(1022, 'w') + "\n1\n2\n3\n4\n"), std::string(1022, 'w') + "\n1\n2\n3\n");
}

// A zero byte ends the line's text, its newline included.
TEST_F(ScreenFiles, CopyOfZeroBytes) { EXPECT_EQ(copied(std::string("ab\0cd\nef\n", 9)), "abef\n"); }

TEST_F(ScreenFiles, CopyWithoutAFile) {
    EXPECT_EQ(A_Convert_scr(path("none").c_str(), path("out").c_str()), std::nullopt);
    EXPECT_EQ(read("out"), "");  // opened, and emptied, all the same
    write("in", "1\n");
    EXPECT_EQ(A_Convert_scr(path("in").c_str(), path("none/out").c_str()), std::nullopt);
    EXPECT_EQ(A_Convert_scr(nullptr, path("out").c_str()), std::nullopt);
    EXPECT_EQ(A_Convert_scr(path("in").c_str(), nullptr), std::nullopt);
    EXPECT_EQ(A_Convert_scr(nullptr, nullptr), std::nullopt);
}

TEST_F(ScreenFiles, CopyThatCannotBeWritten) {
    if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
    write("in", "1\n");
    EXPECT_EQ(A_Convert_scr(path("in").c_str(), "/dev/full"), EOF);
}

TEST_F(ScreenFiles, Differences) {
    EXPECT_EQ(difference("abc\n", "abc\n"), "    ");
    EXPECT_EQ(difference("abc\n", "aXc\n"), " b  ");
    EXPECT_EQ(difference("abc\ndef\n", "abc\ndeX\n"), "      f ");
    EXPECT_EQ(difference("abc", "xyz"), "abc");
    EXPECT_EQ(difference("", ""), "");
    EXPECT_EQ(difference("abc\n", ""), "");
    EXPECT_EQ(difference("", "abc\n"), "");
}

// Up to the shorter line, whose line end differs from the other's character there.
TEST_F(ScreenFiles, DifferencesOfUnequalLines) {
    EXPECT_EQ(difference("abcdef\n", "abc\n"), "   d");
    EXPECT_EQ(difference("abc\n", "abcdef\n"), "   \n");
    EXPECT_EQ(difference("abc", "abcdef\n"), "   ");
    EXPECT_EQ(difference("1\n2\n3\n", "1\n2\n"), "    ");
    EXPECT_EQ(difference("\nX\n", "a\nY\n"), "\nX ");
}

TEST_F(ScreenFiles, DifferencesOfFourLines) {
    EXPECT_EQ(difference("1\n2\n3\n4\n5\n6\n", "a\nb\nc\nd\ne\nf\n"), "1 2 3 4 ");
    EXPECT_EQ(difference("<GOOD>\n1\n2\n3\n4\n5\n", "a\nb\nc\nd\ne\nf\n"), "1 2 3 4 ");
    EXPECT_EQ(difference("1\n2\n3\n4\n5\n", "<BAD>\na\nb\nc\nd\ne\n"), "1 2 3 4 ");
    EXPECT_EQ(difference("<GOOD>\n1\n2\n3\n4\n5\n", "<BAD>\na\nb\nc\nd\ne\n"), "1 2 3 4 ");
}

TEST_F(ScreenFiles, VerdictsInDifferences) {
    EXPECT_EQ(difference("<GOOD>\nabc\n", "<BAD>\nabX\n"), "  c ");
    // later ones are lines like any other
    EXPECT_EQ(difference("a\n<GOOD>\n", "a\n<BADD>\n"), "   GOO   ");
    EXPECT_EQ(difference("<GOOD>\n<GOOD>\n", "<GOOD>\n"), "       ");
    // a verdict that nothing follows is compared itself
    EXPECT_EQ(difference("<GOOD>\n", "<GOOD>\n"), "       ");
    EXPECT_EQ(difference("<GOOD>\n", "<BAD>\nx\n"), "<G");
}

// 2047 characters make a line, even where the line goes on.
TEST_F(ScreenFiles, DifferencesOfLongLines) {
    EXPECT_EQ(difference(std::string(9000, 'a'), std::string(9000, 'b')), std::string(4 * 2047, 'a'));
    EXPECT_EQ(
        difference(std::string(3000, 'a') + "\n", std::string(2047, 'a') + std::string(953, 'b') + "\n"),
        std::string(2047, ' ') + std::string(953, 'a') + " ");
}

TEST_F(ScreenFiles, DifferencesWithoutAFile) {
    const std::string a = write("a", "1\n");
    const std::string b = write("b", "2\n");
    const std::string out = path("out");
    const std::string none = path("none/file");
    EXPECT_EQ(A_Diff_scr(none.c_str(), b.c_str(), out.c_str()), 0);
    EXPECT_EQ(A_Diff_scr(a.c_str(), none.c_str(), out.c_str()), 0);
    EXPECT_EQ(read("out"), "(no file)");
    EXPECT_EQ(A_Diff_scr(a.c_str(), b.c_str(), none.c_str()), 0);
    EXPECT_EQ(A_Diff_scr(nullptr, b.c_str(), out.c_str()), 0);
    EXPECT_EQ(A_Diff_scr(a.c_str(), nullptr, out.c_str()), 0);
    EXPECT_EQ(A_Diff_scr(a.c_str(), b.c_str(), nullptr), 0);
    EXPECT_EQ(read("a") + read("b"), "1\n2\n");
}

TEST_F(ScreenFiles, DifferencesThatCannotBeWritten) {
    if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
    write("a", "1\n");
    write("b", "2\n");
    EXPECT_EQ(A_Diff_scr(path("a").c_str(), path("b").c_str(), "/dev/full"), EOF);
}

}  // namespace
}  // namespace ztdecode::testing
