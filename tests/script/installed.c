/* A host of the installed library. */

#include <stdlib.h>
#include <string.h>
#include <ztdecode.h>

int main(void) {
    static MessageRecord record;
    char* text;

    record.length = 2;
    record.data[0] = 0xFF;
    text = decode(record);
    if (text == NULL || text[0] == '\0') return 1;
    free(text);
    return strcmp(Version, "5.01") == 0 ? 0 : 2;
}
