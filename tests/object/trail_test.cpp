#include "core/trail.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "fuzz/bounds.hpp"
#include "object/lookup.hpp"
#include "object/names.hpp"
#include "object/values.hpp"
#include "support/support.hpp"
#include "ztdecode.h"

// What is noted of the messages of the object protocol.

namespace ztdecode::testing {
namespace {

using Lines = std::vector<std::string>;

// A message that is decoded with its notes.
struct Observed {
    TestSession decoding;
    Trail trail;
    std::string text;

    Observed() { decoding.session().trail = &trail; }
    Observed(std::string_view hex, std::uint32_t direction) : Observed() { decode(hex, direction); }

    void decode(std::string_view hex, std::uint32_t direction) { text = decoding.decode(hex, direction); }

    std::string bytes_of(const auto& noted) const {
        std::string all;
        for (const ByteRange& r : trail.bytes_of(noted)) {
            if (!all.empty()) all += " ";
            all += std::to_string(r.first);
            if (r.last != r.first) all += "-" + std::to_string(r.last);
        }
        return noted.missing ? all + "?" : all;
    }
    // "name=what it shows @its bytes", with the number or code behind words
    Lines values() const {
        static const char* const kinds[] = {"number", "word", "address", "text", "version", "flag", "bytes"};
        Lines lines;
        for (const NotedValue& v : trail.values()) {
            lines.push_back(std::string(v.name) + "=" + text.substr(v.begin, v.end - v.begin) + " " +
                            kinds[static_cast<int>(v.meaning.kind)] + " " + std::to_string(v.meaning.number) +
                            (v.meaning.known ? "" : " unknown") + " @" + bytes_of(v));
        }
        return lines;
    }
    // The bytes that chose the words in which this stands.
    std::string chosen_by(std::string_view words) const {
        const std::size_t at = text.find(words);
        for (const Stretch& s : trail.stretches()) {
            if (s.begin <= at && at < s.end) return bytes_of(s);
        }
        return "nowhere";
    }
    const NotedMessage& message() const { return trail.messages().front(); }
};

TEST(Noted, SetProperty) {
    const Observed o("16 82 84 00 07 37 03 41 42 43 24 02 ab cd 28 01 00", from_dhs);
    EXPECT_EQ(o.text,
              "\tRYM - presentation server\nSetProperty\ttextbox\tAck\n{\n\tServer\t\tPresentation"
              "\n\tObjectId\t0x0007\n\tlabel          \t\"ABC\"\n\tanchorid       \t0xABCD"
              "\n\tvisible        \tFALSE\n}\n");
    EXPECT_EQ(o.message().name, "set_property");
    EXPECT_EQ(o.message().code, 2U);
    EXPECT_EQ(o.values(), (Lines{"class=textbox word 132 @2", "acknowledge=Ack flag 1 @1",
                                 "server=Presentation word 22 @0", "object_id=0007 number 7 @3-4",
                                 "label=ABC text 0 @7-9", "anchorid=ABCD number 43981 @12-13",
                                 "visible=FALSE flag 0 @16"}));
    EXPECT_EQ(o.chosen_by("SetProperty"), "0-1");
    EXPECT_EQ(o.chosen_by("Server"), "0-1");
    EXPECT_EQ(o.chosen_by("ObjectId"), "0-2");
    EXPECT_EQ(o.chosen_by("label "), "0-2 5");
    EXPECT_EQ(o.chosen_by("anchorid "), "0-2 10");
    EXPECT_EQ(o.chosen_by("0xABCD"), "0-2 10-11");
    EXPECT_EQ(o.chosen_by("\n}"), "0-2");
}

TEST(Noted, Items) {
    const Observed o("15 06 82 00 12 03 8a 04 80 03 41 c3 a9 2b 01 02", from_dhs);
    EXPECT_EQ(o.message().name, "insert_item");
    EXPECT_EQ(
        o.values(),
        (Lines{"class=listbox word 130 @2", "server=Call word 21 @0", "object_id=0012 number 18 @3-4",
               "item_index=03 number 3 @5", "property_index=4 number 4 @7", "dlabel=A\xC3\xA9 text 0 @10-12",
               "character_names=A<" + e_acute() + "> text 0 @10-12", "active=2 number 2 @15"}));
    EXPECT_EQ(o.chosen_by("Idx:"), "0-2 6 8-9");
    EXPECT_EQ(o.chosen_by("active"), "0-2 13");
}

// A character that the value's end cuts has bytes behind it, which stand in the next property's place.
TEST(Noted, CutCharacters) {
    const Observed o("16 02 84 00 07 37 01 c3 26 01 05", from_dhs);
    EXPECT_EQ(o.values()[3], "label=ERROR_UTF8_2CHAR\xC3& text 0 @7-8");
    EXPECT_EQ(o.values().back(), "x=5 number 5 @10");
}

TEST(Noted, KindsOfNumbers) {
    // -2; eight bytes, nine bytes and none of a number; no boolean
    const Observed o(
        "16 00 8c 00 01 46 01 fe 38 08 00 00 00 01 00 00 00 00 38 09 01 02 03 04 05 06 07 08 09 38 00 26 01 "
        "09 "
        "28 02 01 02",
        from_dhs);
    const Lines values = o.values();
    ASSERT_EQ(values.size(), 9U);
    EXPECT_EQ(values[3], "hoffset=-2 number -2 @7");
    EXPECT_EQ(values[4], "value=0000000100000000 number 4294967296 @10-17");
    EXPECT_EQ(values[5], "value=010203040506070809 bytes 0 @20-28");
    EXPECT_EQ(values[6], "value= bytes 0 @");
    EXPECT_EQ(values[7], "x=9 number 9 @33");
    EXPECT_EQ(values[8], "visible=TRUE flag 1 @36");
    EXPECT_EQ(o.chosen_by("BOOL length error"), "0-2 34-35");
}

TEST(Noted, UnknownProperty) {
    const Observed o("16 02 06 7f 02 01 0a 99 02 01 03", from_dhs);
    EXPECT_EQ(o.values(), (Lines{"class=screen word 6 @2", "server=Presentation word 22 @0",
                                 "unknown_property=(property_error) word 127 unknown @3",
                                 "property_value=010A number 266 @5-6",
                                 "unknown_property=(property_error) word 153 unknown @7",
                                 "property_index=2 number 2 @8", "property_value=03 number 3 @10"}));
}

TEST(Noted, RequestsAndTheirAnswers) {
    Observed o("15 03 01 62 00 64 00", from_dhs);
    EXPECT_EQ(o.message().name, "get_property");
    EXPECT_EQ(o.values(),
              (Lines{"class=terminal word 1 @2", "server=Call word 21 @0",
                     "property=serialnum       word 98 @3", "property=softversion     word 100 @5"}));
    EXPECT_EQ(o.chosen_by("softversion"), "5");
    o.decode("15 04 94 00 01 62 02 30 41", to_dhs);
    EXPECT_EQ(o.message().name, "get_property_result");
    EXPECT_EQ(o.message().code, 0x94U);
    EXPECT_EQ(o.values(), (Lines{"server=Call word 21 @0", "serialnum=0A text 0 @7-8"}));
    EXPECT_EQ(o.chosen_by("serialnum"), "0-5");
    EXPECT_EQ(o.trail.values().back().field->sensitivity, hardware_address);
}

TEST(Noted, Addresses) {
    const Observed resource("15 02 0d 1e 01 41", from_dhs);
    EXPECT_EQ(resource.values().back(), "address=A text 0 @5");
    EXPECT_EQ(resource.trail.values().back().field->sensitivity, network_address);
    const Observed bluetooth("15 02 09 1e 01 41", from_dhs);
    EXPECT_EQ(bluetooth.values().back(), "bluetooth_address=A text 0 @5");
    EXPECT_EQ(bluetooth.trail.values().back().field->sensitivity, hardware_address);
    const Observed found("16 04 9a 00 00 1e 01 41", to_dhs);
    EXPECT_EQ(found.values().back(), "bluetooth_address=A text 0 @7");
    const Observed module("15 02 93 00 01 1e 01 03", from_dhs);
    EXPECT_EQ(module.values().back(), "module_address=3 number 3 @7");
}

TEST(Noted, Notifications) {
    const Observed key("16 04 02 35", to_dhs);
    EXPECT_EQ(key.message().name, "key_press");
    EXPECT_EQ(key.message().code, 2U);
    EXPECT_EQ(key.values(), (Lines{"server=Presentation word 22 @0", "key_text=5 text 0 @3"}));
    EXPECT_EQ(key.chosen_by("Notify"), "0-1");
    EXPECT_EQ(key.chosen_by("KEY_PRESS"), "0-2");
    const Observed unknown("16 04 20 01", to_dhs);
    EXPECT_EQ(unknown.message().name, "notify");
    EXPECT_EQ(unknown.values(), (Lines{"unknown_code=(reserved_error) number 32 unknown @2",
                                       "server=Presentation word 22 @0"}));
    const Observed reset("16 04 01 12 34 3e 01 01 67 04 00 00 00 02", to_dhs);
    EXPECT_EQ(reset.message().name, "reset");
    EXPECT_EQ(reset.values(), (Lines{"server=Presentation word 22 @0", "object_id=1234 number 4660 @3-4",
                                     "state=TRUE flag 1 @7", "reset_cause=00000002 number 2 @10-13"}));
}

TEST(Noted, EventBodies) {
    EXPECT_EQ(Observed("16 04 15 05 01", to_dhs).values(),
              (Lines{"server=Presentation word 22 @0", "device=device unknown word 5 unknown @3",
                     "plugged=plugged flag 1 @4"}));
    EXPECT_EQ(Observed("16 04 18 00 05 0c", to_dhs).values(),
              (Lines{"server=Presentation word 22 @0", "object_id=0005 number 5 @3-4",
                     "bonding_result=0C number 12 @5"}));
    EXPECT_EQ(Observed("16 04 1c 01 00 02", to_dhs).values(),
              (Lines{"server=Presentation word 22 @0", "started=true flag 1 @3",
                     "interruptible=false flag 0 @4", "application=btconfig word 2 @5"}));
}

TEST(Noted, Errors) {
    const Observed o("16 04 0a 00 04 02 84 00 07 37 03 00 05 00 00 01 00 6e 01", to_dhs);
    EXPECT_EQ(o.message().name, "error_protocol");
    EXPECT_EQ(
        o.values(),
        (Lines{"server=Presentation word 22 @0", "error_code=UNKNOWN_PROPERTY word 4 @4",
               "method=SetProperty word 2 @5", "class=textbox word 132 @6", "object_id=0007 number 7 @7-8",
               "property=label word 55 @9", "property_id=37 number 55 @9", "index=3 number 3 @10",
               "length=0005 number 5 @11-12", "value=00000100 number 256 @13-16", "text=n$ text 0 @17-18"}));
    // A short one: what it does not have is missing.
    const Observed cut("16 04 0a 00 00 00 06 00", to_dhs);
    EXPECT_EQ(cut.values()[4], "object_id=0000 number 0 @7?");
    EXPECT_EQ(cut.values().back(), "text= text 0 @");
}

TEST(Noted, Refusals) {
    const Observed o("16 84 02", from_dhs);
    EXPECT_EQ(o.values(), Lines{"method=04 word 4 unknown @1"});
    EXPECT_EQ(o.message().name, "");
    EXPECT_EQ(o.message().code, 4U);
    EXPECT_EQ(Observed("16 02 02", to_dhs).values(), Lines{"method=02 word 2 unknown @1"});
}

TEST(Noted, UnknownClass) {
    const Observed command("16 02 04 01", from_dhs);
    EXPECT_EQ(command.decoding.outcome, Outcome::unknown_class);
    EXPECT_EQ(command.text, "\tRYM - presentation server\nError class lookup table ptr");
    EXPECT_EQ(command.message().name, "set_property");
    EXPECT_EQ(command.values(), Lines{"class=Error class lookup table ptr word 4 unknown @2"});
    const Observed error("16 04 0b 00 01 00 04", to_dhs);
    EXPECT_EQ(error.values().back(), "class=Error class lookup table ptr word 4 unknown @6");
    const Observed answer("16 04 94 00 0b", to_dhs);
    EXPECT_EQ(answer.values(), Lines{"class=Error class lookup table ptr word 11 unknown @4"});
}

// The zero byte of a cut character ends the text, and with it what is noted.
TEST(Noted, NothingBehindAZeroByte) {
    const Observed o("16 02 84 00 07 37 01 c4", from_dhs);
    EXPECT_TRUE(o.text.ends_with("\n\tlabel          \t\"ERROR_UTF8_2CHAR\xC4")) << o.text;
    EXPECT_EQ(o.values().back(), "label=ERROR_UTF8_2CHAR\xC4 text 0 @7?");
}

std::string fields_of(const ztdecode_property_record* row, const object::Properties& table) {
    std::string wrong;
    for (; row->id != 0xFF; ++row) {
        const Field* const field = table.field(row->id).get();
        std::string name;
        for (const char* c = row->name; *c != '\0'; ++c) name += static_cast<char>(std::tolower(*c));
        const bool address =
            name == "address" && (field->name == "bluetooth_address" || field->name == "module_address");
        if (field->name != name && !address) wrong += name + " ";
    }
    return wrong;
}

TEST(PropertyFields, EveryPropertyOfEveryTableHasOne) {
    for (const ztdecode_class_record* c = Tab_Classes_Opcodes; c->properties != nullptr; ++c) {
        EXPECT_EQ(fields_of(c->properties, object::Properties(c->properties)), "") << c->name;
    }
    for (const ztdecode_property_record* rows :
         {Tab_RESET, Tab_TABBOX, Tab_LISTBOX, Tab_INPUTBOX_FOCUS_LOST, Tab_SLIDERBAR, Tab_BT_BONDED_DEVICE,
          Tab_BT_INQUIRY_RESULT, Tab_BT_NAME_DISCOVERY, Tab_IME_LIST, Tab_IME_CHANGE, Tab_IME_OPEN,
          Tab_IME_REMOTEOPEN}) {
        EXPECT_EQ(fields_of(rows, object::Properties(rows)), "");
    }
}

TEST(PropertyFields, OfATableOfSomebodyElse) {
    const ztdecode_property_record own[] = {
        {ZTDECODE_UTF8, 1, "Label", 0}, {ZTDECODE_UTF8, 2, "of their own", 0}, {ZTDECODE_INT32, 0xFF, "", 0}};
    const object::Properties table(own);
    EXPECT_EQ(table.field(1).get()->name, "label");
    EXPECT_EQ(table.field(2).get()->name, "property_value");
    EXPECT_EQ(table.field(3).get()->name, "property_value");
}

// Messages of all methods, classes, events and properties: who asks for notes gets the same text, all of it
// belongs to something, and every value has a name.
class Sweep : public ::testing::Test {
  protected:
    void take(const std::vector<std::uint8_t>& data, std::uint32_t direction) {
        Message m(data);
        m.direction = direction;
        Text with_notes;
        Text without;
        const Outcome outcome = decode(observed_.session(), m, with_notes);
        EXPECT_EQ(decode(plain_.session(), m, without), outcome);
        ASSERT_EQ(with_notes.view(), without.view());
        std::uint32_t end = 0;
        for (const Stretch& s : trail_.stretches()) {
            ASSERT_EQ(s.begin, end) << with_notes.view();
            end = s.end;
        }
        ASSERT_EQ(end, with_notes.size()) << with_notes.view();
        for (const NotedValue& v : trail_.values()) {
            ASSERT_FALSE(v.name.empty() || v.name == "{}" || v.name == "-") << with_notes.view();
            ASSERT_TRUE(v.ranges == 1 || v.missing || v.begin == v.end) << v.name << with_notes.view();
        }
        ++messages;
    }
    void SetUp() override { observed_.session().trail = &trail_; }

    int messages = 0;

  private:
    TestSession observed_;
    TestSession plain_;
    Trail trail_;
};

// A sanitizer takes its time: then it is every 13th.
constexpr unsigned step = fuzz::sanitized ? 13 : 1;
const int ids = static_cast<int>(255 / step + 1);

TEST_F(Sweep, Commands) {
    for (unsigned c = 0; c < 256; ++c) {
        for (std::uint8_t method = 0; method < 8; ++method) {
            for (unsigned id = 0; id < 256; id += step) {
                const auto byte = static_cast<std::uint8_t>(id);
                take({0x16, method, static_cast<std::uint8_t>(c), 0, 7, byte, 1, 2, 0x41, 0xC3, 0xA9, 3},
                     from_dhs);
            }
        }
    }
    EXPECT_EQ(messages, 256 * 8 * ids);
}

TEST_F(Sweep, Events) {
    for (unsigned event = 0; event < 256; ++event) {
        for (unsigned id = 0; id < 256; id += step) {
            const auto byte = static_cast<std::uint8_t>(id);
            take({0x15, 4, static_cast<std::uint8_t>(event), 0, byte, byte, 1, 2, 0xEE, 0x84, 0x92, 3},
                 to_dhs);
            take({0x15, 4, static_cast<std::uint8_t>(event), byte}, to_dhs);
        }
    }
    EXPECT_EQ(messages, 256 * ids * 2);
}

}  // namespace
}  // namespace ztdecode::testing
