/* Character sets, key codes, screen files, hexadecimal numbers. */

#include <string.h>

#include "checks.h"

static void check_flex(void) {
    const ztdecode_flex_row* const rows = data(FLEX_ASCII_TABLE);
    static const char other[] = "hello\n";
    const char* to;
    const char* from;

    HOLDS(rows[0].character == ' ' && strcmp(rows[0].code, "20") == 0);
    HOLDS(rows[1].character == '\n' && strcmp(rows[1].code, "\n") == 0);
    HOLDS(rows[2].character == '\r' && strcmp(rows[2].code, "\r") == 0);
    HOLDS(rows[3].character == '0' && strcmp(rows[3].code, "30") == 0);
    HOLDS(rows[13].character == 'A' && strcmp(rows[13].code, "41") == 0);
    HOLDS(rows[64].character == 'z' && strcmp(rows[64].code, "7A") == 0);
    SAME_TEXT(call(FLEX_GetAsciiCode)('A'), "41");
    SAME_TEXT(call(FLEX_GetAsciiCode)('#'), "20");

    begin_capture(1);
    to = call(TOFLEX_Convert)("id\n");
    SAME_TEXT(end_capture(), "TRZ DEBUG : FLEX CONVERTION [zt 0x03 0x18 0x69 0x64\r]\n");
    SAME_TEXT(to, "zt 0x03 0x18 0x69 0x64\r");
    begin_capture(1);
    SAME_TEXT(call(TOFLEX_Convert)("zt 12\n"), "zt 0x12\n\r");
    HOLDS(call(TOFLEX_Convert)(other) == other);
    SAME_TEXT(end_capture(), "");
    SAME_TEXT(call(TOFLEX_Convert)(NULL), "");

    from = call(FROMFLEX_Convert)("ZT 0x1 0x2A");
    SAME_TEXT(from, "zt3 : R 01 2A ");
    begin_capture(1);
    call(TOFLEX_Convert)("d abc\n");
    end_capture();
    SAME_TEXT(from, "zt3 : R 01 2A ");
    SAME_TEXT(call(FROMFLEX_Convert)("12:00 ZT 0x3 0x18\r\n"), "zt3 : R 03 18 ");
    SAME_TEXT(call(FROMFLEX_Convert)("no such thing"), "no such thing");
    SAME_TEXT(call(FROMFLEX_Convert)(NULL), "");
}

static void check_keys(void) {
    static const struct {
        const char* text;
        const char* key;
    } rows[] = {
        {"5", "5 short"},        {"5l", "5 long"},          {"*", "10 short"},   {"p 3", "31 short"},
        {"s 9", "43 short"},     {"x e", "48 short"},       {"a q", "61 short"}, {"a Q", "61 shift short"},
        {"hook on", " onhook "}, {"HOOK off", " offhook "}, {"z", " short"},     {"", " short"},
    };
    size_t i;
    char text[16];
    for (i = 0; i < sizeof rows / sizeof rows[0]; ++i) {
        strcpy(text, rows[i].text);
        SAME_TEXT(call(Convert_kb_To_key)(text), rows[i].key);
    }
    /* Split in place. */
    strcpy(text, "hook on");
    call(Convert_kb_To_key)(text);
    SAME_TEXT(text, "hook");
    SAME_TEXT(call(Convert_kb_To_key)(NULL), "");
}

static void check_screens(void) {
    static const char error[] = "A_Convert_scr : Screen File error\n";
    int result;

    SAME_NUMBER(call(A_Convert_scr)(file_with("in", "<GOOD>\n1\n2\n3\n4\n5\n6\n"), path_of("out")), 0);
    SAME_TEXT(contents_of(path_of("out")), "1\n2\n3\n4\n");
    SAME_NUMBER(call(A_Convert_scr)(file_with("in", "1\n<BAD>\n"), path_of("out")), 0);
    SAME_TEXT(contents_of(path_of("out")), "1\n<BAD>\n");
    begin_capture(2);
    result = call(A_Convert_scr)(path_of("missing"), path_of("out"));
    SAME_TEXT(end_capture(), error);
    SAME_NUMBER(result, strlen(error));
    SAME_TEXT(contents_of(path_of("out")), "");

    begin_capture(2);
    SAME_NUMBER(call(A_Diff_scr)(file_with("a", "<BAD>\nabcd\nsame\n"), file_with("b", "abXd\nsame\nmore\n"),
                                 path_of("difference")),
                0);
    SAME_TEXT(contents_of(path_of("difference")), "  c       ");
    SAME_NUMBER(call(A_Diff_scr)(path_of("missing"), path_of("b"), path_of("out")), 0);
    SAME_TEXT(end_capture(), "");
}

static void check_texts(void) {
    SAME_NUMBER(call(bGenericStrCmp)("AB*D\n", "ABCD", 0), 1);
    SAME_NUMBER(call(bGenericStrCmp)("AB*D\n", "ABC", 0), 0);
    SAME_NUMBER(call(bGenericStrCmp)("abc", "abX", 2), 1);
    SAME_NUMBER(call(bGenericStrCmp)("abc", "abX", 0), 0);
    begin_capture(1);
    SAME_NUMBER(call(bGenericStrCmp)(NULL, "x", 0), 0);
    SAME_TEXT(end_capture(), "WIRK_WARNING : bGenericStrCmp :  NULL string, returning FALSE\n");
    SAME_NUMBER(call(hexdigint)('F'), 15);
    SAME_NUMBER(call(hexdigint)('a'), 10);
    SAME_NUMBER(call(hexdigint)('g'), 0);
    SAME_NUMBER(call(hextoint)("1G", 2), 16);
    SAME_NUMBER(call(hextoint)("FF", 0), 0);
    SAME_NUMBER(call(hextoint)("1F3", 2), 0x1F);
    SAME_NUMBER(call(hextoint)("1", 2), 0x10);
    SAME_NUMBER(call(hextoint)(NULL, 2), 0);
}

void check_conversion(void) {
    check_flex();
    check_keys();
    check_screens();
    check_texts();
}
