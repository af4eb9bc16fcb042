#include "tool/redaction.hpp"

#include <algorithm>
#include <utility>

#include "tool/report/verdicts.hpp"
#include "tool/trace_reader.hpp"

namespace ztdecode::tool {

namespace {

// Decoding again and again what no stand-in fits has its end. A long text counts as several tries.
constexpr std::size_t most_tries = 4000;
constexpr std::size_t text_of_a_try = 4096;

// One character of UTF-8 and how many bytes it has; what is none counts as one of Latin 1.
std::pair<std::uint32_t, std::size_t> character(std::string_view words) {
    const auto byte = [words](std::size_t k) { return static_cast<unsigned char>(words[k]); };
    const std::uint32_t lead = byte(0);
    const std::size_t n = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (n == 1 || n > words.size()) return {lead, 1};
    std::uint32_t code = lead & (0x7FU >> n);
    for (std::size_t k = 1; k < n; ++k) code = code << 6 | (byte(k) & 0x3FU);
    return {code, n};
}

void add_utf16(std::string_view words, Encoding encoding, Text& out) {
    const auto unit = [&](std::uint32_t code) {
        const char bytes[2] = {static_cast<char>(code & 0xFF), static_cast<char>(code >> 8)};
        const bool little = encoding == Encoding::utf16_little;
        out.add({&bytes[little ? 0 : 1], 1});
        out.add({&bytes[little ? 1 : 0], 1});
    };
    while (!words.empty()) {
        const auto [code, n] = character(words);
        words.remove_prefix(n);
        if (code < 0x10000) {
            unit(code);
        } else {
            unit(0xD800 + ((code - 0x10000) >> 10 & 0x3FF));
            unit(0xDC00 + (code & 0x3FF));
        }
    }
}

Hidden kind_of_line(LineVerdict verdict) {
    return verdict == LineVerdict::comment ? Hidden::comment : Hidden::line;
}

}  // namespace

Redaction::Redaction(std::string name, const Redacting& redacting, BothSessions& sessions, Output& out,
                     Output& diagnostics)
    : name_(std::move(name)),
      redacting_(redacting),
      options_(redacting.options),
      sessions_(sessions),
      out_(out),
      diagnostics_(name_, diagnostics, redacting.options.quiet),
      reader_(reader_for(options_)),
      second_reader_(reader_for(options_)) {
    sessions_.before.each([this](Session& session) { session.trail = &trail_before_; });
    sessions_.after.each([this](Session& session) { session.trail = &trail_after_; });
}

void Redaction::redact(Source& source, const Utf16Source* utf16) {
    Input input(source, [this] {
        out_.flush();
        return out_.error() == 0;
    });
    utf16_ = utf16;
    if (is_binary(options_.layout)) {
        redact_binary(input);
    } else {
        redact_text(input);
    }
    finish_pending();
    out_.flush();
    if (!input.error().empty()) {
        unreadable_ = true;
        diagnostics_.unreadable(number_, input.error());
    }
    diagnostics_.flush();
}

void Redaction::redact_text(Input& input) {
    for (Input::Next next{}; out_.error() == 0 && input.next(next);) {
        text_line(next);
        if (!waits()) finish_pending();
        complaints_go_out();
        out_.flush_when_full();
    }
}

void Redaction::text_line(const Input::Next& next) {
    const std::string_view line(next.line.text, next.line.length);
    if (!in_long_line_) {
        ++number_;
        redacting_.tally.line();
    }
    PendingLine& pending = lines_.emplace_back();
    if (next.newline) pending.behind.assign(1, next.line.text[next.line.length]);
    pending_bytes_ += line.size();
    if (next.piece) {
        if (!in_long_line_) long_comment_ = without_message(next.line) == LineVerdict::comment;
        no_trace_line(pending, long_comment_ ? LineVerdict::comment : LineVerdict::no_trace_line, line);
        in_long_line_ = !next.newline;
        return;
    }
    const LineVerdict verdict = pending.line.read(reader_, line, number_);
    if (verdict == LineVerdict::trace_line) {
        trace_line(pending);
    } else {
        no_trace_line(pending, verdict, line);
    }
}

void Redaction::no_trace_line(PendingLine& pending, LineVerdict verdict, std::string_view line) {
    pending.text.assign(line);
    const Hidden kind = kind_of_line(verdict);
    if (redacting_.kept[kind]) return;
    std::uint64_t characters = 0;
    pending.text = blanked(line, characters);
    if (characters > 0) redacting_.tally.count(kind, characters);
}

// What no stand-in suits shows nothing.
void Redaction::lose(PendingLine& pending) {
    std::uint64_t characters = 0;
    pending.lost = true;
    pending.text = blanked(pending.line.text(), characters);
    redacting_.tally.lost();
    diagnostics_.of_line(pending.line.number(),
                         "blanked whole: no stand-in keeps it a trace line that reads alike");
}

void Redaction::trace_line(PendingLine& pending) {
    pending.is_trace = true;
    RedactedLine& line = pending.line;
    if (line.refusal()) refuse(pending);
    if (!line.hide_surroundings(second_reader_, redacting_.stand_ins, redacting_.kept)) lose(pending);
    const std::string terminal(options_.terminal == Terminal::columns ? reader_.captured().columns
                                                                      : reader_.captured().terminal);
    bool goes_on = true;
    for (const RedactedLine::Message& m : line.messages()) {
        if (!goes_on) {
            pending.messages.emplace_back();
            continue;
        }
        goes_on = decode_before(m.bytes, m.direction, terminal) == Outcome::decoded;
        if (pending.lost) messages_.back().session = nullptr;
        pending.messages.emplace_back(messages_.size() - 1);
    }
    if (pending.lost) return;
    for (const Hidden kind : {Hidden::prefix, Hidden::refused, Hidden::left_over}) {
        if (const std::uint64_t n = line.hidden(kind); n > 0) redacting_.tally.count(kind, n);
    }
}

// What the message says, as it came, and what of it is hidden.
Outcome Redaction::decode_before(std::span<const std::uint8_t> bytes, std::uint32_t direction,
                                 std::string_view terminal) {
    redacting_.tally.message();
    const auto session_of = [&](Sessions& sessions, Trail& trail) -> Session& {
        if (options_.terminal == Terminal::none) return sessions.main();
        return sessions.of_terminal(terminal, [&trail](Session& session) { session.trail = &trail; });
    };
    Session& session = session_of(sessions_.before, trail_before_);
    HiddenMessage& m = messages_.emplace_back();
    m.before.assign(bytes.begin(), bytes.end());
    m.bytes = m.before;
    m.direction = direction;
    m.place = number_;
    m.since = static_cast<std::uint32_t>(messages_.size() - 1);
    m.session = &session_of(sessions_.after, trail_after_);
    Message message{std::span<const std::uint8_t>(m.before)};
    message.direction = direction;
    text_.clear();
    trail_before_.place = number_;
    const Outcome outcome = decode(session, message, text_);
    record_.take(trail_before_, text_.view(), message, outcome);
    m.put_by = bytes_of_segments(trail_before_);
    m.link = record_.part(0).noted->link;
    m.name = record_.part(0).noted->name;
    HiddenValues(trail_before_, messages_, redacting_.kept, typing_, edits_).find();
    m.said = what_is_said(record_, outcome, text_.view(), m.hidden);
    const Reassembly& series = *session.digital.reassembly;
    const std::uint64_t first = series.places.empty() ? 0 : series.places.front();
    const auto given_up = given_up_.find(&session);
    if (series.to_come == 0 || (given_up != given_up_.end() && given_up->second == first)) {
        open_.erase(&session);
    } else {
        open_[&session] = first;
    }
    return outcome;
}

void Redaction::redact_binary(Input& input) {
    const std::size_t width = options_.layout == Layout::bin1 ? 1 : 2;
    while (out_.error() == 0) {
        const auto head = input.block(width);
        if (head.empty()) return;
        ++number_;
        redacting_.tally.line();
        const std::vector<std::uint8_t> length(head.begin(), head.end());
        const std::size_t announced = length[0] + (length.size() == 2 ? 256U * length[1] : 0U);
        const auto bytes = input.block(length.size() == width ? announced : 0);
        binary_message(length, bytes, announced);
        if (!waits()) finish_pending();
        complaints_go_out();
        out_.flush_when_full();
    }
}

void Redaction::binary_message(std::span<const std::uint8_t> head, std::span<const std::uint8_t> bytes,
                               std::size_t announced) {
    PendingLine& pending = lines_.emplace_back();
    pending.is_trace = pending.is_binary = true;
    pending.text.assign(head.begin(), head.end());
    pending_bytes_ += bytes.size();
    if (bytes.size() < announced || announced == 0) refused_ = true;
    if (bytes.empty()) return;
    const std::size_t kept = std::min<std::size_t>(bytes.size(), message_capacity);
    decode_before(bytes.first(kept), options_.direction, {});
    pending.messages.emplace_back(messages_.size() - 1);
    // What no message has room for is blanked.
    pending.behind.assign(bytes.size() - kept, '\0');
}

bool Redaction::waits() {
    if (open_.empty()) return false;
    if (lines_.size() < most_lines && pending_bytes_ < most_bytes) return true;
    for (const auto& [session, first] : open_) given_up_[session] = first;
    return false;
}

void Redaction::finish_pending() {
    open_.clear();
    hide_put_by(messages_, edits_);
    const auto first = [](const Edit& edit) { return edit.spots.front().message; };
    std::stable_sort(edits_.begin(), edits_.end(),
                     [&](const Edit& a, const Edit& b) { return first(a) < first(b); });
    auto edit = edits_.cbegin();
    auto line = lines_.begin();
    group_.begin = 0;
    for (const std::size_t end : ends_of_groups()) {
        group_.end = end;
        group_.edits.clear();
        group_.lines.clear();
        for (; edit != edits_.cend() && first(*edit) < end; ++edit) group_.edits.push_back(&*edit);
        for (; line != lines_.end() && line->first_message() < end; ++line) {
            if (line->has_message()) group_.lines.push_back(&*line);
        }
        replace_group();
        group_.begin = end;
    }
    count();
    for (const PendingLine& done : lines_) write(done);
    lines_.clear();
    messages_.clear();
    edits_.clear();
    pending_bytes_ = 0;
}

// Segments hang together with their last one and all between them, messages with the others in their line.
std::vector<std::size_t> Redaction::ends_of_groups() const {
    std::vector<std::size_t> reach(messages_.size());
    const auto tie = [&reach](std::size_t first, std::size_t last) {
        reach[first] = std::max(reach[first], last);
    };
    for (std::size_t k = 0; k < messages_.size(); ++k) {
        tie(k, k);
        tie(messages_[k].since, k);
    }
    for (const PendingLine& line : lines_) {
        std::vector<std::size_t> own;
        for (const auto& message : line.messages) {
            if (message) own.push_back(*message);
        }
        if (!own.empty()) tie(own.front(), own.back());
    }
    std::vector<std::size_t> ends;
    std::size_t last = 0;
    for (std::size_t k = 0; k < messages_.size(); ++k) {
        last = std::max(last, reach[k]);
        if (last == k) ends.push_back(k + 1);
    }
    return ends;
}

void Redaction::replace_group() {
    tries_ = 0;
    if (!replace_all()) replace_one_by_one();
}

bool Redaction::replace_all() {
    for (const Edit* const edit : group_.edits) edit->apply(messages_, redacting_.stand_ins, 0);
    return fits(true);
}

// Whichever stand-in changes something else has another one in its place. Where none does, single bytes stay
// that decide what else the message says, which then tells them anyway; not those of a secret. (Of a message
// that says something else even as it came, because one before it had to, nothing stays.)
void Redaction::replace_one_by_one() {
    for (std::size_t k = group_.begin; k < group_.end; ++k) messages_[k].bytes = messages_[k].before;
    const bool comparable = fits(false);
    std::vector<const Edit*> misfits;
    for (const Edit* const edit : group_.edits) {
        if (comparable && fits_with(*edit)) continue;
        const bool pieces = comparable && edit->kind != Hidden::secret && edit->spots.size() > 1;
        const bool some = pieces && hide_in_pieces(*edit);
        if (some && tries_ < most_tries) continue;
        if (edit->is_value() || !comparable || tries_ >= most_tries) misfits.push_back(edit);
    }
    for (const Edit* edit : misfits) edit->apply(messages_, redacting_.stand_ins, 0);
    if (fits(true)) return;
    for (std::size_t k = group_.begin; k < group_.end; ++k) {
        const HiddenMessage& m = messages_[k];
        if (m.session == nullptr || says_the_same(m)) continue;
        redacting_.tally.changed();
        diagnostics_.of_line(m.place, "what is replaced changes what else the message says");
    }
    if (lines_stand()) return;
    for (PendingLine* const line : group_.lines) {
        if (line->is_binary || line->lost) continue;
        const auto bytes = bytes_of(*line);
        if (!line->line.reads_alike(second_reader_, line->line.with(bytes), bytes)) lose(*line);
    }
}

bool Redaction::fits_with(const Edit& edit) {
    for (unsigned attempt = 0; attempt < edit.attempts() && tries_ < most_tries; ++attempt) {
        edit.apply(messages_, redacting_.stand_ins, attempt);
        if (fits(false)) return true;
    }
    edit.take_back(messages_);
    return false;
}

// Whether some of its bytes are hidden then.
bool Redaction::hide_in_pieces(const Edit& edit) {
    const std::size_t half = edit.spots.size() / 2;
    bool some = false;
    for (const bool first : {true, false}) {
        Edit piece = edit;
        if (first) {
            piece.spots.resize(half);
        } else {
            piece.spots.erase(piece.spots.begin(), piece.spots.begin() + static_cast<std::ptrdiff_t>(half));
        }
        if (fits_with(piece)) {
            some = some || std::any_of(piece.spots.begin(), piece.spots.end(), [this](const Spot& spot) {
                       const HiddenMessage& m = messages_[spot.message];
                       return m.bytes[spot.offset] != m.before[spot.offset];
                   });
        } else if (piece.spots.size() > 1) {
            some = hide_in_pieces(piece) || some;
        }
    }
    return some;
}

// Whether all messages that are pending say what they said; only then, and `for_good`, it stays with their
// sessions.
bool Redaction::fits(bool for_good) {
    ++tries_;
    if (!lines_stand()) return false;
    std::vector<Session*> sessions;
    const std::span<const HiddenMessage> messages(messages_.data() + group_.begin, group_.end - group_.begin);
    for (const HiddenMessage& m : messages) {
        if (m.session != nullptr && std::find(sessions.begin(), sessions.end(), m.session) == sessions.end())
            sessions.push_back(m.session);
    }
    Text outside;
    std::deque<Captured> together;
    for (Session* const session : sessions) together.emplace_back(*session, outside);
    for (const HiddenMessage& m : messages) {
        if (m.session != nullptr && !says_the_same(m)) return false;
    }
    if (for_good) {
        for (Captured& one : together) one.done();
    }
    return true;
}

bool Redaction::says_the_same(const HiddenMessage& m) {
    Message message{std::span<const std::uint8_t>(m.bytes)};
    message.direction = m.direction;
    text_.clear();
    trail_after_.place = m.place;
    const Outcome outcome = decode(*m.session, message, text_);
    tries_ += text_.size() / text_of_a_try;
    record_.take(trail_after_, text_.view(), message, outcome);
    return record_.trail().values().size() == m.hidden.size() &&
           what_is_said(record_, outcome, text_.view(), m.hidden) == m.said;
}

bool Redaction::lines_stand() {
    return std::all_of(group_.lines.begin(), group_.lines.end(), [this](const PendingLine* line) {
        if (line->is_binary || line->lost) return true;
        const auto bytes = bytes_of(*line);
        return line->line.reads_alike(second_reader_, line->line.with(bytes), bytes);
    });
}

std::vector<const std::vector<std::uint8_t>*> Redaction::bytes_of(const PendingLine& pending) const {
    std::vector<const std::vector<std::uint8_t>*> bytes;
    for (const auto& message : pending.messages)
        bytes.push_back(message ? &messages_[*message].bytes : nullptr);
    return bytes;
}

void Redaction::count() {
    for (const Edit& edit : edits_) {
        std::uint64_t changed = 0;
        for (const Spot& spot : edit.spots) {
            const HiddenMessage& m = messages_[spot.message];
            changed += m.bytes[spot.offset] != m.before[spot.offset] ? 1 : 0;
        }
        if (changed > 0) redacting_.tally.count(edit.kind, edit.link, edit.name, changed);
    }
}

void Redaction::write(const PendingLine& pending) {
    if (!pending.is_binary) {
        const bool trace = pending.is_trace && !pending.lost;
        write_text(trace ? pending.line.with(bytes_of(pending)) : pending.text);
        write_text(pending.behind);
        return;
    }
    std::string words = pending.text;
    for (const auto* const bytes : bytes_of(pending)) words.append(bytes->begin(), bytes->end());
    out_.add_foreign(words + pending.behind);
}

void Redaction::write_text(std::string_view words) {
    if (utf16_ == nullptr || out_.escapes()) {
        out_.add_foreign(words);
        return;
    }
    const Encoding encoding = utf16_->encoding();
    if (!std::exchange(begun_, true) && utf16_->marked()) add_utf16(byte_order_mark, encoding, out_.text);
    add_utf16(words, encoding, out_.text);
}

void Redaction::refuse(const PendingLine& pending) {
    refused_ = true;
    Text why;
    const Refusal refusal = pending.line.refusal();
    // Without the words that it is about: they may be what is hidden.
    std::string masked(reader_.line().text, reader_.line().length);
    for (char& c : masked) c = c == ' ' ? ' ' : '?';
    describe(refusal, {masked.data(), masked.size()}, why);
    diagnostics_.of_line(number_, why.view(), reader_.whole_column(refusal.column) + 1);
}

void Redaction::complaints_go_out() {
    if (!diagnostics_.pending()) return;
    out_.flush();
    diagnostics_.flush();
}

}  // namespace ztdecode::tool
