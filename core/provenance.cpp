#include "core/provenance.hpp"

#include <algorithm>
#include <new>

#include "core/text.hpp"

namespace ztdecode {

namespace {

void include(std::vector<ByteRange>& ranges, ByteRange bytes) {
    if (!ranges.empty() && ranges.back().last + 1 == bytes.first) {
        ranges.back().last = bytes.last;
        return;
    }
    for (const auto& r : ranges) {
        if (r.first <= bytes.first && bytes.last <= r.last) return;
    }
    ranges.push_back(bytes);
}

void put_in_order(std::vector<ByteRange>& ranges) {
    std::sort(ranges.begin(), ranges.end(), [](auto a, auto b) { return a.first < b.first; });
    std::vector<ByteRange> joined;
    for (const auto& r : ranges) {
        if (!joined.empty() && r.first <= joined.back().last + 1) {
            joined.back().last = std::max(joined.back().last, r.last);
        } else {
            joined.push_back(r);
        }
    }
    ranges = std::move(joined);
}

}  // namespace

void Provenance::start(const Text& text) {
    text_ = &text;
    in_one_ = without_memory_ = false;
    origin_ = seen_ = text.size();
    stretches_.clear();
    open_ = Stretch{};
    open_.begin = open_.end = 0;
}

bool Provenance::written() const noexcept { return text_->size() != seen_; }

void Provenance::pass_over() noexcept {
    seen_ = text_->size();
    open_.begin = open_.end = seen_ - origin_;
}

// Reading a byte is not expected to fail.
void Provenance::read(ByteRange bytes, bool reassembled) noexcept {
    try {
        const bool goes_on = in_one_ || stretches_.size() >= most_stretches;
        if ((written() && !goes_on) || (reassembled != open_.reassembled && !open_.bytes.empty())) close();
        open_.reassembled = reassembled;
        if (bytes.first == behind_the_end) {
            open_.behind_the_end = true;
        } else {
            include(open_.bytes, bytes);
        }
    } catch (const std::bad_alloc&) {
        without_memory_ = true;
    }
}

// Text can also have become shorter: a piece that ended at a zero byte, a doubled newline.
void Provenance::close() {
    seen_ = text_->size();
    const std::size_t now = seen_ > origin_ ? seen_ - origin_ : 0;
    while (!stretches_.empty() && stretches_.back().end > now) {
        stretches_.back().end = now;
        if (stretches_.back().begin < now) break;
        stretches_.pop_back();
    }
    open_.begin = std::min(open_.begin, now);
    open_.end = now;
    put_in_order(open_.bytes);
    if (open_.begin < open_.end) stretches_.push_back(std::move(open_));
    open_ = Stretch{};
    open_.begin = open_.end = now;
}

void Provenance::finish() {
    close();
    if (without_memory_) throw std::bad_alloc();
}

std::vector<ByteRange> Provenance::unused(std::uint32_t length) const {
    std::vector<bool> used(length, false);
    for (const auto& s : stretches_) {
        if (s.reassembled) continue;
        for (const auto& r : s.bytes) {
            for (std::uint32_t k = r.first; k <= r.last && k < length; ++k) used[k] = true;
        }
    }
    std::vector<ByteRange> result;
    for (std::uint32_t k = 0; k < length; ++k) {
        if (!used[k]) include(result, {k, k});
    }
    return result;
}

}  // namespace ztdecode
