#include "core/tables.hpp"

#include <gtest/gtest.h>

#include "core/session.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

constexpr auto valves = names({{0, "closed"}, {1, "half open"}, {7, "open"}, {255, "broken"}}, "???");
constexpr auto without_rest = names({{3, "three"}}, "");

static_assert(valves[1] == "half open", "a table is there when the compiler is");

TEST(Names, EveryCode) {
    for (std::uint32_t code = 0; code < 1000; ++code) {
        const std::string_view expected = code == 0     ? "closed"
                                          : code == 1   ? "half open"
                                          : code == 7   ? "open"
                                          : code == 255 ? "broken"
                                                        : "???";
        EXPECT_EQ(valves[code], expected) << code;
        const Word word = valves[Number{code, {4, 2}}];
        EXPECT_EQ(word.text, expected) << code;
        EXPECT_EQ(word.code, code);
        EXPECT_EQ(word.known, expected != "???") << code;
        EXPECT_EQ(word.place.first, 4U);
        EXPECT_EQ(word.place.count, 2U);
    }
    EXPECT_EQ(valves[0x101], "???");
    EXPECT_EQ(valves[0xFFFFFFFF], "???");
    EXPECT_EQ(without_rest[3], "three");
    EXPECT_EQ(without_rest[4], "");
}

void write_length(Decoding& d) { d.print("{-} bytes"_cf, d.length()); }

void to_hub(Decoding& d) {
    d.route = route_hub;
    d.session().change(d.session().digital.modules.types[0]) = 5;
    d.add("to the hub");
}

constexpr auto plain = opcodes({{0, "nothing", "nothing"},
                                {3, "length", write_length},
                                {200, "two_hundred", "two hundred"},
                                {255, "", ""}},
                               "");
constexpr auto routed = opcodes({{1, "to_hub", to_hub}, {2, "stays", "stays"}}, "other");

TEST(Opcodes, EveryCode) {
    const auto data = bytes("aa bb");
    const Message m(data);
    Session session;
    for (std::uint32_t code = 0; code < 1000; ++code) {
        Text out;
        Decoding d(session, m, out);
        out.add("> ");
        const std::string_view expected = code == 0     ? "> nothing"
                                          : code == 3   ? "> 2 bytes"
                                          : code == 200 ? "> two hundred"
                                                        : "> ";
        EXPECT_EQ(plain.write(d, Number{code}), code == 0 || code == 3 || code == 200 || code == 255);
        EXPECT_EQ(out.view(), expected) << code;
    }
    Text out;
    Decoding d(session, m, out);
    EXPECT_FALSE(plain.write(d, Number{0x100}));
    EXPECT_FALSE(plain.write(d, Number{0xFFFFFFFF}));
    EXPECT_EQ(out.view(), "");
}

TEST(Opcodes, DecodersMayChangeRouteAndSession) {
    const auto data = bytes("00 01 02");
    const Message m(data);
    Session session;
    Text out;
    Decoding d(session, m, out);
    EXPECT_TRUE(routed.write(d, d[2]));
    EXPECT_EQ(d.route, route_digital);
    EXPECT_TRUE(routed.write(d, d[1]));
    EXPECT_EQ(d.route, route_hub);
    EXPECT_EQ(*session.digital.modules.types[0], 5);
    EXPECT_FALSE(routed.write(d, d[0]));
    EXPECT_EQ(out.view(), "staysto the hubother");
}

void show_code(Decoding& d) { d.print("{-:02x} of byte {-}"_cf, d.code(), d.code().place.first); }

constexpr auto inner = opcodes({{2, "", show_code}}, "");
constexpr auto outer = opcodes({{1, "outer",
                                 [](Decoding& d) {
                                     inner.write(d, d[1]);
                                     d.add(", in ");
                                     show_code(d);
                                 }}},
                               "anything_else", show_code);

TEST(Opcodes, DecodersKnowTheCodeThatLedToThem) {
    const auto data = bytes("01 02 03");
    const Message m(data);
    Session session;
    Text out;
    Decoding d(session, m, out);
    EXPECT_TRUE(outer.write(d, d[0]));
    EXPECT_EQ(out.view(), "02 of byte 1, in 01 of byte 0");
    out.clear();
    EXPECT_FALSE(outer.write(d, d[2]));
    EXPECT_EQ(out.view(), "03 of byte 2");
}

struct Observed {
    explicit Observed(std::string_view hex) : data(bytes(hex)) { session.trail = &trail; }
    template <class Decode>
    const NotedMessage& decode(Decode run) {
        const Message m(data);
        trail.start(out, m);
        {
            Decoding d(session, m, out);
            run(d);
        }
        trail.finish();
        return trail.messages().front();
    }

    std::vector<std::uint8_t> data;
    Session session;
    Trail trail;
    Text out;
};

TEST(Opcodes, NameTheMessage) {
    const auto name_of = [](std::string_view hex) {
        Observed o(hex);
        return std::string(o.decode([](Decoding& d) { outer.write(d, d[0]); }).name);
    };
    EXPECT_EQ(name_of("01 02"), "outer");  // a row without a name leaves it
    EXPECT_EQ(name_of("05"), "anything_else");

    Observed unknown("09");
    const NotedMessage& m = unknown.decode([](Decoding& d) { routed.write(d, d[0]); });
    EXPECT_EQ(m.name, "");
    ASSERT_EQ(unknown.trail.values().size(), 1U);
    EXPECT_EQ(unknown.trail.values()[0].name, "unknown_code");
    EXPECT_FALSE(unknown.trail.values()[0].meaning.known);
}

void decimal(Decoding& d) { d.print("{}"_cf, d[1]); }

constexpr auto settings = items({{1, "led=", decimal},
                                 {2, "number of keys: ", "keys", decimal},
                                 {4, "no value"},
                                 {5, [](Decoding& d) { d.print("own label {line}"_cf, d[1]); }}},
                                "unknown item");

TEST(Items, EveryCode) {
    for (unsigned code = 0; code < 256; ++code) {
        Observed o(formatted("{-:02x} 09"_cf, code));
        bool known = false;
        o.decode([&](Decoding& d) { known = settings.write(d, d[0]); });
        const std::string_view expected = code == 1   ? "led=9"
                                          : code == 2 ? "number of keys: 9"
                                          : code == 4 ? "no value"
                                          : code == 5 ? "own label 9"
                                                      : "unknown item";
        EXPECT_EQ(o.out.view(), expected) << code;
        EXPECT_EQ(known, expected != "unknown item") << code;
        const std::string_view name = code == 1                    ? "led"
                                      : code == 2                  ? "keys"
                                      : code == 5                  ? "line"
                                      : expected == "unknown item" ? "unknown_code"
                                                                   : "";
        ASSERT_EQ(o.trail.values().size(), name.empty() ? 0U : 1U) << code;
        if (!name.empty()) {
            EXPECT_EQ(o.trail.values()[0].name, name) << code;
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
