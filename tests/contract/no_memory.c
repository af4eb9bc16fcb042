/* A host that runs out of memory: texts are empty, or null where they would be heap blocks, two functions end
 * the process with status 1, and everything works again once there is memory. Each case is the first call in
 * a process of its own. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ztdecode.h"

static MessageRecord record;

static MessageRecord* message(const char* bytes, uint32_t length) {
    memset(&record, 0, sizeof record);
    memcpy(record.data, bytes, length);
    record.length = length;
    return &record;
}

/* The stack has to have grown as far as it ever will before the limit is set. */
static void grow_stack(void) {
    volatile char deep[400000];
    size_t i;
    for (i = 0; i < sizeof deep; i += 1024) deep[i] = 1;
}

static void* hoard;

static void use_memory_up(void) {
    struct rlimit limit;
    unsigned long pages = 0;
    size_t size;
    FILE* const file = fopen("/proc/self/statm", "r");
    if (file == NULL || fscanf(file, "%lu", &pages) != 1) _exit(90);
    fclose(file);
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = pages * (unsigned long)sysconf(_SC_PAGESIZE);
    if (setrlimit(RLIMIT_AS, &limit) != 0) _exit(91);
    for (size = 1 << 20; size >= 16; size /= 2) {
        void** block;
        while ((block = malloc(size)) != NULL) {
            *block = hoard;
            hoard = block;
        }
    }
}

static void give_memory_back(void) {
    struct rlimit limit;
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_AS, &limit);
    while (hoard != NULL) {
        void* const next = *(void**)hoard;
        free(hoard);
        hoard = next;
    }
}

static int is(const char* got, const char* expected) { return got != NULL && strcmp(got, expected) == 0; }

static int named_of_module(void) {
    return is(subSuper(message("\002\052\013\001\016", 5), decode_z_out), "");
}
static int whole_message(void) {
    message("\001", 1);
    return decode(record) == NULL;
}
static int named_of_digital_set(void) { return rn2dhs(message("\001", 1)) == NULL; }
static int named_of_digital_command(void) { return dhs2rn(message("\052", 1)) == NULL; }
static int named_of_ip(void) { return is(ip2dhs(message("\023\001\000", 3)), ""); }
static int named_of_server(void) { return is(dhs2cs(message("\025\002\006", 3)), ""); }
static int one_length_byte(void) { return is(line("01 2a", 0), ""); }
static int two_length_bytes(void) { return is(line_lng2("01 00 2a", 0), "line_lng2: malloc output error"); }
static int refused(void) { return is(line_spzt("000000S 05 2a"), ""); }
static int binary(void) { return decode_bin_lng1((const uint8_t*)"\001\052", 0) == NULL; }
static int binaries(void) { return is(decode_bin_lng2((const uint8_t*)"\001\000\052", 0, 3), ""); }
static int application(void) { return apId(3) == NULL; }
static int constant(void) { return is(type_poste(49), "set-49") && is(ring_cadence(3), "continue"); }
static int version(void) { return is(version_logiciel("ROM", 1, 5), ""); }
static int error(void) { return is(dec_err(1), ""); }
static int audio(void) { return inListAudioOpcodes(1, 1) == 1; }
static int character(void) { return is(LookUtf8(0x1F16, NULL), ""); }
static int glyph(void) { return is(LookUtf8(0xE110, tab_unicod), "Ok"); }
static int class_name(void) { return is(Lclass(6, Tab_Classes_Opcodes), "screen"); }
static int help(void) { return ClassProp_Help() == 0 && is(str_help, "") && hlp_idx == 0; }
static int item(void) { return p("%d", 1) == NULL && app_buf == NULL && app_idx == 0; }
static int command(void) { return is(analyse_cmd_pbx((const uint8_t*)"\025\002\006", 3), ""); }
static int frame(void) { return analyse_cmd((const uint8_t*)"\001\000\052", 3, 'S') == 1 && app_buf == NULL; }
static int value(void) {
    vDecodeTLV(0x28, 0, 1, (const uint8_t*)"\001", Tab_screen);
    vPutf8char('x');
    vFreeApplicationBuffer();
    return app_idx == 0;
}
static int segment(void) { return boCatchSegment((const uint8_t*)"\006\000\014\201\002\026\006\025") == 0; }
static int nothing_gathered(void) {
    vSaveLastReconstructedCmd();
    vFreeReconstructedCmd();
    vFreeLastReconstructedCmd();
    return 1;
}
static int numbers(void) {
    convert_line("01 02");
    return nb_vals == 2 && in_buf[1] == 2;
}
static int to_flex(void) { return is(TOFLEX_Convert("id abcdefghijklmnopqrstuvwxyz\n"), ""); }
static int from_flex(void) { return is(FROMFLEX_Convert("ZT 0x1 0x2 0x3 0x4 0x5 0x6 0x7"), ""); }
static int copied(void) {
    msgdup(message("\001", 1));
    return 0;
}
static int old_segment(void) {
    bo_OLD_CatchSegment((const uint8_t*)"\006\000\014\201\026\002\006\025");
    return 0;
}

static const struct {
    const char* name;
    int (*holds)(void);
    int status; /* of the process; 0: it goes on */
    const char* error;
} cases[] = {
    {"subSuper", named_of_module, 0, ""},
    {"decode", whole_message, 0, ""},
    {"rn2dhs", named_of_digital_set, 0, ""},
    {"dhs2rn", named_of_digital_command, 0, ""},
    {"ip2dhs", named_of_ip, 0, ""},
    {"dhs2cs", named_of_server, 0, ""},
    {"line", one_length_byte, 0, ""},
    {"line_lng2", two_length_bytes, 0, ""},
    {"line_spzt", refused, 0, ""},
    {"decode_bin_lng1", binary, 0, ""},
    {"decode_bin_lng2", binaries, 0, ""},
    {"apId", application, 0, ""},
    {"type_poste", constant, 0, ""},
    {"version_logiciel", version, 0, ""},
    {"dec_err", error, 0, ""},
    {"inListAudioOpcodes", audio, 0, ""},
    {"LookUtf8", character, 0, ""},
    {"LookUtf8 of a glyph", glyph, 0, ""},
    {"Lclass", class_name, 0, ""},
    {"ClassProp_Help", help, 0, ""},
    {"p", item, 0, ""},
    {"analyse_cmd_pbx", command, 0, ""},
    {"analyse_cmd", frame, 0, ""},
    {"vDecodeTLV", value, 0, ""},
    {"boCatchSegment", segment, 0, ""},
    {"vSaveLastReconstructedCmd", nothing_gathered, 0, ""},
    {"convert_line", numbers, 0, ""},
    {"TOFLEX_Convert", to_flex, 0, ""},
    {"FROMFLEX_Convert", from_flex, 0, ""},
    {"msgdup", copied, 1, "memory exhausted\n"},
    {"bo_OLD_CatchSegment", old_segment, 1, ""},
};

static void run(int (*holds)(void)) {
    char* text;
    grow_stack();
    use_memory_up();
    if (!holds()) _exit(92);
    give_memory_back();
    message("\052", 1);
    text = decode(record);
    if (!is(text, "\t- version inquiry")) _exit(93);
    free(text);
    if (!is(dhs2ip(message("\023\006", 2)), "stop tone")) _exit(94);
    if (!is(analyse_cmd_pbx((const uint8_t*)"\025\002\006", 3),
            "\nSetProperty\tscreen\n{\n\tServer\t\tCall\n}\n")) {
        _exit(95);
    }
    if (!is(version_logiciel("ROM", 1, 5), " ROM=1.05")) _exit(96);
    _exit(0);
}

int main(void) {
    size_t i;
    int failures = 0;
    for (i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
        int error[2];
        int status = 0;
        char text[256];
        size_t size = 0;
        ssize_t got;
        pid_t child;
        if (pipe(error) != 0) return 2;
        child = fork();
        if (child < 0) return 2;
        if (child == 0) {
            dup2(error[1], STDERR_FILENO);
            run(cases[i].holds);
        }
        close(error[1]);
        while (size + 1 < sizeof text && (got = read(error[0], text + size, sizeof text - 1 - size)) > 0) {
            size += (size_t)got;
        }
        text[size] = '\0';
        close(error[0]);
        waitpid(child, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != cases[i].status ||
            strcmp(text, cases[i].error) != 0) {
            ++failures;
            fprintf(stderr, "%s without memory: wait status %d, \"%s\" on standard error\n", cases[i].name,
                    status, text);
        }
    }
    return failures == 0 ? 0 : 1;
}
