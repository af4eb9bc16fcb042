#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/record.hpp"
#include "tool/redact/kinds.hpp"
#include "tool/redact/stand_ins.hpp"

namespace ztdecode::tool {

// A message on its way to what is shown in its place.
struct HiddenMessage {
    std::vector<std::uint8_t> before;
    std::vector<std::uint8_t> bytes;  // with stand-ins
    std::uint32_t direction = 0;
    std::uint64_t place = 0;  // of its line
    std::string_view link{};  // of the captured message
    std::string_view name{};
    Session* session = nullptr;       // of those who get `bytes`
    std::string said{};               // all that is not hidden
    std::vector<bool> hidden{};       // of its values
    std::uint32_t since = 0;          // first of the messages that hold what it says: itself, or segments
    std::vector<ByteRange> put_by{};  // for a message in segments that has not come together
};

// A byte of one of several messages.
struct Spot {
    std::uint32_t message;
    std::uint32_t offset;
};

// Bytes that something stands in for.
struct Edit {
    enum class Form : std::uint8_t { text, typed, half_bytes, address, bytes, blank_text, blank };
    Hidden kind;
    Form form;
    std::vector<Spot> spots;
    std::string before{};  // of a typed character: those that were typed in front of it
    std::string_view link{};
    std::string_view name{};

    // What cannot be judged is hidden although it may be nothing; a value is something.
    bool is_value() const noexcept { return form != Form::blank || kind == Hidden::secret; }
    unsigned attempts() const noexcept;
    void apply(std::vector<HiddenMessage>& messages, const StandIns& stand_ins, unsigned attempt) const;
    void take_back(std::vector<HiddenMessage>& messages) const;
};

// What is typed character by character, a message each, by who types it.
class Typing {
  public:
    // The characters in front of this one, which is behind them from now on.
    std::string before(const std::string& who, char character);
    void ends(const std::string& who) { rows_.erase(who); }
    void message() noexcept { ++messages_; }

  private:
    struct Row {
        std::string typed;
        std::uint64_t last;
    };
    std::map<std::string, Row, std::less<>> rows_;
    std::uint64_t messages_ = 0;
};

// Finds what is hidden in the last one of the messages, whose trail this is, and in those before it whose
// segments it puts together.
class HiddenValues {
  public:
    HiddenValues(const Trail& trail, std::vector<HiddenMessage>& messages, const Kept& kept, Typing& typing,
                 std::vector<Edit>& edits);
    void find();

  private:
    // Bytes that offsets count in: of the captured message, or of one that was put together.
    struct Source {
        std::uint32_t message;  // in the trail
        std::vector<Spot> spots;
        std::vector<bool> there;    // in a message that is still at hand
        std::vector<bool> claimed;  // by a value that is hidden
        std::vector<bool> used;     // by anything
    };
    Source& source_of(std::uint32_t message);
    void make_sources();
    void map_segments(Source& source, const NotedMessage& whole);
    void claim(const NotedValue& value);
    void mark_hidden();
    void hide_unread(Source& source);
    bool is_unknown(const Source& source, std::uint32_t offset) const;
    std::string typist(std::uint32_t message) const;
    void listen_for_ends();

    const Trail& trail_;
    std::vector<HiddenMessage>& messages_;
    const Kept& kept_;
    Typing& typing_;
    std::vector<Edit>& edits_;
    std::vector<Source> sources_;
};

// What is said in a message but for the values that are hidden: the same when their bytes are others.
std::string what_is_said(const Record& record, Outcome outcome, std::string_view text,
                         const std::vector<bool>& hidden);

// The bytes of the captured message that are put together with others. (Those of a first segment have the
// length of the whole message in front of them, which is put by, too.)
std::vector<ByteRange> bytes_of_segments(const Trail& trail);

// Bytes that were put by for a message whose end never came, or came too late: nobody knows what they say.
void hide_put_by(std::vector<HiddenMessage>& messages, std::vector<Edit>& edits);

}  // namespace ztdecode::tool
