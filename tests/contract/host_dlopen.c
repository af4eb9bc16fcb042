/* A host that opens the shared object at run time: host_dlopen LIBRARY. Nothing of it is linked. */

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "library.h"

static void* handle;

/* ISO C knows no way from an object pointer to a function pointer, so the pointer's bytes are copied. */
static int find(const char* name, void* pointer) {
    void* const found = dlsym(handle, name);
    if (found == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 0;
    }
    memcpy(pointer, &found, sizeof found);
    return 1;
}

int main(int count, char** arguments) {
    static struct library opened;
    int status;

    if (count != 2) return 2;
    handle = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (handle == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 2;
    }
#define FUNCTION(name) \
    if (!find(#name, &opened.name)) return 2;
#define DATA(name) FUNCTION(name)
#include "exported_names.inc"
    status = check_library(&opened);
    /* Every text of the library is gone with it; a heap text would not be. */
    if (dlclose(handle) != 0) return 2;
    return status;
}
