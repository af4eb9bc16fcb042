#include "digital/options/super.hpp"

#include <bitset>
#include <forward_list>

namespace ztdecode {

namespace {

// One super message among those that are being walked inside each other.
class Nesting {
  public:
    explicit Nesting(Carrying& carrying)
        : carrying_(carrying),
          emulation_open_(carrying.emulation_open),
          emulation_inside_(carrying.emulation_inside) {
        ++carrying_.module_super_depth;
        carrying_.emulation_open = carrying_.emulation_inside = false;
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() {
        --carrying_.module_super_depth;
        carrying_.emulation_open = emulation_open_;
        carrying_.emulation_inside = emulation_inside_;
    }

    bool followed() const { return carrying_.module_super_depth <= Carrying::deepest_module_super; }
    bool inside_another() const { return carrying_.module_super_depth > 1; }

  private:
    Carrying& carrying_;
    // A set emulation in a part is one of its own: the text goes on behind it.
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

class Walk {
  public:
    Walk(Session& session, const PartDecoder& decode_part, Text& out)
        : session_(session), decode_part_(decode_part), out_(out), begin_(out.size()) {}

    void run(const Message& m);

  private:
    void write_line(const Message& part);
    void put_inner_text_first(const Message& /*part*/, std::size_t part_begin);

    Session& session_;
    const PartDecoder& decode_part_;
    Text& out_;
    std::size_t begin_;  // of this super message's text
};

// All super messages write to one place: when the part was a super message, or carried one, the inner text
// stands there in place of what this one had written so far, and the part's text behind it.
void Walk::put_inner_text_first(const Message& /*part*/, std::size_t part_begin) {
    Carrying& carrying = session_.carrying;
    const std::string part_text(out_.from(part_begin));
    carrying.use_text((out_.size() - begin_) / Carrying::written_over_for_one);
    out_.cut(begin_);
    out_.add(carrying.module_super_text);
    out_.add(part_text);
}

void Walk::write_line(const Message& part) {
    Carrying& carrying = session_.carrying;
    out_.add("\t\t- ");
    const std::size_t part_begin = out_.size();
    carrying.module_super_ended = false;
    decode_part_(session_, part, out_);
    if (carrying.module_super_ended && carrying.has_room_for(carrying.module_super_text.size())) {
        put_inner_text_first(part, part_begin);
    }
    out_.add("\n");
}

void Walk::run(const Message& m) {
    // The message without ever more of its first bytes, the shortest in front.
    std::forward_list<Message> copies;
    const Message* copy = &copies.emplace_front(decale(session_, m, 1));
    Remaining remaining(copy->length());
    std::uint32_t length = 0;
    do {
        const Carried level(session_);
        if (!level) return;
        session_.carrying.use_text(Carrying::text_of_module_part);
        const Message from_length = decale(session_, *copy, 1);
        length = from_length[1];
        write_line(from_length.with_length(length + 2));
        const Message rest = decale(session_, *copy, length + 1);
        // An empty copy stays as it is.
        if (copy->length() != 0) copy = &copies.emplace_front(rest);
    } while (remaining.goes_on_without(length + 1, copy->length() == 0));
}

}  // namespace

void sub_super(Session& session, const Message& m, const PartDecoder& decode_part, Text& out) {
    Carrying& carrying = session.carrying;
    const std::size_t begin = out.size();
    const Nesting nesting(carrying);
    Walk walk(session, decode_part, out);
    out.add("super message\n");
    if (nesting.followed()) walk.run(m);
    if (nesting.inside_another()) {
        carrying.module_super_text = out.from(begin);
        carrying.module_super_ended = true;
    }
}

}  // namespace ztdecode
