#include "object/tables.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <type_traits>

#include "tests/object/object_rows.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

using namespace object;

std::string hex_byte(unsigned value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%02X", value);
    return text;
}

// A table of names as one text: code "name", code "name", ...
template <std::size_t N>
std::string shown(const ztdecode_name_record (&table)[N]) {
    std::string text;
    for (const ztdecode_name_record& row : table) {
        if (!text.empty()) text += ", ";
        text += hex_byte(row.code) + " \"" + row.name + "\"";
    }
    return text;
}

const char* type_word(unsigned type) {
    switch (type) {
        case 0:
            return "int32";
        case 1:
            return "int16";
        case 2:
            return "int8";
        case 4:
            return "uint32";
        case 5:
            return "uint16";
        case 6:
            return "uint8";
        case 7:
            return "BOOL";
        case 8:
            return "\"UTF8\"";
        default:
            return "?";
    }
}

// A table of properties up to its sentinel, as in object_rows.hpp.
std::string shown(const ztdecode_property_record* row) {
    std::string text;
    for (; row->id != 0xFF; ++row) {
        if (!text.empty()) text += ", ";
        text += hex_byte(row->id) + " " + row->name + " " + type_word(row->type);
        const unsigned count = row->count;
        if (count != 0) text += " [" + std::to_string(count) + "]";
    }
    return text;
}

void expect_property_sentinel(const ztdecode_property_record& row) {
    EXPECT_EQ(int{row.type}, 0);
    EXPECT_EQ(int{row.id}, 0xFF);
    EXPECT_STREQ(row.name, "(property_error)");
    EXPECT_EQ(int{row.count}, 0);
}

template <std::size_t N>
void expect_zeros_behind_name(const char (&name)[N]) {
    const std::size_t size = strnlen(name, N);
    EXPECT_LT(size, N);
    EXPECT_TRUE(std::all_of(name + size, name + N, [](char c) { return c == 0; })) << name;
}

TEST(NameTables, Counts) {
    EXPECT_EQ(sizeof Tab_Servers_def, 3 * 31U);
    EXPECT_EQ(sizeof Tab_Methods_def, 8 * 31U);
    EXPECT_EQ(sizeof Tab_Error_def, 22 * 31U);
    EXPECT_EQ(sizeof Tab_Events_Opcodes, 71 * 31U);
}

// clang-format off
TEST(NameTables, RowsInStoredOrder) {
    EXPECT_EQ(shown(Tab_Servers_def), "0x15 \"Call\", 0x16 \"Presentation\", 0xFF \"(reserved_error)\"");
    EXPECT_EQ(shown(Tab_Methods_def),
        "0x00 \"Create\", 0x01 \"Delete\", 0x02 \"SetProperty\", 0x03 \"GetProperty\", "
        "0x04 \"Notify\", 0x06 \"InsertItem\", 0x05 \"DeleteItem\", 0xFF \"(reserved_error)\"");
    EXPECT_EQ(shown(Tab_Error_def),
        "0x00 \"INVALID_METHOD\", 0x01 \"UNKNOWN_CLASS\", 0x02 \"STATIC_CLASS\", "
        "0x03 \"DUPLICATE_OBJECTID\", 0x04 \"UNKNOWN_PROPERTY\", 0x05 \"BAD_INDEX\", 0x06 \"BAD_LENGTH\", "
        "0x07 \"REQUIRED_MISSING\", 0x08 \"BAD_VALUE\", 0x09 \"READONLY_PROPERTY\", "
        "0x0A \"UNKNOWN_OBJECTID\", 0x0B \"INVALID_CONTAINER\", 0x0C \"PROPERTY_VMIN\", "
        "0x0D \"PROPERTY_VMAX\", 0x0E \"POSITIVE_ACK\", 0x0F \"NOT_IMPLEMENTED\", 0x10 \"INVALID_CLASS\", "
        "0x11 \"INVALID_PROPERTY\", 0x80 \"MESSAGE_DROP\", 0x81 \"MAX_SET_PROPERTY\", 0x82 \"INTERNAL\", "
        "0xFF \"(reserved_error)\"");
    EXPECT_EQ(shown(Tab_Events_Opcodes),
        "0x00 \"CONTEXT_SWITCH\", 0x01 \"RESET\", 0x02 \"KEY_PRESS\", 0x03 \"KEY_RELEASE\", "
        "0x04 \"KEY_SHORTPRESS\", 0x05 \"KEY_LONGPRESS\", 0x06 \"ONHOOK\", 0x07 \"OFFHOOK\", "
        "0x08 \"HELP\", 0x09 \"WIDGETS_GC\", 0x0A \"ERROR_PROTOCOL\", 0x0B \"ERROR_CREATE\", "
        "0x0C \"ERROR_DELETE\", 0x0D \"ERROR_SET_PROPERTY\", 0x0E \"ERROR_GET_PROPERTY\", "
        "0x0F \"SUCCESS_CREATE\", 0x10 \"SUCCESS_DELETE\", 0x11 \"SUCCESS_SET_PROPERTY\", "
        "0x12 \"ERROR_INSERT_ITEM\", 0x13 \"ERROR_DELETE_ITEM\", 0x14 \"SUCCESS_INSERT_ITEM\", "
        "0x15 \"DEVICE_PRESENCE\", 0x16 \"KEY_LINE\", 0x17 \"SUCCESS_DELETE_ITEM\", 0x80 \"TABBOX\", "
        "0x81 \"LISTBOX\", 0x82 \"LISTBOX_FIRST\", 0x83 \"LISTBOX_LAST\", 0x84 \"ACTIONLISTBOX\", "
        "0x85 \"ACTIONBOX\", 0x86 \"INPUTBOX\", 0x87 \"INPUTBOX_FOCUS_LOST\", 0x88 \"CHECKBOX\", "
        "0x89 \"TIMERBOX\", 0x8A \"POPUPBOX_TIMEOUT\", 0x8B \"DIALOGBOX\", 0x8C \"SLIDERBAR\", "
        "0x8D \"PROGRESSBAR\", 0x8E \"AOMVBOX\", 0x8F \"TELEPHONICBOX\", 0x90 \"AOM_INSERTED\", "
        "0x91 \"AOM_REMOVED\", 0x92 \"AOM_KEY_PRESS\", 0x93 \"IDLETIMER\", 0x94 \"GET_PROPERTY_RESULT\", "
        "0x95 \"AOM_KEY_RELEASE\", 0x96 \"POPUPBOX_DISMISSED\", 0x97 \"DIALOGBOX_TIMEOUT\", "
        "0x98 \"DIALOGBOX_DISMISSED\", 0x99 \"BT_BONDED_DEVICE\", 0x9A \"BT_INQUIRY_RESULT\", "
        "0x9B \"BT_NAME_DISCOVERY\", 0x18 \"BT_BONDING_RESULT\", 0x9D \"BT_LINK_FAILURE\", "
        "0x9E \"BT_BATTERY\", 0x19 \"BT_KEY_SHORTPRESS\", 0x1A \"BT_KEY_LONGPRESS\", "
        "0x1B \"BT_KEY_VERYLONGPRESS\", 0x1C \"LOCAL_APPLICATION\", 0x1D \"WARNING_CREATE\", "
        "0x1E \"WARNING_SET_PROPERTY\", 0x1F \"ARP_SPOOFING\", 0x22 \"QOS_TICKET\", 0x9F \"IME_LIST\", "
        "0xA0 \"IME_CHANGE\", 0xA1 \"IME_OPEN\", 0x9C \"IME_REMOTEOPEN\", 0xA2 \"TELEPHONICBOX_EVENT\", "
        "0xA3 \"ACTLISTBOX_TIMEOUT\", 0xA4 \"ACTLISTBOX_DISMISSED\", 0xFF \"(reserved_error)\"");
}
// clang-format on

TEST(NameTables, Bytes) {
    const char call[31] = {0x15, 'C', 'a', 'l', 'l'};
    EXPECT_EQ(std::memcmp(Tab_Servers_def, call, 31), 0);
    const auto* second = reinterpret_cast<const unsigned char*>(Tab_Servers_def) + 31;
    EXPECT_EQ(second[0], 0x16);
    EXPECT_STREQ(reinterpret_cast<const char*>(second + 1), "Presentation");
    for (const auto& row : Tab_Servers_def) expect_zeros_behind_name(row.name);
    for (const auto& row : Tab_Methods_def) expect_zeros_behind_name(row.name);
    for (const auto& row : Tab_Error_def) expect_zeros_behind_name(row.name);
    for (const auto& row : Tab_Events_Opcodes) expect_zeros_behind_name(row.name);
}

TEST(ClassTable, RowsInStoredOrder) {
    ASSERT_EQ(std::size(class_rows), 39U);
    ASSERT_EQ(sizeof Tab_Classes_Opcodes, 40 * (32 + sizeof(void*)));
    for (std::size_t i = 0; i < 39; ++i) {
        const ztdecode_class_record& row = Tab_Classes_Opcodes[i];
        EXPECT_EQ(int{row.opcode}, class_rows[i].opcode) << i;
        EXPECT_STREQ(row.name, class_rows[i].name);
        EXPECT_EQ(row.properties + 0, class_rows[i].table) << row.name;
        expect_zeros_behind_name(row.name);
    }
    const ztdecode_class_record& sentinel = Tab_Classes_Opcodes[39];
    EXPECT_EQ(int{sentinel.opcode}, 0xFF);
    EXPECT_STREQ(sentinel.name, "(class_error)");
    EXPECT_TRUE(sentinel.properties == nullptr);
}

TEST(ClassTable, Bytes) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(Tab_Classes_Opcodes) + (32 + sizeof(void*));
    EXPECT_EQ(bytes[0], 0x01);
    EXPECT_STREQ(reinterpret_cast<const char*>(bytes + 1), "terminal");
    const void* properties = nullptr;
    std::memcpy(&properties, bytes + 32, sizeof properties);
    EXPECT_EQ(properties, Tab_terminal);
}

TEST(PropertyTables, RowsInStoredOrder) {
    for (const ClassRow& row : class_rows) {
        EXPECT_EQ(shown(row.table), row.properties) << row.name;
        const ztdecode_property_record* end = row.table;
        for (; end->id != 0xFF; ++end) expect_zeros_behind_name(end->name);
        expect_property_sentinel(*end);
    }
}

TEST(PropertyTables, Sizes) {
    EXPECT_EQ(sizeof Tab_context, 3 * 34U);
    EXPECT_EQ(sizeof Tab_terminal, 27 * 34U);
    EXPECT_EQ(sizeof Tab_keyboard, 12 * 34U);
    EXPECT_EQ(sizeof Tab_screen, (11 + 9 + 1) * 34U);
    EXPECT_EQ(sizeof Tab_listbox, (11 + 20 + 1) * 34U);
    EXPECT_EQ(sizeof Tab_iconbox, (11 + 1 + 1) * 34U);
    EXPECT_EQ(sizeof Tab_ime_context, 11 * 34U);
    EXPECT_EQ(sizeof Tab_RESET, 16 * 34U);
    EXPECT_EQ(sizeof Tab_IME_REMOTEOPEN, 2 * 34U);
    expect_property_sentinel(Tab_context[2]);
    expect_property_sentinel(Tab_listbox[31]);
    expect_property_sentinel(Tab_IME_REMOTEOPEN[1]);
}

TEST(PropertyTables, Bytes) {
    // The ninth record of the keyboard's table: dflt, 78 elements of type uint16.
    unsigned char dflt[34] = {5, 0x80, 'd', 'f', 'l', 't'};
    dflt[32] = 78;
    EXPECT_EQ(std::memcmp(reinterpret_cast<const unsigned char*>(Tab_keyboard) + 8 * 34, dflt, 34), 0);
}

TEST(PropertyTables, SameNameOtherType) {
    const auto type_of = [](const ztdecode_property_record* row, const char* name) {
        while (row->id != 0xFF && std::strcmp(row->name, name) != 0) ++row;
        return std::string(row->id == 0xFF ? "none" : type_word(row->type));
    };
    EXPECT_EQ(type_of(Tab_progressbar, "value"), "uint8");
    EXPECT_EQ(type_of(Tab_sliderbar, "value"), "int32");
    EXPECT_EQ(type_of(Tab_inputbox, "value"), "\"UTF8\"");
    EXPECT_EQ(type_of(Tab_timerbox, "value"), "uint32");
    EXPECT_EQ(type_of(Tab_keyboard, "count"), "uint16");
    EXPECT_EQ(type_of(Tab_inputbox, "count"), "uint16");
    EXPECT_EQ(type_of(Tab_leds, "count"), "uint8");
    EXPECT_EQ(type_of(Tab_dialogbox, "timeout"), "int32");
    EXPECT_EQ(type_of(Tab_popupbox, "timeout"), "uint32");
}

struct EventTable {
    const char* name;
    const ztdecode_property_record* table;
    const char* properties;
};

// clang-format off
const EventTable event_tables[] = {
    {"Tab_RESET", Tab_RESET,
     "0x3E State BOOL, 0x59 link_type uint8, 0x58 term_type uint8, 0x62 serialnum \"UTF8\", "
     "0x63 hardversion \"UTF8\", 0x64 softversion \"UTF8\", 0x67 reset_cause uint32, "
     "0x66 ram_size uint32, 0x65 rom_size uint32, 0x46 custversion \"UTF8\", "
     "0x47 L10Nversion \"UTF8\", 0x53 ringings_count uint8, 0x7D binary_suffix \"UTF8\", "
     "0x7E binary_count uint8, 0x7F SIPCversion \"UTF8\""},
    {"Tab_TABBOX", Tab_TABBOX,
     "0x2B active uint8, 0x85 Dvalue \"UTF8\""},
    {"Tab_LISTBOX", Tab_LISTBOX,
     "0x2B active uint8, 0x85 Dvalue \"UTF8\""},
    {"Tab_INPUTBOX_FOCUS_LOST", Tab_INPUTBOX_FOCUS_LOST,
     "0x38 value \"UTF8\""},
    {"Tab_SLIDERBAR", Tab_SLIDERBAR,
     "0x38 value uint32"},
    {"Tab_BT_BONDED_DEVICE", Tab_BT_BONDED_DEVICE,
     "0x21 name \"UTF8\", 0x1E address \"UTF8\", 0x05 type uint8"},
    {"Tab_BT_INQUIRY_RESULT", Tab_BT_INQUIRY_RESULT,
     "0x1E address \"UTF8\", 0x54 cod uint32"},
    {"Tab_BT_NAME_DISCOVERY", Tab_BT_NAME_DISCOVERY,
     "0x1E address \"UTF8\", 0x21 name \"UTF8\""},
    {"Tab_IME_LIST", Tab_IME_LIST,
     "0x05 type uint8, 0x6F list_type uint16"},
    {"Tab_IME_CHANGE", Tab_IME_CHANGE,
     "0x05 type uint8"},
    {"Tab_IME_OPEN", Tab_IME_OPEN,
     "0x28 visible BOOL"},
    {"Tab_IME_REMOTEOPEN", Tab_IME_REMOTEOPEN,
     "0x00 objectid uint16"},
};
// clang-format on

TEST(EventPropertyTables, RowsInStoredOrder) {
    for (const EventTable& row : event_tables) {
        EXPECT_EQ(shown(row.table), row.properties) << row.name;
        const ztdecode_property_record* end = row.table;
        for (; end->id != 0xFF; ++end) expect_zeros_behind_name(end->name);
        expect_property_sentinel(*end);
    }
}

template <class Table>
constexpr bool constant = std::is_const_v<std::remove_extent_t<std::remove_reference_t<Table>>>;

static_assert(constant<decltype(Tab_Servers_def)> && constant<decltype(Tab_Classes_Opcodes)> &&
              constant<decltype(Tab_context)> && constant<decltype(UnicodeBlock)> &&
              constant<decltype(tab_unicod)>);

}  // namespace
}  // namespace ztdecode::testing
