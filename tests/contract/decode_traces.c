/* A host that decodes whole traces through every way in, by the book: heap texts are released, nothing else
 * is. The ways have to agree. Made to be run where leaks and wrong accesses are found: decode_traces FOLDER
 */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "traces.h"

static char* copy_of(const char* text) {
    char* const copy = malloc(strlen(text) + 1);
    if (copy == NULL) exit(2);
    return strcpy(copy, text);
}

static char* by_decode(const struct traced* t) { return decode(t->record); }

/* The readers keep the bytes of earlier lines behind those of a message: a line of 256 zeros makes them
 * forget. */
static void forget_earlier_lines(void) {
    static char zeros[3 * 258];
    if (zeros[0] == '\0') {
        size_t i;
        for (i = 0; i < 258; ++i) memcpy(zeros + 3 * i, i == 1 ? "01 " : "00 ", 3);
        zeros[sizeof zeros - 1] = '\0';
    }
    line_lng2(zeros, 0);
}

/* What a reader decoded of a line with one length byte is a heap text, of one with two a buffer. */
static char* by_reader(const struct traced* t) {
    const int direction = (int)t->record.direction;
    const char* text;
    forget_earlier_lines();
    switch (t->layout) {
        case trace_spzt:
            text = line_spzt(t->line);
            break;
        case trace_zt:
            text = line_tzt(t->line, direction);
            break;
        default:
            text = line_lng2(t->line, direction);
            break;
    }
    return t->two_length_bytes ? copy_of(text) : (char*)text;
}

static char* by_length_byte(const struct traced* t) {
    uint8_t bytes[256];
    if (t->record.length > 255) return by_decode(t);
    bytes[0] = (uint8_t)t->record.length;
    memcpy(bytes + 1, t->record.data, t->record.length);
    return decode_bin_lng1(bytes, (int)t->record.direction);
}

static char* by_length_bytes(const struct traced* t) {
    static uint8_t bytes[ZTDECODE_CAPACITY + 2];
    const uint32_t length = t->record.length;
    bytes[0] = (uint8_t)(length & 0xFF);
    bytes[1] = (uint8_t)(length >> 8);
    memcpy(bytes + 2, t->record.data, length);
    return copy_of(decode_bin_lng2(bytes, (int)t->record.direction, (int)length + 2));
}

/* Appended as a host that collects its texts does it. */
static char* by_clean_message(const struct traced* t) {
    char* const text = decode(t->record);
    char* const out = malloc(strlen(text) + 12);
    if (out == NULL) exit(2);
    out[0] = '\0';
    print_clean_message(out, t->record, text);
    return out;
}

static size_t without_line_end(const char* text) {
    size_t size = strlen(text);
    while (size > 0 && text[size - 1] == '\n') --size;
    return size;
}

int main(int arguments, char** argument) {
    static char* (*const ways[])(const struct traced*) = {by_decode, by_reader, by_length_byte,
                                                          by_length_bytes, by_clean_message};
    enum { count_of_ways = sizeof ways / sizeof ways[0] };
    struct traced* messages;
    char** texts;
    size_t count;
    size_t way;
    size_t i;
    int failures = 0;
    size_t readers_on_heap = 0;

    if (arguments != 2) return 2;
    messages = read_traces(argument[1], &count);
    texts = calloc(count, sizeof *texts);
    if (texts == NULL) return 2;
    /* Once over, so that what the session has learnt of the traces is the same before each way. */
    for (i = 0; i < count; ++i) free(decode(messages[i].record));
    for (way = 0; way < count_of_ways; ++way) {
        for (i = 0; i < count; ++i) {
            char* const text = ways[way](&messages[i]);
            if (way == 0) {
                texts[i] = text;
                continue;
            }
            if (way == 1 && !messages[i].two_length_bytes) ++readers_on_heap;
            if (without_line_end(text) != without_line_end(texts[i]) ||
                strncmp(text, texts[i], without_line_end(text)) != 0) {
                ++failures;
                fprintf(stderr, "way %d, line \"%s\":\n%s\ninstead of\n%s\n", (int)way, messages[i].line,
                        text, texts[i]);
            }
            free(text);
        }
    }
    fprintf(stderr, "%lu messages, %lu of them read to the heap\n", (unsigned long)count,
            (unsigned long)readers_on_heap);
    for (i = 0; i < count; ++i) free(texts[i]);
    free(texts);
    free_traces(messages, count);
    vFreeApplicationBuffer();
    vFreeReconstructedCmd();
    vFreeLastReconstructedCmd();
    return failures == 0 ? 0 : 1;
}
