#include "core/session.hpp"

#include <algorithm>
#include <utility>

namespace ztdecode {

namespace {

// The room that a long text needed is not kept for the next message.
constexpr std::size_t room_to_keep = std::size_t{64} << 10;

void note_anew(const auto& /*value*/) noexcept {}
void note_anew(Reassembly& series) noexcept {
    series.written = 0;
    series.stale_looked_at = false;
}

// Whether messages that began with `assumed`, and left `to`, would have said the same.
template <class T>
bool same(const Remembered<T>& arrived, const Remembered<T>& assumed, const Remembered<T>& to) {
    return to.first_use() != FirstUse::looked_at || arrived.value() == assumed.value();
}

bool same_bytes(const Reassembly& a, const Reassembly& b, std::uint32_t n) {
    return std::equal(a.bytes.begin(), a.bytes.begin() + n, b.bytes.begin());
}

bool same(const Remembered<Reassembly>& arrived, const Remembered<Reassembly>& assumed,
          const Remembered<Reassembly>& to) {
    const Reassembly& a = arrived.value();
    const Reassembly& b = assumed.value();
    if (to.value().stale_looked_at && !same_bytes(a, b, message_capacity)) return false;
    if (to.first_use() != FirstUse::looked_at) return true;
    return a.length == b.length && a.gathered == b.gathered && a.segments == b.segments &&
           a.to_come == b.to_come && a.last_place == b.last_place && a.direction == b.direction &&
           a.places == b.places && same_bytes(a, b, a.gathered);
}

template <class T>
void take(T& value, const T& to) {
    value = to;
}

// What a longer series left stays behind a shorter one.
void take(Reassembly& value, const Reassembly& to) {
    const auto bytes = value.bytes;
    value = to;
    std::copy(bytes.begin() + to.written, bytes.end(), value.bytes.begin() + to.written);
}

}  // namespace

void Carrying::renew() noexcept {
    used = false;
    reassembled = 0;
    text_besides = complaints = 0;
    if (module_super.text.capacity() > room_to_keep) module_super.text = {};
}

void Memory::forget_uses() noexcept {
    each_remembered(
        [](auto& item) {
            item.forget_use();
            note_anew(item.now());
        },
        *this);
}

bool Memory::would_say_the_same(const Memory& from, const Memory& to) const {
    bool all = true;
    each_remembered([&all](const auto& arrived, const auto& assumed,
                           const auto& left) { all = all && same(arrived, assumed, left); },
                    *this, from, to);
    return all;
}

void Memory::learn(const Memory& to) {
    each_remembered(
        [](auto& item, const auto& left) {
            if (left.first_use() != FirstUse::none) take(item.now(), left.value());
        },
        *this, to);
}

void Session::let_go() noexcept {
    in_captured_ = changed_ = cut_short_ = false;
    each_remembered([](auto& item) { item.keep(); }, *this);
    carrying = Carrying();
}

void Captured::enter_another() noexcept {
    Carrying& carrying = session_.carrying;
    outer_text_ = carrying.text;
    outer_begin_ = carrying.text_begin;
    if (carrying.levels == 0) {
        carrying.renew();
    } else {
        carrying.use_text(carrying.text_written());
    }
}

void Captured::leave_to_another() noexcept {
    Carrying& carrying = session_.carrying;
    const std::size_t written = carrying.text_written();
    carrying.text = outer_text_;
    carrying.text_begin = outer_begin_;
    if (carrying.levels != 0) carrying.text_besides += written - carrying.text_written();
    if (!done_) session_.cut_short_ = true;
}

void Captured::settle() noexcept {
    session_.carrying.renew();
    session_.cut_short_ = false;
    if (!std::exchange(session_.changed_, false)) return;
    if (done_) {
        Session::each_remembered([](auto& item) { item.keep(); }, session_);
    } else {
        Session::each_remembered([](auto& item) { item.undo(); }, session_);
    }
}

Message decale(Session& session, const Message& m, std::uint32_t n) {
    if (m.length() < n) {
        session.complain("decalage incorrect: demandé: {}, disponible: {}\n"_cf, n, m.length());
        return m.with_length(0);
    }
    return m.without_first(n);
}

}  // namespace ztdecode
