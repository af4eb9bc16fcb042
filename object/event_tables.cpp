// The properties that events carry.

#include "object/property_rows.hpp"
#include "object/tables.hpp"

using namespace ztdecode::object::property_rows;  // NOLINT: the words that the rows are written in

// clang-format off

constexpr ztdecode_property_record Tab_RESET[] = {
    {BOOL, 0x3E, "State", 0},
    {UINT8, 0x59, "link_type", 0},
    {UINT8, 0x58, "term_type", 0},
    {UTF8, 0x62, "serialnum", 0},
    {UTF8, 0x63, "hardversion", 0},
    {UTF8, 0x64, "softversion", 0},
    {UINT32, 0x67, "reset_cause", 0},
    {UINT32, 0x66, "ram_size", 0},
    {UINT32, 0x65, "rom_size", 0},
    {UTF8, 0x46, "custversion", 0},
    {UTF8, 0x47, "L10Nversion", 0},
    {UINT8, 0x53, "ringings_count", 0},
    {UTF8, 0x7D, "binary_suffix", 0},
    {UINT8, 0x7E, "binary_count", 0},
    {UTF8, 0x7F, "SIPCversion", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_TABBOX[] = {
    {UINT8, 0x2B, "active", 0},
    {UTF8, 0x85, "Dvalue", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_LISTBOX[] = {
    {UINT8, 0x2B, "active", 0},
    {UTF8, 0x85, "Dvalue", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_INPUTBOX_FOCUS_LOST[] = {
    {UTF8, 0x38, "value", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_SLIDERBAR[] = {
    {UINT32, 0x38, "value", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_BT_BONDED_DEVICE[] = {
    {UTF8, 0x21, "name", 0},
    {UTF8, 0x1E, "address", 0},
    {UINT8, 0x05, "type", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_BT_INQUIRY_RESULT[] = {
    {UTF8, 0x1E, "address", 0},
    {UINT32, 0x54, "cod", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_BT_NAME_DISCOVERY[] = {
    {UTF8, 0x1E, "address", 0},
    {UTF8, 0x21, "name", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_IME_LIST[] = {
    {UINT8, 0x05, "type", 0},
    {UINT16, 0x6F, "list_type", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_IME_CHANGE[] = {
    {UINT8, 0x05, "type", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_IME_OPEN[] = {
    {BOOL, 0x28, "visible", 0},
    ZTDECODE_PROPERTY_END,
};

constexpr ztdecode_property_record Tab_IME_REMOTEOPEN[] = {
    {UINT16, 0x00, "objectid", 0},
    ZTDECODE_PROPERTY_END,
};

// clang-format on

namespace ztdecode::object::event_properties {

constexpr PropertyTable reset = property_rows::indexed<Tab_RESET>;
constexpr PropertyTable tabbox = property_rows::indexed<Tab_TABBOX>;
constexpr PropertyTable listbox = property_rows::indexed<Tab_LISTBOX>;
constexpr PropertyTable inputbox_focus_lost = property_rows::indexed<Tab_INPUTBOX_FOCUS_LOST>;
constexpr PropertyTable sliderbar = property_rows::indexed<Tab_SLIDERBAR>;
constexpr PropertyTable bt_bonded_device =
    property_rows::indexed<Tab_BT_BONDED_DEVICE, Address::of_bluetooth>;
constexpr PropertyTable bt_inquiry_result =
    property_rows::indexed<Tab_BT_INQUIRY_RESULT, Address::of_bluetooth>;
constexpr PropertyTable bt_name_discovery =
    property_rows::indexed<Tab_BT_NAME_DISCOVERY, Address::of_bluetooth>;
constexpr PropertyTable ime_list = property_rows::indexed<Tab_IME_LIST>;
constexpr PropertyTable ime_change = property_rows::indexed<Tab_IME_CHANGE>;
constexpr PropertyTable ime_open = property_rows::indexed<Tab_IME_OPEN>;

}  // namespace ztdecode::object::event_properties
