#include "object/events.hpp"

#include "core/going_away.hpp"
#include "object/current_class.hpp"
#include "object/values.hpp"

// Bodies of the terminals' events.

namespace ztdecode {

namespace {

// The pressed key as a text.
void key(Session& /*session*/, const Bytes& body, Text& out) {
    out.add("\n\tkeychar         ");
    if (!printUTF8str(body, Utf8Mode::characters, out)) return;
    out.add("\t");
    printUTF8str(body, Utf8Mode::names, out);
}

constexpr std::uint8_t no_property = 0xFF;
constexpr std::uint32_t error_text = 14;

void error_property(const Session& session, const Bytes& body, Text& out) {
    const std::uint8_t id = body[6];
    if (id == no_property) {
        out.add("\n\tproperty        not relevant");
    } else {
        out.print("\n\tproperty        {}\t//0x{:02X}"_cf, Properties(*session.object.properties)[id].name,
                  id);
    }
}

// byte 1: error code   byte 2: method that was refused   byte 3: class
// bytes 4-5: object id   byte 6: property id   byte 7: index
// bytes 8-9: length   bytes 10-13: value   byte 14 on: text
void error(Session& session, const Bytes& body, Text& out) {
    out.print("\n\terrorcode       {}"_cf, error_name(body[1]));
    out.print("\n\tmethod          {}"_cf, method_name(body[2]));
    out.print("\n\tclass           {}"_cf, current_class(session, body[3], out).name);
    out.print("\n\tobjectid        0x{:02X}{:02X}"_cf, body[4], body[5]);
    error_property(session, body, out);
    out.print("\n\tindex           {}"_cf, body[7]);
    out.print("\n\tlength          0x{:02X}{:02X}"_cf, body[8], body[9]);
    out.print("\n\tvalue           0x{:02X}{:02X}{:02X}{:02X}"_cf, body[10], body[11], body[12], body[13]);
    out.add("\n\ttxt             \"");
    for (std::uint32_t k = error_text; k < body.length; ++k) vPutf8char(body[k], out);
    out.add("\"");
}

constexpr auto devices = names(
    {
        {1, "\n\tvalue           BT handset"},
        {2, "\n\tvalue           BT headset (should not be used on rymplus)"},
        {3, "\n\tvalue           Jack"},
        {4, "\n\tvalue           USB"},
    },
    "\n\tvalue           device unknown");

// A line key knows no USB device.
constexpr auto line_devices = names(
    {
        {1, "\n\tvalue           BT handset"},
        {2, "\n\tvalue           BT headset (should not be used on rymplus)"},
        {3, "\n\tvalue           Jack"},
    },
    "\n\tvalue           device unknown");

// byte 0: device   byte 1: plugged or not
void device_presence(Session& /*session*/, const Bytes& body, Text& out) {
    out.add(devices[body[0]]);
    out.print("\n\tstate           {}"_cf, body[1] != 0 ? "plugged" : "unplugged");
}

void key_line(Session& /*session*/, const Bytes& body, Text& out) { out.add(line_devices[body[0]]); }

// bytes 0-1: object id   byte 2: result
void bt_bonding_result(Session& /*session*/, const Bytes& body, Text& out) {
    out.print("\n\tobjectid        0x{:02X}{:02X}"_cf, body[0], body[1]);
    out.print("\n\tvalue           0x{:02X}"_cf, body[2]);
}

void bt_key(Session& /*session*/, const Bytes& body, Text& out) {
    out.print("\n\tvalue           0x{:02X}"_cf, body[0]);
}

constexpr auto applications =
    names({{1, "usermenu"}, {2, "btconfig"}, {3, "audioconfig"}, {4, "speakerphone"}}, "unknown");

constexpr std::string_view truth(std::uint8_t byte) { return byte != 0 ? "true" : "false"; }

// byte 0: started or not   byte 1: interruptible or not   byte 2: application
void local_application(Session& /*session*/, const Bytes& body, Text& out) {
    out.print("\n\tstarted         {}"_cf, truth(body[0]));
    out.print("\n\tinterruptible   {}"_cf, truth(body[1]));
    out.print("\n\tid              {}"_cf, applications[body[2]]);
}

// bytes 0-1: object id   byte 2 on: properties
void reset(Session& /*session*/, const Bytes& body, Text& out) {
    out.print("\n\tobjectId\t0x{:02X}{:02X}"_cf, body[0], body[1]);
    print_properties(body, 2, event_properties::reset, LengthField::one_or_two_bytes, Values::carried, out);
}

void listbox(Session& /*session*/, const Bytes& body, Text& out) {
    print_properties(body, 0, event_properties::listbox, LengthField::one_byte, Values::carried, out);
}

// What was asked for, in the properties of the current class.
void get_property_result(Session& session, const Bytes& body, Text& out) {
    if (*session.object.properties == nullptr) return;
    print_properties(body, 0, Properties(*session.object.properties), LengthField::one_or_two_bytes,
                     Values::carried, out);
}

template <const PropertyTable& table>
void properties(Session& /*session*/, const Bytes& body, Text& out) {
    print_properties(body, 0, table, LengthField::one_or_two_bytes, Values::carried, out);
}

using Event = BasicOpcode<const Bytes>;

template <std::size_t N>
consteval auto events(const Event (&rows)[N]) {  // NOLINT: rows stand as a braced list
    return BasicOpcodes<const Bytes, N>(rows);
}

constexpr auto event_bodies = events({
    {0x01, reset},                                              // RESET
    {0x02, key},                                                // KEY_PRESS
    {0x03, key},                                                // KEY_RELEASE
    {0x04, key},                                                // KEY_SHORTPRESS
    {0x05, key},                                                // KEY_LONGPRESS
    {0x08, key},                                                // HELP
    {0x0A, error},                                              // ERROR_PROTOCOL
    {0x0B, error},                                              // ERROR_CREATE
    {0x0C, error},                                              // ERROR_DELETE
    {0x0D, error},                                              // ERROR_SET_PROPERTY
    {0x0E, error},                                              // ERROR_GET_PROPERTY
    {0x15, device_presence},                                    // DEVICE_PRESENCE
    {0x16, key_line},                                           // KEY_LINE
    {0x18, bt_bonding_result},                                  // BT_BONDING_RESULT
    {0x19, bt_key},                                             // BT_KEY_SHORTPRESS
    {0x1A, bt_key},                                             // BT_KEY_LONGPRESS
    {0x1B, bt_key},                                             // BT_KEY_VERYLONGPRESS
    {0x1C, local_application},                                  // LOCAL_APPLICATION
    {0x1E, error},                                              // WARNING_SET_PROPERTY
    {0x80, properties<event_properties::tabbox>},               // TABBOX
    {0x81, listbox},                                            // LISTBOX
    {0x87, properties<event_properties::inputbox_focus_lost>},  // INPUTBOX_FOCUS_LOST
    {0x8C, properties<event_properties::sliderbar>},            // SLIDERBAR
    {0x94, get_property_result},                                // GET_PROPERTY_RESULT
    {0x99, properties<event_properties::bt_bonded_device>},     // BT_BONDED_DEVICE
    {0x9A, properties<event_properties::bt_inquiry_result>},    // BT_INQUIRY_RESULT
    {0x9B, properties<event_properties::bt_name_discovery>},    // BT_NAME_DISCOVERY
    {0x9F, properties<event_properties::ime_list>},             // IME_LIST
    {0xA0, properties<event_properties::ime_change>},           // IME_CHANGE
    {0xA1, properties<event_properties::ime_open>},             // IME_OPEN
});

}  // namespace

void vDecodeEvent(Session& session, std::uint8_t event, const Bytes& body, Text& out) {
    if (session.switches.debug) {
        session.standard_output(formatted("vDecodeEvent(bEvent=0x{-:02x}, ptr[0]= 0x{-:02x}, len={-})\n"_cf,
                                            event, body[0], body.length));
    }
    event_bodies.write(event, session, body, out);
}

}  // namespace ztdecode
