/* A host that links the shared object. */

#include "library.h"

int main(void) {
    static const struct library linked = {
#define FUNCTION(name) &name,
#define DATA(name) &name,
#include "exported_names.inc"
    };
    return check_library(&linked);
}
