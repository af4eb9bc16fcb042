#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/message.hpp"
#include "core/record.hpp"
#include "core/text.hpp"
#include "decode/readers.hpp"

namespace ztdecode::tool {

// Where a message stands in its trace: the line, or in a binary file its number.
struct Place {
    std::uint64_t line = 0;
    std::string_view columns{};  // what stands in front of it
    bool has_columns = false;    // in this layout something does
};

// What a trace says as JSON, one object a line (docs/record.schema.json).
class NdjsonReport {
  public:
    // `words`: each word with its bytes, and what there is to know of each field. `ascii`: all other
    // characters as escapes, for terminals.
    NdjsonReport(std::string_view file, bool words, bool ascii, Text& out);
    NdjsonReport(const NdjsonReport&) = delete;
    NdjsonReport& operator=(const NdjsonReport&) = delete;
    ~NdjsonReport();

    // `padded`: so many bytes were filled up.
    void message(const Place& place, const Trail& trail, std::string_view text, const Message& m,
                 Outcome outcome, std::uint64_t padded);
    void refused(std::uint64_t line, const Refusal& refusal, std::string_view content);
    // Any line that is no trace line; what decoders trace on the side.
    void other(std::uint64_t line, std::string_view content);
    void trace(std::uint64_t line, std::string_view content);

  private:
    class Writer;

    bool words_;
    std::unique_ptr<Writer> writer_;
    Record record_;
    // What the objects begin with.
    std::string message_;
    std::string refused_;
    std::string other_;
    std::string trace_;
};

}  // namespace ztdecode::tool
