// The object protocol's ways in, of one session.
//
// The input is records, each of bytes behind a byte that says which way in. Every text is within its bounds,
// sessions that see the same agree, and what is kept of segments has its bounds.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "decode/application_frames.hpp"
#include "fuzz/decoding.hpp"
#include "fuzz/fuzzing.hpp"
#include "object/command.hpp"
#include "object/events.hpp"
#include "object/input.hpp"
#include "object/lookup.hpp"
#include "object/segments.hpp"
#include "object/values.hpp"

namespace {

using namespace ztdecode;
using namespace ztdecode::object;
using fuzz::expect;

enum WayIn : std::uint8_t {
    command,
    event,
    frame_from_system,
    frame_to_system,
    segment,
    old_segment,
    input_line,
    properties,
    utf8,
    event_body,
    ways_in,
};

// A series can be put together from every few records, and then costs much more than its bytes.
constexpr int most_records = 100;
constexpr std::size_t longest_series = 131072;

// First byte: the class whose table is used.
void print_properties_of_class(Decoding& d) {
    const PropertyTable table = class_of(d[0].number).properties;
    if (!table) return;
    print_properties(d, 1, table, LengthField::one_or_two_bytes, Values::carried);
}

void print_both_ways(Decoding& d) {
    const bool beyond_ascii = print_text(d, "text", Utf8Mode::characters).holds;
    expect(print_text(d, "text", Utf8Mode::names).holds == beyond_ascii,
           "both forms tell the same of a text");
}

// First byte: the event.
void print_event_body(Decoding& d) {
    const Byte event = d[0];
    const Decoding::Window body(d, 1, d.length() > 0 ? d.length() - 1 : 0);
    object::event_body(d, event);
}

// A zero byte is the second or third byte of a character that a message cut short.
bool zeros_are_of_characters(std::string_view text) {
    const auto at_least = [text](std::size_t behind, std::size_t back, std::uint8_t lead) {
        return behind >= back && static_cast<std::uint8_t>(text[behind - back]) >= lead;
    };
    for (std::size_t k = text.find('\0'); k != std::string_view::npos; k = text.find('\0', k + 1)) {
        if (!at_least(k, 1, 0xC0) && !at_least(k, 2, 0xE0)) return false;
    }
    return true;
}

void read_input(std::string_view text, Text& out) {
    std::array<std::uint8_t, input_capacity> bytes{};
    const std::uint16_t count = read_numbers(text, bytes, out);
    expect(count <= 2998, "fields fit");
    expect(count == 0 || out.empty(), "a complaint means no fields");
}

struct ApplicationBuffer : ApplicationText {
    void set(std::string_view all) override { text = all; }
    void add(std::string_view more) override { text += more; }
    void add_item(std::string_view item) override { text += item; }

    std::string text;
};

struct OneSession {
    Session session;
    fuzz::Counted side;
    Text text;
    ApplicationBuffer buffer;
    bool unknown_class = false;
    fuzz::Cost cost;

    OneSession() { session.side = &side; }

    void decode(std::uint8_t way, const std::vector<std::uint8_t>& bytes) {
        text.clear();
        unknown_class = false;
        cost = fuzz::cost_of(text, side, [&] {
            try {
                take(way, Message::without_record(bytes), bytes);
            } catch (const UnknownClass&) {
                unknown_class = true;
            }
        });
        // A frame may have messages of two length bytes each; a whole series is longer than its last segment.
        fuzz::expect_bounded(cost, bytes.size() + longest_series, 1 + bytes.size() / 2);
    }

    void take(std::uint8_t way, const Message& m, const std::vector<std::uint8_t>& bytes) {
        Decoding d(session, m, text);
        switch (way % ways_in) {
            case command:
                return object::from_system(d);
            case event:
                return object::to_system(d);
            case frame_from_system:
                return take_frame(m, 'S');
            case frame_to_system:
                return take_frame(m, 'R');
            case segment:
                take_segment(session.change(session.object.segments), m);
                return;
            case old_segment:
                take_segment_of_old(session.change(session.object.segments), m);
                return;
            case input_line:
                return read_input({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, text);
            case properties:
                return print_properties_of_class(d);
            case utf8:
                return print_both_ways(d);
            default:
                return print_event_body(d);
        }
    }

    void take_frame(const Message& m, int way) {
        buffer.text.clear();
        session.object.application = &buffer;
        int series_whole = 0;
        decode_application_frame(session, m, way, series_whole);
        text.add(buffer.text);
        expect(series_whole == 0 || session.object.segments->filled == 0, "a decoded series is forgotten");
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    OneSession one;
    OneSession other;
    fuzz::Account account;
    fuzz::Records records(data, size);
    for (int n = 0; n < most_records && !account.used_up(); ++n) {
        const auto record = records.next();
        if (!record) break;
        one.decode(record->way, record->bytes);
        other.decode(record->way, record->bytes);
        account.add(one.cost);
        expect(zeros_are_of_characters(one.text.view()), "zero bytes come with characters alone");
        expect(one.text.view() == other.text.view(), "both sessions write the same text");
        expect(one.unknown_class == other.unknown_class, "both sessions end alike");
        expect(one.session.object.segments->bytes.size() <= longest_series,
               "what is kept of a series has its bound");
    }
    return 0;
}
