#include "decode/routes/debug.hpp"

#include <gtest/gtest.h>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

TEST(Debug, ItsText) {
    for (const auto decoder : {debug::to_system, debug::from_system}) {
        TestSession d;
        EXPECT_EQ(d.with(decoder, "18 68 69 0a"), "hi\n");
        EXPECT_EQ(d.status, Status::recognised);
        EXPECT_EQ(d.with(decoder, "18"), "");
        EXPECT_EQ(d.status, Status::recognised);
        EXPECT_EQ(d.with(decoder, "18 68 00 69"), "h");
        EXPECT_EQ(d.with(decoder, "18 00 69"), "");
        EXPECT_EQ(d.with(decoder, "18 01 7f 80 ff 25 73"), "\x01\x7F\x80\xFF%s");
    }
    TestSession d;
    EXPECT_EQ(d.to_dhs("18"), "\tDBG - ");
    EXPECT_EQ(d.to_dhs("18 68 69 0a"), "\tDBG - hi\n");
    EXPECT_EQ(d.from_dhs("18 68 69 0a 0a"), "\tDBG - hi\n");
}

}  // namespace
}  // namespace ztdecode::testing
