#include "tool/trace.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "tool/explain.hpp"
#include "tool/layout.hpp"

namespace ztdecode::tool {

namespace {

// Of a line whose messages are still being decoded.
constexpr std::size_t most_held = std::size_t{1} << 20;

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

bool blank_or_comment(Line line) {
    const char* end = line.text + line.length;
    const char* first = std::find_if_not(line.text, end, blank);
    return first == end || *first == '#';
}

// What the line readers get: nothing behind the last field.
Line without_trailing_blanks(Line line) {
    while (line.length > 0 && blank(line.text[line.length - 1])) --line.length;
    return line;
}

}  // namespace

void complain_of_file(std::string_view name, std::string_view why, Output& diagnostics) {
    diagnostics.text.add("ztdecode: ");
    diagnostics.add_name(name);
    diagnostics.text.print(": {-}\n"_cf, why);
}

TraceDecoder::TraceDecoder(std::string name, const Options& options, const Display& display, Output& out,
                           Output& diagnostics)
    : name_(std::move(name)),
      options_(options),
      display_(display),
      out_(out),
      diagnostics_(diagnostics),
      trail_(options.explain ? Trail::What::words : Trail::What::values),
      plain_lines_(options.layout == Layout::recognised || options.layout == Layout::spzt),
      presents_(options.explain || display.color || out.escapes()),
      text_only_(!presents_ && options.format == Format::text && !options.audio_only && !options.debug),
      reader_(LineReader::Behind::zeros) {
    const bool data = options.format == Format::ndjson;
    if (data) ndjson_.emplace(name_, options.explain, out.escapes(), out.text);
    session_.switches = {.color = display.color && !data,
                         .audio_only = options.audio_only,
                         .debug = options.debug,
                         .color_escape = '\0'};
    session_.side = this;
    if (options.explain || data) session_.trail = &trail_;
}

void TraceDecoder::decode(int descriptor) {
    Input input(descriptor);
    progress_.emplace(name_, descriptor, display_.progress);
    if (options_.layout == Layout::bin1 || options_.layout == Layout::bin2) {
        decode_binary(input);
    } else {
        decode_text(input);
    }
    progress_->hide();
    out_.flush();
    if (input.error() != 0) {
        unreadable_ = true;
        complain_of_file(name_, std::strerror(input.error()), diagnostics_);
    }
    diagnostics_.flush();
}

void TraceDecoder::decode_text(Input& input) {
    for (Input::Next next{}; out_.error() == 0 && input.next(next, out_);) {
        if (!next.piece) ++number_;
        if (!plain_lines_ || next.piece || !plain_line(next)) text_line(next);
        message_done(input);
    }
}

// A line that is no trace line keeps its place, so that a log keeps its context.
void TraceDecoder::text_line(const Input::Next& next) {
    Layout layout = options_.layout;
    if (!next.piece && is_trace_line(next.line, layout)) {
        trace_line(next.line, layout);
        return;
    }
    if (ndjson_) {
        ndjson_->other(number_, {next.line.text, next.line.length});
    } else {
        out_.add_foreign({next.line.text, next.line.length});
        if (next.newline) out_.text.add("\n");
    }
    if (next.piece && next.newline) ++number_;
}

// Nearly all lines of a trace are S/R lines of one message and nothing else, which need no second look. No
// other layout begins like one that does not begin with the first character of a tag.
inline bool TraceDecoder::plain_line(const Input::Next& next) {
    const Line line = next.line;
    if (line.length == 0 || blank(line.text[0]) || line.text[0] == '#' || line.text[0] == 'z') return false;
    const Message* const m = reader_.plain_spzt(line);
    if (m == nullptr) return false;
    if (text_only_ && next.newline) {
        plain_text(line, *m);
        return true;
    }
    const std::size_t begin = out_.text.size();
    add_input(line);
    columns_ = {line.text, 6};
    line_ = line;
    message(begin, [&] {
        return decode_and_present(*m) == Outcome::decoded ? ReadResult::decoded : ReadResult::unknown_class;
    });
    return true;
}

// The text as it is decoded, below the line with the newline that stands behind it.
inline void TraceDecoder::plain_text(Line line, const Message& m) {
    Text& out = out_.text;
    if (options_.input) out.add({line.text, line.length + 1});
    text_ = out.size();
    try {
        if (ztdecode::decode(session_, m, out) != Outcome::decoded) {
            finish_message(text_, ReadResult::unknown_class);
        } else if (out.size() > text_ && out.view().back() != '\n') {
            out.add("\n");
        }
    } catch (const std::bad_alloc&) {
        out.cut(text_);
        line_ = line;
        refuse_for_memory();
    }
}

void TraceDecoder::add_input(Line line) {
    if (!options_.input || ndjson_) return;
    out_.add_foreign({line.text, line.length});
    out_.text.add("\n");
}

Place TraceDecoder::place() const noexcept { return {number_, columns_, !columns_.empty()}; }

bool TraceDecoder::is_trace_line(Line line, Layout& layout) const {
    if (blank_or_comment(line)) return false;
    if (layout != Layout::recognised) return true;
    switch (recognise(line)) {
        case LineKind::bare:
            break;
        case LineKind::tagged:
            layout = Layout::tagged;
            break;
        case LineKind::spzt:
            layout = Layout::spzt;
            break;
        case LineKind::none:
            return false;
    }
    return true;
}

LineLayout TraceDecoder::line_layout(Layout layout) const {
    switch (layout) {
        case Layout::line:
            return LineLayout::line;
        case Layout::line_lng2:
            return LineLayout::line_lng2;
        case Layout::tagged:
            return LineLayout::tagged;
        case Layout::spzt:
            return LineLayout::spzt;
        case Layout::spzt_lng2:
            return LineLayout::spzt_lng2;
        default:
            return LineLayout::line_any_length;
    }
}

ReadResult TraceDecoder::read(Line line, LineLayout layout) {
    Text& out = out_.text;
    reader_.begin(line, layout, options_.direction);
    while (const Message* m = reader_.next()) {
        if (reader_.padded() && !ndjson_) {
            out.cut(text_);
            write_padding(reader_.refusal(), out);
        }
        if (decode_and_present(*m) != Outcome::decoded) return ReadResult::unknown_class;
        if (reader_.goes_on() && !ndjson_) out.add("\n");
    }
    return reader_.refusal() ? ReadResult::refused : ReadResult::decoded;
}

void TraceDecoder::trace_line(Line line, Layout layout) {
    const std::size_t begin = out_.text.size();
    add_input(line);
    const Line body = without_trailing_blanks(line);
    const bool has_columns = layout == Layout::spzt || layout == Layout::spzt_lng2;
    columns_ = has_columns && has_sr_column(body) ? std::string_view(body.text, 6) : std::string_view();
    line_ = body;
    message(begin, [&] { return read(body, line_layout(layout)); });
}

// `begin` is where the trace line stands in the output.
template <class Read>
void TraceDecoder::message(std::size_t begin, Read read) {
    text_ = out_.text.size();
    partly_out_ = said_ = false;
    try {
        finish_message(begin, read());
    } catch (const std::bad_alloc&) {
        out_.text.cut(text_);
        refuse_for_memory();
    }
}

// What the message had taken is given back first.
void TraceDecoder::refuse_for_memory() {
    out_.flush_and_release();
    decoded_ = Text();
    traced_ = std::string();
    trail_ = Trail(options_.explain ? Trail::What::words : Trail::What::values);
    refused_ = true;
    complain("no memory for this message");
    if (ndjson_) {
        ndjson_->refused(number_, {.reason = Refusal::Reason::no_memory}, {line_.text, line_.length});
    }
}

void TraceDecoder::finish_message(std::size_t begin, ReadResult result) {
    Text& out = out_.text;
    if (ndjson_) {
        finish_data(result);
        return;
    }
    if (result != ReadResult::decoded) {
        Text why;
        if (result == ReadResult::refused) {
            write_refusal(reader_.refusal(), line_, why);
        } else {
            add_uncoloured(out.from(text_), why);
        }
        out.cut(text_);
        refused_ = true;
        complain(why.view());
    } else if (out.size() > text_) {
        if (out.view().back() != '\n') out.add("\n");
    } else if (options_.audio_only && !partly_out_) {
        out.cut(begin);
        text_ = begin;
    }
    put_traces_above_text();
}

// Every line is an object, or several.
void TraceDecoder::finish_data(ReadResult result) {
    const std::string_view line(line_.text, line_.length);
    if (result == ReadResult::refused) {
        Text why;
        write_refusal(reader_.refusal(), line_, why);
        refused_ = true;
        complain(why.view());
        ndjson_->refused(number_, reader_.refusal(), line);
    } else if (result == ReadResult::unknown_class) {
        refused_ = true;
        Text why;
        add_uncoloured(decoded_.view(), why);
        complain(why.view());
    } else if (!said_) {
        ndjson_->other(number_, line);
    }
}

void TraceDecoder::put_traces_above_text() {
    if (traced_.empty()) return;
    Text& out = out_.text;
    const std::string decoded(out.from(text_));
    out.cut(text_);
    out_.add_foreign(traced_);
    if (traced_.back() != '\n') out.add("\n");
    out.add(decoded);
    traced_.clear();
}

// A line may hold many messages, and each of them megabytes of text. Where much has come together, it goes
// out before the next message is decoded; a refusal behind it does not take it back.
void TraceDecoder::let_text_out() {
    const std::size_t held = out_.text.size() - text_ + traced_.size() + diagnostics_.text.size();
    if (held < most_held) return;
    put_traces_above_text();
    out_.flush_keeping(text_);
    partly_out_ = true;
    if (complained_) complaints_go_out();
}

// A message that was not decoded to its end is left as it is: it goes to the diagnostics.
Outcome TraceDecoder::decode_and_present(const Message& m) {
    let_text_out();
    Text& out = out_.text;
    if (!presents_ && !ndjson_) return ztdecode::decode(session_, m, out);
    decoded_.clear();
    trail_.place = number_;
    const Outcome outcome = ztdecode::decode(session_, m, decoded_);
    if (ndjson_) {
        said_ = true;
        if (!traced_.empty()) ndjson_->trace(number_, traced_);
        traced_.clear();
        const Refusal& figures = reader_.refusal();
        const std::uint64_t padded = reader_.padded() ? figures.expected - figures.found : 0;
        if (!options_.audio_only || !decoded_.empty()) {
            ndjson_->message(place(), trail_, decoded_.view(), m, outcome, padded);
        }
    } else if (outcome == Outcome::decoded) {
        present(m, out);
    } else {
        out.add(decoded_.view());
    }
    return outcome;
}

void TraceDecoder::present(const Message& m, Text& out) {
    const std::string_view text = decoded_.view();
    const std::size_t begin = out.size();
    // A message that the filter drops leaves its colour behind.
    if (options_.audio_only && !has_characters(text)) return;
    if (out_.escapes()) {
        add_coloured_escaped(text, out);
    } else {
        add_coloured(text, out);
    }
    if (!options_.explain || out.size() == begin) return;
    if (out.view().back() != '\n') out.add("\n");
    explain(trail_, text, m, out);
}

// A message of a binary file is shown as a tagged line, which the command reads again.
void TraceDecoder::decode_binary(Input& input) {
    const std::size_t width = options_.layout == Layout::bin1 ? 1 : 2;
    while (out_.error() == 0) {
        const auto head = input.block(width, out_);
        if (head.empty()) return;
        ++number_;
        const std::size_t length = head[0] + (head.size() == 2 ? 256U * head[1] : 0U);
        const bool whole_head = head.size() == width;
        const auto bytes = input.block(length, out_);
        const std::size_t begin = out_.text.size();
        if (options_.input && !ndjson_) {
            out_.text.print("zt {-:02x} {-:02x}"_cf, bytes.size() & 0xFF, bytes.size() >> 8);
            for (const std::uint8_t byte : bytes) {
                out_.text.add(" ");
                out_.text.hex(byte);
            }
            out_.text.add("\n");
        }
        message(begin, [&] {
            Message m(bytes);
            m.direction = options_.direction;
            const Outcome outcome = decode_and_present(m);
            return outcome == Outcome::decoded ? ReadResult::decoded : ReadResult::unknown_class;
        });
        if (bytes.size() < length || !whole_head) {
            refused_ = true;
            complain("the file ends inside the message");
        }
        message_done(input);
    }
}

void TraceDecoder::complaints_go_out() {
    progress_->hide();
    diagnostics_.flush();
    complained_ = false;
}

// A diagnostic goes out behind the text before it: both often go to the same place.
void TraceDecoder::message_done(const Input& input) {
    if (complained_) {
        out_.flush();
        complaints_go_out();
    }
    out_.flush_when_full();
    progress_->at(input.bytes_read());
}

void TraceDecoder::standard_output(std::string_view text) {
    if (options_.debug) traced_ += text;
}

void TraceDecoder::standard_error(std::string_view text) {
    if (!text.empty()) complain(text);
}

// Every line of it names file and line.
void TraceDecoder::complain(std::string_view why) {
    Text& text = diagnostics_.text;
    do {
        const std::string_view line = why.substr(0, why.find('\n'));
        text.add("ztdecode: ");
        diagnostics_.add_name(name_);
        text.print(":{-}: "_cf, number_);
        diagnostics_.add_foreign(line);
        text.add("\n");
        why.remove_prefix(std::min(why.size(), line.size() + 1));
    } while (!why.empty());
    complained_ = true;
}

}  // namespace ztdecode::tool
