#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "bench/office.hpp"
#include "core/message.hpp"

// What the makers of messages share: pieces of messages, and words and numbers that vary.

namespace ztdecode::bench {

struct Kind {
    std::uint32_t share;  // of a thousand messages
    std::uint32_t direction;
    Bytes (*make)(Office&);
};

consteval std::uint32_t share(std::span<const Kind> kinds) {
    std::uint32_t total = 0;
    for (const Kind& k : kinds) total += k.share;
    return total;
}

std::span<const Kind> set_kinds();   // digital sets, modules, hubs: 670
std::span<const Kind> link_kinds();  // IP sets, HE sets, widgets, DECT bases: 330

// A set that starts; its modules report behind it, since it has forgotten them.
void set_starts(Office& o);

Bytes of(std::initializer_list<std::uint32_t> bytes);
void add(Bytes& m, std::initializer_list<std::uint32_t> bytes);
void add(Bytes& m, std::string_view text);
void add(Bytes& m, const Bytes& bytes);
// High byte first.
void add_number(Bytes& m, unsigned width, std::uint32_t value);
// id, length byte, value
void add_item(Bytes& m, std::uint32_t id, unsigned width, std::uint32_t value);
void add_item(Bytes& m, std::uint32_t id, std::string_view value);
// id, index, length byte, value
void add_indexed(Bytes& m, std::uint32_t id, std::uint32_t index, std::string_view value);

std::string name(Random& r);
std::string label(Random& r);  // of a widget: some letters have accents
std::string number(Random& r);
std::string time_of_day(Random& r);  // "08:42  Fri 20 Nov", what sets show when nobody telephones
std::uint32_t address(Random& r);
std::uint32_t port(Random& r);
std::uint32_t gain(Random& r);

}  // namespace ztdecode::bench
