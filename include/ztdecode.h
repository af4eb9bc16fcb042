/* libztdecode - readable texts for the signalling between a telephone system and its terminals.
 *
 * Conventions
 *  1. Every function is called from one thread at a time: the functions share one process-wide session,
 *     which remembers what one message teaches the next (module types, segments, current property table).
 *  2. Texts are C strings of bytes. Most are ASCII; quoted values are the bytes of the message as they
 *     came.
 *  3. Ownership is said with each function and is one of:
 *       heap      a block of its own; the caller releases it with free();
 *       buffer    lives in a buffer of that function until its next call; not to be released;
 *       constant  lives as long as the library; not to be released.
 *     Buffers and constants are there until dlclose, and every function may be called as long, in exit
 *     handlers too.
 *  4. Bytes behind a record's `length` are read as they stand in the record; bytes behind the 5120th read
 *     as 0. A `length` above 5120 counts as 5120.
 *  5. Nothing fails: an unknown value has a text of its own. A null record gives an empty text (null from
 *     the two functions that give null for a record of length 0), a null table of names an empty name, and
 *     a null text counts as an empty one where nothing else is said. When memory runs out a text is empty,
 *     or null where it would be a heap block. Three things end the process with exit(), as their hosts
 *     expect: msgdup and bo_OLD_CatchSegment without memory (status 1), and a class of the object protocol
 *     that does not exist, in a message or given to Lclass (status -1, which a shell shows as 255).
 *  6. Numbers have their natural alignment and the byte order of the machine in records; "direction" is 1
 *     for messages towards the system ("to DHS") and 0 for those from it; any other value is decoded like
 *     1, coloured and traced like 0.
 *  7. A message may carry others (super messages, hubs, segments, set emulations, super messages of
 *     modules), and those again. For all that one captured message carries there is one budget: 2560
 *     messages inside each other, 64 messages put together from segments, 16 MiB of text, 64 KiB of
 *     complaints on standard error. (Of the text, each part of a module's super message counts 16
 *     characters more, and what such a message writes over counts a sixteenth.) Where it is used up nothing
 *     more is carried; what was written stays. No message that a system sends comes near it. Decoding needs
 *     at most 1 MiB of stack.
 *  8. A call that fails for want of memory leaves no trace: later texts are as if it had not been made. Only
 *     app_buf may have begun anew.
 *  9. Names of characters come from the shared object libuninameslist.so. dlopen looks for it as it looks
 *     for any library (LD_LIBRARY_PATH, then the system's places); nothing else of the environment is read.
 * 10. Beside their texts, functions write to the standard streams only what is said with them, or with the
 *     function or switch that they hand a message to.
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

/* ---- Messages ------------------------------------------------------------------------------------------ */

#define ZTDECODE_CAPACITY 5120

/* One captured message: 5140 bytes, the fields in this order with nothing else between or behind them but
 * two unused bytes behind `reserved`. Offsets: length 0, data 4, reserved 5124, route 5128, status 5132,
 * direction 5136. */
typedef struct MessageRecord {
    uint32_t length;                 /* valid bytes in data; 0: no message */
    uint8_t data[ZTDECODE_CAPACITY]; /* data[0] is the message type */
    uint16_t reserved;               /* upper byte: option type of a module, written by rn2dhs */
    uint32_t route;                  /* route code, written by the library */
    uint32_t status;                 /* written by the route decoders: 1 recognised, 2 unknown */
    uint32_t direction;              /* 1: to DHS; 0: from DHS */
} MessageRecord;

/* Switches: set by the host, read at every call. */

/* Not 0: the text of each message, an empty one as well, stands in ANSI colours, red for direction 1, else
 * green. Of a super message these are the texts of its parts. Read by `decode`, and so by the readers, and
 * by print_clean_message. */
ZTDECODE_API extern uint8_t useColor;

/* Not 0: a message that is not an audio message (see inListAudioOpcodes) gives an empty text. Read by
 * `decode`. */
ZTDECODE_API extern int audioOnly;

/* Not 0: traces on standard output: a line at the entry of `decode` and another for each single message in
 * it, and further lines for the debug messages of IP sets and for every event of the object protocol that
 * has a body. */
ZTDECODE_API extern int debug;

ZTDECODE_API extern const char* Version; /* "5.01"; for the host to show, not read inside */

/* ---- Trace-line readers -----------------------------------------------------------------------------------
 *
 * Each takes one captured message in one layout and gives the text that `decode` gives for it. A text that
 * does not have the layout is answered with a text that says why, and nothing is decoded then; only
 * line_lng2 puts such a text in front when bytes lack ("line too short: expected: 14, real: 8, padded with
 * 0xff") and decodes the message with 0xff for each of them.
 *
 *   line            "LL B0 B1 ..."     LL bytes (1 to 255); a field is two hexadecimal digits, any character
 *                                      stands between two of them
 *   line_lng2       "LL HH B0 B1 ..."  LL + 256 * HH bytes; further groups may follow on the line, and their
 *                                      texts stand one behind the other, a newline between them
 *   line_tzt        "zt " and either of them: two length bytes when the second field is 0, or the line has
 *                   769 characters
 *   line_spzt       six columns, "S" (from DHS) or "R" (to DHS), any character, either of them from column 8:
 *                   two length bytes when the line is as long as they say, or has 100 characters
 *   line_spzt_lng2  the same, always two length bytes
 *
 * `line` and `line_lng2` share one record, so that bytes behind a short message are those of earlier
 * lines. Longer messages than 5120 bytes keep their first 5120.
 *
 * Owner: what `line` decoded is a heap text, its refusals are constants or buffers (a caller cannot tell
 * them apart: keep them all, or print and forget). line_lng2 always gives a buffer or a constant. line_tzt
 * and line_spzt give what the one that they call gives. */
ZTDECODE_API const char* line(const char* text, int direction);
ZTDECODE_API const char* line_lng2(const char* text, int direction);
ZTDECODE_API const char* line_tzt(const char* text, int direction);
ZTDECODE_API const char* line_spzt(const char* text);
ZTDECODE_API const char* line_spzt_lng2(const char* text);

/* Binary: a length byte and that many bytes at buf. Gives a heap text (an empty one for length 0). */
ZTDECODE_API char* decode_bin_lng1(const uint8_t* buf, int direction);

/* Binary: messages one behind the other, each behind two length bytes (low byte first), until `size` bytes
 * are used up; no byte from buf + size on is read. Each text ends in a newline. Gives a buffer. */
ZTDECODE_API const char* decode_bin_lng2(const uint8_t* buf, int direction, int size);

/* ---- Decoding one message ------------------------------------------------------------------------------ */

/* The text of a message, super messages split: a heap text. For length 0 a constant empty text that must
 * not be released. The caller's record does not change. Lengths in a message that run past its end may be
 * complained of on standard error as by decale. */
ZTDECODE_API char* decode(MessageRecord record);

/* Drops the first n bytes: length becomes n less and the rest moves to the front; the bytes behind the new
 * end stay as they are. With less than n bytes (n counts as unsigned) length becomes 0, and a line goes to
 * standard error: "decalage incorrect: demandé: 3, disponible: 2". */
ZTDECODE_API void decale(MessageRecord* record, int n);

/* A heap copy of the whole record; for null one of zeros. Without memory: "memory exhausted\n" on standard
 * error and the end of the process, status 1. */
ZTDECODE_API MessageRecord* msgdup(const MessageRecord* record);

/* Appends `text` to the text in `out` (which must have room for it, for 11 bytes of colour and for a zero
 * byte), with one newline less when it ends in two, in the colour of record.direction when useColor is
 * set; then releases `text`, a heap text, with free(). A null text: nothing happens. */
ZTDECODE_API void print_clean_message(char* out, MessageRecord record, char* text);

/* ---- Route decoders ---------------------------------------------------------------------------------------
 *
 * X2dhs: messages towards the system; dhs2X: messages from it. Each reads the record, sets its `status` (1
 * recognised, 2 unknown; the OSI decoders leave it alone) and gives the text without any route prefix. */

/* Digital sets: heap texts, null for length 0; length and data stay as they are. rn2dhs sets `route` to 9
 * for a hub's report and writes the upper byte of `reserved`. dhs2rn writes the bytes of a message in
 * segments, as far as they are known, to standard output each time a segment comes in. */
ZTDECODE_API char* rn2dhs(MessageRecord* record);
ZTDECODE_API char* dhs2rn(MessageRecord* record);

/* All others: buffers. Of the record they write `status` alone. */
ZTDECODE_API const char* ip2dhs(MessageRecord* record); /* IP sets */
ZTDECODE_API const char* dhs2ip(MessageRecord* record);
ZTDECODE_API const char* he2dhs(MessageRecord* record); /* HE sets, without their three routing bytes */
ZTDECODE_API const char* dhs2he(MessageRecord* record);
ZTDECODE_API const char* hub2dhs(MessageRecord* record); /* hubs, with the set messages that they carry */
ZTDECODE_API const char* dhs2hub(MessageRecord* record);
ZTDECODE_API const char* ibs2dhs(MessageRecord* record); /* DECT bases */
ZTDECODE_API const char* dhs2ibs(MessageRecord* record);
ZTDECODE_API const char* cs2dhs(MessageRecord* record); /* object protocol, call server */
ZTDECODE_API const char* dhs2cs(MessageRecord* record);
ZTDECODE_API const char* prs2dhs(MessageRecord* record); /* object protocol, presentation server */
ZTDECODE_API const char* dhs2prs(MessageRecord* record);
ZTDECODE_API const char* dbg2dhs(MessageRecord* record); /* debug channel */
ZTDECODE_API const char* dhs2dbg(MessageRecord* record);
ZTDECODE_API const char* osi2dhs(MessageRecord* record); /* OSI maintenance */
ZTDECODE_API const char* dhs2osi(MessageRecord* record);

/* Name of an application of HE sets, or its number in hexadecimal, with a leading blank: a heap text. */
ZTDECODE_API char* apId(int id);

/* ---- Code tables --------------------------------------------------------------------------------------- */

ZTDECODE_API const char* type_poste(uint32_t code);   /* terminal model: constant */
ZTDECODE_API const char* design_poste(int value);     /* of the two low bits: constant */
ZTDECODE_API const char* ring_cadence(uint32_t code); /* constant */

/* " LABEL=1.05" (the first number hexadecimal): buffer. */
ZTDECODE_API const char* version_logiciel(const char* label, uint32_t major, uint32_t minor);

ZTDECODE_API const char* dec_err(uint32_t code); /* error name, or the code in hexadecimal: buffer */
ZTDECODE_API const char* dec_selftest(int bits); /* 32: ", self OK"; else what bits 0 to 4 call bad: buffer */
ZTDECODE_API const char* dec_warn(uint32_t code); /* warning name, or the code in hexadecimal: buffer */

/* Text of an audio-configuration message (data[0] the opcode): buffer. A list without a device shows the
 * last one that had any, of an earlier message too. */
ZTDECODE_API const char* audio_config(MessageRecord record);

/* Whether a message of this direction and type byte may be shown: 1 unless audioOnly is set and it is no
 * audio message. */
ZTDECODE_API int inListAudioOpcodes(int direction, uint8_t type);

/* Always "download": constant. The record is not read. */
ZTDECODE_API const char* download(MessageRecord record);

/* ---- Option modules ---------------------------------------------------------------------------------------
 *
 * The record is the whole message of the digital set: byte 0 its opcode, byte 1 the sub-device byte, byte
 * 2 the module's opcode. decode_X: module to system; decode_X_out: system to module. The texts are
 * buffers; the record stays as it is. */
ZTDECODE_API const char* decode_z(MessageRecord* record);
ZTDECODE_API const char* decode_z_out(MessageRecord* record);
ZTDECODE_API const char* decode_mpc(MessageRecord* record);
ZTDECODE_API const char* decode_mpc_out(MessageRecord* record);
ZTDECODE_API const char* decode_eak(MessageRecord* record);
ZTDECODE_API const char* decode_eak_out(MessageRecord* record);
ZTDECODE_API const char* decode_ks(MessageRecord* record);
ZTDECODE_API const char* decode_ks_out(MessageRecord* record);
ZTDECODE_API const char* decode_v24(MessageRecord* record);
ZTDECODE_API const char* decode_v24_out(MessageRecord* record);
ZTDECODE_API const char* decode_s0(MessageRecord* record);
ZTDECODE_API const char* decode_s0_out(MessageRecord* record);

/* Splits a module's super message (byte 2 is 0x0B, which is not looked at, then parts behind a length byte
 * each) and lets `decoder`, one of the functions above or one of the host's own, name each part, a line of
 * the text. The decoder gets a module message like the others, in a record that lives as long as its call:
 * byte 1 is the length of the part, byte 2 its first byte. The text that it gives is copied at once (null
 * counts as empty); it may call every function here, but has to return: leaving it by longjmp or by an
 * exception is not allowed. Lengths that run past the message are complained of
 * on standard error as by decale. Gives a buffer. */
ZTDECODE_API const char* subSuper(MessageRecord* record, const char* (*decoder)(MessageRecord*));

/* ---- Object protocol: tables --------------------------------------------------------------------------- */

/* The vocabulary of the object protocol, as rows that end with a sentinel of code 255. A search takes the
 * first row of a code; the order of the rows is not that of the codes. Nothing here is ever written. */

/* Records are packed byte arrays: they may lie at any address. */
#if defined(__GNUC__)
#define ZTDECODE_PACKED __attribute__((packed))
#else
#define ZTDECODE_PACKED
#endif

/* 31 bytes. */
typedef struct ztdecode_name_record {
    uint8_t code;  /* 255: sentinel, "(reserved_error)" */
    char name[30]; /* ends with at least one zero byte and is filled up with them, like every name below */
} ZTDECODE_PACKED ztdecode_name_record;

/* Value types of properties. */
enum ztdecode_value_type {
    ZTDECODE_INT32 = 0,  /* four bytes, shown in hexadecimal as they come */
    ZTDECODE_INT16 = 1,  /* two bytes, likewise */
    ZTDECODE_INT8 = 2,   /* one signed byte, shown in decimal */
    ZTDECODE_UINT32 = 4, /* like INT32; there is no type 3 */
    ZTDECODE_UINT16 = 5, /* like INT16 */
    ZTDECODE_UINT8 = 6,  /* one byte, shown in decimal */
    ZTDECODE_BOOL = 7,   /* one byte, zero is false */
    ZTDECODE_UTF8 = 8    /* text */
};

/* 34 bytes. */
typedef struct ztdecode_property_record {
    uint8_t type; /* enum ztdecode_value_type */
    uint8_t id;   /* 0x80 and above: indexed property; 255: sentinel, "(property_error)" of type 0 */
    char name[30];
    uint16_t count; /* elements of a class's indexed property, else 0; at offset 32, machine's byte order */
} ZTDECODE_PACKED ztdecode_property_record;

/* 36 bytes where a pointer has 4, 40 where it has 8. */
typedef struct ztdecode_class_record {
    uint8_t opcode; /* below 0x80: one object a terminal; else objects have ids; 255: sentinel */
    char name[31];
    const ztdecode_property_record* properties; /* at offset 32; null for the sentinel */
} ZTDECODE_PACKED ztdecode_class_record;

/* 12 bytes where a pointer has 4, 16 where it has 8. */
typedef struct ztdecode_block_record {
    uint32_t first; /* code points */
    uint32_t last;
    const char* name;
} ztdecode_block_record;

/* 8 bytes where a pointer has 4, 16 where it has 8. */
typedef struct ztdecode_glyph_record {
    uint16_t code;    /* code point; 0xB000: sentinel, "UTF8_LABEL_NOT_FOUND" */
    const char* name; /* UTF-8 */
} ztdecode_glyph_record;

/* Servers, methods (5 and 6 stand in the order 6, 5), error codes and events; the counts include the
 * sentinel. */
ZTDECODE_API extern const ztdecode_name_record Tab_Servers_def[3];
ZTDECODE_API extern const ztdecode_name_record Tab_Methods_def[8];
ZTDECODE_API extern const ztdecode_name_record Tab_Error_def[22];
ZTDECODE_API extern const ztdecode_name_record Tab_Events_Opcodes[71];

/* Classes and, for each of them, its properties. */
ZTDECODE_API extern const ztdecode_class_record Tab_Classes_Opcodes[40];
ZTDECODE_API extern const ztdecode_property_record Tab_context[3];
ZTDECODE_API extern const ztdecode_property_record Tab_terminal[27];
ZTDECODE_API extern const ztdecode_property_record Tab_keyboard[12];
ZTDECODE_API extern const ztdecode_property_record Tab_audioconfig[8];
ZTDECODE_API extern const ztdecode_property_record Tab_leds[6];
ZTDECODE_API extern const ztdecode_property_record Tab_screen[21];
ZTDECODE_API extern const ztdecode_property_record Tab_date[10];
ZTDECODE_API extern const ztdecode_property_record Tab_AOMV[10];
ZTDECODE_API extern const ztdecode_property_record Tab_bluetooth[8];
ZTDECODE_API extern const ztdecode_property_record Tab_callstate[7];
ZTDECODE_API extern const ztdecode_property_record Tab_resource[6];
ZTDECODE_API extern const ztdecode_property_record Tab_widgets_default[4];
ZTDECODE_API extern const ztdecode_property_record Tab_framebox[18];
ZTDECODE_API extern const ztdecode_property_record Tab_tabbox[19];
ZTDECODE_API extern const ztdecode_property_record Tab_listbox[32];
ZTDECODE_API extern const ztdecode_property_record Tab_actionlistbox[21];
ZTDECODE_API extern const ztdecode_property_record Tab_textbox[23];
ZTDECODE_API extern const ztdecode_property_record Tab_actionbox[17];
ZTDECODE_API extern const ztdecode_property_record Tab_inputbox[31];
ZTDECODE_API extern const ztdecode_property_record Tab_checkbox[21];
ZTDECODE_API extern const ztdecode_property_record Tab_datebox[18];
ZTDECODE_API extern const ztdecode_property_record Tab_timerbox[25];
ZTDECODE_API extern const ztdecode_property_record Tab_popupbox[16];
ZTDECODE_API extern const ztdecode_property_record Tab_dialogbox[26];
ZTDECODE_API extern const ztdecode_property_record Tab_sliderbar[22];
ZTDECODE_API extern const ztdecode_property_record Tab_progressbar[19];
ZTDECODE_API extern const ztdecode_property_record Tab_imagebox[17];
ZTDECODE_API extern const ztdecode_property_record Tab_iconbox[13];
ZTDECODE_API extern const ztdecode_property_record Tab_AOMVbox[13];
ZTDECODE_API extern const ztdecode_property_record Tab_telephonicbox[15];
ZTDECODE_API extern const ztdecode_property_record Tab_keyboard_context[14];
ZTDECODE_API extern const ztdecode_property_record Tab_AOMEL[13];
ZTDECODE_API extern const ztdecode_property_record Tab_AOM10[11];
ZTDECODE_API extern const ztdecode_property_record Tab_AOM40[11];
ZTDECODE_API extern const ztdecode_property_record Tab_idletimer[3];
ZTDECODE_API extern const ztdecode_property_record Tab_telephonicboxitem[7];
ZTDECODE_API extern const ztdecode_property_record Tab_bluetooth_device[10];
ZTDECODE_API extern const ztdecode_property_record Tab_headerbox[15];
ZTDECODE_API extern const ztdecode_property_record Tab_ime_context[11];

/* Properties that events carry. */
ZTDECODE_API extern const ztdecode_property_record Tab_RESET[16];
ZTDECODE_API extern const ztdecode_property_record Tab_TABBOX[3];
ZTDECODE_API extern const ztdecode_property_record Tab_LISTBOX[3];
ZTDECODE_API extern const ztdecode_property_record Tab_INPUTBOX_FOCUS_LOST[2];
ZTDECODE_API extern const ztdecode_property_record Tab_SLIDERBAR[2];
ZTDECODE_API extern const ztdecode_property_record Tab_BT_BONDED_DEVICE[4];
ZTDECODE_API extern const ztdecode_property_record Tab_BT_INQUIRY_RESULT[3];
ZTDECODE_API extern const ztdecode_property_record Tab_BT_NAME_DISCOVERY[3];
ZTDECODE_API extern const ztdecode_property_record Tab_IME_LIST[3];
ZTDECODE_API extern const ztdecode_property_record Tab_IME_CHANGE[2];
ZTDECODE_API extern const ztdecode_property_record Tab_IME_OPEN[2];
ZTDECODE_API extern const ztdecode_property_record Tab_IME_REMOTEOPEN[2];

/* Blocks of the Basic Multilingual Plane, ascending; no sentinel, the last one ends at 0xFFFF. */
ZTDECODE_API extern const ztdecode_block_record UnicodeBlock[161];

/* Names of the terminals' own characters and keys, U+E000 to U+E139. */
ZTDECODE_API extern const ztdecode_glyph_record tab_unicod[289];

/* ---- Object protocol: look-ups ------------------------------------------------------------------------- */

/* Each searches a table of the layouts above, this library's or the host's own, and gives a name in it (a
 * constant here): that of the first row of the code, or of the sentinel. A code that is no byte has no
 * row. */
ZTDECODE_API const char* Look(int code, const ztdecode_name_record* table);

/* Makes the class's properties the current ones, which answers are decoded with until the next class is
 * looked up, in a message as well: a host's own table has to stay as long. A class without properties (the
 * sentinel's) ends the process, status -1, after "\nError class lookup table ptr" was appended to app_buf. */
ZTDECODE_API const char* Lclass(int code, const ztdecode_class_record* table);

/* Stores the number of elements and the value type as well (null: not wanted); 0 and 0 for an unknown id. */
ZTDECODE_API const char* Lprop(int id, const ztdecode_property_record* table, uint16_t* count_out,
                               uint8_t* type_out);

/* The help text: every class with its properties. hlp_idx is where the next `ph` writes. */
#define ZTDECODE_HELP_SIZE 20000
ZTDECODE_API extern char str_help[ZTDECODE_HELP_SIZE];
ZTDECODE_API extern uint32_t hlp_idx;

/* Appends to str_help at hlp_idx like printf, cut at its end, and moves hlp_idx by what was written. */
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
ZTDECODE_API void
ph(const char* format, ...);

/* Writes the whole help text to str_help from its beginning, hlp_idx becomes its length (15133
 * characters); the last class becomes the current one. Gives 0. */
ZTDECODE_API int ClassProp_Help(void);

/* A name for a character: of `table` (tab_unicod, or null for none), else of libuninameslist.so, which is
 * opened at the first need and stays open, else its block with its code, "Greek Extended-U+1F16", else
 * "???". Constant, but the block's name lives in a buffer. */
ZTDECODE_API const char* LookUtf8(uint32_t code_point, const ztdecode_glyph_record* table);

/* ---- Object protocol: the application buffer ----------------------------------------------------------- */

/* The texts of the functions below are appended to app_buf at app_idx, which is the text's length. The
 * buffer is made by the first output, grows by 200000 bytes at a time and never shrinks; it may move with
 * every output. Without memory for it a text is dropped. A C string as long as nothing was cut (see `p`) and
 * no zero byte was printed: one that a value's text has inside a character (after its first byte, also where
 * the value ends and zeros follow) stays in the buffer and counts in app_idx. As a C string, and so in every
 * text that a function gives, the message ends there.
 *
 * Every message of the object protocol (routes 21 and 22) that any function of this library decodes begins
 * app_buf anew: afterwards it holds that message's text, without label and prefix, and app_idx is its
 * length. */
ZTDECODE_API extern char* app_buf;         /* null until the first output; a malloc block */
ZTDECODE_API extern uint32_t app_buf_size; /* bytes at app_buf */
ZTDECODE_API extern uint32_t app_idx;      /* where the next text goes; a host may set it, 0 begins anew */

/* Appends one item like printf and gives where it stands in app_buf, until the next output (null without
 * memory). An item above 9999 characters is cut there, but app_idx moves by its whole length: zeros stand
 * where the rest would be, and as a C string the buffer ends there. Above 10000 "\nLine too long,
 * truncated\n" goes to standard error, too. */
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
ZTDECODE_API char*
p(const char* format, ...);

/* Releases the buffer and sets app_buf, app_buf_size and app_idx to null and 0. */
ZTDECODE_API void vFreeApplicationBuffer(void);

/* ---- Object protocol: messages ------------------------------------------------------------------------- */

/* Common to all: nothing is read behind the given length, bytes from there on count as 0. A null pointer
 * or a length below 0 means no bytes. A message of an unknown class ends the process, status -1, with the
 * text so far and "\nError class lookup table ptr" in app_buf. */

/* A command of the system to a terminal, and an event of a terminal: byte 0 is the server. app_buf begins
 * anew; they give app_buf, which stays the library's. */
ZTDECODE_API const char* analyse_cmd_pbx(const uint8_t* bytes, int length);
ZTDECODE_API const char* analyse_cmd_term(const uint8_t* bytes, int length);

/* A framed message of `length` bytes: bytes 0 and 1 its own length, byte 2 what it is. `direction` 'S':
 * from the system to the terminal, any other value: to the system. Gives 1.
 *   0x15, 0x16  a message of the object protocol, from byte 0 on: app_buf begins anew with its text
 *   0x0C        a segment, see boCatchSegment; the last one decodes the series without its last two bytes,
 *               its length in 16 bits, and app_buf begins anew with its text; any other one prints nothing.
 *               Header or value, what lies behind that length is read from the bytes that were gathered
 *               there, and counts as 0 behind them
 *   else        messages as decode_bin_lng2 takes them: a dump line, "Pbx_ZT_message" or "Term_ZT_message",
 *               and their texts in braces are appended to app_buf, in this order. An object-protocol message
 *               among them begins app_buf anew while it is decoded: then the lines before the texts are gone,
 *               and the texts follow its own
 * Texts that are together too long for `p` are cut as there. Without memory what the frame appended is taken
 * back. */
ZTDECODE_API int analyse_cmd(const uint8_t* frame, int length, int direction);

/* Result of the last segment that analyse_cmd took: not 0 when it made a series whole. */
ZTDECODE_API extern int boDisplayResult;

/* Takes one segment: bytes 0 and 1 its length L, byte 3 how many are still to come, with bit 7 in the
 * first one of a series; L - 2 bytes from byte 4 on are its payload. Gives 1 for the last one, whose
 * series is then whole, and 0 for every other. L is read from the two numbers as "%X%X" writes byte 1 and
 * byte 0: 05 01 is 0x15. A segment in the middle counts as long as the first one. At most L + 2 bytes are
 * read at `frame`, at least 4; what a series counts and no segment brought is 0. Of a series the first
 * 131072 bytes are kept. bo_OLD_CatchSegment leaves the first two payload bytes in their order, where
 * boCatchSegment swaps them, and sets the first byte of a whole series to 0; without memory it ends the
 * process, status 1. */
ZTDECODE_API int boCatchSegment(const uint8_t* frame);
ZTDECODE_API int bo_OLD_CatchSegment(const uint8_t* frame);

/* Keeps the text of the series' bytes (each function that makes a series whole does so itself); forgets
 * the bytes; forgets the text. analyse_cmd forgets the bytes of a series that it has decoded. */
ZTDECODE_API void vSaveLastReconstructedCmd(void);
ZTDECODE_API void vFreeReconstructedCmd(void);
ZTDECODE_API void vFreeLastReconstructedCmd(void);

/* Appends a property: name, and value unless `value` is null. `tag` is its id, `index` counts for ids with
 * bit 7 set. The table is this library's or the host's own; null: nothing is appended. */
ZTDECODE_API void vDecodeTLV(uint8_t tag, uint8_t index, int length, const uint8_t* value,
                             const ztdecode_property_record* table);

/* Appends the body of an event of a terminal; nothing for an event without one. Writes a trace line to
 * standard output when `debug` is set. */
ZTDECODE_API void vDecodeEvent(uint8_t event, const uint8_t* body, int length);

/* Appends the dump line of a frame. */
ZTDECODE_API void vDsipTLV(const char* banner, const uint8_t* frame, int length);

/* Appends a text in double quotes: mode 1 its characters, mode 0 the names of those beyond ASCII. Gives 1
 * when there are such characters, else 0. */
ZTDECODE_API int printUTF8str(const uint8_t* bytes, int length, int mode);

/* Appends one character, "$" for what is not printable ASCII. */
ZTDECODE_API void vPutf8char(uint8_t c);

/* Reads hexadecimal numbers, apart by blanks, tabs and line ends, into in_buf and counts them in nb_vals
 * (at most 2998). A number of more than two characters behind the first one, and one number too many,
 * leave a complaint in app_buf and 0 in nb_vals. */
#define ZTDECODE_INPUT_SIZE 3010
ZTDECODE_API extern uint8_t in_buf[ZTDECODE_INPUT_SIZE];
ZTDECODE_API extern uint16_t nb_vals;
ZTDECODE_API void convert_line(const char* text);

/* ---- Character-set and key-code conversion ------------------------------------------------------------- */

/* Number of rows of FLEX_ASCII_TABLE. */
#define ZTDECODE_FLEX_ROWS 65

/* One character and its two-digit code: 4 bytes. */
typedef struct ztdecode_flex_row {
    char character;
    char code[3]; /* C string: two upper-case hexadecimal digits; newline and return: the character itself */
} ztdecode_flex_row;

/* In this order: blank, newline, carriage return, the digits, A-Z, a-z. Constant. */
ZTDECODE_API extern const ztdecode_flex_row FLEX_ASCII_TABLE[ZTDECODE_FLEX_ROWS];

/* The code of character c in FLEX_ASCII_TABLE: "41" for 'A'; the blank's "20" for one without a row.
 * Result: constant. */
ZTDECODE_API const char* FLEX_GetAsciiCode(char c);

/* A command line as it is typed, with its line end, as a line of hexadecimal bytes for the terminal:
 *   "id\n"         "zt 0x03 0x18 0x69 0x64\r"   also lines that begin with "d " or "phonemodel"; the last
 *                                               character is taken for the line end whatever it is
 *   "zt 12 00 34"  "zt 0x12 0x34"               characters 6, 7 and 8 (counted from 0) of such a line are
 *                                               dropped
 *   "zt 12\n"      "zt 0x12\n\r"                a return ends the text of six to eight characters
 *   "hello\n"      the same pointer again
 * A newline or return inside a line of the first kind ends the text there. Lines of any length are
 * converted whole.
 * Result: buffer, or `line` itself for every other line; an empty constant for a null line or without
 * memory.
 * Side output: the first kind writes "TRZ DEBUG : FLEX CONVERTION [<result>]" and a newline to standard
 * output. */
ZTDECODE_API const char* TOFLEX_Convert(const char* line);

/* A line with "ZT 0x" values as a line of plain byte values:
 *   "ZT 0x1 0x2A"                 "zt3 : R 01 2A "
 *   "12:00 ZT 0x3 0x18\r\n"       "zt3 : R 03 18 "
 *   "no such thing"               "no such thing"   a copy
 * The values are one or two digits long, one blank apart, up to the end of the line or the first value
 * that has no "0x". The text ends at the position where the reading of the values ended, not where the
 * writing did: it may lose its last blank ("ZT 0x12" gives "zt3 : R 12"), and may show characters that an
 * earlier, longer result left there.
 * Result: buffer; an empty constant for a null line or without memory. */
ZTDECODE_API const char* FROMFLEX_Convert(const char* line);

/* A key as a user names it, as its key code (0 to 79) and the kind of press:
 *   "5"        "5 short"          one of 0-9 * # R B M F U - + H o l r d u m h D: codes 0 to 27
 *   "5l"       "5 long"           an "l" as second character: long
 *   "p 3"      "31 short"         programmable key 0-5: 28 to 33
 *   "s 9"      "43 short"         soft key 0-9: 34 to 43
 *   "x e"      "48 short"         special key f h a s e v b: 44 to 50, l: 79
 *   "a q"      "61 short"         letter, in the order of an AZERTY keyboard: 51 to 76; control
 *                                 characters: 44 to 50
 *   "a Q"      "61 shift short"
 *   "hook on"  " onhook "         "hook" in any case
 * A key without a code leaves " short" or " long" alone. `text` is split at its blanks and tabs in place:
 * it must be writable and holds its first word afterwards.
 * Result: buffer; an empty text for a null text. */
ZTDECODE_API const char* Convert_kb_To_key(char* text);

/* ---- Screen files and texts ---------------------------------------------------------------------------- */

/* Copies the body of a screen file, its first four lines, to another file. A first line that begins with
 * "<GOO" or "<BA" is a verdict and not copied. Lines of more than 1023 characters count as several. Both
 * files are opened, and `out_path` emptied, before anything is said.
 * Result: of closing the output, 0 or EOF; when a file cannot be opened, of writing "A_Convert_scr :
 * Screen File error" and a newline to standard error: the number of characters, or a negative number. */
ZTDECODE_API int A_Convert_scr(const char* in_path, const char* out_path);

/* Compares up to four lines of two screen files and writes, for each pair, the characters of the first
 * file where the two differ and blanks where they are equal, as far as the shorter line goes. No newline
 * is added: equal line ends become a blank like every other character. A verdict as first line (as above)
 * is passed over in either file, unless nothing follows it. Lines of more than 2047 characters count as
 * several.
 * Result: of the last close, 0 or EOF; 0 when `path_a` cannot be opened. No messages. */
ZTDECODE_API int A_Diff_scr(const char* path_a, const char* path_b, const char* out_path);

/* 1 when `text` begins with `pattern`, or with the first `limit` characters of it if `limit` is not 0;
 * else 0. A "*" in either of them matches any one character; a newline that ends the pattern does not
 * count.
 *   "AB*D\n", "ABCD", 0   1          "AB*D\n", "ABC", 0   0          "abc", "abX", 2   1
 * A null pointer gives 0 and "WIRK_WARNING : bGenericStrCmp :  NULL string, returning FALSE" with a
 * newline on standard output. */
ZTDECODE_API int bGenericStrCmp(const char* pattern, const char* text, unsigned int limit);

/* Value of a hexadecimal digit of either case; 0 for every other character. */
ZTDECODE_API int hexdigint(char c);

/* Value of the first `count` characters of `text` as hexadecimal digits; 0 for a count below 1 or a null
 * text. A character that is no digit counts as 0 ("1G": 16), and so does what a text that is shorter than
 * `count` lacks. Only the low 32 bits are kept. */
ZTDECODE_API int hextoint(const char* text, int count);

#ifdef __cplusplus
}
#endif

#endif
