#include "decode/routes/ibs.hpp"

#include <gtest/gtest.h>

#include "support/support.hpp"

namespace ztdecode::testing {
namespace {

struct Names {
    std::string_view label;
    std::vector<std::string_view> names;  // by code; those that are left out are unknown
};

constexpr std::string_view unknown = "unknown name ";

const std::vector<Names> classes = {
    {"downloading: ",
     {"downloading suggest", "downloading request", "downloading acknowledge", unknown, "downloading data",
      "downloading end", "downloading end acknowledge", "ISO chacksum", "ISO checksum acknowledge",
      "downloading Dictionnary", "downloading Dictionnary Acknowledge"}},
    {"maintenance: ",
     {"event indication", "event request", "antenna diversity", "harware anomaly", "Dect synchronization",
      "IBS operationnal", "ANV number request", "ANV number response", "PCM selection",
      "Multiframe Number Support", "Multiframe Number request", "MFN synchronization"}},
    {"DECT CPU to IBS: ",
     {unknown, "FD_DL_RELEASE_REQ", "FD_DL_DATA_REQ", "FD_DL_ENC_KEY_REQ", "FD_DL_ENCRYPT_REQ",
      "FD_DL_CHO_STOP_DLC", "FD_DL_CHO_START_REROUTE", "FD_DL_CHO_RECOVER_OLD_LINK", "FD_DL_CHO_INFO",
      "FD_DL_CHO_REROUTE_DATA", "FD_DL_CHO_END_REROUTE"}},
    {"Debug: ",
     {"debug filter", "debug trace", "software anomaly", "read memory request", "write memory request",
      "read memory response"}},
    {"Switching: ", {"gain switching", "echo cancelling", "echo return loss"}},
    {"unknown class ", {}},
    {"DECT paging CPU to IBS: ",
     {unknown, unknown, unknown, unknown, "MFP_MA_PAGE_REQ", unknown, unknown,
      "MFP_MA_HIGHER_KEVEL_CAPABILITIES", "MFP_MA_SYSTEM_IDENTITY", "MFP_MA_FP_CAPABILITIES",
      "MFP_MA_FREQ_PLAN", unknown, "MFP_MA_ZT_LINKS_ACTIVATION"}},
    {"unknown class ", {}},
    {"unknown class ", {}},
    {"unknown class ", {}},
    {"unknown class ", {}},
    {"unknown class ", {}},
    {"unknown class ", {}},
    {"unknown class ", {}},
    {"DECT IBS to CPU: ",
     {"FN_DL_ESTABLISH_IND", "FN_DL_RELEASE_CFM", "FN_DL_RELEASE_IND", "FN_DL_DATA_IND", "FN_DL_ENCRYPT_IND",
      "FN_DL_CHO_INFO", "FN_DL_CHO_END_REROUTE", "FN_DL_CHO_FAILURE", "FN_DL_CHO_REROUTE_DATA",
      "FN_DL_CHO_IND"}},
    {"unknown class ", {}},
};

std::string name_in(const Names& c, std::size_t code) {
    return std::string(code < c.names.size() ? c.names[code] : unknown);
}

TEST(Ibs, EveryClassAndName) {
    ASSERT_EQ(classes.size(), 16U);
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const Names& c = classes[byte >> 4];
        const std::string text = std::string(c.label) + name_in(c, byte & 15);
        const std::string hex = formatted("12 {-:02x} 07 9a"_cf, byte);
        const bool anomaly = byte == 0x13 || byte == 0x93;
        TestSession d;
        EXPECT_EQ(d.with(ibs::from_system, hex), text) << hex;
        EXPECT_EQ(d.status, Status::recognised);
        d.status = Status::none;
        EXPECT_EQ(d.with(ibs::to_system, hex, to_dhs), text + (anomaly ? ", lien: 07 name 9a" : "")) << hex;
        EXPECT_EQ(d.status, Status::recognised);
    }
}

TEST(Ibs, AnomalyOfTheHardware) {
    EXPECT_EQ(TestSession().to_dhs("12 13 07 09"), "\t- maintenance: harware anomaly, lien: 07 name 09");
    EXPECT_EQ(TestSession().from_dhs("12 13 07 09"), "\t- maintenance: harware anomaly");
    EXPECT_EQ(TestSession().to_dhs("12 93 07 09"), "\t- unknown class unknown name , lien: 07 name 09");
    EXPECT_EQ(TestSession().to_dhs("12 13"), "\t- maintenance: harware anomaly, lien: 00 name 00");
}

TEST(Ibs, OnItsRoute) {
    EXPECT_EQ(TestSession().to_dhs("12 53"), "\t- unknown class unknown name ");
    EXPECT_EQ(TestSession().to_dhs("92 e3"), "\t- DECT IBS to CPU: FN_DL_DATA_IND");
    EXPECT_EQ(TestSession().from_dhs("12 f0"), "\t- unknown class unknown name ");
}

TEST(Ibs, AMessageOfOneByteIsNamedByTheByteBehindIt) {
    EXPECT_EQ(TestSession().from_dhs("12"), "\t- downloading: downloading suggest");
    const auto record = bytes("12 21");
    Message m(record.data(), 1, 2);
    TestSession d;
    Text out;
    Decoding decoding(d.session(), m, out);
    ibs::from_system(decoding);
    EXPECT_EQ(out.view(), "DECT CPU to IBS: FD_DL_RELEASE_REQ");
}

}  // namespace
}  // namespace ztdecode::testing
