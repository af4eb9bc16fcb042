#include <dlfcn.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/process.hpp"
#include "support/traces.hpp"
#include "ztdecode.hpp"

// The records that the golden traces have to give (tests/golden/*.ndjson), held against those of a session
// that is fed the same lines.

namespace ztdecode::testing {
namespace {

namespace fs = std::filesystem;
using Json = rapidjson::Value;

const fs::path source = ZTDECODE_SOURCE_DIR;

zt::Options options_of(const fs::path& trace) {
    zt::Options options;
    const fs::path file = beside_golden(trace, ".options");
    if (!fs::exists(file)) return options;
    const std::string text = contents(file);
    if (text.find("--direction to") != std::string::npos) options.direction = zt::Direction::to_system;
    if (text.find("--layout lng2") != std::string::npos) options.layout = zt::Layout::lng2;
    if (text.find("--layout zt") != std::string::npos) options.layout = zt::Layout::zt;
    return options;
}

// As JSON has a text: each byte that is no part of a character in UTF-8 is U+FFFD.
std::string as_utf8(std::string_view s) {
    std::string utf8;
    while (!s.empty()) {
        const auto byte = [s](std::size_t k) { return k < s.size() ? static_cast<unsigned char>(s[k]) : 0U; };
        const unsigned lead = byte(0);
        const std::size_t n = lead < 0x80                    ? 1
                              : lead >= 0xC2 && lead <= 0xDF ? 2
                              : lead >= 0xE0 && lead <= 0xEF ? 3
                              : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                             : 0;
        bool whole = n != 0;
        for (std::size_t k = 1; k < n; ++k) whole = whole && (byte(k) & 0xC0U) == 0x80;
        if (lead == 0xE0) whole = whole && byte(1) >= 0xA0;
        if (lead == 0xED) whole = whole && byte(1) < 0xA0;
        if (lead == 0xF0) whole = whole && byte(1) >= 0x90;
        if (lead == 0xF4) whole = whole && byte(1) < 0x90;
        if (whole) {
            utf8 += s.substr(0, n);
        } else {
            utf8 += "\xEF\xBF\xBD";
        }
        s.remove_prefix(whole ? n : 1);
    }
    return utf8;
}

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

std::string_view string_in(const Json& value) { return {value.GetString(), value.GetStringLength()}; }
// Null is an empty one.
std::string_view name_in(const Json& value) { return value.IsNull() ? std::string_view() : string_in(value); }

void expect_value(const zt::Field& field, const Json& expected) {
    switch (field.kind()) {
        case zt::Kind::number:
            ASSERT_TRUE(expected.IsNumber()) << field.name();
            EXPECT_EQ(field.number(), expected.GetDouble()) << field.name();
            EXPECT_EQ(std::stod(std::string(field.value())), expected.GetDouble()) << field.name();
            break;
        case zt::Kind::flag:
            ASSERT_TRUE(expected.IsBool()) << field.name();
            EXPECT_EQ(field.value(), expected.GetBool() ? "true" : "false") << field.name();
            EXPECT_EQ(field.number(), expected.GetBool() ? 1 : 0) << field.name();
            break;
        default:
            ASSERT_TRUE(expected.IsString()) << field.name();
            EXPECT_EQ(as_utf8(field.value()), string_in(expected)) << field.name();
            break;
    }
}

// An array where a name stands several times; all in all as many as there are.
void expect_fields(const zt::Record& record, const Json& expected) {
    std::size_t count = 0;
    for (const auto& member : expected.GetObject()) {
        std::vector<zt::Field> fields;
        for (const zt::Field field : record.fields()) {
            if (field.name() == string_in(member.name)) fields.push_back(field);
        }
        count += fields.size();
        if (!member.value.IsArray()) {
            ASSERT_EQ(fields.size(), 1U) << string_in(member.name);
            expect_value(fields[0], member.value);
            continue;
        }
        ASSERT_EQ(fields.size(), member.value.Size()) << string_in(member.name);
        for (rapidjson::SizeType k = 0; k < member.value.Size(); ++k)
            expect_value(fields[k], member.value[k]);
    }
    EXPECT_EQ(record.fields().size(), count);
}

void expect_bytes(std::span<const zt::ByteRange> bytes, const Json& expected) {
    ASSERT_EQ(bytes.size(), expected.Size());
    for (rapidjson::SizeType k = 0; k < expected.Size(); ++k) {
        EXPECT_EQ(bytes[k].first, expected[k][0].GetUint());
        EXPECT_EQ(bytes[k].last, expected[k][1].GetUint());
    }
}

void expect_words(const zt::Record& record, const Json& expected) {
    ASSERT_EQ(record.words().size(), expected.Size());
    for (rapidjson::SizeType k = 0; k < expected.Size(); ++k) {
        const zt::Word word = record.words()[k];
        const Json& of = expected[k];
        EXPECT_EQ(as_utf8(word.text()), string_in(of["text"]));
        EXPECT_EQ(word.begin_in_text(), of["begin"].GetUint64());
        EXPECT_EQ(word.end_in_text(), of["end"].GetUint64());
        EXPECT_EQ(word.field(), of.HasMember("field") ? string_in(of["field"]) : "");
        EXPECT_EQ(word.missing(), of.HasMember("missing"));
        expect_bytes(word.bytes(), of["bytes"]);
    }
}

void expect_details(const zt::Record& record, const Json& expected) {
    ASSERT_EQ(record.fields().size(), expected.Size());
    for (rapidjson::SizeType k = 0; k < expected.Size(); ++k) {
        const zt::Field field = record.fields()[k];
        const Json& of = expected[k];
        EXPECT_EQ(field.name(), string_in(of["name"]));
        EXPECT_EQ(zt::name_of(field.kind()), string_in(of["kind"]));
        expect_value(field, of["value"]);
        EXPECT_EQ(field.unit(), name_in(of["unit"]));
        ASSERT_EQ(field.code().has_value(), !of["code"].IsNull());
        EXPECT_EQ(field.code().value_or(0), of["code"].IsNull() ? 0 : of["code"].GetInt64());
        EXPECT_EQ(field.known(), of["known"].GetBool());
        EXPECT_EQ(field.missing(), of["missing"].GetBool());
        EXPECT_EQ(zt::name_of(field.sensitivity()), string_in(of["sensitivity"]));
        EXPECT_EQ(field.begin_in_text(), of["begin"].GetUint64());
        EXPECT_EQ(field.end_in_text(), of["end"].GetUint64());
        EXPECT_EQ(field.shown(), record.text().substr(field.begin_in_text(), field.shown().size()));
        expect_bytes(field.bytes(), of["bytes"]);
    }
}

void expect_record(const zt::Record& record, const Json& expected) {
    EXPECT_EQ(as_utf8(record.text()), string_in(expected["text"]));
    EXPECT_EQ(record.direction() == zt::Direction::to_system ? "to" : "from",
              string_in(expected["direction"]));
    EXPECT_EQ(record.link(), name_in(expected["link"]));
    EXPECT_EQ(record.message(), name_in(expected["message"]));
    EXPECT_EQ(record.code().has_value(), !expected["code"].IsNull());
    EXPECT_EQ(record.code().value_or(0), expected["code"].IsNull() ? 0 : expected["code"].GetUint());
    EXPECT_EQ(zt::name_of(record.outcome()), string_in(expected["status"]));
    EXPECT_EQ(record.length(), expected["length"].GetUint());
    EXPECT_EQ(hexadecimal(record.bytes()), string_in(expected["bytes"]));
    expect_fields(record, expected["fields"]);
    EXPECT_EQ(record.unknown(), expected["unknown"].GetUint());
    EXPECT_EQ(record.missing(), expected["missing"].GetUint());
    EXPECT_EQ(record.padded(), expected.HasMember("padded") ? expected["padded"].GetUint64() : 0);
    std::vector<std::uint64_t> segments;
    if (expected.HasMember("segments")) {
        for (const Json& segment : expected["segments"].GetArray()) segments.push_back(segment.GetUint64());
    }
    EXPECT_TRUE(std::ranges::equal(record.segments(), segments));
    if (expected.HasMember("words")) {
        expect_words(record, expected["words"]);
        expect_details(record, expected["fields_detail"]);
    }
    const Json& parts = expected["parts"];
    ASSERT_EQ(record.parts().size(), parts.Size());
    for (rapidjson::SizeType k = 0; k < parts.Size(); ++k) expect_record(record.parts()[k], parts[k]);
}

// The objects of a file, one after the other.
class Objects {
  public:
    explicit Objects(const fs::path& file) : lines_(contents(file)) {}

    const Json& next() {
        std::string line;
        if (!std::getline(lines_, line)) ADD_FAILURE() << "no object is left";
        object_.Parse(line.c_str());
        EXPECT_FALSE(object_.HasParseError());
        return object_;
    }
    bool done() { return lines_.peek() == std::istringstream::traits_type::eof(); }

  private:
    std::istringstream lines_;
    rapidjson::Document object_;
};

void expect_records(const fs::path& trace, const fs::path& expected, zt::Detail detail, bool pad = false) {
    zt::Options options = options_of(trace);
    options.detail = detail;
    options.pad = pad;
    zt::Session session(options);
    Objects objects(expected);
    std::istringstream lines(contents(trace));
    std::uint64_t number = 0;
    for (std::string text; std::getline(lines, text);) {
        SCOPED_TRACE(text);
        const zt::Line line = session.feed(text);
        ++number;
        EXPECT_EQ(line.place(), number);
        bool said = false;
        for (const zt::Record record : session.messages()) {
            const Json& object = objects.next();
            ASSERT_EQ(string_in(object["kind"]), "message");
            EXPECT_EQ(object["line"].GetUint64(), number);
            EXPECT_EQ(line.columns(), name_in(object["columns"]));
            EXPECT_EQ(line.prefix(), object.HasMember("prefix") ? name_in(object["prefix"]) : "");
            EXPECT_EQ(line.time(), name_in(object["time"]));
            EXPECT_EQ(record.place(), number);
            expect_record(record, object);
            said = true;
        }
        if (line.refusal() != zt::Refusal::none) {
            const Json& object = objects.next();
            ASSERT_EQ(string_in(object["kind"]), "refused");
            EXPECT_EQ(zt::name_of(line.refusal()), string_in(object["reason"]));
            EXPECT_EQ(line.column(), object["column"].GetUint64());
            EXPECT_EQ(line.expected(), object["expected"].GetUint64());
            EXPECT_EQ(line.found(), object["found"].GetUint64());
            EXPECT_EQ(as_utf8(line.content()), string_in(object["content"]));
        } else if (!said) {
            const Json& object = objects.next();
            ASSERT_EQ(string_in(object["kind"]), "other");
            EXPECT_EQ(as_utf8(line.content()), string_in(object["content"]));
        }
        if (::testing::Test::HasFailure()) return;
    }
    EXPECT_TRUE(objects.done());
}

class ApiGolden : public ::testing::TestWithParam<fs::path> {};

TEST_P(ApiGolden, Records) {
    static const bool names = ::dlopen("libuninameslist.so", RTLD_LAZY) != nullptr;
    if (!names && fs::exists(beside_golden(GetParam(), ".unnamed")))
        GTEST_SKIP() << "characters have no names here";
    expect_records(GetParam(), beside_golden(GetParam(), ".ndjson"), zt::Detail::fields);
}

INSTANTIATE_TEST_SUITE_P(Traces, ApiGolden, ::testing::ValuesIn(golden_traces()), [](const auto& trace) {
    std::string name = trace.param.stem();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

TEST(ApiGolden, ExplainedRecords) {
    expect_records(source / "tests/golden/explained.spzt", source / "tests/golden/explained.explained.ndjson",
                   zt::Detail::words);
}

#ifdef ZTDECODE_TOOL_FILE
// Lines of every kind, as the command says them.
TEST(ApiGolden, RefusedLines) {
    const std::string lines =
        "# comment\n\nline 12 is up\n081231S 03 21 04\n01 00 2a 00 00 21 04 03\nzt 03 00 21 04\nzt xx\n"
        "123456S zz\n081211S 64 00 21 04 03\n00 00\n00 00 00 \r\n01 00 2a 03 00 21 04 03   \n\xff\xfe words\n"
        "081231R 04 15 01 ff 00\n03 00 21 04\nff 21 04 03\n2026-11-21T07:45:02 link up\n"
        "2026-11-21T07:45:02 [set 4] 081231s\t0x03 0x21  04 03\n[a] ZT 03 00 21 04 03\n[a] zt 03 00 21 zz "
        "03\n"
        " \t# comment\n 01 00 2a 03 00 21\n";
    const TemporaryFile trace(lines);
    for (const bool pad : {false, true}) {
        std::vector<std::string> command{ZTDECODE_TOOL_FILE, "--format", "ndjson", trace.path()};
        if (pad) command.insert(command.begin() + 1, "--pad");
        const Ended ended = run(command);
        EXPECT_EQ(ended.status, 1);
        const TemporaryFile expected(ended.output);
        expect_records(trace.path(), expected.path(), zt::Detail::fields, pad);
        EXPECT_NE(ended.output.find("\"refused\""), std::string::npos);
    }
}
#endif

}  // namespace
}  // namespace ztdecode::testing
