#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/message.hpp"
#include "core/provenance.hpp"
#include "core/text.hpp"

struct ztdecode_property_record;

namespace ztdecode {

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
    std::uint32_t route = 0;                             // both of the first segment
    std::uint32_t direction = 0;
    unsigned depth = 0;  // reassembled messages that are being decoded inside each other right now
};

struct DigitalState {
    // Type of the module at each sub-device address: written by a sub-device message of the set, 31 after its
    // reset.
    std::array<std::uint8_t, 8> option_type{};
    Reassembly reassembly;
    std::string
        audio_devices;  // device list of the last audio configuration; shows again where a list is empty
    // Announced number of segments of the S0 modules' messages, one total for each direction.
    std::int32_t s0_to_system_total = 0;
    std::int32_t s0_from_system_total = 0;
    // Super messages of modules. All of them write to one place, so that an inner one writes over the outer
    // one's text.
    unsigned super_depth = 0;          // those being walked inside each other right now
    std::size_t super_cost = 0;        // of the outermost one and all inside it so far
    std::size_t super_complaints = 0;  // characters that they wrote to standard error
    bool super_ended = false;          // one ended inside the part that was decoded last
    std::string super_message;         // the text of the inner one that ended last
    // A set emulation of a module is being decoded, and it turned out to carry another one.
    bool emulation_open = false;
    bool emulation_inside = false;
};

struct IpState {
    std::string record_item;  // text of the last record item: what item 4 repeats, across messages too
};

struct HeState {
    std::string window_command;  // text of the last window command: an unknown command appends to it
};

// Object-protocol frames in segments.
struct ObjectSegments {
    std::vector<std::uint8_t> bytes;  // gathered so far; what a series claims but never sent is 0
    std::uint32_t filled = 0;         // how many the series has, also where they are too many to be kept
    std::uint32_t payload = 0;        // payload length of the first segment: every middle one counts as long
    bool expects_first = true;
    std::string last_command_text;  // " %02X" of each byte of the last whole series
};

struct ObjectState {
    const ztdecode_property_record* properties =
        nullptr;  // current class's table, set by every class look-up
    ObjectSegments segments;
    // Called with the text of each object-protocol message of the CS and PRS routes once it is whole, or ends
    // with the error line of an unknown class.
    void (*on_decoded)(std::string_view text) = nullptr;
};

enum class Outcome {
    decoded,
    unknown_class,  // an object-protocol message names a class that does not exist; the text ends with the
                    // error line
};

// Everything that survives a message. Decoders keep nothing anywhere else, so sessions can decode side by
// side, each on a thread of its own.
struct Session {
    Switches switches;
    SideChannel* side = nullptr;  // null: side output is dropped
    DigitalState digital;
    IpState ip;
    HeState he;
    ObjectState object;
    Provenance* provenance = nullptr;  // set by who wants to know which bytes each stretch of text came from

    bool shows_output() const { return side != nullptr && side->shows_output(); }
    void standard_output(std::string_view text) const {
        if (side != nullptr) side->standard_output(text);
    }
    void standard_error(std::string_view text) const {
        if (side != nullptr) side->standard_error(text);
    }
};

// Thrown where a message cannot be decoded any further; `decode` below turns it into an Outcome.
struct UnknownClass {};

// Drops the first n bytes of the message, or all with a complaint on standard error when it has fewer.
// `m` must outlive the result.
Message decale(const Session& session, const Message& m, std::uint32_t n);

// The way in: decodes one captured message, behind what `out` holds.
Outcome decode(Session& session, Message& m, Text& out);

// The way in again, for decoders whose message carries another one. Both are the dispatcher's.
// A message as it was captured: a super message or a single one, with its colour.
void decode_carried(Session& session, Message& m, Text& out);
// One single message: its route's prefix and text.
void dispatch_message(Session& session, Message& m, Text& out);

}  // namespace ztdecode
