#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "core/session.hpp"
#include "core/trail.hpp"
#include "fuzz/bounds.hpp"

// Messages as sessions see them one after the other, and what holds for every one of them.

namespace ztdecode::fuzz {

// Counts what is written on the side.
class Counted : public SideChannel {
  public:
    void standard_output(std::string_view text) override { output += text.size(); }
    void standard_error(std::string_view text) override { complaints += text.size(); }

    std::size_t output = 0;
    std::size_t complaints = 0;
};

// What `work` costs that writes to this text.
template <class Work>
Cost cost_of(const Text& text, const Counted& side, Work work) {
    const Cost before = {text.size(), side.output, side.complaints, processor_seconds()};
    work();
    return {text.size() - before.text, side.output - before.output, side.complaints - before.complaints,
            processor_seconds() - before.seconds};
}

struct CapturedMessage {
    Switches switches;
    std::uint32_t direction = from_dhs;
    std::vector<std::uint8_t> bytes;
};

// A session, and what it said of the last message.
class Decoder {
  public:
    explicit Decoder(Trail* trail = nullptr) : session_(std::make_unique<Session>()) {
        session_->side = &side_;
        session_->trail = trail;
    }

    void decode(const CapturedMessage& message) {
        session_->switches = message.switches;
        Message m(message.bytes);
        m.direction = message.direction;
        text.clear();
        cost = cost_of(text, side_, [&] { outcome = ztdecode::decode(*session_, m, text); });
    }

    Text text;
    Outcome outcome = Outcome::decoded;
    Cost cost;

  private:
    std::unique_ptr<Session> session_;
    Counted side_;
};

// Two sessions that see the same messages, one of them asking where the words come from.
class TwoSessions {
  public:
    // What does not hold of this message; nothing when all does.
    std::string_view decode(const CapturedMessage& message) {
        one_.decode(message);
        other_.decode(message);
        for (const Decoder* decoder : {&one_, &other_}) {
            const std::string_view bound = exceeded(decoder->cost, message.bytes.size());
            if (!bound.empty()) return bound;
        }
        if (text().find('\0') != std::string_view::npos) return "the text is a C string";
        if (text() != other_.text.view()) return "both sessions write the same text";
        if (one_.outcome != other_.outcome) return "both sessions end alike";
        if (one_.cost.output != other_.cost.output || one_.cost.complaints != other_.cost.complaints) {
            return "both sessions write as much beside the text";
        }
        return in_order() ? std::string_view() : "stretches follow each other to the end of the text";
    }

    std::string_view text() const { return one_.text.view(); }
    Cost cost() const {
        Cost both = one_.cost;
        return both += other_.cost;
    }

  private:
    bool in_order() const {
        std::size_t at = 0;
        for (const Stretch& s : trail_.stretches()) {
            if (s.begin < at || s.end < s.begin) return false;
            at = s.end;
        }
        return at <= other_.text.size();
    }

    Trail trail_;
    Decoder one_;
    Decoder other_{&trail_};
};

}  // namespace ztdecode::fuzz
