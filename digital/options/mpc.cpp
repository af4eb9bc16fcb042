#include <forward_list>

#include "core/going_away.hpp"
#include "digital/digital.hpp"
#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Computer link module ("mac/pc"). byte 2: opcode, then its parameters.

namespace ztdecode {

namespace {

void super_command(Session& session, const Message& m, Text& out) {
    sub_super(session, m, decode_mpc_out, out);
}

void super_answer(Session& session, const Message& m, Text& out) { sub_super(session, m, decode_mpc, out); }

// byte 3: bit 7 first segment, bits 0-6 messages still to come
void segment_message(Session& /*session*/, const Message& m, Text& out) {
    out.print("segment message {}, reste {} messages"_cf, m.bit(3, 7) ? "debut" : "suite", m[3] & 0x7F);
}

constexpr auto commands = opcodes({{0x00, "nop"},
                                   {0x0B, super_command},
                                   {0x0C, segment_message},
                                   {0x0E, "version inquiry"},
                                   {0x11, "ABC-A"},
                                   {0x12, "TAPI"},
                                   {0x1F, "bad message"},
                                   {0x20, "are you there?"},
                                   {0x21, "pabx type"},
                                   {0x22, "terminal type"},
                                   {0x60, "local message"},
                                   {0x61, "system trace header"},
                                   {0x62, "vta trace header"},
                                   {0x63, "system to option trace header"},
                                   {0x64, "option to system trace header"}});

// byte 3: 0 hard   bytes 5, 6: version
void reset_form(Session& /*session*/, const Message& m, Text& out) {
    out.add("reset");
    out.add(m[3] == 0 ? " hard mpc " : " soft mpc ");
    out.add(soft_version(m, 5));
}

constexpr auto reports =
    opcodes({{0x00, reset_form}, {0x01, reset_form}, {0x02, "illegal command"}, {0x81, reset_form}});

// byte 3: kind
void reset_report(Session& session, const Message& m, Text& out) {
    if (!reports.write(m[3], session, m, out)) out.add("reset ??");
}

class OpenEmulation {
  public:
    explicit OpenEmulation(Carrying& carrying) : carrying_(carrying) { carrying_.emulation_open = true; }
    OpenEmulation(const OpenEmulation&) = delete;
    OpenEmulation& operator=(const OpenEmulation&) = delete;
    ~OpenEmulation() { carrying_.emulation_open = carrying_.emulation_inside = false; }

  private:
    Carrying& carrying_;
};

// The module plays a set: byte 3 and on are a set's message to the system, which may come from a module that
// plays a set in its turn, and so on over the whole message. What such an inner module says ends the text, so
// it is decoded here, by the outermost one, when the set's decoder has come back: the stack stays as it is.
void set_emulation(Session& session, const Message& m, Text& out) {
    out.add("VTA emulation: ");
    Carrying& carrying = session.carrying;
    if (carrying.emulation_open) {
        carrying.emulation_inside = true;
        return;
    }
    struct Played {
        Played(Session& s, const Message& carrier) : level(s), message(decale(s, carrier, 3)) {}
        Carried level;
        Message message;
    };
    const OpenEmulation open(carrying);
    std::forward_list<Played> played;
    const Message* carrier = &m;
    do {
        carrying.emulation_inside = false;
        Played& inner = played.emplace_front(session, *carrier);
        if (!inner.level) return;
        call_new(digital::to_system, session, inner.message, out);
        carrier = &inner.message;
    } while (carrying.emulation_inside);
}

void anomaly(Session& /*session*/, const Message& m, Text& out) { out.print("anomalie soft {}"_cf, m[3]); }

constexpr auto answers = opcodes({{0x00, "nop ack"},
                                  {0x0B, super_answer},
                                  {0x0C, "segment message "},
                                  {0x0E, "version response"},
                                  {0x11, "ABC-A"},
                                  {0x12, "TAPI"},
                                  {0x1F, reset_report},
                                  {0x20, "I'm here"},
                                  {0x21, "connection detected"},
                                  {0x22, "disconnection detected"},
                                  {0x23, "enable trace mode"},
                                  {0x24, "disable trace mode"},
                                  {0x25, "VTA general state inquiry"},
                                  {0x26, set_emulation},
                                  {0x27, anomaly}});

}  // namespace

void decode_mpc_out(Session& session, const Message& m, Text& out) {
    if (!commands.write(module_opcode(m), session, m, out)) out.add("??");
}

void decode_mpc(Session& session, const Message& m, Text& out) {
    if (!answers.write(module_opcode(m), session, m, out)) out.add("??");
}

}  // namespace ztdecode

void ztdecode::mpc::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_mpc_out, d); }
void ztdecode::mpc::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::decode_mpc, d); }
