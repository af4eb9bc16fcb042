/* A host for which the n-th allocation of one call fails, for every n of every call of a trace that reaches
 * all that the library remembers. The call gives its text, or nothing; then all later texts are as they would
 * be if it had not been made. Nothing is lost of the memory, and the process goes on. Each trial is a
 * process. */

#define _GNU_SOURCE
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "failing_memory.h"
#include "ztdecode.h"

enum { longest_text = 16384, most_bytes = 128 };

static MessageRecord record;

static uint32_t bytes_of(const char* hex, uint8_t* bytes) {
    uint32_t n = 0;
    unsigned byte;
    int used;
    while (sscanf(hex, "%2x%n", &byte, &used) == 1) {
        bytes[n++] = (uint8_t)byte;
        hex += used;
    }
    return n;
}

static MessageRecord* message(const char* hex, uint32_t direction) {
    memset(&record, 0, sizeof record);
    record.length = bytes_of(hex, record.data);
    record.direction = direction;
    return &record;
}

static void show(char* text, const char* result) {
    size_t length;
    if (result == NULL) result = "(null)";
    length = strlen(result);
    if (length >= longest_text) length = longest_text - 1;
    memcpy(text, result, length);
    text[length] = '\0';
}

static void show_heap(char* text, char* result) {
    show(text, result);
    free(result);
}

/* What a call appends to the application buffer, which begins anew with it. */
static void begin_application(void) {
    app_idx = 0;
    if (app_buf != NULL) *app_buf = '\0';
}

static void show_application(char* text) { show(text, app_buf != NULL ? app_buf : ""); }

static void to_system(const char* hex, char* text) { show_heap(text, decode(*message(hex, 1))); }
static void from_system(const char* hex, char* text) { show_heap(text, decode(*message(hex, 0))); }
/* The record is as it was when the call has no text. */
static void set_to_system(const char* hex, char* text) {
    char* const result = rn2dhs(message(hex, 1));
    if (result == NULL && record.status != 0) {
        show(text, "the record has a status");
        return;
    }
    show_heap(text, result);
}
static void set_from_system(const char* hex, char* text) { show_heap(text, dhs2rn(message(hex, 0))); }
static void ip_from_system(const char* hex, char* text) { show(text, dhs2ip(message(hex, 0))); }
static void he_from_system(const char* hex, char* text) { show(text, dhs2he(message(hex, 0))); }
static void audio(const char* hex, char* text) { show(text, audio_config(*message(hex, 0))); }
static void module(const char* hex, char* text) { show(text, decode_s0(message(hex, 1))); }
static void split(const char* hex, char* text) { show(text, subSuper(message(hex, 0), decode_z_out)); }
/* `line` gives an empty text without memory, which is not a heap block as its others are. */
static void read_line(const char* hex, char* text) {
    char* const result = (char*)(size_t)line(hex, 0);
    show(text, result);
    if (result != NULL && *result != '\0') free(result);
}
static void read_tagged_line(const char* hex, char* text) { show(text, line_tzt(hex, 0)); }
static void read_line_lng2(const char* hex, char* text) { show(text, line_lng2(hex, 0)); }
static void read_line_spzt_lng2(const char* hex, char* text) { show(text, line_spzt_lng2(hex)); }
static void binary(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    show(text, decode_bin_lng2(bytes, 1, (int)n));
}
static void command(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    show(text, analyse_cmd_pbx(bytes, (int)n));
}
static void event(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    show(text, analyse_cmd_term(bytes, (int)n));
}
static void frame(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    begin_application();
    boDisplayResult = 0;
    analyse_cmd(bytes, (int)n, 'R');
    show_application(text);
    if (boDisplayResult != 0 && *text == '\0') show(text, "a series without its text");
}
static void dump_line(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    begin_application();
    vDsipTLV("banner", bytes, (int)n);
    show_application(text);
}
static void property(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    begin_application();
    vDecodeTLV(0x37, 0, (int)n, bytes, Tab_listbox);
    show_application(text);
}
static void event_body(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    begin_application();
    vDecodeEvent(0x94, bytes, (int)n);
    show_application(text);
}
static void segment(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    bytes_of(hex, bytes);
    show(text, boCatchSegment(bytes) != 0 ? "whole" : "");
}
static void forget_series(const char* unused, char* text) {
    (void)unused;
    vFreeReconstructedCmd();
    show(text, "forgotten");
}
static void characters(const char* hex, char* text) {
    uint8_t bytes[most_bytes];
    const uint32_t n = bytes_of(hex, bytes);
    begin_application();
    printUTF8str(bytes, (int)n, 0);
    show_application(text);
}
static void character(const char* hex, char* text) {
    show(text, LookUtf8((uint32_t)strtoul(hex, NULL, 16), NULL));
}
static void to_flex(const char* line_text, char* text) { show(text, TOFLEX_Convert(line_text)); }
static void from_flex(const char* line_text, char* text) { show(text, FROMFLEX_Convert(line_text)); }
static void help(const char* unused, char* text) {
    (void)unused;
    ClassProp_Help();
    show(text, str_help);
}

static const struct {
    void (*make)(const char* argument, char* text);
    const char* argument;
} calls[] = {
    /* module types, and what commands make of them */
    {to_system, "04 2d 01"},
    {from_system, "02 05 24"},
    {to_system, "1f 00 00 02 15 20 31 02 01 0a 01 01 05 00 c8"},
    {from_system, "02 05 24"},
    {to_system, "04 2d 9f 02"},
    {from_system, "02 05 24"},
    /* segments, plain and carried, and what stays of a longer message */
    {from_system, "0c 81 00 04 27 01 02 41 42"},
    {from_system, "0b 05 0c 82 00 03 33 02 05 2a"},
    {set_from_system, "0c 01 01"},
    {from_system, "0c 00 99"},
    {from_system, "0c 80 00 08 0c 80 00 03 14 10 2a"},
    {from_system, "0c 00"},
    /* S0 totals, both ways */
    {to_system, "04 0e 0c 82 00 0f 42 00 40 08 01 01 05"},
    {module, "04 0e 0c 01 04 03 80 90"},
    {from_system, "02 06 0c 81 00 0a 4b 00 40 08 01 81 07"},
    {from_system, "02 06 0c 00 18 01 89"},
    {set_to_system, "04 0e 0c 00 a3 18 01 83"},
    /* device lists */
    {from_system, "49 06 01 02 01 01 01"},
    {audio, "49 06 00 1f 00 e0 00"},
    {from_system, "49 06 00 00 00 00 00"},
    /* record items */
    {from_system, "13 0e 00 01 01 04 00 01 04 0a 00 00 07"},
    {ip_from_system, "13 0e 04 00"},
    {ip_from_system, "13 0e 00 01 02"},
    {from_system, "13 0e 04 00"},
    /* window commands that append */
    {from_system, "05 01 00 50 04 02 05"},
    {from_system, "05 01 00 50 08"},
    {he_from_system, "50 02 02 41"},
    {from_system, "05 01 00 50 09"},
    {from_system, "05 01 00 50 08"},
    /* classes, and answers in the properties of the last one */
    {from_system, "15 02 06 28 01 05"},
    {to_system, "15 04 94 80 00 28 01 05"},
    {command, "16 02 84 00 07 37 03 41 42 43"},
    {event, "16 04 94 80 00 37 02 41 42"},
    {frame, "05 00 15 04 94 80 00 37 01 41"},
    /* segments of the object protocol */
    {frame, "08 00 0c 81 04 16 94 80 00 37"},
    {frame, "06 00 0c 00 02 43 44 45"},
    {segment, "08 00 0c 81 04 16 94 80 00 37"},
    {segment, "06 00 0c 00 02 43 44 45"},
    {frame, "06 00 0c 82 04 16 94 80"},
    {forget_series, ""},
    {frame, "06 00 0c 00 02 43 44 45"},
    {frame, "01 00 2a 03 00 0f 05 01"},
    {dump_line, "03 00 2a 01 02"},
    {property, "41 42 43"},
    {event_body, "37 02 41 42"},
    /* names of characters */
    {characters, "41 c3 a9 e1 bc 96 ee 84 90"},
    {character, "00e9"},
    {character, "1f16"},
    {command, "16 02 84 00 07 37 05 c3 a9 e1 bc 96"},
    {help, ""},
    /* super messages of modules */
    {split, "02 2a 0b 01 0e 02 29 01"},
    {to_system, "04 11 0b 02 26 22 01 20 04 26 04 2d 01"},
    {from_system, "02 05 0b 02 29 01 02 4a 00 01 25"},
    /* readers: bytes of earlier lines show behind a shorter one */
    {read_line, "05 27 01 02 41 42"},
    {read_line, "02 33 02"},
    {read_tagged_line, "xx"},
    {read_line, "01 33"},
    {read_line_lng2, "06 00 27 01 03 43 44 45"},
    {read_line_lng2, "01 00 33 01 00 2a"},
    {read_line, "01 27"},
    {read_line_spzt_lng2, "000001S 01 00 27"},
    {binary, "01 00 01 03 00 04 2d 01"},
    /* conversions keep what an earlier line left */
    {to_flex, "id abcdefghijklmnopqrstuvwxyz\n"},
    {to_flex, "zt 12 0\n"},
    {from_flex, "ZT 0x1 0x2 0x3 0x4 0x5 0x6 0x7"},
    {from_flex, "ZT 0x12"},
    /* a message that says nothing of its own */
    {from_system, "2a"},
};

enum { number_of_calls = sizeof calls / sizeof calls[0] };

/* What a process tells of its run. */
struct run {
    char texts[number_of_calls][longest_text];
    long blocks;
    int failed; /* an allocation did */
};

/* Makes all calls but `without`; the n-th allocation of the call `failing` fails. */
static void make_calls(struct run* run, int without, int failing, long n) {
    int i;
    for (i = 0; i < number_of_calls; ++i) {
        if (i == without) continue;
        if (i == failing) allocations_left = n;
        calls[i].make(calls[i].argument, run->texts[i]);
        if (i == failing) run->failed = allocations_left < 0;
        allocations_left = -1;
    }
    run->blocks = blocks;
}

/* Whether the process came to its end. */
static int runs(struct run* run, int without, int failing, long n) {
    int status = 0;
    const pid_t child = fork();
    if (child < 0) return 0;
    if (child == 0) {
        dup2(STDOUT_FILENO, STDERR_FILENO); /* complaints about lengths */
        make_calls(run, without, failing, n);
        _exit(0);
    }
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

static struct run* shared_run(void) {
    void* const room =
        mmap(NULL, sizeof(struct run), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) exit(2);
    return room;
}

static int is_nothing(const char* text) {
    return *text == '\0' || strcmp(text, "(null)") == 0 ||
           strcmp(text, "line_lng2: malloc output error") == 0;
}

static int failures;

static void fail(int call, long n, const char* what, const char* got, const char* expected) {
    ++failures;
    fprintf(stderr, "call %d (%s) without allocation %ld: %s\n  \"%s\"\n  \"%s\"\n", call,
            calls[call].argument, n, what, got, expected);
}

/* The first later call whose text is another one; number_of_calls when there is none. */
static int first_difference(const struct run* trial, const struct run* expected, int call) {
    int i = call + 1;
    while (i < number_of_calls && strcmp(trial->texts[i], expected->texts[i]) == 0) ++i;
    return i;
}

/* Whether there was an allocation of that number. A call that says nothing does not tell whether it was made.
 */
static int tried(int call, long n, const struct run* whole, const struct run* without) {
    static struct run* trial;
    const char* text;
    int i;
    if (trial == NULL) trial = shared_run();
    memset(trial, 0, sizeof *trial);
    if (!runs(trial, -1, call, n)) {
        fail(call, n, "the process ended", "", "");
        return 0;
    }
    if (!trial->failed) return 0;
    text = trial->texts[call];
    if (strcmp(text, whole->texts[call]) != 0 && !is_nothing(text)) {
        fail(call, n, "neither its text nor nothing", text, whole->texts[call]);
    }
    i = first_difference(trial, is_nothing(text) ? without : whole, call);
    if (i < number_of_calls && is_nothing(whole->texts[call])) i = first_difference(trial, whole, call);
    if (i < number_of_calls) {
        fail(call, n, calls[i].argument, trial->texts[i], (is_nothing(text) ? without : whole)->texts[i]);
    }
    if (trial->blocks > whole->blocks) fail(call, n, "memory stays behind", "", "");
    return 1;
}

int main(void) {
    struct run* const whole = shared_run();
    struct run* const without = shared_run();
    long trials = 0;
    int call;
    if (freopen("/dev/null", "w", stdout) == NULL) return 2;
    puts("the stream has its buffer now");
    if (!runs(whole, -1, -1, 0)) return 2;
    for (call = 0; call < number_of_calls; ++call) {
        long n = 0;
        memset(without, 0, sizeof *without);
        if (!runs(without, call, -1, 0)) return 2;
        while (n < 1000 && tried(call, n, whole, without)) ++n;
        trials += n;
    }
    fprintf(stderr, "%ld allocations failed\n", trials);
    return failures == 0 && trials > number_of_calls ? 0 : 1;
}
