#include "core/message.hpp"

#include <algorithm>

namespace ztdecode {

Message Message::without_record(std::span<const std::uint8_t> bytes, std::size_t length) noexcept {
    Message m(bytes.first(0));
    m.covered_ = static_cast<std::uint32_t>(bytes.size());
    m.length_ = m.direct_ = static_cast<std::uint32_t>(std::min<std::size_t>(length, m.covered_));
    return m;
}

// Dropping leading bytes moves only the bytes of the message down; those behind its new end stay where they
// were. So a byte below the length is the ancestor's byte `shift_` further on, and any other one its byte of
// the same number.
std::uint8_t Message::indirect(std::size_t k) const noexcept {
    // No record is that long; the ancestors of a deeply carried message need not be asked.
    if (k >= message_capacity && before_ != nullptr) return 0;
    for (const Message* m = this;; m = m->before_) {
        if (k < m->covered_) {
            m->looked_at_ = true;
            return m->bytes_[k];
        }
        if (m->before_ == nullptr || (m->fresh_ && k >= m->length_)) return 0;
        if (k < m->length_) k += m->shift_;
    }
}

Message Message::without_first(std::uint32_t n) const noexcept {
    Message m = *this;
    m.bytes_ += std::min(n, covered_);
    m.length_ -= n;
    m.covered_ = std::min(m.length_, covered_ - std::min(n, covered_));
    m.shift_ = n;
    m.origin_ += n;
    m.before_ = this;
    m.fresh_ = m.in_used_record_ = false;
    m.direct_ = m.covered_;
    return m;
}

Message Message::with_length(std::uint32_t n) const noexcept {
    Message m = *this;
    m.length_ = within_capacity(n);
    m.shift_ = 0;
    m.before_ = this;
    m.fresh_ = false;
    if (in_used_record_ && m.length_ > covered_) {
        m.covered_ = before_->covered_;
        before_->looked_at_ = true;
    }
    m.in_used_record_ = false;
    m.direct_ = std::min(m.length_, m.covered_);
    return m;
}

Message Message::in_used_record(std::uint32_t length, std::uint32_t written) const noexcept {
    Message m = with_length(length);
    m.covered_ = std::min(covered_, std::max(length, written));
    m.in_used_record_ = true;
    return m;
}

Message Message::part(std::uint32_t first, std::uint32_t n) const noexcept {
    const std::uint32_t found = first < covered_ ? std::min(n, covered_ - first) : 0;
    Message m(bytes_ + (found == 0 ? 0 : first), n, found);
    m.direction = direction;
    if (found < n && before_ != nullptr) {
        m.shift_ = first;
        m.before_ = this;
        m.fresh_ = true;
    }
    m.origin_ = origin_ + first;
    return m;
}

}  // namespace ztdecode
