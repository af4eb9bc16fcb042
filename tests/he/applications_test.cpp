#include <map>

#include "he/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(HeApplications, EveryByte) {
    const std::map<std::uint32_t, std::string> names = {{0, " firmware"},
                                                        {1, " telephony"},
                                                        {2, " desktop"},
                                                        {6, " data"},
                                                        {7, " mail"},
                                                        {248, " audio tool"},
                                                        {249, " manufacturing test"},
                                                        {250, " communication assistant"},
                                                        {251, " calendar"},
                                                        {252, " minitel"},
                                                        {253, " calculator"},
                                                        {254, " text editor"},
                                                        {255, " default"}};
    for (std::uint32_t id = 0; id < 256; ++id) {
        const auto found = names.find(id);
        const std::string digits =
            " " + std::string(1, "0123456789abcdef"[id / 16]) + "0123456789abcdef"[id % 16];
        EXPECT_EQ(apId(id).view(), found != names.end() ? found->second : digits);
    }
}

TEST(HeApplications, NumbersWithoutAName) {
    EXPECT_EQ(apId(5).view(), " 05");
    EXPECT_EQ(apId(247).view(), " f7");
}

TEST(HeApplications, NumbersThatNoByteHolds) {
    EXPECT_EQ(apId(256).view(), " 100");
    EXPECT_EQ(apId(0xFFFFFFFF).view(), " ffffffff");
}

}  // namespace
}  // namespace ztdecode::testing
