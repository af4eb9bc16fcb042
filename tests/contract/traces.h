/* The messages of the golden traces, for hosts that need true ones. */

#ifndef CONTRACT_TRACES_H
#define CONTRACT_TRACES_H

#include <stddef.h>

#include "ztdecode.h"

struct traced {
    enum { trace_spzt, trace_zt, trace_lng2 } layout;
    char* line;           /* as it stands in the trace, without its line end */
    int two_length_bytes; /* whether its reader takes it so */
    MessageRecord record; /* the message in it */
};

/* Every message of the traces in a folder, in the order of the files' names; the process ends when there are
 * none. Messages that would end a process (see may_end_process) and lines in no layout are left out. */
struct traced* read_traces(const char* folder, size_t* count);
void free_traces(struct traced* messages, size_t count);

/* Whether a message of the object protocol may name a class that does not exist, which ends the process that
 * decodes it. */
int may_end_process(const MessageRecord* record);

#endif
