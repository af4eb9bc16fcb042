#include <map>

#include "he/rows.hpp"

namespace ztdecode::testing {
namespace {

std::string written(const NameOrCode& words) {
    Text out;
    out.add(words);
    return std::string(out.view());
}

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
        EXPECT_EQ(written(he::application({id})), found != names.end() ? found->second : digits);
    }
}

TEST(HeApplications, NumbersWithoutAName) {
    EXPECT_EQ(written(he::application({5})), " 05");
    EXPECT_EQ(written(he::application({247})), " f7");
}

TEST(HeApplications, NumbersThatNoByteHolds) {
    EXPECT_EQ(written(he::application({256})), " 100");
    EXPECT_EQ(written(he::application({0xFFFFFFFF})), " ffffffff");
}

}  // namespace
}  // namespace ztdecode::testing
