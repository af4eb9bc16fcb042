// Classes and their properties. Like-named properties of two classes may well differ in type, and ids are
// shared out anew in each table.

#include <algorithm>
#include <iterator>

#include "object/property_rows.hpp"
#include "object/tables.hpp"

using namespace ztdecode::object::property_rows;  // NOLINT: the words that the rows are written in

// clang-format off

constexpr ztdecode_property_record Tab_context[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x01, "ownership", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_terminal[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x02, "reset", 0},
    {UINT16, 0x03, "mtu", 0},
    {BOOL, 0x04, "negative_ack", 0},
    {BOOL, 0x5F, "CS_idle_state", 0},
    {BOOL, 0x60, "PS_idle_state", 0},
    {UINT16, 0x51, "session_timeout", 0},
    {UINT8, 0x58, "term_type", 0},
    {UINT8, 0x59, "link_type", 0},
    {UTF8, 0x62, "serialnum", 0},
    {UTF8, 0x63, "hardversion", 0},
    {UTF8, 0x64, "softversion", 0},
    {UINT32, 0x65, "rom_size", 0},
    {UINT32, 0x66, "ram_size", 0},
    {UINT32, 0x67, "reset_cause", 0},
    {UINT32, 0x69, "arp_spoofing", 0},
    {UINT16, 0x73, "fetch_timeout", 0},
    {BOOL, 0x75, "use_customisation", 0},
    {UTF8, 0x46, "custversion", 0},
    {UTF8, 0x47, "L10Nversion", 0},
    {UINT8, 0x53, "ringings_count", 0},
    {BOOL, 0x7A, "ime_lock", 0},
    {UTF8, 0x7D, "binary_suffix", 0},
    {UINT8, 0x7E, "binary_count", 0},
    {UTF8, 0x7F, "SIPCversion", 0},
    {UINT8, 0x16, "system_id", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_keyboard[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x05, "type", 0},
    {UINT16, 0x06, "help_timeout", 0},
    {UINT16, 0x07, "longpress", 0},
    {UINT16, 0x49, "shortpress", 0},
    {UINT16, 0x4A, "autorepeat", 0},
    {UINT16, 0x4B, "repetition", 0},
    {UINT16, 0x08, "count", 0},
    {UINT16, 0x80, "dflt", 78},
    {UINT16, 0x81, "shift", 78},
    {UINT16, 0x82, "alt", 78},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_audioconfig[] = {
    {UINT16, 0x00, "objectid", 0},
    {BOOL, 0x3C, "qos_ticket", 0},
    {BOOL, 0x1D, "enable", 0},
    {UINT32, 0x98, "delay_max_handset", 3},
    {UINT32, 0x99, "delay_max_handsfree", 3},
    {UINT32, 0x9A, "delay_tx", 2},
    {UINT32, 0x9B, "delay_rx", 2},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_leds[] = {
    {UINT16, 0x00, "objectid", 0},
    {BOOL, 0x10, "onoff", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x86, "Dmode", 9},
    {UINT8, 0x87, "color", 9},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_screen[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x05, "type", 0},
    {UINT8, 0x11, "bpp", 0},
    {UINT8, 0x14, "contrast", 0},
    {BOOL, 0x15, "clearscreen", 0},
    {UINT32, 0x5C, "backlight_timeout", 0},
    {UINT32, 0x5D, "screensaver_timeout", 0},
    {BOOL, 0x6E, "widgets_size", 0},
    {UINT16, 0x96, "Dcode", 20},
    {UTF8, 0x97, "Ddata", 20},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_date[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT16, 0x18, "year", 0},
    {UINT8, 0x19, "month", 0},
    {UINT8, 0x1A, "day", 0},
    {UINT8, 0x13, "h", 0},
    {UINT8, 0x1B, "m", 0},
    {UINT8, 0x1C, "s", 0},
    {UTF8, 0x93, "today", 2},
    {UTF8, 0x94, "tomorrow", 2},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_AOMV[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x08, "count", 0},
    {BOOL, 0x6C, "all_icons_off", 0},
    {UINT8, 0x88, "Dtype", 72},
    {UINT16, 0x89, "Dicon", 72},
    {UTF8, 0x8A, "Dlabel", 72},
    {UTF8, 0x85, "Dvalue", 72},
    {UINT8, 0x8B, "Downership", 72},
    {BOOL, 0x8C, "Denable", 72},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_bluetooth[] = {
    {UINT16, 0x00, "objectid", 0},
    {UTF8, 0x1E, "address", 0},
    {UTF8, 0x21, "name", 0},
    {UINT8, 0x3E, "State", 0},
    {BOOL, 0x53, "bth_beep", 0},
    {BOOL, 0x61, "bonded_devices", 0},
    {BOOL, 0x71, "bth_ringing", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_callstate[] = {
    {UINT16, 0x00, "objectid", 0},
    {BOOL, 0x1D, "enable", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x8D, "Dstate", 120},
    {UTF8, 0x8E, "Dname", 120},
    {UTF8, 0x8F, "number", 120},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_resource[] = {
    {UINT16, 0x00, "objectid", 0},
    {UTF8, 0x1E, "address", 0},
    {UINT16, 0x1F, "port", 0},
    {UINT8, 0x20, "protocol", 0},
    {UTF8, 0x21, "name", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_widgets_default[] = {
    {UINT16, 0x00, "objectid", 0},
    {UTF8, 0x22, "checked", 0},
    {UTF8, 0x23, "unchecked", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_framebox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x29, "border", 0},
    {UINT8, 0x35, "background", 0},
    {UINT8, 0x4C, "vsplit", 0},
    {BOOL, 0x5B, "autospread", 0},
    {UINT8, 0x70, "frame_type", 0},
    {BOOL, 0x5E, "cycling", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_tabbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2B, "active", 0},
    {UINT8, 0x08, "count", 0},
    {UINT16, 0x89, "Dicon", 16},
    {UTF8, 0x8A, "Dlabel", 16},
    {UTF8, 0x85, "Dvalue", 16},
    {UINT8, 0x17, "advanced_mode", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_listbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT8, 0x2F, "mode", 0},
    {UINT8, 0x2B, "active", 0},
    {UINT8, 0x6F, "list_type", 0},
    {BOOL, 0x30, "showevent", 0},
    {BOOL, 0x31, "showactive", 0},
    {BOOL, 0x5A, "circular", 0},
    {UINT8, 0x4E, "realcount", 0},
    {UINT8, 0x4F, "start", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x29, "border", 0},
    {UINT8, 0x17, "advanced_mode", 0},
    {BOOL, 0x6B, "disablelongpress", 0},
    {UINT16, 0x89, "Dicon", 32},
    {UTF8, 0x8A, "Dlabel", 32},
    {UTF8, 0x85, "Dvalue", 32},
    {UINT8, 0x8B, "Downership", 32},
    {BOOL, 0x8C, "Denable", 32},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_actionlistbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2B, "active", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x29, "border", 0},
    {UINT8, 0x2F, "mode", 0},
    {UINT32, 0x42, "timeout", 0},
    {UTF8, 0x8A, "Dlabel", 16},
    {UTF8, 0x85, "Dvalue", 16},
    {UINT8, 0x8B, "Downership", 16},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_textbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT8, 0x34, "foreground", 0},
    {UINT8, 0x35, "background", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {UTF8, 0x48, "append", 0},
    {UTF8, 0x79, "overwrite", 0},
    {UINT8, 0x2F, "mode", 0},
    {UINT16, 0x3A, "cursor", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_actionbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {UTF8, 0x38, "value", 0},
    {UINT8, 0x01, "ownership", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_inputbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT8, 0x34, "foreground", 0},
    {UINT8, 0x35, "background", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {UTF8, 0x38, "value", 0},
    {BOOL, 0x1D, "enable", 0},
    {BOOL, 0x39, "password", 0},
    {UINT8, 0x29, "border", 0},
    {UINT8, 0x2E, "size", 0},
    {UTF8, 0x3B, "mask", 0},
    {BOOL, 0x3D, "focus", 0},
    {BOOL, 0x6A, "inputborder", 0},
    {UINT16, 0x74, "mask_subst", 0},
    {UINT16, 0x08, "count", 0},
    {UTF8, 0x48, "append", 0},
    {UINT16, 0x3A, "cursor", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_checkbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT8, 0x34, "foreground", 0},
    {UINT8, 0x35, "background", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {BOOL, 0x1D, "enable", 0},
    {BOOL, 0x3E, "State", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_datebox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT8, 0x34, "foreground", 0},
    {UINT8, 0x35, "background", 0},
    {UTF8, 0x3F, "format", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_timerbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT8, 0x34, "foreground", 0},
    {UINT8, 0x35, "background", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {UINT8, 0x3E, "State", 0},
    {INT8, 0x40, "incdec", 0},
    {UTF8, 0x3F, "format", 0},
    {INT8, 0x2F, "mode", 0},
    {UINT32, 0x38, "value", 0},
    {UINT32, 0x41, "value_notify", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_popupbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {BOOL, 0x50, "modal", 0},
    {UINT8, 0x2F, "mode", 0},
    {UINT32, 0x42, "timeout", 0},
    {UINT8, 0x29, "border", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_dialogbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT8, 0x29, "border", 0},
    {BOOL, 0x50, "modal", 0},
    {UINT8, 0x2F, "mode", 0},
    {INT32, 0x42, "timeout", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {UINT8, 0x08, "count", 0},
    {UINT16, 0x90, "action_icon", 4},
    {UTF8, 0x91, "action_label", 4},
    {UTF8, 0x92, "action_value", 4},
    {UINT16, 0x95, "action_key", 4},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_sliderbar[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {INT32, 0x38, "value", 0},
    {INT32, 0x43, "min", 0},
    {INT32, 0x44, "max", 0},
    {UINT8, 0x40, "incdec", 0},
    {UINT8, 0x29, "border", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_progressbar[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT8, 0x2C, "halign", 0},
    {UINT8, 0x2D, "valign", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    {UINT8, 0x38, "value", 0},
    {UINT8, 0x41, "value_notify", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_imagebox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x3F, "format", 0},
    {UINT32, 0x2E, "size", 0},
    {UTF8, 0x45, "data", 0},
    {UTF8, 0x48, "append", 0},
    {UTF8, 0x72, "URI", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_iconbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT16, 0x36, "icon", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_AOMVbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x78, "page_active", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_telephonicbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {BOOL, 0x1D, "enable", 0},
    {UINT8, 0x4C, "vsplit", 0},
    {UINT32, 0x42, "timeout", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_keyboard_context[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x01, "ownership", 0},
    {UINT8, 0x09, "eventmode", 0},
    {UINT8, 0x0A, "numpad_ownership", 0},
    {UINT8, 0x0B, "navigator_ownership", 0},
    {UINT8, 0x0C, "telephony_ownership", 0},
    {UINT8, 0x0D, "progkeys_ownership", 0},
    {UINT8, 0x52, "softkeys_ownership", 0},
    {UINT8, 0x0E, "alphakeys_ownership", 0},
    {UINT8, 0x0F, "numpad_eventmode", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x83, "key_ownership", 78},
    {UINT8, 0x84, "key_eventmode", 78},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_AOMEL[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x1E, "address", 0},
    {UINT8, 0x14, "contrast", 0},
    {UINT8, 0x09, "eventmode", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x88, "Dtype", 14},
    {UINT16, 0x89, "Dicon", 14},
    {UTF8, 0x8A, "Dlabel", 14},
    {UINT32, 0x85, "Dvalue", 14},
    {UINT8, 0x8B, "Downership", 14},
    {BOOL, 0x6C, "all_icons_off", 0},
    {BOOL, 0x6D, "all_labels_off", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_AOM10[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x1E, "address", 0},
    {UINT8, 0x14, "contrast", 0},
    {UINT8, 0x09, "eventmode", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x88, "Dtype", 10},
    {UINT16, 0x89, "Dicon", 10},
    {UINT32, 0x85, "Dvalue", 10},
    {UINT8, 0x8B, "Downership", 10},
    {BOOL, 0x6C, "all_icons_off", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_AOM40[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT8, 0x1E, "address", 0},
    {UINT8, 0x14, "contrast", 0},
    {UINT8, 0x09, "eventmode", 0},
    {UINT8, 0x08, "count", 0},
    {UINT8, 0x88, "Dtype", 40},
    {UINT16, 0x89, "Dicon", 40},
    {UINT32, 0x85, "Dvalue", 40},
    {UINT8, 0x8B, "Downership", 40},
    {BOOL, 0x6C, "all_icons_off", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_idletimer[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT32, 0x41, "value_notify", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_telephonicboxitem[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT16, 0x24, "anchorid", 0},
    {UINT16, 0x36, "icon", 0},
    {UINT8, 0x4D, "accesskey", 0},
    {BOOL, 0x3D, "focus", 0},
    {UTF8, 0x37, "label", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_bluetooth_device[] = {
    {UINT16, 0x00, "objectid", 0},
    {UINT16, 0x24, "anchorid", 0},
    {UTF8, 0x1E, "address", 0},
    {UTF8, 0x21, "name", 0},
    {UINT32, 0x54, "cod", 0},
    {BOOL, 0x55, "bonded", 0},
    {UINT8, 0x05, "type", 0},
    {UTF8, 0x56, "link_key", 0},
    {UTF8, 0x57, "pin", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_headerbox[] = {
    ZTDECODE_WIDGET_HEAD,
    {UINT8, 0x2A, "fontid", 0},
    {UINT16, 0x36, "icon", 0},
    {UTF8, 0x37, "label", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_ime_context[] = {
    {UINT16, 0x00, "objectid", 0},
    {BOOL, 0x1D, "enable", 0},
    {BOOL, 0x28, "visible", 0},
    {UINT8, 0x05, "type", 0},
    {UINT32, 0x42, "timeout", 0},
    {UINT32, 0x51, "session_timeout", 0},
    {BOOL, 0x86, "Dmode", 3},
    {UTF8, 0x8E, "Dname", 8},
    {BOOL, 0x8C, "Denable", 8},
    {BOOL, 0x8D, "Dstate", 8},
    ZTDECODE_PROPERTY_END,
};

// clang-format on

// Classes below 0x80 have one object per terminal; the objects of the others have ids.
constexpr ztdecode_class_record Tab_Classes_Opcodes[] = {
    {0x00, "context", Tab_context},
    {0x01, "terminal", Tab_terminal},
    {0x02, "keyboard", Tab_keyboard},
    {0x03, "audioconfig", Tab_audioconfig},
    {0x05, "leds", Tab_leds},
    {0x06, "screen", Tab_screen},
    {0x07, "date", Tab_date},
    {0x08, "AOMV", Tab_AOMV},
    {0x09, "bluetooth", Tab_bluetooth},
    {0x0C, "callstate", Tab_callstate},
    {0x0D, "resource", Tab_resource},
    {0x0E, "widgets_default", Tab_widgets_default},
    {0x80, "framebox", Tab_framebox},
    {0x81, "tabbox", Tab_tabbox},
    {0x82, "listbox", Tab_listbox},
    {0x83, "actionlistbox", Tab_actionlistbox},
    {0x84, "textbox", Tab_textbox},
    {0x85, "actionbox", Tab_actionbox},
    {0x86, "inputbox", Tab_inputbox},
    {0x87, "checkbox", Tab_checkbox},
    {0x88, "datebox", Tab_datebox},
    {0x89, "timerbox", Tab_timerbox},
    {0x8A, "popupbox", Tab_popupbox},
    {0x8B, "dialogbox", Tab_dialogbox},
    {0x8C, "sliderbar", Tab_sliderbar},
    {0x8D, "progressbar", Tab_progressbar},
    {0x8E, "imagebox", Tab_imagebox},
    {0x8F, "iconbox", Tab_iconbox},
    {0x90, "AOMVbox", Tab_AOMVbox},
    {0x91, "telephonicbox", Tab_telephonicbox},
    {0x92, "keyboard_context", Tab_keyboard_context},
    {0x93, "AOMEL", Tab_AOMEL},
    {0x94, "AOM10", Tab_AOM10},
    {0x95, "AOM40", Tab_AOM40},
    {0x96, "idletimer", Tab_idletimer},
    {0x97, "telephonicboxitem", Tab_telephonicboxitem},
    {0x98, "bluetooth_device", Tab_bluetooth_device},
    {0x99, "headerbox", Tab_headerbox},
    {0x9A, "ime_context", Tab_ime_context},
    {0xFF, "(class_error)", nullptr},
};

namespace ztdecode::object {

constexpr CodeIndex classes_index = index_of(Tab_Classes_Opcodes);

constexpr PropertyTable class_properties[] = {
    property_rows::indexed<Tab_context>,
    property_rows::indexed<Tab_terminal>,
    property_rows::indexed<Tab_keyboard>,
    property_rows::indexed<Tab_audioconfig>,
    property_rows::indexed<Tab_leds>,
    property_rows::indexed<Tab_screen>,
    property_rows::indexed<Tab_date>,
    property_rows::indexed<Tab_AOMV>,
    property_rows::indexed<Tab_bluetooth, property_rows::Address::of_bluetooth>,
    property_rows::indexed<Tab_callstate>,
    property_rows::indexed<Tab_resource>,
    property_rows::indexed<Tab_widgets_default>,
    property_rows::indexed<Tab_framebox>,
    property_rows::indexed<Tab_tabbox>,
    property_rows::indexed<Tab_listbox>,
    property_rows::indexed<Tab_actionlistbox>,
    property_rows::indexed<Tab_textbox>,
    property_rows::indexed<Tab_actionbox>,
    property_rows::indexed<Tab_inputbox>,
    property_rows::indexed<Tab_checkbox>,
    property_rows::indexed<Tab_datebox>,
    property_rows::indexed<Tab_timerbox>,
    property_rows::indexed<Tab_popupbox>,
    property_rows::indexed<Tab_dialogbox>,
    property_rows::indexed<Tab_sliderbar>,
    property_rows::indexed<Tab_progressbar>,
    property_rows::indexed<Tab_imagebox>,
    property_rows::indexed<Tab_iconbox>,
    property_rows::indexed<Tab_AOMVbox>,
    property_rows::indexed<Tab_telephonicbox>,
    property_rows::indexed<Tab_keyboard_context>,
    property_rows::indexed<Tab_AOMEL, property_rows::Address::of_module>,
    property_rows::indexed<Tab_AOM10, property_rows::Address::of_module>,
    property_rows::indexed<Tab_AOM40, property_rows::Address::of_module>,
    property_rows::indexed<Tab_idletimer>,
    property_rows::indexed<Tab_telephonicboxitem>,
    property_rows::indexed<Tab_bluetooth_device, property_rows::Address::of_bluetooth>,
    property_rows::indexed<Tab_headerbox>,
    property_rows::indexed<Tab_ime_context>,
    PropertyTable(),
};

static_assert(std::equal(std::begin(class_properties), std::end(class_properties),
                         std::begin(Tab_Classes_Opcodes), std::end(Tab_Classes_Opcodes),
                         [](const PropertyTable& t, const ztdecode_class_record& c) {
                             return t.rows() == c.properties;
                         }));

}  // namespace ztdecode::object
