#include "digital/options/super.hpp"

#include <bitset>
#include <forward_list>

namespace ztdecode {

namespace {

constexpr unsigned deepest = 12;
constexpr std::size_t part_cost = 1024;
constexpr std::size_t most_cost = std::size_t{64} << 20;
constexpr std::size_t longest_twice = std::size_t{1} << 20;

// One super message being walked, among those inside each other.
class Walk {
  public:
    explicit Walk(DigitalState& digital)
        : digital_(digital),
          emulation_open_(digital.emulation_open),
          emulation_inside_(digital.emulation_inside) {
        if (digital_.super_depth++ == 0) digital_.super_cost = 0;
        digital_.emulation_open = digital_.emulation_inside = false;
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ~Walk() {
        --digital_.super_depth;
        digital_.emulation_open = emulation_open_;
        digital_.emulation_inside = emulation_inside_;
    }

    bool followed() const { return digital_.super_depth <= deepest; }
    bool inside_another() const { return digital_.super_depth > 1; }

  private:
    DigitalState& digital_;
    // A set emulation in a part is one of its own: the line goes on behind it.
    bool emulation_open_;
    bool emulation_inside_;
};

// What is left of the message, in eight bits as the modules count it: 2 when the parts have used up a message
// of theirs.
class Remaining {
  public:
    explicit Remaining(std::uint32_t length) : count_(static_cast<std::uint8_t>(length)) {}

    // Takes n bytes off; whether a part follows. On an empty copy the parts repeat, and so may the count.
    bool goes_on_without(std::uint32_t n, bool empty) {
        count_ = static_cast<std::uint8_t>(count_ - n);
        if (count_ <= 2) return false;
        if (!empty) return true;
        const bool met_before = met_.test(count_);
        met_.set(count_);
        return !met_before;
    }

  private:
    std::uint8_t count_;
    std::bitset<256> met_;  // on the empty copy
};

// All super messages write to one place: when the part was a super message, or carried one, the inner text
// stands there in place of what this one had written so far (from `begin` on), and the part's text behind it.
void put_inner_text_first(const Session& session, const Message& part, std::size_t begin,
                          std::size_t part_begin, Text& out) {
    const std::string part_text(out.from(part_begin));
    out.cut(begin);
    if (session.provenance != nullptr) {
        // What follows comes from the whole part.
        for (std::uint32_t k = 0; k < part.length(); ++k) static_cast<void>(part[k]);
    }
    out.add(session.digital.super_message);
    out.add(part_text);
}

void line_of_part(Session& session, const Message& part, const PartDecoder& decode_part, std::size_t begin,
                  Text& out) {
    DigitalState& digital = session.digital;
    out.add("\t\t- ");
    const std::size_t part_begin = out.size();
    digital.super_ended = false;
    decode_part(session, part, out);
    digital.super_cost += part_cost + (out.size() - part_begin);
    if (digital.super_ended && digital.super_message.size() <= longest_twice) {
        put_inner_text_first(session, part, begin, part_begin, out);
    }
    out.add("\n");
}

void walk_parts(Session& session, const Message& m, const PartDecoder& decode_part, std::size_t begin,
                Text& out) {
    // The message without ever more of its first bytes, the shortest in front.
    std::forward_list<Message> copies;
    const Message* copy = &copies.emplace_front(decale(session, m, 1));
    Remaining remaining(copy->length());
    bool goes_on = true;
    do {
        const Message from_length = decale(session, *copy, 1);
        const std::uint32_t length = from_length[1];
        line_of_part(session, from_length.with_length(length + 2), decode_part, begin, out);
        const Message rest = decale(session, *copy, length + 1);
        if (copy->length() != 0) copy = &copies.emplace_front(rest);  // An empty one stays as it is.
        goes_on = remaining.goes_on_without(length + 1, copy->length() == 0);
    } while (goes_on && session.digital.super_cost < most_cost);
}

}  // namespace

void sub_super(Session& session, const Message& m, const PartDecoder& decode_part, Text& out) {
    const std::size_t begin = out.size();
    const Walk walk(session.digital);
    out.add("super message\n");
    if (walk.followed()) walk_parts(session, m, decode_part, begin, out);
    if (walk.inside_another()) {
        session.digital.super_message = out.from(begin);
        session.digital.super_ended = true;
    }
}

}  // namespace ztdecode
