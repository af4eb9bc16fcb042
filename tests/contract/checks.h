/* What the checks are written with. A check that fails says so on standard error and the others go on. */

#ifndef CONTRACT_CHECKS_H
#define CONTRACT_CHECKS_H

#include <stddef.h>

#include "library.h"

/* The library under test. Every name is used through one of these two, so that one that no check uses is
 * found. */
extern const struct library* the_library;

enum exported_name {
#define FUNCTION(name) at_##name,
#define DATA(name) at_##name,
#include "exported_names.inc"
#undef FUNCTION
#undef DATA
    exported_names
};
extern char used[exported_names];

#define call(name) (used[at_##name] = 1, the_library->name)
#define data(name) (*(used[at_##name] = 1, the_library->name))

/* A text that stays the library's, a heap text (null is not one; released here), a number. */
#define SAME_TEXT(got, expected) same_text(__FILE__, __LINE__, #got, got, expected)
#define SAME_HEAP_TEXT(got, expected) same_heap_text(__FILE__, __LINE__, #got, got, expected)
#define SAME_NUMBER(got, expected) same_number(__FILE__, __LINE__, #got, (long)(got), (long)(expected))
#define HOLDS(condition) same_number(__FILE__, __LINE__, #condition, (condition) ? 1 : 0, 1)

void same_text(const char* file, int at, const char* what, const char* got, const char* expected);
void same_heap_text(const char* file, int at, const char* what, char* got, const char* expected);
void same_number(const char* file, int at, const char* what, long got, long expected);

enum { from_dhs = 0, to_dhs = 1 };

/* A record with the bytes of "0a 1f ...", everything else 0. */
MessageRecord message(const char* hex, uint32_t direction);
/* The bytes of "0a 1f ..."; how many. */
int bytes_of(const char* hex, uint8_t* bytes, size_t room);
/* A heap copy of a text. */
char* copy_of(const char* text);

/* What is written to standard output (1) or standard error (2) between the two. */
void begin_capture(int descriptor);
const char* end_capture(void);

/* Runs `act` in a process of its own, without core file. Gives its exit status (1000 when a signal ended it,
 * 2000 when `act` came back), what was in app_buf when it ended, and what it wrote to standard error. */
struct ended {
    int status;
    char application_text[4096];
    char error[4096];
};
void run_apart(void (*act)(void), struct ended* ended);

/* A file in the temporary folder of this run; a name of no file there. */
const char* file_with(const char* name, const char* contents);
const char* contents_of(const char* path);
const char* path_of(const char* name);

void check_frame(void);
void check_routes(void);
void check_modules(void);
void check_tables(void);
void check_lookups(void);
void check_application_buffer(void);
void check_object_messages(void);
void check_conversion(void);
void check_sessions(void);

#endif
