/* The tables of the object protocol, and the look-ups in them. */

#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>

#include "checks.h"

/* Number of rows, the sentinel included. */
static long name_rows(const ztdecode_name_record* table) {
    long n = 1;
    for (; table->code != 255; ++table) ++n;
    SAME_TEXT(table->name, "(reserved_error)");
    return n;
}

static long property_rows(const ztdecode_property_record* table) {
    long n = 1;
    for (; table->id != 255; ++table) {
        ++n;
        HOLDS(table->type != 3 && table->type <= ZTDECODE_UTF8);
        HOLDS(table->count == 0 || table->id >= 0x80);
    }
    SAME_TEXT(table->name, "(property_error)");
    SAME_NUMBER(table->type, 0);
    return n;
}

static void check_name_tables(void) {
    SAME_NUMBER(name_rows(data(Tab_Servers_def)), 3);
    SAME_NUMBER(name_rows(data(Tab_Methods_def)), 8);
    SAME_NUMBER(name_rows(data(Tab_Error_def)), 22);
    SAME_NUMBER(name_rows(data(Tab_Events_Opcodes)), 71);
    SAME_TEXT(data(Tab_Servers_def)[1].name, "Presentation");
    SAME_NUMBER(data(Tab_Methods_def)[5].code, 6);
    SAME_NUMBER(data(Tab_Methods_def)[6].code, 5);
    SAME_TEXT(data(Tab_Error_def)[20].name, "INTERNAL");
    SAME_TEXT(data(Tab_Events_Opcodes)[65].name, "IME_OPEN");
    SAME_TEXT(data(Tab_Events_Opcodes)[66].name, "IME_REMOTEOPEN");
}

#define CLASS(opcode, name, rows) \
    { opcode, #name, &data(Tab_##name)[0], rows }

static void check_classes(void) {
    const struct {
        int opcode;
        const char* name;
        const ztdecode_property_record* properties;
        long rows;
    } classes[] = {
        CLASS(0x00, context, 3),
        CLASS(0x01, terminal, 27),
        CLASS(0x02, keyboard, 12),
        CLASS(0x03, audioconfig, 8),
        CLASS(0x05, leds, 6),
        CLASS(0x06, screen, 21),
        CLASS(0x07, date, 10),
        CLASS(0x08, AOMV, 10),
        CLASS(0x09, bluetooth, 8),
        CLASS(0x0C, callstate, 7),
        CLASS(0x0D, resource, 6),
        CLASS(0x0E, widgets_default, 4),
        CLASS(0x80, framebox, 18),
        CLASS(0x81, tabbox, 19),
        CLASS(0x82, listbox, 32),
        CLASS(0x83, actionlistbox, 21),
        CLASS(0x84, textbox, 23),
        CLASS(0x85, actionbox, 17),
        CLASS(0x86, inputbox, 31),
        CLASS(0x87, checkbox, 21),
        CLASS(0x88, datebox, 18),
        CLASS(0x89, timerbox, 25),
        CLASS(0x8A, popupbox, 16),
        CLASS(0x8B, dialogbox, 26),
        CLASS(0x8C, sliderbar, 22),
        CLASS(0x8D, progressbar, 19),
        CLASS(0x8E, imagebox, 17),
        CLASS(0x8F, iconbox, 13),
        CLASS(0x90, AOMVbox, 13),
        CLASS(0x91, telephonicbox, 15),
        CLASS(0x92, keyboard_context, 14),
        CLASS(0x93, AOMEL, 13),
        CLASS(0x94, AOM10, 11),
        CLASS(0x95, AOM40, 11),
        CLASS(0x96, idletimer, 3),
        CLASS(0x97, telephonicboxitem, 7),
        CLASS(0x98, bluetooth_device, 10),
        CLASS(0x99, headerbox, 15),
        CLASS(0x9A, ime_context, 11),
    };
    enum { count = sizeof classes / sizeof classes[0] };
    size_t i;
    SAME_NUMBER(count, 39);
    for (i = 0; i < count; ++i) {
        const ztdecode_class_record* const row = &data(Tab_Classes_Opcodes)[i];
        SAME_NUMBER(row->opcode, classes[i].opcode);
        SAME_TEXT(row->name, classes[i].name);
        HOLDS(row->properties == classes[i].properties);
        SAME_NUMBER(property_rows(classes[i].properties), classes[i].rows);
        SAME_TEXT(call(Lclass)(classes[i].opcode, data(Tab_Classes_Opcodes)), classes[i].name);
    }
    SAME_NUMBER(data(Tab_Classes_Opcodes)[39].opcode, 255);
    SAME_TEXT(data(Tab_Classes_Opcodes)[39].name, "(class_error)");
    HOLDS(data(Tab_Classes_Opcodes)[39].properties == NULL);
}

static void check_properties_of_events(void) {
    SAME_NUMBER(property_rows(data(Tab_RESET)), 16);
    SAME_NUMBER(property_rows(data(Tab_TABBOX)), 3);
    SAME_NUMBER(property_rows(data(Tab_LISTBOX)), 3);
    SAME_NUMBER(property_rows(data(Tab_INPUTBOX_FOCUS_LOST)), 2);
    SAME_NUMBER(property_rows(data(Tab_SLIDERBAR)), 2);
    SAME_NUMBER(property_rows(data(Tab_BT_BONDED_DEVICE)), 4);
    SAME_NUMBER(property_rows(data(Tab_BT_INQUIRY_RESULT)), 3);
    SAME_NUMBER(property_rows(data(Tab_BT_NAME_DISCOVERY)), 3);
    SAME_NUMBER(property_rows(data(Tab_IME_LIST)), 3);
    SAME_NUMBER(property_rows(data(Tab_IME_CHANGE)), 2);
    SAME_NUMBER(property_rows(data(Tab_IME_OPEN)), 2);
    SAME_NUMBER(property_rows(data(Tab_IME_REMOTEOPEN)), 2);
    SAME_NUMBER(data(Tab_SLIDERBAR)[0].type, ZTDECODE_UINT32);
    SAME_TEXT(data(Tab_IME_REMOTEOPEN)[0].name, "objectid");
}

static void check_characters(void) {
    const ztdecode_glyph_record* const glyphs = data(tab_unicod);
    const ztdecode_block_record* const blocks = data(UnicodeBlock);
    int i;
    SAME_NUMBER(glyphs[0].code, 0xE000);
    SAME_TEXT(glyphs[0].name, "Corvane ");
    SAME_NUMBER(glyphs[287].code, 0xE139);
    SAME_TEXT(glyphs[287].name, "SoftKey_9");
    SAME_NUMBER(glyphs[288].code, 0xB000);
    SAME_TEXT(glyphs[288].name, "UTF8_LABEL_NOT_FOUND");
    SAME_NUMBER(blocks[0].first, 0);
    SAME_TEXT(blocks[0].name, "C0 Controls and Basic Latin (Basic Latin)");
    for (i = 1; i < 161; ++i) HOLDS(blocks[i].first > blocks[i - 1].last);
    SAME_NUMBER(blocks[160].last, 0xFFFF);
    SAME_TEXT(blocks[160].name, "Specials");
}

void check_tables(void) {
    check_name_tables();
    check_classes();
    check_properties_of_events();
    check_characters();
}

static void look_unknown_class_up(void) {
    call(p)("%s", "before");
    call(Lclass)(0x04, data(Tab_Classes_Opcodes));
}

static void check_searches(void) {
    static const ztdecode_name_record own_names[] = {{7, "seven"}, {7, "seven again"}, {255, "none"}};
    static const ztdecode_property_record own_properties[] = {
        {ZTDECODE_UINT8, 1, "one", 0}, {ZTDECODE_UTF8, 0x81, "many", 300}, {0, 255, "none", 0}};
    static const ztdecode_class_record own_classes[] = {{3, "three", own_properties}, {255, "none", NULL}};
    struct ended ended;
    uint16_t count = 1;
    uint8_t type = 1;

    SAME_TEXT(call(Look)(0x16, data(Tab_Servers_def)), "Presentation");
    SAME_TEXT(call(Look)(5, data(Tab_Methods_def)), "DeleteItem");
    SAME_TEXT(call(Look)(0x20, data(Tab_Events_Opcodes)), "(reserved_error)");
    SAME_TEXT(call(Look)(0x116, data(Tab_Servers_def)), "(reserved_error)");
    SAME_TEXT(call(Look)(-1, data(Tab_Servers_def)), "(reserved_error)");
    HOLDS(call(Look)(7, own_names) == own_names[0].name);
    HOLDS(call(Look)(8, own_names) == own_names[2].name);
    SAME_TEXT(call(Look)(8, NULL), "");

    SAME_TEXT(call(Lprop)(0x37, data(Tab_textbox), &count, &type), "label");
    SAME_NUMBER(count, 0);
    SAME_NUMBER(type, ZTDECODE_UTF8);
    SAME_TEXT(call(Lprop)(0x80, data(Tab_keyboard), &count, &type), "dflt");
    SAME_NUMBER(count, 78);
    SAME_NUMBER(type, ZTDECODE_UINT16);
    SAME_TEXT(call(Lprop)(0x99, data(Tab_screen), &count, &type), "(property_error)");
    SAME_NUMBER(count, 0);
    SAME_NUMBER(type, ZTDECODE_INT32);
    SAME_TEXT(call(Lprop)(0x81, own_properties, &count, NULL), "many");
    SAME_NUMBER(count, 300);
    SAME_TEXT(call(Lprop)(1, own_properties, NULL, &type), "one");
    SAME_NUMBER(type, ZTDECODE_UINT8);
    SAME_TEXT(call(Lprop)(1, NULL, NULL, NULL), "");

    /* The host's class is the current one: an answer of unknown class shows its properties. */
    HOLDS(call(Lclass)(3, own_classes) == own_classes[0].name);
    data(app_idx) = 0;
    call(vDecodeEvent)(0x94, (const uint8_t*)"\001\001\005\201\002\001A", 7);
    SAME_TEXT(data(app_buf), "\n\tone            \t5\n\tmany           \tIdx:2  \"A\"");
    SAME_TEXT(call(Lclass)(3, NULL), "");

    data(app_idx) = 0;
    run_apart(look_unknown_class_up, &ended);
    SAME_NUMBER(ended.status, 255);
    SAME_TEXT(ended.application_text, "before\nError class lookup table ptr");
    SAME_TEXT(ended.error, "");
}

static void check_help(void) {
    static const char separator[] = "\n-----------------------------------------";
    static const char first_class[] = "\ncontext\n{\n\tobjectid       \tuint16\n\townership      \tuint8\n}";
    static const char keyboard_line[] =
        "\n\tdflt           \tIdx:\tuint16\n\tshift          \tIdx:\tuint16\n";
    static const char text_line[] = "\n\tserialnum      \t\"UTF8\"\n";
    char* const help = data(str_help);

    SAME_NUMBER(call(ClassProp_Help)(), 0);
    SAME_NUMBER(data(hlp_idx), 15133);
    SAME_NUMBER(strlen(help), 15133);
    HOLDS(strncmp(help, separator, sizeof separator - 1) == 0);
    HOLDS(strncmp(help + sizeof separator - 1, first_class, sizeof first_class - 1) == 0);
    HOLDS(strstr(help, keyboard_line) != NULL);
    HOLDS(strstr(help, text_line) != NULL);
    SAME_TEXT(help + 15133 - (sizeof separator - 1), separator);
    /* The last class is the current one. */
    data(app_idx) = 0;
    call(vDecodeEvent)(0x94, (const uint8_t*)"\035\001\001", 3);
    SAME_TEXT(data(app_buf), "\n\tenable         \tTRUE");

    call(ph)("%s %d", "more", 7);
    SAME_NUMBER(data(hlp_idx), 15139);
    SAME_TEXT(help + 15133, "more 7");
    data(hlp_idx) = ZTDECODE_HELP_SIZE - 3;
    call(ph)("%s", "abcdef");
    SAME_NUMBER(data(hlp_idx), ZTDECODE_HELP_SIZE - 1);
    SAME_TEXT(help + ZTDECODE_HELP_SIZE - 3, "ab");
    call(ph)("%s", "g");
    data(hlp_idx) = ZTDECODE_HELP_SIZE + 10;
    call(ph)("%s", "h");
    SAME_NUMBER(data(hlp_idx), ZTDECODE_HELP_SIZE + 10);
    SAME_TEXT(help + ZTDECODE_HELP_SIZE - 3, "ab");
    data(hlp_idx) = 0;
    call(ph)("%c", 'x');
    SAME_TEXT(help, "x");
}

static void check_names_of_characters(void) {
    static const ztdecode_glyph_record own[] = {{0x41, "mine"}, {0xB000, "none"}};
    void* const names = dlopen("libuninameslist.so", RTLD_LAZY);
    const char* const known = names != NULL
                                  ? "LATIN SMALL LETTER E WITH ACUTE"
                                  : "C1 Controls and Latin-1 Supplement (Latin-1 Supplement)-U+00E9";
    const char* const glyph = call(LookUtf8)(0xE031, data(tab_unicod));
    SAME_TEXT(glyph, "Corvane rond vide (ne pas utiliser)");
    SAME_TEXT(call(LookUtf8)(0xE110, data(tab_unicod)), "Ok");
    HOLDS(call(LookUtf8)(0x41, own) == own[0].name);
    SAME_TEXT(call(LookUtf8)(0xE9, NULL), known);
    SAME_TEXT(call(LookUtf8)(0xE9, own), known);
    /* A code point that has no name, one beyond the last block, and the last one of a block. */
    SAME_TEXT(call(LookUtf8)(0x1F16, NULL), "Greek Extended-U+1F16");
    SAME_TEXT(call(LookUtf8)(0x30000000, data(tab_unicod)), "???");
    SAME_TEXT(call(LookUtf8)(0xE110, NULL), "Private Use Area-U+E110");
    SAME_TEXT(glyph, "Corvane rond vide (ne pas utiliser)");
    if (names != NULL) dlclose(names);
}

void check_lookups(void) {
    check_searches();
    check_help();
    check_names_of_characters();
}
