/* A host whose exit handler still uses the library: it looks at texts that it was given, and decodes some
 * more. The handler is registered before the first call, so that it runs behind every handler of the
 * library's own. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "ztdecode.h"

static MessageRecord record;

static MessageRecord* message(const char* bytes, uint32_t length) {
    memset(&record, 0, sizeof record);
    memcpy(record.data, bytes, length);
    record.length = length;
    return &record;
}

static const char* tone_of_ip(void) { return dhs2ip(message("\023\006", 2)); }
static const char* on_hook_of_he(void) { return he2dhs(message("\002", 1)); }
static const char* super_message(void) { return decode_z_out(message("\002\052\013\001\016", 5)); }
static const char* server(void) { return dhs2cs(message("\025\002\006", 3)); }
static const char* two_length_bytes(void) { return line_lng2("01 00 2a", 0); }
static const char* one_length_byte(void) { return line("05 2a", 0); }
static const char* column(void) { return line_spzt("000000S 05 2a"); }
static const char* binary(void) { return decode_bin_lng2((const uint8_t*)"\001\000\052", 0, 3); }
static const char* version(void) { return version_logiciel("ROM", 1, 5); }
static const char* error(void) { return dec_err(7); }
static const char* block(void) { return LookUtf8(0x1F16, NULL); }
static const char* command(void) { return analyse_cmd_pbx((const uint8_t*)"\025\002\006", 3); }
static const char* plain_bytes(void) { return FROMFLEX_Convert("ZT 0x1"); }
static const char* message_of_digital_set(void) { return dhs2rn(message("\052", 1)); }
static const char* whole_message(void) {
    message("\052", 1);
    return decode(record);
}

static const struct {
    const char* (*text)(void);
    const char* expected;
    int heap;
} rows[] = {
    {tone_of_ip, "stop tone", 0},
    {on_hook_of_he, "on hook", 0},
    {super_message, "super message\n\t\t- version inquiry\n", 0},
    {server, "call server\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n", 0},
    {two_length_bytes, "\t- version inquiry", 0},
    {one_length_byte, "line too short: expected: 17, real: 5", 0},
    {column, "-> line too short", 0},
    {binary, "\t- version inquiry\n", 0},
    {version, " ROM=1.05", 0},
    {error, "07", 0},
    {block, "Greek Extended-U+1F16", 0},
    {command, "\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n", 0},
    {plain_bytes, "zt3 : R 0", 0},
    {message_of_digital_set, "version inquiry", 1},
    {whole_message, "\t- version inquiry", 1},
};
enum { count = sizeof rows / sizeof rows[0] };

static const char* kept[count];
static int failed;

static void same(const char* when, const char* got, const char* expected) {
    if (got != NULL && strcmp(got, expected) == 0) return;
    failed = 1;
    fprintf(stderr, "%s: \"%s\" instead of \"%s\"\n", when, got != NULL ? got : "(null)", expected);
}

static void use(const char* when) {
    size_t i;
    for (i = 0; i < count; ++i) {
        kept[i] = rows[i].text();
        same(when, kept[i], rows[i].expected);
        if (rows[i].heap) free((char*)kept[i]);
    }
}

static void at_exit(void) {
    size_t i;
    for (i = 0; i < count; ++i) {
        if (!rows[i].heap) same("given before the exit", kept[i], rows[i].expected);
    }
    use("decoded in the exit handler");
    vFreeApplicationBuffer();
    if (failed) _exit(1);
}

int main(void) {
    if (atexit(at_exit) != 0) return 2;
    use("decoded in main");
    return 0;
}
