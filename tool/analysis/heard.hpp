#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "core/record.hpp"
#include "decode/trace_lines.hpp"

namespace ztdecode::tool {

// Microseconds since the first message of a trace that has a time. A time of day goes on behind midnight.
class TraceClock {
  public:
    // `unit`: microseconds that the columns in front of messages count in, 0 where they are no such count.
    explicit TraceClock(std::int64_t unit) noexcept : unit_(unit) {}
    // None where the trace gives none; the same for all parts of a message.
    std::optional<std::int64_t> at(const CapturedMessage& captured);

  private:
    std::int64_t unit_;
    std::optional<std::int64_t> last_;
    std::int64_t since_first_ = 0;
};

// When something was said: its time, where times are known, and how many messages there were before it.
struct Moment {
    std::optional<std::int64_t> time;  // microseconds
    std::uint64_t number = 0;
};

// The values of one message, the captured one or one that it carries.
class Values {
  public:
    Values(const Record& record, const Record::Part& part) noexcept : record_(record), part_(part) {}

    // The first value of this name; null where there is none.
    const NotedValue* find(FieldName name) const noexcept;
    // Its number, or the code of its word.
    std::optional<std::int64_t> number(FieldName name) const noexcept;
    // As the text shows it, without the punctuation around it; empty where there is none.
    std::string_view shown(FieldName name) const noexcept;
    // Of several names with commas between them the one that the message has.
    std::string_view shown_of(std::string_view names) const noexcept;
    // Whether it stands in bytes of this message, and is not what an earlier one said.
    bool said_here(FieldName name) const noexcept;

    const Record& record() const noexcept { return record_; }
    const Record::Part& part() const noexcept { return part_; }

  private:
    std::string_view shown(const NotedValue& value) const noexcept;

    const Record& record_;
    const Record::Part& part_;
};

}  // namespace ztdecode::tool
