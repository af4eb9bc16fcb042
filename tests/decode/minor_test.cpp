#include "decode/routes/servers.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

TEST(Minor, Debug) {
    for (const auto decoder : {dbg2dhs, dhs2dbg}) {
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

struct Row {
    const char* hex;
    const char* text;
};

TEST(Minor, OsiToSystem) {
    const Row rows[] = {
        {"0f 00 7f", "osi: read memory, value= 7f"},
        {"0f 00 0a 01", "osi: read memory, value= 0a"},
        {"0f", "osi: read memory, value= 00"},
        {"0f 01 02", "??"},
        {"0f 02", "osi: read vorna synchro"},
        {"0f 03", "osi: pclink1 bouclage ON ack"},
        {"0f 04", "osi: pclink1 bouclage off ack"},
        {"0f 05 10 20", "osi: pclink1 status tx_idle, rx_idle"},
        {"0f 05 11 21", "osi: pclink1 status tx_prepare, rx_rcv"},
        {"0f 05 12 22", "osi: pclink1 status tx_lng, rx_sum"},
        {"0f 05 13 23", "osi: pclink1 status tx_send, rx_wait"},
        {"0f 05 14 24", "osi: pclink1 status tx_sum, unknown"},
        {"0f 05 15 1f", "osi: pclink1 status unknown, unknown"},
        {"0f 05 0f", "osi: pclink1 status unknown, unknown"},
        {"0f 06 00 01", "osi: pclink2 status: wait_connection, connected"},
        {"0f 06 01 00", "osi: pclink2 status: idle, not connected"},
        {"0f 06 02 02", "osi: pclink2 status: send_zt3, not connected"},
        {"0f 06 03 01", "osi: pclink2 status: send_wait_ack, connected"},
        {"0f 06 04 81", "osi: pclink2 status: wait_ack, not connected"},
        {"0f 06 05 01", "osi: pclink2 status: send_ack, connected"},
        {"0f 06 06 01", "osi: pclink2 status: send_pc2, connected"},
        {"0f 06 07 01", "osi: pclink2 status: wfs_idle, connected"},
        {"0f 06 08 01", "osi: pclink2 status: wfs_send_ack, connected"},
        {"0f 06 09", "osi: pclink2 status: unknown, not connected"},
        {"0f 07", "osi: cti status"},
        {"0f 08", "??"},
        {"0f 7f", "??"},
        {"0f 82", "osi: read vorna synchro"},
        {"0f 88", "??"},
    };
    for (const auto& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(osi2dhs, row.hex), row.text) << row.hex;
        EXPECT_EQ(d.status, Status::none);
        EXPECT_EQ(d.to_dhs(row.hex), std::string("\t- ") + row.text);
    }
}

TEST(Minor, OsiFromSystem) {
    const Row rows[] = {
        {"0f 00 01", "osi: read memory internal"},
        {"0f 00 02", "osi: read memory external"},
        {"0f 00 03", "osi: read memory code"},
        {"0f 00 04", "osi: read memory unknown"},
        {"0f", "osi: read memory unknown"},
        {"0f 01 01", "osi: write memory internal"},
        {"0f 01 02", "osi: write memory external"},
        {"0f 01 03", "osi: write memory code"},
        {"0f 01 00", "osi: write memory unknown"},
        {"0f 02", "osi: read vorna synchro"},
        {"0f 03", "osi: pclink1 bouclage ON"},
        {"0f 04", "osi: pclink1 bouclage off"},
        {"0f 05 10 20", "osi: pclink1 status"},
        {"0f 06 00 01", "osi: pclink2 status"},
        {"0f 07", "osi: cti status"},
        {"0f 08", "??"},
        {"0f 09", "??"},
        {"0f ff", "??"},
        {"0f 81 83", "osi: write memory unknown"},
        {"0f 87", "osi: cti status"},
    };
    for (const auto& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(dhs2osi, row.hex), row.text) << row.hex;
        EXPECT_EQ(d.status, Status::none);
        EXPECT_EQ(d.from_dhs(row.hex), std::string("\t- ") + row.text);
    }
}

}  // namespace
}  // namespace ztdecode::testing
