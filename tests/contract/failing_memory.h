/* Memory that runs out for one allocation: malloc, calloc and realloc of the program, which the libraries
 * that it loads use too. */

#ifndef CONTRACT_FAILING_MEMORY_H
#define CONTRACT_FAILING_MEMORY_H

/* How many allocations succeed before one fails; below 0: none does. After the one that fails it is -1. */
extern long allocations_left;

/* Blocks that were given out and not released. */
extern long blocks;

#endif
