#include "tool/input/lines.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace ztdecode::tool {

namespace {

constexpr std::size_t buffer_size = std::size_t{256} * 1024;

// By blocks of which each has a sum that fits a byte: compilers count sixteen characters at once then.
std::uint64_t count(char c, std::string_view text) {
    constexpr std::size_t block = 240;
    std::uint64_t sum = 0;
    while (!text.empty()) {
        const std::size_t n = std::min(block, text.size());
        std::uint8_t in_block = 0;
        for (std::size_t k = 0; k < n; ++k)
            in_block = static_cast<std::uint8_t>(in_block + (text[k] == c ? 1 : 0));
        sum += in_block;
        text.remove_prefix(n);
    }
    return sum;
}

}  // namespace

Input::Input(Source& source, std::function<bool()> before_waiting)
    : source_(&source),
      may_wait_(source.may_wait()),
      before_waiting_(std::move(before_waiting)),
      buffer_(buffer_size + 1),
      text_(buffer_.data()) {}

Input::Input(Lines& lines, std::size_t begin, std::size_t end) noexcept
    : text_(lines.bytes.data()),
      begin_(begin),
      end_(end),
      ends_in_returns_(lines.end_in_returns),
      learnt_(true),
      at_end_(true),
      bytes_read_(lines.bytes_read) {}

// Reads more behind what is there; room is made first. False at the end.
bool Input::fill() {
    if (at_end_) return false;
    if (begin_ > 0) {
        std::memmove(text_, text_ + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    if (end_ + 1 == buffer_.size()) {
        buffer_.resize(buffer_.size() * 2 - 1);
        text_ = buffer_.data();
    }
    if (may_wait_ && before_waiting_ && !before_waiting_()) {
        at_end_ = true;
        return false;
    }
    const std::size_t n = source_->read(text_ + end_, buffer_.size() - 1 - end_);
    end_ += n;
    bytes_read_ += n;
    at_end_ = n == 0;
    return n > 0;
}

// A carriage return ends lines, too, where the first one has no newline and goes on behind it.
void Input::learn_line_end(const char* from, std::size_t present) {
    learnt_ = std::memchr(from, '\n', present) != nullptr;
    if (learnt_) return;
    const void* const lone = std::memchr(from, '\r', present);
    learnt_ = lone != nullptr && lone != from + present - 1;
    if (!learnt_) return;
    ends_in_returns_ = true;
    searched_ = 0;
}

const char* Input::line_end(const char* from, const char* end) const {
    const auto find = [from](char c, const char* until) {
        return static_cast<const char*>(std::memchr(from, c, static_cast<std::size_t>(until - from)));
    };
    const char* const newline = find('\n', end);
    if (!ends_in_returns_) return newline;
    const char* const carriage_return = find('\r', newline != nullptr ? newline : end);
    return carriage_return != nullptr ? carriage_return : newline;
}

bool Input::next(Next& next) {
    for (;;) {
        char* text = text_ + begin_;
        const std::size_t present = end_ - begin_;
        if (!learnt_) learn_line_end(text, present);
        const char* const newline = line_end(text + searched_, text + present);
        if (newline != nullptr) {
            const auto length = static_cast<std::size_t>(newline - text);
            next = {{text, length}, true, in_long_line_};
            begin_ += length + 1;
            searched_ = 0;
            in_long_line_ = false;
            return true;
        }
        searched_ = present;
        const bool too_long = present >= longest_line;
        if (!too_long && fill()) continue;
        if (present == 0) return false;
        text = text_ + begin_;
        text[present] = '\0';
        next = {{text, present}, false, in_long_line_ || too_long};
        in_long_line_ = too_long;
        begin_ = end_;
        searched_ = 0;
        return true;
    }
}

// How many bytes of those that are there are whole lines: up to the last one that ends in the first `most`
// bytes, or else the first one.
std::size_t Input::whole_lines(std::size_t most) const {
    const std::string_view present(text_ + begin_, end_ - begin_);
    for (std::size_t n = std::min(most, present.size()); n > 0; --n) {
        if (ends_line(present[n - 1])) return n;
    }
    if (most >= present.size()) return 0;
    const auto rest = present.substr(most);
    const auto* const end = std::find_if(rest.begin(), rest.end(), [this](char c) { return ends_line(c); });
    return end == rest.end() ? 0 : most + static_cast<std::size_t>(end - rest.begin()) + 1;
}

// Nothing waits for the input alone: there is no output of its own to be let out before.
bool Input::take(std::size_t most, Lines& lines) {
    if (!learnt_ || in_long_line_) return false;
    struct PutBack {
        std::function<bool()>& place;
        std::function<bool()> taken = std::exchange(place, {});
        ~PutBack() { place = std::move(taken); }
    };
    std::size_t n = 0;
    const PutBack put_back{before_waiting_};
    for (;;) {
        const std::size_t present = end_ - begin_;
        const bool enough = present >= most || may_wait_;
        n = enough || at_end_ ? whole_lines(most) : 0;
        if (n > 0 || at_end_ || present >= longest_line) break;
        fill();
    }
    if (n == 0) return false;
    const char* const text = text_ + begin_;
    lines.bytes.assign(text, text + n + 1);
    lines.size = n;
    lines.count = count('\n', {text, n}) + (ends_in_returns_ ? count('\r', {text, n}) : 0);
    lines.end_in_returns = ends_in_returns_;
    lines.bytes_read = bytes_read_;
    begin_ += n;
    searched_ = 0;
    return true;
}

std::span<const std::uint8_t> Input::block(std::size_t n) {
    while (end_ - begin_ < n && fill()) {
    }
    const std::size_t present = std::min(n, end_ - begin_);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text_ + begin_);  // NOLINT: bytes as bytes
    begin_ += present;
    return {bytes, present};
}

}  // namespace ztdecode::tool
