/* Sizes and offsets of every exported record: C99, so a size that is wrong is an array of -1 elements. */

#include <limits.h>
#include <stddef.h>

#include "ztdecode.h"

#define HOLDS(name, condition) typedef char name[(condition) ? 1 : -1]
#define SIZE(type, size) HOLDS(size_of_##type, sizeof(type) == (size))
#define AT(type, field, offset) HOLDS(type##_##field, offsetof(type, field) == (offset))
#define FIELD(type, field, offset, size) \
    AT(type, field, offset);             \
    HOLDS(size_of_##type##_##field, sizeof(((type*)0)->field) == (size))

HOLDS(bytes_of_8_bits, CHAR_BIT == 8);
HOLDS(known_width, sizeof(void*) == 4 || sizeof(void*) == 8);
#define POINTER sizeof(void*)
#define NARROW (sizeof(void*) == 4)

HOLDS(capacity, ZTDECODE_CAPACITY == 5120);
SIZE(MessageRecord, 5140);
FIELD(MessageRecord, length, 0, 4);
FIELD(MessageRecord, data, 4, 5120);
FIELD(MessageRecord, reserved, 5124, 2);
FIELD(MessageRecord, route, 5128, 4);
FIELD(MessageRecord, status, 5132, 4);
FIELD(MessageRecord, direction, 5136, 4);

SIZE(ztdecode_name_record, 31);
FIELD(ztdecode_name_record, code, 0, 1);
FIELD(ztdecode_name_record, name, 1, 30);

SIZE(ztdecode_property_record, 34);
FIELD(ztdecode_property_record, type, 0, 1);
FIELD(ztdecode_property_record, id, 1, 1);
FIELD(ztdecode_property_record, name, 2, 30);
FIELD(ztdecode_property_record, count, 32, 2);

SIZE(ztdecode_class_record, NARROW ? 36 : 40);
FIELD(ztdecode_class_record, opcode, 0, 1);
FIELD(ztdecode_class_record, name, 1, 31);
FIELD(ztdecode_class_record, properties, 32, POINTER);

SIZE(ztdecode_block_record, NARROW ? 12 : 16);
FIELD(ztdecode_block_record, first, 0, 4);
FIELD(ztdecode_block_record, last, 4, 4);
FIELD(ztdecode_block_record, name, 8, POINTER);

SIZE(ztdecode_glyph_record, NARROW ? 8 : 16);
FIELD(ztdecode_glyph_record, code, 0, 2);
FIELD(ztdecode_glyph_record, name, POINTER, POINTER);

SIZE(ztdecode_flex_row, 4);
FIELD(ztdecode_flex_row, character, 0, 1);
FIELD(ztdecode_flex_row, code, 1, 3);

HOLDS(value_types, ZTDECODE_INT32 == 0 && ZTDECODE_INT16 == 1 && ZTDECODE_INT8 == 2 && ZTDECODE_UINT32 == 4 &&
                       ZTDECODE_UINT16 == 5 && ZTDECODE_UINT8 == 6 && ZTDECODE_BOOL == 7 &&
                       ZTDECODE_UTF8 == 8);

/* The tables have as many rows as they have in memory. */
HOLDS(servers, sizeof Tab_Servers_def == 3 * 31);
HOLDS(methods, sizeof Tab_Methods_def == 8 * 31);
HOLDS(errors, sizeof Tab_Error_def == 22 * 31);
HOLDS(events, sizeof Tab_Events_Opcodes == 71 * 31);
HOLDS(classes, sizeof Tab_Classes_Opcodes == 40 * (NARROW ? 36 : 40));
HOLDS(properties, sizeof Tab_listbox == 32 * 34);
HOLDS(blocks, sizeof UnicodeBlock == 161 * (NARROW ? 12 : 16));
HOLDS(glyphs, sizeof tab_unicod == 289 * (NARROW ? 8 : 16));
HOLDS(flex_rows, sizeof FLEX_ASCII_TABLE == 260);
HOLDS(help, sizeof str_help == 20000);
HOLDS(input, sizeof in_buf == 3010);
HOLDS(values, sizeof nb_vals == 2);
HOLDS(color, sizeof useColor == 1);
HOLDS(position, sizeof app_idx == 4 && sizeof app_buf_size == 4 && sizeof hlp_idx == 4);

int main(void) { return 0; }
