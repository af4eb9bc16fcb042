#include "core/tables.hpp"
#include "he/commands.hpp"
#include "he/he.hpp"
#include "he/pieces.hpp"

// System to HE set.   byte 0: opcode in bits 0-6   byte 1: sub-command   byte 2 ...: by opcode
// The larger families have files of their own.

namespace ztdecode::he {

namespace {

// byte 1: subdevice   byte 2: state
void metastate(Decoding& d) {
    static constexpr auto metastates = names({{0, "disable"}, {1, "actif"}, {2, "wake-up"}}, "");
    d.print("subdevice {subdevice:02x}, metastate: {metastate}"_cf, d[1], metastates[d[2]]);
}

// bytes 2-5: address   bytes 6-9: size
void download_start(Decoding& d) {
    d.print("DownLoad: start adr= {download_address:08x}  size= {download_length:08x}"_cf, d.u32(2),
            d.u32(6));
}

void download_code(Decoding& d) { d.print("DownLoad: code message numero {packet_number:04x}"_cf, d.u16(2)); }

void download_checksum(Decoding& d) { d.print("DownLoad: isochecksum= {checksum:04x}"_cf, d.u16(2)); }

constexpr auto download_commands = opcodes({{0x01, "download_start", download_start},
                                            {0x02, "download_code", download_code},
                                            {0x03, "download_end", "DownLoad: end"},
                                            {0x04, "download_checksum", download_checksum}},
                                           "???");

void download_command(Decoding& d) { download_commands.write(d, d[1]); }

void recorder(Decoding& d) { d.value("recorder", flag(d[1] != 0, "start recorder", "stop recorder")); }

constexpr auto double_clicks = opcodes({{0x01, "double_click_define", "double click define"},
                                        {0x02, "double_click_parameters", "double click parameters"}},
                                       "double click ???");

void double_click(Decoding& d) { double_clicks.write(d, d[1]); }

constexpr auto shared_objects = opcodes({{0x00, "create_shared_icon", "create shared icon "},
                                         {0x01, "create_shared_image", "create shared image "},
                                         {0x02, "create_shared_text", "create shared text "},
                                         {0x03, "append_shared_image", "append shared image "},
                                         {0x04, "copy_shared_object", "copy shared object "},
                                         {0x05, "append_shared_icon", "append shared icon "}},
                                        "shared object ???");

void shared_object(Decoding& d) { shared_objects.write(d, d[1]); }

void query_windows(Decoding& d) { d.print("list windows for appli {application:02x}"_cf, d[2]); }

void query_resource(Decoding& d) {
    d.print("query ressource for appli {application:02x}, win {window:02x}"_cf, d[2], d[3]);
}

void clean_application(Decoding& d) { d.print("clean application {application:02x}"_cf, d[2]); }

constexpr auto queries = opcodes({{0x00, "query_windows", query_windows},
                                  {0x01, "query_resource", query_resource},
                                  {0x02, "query_available_memory", "query available mem"},
                                  {0x03, "clean_application", clean_application},
                                  {0x04, "query_row", "query row"}},
                                 "???");

void query(Decoding& d) { queries.write(d, d[1]); }

constexpr auto editor_commands =
    opcodes({{0x00, "text_editor_activate", {"text editor: activate ", window_and_object}},
             {0x01, "text_editor_peek_field", {"text editor: peek field ", window_and_object}},
             {0x02, "text_editor_deactivate", {"text editor: deactivate ", window_and_object}}},
            "text editor: ???");

void text_editor(Decoding& d) { editor_commands.write(d, d[1]); }

constexpr auto application_commands =
    opcodes({{0x01, "launch_application", {"launch ", application_of_byte2}},
             {0x02, "suspend_application", {"suspend ", application_of_byte2}},
             {0x03, "resume_application", {"resume ", application_of_byte2}},
             {0x04, "abort_application", {"abort ", application_of_byte2}},
             {0x05, "list_applications", "list applis"}},
            "???");

void application_command(Decoding& d) {
    d.add("appli management: ");
    application_commands.write(d, d[1]);
}

constexpr auto messages = opcodes({{0x00, "nop", "nop"},
                                   {0x06, "reset_subdevices", "reset subdevices"},
                                   {0x2B, "are_you_there", "are you there inquiry"},
                                   {0x2C, "metastate", metastate},
                                   {0x2F, "download_command", download_command},
                                   {0x39, "lcd_contrast", "LCD contrast"},
                                   {0x3A, "launch", "launch"},
                                   {0x49, "dpi_configuration", "dpi configuration"},
                                   {0x4C, "recorder", recorder},
                                   {0x4D, "double_click", double_click},
                                   {0x50, "window_command", window_command},
                                   {0x51, "shared_object", shared_object},
                                   {0x52, "object_creation", object_creation},
                                   {0x53, "object_change", object_change},
                                   {0x54, "query", query},
                                   {0x55, "text_editor", text_editor},
                                   {0x56, "application_command", application_command}},
                                  "???");

}  // namespace

void from_system(Decoding& d) {
    d.status = messages.write(d, d[0] & 0x7F) ? Status::recognised : Status::unknown;
}

}  // namespace ztdecode::he
