#include "core/going_away.hpp"
#include "ip/ip.hpp"
#include "ip/messages.hpp"
#include "ip/values.hpp"

// System to IP set: voice streams, tones, parameters and application settings.

namespace ztdecode {

using namespace ip;

namespace {

void reset(Session& /*session*/, const Message& m, Text& out) {
    out.add("reset, ");
    reset_list(m, 2, out);
}

constexpr auto stream_directions =
    names({{0, "TSC input"}, {1, "TSC output"}, {2, "both directions"}}, "???");

// A stream message that ends with its head has no list at all.
void stream_list(const Message& m, std::uint32_t first, Text& out) {
    if (m.length() <= first) return;
    out.add(", ");
    rtp_param_list(m, first, out);
}

void start_rtp(Session& /*session*/, const Message& m, Text& out) {
    out.print("start RTP: {}"_cf, stream_directions[m[2]]);
    stream_list(m, 3, out);
}

void stop_rtp(Session& /*session*/, const Message& m, Text& out) {
    out.add("stop RTP");
    stream_list(m, 2, out);
}

void pause_rtp(Session& /*session*/, const Message& m, Text& out) {
    out.add("pause RTP");
    stream_list(m, 2, out);
}

void restart_rtp(Session& /*session*/, const Message& m, Text& out) {
    out.add("restart RTP");
    stream_list(m, 2, out);
}

void redirect(Session& /*session*/, const Message& m, Text& out) {
    out.add("redirect: ");
    redirect_list(m, 2, out);
}

void start_listen(Session& /*session*/, const Message& m, Text& out) {
    out.add("start listen RTP: ");
    listen_list(m, 2, out);
}

void start_record(Session& session, const Message& m, Text& out) {
    out.add("start record RTP");
    if (m.length() <= 2) return;
    out.add(", ");
    record_list(m, 2, session, out);
}

// byte 2: number of pairs   then 6 bytes each: frequency 1 (2), level 1, frequency 2 (2), level 2.
// The sets take the low byte of frequency 1, and of that one only, as signed.
void def_tones(Session& /*session*/, const Message& m, Text& out) {
    const std::uint32_t pairs = m[2];
    out.print("def tones ({} pairs)\n"_cf, pairs);
    for (std::uint32_t pair = 1, at = 3; pair <= pairs; ++pair, at += 6) {
        const int frequency1 = m[at] * 256 + m.s8(at + 1);
        const std::uint32_t frequency2 = m.u16(at + 3);
        if (frequency1 == 0 && frequency2 == 0) {
            out.print("           pair {} = (empty)\n"_cf, pair);
        } else {
            out.print("           pair {} = ( {} Hz {} dB, {} Hz {} dB)\n"_cf, pair, frequency1,
                      half_decibels(m[at + 2]), frequency2, half_decibels(m[at + 5]));
        }
    }
}

constexpr auto tone_directions =
    names({{0, "to the phone\n"}, {1, "to the network\n"}, {2, "to both phone and network\n"}}, "");

// byte 2: number of entries in bits 0-5, direction in bits 0-1 (the two overlap)   then 3 bytes each: tone,
// duration (2)
void start_tone(Session& /*session*/, const Message& m, Text& out) {
    const std::uint32_t entries = m[2] & 0x3F;
    out.print("start tone, nb entries: {}, "_cf, entries);
    out.add(tone_directions[m[2] & 3]);
    for (std::uint32_t entry = 1, at = 3; entry <= entries; ++entry, at += 3) {
        const std::uint32_t tone = m[at];
        const std::uint32_t duration = m.u16(at + 1);
        if (tone == 0 && duration == 0) {
            out.print(" - {}: abort mark\n"_cf, entry);
        } else {
            out.print(" - {}: id {} duration {} ms\n"_cf, entry, tone, duration);
        }
    }
}

void get_param(Session& /*session*/, const Message& m, Text& out) {
    out.add("get param");
    out.add(m.length() == 3 ? ": " : "s: ");
    for (std::uint32_t at = 2; at < m.length(); ++at) {
        if (at > 2) out.add(", ");
        out.add(ip_param_name(m[at]));
    }
}

void digit_key(Session& /*session*/, const Message& m, Text& out) {
    out.print("send digit key {} in RTP"_cf, m[2]);
}

void sip_parameters(Session& /*session*/, const Message& m, Text& out) {
    out.add(m.length() == 2 ? "erase SIP parameters" : "set SIP parameters");
}

void application_parameters(Session& /*session*/, const Message& m, Text& out) {
    out.add("set application parameters");
    if (m.length() <= 2) return;
    out.add(",");
    application_list(m, 2, out);
}

// The text ends at its zero byte, wherever the message ends.
void write_through_defence(Session& /*session*/, const Message& m, Text& out) {
    out.add("write through defence ");
    out.copy_string(m, 2, message_capacity);
    out.add("\n");
}

void debug_text(Session& session, const Message& m, Text& out) {
    if (session.switches.debug) {
        session.standard_output(fmt::format("longueur debug: {} (={:x})\n"_cf, m.length(), m.length()));
    }
    out.add("debug\n");
    if (m.length() > 2) out.copy(m, 2, m.length() - 2);
}

constexpr auto messages = opcodes({{0, reset},
                                   {1, start_rtp},
                                   {2, stop_rtp},
                                   {3, redirect},
                                   {4, def_tones},
                                   {5, start_tone},
                                   {6, "stop tone"},
                                   {7, start_listen},
                                   {8, "stop listen RTP"},
                                   {9, get_param},
                                   {10, set_param},
                                   {11, digit_key},
                                   {12, pause_rtp},
                                   {13, restart_rtp},
                                   {14, start_record},
                                   {15, "stop record RTP"},
                                   {16, sip_parameters},
                                   {17, "free seating"},
                                   {18, "set android param"},
                                   {19, "set external numbering param"},
                                   {20, application_parameters},
                                   {254, write_through_defence},
                                   {255, debug_text}});

}  // namespace

void dhs2ip(Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    if (m.length() == 1) {
        out.add("ERR: no content");
        return;
    }
    if (!messages.write(m[1], session, m, out)) out.add("unknown message");
}

}  // namespace ztdecode

void ztdecode::ip::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dhs2ip, d); }
