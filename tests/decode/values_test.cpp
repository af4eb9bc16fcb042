#include <algorithm>

#include "support/observed.hpp"

// What is said of the texts of hubs, DECT bases and the smaller links: their values, with names and bytes,
// and the bytes that chose the words between.

namespace ztdecode::testing {
namespace {

TEST(HubValues, CarriedMessages) {
    const Observed digit(to_dhs, "14 11 05 01 00 03 00 09");
    EXPECT_EQ(digit.names(), "from_set application_message digit_dialled");
    EXPECT_EQ(digit.values(), (Values{"set_number = 2, 1-1", "sender =  firmware, 4-4",
                                      "receiver =  telephony, 3-3", "digit = 9, 7-7"}));
    EXPECT_EQ(digit.bytes_of_words("from set "), "0-1");
    EXPECT_EQ(digit.bytes_of_words("digit dialed: "), "5-5");
    EXPECT_EQ(Observed(from_dhs, "14 10 14 12 14 05").names(), "to_set to_set download_end");
}

TEST(HubValues, Downloads) {
    const Observed request(from_dhs, "14 01 fe 01 02 10 0f");
    EXPECT_EQ(request.values(), (Values{"download_identifier = fe, 2-2", "software_version = 01.02, 3-4",
                                        "download_address = 100F, 5-6"}));
    EXPECT_EQ(Observed(to_dhs, "14 02 80 01 08").values(),
              (Values{"packet_number = 0001, 2-3", "acknowledgement = OK, 4-4", "sequence_bit = 1, 2-2"}));
}

TEST(HubValues, Times) {
    const Observed cooling(from_dhs, "14 32 0a 03");
    EXPECT_EQ(cooling.names(), "debug_cooling_time");
    EXPECT_EQ(cooling.values(), Values{"cooling_time = 300, 3-3"});
    EXPECT_EQ(cooling.value("cooling_time").meaning.number, 300);
    EXPECT_EQ(cooling.value("cooling_time").field->unit, "ms");
    EXPECT_EQ(cooling.bytes_of_words("debug: "), "0-1");
    EXPECT_EQ(cooling.bytes_of_words("tempo alim cooling= "), "0-2");
}

TEST(HubValues, Answers) {
    EXPECT_EQ(Observed(to_dhs, "14 21 00 01 08").values(),
              (Values{"set1_status = IDLE, 2-2", "set2_status = OK, 3-3", "set3_status = ???, 4-4"}));
    EXPECT_EQ(Observed(to_dhs, "14 20 01 0a ff").values(),
              (Values{"rom_version = 01, 2-2", "ram_version = 0a.ff, 3-4"}));
    EXPECT_EQ(Observed(to_dhs, "14 17 01 33 2e 31").values(),
              (Values{"software = RAM, 2-2", "anv_number = 3.1, 3-5"}));
    const Observed synchros(to_dhs, "14 32 01 09");
    EXPECT_EQ(synchros.values(), (Values{"without_synchro = dhs , 3-3", "without_synchro = set3 , 3-3"}));
    EXPECT_EQ(synchros.bytes_of_words("synchros response: "), "0-3");
}

TEST(HubValues, UnknownCodes) {
    const Observed unknown(from_dhs, "14 77");
    EXPECT_EQ(unknown.names(), "");
    EXPECT_EQ(unknown.values(), Values{"unknown_code = unknown message, 1-1"});
    EXPECT_EQ(Observed(from_dhs, "14 32 0b").values(), Values{"unknown_code = unknown, 2-2"});
}

TEST(IbsValues, ClassAndNameAreOneByte) {
    const Observed anomaly(to_dhs, "12 13 07 9a");
    EXPECT_EQ(anomaly.names(), "hardware_anomaly");
    EXPECT_EQ(anomaly.trail().messages().front().code, 0x13U);
    EXPECT_EQ(anomaly.values(), (Values{"anomaly_link = 07, 2-2", "anomaly = 9a, 3-3"}));
    EXPECT_EQ(anomaly.bytes_of_words("maintenance: harware anomaly"), "0-1");
    EXPECT_EQ(Observed(from_dhs, "12 c3").values(),
              (Values{"unknown_code = unknown class , 1-1", "unknown_code = unknown name , 1-1"}));
    EXPECT_EQ(Observed(from_dhs, "12 1f").names(), "");
}

// Every name that is known has one, no two in a class the same.
TEST(IbsValues, EveryKnownMessageHasAName) {
    for (unsigned message_class = 0; message_class < 16; ++message_class) {
        std::vector<std::string> names;
        for (unsigned name = 0; name < 16; ++name) {
            const Observed message(from_dhs, formatted("12 {-:02x}"_cf, 16 * message_class + name));
            const bool unknown = message.text().find("unknown") != std::string::npos;
            EXPECT_EQ(message.names().empty(), unknown) << message.text();
            if (unknown) continue;
            EXPECT_EQ(std::count(names.begin(), names.end(), message.names()), 0) << message.text();
            names.push_back(message.names());
        }
    }
}

TEST(OsiValues, States) {
    const Observed status(to_dhs, "0f 05 11 21");
    EXPECT_EQ(status.names(), "pclink1_status");
    EXPECT_EQ(status.values(), (Values{"transmit_state = tx_prepare, 2-2", "receive_state = rx_rcv, 3-3"}));
    EXPECT_EQ(Observed(to_dhs, "0f 06 01 01").values(),
              (Values{"link_state = idle, 2-2", "connected = connected, 3-3"}));
    EXPECT_EQ(Observed(to_dhs, "0f 00 7f").values(), Values{"memory_value = 7f, 2-2"});
    EXPECT_EQ(Observed(from_dhs, "0f 01 04").values(), Values{"memory = unknown, 2-2"});
    EXPECT_EQ(Observed(from_dhs, "0f 08").values(), Values{"unknown_code = ??, 1-1"});
}

TEST(DebugValues, Text) {
    const Observed debug(to_dhs, "18 68 69");
    EXPECT_EQ(debug.names(), "debug_text");
    EXPECT_EQ(debug.values(), Values{"debug_text = hi, 1-2"});
}

}  // namespace
}  // namespace ztdecode::testing
