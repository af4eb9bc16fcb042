/* Every name of the interface with its type as the headers declare it, for a look from outside: what is
 * compiled here says nothing of what is behind the interface. */

#include "library.h"

#define FUNCTION(name)                             \
    extern __typeof__(name)* const type_of_##name; \
    __typeof__(name)* const type_of_##name = &name;
#define DATA(name) FUNCTION(name)
#include "exported_names.inc"
