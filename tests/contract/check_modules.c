/* The decoders of the option modules, and super messages with a decoder of the host's own. */

#include <stdio.h>
#include <string.h>

#include "checks.h"

static void check_decoders(void) {
    static const struct {
        const char* hex;
        const char* text;
    } rows[] = {
        {"04 2a 03 0a", "digit dialed '10'"},
        {"02 2a 8e", "version inquiry"},
        {"04 10 26 03 0b", "VTA emulation: digit dialed '#'"},
        {"02 10 0c 85", "segment message debut, reste 5 messages"},
        {"04 18 29 02", "special key status: control pushed, shift released"},
        {"02 18 48", "eak ??"},
        {"04 48 71 00", "write EEPROM response ok"},
        {"02 48 01 01", "production teststart"},
        {"04 00 2d 1e", "timer expired: resynchronization"},
        {"02 00 21 02", "change state: ???"},
        {"04 08 1f 05 00 00 02 2c 02 06",
         "anomalie in L1C:LAR_TIMEOUT= Invalid time-out etat N1= G3 activated tempo: SYNC"},
        {"02 08 3f 02", "set operating mode: S0 star"},
    };
    const char* (*const decoders[])(MessageRecord*) = {
        call(decode_z),   call(decode_z_out),   call(decode_mpc), call(decode_mpc_out),
        call(decode_eak), call(decode_eak_out), call(decode_ks),  call(decode_ks_out),
        call(decode_v24), call(decode_v24_out), call(decode_s0),  call(decode_s0_out),
    };
    enum { count = sizeof rows / sizeof rows[0] };
    const char* texts[count];
    size_t i;
    for (i = 0; i < count; ++i) {
        const MessageRecord before = message(rows[i].hex, from_dhs);
        MessageRecord record = before;
        texts[i] = decoders[i](&record);
        SAME_TEXT(texts[i], rows[i].text);
        HOLDS(memcmp(&record, &before, sizeof record) == 0);
    }
    /* Buffers of their own. */
    for (i = 0; i < count; ++i) SAME_TEXT(texts[i], rows[i].text);
    for (i = 0; i < count; ++i) SAME_TEXT(decoders[i](NULL), "");
}

static unsigned calls;

/* Says what it was given: the bytes of its record, of which the first is the one in front of the part's
 * length. */
static const char* shown(MessageRecord* record) {
    static char text[64];
    uint32_t k;
    snprintf(text, sizeof text, "%u bytes:", (unsigned)record->length);
    for (k = 0; k < record->length && k < 8; ++k) {
        snprintf(text + strlen(text), sizeof text - strlen(text), " %02x", record->data[k]);
    }
    ++calls;
    return text;
}

/* A host's decoder may ask the library, whose functions use buffers of their own. */
static const char* shown_by_library(MessageRecord* record) {
    SAME_HEAP_TEXT(the_library->decode(message("2b", from_dhs)), "\t- are you there?");
    return the_library->decode_z_out(record);
}

static const char* named_nothing(MessageRecord* record) {
    (void)record;
    return NULL;
}

static void check_super_messages(void) {
    const MessageRecord before = message("04 2a 0b 02 01 05 01 03", to_dhs);
    MessageRecord record = before;
    const char* text = call(subSuper)(&record, shown);
    SAME_TEXT(text, "super message\n\t\t- 4 bytes: 0b 02 01 05\n\t\t- 3 bytes: 05 01 03\n");
    SAME_NUMBER(calls, 2);
    HOLDS(memcmp(&record, &before, sizeof record) == 0);

    record = message("02 2a 0b 02 0e 05 01 03", from_dhs);
    SAME_TEXT(call(subSuper)(&record, call(decode_z_out)),
              "super message\n\t\t- version inquiry\n\t\t- software reset\n");
    SAME_TEXT(call(subSuper)(&record, shown_by_library),
              "super message\n\t\t- version inquiry\n\t\t- software reset\n");
    SAME_TEXT(call(decode_z_out)(&record), "super message\n\t\t- version inquiry\n\t\t- software reset\n");
    SAME_TEXT(call(subSuper)(&record, named_nothing), "super message\n\t\t- \n\t\t- \n");
    /* One part of length 0 still is one. */
    record = message("02 2a 0b 00", from_dhs);
    calls = 0;
    SAME_TEXT(call(subSuper)(&record, shown), "super message\n\t\t- 2 bytes: 0b 00\n");
    SAME_NUMBER(calls, 1);
    SAME_TEXT(call(subSuper)(NULL, shown), "");
    SAME_TEXT(call(subSuper)(&record, NULL), "");
}

void check_modules(void) {
    check_decoders();
    check_super_messages();
}
