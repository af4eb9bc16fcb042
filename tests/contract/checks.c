#include "checks.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

const struct library* the_library;
char used[exported_names];

static int failures;

static void show(const char* label, const char* text) {
    fprintf(stderr, "  %s: ", label);
    if (text == NULL) {
        fprintf(stderr, "(null)");
    } else {
        fputc('"', stderr);
        for (; *text != '\0'; ++text) {
            const unsigned char c = (unsigned char)*text;
            if (c == '\n') {
                fputs("\\n", stderr);
            } else if (c == '\t') {
                fputs("\\t", stderr);
            } else if (c < ' ' || c > '~') {
                fprintf(stderr, "\\x%02x", c);
            } else {
                fputc(c, stderr);
            }
        }
        fputc('"', stderr);
    }
    fputc('\n', stderr);
}

void same_text(const char* file, int at, const char* what, const char* got, const char* expected) {
    if (got != NULL && strcmp(got, expected) == 0) return;
    ++failures;
    fprintf(stderr, "%s:%d: %s\n", file, at, what);
    show("expected", expected);
    show("got     ", got);
}

void same_heap_text(const char* file, int at, const char* what, char* got, const char* expected) {
    same_text(file, at, what, got, expected);
    free(got);
}

void same_number(const char* file, int at, const char* what, long got, long expected) {
    if (got == expected) return;
    ++failures;
    fprintf(stderr, "%s:%d: %s is %ld, not %ld\n", file, at, what, got, expected);
}

int bytes_of(const char* hex, uint8_t* bytes, size_t room) {
    size_t count = 0;
    char* end;
    for (; *hex != '\0' && count < room; hex = end) {
        bytes[count++] = (uint8_t)strtoul(hex, &end, 16);
    }
    return (int)count;
}

MessageRecord message(const char* hex, uint32_t direction) {
    MessageRecord record;
    memset(&record, 0, sizeof record);
    record.length = (uint32_t)bytes_of(hex, record.data, sizeof record.data);
    record.direction = direction;
    return record;
}

char* copy_of(const char* text) {
    const size_t size = strlen(text) + 1;
    char* const copy = malloc(size);
    if (copy == NULL) abort();
    memcpy(copy, text, size);
    return copy;
}

/* Everything that is written to a descriptor goes to a file of its own for a while. */
static int captured;
static int saved = -1;
static FILE* captured_in;

void begin_capture(int descriptor) {
    fflush(NULL);
    captured = descriptor;
    saved = dup(descriptor);
    captured_in = fopen(path_of("captured"), "w+");
    if (saved < 0 || captured_in == NULL) abort();
    dup2(fileno(captured_in), descriptor);
}

const char* end_capture(void) {
    static char text[65536];
    size_t size;
    fflush(NULL);
    dup2(saved, captured);
    close(saved);
    rewind(captured_in);
    size = fread(text, 1, sizeof text - 1, captured_in);
    text[size] = '\0';
    fclose(captured_in);
    return text;
}

static int to_parent[2];

static void tell_application_text(void) {
    const char* text = *the_library->app_buf;
    if (text == NULL) return;
    if (write(to_parent[1], text, strlen(text)) < 0) abort();
}

static void read_all(int descriptor, char* text, size_t room) {
    size_t size = 0;
    ssize_t got;
    while (size + 1 < room && (got = read(descriptor, text + size, room - 1 - size)) > 0) size += (size_t)got;
    text[size] = '\0';
}

void run_apart(void (*act)(void), struct ended* ended) {
    int error[2];
    int status = 0;
    pid_t child;

    fflush(NULL);
    if (pipe(to_parent) != 0 || pipe(error) != 0) abort();
    child = fork();
    if (child < 0) abort();
    if (child == 0) {
        dup2(error[1], STDERR_FILENO);
        atexit(tell_application_text);
        act();
        _exit(99);
    }
    close(to_parent[1]);
    close(error[1]);
    read_all(to_parent[0], ended->application_text, sizeof ended->application_text);
    read_all(error[0], ended->error, sizeof ended->error);
    close(to_parent[0]);
    close(error[0]);
    waitpid(child, &status, 0);
    if (!WIFEXITED(status)) {
        ended->status = 1000;
    } else if (WEXITSTATUS(status) == 99) {
        ended->status = 2000;
    } else {
        ended->status = WEXITSTATUS(status);
    }
}

static char folder[1024];

static void make_folder(void) {
    const char* const parent = getenv("TMPDIR");
    const int length =
        snprintf(folder, sizeof folder, "%s/ztdecode-contract-XXXXXX", parent == NULL ? "/tmp" : parent);
    if (length >= (int)sizeof folder || mkdtemp(folder) == NULL) abort();
}

const char* path_of(const char* name) {
    static char paths[4][sizeof folder + 32];
    static unsigned next;
    char* const path = paths[next++ % 4];
    snprintf(path, sizeof paths[0], "%s/%s", folder, name);
    return path;
}

const char* file_with(const char* name, const char* contents) {
    const char* const path = path_of(name);
    FILE* const file = fopen(path, "w");
    if (file == NULL) abort();
    fputs(contents, file);
    fclose(file);
    return path;
}

const char* contents_of(const char* path) {
    static char text[4096];
    FILE* const file = fopen(path, "r");
    size_t size;
    if (file == NULL) return "(no such file)";
    size = fread(text, 1, sizeof text - 1, file);
    text[size] = '\0';
    fclose(file);
    return text;
}

static void remove_folder(void) {
    static const char* const names[] = {"in", "out", "a", "b", "difference", "captured"};
    size_t i;
    for (i = 0; i < sizeof names / sizeof names[0]; ++i) unlink(path_of(names[i]));
    rmdir(folder);
}

int check_library(const struct library* library) {
    static const char* const names[] = {
#define FUNCTION(name) #name,
#define DATA(name) #name,
#include "exported_names.inc"
#undef FUNCTION
#undef DATA
    };
    int i;

    the_library = library;
    make_folder();
    check_frame();
    check_routes();
    check_modules();
    check_tables();
    check_lookups();
    check_application_buffer();
    check_object_messages();
    check_conversion();
    check_sessions();
    remove_folder();
    for (i = 0; i < exported_names; ++i) {
        if (used[i]) continue;
        ++failures;
        fprintf(stderr, "no check uses %s\n", names[i]);
    }
    if (failures == 0) printf("%d names checked\n", (int)exported_names);
    return failures == 0 ? 0 : 1;
}
