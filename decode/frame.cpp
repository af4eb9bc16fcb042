#include "core/session.hpp"

// The way in: one captured message. A super message is split here, each part under a line of its bytes; every
// single message goes to the dispatcher.

namespace ztdecode {

namespace {

constexpr std::uint8_t super_type1 = 11;  // parts with a length byte
constexpr std::uint8_t super_type2 = 23;  // parts with two length bytes, low byte first

void colour_code(const Session& session, std::string_view code, Text& out) {
    if (!session.switches.color) return;
    const auto write = [&] {
        out.add({&session.switches.color_escape, 1});
        out.add(code);
    };
    if (session.provenance != nullptr) {
        session.provenance->without(write);
    } else {
        write();
    }
}

// Puts what is written while it lives in the colour of the direction.
class Coloured {
  public:
    Coloured(const Session& session, std::uint32_t direction, Text& out) : session_(session), out_(out) {
        colour_code(session_, direction == to_dhs ? "[0;31m" : "[0;32m", out_);
    }
    void end() { colour_code(session_, "[0m", out_); }

  private:
    const Session& session_;
    Text& out_;
};

// Two newlines at the end of a decoded text become one. (They are looked at one by one: the processor has to
// wait for two characters that it wrote apart.)
void trim_doubled_newline(std::size_t begin, Text& out) {
    const std::string_view text = out.from(begin);
    if (text.ends_with('\n') && text.substr(0, text.size() - 1).ends_with('\n')) out.cut(out.size() - 1);
}

void dispatch_clean(Session& session, Message& m, std::uint32_t direction, Text& out) {
    Coloured colour(session, direction, out);
    const std::size_t begin = out.size();
    dispatch_message(session, m, out);
    trim_doubled_newline(begin, out);
    colour.end();
}

// A part of type 1 gets the newline that it lacks; a doubled one stays. (Type 2 trims a doubled one and adds
// none.)
void dispatch_with_newline(Session& session, Message& m, std::uint32_t direction, Text& out) {
    Coloured colour(session, direction, out);
    const std::size_t begin = out.size();
    dispatch_message(session, m, out);
    const bool newline_lacks = out.size() > begin && out.view().back() != '\n';
    colour.end();
    if (newline_lacks) out.add("\n");
}

// The bytes of a part as a trace line that the readers take: "\t> zt LL 00 B0 B1 ... Bn\n".
void msg_hexline(const Session& session, const Message& m, Text& out) {
    const Provenance::OneStretch line(session.provenance);
    out.print("\t> zt {:02x} 00"_cf, m.length());
    for (std::uint32_t k = 0; k < m.length(); ++k) {
        out.add(" ");
        out.hex(m[k]);
    }
    out.add("\n");
}

struct SuperKind {
    std::string_view header;
    std::uint32_t width;  // of the length field
    void (*dispatch)(Session&, Message&, std::uint32_t direction, Text&);
};

void split_super_message(Session& session, const Message& m, const SuperKind& kind, Text& out) {
    out.add(kind.header);
    std::uint32_t at = 1;
    do {
        const std::uint32_t remaining = m.length() - at;
        const std::uint32_t length =
            remaining < kind.width ? 0 : m[at] + (kind.width == 2 ? 256U * m[at + 1] : 0U);
        if (remaining < kind.width + length) {
            out.add("\t- bad residual length!!!");
            return;
        }
        const Carried level(session);
        if (!level) return;
        Message part = m.part(at + kind.width, length);
        msg_hexline(session, part, out);
        kind.dispatch(session, part, m.direction, out);
        at += kind.width + length;
    } while (at != m.length());
}

constexpr SuperKind type1 = {"\t- super message:\n", 1, dispatch_with_newline};
constexpr SuperKind type2 = {"\t- super message, type 2:\n", 2, dispatch_clean};

[[gnu::noinline]] void trace_entry(const Session& session, const Message& m) {
    session.standard_output(fmt::format("entree decode, lng=0x{:02x}  sens= {}\n"_cf, m.length(),
                                        m.direction == to_dhs ? "to DHS" : "from DHS"));
}

}  // namespace

void decode_carried(Session& session, Message& m, Text& out) {
    if (m.length() == 0) return;
    if (session.switches.debug) trace_entry(session, m);
    switch (m[0]) {
        case super_type1:
            split_super_message(session, m, type1, out);
            break;
        case super_type2:
            split_super_message(session, m, type2, out);
            break;
        default:
            dispatch_clean(session, m, m.direction, out);
            break;
    }
}

Outcome decode(Session& session, Message& m, Text& out) {
    if (session.provenance != nullptr) {
        session.provenance->start(out);
        m.observe(session.provenance);
    }
    Outcome outcome = Outcome::decoded;
    Captured captured(session, out);
    const Text::Piece whole(out);
    try {
        decode_carried(session, m, out);
    } catch (const UnknownClass&) {
        outcome = Outcome::unknown_class;
        colour_code(session, "[0m", out);
    }
    if (session.provenance != nullptr) session.provenance->finish();
    captured.done();
    return outcome;
}

}  // namespace ztdecode
