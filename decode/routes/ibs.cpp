#include "decode/routes/ibs.hpp"

#include "core/tables.hpp"

namespace ztdecode::ibs {

namespace {

constexpr std::string_view unknown_name = "unknown name ";

constexpr auto downloading =
    opcodes({{0x00, "download_suggest", "downloading suggest"},
             {0x01, "download_request", "downloading request"},
             {0x02, "download_ack", "downloading acknowledge"},
             {0x04, "download_data", "downloading data"},
             {0x05, "download_end", "downloading end"},
             {0x06, "download_end_ack", "downloading end acknowledge"},
             {0x07, "download_checksum", "ISO chacksum"},
             {0x08, "download_checksum_ack", "ISO checksum acknowledge"},
             {0x09, "download_dictionary", "downloading Dictionnary"},
             {0x0A, "download_dictionary_ack", "downloading Dictionnary Acknowledge"}},
            unknown_name);

constexpr auto maintenance = opcodes({{0x00, "event_indication", "event indication"},
                                      {0x01, "event_request", "event request"},
                                      {0x02, "antenna_diversity", "antenna diversity"},
                                      {0x03, "hardware_anomaly", "harware anomaly"},
                                      {0x04, "dect_synchronization", "Dect synchronization"},
                                      {0x05, "ibs_operational", "IBS operationnal"},
                                      {0x06, "anv_number_request", "ANV number request"},
                                      {0x07, "anv_number_response", "ANV number response"},
                                      {0x08, "pcm_selection", "PCM selection"},
                                      {0x09, "multiframe_number_support", "Multiframe Number Support"},
                                      {0x0A, "multiframe_number_request", "Multiframe Number request"},
                                      {0x0B, "multiframe_number_synchronization", "MFN synchronization"}},
                                     unknown_name);

constexpr auto cpu_to_ibs = opcodes({{0x01, "fd_dl_release_req", "FD_DL_RELEASE_REQ"},
                                     {0x02, "fd_dl_data_req", "FD_DL_DATA_REQ"},
                                     {0x03, "fd_dl_enc_key_req", "FD_DL_ENC_KEY_REQ"},
                                     {0x04, "fd_dl_encrypt_req", "FD_DL_ENCRYPT_REQ"},
                                     {0x05, "fd_dl_cho_stop_dlc", "FD_DL_CHO_STOP_DLC"},
                                     {0x06, "fd_dl_cho_start_reroute", "FD_DL_CHO_START_REROUTE"},
                                     {0x07, "fd_dl_cho_recover_old_link", "FD_DL_CHO_RECOVER_OLD_LINK"},
                                     {0x08, "fd_dl_cho_info", "FD_DL_CHO_INFO"},
                                     {0x09, "fd_dl_cho_reroute_data", "FD_DL_CHO_REROUTE_DATA"},
                                     {0x0A, "fd_dl_cho_end_reroute", "FD_DL_CHO_END_REROUTE"}},
                                    unknown_name);

constexpr auto debugging = opcodes({{0x00, "debug_filter", "debug filter"},
                                    {0x01, "debug_trace", "debug trace"},
                                    {0x02, "software_anomaly", "software anomaly"},
                                    {0x03, "read_memory_request", "read memory request"},
                                    {0x04, "write_memory_request", "write memory request"},
                                    {0x05, "read_memory_response", "read memory response"}},
                                   unknown_name);

constexpr auto switching = opcodes({{0x00, "gain_switching", "gain switching"},
                                    {0x01, "echo_cancelling", "echo cancelling"},
                                    {0x02, "echo_return_loss", "echo return loss"}},
                                   unknown_name);

constexpr auto paging =
    opcodes({{0x04, "mfp_ma_page_req", "MFP_MA_PAGE_REQ"},
             {0x07, "mfp_ma_higher_level_capabilities", "MFP_MA_HIGHER_KEVEL_CAPABILITIES"},
             {0x08, "mfp_ma_system_identity", "MFP_MA_SYSTEM_IDENTITY"},
             {0x09, "mfp_ma_fp_capabilities", "MFP_MA_FP_CAPABILITIES"},
             {0x0A, "mfp_ma_freq_plan", "MFP_MA_FREQ_PLAN"},
             {0x0C, "mfp_ma_zt_links_activation", "MFP_MA_ZT_LINKS_ACTIVATION"}},
            unknown_name);

constexpr auto ibs_to_cpu = opcodes({{0x00, "fn_dl_establish_ind", "FN_DL_ESTABLISH_IND"},
                                     {0x01, "fn_dl_release_cfm", "FN_DL_RELEASE_CFM"},
                                     {0x02, "fn_dl_release_ind", "FN_DL_RELEASE_IND"},
                                     {0x03, "fn_dl_data_ind", "FN_DL_DATA_IND"},
                                     {0x04, "fn_dl_encrypt_ind", "FN_DL_ENCRYPT_IND"},
                                     {0x05, "fn_dl_cho_info", "FN_DL_CHO_INFO"},
                                     {0x06, "fn_dl_cho_end_reroute", "FN_DL_CHO_END_REROUTE"},
                                     {0x07, "fn_dl_cho_failure", "FN_DL_CHO_FAILURE"},
                                     {0x08, "fn_dl_cho_reroute_data", "FN_DL_CHO_REROUTE_DATA"},
                                     {0x09, "fn_dl_cho_ind", "FN_DL_CHO_IND"}},
                                    unknown_name);

// The names of one class.
template <const auto& table>
void named(Decoding& d) {
    table.write(d, d[1] & 15);
}

constexpr auto classes = opcodes({{0x00, "", {"downloading: ", named<downloading>}},
                                  {0x01, "", {"maintenance: ", named<maintenance>}},
                                  {0x02, "", {"DECT CPU to IBS: ", named<cpu_to_ibs>}},
                                  {0x03, "", {"Debug: ", named<debugging>}},
                                  {0x04, "", {"Switching: ", named<switching>}},
                                  {0x06, "", {"DECT paging CPU to IBS: ", named<paging>}},
                                  {0x0E, "", {"DECT IBS to CPU: ", named<ibs_to_cpu>}}},
                                 "unknown class ");

void name_message(Decoding& d) {
    d.status = Status::recognised;
    d.name("", d[1]);  // its code is class and name together
    if (!classes.write(d, d[1] >> 4)) d.unknown(d[1] & 15, [&] { d.add(unknown_name); });
}

constexpr int hardware_anomaly = 0x13;

}  // namespace

// Bit 7 does not count here, so an unknown class can be an anomaly too.
void to_system(Decoding& d) {
    name_message(d);
    if (d.on((d[1] & 0x7F) == hardware_anomaly)) {
        d.print(", lien: {anomaly_link:02x} name {anomaly:02x}"_cf, d[2], d[3]);
    }
}

void from_system(Decoding& d) { name_message(d); }

}  // namespace ztdecode::ibs
