#include "decode/routes/debug.hpp"

namespace ztdecode::debug {

namespace {

// byte 1 on: the text
void text(Decoding& d) {
    d.status = Status::recognised;
    d.name("debug_text", d[0]);
    if (d.length() > 1) d.text("debug_text", 1, d.length() - 1);
}

}  // namespace

void from_system(Decoding& d) { text(d); }

void to_system(Decoding& d) { text(d); }

}  // namespace ztdecode::debug
