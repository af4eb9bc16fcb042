#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/message.hpp"
#include "core/record.hpp"
#include "core/text.hpp"
#include "decode/readers.hpp"

namespace ztdecode::tool {

// Where a line stands in its trace, or a message in a binary file.
struct Place {
    std::string_view file;
    std::uint64_t line = 0;
    std::string_view columns{};  // what stands in front of the message; none where the layout has no such
    bool has_columns = false;
};

// What a trace says as JSON, one object a line (docs/record.schema.json).
class NdjsonReport {
  public:
    // `words`: each word with its bytes, and what there is to know of each field. `ascii`: all other
    // characters as escapes, for terminals.
    NdjsonReport(bool words, bool ascii, Text& out) : words_(words), ascii_(ascii), out_(out) {}

    // `padded`: so many bytes were filled up.
    void message(const Place& place, const Trail& trail, std::string_view text, const Message& m,
                 Outcome outcome, std::uint64_t padded);
    void refused(const Place& place, const Refusal& refusal, std::string_view content);
    // Any line that is no trace line; what decoders trace on the side.
    void other(const Place& place, std::string_view content);
    void trace(const Place& place, std::string_view content);

  private:
    bool words_;
    bool ascii_;
    Text& out_;
    Record record_;
};

}  // namespace ztdecode::tool
