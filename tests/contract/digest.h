/* All that a record says as one number, to tell two of them apart. */

#ifndef CONTRACT_DIGEST_H
#define CONTRACT_DIGEST_H

#include "ztdecode_session.h"

/* Everything that can be reached from the record, but its place. */
void add_record(uint64_t* digest, const zt_record* record);

/* The line (a C string) and all its messages. Any status but ZT_OK: the session gave it. */
zt_status add_line(uint64_t* digest, zt_session* session, const char* line);

#endif
