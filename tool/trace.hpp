#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/session.hpp"
#include "decode/readers.hpp"
#include "tool/options.hpp"
#include "tool/progress.hpp"
#include "tool/streams.hpp"

namespace ztdecode::tool {

// Decodes one trace file with a session of its own.
class TraceDecoder : private SideChannel {
  public:
    // `name` is what diagnostics call the file; `color` whether texts are coloured.
    TraceDecoder(std::string name, const Options& options, bool color, Output& out, Output& diagnostics);

    // Reads to the end, or until `out` cannot be written any more.
    void decode(int descriptor);

    bool refused_lines() const noexcept { return refused_; }
    bool unreadable() const noexcept { return unreadable_; }

  private:
    void decode_text(Input& input, Progress& progress);
    void decode_binary(Input& input, Progress& progress);

    void text_line(const Input::Next& next);
    bool is_trace_line(Line line, Layout& layout) const;
    void trace_line(Line line, Layout layout);
    ReadResult read(Line line, Layout layout);
    void finish_message(std::size_t begin, std::size_t text, ReadResult result);
    static Outcome decode_explained(void* decoder, Session& session, Message& m, Text& out);

    bool shows_output() const override { return options_.debug; }
    void standard_output(std::string_view text) override;
    void standard_error(std::string_view text) override;

    void complain(std::string_view why);
    void message_done(Input& input, Progress& progress);

    std::string name_;
    const Options& options_;
    Output& out_;
    Output& diagnostics_;
    Session session_;
    Provenance provenance_;
    LineReader reader_;
    std::string traced_;        // side output of the message that is being decoded
    std::uint64_t number_ = 0;  // of the line, or of the message in a binary file
    bool complained_ = false;   // since the diagnostics were written out last
    bool refused_ = false;
    bool unreadable_ = false;
};

}  // namespace ztdecode::tool
