#include "decode/routes/ibs.hpp"

#include "core/going_away.hpp"

namespace ztdecode {

namespace {

constexpr auto class_labels = names({{0, "downloading: "},
                                     {1, "maintenance: "},
                                     {2, "DECT CPU to IBS: "},
                                     {3, "Debug: "},
                                     {4, "Switching: "},
                                     {6, "DECT paging CPU to IBS: "},
                                     {14, "DECT IBS to CPU: "}},
                                    "unknown class ");

constexpr std::string_view unknown_name = "unknown name ";

constexpr auto downloading = names({{0, "downloading suggest"},
                                    {1, "downloading request"},
                                    {2, "downloading acknowledge"},
                                    {4, "downloading data"},
                                    {5, "downloading end"},
                                    {6, "downloading end acknowledge"},
                                    {7, "ISO chacksum"},
                                    {8, "ISO checksum acknowledge"},
                                    {9, "downloading Dictionnary"},
                                    {10, "downloading Dictionnary Acknowledge"}},
                                   unknown_name);

constexpr auto maintenance = names({{0, "event indication"},
                                    {1, "event request"},
                                    {2, "antenna diversity"},
                                    {3, "harware anomaly"},
                                    {4, "Dect synchronization"},
                                    {5, "IBS operationnal"},
                                    {6, "ANV number request"},
                                    {7, "ANV number response"},
                                    {8, "PCM selection"},
                                    {9, "Multiframe Number Support"},
                                    {10, "Multiframe Number request"},
                                    {11, "MFN synchronization"}},
                                   unknown_name);

constexpr auto cpu_to_ibs = names({{1, "FD_DL_RELEASE_REQ"},
                                   {2, "FD_DL_DATA_REQ"},
                                   {3, "FD_DL_ENC_KEY_REQ"},
                                   {4, "FD_DL_ENCRYPT_REQ"},
                                   {5, "FD_DL_CHO_STOP_DLC"},
                                   {6, "FD_DL_CHO_START_REROUTE"},
                                   {7, "FD_DL_CHO_RECOVER_OLD_LINK"},
                                   {8, "FD_DL_CHO_INFO"},
                                   {9, "FD_DL_CHO_REROUTE_DATA"},
                                   {10, "FD_DL_CHO_END_REROUTE"}},
                                  unknown_name);

constexpr auto debugging = names({{0, "debug filter"},
                                  {1, "debug trace"},
                                  {2, "software anomaly"},
                                  {3, "read memory request"},
                                  {4, "write memory request"},
                                  {5, "read memory response"}},
                                 unknown_name);

constexpr auto switching =
    names({{0, "gain switching"}, {1, "echo cancelling"}, {2, "echo return loss"}}, unknown_name);

constexpr auto paging = names({{4, "MFP_MA_PAGE_REQ"},
                               {7, "MFP_MA_HIGHER_KEVEL_CAPABILITIES"},
                               {8, "MFP_MA_SYSTEM_IDENTITY"},
                               {9, "MFP_MA_FP_CAPABILITIES"},
                               {10, "MFP_MA_FREQ_PLAN"},
                               {12, "MFP_MA_ZT_LINKS_ACTIVATION"}},
                              unknown_name);

constexpr auto ibs_to_cpu = names({{0, "FN_DL_ESTABLISH_IND"},
                                   {1, "FN_DL_RELEASE_CFM"},
                                   {2, "FN_DL_RELEASE_IND"},
                                   {3, "FN_DL_DATA_IND"},
                                   {4, "FN_DL_ENCRYPT_IND"},
                                   {5, "FN_DL_CHO_INFO"},
                                   {6, "FN_DL_CHO_END_REROUTE"},
                                   {7, "FN_DL_CHO_FAILURE"},
                                   {8, "FN_DL_CHO_REROUTE_DATA"},
                                   {9, "FN_DL_CHO_IND"}},
                                  unknown_name);

constexpr std::uint32_t hardware_anomaly = 0x13;

void name_message(const Message& m, Text& out) {
    const std::uint32_t message_class = m[1] >> 4;
    out.add(class_labels[message_class]);
    out.add(ibs_message_name(m[1] & 15, message_class));
}

}  // namespace

std::string_view ibs_message_name(std::uint32_t name, std::uint32_t message_class) noexcept {
    switch (message_class) {
        case 0:
            return downloading[name];
        case 1:
            return maintenance[name];
        case 2:
            return cpu_to_ibs[name];
        case 3:
            return debugging[name];
        case 4:
            return switching[name];
        case 6:
            return paging[name];
        case 14:
            return ibs_to_cpu[name];
        default:
            return unknown_name;
    }
}

// Bit 7 does not count here, so an unknown class can be an anomaly too.
void ibs2dhs(Session& /*session*/, Message& m, Text& out) {
    m.status = Status::recognised;
    name_message(m, out);
    if ((m[1] & 0x7F) == hardware_anomaly) out.print(", lien: {:02x} name {:02x}"_cf, m[2], m[3]);
}

void dhs2ibs(Session& /*session*/, Message& m, Text& out) {
    m.status = Status::recognised;
    name_message(m, out);
}

}  // namespace ztdecode

void ztdecode::ibs::from_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::dhs2ibs, d); }
void ztdecode::ibs::to_system(ztdecode::Decoding& d) { ztdecode::call_old(ztdecode::ibs2dhs, d); }
