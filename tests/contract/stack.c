/* What messages carry inside each other is decoded on a stack of 1 MiB, as the header says. Each case is the
 * deepest of its kind; a stack that is too small ends the process. */

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ztdecode.h"
#include "ztdecode_session.h"

enum { stack_size = 1024 * 1024, hub = 1, super = 2 };

static MessageRecord message;

/* Puts `n` bytes in front of what the message has. */
static int put_in_front(const uint8_t* bytes, uint32_t n) {
    if (message.length + n > ZTDECODE_CAPACITY) return 0;
    memmove(message.data + n, message.data, message.length);
    memcpy(message.data, bytes, n);
    message.length += n;
    return 1;
}

static int put_hub(uint8_t set) {
    const uint8_t head[2] = {0x14, set};
    return put_in_front(head, sizeof head);
}

static int put_super(void) {
    uint8_t head[3] = {0x17, 0, 0};
    head[1] = (uint8_t)message.length;
    head[2] = (uint8_t)(message.length >> 8);
    return put_in_front(head, sizeof head);
}

static void nest(unsigned kinds, const char* inmost, uint32_t n, uint32_t direction) {
    message.length = 0;
    message.direction = direction;
    put_in_front((const uint8_t*)inmost, n);
    for (;;) {
        if ((kinds & hub) != 0 && !put_hub(0x10)) return;
        if ((kinds & super) != 0 && !put_super()) return;
    }
}

static size_t decode_length(void) {
    char* const text = decode(message);
    const size_t length = text != NULL ? strlen(text) : 0;
    free(text);
    return length;
}

/* A first segment whose message is `n` hubs around a last segment, which is what comes next. */
static void make_first_segment(uint32_t n) {
    uint8_t head[4] = {0x0c, 0x81, 0, 0};
    message.length = 0;
    message.direction = 0;
    put_in_front((const uint8_t*)"\014", 2);
    while (n-- > 0) put_hub(0x11);
    head[2] = (uint8_t)(message.length >> 8);
    head[3] = (uint8_t)message.length;
    put_in_front(head, sizeof head);
}

static void begin_series(uint32_t n) {
    make_first_segment(n);
    free(decode(message));
}

/* The same in a session that records every word, which needs more. */
static size_t record_length(zt_session* session) {
    const zt_record* record;
    const zt_status status = zt_decode(session, message.data, message.length,
                                       message.direction == 0 ? ZT_FROM_SYSTEM : ZT_TO_SYSTEM, &record);
    return status == ZT_OK ? record->text.size : 0;
}

static size_t hubs, hubs_to_system, supers_and_hubs, reassembled, reassembled_short, reassembled_supers;
static size_t hubs_recorded, supers_recorded, reassembled_recorded;

static void run_session(void) {
    zt_options options = ZT_OPTIONS_INIT;
    zt_session* session;
    options.detail = ZT_WORDS;
    if (zt_session_create(&options, &session) != ZT_OK) return;
    nest(hub, "\052", 1, 0);
    hubs_recorded = record_length(session);
    nest(hub | super, "\052", 1, 0);
    supers_recorded = record_length(session);
    make_first_segment(1200);
    record_length(session);
    nest(hub, "\014", 2, 0);
    reassembled_recorded = record_length(session);
    zt_session_destroy(session);
}

static void* run(void* unused) {
    (void)unused;
    run_session();
    nest(hub, "\052", 1, 0);
    hubs = decode_length();
    nest(hub, "\001", 1, 1);
    hubs_to_system = decode_length();
    nest(hub | super, "\052", 1, 0);
    supers_and_hubs = decode_length();
    begin_series(1200);
    nest(hub, "\014", 2, 0);
    reassembled = decode_length();
    begin_series(70); /* as deep as reassembled messages are followed */
    nest(hub, "\014", 2, 0);
    reassembled_short = decode_length();
    begin_series(80);
    nest(hub | super, "\014", 2, 0);
    reassembled_supers = decode_length();
    return NULL;
}

int main(void) {
    pthread_attr_t attributes;
    pthread_t thread;
    if (freopen("/dev/null", "w", stdout) == NULL) return 2; /* traces of segments */
    if (pthread_attr_init(&attributes) != 0 || pthread_attr_setstacksize(&attributes, stack_size) != 0 ||
        pthread_create(&thread, &attributes, run, NULL) != 0) {
        perror("a thread with a small stack");
        return 2;
    }
    pthread_join(thread, NULL);
    /* 2559 times the label of 16 characters, then "\t- version inquiry" and "\t- handset off hook". */
    if (hubs != 2559 * 16 + 18 || hubs_to_system < 2559 * 16 || supers_and_hubs < 1000000 ||
        reassembled < 2560 * 16 || reassembled_short < 2560 * 16 || reassembled_supers < 1000000) {
        fprintf(stderr, "texts end too early: %zu %zu %zu %zu %zu %zu characters\n", hubs, hubs_to_system,
                supers_and_hubs, reassembled, reassembled_short, reassembled_supers);
        return 1;
    }
    if (hubs_recorded != hubs || supers_recorded != supers_and_hubs || reassembled_recorded != reassembled) {
        fprintf(stderr, "texts of a session end elsewhere: %zu %zu %zu characters\n", hubs_recorded,
                supers_recorded, reassembled_recorded);
        return 1;
    }
    return 0;
}
