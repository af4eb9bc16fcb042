#include "ip/ip.hpp"
#include "ip/messages.hpp"
#include "ip/parameters.hpp"

// System to IP set: voice streams, tones, parameters and application settings.

namespace ztdecode::ip {

namespace {

void resets(Decoding& d) { reset_list(d, 2); }

// A stream message that ends with its head has no list at all.
void stream_list(Decoding& d, std::uint32_t first) {
    if (d.length() <= first) return;
    d.add(", ");
    rtp_param_list(d, first);
}

void start_rtp(Decoding& d) {
    static constexpr auto directions =
        names({{0, "TSC input"}, {1, "TSC output"}, {2, "both directions"}}, "???");
    d.print("start RTP: {stream_direction}"_cf, directions[d[2]]);
    stream_list(d, 3);
}

void stream(Decoding& d) { stream_list(d, 2); }

void redirections(Decoding& d) { redirect_list(d, 2); }

void listening(Decoding& d) { listen_list(d, 2); }

void start_record(Decoding& d) {
    d.add("start record RTP");
    if (d.length() <= 2) return;
    d.add(", ");
    record_list(d, 2);
}

// byte 2: number of pairs   then 6 bytes each: frequency 1 (2), level 1, frequency 2 (2), level 2.
// The sets take the low byte of frequency 1, and of that one only, as signed.
void def_tones(Decoding& d) {
    const std::uint32_t pairs = d.walk(d[2]);
    d.print("def tones ({tone_pairs} pairs)\n"_cf, d[2]);
    for (std::uint32_t pair = 1, at = 3; pair <= pairs; ++pair, at += 6) {
        const Decoding::Scope scope(d);
        const auto frequency1 = d.u16(at).as(d[at].number * 256 + static_cast<std::int8_t>(d[at + 1].number));
        const Number frequency2 = d.u16(at + 3);
        if (d.on(frequency1 == 0) && d.on(frequency2 == 0)) {
            d.print("           pair {tone_pair} = (empty)\n"_cf, pair);
        } else {
            d.print(
                "           pair {tone_pair} = ( {frequency_1} Hz {level_1} dB, {frequency_2} Hz {level_2} dB)\n"_cf,
                pair, frequency1, half_decibels(d[at + 2]), frequency2, half_decibels(d[at + 5]));
        }
    }
}

// byte 2: number of entries in bits 0-5, direction in bits 0-1 (the two overlap)   then 3 bytes each: tone,
// duration (2)
void start_tone(Decoding& d) {
    static constexpr auto directions =
        names({{0, "to the phone\n"}, {1, "to the network\n"}, {2, "to both phone and network\n"}}, "");
    const Byte count = d[2] & 0x3F;
    const Byte direction = d[2] & 3;
    const std::uint32_t entries = d.walk(count);
    d.print("start tone, nb entries: {tone_entries}, {tone_direction}"_cf, count, directions[direction]);
    for (std::uint32_t entry = 1, at = 3; entry <= entries; ++entry, at += 3) {
        const Decoding::Scope scope(d);
        const Byte tone = d[at];
        const Number duration = d.u16(at + 1);
        if (d.on(tone == 0) && d.on(duration == 0)) {
            d.print(" - {tone_entry}: abort mark\n"_cf, entry);
        } else {
            d.print(" - {tone_entry}: id {tone} duration {tone_duration} ms\n"_cf, entry, tone, duration);
        }
    }
}

void get_param(Decoding& d) {
    d.add("get param");
    d.add(d.length() == 3 ? ": " : "s: ");
    for (std::uint32_t at = 2; at < d.length(); ++at) {
        if (at > 2) d.add(", ");
        d.value("parameter", parameter_name(d[at]));
    }
}

void digit_key(Decoding& d) { d.print("send digit key {digit} in RTP"_cf, d[2]); }

void sip_parameters(Decoding& d) { d.add(d.length() == 2 ? "erase SIP parameters" : "set SIP parameters"); }

void application_parameters(Decoding& d) {
    d.add("set application parameters");
    if (d.length() <= 2) return;
    d.add(",");
    application_list(d, 2);
}

// The text ends at its zero byte, wherever the message ends.
void write_through_defence(Decoding& d) {
    d.add("write through defence ");
    d.text_to_zero("write_through_command", 2, message_capacity);
    d.add("\n");
}

void debug_text(Decoding& d) {
    const Session& session = d.session();
    if (session.switches.debug) {
        session.standard_output(formatted("longueur debug: {-} (={-:x})\n"_cf, d.length(), d.length()));
    }
    d.add("debug\n");
    if (d.length() > 2) d.text("debug_text", 2, d.length() - 2);
}

constexpr auto messages = opcodes({{0x00, "reset", {"reset, ", resets}},
                                   {0x01, "start_rtp", start_rtp},
                                   {0x02, "stop_rtp", {"stop RTP", stream}},
                                   {0x03, "redirect_rtp", {"redirect: ", redirections}},
                                   {0x04, "def_tones", def_tones},
                                   {0x05, "start_tone", start_tone},
                                   {0x06, "stop_tone", "stop tone"},
                                   {0x07, "start_listen_rtp", {"start listen RTP: ", listening}},
                                   {0x08, "stop_listen_rtp", "stop listen RTP"},
                                   {0x09, "get_param", get_param},
                                   {0x0A, "set_param", set_param},
                                   {0x0B, "digit_key", digit_key},
                                   {0x0C, "pause_rtp", {"pause RTP", stream}},
                                   {0x0D, "restart_rtp", {"restart RTP", stream}},
                                   {0x0E, "start_record_rtp", start_record},
                                   {0x0F, "stop_record_rtp", "stop record RTP"},
                                   {0x10, "sip_parameters", sip_parameters},
                                   {0x11, "free_seating", "free seating"},
                                   {0x12, "set_android_param", "set android param"},
                                   {0x13, "set_external_numbering_param", "set external numbering param"},
                                   {0x14, "set_application_parameters", application_parameters},
                                   {0xFE, "write_through_defence", write_through_defence},
                                   {0xFF, "debug_text", debug_text}},
                                  "unknown message");

}  // namespace

void from_system(Decoding& d) {
    d.status = Status::recognised;
    if (d.length() == 1) {
        d.add("ERR: no content");
        return;
    }
    messages.write(d, d[1]);
}

}  // namespace ztdecode::ip
