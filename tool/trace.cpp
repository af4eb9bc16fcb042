#include "tool/trace.hpp"

#include <cstring>
#include <new>
#include <utility>

#include "decode/line_texts.hpp"

namespace ztdecode::tool {

namespace {

std::optional<LineLayout> line_layout(Layout layout) {
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
            return std::nullopt;
    }
}

TextReport* plain_report(Report& report, const Options& options) {
    auto* const texts = dynamic_cast<TextReport*>(&report);
    return texts != nullptr && texts->plain() && !options.debug ? texts : nullptr;
}

}  // namespace

TraceDecoder::TraceDecoder(std::string name, std::unique_ptr<Report> report, const Options& options,
                           const Display& display, Output& out, Output& diagnostics)
    : name_(std::move(name)),
      options_(options),
      display_(display),
      out_(out),
      diagnostics_(name_, diagnostics),
      report_(std::move(report)),
      selected_(dynamic_cast<Selected*>(report_.get())),
      plain_(plain_report(*report_, options)),
      trail_(report_->notes().value_or(Trail::What::values)),
      reader_(line_layout(options.layout), options.direction) {
    session_.switches = {.color = display.color && options.format == Format::text,
                         .audio_only = options.audio_only,
                         .debug = options.debug,
                         .color_escape = '\0'};
    session_.side = this;
    if (report_->notes()) session_.trail = &trail_;
}

void TraceDecoder::decode(int descriptor) {
    Input input(descriptor, [this] { out_.flush(); });
    progress_.emplace(name_, descriptor, display_.progress);
    if (options_.layout == Layout::bin1 || options_.layout == Layout::bin2) {
        decode_binary(input);
    } else {
        decode_text(input);
    }
    progress_->hide();
    if (selected_ != nullptr) selected_->finish();
    out_.flush();
    if (input.error() != 0) {
        unreadable_ = true;
        diagnostics_.of_file(std::strerror(input.error()));
    }
    diagnostics_.flush();
}

void TraceDecoder::decode_text(Input& input) {
    for (Input::Next next{}; goes_on() && input.next(next);) {
        if (!next.piece) ++number_;
        if (next.piece || !plain_line(next)) text_line(next);
        message_done(input);
    }
}

inline bool TraceDecoder::plain_line(const Input::Next& next) {
    const Message* const m = reader_.plain(next.line);
    if (m == nullptr) return false;
    if (plain_ != nullptr && next.newline) {
        plain_text(next.line, *m);
        return true;
    }
    reader_.begin_plain(next.line, number_, *m);
    report_->begin_line(next.line);
    with_memory(next.line, [&] {
        message(reader_.captured());
        report_->end_line(number_, next.line);
    });
    return true;
}

// The text as it is decoded, below the line with the newline that stands behind it.
inline void TraceDecoder::plain_text(Line line, const Message& m) {
    Text& out = plain_->begin_plain(line);
    try {
        if (ztdecode::decode(session_, m, out) == Outcome::decoded) {
            plain_->end_plain();
        } else {
            reader_.begin_plain(line, number_, m);
            unfinished({reader_.captured(), trail_, {}, Outcome::unknown_class});
        }
    } catch (const std::bad_alloc&) {
        no_memory(line);
    }
}

void TraceDecoder::text_line(const Input::Next& next) {
    if (!next.piece && reader_.begin(next.line, number_) == LineVerdict::trace_line) {
        trace_line(next.line);
        return;
    }
    report_->other(number_, {next.line.text, next.line.length}, next.newline);
    if (next.piece && next.newline) ++number_;
}

void TraceDecoder::trace_line(Line line) {
    report_->begin_line(line);
    with_memory(reader_.line(), [&] {
        while (reader_.next()) {
            if (!message(reader_.captured())) break;
        }
        if (const Refusal& refusal = reader_.refusal(); refusal) {
            Text why;
            write_refusal(refusal, reader_.line(), why);
            refuse(why.view());
            report_->refused(number_, reader_.line(), refusal);
        }
        report_->end_line(number_, reader_.line());
    });
}

template <class Action>
void TraceDecoder::with_memory(Line line, Action action) {
    try {
        action();
    } catch (const std::bad_alloc&) {
        no_memory(line);
    }
}

// What the message had taken is given back first.
void TraceDecoder::no_memory(Line line) {
    report_->no_memory();
    traced_ = std::string();
    trail_ = Trail(report_->notes().value_or(Trail::What::values));
    refuse("no memory for this message");
    report_->refused(number_, line, {.reason = Refusal::Reason::no_memory});
}

bool TraceDecoder::message(const CapturedMessage& captured) {
    if (report_->let_out(diagnostics_.size())) complaints_go_out();
    Text& text = report_->begin_message(captured);
    const std::size_t begin = text.size();
    trail_.place = number_;
    const Outcome outcome = ztdecode::decode(session_, *captured.message, text);
    if (!traced_.empty()) {
        report_->trace(number_, traced_);
        traced_.clear();
    }
    const Said said{captured, trail_, text.from(begin), outcome};
    if (outcome == Outcome::decoded) {
        report_->message(said);
    } else {
        unfinished(said);
    }
    return outcome == Outcome::decoded;
}

// A message that was not decoded to its end.
void TraceDecoder::unfinished(const Said& said) {
    Text why;
    report_->unfinished(said, why);
    refuse(why.view());
}

void TraceDecoder::decode_binary(Input& input) {
    const std::size_t width = options_.layout == Layout::bin1 ? 1 : 2;
    while (goes_on()) {
        const auto head = input.block(width);
        if (head.empty()) return;
        ++number_;
        const std::size_t length = head[0] + (head.size() == 2 ? 256U * head[1] : 0U);
        const bool whole_head = head.size() == width;
        const auto bytes = input.block(length);
        report_->begin_bytes(bytes);
        with_memory({"", 0}, [&] {
            Message m(bytes);
            m.direction = options_.direction;
            message({.message = &m, .number = number_});
            report_->end_line(number_, {"", 0});
        });
        if (bytes.size() < length || !whole_head) refuse("the file ends inside the message");
        message_done(input);
    }
}

void TraceDecoder::complaints_go_out() {
    if (!diagnostics_.pending()) return;
    progress_->hide();
    diagnostics_.flush();
}

// A diagnostic goes out behind the text before it: both often go to the same place.
void TraceDecoder::message_done(const Input& input) {
    if (diagnostics_.pending()) {
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
    if (!text.empty()) diagnostics_.of_line(number_, text);
}

void TraceDecoder::refuse(std::string_view why) {
    refused_ = true;
    diagnostics_.of_line(number_, why);
}

}  // namespace ztdecode::tool
