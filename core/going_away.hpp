#pragma once

#include "core/tables.hpp"
#include "decode/tables/identity.hpp"

// What decoders were written with before they had a `Decoding`.

namespace ztdecode {

template <class M>
struct BasicOpcode {
    using Handler = void (*)(Session&, M&, Text&);

    std::uint32_t code;
    std::string_view text{};
    Handler handler = nullptr;

    constexpr BasicOpcode(std::uint32_t c, std::string_view t) : code(c), text(t) {}
    constexpr BasicOpcode(std::uint32_t c, const char* t) : code(c), text(t) {}
    constexpr BasicOpcode(std::uint32_t c, Handler h) : code(c), handler(h) {}
};

template <class M, std::size_t N>
class BasicOpcodes {
  public:
    consteval explicit BasicOpcodes(const BasicOpcode<M> (&rows)[N]) : table_(rows) {}

    bool write(std::uint32_t code, Session& session, M& m, Text& out) const {
        const BasicOpcode<M>* const row = table_.find(code);
        if (row == nullptr) return false;
        if (row->handler != nullptr) {
            row->handler(session, m, out);
        } else {
            out.add(row->text);
        }
        return true;
    }

  private:
    Table<BasicOpcode<M>, N> table_;
};

using OldOpcode = BasicOpcode<const Message>;
template <std::size_t N>
consteval auto opcodes(const OldOpcode (&rows)[N]) {
    return BasicOpcodes<const Message, N>(rows);
}

// An old decoder for who has a Decoding, and the other way round.
template <class Old>
void call_old(Old old, Decoding& d) {
    Message m = d.message();
    m.route = d.route;
    m.status = d.status;
    old(d.session(), m, d.out());
    d.route = static_cast<Route>(m.route);
    d.status = m.status;
}
template <class New>
void call_new(New decoder, Session& session, Message& m, Text& out) {
    Decoding d(session, m, out);
    d.route = static_cast<Route>(m.route);
    d.status = m.status;
    d.option_type = m.option_type();
    decoder(d);
    m.route = d.route;
    m.status = d.status;
    m.set_option_type(d.option_type);
}

inline std::string_view type_poste(std::uint32_t code) { return terminal_type(Number{code}).text; }
inline std::string_view design_poste(int code) {
    return terminal_design(Number{static_cast<std::uint32_t>(code)}).text;
}
struct OldVersion {
    std::string_view label;
    Version version;
    std::size_t bound() const noexcept { return label.size() + 34; }
    char* write(char* at) const { return write_format(at, " {-}={-}"_cf, label, version); }
    Meaning meaning() const noexcept { return version.meaning(); }
};
inline OldVersion version_logiciel(std::string_view label, std::uint32_t major, std::uint32_t minor) {
    return {label, {major, minor}};
}
inline NameOrCode dec_err(std::uint32_t code) { return error(Number{code}); }
inline NameOrCode dec_warn(std::uint32_t code) { return warning(Number{code}); }

inline void decode_carried(Session& session, Message& m, Text& out) {
    call_new(static_cast<void (*)(Decoding&)>(decode_carried), session, m, out);
}

}  // namespace ztdecode
