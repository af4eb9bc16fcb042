#include "ip/rows.hpp"

namespace ztdecode::testing {
namespace {

void from_system(const std::vector<Row>& rows) { expect_rows(ip::from_system, rows); }
void reset_items(const std::vector<Row>& items) {
    expect_items(ip::from_system, "13 00", "reset, \n\t... ", items);
}
void application_items(const std::vector<Row>& items) {
    expect_items(ip::from_system, "13 14", "set application parameters,\n\t... ", items);
}

TEST(IpSettings, Reset) {
    from_system({{"13 00", "reset, \n\t... "},
                 {"13 00 00 01 03 02 04 61 63 6d 65 04 01 01 05 00",
                  "reset, \n\t... update_mode: BOOT DATA\n\t... cust_name: acme\n\t... appl_mode: SIP\n"
                  "\t... sip_name: <empty>"}});
}

TEST(IpSettings, ResetUpdateMode) {
    reset_items({{"00 01 00", "update_mode: NONE"},
                 {"00 01 01", "update_mode: BOOT"},
                 {"00 01 02", "update_mode: DATA"},
                 {"00 01 04", "update_mode: CUST"},
                 {"00 01 08", "update_mode: L10N"},
                 {"00 01 10", "update_mode: CRYM"},
                 {"00 01 20", "update_mode: CSIP"},
                 {"00 01 3f", "update_mode: BOOT DATA CUST L10N CRYM CSIP"},
                 {"00 01 ff", "update_mode: BOOT DATA CUST L10N CRYM CSIP"},
                 {"00 01 2a", "update_mode: DATA L10N CSIP"},
                 {"00 01 40", "update_mode:"},
                 {"00 01 c0", "update_mode:"},
                 {"00 00", "update_mode: NONE"}});
}

TEST(IpSettings, ResetCauseAndMode) {
    reset_items({{"01 00", "cause: BAD SECURITY MODE"},
                 {"01 01 05", "cause: BAD SECURITY MODE"},
                 {"04 01 00", "appl_mode: RYM"},
                 {"04 01 01", "appl_mode: SIP"},
                 {"04 01 02", "appl_mode:"},
                 {"04 01 ff", "appl_mode:"},
                 {"04 00", "appl_mode: RYM"}});
}

TEST(IpSettings, ResetNames) {
    const std::string a31 = repeated("61 ", 31), a32 = repeated("61 ", 32), a255 = repeated("61 ", 255);
    reset_items({{"02 04 61 63 6d 65", "cust_name: acme"},
                 {"02 00", "cust_name: "},
                 {"02 1f " + a31, "cust_name: " + repeated("a", 31)},
                 {"02 20 " + a32, "cust_name: FIELD TOO LONG: 32 bytes"},
                 {"02 ff " + a255, "cust_name: FIELD TOO LONG: 255 bytes"},
                 {"03 02 66 72", "l10n_name: fr"},
                 {"03 00", "l10n_name: "},
                 {"03 1f " + a31, "l10n_name: " + repeated("a", 31)},
                 {"03 20 " + a32, "l10n_name: FIELD TOO LONG: 32 bytes"},
                 {"05 03 73 69 70", "sip_name: sip"},
                 {"05 00", "sip_name: <empty>"},
                 {"05 1f " + a31, "sip_name: " + repeated("a", 31)},
                 {"05 20 " + a32, "sip_name: FIELD TOO LONG: 32 bytes"},
                 {"05 42", "sip_name: FIELD TOO LONG: 66 bytes"}});
}

TEST(IpSettings, ResetNamesEndAtAZero) {
    reset_items({{"02 03 61 00 62 01 00", "cust_name: a\n\t... cause: BAD SECURITY MODE"},
                 {"03 01 00", "l10n_name: "},
                 {"05 01 00", "sip_name: "},
                 {"05 02 61", "sip_name: a"}});
}

TEST(IpSettings, UnknownResetItems) {
    for (std::size_t id = 6; id < 256; ++id)
        reset_items({{hex_byte(id) + "01 41", "???"}, {hex_byte(id) + "00", "???"}});
}

TEST(IpSettings, Application) {
    from_system({{"13 14", "set application parameters"},
                 {"13 14 00 01 2a 01 01 01 02 0e 68 74 74 70 3a 2f 2f 63 66 67 2f 61 70 70",
                  "set application parameters,\n\t...  appli: * (all)\n\t...  enable: yes\n\t...  url: "
                  "http://cfg/app"},
                 {"13 14 01", "set application parameters,\n\t...  enable: no"}});
}

TEST(IpSettings, ApplicationItems) {
    application_items({{"00 01 2a", " appli: * (all)"},
                       {"00 02 2a 2a", " appli: **"},
                       {"00 02 2a 00", " appli: *"},
                       {"00 01 61", " appli: a"},
                       {"00 00", " appli: "},
                       {"00 04 6d 61 69 6c", " appli: mail"},
                       {"01 01 00", " enable: no"},
                       {"01 01 01", " enable: yes"},
                       {"01 01 80", " enable: yes"},
                       {"02 00", " url: "},
                       {"02 03 61 2f 62", " url: a/b"}});
    for (std::size_t id = 3; id < 256; ++id) {
        application_items({{hex_byte(id) + "01 41", formatted(" unknown: {-}"_cf, id)}});
    }
}

TEST(IpSettings, ApplicationNamesHave100Characters) {
    application_items({{"00 63 " + repeated("61 ", 99), " appli: " + repeated("a", 99)},
                       {"00 64 " + repeated("61 ", 100), " appli: " + repeated("a", 100)},
                       {"00 65 " + repeated("61 ", 101) + "01 01 01",
                        " appli: " + repeated("a", 100) + "\n\t...  enable: yes"},
                       {"00 ff " + repeated("61 ", 255), " appli: " + repeated("a", 100)},
                       {"02 ff " + repeated("61 ", 255), " url: " + repeated("a", 255)}});
}

TEST(IpSettings, ApplicationNamesEndAtAZero) {
    application_items({{"00 03 61 00 62 01 01 00", " appli: a\n\t...  enable: no"},
                       {"02 03 61 00 62 01 01 00", " url: a\n\t...  enable: no"}});
}

}  // namespace
}  // namespace ztdecode::testing
