#include <forward_list>
#include <optional>

#include "core/phrase.hpp"
#include "digital/digital.hpp"
#include "digital/options/module.hpp"
#include "digital/options/super.hpp"

// Computer link module ("mac/pc"). byte 2: opcode, then its parameters.

namespace ztdecode::mpc {

namespace {

// byte 3: bit 7 first segment, bits 0-6 messages still to come
void segment_message(Decoding& d) {
    d.print("segment message {segment_start}, reste {segments_to_come} messages"_cf,
            flag(d.bit(3, 7), "debut", "suite"), d[3] & 0x7F);
}

constexpr auto commands =
    opcodes({{0x00, "nop", "nop"},
             {0x0B, "super_message", [](Decoding& d) { modules::super_message(d, from_system); }},
             {0x0C, "segment", segment_message},
             {0x0E, "version_inquiry", "version inquiry"},
             {0x11, "abca", "ABC-A"},
             {0x12, "tapi", "TAPI"},
             {0x1F, "bad_message", "bad message"},
             {0x20, "are_you_there", "are you there?"},
             {0x21, "pabx_type", "pabx type"},
             {0x22, "terminal_type", "terminal type"},
             {0x60, "local_message", "local message"},
             {0x61, "system_trace_header", "system trace header"},
             {0x62, "vta_trace_header", "vta trace header"},
             {0x63, "system_to_option_trace_header", "system to option trace header"},
             {0x64, "option_to_system_trace_header", "option to system trace header"}},
            "??");

// byte 3: 0 hard   bytes 5, 6: version
void reset(Decoding& d) {
    d.add("reset");
    add_phrase(d, "reset_kind", either(d[3] == 0, " hard mpc ", " soft mpc "), " ", " mpc ");
    d.print(" soft={software_version}"_cf, version_at(d, 5));
}

constexpr auto reports = opcodes({{0x00, "reset", reset},
                                  {0x01, "reset", reset},
                                  {0x02, "illegal_command", "illegal command"},
                                  {0x81, "reset", reset}},
                                 "reset ??");

// byte 3: kind
void report(Decoding& d) { reports.write(d, d[3]); }

class OpenEmulation {
  public:
    explicit OpenEmulation(Carrying& carrying) : carrying_(carrying) { carrying_.emulation.open = true; }
    OpenEmulation(const OpenEmulation&) = delete;
    OpenEmulation& operator=(const OpenEmulation&) = delete;
    ~OpenEmulation() { carrying_.emulation = {}; }

  private:
    Carrying& carrying_;
};

// A set's message that a module carries, for as long as the ones inside it are decoded.
class Played {
  public:
    explicit Played(Decoding& carrier)
        : carrier_(carrier),
          level_(carrier.session()),
          message_(decale(carrier.session(), carrier.message(), 3)) {}

    // Null where the budget has no room for it.
    Decoding* decode() {
        if (!level_) return nullptr;
        Decoding& d = decoding_.emplace(carrier_, message_);
        d.route = carrier_.route;
        d.link("digital");
        digital::to_system(d);
        return &d;
    }

  private:
    Decoding& carrier_;
    Carried level_;
    Message message_;
    std::optional<Decoding> decoding_;
};

// The module plays a set: byte 3 and on are a set's message to the system, which may come from a module that
// plays a set in its turn, and so on over the whole message. What such an inner module says ends the text, so
// it is decoded here, by the outermost one, when the set's decoder has come back: the stack stays as it is.
void set_emulation(Decoding& d) {
    d.add("VTA emulation: ");
    Carrying& carrying = d.session().carrying;
    if (carrying.emulation.open) {
        carrying.emulation.inside = true;
        return;
    }
    const OpenEmulation open(carrying);
    std::forward_list<Played> played;
    Decoding* carrier = &d;
    do {
        carrying.emulation.inside = false;
        carrier = played.emplace_front(*carrier).decode();
        // Opcode, sub-device and the module's opcode of a set emulation: without them nothing follows.
        if (carrier != nullptr && carrying.emulation.inside) carrier->on(carrier->u24(0));
    } while (carrier != nullptr && carrying.emulation.inside);
}

void anomaly(Decoding& d) { d.print("anomalie soft {anomaly}"_cf, d[3]); }

constexpr auto answers =
    opcodes({{0x00, "nop_ack", "nop ack"},
             {0x0B, "super_message", [](Decoding& d) { modules::super_message(d, to_system); }},
             {0x0C, "segment", "segment message "},
             {0x0E, "version_response", "version response"},
             {0x11, "abca", "ABC-A"},
             {0x12, "tapi", "TAPI"},
             {0x1F, "report", report},
             {0x20, "i_am_here", "I'm here"},
             {0x21, "connection_detected", "connection detected"},
             {0x22, "disconnection_detected", "disconnection detected"},
             {0x23, "enable_trace_mode", "enable trace mode"},
             {0x24, "disable_trace_mode", "disable trace mode"},
             {0x25, "vta_general_state_inquiry", "VTA general state inquiry"},
             {0x26, "set_emulation", set_emulation},
             {0x27, "anomaly", anomaly}},
            "??");

}  // namespace

void from_system(Decoding& d) { commands.write(d, modules::opcode(d)); }

void to_system(Decoding& d) { answers.write(d, modules::opcode(d)); }

}  // namespace ztdecode::mpc
