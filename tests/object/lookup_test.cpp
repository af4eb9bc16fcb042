#include "object/lookup.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

#include "tests/object/object_rows.hpp"
#include "ztdecode.h"

namespace ztdecode::testing {
namespace {

using namespace object;

struct NameRow {
    std::uint8_t code;
    const char* name;
};

constexpr const char* unknown = "(reserved_error)";

// Looks all 256 codes up in both ways: the rows have these names, every other code is unknown.
template <std::size_t N>
void expect_names(const NameRow (&rows)[N], const ztdecode_name_record* table, Word (*direct)(const Byte&)) {
    const char* names[256];
    std::fill(std::begin(names), std::end(names), unknown);
    for (const NameRow& row : rows) names[row.code] = row.name;
    for (unsigned c = 0; c < 256; ++c) {
        const auto code = static_cast<std::uint8_t>(c);
        EXPECT_STREQ(object::find_name(code, table), names[c]) << c;
        const Word word = direct(Byte{code, {7, 1}});
        EXPECT_EQ(word.text, names[c]) << c;
        EXPECT_EQ(word.code, c);
        EXPECT_EQ(word.known, names[c] != unknown) << c;
        EXPECT_EQ(word.place.first, 7U);
    }
}

TEST(FindName, Servers) {
    const NameRow rows[] = {{0x15, "Call"}, {0x16, "Presentation"}};
    expect_names(rows, Tab_Servers_def, object::server);
}

TEST(FindName, Methods) {
    const NameRow rows[] = {
        {0, "Create"}, {1, "Delete"},     {2, "SetProperty"}, {3, "GetProperty"},
        {4, "Notify"}, {5, "DeleteItem"}, {6, "InsertItem"},
    };
    expect_names(rows, Tab_Methods_def, object::method);
}

TEST(FindName, Errors) {
    // clang-format off
    const NameRow rows[] = {
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
    };
    // clang-format on
    expect_names(rows, Tab_Error_def, object::error);
}

TEST(FindName, Events) {
    // clang-format off
    const NameRow rows[] = {
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
        {0x18, "BT_BONDING_RESULT"},
        {0x19, "BT_KEY_SHORTPRESS"},
        {0x1A, "BT_KEY_LONGPRESS"},
        {0x1B, "BT_KEY_VERYLONGPRESS"},
        {0x1C, "LOCAL_APPLICATION"},
        {0x1D, "WARNING_CREATE"},
        {0x1E, "WARNING_SET_PROPERTY"},
        {0x1F, "ARP_SPOOFING"},
        {0x22, "QOS_TICKET"},
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
        {0x9C, "IME_REMOTEOPEN"},
        {0x9D, "BT_LINK_FAILURE"},
        {0x9E, "BT_BATTERY"},
        {0x9F, "IME_LIST"},
        {0xA0, "IME_CHANGE"},
        {0xA1, "IME_OPEN"},
        {0xA2, "TELEPHONICBOX_EVENT"},
        {0xA3, "ACTLISTBOX_TIMEOUT"},
        {0xA4, "ACTLISTBOX_DISMISSED"},
    };
    // clang-format on
    expect_names(rows, Tab_Events_Opcodes, object::event);
}

// Whoever calls may bring a table of his own, at any address; the first row of a code counts.
TEST(FindName, AnyTable) {
    alignas(16) unsigned char bytes[1 + 4 * 31] = {};
    const ztdecode_name_record rows[] = {{5, "first"}, {5, "second"}, {255, "end"}, {6, "behind"}};
    std::memcpy(bytes + 1, rows, sizeof rows);
    const auto* table = reinterpret_cast<const ztdecode_name_record*>(bytes + 1);
    EXPECT_STREQ(object::find_name(5, table), "first");
    EXPECT_STREQ(object::find_name(6, table), "end");
    EXPECT_STREQ(object::find_name(255, table), "end");
    EXPECT_STREQ(object::find_name(5, table + 2), "end");
}

TEST(FindClass, EveryClass) {
    std::set<unsigned> known;
    for (const ClassRow& row : class_rows) {
        const ztdecode_class_record& found = object::find_class(row.opcode, Tab_Classes_Opcodes);
        EXPECT_STREQ(found.name, row.name);
        EXPECT_EQ(found.properties + 0, row.table) << row.name;
        const ObjectClass direct = class_of(row.opcode);
        EXPECT_EQ(direct.name, row.name);
        EXPECT_EQ(direct.properties.rows(), row.table) << row.name;
        known.insert(row.opcode);
    }
    ASSERT_EQ(known.size(), 39U);
    for (const unsigned code : {0x04U, 0x0AU, 0x0BU, 0x0FU, 0x7FU, 0x9BU, 0xFEU, 0xFFU}) {
        EXPECT_EQ(known.count(code), 0U) << code;
    }
    for (unsigned c = 0; c < 256; ++c) {
        if (known.count(c) != 0) continue;
        const ztdecode_class_record& found =
            object::find_class(static_cast<std::uint8_t>(c), Tab_Classes_Opcodes);
        EXPECT_STREQ(found.name, "(class_error)") << c;
        EXPECT_TRUE(found.properties == nullptr) << c;
        const ObjectClass direct = class_of(static_cast<std::uint8_t>(c));
        EXPECT_EQ(direct.name, "(class_error)") << c;
        EXPECT_FALSE(direct.properties) << c;
    }
}

TEST(FindClass, AnyTable) {
    constexpr std::size_t size = sizeof(ztdecode_class_record);
    alignas(16) unsigned char bytes[1 + 3 * size] = {};
    const ztdecode_class_record rows[] = {
        {9, "nine", Tab_date}, {9, "again", Tab_leds}, {255, "end", nullptr}};
    std::memcpy(bytes + 1, rows, sizeof rows);
    const auto* table = reinterpret_cast<const ztdecode_class_record*>(bytes + 1);
    EXPECT_STREQ(object::find_class(9, table).name, "nine");
    EXPECT_EQ(object::find_class(9, table).properties + 0, Tab_date);
    EXPECT_STREQ(object::find_class(8, table).name, "end");
    EXPECT_TRUE(object::find_class(8, table).properties == nullptr);
}

TEST(FindProperty, Rows) {
    struct Row {
        const ztdecode_property_record* table;
        std::uint8_t id;
        const char* name;
        unsigned count;
        unsigned type;
    };
    // clang-format off
    const Row rows[] = {
        {Tab_context, 0x00, "objectid", 0, 5},
        {Tab_context, 0x01, "ownership", 0, 6},
        {Tab_context, 0x02, "(property_error)", 0, 0},
        {Tab_context, 0xFF, "(property_error)", 0, 0},
        {Tab_terminal, 0x46, "custversion", 0, 8},
        {Tab_terminal, 0x47, "L10Nversion", 0, 8},
        {Tab_terminal, 0x16, "system_id", 0, 6},
        {Tab_keyboard, 0x80, "dflt", 78, 5},
        {Tab_keyboard, 0x82, "alt", 78, 5},
        {Tab_screen, 0x46, "hoffset", 0, 2},
        {Tab_screen, 0x47, "voffset", 0, 2},
        {Tab_screen, 0x97, "Ddata", 20, 8},
        {Tab_screen, 0x99, "(property_error)", 0, 0},
        {Tab_callstate, 0x8D, "Dstate", 120, 6},
        {Tab_textbox, 0x37, "label", 0, 8},
        {Tab_timerbox, 0x38, "value", 0, 4},
        {Tab_timerbox, 0x2F, "mode", 0, 2},
        {Tab_sliderbar, 0x38, "value", 0, 0},
        {Tab_progressbar, 0x38, "value", 0, 6},
        {Tab_inputbox, 0x38, "value", 0, 8},
        {Tab_dialogbox, 0x42, "timeout", 0, 0},
        {Tab_popupbox, 0x42, "timeout", 0, 4},
        {Tab_ime_context, 0x86, "Dmode", 3, 7},
        {Tab_ime_context, 0x8D, "Dstate", 8, 7},
        {Tab_RESET, 0x00, "(property_error)", 0, 0},
        {Tab_RESET, 0x7F, "SIPCversion", 0, 8},
        {Tab_LISTBOX, 0x85, "Dvalue", 0, 8},
        {Tab_IME_LIST, 0x6F, "list_type", 0, 5},
        {Tab_IME_REMOTEOPEN, 0x00, "objectid", 0, 5},
    };
    // clang-format on
    for (const Row& row : rows) {
        const ztdecode_property_record& found = object::find_property(row.id, row.table);
        EXPECT_STREQ(found.name, row.name);
        EXPECT_EQ(unsigned{found.count}, row.count) << row.name;
        EXPECT_EQ(unsigned{found.type}, row.type) << row.name;
    }
}

void expect_both_ways_agree(const PropertyTable& table) {
    for (unsigned i = 0; i < 256; ++i) {
        const auto id = static_cast<std::uint8_t>(i);
        const ztdecode_property_record& walked = object::find_property(id, table.rows());
        const Property direct = table[id];
        EXPECT_EQ(direct.name, walked.name) << i;
        EXPECT_EQ(direct.name.data(), walked.name + 0) << i;
        EXPECT_EQ(unsigned{direct.count}, unsigned{walked.count}) << i;
        EXPECT_EQ(unsigned{direct.type}, unsigned{walked.type}) << i;
    }
}

TEST(FindProperty, BothWaysAgreeOnAllIds) {
    for (const ClassRow& row : class_rows) {
        SCOPED_TRACE(row.name);
        expect_both_ways_agree(class_of(row.opcode).properties);
    }
    const struct {
        const PropertyTable& table;
        const ztdecode_property_record* rows;
    } events[] = {
        {event_properties::reset, Tab_RESET},
        {event_properties::tabbox, Tab_TABBOX},
        {event_properties::listbox, Tab_LISTBOX},
        {event_properties::inputbox_focus_lost, Tab_INPUTBOX_FOCUS_LOST},
        {event_properties::sliderbar, Tab_SLIDERBAR},
        {event_properties::bt_bonded_device, Tab_BT_BONDED_DEVICE},
        {event_properties::bt_inquiry_result, Tab_BT_INQUIRY_RESULT},
        {event_properties::bt_name_discovery, Tab_BT_NAME_DISCOVERY},
        {event_properties::ime_list, Tab_IME_LIST},
        {event_properties::ime_change, Tab_IME_CHANGE},
        {event_properties::ime_open, Tab_IME_OPEN},
    };
    for (const auto& event : events) {
        EXPECT_EQ(event.table.rows(), event.rows);
        expect_both_ways_agree(event.table);
    }
}

TEST(FindProperty, AnyTable) {
    alignas(16) unsigned char bytes[1 + 3 * 34] = {};
    const ztdecode_property_record rows[] = {{4, 9, "nine", 258}, {5, 9, "again", 0}, {0, 255, "end", 0}};
    std::memcpy(bytes + 1, rows, sizeof rows);
    const auto* table = reinterpret_cast<const ztdecode_property_record*>(bytes + 1);
    EXPECT_STREQ(object::find_property(9, table).name, "nine");
    EXPECT_EQ(unsigned{object::find_property(9, table).count}, 258U);
    EXPECT_STREQ(object::find_property(10, table).name, "end");
}

TEST(ClassProperties, ByTable) {
    EXPECT_EQ(class_properties_at(Tab_date).rows(), Tab_date);
    EXPECT_EQ(class_properties_at(Tab_date)[0x1A].name, "day");
    EXPECT_FALSE(class_properties_at(nullptr));
    EXPECT_FALSE(class_properties_at(Tab_RESET));
    EXPECT_FALSE(class_properties_at(Tab_date + 1));
}

// "0x80 dflt uint16 [78], ..." as lines of the listing.
std::string listed(std::string_view properties) {
    std::string text;
    while (!properties.empty()) {
        const std::string row(properties.substr(0, properties.find(", ")));
        properties.remove_prefix(std::min(properties.size(), row.size() + 2));
        char name[40] = "";
        char type[10] = "";
        char count[10] = "";
        EXPECT_GE(std::sscanf(row.c_str(), "0x%*x %39s %9s %9s", name, type, count), 2) << row;
        text += "\n\t" + std::string(name);
        if (std::strlen(name) < 15) text.append(15 - std::strlen(name), ' ');
        text += "\t" + std::string(*count != 0 ? "Idx:\t" : "") + type;
    }
    return text;
}

TEST(Help, Listing) {
    const std::string separator = "\n-----------------------------------------";
    ASSERT_EQ(separator.size(), 1U + 41U);
    std::string expected;
    for (const ClassRow& row : class_rows) {
        expected += separator + "\n" + row.name + "\n{" + listed(row.properties) + "\n}";
    }
    expected += separator;
    Text text;
    list_classes(text);
    EXPECT_EQ(text.view(), expected);
    EXPECT_EQ(text.size(), 15133U);
}

TEST(Help, FirstAndLastLines) {
    Text text;
    text.add("in front");
    list_classes(text);
    const std::string_view first =
        "in front"
        "\n-----------------------------------------"
        "\ncontext\n{"
        "\n\tobjectid       \tuint16"
        "\n\townership      \tuint8"
        "\n}"
        "\n-----------------------------------------"
        "\nterminal\n{"
        "\n\tobjectid       \tuint16"
        "\n\treset          \tuint8"
        "\n\tmtu            \tuint16"
        "\n\tnegative_ack   \tBOOL"
        "\n\tCS_idle_state  \tBOOL"
        "\n\tPS_idle_state  \tBOOL"
        "\n\tsession_timeout\tuint16";
    EXPECT_EQ(text.view().substr(0, first.size()), first);
    EXPECT_NE(text.view().find("\n\tuse_customisation\tBOOL\n"), std::string_view::npos);
    EXPECT_NE(text.view().find("\n\ttoday          \tIdx:\t\"UTF8\"\n"), std::string_view::npos);
    EXPECT_NE(text.view().find("\n\tmin            \tint32\n"), std::string_view::npos);
    EXPECT_NE(text.view().find("\n\thoffset        \tint8\n"), std::string_view::npos);
    const std::string_view last =
        "\n\tsession_timeout\tuint32"
        "\n\tDmode          \tIdx:\tBOOL"
        "\n\tDname          \tIdx:\t\"UTF8\""
        "\n\tDenable        \tIdx:\tBOOL"
        "\n\tDstate         \tIdx:\tBOOL"
        "\n}"
        "\n-----------------------------------------";
    EXPECT_EQ(text.view().substr(text.size() - last.size()), last);
}

}  // namespace
}  // namespace ztdecode::testing
