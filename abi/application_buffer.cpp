#include "abi/application_buffer.hpp"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "abi/process.hpp"

extern "C" {
char* app_buf = nullptr;
std::uint32_t app_buf_size = 0;
std::uint32_t app_idx = 0;
}

namespace ztdecode::abi {

namespace {

constexpr std::uint64_t step = 200000;
constexpr std::size_t line_size = 10000;  // of one item, with the zero behind it

// Sizes that a host without much memory can have; beyond them there is no buffer.
constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();

bool grow_to(std::uint64_t size) noexcept {
    if (size > most) return false;
    const std::uint64_t present = app_buf != nullptr ? app_buf_size : 0;
    if (size <= present) return true;
    auto* grown =
        static_cast<char*>(std::realloc(app_buf, static_cast<std::size_t>(size)));  // NOLINT: the host's, too
    if (grown == nullptr) return false;
    std::memset(grown + present, 0, static_cast<std::size_t>(size - present));
    app_buf = grown;
    app_buf_size = static_cast<std::uint32_t>(size);
    return true;
}

bool lost = false;  // a text, for want of memory

std::uint64_t size_now() noexcept { return app_buf != nullptr ? app_buf_size : 0; }

// Writes `kept` of an item of `length` characters. One step more for an item that does not fit, and as many
// as the kept characters and their zero need. The cut part of the item reads as zeros.
void add_item(std::string_view kept, std::uint64_t length) noexcept {
    const std::uint64_t at = app_idx;
    std::uint64_t size = size_now();
    if (at + length >= size) size += step;
    while (at + kept.size() + 1 > size) size += step;
    if (!grow_to(size)) {
        lost = true;
        return;
    }
    kept.copy(app_buf + at, kept.size());
    const std::uint64_t end = std::min<std::uint64_t>(at + length + 1, app_buf_size);
    std::memset(app_buf + at + kept.size(), 0, static_cast<std::size_t>(end - at - kept.size()));
    app_idx = static_cast<std::uint32_t>(at + length);
}

// How much of the text is not taken back.
std::uint32_t finished = 0;

void cut_application_text(std::uint32_t length) noexcept {
    app_idx = length;
    if (length < size_now()) app_buf[length] = '\0';
}

void complain_of_length(std::size_t length) noexcept {
    if (length > line_size) session().standard_error("\nLine too long, truncated\n");
}

}  // namespace

const char* application_text() noexcept { return app_buf != nullptr ? app_buf : ""; }

void add_application_text(std::string_view text) noexcept {
    if (text.empty()) return;
    const std::uint64_t at = app_idx;
    std::uint64_t size = size_now();
    while (at + text.size() >= size) size += step;
    if (!grow_to(size)) {
        lost = true;
        return;
    }
    text.copy(app_buf + at, text.size());
    app_buf[at + text.size()] = '\0';
    app_idx = static_cast<std::uint32_t>(at + text.size());
}

void add_application_item(std::string_view item) noexcept {
    complain_of_length(item.size());
    add_item(item.substr(0, line_size - 1), item.size());
}

void set_application_text(std::string_view text) noexcept {
    cut_application_text(0);
    add_application_text(text);
    finished = app_idx;
}

void begin_application_text() noexcept {
    finished = app_idx;
    lost = false;
}

bool application_text_is_whole() noexcept { return !lost; }

void take_back_application_text() noexcept { cut_application_text(finished); }

}  // namespace ztdecode::abi

namespace abi = ztdecode::abi;

extern "C" {

char* p(const char* format, ...) {
    std::array<char, abi::line_size> line;  // NOLINT: written below
    va_list arguments;
    va_start(arguments, format);
    const int formatted = std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    if (formatted < 0) return app_buf;
    const auto length = static_cast<std::size_t>(formatted);
    abi::complain_of_length(length);
    const std::uint32_t begin = app_idx;
    abi::add_item({line.data(), std::min(length, line.size() - 1)}, length);
    return app_buf != nullptr ? app_buf + begin : nullptr;
}

void vFreeApplicationBuffer(void) {
    std::free(app_buf);  // NOLINT: the host's, too
    app_buf = nullptr;
    app_buf_size = 0;
    app_idx = 0;
}
}
