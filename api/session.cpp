#include "api/session.hpp"

#include <algorithm>
#include <utility>

#include "decode/line_texts.hpp"
#include "decode/trace_lines.hpp"

using namespace ztdecode;
using ztdecode::api::as_string;

namespace {

// A longer one is no trace line.
constexpr std::size_t longest_line = std::size_t{1} << 20;

constexpr std::string_view blanks = " \t\r";

std::string_view without_blanks_behind(std::string_view line) {
    return line.substr(0, line.find_last_not_of(blanks) + 1);
}

zt_line_kind kind_of(std::string_view line) {
    const std::size_t first = line.find_first_not_of(blanks);
    if (first == std::string_view::npos) return ZT_LINE_BLANK;
    return line[first] == '#' ? ZT_LINE_COMMENT : ZT_LINE_OTHER;
}

LineLayout reader_layout(zt_layout layout) {
    switch (layout) {
        case ZT_LAYOUT_LINE:
            return LineLayout::line;
        case ZT_LAYOUT_LNG2:
            return LineLayout::line_lng2;
        case ZT_LAYOUT_ZT:
            return LineLayout::tagged;
        case ZT_LAYOUT_SPZT_LNG2:
            return LineLayout::spzt_lng2;
        case ZT_LAYOUT_SPZT:
        default:
            return LineLayout::spzt;
    }
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

}  // namespace

zt_session::zt_session(const zt_options& options) noexcept : options_(options), trail_(new_trail()) {
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
const zt_record* zt_session::record(const Message& m, std::uint64_t place, std::uint64_t padded) {
    text_.clear();
    traced_.clear();
    complaints_.clear();
    trail_.place = place;
    Captured captured(session_, text_);
    const Outcome outcome = ztdecode::decode(session_, m, text_);
    record_.take(trail_, text_.view(), m, outcome);
    zt_record& made =
        records_.make(record_, options_.detail == ZT_WORDS, (options_.flags & ZT_AUDIO_ONLY) != 0);
    made.padded = padded;
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
    const zt_record* const made = record(m, place_ + 1, 0);
    ++place_;
    return made;
}

// What kind of trace line it is, ZT_LAYOUT_AUTO for none.
zt_layout zt_session::layout_of(Line line) const {
    if (line.length >= longest_line) return ZT_LAYOUT_AUTO;
    if (options_.layout != ZT_LAYOUT_AUTO) return options_.layout;
    switch (recognise(line)) {
        case LineKind::none:
            break;
        case LineKind::bare:
            return has_two_length_bytes(line) ? ZT_LAYOUT_LNG2 : ZT_LAYOUT_LINE;
        case LineKind::tagged:
            return ZT_LAYOUT_ZT;
        case LineKind::spzt:
            return ZT_LAYOUT_SPZT;
    }
    return ZT_LAYOUT_AUTO;
}

const zt_line* zt_session::feed(std::string_view line) {
    line_open_ = refused_ = false;
    pending_ = nullptr;
    line_ = {};
    if (line.ends_with('\n')) line.remove_suffix(1);
    line_text_ = line;
    line_.kind = kind_of(line_text_);
    line_.content = as_string(line_text_);
    line_.columns = line_.reason = as_string({});
    line_.place = place_ + 1;
    if (line_.kind == ZT_LINE_OTHER) begin_line();
    ++place_;
    return &line_;
}

void zt_session::begin_line() {
    const std::string_view body = without_blanks_behind(line_text_);
    line_.layout = layout_of(as_line(body));
    if (line_.layout == ZT_LAYOUT_AUTO) return;
    reader_.begin(as_line(body), reader_layout(line_.layout), reader_direction(options_.direction));
    pending_ = reader_.next();
    if (pending_ != nullptr) {
        line_.kind = ZT_LINE_MESSAGES;
    } else if (reader_.refusal()) {
        note_refusal(as_line(body));
        line_.kind = ZT_LINE_REFUSED;
    } else {
        line_.layout = ZT_LAYOUT_AUTO;
        return;
    }
    line_.content = as_string(body);
    const bool has_columns = line_.layout == ZT_LAYOUT_SPZT || line_.layout == ZT_LAYOUT_SPZT_LNG2;
    if (has_columns && has_sr_column(as_line(body))) line_.columns = as_string(body.substr(0, 6));
    line_open_ = true;
}

void zt_session::note_refusal(Line line) {
    const Refusal& refusal = reader_.refusal();
    reason_.clear();
    write_refusal(refusal, line, reason_);
    line_.refusal = refusal_of(refusal.reason);
    line_.column = refusal.column + 1;
    line_.expected = refusal.expected;
    line_.found = refusal.found;
    line_.reason = as_string(reason_.view());
}

const zt_record* zt_session::next() {
    if (!line_open_) return nullptr;
    if (pending_ == nullptr) pending_ = reader_.next();
    if (pending_ == nullptr) {
        if (reader_.refusal()) note_refusal({line_.content.data, line_.content.size});
        refused_ = line_.refusal != ZT_NOT_REFUSED;
        line_open_ = false;
        return nullptr;
    }
    const Refusal& figures = reader_.refusal();
    const std::uint64_t padded = reader_.padded() ? figures.expected - figures.found : 0;
    const zt_record* const made = record(*pending_, line_.place, padded);
    pending_ = nullptr;
    if (made->outcome == ZT_UNKNOWN_CLASS) line_open_ = false;
    return made;
}

bool zt_session::refused() noexcept { return std::exchange(refused_, false); }
