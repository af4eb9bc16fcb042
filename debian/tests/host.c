#include <stdio.h>
#include <string.h>
#include <ztdecode_session.h>

/* usage: host TRACE: how many messages there are, and the values of remote_ip in those that are start_rtp. */

static void say_address(const zt_record* record) {
    static const char wanted[] = "start_rtp";
    const zt_field* const field = zt_find_field(record, "remote_ip");
    if (field == NULL || record->message.size != sizeof wanted - 1) return;
    if (memcmp(record->message.data, wanted, sizeof wanted - 1) != 0) return;
    printf(", remote_ip = %.*s", (int)field->value.size, field->value.data);
}

/* Counts the messages, or says what they hold. */
static unsigned walk(FILE* trace, zt_session* session, int saying) {
    char line[4096];
    unsigned messages = 0;
    while (fgets(line, sizeof line, trace) != NULL) {
        const zt_record* record;
        if (zt_feed_line(session, line, strlen(line), NULL) != ZT_OK) return 0;
        for (; zt_next_message(session, &record) == ZT_OK; ++messages) {
            if (saying) say_address(record);
        }
    }
    return messages;
}

int main(int argc, char** argv) {
    zt_session* session;
    FILE* trace;
    if (argc != 2 || (trace = fopen(argv[1], "r")) == NULL) return 2;
    if (zt_session_create(NULL, &session) != ZT_OK) return 2;
    printf("%u messages", walk(trace, session, 0));
    zt_session_destroy(session);

    rewind(trace);
    if (zt_session_create(NULL, &session) != ZT_OK) return 2;
    walk(trace, session, 1);
    zt_session_destroy(session);
    fclose(trace);
    putchar('\n');
    return 0;
}
