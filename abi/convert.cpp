// The conversion utilities of the C interface: their buffers, and what they write on the standard streams.
// The table FLEX_ASCII_TABLE lies with its function.

#include <cstdio>
#include <cstring>
#include <optional>

#include "abi/kept.hpp"
#include "convert/flex.hpp"
#include "convert/keyboard.hpp"
#include "convert/screen.hpp"
#include "convert/text.hpp"
#include "ztdecode.h"

using ztdecode::FlexBuffer;
using ztdecode::FlexLine;
using ztdecode::abi::Kept;

extern "C" {

const char* FLEX_GetAsciiCode(char c) { return ztdecode::FLEX_GetAsciiCode(c); }

const char* TOFLEX_Convert(const char* line) {
    if (line == nullptr) return "";
    try {
        static Kept<FlexBuffer> kept;
        FlexBuffer& buffer = kept;
        switch (ztdecode::TOFLEX_Convert(line, buffer)) {
            case FlexLine::command:
                std::printf("TRZ DEBUG : FLEX CONVERTION [%s]\n", buffer.text());
                return buffer.text();
            case FlexLine::bytes:
                return buffer.text();
            case FlexLine::other:
                break;
        }
        return line;
    } catch (...) {
        return "";
    }
}

const char* FROMFLEX_Convert(const char* line) {
    if (line == nullptr) return "";
    try {
        static Kept<FlexBuffer> kept;
        FlexBuffer& buffer = kept;
        ztdecode::FROMFLEX_Convert(line, buffer);
        return buffer.text();
    } catch (...) {
        return "";
    }
}

const char* Convert_kb_To_key(char* text) {
    if (text == nullptr) return "";
    static ztdecode::KeyText key;
    key = ztdecode::Convert_kb_To_key(text);
    return key.data();
}

int A_Convert_scr(const char* in_path, const char* out_path) {
    const std::optional<int> closed = ztdecode::A_Convert_scr(in_path, out_path);
    return closed ? *closed : std::fprintf(stderr, "%s", "A_Convert_scr : Screen File error\n");
}

int A_Diff_scr(const char* path_a, const char* path_b, const char* out_path) {
    return ztdecode::A_Diff_scr(path_a, path_b, out_path);
}

int bGenericStrCmp(const char* pattern, const char* text, unsigned int limit) {
    if (pattern == nullptr || text == nullptr) {
        std::printf("%s", "WIRK_WARNING : bGenericStrCmp :  NULL string, returning FALSE\n");
        return 0;
    }
    return ztdecode::bGenericStrCmp(pattern, text, limit) ? 1 : 0;
}

int hexdigint(char c) { return ztdecode::hexdigint(c); }

int hextoint(const char* text, int count) {
    if (text == nullptr || count < 1) return 0;
    return ztdecode::hextoint({text, strnlen(text, static_cast<std::size_t>(count))}, count);
}

}  // extern "C"
