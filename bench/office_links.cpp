#include <array>

#include "bench/office_parts.hpp"

// IP sets, HE sets, the widgets of object-protocol terminals, and DECT bases.

namespace ztdecode::bench {

namespace {

Bytes ip_reset(Office& o) {
    o.call.reset();
    o.then(to_dhs, of({0x13, 0, o.random().below(24), o.random().below(4)}));
    return of({0x13, 0, 0, 1, 0});
}
Bytes ip_key(Office& o) { return of({0x13, 11, o.random().below(12)}); }
Bytes ip_tone(Office& o) {
    Bytes m = of({0x13, 5, 0x41, o.random().between(1, 20)});
    add_number(m, 2, o.random().between(100, 2000));
    return m;
}

Bytes ip_parameters(Office& o) {
    Random& r = o.random();
    Bytes m = of({0x13, 2, 0, 2, 1, r.below(64)});
    add_item(m, 3, 4, address(r));
    add_item(m, 4, 4, 0xFFFF0000);
    add(m, {10, 6, 0, 0x80, 0x9F});
    add_number(m, 3, r.below(0x1000000));
    return m;
}

Bytes ip_get_param(Office& o) {
    o.then(to_dhs, ip_parameters(o));
    return of({0x13, 9, 0, 3, 4, o.random().between(5, 13)});
}

Bytes ip_start_rtp(Office& o) {
    Random& r = o.random();
    o.call = Call{address(r)};
    Bytes m = of({0x13, 1, 2});
    add_item(m, 0, 2, port(r));
    add_item(m, 1, 4, o.call->remote_address);
    add_item(m, 2, 2, port(r));
    add_item(m, 3, 1, 0x2E);
    add_item(m, 4, 1, r.one_of({0, 1, 16, 17}));
    add_item(m, 5, 1, 20);
    add_item(m, 6, 1, 1);
    add_item(m, 12, 4, r.below(0x7FFFFFFF));
    add_item(m, 20, 1, 0);
    add_item(m, 49, 1, 16);
    return m;
}

Bytes ip_set_param(Office& o) {
    Random& r = o.random();
    Bytes m = of({0x13, 10});
    add_item(m, 3, "helpdesk " + number(r));
    add_item(m, 6, 1, r.one_of({0, 1, 17, 27}));
    add_item(m, 16, number(r));
    add_item(m, 17, 1, r.below(3));
    add_item(m, 23, 1, r.below(8));
    add_item(m, 43, "+01:00");
    return m;
}

void add_ticket_item(Bytes& m, std::uint32_t tag, unsigned width, std::uint32_t value) {
    add(m, {tag, 0, width});
    add_number(m, width, value);
}

// Of a call that lost little, and nothing came late.
Bytes ip_ticket(Office& o, std::uint32_t remote) {
    Random& r = o.random();
    const std::uint32_t packets = r.between(1000, 100000);
    Bytes m = of({0x13, 3});
    add_ticket_item(m, 1, 4, 0x5F000000 | r.below(0x1000000));
    add_ticket_item(m, 2, 2, r.below(16));
    add_ticket_item(m, 6, 2, 0x0201 + r.below(4));
    add_ticket_item(m, 8, 4, address(r));
    add_ticket_item(m, 9, 4, remote);
    for (const std::uint32_t tag : {10U, 11U}) {
        const std::string who = number(r);
        add(m, {tag, 0, static_cast<std::uint32_t>(who.size())});
        add(m, who);
    }
    add_ticket_item(m, 12, 4, packets / 50);
    add_ticket_item(m, 22, 4, packets);
    add_ticket_item(m, 23, 4, packets + r.below(10));
    add_ticket_item(m, 24, 4, r.below(10));
    add(m, {27, 0, 6});
    for (int k = 0; k < 3; ++k) add_number(m, 2, r.below(200));
    add_ticket_item(m, 28, 1, r.between(20, 60));
    add(m, {32, 0, 12});
    for (int k = 0; k < 3; ++k) add_number(m, 4, r.below(200));
    return m;
}

// A call begins, or the one that is going on ends.
Bytes ip_call(Office& o) {
    if (!o.call) return ip_start_rtp(o);
    o.then(to_dhs, ip_ticket(o, o.call->remote_address));
    o.call.reset();
    return of({0x13, 2, 20, 1, 0});
}

// HE sets: the link's three routing bytes in front.

Bytes he_hook(Office& o) { return of({5, 1, 6, o.random().between(1, 2)}); }
Bytes he_digit(Office& o) { return of({5, 1, 6, 3, 0, o.random().below(10)}); }
Bytes he_key(Office& o) { return of({5, 1, 6, 0x20, 0, o.random().below(64)}); }
Bytes he_map(Office& o) { return of({5, 6, 1, 0x50, 2, 0, 1, 1, o.random().below(8)}); }
Bytes he_refresh(Office& o) { return of({5, 6, 1, 0x50, 6, o.random().below(8)}); }
Bytes he_launch(Office& o) {
    return of({5, 6, 1, 0x56, o.random().between(1, 4), o.random().one_of({6, 7, 250, 251})});
}

Bytes he_report(Office& o) {
    const std::string text = number(o.random());
    Bytes m = of({5, 1, 6, 0x31, 0, o.random().below(8), o.random().below(16), 0x0D});
    add(m, {static_cast<std::uint32_t>(text.size())});
    add(m, text);
    return m;
}

Bytes he_create_text(Office& o) {
    Random& r = o.random();
    Bytes m = of({5, 6, 1, 0x52, 2, r.below(8), r.below(16), 0, 1, 2, 3, 4, 5});
    add_number(m, 2, r.below(320));
    add_number(m, 2, r.below(240));
    const std::string text = name(r);
    add(m, {20, 2, static_cast<std::uint32_t>(text.size())});
    add(m, text);
    return m;
}

Bytes he_set_text(Office& o) {
    Random& r = o.random();
    const std::string text = name(r);
    Bytes m = of({5, 6, 1, 0x53, 4, r.below(8), r.below(16), 0, static_cast<std::uint32_t>(text.size())});
    add(m, text);
    return m;
}

Bytes he_set_cell(Office& o) {
    Random& r = o.random();
    const std::string text = name(r);
    Bytes m = of({5, 6, 1, 0x53, 0x1E, r.below(8), r.below(16), r.below(10), r.below(3), 0});
    add(m, {static_cast<std::uint32_t>(text.size())});
    add(m, text);
    return m;
}

Bytes he_visibility(Office& o) {
    return of({5, 6, 1, 0x53, 0x10, o.random().below(8), o.random().below(2), 1, o.random().below(11),
               o.random().below(16)});
}

// Widgets: server, method, class, object id, properties.

Bytes widget(Office& o, std::uint32_t method, std::uint32_t widget_class) {
    return of({0x16, method, widget_class, 0, o.random().between(0x10, 0x40)});
}

// Frames and the screen are asked to say that they took it.

Bytes create_frame(Office& o) {
    Random& r = o.random();
    o.then(to_dhs, of({0x16, 4, 0x0F}));
    Bytes m = widget(o, 0x80, 0x80);
    add_item(m, 0x24, 2, 0);
    add_item(m, 0x26, 1, r.below(100));
    add_item(m, 0x27, 1, r.below(100));
    add_item(m, 0x12, 1, 40);
    add_item(m, 0x13, 1, 10);
    add_item(m, 0x28, 1, 1);
    return m;
}

Bytes create_list(Office& o) {
    Bytes m = widget(o, 0, 0x82);
    add_item(m, 8, 1, 3);
    for (std::uint32_t k = 0; k < 3; ++k) add_indexed(m, 0x8A, k, label(o.random()));
    return m;
}

Bytes set_label(Office& o) {
    Bytes m = widget(o, 2, 0x84);
    add_item(m, 0x37, label(o.random()));
    add_item(m, 0x36, 2, 0x0100 + o.random().below(32));
    return m;
}

Bytes set_value(Office& o) {
    Bytes m = widget(o, 2, 0x86);
    add_item(m, 0x38, number(o.random()));
    add_item(m, 0x3D, 1, o.random().below(2));
    return m;
}

Bytes set_screen(Office& o) {
    o.then(to_dhs, of({0x16, 4, 0x11}));
    Bytes m = of({0x16, 0x82, 6});
    add_item(m, 0x14, 1, o.random().below(16));
    add_item(m, 0x5C, 4, o.random().between(1000, 60000));
    return m;
}

Bytes delete_item(Office& o) {
    Bytes m = widget(o, 5, 0x82);
    add(m, {o.random().below(8)});
    return m;
}

// One is deleted when another one takes its place.
Bytes replace_widget(Office& o) {
    const Bytes deleted = widget(o, 1, o.random().one_of({0x80, 0x82, 0x84, 0x86}));
    Bytes created = deleted;
    created[1] = 0;
    add_item(created, 0x28, 1, 1);
    o.then(from_dhs, created);
    return deleted;
}

Bytes key_event(Office& o) { return of({0x16, 4, o.random().between(2, 4), '0' + o.random().below(10)}); }

Bytes list_event(Office& o) {
    Bytes m = of({0x16, 4, 0x81, 0, 0x12});
    const std::uint32_t line = o.random().below(8);
    add_item(m, 0x2B, 1, line);
    add_indexed(m, 0x85, line, "menu" + number(o.random()));
    return m;
}

Bytes terminal_properties(Office& o) {
    Bytes m = of({0x15, 4, 0x94, 0, 1});
    add_item(m, 0x62, "0080A1" + number(o.random()));
    add_item(m, 3, 2, 1500);
    o.then(to_dhs, m);
    return of({0x15, 3, 1, 0x62, 3});
}

// All but the failure of a handover.
Bytes base_to_system(Office& o) {
    return of({0x12, 0xE0 | o.random().one_of({0, 1, 2, 3, 4, 5, 6, 8, 9}), o.random().below(256)});
}
Bytes base_operational(Office& o) { return of({0x12, 0x15, o.random().below(8), o.random().below(16)}); }
Bytes base_command(Office& o) { return of({0x12, 0x20 | o.random().between(1, 10), o.random().below(256)}); }

constexpr auto kinds = std::to_array<Kind>({
    // IP sets
    {1, from_dhs, ip_reset},
    {12, from_dhs, ip_get_param},
    {35, from_dhs, ip_call},
    {12, from_dhs, ip_set_param},
    {10, from_dhs, ip_key},
    {30, from_dhs, ip_tone},
    // HE sets
    {8, to_dhs, he_hook},
    {20, to_dhs, he_digit},
    {14, to_dhs, he_key},
    {6, to_dhs, he_report},
    {8, from_dhs, he_map},
    {8, from_dhs, he_refresh},
    {2, from_dhs, he_launch},
    {8, from_dhs, he_create_text},
    {12, from_dhs, he_set_text},
    {8, from_dhs, he_set_cell},
    {6, from_dhs, he_visibility},
    // widgets
    {6, from_dhs, create_frame},
    {8, from_dhs, create_list},
    {22, from_dhs, set_label},
    {12, from_dhs, set_value},
    {2, from_dhs, set_screen},
    {4, from_dhs, delete_item},
    {4, from_dhs, replace_widget},
    {30, to_dhs, key_event},
    {10, to_dhs, list_event},
    {2, from_dhs, terminal_properties},
    // DECT bases
    {18, to_dhs, base_to_system},
    {2, to_dhs, base_operational},
    {10, from_dhs, base_command},
});
static_assert(share(kinds) == 330);

}  // namespace

std::span<const Kind> link_kinds() { return kinds; }

}  // namespace ztdecode::bench
