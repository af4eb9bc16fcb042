#include "options/rows.hpp"

namespace ztdecode::testing {
namespace {

TEST(DecodeV24Out, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(v24::from_system,
                   {{0x00, "nop"},
                    {0x03, "software reset"},
                    {0x07, "loopback ON"},
                    {0x08, "loopback OFF"},
                    {0x0C, "segment message"},
                    {0x0E, "version+state inquiry"},
                    {0x10, "change segment size"},
                    {0x20, "channel affectation"},
                    {0x21, "change state: command"},
                    {0x25, "display string"},
                    {0x26, "flush output"},
                    {0x27, "EIA state change"},
                    {0x28, "call parameter"},
                    {0x29, "watch for wakeup char"},
                    {0x2A, "configure UART"},
                    {0x2B, "flow control"},
                    {0x2C, "configure output"},
                    {0x2D, "configure input"},
                    {0x2E, "configure transparent EIA pins"},
                    {0x2F, "V120 parameters"},
                    {0x30, "send and clear error counters"},
                    {0x31, "graceful disconnect"},
                    {0x32, "discard user input"},
                    {0x34, "output EIA"},
                    {0x35, "user data loopback"},
                    {0x36, "send break to local user"},
                    {0x37, "report remote event"},
                    {0x39, "terminating char"},
                    {0x3A, "distant user loopback"}},
                   [](unsigned) { return std::string("cmd ???"); });
}

TEST(DecodeV24Out, DoesNotSplitSuperMessages) {
    expect_texts(v24::from_system, {{"02 00 0b 02 01 05 01 03", "cmd ???"}, {"02 00 33", "cmd ???"}});
}

TEST(DecodeV24Out, NamesStates) {
    expect_values(v24::from_system, "02 00 21 00", 3,
                  {{0, "change state: idle"},
                   {1, "change state: command"},
                   {3, "change state: start connection"},
                   {4, "change state: not used"},
                   {5, "change state: not used"},
                   {6, "change state: connected"}},
                  "change state: ???");
}

TEST(DecodeV24, NamesEveryOpcodeWithoutItsBit7) {
    expect_opcodes(v24::to_system,
                   {{0x00, "nop ack"},
                    {0x06, "loopback ON ack"},
                    {0x07, "loopback OFF ack"},
                    {0x0C, "segment message"},
                    {0x0E, "version response,  soft=0.00"},
                    {0x1F, "reset soft V24 asynchrone  soft=0.00, selftest: OK"},
                    {0x21, "wake up event, baud= 1"},
                    {0x22, "literal token/word received"},
                    {0x23, "literal string error 1"},
                    {0x25, "connection confirmed"},
                    {0x26, "disconnect sequence detected"},
                    {0x28, "suspend complete"},
                    {0x29, "EIA change detected"},
                    {0x2B, "inactivity timeout"},
                    {0x2C, "error counters"},
                    {0x2D, "timer expired: ??"},
                    {0x2E, "display ack"},
                    {0x2F, "output to user buffer empty"},
                    {0x30, "V120 protocol error"},
                    {0x31, "remote EIA change"}},
                   [](unsigned) { return std::string("??"); });
}

TEST(DecodeV24, DoesNotSplitSuperMessages) {
    expect_texts(v24::to_system, {{"04 00 0b 02 01 05 01 03", "??"}});
}

TEST(DecodeV24, ShowsItsNumbers) {
    expect_texts(v24::to_system, {{"04 00 0e 03 02 05 09", "version response,  soft=2.05"},
                                  {"04 00 21 ff", "wake up event, baud= 255"},
                                  {"04 00 23 0c", "literal string error 12"}});
}

TEST(DecodeV24, NamesTimers) {
    expect_values(v24::to_system, "04 00 2d 00", 3,
                  {{100, "timer expired: startup"}, {30, "timer expired: resynchronization"}},
                  "timer expired: ??");
}

TEST(DecodeV24, NamesEveryReport) {
    expect_values(v24::to_system, "04 00 1f 00 06 01 0c 00 06", 3,
                  {{0x00, "reset hard V24 synchrone V110 V120  soft=1.12, selftest: OK"},
                   {0x01, "reset soft V24 synchrone V110 V120  soft=1.12, selftest: OK"},
                   {0x81, "reset soft V24 synchrone V110 V120  soft=1.12, selftest: OK"},
                   {0x02, "illegal command 06"},
                   {0x06, "segment failure"},
                   {0x07, "illegal command 06 in current state"}},
                  "reset ??");
}

TEST(DecodeV24, NamesLineModes) {
    expect_values(v24::to_system, "04 00 1f 00 00 01 0c 01 00", 4,
                  {{0, "reset hard V24 asynchrone  soft=1.12, selftest: BAD"},
                   {6, "reset hard V24 synchrone  soft=1.12, selftest: BAD"}},
                  "reset hard V24 ???  soft=1.12, selftest: BAD");
}

TEST(DecodeV24, AsynchronousAdaptationsMayHaveAName) {
    expect_texts(
        v24::to_system,
        {{"04 00 1f 01 00 01 0c 00 00", "reset soft V24 asynchrone  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 01", "reset soft V24 asynchrone V14  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 02", "reset soft V24 asynchrone V110  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 03", "reset soft V24 asynchrone V14 V110 (A1)  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 04", "reset soft V24 asynchrone V120  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 05", "reset soft V24 asynchrone V14 V120  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 06", "reset soft V24 asynchrone V110 V120 (A2)  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 07", "reset soft V24 asynchrone V14 V110 V120  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 08",
          "reset soft V24 asynchrone HDLC transparent  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 0b",
          "reset soft V24 asynchrone V14 V110 HDLC transparent  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 0c",
          "reset soft V24 asynchrone V120 HDLC transparent  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 13", "reset soft V24 asynchrone V14 V110  soft=1.12, selftest: OK"},
         {"04 00 1f 01 00 01 0c 00 f0", "reset soft V24 asynchrone  soft=1.12, selftest: OK"}});
}

TEST(DecodeV24, OtherAdaptationsHaveNone) {
    expect_texts(
        v24::to_system,
        {{"04 00 1f 00 06 01 0c 00 03", "reset hard V24 synchrone V14 V110  soft=1.12, selftest: OK"},
         {"04 00 1f 00 06 01 0c 00 06", "reset hard V24 synchrone V110 V120  soft=1.12, selftest: OK"},
         {"04 00 1f 00 01 01 0c 00 03", "reset hard V24 ??? V14 V110  soft=1.12, selftest: OK"},
         {"04 00 1f 00 06 01 0c 00 0f",
          "reset hard V24 synchrone V14 V110 V120 HDLC transparent  soft=1.12, selftest: OK"}});
}

}  // namespace
}  // namespace ztdecode::testing
