#include <algorithm>
#include <random>

#include "core/trail.hpp"
#include "ip/rows.hpp"

// What is said of the texts: their values, with names and bytes, and the bytes that chose the words between.

namespace ztdecode::testing {
namespace {

class Observed {
  public:
    explicit Observed(const std::string& hex, std::uint32_t direction)
        : Observed(bytes(hex), direction, bytes(hex).size()) {}
    Observed(const std::vector<std::uint8_t>& record, std::uint32_t direction, std::size_t length) {
        Message m(record.data(), length, record.size());
        m.direction = direction;
        decode(d_.session(), m, plain_);
        TestSession observed;
        observed.session().trail = &trail_;
        decode(observed.session(), m, text_);
    }

    std::string_view plain() const { return plain_.view(); }
    std::string_view text() const { return text_.view(); }
    const Trail& trail() const { return trail_; }
    std::string name() const { return std::string(trail_.messages().front().name); }

    // "name = text, bytes first-last", and "none" where it has no bytes.
    std::vector<std::string> values() const {
        std::vector<std::string> result;
        for (const NotedValue& v : trail_.values()) {
            result.push_back(formatted("{-} = {-}, {-}"_cf, v.name, text().substr(v.begin, v.end - v.begin),
                                       shown(trail_.bytes_of(v))));
        }
        return result;
    }

    // The bytes of the words that begin with these.
    std::string bytes_of_words(std::string_view words) const {
        for (const Stretch& s : trail_.stretches()) {
            if (text().substr(s.begin, s.end - s.begin).starts_with(words)) return shown(trail_.bytes_of(s));
        }
        return "no such words";
    }

    Sensitivity sensitivity(std::string_view name) const {
        for (const NotedValue& v : trail_.values()) {
            if (v.name == name) return v.field->sensitivity;
        }
        ADD_FAILURE() << "no value " << name;
        return Sensitivity::none;
    }

  private:
    static std::string shown(std::span<const ByteRange> ranges) {
        std::string result;
        for (const ByteRange& r : ranges) {
            result += result.empty() ? "" : " ";
            result += formatted("{-}-{-}"_cf, r.first, r.last);
        }
        return result.empty() ? "none" : result;
    }

    TestSession d_;
    Trail trail_;
    Text plain_;
    Text text_;
};

using Values = std::vector<std::string>;

TEST(IpValues, VoiceStreams) {
    const Observed start("13 01 01 01 04 0a 00 00 05 04 01 11 00 02 75 30 15 01 00", from_dhs);
    EXPECT_EQ(start.name(), "start_rtp");
    EXPECT_EQ(start.values(), (Values{"stream_direction = TSC output, 2-2", "remote_ip = 10.0.0.5, 5-8",
                                      "codec = G.729A  8 kb/s, 11-11", "local_udp_port = 30000, 14-15",
                                      "send_dtmf = no, 18-18"}));
    // A label is chosen by its item's id; the length says where the next item stands.
    EXPECT_EQ(start.bytes_of_words("codec: "), "0-1 9-10");
    EXPECT_EQ(start.bytes_of_words("send DTMF: "), "0-1 16-17");
}

TEST(IpValues, BytesAndTheirCharacters) {
    const Observed stop("13 02 0e 02 34 37 0f 02 34 00", from_dhs);
    EXPECT_EQ(stop.values(),
              (Values{"local_id =  34 37, 4-5", "item_text = 47, 4-5", "distant_id =  34 00, 8-9"}));
    // All bytes are looked at before the characters are shown.
    EXPECT_EQ(stop.bytes_of_words(" = \""), "0-5");
}

TEST(IpValues, RepeatedItemsAreOneValue) {
    EXPECT_EQ(Observed("13 0e 00 01 07 04 01 00", from_dhs).values(),
              (Values{"recorder_index = 7, 4-4", "repeated_text = recorder index=7, 5-5"}));
}

TEST(IpValues, Tones) {
    const Observed tones("13 04 02 01 b8 f4 00 00 00", from_dhs);
    EXPECT_EQ(tones.values(), (Values{"tone_pairs = 2, 2-2", "tone_pair = 1, none", "frequency_1 = 184, 3-4",
                                      "level_1 = -6.0, 5-5", "frequency_2 = 0, 6-7", "level_2 = 0.0, 8-8",
                                      "tone_pair = 2, none"}));
    EXPECT_EQ(tones.bytes_of_words(" = (empty)"), "0-2");  // of the count: there are no others
    EXPECT_TRUE(tones.trail().stretches().back().missing);
    EXPECT_EQ(Observed("13 05 41 09 00 0a", from_dhs).values(),
              (Values{"tone_entries = 1, 2-2", "tone_direction = to the network\n, 2-2",
                      "tone_entry = 1, none", "tone = 9, 3-3", "tone_duration = 10, 4-5"}));
}

TEST(IpValues, Parameters) {
    EXPECT_EQ(Observed("13 09 03 0a", from_dhs).values(),
              (Values{"parameter = local ip address, 2-2", "parameter = mac address, 3-3"}));
    const Observed response("13 02 00 02 01 17 04 05 ff ff 00 00 40 07 01 00 0a 02 00 80 63 01 07", to_dhs);
    EXPECT_EQ(response.name(), "param_response");
    EXPECT_EQ(response.values(),
              (Values{"firmware_version = 1.23, 4-5", "subnet_mask = 255.255.0.0, 8-11",
                      "ipv6_prefix_length = 64, 12-12", "length = 1, 14-14", "mac_address =  00 80, 18-19",
                      "unknown_code = ???, 20-20", "unknown_item_bytes =  07, 22-22"}));
}

TEST(IpValues, Ticket) {
    const Observed ticket("13 03 18 00 02 00 03 06 00 02 02 01 1b 00 03 00 01 02 2b 00 01 05 ff", to_dhs);
    EXPECT_EQ(ticket.name(), "qos_ticket");
    EXPECT_EQ(ticket.values(),
              (Values{"packets_lost = 0003, 5-6", "equipment_type = 2.1, 10-11", "delay_table = 0001, 15-16",
                      "delay_table = 02, 17-17", "unknown_code = ???               , 18-18",
                      "unknown_item_bytes = 05, 21-21"}));
    EXPECT_EQ(ticket.trail().values()[0].meaning.number, 3);
    EXPECT_EQ(ticket.bytes_of_words("nb paquets perdus "), "0-4");
    EXPECT_EQ(ticket.bytes_of_words("\n\t... end missing"), "0-1 19-20 22-22");
}

TEST(IpValues, Settings) {
    EXPECT_EQ(Observed("13 00 00 01 03 05 00 02 20", from_dhs).values(),
              (Values{"update_mode =  BOOT DATA, 4-4", "sip_name = <empty>, 6-6", "length = 32, 8-8"}));
    EXPECT_EQ(Observed("13 0a 11 01 09 17 01 14 18 01 00 10 00", from_dhs).values(),
              (Values{"pc_port_status = unknown param 0x09, 4-4", "dtmf_level = -10, 7-7",
                      "keep_talking = disabled, 10-10", "mmi_password = suppressed, 12-12"}));
    EXPECT_EQ(Observed("13 14 00 01 2a 01 01 01", from_dhs).values(),
              (Values{"application = *, 4-4", "application_enabled = yes, 7-7"}));
}

TEST(IpValues, UnknownCodes) {
    EXPECT_EQ(Observed("13 04", to_dhs).values(), Values{"unknown_code = unknown message, 1-1"});
    EXPECT_EQ(Observed("13 04", to_dhs).name(), "");
    EXPECT_EQ(Observed("13 03 63 01 00", from_dhs).values(), Values{"unknown_code = ???, 2-2"});
    EXPECT_EQ(Observed("13 14 63 01 00", from_dhs).values(), Values{"unknown_code =  unknown: 99, 2-2"});
}

TEST(IpValues, WhomTheyTellAbout) {
    const auto from_system = [](const std::string& hex, const char* name) {
        return Observed(hex, from_dhs).sensitivity(name);
    };
    const auto to_system = [](const std::string& hex, const char* name) {
        return Observed(hex, to_dhs).sensitivity(name);
    };
    EXPECT_EQ(from_system("13 0a 10 02 61 62", "mmi_password"), Sensitivity::secret);
    EXPECT_EQ(from_system("13 0a 0d 02 61 62", "snmp_mib_community"), Sensitivity::secret);
    EXPECT_EQ(from_system("13 0a 15 02 61 62", "session_string"), Sensitivity::secret);
    EXPECT_EQ(from_system("13 0a 03 02 61 62", "snmp_sys_contact"), Sensitivity::person);
    EXPECT_EQ(from_system("13 0a 0f 04 0a 00 00 01", "tftp_backup_ip_address"), Sensitivity::network_address);
    EXPECT_EQ(from_system("13 02 32 02 61 62", "srtp_master_key"), Sensitivity::secret);
    EXPECT_EQ(from_system("13 02 33 02 61 62", "srtp_master_salt_key"), Sensitivity::secret);
    EXPECT_EQ(from_system("13 02 50 02 61 62", "md5_authentication"), Sensitivity::secret);
    EXPECT_EQ(from_system("13 02 0e 02 34 37", "local_id"), Sensitivity::call_number);
    EXPECT_EQ(from_system("13 02 13 04 0a 00 00 01", "rtcp_receiver_report_ip"),
              Sensitivity::network_address);
    EXPECT_EQ(to_system("13 02 0a 02 00 80", "mac_address"), Sensitivity::hardware_address);
    EXPECT_EQ(to_system("13 02 0b 02 00 80", "pseudo_mac"), Sensitivity::hardware_address);
    EXPECT_EQ(to_system("13 02 05 04 0a 00 00 01", "router_ip_address"), Sensitivity::network_address);
    EXPECT_EQ(to_system("13 03 09 00 04 0a 00 00 01", "remote_ip"), Sensitivity::network_address);
    EXPECT_EQ(to_system("13 03 0b 00 02 34 37", "distant_id"), Sensitivity::call_number);
}

// Lists of any items, also ones that are not whole; with `wide` lengths of two bytes.
std::vector<std::uint8_t> any_list(std::mt19937& random, std::uint8_t opcode, bool wide) {
    const auto below = [&random](std::uint32_t n) { return static_cast<std::uint8_t>(random() % n); };
    std::vector<std::uint8_t> data = {0x13, opcode};
    for (int items = below(5); items > 0; --items) {
        data.push_back(below(4) == 0 ? below(255) : below(64));
        if (wide) data.push_back(below(20) == 0 ? 1 : 0);
        const std::uint8_t length = below(3) == 0 ? below(120) : below(6);
        data.push_back(length);
        const std::uint8_t from = below(3) == 0 ? 0x21 : 0;
        for (int k = 0; k < length; ++k) data.push_back(static_cast<std::uint8_t>(from + below(90)));
    }
    return data;
}

TEST(IpValues, TheyAndTheWordsBetweenMakeTheWholeText) {
    std::mt19937 random(1);
    for (int round = 0; round < 20; ++round) {
        for (int opcode = 0; opcode < 256; ++opcode) {
            for (const std::uint32_t direction : {from_dhs, to_dhs}) {
                const bool wide = direction == to_dhs && opcode == 3;
                const auto record = any_list(random, static_cast<std::uint8_t>(opcode), wide);
                const std::size_t behind = random() % 3;
                const Observed o(record, direction, std::max<std::size_t>(record.size() - behind, 1));
                ASSERT_EQ(o.text(), o.plain()) << opcode;
                std::uint32_t at = 0;
                for (const Stretch& s : o.trail().stretches()) {
                    ASSERT_EQ(s.begin, at) << o.text();
                    ASSERT_GT(s.end, s.begin) << o.text();
                    at = s.end;
                }
                ASSERT_EQ(at, o.text().size()) << o.text();
                for (const NotedValue& v : o.trail().values()) ASSERT_FALSE(v.name.empty()) << o.text();
            }
        }
    }
}

}  // namespace
}  // namespace ztdecode::testing
