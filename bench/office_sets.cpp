#include <array>

#include "bench/office_parts.hpp"

// Digital sets, the option modules behind them, and the hubs that they are connected to.

namespace ztdecode::bench {

void set_starts(Office& o) {
    Random& r = o.random();
    o.then(to_dhs, of({0x1F, 0, 0, 2, r.below(32), 0, 0x31, 2, 1, 0x0A, 1, 1, 5, 0, r.below(256)}));
    o.then(to_dhs, of({4, 0x2A, 0x1F, 0, 5, 1, r.below(32), 0, 0, 3}));
    o.then(to_dhs, of({4, 0x0B, 0x1F, 1, 1, 2, r.below(16), 0, 1}));
    o.then(to_dhs, of({4, 0x24, 0x1F, 0, 4, 1, r.below(16), 0, 40}));
}

namespace {

Bytes hook(Office& o) { return of({o.random().between(1, 2)}); }
Bytes digit(Office& o) { return of({3, o.random().below(12)}); }
Bytes key_pushed(Office& o) { return of({0x20, o.random().below(40)}); }
Bytes key_released(Office& o) { return of({0x2A, o.random().below(40)}); }

// The system tells a set to start anew.
Bytes software_reset(Office& o) {
    set_starts(o);
    return of({3});
}

Bytes version_inquiry(Office& o) {
    o.then(to_dhs, of({0x21, 0, 2, o.random().below(64), o.random().between(0x2F, 0x31)}));
    return of({0x2A});
}
Bytes are_you_there(Office& o) {
    o.then(to_dhs, of({0x22}));
    return of({0x2B});
}
Bytes status_inquiry(Office& o) {
    o.then(to_dhs, of({0x23}));
    return of({0x2D});
}
Bytes plain_command(Office& o) { return of({o.random().one_of({0x24, 0x25, 0x26, 0x39, 0x3A, 0x46})}); }
Bytes led(Office& o) { return of({0x21, o.random().below(7), o.random().below(24)}); }
Bytes voice_channel(Office& o) { return of({0x32, o.random().below(4), o.random().below(4)}); }
Bytes cursor(Office& o) { return of({0x35, o.random().between(1, 2), o.random().below(4)}); }
Bytes mute(Office& o) { return of({0x3F, o.random().below(2)}); }
Bytes beep(Office& o) { return of({0x3C, o.random().between(3, 5)}); }
Bytes feedback(Office& o) { return of({0x40, 1, o.random().below(2)}); }
Bytes loudspeaker(Office& o) { return of({0x4D, 1, gain(o.random())}); }
Bytes devices(Office& o) { return of({0x49, 6, 1, 2, 5, 0, 0x10 | o.random().below(2)}); }

Bytes display_line(Office& o) {
    Random& r = o.random();
    Bytes m = of({r.between(0x27, 0x28), 0, 0});
    if (r.below(2) == 0) {
        add(m, time_of_day(r));
    } else {
        add(m, name(r) + " ");
        add(m, number(r));
    }
    return m;
}

Bytes voice_mode(Office& o) {
    Random& r = o.random();
    const std::uint32_t mode = r.between(0x10, 0x13);
    if (mode == 0x10) return of({0x29, mode});
    return of({0x29, mode, gain(r), gain(r)});
}

Bytes ring(Office& o) {
    Random& r = o.random();
    return of({0x4F, 1, r.below(16), r.below(8), gain(r), r.below(32), r.one_of({0, 1, 2, 0x82})});
}

// A long display text goes out in three pieces.
Bytes segments(Office& o) {
    Bytes whole = of({0x27, 0, 0});
    add(whole, "Message en attente de " + name(o.random()));
    const std::size_t third = whole.size() / 3;
    auto piece = [&whole](Bytes m, std::size_t first, std::size_t last) {
        for (std::size_t k = first; k < last; ++k) m.push_back(whole[k]);
        return m;
    };
    o.then(from_dhs, piece(of({0x0C, 1}), third, 2 * third));
    o.then(from_dhs, piece(of({0x0C, 0}), 2 * third, whole.size()));
    return piece(of({0x0C, 0x82, 0, static_cast<std::uint32_t>(whole.size())}), 0, third);
}

void add_part(Bytes& m, unsigned width, const Bytes& part) {
    m.push_back(static_cast<std::uint8_t>(part.size()));
    if (width == 2) m.push_back(static_cast<std::uint8_t>(part.size() >> 8));
    add(m, part);
}

Bytes super_message(Office& o) {
    Bytes m = of({0x0B});
    add_part(m, 1, display_line(o));
    add_part(m, 1, led(o));
    add_part(m, 1, voice_channel(o));
    return m;
}

Bytes super_message_type2(Office& o) {
    Bytes m = of({0x17});
    add_part(m, 2, voice_mode(o));
    add_part(m, 2, mute(o));
    return m;
}

Bytes module_key(Office& o) { return of({4, 0x24, o.random().one_of({0x20, 0x2A}), o.random().below(40)}); }
Bytes module_hook(Office& o) { return of({4, 0x2A, o.random().between(1, 2)}); }
Bytes module_digit(Office& o) { return of({4, 0x2A, 3, o.random().below(10)}); }
Bytes module_frame(Office& o) { return of({4, 0x0B, 0x42, 0, 0x40, 8, 0, 0, o.random().one_of({2, 5, 7})}); }
Bytes module_emulation(Office& o) { return of({4, 0x15, 0x26, 3, o.random().below(12)}); }
Bytes module_icon(Office& o) { return of({2, 4, o.random().one_of({0x46, 0x47}), o.random().below(40), 1}); }
Bytes module_send(Office& o) { return of({2, 3, 0x4B, 0, 0x40, 8, 0, 0, o.random().one_of({2, 5, 7})}); }
Bytes module_super(Office& o) { return of({2, 4, 0x0B, 2, 0x41, o.random().below(2), 1, 0x46}); }

Bytes hub_to_set(Office& o) {
    const Bytes inner = o.random().below(2) == 0 ? led(o) : display_line(o);
    Bytes m = of({0x14, o.random().between(0x10, 0x12)});
    add(m, inner);
    return m;
}
Bytes hub_from_set(Office& o) { return of({0x14, o.random().between(0x10, 0x12), 3, o.random().below(12)}); }
Bytes hub_status(Office& o) {
    o.then(to_dhs, of({0x14, 0x21, o.random().below(8), o.random().below(8), o.random().below(8)}));
    return of({0x14, 0x21});
}
Bytes hub_data(Office& o) { return of({0x14, 4, o.random().below(256), o.random().below(256), 0, 0}); }

constexpr auto kinds = std::to_array<Kind>({
    // digital sets
    {40, to_dhs, hook},
    {100, to_dhs, digit},
    {66, to_dhs, key_pushed},
    {46, to_dhs, key_released},
    {1, from_dhs, software_reset},
    {8, from_dhs, version_inquiry},
    {12, from_dhs, are_you_there},
    {8, from_dhs, status_inquiry},
    {40, from_dhs, plain_command},
    {80, from_dhs, led},
    {80, from_dhs, display_line},
    {20, from_dhs, voice_channel},
    {15, from_dhs, cursor},
    {20, from_dhs, voice_mode},
    {5, from_dhs, mute},
    {4, from_dhs, beep},
    {4, from_dhs, feedback},
    {5, from_dhs, loudspeaker},
    {2, from_dhs, devices},
    {10, from_dhs, ring},
    {2, from_dhs, segments},
    {16, from_dhs, super_message},
    {6, from_dhs, super_message_type2},
    // option modules
    {15, to_dhs, module_key},
    {6, to_dhs, module_hook},
    {6, to_dhs, module_digit},
    {6, to_dhs, module_frame},
    {3, to_dhs, module_emulation},
    {6, from_dhs, module_icon},
    {6, from_dhs, module_send},
    {2, from_dhs, module_super},
    // hubs
    {12, from_dhs, hub_to_set},
    {10, to_dhs, hub_from_set},
    {4, from_dhs, hub_status},
    {4, from_dhs, hub_data},
});
static_assert(share(kinds) == 670);

}  // namespace

std::span<const Kind> set_kinds() { return kinds; }

}  // namespace ztdecode::bench
