/* A host of the installed library, with both of its interfaces. */

#include <stdlib.h>
#include <string.h>
#include <ztdecode.h>
#include <ztdecode_session.h>

int main(void) {
    static MessageRecord message;
    zt_session* session;
    const zt_record* record;
    char* text;
    int same;

    message.length = 2;
    message.data[0] = 0xFF;
    text = decode(message);
    if (text == NULL || text[0] == '\0') return 1;
    if (strcmp(Version, "5.01") != 0 || strcmp(zt_version(), ZT_VERSION) != 0) return 2;
    if (zt_session_create(NULL, &session) != ZT_OK ||
        zt_decode(session, message.data, message.length, ZT_FROM_SYSTEM, &record) != ZT_OK) {
        return 3;
    }
    same = record->text.size == strlen(text) && memcmp(record->text.data, text, record->text.size) == 0;
    zt_session_destroy(session);
    free(text);
    return same ? 0 : 4;
}
