/* A host that opens the library, decodes and closes it again, ten thousand times: nothing stays behind. */

#include <dlfcn.h>
#include <malloc.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "ztdecode.h"

static MessageRecord message;

/* How much address space the process has. The kernel counts it exactly; it counts resident pages for each
   processor apart, and what it then shows is off by dozens of pages on a machine with many. */
static long pages(void) {
    long count = 0;
    FILE* const file = fopen("/proc/self/statm", "r");
    if (file == NULL || fscanf(file, "%ld", &count) != 1) count = 0;
    if (file != NULL) fclose(file);
    return count;
}

static long bytes_in_use(void) { return (long)mallinfo2().uordblks; }

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
    enum { cycles = 10000, settled = 2000, most_pages = 32, most_bytes = 4096 };
    long pages_after_some = 0;
    long bytes_after_some = 0;
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
        if (i == settled) {
            pages_after_some = pages();
            bytes_after_some = bytes_in_use();
        }
    }
    if (pages_after_some == 0 || pages() > pages_after_some + most_pages ||
        bytes_in_use() > bytes_after_some + most_bytes) {
        fprintf(stderr, "after %d cycles %ld pages and %ld bytes in use, after %d %ld and %ld\n", settled,
                pages_after_some, bytes_after_some, cycles, pages(), bytes_in_use());
        return 1;
    }
    return 0;
}
