/* A host that reads and writes the library's data. Its executable is linked once as position-independent and
 * once not; in both the linker may lay copies of the data into the executable, which the library has to use
 * as well then. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ztdecode.h"

static int failures;

static void same(const char* got, const char* expected) {
    if (got != NULL && strcmp(got, expected) == 0) return;
    ++failures;
    fprintf(stderr, "\"%s\" instead of \"%s\"\n", got != NULL ? got : "(null)", expected);
}

static void decodes_to(uint8_t type, uint32_t direction, const char* expected) {
    static MessageRecord record;
    char* text;
    memset(&record, 0, sizeof record);
    record.length = 1;
    record.data[0] = type;
    record.direction = direction;
    text = decode(record);
    same(text, expected);
    free(text);
}

static void holds(int condition, const char* what) {
    if (condition) return;
    ++failures;
    fprintf(stderr, "%s\n", what);
}

static void check_switches(void) {
    char text[256] = "";
    FILE* const trace = fmemopen(text, sizeof text, "w");
    FILE* const output = stdout;

    same(Version, "5.01");
    decodes_to(0x01, 1, "\t- handset off hook");
    useColor = 1;
    decodes_to(0x01, 1, "\033[0;31m\t- handset off hook\033[0m");
    useColor = 0;
    audioOnly = 1;
    decodes_to(0x01, 1, "");
    decodes_to(0x3F, 0, "\t- mute on");
    audioOnly = 0;
    decodes_to(0x01, 1, "\t- handset off hook");

    /* The C library's stdout may be such a copy, too. */
    if (trace == NULL) exit(2);
    fflush(stdout);
    stdout = trace;
    debug = 1;
    decodes_to(0x01, 1, "\t- handset off hook");
    debug = 0;
    stdout = output;
    fclose(trace);
    same(text, "entree decode, lng=0x01  sens= to DHS\nentree decode1msg, lng=0x01  sens= to DHS\n");
}

static void check_tables(void) {
    static const uint8_t answer[] = {0x16, 4, 0x94, 1, 0, 0x15, 1, 1};
    static const uint8_t terminal[] = {0x16, 2, 1, 0x62, 2, 'A', 'B'};
    const ztdecode_class_record* row;

    same(Tab_Servers_def[0].name, "Call");
    same(Tab_Methods_def[5].name, "InsertItem");
    same(Tab_Error_def[0].name, "INVALID_METHOD");
    same(Tab_Events_Opcodes[70].name, "(reserved_error)");
    same(Tab_RESET[0].name, "State");
    same(UnicodeBlock[160].name, "Specials");
    same(tab_unicod[288].name, "UTF8_LABEL_NOT_FOUND");
    same(FLEX_ASCII_TABLE[64].code, "7A");
    /* One address for a table, whoever asks for it. */
    for (row = Tab_Classes_Opcodes; row->opcode != 255; ++row) {
        if (row->opcode == 6) holds(row->properties == Tab_screen, "Tab_screen stands at two places");
        if (row->opcode == 1) holds(row->properties == Tab_terminal, "Tab_terminal stands at two places");
    }
    same(Look(0x16, Tab_Servers_def), "Presentation");
    same(Lprop(0x15, Tab_screen, NULL, NULL), "clearscreen");
    same(LookUtf8(0xE110, tab_unicod), "Ok");
    /* The class that was looked up is the one that an answer is decoded with. */
    same(Lclass(6, Tab_Classes_Opcodes), "screen");
    same(analyse_cmd_term(answer, (int)sizeof answer),
         "\nNotify\tGET_PROPERTY_RESULT\n{\n\tServer\t\tPresentation\n\tclearscreen    \tTRUE\n}\n");
    same(analyse_cmd_pbx(terminal, (int)sizeof terminal),
         "\nSetProperty\tterminal\n{\n\tServer\t\tPresentation\n\tserialnum      \t\"AB\"\n}\n");
}

static void check_buffers(void) {
    app_idx = 0;
    same(p("%s", "written"), "written");
    same(app_buf, "written");
    holds(app_idx == 7 && app_buf_size == 200000, "app_idx and app_buf_size");
    vFreeApplicationBuffer();
    holds(app_buf == NULL && app_idx == 0 && app_buf_size == 0, "the buffer is still there");
    convert_line("0a 0b");
    holds(nb_vals == 2 && in_buf[0] == 10 && in_buf[1] == 11, "in_buf and nb_vals");
    ClassProp_Help();
    holds(hlp_idx == 15133 && strlen(str_help) == 15133, "str_help and hlp_idx");
    boDisplayResult = 9;
    analyse_cmd((const uint8_t*)"\006\000\014\201\002\026\006\025", 8, 'S');
    holds(boDisplayResult == 0, "boDisplayResult of a first segment");
    analyse_cmd((const uint8_t*)"\006\000\014\000\001\001\000\000", 8, 'S');
    holds(boDisplayResult == 1, "boDisplayResult of a last segment");
    vFreeApplicationBuffer();
}

int main(void) {
    check_switches();
    check_tables();
    check_buffers();
    return failures == 0 ? 0 : 1;
}
