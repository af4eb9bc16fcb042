#include "digital/options/super.hpp"

#include <bitset>
#include <forward_list>
#include <utility>

namespace ztdecode::modules {

namespace {

// One super message among those that are being walked inside each other.
class Nesting {
  public:
    explicit Nesting(Carrying& carrying)
        : carrying_(carrying), emulation_(std::exchange(carrying.emulation, {})) {
        ++carrying_.module_super.depth;
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() {
        --carrying_.module_super.depth;
        carrying_.emulation = emulation_;
    }

    bool followed() const { return carrying_.module_super.depth <= Carrying::deepest_module_super; }
    bool inside_another() const { return carrying_.module_super.depth > 1; }

  private:
    Carrying& carrying_;
    // A set emulation in a part is one of its own: the text goes on behind it.
    Carrying::Emulation emulation_;
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
    Walk(Decoding& d, HostPartDecoder decode_part, void* host)
        : d_(d), decode_part_(decode_part), host_(host), begin_(d.out().size()) {}

    void run();

  private:
    void write_line(const Message& part);
    void put_inner_text_first(std::size_t part_begin);

    Decoding& d_;
    HostPartDecoder decode_part_;
    void* host_;
    std::size_t begin_;  // of this super message's text
};

// All super messages write to one place: when the part was a super message, or carried one, the inner text
// stands there in place of what this one had written so far, and the part's text behind it. (Not inlined:
// those that are walked inside each other do not need its stack.)
[[gnu::noinline]] void Walk::put_inner_text_first(std::size_t part_begin) {
    Carrying& carrying = d_.session().carrying;
    Text& out = d_.out();
    Trail* const trail = d_.trail();
    const std::string& inner_text = carrying.module_super.text;
    const std::string part_text(out.from(part_begin));
    Trail::Notes inner;
    Trail::Notes part;
    if (trail != nullptr) {
        const std::size_t inner_begin = carrying.module_super.begin;
        inner = trail->notes(inner_begin, inner_begin + inner_text.size());
        part = trail->notes(part_begin, out.size());
    }
    carrying.use_text((out.size() - begin_) / Carrying::written_over_for_one);
    d_.cut(begin_);
    out.add(inner_text);
    out.add(part_text);
    if (trail != nullptr) {
        trail->put(inner, begin_);
        trail->put(part, begin_ + inner_text.size());
    }
}

void Walk::write_line(const Message& part) {
    Carrying& carrying = d_.session().carrying;
    const Decoding::Scope scope(d_);
    if (d_.trail() != nullptr) d_.trail()->walk(part, {1, 1});
    d_.add("\t\t- ");
    const std::size_t part_begin = d_.out().size();
    carrying.module_super.ended = false;
    {
        Decoding carried(d_, part);
        carried.route = d_.route;
        carried.link("digital");
        decode_part_(carried, host_);
    }
    if (carrying.module_super.ended && carrying.has_room_for(carrying.module_super.text.size())) {
        put_inner_text_first(part_begin);
    }
    d_.add("\n");
}

void Walk::run() {
    Session& session = d_.session();
    // The message without ever more of its first bytes, the shortest in front.
    std::forward_list<Message> copies;
    const Message* copy = &copies.emplace_front(decale(session, d_.message(), 1));
    Remaining remaining(copy->length());
    std::uint32_t length = 0;
    do {
        const Carried level(session);
        if (!level) return;
        session.carrying.use_text(Carrying::text_of_module_part);
        const Message from_length = decale(session, *copy, 1);
        length = from_length[1];
        write_line(from_length.with_length(length + 2));
        const Message rest = decale(session, *copy, length + 1);
        // An empty copy stays as it is.
        if (copy->length() != 0) copy = &copies.emplace_front(rest);
    } while (remaining.goes_on_without(length + 1, copy->length() == 0));
}

void decode_with_module(Decoding& part, void* decoder) { (*static_cast<PartDecoder*>(decoder))(part); }

}  // namespace

void super_message(Decoding& d, PartDecoder decode_part) {
    super_message(d, decode_with_module, &decode_part);
}

void super_message(Decoding& d, HostPartDecoder decode_part, void* host) {
    Carrying& carrying = d.session().carrying;
    const std::size_t begin = d.out().size();
    const Nesting nesting(carrying);
    Walk walk(d, decode_part, host);
    d.add("super message\n");
    if (nesting.followed()) walk.run();
    if (nesting.inside_another()) {
        carrying.module_super.text = d.out().from(begin);
        carrying.module_super.begin = begin;
        carrying.module_super.ended = true;
    }
}

}  // namespace ztdecode::modules
