#include "tool/select/selected.hpp"

#include <algorithm>
#include <utility>

#include "decode/line_texts.hpp"
#include "tool/output/control.hpp"
#include "tool/select/sqlite.hpp"

namespace ztdecode::tool {

namespace {

// Of texts that may be wanted as context; what is older is forgotten.
constexpr std::size_t most_past = std::size_t{16} << 20;

}  // namespace

Selected::Selected(std::string_view file, const SelectionOptions& selection, const Options& options,
                   std::unique_ptr<Report> shown, Output& out)
    : selection_options_(selection),
      options_(options),
      file_(file),
      shown_(std::move(shown)),
      out_(out),
      before_(std::max(selection.before, selection.around)),
      after_(std::max(selection.after, selection.around)),
      selection_(file_, selection) {}

std::optional<Trail::What> Selected::notes() const {
    return std::max(selection_.notes(), shown_->notes());  // none is the least
}

void Selected::other(std::uint64_t /*number*/, std::string_view /*line*/, bool /*newline*/) {}

void Selected::begin_line(Line line) {
    line_ = line;
    binary_ = false;
}

void Selected::begin_bytes(std::span<const std::uint8_t> bytes) {
    line_ = {"", 0};
    bytes_ = bytes;
    binary_ = true;
}

Text& Selected::begin_message(const CapturedMessage& /*captured*/) {
    decoded_.clear();
    traced_.clear();
    return decoded_;
}

void Selected::trace(std::uint64_t /*number*/, std::string_view words) { traced_ += words; }

bool Selected::asked_for(const Said& said) {
    try {
        return selection_.holds(said, record_) != selection_options_.invert;
    } catch (const sqlite::Error& error) {
        throw FailedExpression(said.captured.number, error.what());
    }
}

void Selected::message(const Said& said) {
    if (enough() || (options_.only_texts && !has_characters(said.text))) return;
    consider(asked_for(said), said.captured.number, [&] { shown_->message(tell_of_message(said)); });
}

// Why has to be said in any case.
void Selected::unfinished(const Said& said, Text& why) {
    if (said.captured.shortage != nullptr) write_padding(*said.captured.shortage, why);
    add_uncoloured(said.text, why);
    if (enough()) return;
    consider(asked_for(said), said.captured.number, [&] {
        Text again;
        shown_->unfinished(tell_of_message(said), again);
    });
}

void Selected::refused(std::uint64_t number, Line line, const Refusal& refusal) {
    if (!selection_options_.refused || enough()) return;
    const bool holds = !selection_options_.of_messages();
    consider(holds != selection_options_.invert, number, [&] { shown_->refused(number, line, refusal); });
}

void Selected::end_line(std::uint64_t /*number*/, Line /*line*/) {}

template <class Tell>
void Selected::consider(bool asked, std::uint64_t number, Tell tell) {
    ++place_;
    if (asked && matched_ >= selection_options_.most) {
        after_left_ = 0;  // context ends where the next one stands that would match
        return;
    }
    if (asked) ++matched_;
    if (selection_options_.count) return;
    if (asked) {
        show_past();
        after_left_ = after_;
        show(number, tell);
    } else if (after_left_ > 0) {
        --after_left_;
        show(number, tell);
    } else if (before_ > 0) {
        const std::size_t begin = out_.text.size();
        const std::size_t line = tell_of_line(tell);
        keep({std::string(out_.text.from(begin)), line, number, place_});
        out_.text.cut(begin);
    }
}

// Gives how many characters the trace line has.
template <class Tell>
std::size_t Selected::tell_of_line(Tell tell) {
    const std::size_t begin = out_.text.size();
    telling_ = true;
    shown_->show_time(time_);
    if (binary_) {
        shown_->begin_bytes(bytes_);
    } else {
        shown_->begin_line(line_);
    }
    const std::size_t line = out_.text.size() - begin;
    tell();
    shown_->end_line(0, line_);
    telling_ = false;
    return std::min(line, out_.text.size() - begin);
}

Said Selected::tell_of_message(const Said& said) {
    Text& text = shown_->begin_message(said.captured);
    const std::size_t begin = text.size();
    text.add(said.text);
    if (!traced_.empty()) shown_->trace(said.captured.number, traced_);
    return {said.captured, said.trail, text.from(begin), said.outcome};
}

template <class Tell>
void Selected::show(std::uint64_t number, Tell tell) {
    separate(place_);
    const std::size_t begin = out_.text.size();
    const std::size_t line = tell_of_line(tell);
    if (number == shown_number_ && line > 0) {
        const std::string text(out_.text.from(begin + line));
        out_.text.cut(begin);
        out_.text.add(text);
    }
    shown_number_ = number;
}

void Selected::separate(std::uint64_t place) {
    const bool context = before_ > 0 || after_ > 0;
    if (options_.separators && context && shown_place_ != 0 && place != shown_place_ + 1) {
        out_.text.add("--\n");
        shown_number_ = 0;
    }
    shown_place_ = place;
}

void Selected::keep(Past past) {
    past_size_ += past.text.size() + sizeof(Past);
    past_.push_back(std::move(past));
    while (past_.size() > before_ || past_size_ > most_past) {
        past_size_ -= past_.front().text.size() + sizeof(Past);
        past_.pop_front();
        if (past_.empty()) break;
    }
}

void Selected::show_past() {
    for (const Past& past : past_) {
        separate(past.place);
        out_.text.add(std::string_view(past.text).substr(past.number == shown_number_ ? past.line : 0));
        shown_number_ = past.number;
    }
    past_.clear();
    past_size_ = 0;
}

// Between messages nothing has begun.
bool Selected::let_out(std::size_t besides) {
    constexpr std::size_t most_held = std::size_t{1} << 20;
    if (out_.text.size() + besides < most_held) return false;
    out_.flush();
    return true;
}

void Selected::no_memory() {
    if (telling_) {
        shown_->no_memory();
    } else {
        out_.flush_and_release();
    }
    telling_ = false;
    decoded_ = Text();
    record_ = Record();
    traced_ = std::string();
    past_.clear();
    past_size_ = 0;
}

// The piece with the last one that is wanted is told to this one itself.
bool Selected::add(const Counts& counts) {
    if (counts.front() >= selection_options_.most - matched_) return false;
    matched_ += static_cast<std::size_t>(counts.front());
    return true;
}

bool Selected::end(const LineTotals& totals, std::uint64_t cut) {
    if (selection_options_.count) {
        if (options_.file_names) {
            out_.add_name(file_);
            out_.text.add(":");
        }
        out_.text.print("{-}\n"_cf, std::uint64_t{matched_});
    }
    return shown_->end(totals, cut);
}

}  // namespace ztdecode::tool
