#include "api/session.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "decode/line_texts.hpp"

using namespace ztdecode;
using ztdecode::api::as_string;

namespace {

// A longer one is no trace line.
constexpr std::size_t longest_line = std::size_t{1} << 20;

std::optional<LineLayout> reader_layout(zt_layout layout) {
    switch (layout) {
        case ZT_LAYOUT_AUTO:
            break;
        case ZT_LAYOUT_LINE:
            return LineLayout::line;
        case ZT_LAYOUT_LNG2:
            return LineLayout::line_lng2;
        case ZT_LAYOUT_ZT:
            return LineLayout::tagged;
        case ZT_LAYOUT_SPZT_LNG2:
            return LineLayout::spzt_lng2;
        case ZT_LAYOUT_SPZT:
            return LineLayout::spzt;
    }
    return std::nullopt;
}

zt_layout layout_of(LineLayout layout) {
    switch (layout) {
        case LineLayout::line:
            return ZT_LAYOUT_LINE;
        case LineLayout::line_lng2:
        case LineLayout::line_any_length:
            return ZT_LAYOUT_LNG2;
        case LineLayout::tagged:
            return ZT_LAYOUT_ZT;
        case LineLayout::spzt:
            return ZT_LAYOUT_SPZT;
        case LineLayout::spzt_lng2:
            return ZT_LAYOUT_SPZT_LNG2;
    }
    return ZT_LAYOUT_AUTO;
}

zt_line_kind kind_of(LineVerdict verdict) {
    switch (verdict) {
        case LineVerdict::blank:
            return ZT_LINE_BLANK;
        case LineVerdict::comment:
            return ZT_LINE_COMMENT;
        case LineVerdict::trace_line:
            return ZT_LINE_MESSAGES;
        case LineVerdict::no_trace_line:
            break;
    }
    return ZT_LINE_OTHER;
}

std::uint32_t reader_direction(zt_direction direction) {
    return direction == ZT_TO_SYSTEM ? to_dhs : from_dhs;
}

zt_refusal refusal_of(Refusal::Reason reason) {
    switch (reason) {
        case Refusal::Reason::none:
        case Refusal::Reason::file_ends:  // no line's
        case Refusal::Reason::no_memory:
            break;
        case Refusal::Reason::no_length_byte:
        case Refusal::Reason::no_two_length_bytes:
            return ZT_REFUSED_NO_LENGTH;
        case Refusal::Reason::length_above_256:
            return ZT_REFUSED_TOO_LONG;
        case Refusal::Reason::really_too_short:
        case Refusal::Reason::really_too_short_lng2:
        case Refusal::Reason::too_short:
        case Refusal::Reason::sr_too_short:
            return ZT_REFUSED_TOO_SHORT;
        case Refusal::Reason::no_hexadecimal:
            return ZT_REFUSED_NO_HEXADECIMAL;
        case Refusal::Reason::no_tag:
            return ZT_REFUSED_NO_TAG;
        case Refusal::Reason::no_sr_column:
            return ZT_REFUSED_NO_DIRECTION;
    }
    return ZT_NOT_REFUSED;
}

Line as_line(std::string_view s) { return {s.data(), s.size()}; }
std::string_view view(Line line) { return {line.text, line.length}; }

TraceReader reader_for(const zt_options& options) {
    return {reader_layout(options.layout), reader_direction(options.direction),
            (options.flags & ZT_PAD) != 0 ? MissingBytes::padded : MissingBytes::refused};
}

}  // namespace

zt_session::zt_session(const zt_options& options) noexcept
    : options_(options), trail_(new_trail()), reader_(reader_for(options)) {
    session_.side = this;
    session_.trail = &trail_;
    set(options);
}

Trail zt_session::new_trail() const noexcept {
    return Trail(options_.detail == ZT_WORDS ? Trail::What::words : Trail::What::values);
}

void zt_session::set(const zt_options& options) noexcept {
    options_ = options;
    session_.switches.color = (options.flags & ZT_COLOR) != 0;
    session_.switches.audio_only = (options.flags & ZT_AUDIO_ONLY) != 0;
    session_.switches.debug = (options.flags & ZT_DEBUG) != 0;
    trail_ = new_trail();
    reader_is_old_ = true;
}

void zt_session::standard_output(std::string_view text) {
    if (shows_output()) traced_ += text;
}

void zt_session::release() noexcept {
    trail_ = new_trail();
    record_ = Record();
    records_ = api::Records();
    text_ = Text();
    traced_ = std::string();
    complaints_ = std::string();
}

// The message counts as decoded when its record is there.
const zt_record* zt_session::record(const Message& m, std::uint64_t place, InLine in_line) {
    text_.clear();
    traced_.clear();
    complaints_.clear();
    trail_.place = place;
    Captured captured(session_, text_);
    const Outcome outcome = ztdecode::decode(session_, m, text_);
    record_.take(trail_, text_.view(), m, outcome);
    zt_record& made =
        records_.make(record_, options_.detail == ZT_WORDS, (options_.flags & ZT_AUDIO_ONLY) != 0);
    made.padded = in_line.padded;
    made.left_over = in_line.left_over;
    made.trace = as_string(traced_);
    made.complaints = as_string(complaints_);
    captured.done();
    return &made;
}

const zt_record* zt_session::decode(std::span<const std::uint8_t> bytes, zt_direction direction) {
    const std::size_t kept = std::min(bytes.size(), bytes_.size());
    std::copy_n(bytes.begin(), kept, bytes_.begin());
    Message m(std::span<const std::uint8_t>(bytes_.data(), kept));
    m.direction = reader_direction(direction);
    const zt_record* const made = record(m, place_ + 1, {});
    ++place_;
    return made;
}

const zt_line* zt_session::feed(std::string_view line) {
    pending_ = goes_on_ = refused_ = false;
    line_ = {};
    if (std::exchange(reader_is_old_, false)) reader_ = reader_for(options_);
    if (line.ends_with('\n')) line.remove_suffix(1);
    line_text_ = line;
    line_.content = as_string(line_text_);
    line_.columns = line_.reason = line_.prefix = line_.time = line_.terminal = as_string({});
    line_.place = place_ + 1;
    line_.kind = begin(as_line(line_text_));
    if (line_.kind == ZT_LINE_MESSAGES) begin_trace_line();
    ++place_;
    return &line_;
}

zt_line_kind zt_session::begin(Line line) {
    if (line.length >= longest_line) return kind_of(without_message(line));
    const Message* const only = reader_.plain(line);
    pending_ = only != nullptr;
    if (!pending_) return kind_of(reader_.begin(line, line_.place));
    reader_.begin_plain(line, line_.place, *only);
    return ZT_LINE_MESSAGES;
}

void zt_session::begin_trace_line() {
    const CapturedMessage& captured = reader_.captured();
    line_.layout = layout_of(reader_.layout());
    line_.content = as_string(view(reader_.whole_line()));
    line_.columns = as_string(captured.columns);
    line_.prefix = as_string(captured.prefix);
    line_.time = as_string(captured.time);
    line_.terminal = as_string(captured.terminal);
    if (!pending_) find_message();
    if (!pending_) line_.kind = ZT_LINE_REFUSED;
}

// Behind the last one shows whether the line is refused.
void zt_session::find_message() {
    pending_ = goes_on_ = reader_.next();
    if (pending_ || !reader_.refusal()) return;
    const Refusal& refusal = reader_.refusal();
    line_.refusal = refusal_of(refusal.reason);
    line_.column = reader_.whole_column(refusal.column) + 1;
    line_.expected = refusal.expected;
    line_.found = refusal.found;
    refused_ = true;
    reason_.clear();
    write_refusal(refusal, reader_.line(), reason_);
    line_.reason = as_string(reason_.view());
}

const zt_record* zt_session::next() {
    if (!pending_ && goes_on_) find_message();
    if (!pending_) return nullptr;
    const CapturedMessage& captured = reader_.captured();
    const zt_record* const made =
        record(*captured.message, line_.place, {captured.padded, captured.left_over});
    pending_ = false;
    if (made->outcome == ZT_UNKNOWN_CLASS) goes_on_ = false;
    return made;
}

bool zt_session::refused() noexcept { return std::exchange(refused_, false); }
