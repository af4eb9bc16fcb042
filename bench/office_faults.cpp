#include "bench/office_faults.hpp"

#include <array>

#include "bench/office_parts.hpp"

// Each fault in as few messages as it takes.

namespace ztdecode::bench {

namespace {

// Channels that the office's own calls do not use.
constexpr std::uint32_t channel_item = 0x14;

Bytes start_rtp(std::uint32_t channel, std::uint32_t remote) {
    Bytes m = of({0x13, 1, 2});
    add_item(m, 0, 2, 32000);
    add_item(m, 1, 4, remote);
    add_item(m, 2, 2, 32002);
    add_item(m, channel_item, 1, channel);
    return m;
}

Bytes stop_rtp(std::uint32_t channel) {
    Bytes m = of({0x13, 2});
    add_item(m, channel_item, 1, channel);
    return m;
}

struct Quality {
    std::uint32_t received;
    std::uint32_t lost;
    std::uint32_t shortest;
    std::uint32_t longest;
};

Bytes ticket(std::uint32_t remote, const Quality& quality) {
    Bytes m = of({0x13, 3});
    const auto add_ticket_item = [&m](std::uint32_t tag, unsigned width, std::uint32_t value) {
        add(m, {tag, 0, width});
        add_number(m, width, value);
    };
    add_ticket_item(9, 4, remote);
    add_ticket_item(22, 4, quality.received);
    add_ticket_item(24, 4, quality.lost);
    add_ticket_item(45, 2, quality.shortest);
    add_ticket_item(28, 2, quality.longest);
    return m;
}

constexpr std::uint32_t somewhere = 0x0A010203;

void reset(Office& o) { set_starts(o); }

void repeated_reset(Office& o) {
    for (int times = 0; times < 3; ++times) set_starts(o);
}

void failed_self_test(Office& o) { o.then(to_dhs, of({4, 0x0B, 0x1F, 1, 1, 2, 7, 1, 1})); }
void reported_error(Office& o) { o.then(to_dhs, of({0x1F, 3, 1})); }
void reported_warning(Office& o) { o.then(to_dhs, of({0x1F, 4, 1})); }

void refused_command(Office& o) {
    o.then(from_dhs, of({0x21, 4, 0x3C}));
    o.then(to_dhs, of({0x1F, 2, 0x21}));
}

void no_answer(Office& o) { o.then(from_dhs, of({0x2B})); }
void unasked_answer(Office& o) { o.then(to_dhs, of({0x22})); }

void slow_answer(Office& o) {
    constexpr int messages = 2000;
    o.then(from_dhs, of({0x2A}));
    for (int n = 0; n < messages; ++n) o.then(from_dhs, of({0x21, 4, 3}));
    o.then(to_dhs, of({0x21, 0, 2, 1, 0x31}));
}

void stream_not_stopped(Office& o) {
    o.then(from_dhs, start_rtp(1, somewhere));
    o.then(to_dhs, ticket(somewhere, {10000, 0, 20, 40}));
}

void stream_started_twice(Office& o) {
    o.then(from_dhs, start_rtp(2, somewhere));
    o.then(from_dhs, start_rtp(2, somewhere + 1));
    o.then(from_dhs, stop_rtp(2));
}

void stream_to_nowhere(Office& o) {
    o.then(from_dhs, start_rtp(3, 0));
    o.then(from_dhs, stop_rtp(3));
}

void packet_loss(Office& o) { o.then(to_dhs, ticket(somewhere, {9000, 1000, 20, 40})); }
void long_delay(Office& o) { o.then(to_dhs, ticket(somewhere, {9000, 0, 180, 200})); }
void jitter(Office& o) { o.then(to_dhs, ticket(somewhere, {9000, 0, 20, 120})); }

void download_refused(Office& o) { o.then(to_dhs, of({0x50, 2, 0, 1, 0x13})); }

void download_broken_off(Office& o) {
    for (int times = 0; times < 2; ++times) {
        o.then(from_dhs, of({0x14, 1, 5}));
        o.then(from_dhs, of({0x14, 4, 0, 1, 0, 0}));
    }
    o.then(from_dhs, of({0x14, 5}));
}

// A long display text in pieces: the first says how many are still to come, and the length of the whole.
void segment_series(Office& o, std::initializer_list<std::uint32_t> to_come) {
    bool first = true;
    for (const std::uint32_t n : to_come) {
        Bytes m = first ? of({0x0C, 0x80 | n, 0, 9, 0x27, 0, 0}) : of({0x0C, n, 'a', 'b'});
        o.then(from_dhs, std::move(m));
        first = false;
    }
}
void segment_missing(Office& o) { segment_series(o, {3, 2, 0}); }
void segment_repeated(Office& o) { segment_series(o, {3, 2, 2, 1, 0}); }
void segment_out_of_order(Office& o) { segment_series(o, {3, 1, 2, 0}); }

constexpr std::uint32_t text_box = 0x84;

Bytes widget(std::uint32_t method, std::uint32_t object) {
    Bytes m = of({0x16, method, text_box, 0x7F, object});
    if (method != 1) add_item(m, 0x36, 2, 0x0101);
    return m;
}

// Of the property 0x36 of an object that was to be set.
Bytes refusal(std::uint32_t event, std::uint32_t object) {
    Bytes m = of({0x16, 4, event, 0, 1, 2, text_box, 0x7F, object, 0x36, 0});
    add_number(m, 2, 2);
    add_number(m, 4, 0x0101);
    return m;
}

void object_error(Office& o) {
    o.then(from_dhs, widget(2, 1));
    o.then(to_dhs, refusal(0x0D, 1));
}

void object_warning(Office& o) {
    o.then(from_dhs, widget(2, 1));
    o.then(to_dhs, refusal(0x1E, 1));
}

void unknown_object(Office& o) {
    o.then(to_dhs, of({0x16, 4, 1, 0, 0, 0x3E, 1, 1}));
    o.then(from_dhs, widget(0, 1));
    o.then(from_dhs, widget(2, 2));
}

void deleted_object(Office& o) {
    for (const std::uint32_t method : {0U, 1U, 2U}) o.then(from_dhs, widget(method, 1));
}

void unknown_message(Office& o) { o.then(from_dhs, of({0x1D, 1})); }
void missing_bytes(Office& o) { o.then(from_dhs, of({0x32, 0})); }

struct Fault {
    std::string_view code;
    void (*plant)(Office&);
};

constexpr auto faults = std::to_array<Fault>({
    {"reset", reset},
    {"repeated-reset", repeated_reset},
    {"failed-self-test", failed_self_test},
    {"reported-error", reported_error},
    {"reported-warning", reported_warning},
    {"refused-command", refused_command},
    {"no-answer", no_answer},
    {"unasked-answer", unasked_answer},
    {"slow-answer", slow_answer},
    {"stream-not-stopped", stream_not_stopped},
    {"stream-started-twice", stream_started_twice},
    {"stream-to-nowhere", stream_to_nowhere},
    {"packet-loss", packet_loss},
    {"long-delay", long_delay},
    {"jitter", jitter},
    {"download-refused", download_refused},
    {"download-broken-off", download_broken_off},
    {"segment-missing", segment_missing},
    {"segment-repeated", segment_repeated},
    {"segment-out-of-order", segment_out_of_order},
    {"object-error", object_error},
    {"object-warning", object_warning},
    {"unknown-object", unknown_object},
    {"deleted-object", deleted_object},
    {"unknown-message", unknown_message},
    {"missing-bytes", missing_bytes},
});

}  // namespace

bool plant(std::string_view code, Office& o) {
    for (const Fault& fault : faults) {
        if (fault.code != code) continue;
        fault.plant(o);
        return true;
    }
    return false;
}

}  // namespace ztdecode::bench
