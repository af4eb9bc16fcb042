#include <gtest/gtest.h>

#include <string>

#include "ztdecode.h"

// The conversion utilities as a host calls them: buffers, standard streams, null pointers.

namespace {

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

TEST(Convert, ToFlexAnnouncesCommands) {
    CaptureStdout();
    const char* text = TOFLEX_Convert("id\n");
    EXPECT_EQ(GetCapturedStdout(), "TRZ DEBUG : FLEX CONVERTION [zt 0x03 0x18 0x69 0x64\r]\n");
    EXPECT_STREQ(text, "zt 0x03 0x18 0x69 0x64\r");
}

TEST(Convert, ToFlexIsSilentOtherwise) {
    CaptureStdout();
    const char line[] = "hello\n";
    EXPECT_EQ(TOFLEX_Convert(line), line);
    EXPECT_STREQ(TOFLEX_Convert("zt 12\n"), "zt 0x12\n\r");
    EXPECT_STREQ(TOFLEX_Convert(nullptr), "");
    EXPECT_EQ(GetCapturedStdout(), "");
}

TEST(Convert, TwoFlexBuffers) {
    const char* to = TOFLEX_Convert("zt 12\n");
    const char* from = FROMFLEX_Convert("ZT 0xAA 0xBB 0xCC 0xDD");
    EXPECT_STREQ(to, "zt 0x12\n\r");
    EXPECT_EQ(std::string(from).substr(0, 20), "zt3 : R AA BB CC DD ");
    EXPECT_STREQ(FROMFLEX_Convert("plain"), "plain");
    EXPECT_STREQ(FROMFLEX_Convert(nullptr), "");
}

TEST(Convert, FromFlexKeepsAnEarlierResult) {
    FROMFLEX_Convert("ZT 0xA1 0xB2 0xC3 0xD4 0xE5 0xF6");
    EXPECT_STREQ(FROMFLEX_Convert("ZT 0x11 0x22 0x33 0x44"), "zt3 : R 11 22 33 44 E5 F6");
}

TEST(Convert, FlexCodes) {
    EXPECT_STREQ(FLEX_GetAsciiCode('A'), "41");
    EXPECT_STREQ(FLEX_GetAsciiCode('#'), "20");
    EXPECT_EQ(FLEX_GetAsciiCode(' '), FLEX_ASCII_TABLE[0].code);
    EXPECT_EQ(sizeof FLEX_ASCII_TABLE, 4U * ZTDECODE_FLEX_ROWS);
}

TEST(Convert, Keys) {
    char first[] = "a Q";
    const char* text = Convert_kb_To_key(first);
    EXPECT_STREQ(text, "61 shift short");
    char second[] = "5";
    EXPECT_EQ(Convert_kb_To_key(second), text);  // the same buffer
    EXPECT_STREQ(text, "5 short");
    EXPECT_STREQ(Convert_kb_To_key(nullptr), "");
}

TEST(Convert, ScreenErrorGoesToStandardError) {
    CaptureStderr();
    CaptureStdout();
    EXPECT_EQ(A_Convert_scr("/nonexistent/in", "/nonexistent/out"), 34);
    EXPECT_EQ(A_Convert_scr(nullptr, nullptr), 34);
    EXPECT_EQ(GetCapturedStderr(), "A_Convert_scr : Screen File error\nA_Convert_scr : Screen File error\n");
    EXPECT_EQ(A_Diff_scr("/nonexistent/a", "/nonexistent/b", "/nonexistent/out"), 0);
    EXPECT_EQ(A_Diff_scr(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(GetCapturedStdout(), "");
}

TEST(Convert, GenericStrCmp) {
    CaptureStdout();
    EXPECT_EQ(bGenericStrCmp("AB*D\n", "ABCD", 0), 1);
    EXPECT_EQ(bGenericStrCmp("AB*D\n", "ABC", 0), 0);
    EXPECT_EQ(GetCapturedStdout(), "");
    const std::string warning = "WIRK_WARNING : bGenericStrCmp :  NULL string, returning FALSE\n";
    CaptureStdout();
    EXPECT_EQ(bGenericStrCmp(nullptr, "a", 0), 0);
    EXPECT_EQ(bGenericStrCmp("a", nullptr, 0), 0);
    EXPECT_EQ(bGenericStrCmp(nullptr, nullptr, 1), 0);
    EXPECT_EQ(GetCapturedStdout(), warning + warning + warning);
}

TEST(Convert, Hexadecimal) {
    EXPECT_EQ(hexdigint('f'), 15);
    EXPECT_EQ(hexdigint('0'), 0);
    EXPECT_EQ(hextoint("1G", 2), 16);
    EXPECT_EQ(hextoint("1", 3), 256);  // nothing is read behind the text
    EXPECT_EQ(hextoint("12", 0), 0);
    EXPECT_EQ(hextoint("12", -5), 0);
    EXPECT_EQ(hextoint(nullptr, 2), 0);
}

}  // namespace
