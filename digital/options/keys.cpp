#include "digital/options/keys.hpp"

#include "digital/options/module.hpp"

namespace ztdecode {

void key_pushed(Session& /*session*/, const Message& m, Text& out) {
    out.print("key pushed: {:02x}"_cf, m[3]);
}

void key_released(Session& /*session*/, const Message& m, Text& out) {
    out.print("key released: {:02x}"_cf, m[3]);
}

// byte 3: bit 0 shift, bit 1 control
void special_key_status(Session& /*session*/, const Message& m, Text& out) {
    out.print("special key status: control {}, shift {}"_cf, m.bit(3, 1) ? "pushed" : "released",
              m.bit(3, 0) ? "pushed" : "released");
}

void key_release_config(Session& /*session*/, const Message& m, Text& out) {
    out.print("key release config = {}"_cf, on_or_off(m[3]));
}

}  // namespace ztdecode
