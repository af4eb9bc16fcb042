/* A host that opens the library, decodes and closes it again, ten thousand times: nothing stays behind. */

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "ztdecode.h"

static MessageRecord message;

static long resident_pages(void) {
    long pages = 0;
    FILE* const file = fopen("/proc/self/statm", "r");
    if (file == NULL || fscanf(file, "%*d %ld", &pages) != 1) pages = 0;
    if (file != NULL) fclose(file);
    return pages;
}

static int decodes_in(void* library) {
    char* (*decode_message)(MessageRecord);
    char* text;
    int right;
    *(void**)&decode_message = dlsym(library, "decode");
    if (decode_message == NULL) return 0;
    text = decode_message(message);
    right = text != NULL && strcmp(text, "\t- digit dialed '4'") == 0;
    free(text);
    return right;
}

int main(int argc, char** argv) {
    enum { cycles = 10000, settled = 2000, most_pages = 32 };
    long after_some = 0;
    long at_the_end;
    int i;
    if (argc != 2) return 2;
    message.length = 2;
    message.direction = 1;
    message.data[0] = 3;
    message.data[1] = 4;
    for (i = 0; i < cycles; ++i) {
        void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (library == NULL || !decodes_in(library)) {
            fprintf(stderr, "cycle %d: %s\n", i, library == NULL ? dlerror() : "not the text");
            return 1;
        }
        dlclose(library);
        if (i == settled) after_some = resident_pages();
    }
    at_the_end = resident_pages();
    if (after_some == 0 || at_the_end > after_some + most_pages) {
        fprintf(stderr, "resident pages: %ld after %d cycles, %ld after %d\n", after_some, settled,
                at_the_end, cycles);
        return 1;
    }
    return 0;
}
