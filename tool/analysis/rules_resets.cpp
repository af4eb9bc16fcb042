#include <string>
#include <utility>

#include "tool/analysis/rules.hpp"

// Terminals and modules that start anew. The first start that a trace shows is just that; a trace that begins
// later shows a start as a reset as soon as the terminal has said something else before.

namespace ztdecode::tool {

namespace {

std::string cause_of(const Values& values) {
    std::string words;
    const auto add = [&](std::string_view before, std::string_view shown) {
        if (shown.empty()) return;
        words.append(words.empty() ? ": " : ", ").append(before).append(shown);
    };
    add("", values.shown("reset_kind"));
    add("cause ", values.shown("reset_cause"));
    add("reason ", values.shown("reset_reason"));
    add("", values.shown("terminal_type"));
    add("self-test ", values.shown("self_test"));
    return words;
}

}  // namespace

// Starts that have nothing to do with each other, and commands with a start.
bool Resets::too_old(const Moment& then, const Moment& now) noexcept {
    if (then.time && now.time) return *now.time - *then.time > within_time;
    return now.number - then.number > within_messages;
}

void Resets::message(const Heard& heard, Found& found) {
    if (heard.starts()) {
        started(heard, found);
    } else if (heard.to_system()) {
        running_ = true;
    } else if (heard.restarts()) {
        told_to_ = heard.moment;
    }
}

void Resets::started(const Heard& heard, Found& found) {
    const bool was_told = told_to_ && !too_old(*told_to_, heard.moment);
    const bool was_running = std::exchange(running_, true);
    told_to_.reset();
    if (was_told || !heard.knows_system) return;
    if (was_running) {
        const std::string who = heard.module.empty() ? "the terminal" : "module " + std::string(heard.module);
        found.add("reset", heard.standing, who + " started anew" + cause_of(heard.values));
    }
    std::erase_if(last_, [&](const SaidAt& one) { return too_old(one.moment, heard.moment); });
    last_.push_back({heard.standing, heard.moment});
    if (last_.size() < repeated) return;
    std::vector<Standing> on;
    for (const SaidAt& one : last_) on.push_back(one.standing);
    last_.clear();
    found.add("repeated-reset", heard.standing, std::move(on),
              std::to_string(repeated) + " starts one after the other" + cause_of(heard.values));
}

}  // namespace ztdecode::tool
