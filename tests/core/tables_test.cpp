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
    }
    EXPECT_EQ(valves[0x101], "???");
    EXPECT_EQ(valves[0xFFFFFFFF], "???");
    EXPECT_EQ(without_rest[3], "three");
    EXPECT_EQ(without_rest[4], "");
}

void length_handler(Session& /*session*/, const Message& m, Text& out) {
    out.print("{} bytes"_cf, m.length());
}

void route_handler(Session& session, Message& m, Text& out) {
    m.route = route_hub;
    session.change(session.digital.modules).types[0] = 5;
    out.add("to the hub");
}

constexpr auto plain = opcodes({{0, "nothing"}, {3, length_handler}, {200, "two hundred"}, {255, ""}});
constexpr auto routed = route_opcodes({{1, route_handler}, {2, "stays"}});

TEST(Opcodes, EveryCode) {
    const auto data = bytes("aa bb");
    const Message m(data);
    Session session;
    for (std::uint32_t code = 0; code < 1000; ++code) {
        Text out;
        out.add("> ");
        const std::string_view expected = code == 0     ? "> nothing"
                                          : code == 3   ? "> 2 bytes"
                                          : code == 200 ? "> two hundred"
                                                        : "> ";
        EXPECT_EQ(plain.write(code, session, m, out), code == 0 || code == 3 || code == 200 || code == 255);
        EXPECT_EQ(out.view(), expected) << code;
    }
    Text out;
    EXPECT_FALSE(plain.write(0x100, session, m, out));
    EXPECT_FALSE(plain.write(0xFFFFFFFF, session, m, out));
    EXPECT_EQ(out.view(), "");
}

TEST(Opcodes, HandlersMayChangeMessageAndSession) {
    const auto data = bytes("aa");
    Message m(data);
    Session session;
    Text out;
    EXPECT_TRUE(routed.write(2, session, m, out));
    EXPECT_EQ(m.route, route_digital);
    EXPECT_TRUE(routed.write(1, session, m, out));
    EXPECT_EQ(m.route, route_hub);
    EXPECT_EQ(session.digital.modules->types[0], 5);
    EXPECT_FALSE(routed.write(0, session, m, out));
    EXPECT_EQ(out.view(), "staysto the hub");
}

}  // namespace
}  // namespace ztdecode::testing
