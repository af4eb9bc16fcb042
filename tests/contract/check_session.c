/* Sessions: what is given, and what is answered to a host that hands over what it should not. */

#include <string.h>

#include "checks.h"

static int is(zt_string s, const char* expected) {
    return s.data != NULL && s.size == strlen(expected) && memcmp(s.data, expected, s.size) == 0;
}

static const zt_record* untouched(void) {
    static const uint8_t somewhere;
    return (const zt_record*)(const void*)&somewhere;
}

static void check_names(void) {
    SAME_TEXT(call(zt_version)(), ZT_VERSION);
    SAME_TEXT(call(zt_status_text)(ZT_OK), "done as asked");
    SAME_TEXT(call(zt_status_text)(ZT_NO_MEMORY), "there is no memory for this");
    SAME_TEXT(call(zt_status_text)((zt_status)7), "unknown status");
    SAME_TEXT(call(zt_outcome_name)(ZT_LEFT_OUT), "left_out");
    SAME_TEXT(call(zt_kind_name)(ZT_ADDRESS), "address");
    SAME_TEXT(call(zt_sensitivity_name)(ZT_TELLS_NOTHING), "none");
    SAME_TEXT(call(zt_refusal_name)(ZT_REFUSED_TOO_SHORT), "too_short");
    HOLDS(call(zt_outcome_name)((zt_outcome)4) == NULL);
    HOLDS(call(zt_kind_name)((zt_kind)7) == NULL);
    HOLDS(call(zt_sensitivity_name)((zt_sensitivity)6) == NULL);
    HOLDS(call(zt_refusal_name)((zt_refusal)7) == NULL);
}

static void check_message(zt_session* session) {
    static const uint8_t hub[] = {0x14, 0x10, 0x21, 0x04, 0x03};
    const zt_record* record = NULL;
    const zt_record* led = NULL;
    const zt_field* field = NULL;
    const zt_word* word = NULL;
    SAME_NUMBER(call(zt_decode)(session, hub, sizeof hub, ZT_FROM_SYSTEM, &record), ZT_OK);
    HOLDS(record != NULL);
    if (record == NULL) return;
    HOLDS(is(record->text, "\tHUB -  to set 1\t- green led 3 ON"));
    HOLDS(is(record->link, "hub"));
    SAME_NUMBER(record->outcome, ZT_DECODED);
    SAME_NUMBER(record->parts, 1);
    led = call(zt_part_at)(record, 0);
    HOLDS(led != NULL && call(zt_part_at)(record, 1) == NULL);
    if (led == NULL) return;
    HOLDS(is(led->message, "led"));
    SAME_NUMBER(led->bytes.size, 3);
    HOLDS(led->bytes.data[2] == 3);
    field = call(zt_find_field)(led, "led");
    HOLDS(field != NULL && field == call(zt_field_at)(led, 0) && call(zt_field_at)(led, 1) == NULL);
    if (field == NULL) return;
    HOLDS(is(field->value, "3"));
    SAME_NUMBER(field->number, 3);
    SAME_NUMBER(field->divisor, 1);
    SAME_NUMBER(field->bytes.size, 1);
    SAME_NUMBER(field->bytes.data[0].first, 2);
    word = call(zt_word_at)(led, 2);
    HOLDS(word != NULL && is(word->text, "3") && is(word->field, "led"));
    HOLDS(call(zt_word_at)(led, led->words) == NULL);
    HOLDS(call(zt_find_field)(led, "lamp") == NULL);
    SAME_NUMBER(call(zt_segment_at)(led, 0), 0);
}

static void check_lines(zt_session* session) {
    static const char two[] = "01 00 2a 03 00 21 04 03";
    static const char wrong[] = "081231S 03 21 04";
    const zt_line* line = NULL;
    const zt_record* record = NULL;
    SAME_NUMBER(call(zt_next_message)(session, &record), ZT_DONE);
    SAME_NUMBER(call(zt_feed_line)(session, two, sizeof two - 1, &line), ZT_OK);
    SAME_NUMBER(line->kind, ZT_LINE_MESSAGES);
    SAME_NUMBER(call(zt_next_message)(session, &record), ZT_OK);
    HOLDS(is(record->text, "\t- version inquiry"));
    SAME_NUMBER(call(zt_next_message)(session, &record), ZT_OK);
    HOLDS(is(record->text, "\t- green led 3 ON"));
    SAME_NUMBER(call(zt_next_message)(session, &record), ZT_DONE);
    HOLDS(record == NULL);

    SAME_NUMBER(call(zt_feed_line)(session, wrong, sizeof wrong - 1, &line), ZT_OK);
    SAME_NUMBER(line->kind, ZT_LINE_REFUSED);
    SAME_NUMBER(line->refusal, ZT_REFUSED_TOO_SHORT);
    HOLDS(is(line->reason, "-> line too short") && is(line->columns, "081231"));
    SAME_NUMBER(call(zt_next_message)(session, &record), ZT_REFUSED);
    SAME_NUMBER(call(zt_next_message)(session, &record), ZT_DONE);
    /* Nobody has to look at the line. */
    SAME_NUMBER(call(zt_feed_line)(session, two, sizeof two - 1, NULL), ZT_OK);
    SAME_NUMBER(call(zt_feed_line)(session, NULL, 0, &line), ZT_OK);
    SAME_NUMBER(line->kind, ZT_LINE_BLANK);
}

static void check_bad_arguments(zt_session* session) {
    const uint8_t byte = 0x2a;
    const zt_record* record = untouched();
    const zt_line* line = NULL;
    SAME_NUMBER(call(zt_decode)(NULL, &byte, 1, ZT_FROM_SYSTEM, &record), ZT_BAD_ARGUMENT);
    HOLDS(record == NULL);
    SAME_NUMBER(call(zt_decode)(session, &byte, 1, ZT_FROM_SYSTEM, NULL), ZT_BAD_ARGUMENT);
    SAME_NUMBER(call(zt_decode)(session, NULL, 1, ZT_FROM_SYSTEM, &record), ZT_BAD_ARGUMENT);
    SAME_NUMBER(call(zt_decode)(session, &byte, 1, (zt_direction)2, &record), ZT_BAD_ARGUMENT);
    SAME_NUMBER(call(zt_decode)(session, NULL, 0, ZT_TO_SYSTEM, &record), ZT_OK);
    HOLDS(record != NULL && record->length == 0 && record->bytes.data == NULL && is(record->text, ""));
    SAME_NUMBER(call(zt_feed_line)(NULL, "", 0, &line), ZT_BAD_ARGUMENT);
    SAME_NUMBER(call(zt_feed_line)(session, NULL, 1, &line), ZT_BAD_ARGUMENT);
    HOLDS(line == NULL);
    record = untouched();
    SAME_NUMBER(call(zt_next_message)(NULL, &record), ZT_BAD_ARGUMENT);
    HOLDS(record == NULL);
    SAME_NUMBER(call(zt_next_message)(session, NULL), ZT_BAD_ARGUMENT);
    HOLDS(call(zt_field_at)(NULL, 0) == NULL);
    HOLDS(call(zt_word_at)(NULL, 0) == NULL);
    HOLDS(call(zt_part_at)(NULL, 0) == NULL);
    HOLDS(call(zt_find_field)(NULL, "led") == NULL);
    SAME_NUMBER(call(zt_segment_at)(NULL, 0), 0);
}

static void check_bad_options(zt_session* session) {
    zt_options options = ZT_OPTIONS_INIT;
    zt_session* other = session;
    SAME_NUMBER(call(zt_session_create)(NULL, NULL), ZT_BAD_ARGUMENT);
    SAME_NUMBER(call(zt_session_set_options)(NULL, &options), ZT_BAD_ARGUMENT);
    options.size = 0;
    SAME_NUMBER(call(zt_session_create)(&options, &other), ZT_BAD_SIZE);
    HOLDS(other == NULL);
    SAME_NUMBER(call(zt_session_set_options)(session, &options), ZT_BAD_SIZE);
    options.size = sizeof options;
    options.flags = 0x80000000U;
    SAME_NUMBER(call(zt_session_set_options)(session, &options), ZT_BAD_OPTIONS);
    options.flags = ZT_COLOR;
    options.layout = (zt_layout)6;
    SAME_NUMBER(call(zt_session_set_options)(session, &options), ZT_BAD_OPTIONS);
}

void check_sessions(void) {
    zt_options options = ZT_OPTIONS_INIT;
    zt_session* session = NULL;
    zt_session* plain = NULL;
    check_names();
    options.detail = ZT_WORDS;
    SAME_NUMBER(call(zt_session_create)(&options, &session), ZT_OK);
    SAME_NUMBER(call(zt_session_create)(NULL, &plain), ZT_OK);
    if (session == NULL || plain == NULL) return;
    check_message(session);
    check_lines(plain);
    check_bad_arguments(plain);
    check_bad_options(session);
    check_message(session);
    SAME_NUMBER(call(zt_session_set_options)(plain, &options), ZT_OK);
    check_message(plain);
    call(zt_session_destroy)(plain);
    call(zt_session_destroy)(session);
    call(zt_session_destroy)(NULL);
}
