#include "digital/options/super.hpp"

#include <bitset>
#include <forward_list>

namespace ztdecode {

namespace {

constexpr unsigned deepest = 12;
constexpr std::size_t part_cost = 1024;
constexpr std::size_t most_cost = std::size_t{64} << 20;
constexpr std::size_t longest_twice = std::size_t{1} << 20;
constexpr std::size_t most_complaints = std::size_t{1} << 20;

// One super message among those that are being walked inside each other.
class Nesting {
  public:
    explicit Nesting(DigitalState& digital)
        : digital_(digital),
          emulation_open_(digital.emulation_open),
          emulation_inside_(digital.emulation_inside) {
        if (digital_.super_depth++ == 0) digital_.super_cost = digital_.super_complaints = 0;
        digital_.emulation_open = digital_.emulation_inside = false;
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() {
        --digital_.super_depth;
        digital_.emulation_open = emulation_open_;
        digital_.emulation_inside = emulation_inside_;
    }

    bool followed() const { return digital_.super_depth <= deepest; }
    bool inside_another() const { return digital_.super_depth > 1; }

  private:
    DigitalState& digital_;
    // A set emulation in a part is one of its own: the text goes on behind it.
    bool emulation_open_;
    bool emulation_inside_;
};

// Lets through what is written on the side and remembers the complaints.
class Complaints : public SideChannel {
  public:
    explicit Complaints(Session& session)
        : session_(session), next_(session.side), outermost_(session.digital.super_depth == 1) {
        session_.side = this;
    }
    Complaints(const Complaints&) = delete;
    Complaints& operator=(const Complaints&) = delete;
    ~Complaints() override { session_.side = next_; }

    void standard_output(std::string_view text) override {
        if (next_ != nullptr) next_->standard_output(text);
    }
    void standard_error(std::string_view text) override {
        DigitalState& digital = session_.digital;
        if (next_ == nullptr || digital.super_complaints >= most_complaints) return;
        all_ += text;
        if (outermost_) digital.super_complaints += text.size();
        next_->standard_error(text);
    }

    std::size_t size() const { return all_.size(); }
    std::string from(std::size_t begin) const { return all_.substr(begin); }

  private:
    Session& session_;
    SideChannel* next_;
    bool outermost_;
    std::string all_;
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

// What a module's message can change for the next one.
struct Memory {
    explicit Memory(const DigitalState& digital)
        : option_type(digital.option_type),
          s0_to_system_total(digital.s0_to_system_total),
          s0_from_system_total(digital.s0_from_system_total) {}
    bool operator==(const Memory&) const = default;

    std::array<std::uint8_t, 8> option_type;
    std::int32_t s0_to_system_total;
    std::int32_t s0_from_system_total;
};

class Walk {
  public:
    Walk(Session& session, const PartDecoder& decode_part, bool asks_every_time, Text& out)
        : session_(session),
          decode_part_(decode_part),
          asks_every_time_(asks_every_time),
          out_(out),
          begin_(out.size()),
          complaints_(session) {}

    void run(const Message& m);

  private:
    void write_line(const Message& part);
    void put_inner_text_first(const Message& part, std::size_t part_begin);

    Session& session_;
    const PartDecoder& decode_part_;
    bool asks_every_time_;
    Text& out_;
    std::size_t begin_;  // of this super message's text
    Complaints complaints_;
};

// All super messages write to one place: when the part was a super message, or carried one, the inner text
// stands there in place of what this one had written so far, and the part's text behind it.
void Walk::put_inner_text_first(const Message& part, std::size_t part_begin) {
    const std::string part_text(out_.from(part_begin));
    out_.cut(begin_);
    if (session_.provenance != nullptr) {
        // What follows comes from the whole part.
        for (std::uint32_t k = 0; k < part.length(); ++k) static_cast<void>(part[k]);
    }
    out_.add(session_.digital.super_message);
    out_.add(part_text);
}

void Walk::write_line(const Message& part) {
    DigitalState& digital = session_.digital;
    out_.add("\t\t- ");
    const std::size_t part_begin = out_.size();
    digital.super_ended = false;
    decode_part_(session_, part, out_);
    digital.super_cost += part_cost + (out_.size() - part_begin);
    if (digital.super_ended && digital.super_message.size() <= longest_twice) {
        put_inner_text_first(part, part_begin);
    }
    out_.add("\n");
}

void Walk::run(const Message& m) {
    DigitalState& digital = session_.digital;
    // The message without ever more of its first bytes, the shortest in front.
    std::forward_list<Message> copies;
    const Message* copy = &copies.emplace_front(decale(session_, m, 1));
    Remaining remaining(copy->length());
    bool goes_on = true;
    do {
        const std::size_t line_begin = out_.size();
        const std::size_t complaints_begin = complaints_.size();
        const Memory memory(digital);
        const bool was_empty = copy->length() == 0;

        const Message from_length = decale(session_, *copy, 1);
        const std::uint32_t length = from_length[1];
        write_line(from_length.with_length(length + 2));
        const Message rest = decale(session_, *copy, length + 1);
        if (!was_empty) copy = &copies.emplace_front(rest);
        goes_on = remaining.goes_on_without(length + 1, copy->length() == 0);

        // An empty copy stays as it is, so that each further part says the same once nothing is left to
        // remember. (An inner text written over itself is itself again.)
        if (goes_on && was_empty && !asks_every_time_ && memory == Memory(digital)) {
            const std::string line(digital.super_ended ? "" : out_.from(line_begin));
            const std::string complaints = complaints_.from(complaints_begin);
            do {
                out_.add(line);
                complaints_.standard_error(complaints);
            } while (remaining.goes_on_without(length + 1, true));
            return;
        }
    } while (goes_on && digital.super_cost < most_cost);
}

void walk(Session& session, const Message& m, const PartDecoder& decode_part, bool asks_every_time,
          Text& out) {
    DigitalState& digital = session.digital;
    const std::size_t begin = out.size();
    const Nesting nesting(digital);
    Walk walk(session, decode_part, asks_every_time, out);
    out.add("super message\n");
    if (nesting.followed()) walk.run(m);
    if (nesting.inside_another()) {
        digital.super_message = out.from(begin);
        digital.super_ended = true;
    }
}

}  // namespace

void sub_super(Session& session, const Message& m, ModuleDecoder decode_part, Text& out) {
    walk(session, m, decode_part, false, out);
}

void sub_super_for_host(Session& session, const Message& m, const PartDecoder& decode_part, Text& out) {
    walk(session, m, decode_part, true, out);
}

}  // namespace ztdecode
