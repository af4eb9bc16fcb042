#define _GNU_SOURCE
#include "failing_memory.h"

#include <dlfcn.h>
#include <errno.h>
#include <stdlib.h>

long allocations_left = -1;
long blocks;

/* The C library's own, under the names that it keeps for those who replace them. */
extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* block, size_t size);
extern void __libc_free(void* block);

static int fails(void) {
    if (allocations_left < 0 || allocations_left-- > 0) return 0;
    errno = ENOMEM;
    return 1;
}

static void* counted(void* block) {
    blocks += block != NULL;
    return block;
}

void* malloc(size_t size) { return fails() ? NULL : counted(__libc_malloc(size)); }

void* calloc(size_t count, size_t size) { return fails() ? NULL : counted(__libc_calloc(count, size)); }

void* realloc(void* block, size_t size) {
    if (fails()) return NULL;
    return block == NULL ? counted(__libc_malloc(size)) : __libc_realloc(block, size);
}

void free(void* block) {
    blocks -= block != NULL;
    __libc_free(block);
}
