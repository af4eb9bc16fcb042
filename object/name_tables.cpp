// Servers, methods, error codes and events: rows {code, name} up to the sentinel. They are searched from the
// first row on, so the order of the rows is part of what the library exports, as odd as it is.

#include <algorithm>
#include <array>
#include <iterator>

#include "object/tables.hpp"

// clang-format off

constexpr ztdecode_name_record Tab_Servers_def[] = {
    {0x15, "Call"},
    {0x16, "Presentation"},
    {0xFF, "(reserved_error)"},
};

// Notify is what terminals send; all others come from the system.
constexpr ztdecode_name_record Tab_Methods_def[] = {
    {0, "Create"},
    {1, "Delete"},
    {2, "SetProperty"},
    {3, "GetProperty"},
    {4, "Notify"},
    {6, "InsertItem"},
    {5, "DeleteItem"},
    {0xFF, "(reserved_error)"},
};

constexpr ztdecode_name_record Tab_Error_def[] = {
    {0x00, "INVALID_METHOD"},
    {0x01, "UNKNOWN_CLASS"},
    {0x02, "STATIC_CLASS"},
    {0x03, "DUPLICATE_OBJECTID"},
    {0x04, "UNKNOWN_PROPERTY"},
    {0x05, "BAD_INDEX"},
    {0x06, "BAD_LENGTH"},
    {0x07, "REQUIRED_MISSING"},
    {0x08, "BAD_VALUE"},
    {0x09, "READONLY_PROPERTY"},
    {0x0A, "UNKNOWN_OBJECTID"},
    {0x0B, "INVALID_CONTAINER"},
    {0x0C, "PROPERTY_VMIN"},
    {0x0D, "PROPERTY_VMAX"},
    {0x0E, "POSITIVE_ACK"},
    {0x0F, "NOT_IMPLEMENTED"},
    {0x10, "INVALID_CLASS"},
    {0x11, "INVALID_PROPERTY"},
    {0x80, "MESSAGE_DROP"},
    {0x81, "MAX_SET_PROPERTY"},
    {0x82, "INTERNAL"},
    {0xFF, "(reserved_error)"},
};

// Events below 0x80 come from the terminal as a whole; the others carry the id of the object that they
// come from.
constexpr ztdecode_name_record Tab_Events_Opcodes[] = {
    {0x00, "CONTEXT_SWITCH"},
    {0x01, "RESET"},
    {0x02, "KEY_PRESS"},
    {0x03, "KEY_RELEASE"},
    {0x04, "KEY_SHORTPRESS"},
    {0x05, "KEY_LONGPRESS"},
    {0x06, "ONHOOK"},
    {0x07, "OFFHOOK"},
    {0x08, "HELP"},
    {0x09, "WIDGETS_GC"},
    {0x0A, "ERROR_PROTOCOL"},
    {0x0B, "ERROR_CREATE"},
    {0x0C, "ERROR_DELETE"},
    {0x0D, "ERROR_SET_PROPERTY"},
    {0x0E, "ERROR_GET_PROPERTY"},
    {0x0F, "SUCCESS_CREATE"},
    {0x10, "SUCCESS_DELETE"},
    {0x11, "SUCCESS_SET_PROPERTY"},
    {0x12, "ERROR_INSERT_ITEM"},
    {0x13, "ERROR_DELETE_ITEM"},
    {0x14, "SUCCESS_INSERT_ITEM"},
    {0x15, "DEVICE_PRESENCE"},
    {0x16, "KEY_LINE"},
    {0x17, "SUCCESS_DELETE_ITEM"},
    {0x80, "TABBOX"},
    {0x81, "LISTBOX"},
    {0x82, "LISTBOX_FIRST"},
    {0x83, "LISTBOX_LAST"},
    {0x84, "ACTIONLISTBOX"},
    {0x85, "ACTIONBOX"},
    {0x86, "INPUTBOX"},
    {0x87, "INPUTBOX_FOCUS_LOST"},
    {0x88, "CHECKBOX"},
    {0x89, "TIMERBOX"},
    {0x8A, "POPUPBOX_TIMEOUT"},
    {0x8B, "DIALOGBOX"},
    {0x8C, "SLIDERBAR"},
    {0x8D, "PROGRESSBAR"},
    {0x8E, "AOMVBOX"},
    {0x8F, "TELEPHONICBOX"},
    {0x90, "AOM_INSERTED"},
    {0x91, "AOM_REMOVED"},
    {0x92, "AOM_KEY_PRESS"},
    {0x93, "IDLETIMER"},
    {0x94, "GET_PROPERTY_RESULT"},
    {0x95, "AOM_KEY_RELEASE"},
    {0x96, "POPUPBOX_DISMISSED"},
    {0x97, "DIALOGBOX_TIMEOUT"},
    {0x98, "DIALOGBOX_DISMISSED"},
    {0x99, "BT_BONDED_DEVICE"},
    {0x9A, "BT_INQUIRY_RESULT"},
    {0x9B, "BT_NAME_DISCOVERY"},
    {0x18, "BT_BONDING_RESULT"},
    {0x9D, "BT_LINK_FAILURE"},
    {0x9E, "BT_BATTERY"},
    {0x19, "BT_KEY_SHORTPRESS"},
    {0x1A, "BT_KEY_LONGPRESS"},
    {0x1B, "BT_KEY_VERYLONGPRESS"},
    {0x1C, "LOCAL_APPLICATION"},
    {0x1D, "WARNING_CREATE"},
    {0x1E, "WARNING_SET_PROPERTY"},
    {0x1F, "ARP_SPOOFING"},
    {0x22, "QOS_TICKET"},
    {0x9F, "IME_LIST"},
    {0xA0, "IME_CHANGE"},
    {0xA1, "IME_OPEN"},
    {0x9C, "IME_REMOTEOPEN"},
    {0xA2, "TELEPHONICBOX_EVENT"},
    {0xA3, "ACTLISTBOX_TIMEOUT"},
    {0xA4, "ACTLISTBOX_DISMISSED"},
    {0xFF, "(reserved_error)"},
};

// clang-format on

namespace ztdecode::object {

namespace {

template <std::size_t N>
consteval std::array<SnakeCase, N> message_names(
    const ztdecode_name_record (&rows)[N]) {  // NOLINT: a C array
    std::array<SnakeCase, N> names;
    std::transform(std::begin(rows), std::end(rows), names.begin(),
                   [](const ztdecode_name_record& row) { return SnakeCase(row.name); });
    return names;
}

}  // namespace

constexpr CodeIndex servers_index = index_of(Tab_Servers_def);
constexpr CodeIndex methods_index = index_of(Tab_Methods_def);
constexpr CodeIndex errors_index = index_of(Tab_Error_def);
constexpr CodeIndex events_index = index_of(Tab_Events_Opcodes);

constexpr std::array<SnakeCase, 8> method_names = message_names(Tab_Methods_def);
constexpr std::array<SnakeCase, 71> event_names = message_names(Tab_Events_Opcodes);

}  // namespace ztdecode::object
