/* The application buffer, and the messages of the object protocol, which are written to it. */

#include <stdlib.h>
#include <string.h>

#include "checks.h"

static const uint8_t* bytes(const char* hex) {
    static uint8_t buffer[64];
    memset(buffer, 0xEE, sizeof buffer);
    bytes_of(hex, buffer, sizeof buffer);
    return buffer;
}

static void check_p(void) {
    static char long_text[12001];
    uint32_t size;
    char* begin;

    call(vFreeApplicationBuffer)();
    HOLDS(data(app_buf) == NULL);
    SAME_NUMBER(data(app_buf_size), 0);
    SAME_NUMBER(data(app_idx), 0);
    SAME_TEXT(call(p)("%d-%s\n", 5, "x"), "5-x\n");
    SAME_NUMBER(data(app_idx), 4);
    SAME_NUMBER(data(app_buf_size), 200000);
    begin = call(p)("%02X", 0x1F);
    HOLDS(begin == data(app_buf) + 4);
    SAME_TEXT(data(app_buf), "5-x\n1F");
    data(app_idx) = 0;
    SAME_TEXT(call(p)("%s", "anew"), "anew");
    SAME_TEXT(data(app_buf), "anew");

    /* 9999 characters are written as they are; more are cut, though app_idx moves on; from 10001 on with a
     * complaint. */
    memset(long_text, 'x', 12000);
    data(app_idx) = 0;
    begin_capture(2);
    call(p)("%.9999s", long_text);
    SAME_NUMBER(strlen(data(app_buf)), 9999);
    SAME_NUMBER(data(app_idx), 9999);
    call(p)("%.10000s", long_text);
    SAME_NUMBER(strlen(data(app_buf)), 2 * 9999);
    SAME_NUMBER(data(app_idx), 9999 + 10000);
    SAME_TEXT(end_capture(), "");
    begin_capture(2);
    data(app_idx) = 0;
    call(p)("%s", long_text);
    SAME_TEXT(end_capture(), "\nLine too long, truncated\n");
    SAME_NUMBER(strlen(data(app_buf)), 9999);
    SAME_NUMBER(data(app_idx), 12000);
    HOLDS(data(app_buf)[11999] == '\0' && data(app_buf)[12000] == '\0');
    call(p)("%s", "behind the gap");
    SAME_TEXT(data(app_buf) + 12000, "behind the gap");

    /* One step more when a text does not fit any more. */
    size = data(app_buf_size);
    data(app_idx) = size - 4;
    call(p)("%s", "abc");
    SAME_NUMBER(data(app_buf_size), size);
    call(p)("%s", "d");
    SAME_NUMBER(data(app_buf_size), size + 200000);
    SAME_TEXT(data(app_buf) + size - 4, "abcd");
    call(vFreeApplicationBuffer)();
    HOLDS(data(app_buf) == NULL && data(app_buf_size) == 0 && data(app_idx) == 0);
}

/* What the last call appended. */
static const char* appended(void) {
    const char* const text = data(app_buf);
    data(app_idx) = 0;
    return text == NULL ? "(null)" : text;
}

static void check_values(void) {
    call(vDecodeTLV)(0x37, 0, 3, bytes("41 42 43"), data(Tab_textbox));
    SAME_TEXT(appended(), "\n\tlabel          \t\"ABC\"");
    call(vDecodeTLV)(0x37, 0, 3, NULL, data(Tab_textbox));
    SAME_TEXT(appended(), "\n\tlabel          \t");
    call(vDecodeTLV)(0x8A, 2, 1, bytes("78"), data(Tab_tabbox));
    SAME_TEXT(appended(), "\n\tDlabel         \tIdx:2  \"x\"");
    call(vDecodeTLV)(0x46, 0, 1, bytes("fe"), data(Tab_framebox));
    SAME_TEXT(appended(), "\n\thoffset        \t-2");
    call(vDecodeTLV)(0x28, 0, 2, bytes("00 01"), data(Tab_framebox));
    SAME_TEXT(appended(), "\n\tvisible        \tBOOL length errorFALSE");
    /* Nothing is read behind the length. */
    call(vDecodeTLV)(0x12, 0, 0, bytes("07"), data(Tab_framebox));
    SAME_TEXT(appended(), "\n\tw              \t0");
    call(p)("%s", "-");
    call(vDecodeTLV)(0x12, 0, 1, bytes("07"), NULL);
    SAME_TEXT(appended(), "-");

    SAME_NUMBER(call(printUTF8str)(bytes("41 0a 7f"), 3, 1), 0);
    SAME_TEXT(appended(), "\"A\\LF\\$\"");
    SAME_NUMBER(call(printUTF8str)(bytes("c3 a9"), 2, 1), 1);
    SAME_TEXT(appended(), "\"\303\251\"");
    SAME_NUMBER(call(printUTF8str)(bytes("ee 80 b1 41"), 4, 0), 1);
    SAME_TEXT(appended(), "\"<Corvane rond vide (ne pas utiliser)>A\"");
    SAME_NUMBER(call(printUTF8str)(bytes("e0 84 a0"), 3, 1), 1);
    SAME_TEXT(appended(), "\"\\u0120\"");
    SAME_NUMBER(call(printUTF8str)(NULL, 3, 1), 0);
    SAME_TEXT(appended(), "\"\"");
    call(vPutf8char)('A');
    call(vPutf8char)(0xC3);
    SAME_TEXT(appended(), "A$");

    call(vDsipTLV)("banner", bytes("05 01 0c 82 99"), 5);
    SAME_TEXT(appended(), "banner   OP:0C   LG:01 05   VALUE: 82 99 ");

    call(vDecodeEvent)(0x15, bytes("01 01"), 2);
    SAME_TEXT(appended(), "\n\tvalue           BT handset\n\tstate           plugged");
    call(p)("%s", "-");
    call(vDecodeEvent)(0x1F, bytes("01 01"), 2);
    SAME_TEXT(appended(), "-");
    data(debug) = 1;
    begin_capture(1);
    call(vDecodeEvent)(0x15, bytes("01 00"), 2);
    SAME_TEXT(end_capture(), "vDecodeEvent(bEvent=0x15, ptr[0]= 0x01, len=2)\n");
    data(debug) = 0;
    SAME_TEXT(appended(), "\n\tvalue           BT handset\n\tstate           unplugged");
}

static void check_convert_line(void) {
    char many[3000 * 3 + 1];
    int i;

    data(app_idx) = 0;
    call(convert_line)("01 02\t0A\r\n ff\n");
    SAME_NUMBER(data(nb_vals), 4);
    HOLDS(memcmp(data(in_buf), "\001\002\012\377", 4) == 0);
    SAME_NUMBER(data(app_idx), 0);
    /* The first number may be as long as it likes. */
    call(convert_line)("0000000c 2");
    SAME_NUMBER(data(nb_vals), 2);
    SAME_NUMBER(data(in_buf)[0], 12);
    call(convert_line)("03 04 0345");
    SAME_NUMBER(data(nb_vals), 0);
    HOLDS(memcmp(data(in_buf), "\003\004", 2) == 0);
    SAME_TEXT(appended(), "\nhexa conv error\n");
    for (i = 0; i < 2998; ++i) memcpy(many + 3 * i, "5a ", 3);
    many[3 * 2998] = '\0';
    call(convert_line)(many);
    SAME_NUMBER(data(nb_vals), 2998);
    SAME_NUMBER(data(in_buf)[2997], 0x5A);
    SAME_NUMBER(data(app_idx), 0);
    memcpy(many + 3 * 2998, "5a ", 4);
    call(convert_line)(many);
    SAME_NUMBER(data(nb_vals), 0);
    SAME_TEXT(appended(), "\ntoo many fields in input file");
    call(convert_line)("");
    SAME_NUMBER(data(nb_vals), 0);
    call(convert_line)(NULL);
    SAME_NUMBER(data(nb_vals), 0);
}

static void check_commands(void) {
    static const char label[] =
        "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          "
        "\t\"ABC\"\n}\n";
    const char* text;

    call(p)("%s", "gone with the next message");
    text = call(analyse_cmd_pbx)(bytes("16 02 84 00 07 37 03 41 42 43"), 10);
    HOLDS(text == data(app_buf));
    SAME_TEXT(text, label);
    SAME_NUMBER(data(app_idx), strlen(label));
    SAME_TEXT(
        call(analyse_cmd_pbx)(bytes("16 03 84 00 07 37 00"), 7),
        "\nGetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          \t\n}\n");
    SAME_TEXT(call(analyse_cmd_pbx)(bytes("16 05 82 00 07 03"), 6),
              "\nDeleteItem\tlistbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tIndex\t03\n}");
    SAME_TEXT(call(analyse_cmd_pbx)(bytes("16 04 82"), 3), "\nInvalid_method 0x04 (PBX->TX)");
    SAME_TEXT(call(analyse_cmd_term)(bytes("16 04 02 41"), 4),
              "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n\tkeychar         \"A\"\n}\n");
    SAME_TEXT(call(analyse_cmd_term)(bytes("15 02 02"), 3), "\nInvalid_method 0x02 (TX->PBX)");
    /* No byte behind the length is read: the class is 0. */
    SAME_TEXT(call(analyse_cmd_pbx)(bytes("15 00"), 2), "\nCreate\tcontext\n{\n\tServer\t\tCall\n}\n");
    SAME_TEXT(call(analyse_cmd_pbx)(NULL, 5), "\nCreate\tcontext\n{\n\tServer\t\t(reserved_error)\n}\n");
    SAME_TEXT(call(analyse_cmd_pbx)(bytes("15"), -1),
              "\nCreate\tcontext\n{\n\tServer\t\t(reserved_error)\n}\n");

    /* The routes leave the same text there, however the message came in. */
    free(call(decode)(message("16 02 84 00 07 37 03 41 42 43", from_dhs)));
    SAME_TEXT(data(app_buf), label);
    SAME_NUMBER(data(app_idx), strlen(label));
    free((char*)call(line)("03 15 04 06", to_dhs));
    SAME_TEXT(data(app_buf), "\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n");
    free(call(decode)(message("14 10 15 02 06", from_dhs)));
    SAME_TEXT(data(app_buf), "\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n");
    free(call(decode)(message("2a", from_dhs)));
    SAME_TEXT(data(app_buf), "\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n");
}

/* A zero byte inside a character ends the text for whoever reads it; what is printed behind it is there. */
static void check_zero_bytes(void) {
    static const char shown[] =
        "\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n\tlabel          \t\"A\356";
    static const char behind[] = "\0\200\"\t//\"A<Corvane >\"\n}\n";
    static const char last_part[] = "\"A\356\n\t> zt 01 00 2a\n\t- version inquiry\n";
    static const char* const message_bytes = "16 02 84 00 07 37 04 41 ee 00 80";
    MessageRecord record = message(message_bytes, from_dhs);
    char* text;

    SAME_TEXT(call(analyse_cmd_pbx)(bytes(message_bytes), 11), shown);
    SAME_NUMBER(data(app_idx), sizeof shown - 1 + sizeof behind - 1);
    HOLDS(memcmp(data(app_buf) + sizeof shown - 1, behind, sizeof behind) == 0);
    text = call(decode)(record);
    HOLDS(strncmp(text, "\tRYM - presentation server", 26) == 0);
    SAME_TEXT(text + 26, shown);
    free(text);
    SAME_NUMBER(data(app_idx), sizeof shown - 1 + sizeof behind - 1);
    HOLDS(memcmp(data(app_buf) + sizeof shown - 1, behind, sizeof behind) == 0);
    SAME_TEXT(call(dhs2prs)(&record) + 19, shown);
    /* The next part of a super message follows. */
    text = call(decode)(message("0b 0b 16 02 84 00 07 37 04 41 ee 00 80 01 2a", from_dhs));
    HOLDS(strlen(text) > sizeof last_part);
    SAME_TEXT(text + strlen(text) - (sizeof last_part - 1), last_part);
    free(text);
}

static void check_frames(void) {
    static const char clear_screen[] =
        "\nSetProperty\tscreen\n{\n\tServer\t\tPresentation\n\tclearscreen    \tTRUE\n}\n";

    /* Decoded from byte 0 on: the length byte is the server, the operation the event. */
    data(app_idx) = 0;
    SAME_NUMBER(call(analyse_cmd)(bytes("05 04 15 03 01"), 5, 'R'), 1);
    SAME_TEXT(appended(),
              "\nNotify\tDEVICE_PRESENCE\n{\n\tServer\t\t(reserved_error)\n\tvalue           Jack\n"
              "\tstate           plugged\n}\n");
    SAME_NUMBER(call(analyse_cmd)(bytes("03 07 15"), 3, 'S'), 1);
    SAME_TEXT(appended(), "\nInvalid_method 0x07 (PBX->TX)");

    /* Messages of the sets: appended. */
    call(p)("%s", "kept");
    SAME_NUMBER(call(analyse_cmd)(bytes("01 00 2a"), 3, 'S'), 1);
    SAME_NUMBER(call(analyse_cmd)(bytes("02 00 0f 09"), 4, 'T'), 1);
    SAME_TEXT(appended(),
              "kept"
              "\n//|||||||| ZT PBX->TERMINAL   OP:2A   LG:00 01   VALUE: "
              "\nPbx_ZT_message\n{\n\t- version inquiry\n\n}\n"
              "\n//######## ZT TERMINAL->PBX   OP:0F   LG:00 02   VALUE: 09 "
              "\nTerm_ZT_message\n{\n\t- ??\n\n}\n");
    /* An object-protocol message among them begins the buffer anew, over what stands there of the frame. */
    call(p)("%s", "lost");
    call(analyse_cmd)(bytes("01 00 2a 03 00 15 02 06"), 8, 'S');
    SAME_TEXT(appended(),
              "\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n"
              "\n\t- version inquiry\n"
              "\tRYM - call server\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n\n}\n");

    /* Two segments of four bytes; the first two bytes stand swapped, the last two of the series do not count.
     */
    call(p)("%s", "as it was");
    data(boDisplayResult) = 7;
    SAME_NUMBER(call(analyse_cmd)(bytes("06 00 0c 81 02 16 06 15"), 8, 'S'), 1);
    SAME_NUMBER(data(boDisplayResult), 0);
    SAME_TEXT(data(app_buf), "as it was");
    SAME_NUMBER(call(analyse_cmd)(bytes("06 00 0c 00 01 01 00 00"), 8, 'S'), 1);
    SAME_NUMBER(data(boDisplayResult), 1);
    SAME_TEXT(appended(), clear_screen);

    /* They stand behind the message: a value may run on into them, and into zeros behind them. */
    call(analyse_cmd)(bytes("06 00 0c 81 02 16 06 5c"), 8, 'S');
    call(analyse_cmd)(bytes("04 00 0c 00 03 07"), 6, 'S');
    SAME_TEXT(appended(),
              "\nSetProperty\tscreen\n{\n\tServer\t\tPresentation\n\tbacklight_timeout\t0x070000\n}\n");

    /* The same, gathered by hand; and as the earlier function takes it, without the swap. */
    SAME_NUMBER(call(boCatchSegment)(bytes("06 00 0c 81 02 16 06 15")), 0);
    call(analyse_cmd)(bytes("06 00 0c 00 01 01 00 00"), 8, 'S');
    SAME_TEXT(appended(), clear_screen);
    SAME_NUMBER(call(bo_OLD_CatchSegment)(bytes("06 00 0c 81 16 02 06 15")), 0);
    call(analyse_cmd)(bytes("06 00 0c 00 01 01 00 00"), 8, 'S');
    SAME_TEXT(appended(), clear_screen);
    /* A middle segment counts as long as the first one, and its own length is not read. */
    SAME_NUMBER(call(boCatchSegment)(bytes("06 00 0c 82 02 16 06 15")), 0);
    SAME_NUMBER(call(boCatchSegment)(bytes("06 00 0c 01 01 00 14 01")), 0);
    call(analyse_cmd)(bytes("05 00 0c 00 08 00 00"), 7, 'S');
    SAME_TEXT(appended(),
              "\nSetProperty\tscreen\n{\n\tServer\t\tPresentation\n\tclearscreen    \tFALSE\n"
              "\tcontrast       \t8\n}\n");

    /* Whole series. The bytes of one are forgotten by hand; without that the next one would lie behind them.
     */
    SAME_NUMBER(call(boCatchSegment)(bytes("06 00 0c 81 02 16 06 15")), 0);
    SAME_NUMBER(call(boCatchSegment)(bytes("06 00 0c 00 01 01 00 00")), 1);
    call(vSaveLastReconstructedCmd)();
    call(vFreeReconstructedCmd)();
    call(vFreeLastReconstructedCmd)();
    call(vFreeLastReconstructedCmd)();
    SAME_NUMBER(call(bo_OLD_CatchSegment)(bytes("06 00 0c 81 16 02 06 15")), 0);
    SAME_NUMBER(call(bo_OLD_CatchSegment)(bytes("06 00 0c 00 01 01 00 00")), 1);
    call(vFreeReconstructedCmd)();
    call(vSaveLastReconstructedCmd)();
    call(analyse_cmd)(bytes("06 00 0c 81 02 16 06 15"), 8, 'S');
    call(analyse_cmd)(bytes("06 00 0c 00 01 01 00 00"), 8, 'S');
    SAME_TEXT(appended(), clear_screen);
}

/* Segments end where their own length says: a heap block of that size is all that is read. */
static void check_ends_of_segments(void) {
    static const char* const segments[] = {"06 00 0c 81 02 16 06 15", "02 00 0c 00"};
    size_t i;
    for (i = 0; i < 2; ++i) {
        uint8_t buffer[16];
        const int size = bytes_of(segments[i], buffer, sizeof buffer);
        uint8_t* const block = malloc((size_t)size);
        if (block == NULL) abort();
        memcpy(block, buffer, (size_t)size);
        SAME_NUMBER(call(boCatchSegment)(block), i);
        free(block);
    }
    call(vFreeReconstructedCmd)();
}

static void decode_unknown_class(void) { free(call(decode)(message("16 02 04", from_dhs))); }

static void read_unknown_class(void) { call(line_spzt)("000000S 03 16 02 04"); }

static void route_unknown_class(void) {
    MessageRecord record = message("16 02 04", from_dhs);
    call(dhs2prs)(&record);
}

static void analyse_unknown_class(void) { call(analyse_cmd_pbx)(bytes("16 02 04"), 3); }

static void analyse_unknown_class_of_error(void) { call(analyse_cmd_term)(bytes("16 04 0b 00 00 00 04"), 7); }

static void frame_unknown_class(void) { call(analyse_cmd)(bytes("03 02 15"), 3, 'S'); }

static void check_unknown_class(void) {
    static void (*const acts[])(void) = {decode_unknown_class, read_unknown_class, route_unknown_class,
                                         analyse_unknown_class, frame_unknown_class};
    struct ended ended;
    size_t i;
    for (i = 0; i < sizeof acts / sizeof acts[0]; ++i) {
        run_apart(acts[i], &ended);
        SAME_NUMBER(ended.status, 255);
        SAME_TEXT(ended.application_text, "\nError class lookup table ptr");
        SAME_TEXT(ended.error, "");
    }
    run_apart(analyse_unknown_class_of_error, &ended);
    SAME_NUMBER(ended.status, 255);
    SAME_TEXT(ended.application_text,
              "\nNotify\tERROR_CREATE\n{\n\tServer\t\tPresentation\n\terrorcode       INVALID_METHOD\n"
              "\tmethod          Create\nError class lookup table ptr");
}

void check_application_buffer(void) {
    check_p();
    check_values();
    check_convert_line();
}

void check_object_messages(void) {
    check_commands();
    check_zero_bytes();
    check_frames();
    check_ends_of_segments();
    check_unknown_class();
    call(vFreeApplicationBuffer)();
}
