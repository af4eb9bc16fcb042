#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "core/carrying.hpp"
#include "core/message.hpp"
#include "core/remembered.hpp"
#include "core/text.hpp"

struct ztdecode_property_record;

namespace ztdecode {

class Decoding;
class Trail;

// What decoding writes beside the text. The process-wide session of the C interface prints it on the two
// standard streams, the command does with it what its options say.
class SideChannel {
  public:
    SideChannel() = default;
    SideChannel(const SideChannel&) = delete;
    SideChannel& operator=(const SideChannel&) = delete;
    virtual ~SideChannel() = default;

    // Asked before a longer text is made for standard_output.
    virtual bool shows_output() const { return true; }
    virtual void standard_output(std::string_view text) = 0;
    virtual void standard_error(std::string_view text) = 0;
    // Where the captured message stands in its trace.
    virtual std::uint64_t place() const { return 0; }
};

// The text of the object protocol as a host reads it, message by message.
class ApplicationText {
  public:
    ApplicationText() = default;
    ApplicationText(const ApplicationText&) = delete;
    ApplicationText& operator=(const ApplicationText&) = delete;
    virtual ~ApplicationText() = default;

    // Makes it this and nothing else.
    virtual void set(std::string_view text) = 0;
    // Appends what was written in small pieces.
    virtual void add(std::string_view text) = 0;
    // Appends one item, which may be cut when it is very long.
    virtual void add_item(std::string_view item) = 0;
};

struct Switches {
    bool color = false;       // wrap each decoded text in the colour of its direction
    bool audio_only = false;  // drop every message that is not an audio message
    bool debug = false;       // entry traces on the side channel's standard output
    // What the codes of a colour begin with. No text holds a zero: where it stands in place of the escape
    // character, no bytes of a message can be taken for a colour.
    char color_escape = '\033';
};

// A message that is being put together from segment messages of the digital-set link.
struct Reassembly {
    std::array<std::uint8_t, message_capacity> bytes{};  // stays as it is between messages
    std::uint32_t length = 0;                            // announced by the first segment
    std::uint32_t gathered = 0;                          // where the next segment's bytes go
    std::int32_t segments = 0;                           // announced number of segments
    std::uint32_t to_come = 0;                           // of them, as the last one said
    std::uint64_t last_place = 0;                        // of that one in the trace
    std::uint32_t direction = 0;                         // of the first segment
    std::vector<std::uint64_t> places;                   // of the segments in the trace, when somebody asks
    // Of the bytes, those below the first number were written since somebody asked; others were looked at.
    std::uint32_t written = 0;
    bool stale_looked_at = false;
};

// What the modules' messages say for later ones.
struct Modules {
    // Type of the module at each sub-device address: written by a sub-device message of the set, 31 after its
    // reset.
    std::array<Remembered<std::uint8_t>, 8> types;
    // Announced number of segments of the S0 modules' messages, one total for each direction.
    Remembered<std::int32_t> s0_to_system_total;
    Remembered<std::int32_t> s0_from_system_total;
};

struct DigitalState {
    Modules modules;
    Remembered<Reassembly> reassembly;
    // Device list of the last audio configuration; shows again where a list is empty.
    Remembered<std::string> audio_devices;
};

struct IpState {
    // Text of the last record item: what item 4 repeats, across messages too.
    Remembered<std::string> record_item;
};

struct HeState {
    // Text of the last window command: an unknown command appends to it.
    Remembered<std::string> window_command;
};

// Object-protocol frames in segments.
struct ObjectSegments {
    bool operator==(const ObjectSegments&) const = default;

    std::vector<std::uint8_t> bytes;  // gathered so far; what a series claims but never sent is 0
    std::uint32_t filled = 0;         // how many the series has, also where they are too many to be kept
    std::uint32_t payload = 0;        // payload length of the first segment: every middle one counts as long
    bool expects_first = true;
    std::string last_command_text;  // " %02X" of each byte of the last whole series
};

struct ObjectState {
    // Current class's table, set by every class look-up.
    Remembered<const ztdecode_property_record*> properties;
    Remembered<ObjectSegments> segments;
    // Becomes the text of each object-protocol message once that is whole, or ends with the error line of an
    // unknown class. Null: nobody reads it.
    ApplicationText* application = nullptr;
};

enum class Outcome {
    decoded,
    unknown_class,  // an object-protocol message names a class that does not exist; the text ends with the
                    // error line
};

// Everything that messages teach later ones.
struct Memory {
    DigitalState digital;
    IpState ip;
    HeState he;
    ObjectState object;

    // What happens from here on is noted anew.
    void forget_uses() noexcept;
    // `from` and `to`: the memory before and behind some messages, which were noted. Whether they would have
    // said the same in this memory; and what they leave then.
    bool would_say_the_same(const Memory& from, const Memory& to) const;
    void learn(const Memory& to);

  protected:
    // With each thing that is remembered, in all of these memories.
    template <class Action, class... Memories>
    static void each_remembered(Action action, Memories&... memories) {
        for (std::size_t k = 0; k < std::tuple_size_v<decltype(Modules::types)>; ++k)
            action(memories.digital.modules.types[k]...);
        action(memories.digital.modules.s0_to_system_total...);
        action(memories.digital.modules.s0_from_system_total...);
        action(memories.digital.reassembly...);
        action(memories.digital.audio_devices...);
        action(memories.ip.record_item...);
        action(memories.he.window_command...);
        action(memories.object.properties...);
        action(memories.object.segments...);
    }
};

// Everything that survives a message. Decoders keep nothing anywhere else, so sessions can decode side by
// side, each on a thread of its own.
struct Session : Memory {
    Switches switches;
    SideChannel* side = nullptr;  // null: side output is dropped
    Carrying carrying;
    Trail* trail = nullptr;  // set by who wants to know what a text says and where it comes from

    // The ways to write to what is remembered: to a part of it, or over all of it.
    template <class T>
    T& change(Remembered<T>& item) {
        changed_ = true;
        return item.change();
    }
    template <class T>
    T& set_anew(Remembered<T>& item) {
        changed_ = true;
        return item.set_anew();
    }

    bool shows_output() const { return side != nullptr && side->shows_output(); }
    void standard_output(std::string_view text) const {
        if (side != nullptr) side->standard_output(text);
    }
    void standard_error(std::string_view text) const {
        if (side != nullptr) side->standard_error(text);
    }

    // What is wrong with a message, as far as the budget of complaints goes.
    template <class Format, class... Args>
    void complain(const Format& format, const Args&... args) {
        if (carrying.complaints >= Carrying::most_complaints) return;
        const std::string text = formatted(format, args...);
        carrying.used = true;
        carrying.complaints += text.size();
        if (carrying.complaints <= Carrying::most_complaints) standard_error(text);
    }

    // The process ends inside a message; exit handlers may hand over others.
    void let_go() noexcept;

  private:
    friend class Captured;
    bool in_captured_ = false;
    bool changed_ = false;    // since the outermost one began
    bool cut_short_ = false;  // one inside it ended for want of memory
};

// Captured messages on their way through the decoders, from before the first byte is looked at until the text
// is where it should be: one message, or a call with several, each of which has one of its own inside. They
// become the session's memory all together or not at all. Each message has a budget of its own, but for those
// that a host's decoder hands over while it decodes a part of another.
class Captured {
  public:
    Captured(Session& session, const Text& out) noexcept
        : session_(session), outermost_(!session.in_captured_) {
        Carrying& carrying = session.carrying;
        if (!outermost_) enter_another();
        session.in_captured_ = true;
        carrying.text = &out;
        carrying.text_begin = out.size();
    }
    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;
    ~Captured() {
        if (!outermost_) {
            leave_to_another();
            return;
        }
        session_.in_captured_ = false;
        session_.carrying.text = nullptr;
        if (session_.changed_ || session_.cut_short_ || session_.carrying.used) settle();
    }

    // What was taught stays. Otherwise it is as if nothing had been handed over, and so it is for the outer
    // one, too: std::bad_alloc is thrown when one inside this one was not done.
    void done() {
        if (outermost_ && session_.cut_short_) throw std::bad_alloc();
        done_ = true;
    }

  private:
    void enter_another() noexcept;
    void leave_to_another() noexcept;
    void settle() noexcept;

    Session& session_;
    bool outermost_;
    bool done_ = false;
    // Of the one that this one is in.
    const Text* outer_text_;
    std::size_t outer_begin_;
};

// One message that another one carries, while it is decoded; false where the budget has no room for it.
class Carried {
  public:
    explicit Carried(Session& session) noexcept
        : carrying_(session.carrying),
          has_room_(carrying_.levels < Carrying::most_levels && carrying_.has_room()) {
        ++carrying_.levels;
    }
    Carried(const Carried&) = delete;
    Carried& operator=(const Carried&) = delete;
    ~Carried() { --carrying_.levels; }

    explicit operator bool() const noexcept { return has_room_; }

  private:
    Carrying& carrying_;
    bool has_room_;
};

// Thrown where a message cannot be decoded any further; `decode` below turns it into an Outcome.
struct UnknownClass {};

// Drops the first n bytes of the message, or all with a complaint on standard error when it has fewer.
// `m` must outlive the result.
Message decale(Session& session, const Message& m, std::uint32_t n);

// The way in: decodes one captured message, behind what `out` holds.
Outcome decode(Session& session, const Message& m, Text& out);

// The way in again, for decoders whose message carries another one.
// A message as it was captured: a super message or a single one, with its colour.
void decode_carried(Decoding& d);
// One single message: its route's prefix and text.
void dispatch_message(Decoding& d);

}  // namespace ztdecode
