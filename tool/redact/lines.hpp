#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "decode/trace_lines.hpp"
#include "tool/redact/kinds.hpp"
#include "tool/redact/stand_ins.hpp"

namespace ztdecode::tool {

// A trace line as it is read, and as it is written again with other bytes.
class RedactedLine {
  public:
    struct Message {
        std::vector<std::uint8_t> bytes;
        std::uint32_t direction = 0;
        std::size_t column = 0;       // of its first byte in the line as it is read
        std::uint64_t announced = 0;  // bytes
    };

    // Reads the line; gives what it is. `reader` reads whole lines.
    LineVerdict read(TraceReader& reader, std::string_view line, std::uint64_t number);

    const std::vector<Message>& messages() const noexcept { return messages_; }
    std::uint64_t number() const noexcept { return number_; }
    const Refusal& refusal() const noexcept { return refusal_; }
    std::string_view text() const noexcept { return text_; }

    // Replaces what stands around its messages, but for what is kept. False where no stand-in keeps it a
    // trace line that says the same.
    bool hide_surroundings(TraceReader& reader, const StandIns& stand_ins, const Kept& kept);
    // Characters that were replaced of that kind.
    std::uint64_t hidden(Hidden kind) const noexcept;

    // The line with these bytes in place of its messages'.
    std::string with(const std::vector<const std::vector<std::uint8_t>*>& bytes) const;
    // Whether it reads as this one, but for the bytes of the messages, and has these.
    bool reads_alike(TraceReader& reader, std::string_view line,
                     const std::vector<const std::vector<std::uint8_t>*>& bytes) const;

  private:
    std::size_t body() const noexcept;
    void hide_front(const StandIns& stand_ins, const Kept& kept, unsigned attempt);
    void hide_rest(std::size_t column);
    std::size_t end_of_messages() const noexcept;
    bool stands(TraceReader& reader) const;
    void put(std::size_t column, char c, std::string& line) const;

    std::string text_;                  // as it came
    std::string front_;                 // what it becomes, but for its messages' bytes
    std::string usual_;                 // as it is read
    std::vector<std::size_t> columns_;  // where the characters of `usual_` stand in `text_`
    std::uint64_t number_ = 0;
    LineVerdict verdict_ = LineVerdict::no_trace_line;
    bool has_columns_ = false;
    std::size_t time_begin_ = 0;  // in `text_`
    std::size_t time_end_ = 0;
    std::uint64_t left_over_ = 0;
    std::size_t left_over_column_ = 0;
    std::vector<Message> messages_;
    Refusal refusal_;
    std::string shape_;  // all that the reader says of it but the bytes
    bool capitals_ = false;
    std::uint64_t prefix_hidden_ = 0;
    std::uint64_t rest_hidden_ = 0;
};

// The words of a line, all the same, and how many characters that were: blanks and signs stay, the mark of a
// comment too.
std::string blanked(std::string_view line, std::uint64_t& characters);

}  // namespace ztdecode::tool
