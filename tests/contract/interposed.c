/* A host with functions of its own that are called like the library's: the library calls its own all the
 * same. The host has only those of the library's functions that it does not define itself, so it does without
 * the header. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct {
    unsigned length;
    unsigned char data[5120];
    unsigned short reserved;
    unsigned route;
    unsigned status;
    unsigned direction;
} Record;

/* Defined by the library. */
extern char* decode_bin_lng1(const unsigned char* buf, int direction);
extern const char* decode_bin_lng2(const unsigned char* buf, int direction, int size);
extern const char* line_spzt(const char* text);
extern const char* hub2dhs(Record* record);
extern const char* dhs2prs(Record* record);
extern const char* decode_mpc(Record* record);
extern const char* decode_z_out(Record* record);
extern const char* analyse_cmd_term(const unsigned char* bytes, int length);
extern int analyse_cmd(const unsigned char* frame, int length, int direction);
extern int ClassProp_Help(void);
extern char str_help[20000];
extern char* app_buf;

/* Defined here, under all sorts of types. */
#define OWN(name) \
    int name(void) { return called(#name); }

static int called(const char* name) {
    fprintf(stderr, "the library called the host's %s\n", name);
    abort();
}

int p(void);
int ph(void);
int line(void);
int line_lng2(void);
int line_tzt(void);
int line_spzt_lng2(void);
int decode(void);
int decale(void);
int msgdup(void);
int print_clean_message(void);
int download(void);
int rn2dhs(void);
int dhs2rn(void);
int apId(void);
int cs2dhs(void);
int type_poste(void);
int design_poste(void);
int version_logiciel(void);
int audio_config(void);
int inListAudioOpcodes(void);
int subSuper(void);
int decode_z(void);
int Look(void);
int Lclass(void);
int Lprop(void);
int LookUtf8(void);
int vDecodeTLV(void);
int vDecodeEvent(void);
int vDsipTLV(void);
int printUTF8str(void);
int vPutf8char(void);
int analyse_cmd_pbx(void);
int boCatchSegment(void);
int vSaveLastReconstructedCmd(void);
int vFreeReconstructedCmd(void);
int hextoint(void);
int hexdigint(void);
int FLEX_GetAsciiCode(void);

OWN(p)
OWN(ph)
OWN(line)
OWN(line_lng2)
OWN(line_tzt)
OWN(line_spzt_lng2)
OWN(decode)
OWN(decale)
OWN(msgdup)
OWN(print_clean_message)
OWN(download)
OWN(rn2dhs)
OWN(dhs2rn)
OWN(apId)
OWN(cs2dhs)
OWN(type_poste)
OWN(design_poste)
OWN(version_logiciel)
OWN(audio_config)
OWN(inListAudioOpcodes)
OWN(subSuper)
OWN(decode_z)
OWN(Look)
OWN(Lclass)
OWN(Lprop)
OWN(LookUtf8)
OWN(vDecodeTLV)
OWN(vDecodeEvent)
OWN(vDsipTLV)
OWN(printUTF8str)
OWN(vPutf8char)
OWN(analyse_cmd_pbx)
OWN(boCatchSegment)
OWN(vSaveLastReconstructedCmd)
OWN(vFreeReconstructedCmd)
OWN(hextoint)
OWN(hexdigint)
OWN(FLEX_GetAsciiCode)

static int failures;

static void same(const char* got, const char* expected) {
    if (got != NULL && strcmp(got, expected) == 0) return;
    ++failures;
    fprintf(stderr, "\"%s\" instead of \"%s\"\n", got != NULL ? got : "(null)", expected);
}

static Record* message(const char* bytes, unsigned length, unsigned direction) {
    static Record record;
    memset(&record, 0, sizeof record);
    memcpy(record.data, bytes, length);
    record.length = length;
    record.direction = direction;
    return &record;
}

/* Messages that go through as many of the functions above as there are: a set's report, an audio
 * configuration, an HE message with its applications, a super message, a carried message, a module's
 * emulation, an object's properties. */
int main(void) {
    static const unsigned char report[] = {11, 0x1F, 0, 0, 2, 21, 32, 49, 2, 1, 10, 1};
    static const unsigned char audio[] = {4, 0x49, 0, 0, 1};
    static const unsigned char he[] = {6, 5, 1, 250, 0x50, 2, 0};
    static const unsigned char super[] = {3, 0, 11, 1, 0x2A, 1, 0, 0x2B};
    static const unsigned char key[] = {0x16, 4, 2, 0xEE, 0x84, 0x90};
    char* text;

    text = decode_bin_lng1(report, 1);
    same(
        text,
        "\t- reset hard, set-49 beta, soft=2.21, self OK, vta type=1, info1=2, info2=1, hard cfg=0a (gigabit "
        "wideband ), rac");
    free(text);
    text = decode_bin_lng1(audio, 0);
    same(text, "\t- audio configuration: coding= mu law");
    free(text);
    text = decode_bin_lng1(he, 1);
    same(text, "\t- [HE: communication assistant -> telephony]\t- appli management: create appli firmware");
    free(text);
    same(decode_bin_lng2(super, 0, (int)sizeof super),
         "\t- super message:\n\t> zt 01 00 2a\n\t- version inquiry\n\t- are you there?\n");
    same(line_spzt("000000S 01 00 2a"), "\t- version inquiry");
    same(hub2dhs(message("\024\021\001", 3, 1)), "from set 2\t- handset off hook");
    same(decode_mpc(message("\004\020\046\003\013", 5, 1)), "VTA emulation: digit dialed '#'");
    same(decode_z_out(message("\002\052\013\002\016\005\001\003", 8, 0)),
         "super message\n\t\t- version inquiry\n\t\t- software reset\n");
    same(dhs2prs(message("\026\002\204\000\007\067\003ABC", 10, 0)),
         "presentation server\nSetProperty\ttextbox\n{\n\tServer\t\tPresentation\n\tObjectId\t0x0007\n"
         "\tlabel          \t\"ABC\"\n}\n");
    same(analyse_cmd_term(key, (int)sizeof key),
         "\nNotify\tKEY_PRESS\n{\n\tServer\t\tPresentation\n\tkeychar         \"\\uE110\"\t\"<Ok>\"\n}\n");
    analyse_cmd((const unsigned char*)"\006\000\014\201\002\026\006\025", 8, 'S');
    analyse_cmd((const unsigned char*)"\006\000\014\000\001\001\000\000", 8, 'S');
    same(app_buf, "\nSetProperty\tscreen\n{\n\tServer\t\tPresentation\n\tclearscreen    \tTRUE\n}\n");
    ClassProp_Help();
    if (strlen(str_help) != 15133) ++failures;
    return failures == 0 ? 0 : 1;
}
