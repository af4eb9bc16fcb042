/* A host that decodes for a long time: soak FOLDER MESSAGES. Messages of every link and of both directions go
 * through every way in: those of the traces in FOLDER, altered, and others made for their link. A tenth of
 * MESSAGES is made, always the same ones, and goes through ten times: twice for every buffer to find its size
 * (some texts are longer the second time, for what the session remembers of the first), and from then on the
 * memory that the process holds must not grow.
 *
 * A message of the object protocol that names an unknown class ends the process, so none is made: its two
 * type bytes stand nowhere in a message but at the front of one that is known to be sound. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "traces.h"

static struct traced* traced;
static size_t traced_count;

/* xorshift64* */
static const uint64_t seed = 0x9E3779B97F4A7C15u;
static uint64_t state;

static uint32_t below(uint32_t limit) {
    state ^= state >> 12;
    state ^= state << 25;
    state ^= state >> 27;
    return (uint32_t)((state * 0x2545F4914F6CDD1Du) >> 33) % limit;
}

static uint8_t any_byte(void) { return (uint8_t)below(256); }

static int is_object_type(uint8_t byte) { return (byte & 0x7F) == 21 || (byte & 0x7F) == 22; }

static MessageRecord record;

/* Leaves nothing in it that could begin an object-protocol message. */
static void make_harmless(MessageRecord* message) {
    uint32_t k;
    for (k = 0; k < message->length; ++k) {
        if (is_object_type(message->data[k])) message->data[k] ^= 0x10;
    }
}

static void take_traced(void) { record = traced[below((uint32_t)traced_count)].record; }

static void alter(void) {
    uint32_t changes = below(4);
    if (below(4) == 0) record.length = below(record.length) + 1;
    if (below(8) == 0) {
        const uint32_t more = below(12);
        uint32_t k;
        for (k = 0; k < more; ++k) record.data[record.length++] = any_byte();
    }
    for (; changes > 0; --changes) record.data[below(record.length)] = any_byte();
    if (below(16) == 0) record.direction ^= 1;
}

/* A message made for a link: its type byte, one of few second bytes, then anything. */
static void make_for_link(void) {
    static const uint8_t types[] = {0x01, 0x02, 0x04, 0x05, 0x06, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x12, 0x13,
                                    0x14, 0x15, 0x16, 0x17, 0x18, 0x1F, 0x27, 0x2F, 0x49, 0x4F, 0x50};
    const uint32_t length = below(below(200) == 0 ? ZTDECODE_CAPACITY : 48) + 1;
    uint32_t k;
    memset(&record, 0, sizeof record);
    record.length = length;
    record.direction = below(2);
    for (k = 0; k < length; ++k) record.data[k] = any_byte();
    record.data[0] = (uint8_t)(types[below(sizeof types)] | (below(8) == 0 ? 0x80 : 0));
    if (length > 1 && below(2) == 0) record.data[1] = (uint8_t)below(32);
    if (is_object_type(record.data[0])) {
        if (length > 1) record.data[1] = (uint8_t)(record.direction == 0 ? below(8) : 4);
        if (length > 4 && below(4) == 0) record.data[3] = 0;
        /* Texts of several bytes a character, so that characters are named. */
        for (k = 8; k + 1 < length; k += 2) {
            record.data[k] = (uint8_t)(0xC3 + below(0x20));
            record.data[k + 1] = (uint8_t)(0x80 + below(0x40));
        }
    }
}

/* Parts of a super message, of one or two length bytes; sound object-protocol messages may be among them. */
static void pack(void) {
    const uint32_t width = below(2) + 1;
    MessageRecord whole;
    uint32_t parts = below(4) + 1;
    memset(&whole, 0, sizeof whole);
    whole.direction = below(2);
    whole.data[0] = width == 1 ? 11 : 23;
    whole.length = 1;
    for (; parts > 0; --parts) {
        take_traced();
        if (record.length > 255 || record.direction != whole.direction) continue;
        if (!is_object_type(record.data[0])) make_harmless(&record);
        whole.data[whole.length++] = (uint8_t)record.length;
        if (width == 2) whole.data[whole.length++] = 0;
        memcpy(whole.data + whole.length, record.data, record.length);
        whole.length += record.length;
    }
    record = whole;
}

static void carry_in_hub(void) {
    take_traced();
    if (record.length > 5000) return;
    if (!is_object_type(record.data[0])) make_harmless(&record);
    memmove(record.data + 2, record.data, record.length);
    record.data[0] = 0x14;
    record.data[1] = (uint8_t)(0x10 + below(3));
    record.length += 2;
}

static void make_message(void) {
    switch (below(8)) {
        case 0:
            take_traced();
            break;
        case 1:
            pack();
            return;
        case 2:
            carry_in_hub();
            return;
        case 3:
        case 4:
            make_for_link();
            break;
        default:
            take_traced();
            alter();
            break;
    }
    if (may_end_process(&record)) record.data[0] = 0x13;
    if (!is_object_type(record.data[0])) make_harmless(&record);
}

static uint8_t bytes[ZTDECODE_CAPACITY + 2];
static char text_line[3 * (ZTDECODE_CAPACITY + 2) + 16];

static int binary(uint32_t width) {
    bytes[0] = (uint8_t)(record.length & 0xFF);
    if (width == 2) bytes[1] = (uint8_t)(record.length >> 8);
    memcpy(bytes + width, record.data, record.length);
    return (int)(record.length + width);
}

static void write_line(const char* front, uint32_t width) {
    static const char digits[] = "0123456789abcdef";
    const int count = binary(width);
    char* at = text_line + sprintf(text_line, "%s", front);
    int k;
    for (k = 0; k < count; ++k) {
        *at++ = digits[bytes[k] >> 4];
        *at++ = digits[bytes[k] & 15];
        *at++ = ' ';
    }
    *at = '\0';
}

static void by_readers(void) {
    const int short_enough = record.length < 256;
    switch (below(7)) {
        case 0:
            if (short_enough && record.length > 0) {
                write_line("", 1);
                free((char*)line(text_line, (int)record.direction));
            }
            break;
        case 1:
            write_line("", 2);
            line_lng2(text_line, (int)record.direction);
            break;
        case 2:
            write_line("zt ", 2);
            line_tzt(text_line, (int)record.direction);
            break;
        case 3:
            write_line(record.direction != 0 ? "123456R " : "123456S ", 2);
            line_spzt_lng2(text_line);
            break;
        case 4:
            line_spzt("123456X 01 02");
            line("05 01", 1);
            break;
        case 5:
            if (short_enough) {
                binary(1);
                free(decode_bin_lng1(bytes, (int)record.direction));
            }
            break;
        default:
            decode_bin_lng2(bytes, (int)record.direction, binary(2));
            break;
    }
}

static void by_route_decoders(void) {
    static const char* (*const from_system[])(MessageRecord*) = {dhs2ip,  dhs2he,  dhs2hub,
                                                                 dhs2ibs, dhs2dbg, dhs2osi};
    static const char* (*const to_system[])(MessageRecord*) = {ip2dhs,  he2dhs,  hub2dhs,
                                                               ibs2dhs, dbg2dhs, osi2dhs};
    static const char* (*const modules[])(MessageRecord*) = {
        decode_z,  decode_z_out,  decode_mpc, decode_mpc_out, decode_eak, decode_eak_out,
        decode_ks, decode_ks_out, decode_v24, decode_v24_out, decode_s0,  decode_s0_out};
    if (is_object_type(record.data[0])) {
        (record.direction != 0 ? prs2dhs : dhs2cs)(&record);
        return;
    }
    switch (below(4)) {
        case 0:
            free(record.direction != 0 ? rn2dhs(&record) : dhs2rn(&record));
            break;
        case 1:
            (record.direction != 0 ? to_system : from_system)[below(6)](&record);
            break;
        case 2:
            modules[below(12)](&record);
            break;
        default:
            subSuper(&record, modules[below(12)]);
            break;
    }
}

/* A series of segments that carries a sound message of the object protocol. */
static void by_segments(void) {
    uint8_t frame[64];
    const uint32_t payload = 2 + below(16);
    const uint32_t segments = (record.length + 2 + payload - 1) / payload;
    uint32_t at = 0;
    uint32_t k;
    if (!is_object_type(record.data[0]) || record.length < 2 || segments < 2 || segments > 100) return;
    for (k = 0; k < segments; ++k) {
        memset(frame, 0, sizeof frame);
        frame[0] = (uint8_t)(payload + 2);
        frame[2] = 0x0C;
        frame[3] = (uint8_t)((segments - 1 - k) | (k == 0 ? 0x80 : 0));
        memcpy(frame + 4, record.data + at, at + payload <= record.length ? payload : record.length - at);
        if (k == 0) {
            frame[4] = record.data[1];
            frame[5] = record.data[0];
        }
        at += payload;
        if (at > record.length) at = record.length;
        analyse_cmd(frame, (int)payload + 4, record.direction != 0 ? 'R' : 'S');
    }
}

static void by_object_functions(void) {
    if (is_object_type(record.data[0])) {
        switch (below(3)) {
            case 0:
                (record.direction != 0 ? analyse_cmd_term : analyse_cmd_pbx)(record.data, (int)record.length);
                break;
            case 1:
                by_segments();
                break;
            default:
                printUTF8str(record.data, (int)record.length, (int)below(2));
                vDecodeTLV(record.data[0], 1, (int)record.length, record.data, Tab_listbox);
                vDsipTLV("soak", record.data, (int)record.length);
                app_idx = 0;
                break;
        }
        return;
    }
    /* A frame of the sets' messages; its third byte, the first one's type, is no segment's. */
    if (record.data[0] != 0x0C) analyse_cmd(bytes, binary(2), record.direction != 0 ? 'R' : 'S');
    LookUtf8(below(0x11000), tab_unicod);
    p("%u", (unsigned)record.length);
    if (below(64) == 0) ClassProp_Help();
    if (below(1024) == 0) vFreeApplicationBuffer();
}

/* Decoded without its first bytes, and appended to another text. */
static void by_copy(void) {
    MessageRecord* const copy = msgdup(&record);
    char* text;
    char* out;
    decale(copy, (int)below(copy->length));
    make_harmless(copy);
    text = decode(*copy);
    out = malloc(strlen(text) + 12);
    if (out == NULL) exit(2);
    out[0] = '\0';
    print_clean_message(out, *copy, copy->length != 0 ? text : NULL);
    free(out);
    free(copy);
}

static void by_helpers(void) {
    char key[] = "a Q";
    by_copy();
    free(apId((int)below(256)));
    version_logiciel("soft", below(256), below(256));
    dec_err(below(16));
    dec_selftest((int)below(64));
    dec_warn(below(128));
    audio_config(record);
    write_line("", 1);
    convert_line(text_line);
    write_line("ZT 0x", 1);
    FROMFLEX_Convert(text_line);
    text_line[100] = '\0';
    TOFLEX_Convert(text_line);
    memcpy(text_line, "id", 2);
    TOFLEX_Convert(text_line);
    Convert_kb_To_key(key);
}

static void decode_one(void) {
    useColor = below(8) == 0;
    debug = below(64) == 0;
    make_message();
    switch (below(8)) {
        case 0:
        case 1:
            by_readers();
            break;
        case 2:
            by_route_decoders();
            break;
        case 3:
            by_object_functions();
            break;
        case 4:
            by_helpers();
            break;
        default:
            if (record.length != 0) free(decode(record));
            break;
    }
}

static long resident_kilobytes(void) {
    long pages = 0;
    long resident = 0;
    FILE* const file = fopen("/proc/self/statm", "r");
    if (file == NULL || fscanf(file, "%ld %ld", &pages, &resident) != 2) exit(2);
    fclose(file);
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

/* Where this program itself writes: the two standard streams are full of what the library has to say. */
static FILE* report;
static long done;
static int ready;

static void ended(void) {
    uint32_t k;
    if (ready) return;
    fprintf(report, "ended at message %ld, direction %u:", done, (unsigned)record.direction);
    for (k = 0; k < record.length; ++k) fprintf(report, " %02x", record.data[k]);
    fprintf(report, "\n");
    fflush(report);
}

int main(int arguments, char** argument) {
    enum { allowed = 64 }; /* kilobytes */
    long messages;
    long begin = 0;
    long end = 0;

    if (arguments != 3 || (messages = atol(argument[2])) < 10) return 2;
    traced = read_traces(argument[1], &traced_count);
    report = fdopen(dup(STDERR_FILENO), "w");
    if (report == NULL || freopen("/dev/null", "w", stdout) == NULL ||
        freopen("/dev/null", "w", stderr) == NULL) {
        return 2;
    }
    atexit(ended);
    for (done = 1; done <= messages; ++done) {
        if (done % (messages / 10) == 1) state = seed;
        decode_one();
        if (done % (messages / 10) != 0) continue;
        end = resident_kilobytes();
        if (done / (messages / 10) <= 2) begin = end;
        fprintf(report, "%ld messages, %ld kB resident\n", done, end);
        fflush(report);
    }
    ready = 1;
    free_traces(traced, traced_count);
    return end - begin <= allowed ? 0 : 1;
}
