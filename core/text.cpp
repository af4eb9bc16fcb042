#include "core/text.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace ztdecode {

void Text::grow(std::size_t n) {
    const std::size_t wanted = std::max({size_ + n, capacity_ * 2, std::size_t{4096}});
    char* grown =
        static_cast<char*>(std::realloc(bytes_.get(), wanted));  // NOLINT: grows in place where it can
    if (grown == nullptr) throw std::bad_alloc();
    static_cast<void>(bytes_.release());
    bytes_.reset(grown);
    capacity_ = wanted;
}

namespace {

struct Decibels {
    std::array<char, 5> digits{};
    std::uint8_t size = 0;
};

consteval std::array<Decibels, 256> decibel_texts() {
    std::array<Decibels, 256> texts{};
    for (int byte = 0; byte < 256; ++byte) {
        const int steps = byte < 128 ? byte : 256 - byte;
        Decibels& t = texts[static_cast<std::size_t>(byte)];
        auto add = [&t](int c) { t.digits[t.size++] = static_cast<char>(c); };
        if (byte >= 128) add('-');
        if (steps / 2 >= 10) add('0' + steps / 20);
        add('0' + steps / 2 % 10);
        add('.');
        add(steps % 2 != 0 ? '5' : '0');
    }
    return texts;
}

constexpr std::array<Decibels, 256> decibels = decibel_texts();

}  // namespace

char* HalfDecibels::write(char* at) const noexcept {
    const Decibels& t = decibels[steps.number];
    return copy_characters(at, {t.digits.data(), t.size});
}

}  // namespace ztdecode
