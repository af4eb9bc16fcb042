#include "core/tables.hpp"
#include "he/he.hpp"
#include "he/pieces.hpp"

// HE set to system.   byte 0: opcode in bits 0-6   byte 1: sub-code   byte 2: value   byte 3 ...: by opcode

namespace ztdecode::he {

namespace {

void digit(Decoding& d) { d.print("digit dialed: {digit}"_cf, d[2]); }

void key_code(Decoding& d) { d.print("key pushed: 0x{key:02x}"_cf, d[2]); }

// A key without a character, zero, ends the text.
void key_character(Decoding& d) {
    const Decoding::Piece key(d);
    d.add("key pushed: '");
    d.text("key_text", 2, 1);
    d.add("'");
}

// "4.17": neither number has zeros in front.
struct PlainVersion {
    Number number;

    std::size_t bound() const noexcept { return 8; }
    char* write(char* at) const { return write_format(at, "{-}.{-}"_cf, number >> 8, number & 0xFF); }
    Meaning meaning() const noexcept { return {Kind::version, true, 0, number.number, number.place}; }
};

PlainVersion plain_version(const Decoding& d, std::size_t k) { return {d.u16(k)}; }

// Versions, two bytes each: boot 4, code 6, ipar1 8, ipar2 11. Byte 10 is not a version's.
void reset(Decoding& d) {
    d.print(
        "reset {reset_kind}: boot {boot_version}, code {code_version}, ipar1 {ipar1_version}, "
        "ipar2 {ipar2_version}"_cf,
        either(d[1] == 0, "hard", "soft"), plain_version(d, 4), plain_version(d, 6), plain_version(d, 8),
        plain_version(d, 11));
}

void illegal_command(Decoding& d) { d.print("illegal command received: {command:02x}"_cf, d[2]); }

void reported_error(Decoding& d) { d.print("erreur: {error}"_cf, error(d[2])); }

void reported_warning(Decoding& d) { d.print("warning: {warning}"_cf, warning(d[2])); }

void subdevice_down(Decoding& d) { d.print("subdevice {subdevice:x} is down"_cf, d[2]); }

constexpr auto status_reports = opcodes({{0x00, "reset", reset},
                                         {0x01, "reset", reset},
                                         {0x02, "illegal_command", illegal_command},
                                         {0x03, "error", reported_error},
                                         {0x04, "warning", reported_warning},
                                         {0x05, "subdevice_down", subdevice_down},
                                         {0x06, "segment_failure", "segment failure"},
                                         {0x63, "stack_dump", "stack dump"}},
                                        "reset ???");

void status_report(Decoding& d) { status_reports.write(d, d[1]); }

void download_failure(Decoding& d) {
    static constexpr auto failures = names({{1, "not enought bytes"},
                                            {2, "too much bytes"},
                                            {3, "bad checksum in current block"},
                                            {4, "hardware reason"},
                                            {5, "aborted by download end message"}},
                                           "");
    d.print("download failure: {download_failure}"_cf, failures[d[2]]);
}

constexpr auto download_acknowledgements = opcodes({{0x01, "download_start_ack", "download start ack"},
                                                    {0x02, "download_end_ack", "download end ack"},
                                                    {0x03, "download_checksum_ack", "download iso ack"},
                                                    {0x04, "download_checksum_bad", "download iso bad"},
                                                    {0x05, "download_bad_message", "download bad msg"},
                                                    {0x06, "download_failure", download_failure}},
                                                   "download ???");

void download_acknowledgement(Decoding& d) { download_acknowledgements.write(d, d[1]); }

void available_memory(Decoding& d) {
    d.print("Available mem: 0x{available_memory:06x} (decimal {available_memory})"_cf, d.u32(2), d.u32(2));
}

constexpr auto reports = opcodes({{0x00, "resources_report", "resources report"},
                                  {0x01, "list_windows_report", "list windows report"},
                                  {0x02, "available_memory", available_memory},
                                  {0x04, "query_row_report", "query row report"}},
                                 "unknown ???");

void report(Decoding& d) { reports.write(d, d[1]); }

// byte 2: window   byte 3: object   byte 4: value key   byte 5: length of the value   byte 6 ...: value
void object_report(Decoding& d) {
    d.add("report: ");
    window_and_object(d);
    d.print(" valKey:{value_key:02x}, lng={length:02x} "_cf, d[4], d[5]);
    quoted_text(d, "value_text", 5);
}

constexpr auto smart_card_events = opcodes({{0x01, "smart_card_read_response", "read response"},
                                            {0x02, "smart_card_write_response", "write response"},
                                            {0x03, "smart_card_nack", "nack"},
                                            {0x04, "smart_card_status_response", "status response"},
                                            {0x05, "smart_card_insertion", "insertion"},
                                            {0x06, "smart_card_removal", "removal"}},
                                           "unknown ???");

void smart_card(Decoding& d) {
    d.add("smart card: ");
    smart_card_events.write(d, d[1]);
}

constexpr auto application_reports =
    opcodes({{0x02, "create_application", {"create appli", application_of_byte2}},
             {0x03, "delete_application", {"delete appli", application_of_byte2}},
             {0x04, "list_applications_report", "list applis report"},
             {0x05, "blink_application", "blink appli request"}},
            "???");

void application_report(Decoding& d) {
    d.add("appli management: ");
    application_reports.write(d, d[1]);
}

constexpr auto messages = opcodes({{0x00, "nop_ack", "NOP ack"},
                                   {0x01, "off_hook", "off hook"},
                                   {0x02, "on_hook", "on hook"},
                                   {0x03, "digit_dialled", digit},
                                   {0x06, "loop_back_on_ack", "loopback on ack"},
                                   {0x07, "loop_back_off_ack", "loopback off ack"},
                                   {0x1F, "status_report", status_report},
                                   {0x20, "key_pushed", key_code},
                                   {0x22, "i_am_here", "I'm here"},
                                   {0x25, "key_pushed", key_character},
                                   {0x2C, "download_ack", download_acknowledgement},
                                   {0x2E, "local_power_failure", "local power failure"},
                                   {0x2F, "local_power_return", "local power return"},
                                   {0x30, "report", report},
                                   {0x31, "object_report", object_report},
                                   {0x34, "smart_card", smart_card},
                                   {0x35, "launch_ack", "launch ack"},
                                   {0x50, "application_report", application_report}},
                                  "???");

}  // namespace

void to_system(Decoding& d) {
    d.status = messages.write(d, d[0] & 0x7F) ? Status::recognised : Status::unknown;
}

}  // namespace ztdecode::he
