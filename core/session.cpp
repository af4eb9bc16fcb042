#include "core/session.hpp"

#include <utility>

namespace ztdecode {

namespace {

// The room that a long text needed is not kept for the next message.
constexpr std::size_t room_to_keep = std::size_t{64} << 10;

}  // namespace

void Carrying::renew() noexcept {
    used = cut_short = false;
    reassembled = 0;
    text_besides = complaints = 0;
    if (module_super_text.capacity() > room_to_keep) module_super_text = {};
}

void Captured::enter_another() noexcept {
    Carrying& carrying = session_.carrying;
    outer_text_ = carrying.text;
    outer_begin_ = carrying.text_begin;
    carrying.text_besides = carrying.text_used();
    carrying.used = true;
}

void Captured::leave_to_another() noexcept {
    Carrying& carrying = session_.carrying;
    const std::size_t used = carrying.text_used();
    carrying.text = outer_text_;
    carrying.text_begin = outer_begin_;
    carrying.text_besides = 0;
    carrying.text_besides = used - carrying.text_used();
    if (!done_) carrying.cut_short = true;
}

void Captured::settle() noexcept {
    session_.carrying.renew();
    if (!std::exchange(session_.changed_, false)) return;
    if (done_) {
        session_.each_remembered([](auto& item) { item.keep(); });
    } else {
        session_.each_remembered([](auto& item) { item.undo(); });
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
