#include "tool/report/catalog.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/message.hpp"
#include "support/process.hpp"

// The catalogue of messages: rows that were worked out from the decoders by hand, the whole tables of the
// digital set, and how it is shown.

namespace ztdecode::testing {

namespace {

const std::vector<CatalogRow>& rows() {
    static const std::vector<CatalogRow> all = catalog();
    return all;
}

// "link from|to code", or the same with " of ..." behind it, gives "message: field field ...".
std::string row(const std::string& wanted) {
    std::string found;
    for (const CatalogRow& r : rows()) {
        std::string name(r.link);
        name += (r.direction == from_dhs ? " from " : " to ") + r.code;
        if (!r.of.empty()) name += " of " + r.of;
        if (name != wanted) continue;
        if (!found.empty()) return "several";
        found = std::string(r.message) + ":";
        for (const CatalogField& f : r.fields) found += " " + std::string(f.field->name);
    }
    return found.empty() ? "none" : found;
}

TEST(Catalog, MessagesOfASet) {
    EXPECT_EQ(row("digital from 2a"), "version_inquiry:");
    EXPECT_EQ(row("digital from 21"), "led: led unknown_code");
    EXPECT_EQ(row("digital from 32"), "voice_channel: announce_channel voice_channel");
    EXPECT_EQ(row("digital to 03"), "digit_dialled: digit");
    EXPECT_EQ(row("digital from 06"), "subdevice_reset:");
    EXPECT_EQ(row("visiophone from 06"), "subdevice_reset: destination source");
}

TEST(Catalog, FieldsThatOneByteOrTheLengthDecidesOn) {
    EXPECT_EQ(row("digital from 01"), "production_test: test");
    EXPECT_EQ(row("digital to 1f 08"), "error_status: command error_status event interface");
    EXPECT_EQ(
        row("digital to 1f 00"),
        "reset: additional_vta_type bluetooth channels coder data_version download dtls hardware "
        "hardware_configuration hub_type info1 info2 ipsec loader_version misc power_feeding reset_kind "
        "rom_version self_test software_version terminal terminal_design terminal_type vpn vta_type "
        "wlan_connected");
}

TEST(Catalog, CodesInsideCodes) {
    EXPECT_EQ(row("digital to 1f"), "report: unknown_code");
    EXPECT_EQ(row("digital to 50 0a"), "download_ack: acknowledgement acknowledgement_code packet_number");
    EXPECT_EQ(row("hub from 14 32 0a"), "debug_cooling_time: cooling_time");
    EXPECT_EQ(row("he to 05"), "application_message: receiver sender");
    EXPECT_EQ(row("he to 05 .. .. 30 02"), "available_memory: available_memory");
    EXPECT_EQ(row("ibs to 12 13"), "hardware_anomaly: anomaly anomaly_link");
    EXPECT_EQ(row("ibs from 12 13"), "hardware_anomaly:");
    EXPECT_EQ(row("ip from 13 08"), "stop_listen_rtp:");
    EXPECT_EQ(row("debug to 18"), "debug_text: debug_text");
}

TEST(Catalog, Modules) {
    EXPECT_EQ(row("digital from 02 .. 3f of S0"), "set_operating_mode: module module_address operating_mode");
    // Two bytes decide together on what is said of layer 1.
    EXPECT_EQ(row("digital to 04 .. 1f .. of S0"),
              "anomaly: anomaly layer1_event layer1_state layer1_timer module module_address software_block");
    EXPECT_EQ(row("digital to 04 .. 20 of aom, eak"), "key_pushed: key module module_address");
    EXPECT_EQ(row("digital to 04 .. 9f 02 of x21, aom set-13"), "illegal_command: module module_address");
}

TEST(Catalog, ItemsOfLists) {
    EXPECT_EQ(row("ip from 13 03"), "redirect_rtp: remote_ip remote_udp_port unknown_code");
    EXPECT_EQ(row("ip from 13 14"),
              "set_application_parameters: application application_enabled unknown_code url");
    EXPECT_EQ(row("ip from 13 00"),
              "reset: application_mode cust_name l10n_name length sip_name unknown_code update_mode");
}

TEST(Catalog, ObjectsByTheirClasses) {
    EXPECT_EQ(row("call_server from 15 02 0e of widgets_default"),
              "set_property: acknowledge character_names checked class objectid server unchecked");
    EXPECT_EQ(row("presentation_server from 16 05 80 of framebox"),
              "delete_item: acknowledge class item_index object_id server");
    EXPECT_EQ(row("call_server to 15 04 15"), "device_presence: device plugged server");
    EXPECT_EQ(row("call_server to 15 04 94 of idletimer"),
              "get_property_result: objectid server value_notify");
}

// Every row {0x.., "name", ...} of the table that begins with these words in this source.
void expect_all_rows(const std::string& source, const std::string& begin, const std::string& place) {
    const std::string text = contents(ZTDECODE_SOURCE_DIR "/" + source);
    const std::size_t first = text.find(begin);
    ASSERT_NE(first, std::string::npos);
    const std::string table = text.substr(first, text.find("\n    },\n", first) - first);
    const std::regex form(R"re(\{0x([0-9A-F]{2}), "([a-z0-9_]+)")re");
    int count = 0;
    for (std::sregex_iterator at(table.begin(), table.end(), form), end; at != end; ++at, ++count) {
        std::string code = (*at)[1];
        std::ranges::transform(code, code.begin(),
                               [](char c) { return c >= 'A' ? static_cast<char>(c + 32) : c; });
        const std::string found = row(place + code);
        EXPECT_EQ(found.substr(0, found.find(':')), (*at)[2].str()) << place << code;
    }
    EXPECT_GT(count, 25);
}

TEST(Catalog, EveryRowOfTheSetsTables) {
    expect_all_rows("digital/from_system.cpp", "constexpr auto commands", "digital from ");
    expect_all_rows("digital/to_system.cpp", "constexpr auto messages", "digital to ");
}

TEST(Catalog, EachOnce) {
    std::set<std::string> seen;
    for (const CatalogRow& r : rows()) {
        const std::string name = std::string(r.link) + std::to_string(r.direction) + r.code + "/" + r.of +
                                 "/" + std::string(r.message);
        EXPECT_TRUE(seen.insert(name).second) << name;
        EXPECT_FALSE(r.message.empty()) << name;
    }
}

// --- how it is shown

Ended ztdecode(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), ZTDECODE_TOOL_FILE);
    return run(arguments);
}

TEST(Catalog, AsRecords) {
    const Ended ended = ztdecode({"--catalog", "--format", "ndjson"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.error, "");
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(ended.output, '\n')), rows().size());
    EXPECT_NE(ended.output.find(
                  "{\"kind\":\"catalog\",\"link\":\"digital\",\"direction\":\"to\",\"code\":\"1f 04\","
                  "\"message\":\"warning\",\"of\":null,\"fields\":[\"warning\"]}\n"),
              std::string::npos);
    EXPECT_NE(ended.output.find("\"code\":\"02 .. 0e\",\"message\":\"version_inquiry\",\"of\":\"S0\","
                                "\"fields\":[\"module\",\"module_address\"]}\n"),
              std::string::npos);
}

TEST(Catalog, ForPeople) {
    const Ended ended = ztdecode({"--catalog"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output.substr(0, 26), "digital, from the system\n ");
    EXPECT_NE(ended.output.find("\ndebug, to the system\n  18  debug_text  debug_text\n"), std::string::npos);
    EXPECT_NE(ended.output.find("\npresentation_server, to the system\n  as call_server, with 16 for 15\n"),
              std::string::npos);
}

CatalogRow shown_row(std::string code, std::string_view message, std::string of,
                     const std::vector<FieldName>& fields) {
    CatalogRow r{"digital", from_dhs, std::move(code), message, std::move(of), {}};
    for (const FieldName field : fields) r.fields.push_back({field.get(), 1});
    return r;
}

std::string shown(const std::vector<CatalogRow>& some, std::size_t width) {
    Text out;
    tool::write_catalog(some, width, false, out);
    return std::string(out.view());
}

TEST(Catalog, FieldsOfEachStandInFrontAndLongListsOnce) {
    const std::vector<FieldName> fields = {"module", "receiving_gain", "sending_gain"};
    EXPECT_EQ(shown({shown_row("02 .. 01", "one", "Z", fields), shown_row("02 .. 02", "another", "Z", fields),
                     shown_row("02 .. 03", "third", "Z", {"module"})},
                    0),
              "digital, from the system: Z\n"
              "  each: module\n"
              "  02 .. 01  one      receiving_gain, sending_gain\n"
              "  02 .. 02  another  as one 02 .. 01\n"
              "  02 .. 03  third\n");
}

TEST(Catalog, LinesFitTheTerminal) {
    const std::string text =
        shown({shown_row("01", "one", "", {"voice_channel", "announce_channel", "led"})}, 40);
    EXPECT_EQ(text,
              "digital, from the system\n"
              "  01  one  voice_channel,\n"
              "           announce_channel, led\n");
    for (const std::size_t width : {80U, 120U}) {
        std::istringstream lines(shown(rows(), width));
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), width) << line;
    }
}

TEST(Catalog, ReadsNoFile) {
    const Ended ended = ztdecode({"--catalog", "trace.spzt"});
    EXPECT_EQ(ended.error,
              "ztdecode: --catalog: reads no file, trace.spzt is one too many\n"
              "ztdecode --help says how it is used\n");
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.status, 2);
}

TEST(Catalog, SaysThatTheDiskIsFull) {
    const Ended ended = run({"/bin/sh", "-c", "'" ZTDECODE_TOOL_FILE "' --catalog >/dev/full"});
    EXPECT_EQ(ended.error, "ztdecode: standard output: No space left on device\n");
    EXPECT_EQ(ended.status, 2);
}

}  // namespace

}  // namespace ztdecode::testing
