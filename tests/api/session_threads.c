/* usage: session_threads TRACE
 * A thousand sessions on eight threads. Each thread feeds its sessions in turns, a line each, so that
 * sessions which stand at different places of the trace alternate; every one has to say what a session says
 * that is alone. */

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "digest.h"

enum { threads = 8, sessions_of_a_thread = 125, most_lines = 4096, lines_of_a_session = 24 };

static char* lines[most_lines];
static int line_count;

/* The line that a session gets next. */
static const char* line_for(int session, int turn) {
    return lines[(session * lines_of_a_session + turn) % line_count];
}

static zt_session* new_session(int number) {
    zt_options options = ZT_OPTIONS_INIT;
    zt_session* session = NULL;
    options.detail = number % 2 == 0 ? ZT_FIELDS : ZT_WORDS;
    options.flags = number % 3 == 0 ? ZT_DEBUG : number % 5 == 0 ? ZT_COLOR : 0U;
    if (zt_session_create(&options, &session) != ZT_OK) exit(2);
    return session;
}

static uint64_t said_alone(int number) {
    zt_session* const session = new_session(number);
    uint64_t digest = 0;
    int turn;
    for (turn = 0; turn < lines_of_a_session; ++turn) {
        if (add_line(&digest, session, line_for(number, turn)) != ZT_OK) exit(2);
    }
    zt_session_destroy(session);
    return digest;
}

struct work {
    int first;
    uint64_t said[sessions_of_a_thread];
};

static void* run(void* argument) {
    struct work* const work = argument;
    zt_session* sessions[sessions_of_a_thread];
    int turn;
    int k;
    for (k = 0; k < sessions_of_a_thread; ++k) sessions[k] = new_session(work->first + k);
    for (turn = 0; turn < lines_of_a_session; ++turn) {
        for (k = 0; k < sessions_of_a_thread; ++k) {
            if (add_line(&work->said[k], sessions[k], line_for(work->first + k, turn)) != ZT_OK) exit(2);
        }
    }
    for (k = 0; k < sessions_of_a_thread; ++k) zt_session_destroy(sessions[k]);
    return NULL;
}

static void read_lines(const char* path) {
    static char line[65536];
    FILE* const file = fopen(path, "r");
    if (file == NULL) {
        perror(path);
        exit(2);
    }
    while (line_count < most_lines && fgets(line, sizeof line, file) != NULL) {
        lines[line_count] = malloc(strlen(line) + 1);
        if (lines[line_count] == NULL) exit(2);
        strcpy(lines[line_count++], line);
    }
    fclose(file);
}

int main(int count, char** arguments) {
    static struct work work[threads];
    pthread_t running[threads];
    int failures = 0;
    int t;
    int k;
    if (count != 2) return 2;
    read_lines(arguments[1]);
    if (line_count < lines_of_a_session) return 2;
    for (t = 0; t < threads; ++t) {
        work[t].first = t * sessions_of_a_thread;
        if (pthread_create(&running[t], NULL, run, &work[t]) != 0) return 2;
    }
    for (t = 0; t < threads; ++t) pthread_join(running[t], NULL);
    for (t = 0; t < threads; ++t) {
        for (k = 0; k < sessions_of_a_thread; ++k) {
            if (work[t].said[k] == said_alone(work[t].first + k)) continue;
            fprintf(stderr, "session %d says something else than alone\n", work[t].first + k);
            ++failures;
        }
    }
    while (line_count > 0) free(lines[--line_count]);
    return failures == 0 ? 0 : 1;
}
