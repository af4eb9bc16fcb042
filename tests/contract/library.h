/* Everything that the library exports, as a host got hold of it: by linking, or with dlsym. */

#ifndef CONTRACT_LIBRARY_H
#define CONTRACT_LIBRARY_H

#include "ztdecode.h"
#include "ztdecode_session.h"

/* exported_names.inc is made of exports.txt: FUNCTION(name) or DATA(name) for each name. */
struct library {
#define FUNCTION(name) __typeof__(name)* name;
#define DATA(name) __typeof__(name)* name;
#include "exported_names.inc"
#undef FUNCTION
#undef DATA
};

/* Checks everything that `library` points to; the exit status for it. */
int check_library(const struct library* library);

#endif
