/* A host without memory for a while in the middle of a frame: analyse_cmd leaves the application buffer as it
 * was, or with the whole text of the frame. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ztdecode.h"

static long allocations_left = -1; /* before one fails; below 0: none does */

static int fails(void) { return allocations_left >= 0 && allocations_left-- == 0; }

void* malloc(size_t size) {
    static void* (*next)(size_t);
    if (next == NULL) *(void**)&next = dlsym(RTLD_NEXT, "malloc");
    return fails() ? NULL : next(size);
}

void* realloc(void* block, size_t size) {
    static void* (*next)(void*, size_t);
    if (next == NULL) *(void**)&next = dlsym(RTLD_NEXT, "realloc");
    return fails() ? NULL : next(block, size);
}

struct frame {
    const char* bytes;
    int length;
    int direction;
    const char* whole;
};

static const struct frame frames[] = {
    {"\001\000\052\003\000\017\005\001", 8, 'S',
     "before\n//|||||||| ZT PBX->TERMINAL   OP:2A   LG:00 01   VALUE: 03 00 0F 05 01 "
     "\nPbx_ZT_message\n{\n\t- version inquiry\n\t- osi: pclink1 status\n\n}\n"},
    {"\003\000\225\004\006", 5, 'R',
     "\nNotify\tONHOOK\n{\n\tServer\t\t(reserved_error)\n}\n"
     "\n\tRYM - call server\nNotify\tONHOOK\n{\n\tServer\t\t(reserved_error)\n}\n\n}\n"},
    {"\026\004\025\004\001", 5, 'R',
     "\nNotify\tDEVICE_PRESENCE\n{\n\tServer\t\tPresentation\n\tvalue           USB"
     "\n\tstate           plugged\n}\n"},
};

/* Whether the frame was taken without the n-th allocation, and without noticing. */
static int takes(const struct frame* frame, long n, int* failures) {
    const char* expected;
    int unnoticed;
    app_idx = 0;
    p("before");
    allocations_left = n;
    analyse_cmd((const uint8_t*)frame->bytes, frame->length, frame->direction);
    unnoticed = allocations_left >= 0;
    allocations_left = -1;
    expected = unnoticed ? frame->whole : "before";
    if (strcmp(app_buf, expected) != 0 || app_idx != strlen(expected)) {
        ++*failures;
        fprintf(stderr, "without allocation %ld: \"%s\"\n  expected: \"%s\"\n", n, app_buf, expected);
    }
    return unnoticed;
}

int main(void) {
    size_t i;
    int failures = 0;
    for (i = 0; i < sizeof frames / sizeof frames[0]; ++i) {
        long n = 0;
        while (n < 1000 && !takes(&frames[i], n, &failures)) ++n;
        if (n == 0 || n == 1000) {
            ++failures;
            fprintf(stderr, "frame %zu needs %ld allocations\n", i, n);
        }
    }
    vFreeApplicationBuffer();
    return failures == 0 ? 0 : 1;
}
