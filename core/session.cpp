#include "core/session.hpp"

#include <utility>

namespace ztdecode {

namespace {

// The room that a long text needed is not kept for the next message.
constexpr std::size_t room_to_keep = std::size_t{64} << 10;

}  // namespace

void Carrying::begin() noexcept {
    levels = reassembled = reassembly_depth = module_super_depth = 0;
    complaints = text_besides = 0;
    module_super_ended = emulation_open = emulation_inside = false;
    if (module_super_text.capacity() > room_to_keep) module_super_text = {};
}

Captured::Captured(Session& session, const Text& out) noexcept
    : session_(session),
      outermost_(!std::exchange(session.in_captured_, true)),
      outer_text_(session.carrying.text),
      outer_begin_(session.carrying.text_begin) {
    Carrying& carrying = session.carrying;
    if (outermost_) {
        carrying.begin();
    } else {
        carrying.text_besides = carrying.text_used();
    }
    carrying.text = &out;
    carrying.text_begin = out.size();
}

Captured::~Captured() {
    Carrying& carrying = session_.carrying;
    if (!outermost_) {
        const std::size_t used = carrying.text_used();
        carrying.text = outer_text_;
        carrying.text_begin = outer_begin_;
        carrying.text_besides = 0;
        carrying.text_besides = used - carrying.text_used();
        return;
    }
    carrying.text = nullptr;
    session_.in_captured_ = false;
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
