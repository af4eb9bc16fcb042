#include "object/events.hpp"

#include "core/phrase.hpp"
#include "core/tables.hpp"
#include "object/current_class.hpp"
#include "object/values.hpp"

// Bodies of the terminals' events.

namespace ztdecode::object {

namespace {

// The pressed key as a text.
void key(Decoding& d) {
    d.add("\n\tkeychar         ");
    if (!d.on(print_text(d, "key_text", Utf8Mode::characters))) return;
    d.add("\t");
    print_text(d, "character_names", Utf8Mode::names);
}

constexpr std::uint8_t no_property = 0xFF;
constexpr std::uint32_t error_text = 14;

void error_property(Decoding& d, const Byte& id) {
    const Decoding::Scope scope(d);
    if (d.on(id) == no_property) {
        d.add("\n\tproperty        not relevant");
    } else {
        const Property property = Properties(*d.session().object.properties)[id.number];
        d.add("\n\tproperty        ");
        d.on(d[3]);
        d.print("{property}\t//0x{property_id:02X}"_cf,
                Word{property.name, id.number, property.known, id.place}, id);
    }
}

// byte 1: error code   byte 2: method that was refused   byte 3: class
// bytes 4-5: object id   byte 6: property id   byte 7: index
// bytes 8-9: length   bytes 10-13: value   byte 14 on: text
void error_report(Decoding& d) {
    d.print("\n\terrorcode       {error_code}"_cf, error(d[1]));
    d.print("\n\tmethod          {method}"_cf, method(d[2]));
    d.print("\n\tclass           {class}"_cf,
            Word{current_class(d, d[3]).name, d[3].number, true, d[3].place});
    d.print("\n\tobjectid        0x{object_id:04X}"_cf, d.u16(4));
    error_property(d, d[6]);
    d.print("\n\tindex           {index}"_cf, d[7]);
    d.print("\n\tlength          0x{length:04X}"_cf, d.u16(8));
    d.print("\n\tvalue           0x{value:08X}"_cf, d.u32(10));
    d.add("\n\ttxt             \"");
    d.text_as("text", error_text, d.length() > error_text ? d.length() - error_text : 0, shown_character);
    d.add("\"");
}

constexpr std::string_view before_device = "\n\tvalue           ";

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
void device_presence(Decoding& d) {
    add_phrase(d, "device", devices[d[0]], before_device);
    d.print("\n\tstate           {plugged}"_cf, flag(d[1] != 0, "plugged", "unplugged"));
}

void key_line(Decoding& d) { add_phrase(d, "device", line_devices[d[0]], before_device); }

// bytes 0-1: object id   byte 2: result
void bt_bonding_result(Decoding& d) {
    d.print("\n\tobjectid        0x{object_id:04X}"_cf, d.u16(0));
    d.print("\n\tvalue           0x{bonding_result:02X}"_cf, d[2]);
}

void bt_key(Decoding& d) { d.print("\n\tvalue           0x{key:02X}"_cf, d[0]); }

constexpr auto applications =
    names({{1, "usermenu"}, {2, "btconfig"}, {3, "audioconfig"}, {4, "speakerphone"}}, "unknown");

Word truth(const Byte& byte) { return flag(byte != 0, "true", "false"); }

// byte 0: started or not   byte 1: interruptible or not   byte 2: application
void local_application(Decoding& d) {
    d.print("\n\tstarted         {started}"_cf, truth(d[0]));
    d.print("\n\tinterruptible   {interruptible}"_cf, truth(d[1]));
    d.print("\n\tid              {application}"_cf, applications[d[2]]);
}

// bytes 0-1: object id   byte 2 on: properties
void reset(Decoding& d) {
    d.print("\n\tobjectId\t0x{object_id:04X}"_cf, d.u16(0));
    print_properties(d, 2, event_properties::reset, LengthField::one_or_two_bytes, Values::carried);
}

void listbox(Decoding& d) {
    print_properties(d, 0, event_properties::listbox, LengthField::one_byte, Values::carried);
}

// What was asked for, in the properties of the current class.
void get_property_result(Decoding& d) {
    const ztdecode_property_record* const current = *d.session().object.properties;
    if (current == nullptr) return;
    print_properties(d, 0, Properties(current), LengthField::one_or_two_bytes, Values::carried);
}

template <const PropertyTable& table>
void properties(Decoding& d) {
    print_properties(d, 0, table, LengthField::one_or_two_bytes, Values::carried);
}

struct EventBody {
    std::uint32_t code;
    Decoder write;
};

template <std::size_t N>
consteval Table<EventBody, N> bodies(const EventBody (&rows)[N]) {  // NOLINT: rows stand as a braced list
    return Table<EventBody, N>(rows);
}

constexpr auto event_bodies = bodies({
    {0x01, reset},                                              // RESET
    {0x02, key},                                                // KEY_PRESS
    {0x03, key},                                                // KEY_RELEASE
    {0x04, key},                                                // KEY_SHORTPRESS
    {0x05, key},                                                // KEY_LONGPRESS
    {0x08, key},                                                // HELP
    {0x0A, error_report},                                       // ERROR_PROTOCOL
    {0x0B, error_report},                                       // ERROR_CREATE
    {0x0C, error_report},                                       // ERROR_DELETE
    {0x0D, error_report},                                       // ERROR_SET_PROPERTY
    {0x0E, error_report},                                       // ERROR_GET_PROPERTY
    {0x15, device_presence},                                    // DEVICE_PRESENCE
    {0x16, key_line},                                           // KEY_LINE
    {0x18, bt_bonding_result},                                  // BT_BONDING_RESULT
    {0x19, bt_key},                                             // BT_KEY_SHORTPRESS
    {0x1A, bt_key},                                             // BT_KEY_LONGPRESS
    {0x1B, bt_key},                                             // BT_KEY_VERYLONGPRESS
    {0x1C, local_application},                                  // LOCAL_APPLICATION
    {0x1E, error_report},                                       // WARNING_SET_PROPERTY
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

void event_body(Decoding& d, const Byte& event) {
    const Session& session = d.session();
    if (session.switches.debug) {
        session.standard_output(formatted("vDecodeEvent(bEvent=0x{-:02x}, ptr[0]= 0x{-:02x}, len={-})\n"_cf,
                                          event.number, d[0].number, d.length()));
    }
    const EventBody* const body = event_bodies.find(event.number);
    if (body == nullptr) return;
    const Decoding::Scope scope(d);
    d.on(event);
    body->write(d);
}

}  // namespace ztdecode::object
