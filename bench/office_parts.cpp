#include "bench/office_parts.hpp"

namespace ztdecode::bench {

void add(Bytes& m, std::initializer_list<std::uint32_t> bytes) {
    for (const std::uint32_t b : bytes) m.push_back(static_cast<std::uint8_t>(b));
}

Bytes of(std::initializer_list<std::uint32_t> bytes) {
    Bytes m;
    add(m, bytes);
    return m;
}

void add(Bytes& m, std::string_view text) { m.insert(m.end(), text.begin(), text.end()); }

void add(Bytes& m, const Bytes& bytes) { m.insert(m.end(), bytes.begin(), bytes.end()); }

void add_number(Bytes& m, unsigned width, std::uint32_t value) {
    while (width-- > 0) m.push_back(static_cast<std::uint8_t>(value >> 8 * width));
}

void add_item(Bytes& m, std::uint32_t id, unsigned width, std::uint32_t value) {
    add(m, {id, width});
    add_number(m, width, value);
}
void add_item(Bytes& m, std::uint32_t id, std::string_view value) {
    add(m, {id, static_cast<std::uint32_t>(value.size())});
    add(m, value);
}
void add_indexed(Bytes& m, std::uint32_t id, std::uint32_t index, std::string_view value) {
    add(m, {id, index, static_cast<std::uint32_t>(value.size())});
    add(m, value);
}

std::string name(Random& r) {
    static const std::vector<std::string> first = {"Anne",  "Bruno", "Carole", "Denis",
                                                   "Elise", "Farid", "Gilles"};
    static const std::vector<std::string> last = {"Martin", "Durand", "Lefort", "Moreau",
                                                  "Petit",  "Roux",   "Weber"};
    const std::string& given = r.one_of(first);
    return given + " " + r.one_of(last);
}

std::string label(Random& r) {
    static const std::vector<std::string> words = {"Annuaire", "Messagerie",   "R\xC3\xA9glages",
                                                   "Appels",   "Renvoi",       "Verrouill\xC3\xA9",
                                                   "Profil",   "D\xC3\xA9vier"};
    return r.below(3) == 0 ? name(r) : r.one_of(words);
}

std::string number(Random& r) {
    std::string digits;
    for (std::uint32_t n = r.one_of({4, 4, 10}); n > 0; --n) digits += static_cast<char>('0' + r.below(10));
    return digits;
}

std::string time_of_day(Random& r) {
    static const std::vector<std::string> days = {"Mon", "Tue", "Wed", "Thu", "Fri"};
    auto two = [&r](std::uint32_t below) {
        const std::uint32_t v = r.below(below);
        return std::string{static_cast<char>('0' + v / 10), static_cast<char>('0' + v % 10)};
    };
    std::string text = two(24);
    text += ":" + two(60);
    text += "  " + r.one_of(days);
    return text + " " + two(28) + " Nov";
}

std::uint32_t address(Random& r) { return 0x0A000000 | r.below(0x10000); }

std::uint32_t port(Random& r) { return 32000 + 2 * r.below(500); }

std::uint32_t gain(Random& r) { return r.one_of({0xF3, 0xF4, 0xFA, 0, 2, 6, 8, 12}); }

}  // namespace ztdecode::bench
