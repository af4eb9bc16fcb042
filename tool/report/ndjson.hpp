#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/record.hpp"
#include "core/text.hpp"
#include "tool/output/output.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// What a trace says as JSON, one object a line (docs/record.schema.json).
class NdjsonReport final : public Report {
  public:
    struct Options {
        bool words = false;           // each word with its bytes, and what there is to know of each field
        bool column_numbers = false;  // the columns in front of a message are a number
        bool only_texts = false;      // leave out the messages without a text
    };
    // Where the output goes to a terminal, all characters beyond ASCII are escapes.
    NdjsonReport(std::string_view file, const Options& options, Output& out);
    NdjsonReport(const NdjsonReport&) = delete;
    NdjsonReport& operator=(const NdjsonReport&) = delete;
    ~NdjsonReport() override;

    std::optional<Trail::What> notes() const override;
    void other(std::uint64_t number, std::string_view line, bool newline) override;
    void begin_line(Line line) override;
    void begin_bytes(std::span<const std::uint8_t> bytes) override;
    Text& begin_message(const CapturedMessage& captured) override;
    void trace(std::uint64_t number, std::string_view words) override;
    void message(const Said& said) override;
    void unfinished(const Said& said, Text& why) override;
    void refused(std::uint64_t number, Line line, const Refusal& refusal) override;
    void end_line(std::uint64_t number, Line line) override;
    bool let_out(std::size_t besides) override;
    bool can_be_told_in_pieces() const override { return true; }
    void no_memory() override;
    bool end(const LineTotals& /*totals*/, std::uint64_t /*cut*/) override { return true; }

  private:
    friend class FieldsAsJson;
    class Writer;

    void content(std::string_view kind, std::uint64_t number, std::string_view words);

    Options options_;
    Output& out_;
    std::unique_ptr<Writer> writer_;
    Record record_;
    Text decoded_;           // the text of a message
    bool said_ = false;      // an object for the line has been written
    std::size_t begin_ = 0;  // of the object in the output
    // What the objects begin with.
    std::string message_;
    std::string refused_;
    std::string other_;
    std::string trace_;
};

// The values of a message as one JSON object, as they stand in its record.
class FieldsAsJson {
  public:
    FieldsAsJson();
    FieldsAsJson(const FieldsAsJson&) = delete;
    FieldsAsJson& operator=(const FieldsAsJson&) = delete;
    ~FieldsAsJson();

    // Valid until the next call.
    std::string_view of(const Record& record, const Record::Part& part);

  private:
    Text text_;
    std::unique_ptr<NdjsonReport::Writer> writer_;
};

// A string with its quotes and escapes; `ascii`: all characters beyond that are escapes. A byte that is no
// UTF-8 becomes U+FFFD.
void add_json_string(std::string_view words, bool ascii, Text& out);

}  // namespace ztdecode::tool
