#include "tool/output/held_outputs.hpp"

namespace ztdecode::tool {

namespace {

// Of an unusual piece; it is not kept for the next one.
constexpr std::size_t most_room = std::size_t{4} << 20;

void empty(Text& text) {
    if (text.size() > most_room) {
        text = Text();
    } else {
        text.clear();
    }
}

}  // namespace

void HeldOutputs::Diagnostics::flush() {
    if (text.empty()) return;
    both_.words_.add(text.view());
    text.clear();
    both_.turns_.push_back({both_.out_.text.size(), both_.words_.size()});
}

void HeldOutputs::pass_on(const Place& from, const Place& to, Output& out, Output& diagnostics) const {
    std::size_t text = from.text;
    std::size_t words = from.words;
    for (std::size_t k = from.turns; k < to.turns; ++k) {
        out.pass(out_.text.view().substr(text, turns_[k].text - text));
        diagnostics.pass(words_.view().substr(words, turns_[k].words - words));
        text = turns_[k].text;
        words = turns_[k].words;
    }
    out.pass(out_.text.view().substr(text, to.text - text));
}

void HeldOutputs::clear() {
    empty(out_.text);
    empty(words_);
    diagnostics_.text.clear();
    turns_.clear();
}

}  // namespace ztdecode::tool
