#include "core/decoding.hpp"

// The way in: one captured message. A super message is split here, each part under a line of its bytes; every
// single message goes to the dispatcher.

namespace ztdecode {

namespace {

constexpr std::uint8_t super_type1 = 11;  // parts with a length byte
constexpr std::uint8_t super_type2 = 23;  // parts with two length bytes, low byte first

[[gnu::noinline]] void write_colour_code(const Session& session, std::string_view code, Text& out) {
    if (session.trail != nullptr) session.trail->look();
    out.add({&session.switches.color_escape, 1});
    out.add(code);
    if (session.trail != nullptr) session.trail->pass_over();
}

void colour_code(const Session& session, std::string_view code, Text& out) {
    if (session.switches.color) write_colour_code(session, code, out);
}

// Around what is written in the colour of the direction. (No object: thousands of messages may be inside each
// other.)
void begin_colour(Decoding& d) {
    colour_code(d.session(), d.direction() == to_dhs ? "[0;31m" : "[0;32m", d.out());
}

void end_colour(Decoding& d) { colour_code(d.session(), "[0m", d.out()); }

// Two newlines at the end of a decoded text become one. (They are looked at one by one: the processor has to
// wait for two characters that it wrote apart.)
void trim_doubled_newline(std::size_t begin, Decoding& d) {
    const std::string_view text = d.out().from(begin);
    if (text.ends_with('\n') && text.substr(0, text.size() - 1).ends_with('\n')) d.cut(d.out().size() - 1);
}

void dispatch_clean(Decoding& d) {
    begin_colour(d);
    const std::size_t begin = d.out().size();
    dispatch_message(d);
    trim_doubled_newline(begin, d);
    end_colour(d);
}

// A part of type 1 gets the newline that it lacks; a doubled one stays. (Type 2 trims a doubled one and adds
// none.)
void dispatch_with_newline(Decoding& d) {
    Text& out = d.out();
    begin_colour(d);
    const std::size_t begin = out.size();
    dispatch_message(d);
    const bool newline_lacks = out.size() > begin && out.view().back() != '\n';
    end_colour(d);
    if (newline_lacks) out.add("\n");
}

// The bytes of a part as a trace line that the readers take: "\t> zt LL 00 B0 B1 ... Bn\n".
void part_as_trace_line(Decoding& d, std::uint32_t first, const Number& length) {
    d.print("\t> zt {part_length:02x} 00"_cf, length);
    d.hex("part_bytes", first, length.number, Decoding::Before::blank);
    d.add("\n");
}

struct SuperKind {
    std::string_view name;
    std::string_view header;
    std::uint32_t width;  // of the length field
    void (*dispatch)(Decoding&);
};

void split_super_message(Decoding& d, const SuperKind& kind) {
    d.link("digital");
    d.name(kind.name, d[0]);
    d.add(kind.header);
    std::uint32_t at = 1;
    do {
        const Decoding::Scope scope(d);
        const std::uint32_t remaining = d.length() - at;
        const Number length = remaining < kind.width ? Number{}
                              : kind.width == 2      ? d.low16(at)
                                                     : static_cast<Number>(d[at]);
        d.walk(length);
        if (remaining < kind.width + length.number) {
            d.add("\t- bad residual length!!!");
            return;
        }
        const Carried level(d.session());
        if (!level) return;
        part_as_trace_line(d, at + kind.width, length);
        const Message part = d.message().part(at + kind.width, length.number);
        {
            Decoding carried(d, part);
            kind.dispatch(carried);
        }
        at += kind.width + length.number;
    } while (at != d.length());
}

constexpr SuperKind type1 = {"super_message", "\t- super message:\n", 1, dispatch_with_newline};
constexpr SuperKind type2 = {"super_message_type_2", "\t- super message, type 2:\n", 2, dispatch_clean};

[[gnu::noinline]] void trace_entry(const Decoding& d) {
    d.session().standard_output(formatted("entree decode, lng=0x{-:02x}  sens= {-}\n"_cf, d.length(),
                                          d.direction() == to_dhs ? "to DHS" : "from DHS"));
}

}  // namespace

void decode_carried(Decoding& d) {
    if (d.length() == 0) return;
    if (d.session().switches.debug) trace_entry(d);
    switch (d.on(d[0])) {
        case super_type1:
            split_super_message(d, type1);
            break;
        case super_type2:
            split_super_message(d, type2);
            break;
        default:
            dispatch_clean(d);
            break;
    }
}

Outcome decode(Session& session, const Message& m, Text& out) {
    if (session.trail != nullptr) session.trail->start(out, m);
    Outcome outcome = Outcome::decoded;
    Captured captured(session, out);
    {
        Decoding d(session, m, out);
        const Decoding::Piece whole(d);
        try {
            decode_carried(d);
        } catch (const UnknownClass&) {
            outcome = Outcome::unknown_class;
            colour_code(session, "[0m", out);
        }
    }
    if (session.trail != nullptr) session.trail->finish();
    captured.done();
    return outcome;
}

}  // namespace ztdecode
