#include "core/going_away.hpp"
#include "he/he.hpp"
#include "he/pieces.hpp"

// HE set to system.   byte 0: opcode in bits 0-6   byte 1: sub-code   byte 2: value   byte 3 ...: by opcode

namespace ztdecode {

namespace {

void digit(Session& /*session*/, const Message& m, Text& out) { out.print("digit dialed: {}"_cf, m[2]); }

void key_code(Session& /*session*/, const Message& m, Text& out) {
    out.print("key pushed: 0x{:02x}"_cf, m[2]);
}

// A key without a character, zero, ends the text.
void key_character(Session& /*session*/, const Message& m, Text& out) {
    const Text::Piece key(out);
    out.add("key pushed: '");
    out.put(m[2]);
    out.put('\'');
}

// Versions, two bytes each: boot 4, code 6, ipar1 8, ipar2 11. Byte 10 is not a version's.
void reset(Session& /*session*/, const Message& m, Text& out) {
    out.print("reset {}: boot {}.{}, code {}.{}, ipar1 {}.{}, ipar2 {}.{}"_cf, m[1] == 0 ? "hard" : "soft",
              m[4], m[5], m[6], m[7], m[8], m[9], m[11], m[12]);
}

void illegal_command(Session& /*session*/, const Message& m, Text& out) {
    out.print("illegal command received: {:02x}"_cf, m[2]);
}

void error(Session& /*session*/, const Message& m, Text& out) { out.print("erreur: {}"_cf, dec_err(m[2])); }

void warning(Session& /*session*/, const Message& m, Text& out) {
    out.print("warning: {}"_cf, dec_warn(m[2]));
}

void subdevice_down(Session& /*session*/, const Message& m, Text& out) {
    out.print("subdevice {:x} is down"_cf, m[2]);
}

constexpr auto status_reports = opcodes({{0, reset},
                                         {1, reset},
                                         {2, illegal_command},
                                         {3, error},
                                         {4, warning},
                                         {5, subdevice_down},
                                         {6, "segment failure"},
                                         {0x63, "stack dump"}});

void status_report(Session& session, const Message& m, Text& out) {
    if (!status_reports.write(m[1], session, m, out)) out.add("reset ???");
}

constexpr auto download_failures = names({{1, "not enought bytes"},
                                          {2, "too much bytes"},
                                          {3, "bad checksum in current block"},
                                          {4, "hardware reason"},
                                          {5, "aborted by download end message"}},
                                         "");

void download_failure(Session& /*session*/, const Message& m, Text& out) {
    out.print("download failure: {}"_cf, download_failures[m[2]]);
}

constexpr auto download_acknowledgements = opcodes({{1, "download start ack"},
                                                    {2, "download end ack"},
                                                    {3, "download iso ack"},
                                                    {4, "download iso bad"},
                                                    {5, "download bad msg"},
                                                    {6, download_failure}});

void download_acknowledgement(Session& session, const Message& m, Text& out) {
    if (!download_acknowledgements.write(m[1], session, m, out)) out.add("download ???");
}

void available_memory(Session& /*session*/, const Message& m, Text& out) {
    const std::uint32_t bytes = m.u32(2);
    out.print("Available mem: 0x{:06x} (decimal {})"_cf, bytes, bytes);
}

constexpr auto reports = opcodes(
    {{0, "resources report"}, {1, "list windows report"}, {2, available_memory}, {4, "query row report"}});

void report(Session& session, const Message& m, Text& out) {
    if (!reports.write(m[1], session, m, out)) out.add("unknown ???");
}

// byte 2: window   byte 3: object   byte 4: value key   byte 5: length of the value   byte 6 ...: value
void object_report(Session& /*session*/, const Message& m, Text& out) {
    out.add("report: ");
    he::window_and_object(m, out);
    out.print(" valKey:{:02x}, lng={:02x} "_cf, m[4], m[5]);
    he::quoted_text(m, 5, out);
}

constexpr auto smart_card_events = names({{1, "read response"},
                                          {2, "write response"},
                                          {3, "nack"},
                                          {4, "status response"},
                                          {5, "insertion"},
                                          {6, "removal"}},
                                         "unknown ???");

void smart_card(Session& /*session*/, const Message& m, Text& out) {
    out.print("smart card: {}"_cf, smart_card_events[m[1]]);
}

void create_application(Session& /*session*/, const Message& m, Text& out) {
    out.print("create appli{}"_cf, apId(m[2]));
}

void delete_application(Session& /*session*/, const Message& m, Text& out) {
    out.print("delete appli{}"_cf, apId(m[2]));
}

constexpr auto application_reports = opcodes({{2, create_application},
                                              {3, delete_application},
                                              {4, "list applis report"},
                                              {5, "blink appli request"}});

void application_report(Session& session, const Message& m, Text& out) {
    out.add("appli management: ");
    if (!application_reports.write(m[1], session, m, out)) out.add("???");
}

constexpr auto messages = opcodes({{0, "NOP ack"},
                                   {1, "off hook"},
                                   {2, "on hook"},
                                   {3, digit},
                                   {6, "loopback on ack"},
                                   {7, "loopback off ack"},
                                   {31, status_report},
                                   {32, key_code},
                                   {34, "I'm here"},
                                   {37, key_character},
                                   {44, download_acknowledgement},
                                   {46, "local power failure"},
                                   {47, "local power return"},
                                   {48, report},
                                   {49, object_report},
                                   {52, smart_card},
                                   {53, "launch ack"},
                                   {80, application_report}});

}  // namespace

void he2dhs(Session& session, Message& m, Text& out) {
    m.status = Status::recognised;
    if (messages.write(m[0] & 0x7F, session, m, out)) return;
    m.status = Status::unknown;
    out.add("???");
}

}  // namespace ztdecode

void ztdecode::he::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::he2dhs, d); }
