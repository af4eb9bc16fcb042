#include "tool/trace.hpp"

#include <new>
#include <utility>

#include "decode/line_texts.hpp"
#include "tool/trace_reader.hpp"

namespace ztdecode::tool {

namespace {

// Of text that is held until it may go out.
constexpr std::size_t most_of_piece = std::size_t{8} << 20;

TextReport* plain_report(Report& report, const Options& options) {
    auto* const texts = dynamic_cast<TextReport*>(&report);
    const bool one_session = options.terminal == Terminal::none;
    const bool plain = !options.debug && one_session && options.time == TimeShown::none;
    return texts != nullptr && texts->plain() && plain ? texts : nullptr;
}

}  // namespace

std::uint64_t complain_of_cuts(Sessions& sessions, Diagnostics& diagnostics, bool one_file) {
    std::uint64_t cut = 0;
    sessions.each([&](const Session& session) {
        const Reassembly& series = *session.digital.reassembly;
        if (series.to_come == 0) return;
        ++cut;
        Text words;
        describe({static_cast<std::uint64_t>(series.segments), series.to_come}, words);
        if (one_file) {
            diagnostics.of_line(series.last_place, words.view(), 1);
        } else {
            diagnostics.of_file(words.view());
        }
    });
    return cut;
}

TraceDecoder::TraceDecoder(std::string name, std::unique_ptr<Report> report, const Options& options,
                           const Display& display, bool others_follow, Sessions& sessions, Output& out,
                           Output& diagnostics)
    : name_(std::move(name)),
      options_(options),
      display_(display),
      others_follow_(others_follow),
      out_(out),
      diagnostics_(name_, diagnostics, options.quiet),
      report_(std::move(report)),
      selected_(dynamic_cast<Selected*>(report_.get())),
      plain_(plain_report(*report_, options)),
      sessions_(sessions),
      session_(&sessions.main()),
      trail_(report_->notes().value_or(Trail::What::values)),
      reader_(reader_for(options)) {
    sessions.each([this](Session& session) { begin_session(session); });
    if (options.time != TimeShown::none) times_.emplace(options.time, options.columns);
    progress_.emplace(name_, -1, false);
}

void TraceDecoder::begin_session(Session& session) {
    session.switches = {.color = display_.color && options_.format == Format::text,
                        .audio_only = options_.audio_only,
                        .debug = options_.debug,
                        .color_escape = '\0'};
    session.side = this;
    session.trail = report_->notes() ? &trail_ : nullptr;
}

Session& TraceDecoder::session_of(const CapturedMessage& captured) {
    if (options_.terminal == Terminal::none) return sessions_.main();
    const std::string_view name =
        options_.terminal == Terminal::columns ? captured.columns : captured.terminal;
    return sessions_.of_terminal(name, [this](Session& session) { begin_session(session); });
}

void TraceDecoder::decode(Source& source, int descriptor, const InPieces& in_pieces,
                          std::uint64_t lines_between) {
    Input input(source, [this] {
        out_.flush();
        return out_.error() == 0;
    });
    progress_.emplace(name_, descriptor, display_.progress);
    if (is_binary(options_.layout)) {
        decode_binary(input);
    } else {
        while (decode_text(input, in_pieces ? number_ + lines_between : all_lines)) in_pieces(input);
    }
    progress_->hide();
    end();
    out_.flush();
    if (!input.error().empty()) {
        unreadable_ = true;
        diagnostics_.unreadable(number_, input.error());
    }
    diagnostics_.flush();
}

// False when nothing is left, or wanted.
bool TraceDecoder::decode_text(Input& input, std::uint64_t last_line) {
    for (Input::Next next{}; goes_on() && input.next(next);) {
        if (!next.piece) ++number_;
        if (next.piece || !plain_line(next)) text_line(next);
        message_done(input);
        if (number_ >= last_line) return true;
    }
    return false;
}

void TraceDecoder::decode_piece(Input& lines, std::uint64_t lines_before) {
    in_piece_ = true;
    number_ = lines_before;
    decode_text(lines, all_lines);
}

TraceDecoder::Found TraceDecoder::take_found() {
    return {number_, std::exchange(totals_, {}), std::exchange(sample_, {}), report_->take_counts()};
}

bool TraceDecoder::add(const Found& found) {
    if (!report_->add(found.counts)) return false;
    number_ = found.lines;
    totals_.add(found.totals);
    sample_.add(found.sample);
    return true;
}

inline bool TraceDecoder::plain_line(const Input::Next& next) {
    const Message* const m = reader_.plain(next.line);
    if (m == nullptr) return false;
    if (plain_ != nullptr && next.line.text[next.line.length] == '\n') [[likely]] {
        plain_text(next.line, *m);
        return true;
    }
    reader_.begin_plain(next.line, number_, *m);
    begin_line(next.line);
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
        if (ztdecode::decode(*session_, m, out) == Outcome::decoded) {
            plain_->end_plain();
        } else {
            reader_.begin_plain(line, number_, m);
            unfinished({reader_.captured(), trail_, {}, Outcome::unknown_class});
        }
    } catch (const std::bad_alloc&) {
        if (in_piece_) throw;
        no_memory(line);
    }
}

void TraceDecoder::text_line(const Input::Next& next) {
    const LineVerdict verdict = next.piece ? LineVerdict::no_trace_line : reader_.begin(next.line, number_);
    if (verdict == LineVerdict::trace_line) {
        trace_line(next.line);
        return;
    }
    if (next.piece && !in_long_line_) ++number_;
    if (!in_long_line_) totals_.count(verdict);
    in_long_line_ = next.piece && !next.newline;
    if (verdict == LineVerdict::no_trace_line && sample_.wants_more()) sample_.add(next.line);
    report_->other(number_, {next.line.text, next.line.length},
                   next.newline || (others_follow_ && !in_long_line_));
}

void TraceDecoder::begin_line(Line line) {
    if (times_) report_->show_time(times_->of(reader_.captured()));
    report_->begin_line(line);
}

void TraceDecoder::trace_line(Line line) {
    begin_line(line);
    with_memory(reader_.whole_line(), [&] {
        while (reader_.next()) {
            if (!message(reader_.captured())) break;
        }
        if (const Refusal& refusal = reader_.refusal(); refusal) {
            if (sample_.wants_more()) sample_.add(line);
            refuse(refusal, reader_.line());
        }
        report_->end_line(number_, reader_.whole_line());
    });
}

template <class Action>
void TraceDecoder::with_memory(Line line, Action action) {
    try {
        action();
    } catch (const std::bad_alloc&) {
        if (in_piece_) throw;
        no_memory(line);
    }
}

// What the message had taken is given back first.
void TraceDecoder::no_memory(Line line) {
    report_->no_memory();
    traced_ = std::string();
    trail_ = Trail(report_->notes().value_or(Trail::What::values));
    refuse_line("no memory for this message", 0);
    report_->refused(number_, line, {.reason = Refusal::Reason::no_memory});
}

bool TraceDecoder::message(const CapturedMessage& captured) {
    if (in_piece_) {
        if (out_.text.size() > most_of_piece) throw std::bad_alloc();
    } else if (report_->let_out(diagnostics_.size())) {
        complaints_go_out();
    }
    Text& text = report_->begin_message(captured);
    const std::size_t begin = text.size();
    trail_.place = number_;
    const Outcome outcome = ztdecode::decode(session_of(captured), *captured.message, text);
    if (!traced_.empty()) {
        report_->trace(number_, traced_);
        traced_.clear();
    }
    const Said said{captured, trail_, text.from(begin), outcome};
    if (outcome == Outcome::decoded) {
        report_->message(said);
        if (captured.left_over > 0) left_over(captured);
    } else {
        unfinished(said);
    }
    return outcome == Outcome::decoded;
}

// A message that was not decoded to its end.
void TraceDecoder::unfinished(const Said& said) {
    Text why;
    report_->unfinished(said, why);
    refuse_line(why.view(), reader_.whole_column(said.captured.column));
}

void TraceDecoder::left_over(const CapturedMessage& captured) {
    Text words;
    describe_left_over(captured, reader_.line(), words);
    diagnostics_.of_line(number_, words.view(), reader_.whole_column(captured.left_over_column) + 1);
}

void TraceDecoder::decode_binary(Input& input) {
    const std::size_t width = options_.layout == Layout::bin1 ? 1 : 2;
    while (goes_on()) {
        const auto head = input.block(width);
        if (head.empty()) return;
        ++number_;
        const bool whole_head = head.size() == width;
        const std::size_t length = head[0] + (head.size() == 2 ? 256U * head[1] : 0U);
        const auto bytes = input.block(whole_head ? length : 0);
        const auto reason = !whole_head || length > 0 ? Refusal::Reason::file_ends
                            : width == 1              ? Refusal::Reason::no_length_byte
                                                      : Refusal::Reason::no_two_length_bytes;
        binary_message(
            bytes,
            {.reason = bytes.size() < length || length == 0 || !whole_head ? reason : Refusal::Reason::none,
             .column = width + bytes.size(),
             .expected = length,
             .found = bytes.size()});
        message_done(input);
    }
}

// `cut`: what the file's end takes off the message, if it does. A length with nothing behind it is no
// message.
void TraceDecoder::binary_message(std::span<const std::uint8_t> bytes, const Refusal& cut) {
    report_->begin_bytes(bytes);
    with_memory({"", 0}, [&] {
        if (!bytes.empty()) {
            Message m(bytes);
            m.direction = options_.direction;
            message({.message = &m, .number = number_, .cut_short = cut.expected - cut.found});
            if (cut) cut_short(cut);
        } else {
            refuse(cut, {"", 0});
        }
        report_->end_line(number_, {"", 0});
    });
}

void TraceDecoder::cut_short(const Refusal& cut) {
    Text words;
    describe(cut, {"", 0}, words);
    diagnostics_.of_line(number_, words.view(), cut.column + 1);
    wanting_ = true;
}

// What the whole trace was.
void TraceDecoder::end() {
    totals_.lines = number_;
    std::uint64_t cut = 0;
    if (options_.join == Join::none) cut = complain_of_cuts(sessions_, diagnostics_, true);
    if (!report_->end(totals_, cut)) wanting_ = true;
    if (options_.follow) {
        Text words;
        write_totals(totals_, words);
        diagnostics_.of_file(words.view());
    }
    if (!sample_.empty() && totals_.with_messages() == 0) no_message();
}

// Lines that are refused are named already.
void TraceDecoder::no_message() {
    Text words;
    const bool readable = sample_.describe(words);
    if (readable || totals_.no_trace_line > 0 || options_.layout != Layout::recognised)
        diagnostics_.of_file(words.view());
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

void TraceDecoder::refuse(Refusal refusal, Line line) {
    Text why;
    describe(refusal, line, why);
    refusal.column = reader_.whole_column(refusal.column);
    refuse_line(why.view(), refusal.column);
    report_->refused(number_, reader_.whole_line(), refusal);
}

void TraceDecoder::refuse_line(std::string_view why, std::size_t column) {
    ++totals_.refused;
    diagnostics_.of_line(number_, why, column + 1);
}

}  // namespace ztdecode::tool
