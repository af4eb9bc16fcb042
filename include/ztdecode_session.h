/* libztdecode, sessions - what signalling messages say, as text and as data, in any number of threads.
 *
 * This interface stands beside the one of ztdecode.h, in the same shared object. It has no state of its own
 * outside the sessions that a host makes, so the two do not notice each other.
 *
 * Conventions
 *  1. A session (zt_session) is all that the library remembers from one message to the next: module types,
 *     segments, property tables. Messages are handed over in the order in which they were captured, those of
 *     one trace to one session. Two sessions share nothing.
 *  2. A session is used by one thread at a time, which may be another one each time. Different sessions may
 *     be used by different threads at the same time. Functions without a session may be called by any
 *     thread.
 *  3. Nothing is printed, nothing ends the process, no exception leaves a function. What the decoders say
 *     besides their text (traces, complaints) is given with the record.
 *  4. Every function that can fail gives a zt_status. With any other than ZT_OK the pointers that it gives
 *     are null. The values of all enumerations stay; new releases may add values, and members at the end of
 *     the structures: leave aside what you do not know.
 *  5. Owner and lifetime. A session is its host's, from zt_session_create to zt_session_destroy. All else
 *     that is given belongs to the session, is not written to and not released:
 *       a record, with all that it leads to    until the next call of zt_decode, zt_feed_line,
 *                                              zt_next_message, zt_session_set_options or
 *                                              zt_session_destroy with this session;
 *       a line (zt_line)                       until the next call of zt_feed_line or zt_session_destroy with
 *                                              this session.
 *     Texts of the functions that give a `const char*` are constants, there as long as the library. What a
 *     host hands over is copied where it is needed longer than the call.
 *  6. Strings (zt_string) have a length and no zero byte behind them; `data` is never null. Texts are bytes:
 *     most are ASCII, quoted values are the bytes of the message as they came, and need not be UTF-8. No text
 *     holds a zero byte.
 *  7. Offsets count from 0, in bytes of the text or of the message that they belong to. A range includes its
 *     last byte. Columns of a line count from 1.
 *  8. A message keeps 5120 bytes; of a longer one the first 5120 are decoded. Bytes behind its end count as 0
 *     and are `missing` where the text asks for them.
 *  9. A message may carry others, and those again; convention 7 of ztdecode.h has the bounds. Decoding needs
 *     at most 1 MiB of stack.
 * 10. Memory. ZT_NO_MEMORY leaves no trace: the session is as if the call had not been made, and the call may
 *     be made again. A session keeps the room of its largest message for the next one. Walking through a
 *     record needs no memory and cannot fail.
 * 11. Names of characters come from libuninameslist.so, as convention 9 of ztdecode.h says. Nothing else
 *     outside the session is read.
 *
 * Example: what a line of a trace says, with each of its values.
 *
 *     #include <stdio.h>
 *     #include <ztdecode_session.h>
 *
 *     int main(void) {
 *         static const char line[] = "081211S 03 21 04 03";
 *         zt_session* session;
 *         const zt_line* fed;
 *         const zt_record* record;
 *         const zt_field* field;
 *         zt_status status = zt_session_create(NULL, &session);
 *         if (status == ZT_OK) status = zt_feed_line(session, line, sizeof line - 1, &fed);
 *         while (status == ZT_OK && (status = zt_next_message(session, &record)) == ZT_OK) {
 *             size_t k;
 *             printf("%.*s\n", (int)record->text.size, record->text.data);
 *             for (k = 0; (field = zt_field_at(record, k)) != NULL; ++k) {
 *                 printf("%.*s = %.*s\n", (int)field->name.size, field->name.data,
 *                        (int)field->value.size, field->value.data);
 *             }
 *         }
 *         if (status != ZT_DONE) printf("%s\n", zt_status_text(status));
 *         zt_session_destroy(session);
 *         return status == ZT_DONE ? 0 : 1;
 *     }
 */
#ifndef ZTDECODE_SESSION_H
#define ZTDECODE_SESSION_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#define ZT_INT : int /* a number that an enumeration does not name is one of its values still */
#else
#define ZT_INT
#endif

#if defined(__GNUC__)
#define ZTDECODE_API __attribute__((visibility("default")))
#else
#define ZTDECODE_API
#endif

/* ---- Versions ------------------------------------------------------------------------------------------ */

/* Of this header. */
#define ZT_VERSION_MAJOR 5
#define ZT_VERSION_MINOR 2
#define ZT_VERSION_PATCH 0
#define ZT_VERSION "5.2.0"

/* Of the library that is running: "5.2.0". A library of the same major version and the same or a higher minor
 * one has all that this header declares. */
ZTDECODE_API const char* zt_version(void);

/* ---- Status -------------------------------------------------------------------------------------------- */

typedef enum zt_status ZT_INT {
    ZT_OK = 0,
    ZT_DONE = 1,         /* the line has no further message */
    ZT_REFUSED = 2,      /* the line cannot be read any further; its zt_line says why */
    ZT_NO_MEMORY = 3,    /* see convention 10 */
    ZT_BAD_ARGUMENT = 4, /* a null pointer, or a direction that there is not */
    ZT_BAD_OPTIONS = 5,  /* a flag or a value of the options that this library does not know */
    ZT_BAD_SIZE = 6,     /* zt_options::size is none that there was */
} zt_status;

/* A sentence for it, without a full stop: "there is no memory for this". For any other number "unknown
 * status". */
ZTDECODE_API const char* zt_status_text(zt_status status);

/* ---- Sessions ------------------------------------------------------------------------------------------ */

typedef struct zt_session zt_session;

typedef enum zt_direction ZT_INT {
    ZT_FROM_SYSTEM = 0,
    ZT_TO_SYSTEM = 1,
} zt_direction;

/* How trace lines are written. A field is two hexadecimal digits. */
typedef enum zt_layout ZT_INT {
    ZT_LAYOUT_AUTO = 0,      /* each line's is recognised: any of the next four */
    ZT_LAYOUT_LINE = 1,      /* "03 21 04 03": a length byte, then so many bytes */
    ZT_LAYOUT_LNG2 = 2,      /* "03 00 21 04 03": two length bytes, the low one first; others may follow */
    ZT_LAYOUT_ZT = 3,        /* "zt " and one of these two */
    ZT_LAYOUT_SPZT = 4,      /* six columns, S (from the system) or R (to it), a blank, and one of the two */
    ZT_LAYOUT_SPZT_LNG2 = 5, /* the same, always with two length bytes */
} zt_layout;

/* What records hold. */
typedef enum zt_detail ZT_INT {
    ZT_FIELDS = 0, /* all but words */
    ZT_WORDS = 1,  /* words as well: for every piece of the text the bytes that it comes from */
} zt_detail;

#define ZT_COLOR 0x1U      /* each message's text stands in ANSI colours: red to the system, else green */
#define ZT_AUDIO_ONLY 0x2U /* messages that are no audio messages are left out (ZT_LEFT_OUT) */
#define ZT_DEBUG 0x4U      /* what the decoders trace on the side is given as zt_record::trace */
#define ZT_PAD 0x8U        /* bytes that a line lacks, or that are no hexadecimal, are taken as 0xff */

typedef struct zt_options {
    size_t size;            /* sizeof(zt_options) */
    uint32_t flags;         /* any of the above */
    zt_detail detail;       /* of records */
    zt_layout layout;       /* of lines */
    zt_direction direction; /* of lines whose layout does not say it */
} zt_options;

/* Start from this: what is not set is as it is without options. */
#define ZT_OPTIONS_INIT \
    { sizeof(zt_options), 0U, ZT_FIELDS, ZT_LAYOUT_AUTO, ZT_FROM_SYSTEM }

/* Makes a session; `options` may be null. A structure of a newer header is taken when all that this library
 * does not know of it is zero. ZT_BAD_ARGUMENT (`session` is null), ZT_BAD_SIZE, ZT_BAD_OPTIONS,
 * ZT_NO_MEMORY. */
ZTDECODE_API zt_status zt_session_create(const zt_options* options, zt_session** session);

/* Gives all memory of the session back; a null session: nothing happens. */
ZTDECODE_API void zt_session_destroy(zt_session* session);

/* New options for the messages from the next one on, and for the lines from the next one on; `options` may be
 * null. What messages taught stays. With another status than ZT_OK the options stay as they were.
 * ZT_BAD_ARGUMENT, ZT_BAD_SIZE, ZT_BAD_OPTIONS. */
ZTDECODE_API zt_status zt_session_set_options(zt_session* session, const zt_options* options);

/* ---- Records ------------------------------------------------------------------------------------------- */

typedef struct zt_string {
    const char* data;
    size_t size;
} zt_string;

typedef struct zt_bytes {
    const uint8_t* data; /* null where there are none */
    size_t size;
} zt_bytes;

/* Bytes first ... last of the record's message. */
typedef struct zt_range {
    uint32_t first;
    uint32_t last;
} zt_range;

/* Ascending, and apart from each other. */
typedef struct zt_ranges {
    const zt_range* data; /* null where there are none */
    size_t size;
} zt_ranges;

/* What became of a message. */
typedef enum zt_outcome ZT_INT {
    ZT_DECODED = 0,
    ZT_UNKNOWN_MESSAGE = 1, /* no table has its code */
    ZT_UNKNOWN_CLASS = 2,   /* it names a class that does not exist: decoded as far as that */
    ZT_LEFT_OUT = 3,        /* it is no audio message, and these alone were asked for */
} zt_outcome;

/* A message, or one that it carries. */
typedef struct zt_record {
    zt_string text;         /* that of `decode` in ztdecode.h; a carrier's text holds those of its parts */
    zt_string link;         /* "digital", "ip" ...; empty where it is on none */
    zt_string message;      /* what it is called: "start_rtp"; empty where no table knows its code */
    zt_direction direction; /* of a part: as its carrier says */
    zt_outcome outcome;
    int64_t code;      /* that the link's table was asked for, known or not; -1 where there is none */
    uint32_t length;   /* in bytes; of a part: what its carrier says */
    uint32_t unknown;  /* so many of its values are known to no table */
    uint32_t missing;  /* so many bytes were asked for that it does not have */
    uint32_t segments; /* it was put together from so many; see zt_segment_at */
    zt_bytes bytes;    /* as many as there are of `length` */
    uint64_t padded;   /* with ZT_PAD: so many bytes lacked on its line, and were taken as 0xff */
    uint64_t place;    /* see zt_decode */
    size_t fields;     /* how many there are: see zt_field_at, zt_word_at, zt_part_at */
    size_t words;
    size_t parts;
    zt_string trace;      /* of the captured message: with ZT_DEBUG what the decoders traced */
    zt_string complaints; /* of the captured message: what is wrong with its lengths, in lines */
    uint64_t left_over;   /* words behind the message in its line that its length does not count */
} zt_record;

typedef enum zt_kind ZT_INT {
    ZT_NUMBER = 0,
    ZT_WORD = 1, /* a word of a table, for a code */
    ZT_ADDRESS = 2,
    ZT_TEXT = 3,
    ZT_VERSION_NUMBER = 4,
    ZT_FLAG = 5,
    ZT_BYTES = 6,
} zt_kind;

/* Whom a value tells about. */
typedef enum zt_sensitivity ZT_INT {
    ZT_TELLS_NOTHING = 0,
    ZT_CALL_NUMBER = 1, /* dialled or calling */
    ZT_PERSON = 2,      /* a person's name, or what a display shows */
    ZT_NETWORK_ADDRESS = 3,
    ZT_HARDWARE_ADDRESS = 4,
    ZT_SECRET = 5, /* passwords and keys */
} zt_sensitivity;

/* A value that the text shows. docs/fields.md tells of every name. */
typedef struct zt_field {
    zt_string name;  /* the same name has one meaning on every link; several fields may have it */
    zt_string unit;  /* "ms", "bytes" ...; empty where there is none */
    zt_string value; /* number: its decimal digits ("-6.5"); flag: "true" or "false"; bytes: hexadecimal
                        digits ("002a"); word: without the punctuation around it; all others: as shown */
    zt_string shown; /* as it stands in the text */
    zt_kind kind;
    zt_sensitivity sensitivity;
    int64_t number;   /* number: its value times `divisor`; flag: 0 or 1; word: its code; all others: 0 */
    uint32_t divisor; /* 1 or 10 */
    uint8_t known;    /* 0: no table has a word for the code, or the code itself is `unknown_code` */
    uint8_t missing;  /* 1: a byte of it lies behind the message's end */
    size_t begin;     /* where it stands in the record's text */
    size_t end;
    zt_ranges bytes; /* one range; none: it comes from an earlier message, or from no byte */
} zt_field;

/* A piece of the text; words stand one behind the other, with gaps for the codes of colours alone. */
typedef struct zt_word {
    zt_string text;
    zt_string field; /* the name of the value that it is; empty: it is none */
    zt_ranges bytes; /* of a value those that hold it; else those that were looked at to choose the words */
    size_t begin;    /* in the record's text */
    size_t end;
    uint8_t missing; /* 1: a byte was looked at that the message does not have */
} zt_word;

/* Fields, in the order of the text, without those of the parts; words, with those of the parts (none without
 * ZT_WORDS); parts: the messages that this one carries, each a record with parts of its own. A part below the
 * eighth level is none: what it says counts to its carrier. Null for an index beyond the last one and for a
 * null record. */
ZTDECODE_API const zt_field* zt_field_at(const zt_record* record, size_t index);
ZTDECODE_API const zt_word* zt_word_at(const zt_record* record, size_t index);
ZTDECODE_API const zt_record* zt_part_at(const zt_record* record, size_t index);

/* The first field of this name, a C string; null when there is none. */
ZTDECODE_API const zt_field* zt_find_field(const zt_record* record, const char* name);

/* The place (see zt_decode) of a segment that the message was put together from; 0 for an index beyond the
 * last one. */
ZTDECODE_API uint64_t zt_segment_at(const zt_record* record, size_t index);

/* Their names, as `ztdecode --format ndjson` has them: "decoded", "unknown", "refused" (an unknown class),
 * and "left_out"; "number", "word" ...; "none", "call_number" .... Null for any other number. */
ZTDECODE_API const char* zt_outcome_name(zt_outcome outcome);
ZTDECODE_API const char* zt_kind_name(zt_kind kind);
ZTDECODE_API const char* zt_sensitivity_name(zt_sensitivity sensitivity);

/* ---- Messages ------------------------------------------------------------------------------------------ */

/* Decodes `length` bytes at `bytes`, which may be null when there are none.
 *
 * Messages and lines are counted, from 1 on: that number is the record's `place`, and by it the segments of
 * a message are named. For a host that feeds all lines of a trace and nothing else it is the line's number.
 *
 * ZT_BAD_ARGUMENT, ZT_NO_MEMORY. */
ZTDECODE_API zt_status zt_decode(zt_session* session, const uint8_t* bytes, size_t length,
                                 zt_direction direction, const zt_record** record);

/* ---- Trace lines --------------------------------------------------------------------------------------- */

typedef enum zt_line_kind ZT_INT {
    ZT_LINE_BLANK = 0,
    ZT_LINE_COMMENT = 1,  /* its first character that is no blank is a # */
    ZT_LINE_OTHER = 2,    /* no trace line: words of a log; or longer than 1 MiB */
    ZT_LINE_MESSAGES = 3, /* zt_next_message gives them */
    ZT_LINE_REFUSED = 4,  /* a trace line that cannot be read */
} zt_line_kind;

/* Why a line is refused. */
typedef enum zt_refusal ZT_INT {
    ZT_NOT_REFUSED = 0,
    ZT_REFUSED_NO_LENGTH = 1,
    ZT_REFUSED_TOO_LONG = 2,
    ZT_REFUSED_TOO_SHORT = 3,
    ZT_REFUSED_NO_HEXADECIMAL = 4,
    ZT_REFUSED_NO_TAG = 5,
    ZT_REFUSED_NO_DIRECTION = 6,
} zt_refusal;

typedef struct zt_line {
    zt_line_kind kind;
    zt_layout layout;  /* of a trace line: as it was recognised, or told */
    zt_string content; /* the line as it came; of a trace line without the blanks at its end */
    zt_string columns; /* what stands in front of S or R; empty in other layouts */
    uint64_t place;    /* see zt_decode */
    /* Where it was refused: at once, or (then zt_next_message gives ZT_REFUSED) behind its first messages. */
    zt_refusal refusal;
    uint64_t column;
    uint64_t expected; /* bytes of the message, as far as the line says */
    uint64_t found;    /* bytes that the line has room for */
    zt_string reason;  /* the text of the readers in ztdecode.h */
    /* What a log wrote in front of the message, and what of that is the time and the terminal's name; empty
     * where there is none. */
    zt_string prefix;
    zt_string time;
    zt_string terminal;
} zt_line;

/* Takes one line of a trace, `length` characters with or without a newline at the end; nothing of it is
 * decoded yet. Lines are read as the command reads them: behind the time or the [words] of a log, with tabs,
 * several blanks, capitals, 0x in front of bytes. One whose message lacks bytes, or has something else in the
 * place of one, is refused; with ZT_PAD those of a line of two length bytes are 0xff. What the line before
 * has not been asked for is dropped. `line` may be null. ZT_BAD_ARGUMENT (`session` is null, or `text` while
 * `length` is not 0), ZT_NO_MEMORY (the line is not counted; the one before is gone). */
ZTDECODE_API zt_status zt_feed_line(zt_session* session, const char* text, size_t length,
                                    const zt_line** line);

/* Decodes the next message of the line that was fed last. ZT_DONE behind the last one and where there is no
 * line, for a line of any other kind too; ZT_REFUSED instead, once, where the line is refused. A message with
 * the outcome ZT_UNKNOWN_CLASS is the last one of its line. ZT_BAD_ARGUMENT; ZT_NO_MEMORY: the message may be
 * asked for again, or left with the next line. */
ZTDECODE_API zt_status zt_next_message(zt_session* session, const zt_record** record);

/* "no_length", "too_long", "too_short" ...; null for any other number. */
ZTDECODE_API const char* zt_refusal_name(zt_refusal refusal);

#ifdef __cplusplus
}
#endif

#endif
