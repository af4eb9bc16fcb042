#include "traces.h"

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static struct traced* found;
static size_t found_count;

static int is_class(uint8_t code) {
    const ztdecode_class_record* row = Tab_Classes_Opcodes;
    while (row->opcode != 255 && row->opcode != code) ++row;
    return row->opcode != 255;
}

/* A byte that the message does not have may be any: the readers keep those of earlier lines there. */
static int may_be_no_class(const MessageRecord* record, uint32_t k) {
    return k >= record->length || !is_class(record->data[k]);
}

int may_end_process(const MessageRecord* record) {
    const uint8_t* const m = record->data;
    if (record->length == 0 || ((m[0] & 0x7F) != 21 && (m[0] & 0x7F) != 22)) return 0;
    if (record->length < 3) return 1;
    if (record->direction == 0) return (m[1] & 0x7F) != 4 && (m[1] & 0x7F) <= 6 && may_be_no_class(record, 2);
    if (m[2] == 0x94) return record->length < 5 || (m[3] == 0 && m[4] < 15 && may_be_no_class(record, 4));
    return ((m[2] >= 0x0A && m[2] <= 0x0E) || m[2] == 0x1E) && record->length > 3 &&
           may_be_no_class(record, 6);
}

/* The bytes of a body; how many length bytes stand in front of them. 0: not a body. */
static int parse(const char* body, struct traced* t, int column) {
    uint8_t bytes[ZTDECODE_CAPACITY + 2];
    size_t count = 0;
    size_t length;
    const char* at = body;
    char* end;
    for (; count < sizeof bytes; at = end) {
        const unsigned long value = strtoul(at, &end, 16);
        if (end == at) break;
        if (value > 255) return 0;
        bytes[count++] = (uint8_t)value;
    }
    if (*at != '\0' || count < 2) return 0;
    length = (size_t)bytes[0] + 256U * bytes[1];
    switch (t->layout) {
        case trace_lng2:
            t->two_length_bytes = 1;
            break;
        case trace_zt:
            t->two_length_bytes = bytes[1] == 0;
            break;
        default: {
            const size_t size = strlen(body) + (size_t)column;
            t->two_length_bytes = size >= 100 || 3 * length + 13 <= size;
        }
    }
    if (!t->two_length_bytes) length = bytes[0];
    if (length == 0 || count != length + (t->two_length_bytes ? 2 : 1)) return 0;
    t->record.length = (uint32_t)length;
    memcpy(t->record.data, bytes + count - length, length);
    return 1;
}

static void take_line(char* line, int layout, uint32_t direction) {
    struct traced* const grown = realloc(found, (found_count + 1) * sizeof *found);
    struct traced* t;
    int column = 0;
    if (grown == NULL) exit(2);
    found = grown;
    t = &found[found_count];
    memset(t, 0, sizeof *t);
    t->layout = (unsigned)layout;
    t->record.direction = direction;
    line[strcspn(line, "\r\n")] = '\0';
    if (layout == trace_spzt) {
        column = 8;
        if (strlen(line) < 10) return;
        t->record.direction = line[6] == 'R';
    } else if (layout == trace_zt) {
        column = 3;
        if (strncmp(line, "zt ", 3) != 0) return;
    }
    if (!parse(line + column, t, column) || may_end_process(&t->record)) return;
    t->line = malloc(strlen(line) + 1);
    if (t->line == NULL) exit(2);
    strcpy(t->line, line);
    ++found_count;
}

/* The direction of a trace without a column for it is in its options. */
static uint32_t direction_of(const char* path) {
    char options[512];
    char text[256] = "";
    const char* const dot = strrchr(path, '.');
    FILE* file;
    snprintf(options, sizeof options, "%.*s.options", (int)(dot - path), path);
    file = fopen(options, "r");
    if (file != NULL) {
        if (fgets(text, sizeof text, file) == NULL) text[0] = '\0';
        fclose(file);
    }
    return strstr(text, "--direction to") != NULL;
}

static int compare_names(const void* a, const void* b) { return strcmp(*(char* const*)a, *(char* const*)b); }

static void read_trace(const char* path) {
    const char* const ending = strrchr(path, '.');
    const int layout = strcmp(ending, ".spzt") == 0 ? trace_spzt
                       : strcmp(ending, ".zt") == 0 ? trace_zt
                                                    : trace_lng2;
    const uint32_t direction = layout == trace_spzt ? 0 : direction_of(path);
    static char line[65536];
    FILE* const file = fopen(path, "r");
    if (file == NULL) exit(2);
    while (fgets(line, sizeof line, file) != NULL) take_line(line, layout, direction);
    fclose(file);
}

static int is_trace(const char* name) {
    const char* const ending = strrchr(name, '.');
    return ending != NULL &&
           (strcmp(ending, ".spzt") == 0 || strcmp(ending, ".zt") == 0 || strcmp(ending, ".lng2") == 0);
}

struct traced* read_traces(const char* folder, size_t* count) {
    static char paths[256][512];
    char* names[256];
    size_t files = 0;
    size_t i;
    const struct dirent* entry;
    DIR* const directory = opendir(folder);
    if (directory == NULL) {
        perror(folder);
        exit(2);
    }
    while ((entry = readdir(directory)) != NULL && files < 256) {
        if (!is_trace(entry->d_name)) continue;
        snprintf(paths[files], sizeof paths[files], "%s/%.200s", folder, entry->d_name);
        names[files] = paths[files];
        ++files;
    }
    closedir(directory);
    qsort(names, files, sizeof names[0], compare_names);
    found = NULL;
    found_count = 0;
    for (i = 0; i < files; ++i) read_trace(names[i]);
    if (found_count == 0) {
        fprintf(stderr, "no messages in the traces of %s\n", folder);
        exit(2);
    }
    *count = found_count;
    return found;
}

void free_traces(struct traced* messages, size_t count) {
    size_t i;
    for (i = 0; i < count; ++i) free(messages[i].line);
    free(messages);
}
