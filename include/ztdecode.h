/* libztdecode - readable texts for the signalling between a telephone system and its terminals.
 *
 * Conventions
 *  1. Every function is called from one thread at a time: the functions share one process-wide session, which remembers
 *     what one message teaches the next (module types, segments, current property table).
 *  2. Texts are C strings of bytes. Most are ASCII; quoted values are the bytes of the message as they came.
 *  3. Ownership is said with each function and is one of:
 *       heap      a block of its own; the caller releases it with free();
 *       buffer    lives in a buffer of that function until its next call; not to be released;
 *       constant  lives as long as the library; not to be released.
 *  4. Bytes behind a record's `length` are read as they stand in the record; bytes behind the 5120th read as 0.
 *     A `length` above 5120 counts as 5120.
 *  5. Nothing fails: an unknown value has a text of its own. A null record or text gives an empty text. When memory runs
 *     out a text is empty, or null where it would be a heap block. Two things end the process, as their hosts expect:
 *     msgdup without memory (status 1), and an object-protocol message that names a class that does not exist
 *     (status -1).
 *  6. Numbers have their natural alignment and the byte order of the machine in records; "direction" is 1 for messages
 *     towards the system ("to DHS") and 0 for those from it.
 */
#ifndef ZTDECODE_H
#define ZTDECODE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define ZTDECODE_API __attribute__((visibility("default")))
#else
#define ZTDECODE_API
#endif

/* ---- Messages ------------------------------------------------------------------------------------------------- */

#define ZTDECODE_CAPACITY 5120

/* One captured message: 5140 bytes, the fields in this order with nothing else between or behind them but the two
 * bytes of `reserved`. Offsets: length 0, data 4, reserved 5124, route 5128, status 5132, direction 5136. */
typedef struct MessageRecord {
    uint32_t length;                 /* valid bytes in data; 0: no message */
    uint8_t data[ZTDECODE_CAPACITY]; /* data[0] is the message type */
    uint16_t reserved;               /* upper byte: option type of the module being decoded, written by the decoders */
    uint32_t route;                  /* route code, written by the library */
    uint32_t status;                 /* written by the route decoders: 1 recognised, 2 unknown */
    uint32_t direction;              /* 1: to DHS; any other value, normally 0: from DHS */
} MessageRecord;

/* Switches: set by the host, read at every call. */
ZTDECODE_API extern uint8_t useColor;     /* not 0: decoded texts stand in ANSI colours, red to DHS, green from it */
ZTDECODE_API extern int audioOnly;        /* not 0: a message that is not an audio message gives an empty text */
ZTDECODE_API extern int debug;            /* not 0: entry traces on standard output */
ZTDECODE_API extern const char *Version;  /* "5.01"; for the host to show, not read inside */

/* ---- Trace-line readers ----------------------------------------------------------------------------------------
 *
 * Each takes one captured message in one layout and gives the text that `decode` gives for it. A text that does not
 * have the layout is answered with a text that says why; nothing is decoded then.
 *
 *   line            "LL B0 B1 ..."            LL bytes (1 to 255), every field two hexadecimal digits and a separator
 *   line_lng2       "LL HH B0 B1 ..."         LL + 256 * HH bytes; further groups may follow on the line
 *   line_tzt        "zt " and either of them
 *   line_spzt       six columns, "S" (from DHS) or "R" (to DHS), a separator, either of them from column 8
 *   line_spzt_lng2  the same, always two length bytes
 *
 * `line` and `line_lng2` share one record, so that bytes behind a short message are those of earlier lines.
 * Longer messages than 5120 bytes keep their first 5120.
 *
 * Owner: what `line` decoded is a heap text, its refusals are constants or buffers (a caller cannot tell them apart:
 * keep them all, or print and forget). line_lng2 always gives a buffer or a constant. line_tzt and line_spzt give what
 * the one that they call gives. */
ZTDECODE_API const char *line(const char *text, int direction);
ZTDECODE_API const char *line_lng2(const char *text, int direction);
ZTDECODE_API const char *line_tzt(const char *text, int direction);
ZTDECODE_API const char *line_spzt(const char *text);
ZTDECODE_API const char *line_spzt_lng2(const char *text);

/* Binary: a length byte and that many bytes at buf. Gives a heap text (an empty one for length 0). */
ZTDECODE_API char *decode_bin_lng1(const uint8_t *buf, int direction);

/* Binary: messages one behind the other, each behind two length bytes (low byte first), until `size` bytes are used up;
 * no byte from buf + size on is read. Each text ends in a newline. Gives a buffer. */
ZTDECODE_API const char *decode_bin_lng2(const uint8_t *buf, int direction, int size);

/* ---- Decoding one message --------------------------------------------------------------------------------------- */

/* The text of a message, super messages split: a heap text. For length 0 a constant empty text that must not be
 * released. The caller's record does not change. */
ZTDECODE_API char *decode(MessageRecord record);

/* Drops the first n bytes: length becomes n less and the rest moves to the front; the bytes behind the new end stay as
 * they are. With less than n bytes (n counts as unsigned): a line on standard error, and length becomes 0. */
ZTDECODE_API void decale(MessageRecord *record, int n);

/* A heap copy of the whole record. Without memory: "memory exhausted\n" on standard error and the end of the process,
 * status 1. */
ZTDECODE_API MessageRecord *msgdup(const MessageRecord *record);

/* Appends `text` to the text in `out` (which must have room for it and 11 more bytes for the colour), with one newline
 * less when it ends in two, in the colour of record.direction when useColor is set; then releases `text` with free().
 * A null text: nothing happens. */
ZTDECODE_API void print_clean_message(char *out, MessageRecord record, char *text);

/* ---- Route decoders -----------------------------------------------------------------------------------------------
 *
 * X2dhs: messages towards the system; dhs2X: messages from it. Each reads the record, sets its `status` (1 recognised,
 * 2 unknown; the OSI decoders leave it alone) and gives the text without any route prefix. */

/* Digital sets: heap texts, null for length 0. rn2dhs sets `route` to 9 for a hub's report and writes the upper byte of
 * `reserved`. dhs2rn writes the bytes of a message in segments to standard output each time one comes in. */
ZTDECODE_API char *rn2dhs(MessageRecord *record);
ZTDECODE_API char *dhs2rn(MessageRecord *record);

/* All others: buffers. */
ZTDECODE_API const char *ip2dhs(MessageRecord *record);  /* IP sets */
ZTDECODE_API const char *dhs2ip(MessageRecord *record);
ZTDECODE_API const char *he2dhs(MessageRecord *record);  /* HE sets; the record is without its three routing bytes */
ZTDECODE_API const char *dhs2he(MessageRecord *record);
ZTDECODE_API const char *hub2dhs(MessageRecord *record); /* hubs, with the set messages that they carry */
ZTDECODE_API const char *dhs2hub(MessageRecord *record);
ZTDECODE_API const char *ibs2dhs(MessageRecord *record); /* DECT bases */
ZTDECODE_API const char *dhs2ibs(MessageRecord *record);
ZTDECODE_API const char *cs2dhs(MessageRecord *record);  /* object protocol, call server */
ZTDECODE_API const char *dhs2cs(MessageRecord *record);
ZTDECODE_API const char *prs2dhs(MessageRecord *record); /* object protocol, presentation server */
ZTDECODE_API const char *dhs2prs(MessageRecord *record);
ZTDECODE_API const char *dbg2dhs(MessageRecord *record); /* debug channel */
ZTDECODE_API const char *dhs2dbg(MessageRecord *record);
ZTDECODE_API const char *osi2dhs(MessageRecord *record); /* OSI maintenance */
ZTDECODE_API const char *dhs2osi(MessageRecord *record);

/* Name of an application of HE sets, with a leading blank: a heap text. */
ZTDECODE_API char *apId(int id);

/* ---- Code tables ------------------------------------------------------------------------------------------------- */

ZTDECODE_API const char *type_poste(uint32_t code);   /* terminal model: constant */
ZTDECODE_API const char *design_poste(int value);     /* of the two low bits: constant */
ZTDECODE_API const char *ring_cadence(uint32_t code); /* constant */

/* " LABEL=1.05" (the first number hexadecimal): buffer. */
ZTDECODE_API const char *version_logiciel(const char *label, uint32_t major, uint32_t minor);

ZTDECODE_API const char *dec_err(uint32_t code);  /* error name, or the code in hexadecimal: buffer */
ZTDECODE_API const char *dec_selftest(int bits);  /* 32: ", self OK"; else what bits 0 to 4 call bad: buffer */
ZTDECODE_API const char *dec_warn(uint32_t code); /* warning name, or the code in hexadecimal: buffer */

/* Text of an audio-configuration message (data[0] the opcode): buffer. */
ZTDECODE_API const char *audio_config(MessageRecord record);

/* Whether a message of this direction and type byte may be shown: 1 unless audioOnly is set and it is no audio
 * message. */
ZTDECODE_API int inListAudioOpcodes(int direction, uint8_t type);

/* Always "download": constant. The record is not read. */
ZTDECODE_API const char *download(MessageRecord record);

/* ---- Option modules ----------------------------------------------------------------------------------------------
 *
 * The record is the whole message of the digital set: byte 0 its opcode, byte 1 the sub-device byte, byte 2 the module's
 * opcode. decode_X: module to system; decode_X_out: system to module. The texts are buffers. */
ZTDECODE_API const char *decode_z(MessageRecord *record);
ZTDECODE_API const char *decode_z_out(MessageRecord *record);
ZTDECODE_API const char *decode_mpc(MessageRecord *record);
ZTDECODE_API const char *decode_mpc_out(MessageRecord *record);
ZTDECODE_API const char *decode_eak(MessageRecord *record);
ZTDECODE_API const char *decode_eak_out(MessageRecord *record);
ZTDECODE_API const char *decode_ks(MessageRecord *record);
ZTDECODE_API const char *decode_ks_out(MessageRecord *record);
ZTDECODE_API const char *decode_v24(MessageRecord *record);
ZTDECODE_API const char *decode_v24_out(MessageRecord *record);
ZTDECODE_API const char *decode_s0(MessageRecord *record);
ZTDECODE_API const char *decode_s0_out(MessageRecord *record);

/* Splits a module's super message (byte 2 is 0x0B, then parts behind a length byte each) and lets `decoder`, one of the
 * functions above or one of the host's own, name each part. Gives a buffer. */
ZTDECODE_API const char *subSuper(MessageRecord *record, const char *(*decoder)(MessageRecord *));

/* @@OBJECT@@ */

/* @@CONVERT@@ */

#ifdef __cplusplus
}
#endif

#endif
