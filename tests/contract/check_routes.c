/* The route decoders and the code tables. */

#include <stdlib.h>
#include <string.h>

#include "checks.h"

/* Two functions that give heap texts, and write their record's status, route and option type. */
static void check_digital(void) {
    MessageRecord record = message("1f 00 04 01 05 00 07 00 02 00", to_dhs);
    SAME_HEAP_TEXT(
        call(rn2dhs)(&record),
        "reset hard, HUB soft=1.05 selfTest: 00 type: 07 romVersion: 02 \n\t... misc: 00 dld done");
    SAME_NUMBER(record.status, 1);
    SAME_NUMBER(record.route, 9);

    /* A Z module at address 2; the upper byte of `reserved` becomes byte 4. */
    record = message("04 2a 01 00 55", to_dhs);
    record.reserved = 0x0012;
    SAME_HEAP_TEXT(call(rn2dhs)(&record), "[opt Z adr 2] off hook");
    SAME_NUMBER(record.reserved, 0x5512);
    SAME_NUMBER(record.length, 5);
    record = message("02 02 0e", from_dhs);
    SAME_HEAP_TEXT(call(dhs2rn)(&record), "[opt Z adr 2] version inquiry");

    record = message("2c", to_dhs);
    SAME_HEAP_TEXT(call(rn2dhs)(&record), "");
    SAME_NUMBER(record.status, 2);
    record = message("70", from_dhs);
    SAME_HEAP_TEXT(call(dhs2rn)(&record), "ERR: message inconnu");
    SAME_NUMBER(record.status, 2);
    record = message("", to_dhs);
    HOLDS(call(rn2dhs)(&record) == NULL);
    HOLDS(call(dhs2rn)(&record) == NULL);
    HOLDS(call(rn2dhs)(NULL) == NULL);
    HOLDS(call(dhs2rn)(NULL) == NULL);

    record = message("4d 01 f3", from_dhs);
    SAME_HEAP_TEXT(call(dhs2rn)(&record), "loudspeaker on, volume= -6.5 dB");
}

/* A message of three bytes in three segments: its bytes go to standard output with each of them. */
static void check_segments_of_digital_sets(void) {
    static const struct {
        const char* hex;
        const char* output;
        const char* text;
    } segments[] = {
        {"0c 82 00 03 2a", "2a 00 00 ", "segment message 1/3"},
        {"0c 01 01", "2a 01 00 ", "segment message 2/3"},
        {"0c 00 02", "2a 01 02 ", "segment message 3/3\n\t- version inquiry"},
    };
    size_t i;
    for (i = 0; i < 3; ++i) {
        MessageRecord record = message(segments[i].hex, from_dhs);
        char* text;
        begin_capture(1);
        text = call(dhs2rn)(&record);
        SAME_TEXT(end_capture(), segments[i].output);
        SAME_HEAP_TEXT(text, segments[i].text);
    }
}

/* Each gives a buffer of its own: all the texts still stand when the last function has been called. */
static void check_buffers_of_routes(void) {
    static const struct {
        const char* hex;
        uint32_t direction;
        uint32_t status;
        const char* text;
    } rows[] = {
        {"13 00 05 02", to_dhs, 1, "init, set-05 beta"},
        {"13 08", from_dhs, 1, "stop listen RTP"},
        {"81", to_dhs, 1, "off hook"},
        {"50 04 03", from_dhs, 1, "move window: winId=03"},
        {"14 11 01", to_dhs, 1, "from set 2\t- handset off hook"},
        {"14 10 2a", from_dhs, 1, " to set 1\t- version inquiry"},
        {"12 13 07 09", to_dhs, 1, "maintenance: harware anomaly, lien: 07 name 09"},
        {"12 13 07 09", from_dhs, 1, "maintenance: harware anomaly"},
        {"15 04 06", to_dhs, 1, "call server\nNotify\tONHOOK\n{\n\tServer\t\tCall\n}\n"},
        {"15 02 06", from_dhs, 1, "call server\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n"},
        {"16 84 07", to_dhs, 1, "presentation server\nNotify\tOFFHOOK\n{\n\tServer\t\tPresentation\n}\n"},
        {"16 82 84 00 07 37 03 41 42 43", from_dhs, 1,
         "presentation server\nSetProperty\ttextbox\tAck\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n"
         "\tlabel          \t\"ABC\"\n}\n"},
        {"18 68 69 0a 00 6a", to_dhs, 1, "hi\n"},
        {"18", from_dhs, 1, ""},
        {"0f 05 11 21", to_dhs, 77, "osi: pclink1 status tx_prepare, rx_rcv"},
        {"0f 01 03", from_dhs, 77, "osi: write memory code"},
    };
    const char* (*const decoders[])(MessageRecord*) = {
        call(ip2dhs),  call(dhs2ip),  call(he2dhs),  call(dhs2he),  call(hub2dhs), call(dhs2hub),
        call(ibs2dhs), call(dhs2ibs), call(cs2dhs),  call(dhs2cs),  call(prs2dhs), call(dhs2prs),
        call(dbg2dhs), call(dhs2dbg), call(osi2dhs), call(dhs2osi),
    };
    enum { count = sizeof rows / sizeof rows[0] };
    const char* texts[count];
    size_t i;
    for (i = 0; i < count; ++i) {
        MessageRecord record = message(rows[i].hex, rows[i].direction);
        MessageRecord expected = record;
        record.status = expected.status = 77;
        record.route = expected.route = 66;
        record.reserved = expected.reserved = 0x5566;
        texts[i] = decoders[i](&record);
        SAME_TEXT(texts[i], rows[i].text);
        /* The status is all that they write of the record. */
        expected.status = rows[i].status;
        HOLDS(memcmp(&record, &expected, sizeof record) == 0);
    }
    for (i = 0; i < count; ++i) SAME_TEXT(texts[i], rows[i].text);
    for (i = 0; i < count; ++i) SAME_TEXT(decoders[i](NULL), "");
}

static void check_unknown_messages(void) {
    MessageRecord record = message("08", to_dhs);
    SAME_TEXT(call(he2dhs)(&record), "???");
    SAME_NUMBER(record.status, 2);
    record = message("57", from_dhs);
    SAME_TEXT(call(dhs2he)(&record), "???");
    SAME_NUMBER(record.status, 2);
    record = message("14 40", to_dhs);
    SAME_TEXT(call(hub2dhs)(&record), "unknown message");
    SAME_NUMBER(record.status, 1);
    record = message("13 04", to_dhs);
    SAME_TEXT(call(ip2dhs)(&record), "unknown message");
    SAME_NUMBER(record.status, 1);
}

/* The debug messages of IP sets are the ones whose decoders trace on standard output. */
static void check_traces_of_ip(void) {
    MessageRecord record = message("13 ff 68 69", to_dhs);
    const char* text;
    data(debug) = 1;
    begin_capture(1);
    text = call(ip2dhs)(&record);
    SAME_TEXT(end_capture(),
              "longueur debug: 4 (=4)\n"
              "texte    debug: longueur: 8, texte: debug\nhi\n"
              "texte MV debug: longueur: 2, texte: hi\n");
    SAME_TEXT(text, "debug\nhi");
    begin_capture(1);
    text = call(dhs2ip)(&record);
    SAME_TEXT(end_capture(), "longueur debug: 4 (=4)\n");
    data(debug) = 0;
    SAME_TEXT(text, "debug\nhi");
}

static void check_code_tables(void) {
    const char* version;
    const char* error;
    const char* selftest;
    const char* warning;
    const char* audio;

    SAME_TEXT(call(type_poste)(49), "set-49");
    SAME_TEXT(call(type_poste)(6), "HE");
    SAME_TEXT(call(type_poste)(15), "autre");
    SAME_TEXT(call(design_poste)(6), "beta");
    SAME_TEXT(call(design_poste)(-1), "not used");
    SAME_TEXT(call(ring_cadence)(3), "continue");
    SAME_TEXT(call(ring_cadence)(8), "cadence ???");
    SAME_TEXT(call(version_logiciel)("label", 0x30, 0x39), " label=1.23.45");
    SAME_TEXT(call(version_logiciel)("label", 2, 200), " label=2.200");
    SAME_TEXT(call(dec_err)(3), "bad attribut");
    SAME_TEXT(call(dec_selftest)(32), ", self OK");
    SAME_TEXT(call(dec_selftest)(0), "");
    SAME_TEXT(call(dec_warn)(64), "unmap");
    SAME_TEXT(call(audio_config)(message("49 06 03 04 08 10 20", from_dhs)),
              "audio configuration: device configuration:\n"
              "\t\thandset   device:  internal rj9\n"
              "\t\theadset   device:  jack\n"
              "\t\tloudspeak device:  bluetooth\n"
              "\t\tannounce  device:  usb\n"
              "\t\thandsfree device:  ???");
    SAME_TEXT(call(audio_config)(message("49 00 00 01", from_dhs)), "audio configuration: coding= mu law");

    /* Buffers of their own. */
    version = call(version_logiciel)("ROM", 1, 5);
    error = call(dec_err)(7);
    selftest = call(dec_selftest)(3);
    warning = call(dec_warn)(1);
    audio = call(audio_config)(message("49 09", from_dhs));
    SAME_TEXT(version, " ROM=1.05");
    SAME_TEXT(error, "07");
    SAME_TEXT(selftest, " disp BAD rom BAD");
    SAME_TEXT(warning, "01");
    SAME_TEXT(audio, "audio configuration:  09");

    SAME_TEXT(call(download)(message("00", from_dhs)), "download");
    SAME_HEAP_TEXT(call(apId)(250), " communication assistant");
    SAME_HEAP_TEXT(call(apId)(5), " 05");
}

void check_routes(void) {
    check_digital();
    check_segments_of_digital_sets();
    check_buffers_of_routes();
    check_unknown_messages();
    check_traces_of_ip();
    check_code_tables();
}
