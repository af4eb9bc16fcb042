/* usage: failing_sessions TRACE...
 * Sessions for which the n-th allocation of a call fails, for every n of every call: the call says so, and
 * made again it gives what it gives to a session that always had memory. All lines of the traces go through
 * one such session, so that whatever a failed call left behind would show in later ones. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "digest.h"
#include "failing_memory.h"

static int failures;
static long failed_allocations;

static void fail(const char* what, const char* line) {
    if (++failures <= 10) fprintf(stderr, "%s: %s\n", what, line);
}

/* The n-th allocation of the call to come fails, or has not been made. */
static void let_fail(long n) { allocations_left = n; }
static int has_failed(void) {
    const int failed = allocations_left < 0;
    allocations_left = -1;
    failed_allocations += failed;
    return failed;
}

static zt_session* created(zt_detail detail) {
    zt_options options = ZT_OPTIONS_INIT;
    zt_session* session = NULL;
    long n = 0;
    options.detail = detail;
    options.flags = ZT_DEBUG;
    for (;; ++n) {
        zt_status status;
        let_fail(n);
        status = zt_session_create(&options, &session);
        if (!has_failed() && status == ZT_OK) return session;
        if (status != ZT_NO_MEMORY || session != NULL)
            fail("a session without memory", zt_status_text(status));
    }
}

/* A call that was told that it has no memory is made once more, with one allocation more. */
static const zt_line* feed(zt_session* session, const char* line) {
    const zt_line* fed = NULL;
    long n = 0;
    for (;; ++n) {
        zt_status status;
        let_fail(n);
        status = zt_feed_line(session, line, strlen(line), &fed);
        if (has_failed() && status == ZT_OK) continue;
        if (status == ZT_OK) return fed;
        if (status != ZT_NO_MEMORY || fed != NULL) fail(zt_status_text(status), line);
    }
}

static zt_status next(zt_session* session, const zt_record** record, const char* line) {
    long n = 0;
    for (;; ++n) {
        zt_status status;
        let_fail(n);
        status = zt_next_message(session, record);
        if (has_failed() && status != ZT_NO_MEMORY) {
            /* The C library's own, which does without: no record is given twice. */
            return status;
        }
        if (status != ZT_NO_MEMORY) return status;
        if (*record != NULL) fail("a record without memory", line);
        if (n > 10000) exit(2);
    }
}

static void compare(zt_session* poor, zt_session* rich, const char* line) {
    const zt_line* rich_line = NULL;
    const zt_line* const poor_line = feed(poor, line);
    const zt_record* record = NULL;
    zt_status status;
    if (zt_feed_line(rich, line, strlen(line), &rich_line) != ZT_OK) exit(2);
    if (poor_line->kind != rich_line->kind || poor_line->place != rich_line->place) fail("the line", line);
    do {
        uint64_t poor_said = 0;
        uint64_t rich_said = 0;
        status = zt_next_message(rich, &record);
        if (status == ZT_OK) add_record(&rich_said, record);
        if (next(poor, &record, line) != status) fail("another status", line);
        if (record != NULL) add_record(&poor_said, record);
        if (poor_said != rich_said) fail("another record", line);
    } while (status == ZT_OK);
    if (poor_line->refusal != rich_line->refusal || poor_line->reason.size != rich_line->reason.size) {
        fail("another refusal", line);
    }
}

static void run(const char* path, zt_detail detail) {
    static char line[65536];
    zt_options options = ZT_OPTIONS_INIT;
    zt_session* rich = NULL;
    zt_session* const poor = created(detail);
    FILE* const file = fopen(path, "r");
    if (file == NULL) {
        perror(path);
        exit(2);
    }
    options.detail = detail;
    options.flags = ZT_DEBUG;
    if (zt_session_create(&options, &rich) != ZT_OK) exit(2);
    while (fgets(line, sizeof line, file) != NULL) compare(poor, rich, line);
    fclose(file);
    zt_session_destroy(rich);
    zt_session_destroy(poor);
}

int main(int count, char** arguments) {
    long before;
    int k;
    if (count < 2) return 2;
    run(arguments[1], ZT_WORDS); /* opens the library of characters' names, which stays */
    before = blocks;
    for (k = 1; k < count; ++k) {
        run(arguments[k], ZT_FIELDS);
        run(arguments[k], ZT_WORDS);
    }
    if (blocks != before) {
        fprintf(stderr, "%ld blocks stay behind\n", blocks - before);
        ++failures;
    }
    fprintf(stderr, "%ld allocations failed\n", failed_allocations);
    return failures == 0 && failed_allocations > 1000 ? 0 : 1;
}
