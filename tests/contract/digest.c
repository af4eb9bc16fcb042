#include "digest.h"

#include <string.h>

static void add(uint64_t* digest, const void* bytes, size_t size) {
    const unsigned char* at = bytes;
    const unsigned char* const end = at + size;
    while (at != end) *digest = (*digest ^ *at++) * 0x100000001B3U;
}

static void add_number(uint64_t* digest, uint64_t number) { add(digest, &number, sizeof number); }

static void add_string(uint64_t* digest, zt_string s) {
    add_number(digest, s.size);
    add(digest, s.data, s.size);
}

static void add_ranges(uint64_t* digest, zt_ranges ranges) {
    size_t k;
    add_number(digest, ranges.size);
    for (k = 0; k < ranges.size; ++k) {
        add_number(digest, ranges.data[k].first);
        add_number(digest, ranges.data[k].last);
    }
}

static void add_field(uint64_t* digest, const zt_field* field) {
    add_string(digest, field->name);
    add_string(digest, field->unit);
    add_string(digest, field->value);
    add_string(digest, field->shown);
    add_number(digest, (uint64_t)field->kind * 16 + (uint64_t)field->sensitivity);
    add_number(digest, (uint64_t)field->number);
    add_number(digest, field->divisor * 4U + field->known * 2U + field->missing);
    add_number(digest, field->begin);
    add_number(digest, field->end);
    add_ranges(digest, field->bytes);
}

static void add_word(uint64_t* digest, const zt_word* word) {
    add_string(digest, word->text);
    add_string(digest, word->field);
    add_ranges(digest, word->bytes);
    add_number(digest, word->begin);
    add_number(digest, word->end);
    add_number(digest, word->missing);
}

void add_record(uint64_t* digest, const zt_record* record) {
    const zt_field* field;
    const zt_word* word;
    const zt_record* part;
    size_t k;
    add_string(digest, record->text);
    add_string(digest, record->link);
    add_string(digest, record->message);
    add_number(digest, (uint64_t)record->direction * 16 + (uint64_t)record->outcome);
    add_number(digest, (uint64_t)record->code);
    add_number(digest, record->length);
    add_number(digest, record->unknown);
    add_number(digest, record->missing);
    add_number(digest, record->padded);
    add(digest, record->bytes.data, record->bytes.size);
    add_string(digest, record->trace);
    add_string(digest, record->complaints);
    for (k = 0; k < record->segments; ++k) add_number(digest, zt_segment_at(record, k));
    for (k = 0; (field = zt_field_at(record, k)) != NULL; ++k) add_field(digest, field);
    for (k = 0; (word = zt_word_at(record, k)) != NULL; ++k) add_word(digest, word);
    for (k = 0; (part = zt_part_at(record, k)) != NULL; ++k) add_record(digest, part);
}

zt_status add_line(uint64_t* digest, zt_session* session, const char* line) {
    const zt_line* fed;
    const zt_record* record;
    zt_status status = zt_feed_line(session, line, strlen(line), &fed);
    if (status != ZT_OK) return status;
    add_number(digest, (uint64_t)fed->kind);
    while ((status = zt_next_message(session, &record)) == ZT_OK) add_record(digest, record);
    add_number(digest, (uint64_t)fed->refusal);
    add_string(digest, fed->reason);
    return status == ZT_DONE || status == ZT_REFUSED ? ZT_OK : status;
}
