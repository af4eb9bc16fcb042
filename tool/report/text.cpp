#include "tool/report/text.hpp"

#include <utility>

#include "decode/line_texts.hpp"
#include "tool/report/explained.hpp"

namespace ztdecode::tool {

namespace {

// Of a line whose messages are still being decoded.
constexpr std::size_t most_held = std::size_t{1} << 20;

}  // namespace

TextReport::TextReport(const Options& options, Output& out, std::unique_ptr<Remarks> remarks)
    : options_(options),
      out_(out),
      presents_(options.explained || options.color || out.escapes() || remarks != nullptr),
      remarks_(std::move(remarks)) {}

std::optional<Trail::What> TextReport::notes() const {
    if (options_.explained) return Trail::What::words;
    return remarks_ != nullptr ? std::optional(Trail::What::values) : std::nullopt;
}

// What is remarked stands below all texts of the line, and stays when they are taken back.
template <class Say>
void TextReport::remark(Say say) {
    if (remarks_ == nullptr) return;
    const std::size_t begin = out_.text.size();
    say(*remarks_);
    remarked_ += out_.text.from(begin);
    out_.text.cut(begin);
}

void TextReport::other(std::uint64_t /*number*/, std::string_view line, bool newline) {
    out_.add_foreign(line);
    if (newline) out_.text.add(*(line.data() + line.size()) == '\r' && !out_.escapes() ? "\r" : "\n");
}

void TextReport::begin_text(std::size_t begin) {
    begin_ = begin;
    text_ = out_.text.size();
    partly_out_ = failed_ = false;
}

void TextReport::begin_line(Line line) {
    const std::size_t begin = out_.text.size();
    // A terminal would act on a carriage return.
    const bool lone = line.text[line.length] == '\r';
    const bool returns = line.length > 0 && line.text[line.length - 1] == '\r';
    line_end_ = out_.escapes() ? "\n" : lone ? "\r" : returns ? "\r\n" : "\n";
    if (options_.lines) {
        out_.text.add(time_);
        out_.add_foreign({line.text, line.length});
        out_.text.add(line_end_ == "\r" ? line_end_ : "\n");
    }
    begin_text(begin);
}

// A message of a binary file is shown as a tagged line, which the command reads again.
void TextReport::begin_bytes(std::span<const std::uint8_t> bytes) {
    Text& out = out_.text;
    const std::size_t begin = out.size();
    line_end_ = "\n";
    if (options_.lines && !bytes.empty()) {
        out.print("zt {-:02x} {-:02x}"_cf, bytes.size() & 0xFF, bytes.size() >> 8);
        for (const std::uint8_t byte : bytes) {
            out.add(" ");
            out.hex(byte);
        }
        out.add("\n");
    }
    begin_text(begin);
}

// A padded message begins the text of its line anew.
Text& TextReport::begin_message(const CapturedMessage& captured) {
    if (captured.shortage != nullptr) {
        out_.text.cut(text_);
        write_padding(*captured.shortage, out_.text);
    }
    if (!presents_) return out_.text;
    decoded_.clear();
    return decoded_;
}

void TextReport::trace(std::uint64_t /*number*/, std::string_view words) { traced_ += words; }

void TextReport::message(const Said& said) {
    if (presents_) present(said);
    if (said.captured.goes_on) out_.text.add("\n");
    remark([&](Remarks& remarks) { remarks.message(said, out_); });
}

void TextReport::present(const Said& said) {
    Text& out = out_.text;
    const std::size_t begin = out.size();
    // A message that the filter drops leaves its colour behind.
    if (options_.only_texts && !has_characters(said.text)) return;
    if (out_.escapes()) {
        add_coloured_escaped(said.text, out);
    } else {
        add_coloured(said.text, out);
    }
    if (!options_.explained || out.size() == begin) return;
    if (out.view().back() != '\n') out.add("\n");
    explain(said.trail, said.text, *said.captured.message, out);
}

// The text of the line is not shown: it is what there is to say.
void TextReport::unfinished(const Said& said, Text& why) {
    if (presents_) out_.text.add(said.text);
    add_uncoloured(out_.text.from(text_), why);
    out_.text.cut(text_);
    failed_ = true;
    remark([&](Remarks& remarks) { remarks.message(said, out_); });
}

void TextReport::refused(std::uint64_t number, Line line, const Refusal& refusal) {
    out_.text.cut(text_);
    failed_ = true;
    remark([&](Remarks& remarks) { remarks.refused(number, line, refusal, out_); });
}

void TextReport::end_line(std::uint64_t /*number*/, Line /*line*/) {
    Text& out = out_.text;
    if (out.size() > text_) {
        if (out.view().back() != '\n') out.add("\n");
    } else if (options_.only_texts && !partly_out_ && !failed_ && remarked_.empty()) {
        out.cut(begin_);
        text_ = begin_;
    }
    put_traces_above_text();
    out.add(remarked_);
    remarked_.clear();
    use_line_end();
}

// Texts have the line ends of their file.
void TextReport::use_line_end() {
    if (line_end_ == "\n") return;
    Text& out = out_.text;
    const std::string decoded(out.from(text_));
    out.cut(text_);
    for (const char c : decoded) {
        if (c == '\n') {
            out.add(line_end_);
        } else {
            out.put(static_cast<std::uint8_t>(c));
        }
    }
}

void TextReport::put_traces_above_text() {
    if (traced_.empty()) return;
    Text& out = out_.text;
    const std::string decoded(out.from(text_));
    out.cut(text_);
    out_.add_foreign(traced_);
    if (traced_.back() != '\n') out.add("\n");
    out.add(decoded);
    traced_.clear();
}

bool TextReport::let_out(std::size_t besides) {
    if (out_.text.size() - text_ + traced_.size() + besides < most_held) return false;
    put_traces_above_text();
    use_line_end();
    out_.flush_keeping(text_);
    partly_out_ = true;
    return true;
}

bool TextReport::end(const LineTotals& /*totals*/, std::uint64_t /*cut*/) {
    if (remarks_ != nullptr) remarks_->end(out_);
    return true;
}

void TextReport::no_memory() {
    out_.text.cut(text_);
    out_.flush_and_release();
    begin_ = text_ = 0;
    decoded_ = Text();
    traced_ = std::string();
}

}  // namespace ztdecode::tool
