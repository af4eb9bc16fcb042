#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "core/record.hpp"
#include "ztdecode_session.h"

namespace ztdecode::api {

zt_string as_string(std::string_view s) noexcept;

// A record as a host gets it, with the ways to what it leads to.
struct HostRecord : zt_record {
    const zt_field* first_field;
    const zt_word* first_word;
    const HostRecord* const* first_part;
    const std::uint64_t* first_segment;
};

// The record of a message and those of its parts, in the form of the interface. Texts stay where they are.
class Records {
  public:
    // `words`: with them. `audio_only`: of what this leaves no text of, that is said.
    HostRecord& make(const Record& record, bool words, bool audio_only);

  private:
    void make_room(const Record& record, bool words);
    HostRecord host_record(const Record& record, const Record::Part& part, bool audio_only);
    void add_fields(const Record& record, const Record::Part& part, HostRecord& to);
    void add_words(const Record& record, const Record::Part& part, HostRecord& to);
    void add_parts(const Record& record, const Record::Part& part, HostRecord& to);
    zt_ranges add_ranges(std::span<const ByteRange> ranges, const Record::Part& part, const NotedMessage* of);
    const NotedMessage* source_of(const NotedMessage* noted) const noexcept;

    std::vector<HostRecord> records_;
    std::vector<zt_field> fields_;
    std::vector<zt_word> words_;
    std::vector<zt_range> ranges_;
    std::vector<const HostRecord*> parts_;
    std::vector<char> values_;  // those that do not stand in the text
    char* values_end_ = nullptr;
    // What the bytes of each noted message are bytes of: the captured one, or one that was put together.
    std::vector<std::uint32_t> sources_;
    const NotedMessage* first_noted_ = nullptr;
};

}  // namespace ztdecode::api
