/* The way in: decode, the readers, the record's helpers, the switches. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "checks.h"

static char* decoded(const char* hex, uint32_t direction) { return call(decode)(message(hex, direction)); }

static void check_decode(void) {
    MessageRecord record = message("1f 00 04 01 05", to_dhs);
    const MessageRecord before = record;
    char* const nothing = call(decode)(message("", to_dhs));

    SAME_HEAP_TEXT(decoded("01", to_dhs), "\t- handset off hook");
    SAME_HEAP_TEXT(decoded("2a", from_dhs), "\t- version inquiry");
    SAME_HEAP_TEXT(decoded("06 0a 0b 21", from_dhs),
                   "\t- routage visiophone: src=0a dst=0b\n\t- subdev reset");
    /* Two parts behind a length byte each, the second one unknown; and parts behind two length bytes. */
    SAME_HEAP_TEXT(decoded("0b 02 aa bb 01 cc", from_dhs),
                   "\t- super message:\n"
                   "\t> zt 02 00 aa bb\n"
                   "\t- version inquiry\n"
                   "\t> zt 01 00 cc\n"
                   "\t- ERR: message inconnu\n");
    SAME_HEAP_TEXT(decoded("17 01 00 2b", from_dhs),
                   "\t- super message, type 2:\n"
                   "\t> zt 01 00 2b\n"
                   "\t- are you there?");
    SAME_HEAP_TEXT(decoded("0b 05 01", to_dhs), "\t- super message:\n\t- bad residual length!!!");
    /* Any direction but 0 and 1 is decoded as one to the system. */
    SAME_HEAP_TEXT(decoded("01", 2), "\t- handset off hook");

    /* A constant: the same one each time, and not the host's to release. */
    SAME_TEXT(nothing, "");
    HOLDS(call(decode)(message("", from_dhs)) == nothing);

    /* The host's record stays as it is, though the decoders write to theirs. */
    record.reserved = 0x1234;
    record.status = 77;
    free(call(decode)(record));
    HOLDS(record.length == before.length && record.route == before.route && record.status == 77);
    HOLDS(record.reserved == 0x1234 && memcmp(record.data, before.data, sizeof before.data) == 0);

    /* 5120 bytes are a message; a length above counts as 5120. */
    memset(&record, 0, sizeof record);
    record.data[0] = 0x18;
    memset(record.data + 1, 'x', sizeof record.data - 1);
    record.length = 0xFFFFFFFF;
    {
        char* const text = call(decode)(record);
        SAME_NUMBER(strlen(text), strlen("\tDBG - ") + 5119);
        free(text);
    }
}

static void check_switches(void) {
    char* text;

    SAME_TEXT(data(Version), "5.01");
    SAME_NUMBER(data(useColor), 0);
    SAME_NUMBER(data(audioOnly), 0);
    SAME_NUMBER(data(debug), 0);

    data(useColor) = 1;
    SAME_HEAP_TEXT(decoded("01", to_dhs), "\033[0;31m\t- handset off hook\033[0m");
    SAME_HEAP_TEXT(decoded("2a", from_dhs), "\033[0;32m\t- version inquiry\033[0m");
    SAME_HEAP_TEXT(decoded("01", 2), "\033[0;32m\t- handset off hook\033[0m");
    SAME_HEAP_TEXT(decoded("0b 01 2a", from_dhs),
                   "\t- super message:\n\t> zt 01 00 2a\n\033[0;32m\t- version inquiry\033[0m\n");
    data(audioOnly) = 1;
    SAME_HEAP_TEXT(decoded("01", to_dhs), "\033[0;31m\033[0m");
    data(useColor) = 0;
    SAME_HEAP_TEXT(decoded("01", to_dhs), "");
    SAME_HEAP_TEXT(decoded("2a", from_dhs), "");
    SAME_HEAP_TEXT(decoded("3f 00", from_dhs), "\t- mute on");
    SAME_NUMBER(call(inListAudioOpcodes)(from_dhs, 0x24), 1);
    SAME_NUMBER(call(inListAudioOpcodes)(from_dhs, 0x26), 0);
    SAME_NUMBER(call(inListAudioOpcodes)(from_dhs, 0x4F), 1);
    SAME_NUMBER(call(inListAudioOpcodes)(from_dhs, 0x50), 0);
    SAME_NUMBER(call(inListAudioOpcodes)(to_dhs, 21), 1);
    SAME_NUMBER(call(inListAudioOpcodes)(to_dhs, 0x24), 0);
    data(audioOnly) = 0;
    SAME_NUMBER(call(inListAudioOpcodes)(to_dhs, 0x24), 1);

    data(debug) = 1;
    begin_capture(1);
    text = decoded("01", to_dhs);
    SAME_TEXT(end_capture(),
              "entree decode, lng=0x01  sens= to DHS\n"
              "entree decode1msg, lng=0x01  sens= to DHS\n");
    SAME_HEAP_TEXT(text, "\t- handset off hook");
    begin_capture(1);
    SAME_TEXT(decoded("", to_dhs), "");
    SAME_TEXT(end_capture(), "");
    data(debug) = 0;
    begin_capture(1);
    free(decoded("01", to_dhs));
    SAME_TEXT(end_capture(), "");
}

static void check_record_helpers(void) {
    static const MessageRecord zeros;
    MessageRecord record = message("01 02 03", to_dhs);
    MessageRecord* copy;
    char out[64] = "before ";

    call(decale)(&record, 1);
    SAME_NUMBER(record.length, 2);
    /* The byte behind the new end stays as it was. */
    HOLDS(memcmp(record.data, "\002\003\003\000", 4) == 0);
    call(decale)(&record, 2);
    SAME_NUMBER(record.length, 0);
    HOLDS(memcmp(record.data, "\002\003\003\000", 4) == 0);
    record.length = 2;
    begin_capture(2);
    call(decale)(&record, 3);
    SAME_TEXT(end_capture(), "decalage incorrect: demand\303\251: 3, disponible: 2\n");
    SAME_NUMBER(record.length, 0);
    record.length = 5;
    begin_capture(2);
    call(decale)(&record, -1);
    SAME_TEXT(end_capture(), "decalage incorrect: demand\303\251: -1, disponible: 5\n");
    SAME_NUMBER(record.length, 0);

    record = message("05 06", to_dhs);
    memset(record.data + 2, 0xA5, sizeof record.data - 2);
    record.reserved = 0x0102;
    record.route = 3;
    record.status = 4;
    copy = call(msgdup)(&record);
    HOLDS(copy != NULL && copy != &record);
    if (copy != NULL) {
        SAME_NUMBER(copy->length, 2);
        HOLDS(memcmp(copy->data, record.data, sizeof record.data) == 0);
        HOLDS(copy->reserved == 0x0102 && copy->route == 3 && copy->status == 4 && copy->direction == to_dhs);
        /* A record of its own. */
        copy->data[0] = 0xFF;
        SAME_NUMBER(record.data[0], 5);
    }
    free(copy);
    copy = call(msgdup)(NULL);
    HOLDS(copy != NULL && memcmp(copy, &zeros, sizeof zeros) == 0);
    free(copy);

    record.direction = from_dhs;
    call(print_clean_message)(out, record, NULL);
    SAME_TEXT(out, "before ");
    call(print_clean_message)(out, record, copy_of("a\n\n"));
    call(print_clean_message)(out, record, copy_of("b\n"));
    call(print_clean_message)(out, record, copy_of("\n"));
    SAME_TEXT(out, "before a\nb\n\n");
    data(useColor) = 1;
    strcpy(out, "x");
    call(print_clean_message)(out, record, copy_of("green\n\n"));
    record.direction = to_dhs;
    call(print_clean_message)(out, record, copy_of("red"));
    call(print_clean_message)(out, record, copy_of(""));
    data(useColor) = 0;
    SAME_TEXT(out, "x\033[0;32mgreen\n\033[0m\033[0;31mred\033[0m\033[0;31m\033[0m");
}

/* What a reader decoded from a line with one length byte is a heap text; nothing else is. */
static void check_readers(void) {
    const char* text;
    static const uint8_t one[] = {1, 0x2A};
    static const uint8_t none[] = {0};
    static const uint8_t two[] = {1, 0, 0x2A, 2, 0, 0x0F, 0x09};

    SAME_HEAP_TEXT((char*)call(line)("01 2a", from_dhs), "\t- version inquiry");
    SAME_TEXT(call(line)("03 01 02", from_dhs), "line too short: expected: 11, real: 8");
    SAME_TEXT(call(line)("1", from_dhs), "line: really too short");
    SAME_TEXT(call(line)(NULL, from_dhs), "line: really too short");
    SAME_TEXT(call(line)("00 01", from_dhs), "line does not start with length byte");
    SAME_TEXT(call(line)("zz", from_dhs), "line does not start with length byte");
    SAME_TEXT(call(line)("100 01", from_dhs), "line: longueur > 256");
    SAME_TEXT(call(line)("02 01 xx", from_dhs), "line1: ill formed hex value");

    SAME_TEXT(call(line_lng2)("02 00 aa bb 01 00 cc", from_dhs),
              "\t- version inquiry\n\t- ERR: message inconnu");
    SAME_TEXT(call(line_lng2)("03 00 aa", from_dhs),
              "line too short: expected: 14, real: 8, padded with 0xff\n\n\t- version inquiry");
    SAME_TEXT(call(line_lng2)("01 0", from_dhs), "line_lng2: line really too short");
    SAME_TEXT(call(line_lng2)("01 00", from_dhs), "");
    SAME_TEXT(call(line_lng2)("00 00 01", from_dhs), "line does not start with 2 length bytes");

    /* Both show, behind a short message, the bytes of an earlier one; a record of the host's has none. */
    SAME_HEAP_TEXT((char*)call(line)("04 0f 05 11 21", to_dhs), "\t- osi: pclink1 status tx_prepare, rx_rcv");
    SAME_TEXT(call(line_lng2)("02 00 0f 05", to_dhs), "\t- osi: pclink1 status tx_prepare, rx_rcv");
    SAME_HEAP_TEXT((char*)call(line)("02 0f 05", to_dhs), "\t- osi: pclink1 status tx_prepare, rx_rcv");
    SAME_HEAP_TEXT(decoded("0f 05", to_dhs), "\t- osi: pclink1 status unknown, unknown");

    SAME_HEAP_TEXT((char*)call(line_tzt)("zt 01 2a", from_dhs), "\t- version inquiry");
    SAME_TEXT(call(line_tzt)("zt 03 00 01 02 03", to_dhs), "\t- handset off hook");
    SAME_TEXT(call(line_tzt)("xx 03", to_dhs), " err: awaiting 'zt ', received 'xx '");

    SAME_HEAP_TEXT((char*)call(line_spzt)("000000S 01 2a"), "\t- version inquiry");
    SAME_HEAP_TEXT((char*)call(line_spzt)("000000R 01 01"), "\t- handset off hook");
    SAME_TEXT(call(line_spzt)("000000R 01 00 01"), "\t- handset off hook");
    SAME_TEXT(call(line_spzt)("000000X 01 2a"), "-> not in spzt format: msg[6] should be S or R");
    SAME_TEXT(call(line_spzt)("000000S 05 2a"), "-> line too short");
    SAME_TEXT(call(line_spzt_lng2)("000000S 01 00 2a"), "\t- version inquiry");
    SAME_TEXT(call(line_spzt_lng2)("000000 01 00 2a"), "-> not in spzt format: msg[6] should be S or R");

    SAME_HEAP_TEXT(call(decode_bin_lng1)(one, from_dhs), "\t- version inquiry");
    SAME_HEAP_TEXT(call(decode_bin_lng1)(none, from_dhs), "");
    SAME_TEXT(call(decode_bin_lng2)(two, from_dhs, (int)sizeof two), "\t- version inquiry\n\t- ??\n");
    SAME_TEXT(call(decode_bin_lng2)(two, from_dhs, 0), "");
    /* The bytes that the buffer does not hold read as 0. */
    SAME_TEXT(call(decode_bin_lng2)(two + 3, to_dhs, 3), "\t- osi: read memory, value= 00\n");

    /* A reader's buffer is its own: the others leave it alone. */
    text = call(line_lng2)("01 00 2b", from_dhs);
    SAME_TEXT(call(decode_bin_lng2)(two, from_dhs, 3), "\t- version inquiry\n");
    free((char*)call(line)("01 2a", from_dhs));
    SAME_TEXT(call(line_spzt)("000000S 05 2a"), "-> line too short");
    SAME_TEXT(text, "\t- are you there?");
}

void check_frame(void) {
    check_decode();
    check_switches();
    check_record_helpers();
    check_readers();
}
