// Expressions that anybody may write, over one message. What is accepted is answered, yes or no, or fails
// with a reason; a caret points into the expression. The first byte chooses the message.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/record.hpp"
#include "core/session.hpp"
#include "fuzz/fuzzing.hpp"
#include "tool/select/selection.hpp"
#include "tool/select/sqlite.hpp"
#include "tool/select/where.hpp"

namespace {

using ztdecode::fuzz::expect;

struct Captured {
    std::uint32_t direction;
    std::vector<std::uint8_t> bytes;
};

// A set's, one that a hub carries, one of an IP set with values of many kinds, a widget's, an unknown one.
const Captured messages[] = {
    {ztdecode::from_dhs, {0x21, 0x04, 0x03}},
    {ztdecode::from_dhs, {0x14, 0x11, 0x21, 0x03, 0x07}},
    {ztdecode::from_dhs, {0x13, 0x01, 0x02, 0x00, 0x02, 0x75, 0x30, 0x05, 0x01, 0x14, 0x63}},
    {ztdecode::from_dhs, {0x16, 0x00, 0x84, 0x00, 0x11, 0x24, 0x02, 0x00, 0x10, 0x37, 0x02, 0xC3, 0xA9}},
    {ztdecode::to_dhs, {}},
};

void answer(const std::string& expression, const Captured& captured) {
    ztdecode::tool::Where where("trace", {&expression, 1});
    ztdecode::Trail trail(where.notes());
    ztdecode::Session session;
    session.trail = &trail;
    ztdecode::Message m(captured.bytes);
    m.direction = captured.direction;
    ztdecode::Text text;
    const ztdecode::Outcome outcome = ztdecode::decode(session, m, text);
    ztdecode::Record record;
    record.take(trail, text.view(), m, outcome);
    const ztdecode::CapturedMessage place = {.message = &m, .number = 1};
    // Twice: what was true of a message stays true of it, but for dice.
    const bool dice = expression.find_first_of("rR") != std::string::npos;
    for (std::size_t part = 0; part < record.size(); ++part) {
        const bool first = where.holds(place, record, part);
        const bool second = where.holds(place, record, part);
        expect(first == second || dice, "the answer stays the same");
    }
}

// What counts without an end is no more than the user asked for.
bool may_be_endless(std::string_view expression) {
    for (const std::string_view word :
         {"ecurs", "ECURS", "zeroblob", "ZEROBLOB", "printf", "PRINTF", "format", "FORMAT"}) {
        if (expression.find(word) != std::string_view::npos) return true;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest = 2000;
    if (size == 0 || size > longest) return 0;
    const std::string expression(reinterpret_cast<const char*>(data + 1), size - 1);
    if (may_be_endless(expression)) return 0;
    ztdecode::tool::SelectionOptions options;
    options.where = {expression};
    try {
        static_cast<void>(ztdecode::tool::check_selection(options));
    } catch (const ztdecode::tool::WrongSelection& wrong) {
        const std::string pointer = wrong.pointer();
        expect(pointer.empty() || pointer.ends_with("^\n"), "a place has its caret");
        return 0;
    }
    try {
        answer(expression, messages[data[0] % std::size(messages)]);
    } catch (const ztdecode::tool::sqlite::Error& error) {
        expect(*error.what() != '\0', "a failure has its reason");
    }
    return 0;
}
