#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "support/support.hpp"
#include "ztdecode.h"
#include "ztdecode.hpp"

// What a session of the C interface gives, by way of the C++ one.

namespace ztdecode::testing {
namespace {

using zt::Direction;

static_assert(std::ranges::random_access_range<zt::Record::Fields>);
static_assert(std::ranges::random_access_range<zt::Record::Segments>);
static_assert(std::ranges::input_range<zt::Session::Messages>);
static_assert(std::movable<zt::Session> && !std::copyable<zt::Session>);

using Texts = std::vector<std::string>;

// The texts of the messages of a line.
Texts texts(zt::Session& session, std::string_view line) {
    Texts all;
    session.feed(line);
    for (const zt::Record record : session.messages()) all.emplace_back(record.text());
    return all;
}

TEST(Session, DecodesAMessage) {
    zt::Session session({.detail = zt::Detail::words});
    const zt::Record record = session.decode(bytes("21 04 03"), Direction::from_system);
    EXPECT_EQ(record.text(), "\t- green led 3 ON");
    EXPECT_EQ(record.link(), "digital");
    EXPECT_EQ(record.message(), "led");
    EXPECT_EQ(record.code(), 0x21U);
    EXPECT_EQ(record.outcome(), zt::Outcome::decoded);
    EXPECT_EQ(record.direction(), Direction::from_system);
    EXPECT_EQ(record.length(), 3U);
    EXPECT_TRUE(std::ranges::equal(record.bytes(), bytes("21 04 03")));
    EXPECT_EQ(record.place(), 1U);

    ASSERT_EQ(record.fields().size(), 1U);
    const zt::Field led = record.fields()[0];
    EXPECT_EQ(led.name(), "led");
    EXPECT_EQ(led.value(), "3");
    EXPECT_EQ(led.shown(), "3");
    EXPECT_EQ(led.kind(), zt::Kind::number);
    EXPECT_EQ(led.number(), 3);
    EXPECT_FALSE(led.code().has_value());
    EXPECT_TRUE(led.known());
    EXPECT_FALSE(led.missing());
    EXPECT_EQ(led.begin_in_text(), 13U);
    EXPECT_EQ(led.end_in_text(), 14U);
    ASSERT_EQ(led.bytes().size(), 1U);
    EXPECT_EQ(led.bytes()[0].first, 2U);
    EXPECT_EQ(led.bytes()[0].last, 2U);

    // As README has it: "\t- " of byte 0, "green led " of 0-1, "3" of 2, " ON" of 0-1.
    ASSERT_EQ(record.words().size(), 4U);
    std::string all;
    for (const zt::Word word : record.words()) all += word.text();
    EXPECT_EQ(all, record.text());
    EXPECT_EQ(record.words()[2].field(), "led");
    EXPECT_EQ(record.words()[3].text(), " ON");
    ASSERT_EQ(record.words()[3].bytes().size(), 1U);
    EXPECT_EQ(record.words()[3].bytes()[0].first, 0U);
    EXPECT_EQ(record.words()[3].bytes()[0].last, 1U);
}

TEST(Session, RecordsWordsOnlyWhereAsked) {
    zt::Session session;
    EXPECT_EQ(session.decode(bytes("21 04 03"), Direction::from_system).words().size(), 0U);
    session.set({.detail = zt::Detail::words});
    EXPECT_EQ(session.decode(bytes("21 04 03"), Direction::from_system).words().size(), 4U);
}

// byte 2: receiving, byte 3: sending, in half decibels
TEST(Session, GivesTenthsAsTheyAre) {
    zt::Session session;
    const zt::Record record = session.decode(bytes("29 11 fa 08"), Direction::from_system);
    EXPECT_EQ(record.text(), "\t- new voice mode: handset, receiving -3.0 dB, sending 4.0 dB");
    Texts values;
    std::vector<double> numbers;
    for (const zt::Field field : record.fields()) {
        if (field.unit() != "dB") continue;
        values.emplace_back(field.value());
        numbers.push_back(field.number().value_or(0));
    }
    EXPECT_EQ(values, (Texts{"-3.0", "4.0"}));
    EXPECT_EQ(numbers, (std::vector<double>{-3, 4}));
}

// byte 1: channel of the voice, byte 2: of the announce
TEST(Session, GivesWordsTheirCodes) {
    zt::Session session;
    const zt::Record record = session.decode(bytes("32 01 00"), Direction::from_system);
    EXPECT_EQ(record.text(), "\t- voice channel: voice= B1, announce= No");
    const zt::Field channel = record.find("voice_channel").value();
    EXPECT_EQ(channel.kind(), zt::Kind::word);
    EXPECT_EQ(channel.value(), "B1");
    EXPECT_EQ(channel.code(), 1);
    EXPECT_FALSE(channel.number().has_value());
}

TEST(Session, AnUnknownMessageHasNoName) {
    zt::Session session;
    const zt::Record record = session.decode(bytes("1d 00"), Direction::from_system);
    EXPECT_EQ(record.outcome(), zt::Outcome::unknown_message);
    EXPECT_EQ(record.message(), "");
    EXPECT_EQ(record.code(), 0x1DU);
    EXPECT_EQ(record.unknown(), 1U);
    ASSERT_TRUE(record.find("unknown_code").has_value());
    EXPECT_FALSE(record.find("unknown_code")->known());
    EXPECT_FALSE(record.find("led").has_value());
}

TEST(Session, MissingBytesAreSaid) {
    zt::Session session;
    const zt::Record record = session.decode(bytes("21 04"), Direction::from_system);
    EXPECT_EQ(record.text(), "\t- green led 0 ON");
    EXPECT_EQ(record.missing(), 1U);
    ASSERT_TRUE(record.find("led").has_value());
    EXPECT_TRUE(record.find("led")->missing());
    EXPECT_TRUE(record.find("led")->bytes().empty());
}

TEST(Session, AMessageWithoutBytesHasNoText) {
    zt::Session session;
    const zt::Record record = session.decode({}, Direction::to_system);
    EXPECT_EQ(record.text(), "");
    EXPECT_EQ(record.length(), 0U);
    EXPECT_FALSE(record.code().has_value());
    EXPECT_EQ(record.outcome(), zt::Outcome::decoded);
}

TEST(Session, PartsAreRecords) {
    zt::Session session({.detail = zt::Detail::words});
    // A hub's message to set 0x10: a super message of two leds.
    const zt::Record hub = session.decode(bytes("14 10 0b 03 21 04 03 03 21 04 05"), Direction::from_system);
    EXPECT_EQ(hub.link(), "hub");
    ASSERT_EQ(hub.parts().size(), 1U);
    const zt::Record super = hub.parts()[0];
    EXPECT_EQ(super.message(), "super_message");
    ASSERT_EQ(super.parts().size(), 2U);
    const zt::Record led = super.parts()[1];
    EXPECT_EQ(led.message(), "led");
    EXPECT_EQ(led.find("led")->value(), "5");
    EXPECT_EQ(led.find("led")->bytes()[0].first, 2U);
    EXPECT_TRUE(std::ranges::equal(led.bytes(), bytes("21 04 05")));
    EXPECT_NE(hub.text().find(led.text()), std::string_view::npos);
    EXPECT_EQ(led.text().substr(led.find("led")->begin_in_text(), 1), "5");
    EXPECT_FALSE(hub.find("led").has_value());
}

// Two segments: the first says that the message has 3 bytes in 2 segments.
TEST(Session, SegmentsAreNamedByTheirPlaces) {
    zt::Session session;
    EXPECT_EQ(texts(session, "# a comment"), Texts{});
    EXPECT_EQ(texts(session, "000000S 06 0c 81 00 03 21 04").size(), 1U);
    EXPECT_EQ(session.feed("").kind(), zt::LineKind::blank);
    session.feed("000000S 03 0c 00 03");
    const auto last = session.next();
    ASSERT_TRUE(last.has_value());
    ASSERT_EQ(last->parts().size(), 1U) << last->text();
    const zt::Record whole = last->parts()[0];
    EXPECT_EQ(whole.message(), "led");
    EXPECT_EQ(whole.find("led")->value(), "3");
    EXPECT_TRUE(std::ranges::equal(whole.bytes(), bytes("21 04 03")));
    EXPECT_EQ(whole.segments().size(), 2U);
    EXPECT_TRUE(std::ranges::equal(whole.segments(), std::array<std::uint64_t, 2>{2, 4}));
    EXPECT_EQ(last->place(), 4U);
}

TEST(Session, AClassThatDoesNotExistIsAnOutcome) {
    zt::Session session;
    session.feed("000000S 04 15 01 ff 00");
    const auto record = session.next();
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->outcome(), zt::Outcome::unknown_class);
    EXPECT_TRUE(record->text().ends_with("Error class lookup table ptr")) << record->text();
    EXPECT_FALSE(session.next().has_value());
}

TEST(Session, LeavesOutWhatIsNoAudioMessage) {
    zt::Session session({.audio_only = true});
    const zt::Record left_out = session.decode(bytes("2a"), Direction::from_system);
    EXPECT_EQ(left_out.outcome(), zt::Outcome::left_out);
    EXPECT_EQ(left_out.text(), "");
    const zt::Record audio = session.decode(bytes("29 01 00"), Direction::from_system);
    EXPECT_NE(audio.outcome(), zt::Outcome::left_out);
    EXPECT_NE(audio.text(), "");
}

TEST(Session, ColoursByDirection) {
    zt::Session session({.color = true, .detail = zt::Detail::words});
    const zt::Record green = session.decode(bytes("2a"), Direction::from_system);
    EXPECT_EQ(green.text(), "\033[0;32m\t- version inquiry\033[0m");
    EXPECT_EQ(session.decode(bytes("01"), Direction::to_system).text().substr(0, 7), "\033[0;31m");
}

TEST(Session, TracesAndComplaintsComeWithTheRecord) {
    zt::Session session;
    EXPECT_EQ(session.decode(bytes("2a"), Direction::from_system).trace(), "");
    session.set({.debug = true});
    EXPECT_EQ(session.decode(bytes("2a"), Direction::from_system).trace(),
              "entree decode, lng=0x01  sens= from DHS\nentree decode1msg, lng=0x01  sens= from DHS\n");
    // Three routing bytes are more than there are.
    EXPECT_EQ(session.decode(bytes("05 01"), Direction::from_system).complaints(),
              "decalage incorrect: demand\xC3\xA9: 3, disponible: 2\n");
    EXPECT_EQ(session.decode(bytes("2a"), Direction::from_system).complaints(), "");
}

// A message that complains, one that traces its bytes, one that ends the process of a host of ztdecode.h.
TEST(Session, PrintsNothing) {
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    zt::Session session({.debug = true});
    EXPECT_NE(session.decode(bytes("05 01"), Direction::from_system).complaints(), "");
    session.decode(bytes("0c 81 00 03 21 04"), Direction::from_system);
    EXPECT_NE(session.decode(bytes("0c 00 03"), Direction::from_system).trace(), "");
    EXPECT_EQ(session.decode(bytes("15 01 ff 00"), Direction::from_system).outcome(),
              zt::Outcome::unknown_class);
    std::fflush(nullptr);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(Session, DoesNotNoticeTheOtherInterface) {
    zt::Session session;
    useColor = 1;
    audioOnly = 1;
    EXPECT_EQ(session.decode(bytes("2a"), Direction::from_system).text(), "\t- version inquiry");
    useColor = 0;
    audioOnly = 0;
    // The object protocol's text is the record's alone.
    const zt::Record record = session.decode(bytes("16 02 84 00 07 37 01 41"), Direction::from_system);
    EXPECT_EQ(record.link(), "presentation_server");
    EXPECT_EQ(app_buf, nullptr);
    EXPECT_EQ(app_idx, 0U);
}

// --- lines

TEST(SessionLine, KindsOfLines) {
    zt::Session session;
    const auto kind = [&](std::string_view line) { return session.feed(line).kind(); };
    EXPECT_EQ(kind(""), zt::LineKind::blank);
    EXPECT_EQ(kind(" \t\r\n"), zt::LineKind::blank);
    EXPECT_EQ(kind("  # 03 21 04 03"), zt::LineKind::comment);
    EXPECT_EQ(kind("line 12 is up"), zt::LineKind::other);
    EXPECT_EQ(kind("03 21 04 03"), zt::LineKind::messages);
    EXPECT_EQ(kind("01 00\r\n"), zt::LineKind::messages);
    EXPECT_EQ(kind("01 00 \t"), zt::LineKind::messages);
    EXPECT_EQ(kind("081231S 03 21 04"), zt::LineKind::refused);
    EXPECT_EQ(kind(std::string(1 << 20, '0')), zt::LineKind::other);
    EXPECT_EQ(session.feed("2a").place(), 10U);
}

TEST(SessionLine, RecognisesEachLayout) {
    zt::Session session;
    const auto layout = [&](std::string_view line) {
        const zt::Layout found = session.feed(line).layout();
        const auto record = session.next();
        EXPECT_TRUE(record.has_value() && record->text() == "\t- green led 3 ON") << line;
        return found;
    };
    EXPECT_EQ(layout("03 21 04 03"), zt::Layout::line);
    EXPECT_EQ(layout("03 00 21 04 03\r\n"), zt::Layout::lng2);
    EXPECT_EQ(layout("zt 03 00 21 04 03  "), zt::Layout::zt);
    EXPECT_EQ(layout("081211S 03 21 04 03"), zt::Layout::spzt);
    session.set({.layout = zt::Layout::spzt_lng2});
    EXPECT_EQ(layout("081211S 03 00 21 04 03"), zt::Layout::spzt_lng2);
}

TEST(SessionLine, TakesTheDirectionOfTheColumnOrTheOptions) {
    zt::Session session({.direction = Direction::to_system});
    session.feed("03 21 04 03");
    EXPECT_EQ(session.next()->direction(), Direction::to_system);
    EXPECT_EQ(session.feed("081211S 03 21 04 03").columns(), "081211");
    EXPECT_EQ(session.next()->direction(), Direction::from_system);
    EXPECT_EQ(session.feed("zt 03 00 21 04 03").columns(), "");
}

TEST(SessionLine, GivesItsMessagesOneByOne) {
    zt::Session session;
    EXPECT_EQ(texts(session, "01 00 2a 03 00 21 04 03"),
              (Texts{"\t- version inquiry", "\t- green led 3 ON"}));
    EXPECT_FALSE(session.next().has_value());
    // The rest of a line that is left goes.
    session.feed("01 00 2a 03 00 21 04 03");
    session.next();
    EXPECT_EQ(texts(session, "01 2a"), Texts{"\t- version inquiry"});
    // A message from elsewhere does not.
    session.feed("01 00 2a 03 00 21 04 03");
    session.next();
    EXPECT_EQ(session.decode(bytes("2a"), Direction::from_system).text(), "\t- version inquiry");
    EXPECT_EQ(session.next()->text(), "\t- green led 3 ON");
}

TEST(SessionLine, SaysWhyItIsRefused) {
    zt::Session session;
    const zt::Line line = session.feed("081231S 03 21 04 ");
    EXPECT_EQ(line.kind(), zt::LineKind::refused);
    EXPECT_EQ(line.refusal(), zt::Refusal::too_short);
    EXPECT_EQ(line.reason(), "-> line too short");
    EXPECT_EQ(line.column(), 9U);
    EXPECT_EQ(line.expected(), 3U);
    EXPECT_EQ(line.found(), 2U);
    EXPECT_EQ(line.content(), "081231S 03 21 04");
    const zt_record* record = nullptr;
    EXPECT_EQ(zt_next_message(session.get(), &record), ZT_REFUSED);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(zt_next_message(session.get(), &record), ZT_DONE);
}

TEST(SessionLine, MayBeRefusedBehindItsFirstMessage) {
    zt::Session session;
    const zt::Line line = session.feed("01 00 2a 00 00 21 04 03");
    EXPECT_EQ(line.kind(), zt::LineKind::messages);
    EXPECT_EQ(line.refusal(), zt::Refusal::none);
    EXPECT_TRUE(session.next().has_value());
    EXPECT_FALSE(session.next().has_value());
    EXPECT_EQ(line.refusal(), zt::Refusal::no_length);
    EXPECT_EQ(line.reason(), "line does not start with 2 length bytes");
    EXPECT_EQ(line.column(), 10U);
}

TEST(SessionLine, SaysHowManyBytesWereFilledUp) {
    zt::Session session({.pad = true, .layout = zt::Layout::lng2});
    session.feed("03 00 21 04");
    const auto record = session.next();
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->padded(), 1U);
    EXPECT_EQ(record->find("led")->value(), "255");

    session.feed("01 00 2a 03 00 21");
    EXPECT_EQ(session.next()->padded(), 0U);
    EXPECT_EQ(session.next()->padded(), 2U);
}

TEST(SessionLine, InventsNoBytes) {
    zt::Session session;
    for (const std::string_view words : {"03 00 21 04", "zt 05 00 21 zz 03 04 05"}) {
        const zt::Line line = session.feed(words);
        EXPECT_EQ(line.kind(), zt::LineKind::refused) << words;
        EXPECT_FALSE(session.next().has_value()) << words;
    }
    EXPECT_EQ(session.feed("zt 05 00 21 zz 03 04 05").refusal(), zt::Refusal::no_hexadecimal);
}

TEST(SessionLine, ReadsWhatLogsWrite) {
    zt::Session session;
    const zt::Line line = session.feed("[set 12] 07:45:02.5 000119s\t0x03  0x21 0X04 0x03 0a");
    EXPECT_EQ(line.kind(), zt::LineKind::messages);
    EXPECT_EQ(line.prefix(), "[set 12] 07:45:02.5");
    EXPECT_EQ(line.time(), "07:45:02.5");
    EXPECT_EQ(line.terminal(), "[set 12]");
    EXPECT_EQ(line.columns(), "000119");
    EXPECT_EQ(line.layout(), zt::Layout::spzt);
    EXPECT_EQ(line.content(), "[set 12] 07:45:02.5 000119s\t0x03  0x21 0X04 0x03 0a");
    const auto record = session.next();
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->text(), "\t- green led 3 ON");
    EXPECT_EQ(record->left_over(), 1U);
    EXPECT_FALSE(session.next().has_value());
}

TEST(SessionLine, KeepsItsMessagesWhenOptionsChange) {
    zt::Session session({.layout = zt::Layout::lng2});
    session.feed("01 00 2a 03 00 21 04 03");
    EXPECT_EQ(session.next()->text(), "\t- version inquiry");
    session.set({.layout = zt::Layout::spzt});
    EXPECT_EQ(session.next()->text(), "\t- green led 3 ON");
    EXPECT_EQ(session.feed("01 00 2a").kind(), zt::LineKind::refused);
}

// What a record leads to may be handed over again.
TEST(SessionLine, TakesWhatItGave) {
    zt::Session session;
    const zt::Line line = session.feed("03 21 04 03");
    EXPECT_EQ(session.feed(line.content()).kind(), zt::LineKind::messages);
    const zt::Record record = *session.next();
    EXPECT_EQ(session.decode(record.bytes().subspan(0, 3), Direction::from_system).text(),
              "\t- green led 3 ON");
}

// --- bad input

TEST(SessionErrors, OptionsThatAreNotKnown) {
    zt_session* session = nullptr;
    zt_options options = ZT_OPTIONS_INIT;
    options.flags = 0x10;
    EXPECT_EQ(zt_session_create(&options, &session), ZT_BAD_OPTIONS);
    EXPECT_EQ(session, nullptr);
    options = ZT_OPTIONS_INIT;
    options.size -= 1;
    EXPECT_EQ(zt_session_create(&options, &session), ZT_BAD_SIZE);
    options.size = static_cast<std::size_t>(-1);
    EXPECT_EQ(zt_session_create(&options, &session), ZT_BAD_SIZE);
    EXPECT_THROW(zt::Session({.layout = static_cast<zt::Layout>(6)}), zt::Error);
    EXPECT_THROW(zt::Session({.direction = static_cast<Direction>(2)}), zt::Error);
    EXPECT_THROW(zt::Session({.detail = static_cast<zt::Detail>(-1)}), zt::Error);
}

// A later header's options: what this library does not know has to be zero.
TEST(SessionErrors, LargerOptions) {
    struct {
        zt_options known;
        std::int64_t later;
    } options = {ZT_OPTIONS_INIT, 0};
    options.known.size = sizeof options;
    zt_session* session = nullptr;
    EXPECT_EQ(zt_session_create(&options.known, &session), ZT_OK);
    options.later = 1;
    EXPECT_EQ(zt_session_set_options(session, &options.known), ZT_BAD_OPTIONS);
    zt_session_destroy(session);
}

TEST(SessionErrors, OptionsStayWhereNewOnesAreBad) {
    zt::Session session({.layout = zt::Layout::zt});
    try {
        session.set({.color = true, .layout = static_cast<zt::Layout>(77)});
        FAIL() << "taken";
    } catch (const zt::Error& error) {
        EXPECT_EQ(error.status(), ZT_BAD_OPTIONS);
        EXPECT_EQ(error.what(), std::string_view("an option is not known"));
    }
    EXPECT_EQ(session.feed("03 21 04 03").kind(), zt::LineKind::refused);
    EXPECT_EQ(session.feed("03 21 04 03").refusal(), zt::Refusal::no_tag);
}

TEST(SessionErrors, ADirectionThatThereIsNot) {
    zt::Session session;
    EXPECT_THROW(session.decode(bytes("2a"), static_cast<Direction>(2)), zt::Error);
    EXPECT_THROW(session.decode(bytes("2a"), static_cast<Direction>(-1)), zt::Error);
    EXPECT_EQ(session.decode(bytes("2a"), Direction::from_system).place(), 1U);
}

TEST(SessionNames, AreThoseOfRecords) {
    EXPECT_EQ(zt::name_of(zt::Outcome::unknown_class), "refused");
    EXPECT_EQ(zt::name_of(zt::Kind::version), "version");
    EXPECT_EQ(zt::name_of(zt::Sensitivity::secret), "secret");
    EXPECT_EQ(zt::name_of(zt::Refusal::no_direction), "no_direction");
    EXPECT_EQ(zt::name_of(static_cast<zt::Kind>(7)), "");
    EXPECT_EQ(zt::version(), ZT_VERSION);
}

}  // namespace
}  // namespace ztdecode::testing
