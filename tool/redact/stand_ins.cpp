#include "tool/redact/stand_ins.hpp"

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

namespace ztdecode::tool {

namespace {

bool is_digit(std::uint32_t c) { return c >= '0' && c <= '9'; }

// Characters that may stand for each other: `count` of them from `first` on, without the one at `gap`.
struct Class {
    std::uint32_t first;
    std::uint32_t count;
    std::uint32_t gap = 0;

    std::uint32_t index(std::uint32_t code) const noexcept {
        return code - first - (gap != 0 && code > gap ? 1 : 0);
    }
    std::uint32_t code(std::uint32_t index) const noexcept {
        return first + index + (gap != 0 && first + index >= gap ? 1 : 0);
    }
};

constexpr std::uint32_t row = 64;  // of code points that begin alike in UTF-8

struct Character {
    std::uint32_t code;
    std::uint32_t bytes;  // 1 of what is no UTF-8

    bool alone() const noexcept { return bytes == 1 && code >= 0x80; }
};

// A byte that begins no character of UTF-8 is one of another code; it goes on to begin none, or to look like
// the beginning of one as long.
std::optional<Class> class_of_byte(std::uint32_t byte) {
    if (byte < 0xA0) return Class{0x80, 0x20};
    if (byte < 0xC0) return Class{0xA0, 0x20};
    if (byte < 0xE0) return Class{0xC0, 0x20};
    return byte < 0xF0 ? Class{0xE0, 0x10} : Class{0xF0, 0x10};
}

// None: it stays. (What terminals have in the private area are keys and pictures.)
std::optional<Class> class_of(const Character& c) {
    const std::uint32_t code = c.code;
    if (code >= 'a' && code <= 'z') return Class{'a', 26};
    if (code >= 'A' && code <= 'Z') return Class{'A', 26};
    if (code < 0x80) return std::nullopt;
    if (c.alone()) return class_of_byte(code);
    if (code == 0xB2 || code == 0xB3) return Class{0xB2, 2};
    if (code == 0xB9 || code == 0xBA) return Class{0xB9, 2};
    if (code < 0xC0 || code == 0xD7 || code == 0xF7) return std::nullopt;
    if (code < 0xDF) return Class{0xC0, 30, 0xD7};
    if (code < 0x100) return Class{0xDF, 32, 0xF7};
    const bool small_or_circled = (code >= 0x2070 && code < 0x20A0) || (code >= 0x2100 && code < 0x2190) ||
                                  (code >= 0x2460 && code < 0x2500);
    const bool punctuation = code >= 0x2000 && code < 0x2C00 && !small_or_circled;
    const bool stays = (code >= 0xD800 && code < 0xF900) || code == 0xFEFF;
    if (punctuation || stays) return std::nullopt;
    return Class{code / row * row, row};
}

// What a display acts on, but for what ends lines and texts. (A text whose length is wrong holds other
// values.)
std::optional<Class> class_of_control(std::uint8_t byte) {
    if (byte >= 0x01 && byte < 0x09) return Class{0x01, 8};
    if (byte >= 0x0E && byte < 0x20) return Class{0x0E, 18};
    return std::nullopt;
}

Character character_at(std::span<const std::uint8_t> bytes, std::size_t at) {
    const std::uint32_t lead = bytes[at];
    const std::uint32_t count = lead < 0xC2   ? 1U
                                : lead < 0xE0 ? 2U
                                : lead < 0xF0 ? 3U
                                : lead < 0xF5 ? 4U
                                              : 1U;
    if (count == 1 || at + count > bytes.size()) return {lead, 1};
    std::uint32_t code = lead & (0x7FU >> count);
    for (std::size_t k = at + 1; k < at + count; ++k) {
        if ((bytes[k] & 0xC0U) != 0x80) return {lead, 1};
        code = code << 6 | (bytes[k] & 0x3FU);
    }
    constexpr std::array<std::uint32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    return code < least[count] ? Character{lead, 1} : Character{code, count};
}

// In as many bytes as it has.
void write(const Character& c, StandIns::Bytes bytes, std::size_t at) {
    if (c.bytes == 1) {
        bytes[at] = static_cast<std::uint8_t>(c.code);
        return;
    }
    std::uint32_t code = c.code;
    for (std::size_t k = at + c.bytes - 1; k > at; --k, code >>= 6)
        bytes[k] = static_cast<std::uint8_t>(0x80 | (code & 0x3F));
}

void write_whole(const Character& c, StandIns::Bytes bytes, std::size_t at) {
    write(c, bytes, at);
    if (c.bytes == 1) return;
    const std::uint32_t marks = 0xFFU << (8 - c.bytes) & 0xFF;
    bytes[at] = static_cast<std::uint8_t>(marks | c.code >> 6 * (c.bytes - 1));
}

// "10.0.0.2": where its numbers stand, and what they are.
struct Dotted {
    std::array<std::uint8_t, 4> octets{};
    std::size_t end = 0;
};

std::optional<Dotted> dotted_at(std::span<const std::uint8_t> text, std::size_t at) {
    if (at > 0 && (text[at - 1] == '.' || is_digit(text[at - 1]))) return std::nullopt;
    Dotted dotted;
    for (std::size_t k = 0; k < 4; ++k) {
        if (k > 0 && (at >= text.size() || text[at++] != '.')) return std::nullopt;
        const std::size_t begin = at;
        unsigned number = 0;
        while (at < text.size() && is_digit(text[at]) && at < begin + 3)
            number = number * 10 + text[at++] - '0';
        const bool zeros_in_front = at > begin + 1 && text[begin] == '0';
        if (at == begin || number > 255 || zeros_in_front) return std::nullopt;
        dotted.octets[k] = static_cast<std::uint8_t>(number);
    }
    const bool ends = at == text.size() || !is_digit(text[at]);
    const bool goes_on = at + 1 < text.size() && text[at] == '.' && is_digit(text[at + 1]);
    if (!ends || goes_on) return std::nullopt;
    dotted.end = at;
    return dotted;
}

void write_dotted(std::span<const std::uint8_t, 4> octets, StandIns::Bytes text) {
    std::string words;
    for (const std::uint8_t octet : octets) words += (words.empty() ? "" : ".") + std::to_string(octet);
    if (words.size() == text.size()) std::copy(words.begin(), words.end(), text.begin());
}

bool all_are(std::span<const std::uint8_t> bytes, std::uint8_t value) {
    return std::all_of(bytes.begin(), bytes.end(), [value](std::uint8_t b) { return b == value; });
}

bool is_mask(std::span<const std::uint8_t> address) {
    const std::uint32_t bits = static_cast<std::uint32_t>(address[0]) << 24 |
                               static_cast<std::uint32_t>(address[1]) << 16 |
                               static_cast<std::uint32_t>(address[2]) << 8 | address[3];
    return (~bits & (~bits + 1)) == 0;
}

// Which byte of each pair of UTF-16 is zero, when all are of the first characters.
std::optional<std::size_t> zeros_of_utf16(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 2 || bytes.size() % 2 != 0) return std::nullopt;
    for (const std::size_t zero : {std::size_t{0}, std::size_t{1}}) {
        bool all = true;
        for (std::size_t k = 0; k < bytes.size() && all; k += 2)
            all = bytes[k + zero] == 0 && bytes[k + 1 - zero] >= 0x20;
        if (all) return zero;
    }
    return std::nullopt;
}

}  // namespace

bool all_printable(std::span<const std::uint8_t> bytes) noexcept {
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t b) { return b >= 0x20 && b < 0x7F; });
}

bool all_letters(std::span<const std::uint8_t> bytes) noexcept {
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t b) {
        return is_digit(b) || ((b | 0x20) >= 'a' && (b | 0x20) <= 'z');
    });
}

// Numbers that only who has the key can foretell, of what the label says.
class StandIns::Stream {
  public:
    Stream(const hmac_sha256_ctx& keyed, std::string_view label, unsigned attempt) : keyed_(keyed) {
        words_.assign(label).push_back('\0');
        add(attempt);
    }
    void add(std::uint32_t number) {
        for (int k = 0; k < 4; ++k, number >>= 8) words_.push_back(static_cast<char>(number & 0xFF));
    }
    void add(std::string_view words) { words_.append(words); }

    std::uint32_t below(std::uint32_t n) {
        if (used_ + 4 > block_.size()) fill();
        std::uint32_t number = 0;
        for (int k = 0; k < 4; ++k) number = number << 8 | block_[used_++];
        return number % n;
    }

  private:
    void fill() {
        hmac_sha256_ctx context = keyed_;
        const std::array<std::uint8_t, 2> count = {static_cast<std::uint8_t>(blocks_ & 0xFF),
                                                   static_cast<std::uint8_t>(blocks_ >> 8)};
        ++blocks_;
        hmac_sha256_update(&context, count.size(), count.data());
        hmac_sha256_update(&context, words_.size(), reinterpret_cast<const std::uint8_t*>(words_.data()));
        hmac_sha256_digest(&context, block_.size(), block_.data());
        used_ = 0;
    }

    const hmac_sha256_ctx& keyed_;
    std::string words_;
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> block_{};
    std::size_t used_ = SHA256_DIGEST_SIZE;
    unsigned blocks_ = 0;
};

StandIns::StandIns(std::span<const std::uint8_t> key) noexcept : keyed_{} {
    hmac_sha256_set_key(&keyed_, key.size(), key.data());
}

// The next one in a cycle through all of them: none stands for itself, and none for two.
std::uint8_t StandIns::in_cycle(std::string_view label, std::string_view before, unsigned attempt,
                                std::uint32_t index, std::uint32_t count) const {
    Stream stream(keyed_, label, attempt);
    stream.add(count);
    stream.add(before);
    std::array<std::uint8_t, 256> next{};
    std::iota(next.begin(), next.end(), std::uint8_t{0});
    for (std::uint32_t k = count - 1; k > 0; --k) std::swap(next[k], next[stream.below(k)]);
    return next[index];
}

void StandIns::digits(std::span<std::uint8_t> digits, unsigned attempt) const {
    std::string before;
    for (std::uint8_t& digit : digits) {
        const char seen = static_cast<char>('0' + digit);
        digit = in_cycle("digit", before, attempt, digit, 10);
        before.push_back(seen);
    }
}

// As long in digits as they were.
void StandIns::octets(std::span<std::uint8_t> octets, unsigned attempt) const {
    std::string before;
    for (std::uint8_t& octet : octets) {
        const char seen = static_cast<char>(octet);
        const std::uint8_t first = octet < 10 ? 0 : octet < 100 ? 10 : 100;
        const std::uint32_t count = octet < 10 ? 10 : octet < 100 ? 90 : 156;
        octet = static_cast<std::uint8_t>(
            first + in_cycle("octet", before, attempt, static_cast<std::uint32_t>(octet - first), count));
        before.push_back(seen);
    }
}

// A Feistel network over positions that count differently: what was different stays different.
void StandIns::mix_once(std::span<std::uint32_t> indexes, std::span<const std::uint32_t> counts,
                        unsigned attempt) const {
    constexpr std::uint32_t rounds = 8;
    const std::size_t half = indexes.size() / 2;
    for (std::uint32_t k = 0; k < rounds; ++k) {
        const bool right = k % 2 == 0;
        Stream stream(keyed_, "word", attempt);
        stream.add(k);
        for (const std::uint32_t count : counts) stream.add(count);
        for (const std::uint32_t index : right ? indexes.first(half) : indexes.subspan(half))
            stream.add(index);
        for (std::size_t i = right ? half : 0; i < (right ? indexes.size() : half); ++i)
            indexes[i] = (indexes[i] + stream.below(counts[i])) % counts[i];
    }
}

void StandIns::mix(std::span<std::uint32_t> indexes, std::span<const std::uint32_t> counts,
                   unsigned attempt) const {
    if (indexes.size() == 1) {
        indexes[0] = in_cycle("letter", "", attempt, indexes[0], counts[0]);
        return;
    }
    constexpr unsigned again = 1U << 16;
    const std::vector<std::uint32_t> before(indexes.begin(), indexes.end());
    do {
        std::copy(before.begin(), before.end(), indexes.begin());
        mix_once(indexes, counts, attempt);
        attempt += again;
    } while (std::equal(before.begin(), before.end(), indexes.begin()));
}

void StandIns::text(Bytes characters, unsigned attempt) const {
    const auto zero = zeros_of_utf16(characters);
    if (!zero) {
        text_of_bytes(characters, attempt);
        return;
    }
    std::vector<std::uint8_t> units;
    for (std::size_t k = 1 - *zero; k < characters.size(); k += 2) units.push_back(characters[k]);
    text_of_bytes(units, attempt);
    for (std::size_t k = 0; k < units.size(); ++k) characters[2 * k + 1 - *zero] = units[k];
}

void StandIns::text_of_bytes(Bytes text, unsigned attempt) const {
    std::vector<std::uint32_t> indexes;
    std::vector<std::uint32_t> counts;
    for (std::size_t at = 0; at < text.size();) {
        if (is_digit(text[at])) {
            if (auto dotted = dotted_at(text, at)) {
                address(dotted->octets, attempt);
                write_dotted(dotted->octets, text.subspan(at, dotted->end - at));
                at = dotted->end;
                continue;
            }
            const std::size_t begin = at;
            while (at < text.size() && is_digit(text[at])) text[at++] -= '0';
            digits(text.subspan(begin, at - begin), attempt);
            for (std::size_t k = begin; k < at; ++k) text[k] += '0';
            continue;
        }
        const std::size_t begin = at;
        indexes.clear();
        counts.clear();
        while (at < text.size()) {
            const Character c = character_at(text, at);
            const auto one_of = class_of(c);
            if (!one_of) break;
            indexes.push_back(one_of->index(c.code));
            counts.push_back(one_of->count);
            at += c.bytes;
        }
        if (at == begin) {
            if (const auto control = class_of_control(text[at]))
                text[at] = static_cast<std::uint8_t>(control->code(
                    in_cycle("control", "", attempt, control->index(text[at]), control->count)));
            at += character_at(text, at).bytes;
            continue;
        }
        mix(indexes, counts, attempt);
        std::size_t to = begin;
        for (const std::uint32_t index : indexes) {
            Character c = character_at(text, to);
            c.code = class_of(c)->code(index);
            write_whole(c, text, to);
            to += c.bytes;
        }
    }
}

void StandIns::typed(std::uint8_t& character, std::string_view before, unsigned attempt) const {
    if (character < 10) {
        character = in_cycle("digit", before, attempt, character, 10);
    } else if (is_digit(character)) {
        character = static_cast<std::uint8_t>(
            '0' + in_cycle("digit", before, attempt, static_cast<std::uint32_t>(character - '0'), 10));
    } else if (const auto one_of = class_of({character, 1})) {
        const std::uint32_t index =
            in_cycle("typed", before, attempt, one_of->index(character), one_of->count);
        character = static_cast<std::uint8_t>(one_of->code(index));
    }
}

void StandIns::half_bytes(Bytes digits, unsigned attempt) const {
    std::string before;
    for (std::uint8_t& byte : digits) {
        std::array<std::uint8_t, 2> halves = {static_cast<std::uint8_t>(byte >> 4),
                                              static_cast<std::uint8_t>(byte & 0x0F)};
        for (std::uint8_t& half : halves) {
            if (half > 9) continue;
            const char seen = static_cast<char>('0' + half);
            half = in_cycle("digit", before, attempt, half, 10);
            before.push_back(seen);
        }
        byte = static_cast<std::uint8_t>(halves[0] << 4 | halves[1]);
    }
}

void StandIns::address(Bytes address, unsigned attempt) const {
    if (address.size() == 4) {
        if (!is_mask(address)) octets(address, attempt);
        return;
    }
    std::string before;
    for (std::uint8_t& byte : address) {
        const char seen = static_cast<char>(byte);
        if (byte != 0)
            byte = static_cast<std::uint8_t>(1 + in_cycle("byte", before, attempt, byte - 1U, 255));
        before.push_back(seen);
    }
}

void StandIns::bytes(Bytes bytes, unsigned attempt) const {
    if (all_are(bytes, 0) || all_are(bytes, 0xFF)) return;
    const std::vector<std::uint32_t> counts(bytes.size(), 256);
    std::vector<std::uint32_t> indexes(bytes.begin(), bytes.end());
    mix(indexes, counts, attempt);
    std::transform(indexes.begin(), indexes.end(), bytes.begin(),
                   [](std::uint32_t index) { return static_cast<std::uint8_t>(index); });
}

// Not even what kind of characters they were. A zero ends a text.
void StandIns::blank_text(Bytes characters, unsigned attempt) {
    constexpr std::array<char, 3> letters = {'x', 'y', 'X'};
    const auto is = [&](std::uint8_t byte, unsigned k) {
        return byte == 0 || byte == static_cast<std::uint8_t>(letters[k % letters.size()]);
    };
    const bool same = std::all_of(characters.begin(), characters.end(),
                                  [&](std::uint8_t byte) { return is(byte, attempt); });
    for (std::uint8_t& byte : characters) {
        if (byte != 0) byte = static_cast<std::uint8_t>(letters[(attempt + (same ? 1 : 0)) % letters.size()]);
    }
}

void StandIns::blank(Bytes bytes, unsigned attempt) {
    constexpr std::array<std::uint8_t, 4> first = {0x00, 0xFF, 0x20, 0x01};
    const auto value =
        attempt < first.size() ? first[attempt] : static_cast<std::uint8_t>(attempt * 0x9DU + 0x35U);
    std::fill(bytes.begin(), bytes.end(), value);
}

}  // namespace ztdecode::tool
