#include "support/observed.hpp"

// What is said of the texts: their values, with names and bytes, and the bytes that chose the words between.
// Bytes are counted from the routing bytes on, as the message was captured: the opcode is byte 3.

namespace ztdecode::testing {
namespace {

// Without those of the routing.
Values values(const Observed& observed) {
    const Values all = observed.values();
    EXPECT_GE(all.size(), 2U);
    return {all.begin() + 2, all.end()};
}

TEST(HeValues, Routing) {
    const Observed off_hook(to_dhs, "05 02 fa 01");
    EXPECT_EQ(off_hook.names(), "application_message off_hook");
    EXPECT_EQ(off_hook.values(),
              (Values{"sender =  communication assistant, 2-2", "receiver =  desktop, 1-1"}));
    EXPECT_EQ(off_hook.bytes_of_words("off hook"), "3-3");
}

TEST(HeValues, Keys) {
    const Observed digit(to_dhs, "05 00 01 03 00 09");
    EXPECT_EQ(digit.names(), "application_message digit_dialled");
    EXPECT_EQ(values(digit), Values{"digit = 9, 5-5"});
    EXPECT_EQ(digit.sensitivity("digit"), call_number);
    const Observed key(to_dhs, "05 00 01 25 00 41");
    EXPECT_EQ(values(key), Values{"key_text = A, 5-5"});
    EXPECT_EQ(key.sensitivity("key_text"), call_number);
}

TEST(HeValues, Reset) {
    const Observed reset(to_dhs, "05 00 01 1f 01 aa bb 01 02 03 04 05 06 63 07 08");
    EXPECT_EQ(reset.names(), "application_message reset");
    EXPECT_EQ(values(reset),
              (Values{"reset_kind = soft, 4-4", "boot_version = 1.2, 7-8", "code_version = 3.4, 9-10",
                      "ipar1_version = 5.6, 11-12", "ipar2_version = 7.8, 14-15"}));
    EXPECT_EQ(reset.value("boot_version").meaning.kind, Kind::version);
    EXPECT_EQ(reset.value("boot_version").meaning.number, 0x0102);
    EXPECT_EQ(reset.bytes_of_words("reset "), "3-4");
}

TEST(HeValues, Reports) {
    const Observed memory(to_dhs, "05 00 01 30 02 00 01 00 00");
    EXPECT_EQ(memory.names(), "application_message available_memory");
    EXPECT_EQ(values(memory), (Values{"available_memory = 010000, 5-8", "available_memory = 65536, 5-8"}));
    EXPECT_EQ(memory.value("available_memory").meaning.number, 65536);
    const Observed object(to_dhs, "05 00 01 31 00 03 0a 5c 02 48 69");
    EXPECT_EQ(values(object), (Values{"window = 03, 5-5", "object_id = 0a, 6-6", "value_key = 5c, 7-7",
                                      "length = 02, 8-8", "value_text = Hi, 9-10"}));
    EXPECT_EQ(object.sensitivity("value_text"), person);
    EXPECT_EQ(values(Observed(to_dhs, "05 00 01 34 09")), Values{"unknown_code = unknown ???, 4-4"});
    EXPECT_EQ(Observed(to_dhs, "05 00 01 34 05").names(), "application_message smart_card_insertion");
}

TEST(HeValues, Windows) {
    const Observed map(from_dhs, "05 00 01 50 02 00 01 02 07 08");
    EXPECT_EQ(map.names(), "application_message map_windows");
    EXPECT_EQ(values(map), (Values{"map_position = before, 6-6", "window_count = 2, 7-7", "window = 07, 8-8",
                                   "window = 08, 9-9"}));
    EXPECT_EQ(map.bytes_of_words("map "), "3-4");
    EXPECT_EQ(map.bytes_of_words(", winId="), "3-4 7-7");
    EXPECT_EQ(values(Observed(
                  from_dhs, "05 00 01 50 00 0c 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 00 10 01 00 02 80 ff ff")),
              (Values{"window = 0c, 5-5", "x = 16, 18-19", "y = 256, 20-21", "width = 640, 22-23",
                      "height = 65535, 24-25"}));
}

// What is repeated comes from no byte of this message, the mark behind it from the command.
TEST(HeValues, UnknownWindowCommand) {
    Observed windows(from_dhs);
    windows.decode("05 00 01 50 06 04");
    windows.decode("05 00 01 50 09");
    EXPECT_EQ(windows.names(), "application_message window_command");
    EXPECT_EQ(values(windows),
              (Values{"unknown_code = , 4-4", "repeated_text = refresh window winId=04, none"}));
    EXPECT_EQ(windows.value("unknown_code").meaning.number, 9);
    EXPECT_EQ(windows.bytes_of_words("???"), "3-4");
}

TEST(HeValues, Objects) {
    const Observed list(from_dhs, "05 00 01 53 10 01 01 02 00 05 01 06");
    EXPECT_EQ(list.names(), "application_message set_visibility");
    EXPECT_EQ(values(list), (Values{"visibility = ON, 6-6", "window = 01, 5-5", "object_count = 2, 7-7",
                                    "object_id = 05, 9-9", "object_type = icon, 8-8", "object_id = 06, 11-11",
                                    "object_type = image, 10-10"}));
    EXPECT_EQ(values(Observed(from_dhs, "05 00 01 52 02 01 02 00 0a 0b 0c 0d 0e 00 10 01 00 14 03 02 48 69")),
              (Values{"window = 01, 5-5", "object_id = 02, 6-6", "foreground_color = 0a, 8-8",
                      "background_color = 0b, 9-9", "first_attributes = 0c, 10-10",
                      "second_attributes = 0d, 11-11", "font = 0e, 12-12", "x = 16, 13-14", "y = 256, 15-16",
                      "characters_per_line = 20, 17-17", "lines = 3, 18-18", "window_text = Hi, 20-21"}));
}

// Whether the text is shared decides on the text alone.
TEST(HeValues, Cells) {
    const Observed cell(from_dhs, "05 00 01 53 1e 01 02 03 04 00 02 48 69");
    EXPECT_EQ(cell.names(), "application_message set_cell_value");
    EXPECT_EQ(values(cell), (Values{"window_text = Hi, 11-12", "window = 01, 5-5", "object_id = 02, 6-6",
                                    "cell_first = 3, 7-7", "cell_second = 4, 8-8"}));
    EXPECT_EQ(cell.sensitivity("window_text"), person);
    EXPECT_EQ(cell.bytes_of_words(" \""), "3-4 9-9");
    EXPECT_EQ(cell.bytes_of_words("\""), "3-4 9-10");
    EXPECT_EQ(cell.bytes_of_words(" winId="), "3-4");
    const Observed shared(from_dhs, "05 00 01 53 1e 01 02 03 04 01");
    EXPECT_EQ(shared.bytes_of_words(" - shared text -"), "3-4 9-9");
}

TEST(HeValues, Applications) {
    const Observed launch(from_dhs, "05 00 01 56 01 05");
    EXPECT_EQ(launch.names(), "application_message launch_application");
    EXPECT_EQ(values(launch), Values{"application =  05, 5-5"});
    EXPECT_FALSE(launch.value("application").meaning.known);
    EXPECT_EQ(values(Observed(from_dhs, "05 00 01 4c 00")), Values{"recorder = stop recorder, 4-4"});
    EXPECT_EQ(values(Observed(from_dhs, "05 00 01 2f 01 01 23 45 67 89 ab cd ef")),
              (Values{"download_address = 01234567, 5-8", "download_length = 89abcdef, 9-12"}));
}

}  // namespace
}  // namespace ztdecode::testing
