#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/session.hpp"
#include "core/trail.hpp"
#include "decode/readers.hpp"
#include "tool/display.hpp"
#include "tool/options.hpp"
#include "tool/progress.hpp"
#include "tool/report/ndjson.hpp"
#include "tool/streams.hpp"

namespace ztdecode::tool {

// Names a file that something is wrong with.
void complain_of_file(std::string_view name, std::string_view why, Output& diagnostics);

// Decodes one trace file with a session of its own.
class TraceDecoder : private SideChannel {
  public:
    // `name` is what diagnostics call the file.
    TraceDecoder(std::string name, const Options& options, const Display& display, Output& out,
                 Output& diagnostics);

    // Reads to the end, or until `out` cannot be written any more.
    void decode(int descriptor);

    bool refused_lines() const noexcept { return refused_; }
    bool unreadable() const noexcept { return unreadable_; }

  private:
    void decode_text(Input& input);
    void decode_binary(Input& input);

    void text_line(const Input::Next& next);
    bool plain_line(const Input::Next& next);
    void plain_text(Line line, const Message& m);
    void add_input(Line line);
    bool is_trace_line(Line line, Layout& layout) const;
    void trace_line(Line line, Layout layout);
    LineLayout line_layout(Layout layout) const;
    ReadResult read(Line line, LineLayout layout);
    Place place() const noexcept;
    template <class Read>
    void message(std::size_t begin, Read read);
    void finish_message(std::size_t begin, ReadResult result);
    void put_traces_above_text();
    void let_text_out();
    void refuse_for_memory();
    void finish_data(ReadResult result);
    Outcome decode_and_present(const Message& m);
    void present(const Message& m, Text& out);

    bool shows_output() const override { return options_.debug; }
    void standard_output(std::string_view text) override;
    void standard_error(std::string_view text) override;

    void complain(std::string_view why);
    void complaints_go_out();
    void message_done(const Input& input);

    std::string name_;
    const Options& options_;
    const Display& display_;
    Output& out_;
    Output& diagnostics_;
    Session session_;
    Trail trail_;
    bool plain_lines_;  // S/R lines may come
    bool presents_;     // texts go out in another form than they are decoded in
    bool text_only_;    // texts go out as they are decoded, and nothing else does
    LineReader reader_;
    std::optional<NdjsonReport> ndjson_;  // what the trace says, as data
    Line line_{"", 0};                    // the trace line
    std::string_view columns_;            // what stands in front of its message
    bool said_ = false;                   // an object for the line has been written
    std::optional<Progress> progress_;
    std::size_t text_ = 0;      // where the text of the line begins in the output
    bool partly_out_ = false;   // text of the line has gone out
    Text decoded_;              // the text of a message before it is presented
    std::string traced_;        // side output that is not in the output yet
    std::uint64_t number_ = 0;  // of the line, or of the message in a binary file
    bool complained_ = false;   // since the diagnostics were written out last
    bool refused_ = false;
    bool unreadable_ = false;
};

}  // namespace ztdecode::tool
