#include "digital/options/keys.hpp"

#include "digital/options/module.hpp"

namespace ztdecode::modules {

void key_pushed(Decoding& d) { d.print("key pushed: {key:02x}"_cf, d[3]); }

void key_released(Decoding& d) { d.print("key released: {key:02x}"_cf, d[3]); }

// byte 3: bit 0 shift, bit 1 control
void special_key_status(Decoding& d) {
    d.print("special key status: control {control_key}, shift {shift_key}"_cf,
            flag(d.bit(3, 1), "pushed", "released"), flag(d.bit(3, 0), "pushed", "released"));
}

void key_release(Decoding& d) { d.print("key release config = {key_release}"_cf, on_or_off(d[3])); }

}  // namespace ztdecode::modules
