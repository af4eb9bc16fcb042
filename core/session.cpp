#include "core/session.hpp"

#include <utility>

namespace ztdecode {

namespace {

// The room that a long text needed is not kept for the next message.
constexpr std::size_t room_to_keep = std::size_t{64} << 10;

}  // namespace

void Carrying::renew() noexcept {
    used = false;
    reassembled = 0;
    text_besides = complaints = 0;
    if (module_super.text.capacity() > room_to_keep) module_super.text = {};
}

void Session::let_go() noexcept {
    in_captured_ = changed_ = cut_short_ = false;
    each_remembered([](auto& item) { item.keep(); });
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
